#include "inverse_cdf.h"

#include <cmath>
#include <sstream>
#include <vector>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr int kMaxIterations = 100;

double TooManyIterations(ZqStatModelResult& result, const char* routine) {
  result = ZqMakeFailedResult(F::InternalLogicFailure, routine,
                              Corvane::ZqMakeString("Max Iters (", kMaxIterations, ") exceeded "));
  return kBad;
}

}  // namespace

double GetLowerBoundOnInverseCDF(const ZqUniVarPDFImpl& pdf, double p, ZqStatModelResult& result) {
  double x = 0.0;
  double step = 1.0;
  for (int i = 0; i < kMaxIterations; ++i) {
    const double cdf = pdf.GetCDF(x, result, true);
    if (result.NotSuccessful()) {
      result.AddCallContext("GetLowerBoundOnInverseCDF");
      return kBad;
    }
    if (p > cdf) return x;
    x -= step;
    step *= 2.0;
  }
  return TooManyIterations(result, "GetLowerBoundOnInverseCDF");
}

double GetUpperBoundOnInverseCDF(const ZqUniVarPDFImpl& pdf, double p, double start, ZqStatModelResult& result) {
  double x = start;
  double step = 1.0;
  for (int i = 0; i < kMaxIterations; ++i) {
    const double cdf = pdf.GetCDF(x, result, true);
    if (result.NotSuccessful()) {
      result.AddCallContext("GetUpperBoundOnInverseCDF");
      return kBad;
    }
    if (cdf > p) return x;
    x += step;
    step *= 2.0;
  }
  return TooManyIterations(result, "GetUpperBoundOnInverseCDF");
}

double InverseContinuousCDF(ZqStatModelResult& result, const ZqUniVarPDFImpl& pdf, double p, double lower,
                            double upper, double tolY, double tolX) {
  double x = (lower + upper) * 0.5;
  double cdf = 0.0, density = 0.0;
  auto evaluate = [&] {
    cdf = pdf.GetCDF(x, result, true);
    if (result.IsSuccessful()) density = pdf.GetDensity(x, result, true);
    if (result.NotSuccessful()) result.AddCallContext("InverseContinuousCDF");
    return result.IsSuccessful();
  };
  if (!evaluate()) return kBad;
  double errX = 0.5 * (upper - lower);
  double errY = std::fabs(cdf - p);
  // The passes are logged for the failure's comment; they are kept as
  // numbers and written out only if the search fails, since formatting
  // them would cost more than the search itself.
  const double start[3] = {p, lower, upper};
  struct Pass {
    double lower, x, upper, errX, errY;
  };
  std::vector<Pass> passes;
  for (int i = 0; i < kMaxIterations; ++i) {
    if ((std::fabs(x) + 1.0) * tolX >= errX && tolY >= errY) {
      result = true;
      return x;
    }
    if (p <= cdf) {
      upper = x;
    } else {
      lower = x;
    }
    const double half = 0.5 * (upper - lower);
    const double mid = 0.5 * (upper + lower);
    // Newton's step when it promises to shrink the error and stays inside
    // the bracket; bisection otherwise.
    if (errX * density > std::fabs(p - cdf)) {
      const double dx = (p - cdf) / density;
      const double xNew = x + dx;
      if ((dx <= 0.0 && xNew >= lower) || (dx >= 0.0 && upper >= xNew)) {
        x = xNew;
        errX = std::fabs(dx);
      } else {
        x = mid;
        errX = half;
      }
    }
    if (errX * density <= std::fabs(p - cdf)) {
      x = mid;
      errX = half;
    }
    if (!evaluate()) return kBad;
    errY = std::fabs(cdf - p);
    passes.push_back({lower, x, upper, errX, errY});
  }
  std::ostringstream log;
  log << "Percent, lower, upper = " << start[0] << " " << start[1] << " " << start[2] << "\n";
  for (const Pass& pass : passes) {
    log << "lower,xnew,upper,errX,errY = " << pass.lower << " " << pass.x << " " << pass.upper << " " << pass.errX
        << " " << pass.errY << "\n";
  }
  log << "Max Iters (" << kMaxIterations << ") exceeded \n";
  result = ZqMakeFailedResult(F::InternalLogicFailure, "InverseContinuousCDF", log.str());
  return kBad;
}

}  // namespace Varimo
