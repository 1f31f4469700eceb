// Shorthands shared by the random-variable and distribution-frame tests.
#pragma once

#include <Eigen/Core>

#include <initializer_list>

#include "result_support.h"
#include "varimo/foundations/stat_model_result.h"

namespace Varimo {
namespace RanVarTest {

using VarimoTest::Report;
using VarimoTest::ResultReport;
using VarimoTest::Success;

namespace F = ZqStatModelFailureType;

inline constexpr double kBad = 1.7976931348623157e308;

inline Eigen::VectorXd Vec(std::initializer_list<double> values) {
  Eigen::VectorXd v(static_cast<Eigen::Index>(values.size()));
  Eigen::Index i = 0;
  for (double x : values) v(i++) = x;
  return v;
}

// A concrete matrix: an Eigen expression would fit both the vector and the
// matrix overloads of the checks.
inline Eigen::MatrixXd Filled(Eigen::Index rows, Eigen::Index cols, double value) {
  return Eigen::MatrixXd::Constant(rows, cols, value);
}

// Equal sizes and elements; Eigen's == alone requires equal sizes.
template <class A, class B>
bool Same(const A& a, const B& b) {
  return a.rows() == b.rows() && a.cols() == b.cols() && a == b;
}

}  // namespace RanVarTest
}  // namespace Varimo
