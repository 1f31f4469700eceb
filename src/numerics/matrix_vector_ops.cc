// Vector operations of the matrix layer.
#include <iomanip>
#include <sstream>
#include <utility>

#include "matrix_support.h"
#include "varimo/numerics/matrix.h"

namespace Varimo {

using namespace MatrixDetail;

ZqStatModelResult ZqDotProductOfVectors(unsigned long n, const std::vector<double>& a, const std::vector<double>& b,
                                        double& out) {
  out = kBadDouble;
  ZqStatModelResult result = CheckVectorLengths("ZqDotProductOfVectors", n, {&a, &b});
  if (result.NotSuccessful()) return result;
  out = ViewVector(a).dot(ViewVector(b));
  return result;
}

ZqStatModelResult ZqVectorElementwiseSumAccumulate(unsigned long n, const std::vector<double>& a,
                                                   std::vector<double>& acc) {
  ZqStatModelResult result = CheckVectorLengths("ZqVectorElementwiseSumAccumulate", n, {&a, &acc});
  if (result.NotSuccessful()) return result;
  ViewVector(acc) += ViewVector(a);
  return result;
}

ZqStatModelResult ZqVectorSaxpy(unsigned long n, double alpha, const std::vector<double>& x,
                                std::vector<double>& acc) {
  ZqStatModelResult result = CheckVectorLengths("ZqVectorSaxpy", n, {&x, &acc});
  if (result.NotSuccessful()) return result;
  ViewVector(acc) += alpha * ViewVector(x);
  return result;
}

ZqStatModelResult ZqVectorElementwiseProductAccumulate(unsigned long n, const std::vector<double>& a,
                                                       std::vector<double>& acc) {
  ZqStatModelResult result = CheckVectorLengths("ZqVectorElementwiseProductAccumulate", n, {&a, &acc});
  if (result.NotSuccessful()) return result;
  ViewVector(acc).array() *= ViewVector(a).array();
  return result;
}

ZqStatModelResult ZqScalarTimesVector(unsigned long n, double alpha, const std::vector<double>& x,
                                      std::vector<double>& out) {
  ZqStatModelResult result = CheckVectorLengths("ZqScalarTimesVector", n, {&x});
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  // Built aside so that out may be x itself.
  std::vector<double> product(n);
  ViewVector(product) = alpha * ViewVector(x);
  out = std::move(product);
  return result;
}

ZqStatModelResult ZqDifferenceBetweenVectors(unsigned long n, const std::vector<double>& a,
                                             const std::vector<double>& b, std::vector<double>& out) {
  ZqStatModelResult result = CheckVectorLengths("ZqDifferenceBetweenVectors", n, {&a, &b});
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> difference(n);
  ViewVector(difference) = ViewVector(a) - ViewVector(b);
  out = std::move(difference);
  return result;
}

ZqStatModelResult ZqVectorVectorTranspose(unsigned long n, const std::vector<double>& v, std::vector<double>& out) {
  ZqStatModelResult result = CheckVectorLengths("ZqVectorVectorTranspose", n, {&v});
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> outer(n * n);
  ViewMatrix(outer, n).noalias() = ViewVector(v) * ViewVector(v).transpose();
  out = std::move(outer);
  return result;
}

ZqStatModelResult ZqGetVecElementFromIndex(unsigned long n, const std::vector<double>& v, unsigned long index,
                                           double& out) {
  static constexpr const char* kName = "ZqGetVecElementFromIndex";
  out = kBadDouble;
  // A single element stands for a constant vector of any length.
  if (v.size() != 1) {
    ZqStatModelResult result = CheckVectorLengths(kName, n, {&v});
    if (result.NotSuccessful()) return result;
  }
  ZqStatModelResult result = CheckIndex(kName, n, index, " bigger than dimension: ");
  if (result.NotSuccessful()) return result;
  out = v.size() == 1 ? v[0] : v[index];
  return result;
}

ZqStatModelResult ZqGetVecOfVecElementsFromVecOfIndices(unsigned long n, const std::vector<double>& v,
                                                        const std::vector<unsigned long>& indices,
                                                        std::vector<double>& out) {
  static constexpr const char* kName = "ZqGetVecOfVecElementsFromVecOfIndices";
  ZqStatModelResult result = CheckVectorLengths(kName, n, {&v});
  if (result.IsSuccessful()) result = CheckIndices(kName, n, indices);
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> picked;
  picked.reserve(indices.size());
  for (unsigned long index : indices) picked.push_back(v[index]);
  out = std::move(picked);
  return result;
}

std::string ZqPrintVectorDoubles(const std::string& name, const std::vector<double>& v, int precision) {
  std::ostringstream text;
  if (precision > 0) text << std::setprecision(precision);
  text << "Values of vector " << name;
  for (double value : v) text << ' ' << value;
  return text.str();
}

}  // namespace Varimo
