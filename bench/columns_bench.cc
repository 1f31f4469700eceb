// Column throughput: what loading and scanning a table costs per cell.
//
// BM_ConvertStringAndAppend  parse text cells into a ratio column (the work
//                            of a CSV loader per numeric cell), n cells
// BM_StrtodBaseline          the same texts through strtod into a vector:
//                            the floor a loader cannot beat
// BM_ReadDoubles             read every cell of a finished n-row column
// BM_NominalFinish           build the list of a nominal column of n cells
//                            with 100 categories
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"
#include "varimo/tables/data_table_column.h"

namespace {

using namespace Varimo;

std::vector<std::string> NumberTexts(std::size_t n) {
  std::mt19937_64 engine(42);
  std::uniform_real_distribution<double> value(-1000.0, 1000.0);
  std::vector<std::string> texts;
  texts.reserve(n);
  for (std::size_t i = 0; i < n; ++i) texts.push_back(std::to_string(value(engine)));
  return texts;
}

void BM_ConvertStringAndAppend(benchmark::State& state) {
  const auto texts = NumberTexts(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    ZqDataTableCol col("x", ZqStatVariableType::Ratio, texts.size());
    for (const std::string& text : texts) ZqConvertStringAndAppendToCol(col, text);
    benchmark::DoNotOptimize(col.GetNumElementsInCol());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ConvertStringAndAppend)->Arg(1 << 16);

void BM_StrtodBaseline(benchmark::State& state) {
  const auto texts = NumberTexts(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::vector<double> values;
    values.reserve(texts.size());
    for (const std::string& text : texts) values.push_back(std::strtod(text.c_str(), nullptr));
    benchmark::DoNotOptimize(values.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_StrtodBaseline)->Arg(1 << 16);

void BM_ReadDoubles(benchmark::State& state) {
  std::vector<double> values(static_cast<std::size_t>(state.range(0)), 1.5);
  const ZqDataTableCol col("x", values);
  for (auto _ : state) {
    double sum = 0.0;
    for (std::uint64_t row = 0; row < values.size(); ++row) sum += col.GetDouble(row, 0);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReadDoubles)->Arg(1 << 20);

void BM_NominalFinish(benchmark::State& state) {
  std::mt19937_64 engine(7);
  std::uniform_int_distribution<int> category(0, 99);
  std::vector<std::string> cells;
  for (long i = 0; i < state.range(0); ++i) cells.push_back("class_" + std::to_string(category(engine)));
  for (auto _ : state) {
    ZqDataTableCol col("c", ZqStatVariableType::Nominal, cells.size());
    for (const std::string& cell : cells) ZqAppendStringToCol(col, cell);
    col.FinishAddingVars();
    benchmark::DoNotOptimize(col.GetNumUniqueDiscreteValues());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_NominalFinish)->Arg(1 << 16);

}  // namespace
