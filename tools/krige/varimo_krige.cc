// varimo-krige: kriges the rows of a CSV file and predicts those of another,
// with a Euclidean or min-max distance over numeric feature columns. See
// --help.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "messages.h"
#include "feature_table.h"
#include "progress.h"
#ifdef VARIMO_KRIGE_MOLECULES
#include "mol_modes.h"
#endif
#include "varimo/krige/vector_model.h"

namespace {

using VarimoKrige::Fail;
using VarimoKrige::Number;
using VarimoKrige::kBadInput;
using VarimoKrige::kTrainingFailed;
using Element = std::vector<double>;

// The candidate kernel of that name, or nothing.
std::optional<Varimo::ZqKrigeKernel> CandidateNamed(const std::string& name) {
  for (const Varimo::ZqKrigeKernelBase& candidate : Varimo::ZqGetKrigeKernels()) {
    if (candidate.GetName() == name) return Varimo::ZqKrigeKernel(candidate);
  }
  return std::nullopt;
}

bool WriteVariogram(const std::string& path, const Varimo::ZqFullVariogram& full) {
  std::ofstream out(path);
  if (!out) return false;
  const Varimo::ZqVariogramImpl means(full);
  out << "bin,distance,semivariance,pairs\n";
  for (unsigned int bin = 0; bin < full.GetNumBins(); ++bin) {
    out << bin << ',' << Number(means.GetDistance(bin)) << ',' << Number(means.GetSemivariance(bin)) << ','
        << full.GetNumBinElements(bin) << '\n';
  }
  return static_cast<bool>(out);
}

// The settings of the model the arguments ask for.
Varimo::ZqVectorKrigeSettings ModelSettings(const VarimoKrige::Arguments& args, std::size_t numFeatures) {
  using Model = Varimo::ZqVectorKrigeSettings::Model;
  using Metric = Varimo::ZqVectorKrigeSettings::Metric;
  Varimo::ZqVectorKrigeSettings settings;
  settings.metric = args.minMax ? Metric::MinMax : Metric::Euclidean;
  settings.model = args.universal ? Model::Universal : args.simple ? Model::Simple : Model::Ordinary;
  settings.numFeatures = numFeatures;
  settings.numDrift = args.drift.size();
  settings.numLocal = args.numLocal;
  settings.predictTraining = args.predictTraining;
  settings.maxVariogramSize = args.maxVariogramSize;
  return settings;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace VarimoKrige;
  std::string error;
  const std::optional<Arguments> args = ParseArguments(std::vector<std::string>(argv + 1, argv + argc), error);
  if (!args) return Fail(error);
  if (args->help) {
    std::fputs(HelpText(), stdout);
    return 0;
  }
  if (args->molecules) {
#ifdef VARIMO_KRIGE_MOLECULES
    return args->crossValidate ? RunCrossValidation(*args) : args->select ? RunSelection(*args) : RunMolecules(*args);
#else
    return Fail("this varimo-krige was built without RDKit and reads no molecule files");
#endif
  }

  const std::optional<CsvTable> train = LoadCsv(args->trainPath, error);
  if (!train) return Fail(error);
  const std::optional<CsvTable> query = LoadCsv(args->predictPath, error);
  if (!query) return Fail(error);
  std::optional<Varimo::ZqKrigeKernel> kernel;
  if (!args->kernelName.empty() && !(kernel = CandidateNamed(args->kernelName))) {
    return Fail("unknown kernel " + args->kernelName + " (see --help)");
  }

  const std::optional<std::vector<double>> responses = NumericColumn(*train, args->responseName, error);
  if (!responses) return Fail(error);
  std::vector<std::string> notFeatures = args->drift;
  notFeatures.push_back(args->responseName);
  const std::vector<std::string> features =
      args->features.empty() ? NumericColumnNames(*train, notFeatures) : args->features;
  if (features.empty()) return Fail(args->trainPath + " has no numeric feature column");
  // An element is its feature values followed by its drift values.
  std::vector<std::string> columns = features;
  columns.insert(columns.end(), args->drift.begin(), args->drift.end());
  const auto trainRows = FeatureRows(*train, columns, error);
  if (!trainRows) return Fail(error);
  const auto queryRows = FeatureRows(*query, columns, error);
  if (!queryRows) return Fail(error);

  const Varimo::ZqVectorKrigeSettings settings = ModelSettings(*args, features.size());
  const std::unique_ptr<Varimo::ZqKrigeBase<Element>> model = Varimo::ZqMakeVectorKrige(settings);
  std::size_t skipped = 0, negative = 0;
  for (std::size_t row = 0; row < trainRows->size(); ++row) {
    const Element& x = (*trainRows)[row];
    if (Varimo::ZqIsFiniteRow(x) && !Varimo::ZqIsUsableRow(settings, x)) {
      ++negative;
    } else if (!Varimo::ZqIsFiniteRow(x) || !std::isfinite((*responses)[row]) ||
               !model->AddTraining(x, (*responses)[row])) {
      ++skipped;
    }
  }
  if (skipped > 0) {
    VarimoKrige::Say("left out " + std::to_string(skipped) + " training rows with missing values");
  }
  if (negative > 0) {
    VarimoKrige::Say("left out " + std::to_string(negative) +
                     " training rows with a negative feature (--metric minmax)");
  }

  // Through the const overload, which leaves the model alone: the other one
  // marks a local model's variogram as built while leaving it empty, and
  // training would then find no bins.
  const Varimo::ZqKrigeBase<Element>& untrained = *model;
  if (!args->variogramPath.empty() && !WriteVariogram(args->variogramPath, untrained.GetFullVariogram())) {
    return Fail("cannot write " + args->variogramPath);
  }
  bool trained = false;
  if (args->fit == "likelihood") {
    trained = Varimo::ZqTrainVectorByLikelihood(*model, settings, kernel ? &*kernel : nullptr);
  } else {
    trained = kernel ? model->Train(*kernel) : model->Train();
  }
  if (!trained) {
    VarimoKrige::Say("no kernel could be trained on " + args->trainPath);
    return kTrainingFailed;
  }
  const Varimo::ZqKrigeKernel used = model->GetKernel();
  std::printf("kernel: %s sill=%s nugget=%s range=%s\n", used.GetName().c_str(), Number(used.GetSill()).c_str(),
              Number(used.GetNugget()).c_str(), Number(used.GetRange()).c_str());

  std::vector<double> predictions, variances;
  Progress progress(queryRows->size(), !args->quiet);
  Varimo::ZqPredictVectorRows(*model, *queryRows, 1, predictions, variances,
                              [&](std::size_t done) { progress.Update(done); });
  progress.Finish();

  std::ofstream out(args->outPath);
  if (!out) return Fail("cannot write " + args->outPath);
  out << "row,prediction,variance\n";
  for (std::size_t row = 0; row < predictions.size(); ++row) {
    out << row << ',' << Number(predictions[row]) << ',' << Number(variances[row]) << '\n';
  }
  out.close();
  if (!out) return Fail("cannot write " + args->outPath);
  return 0;
}
