// CSV loading throughput.
//
// BM_LoadCsvWithHeader loads one CSV file with ZqLoadDataTableFromCSVFileWithHeader
// and reports bytes per second. The file is $VARIMO_CSV_BENCH_FILE when set
// (compare_csv_load.py makes a 1 million row, ~100 MB file and runs pandas'
// read_csv on the same file for the ratio); otherwise a 20 000 row file of
// the same shape is written to the temporary folder.
//
// Run alone with --load-once FILE, the program loads the file once and
// prints seconds, MB/s, peak resident memory and the bytes the loaded table
// holds, for the memory comparison.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table_files.h"

namespace {

using namespace Varimo;

// Same shape as the comparison script's file: 8 numeric columns, a unique
// name and a category, with a few empty cells.
std::string WriteSampleFile(std::size_t rows) {
  const std::string path = (std::filesystem::temp_directory_path() / "varimo_csv_bench_sample.csv").string();
  std::ofstream out(path);
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> value(-1000.0, 1000.0);
  std::uniform_int_distribution<int> category(0, 4), missing(0, 999);
  out << "name,class,x1,x2,x3,x4,x5,x6,x7,x8\n";
  char buffer[32];
  for (std::size_t r = 0; r < rows; ++r) {
    out << "CHEMBL" << 1000000 + r << ",class_" << category(engine);
    for (int c = 0; c < 8; ++c) {
      out << ',';
      if (missing(engine) == 0) continue;
      std::snprintf(buffer, sizeof buffer, "%.6f", value(engine));
      out << buffer;
    }
    out << '\n';
  }
  return path;
}

std::string BenchFile() {
  if (const char* path = std::getenv("VARIMO_CSV_BENCH_FILE")) return path;
  static const std::string sample = WriteSampleFile(20000);
  return sample;
}

// Bytes the columns of a table hold: 8 per double, 4 per int, a string
// object per text cell plus its characters beyond the small-string buffer.
double TableBytes(const ZqDataTable& table) {
  double bytes = 0.0;
  for (const ZqDataTableCol& col : table.GetColumns()) {
    const std::uint64_t n = col.GetNumElementsInCol();
    switch (col.GetStatVariableType()) {
      case ZqStatVariableType::Ratio: bytes += 8.0 * n; break;
      case ZqStatVariableType::Interval: bytes += 4.0 * n; break;
      case ZqStatVariableType::Nominal: bytes += 4.0 * n; break;
      default:
        for (std::uint64_t r = 0; r < n; ++r) {
          const std::size_t length = col.GetString(r, 0).size();
          bytes += sizeof(std::string) + (length > 15 ? length + 1 : 0);
        }
    }
  }
  return bytes;
}

void BM_LoadCsvWithHeader(benchmark::State& state) {
  const std::string path = BenchFile();
  const auto fileBytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
  for (auto _ : state) {
    Tessik::zqifstream stream(path);
    ZqDataTable table("bench");
    const ZqStatModelResult result = ZqLoadDataTableFromCSVFileWithHeader(table, stream, path);
    if (result.NotSuccessful()) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(table.GetNumColumns());
  }
  state.SetBytesProcessed(state.iterations() * fileBytes);
}
BENCHMARK(BM_LoadCsvWithHeader)->Unit(benchmark::kMillisecond);

int LoadOnce(const std::string& path) {
  const auto start = std::chrono::steady_clock::now();
  Tessik::zqifstream stream(path);
  ZqDataTable table("once");
  const ZqStatModelResult result = ZqLoadDataTableFromCSVFileWithHeader(table, stream, path);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (result.NotSuccessful()) {
    std::fprintf(stderr, "%s\n", result.ReportStatResultDetails().c_str());
    return 1;
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const double megabytes = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
  std::printf("seconds %.3f\nMB/s %.1f\npeak_rss_MB %.1f\ntable_MB %.1f\nrows %llu\n", seconds, megabytes / seconds,
              static_cast<double>(usage.ru_maxrss) / 1e3, TableBytes(table) / 1e6,
              static_cast<unsigned long long>(table.GetNumRows()));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--load-once") == 0) return LoadOnce(argv[2]);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
