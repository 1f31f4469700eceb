// The main of a benchmark program that takes one data folder flag of its own
// (--<name>=DIR) besides Google Benchmark's: the folder, or an empty text
// when the flag is absent, goes to `load` before the benchmarks run. A load
// that throws ends the program with its message and status 2.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace VarimoBench {

// The first `count` raw native-endian doubles of a file written by a
// comparison script (numpy's tofile).
inline std::vector<double> ReadDoubles(const std::string& path, std::size_t count) {
  std::vector<double> values(count);
  std::ifstream in(path, std::ios::binary);
  if (!in.read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(count * sizeof(double)))) {
    throw std::runtime_error("cannot read " + std::to_string(count) + " doubles from " + path);
  }
  return values;
}

inline int MainWithDataFlag(int argc, char** argv, const std::string& flag,
                            const std::function<void(const std::string&)>& load) {
  const std::string prefix = "--" + flag + "=";
  std::string dir;
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg.rfind(prefix, 0) == 0) {
      dir = arg.substr(prefix.size());
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  argv[argc] = nullptr;
  try {
    load(dir);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 2;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace VarimoBench
