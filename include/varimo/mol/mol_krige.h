// Kriging on molecules: what a chemist calls. A model takes molecules with
// measured values, trains, and returns for a new molecule its prediction,
// the variance, the training molecules that carry the prediction, and how
// much each atom pushes the prediction up or down.
//
//   Varimo::ZqMolKrige model{Varimo::ZqGlobalKrigeOptions()};
//   for (auto& mol : training) model.AddTraining(*mol, pIC50(*mol));
//   model.Train();
//   Varimo::ZqMolKrigeResult result = model.GetResult(query);
//   if (result.Valid()) {
//     double y = result.GetResponse(), v = result.GetVariance();
//     double p = Varimo::ZqProbabilityGreaterThan(result, 7.0);
//     double c = result.GetAtomContribution(query.GetAtom(3));
//   }
//
// The default distance is one minus the Tanimoto coefficient of Vsepr
// fingerprints; a caller's distance on molecules takes the custom route
// (call its PrepMol on every molecule first when it has one). With a
// property list the model is universal kriging with those properties as
// drift; molecules lacking them are refused. Simple kriging is not offered
// here: the molecules' mean is rarely known.
#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "varimo/krige/krige_base.h"
#include "varimo/krige/krige_kernels.h"
#include "varimo/krige/krige_options.h"
#include "varimo/krige/krige_result.h"
#include "varimo/krige/training_container.h"
#include "varimo/krige/variogram.h"
#include "varimo/mol/krige_distance_options.h"
#include "varimo/platform/corvane/iter.h"
#include "varimo/platform/molkit/mol_property.h"
#include "varimo/platform/molkit/molecule.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Varimo {

class ZqMolKrigeResultImpl;
class ZqVseprPropFP;

// One prediction with what explains it. Copies are deep; a result keeps
// the training molecules it refers to alive, so it stays valid after its
// model is cleared or destroyed.
class ZqMolKrigeResult {
 public:
  // Empty and not valid.
  ZqMolKrigeResult();
  explicit ZqMolKrigeResult(std::unique_ptr<ZqMolKrigeResultImpl> impl);
  ZqMolKrigeResult(const ZqMolKrigeResult& other);
  ZqMolKrigeResult& operator=(const ZqMolKrigeResult& other);
  ZqMolKrigeResult(ZqMolKrigeResult&&) noexcept;
  ZqMolKrigeResult& operator=(ZqMolKrigeResult&&) noexcept;
  ~ZqMolKrigeResult();

  bool Valid() const;
  // The largest double when not valid.
  double GetResponse() const;
  // The kriging variance.
  double GetVariance() const;
  // The full kriging variance, with the variance of estimating the mean
  // and the drift (ZqCalculateFullVariance): the one for intervals of a
  // universal model far outside its drift's training range.
  double GetFullVariance() const;

  // The training elements that carry the prediction: unique fingerprints
  // (or molecules), each with its distance to the query, its weight, and
  // its response (raw, also for simple kriging).
  unsigned int GetNumElements() const;
  double GetElementDistance(unsigned int i) const;
  double GetElementWeight(unsigned int i) const;
  bool GetElementIsUnmeasured(unsigned int i) const;
  double GetElementResponse(unsigned int i) const;
  // The training molecule as it was added (a copy, carrying its
  // fingerprint); an empty molecule for an element without one.
  const Molkit::ZqMolBase& GetElement(unsigned int i) const;
  // Training molecules that share one element's fingerprint.
  bool GetHasMultipleCopies(unsigned int i) const;
  unsigned int GetNumCopies(unsigned int i) const;
  double GetElementResponse(unsigned int i, unsigned int copy) const;
  bool GetElementIsUnmeasured(unsigned int i, unsigned int copy) const;
  const Molkit::ZqMolBase& GetElement(unsigned int i, unsigned int copy) const;

  ZqKrigeKernel GetKernel() const;
  ZqVariogram GetVariogram() const;
  // The model's training responses when the prediction was made, in the
  // order added; without the unmeasured ones unless asked for.
  Corvane::ZqIter<const double> GetTrainingResponses(bool includeUnmeasured) const;
  const ZqKrigeResult& GetKrigeResult() const;

  // How much the atom pushes the prediction above (positive) or below
  // (negative) the baseline, the prediction itself by default: the share
  // of the atom's paths in the weighted fingerprints of the neighbours
  // above and below the baseline. The non-const calls keep the
  // neighbours' fingerprints for the next atom; on one result they must
  // not run concurrently.
  double GetAtomContribution(const Molkit::ZqAtomBase& atom);
  double GetAtomContribution(const Molkit::ZqAtomBase& atom, double baseline);
  double GetAtomContribution(const Molkit::ZqAtomBase& atom) const;
  double GetAtomContribution(const Molkit::ZqAtomBase& atom, double baseline) const;
  // The contribution of every atom of `mol`, by atom index (0 for
  // hydrogens), for the cost of one atom.
  std::vector<double> GetAtomContributions(const Molkit::ZqMolBase& mol);
  std::vector<double> GetAtomContributions(const Molkit::ZqMolBase& mol, double baseline);

 private:
  std::unique_ptr<ZqMolKrigeResultImpl> impl_;
};

// Which variance spreads a prediction: the kriging variance, everywhere
// the default, or the full one (GetFullVariance).
enum class ZqMolVariance { kKriging, kFull };

// The chance that the true value lies below x, above x, or between a and b
// (in either order), for a normal law of the result's mean and variance. At
// variance 0 (a query on a training element of a model without nugget) the
// law is a point mass at the response: below it 0, above it 1, and 1/2 at
// the response itself, the limit the normal law gives there; never NaN.
double ZqProbabilityLessThan(const ZqMolKrigeResult& result, double x,
                             ZqMolVariance variance = ZqMolVariance::kKriging);
double ZqProbabilityGreaterThan(const ZqMolKrigeResult& result, double x,
                                ZqMolVariance variance = ZqMolVariance::kKriging);
double ZqProbabilityBetween(const ZqMolKrigeResult& result, double a, double b,
                            ZqMolVariance variance = ZqMolVariance::kKriging);

// The implementations behind ZqMolKrige.
class ZqMolKrigeImpl {
 public:
  virtual ~ZqMolKrigeImpl() = default;
  virtual bool AddTraining(const Molkit::ZqMolBase& mol, double response) = 0;
  virtual bool AddTraining(const Molkit::ZqMCMolBase& mol, double response) = 0;
  virtual bool AddUnmeasuredTraining(const Molkit::ZqMolBase& mol, double response) = 0;
  virtual bool AddUnmeasuredTraining(const Molkit::ZqMCMolBase& mol, double response) = 0;
  virtual bool Train() = 0;
  virtual bool Train(ZqKrigeKernelBase& kernel) = 0;
  virtual bool TrainFixed(const ZqKrigeKernelBase& kernel) = 0;
  // See ZqTrainByLikelihood (varimo/krige/likelihood_training.h).
  virtual bool TrainByLikelihood(const std::vector<const ZqKrigeKernelBase*>& candidates,
                                 std::vector<ZqKrigeKernel>* ranking) = 0;
  virtual ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) = 0;
  virtual ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) const = 0;
  virtual ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) = 0;
  virtual ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) const = 0;
  virtual ZqVariogram GetVariogram() = 0;
  virtual ZqVariogram GetVariogram() const = 0;
  // The prediction alone (see ZqMolKrige::PredictMean); this one takes it
  // from the full result.
  virtual std::optional<double> PredictMean(const Molkit::ZqMolBase& mol) const {
    const ZqMolKrigeResult result = GetResult(mol);
    return result.Valid() ? std::optional<double>(result.GetResponse()) : std::nullopt;
  }
  virtual void Clear() = 0;
  virtual ZqMolKrigeImpl* CreateCopy() const = 0;
  // The kernel of a trained model (a local model's best ranked one); the
  // const call trains a copy when needed.
  virtual ZqKrigeKernel GetKernel() = 0;
  virtual ZqKrigeKernel GetKernel() const = 0;
  // A training molecule with its fingerprint made already (of the model's
  // fingerprint options); false for a model whose distance is not on
  // fingerprints.
  virtual bool AddTrainingWithFingerprint(const Molkit::ZqMolBase& mol, const Printex::ZqVseprFingerprint& fp,
                                          double response) = 0;
  // The training state as kernels, and its restoration (see ZqKrigeBase).
  virtual ZqKrigeTrainedKernels GetTrainedKernels() const = 0;
  virtual bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) = 0;
  // The engine's model on fingerprints, and the element of a query in it
  // (its fingerprint with its drift); null and false for a model on a
  // caller's distance, and false for a molecule without the drift.
  virtual const ZqKrigeBase<ZqVseprPropFP>* GetFingerprintModel() const { return nullptr; }
  virtual bool MakeFingerprint(const Molkit::ZqMolBase& /*mol*/, ZqVseprPropFP& /*fp*/) const { return false; }
};

using ZqMolDistanceFxn = ZqKrigeDistanceFxn<Molkit::ZqMolBase>;

class ZqMolKrige {
 public:
  // Vsepr distance, ordinary kriging.
  explicit ZqMolKrige(const ZqGlobalKrigeOptions& options);
  ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const ZqGlobalKrigeOptions& options);
  explicit ZqMolKrige(const ZqLocalKrigeOptions& options);
  ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const ZqLocalKrigeOptions& options);
  // Vsepr distance, universal kriging with the list's properties as drift.
  ZqMolKrige(const Molkit::ZqMolPropertyList& drift, const ZqGlobalKrigeOptions& options);
  ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const Molkit::ZqMolPropertyList& drift,
             const ZqGlobalKrigeOptions& options);
  ZqMolKrige(const Molkit::ZqMolPropertyList& drift, const ZqLocalKrigeOptions& options);
  ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const Molkit::ZqMolPropertyList& drift,
             const ZqLocalKrigeOptions& options);
  // The caller's distance, ordinary or universal kriging.
  ZqMolKrige(const ZqMolDistanceFxn& distance, const ZqGlobalKrigeOptions& options);
  ZqMolKrige(const ZqMolDistanceFxn& distance, const ZqLocalKrigeOptions& options);
  ZqMolKrige(const ZqMolDistanceFxn& distance, const Molkit::ZqMolPropertyList& drift,
             const ZqGlobalKrigeOptions& options);
  ZqMolKrige(const ZqMolDistanceFxn& distance, const Molkit::ZqMolPropertyList& drift,
             const ZqLocalKrigeOptions& options);
  ZqMolKrige(const ZqMolKrige& other);
  ZqMolKrige& operator=(const ZqMolKrige& other);
  ~ZqMolKrige();

  // False, adding nothing, for a response the engine refuses (NaN) or a
  // molecule without the drift properties.
  bool AddTraining(const Molkit::ZqMolBase& mol, double response) { return impl_->AddTraining(mol, response); }
  bool AddTraining(const Molkit::ZqMCMolBase& mol, double response) { return impl_->AddTraining(mol, response); }
  // A bound rather than a measurement (see ZqKrigeBase).
  bool AddUnmeasuredTraining(const Molkit::ZqMolBase& mol, double response) {
    return impl_->AddUnmeasuredTraining(mol, response);
  }
  bool AddUnmeasuredTraining(const Molkit::ZqMCMolBase& mol, double response) {
    return impl_->AddUnmeasuredTraining(mol, response);
  }
  // As AddTraining, with the molecule's fingerprint made already, as a
  // model file keeps it: false, adding nothing, for a fingerprint of other
  // options or a model on a caller's distance.
  bool AddTrainingWithFingerprint(const Molkit::ZqMolBase& mol, const Printex::ZqVseprFingerprint& fp,
                                  double response) {
    return impl_->AddTrainingWithFingerprint(mol, fp, response);
  }
  bool Train() { return impl_->Train(); }
  bool Train(ZqKrigeKernelBase& kernel) { return impl_->Train(kernel); }
  bool TrainFixed(const ZqKrigeKernelBase& kernel) { return impl_->TrainFixed(kernel); }
  // Trains a global model with the kernel of largest likelihood among
  // `candidates` (when empty, those that are covariances on molecules:
  // ZqLikelihoodCandidates(ZqDistanceClass::NegativeType)) that factorises, `ranking` receiving the
  // fitted candidates from the largest likelihood down; false, with a
  // warning, for a local model, data that cannot be fitted, or no kernel
  // that trains (ZqTrainByLikelihood).
  bool TrainByLikelihood(const std::vector<const ZqKrigeKernelBase*>& candidates = {},
                         std::vector<ZqKrigeKernel>* ranking = nullptr) {
    return impl_->TrainByLikelihood(candidates, ranking);
  }
  // Trains first when needed. The const calls leave the model as it is and
  // may run concurrently on a trained model.
  ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) { return impl_->GetResult(mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) const { return std::as_const(*impl_).GetResult(mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) { return impl_->GetResult(mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) const { return std::as_const(*impl_).GetResult(mol); }
  // The prediction without its variance, neighbours or contributions, for
  // ranking large libraries: a trained global model answers in one pass
  // over the training set instead of a solve per query, equal to
  // GetResult's response up to rounding. Nothing when there is no
  // prediction; unlike GetResult, a query whose kriging variance would fall
  // outside the kernel's range still gets its number, since that variance
  // is never computed. Const and safe to call concurrently on a trained
  // model.
  std::optional<double> PredictMean(const Molkit::ZqMolBase& mol) const { return impl_->PredictMean(mol); }
  ZqVariogram GetVariogram() { return impl_->GetVariogram(); }
  ZqVariogram GetVariogram() const { return std::as_const(*impl_).GetVariogram(); }
  ZqKrigeKernel GetKernel() { return impl_->GetKernel(); }
  ZqKrigeKernel GetKernel() const { return std::as_const(*impl_).GetKernel(); }
  // What a trained model predicts with, as it can be saved; restoring it on
  // a model made the same way with the same records in the same order fits
  // nothing and predicts the same to the last bit.
  ZqKrigeTrainedKernels GetTrainedKernels() const { return impl_->GetTrainedKernels(); }
  bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) { return impl_->TrainWithKernels(trained); }
  // Removes the training data; results made before stay valid.
  void Clear() { impl_->Clear(); }
  // The engine's model behind a Vsepr model, whose elements are the
  // molecules' fingerprints with their drift (krige_vsepr.h), and the
  // element of a molecule: what batch selection and the applicability
  // domain work on. Null, and false, for a model on a caller's distance;
  // false also for a molecule without the drift or heavy atoms.
  const ZqKrigeBase<ZqVseprPropFP>* GetFingerprintModel() const { return impl_->GetFingerprintModel(); }
  bool MakeFingerprint(const Molkit::ZqMolBase& mol, ZqVseprPropFP& fp) const { return impl_->MakeFingerprint(mol, fp); }

 private:
  std::unique_ptr<ZqMolKrigeImpl> impl_;
};

}  // namespace Varimo
