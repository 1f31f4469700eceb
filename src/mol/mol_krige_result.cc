#include <cmath>
#include <utility>

#include "mol_krige_result_impl.h"
#include "varimo/platform/corvane/generic_data.h"
#include "varimo/platform/molkit/molecule.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

constexpr double kErrorValue = 1.7976931348623157e308;

const Molkit::ZqMolBase& EmptyMolecule() {
  static const Molkit::ZqMolBase empty;
  return empty;
}

}  // namespace

ZqMolKrigeResultImpl::ZqMolKrigeResultImpl(ZqKrigeResult result,
                                           std::shared_ptr<const ZqMolKrigeTrainingView> training,
                                           ZqVariogram variogram)
    : result_(std::move(result)),
      training_(std::move(training)),
      variogram_(std::move(variogram)),
      response_(ZqCalculateResponse(result_, kErrorValue)),
      variance_(ZqCalculateVariance(result_, kErrorValue)),
      fullVariance_(ZqCalculateFullVariance(result_, kErrorValue)) {}

const Molkit::ZqMolBase& ZqMolKrigeResultImpl::GetMol(unsigned int id) const {
  if (id >= training_->mols.size() || !training_->mols[id]) return EmptyMolecule();
  return *training_->mols[id];
}

const ZqMolKrigeResultImpl::Sides& ZqMolKrigeResultImpl::GetFP(double baseline, bool keep, Sides& scratch) const {
  if (const auto found = sides_.find(baseline); found != sides_.end()) return found->second;
  Sides sides;
  for (unsigned int i = 0; i < result_.GetNumElements(); ++i) {
    const double w = result_.GetWeight(i) * ((result_.GetBaselineResponse() + result_.GetResponse(i)) - baseline);
    const auto* stored = GetMol(result_.GetID(i)).GetData<Printex::ZqVseprFingerprint>(ZqTrainingFingerprintTag());
    Printex::ZqVseprFingerprint fp = stored ? *stored : Printex::ZqVseprFingerprint();
    // Weights in [0, 1e-10] count on the lower side, negated.
    if (w > 1e-10) {
      sides.first += fp.Scale(w);
      sides.firstTotal += w;
    } else {
      sides.second += fp.Scale(-w);
      sides.secondTotal += -w;
    }
  }
  // Each side is scaled by the opposite side's total.
  if (sides.secondTotal > 0) sides.first.Scale(1.0 / sides.secondTotal);
  if (sides.firstTotal > 0) sides.second.Scale(1.0 / sides.firstTotal);
  // What both sides share explains neither direction.
  Printex::ZqVseprFingerprint shared = sides.first & sides.second;
  shared.Scale(-1.0);
  sides.first = sides.first + shared;
  sides.second = sides.second + shared;
  if (keep) return sides_.emplace(baseline, std::move(sides)).first->second;
  scratch = std::move(sides);
  return scratch;
}

std::vector<double> ZqMolKrigeResultImpl::GetAtomContributions(const Molkit::ZqMolBase& mol, double baseline,
                                                               bool keep) const {
  Sides scratch;
  const Sides& sides = GetFP(baseline, keep, scratch);
  std::vector<double> contributions(mol.GetNumAtoms(), 0.0);
  const double t1 = sides.secondTotal;
  const double t2 = sides.firstTotal;
  if (!(t1 + t2 > 1e-8)) return contributions;
  const Printex::ZqVseprOptions& options =
      sides.first.GetVolume() > 0 ? sides.first.GetOptions() : sides.second.GetOptions();
  const std::vector<Printex::ZqVseprFingerprint> atoms = Printex::ZqMakeVseprAtomFingerprints(mol, options);
  std::vector<double> p(atoms.size(), 0.0);
  std::vector<double> n(atoms.size(), 0.0);
  double sumP = 0.0;
  double sumN = 0.0;
  for (std::size_t a = 0; a < atoms.size(); ++a) {
    if (Molkit::ZqIsHydrogen(mol.GetAtom(a))) continue;
    const double volume = atoms[a].GetVolume();
    if (!(volume > 0)) continue;
    p[a] = (sides.first & atoms[a]).GetVolume() / volume;
    n[a] = (sides.second & atoms[a]).GetVolume() / volume;
    sumP += p[a];
    sumN += n[a];
  }
  for (std::size_t a = 0; a < atoms.size(); ++a) {
    if (Molkit::ZqIsHydrogen(mol.GetAtom(a))) continue;
    const double fp = sumP > 1e-8 ? p[a] / sumP : 0.0;
    const double fn = sumN > 1e-8 ? n[a] / sumN : 0.0;
    contributions[a] = t1 > t2 ? fp - (t2 / t1) * fn : (t1 / t2) * fp - fn;
  }
  return contributions;
}

ZqMolKrigeResult::ZqMolKrigeResult() : impl_(std::make_unique<ZqMolKrigeResultImpl>()) {}
ZqMolKrigeResult::ZqMolKrigeResult(std::unique_ptr<ZqMolKrigeResultImpl> impl) : impl_(std::move(impl)) {}
ZqMolKrigeResult::ZqMolKrigeResult(const ZqMolKrigeResult& other)
    : impl_(std::make_unique<ZqMolKrigeResultImpl>(*other.impl_)) {}
ZqMolKrigeResult& ZqMolKrigeResult::operator=(const ZqMolKrigeResult& other) {
  if (this != &other) impl_ = std::make_unique<ZqMolKrigeResultImpl>(*other.impl_);
  return *this;
}
ZqMolKrigeResult::ZqMolKrigeResult(ZqMolKrigeResult&&) noexcept = default;
ZqMolKrigeResult& ZqMolKrigeResult::operator=(ZqMolKrigeResult&&) noexcept = default;
ZqMolKrigeResult::~ZqMolKrigeResult() = default;

bool ZqMolKrigeResult::Valid() const { return impl_->GetResult().Valid(); }
double ZqMolKrigeResult::GetResponse() const { return impl_->GetResponse(); }
double ZqMolKrigeResult::GetVariance() const { return impl_->GetVariance(); }
double ZqMolKrigeResult::GetFullVariance() const { return impl_->GetFullVariance(); }
unsigned int ZqMolKrigeResult::GetNumElements() const { return impl_->GetResult().GetNumElements(); }
double ZqMolKrigeResult::GetElementDistance(unsigned int i) const { return impl_->GetResult().GetDistance(i); }
double ZqMolKrigeResult::GetElementWeight(unsigned int i) const { return impl_->GetResult().GetWeight(i); }
bool ZqMolKrigeResult::GetElementIsUnmeasured(unsigned int i) const {
  return impl_->GetResult().GetResponseIsUnmeasured(i);
}
double ZqMolKrigeResult::GetElementResponse(unsigned int i) const {
  return impl_->GetResult().GetResponse(i) + impl_->GetResult().GetBaselineResponse();
}
const Molkit::ZqMolBase& ZqMolKrigeResult::GetElement(unsigned int i) const {
  return impl_->GetMol(impl_->GetResult().GetID(i));
}
bool ZqMolKrigeResult::GetHasMultipleCopies(unsigned int i) const {
  return impl_->GetResult().GetHasMultipleCopies(i);
}
unsigned int ZqMolKrigeResult::GetNumCopies(unsigned int i) const { return impl_->GetResult().GetNumCopies(i); }
double ZqMolKrigeResult::GetElementResponse(unsigned int i, unsigned int copy) const {
  return impl_->GetResult().GetResponse(i, copy);
}
bool ZqMolKrigeResult::GetElementIsUnmeasured(unsigned int i, unsigned int copy) const {
  return impl_->GetResult().GetResponseIsUnmeasured(i, copy);
}
const Molkit::ZqMolBase& ZqMolKrigeResult::GetElement(unsigned int i, unsigned int copy) const {
  return impl_->GetMol(impl_->GetResult().GetID(i, copy));
}
ZqKrigeKernel ZqMolKrigeResult::GetKernel() const { return impl_->GetResult().GetKernel(); }
ZqVariogram ZqMolKrigeResult::GetVariogram() const { return impl_->GetVariogram(); }
Corvane::ZqIter<const double> ZqMolKrigeResult::GetTrainingResponses(bool includeUnmeasured) const {
  const ZqMolKrigeTrainingView& training = impl_->GetTraining();
  return Corvane::ZqMakeOwnedIter<const double>(includeUnmeasured ? training.allResponses
                                                                  : training.measuredResponses);
}
const ZqKrigeResult& ZqMolKrigeResult::GetKrigeResult() const { return impl_->GetResult(); }

double ZqMolKrigeResult::GetAtomContribution(const Molkit::ZqAtomBase& atom) {
  return GetAtomContribution(atom, impl_->GetResponse());
}
double ZqMolKrigeResult::GetAtomContribution(const Molkit::ZqAtomBase& atom, double baseline) {
  return impl_->GetAtomContributions(atom.GetParent(), baseline, true)[atom.GetIdx()];
}
double ZqMolKrigeResult::GetAtomContribution(const Molkit::ZqAtomBase& atom) const {
  return GetAtomContribution(atom, impl_->GetResponse());
}
double ZqMolKrigeResult::GetAtomContribution(const Molkit::ZqAtomBase& atom, double baseline) const {
  return impl_->GetAtomContributions(atom.GetParent(), baseline, false)[atom.GetIdx()];
}
std::vector<double> ZqMolKrigeResult::GetAtomContributions(const Molkit::ZqMolBase& mol) {
  return GetAtomContributions(mol, impl_->GetResponse());
}
std::vector<double> ZqMolKrigeResult::GetAtomContributions(const Molkit::ZqMolBase& mol, double baseline) {
  return impl_->GetAtomContributions(mol, baseline, true);
}

double ZqProbabilityLessThan(const ZqMolKrigeResult& result, double x, ZqMolVariance kind) {
  const double response = result.GetResponse();
  const double variance = kind == ZqMolVariance::kFull ? result.GetFullVariance() : result.GetVariance();
  // At variance 0 the law is a point mass at the response; the erf form
  // would divide 0 by 0 at the point itself.
  if (variance == 0.0) return x < response ? 0.0 : (x > response ? 1.0 : 0.5);
  return (Numarc::Zqerf((x - response) / std::sqrt(2.0 * variance)) + 1.0) * 0.5;
}

double ZqProbabilityGreaterThan(const ZqMolKrigeResult& result, double x, ZqMolVariance kind) {
  return 1.0 - ZqProbabilityLessThan(result, x, kind);
}

double ZqProbabilityBetween(const ZqMolKrigeResult& result, double a, double b, ZqMolVariance kind) {
  if (a > b) std::swap(a, b);
  return ZqProbabilityLessThan(result, b, kind) - ZqProbabilityLessThan(result, a, kind);
}

}  // namespace Varimo
