// Plot points of the empirical distribution and the normal probability plot.
#include <algorithm>
#include <cmath>

#include "statistic_support.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/statistics/histogram.h"
#include "varimo/statistics/plot_points.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {

using namespace StatisticDetail;

void ZqGetEmpiricalCDFPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                 const std::vector<double>& sortedData, double lo, double hi) {
  series.Clear();
  ZqGetXloXhiForSortedData(xlo, xhi, sortedData, lo, hi);
  if (sortedData.empty()) return;
  const std::size_t n = sortedData.size();
  std::vector<Numarc::ZqDataPoint> points;
  points.reserve(2 * n + 2);
  if (xlo < sortedData.front()) points.emplace_back(xlo, 0.0);
  points.emplace_back(sortedData.front(), 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    const double height = static_cast<double>(i + 1) / static_cast<double>(n);
    points.emplace_back(sortedData[i], height);
    if (i + 1 < n) points.emplace_back(sortedData[i + 1], height);
  }
  if (xhi > sortedData.back()) points.emplace_back(xhi, 1.0);
  series.SetPoints(std::move(points));
}

ZqStatModelResult ZqGetNormalProbabilityPlotPointsForSortedData(Numarc::ZqDataSeries& series, double& xlo,
                                                                double& xhi, double& ylo, double& yhi,
                                                                const std::vector<double>& sortedData, double lo,
                                                                double hi, double ylo0, double yhi0) {
  constexpr const char* kRoutine = "ZqGetNormalProbabilityPlotPointsForSortedData";
  series.Clear();
  xlo = lo;
  xhi = hi;
  ylo = ylo0;
  yhi = yhi0;
  ZqStatModelResult result;
  const ZqUniVarPDF normal = ZqUnivariateGaussian("z", 0.0, 1.0, result);
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }
  if (sortedData.empty()) return ZqStatModelResult(true);
  double center = 0.0, scale = 0.0;
  ZqGetCenterAndScale(center, scale, true, sortedData);
  // Without a positive, finite scale every point would be infinite or NaN.
  if (!AllFinite(sortedData) || center == kBad || scale == kBad || !(scale > 0.0) || !std::isfinite(scale)) {
    return ZqMakeFailedResult(ZqStatModelFailureType::SingularScaleOrCovariance, kRoutine);
  }
  const double n = static_cast<double>(sortedData.size());
  std::vector<Numarc::ZqDataPoint> points;
  points.reserve(sortedData.size());
  for (std::size_t i = 0; i < sortedData.size(); ++i) {
    const double y = (sortedData[i] - center) / scale;
    const double p = (static_cast<double>(i + 1) - 1.0 / 3.0) / (n + 1.0 / 3.0);
    const double z = normal.GetPercentile(p, result);
    if (result.NotSuccessful()) {
      series.SetPoints(std::move(points));
      result.AddCallContext(kRoutine);
      return result;
    }
    points.emplace_back(z, y);
    xlo = std::min(xlo, z);
    xhi = std::max(xhi, z);
    ylo = std::min(ylo, y);
    yhi = std::max(yhi, y);
  }
  series.SetPoints(std::move(points));
  return ZqStatModelResult(true);
}

}  // namespace Varimo
