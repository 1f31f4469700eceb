#include "varimo/tables/maximal_coverage.h"

#include <algorithm>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/numarc/generators.h"

namespace Varimo {

ZqStatModelResult ZqGetMaximalCoverageDistanceSubMatrix(Numarc::ZqRanNumEngine& engine,
                                                        std::vector<std::uint32_t>& selected, std::uint64_t count,
                                                        const Eigen::MatrixXd& distanceMatrix) {
  constexpr const char* kRoutine = "ZqGetMaximalCoverageDistanceSubMatrix";
  selected.clear();
  if (distanceMatrix.rows() != distanceMatrix.cols()) {
    return ZqMakeFailedResult(ZqStatModelFailureType::WrongInputMatrixSize, kRoutine);
  }
  const auto n = static_cast<std::uint64_t>(distanceMatrix.rows());
  if (count > n) {
    return ZqMakeFailedResult(ZqStatModelFailureType::ArgumentOutOfRange, kRoutine,
                              Corvane::ZqMakeString("Asking to choose ", count, " rows out of ", n, " rows available"));
  }
  selected.assign(static_cast<std::size_t>(n), 0u);
  if (n == 0) return ZqStatModelResult(true);
  std::vector<double> minDist(static_cast<std::size_t>(n), VarimoBadData::BadDouble);
  auto current = static_cast<Eigen::Index>(Numarc::ZqUniformIntRNG(0, static_cast<long>(n) - 1)(engine));
  selected[static_cast<std::size_t>(current)] = 1u;
  for (std::uint64_t k = 1; k < count; ++k) {
    const Eigen::Index latest = current;
    double best = 0.0;
    for (Eigen::Index j = 0; j < distanceMatrix.rows(); ++j) {
      double& d = minDist[static_cast<std::size_t>(j)];
      d = std::min(d, distanceMatrix(j, latest));
      // Strictly larger only: the lowest index wins a tie, and with nothing
      // above 0 the walk stays on the current item.
      if (d > best) {
        best = d;
        current = j;
      }
    }
    selected[static_cast<std::size_t>(current)] = 1u;
  }
  return ZqStatModelResult(true);
}

}  // namespace Varimo
