// The main of a benchmark program that takes one data folder flag of its own
// (--<name>=DIR) besides Google Benchmark's: the folder, or an empty text
// when the flag is absent, goes to `load` before the benchmarks run. A load
// that throws ends the program with its message and status 2.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <string>

namespace VarimoBench {

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
