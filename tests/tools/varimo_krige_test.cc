// varimo-krige end to end on small CSV files (tests/data/krige/
// make_cli_data.py, make_cli_drift_data.py): the output files and the kernel
// line in their exact formats, the same numbers as the library's models on
// the same rows, local models against global ones, the progress lines, and
// a one-line message with status 2 for every bad argument.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <limits>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "program_support.h"
#include "progress.h"
#include "reference_file.h"
#include "test_support.h"
#include "varimo/krige/likelihood_training.h"
#include "varimo/krige/minmax_distance.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/output_sink.h"
#include "varimo/platform/corvane/strings.h"

namespace {

using Element = std::vector<double>;

using VarimoTest::Krige;
using VarimoTest::Outcome;
using VarimoTest::Scratch;
using VarimoTest::SeventeenDigits;
using VarimoTest::Slurp;

std::string TrainAndPredict() {
  return "--train " + VarimoTest::DataPath("krige/cli_train.csv") + " --predict " +
         VarimoTest::DataPath("krige/cli_query.csv");
}

std::string DriftFiles() {
  return "--train " + VarimoTest::DataPath("krige/cli_drift_train.csv") + " --predict " +
         VarimoTest::DataPath("krige/cli_drift_query.csv");
}

std::vector<std::vector<std::string>> CsvLines(const std::string& path) {
  std::vector<std::vector<std::string>> lines;
  for (const std::string& line : VarimoTest::Lines(Slurp(path))) {
    std::vector<std::string> fields;
    Corvane::ZqStringTokenize(fields, line, ",", false);
    lines.push_back(fields);
  }
  return lines;
}

// Columns a, b and y of the training file and a, b of the queries, read
// here without the library's loader.
void ReadData(std::vector<Element>& train, std::vector<double>& responses, std::vector<Element>& queries) {
  auto lines = CsvLines(VarimoTest::DataPath("krige/cli_train.csv"));
  for (std::size_t i = 1; i < lines.size(); ++i) {
    train.push_back({std::stod(lines[i][1]), std::stod(lines[i][2])});
    responses.push_back(std::stod(lines[i][3]));
  }
  lines = CsvLines(VarimoTest::DataPath("krige/cli_query.csv"));
  for (std::size_t i = 1; i + 1 < lines.size(); ++i)
    queries.push_back({std::stod(lines[i][0]), std::stod(lines[i][1])});
}

// The library's global model on the training rows, `kernel` fitted to them.
std::unique_ptr<Varimo::ZqKrigeBase<Element>> LibraryModel(const std::vector<Element>& train,
                                                           const std::vector<double>& responses, bool simple,
                                                           Varimo::ZqKrigeKernel& kernel) {
  auto model = Varimo::ZqCreateKrige<Element>(Varimo::ZqEuclideanDistance(),
                                              Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()), simple);
  for (std::size_t i = 0; i < train.size(); ++i) model->AddTraining(train[i], responses[i]);
  EXPECT_TRUE(model->Train(kernel));
  return model;
}

// The drift of the elements {a, b, d1, d2} built here: d1 and d2.
class LastTwo final : public Varimo::ZqPropertyListFxn<Element> {
 public:
  bool HasProperties(const Element& x) const override { return x.size() == 4; }
  std::size_t GetSize() const override { return 2; }
  double GetProperty(const Element& x, std::size_t k) const override { return x[2 + k]; }
  Varimo::ZqPropertyListFxn<Element>* CreateCopy() const override { return new LastTwo; }
};

// Columns a, b, d1, d2 and y of the drift files as elements {a, b, d1, d2},
// without the training row that lacks d2 and the query row that lacks d1.
void ReadDriftData(std::vector<Element>& train, std::vector<double>& responses, std::vector<Element>& queries) {
  auto lines = CsvLines(VarimoTest::DataPath("krige/cli_drift_train.csv"));
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (lines[i][4].empty()) continue;
    train.push_back({std::stod(lines[i][0]), std::stod(lines[i][1]), std::stod(lines[i][3]), std::stod(lines[i][4])});
    responses.push_back(std::stod(lines[i][5]));
  }
  lines = CsvLines(VarimoTest::DataPath("krige/cli_drift_query.csv"));
  for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
    queries.push_back({std::stod(lines[i][0]), std::stod(lines[i][1]), std::stod(lines[i][3]), std::stod(lines[i][4])});
  }
}

const std::string kFailed = "1.7976931348623157e+308";

// Two PRED.csv files agree row by row: the same failed rows, the numbers
// within `tolerance` relative. Returns the number of failed rows, so that
// two files of nothing but failures do not pass unnoticed.
std::size_t ExpectSamePredictions(const std::string& actual, const std::string& expected, double tolerance) {
  const auto got = CsvLines(actual), want = CsvLines(expected);
  EXPECT_EQ(got.size(), want.size());
  std::size_t failed = 0;
  for (std::size_t i = 1; i < std::min(got.size(), want.size()); ++i) {
    EXPECT_EQ(got[i].size(), 3u);
    if (got[i].size() != 3 || want[i].size() != 3) continue;
    EXPECT_EQ(got[i][0], want[i][0]);
    failed += want[i][1] == kFailed;
    for (const std::size_t c : {1, 2}) {
      EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(got[i][c]), std::stod(want[i][c]), tolerance)) << i - 1;
    }
  }
  return failed;
}

// The sum of the pair counts of a variogram file.
unsigned long VariogramPairs(const std::string& path) {
  unsigned long pairs = 0;
  const auto bins = CsvLines(path);
  for (std::size_t b = 1; b < bins.size(); ++b) pairs += std::stoul(bins[b][3]);
  return pairs;
}

TEST(VarimoKrige, PredictsAsTheLibraryDoesInTheDocumentedFormats) {
  std::vector<Element> train, queries;
  std::vector<double> responses;
  ReadData(train, responses, queries);
  for (const bool simple : {false, true}) {
    SCOPED_TRACE(simple ? "simple" : "ordinary");
    const std::string out = Scratch("pred.csv");
    const Outcome run = Krige(TrainAndPredict() + " --response y --kernel Exponential --out " + out +
                          (simple ? " --model simple" : ""));
    ASSERT_EQ(run.status, 0) << run.err;
    std::smatch kernelLine;
    const std::regex kernelFormat("kernel: Exponential sill=(\\S+) nugget=(\\S+) range=(\\S+)\n");
    ASSERT_TRUE(std::regex_match(run.out, kernelLine, kernelFormat)) << run.out;

    // The library on the same rows, features a and b (every numeric column
    // but the response; the name column is text).
    Varimo::ZqKrigeKernel kernel(Varimo::ZqKrigeKernelType::Exponential);
    const auto model = LibraryModel(train, responses, simple, kernel);
    EXPECT_EQ(std::stod(kernelLine[1]), kernel.GetSill());
    EXPECT_EQ(std::stod(kernelLine[3]), kernel.GetRange());

    const auto lines = CsvLines(out);
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(lines[0], (std::vector<std::string>{"row", "prediction", "variance"}));
    for (std::size_t q = 0; q < queries.size(); ++q) {
      ASSERT_EQ(lines[q + 1].size(), 3u);
      EXPECT_EQ(lines[q + 1][0], std::to_string(q));
      EXPECT_EQ(lines[q + 1][1], SeventeenDigits(std::stod(lines[q + 1][1])));
      EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(lines[q + 1][1]), model->Predict(queries[q]), 1e-12));
      EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(lines[q + 1][2]), model->GetVariance(queries[q]), 1e-10));
    }
    // The last query lacks b: a failed prediction.
    EXPECT_EQ(lines[6], (std::vector<std::string>{"5", "1.7976931348623157e+308", "1.7976931348623157e+308"}));
  }
}

TEST(VarimoKrige, FeaturesVariogramAndTheDefaultWalk) {
  const std::string out = Scratch("pred.csv"), variogram = Scratch("variogram.csv");
  // One feature: the distance reads a only.
  Outcome run = Krige(TrainAndPredict() + " --response y --features a --out " + out + " --variogram " + variogram);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(std::regex_match(run.out, std::regex("kernel: \\S.* sill=\\S+ nugget=\\S+ range=\\S+\n"))) << run.out;
  const auto bins = CsvLines(variogram);
  ASSERT_GE(bins.size(), 4u);
  EXPECT_EQ(bins[0], (std::vector<std::string>{"bin", "distance", "semivariance", "pairs"}));
  for (std::size_t b = 1; b < bins.size(); ++b) EXPECT_EQ(bins[b][0], std::to_string(b - 1));
  EXPECT_EQ(VariogramPairs(variogram), 780u);  // 40 rows, 40 * 39 / 2 pairs
  EXPECT_EQ(bins[1][3], "52");  // the first bin takes a fifteenth

  // A training set of one row has no variogram: status 1.
  const std::string single = Scratch("single.csv");
  std::ofstream(single) << "a,y\n1.0,2.0\n";
  run = Krige("--train " + single + " --predict " + single + " --response y --out " + out);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("varimo-krige: no kernel could be trained on "), std::string::npos) << run.err;
}

TEST(VarimoKrige, UniversalPredictsAsTheLibraryDoes) {
  std::vector<Element> train, queries;
  std::vector<double> responses;
  ReadDriftData(train, responses, queries);
  // The features by default: a, b and the constant k, which adds exactly 0
  // to every distance; d1 and d2 are drift only.
  const std::string out = Scratch("pred.csv");
  const Outcome run =
      Krige(DriftFiles() + " --response y --model universal --drift d1,d2 --kernel Exponential --out " + out);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "varimo-krige: left out 1 training rows with missing values\n");

  Varimo::ZqUniversalKrige<Element> model(Varimo::ZqEuclideanDistance(2), LastTwo(),
                                          std::numeric_limits<double>::max(), 0xFFFFFFFFu, false,
                                          Varimo::ZqKrigeUniqueResponseMethod::Mean);
  for (std::size_t i = 0; i < train.size(); ++i) model.AddTraining(train[i], responses[i]);
  Varimo::ZqKrigeKernel kernel(Varimo::ZqKrigeKernelType::Exponential);
  ASSERT_TRUE(model.Train(kernel));
  EXPECT_EQ(run.out, "kernel: Exponential sill=" + SeventeenDigits(kernel.GetSill()) + " nugget=" +
                         SeventeenDigits(kernel.GetNugget()) + " range=" + SeventeenDigits(kernel.GetRange()) + "\n");
  const auto lines = CsvLines(out);
  ASSERT_EQ(lines.size(), queries.size() + 2);
  for (std::size_t q = 0; q < queries.size(); ++q) {
    const std::string prediction = SeventeenDigits(model.Predict(queries[q]));
    ASSERT_NE(prediction, kFailed) << q;
    EXPECT_EQ(lines[q + 1], (std::vector<std::string>{std::to_string(q), prediction,
                                                      SeventeenDigits(model.GetVariance(queries[q]))}));
  }
  // The last query lacks d1: a failed prediction.
  EXPECT_EQ(lines.back(), (std::vector<std::string>{std::to_string(queries.size()), kFailed, kFailed}));

  // A degenerate drift is solved, not crashed on: a constant column is
  // collinear with the drift's constant term, so the drift is the constant
  // alone and the model ordinary kriging. (A column named twice is refused
  // before training.)
  const std::string files = DriftFiles() + " --response y --kernel Exponential --features a,b --out ";
  const std::string expected = Scratch("expected.csv");
  ASSERT_EQ(Krige(files + out + " --model universal --drift k").status, 0);
  ASSERT_EQ(Krige(files + expected).status, 0);
  EXPECT_EQ(ExpectSamePredictions(out, expected, 1e-8), 0u);
  EXPECT_EQ(Krige(files + out + " --model universal --drift d1,d1").status, 2);
}

TEST(VarimoKrige, LocalModelsWithEveryNeighbourPredictAsGlobalOnes) {
  // A local model fits the kernel to the variogram of the whole set, as the
  // global one does; with at least as many neighbours as training rows, each
  // query then solves the global system.
  const std::string global = Scratch("global.csv"), local = Scratch("local.csv");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {TrainAndPredict() + " --response y --kernel Exponential", "40"},
      {TrainAndPredict() + " --response y --kernel Exponential --model simple", "1000"},
      {DriftFiles() + " --response y --kernel Exponential --model universal --drift d1,d2", "59"},
  };
  for (const auto& [args, neighbours] : cases) {
    SCOPED_TRACE(args + " --local " + neighbours);
    const Outcome globalRun = Krige(args + " --out " + global);
    const Outcome localRun = Krige(args + " --out " + local + " --local " + neighbours);
    ASSERT_EQ(globalRun.status, 0) << globalRun.err;
    ASSERT_EQ(localRun.status, 0) << localRun.err;
    EXPECT_EQ(localRun.out, globalRun.out);
    EXPECT_EQ(ExpectSamePredictions(local, global, 1e-8), 1u);
  }
  // Fewer neighbours, other predictions.
  ASSERT_EQ(Krige(cases[0].first + " --out " + global).status, 0);
  ASSERT_EQ(Krige(cases[0].first + " --out " + local + " --local 5").status, 0);
  const auto few = CsvLines(local), all = CsvLines(global);
  ASSERT_EQ(few.size(), 7u);
  for (std::size_t q = 1; q < 6; ++q) {
    EXPECT_FALSE(VarimoTest::WithinRelative(std::stod(few[q][1]), std::stod(all[q][1]), 1e-6)) << q - 1;
  }
}

TEST(VarimoKrige, LocalOptionsReachTheModel) {
  std::vector<Element> train, queries;
  std::vector<double> responses;
  ReadData(train, responses, queries);
  // --predict-training: each training row predicted from all the others,
  // with the kernel fitted to every row, is leave-one-out global kriging.
  const std::string out = Scratch("pred.csv");
  const std::string self = "--train " + VarimoTest::DataPath("krige/cli_train.csv") + " --predict " +
                           VarimoTest::DataPath("krige/cli_train.csv") + " --response y --kernel Exponential";
  ASSERT_EQ(Krige(self + " --local 40 --predict-training --out " + out).status, 0);
  const Varimo::ZqKrigeOptions options{Varimo::ZqGlobalKrigeOptions()};
  Varimo::ZqKrigeKernel kernel(Varimo::ZqKrigeKernelType::Exponential);
  LibraryModel(train, responses, false, kernel);
  const auto lines = CsvLines(out);
  ASSERT_EQ(lines.size(), train.size() + 1);
  for (std::size_t left = 0; left < train.size(); ++left) {
    const auto others = Varimo::ZqCreateKrige<Element>(Varimo::ZqEuclideanDistance(), options, false);
    for (std::size_t i = 0; i < train.size(); ++i) {
      if (i != left) others->AddTraining(train[i], responses[i]);
    }
    ASSERT_TRUE(others->TrainFixed(kernel));
    EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(lines[left + 1][1]), others->Predict(train[left]), 1e-8)) << left;
  }

  // --max-variogram-size: above that many pairs the variogram is a sample.
  const std::string variogram = Scratch("variogram.csv");
  const std::string local = TrainAndPredict() + " --response y --local 5 --out " + out + " --variogram " + variogram;
  ASSERT_EQ(Krige(local).status, 0);
  EXPECT_EQ(VariogramPairs(variogram), 780u);
  ASSERT_EQ(Krige(local + " --max-variogram-size 100").status, 0);
  EXPECT_GT(VariogramPairs(variogram), 0u);
  EXPECT_LT(VariogramPairs(variogram), 780u);
}

TEST(VarimoKrige, ProgressOnStandardErrorAboveThreeHundredRowsUnlessQuiet) {
  // Query files of 300 and 301 rows on a line through the training range;
  // the rows 100 and 290 lack b.
  std::vector<Element> queries;
  for (int r = 0; r < 301; ++r) queries.push_back({0.01 * r, 3.0 - 0.01 * r});
  auto queryFile = [&queries](std::size_t rows) {
    const std::string path = Scratch("query" + std::to_string(rows) + ".csv");
    std::ofstream file(path);
    file << std::setprecision(17) << "a,b\n";
    for (std::size_t r = 0; r < rows; ++r) {
      file << queries[r][0] << ',';
      if (r != 100 && r != 290) file << queries[r][1];
      file << '\n';
    }
    return path;
  };
  auto progressLines = [](const std::string& err) {
    std::vector<std::string> lines;
    for (const std::string& line : VarimoTest::Lines(err)) {
      if (line.rfind("varimo-krige: predicted ", 0) == 0) lines.push_back(line);
    }
    return lines;
  };
  const std::string base = "--train " + VarimoTest::DataPath("krige/cli_train.csv") + " --response y --out " +
                           Scratch("pred.csv") + " --predict ";
  const std::string rows300 = queryFile(300), rows301 = queryFile(301);

  // Not a terminal: one line per tenth of the rows, each ending its line.
  Outcome run = Krige(base + rows301 + " --local 10");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(progressLines(run.err),
            (std::vector<std::string>{"varimo-krige: predicted 31/301", "varimo-krige: predicted 61/301",
                                      "varimo-krige: predicted 91/301", "varimo-krige: predicted 121/301",
                                      "varimo-krige: predicted 151/301", "varimo-krige: predicted 181/301",
                                      "varimo-krige: predicted 211/301", "varimo-krige: predicted 241/301",
                                      "varimo-krige: predicted 271/301", "varimo-krige: predicted 301/301"}));
  EXPECT_EQ(run.err.find('\r'), std::string::npos);
  EXPECT_EQ(run.err.back(), '\n');
  // The global model predicts in blocks: a line per tenth crossed.
  run = Krige(base + rows301 + " --kernel Exponential");
  ASSERT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> blocks = progressLines(run.err);
  ASSERT_GE(blocks.size(), 1u);
  EXPECT_LE(blocks.size(), 10u);
  EXPECT_EQ(blocks.back(), "varimo-krige: predicted 301/301");
  EXPECT_EQ(static_cast<std::size_t>(std::count(run.err.begin(), run.err.end(), '\n')), blocks.size()) << run.err;
  EXPECT_EQ(run.err.find('\r'), std::string::npos);
  // The blocks put every prediction in its row.
  std::vector<Element> train, unused;
  std::vector<double> responses;
  ReadData(train, responses, unused);
  Varimo::ZqKrigeKernel kernel(Varimo::ZqKrigeKernelType::Exponential);
  const auto model = LibraryModel(train, responses, false, kernel);
  const auto lines = CsvLines(Scratch("pred.csv"));
  ASSERT_EQ(lines.size(), 302u);
  for (std::size_t r = 0; r < 301; ++r) {
    if (r == 100 || r == 290) {
      EXPECT_EQ(lines[r + 1], (std::vector<std::string>{std::to_string(r), kFailed, kFailed}));
      continue;
    }
    EXPECT_EQ(lines[r + 1][0], std::to_string(r));
    EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(lines[r + 1][1]), model->Predict(queries[r]), 1e-12)) << r;
  }

  // On a terminal (here the pseudo-terminal of util-linux script(1), which
  // writes "\n" as "\r\n"): one line rewritten in place, ended once.
  if (std::system("script -qec true /dev/null >/dev/null 2>&1") == 0) {
    const std::string screen = Scratch("screen");
    const std::string command = "script -qec '" + std::string(VARIMO_KRIGE_PROGRAM) + " " + base + rows301 +
                                " --local 10 >/dev/null' /dev/null >" + screen;
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::string text = Slurp(screen);
    EXPECT_EQ(text.rfind("\rvarimo-krige: predicted 1/301\rvarimo-krige: predicted 2/301\r", 0), 0u) << text;
    EXPECT_NE(text.find("\rvarimo-krige: predicted 151/301\r"), std::string::npos);
    const std::string end = "\rvarimo-krige: predicted 301/301\r\n";
    EXPECT_EQ(text.find(end), text.size() - end.size());
    EXPECT_EQ(text.find('\n'), text.size() - 1);
  }

  for (const std::string& quiet : {base + rows301 + " --quiet", base + rows301 + " --local 10 --quiet",
                                   base + rows300, base + rows300 + " --local 10"}) {
    run = Krige(quiet);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(progressLines(run.err).size(), 0u) << quiet;
  }
}

// What was written to a temporary file; the file is closed.
std::string Drain(std::FILE* file) {
  std::rewind(file);
  std::string text;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
  std::fclose(file);
  return text;
}

TEST(VarimoKrige, WarningsAndPrintedLinesEndTheProgressLineFirst) {
  // The sinks in place before the progress write into the same file, so the
  // order of the two kinds of text is visible.
  std::FILE* screen = std::tmpfile();
  ASSERT_NE(screen, nullptr);
  const Corvane::ZqThrowSink oldThrow = Corvane::ZqThrow.SetSink(
      [screen](Corvane::ZqThrowLevel, const std::string& text) { std::fprintf(screen, "[%s]", text.c_str()); });
  const Corvane::ZqOutputSink oldOutput = Corvane::ZqSetOutputSink(
      [screen](Corvane::ZqOutputStream, const std::string& text) { std::fprintf(screen, "<%s>", text.c_str()); });
  {
    VarimoKrige::Progress progress(1000, true, screen, true);
    progress.Update(1);
    progress.Update(2);
    Corvane::ZqThrow.Warning("Falling back");
    Corvane::ZqThrow.Warning("again");
    progress.Update(3);
    Corvane::ZqPrint(Corvane::ZqOutputStream::Err, "printed");
    progress.Update(1000);
    progress.Finish();
  }
  // The progress has put the earlier sinks back.
  Corvane::ZqThrow.Warning("after");
  const std::string text = Drain(screen);
  Corvane::ZqThrow.SetSink(oldThrow);
  Corvane::ZqSetOutputSink(oldOutput);
  EXPECT_EQ(text,
            "\rvarimo-krige: predicted 1/1000\rvarimo-krige: predicted 2/1000\n[Falling back][again]"
            "\rvarimo-krige: predicted 3/1000\n<printed>\rvarimo-krige: predicted 1000/1000\n[after]");
}

// A file predicted as it is read has no total: the rows so far, from 301
// on; in a log at 1000, 2000, 5000, 10000 rows.
TEST(VarimoKrige, ProgressWithoutATotalCountsTheRowsSoFar) {
  std::FILE* log = std::tmpfile();
  ASSERT_NE(log, nullptr);
  {
    VarimoKrige::Progress progress(0, true, log, false);
    for (std::size_t done = 256; done <= 12000; done += 256) progress.Update(done);
    progress.Finish();
  }
  std::FILE* screen = std::tmpfile();
  {
    VarimoKrige::Progress progress(0, true, screen, true);
    for (std::size_t done : {256, 512, 768}) progress.Update(done);
    progress.Finish();
  }
  const std::string text = Drain(log) + Drain(screen);
  EXPECT_EQ(text,
            "varimo-krige: predicted 1024\nvarimo-krige: predicted 2048\nvarimo-krige: predicted 5120\n"
            "varimo-krige: predicted 10240\n"
            "\rvarimo-krige: predicted 512\rvarimo-krige: predicted 768\n");
}

// --fit likelihood: the kernel of largest likelihood over the candidates of
// the Euclidean distance, as the library trains it; and with --kernel, that shape alone at the
// range and sill where scipy finds the likelihood's maximum
// (tests/data/krige/make_likelihood_refs.py).
TEST(VarimoKrige, FitByLikelihood) {
  std::vector<Element> train, queries;
  std::vector<double> responses;
  ReadData(train, responses, queries);
  const std::string out = Scratch("pred.csv");
  Outcome run = Krige(TrainAndPredict() + " --response y --fit likelihood --out " + out);
  ASSERT_EQ(run.status, 0) << run.err;
  auto model = Varimo::ZqCreateKrige<Element>(Varimo::ZqEuclideanDistance(),
                                              Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()), false);
  for (std::size_t i = 0; i < train.size(); ++i) model->AddTraining(train[i], responses[i]);
  // The candidates that are covariances under the Euclidean distance.
  const std::vector<Varimo::ZqKrigeKernel> euclidean =
      Varimo::ZqLikelihoodCandidates(Varimo::ZqDistanceClass::Euclidean);
  std::vector<const Varimo::ZqKrigeKernelBase*> candidates;
  for (const Varimo::ZqKrigeKernel& kernel : euclidean) candidates.push_back(&kernel);
  ASSERT_TRUE(Varimo::ZqTrainByLikelihood(*model, candidates));
  const Varimo::ZqKrigeKernel used = model->GetKernel();
  EXPECT_EQ(run.out, "kernel: " + used.GetName() + " sill=" + SeventeenDigits(used.GetSill()) +
                         " nugget=0 range=" + SeventeenDigits(used.GetRange()) + "\n");
  const auto lines = CsvLines(out);
  ASSERT_EQ(lines.size(), 7u);
  for (std::size_t q = 0; q < queries.size(); ++q) {
    EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(lines[q + 1][1]), model->Predict(queries[q]), 1e-12)) << q;
    EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(lines[q + 1][2]), model->GetVariance(queries[q]), 1e-10)) << q;
  }

  // The reference's 30 points as a CSV file.
  std::string points = "x,y,r\n";
  std::vector<std::vector<std::string>> optima;
  std::vector<Element> xy;
  for (const auto& tokens : VarimoTest::ReadReferenceLines("krige/likelihood_refs.txt")) {
    if (tokens[0] == "point") {
      points += tokens[1] + "," + tokens[2] + "," + tokens[3] + "\n";
      xy.push_back({std::stod(tokens[1]), std::stod(tokens[2])});
    }
    if (tokens[0] == "optimum" && (tokens[1] == "Exponential" || tokens[1] == "Gaussian") && tokens[2] != "universal") {
      optima.push_back(tokens);
    }
  }
  double longest = 0.0;
  for (const Element& a : xy) {
    for (const Element& b : xy) longest = std::max(longest, Varimo::ZqEuclideanDistance()(a, b));
  }
  const std::string data = Scratch("points.csv");
  VarimoTest::Write(data, points);
  ASSERT_EQ(optima.size(), 4u);
  for (const auto& optimum : optima) {
    SCOPED_TRACE(optimum[1] + " " + optimum[2]);
    run = Krige("--train " + data + " --predict " + data + " --response r --out " + out + " --fit likelihood --kernel " +
                optimum[1] + (optimum[2] == "simple" ? " --model simple" : ""));
    ASSERT_EQ(run.status, 0) << run.err;
    std::smatch kernelLine;
    ASSERT_TRUE(std::regex_match(run.out, kernelLine, std::regex("kernel: (\\S+) sill=(\\S+) nugget=0 range=(\\S+)\n")))
        << run.out;
    EXPECT_EQ(kernelLine[1], optimum[1]);
    EXPECT_NEAR(std::log2(std::stod(kernelLine[3]) / longest), std::stod(optimum[3]), 0.01);
    EXPECT_NEAR(std::stod(kernelLine[2]), std::stod(optimum[5]), 0.005 * std::stod(optimum[5]));
  }

  // On a smooth surface the likelihood prefers a kernel that only the
  // Euclidean distance admits, and the program offers it.
  std::string smooth = "a,b,y\n";
  for (int i = 0; i < 30; ++i) {
    const double a = 0.1 * (i % 6) + 0.013 * (i % 7), b = 0.12 * (i / 6) + 0.011 * (i % 5);
    smooth += SeventeenDigits(a) + "," + SeventeenDigits(b) + "," + SeventeenDigits(std::sin(3 * a) + std::cos(2 * b)) +
              "\n";
  }
  const std::string surface = Scratch("smooth.csv");
  VarimoTest::Write(surface, smooth);
  run = Krige("--train " + surface + " --predict " + surface + " --response y --out " + out + " --fit likelihood");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(run.out.rfind("kernel: Gaussian ", 0) == 0 || run.out.rfind("kernel: Cauchy ", 0) == 0) << run.out;

  // Local models and other fits are refused.
  VarimoTest::ExpectRefused({
      {TrainAndPredict() + " --response y --out " + out + " --fit ml", "--fit must be variogram or likelihood, not ml"},
      {TrainAndPredict() + " --response y --out " + out + " --fit likelihood --local 5",
       "--fit likelihood is for global models, not --local K"},
  });
}

TEST(VarimoKrige, MinMaxMetric) {
  std::vector<Element> train, queries;
  std::vector<double> responses;
  ReadData(train, responses, queries);
  const std::string out = Scratch("pred.csv"), global = Scratch("global.csv");
  const std::string args = TrainAndPredict() + " --response y --kernel Exponential --metric minmax";
  Outcome run = Krige(args + " --out " + out);
  ASSERT_EQ(run.status, 0) << run.err;
  auto model = Varimo::ZqCreateKrige<Element>(Varimo::ZqMinMaxDistance(),
                                              Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()), false);
  for (std::size_t i = 0; i < train.size(); ++i) model->AddTraining(train[i], responses[i]);
  Varimo::ZqKrigeKernel kernel(Varimo::ZqKrigeKernelType::Exponential);
  ASSERT_TRUE(model->Train(kernel));
  const Varimo::ZqKrigeKernel used = model->GetKernel();
  EXPECT_EQ(run.out, "kernel: Exponential sill=" + SeventeenDigits(used.GetSill()) + " nugget=" +
                         SeventeenDigits(used.GetNugget()) + " range=" + SeventeenDigits(used.GetRange()) + "\n");
  const auto lines = CsvLines(out);
  ASSERT_EQ(lines.size(), 7u);
  for (std::size_t q = 0; q < queries.size(); ++q) {
    EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(lines[q + 1][1]), model->Predict(queries[q]), 1e-12)) << q;
  }
  EXPECT_EQ(lines[6][1], kFailed);  // the query row with a missing value
  // The distance differs from the Euclidean one, and so do the predictions.
  ASSERT_EQ(Krige(TrainAndPredict() + " --response y --kernel Exponential --out " + global).status, 0);
  EXPECT_FALSE(VarimoTest::WithinRelative(std::stod(lines[1][1]), std::stod(CsvLines(global)[1][1]), 1e-6));

  // Local models find their neighbours by a scan under this distance: with
  // every training row as a neighbour they solve the global system.
  const std::string local = Scratch("local.csv");
  run = Krige(args + " --local 40 --out " + local);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(ExpectSamePredictions(local, out, 1e-8), 1u);
  ASSERT_EQ(Krige(args + " --local 5 --out " + local).status, 0);
  EXPECT_FALSE(VarimoTest::WithinRelative(std::stod(CsvLines(local)[1][1]), std::stod(lines[1][1]), 1e-6));
  // With one neighbour the prediction is its response. The query (2, 2) is
  // nearest to (1, 0) by Euclid (2.24 against 2.83) but to (4, 4) by
  // min-max (0.5 against 0.75).
  const std::string ten = Scratch("ten.csv"), one = Scratch("one.csv");
  VarimoTest::Write(ten, "a,b,y\n1,0,1\n4,4,2\n0,5,3\n6,1,4\n3,7,5\n8,8,6\n0,3.5,7\n5,0,8\n9,3,9\n2,9,10\n");
  VarimoTest::Write(one, "a,b\n2,2\n");
  for (const auto& [metric, nearest] : {std::pair<std::string, std::string>{"minmax", "2"}, {"euclidean", "1"}}) {
    run = Krige("--train " + ten + " --predict " + one + " --response y --kernel Exponential --local 1 --metric " +
                metric + " --out " + local);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(CsvLines(local)[1][1], nearest) << metric;
  }

  // Negative values cannot be compared: a training row with one is left out
  // with a message, a query row with one fails.
  std::string trainText = Slurp(VarimoTest::DataPath("krige/cli_train.csv")) + "neg,-1,2,5\n";
  const std::string negativeTrain = Scratch("negative_train.csv"), negativeQuery = Scratch("negative_query.csv");
  VarimoTest::Write(negativeTrain, trainText);
  VarimoTest::Write(negativeQuery, "a,b\n1,1\n-0.5,1\n");
  run = Krige("--train " + negativeTrain + " --predict " + negativeQuery +
              " --response y --kernel Exponential --metric minmax --out " + out);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("left out 1 training rows with a negative feature (--metric minmax)"), std::string::npos)
      << run.err;
  const auto negative = CsvLines(out);
  ASSERT_EQ(negative.size(), 3u);
  EXPECT_TRUE(VarimoTest::WithinRelative(std::stod(negative[1][1]), model->Predict({1.0, 1.0}), 1e-12));
  EXPECT_EQ(negative[2][1], kFailed);
  EXPECT_EQ(negative[2][2], kFailed);

  VarimoTest::ExpectRefused({
      {args + " --out " + out + " --metric cosine", "--metric must be euclidean or minmax, not cosine"},
      {"--train train.sdf --response ACTIVITY --predict x.sdf --out " + out + " --metric minmax",
       "--metric is only for CSV files of numbers; molecules are compared by their fingerprints"},
  });
}

TEST(VarimoKrige, BadArgumentsGiveOneLineAndStatusTwo) {
  const std::string files = TrainAndPredict() + " --out " + Scratch("pred.csv");
  const std::string drift = DriftFiles() + " --out " + Scratch("pred.csv");
  const std::string empty = Scratch("empty.csv");
  std::ofstream(empty).close();
  VarimoTest::ExpectRefused({
      {files + " --response z", "has no column z"},
      {files + " --response name", "column name of "},
      {files + " --response y --features a,c", "has no column c"},
      {files + " --response y --model kriging", "--model must be simple, ordinary or universal, not kriging"},
      {files + " --response y --model universal", "--model universal needs --drift C1,C2,..."},
      {files + " --response y --drift b", "--drift is only for --model universal"},
      {files + " --response y --model universal --drift b,,a", "--drift has an empty column name: b,,a"},
      {files + " --response y --model universal --drift z", "cli_train.csv has no column z"},
      {drift + " --response y --model universal --drift d1,d2 --features a,b --predict " +
           VarimoTest::DataPath("krige/cli_query.csv"),
       "cli_query.csv has no column d1"},
      {files + " --response y --local 0", "--local must be a whole number from 1 to 4294967295, not 0"},
      {files + " --response y --local x", "--local must be a whole number from 1 to 4294967295, not x"},
      {files + " --response y --local -3", "--local must be a whole number from 1 to 4294967295, not -3"},
      {files + " --response y --local 99999999999", "--local 99999999999 is too large: it must be from 1 to"},
      {files + " --response y --local 5 --max-variogram-size 0",
       "--max-variogram-size must be a whole number from 1 to 4294967295, not 0"},
      {files + " --response y --predict-training", "--predict-training is only for --local K"},
      {files + " --response y --max-variogram-size 100", "--max-variogram-size is only for --local K"},
      {files + " --response y --kernel Nope", "unknown kernel Nope"},
      {files + " --response y --bogus 1", "unknown option --bogus"},
      {files + " --response y --report r", "--report and --report-format are only for molecule files"},
      {files + " --response y --report-format svg", "--report and --report-format are only for molecule files"},
      {files + " --response", "option --response needs a value"},
      {"--response y --predict x.csv --out y.csv", "missing --train"},
      {"--train /nonexistent.csv --response y --predict x.csv --out y.csv", "cannot read /nonexistent.csv"},
      {"--train " + empty + " --response y --predict x.csv --out y.csv", "No data to work with!"},
  });
  const Outcome help = Krige("--help");
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--train", "--response", "--predict", "--out", "--features", "--model", "universal",
                             "--drift", "--kernel", "--fit", "--metric", "--variogram", "--local", "--predict-training",
                             "--max-variogram-size", "--quiet", "--help"}) {
    EXPECT_NE(help.out.find(option), std::string::npos) << option;
  }
}

}  // namespace
