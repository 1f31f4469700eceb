#include "varimo/mol/mol_model.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

#include "varimo/krige/krige_options.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/mol_property.h"

namespace Varimo {

std::unique_ptr<ZqMolKrige> ZqMakeMolKrige(const ZqMolModelSettings& settings) {
  ZqLocalKrigeOptions local;
  local.SetNumLocal(settings.numLocal).SetPredictTraining(settings.predictTraining);
  if (settings.maxVariogramSize > 0) local.SetMaxVariogramSize(settings.maxVariogramSize);
  if (settings.drift.empty()) {
    if (settings.numLocal > 0) return std::make_unique<ZqMolKrige>(settings.fingerprint, local);
    return std::make_unique<ZqMolKrige>(settings.fingerprint, ZqGlobalKrigeOptions());
  }
  Molkit::ZqMolPropertyPushList drift;
  for (const std::string& tag : settings.drift) drift.Push(Molkit::ZqMolSDDataPropertyFxn(tag));
  if (settings.numLocal > 0) return std::make_unique<ZqMolKrige>(settings.fingerprint, drift, local);
  return std::make_unique<ZqMolKrige>(settings.fingerprint, drift, ZqGlobalKrigeOptions());
}

bool ZqIsKrigeKernelName(const std::string& name) {
  for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
    if (candidate.GetName() == name) return true;
  }
  return false;
}

std::string ZqDescribeRecord(std::size_t record, const std::string& name) {
  return "record " + std::to_string(record) + (name.empty() ? std::string() : " (" + name + ")");
}

ZqMolTrainingRecords ZqSelectMolTraining(const std::vector<const Molkit::ZqMolBase*>& mols,
                                         const std::vector<std::size_t>& records, const std::string& response,
                                         std::vector<std::string>& errors) {
  ZqMolTrainingRecords set;
  for (std::size_t i = 0; i < mols.size(); ++i) {
    if (mols[i] == nullptr) continue;
    const Molkit::ZqMolBase& mol = *mols[i];
    const std::string where = ZqDescribeRecord(i < records.size() ? records[i] : i + 1, mol.GetName());
    double value = 0.0;
    if (!mol.HasSDData(response)) {
      errors.push_back(where + ": no " + response);
    } else if (!Corvane::ZqStringToNumber(Corvane::ZqStringStripWhiteSpace(mol.GetSDData(response)), value) ||
               !std::isfinite(value)) {
      errors.push_back(where + ": " + response + " is not a number: '" + mol.GetSDData(response) + "'");
    } else if (mol.GetNumHeavyAtoms() == 0) {
      errors.push_back(where + ": no heavy atoms");
    } else {
      set.mols.push_back(&mol);
      set.responses.push_back(value);
      set.indices.push_back(i);
    }
  }
  return set;
}

ZqMolModel::ZqMolModel(ZqMolModelSettings settings)
    : settings_(std::move(settings)), krige_(ZqMakeMolKrige(settings_)) {}

ZqMolModel::ZqMolModel(ZqMolModel&&) noexcept = default;
ZqMolModel& ZqMolModel::operator=(ZqMolModel&&) noexcept = default;
ZqMolModel::~ZqMolModel() = default;

bool ZqMolModel::AddTraining(const Molkit::ZqMolBase& mol, double response) {
  // The engine refuses NaN only; an infinite response would poison every
  // covariance it enters.
  if (!std::isfinite(response) || !krige_->AddTraining(mol, response)) return false;
  mols_.emplace_back(mol.CreateCopy());
  responses_.push_back(response);
  trained_ = false;
  return true;
}

bool ZqMolModel::AddTraining(const Molkit::ZqMolBase& mol, const Printex::ZqVseprFingerprint& fp, double response) {
  if (!std::isfinite(response) || !krige_->AddTrainingWithFingerprint(mol, fp, response)) return false;
  mols_.emplace_back(mol.CreateCopy());
  responses_.push_back(response);
  trained_ = false;
  return true;
}

// Why the drift fields cannot make a drift: a field named twice, or one
// with the same value in every record (it is then the intercept again, and
// the drift's system is singular). Empty when they can.
std::string ZqMolModel::DriftProblem() const {
  const std::vector<std::string>& drift = settings_.drift;
  for (std::size_t k = 0; k < drift.size(); ++k) {
    for (std::size_t j = 0; j < k; ++j) {
      if (drift[j] == drift[k]) return "the drift field \"" + drift[k] + "\" is named twice";
    }
    if (mols_.size() < 2) continue;
    const std::string first = Corvane::ZqStringStripWhiteSpace(mols_.front()->GetSDData(drift[k]));
    double value = 0.0, firstValue = 0.0;
    Corvane::ZqStringToNumber(first, firstValue);
    bool constant = true;
    for (const auto& mol : mols_) {
      Corvane::ZqStringToNumber(Corvane::ZqStringStripWhiteSpace(mol->GetSDData(drift[k])), value);
      if (value != firstValue) {
        constant = false;
        break;
      }
    }
    if (constant) return "the drift field \"" + drift[k] + "\" has one value in every training record";
  }
  return {};
}

bool ZqMolModel::Train() {
  if (const std::string problem = DriftProblem(); !problem.empty()) {
    Corvane::ZqThrow.Error("ZqMolModel::Train, %s", problem.c_str());
    trained_ = false;
    return false;
  }
  if (settings_.kernel.empty()) {
    trained_ = krige_->Train();
    return trained_;
  }
  for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
    if (candidate.GetName() != settings_.kernel) continue;
    ZqKrigeKernel kernel(candidate);
    trained_ = krige_->Train(kernel);
    return trained_;
  }
  Corvane::ZqThrow.Error("ZqMolModel::Train, no candidate kernel is named \"%s\"", settings_.kernel.c_str());
  trained_ = false;
  return false;
}

bool ZqMolModel::TrainWithKernels(const ZqKrigeTrainedKernels& trained) {
  trained_ = krige_->TrainWithKernels(trained);
  return trained_;
}

ZqKrigeKernel ZqMolModel::GetKernel() const {
  const ZqKrigeTrainedKernels trained = krige_->GetTrainedKernels();
  if (trained.kernels.empty()) return std::as_const(*krige_).GetKernel();
  return trained.kernels.front();
}

double ZqMolModel::GetMeanResponse() const {
  if (responses_.empty()) return std::numeric_limits<double>::quiet_NaN();
  return std::accumulate(responses_.begin(), responses_.end(), 0.0) / static_cast<double>(responses_.size());
}

}  // namespace Varimo
