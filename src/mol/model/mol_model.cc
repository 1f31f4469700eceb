#include "varimo/mol/mol_model.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "varimo/krige/kernel_fit.h"
#include "varimo/krige/krige_options.h"
#include "varimo/numerics/dense_algebra.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/mol_property.h"

namespace Varimo {
namespace {

constexpr const char* kLikelihoodIsGlobal =
    "the likelihood fit is for global models; this one predicts from local neighbourhoods";

}  // namespace

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

// The models of a global model's lesser kernels, made when first needed:
// copies of the model trained with each kernel ranked below the one in use.
class ZqMolModel::Fallbacks {
 public:
  // `fit`: how the lesser kernels are ranked.
  Fallbacks(const ZqMolKrige& krige, ZqKernelFit fit) : krige_(krige), fit_(fit) {}

  ZqMolKrigeResult Predict(const Molkit::ZqMolBase& mol) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!ranked_) Rank();
    for (std::size_t k = 0; k < kernels_.size(); ++k) {
      const ZqMolKrige* model = Model(k);
      if (!model) continue;
      ZqMolKrigeResult result = model->GetResult(mol);
      if (result.Valid()) return result;
    }
    return ZqMolKrigeResult();
  }

 private:
  void Rank() {
    ranked_ = true;
    const std::string used = krige_.GetKernel().GetName();
    bool below = false;
    std::vector<ZqKrigeKernel> ranking;
    if (fit_ == ZqKernelFit::Variogram) {
      ranking = ZqRankKernels(krige_.GetVariogram());
    } else {
      // Every candidate ranked by a copy, with the BLAS on this thread: the
      // same kernels, to the bit, whether the model was fitted or loaded
      // and whatever thread first needs them.
      const ZqSingleThreadedBlas oneThread;
      ZqMolKrige copy(krige_);
      copy.TrainByLikelihood({}, &ranking);
      // A named kernel that is not among the likelihood's candidates ranks
      // above all of them.
      below = std::none_of(ranking.begin(), ranking.end(),
                           [&](const ZqKrigeKernel& kernel) { return kernel.GetName() == used; });
    }
    for (const ZqKrigeKernel& kernel : ranking) {
      if (below) kernels_.push_back(kernel);
      below = below || kernel.GetName() == used;
    }
    models_.resize(kernels_.size());
    usable_.assign(kernels_.size(), true);
  }
  // The model of lesser kernel k; null when its covariance matrix does not
  // factorise.
  const ZqMolKrige* Model(std::size_t k) {
    if (!usable_[k]) return nullptr;
    if (!models_[k]) {
      models_[k] = std::make_unique<ZqMolKrige>(krige_);
      usable_[k] = models_[k]->TrainFixed(kernels_[k]);
    }
    return usable_[k] ? models_[k].get() : nullptr;
  }

  const ZqMolKrige& krige_;
  const ZqKernelFit fit_;
  std::mutex mutex_;
  bool ranked_ = false;
  std::vector<ZqKrigeKernel> kernels_;
  std::vector<std::unique_ptr<ZqMolKrige>> models_;
  std::vector<bool> usable_;
};

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
  WidenDriftRanges(mol);
  trained_ = false;
  fallbacks_.reset();
  return true;
}

bool ZqMolModel::AddTraining(const Molkit::ZqMolBase& mol, const Printex::ZqVseprFingerprint& fp, double response) {
  if (!std::isfinite(response) || !krige_->AddTrainingWithFingerprint(mol, fp, response)) return false;
  mols_.emplace_back(mol.CreateCopy());
  responses_.push_back(response);
  WidenDriftRanges(mol);
  trained_ = false;
  fallbacks_.reset();
  return true;
}

void ZqMolModel::WidenDriftRanges(const Molkit::ZqMolBase& mol) {
  const std::vector<std::string>& drift = settings_.drift;
  const bool first = driftRanges_.empty();
  if (first) driftRanges_.resize(drift.size());
  for (std::size_t k = 0; k < drift.size(); ++k) {
    // The engine took the molecule, so its drift fields read as numbers.
    const double value = ZqReadDriftField(mol, drift[k]).value_or(0.0);
    auto& [low, high] = driftRanges_[k];
    low = first ? value : std::min(low, value);
    high = first ? value : std::max(high, value);
  }
}

std::optional<double> ZqReadDriftField(const Molkit::ZqMolBase& mol, const std::string& tag) {
  // The engine's own reader of drift fields, so that what is reported is
  // what the model used.
  const Molkit::ZqMolSDDataPropertyFxn field(tag);
  if (!field.Has(mol)) return std::nullopt;
  const double value = field.Get(mol);
  return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
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
  auto fail = [this](const std::string& why) {
    Corvane::ZqThrow.Error("ZqMolModel::Train, %s", why.c_str());
    trained_ = false;
    return false;
  };
  if (const std::string problem = DriftProblem(); !problem.empty()) return fail(problem);
  const bool byLikelihood = settings_.fit == ZqKernelFit::Likelihood;
  if (byLikelihood && settings_.numLocal > 0) {
    return fail(kLikelihoodIsGlobal);
  }
  fallbacks_.reset();
  std::optional<ZqKrigeKernel> kernel;
  if (!settings_.kernel.empty()) {
    for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
      if (candidate.GetName() == settings_.kernel) {
        kernel.emplace(candidate);
        break;
      }
    }
    if (!kernel) return fail("no candidate kernel is named \"" + settings_.kernel + "\"");
  }
  if (byLikelihood) {
    std::vector<const ZqKrigeKernelBase*> candidates;
    if (kernel) candidates.push_back(&*kernel);
    trained_ = krige_->TrainByLikelihood(candidates);
  } else {
    trained_ = kernel ? krige_->Train(*kernel) : krige_->Train();
  }
  if (trained_) fallbacks_ = std::make_unique<Fallbacks>(*krige_, settings_.fit);
  return trained_;
}

bool ZqMolModel::TrainWithKernels(const ZqKrigeTrainedKernels& trained) {
  if (settings_.fit == ZqKernelFit::Likelihood && settings_.numLocal > 0) {
    // Such a model could not have been fitted, and its file would not load.
    Corvane::ZqThrow.Error("ZqMolModel::TrainWithKernels, %s", kLikelihoodIsGlobal);
    trained_ = false;
    fallbacks_.reset();
    return false;
  }
  trained_ = krige_->TrainWithKernels(trained);
  fallbacks_ = trained_ ? std::make_unique<Fallbacks>(*krige_, settings_.fit) : nullptr;
  return trained_;
}

ZqMolKrigeResult ZqMolModel::GetFallbackResult(const Molkit::ZqMolBase& mol) const {
  if (!fallbacks_ || settings_.numLocal > 0) return ZqMolKrigeResult();
  return fallbacks_->Predict(mol);
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

std::string ZqExplainNoKernel(const ZqMolModel& model, const std::vector<std::string>& warnings) {
  auto number = [](double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return std::string(text);
  };
  const std::vector<double>& y = model.GetResponses();
  if (y.size() < 2) return "one molecule is not enough";
  const std::set<double> distinct(y.begin(), y.end());
  if (distinct.size() == 1) return "all " + std::to_string(y.size()) + " responses are equal (" + number(y[0]) + ")";
  for (double value : y) {
    // Squared differences of such values overflow the variogram.
    if (std::fabs(value) > 1e150) return "a response of " + number(value) + " is too large to square";
  }
  std::set<std::string> smiles;
  for (std::size_t i = 0; i < model.GetNumRecords(); ++i) smiles.insert(model.GetRecord(i).GetCanonicalSmiles());
  if (smiles.size() == 1) return "all " + std::to_string(y.size()) + " records are one molecule";
  if (!warnings.empty()) {
    // The model's own reasons come without the routine that found them.
    const std::string& last = warnings.back();
    for (const std::string prefix : {"ZqMolModel::Train, ", "ZqTrainByLikelihood, unable to train.  "}) {
      if (last.rfind(prefix, 0) == 0) return last.substr(prefix.size());
    }
    return last;
  }
  const std::string& kernel = model.GetSettings().kernel;
  if (!kernel.empty()) return "the " + kernel + " kernel gives no covariance matrix that factorises";
  return "no candidate kernel gives a covariance matrix that factorises";
}

}  // namespace Varimo
