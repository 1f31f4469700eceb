#include "varimo/cluster/calc_auc.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

namespace {

// The step of the ROC curve walk: each decoy adds the actives ranked above it.
struct RocWalk {
  double sum = 0.0;
  unsigned long actives = 0;
  unsigned long decoys = 0;
};

RocWalk WalkRanking(const std::vector<bool>& ranked) {
  RocWalk walk;
  for (const bool active : ranked) {
    if (active) {
      ++walk.actives;
    } else {
      ++walk.decoys;
      walk.sum += static_cast<double>(walk.actives);
    }
  }
  return walk;
}

}  // namespace

bool ZqCalculateAUC(double& auc, const std::vector<bool>& ranked) {
  if (ranked.empty()) return false;
  const RocWalk walk = WalkRanking(ranked);
  if (walk.actives == 0 || walk.decoys == 0) return false;
  auc = walk.sum / (static_cast<double>(walk.actives) * static_cast<double>(walk.decoys));
  return true;
}

bool ZqCalculateAUC(double& auc, const std::vector<bool>& ranked, unsigned int nact, unsigned int ndec) {
  if (nact == 0 || ndec == 0) return false;
  RocWalk walk = WalkRanking(ranked);
  if (walk.actives > nact) {
    Corvane::ZqThrow.Warning(
        "ZqCalculateAUC, total number of actives (Nact %d) is less than number of actives there are known to be "
        "(nact %d)",
        static_cast<int>(nact), static_cast<int>(walk.actives));
    return false;
  }
  if (walk.decoys > ndec) {
    Corvane::ZqThrow.Warning(
        "ZqCalculateAUC, total number of decoys (Ndec %d) is less than number of decoys there are known to be "
        "(ndec %d)",
        static_cast<int>(ndec), static_cast<int>(walk.decoys));
    return false;
  }
  // The unseen tail runs straight from (d, a) to (ndec, nact): a trapezoid.
  walk.sum += (static_cast<double>(walk.actives) + nact) * 0.5 * static_cast<double>(ndec - walk.decoys);
  auc = walk.sum / (static_cast<double>(nact) * static_cast<double>(ndec));
  return true;
}

double ZqCalculateAUC(const std::vector<double>& actives, const std::vector<double>& decoys,
                      bool higherIsBetter) {
  // The pairwise count by sorting: for each active, the decoys it beats and
  // those it ties come from two binary searches. Every term is a whole or a
  // half, so the sum is exact and equals the pair-by-pair sum. A NaN score
  // beats nothing and ties nothing, so NaN decoys are left out.
  std::vector<double> sorted;
  sorted.reserve(decoys.size());
  for (const double b : decoys) {
    if (!std::isnan(b)) sorted.push_back(b);
  }
  std::sort(sorted.begin(), sorted.end());
  double sum = 0.0;
  for (const double a : actives) {
    if (std::isnan(a)) continue;
    const auto [low, high] = std::equal_range(sorted.begin(), sorted.end(), a);
    const auto below = static_cast<double>(low - sorted.begin());
    const auto above = static_cast<double>(sorted.end() - high);
    sum += (higherIsBetter ? below : above) + 0.5 * static_cast<double>(high - low);
  }
  // Empty input gives 0 / 0 on purpose: there is no area to report.
  return sum / (static_cast<double>(actives.size()) * static_cast<double>(decoys.size()));
}

double ZqCalculateStandardError(double auc, unsigned int nact, unsigned int ndec) {
  if (nact == 0 || ndec == 0) return VarimoBadData::BadDouble;
  const double a2 = auc * auc;
  const double q1 = auc / (2.0 - auc);
  const double q2 = 2.0 * a2 / (1.0 + auc);
  const double n = nact, m = ndec;
  const double variance = (auc * (1.0 - auc) + (n - 1.0) * (q1 - a2) + (m - 1.0) * (q2 - a2)) / (n * m);
  return std::sqrt(variance);
}

double ZqMedian(std::vector<double>& values) {
  if (values.empty()) return VarimoBadData::BadDouble;
  const std::size_t half = values.size() / 2;
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(half), values.end());
  const double upper = values[half];
  if (values.size() % 2 == 1) return upper;
  // After the selection the lower half holds the smaller values, in no order.
  const double lower = *std::max_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(half));
  return 0.5 * (lower + upper);
}

double ZqMedianScore(const double* values, unsigned long n) {
  std::vector<double> copy;
  if (values != nullptr) copy.assign(values, values + n);
  return ZqMedian(copy);
}

double ZqMedianScore(const std::vector<double>& values) {
  std::vector<double> copy(values);
  return ZqMedian(copy);
}

}  // namespace Varimo
