// A molecule model with what it was made from: the settings that build a
// ZqMolKrige, the trained model, and the records it was trained on, in
// order. This is what a program or a notebook keeps, saves and loads
// (varimo/mol/mol_model_file.h), cross-validates
// (varimo/mol/mol_cross_validation.h) and predicts with
// (varimo/mol/mol_predict.h).
//
//   Varimo::ZqMolModelSettings settings;
//   settings.numLocal = 50;
//   Varimo::ZqMolModel model(settings);
//   for (std::size_t i = 0; i < mols.size(); ++i) model.AddTraining(*mols[i], pIC50[i]);
//   if (model.Train()) Varimo::ZqSaveMolModel("pic50.vkm", model, error);
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "varimo/krige/krige_base.h"
#include "varimo/mol/krige_distance_options.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/platform/molkit/molecule.h"

namespace Varimo {

// What makes a model besides its records.
struct ZqMolModelSettings {
  // The fingerprints of the default distance.
  ZqDefaultKrigeDistanceOptions fingerprint;
  // Neighbours per query; 0 for a global model.
  unsigned int numLocal = 0;
  // Local models only: a query that is a training molecule leaves itself
  // (and its copies) out of its neighbours; and the number of variogram
  // pairs above which the variogram comes from a sample of pairs (0: the
  // library's default).
  bool predictTraining = false;
  unsigned int maxVariogramSize = 0;
  // The SD data fields whose values are the drift of universal kriging;
  // none for ordinary kriging.
  std::vector<std::string> drift;
  // The candidate kernel to fit, by its name ("Spherical", "Power(4.000)");
  // empty to fit every candidate and keep the best that trains.
  std::string kernel;
  // How the kernels' parameters are found: fitted to the variogram, or by
  // the likelihood of the training responses (global models only; the
  // candidates ranked by likelihood instead of by their fit, and without a
  // named kernel only those that are covariances on molecules: the
  // exponential and two Student t kernels, ZqLikelihoodCandidates).
  ZqKernelFit fit = ZqKernelFit::Variogram;
  // The name of the response, for reports; may be empty.
  std::string responseName;
};

// The untrained ZqMolKrige the settings describe. A drift field reads as a
// number from the molecule's SD data.
std::unique_ptr<ZqMolKrige> ZqMakeMolKrige(const ZqMolModelSettings& settings);

// Whether `name` is a candidate kernel's name (ZqGetKrigeKernels).
bool ZqIsKrigeKernelName(const std::string& name);

// The molecules of a file that can train a model on the SD field
// `response`: those whose field reads as a finite number and that have a
// heavy atom, with their values. The others are left out with a message
// in `errors` naming their record ("record N (name): ..."), `records`
// holding each molecule's record number, parallel to `mols`. Null
// molecules (records that could not be read) are skipped silently.
struct ZqMolTrainingRecords {
  std::vector<const Molkit::ZqMolBase*> mols;
  std::vector<double> responses;
  std::vector<std::size_t> indices;  // into the molecules given
};
ZqMolTrainingRecords ZqSelectMolTraining(const std::vector<const Molkit::ZqMolBase*>& mols,
                                         const std::vector<std::size_t>& records, const std::string& response,
                                         std::vector<std::string>& errors);

// A drift field of a molecule as the models read it, when it is a finite
// number; nothing otherwise.
std::optional<double> ZqReadDriftField(const Molkit::ZqMolBase& mol, const std::string& tag);

// "record N (name)", or "record N" without a name: how messages name the
// records of a file, counted from 1.
std::string ZqDescribeRecord(std::size_t record, const std::string& name);

class ZqMolModel {
 public:
  explicit ZqMolModel(ZqMolModelSettings settings);
  ZqMolModel(ZqMolModel&&) noexcept;
  ZqMolModel& operator=(ZqMolModel&&) noexcept;
  ~ZqMolModel();

  const ZqMolModelSettings& GetSettings() const { return settings_; }

  // Adds a copy of the molecule; false, adding nothing, for a response that
  // is not finite or a molecule that lacks a drift field. The model must
  // be trained again afterwards.
  bool AddTraining(const Molkit::ZqMolBase& mol, double response);
  // The same with the molecule's fingerprint made already (with the
  // settings' options), as a model file keeps it.
  bool AddTraining(const Molkit::ZqMolBase& mol, const Printex::ZqVseprFingerprint& fp, double response);
  // Fits the kernels (or the one named in the settings) and trains; false,
  // with the engine's warnings, when no kernel trains, and false with an
  // error when the drift fields cannot make a drift (one named twice, or
  // one with the same value in every record) or the likelihood fit is asked
  // of a local model.
  bool Train();
  // Trains with a saved state (ZqKrigeBase::TrainWithKernels), fitting
  // nothing; false, with an error, when the settings ask a local model for
  // the likelihood fit.
  bool TrainWithKernels(const ZqKrigeTrainedKernels& trained);
  bool IsTrained() const { return trained_; }

  // The model itself; its const calls predict (concurrently, once trained).
  const ZqMolKrige& GetKrige() const { return *krige_; }
  // The kernel a global model predicts with, or the first a local model
  // tries; untrained, the kernel a trained copy would have.
  ZqKrigeKernel GetKernel() const;
  ZqKrigeTrainedKernels GetTrainedKernels() const { return krige_->GetTrainedKernels(); }

  // For a query the model cannot predict: the first valid result of the
  // kernels its variogram (or, fitted by likelihood, the likelihood over
  // its default candidates, all of them below a named kernel that is not
  // one) ranks below its own, each trained once on the same
  // records when first needed (a global model's other candidates); an
  // invalid result when none gives one, or for a local model, which walks
  // its kernels for every query already. May run concurrently.
  ZqMolKrigeResult GetFallbackResult(const Molkit::ZqMolBase& mol) const;

  // The records, in the order added: the copies kept, and their responses.
  std::size_t GetNumRecords() const { return mols_.size(); }
  const Molkit::ZqMolBase& GetRecord(std::size_t i) const { return *mols_[i]; }
  double GetResponse(std::size_t i) const { return responses_[i]; }
  const std::vector<double>& GetResponses() const { return responses_; }
  // The mean of the responses: the baseline of the atom contributions that
  // the program and the reports show. NaN without records.
  double GetMeanResponse() const;
  // The smallest and the largest value of each drift field over the
  // records, in the order of the settings' drift; empty without a drift.
  const std::vector<std::pair<double, double>>& GetDriftRanges() const { return driftRanges_; }

 private:
  void WidenDriftRanges(const Molkit::ZqMolBase& mol);
  std::string DriftProblem() const;

  class Fallbacks;

  ZqMolModelSettings settings_;
  std::unique_ptr<ZqMolKrige> krige_;
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols_;
  std::vector<double> responses_;
  std::vector<std::pair<double, double>> driftRanges_;
  bool trained_ = false;
  std::unique_ptr<Fallbacks> fallbacks_;  // made anew whenever the model trains
};

// Why no kernel trains on the model's records, in words for a message: too
// few records, equal responses, a response too large to square, one
// molecule only; else the last of `warnings` (those Train reported), else
// that no candidate (or the one kernel of the settings, by name) gives a
// covariance matrix that factorises.
std::string ZqExplainNoKernel(const ZqMolModel& model, const std::vector<std::string>& warnings);

}  // namespace Varimo
