#include "varimo/ranvar/nran_var_types.h"

namespace Varimo {

namespace nZqRanVarDataType {
const char* const RanVarDataTypeName[NumTypes] = {"Unknown Type", "Scalar Double", "Eigen::VectorXd",
                                                  "Eigen::MatrixXd"};
}  // namespace nZqRanVarDataType

namespace nZqRanVarMajorType {
const char* const TypeName[NumTypes] = {"Unknown Major Type", "Common To All Random Variables",
                                        "Null Random Variable", "Univariate Gaussian Random Variable"};
}  // namespace nZqRanVarMajorType

namespace nZqNullRanVarMinorType {
const char* const TypeName[NumTypes] = {"Unknown Minor Type"};
}  // namespace nZqNullRanVarMinorType

namespace nZqAllRanVarsMinorType {
const char* const TypeName[NumTypes] = {"Unknown Minor Type", "Single Observation",
                                        "Vector of Training Observations", "Vector of Testing Observations",
                                        "Vector of Training Observation Weights"};
}  // namespace nZqAllRanVarsMinorType

namespace nZqUniVarGaussRanVarsMinorType {
const char* const TypeName[NumTypes] = {"Unknown Minor Type", "Mean", "Variance", "SampleMean", "SampleVariance"};
}  // namespace nZqUniVarGaussRanVarsMinorType

}  // namespace Varimo
