#include "varimo/mol/mol_screen.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <cstdio>

#include "varimo/platform/corvane/strings.h"
#include "record_text.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace Varimo {
namespace {

constexpr double kFailed = 1.7976931348623157e308;

using record_text::CsvField;
using record_text::Number;
using record_text::SDField;

// The names of the three training molecules of largest weight, each with
// ';' and '\' escaped so that the list splits back into the names.
std::string Neighbours(const ZqMolKrigeResult& result) {
  std::string names;
  for (unsigned int i : ZqLargestWeights(result, 3)) {
    if (!names.empty()) names += ';';
    for (char c : result.GetElement(i).GetName()) {
      if (c == ';' || c == '\\') names += '\\';
      names += c;
    }
  }
  return names;
}

bool Predicted(const ZqMolScreenRow& row) {
  return row.failure.empty() && (row.prediction.mean || row.prediction.result.Valid());
}

// Six significant digits, for messages.
std::string Short(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

double Variance(const ZqMolKrigeResult& result, const ZqMolPredictionFormat& format) {
  return format.varianceKind == ZqMolVariance::kFull ? result.GetFullVariance() : result.GetVariance();
}

double Prediction(const ZqMolScreenRow& row) {
  return row.prediction.mean ? *row.prediction.mean : row.prediction.result.GetResponse();
}

// The interval's and the domain's fields of a row, as the format asks.
std::vector<std::pair<std::string, std::string>> UncertaintyFields(const ZqMolScreenRow& row,
                                                                   const ZqMolPredictionFormat& format) {
  std::vector<std::pair<std::string, std::string>> fields;
  const ZqMolKrigeResult& result = row.prediction.result;
  const bool predicted = Predicted(row);
  if (format.intervals) {
    const auto [lower, upper] = predicted ? format.intervals->GetInterval(result.GetResponse(), result.GetVariance(),
                                                                          format.alpha)
                                          : std::pair<double, double>(kFailed, kFailed);
    fields.emplace_back("lower", Number(lower));
    fields.emplace_back("upper", Number(upper));
  }
  if (format.domain) {
    const ZqDomainAssessment a = predicted ? format.domain->Assess(result.GetKrigeResult()) : ZqDomainAssessment();
    fields.emplace_back("nearest_similarity", Number(predicted ? a.nearestSimilarity : kFailed));
    fields.emplace_back("in_domain", predicted ? (a.inDomain ? "1" : "0") : "");
  }
  return fields;
}

}  // namespace

std::string ZqExplainFailedPrediction(const ZqMolModel& model, const Molkit::ZqMolBase& mol, bool meanOnly) {
  if (mol.GetNumHeavyAtoms() == 0) return "no heavy atoms";
  for (const std::string& tag : model.GetSettings().drift) {
    if (!ZqReadDriftField(mol, tag)) return "the drift field " + tag + " is missing or not a number";
  }
  if (meanOnly) return "the model gives no prediction (not a finite number)";
  if (const std::string drift = ZqDescribeDriftExtrapolation(model, mol); !drift.empty()) {
    return "the model gives no valid prediction: " + drift + ", where its kriging variance falls outside the kernel's range";
  }
  return "the model gives no valid prediction: its kriging variance falls outside the kernel's range (a "
         "near-duplicate of training molecules under a kernel with almost no nugget, or a molecule far from all of "
         "them)";
}

std::string ZqDescribeDriftExtrapolation(const ZqMolModel& model, const Molkit::ZqMolBase& mol) {
  const std::vector<std::string>& drift = model.GetSettings().drift;
  const std::vector<std::pair<double, double>>& ranges = model.GetDriftRanges();
  for (std::size_t k = 0; k < drift.size() && k < ranges.size(); ++k) {
    const std::optional<double> value = ZqReadDriftField(mol, drift[k]);
    if (!value || (*value >= ranges[k].first && *value <= ranges[k].second)) continue;
    return "its drift field " + drift[k] + " = " + Short(*value) + " lies outside the training range [" +
           Short(ranges[k].first) + ", " + Short(ranges[k].second) + "]";
  }
  return {};
}

ZqMolScreenSummary ZqScreenMolecules(const ZqMolModel& model, Molkit::ZqMoleculeReader& reader,
                                     const ZqMolScreenOptions& options,
                                     const std::function<bool(std::vector<ZqMolScreenRow>&)>& sink) {
  ZqMolScreenSummary summary;
  const std::size_t chunkSize = std::max<std::size_t>(1, options.chunkSize);
  ZqMolPredictOptions predict;
  predict.threads = options.threads;
  predict.contributions = options.contributions && !options.meanOnly;
  predict.meanOnly = options.meanOnly;
  predict.baseline = model.GetMeanResponse();
  std::vector<ZqMolScreenRow> chunk;
  bool more = true;
  while (more) {
    chunk.clear();
    while (chunk.size() < chunkSize) {
      ZqMolScreenRow row;
      if (!reader.Next(row.record)) {
        more = false;
        break;
      }
      row.row = row.record.number - 1;
      chunk.push_back(std::move(row));
    }
    if (chunk.empty()) break;
    std::vector<const Molkit::ZqMolBase*> queries;
    for (const ZqMolScreenRow& row : chunk) queries.push_back(row.record.mol.get());
    std::vector<ZqMolPrediction> predictions = ZqPredictMolecules(model.GetKrige(), queries, predict);
    for (std::size_t i = 0; i < chunk.size(); ++i) {
      ZqMolScreenRow& row = chunk[i];
      row.prediction = std::move(predictions[i]);
      const bool predicted = row.prediction.mean || row.prediction.result.Valid();
      if (row.record.mol && !predicted && options.fallbackKernels) {
        row.prediction.result = model.GetFallbackResult(*row.record.mol);
        if (row.prediction.result.Valid() && options.meanOnly) {
          row.prediction.mean = row.prediction.result.GetResponse();
          row.prediction.result = ZqMolKrigeResult();
        } else if (row.prediction.result.Valid() && options.contributions) {
          row.prediction.contributions =
              row.prediction.result.GetAtomContributions(*row.record.mol, predict.baseline);
        }
      }
      if (!row.record.mol) {
        row.failure = row.record.error;
      } else if (!row.prediction.mean && !row.prediction.result.Valid()) {
        row.failure = ZqExplainFailedPrediction(model, *row.record.mol, options.meanOnly);
      }
      if (!row.failure.empty()) {
        ++summary.failed;
      } else if (!model.GetSettings().drift.empty()) {
        row.warning = ZqDescribeDriftExtrapolation(model, *row.record.mol);
        if (!row.warning.empty()) {
          row.warning += ": the prediction extrapolates the drift, further than its kriging variance says";
          ++summary.warned;
        }
      }
    }
    summary.rows += chunk.size();
    if (!sink(chunk)) {
      summary.completed = false;
      break;
    }
  }
  summary.readError = reader.GetError();
  return summary;
}

std::string ZqPredictionCsvHeader(const ZqMolPredictionFormat& format) {
  std::string header = format.variance ? "row,name,prediction,variance,neighbours" : "row,name,prediction";
  if (format.threshold) header += ",P(>" + format.thresholdText + ")";
  if (format.kernel) header += ",kernel";
  if (format.intervals) header += ",lower,upper";
  if (format.domain) header += ",nearest_similarity,in_domain";
  return header + '\n';
}

std::string ZqFormatPredictionCsv(const ZqMolScreenRow& row, const ZqMolPredictionFormat& format) {
  const ZqMolKrigeResult& result = row.prediction.result;
  const bool predicted = Predicted(row);
  std::string line = std::to_string(row.row) + ',' + CsvField(row.record.name) + ',' +
                     Number(predicted ? Prediction(row) : kFailed);
  if (format.variance) {
    line += ',' + Number(predicted ? Variance(result, format) : kFailed) + ',' +
            CsvField(predicted ? Neighbours(result) : std::string());
  }
  if (format.threshold) {
    line += ',' + Number(predicted ? ZqProbabilityGreaterThan(result, *format.threshold, format.varianceKind) : kFailed);
  }
  if (format.kernel) line += ',' + CsvField(predicted ? result.GetKernel().GetName() : std::string());
  for (const auto& [name, value] : UncertaintyFields(row, format)) line += ',' + value;
  return line + '\n';
}

std::string ZqFormatPredictionSD(const ZqMolScreenRow& row, const ZqMolPredictionFormat& format) {
  std::string record;
  if (row.record.mol) {
    record = Molkit::ZqMolToSDRecord(*row.record.mol);
    record.erase(record.rfind("$$$$"));
  } else {
    // No molecule: an empty one keeps the record's place and name.
    record = row.record.name + "\n     varimo\n\n  0  0  0  0  0  0  0  0  0  0999 V2000\nM  END\n";
  }
  const ZqMolKrigeResult& result = row.prediction.result;
  const bool predicted = Predicted(row);
  record += SDField("prediction", Number(predicted ? Prediction(row) : kFailed));
  if (format.variance) {
    record += SDField("std", Number(predicted ? std::sqrt(Variance(result, format)) : kFailed));
    record += SDField("neighbours", predicted ? Neighbours(result) : std::string());
  }
  if (format.threshold) {
    // A '>' would end the tag early for SD readers, RDKit's among them.
    record += SDField("P(above " + format.thresholdText + ")",
                      Number(predicted ? ZqProbabilityGreaterThan(result, *format.threshold, format.varianceKind)
                                       : kFailed));
  }
  if (format.kernel) record += SDField("kernel", predicted ? result.GetKernel().GetName() : std::string());
  for (const auto& [name, value] : UncertaintyFields(row, format)) record += SDField(name, value);
  if (!predicted) record += SDField("failure", row.failure);
  return record + "$$$$\n";
}

ZqMolPredictionFormat ZqPredictionFormatFor(const ZqMolModel& model, const ZqMolScreenOptions& options,
                                            const ZqMolScreenOutput& output) {
  ZqMolPredictionFormat format;
  format.variance = !options.meanOnly;
  format.varianceKind = options.variance;
  format.kernel = !options.meanOnly && (model.GetSettings().numLocal > 0 || options.fallbackKernels);
  // A probability needs the variance a mean-only screen never computes.
  if (!options.meanOnly) format.threshold = output.threshold;
  format.thresholdText = output.thresholdText;
  format.intervals = output.intervals;
  format.alpha = output.alpha;
  format.domain = output.domain;
  return format;
}

ZqMolScreenSummary ZqScreenMoleculesInto(const ZqMolModel& model, Molkit::ZqMoleculeReader& reader,
                                         const ZqMolScreenOptions& options, const ZqMolScreenOutput& output,
                                         Molkit::ZqOutputFile& out,
                                         const std::function<bool(std::vector<ZqMolScreenRow>&)>& each) {
  const ZqMolPredictionFormat format = ZqPredictionFormatFor(model, options, output);
  if (output.header && !output.sd) out.Write(ZqPredictionCsvHeader(format));
  return ZqScreenMolecules(model, reader, options, [&](std::vector<ZqMolScreenRow>& chunk) {
    std::string text;
    for (const ZqMolScreenRow& row : chunk) {
      text += output.sd ? ZqFormatPredictionSD(row, format) : ZqFormatPredictionCsv(row, format);
    }
    out.Write(text);
    return !each || each(chunk);
  });
}

}  // namespace Varimo
