#include "varimo/krige/batch_selection_impl.h"

#include <numeric>

#include "varimo/krige/vector_krige.h"

namespace Varimo {

std::optional<ZqBatchKind> ZqBatchKindNamed(const std::string& name) {
  for (ZqBatchKind kind : {ZqBatchKind::Top, ZqBatchKind::Believer, ZqBatchKind::LiarMin, ZqBatchKind::LiarMean,
                           ZqBatchKind::LiarMax, ZqBatchKind::Thompson}) {
    if (name == ZqBatchKindName(kind)) return kind;
  }
  return std::nullopt;
}

const char* ZqBatchKindName(ZqBatchKind kind) {
  switch (kind) {
    case ZqBatchKind::Top:
      return "top";
    case ZqBatchKind::Believer:
      return "believer";
    case ZqBatchKind::LiarMin:
      return "liar-min";
    case ZqBatchKind::LiarMean:
      return "liar-mean";
    case ZqBatchKind::LiarMax:
      return "liar-max";
    case ZqBatchKind::Thompson:
      return "thompson";
  }
  return "";
}

std::string ZqCheckSelectionOptions(const ZqSelectionOptions& options) {
  if (std::string problem = ZqCheckAcquisitionOptions(options.acquisition); !problem.empty()) return problem;
  if (options.picks == 0) return "the number of picks must be at least 1";
  if (options.candidates == 0) return "the number of candidates must be at least 1";
  const bool thompsonAcquisition = options.acquisition.kind == ZqAcquisitionKind::Thompson;
  if (thompsonAcquisition && options.batch != ZqBatchKind::Top && options.batch != ZqBatchKind::Thompson) {
    return std::string("the thompson acquisition is a joint draw: it goes with no batch or the thompson batch, not ") +
           ZqBatchKindName(options.batch);
  }
  if ((thompsonAcquisition || options.batch == ZqBatchKind::Thompson) && options.picks > options.candidates) {
    return "Thompson sampling draws over " + std::to_string(options.candidates) + " candidates, fewer than the " +
           std::to_string(options.picks) + " picks";
  }
  return {};
}

namespace selection_detail {

double Fantasy(ZqBatchKind batch, double mean, const std::vector<double>& measured) {
  if (batch == ZqBatchKind::Believer || measured.empty()) return mean;
  if (batch == ZqBatchKind::LiarMin) return *std::min_element(measured.begin(), measured.end());
  if (batch == ZqBatchKind::LiarMax) return *std::max_element(measured.begin(), measured.end());
  return std::accumulate(measured.begin(), measured.end(), 0.0) / static_cast<double>(measured.size());
}

}  // namespace selection_detail

template class ZqPoolInMemory<ZqVectorElement>;
template ZqSelection ZqSelectBatch<ZqVectorElement>(const ZqKrigeBase<ZqVectorElement>&,
                                                    ZqPoolSource<ZqVectorElement>&, const ZqSelectionOptions&);

}  // namespace Varimo
