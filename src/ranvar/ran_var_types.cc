#include "varimo/ranvar/ran_var_types.h"

namespace Varimo {

const char* const ZqPDFType::NameOf[NumTypes] = {
    "Unknown PDF",
    "NullPDF",
    "UniVariate Gaussian",
    "MultiVariate Gaussian",
    "Univariate Students-T",
    "Multivariate Students-T",
    "Gamma",
    "Chi-Squared",
    "Snedecors-F",
    "Beta",
    "Dirichlet",
    "Wishart",
    "LogNormal",
    "Gaussian-Gamma",
    "Gaussian-Wishart",
    "Gumbel",
    "Generalized Extreme Value",
    "Binomial",
    "Multinomial",
    "Poisson",
    "Beta-Binomial",
    "UniVariate Continuous Valued Random Sample",
    "UniVariate Integer Valued Random Sample",
    "MultiVariate Continuous Valued Random Sample",
    "MultiVariate Integer Valued Random Sample",
    "UniVariate Mixture",
    "MultiVariate Mixture",
};

const char* const ZqPackageTypes::NameOf[NumTypes] = {"Unknown Package Type", "Parameters", "Outcomes",
                                                      "Sample Statistics"};

const char* const ZqRanVarDataType::Describe[NumTypes] = {
    "Random Var Data Type is Unknown", "Random Var Data Type is Continuous",
    "Random Var Data Type is Integer Valued", "Random Var Data Type is Discrete"};

const char* const ZqRanVarDimType::Describe[NumTypes] = {
    "Random Var Dimensional Type is Unknown", "Random Var Dimensional Type is Scalar",
    "Random Var Dimensional Type is Vector", "Random Var Dimensional Type is Symmetric Matrix"};

const char* const ZqRanVarConstraintTypes::Describe[NumTypes] = {
    "Random Var Constraint Type is Unknown",
    "Random Var Constraint Type is UnConstrained",
    "Random Var must be Greater Or Equal to Lower Bound",
    "Random Var must be Greater than Lower Bound",
    "Random Var must be Less Or Equal to Upper Bound",
    "Random Var must be Less than Upper Bound",
    "Random Var must be Bounded Above and Below",
    "Random Vector, Elements must be Bounded And Sum to a Constant",
};

}  // namespace Varimo
