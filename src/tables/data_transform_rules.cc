// The rule of each transform.
#include <algorithm>
#include <cmath>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_transforms.h"

namespace Varimo {
namespace {

constexpr double kMissing = VarimoBadData::MissingDouble;
constexpr double kBad = VarimoBadData::BadDouble;

// The reserved values of one argument pass through.
bool Reserved(double x, double& out) {
  if (ZqIsMissing(x)) {
    out = kMissing;
    return true;
  }
  if (ZqIsBad(x)) {
    out = kBad;
    return true;
  }
  return false;
}

// Of two: a missing in either first, then a bad in either.
bool Reserved(double a, double b, double& out) {
  if (ZqIsMissing(a) || ZqIsMissing(b)) {
    out = kMissing;
    return true;
  }
  if (ZqIsBad(a) || ZqIsBad(b)) {
    out = kBad;
    return true;
  }
  return false;
}

bool Reserved(const std::vector<double>& values, double& out) {
  for (const double v : values) {
    if (ZqIsMissing(v)) {
      out = kMissing;
      return true;
    }
  }
  for (const double v : values) {
    if (ZqIsBad(v)) {
      out = kBad;
      return true;
    }
  }
  return false;
}

// A comparison's value, with the reserved values as unsigned ones.
std::uint32_t Compare(double a, double b, bool holds) {
  if (ZqIsMissing(a) || ZqIsMissing(b)) return VarimoBadData::MissingUnsigned;
  if (ZqIsBad(a) || ZqIsBad(b)) return VarimoBadData::BadUnsigned;
  return holds ? 1u : 0u;
}

}  // namespace

#define VARIMO_RULE(Class, Name, Body)                               \
  std::string Class::GetTransformName() const { return Name; }       \
  double Class::GetDouble(double x) const {                          \
    double out;                                                      \
    if (Reserved(x, out)) return out;                                \
    Body                                                             \
  }

VARIMO_RULE(ZqAddAScalarDataTransform, "Addition Of a Scalar", return x + c_;)
VARIMO_RULE(ZqSubtractAScalarDataTransform, "Subtraction Of a Scalar", return x - c_;)
VARIMO_RULE(ZqSubtractFromAScalarDataTransform, "Subtraction From a Scalar", return c_ - x;)
VARIMO_RULE(ZqMultiplyByScalarDataTransform, "Multiplication By a Scalar", return x * c_;)
VARIMO_RULE(ZqDivideByScalarDataTransform, "Division By a Scalar", return c_ == 0.0 ? kBad : x / c_;)
VARIMO_RULE(ZqSqrtDataTransform, "Square Root Transform", return x < 0.0 ? kBad : std::sqrt(x);)
VARIMO_RULE(ZqLogDataTransform, "Log Transform", return x <= 0.0 ? kBad : std::log(x);)
VARIMO_RULE(ZqAbsoluteValueDataTransform, "Absolute Value Transform", return std::fabs(x);)
VARIMO_RULE(ZqLogisticDataTransform, "LogisticTransform", {
  if (x < lo_ || x > hi_) return kBad;
  const double clipped = std::clamp(x, lo_ + eps_, hi_ - eps_);
  return std::log((clipped - lo_) / (hi_ - clipped));
})
#undef VARIMO_RULE

std::string ZqDivideIntoScalarDataTransform::GetTransformName() const { return "Division Into a Scalar"; }
double ZqDivideIntoScalarDataTransform::GetDouble(double x) const {
  // A bad x takes the path of a zero one: bad either way.
  if (ZqIsMissing(x)) return kMissing;
  if (x == 0.0 || ZqIsBad(x)) return kBad;
  return c_ / x;
}

// ------------------------------------------------------------ two doubles

std::string ZqSumOfTwoDoubles::GetTransformName() const { return "Sum of Two Double Args"; }
double ZqSumOfTwoDoubles::GetDouble(double a, double b) const {
  double out;
  return Reserved(a, b, out) ? out : a + b;
}

std::string ZqDifferenceOfTwoDoubles::GetTransformName() const { return "Difference between Two Double Args"; }
double ZqDifferenceOfTwoDoubles::GetDouble(double a, double b) const {
  double out;
  return Reserved(a, b, out) ? out : a - b;
}

std::string ZqProductOfTwoDoubles::GetTransformName() const { return "Product of Two Double Args"; }
double ZqProductOfTwoDoubles::GetDouble(double a, double b) const {
  double out;
  return Reserved(a, b, out) ? out : a * b;
}

std::string ZqRatioOfTwoDoubles::GetTransformName() const { return "Ratio of Two Double Args"; }
double ZqRatioOfTwoDoubles::GetDouble(double a, double b) const {
  // A zero or bad divisor is tested before a bad dividend; both give bad.
  if (ZqIsMissing(a) || ZqIsMissing(b)) return kMissing;
  if (b == 0.0 || ZqIsBad(b) || ZqIsBad(a)) return kBad;
  return a / b;
}

// ------------------------------------------------------------ a vector of doubles

std::string ZqMaxOfVecOfDoubles::GetTransformName() const { return "Maximum value In a Vec of Doubles"; }
double ZqMaxOfVecOfDoubles::GetDouble(const std::vector<double>& a) const {
  double out;
  if (a.empty()) return kBad;
  return Reserved(a, out) ? out : *std::max_element(a.begin(), a.end());
}

std::string ZqMinOfVecOfDoubles::GetTransformName() const { return "Minimum value In a Vec of Doubles"; }
double ZqMinOfVecOfDoubles::GetDouble(const std::vector<double>& a) const {
  double out;
  if (a.empty()) return kBad;
  return Reserved(a, out) ? out : *std::min_element(a.begin(), a.end());
}

std::string ZqRangeOfVecOfDoubles::GetTransformName() const { return "Range of values In a Vec of Doubles"; }
double ZqRangeOfVecOfDoubles::GetDouble(const std::vector<double>& a) const {
  double out;
  if (a.empty()) return kBad;
  if (Reserved(a, out)) return out;
  const auto [lo, hi] = std::minmax_element(a.begin(), a.end());
  return *hi - *lo;
}

std::string ZqAveOfVecOfDoubles::GetTransformName() const { return "Average value Of a Vec of Doubles"; }
double ZqAveOfVecOfDoubles::GetDouble(const std::vector<double>& a) const {
  double out;
  if (a.empty()) return kBad;
  if (Reserved(a, out)) return out;
  double sum = 0.0;
  for (const double v : a) sum += v;
  return sum / static_cast<double>(a.size());
}

std::string ZqVarianceOfVecOfDoubles::GetTransformName() const { return "Variance Of a Vec of Doubles"; }
double ZqVarianceOfVecOfDoubles::GetDouble(const std::vector<double>& a) const {
  double out;
  // The sample variance, over n - 1: none for fewer than two values.
  if (a.size() < 2) return kBad;
  if (Reserved(a, out)) return out;
  double mean = 0.0;
  for (const double v : a) mean += v;
  mean /= static_cast<double>(a.size());
  double squares = 0.0;
  for (const double v : a) squares += (v - mean) * (v - mean);
  return squares / static_cast<double>(a.size() - 1);
}

// ------------------------------------------------------------ comparisons

std::string ZqArgGreaterThanScalar::GetTransformName() const { return "Arg Greater Than Scalar"; }
std::uint32_t ZqArgGreaterThanScalar::GetUnsigned(double x) const { return Compare(x, 0.0, x > c_); }
std::string ZqArgGreaterEqualToScalar::GetTransformName() const { return "Arg Greater Or Equal To Scalar"; }
std::uint32_t ZqArgGreaterEqualToScalar::GetUnsigned(double x) const { return Compare(x, 0.0, x >= c_); }
std::string ZqArgEqualToScalar::GetTransformName() const { return "Arg Equal To Scalar"; }
std::uint32_t ZqArgEqualToScalar::GetUnsigned(double x) const { return Compare(x, 0.0, x == c_); }
std::string ZqArgLessEqualToScalar::GetTransformName() const { return "Arg Less Or Equal To Scalar"; }
std::uint32_t ZqArgLessEqualToScalar::GetUnsigned(double x) const { return Compare(x, 0.0, x <= c_); }
std::string ZqArgLessThanScalar::GetTransformName() const { return "Arg Less Than Scalar"; }
std::uint32_t ZqArgLessThanScalar::GetUnsigned(double x) const { return Compare(x, 0.0, x < c_); }

// The names of the pairwise comparisons read the other way round from their
// rules (argument two comes first); callers compare the names as texts, so
// they stay exactly so.
std::string ZqArgOneGreaterThanArgTwo::GetTransformName() const { return "Arg Two Greater Than Arg One"; }
std::uint32_t ZqArgOneGreaterThanArgTwo::GetUnsigned(double a, double b) const { return Compare(a, b, a > b); }
std::string ZqArgOneGreaterEqualToArgTwo::GetTransformName() const { return "Arg Two Greater Or Equal To Arg One"; }
std::uint32_t ZqArgOneGreaterEqualToArgTwo::GetUnsigned(double a, double b) const { return Compare(a, b, a >= b); }
std::string ZqArgOneEqualToArgTwo::GetTransformName() const { return "Arg Two Equal To Arg One"; }
std::uint32_t ZqArgOneEqualToArgTwo::GetUnsigned(double a, double b) const { return Compare(a, b, a == b); }
std::string ZqArgOneLessEqualToArgTwo::GetTransformName() const { return "Arg Two Less Or Equal To Arg One"; }
std::uint32_t ZqArgOneLessEqualToArgTwo::GetUnsigned(double a, double b) const { return Compare(a, b, a <= b); }
std::string ZqArgOneLessThanArgTwo::GetTransformName() const { return "Arg Two Less Than Arg One"; }
std::uint32_t ZqArgOneLessThanArgTwo::GetUnsigned(double a, double b) const { return Compare(a, b, a < b); }

}  // namespace Varimo
