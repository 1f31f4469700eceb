#include "varimo/statistics/bootstrap.h"

#include "statistic_support.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/numarc/generators.h"
#include "varimo/statistics/pair_statistic.h"
#include "varimo/statistics/sample_statistic.h"

namespace Varimo {

using namespace StatisticDetail;
namespace Failure = ZqStatModelFailureType;

namespace {

template <class T>
void DrawWithReplacement(Numarc::ZqRanNumEngine& engine, std::vector<T>& out, const std::vector<T>& data) {
  out.clear();
  if (data.empty()) return;
  out.reserve(data.size());
  const Numarc::ZqUniformIntRNG index(0, static_cast<long>(data.size()) - 1);
  for (std::size_t k = 0; k < data.size(); ++k) out.push_back(data[static_cast<std::size_t>(index(engine))]);
}

// The loop shared by the bootstraps: numSamples times draw a sample and
// append what `apply` makes of it, stopping at the first failure.
template <class Sample, class Value, class Draw, class Apply>
ZqStatModelResult BootstrapLoop(std::vector<Value>& values, std::uint64_t numSamples, const char* routine, Draw draw,
                                Apply apply) {
  values.clear();
  values.reserve(ReserveFor(numSamples));
  Sample sample;
  for (std::uint64_t s = 0; s < numSamples; ++s) {
    ZqStatModelResult result = draw(sample);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
    values.push_back(apply(sample));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult BootstrapSampleStatistic(std::vector<double>& values, Numarc::ZqRanNumEngine& engine,
                                           const ZqSampleStatistic& statistic, const std::vector<double>& data,
                                           std::uint64_t numSamples) {
  return BootstrapLoop<std::vector<double>>(
      values, numSamples, "ZqBootstrapSampleStatisticForDataVec",
      [&](std::vector<double>& sample) { return ZqGetBootstrapSampleForDataVec(engine, sample, data); },
      [&](const std::vector<double>& sample) { return statistic(sample); });
}

}  // namespace

void ZqGetOneBootstrapSampleFromDataVec(Numarc::ZqRanNumEngine& engine, std::vector<double>& out,
                                        const std::vector<double>& data) {
  DrawWithReplacement(engine, out, data);
}

ZqStatModelResult ZqGetBootstrapSampleForDataVec(Numarc::ZqRanNumEngine& engine, std::vector<double>& out,
                                                 const std::vector<double>& data) {
  if (data.empty()) {
    out.clear();
    return ZqMakeFailedResult(Failure::NoData, "ZqGetBootstrapSampleForDataVec");
  }
  DrawWithReplacement(engine, out, data);
  return ZqStatModelResult(true);
}

void ZqGetOneBootstrapSampleFromDataPairVec(Numarc::ZqRanNumEngine& engine, ZqPairSample& out,
                                            const ZqPairSample& pairs) {
  DrawWithReplacement(engine, out, pairs);
}

ZqStatModelResult ZqGetBootstrapSampleForDataPairVec(Numarc::ZqRanNumEngine& engine, ZqPairSample& out,
                                                     const ZqPairSample& pairs) {
  // Every call reports Fatal, telling callers not to trust this entry point,
  // although the sampling below is the same as for single values.
  Corvane::ZqThrow.Fatal(std::string("Bad implementation--need to fix!"));
  if (pairs.empty()) {
    out.clear();
    return ZqMakeFailedResult(Failure::NoData, "ZqGetBootstrapSampleForDataPairVec");
  }
  DrawWithReplacement(engine, out, pairs);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqBootstrapSampleStatisticForDataVec(std::vector<double>& values, Numarc::ZqRanNumEngine& engine,
                                                       unsigned int statType, const std::vector<double>& data,
                                                       std::uint64_t numSamples) {
  return BootstrapSampleStatistic(values, engine, ZqSampleStatistic(statType), data, numSamples);
}

ZqStatModelResult ZqBootstrapSampleStatisticForDataVec(std::vector<double>& values, Numarc::ZqRanNumEngine& engine,
                                                       unsigned int statType, double parameter,
                                                       const std::vector<double>& data, std::uint64_t numSamples) {
  return BootstrapSampleStatistic(values, engine, ZqSampleStatistic(statType, parameter), data, numSamples);
}

ZqStatModelResult ZqBootstrapTwoSampleStatisticForDataPairVec(std::vector<double>& values,
                                                              Numarc::ZqRanNumEngine& engine, unsigned int statType,
                                                              const ZqPairSample& pairs, std::uint64_t numSamples) {
  const ZqTwoSampleStatistic statistic(statType);
  return BootstrapLoop<ZqPairSample>(
      values, numSamples, "ZqBootstrapTwoSampleStatisticForDataPairVec",
      [&](ZqPairSample& sample) { return ZqGetBootstrapSampleForDataPairVec(engine, sample, pairs); },
      [&](const ZqPairSample& sample) { return statistic(sample); });
}

ZqStatModelResult ZqBootstrapTwoSamplePairStatisticForDataPairVec(ZqPairSample& pairValues,
                                                                  Numarc::ZqRanNumEngine& engine,
                                                                  unsigned int statType, const ZqPairSample& pairs,
                                                                  std::uint64_t numSamples) {
  const ZqTwoSamplePairStatistic statistic(statType);
  return BootstrapLoop<ZqPairSample>(
      pairValues, numSamples, "ZqBootstrapTwoSamplePairStatisticForDataPairVec",
      [&](ZqPairSample& sample) { return ZqGetBootstrapSampleForDataPairVec(engine, sample, pairs); },
      [&](const ZqPairSample& sample) { return statistic.GetPairStatistic(sample); });
}

}  // namespace Varimo
