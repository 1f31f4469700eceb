// varimo-krige: kriges the rows of a CSV file and predicts those of another,
// with a Euclidean distance over numeric feature columns. See --help.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "feature_table.h"
#include "varimo/krige/vector_krige.h"

namespace {

using Element = std::vector<double>;
constexpr int kTrainingFailed = 1;
constexpr int kBadInput = 2;

int Fail(const std::string& message) {
  std::fprintf(stderr, "varimo-krige: %s\n", message.c_str());
  return kBadInput;
}

bool AllFinite(const Element& x) {
  for (double v : x) {
    if (!std::isfinite(v)) return false;
  }
  return true;
}

std::string Number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

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
  const std::vector<std::string> features =
      args->features.empty() ? NumericColumnNames(*train, args->responseName) : args->features;
  if (features.empty()) return Fail(args->trainPath + " has no numeric feature column");
  const auto trainRows = FeatureRows(*train, features, error);
  if (!trainRows) return Fail(error);
  const auto queryRows = FeatureRows(*query, features, error);
  if (!queryRows) return Fail(error);

  const Varimo::ZqKrigeOptions options{Varimo::ZqGlobalKrigeOptions()};
  const std::unique_ptr<Varimo::ZqKrigeBase<Element>> model =
      Varimo::ZqCreateKrige<Element>(Varimo::ZqEuclideanDistance(), options, args->simple);
  std::size_t skipped = 0;
  for (std::size_t row = 0; row < trainRows->size(); ++row) {
    const Element& x = (*trainRows)[row];
    if (!AllFinite(x) || !std::isfinite((*responses)[row]) || !model->AddTraining(x, (*responses)[row])) ++skipped;
  }
  if (skipped > 0) {
    std::fprintf(stderr, "varimo-krige: left out %zu training rows with missing values\n", skipped);
  }

  if (!args->variogramPath.empty() && !WriteVariogram(args->variogramPath, model->GetFullVariogram())) {
    return Fail("cannot write " + args->variogramPath);
  }
  const bool trained = kernel ? model->Train(*kernel) : model->Train();
  if (!trained) {
    std::fprintf(stderr, "varimo-krige: no kernel could be trained on %s\n", args->trainPath.c_str());
    return kTrainingFailed;
  }
  const Varimo::ZqKrigeKernel used = model->GetKernel();
  std::printf("kernel: %s sill=%s nugget=%s range=%s\n", used.GetName().c_str(), Number(used.GetSill()).c_str(),
              Number(used.GetNugget()).c_str(), Number(used.GetRange()).c_str());

  // Rows with a missing feature are failed predictions; the others go to
  // the model in one batch.
  std::vector<Element> complete;
  std::vector<std::size_t> completeRows;
  for (std::size_t row = 0; row < queryRows->size(); ++row) {
    if (!AllFinite((*queryRows)[row])) continue;
    complete.push_back((*queryRows)[row]);
    completeRows.push_back(row);
  }
  std::vector<double> predictions, variances;
  auto& standard = static_cast<Varimo::ZqStandardKrigeImpl<Element, Varimo::ZqVectorStorage>&>(*model);
  standard.PredictMany(complete, predictions, variances);

  std::ofstream out(args->outPath);
  if (!out) return Fail("cannot write " + args->outPath);
  const std::string failed = Number(model->GetErrorValue());
  std::vector<std::string> lines(queryRows->size(), failed + ',' + failed);
  for (std::size_t i = 0; i < completeRows.size(); ++i) {
    lines[completeRows[i]] = Number(predictions[i]) + ',' + Number(variances[i]);
  }
  out << "row,prediction,variance\n";
  for (std::size_t row = 0; row < lines.size(); ++row) out << row << ',' << lines[row] << '\n';
  out.close();
  if (!out) return Fail("cannot write " + args->outPath);
  return 0;
}
