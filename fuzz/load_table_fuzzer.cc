// Feeds arbitrary bytes to one table loader (chosen at build time by
// VARIMO_FUZZ_LOADER). A load may fail, but must never crash, hang or leak,
// and a load that succeeds must give a consistent table that can be written.
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>

#include "varimo/tables/data_table_files.h"

namespace {

using namespace Varimo;

ZqStatModelResult ZqLoadDataTableFromPGSFileQuietly(ZqDataTable& table, Tessik::zqifstream& stream,
                                                    const std::string& fileName) {
  return ZqLoadDataTableFromPGSFile(table, stream, fileName, false);
}

void CheckConsistent(const ZqDataTable& table) {
  std::uint64_t rows = 0;
  bool first = true;
  for (const ZqDataTableCol& col : table.GetColumns()) {
    const std::uint64_t colRows = col.GetTotalNumRowsInCol();
    if (!first && colRows != rows) __builtin_trap();
    rows = colRows;
    first = false;
    for (std::uint64_t r = 0; r < colRows; ++r) (void)col.GetString(r, 0);
  }
  if (table.GetNumRows() != rows) __builtin_trap();
  std::ostringstream out;
  ZqWriteDataTableToCSVFileWithHeader(out, table, "");
}

}  // namespace

// The plain loader without a header describes its columns on standard
// output; that goes here instead of the fuzzer's log.
std::ostringstream& StdoutSink() {
  static std::ostringstream sink;
  return sink;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::cout.rdbuf(StdoutSink().rdbuf());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Tessik::zqifstream stream;
  stream.OpenText(std::string(reinterpret_cast<const char*>(data), size));
  ZqDataTable table("fuzz");
  const ZqStatModelResult result = VARIMO_FUZZ_LOADER(table, stream, "fuzz");
  if (result.IsSuccessful()) {
    CheckConsistent(table);
  } else {
    (void)result.ReportStatResultDetails();
  }
  StdoutSink().str(std::string());  // keep it from growing over millions of inputs
  return 0;
}
