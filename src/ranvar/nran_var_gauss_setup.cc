// The variables of a univariate Gaussian in the second generation.
#include <string>

#include "varimo/ranvar/nran_var.h"

namespace Varimo {

namespace {

// Appends a variable named by the convention "<major text>::<minor text>".
template <class Value>
void Append(std::vector<nZqRanVar>& ranVars, std::uint32_t majorType, std::uint32_t minorType,
            const char* const* minorTexts, const ZqCheckRanVarConstraints& constraints, const Value& value) {
  ranVars.emplace_back(majorType, minorType,
                       std::string(nZqRanVarMajorType::TypeName[majorType]) + "::" + minorTexts[minorType],
                       constraints, value);
}

}  // namespace

ZqStatModelResult SetupUniVarGaussianRanVars(std::vector<nZqRanVar>& ranVars, double mean, double variance) {
  const ZqRanVarElemWiseConstraint positive(ZqRanVarConstraintKind::ElementIsPositive);
  ZqStatModelResult result = positive.CheckConstraint(variance);
  if (result.NotSuccessful()) {
    result.AddCallContext("SetupUniVarGaussianRanVars");
    return result;
  }

  constexpr std::size_t kNumRanVars = 8;
  if (ranVars.capacity() < kNumRanVars) ranVars.reserve(kNumRanVars);

  // Lists given explicitly empty accept everything, unlike the default
  // checker, which refuses everything.
  const ZqCheckRanVarConstraints unconstrained({}, {});
  const ZqCheckRanVarConstraints mustBePositive({}, {positive});
  const ZqCheckRanVarConstraints mustBeNonNegative(
      {}, {ZqRanVarElemWiseConstraint(ZqRanVarConstraintKind::ElementIsNonNegative)});

  namespace Gauss = nZqUniVarGaussRanVarsMinorType;
  namespace All = nZqAllRanVarsMinorType;
  constexpr std::uint32_t kGauss = nZqRanVarMajorType::UniVarGaussian;
  constexpr std::uint32_t kAll = nZqRanVarMajorType::CommonToAllRanVars;
  const Eigen::VectorXd none;

  Append(ranVars, kGauss, Gauss::Mean, Gauss::TypeName, unconstrained, mean);
  Append(ranVars, kGauss, Gauss::Variance, Gauss::TypeName, mustBePositive, variance);
  Append(ranVars, kGauss, Gauss::SampleMean, Gauss::TypeName, unconstrained, 0.0);
  Append(ranVars, kGauss, Gauss::SampleVariance, Gauss::TypeName, mustBePositive, 1.0);
  Append(ranVars, kAll, All::SingleObservation, All::TypeName, unconstrained, 0.0);
  Append(ranVars, kAll, All::TrainingObservations, All::TypeName, unconstrained, none);
  Append(ranVars, kAll, All::TestingObservations, All::TypeName, unconstrained, none);
  Append(ranVars, kAll, All::TrainingObservationWeights, All::TypeName, mustBeNonNegative, none);
  return ZqStatModelResult(true);
}

}  // namespace Varimo
