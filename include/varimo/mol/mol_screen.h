// Screening: predicting every record of a molecule file, however large,
// with a trained model, a chunk of records at a time and in input order, so
// that memory holds one chunk and rows go out as soon as they are
// predicted. What the rows become (CSV or SD text, contributions, report
// images) is the sink's.
//
//   auto reader = Molkit::ZqMoleculeReader::Open("library.smi.gz", error);
//   Varimo::ZqMolPredictionFormat format;
//   Varimo::ZqMolScreenSummary summary = Varimo::ZqScreenMolecules(model, *reader, {},
//       [&](std::vector<Varimo::ZqMolScreenRow>& rows) {
//         for (const auto& row : rows) out << Varimo::ZqFormatPredictionCsv(row, format);
//         return true;
//       });
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "varimo/krige/applicability_domain.h"
#include "varimo/krige/calibration.h"
#include "varimo/mol/mol_model.h"
#include "varimo/mol/mol_predict.h"
#include "varimo/platform/molkit/molecule_reader.h"
#include "varimo/platform/molkit/output_file.h"

namespace Varimo {

struct ZqMolScreenOptions {
  // Threads of each chunk's predictions; the rows are the same for any.
  unsigned int threads = 1;
  // Records read, predicted and handed on at a time.
  std::size_t chunkSize = 512;
  // Whether to fill each valid prediction's atom contributions, against
  // the model's mean response.
  bool contributions = false;
  // A global model's prediction that fails is tried again with the next
  // kernels the model's variogram ranks below its own (each trained once,
  // when first needed), until one gives a valid prediction; the row's
  // result then names that kernel. Local models already walk their kernels
  // for each query.
  bool fallbackKernels = false;
  // The prediction alone, for ranking (ZqMolKrige::PredictMean): rows
  // without variance, neighbours or contributions, in a fraction of the
  // time for a global model.
  bool meanOnly = false;
  // The variance of the rows (and of their "std" and "P(>T)").
  ZqMolVariance variance = ZqMolVariance::kKriging;
};

struct ZqMolScreenRow {
  std::size_t row = 0;  // from 0, every record counted: the record's number - 1
  Molkit::ZqMoleculeRecord record;
  ZqMolPrediction prediction;  // an invalid result when the record has no molecule
  // Why there is no prediction: the record's own error, or the reason the
  // model gave none. Empty for a valid prediction.
  std::string failure;
  // What to beware of in a valid prediction (ZqDescribeDriftExtrapolation);
  // usually empty.
  std::string warning;
};

struct ZqMolScreenSummary {
  std::size_t rows = 0;
  std::size_t failed = 0;
  std::size_t warned = 0;  // valid rows with a warning
  // Why reading stopped before the end of the file (ZqMoleculeReader's
  // GetError); empty when the whole file was read.
  std::string readError;
  // False when the sink asked to stop.
  bool completed = true;
};

// Every record of `reader` predicted by the trained `model` and handed to
// `sink` chunk by chunk, in input order; the sink returns false to stop.
ZqMolScreenSummary ZqScreenMolecules(const ZqMolModel& model, Molkit::ZqMoleculeReader& reader,
                                     const ZqMolScreenOptions& options,
                                     const std::function<bool(std::vector<ZqMolScreenRow>&)>& sink);

// Why the model gives no valid prediction of `mol`, in words for a
// message: no heavy atoms, a drift field missing, a molecule the model
// cannot place (an error value, or a variance outside its kernel's range).
// `meanOnly`: for a prediction made without its variance.
std::string ZqExplainFailedPrediction(const ZqMolModel& model, const Molkit::ZqMolBase& mol, bool meanOnly = false);

// For a universal model: which drift field of `mol` lies outside the range
// of the training records' values, where the prediction extrapolates the
// drift, as "its drift field F = V lies outside the training range
// [A, B]"; empty when none does.
std::string ZqDescribeDriftExtrapolation(const ZqMolModel& model, const Molkit::ZqMolBase& mol);

// The columns of a prediction row, and their text.
struct ZqMolPredictionFormat {
  // false: the prediction alone ("row,name,prediction" in CSV; no "std"
  // and "neighbours" fields in SD).
  bool variance = true;
  // The probability of a true value above this, as the column or field
  // "P(>T)", T as given on the command line.
  std::optional<double> threshold;
  std::string thresholdText;
  // The name of the kernel that made each prediction, as a last column or
  // field "kernel": a local model's rows may use different ones.
  bool kernel = false;
  // The interval of miss rate `alpha` of these conformal intervals, as the
  // columns or fields "lower" and "upper"; none when null.
  const ZqConformalIntervals* intervals = nullptr;
  double alpha = 0.1;
  // The similarity of the nearest training molecule and whether the
  // molecule lies in this applicability domain (1 or 0), as the columns or
  // fields "nearest_similarity" and "in_domain"; none when null.
  const ZqApplicabilityDomain* domain = nullptr;
  // Which variance the numbers show.
  ZqMolVariance varianceKind = ZqMolVariance::kKriging;
};

// The CSV header line, "row,name,prediction,variance,neighbours" and the
// further columns the format asks for, in the order of its fields. A row
// without a prediction has the error value in the interval's and the
// similarity's columns and an empty in_domain.
std::string ZqPredictionCsvHeader(const ZqMolPredictionFormat& format);
// One CSV line. Numbers have 17 significant digits; a row without a
// prediction has the error value 1.7976931348623157e+308 in its numbers
// and no neighbours. Neighbours are the names of the three training
// molecules of largest weight, separated by ';' (a ';' or '\' in a name is
// escaped with '\'); fields are quoted as CSV needs.
std::string ZqFormatPredictionCsv(const ZqMolScreenRow& row, const ZqMolPredictionFormat& format);
// One SD record: the query molecule as read, its own data fields kept,
// then "prediction", "std", "neighbours" (and "P(above T)", since an SD
// tag cannot hold a '>', and "kernel" as asked),
// and for a row without a prediction "failure" with the reason. A record
// that could not be read is written as an empty molecule with its name, so
// that the records of the output match those of the input one to one.
std::string ZqFormatPredictionSD(const ZqMolScreenRow& row, const ZqMolPredictionFormat& format);

// Where screened rows go: a CSV file (with or without its header line, as
// a partition of a larger output may be) or SD records.
struct ZqMolScreenOutput {
  bool sd = false;
  bool header = true;
  std::optional<double> threshold;
  std::string thresholdText;
  // The interval and domain columns (ZqMolPredictionFormat); none when null.
  const ZqConformalIntervals* intervals = nullptr;
  double alpha = 0.1;
  const ZqApplicabilityDomain* domain = nullptr;
};

// The columns of a model's rows: the prediction alone for a mean-only
// screen; a last "kernel" column for a local model, or when failed
// predictions fall back to lesser kernels.
ZqMolPredictionFormat ZqPredictionFormatFor(const ZqMolModel& model, const ZqMolScreenOptions& options,
                                            const ZqMolScreenOutput& output);

// Screens `reader` into `out`: the CSV header (when asked), then the text of
// every row, chunk by chunk; `each`, when set, sees each chunk after its
// rows are written (to write further files, draw reports, count) and
// returns false to stop. The caller commits `out`.
ZqMolScreenSummary ZqScreenMoleculesInto(const ZqMolModel& model, Molkit::ZqMoleculeReader& reader,
                                         const ZqMolScreenOptions& options, const ZqMolScreenOutput& output,
                                         Molkit::ZqOutputFile& out,
                                         const std::function<bool(std::vector<ZqMolScreenRow>&)>& each = {});

}  // namespace Varimo
