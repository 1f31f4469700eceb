// varimo-krige end to end on small CSV files (tests/data/krige/
// make_cli_data.py, make_cli_drift_data.py): the output files and the kernel
// line in their exact formats, the same numbers as the library's models on
// the same rows, and a one-line message with status 2 for every bad
// argument.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "test_support.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/platform/corvane/strings.h"

namespace {

using Element = std::vector<double>;

struct Outcome {
  int status;
  std::string out, err;
};

std::string Slurp(const std::string& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// ctest runs the cases of this file as parallel processes, so every scratch
// file carries the test's name and process id to keep the runs apart.
std::string Scratch(const std::string& name) {
  const std::string test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
  return ::testing::TempDir() + "varimo_krige_" + test + "_" + std::to_string(getpid()) + "_" + name;
}

Outcome Krige(const std::string& args) {
  const std::string out = Scratch("stdout"), err = Scratch("stderr");
  const std::string command = std::string(VARIMO_KRIGE_PROGRAM) + " " + args + " >" + out + " 2>" + err;
  const int raw = std::system(command.c_str());
  return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, Slurp(out), Slurp(err)};
}

std::string SeventeenDigits(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

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
  std::istringstream in(Slurp(path));
  std::string line;
  while (std::getline(in, line)) {
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
  for (std::size_t i = 1; i + 1 < lines.size(); ++i) queries.push_back({std::stod(lines[i][0]), std::stod(lines[i][1])});
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
    std::unique_ptr<Varimo::ZqKrigeBase<Element>> model = Varimo::ZqCreateKrige<Element>(
        Varimo::ZqEuclideanDistance(), Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()), simple);
    for (std::size_t i = 0; i < train.size(); ++i) model->AddTraining(train[i], responses[i]);
    Varimo::ZqKrigeKernel kernel(Varimo::ZqKrigeKernelType::Exponential);
    ASSERT_TRUE(model->Train(kernel));
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
  unsigned long pairs = 0;
  for (std::size_t b = 1; b < bins.size(); ++b) {
    EXPECT_EQ(bins[b][0], std::to_string(b - 1));
    pairs += std::stoul(bins[b][3]);
  }
  EXPECT_EQ(pairs, 780u);  // 40 rows, 40 * 39 / 2 pairs
  EXPECT_EQ(bins[1][3], "52");  // the first bin takes a fifteenth

  // A training set of one row has no variogram: status 1.
  const std::string single = Scratch("single.csv");
  std::ofstream(single) << "a,y\n1.0,2.0\n";
  run = Krige("--train " + single + " --predict " + single + " --response y --out " + out);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("varimo-krige: no kernel could be trained on "), std::string::npos) << run.err;
}

TEST(VarimoKrige, BadArgumentsGiveOneLineAndStatusTwo) {
  const std::string files = TrainAndPredict() + " --out " + Scratch("pred.csv");
  const std::string drift = DriftFiles() + " --out " + Scratch("pred.csv");
  const std::vector<std::pair<std::string, std::string>> cases = {
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
      {files + " --response y --local 0", "--local must be a whole number of at least 1, not 0"},
      {files + " --response y --local x", "--local must be a whole number of at least 1, not x"},
      {files + " --response y --local -3", "--local must be a whole number of at least 1, not -3"},
      {files + " --response y --local 5 --max-variogram-size 0",
       "--max-variogram-size must be a whole number of at least 1, not 0"},
      {files + " --response y --predict-training", "--predict-training is only for --local K"},
      {files + " --response y --max-variogram-size 100", "--max-variogram-size is only for --local K"},
      {files + " --response y --kernel Nope", "unknown kernel Nope"},
      {files + " --response y --bogus 1", "unknown option --bogus"},
      {files + " --response", "option --response needs a value"},
      {"--response y --predict x.csv --out y.csv", "missing --train"},
      {"--train /nonexistent.csv --response y --predict x.csv --out y.csv", "cannot read /nonexistent.csv"},
  };
  for (const auto& [args, message] : cases) {
    const Outcome run = Krige(args);
    EXPECT_EQ(run.status, 2) << args;
    EXPECT_EQ(run.err.rfind("varimo-krige: ", 0), 0u) << run.err;
    EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;  // one line
  }
  const Outcome help = Krige("--help");
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--train", "--response", "--predict", "--out", "--features", "--model", "universal",
                             "--drift", "--kernel", "--variogram", "--local", "--predict-training",
                             "--max-variogram-size", "--quiet", "--help"}) {
    EXPECT_NE(help.out.find(option), std::string::npos) << option;
  }
}

}  // namespace
