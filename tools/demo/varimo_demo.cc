// varimo-demo: reads a two-column CSV file of SMILES and a measured value
// (by default RDKit's TPSA sample of 5000 NCI molecules) into typed columns,
// prints what the library knows about them and the statistics of the values.
//
//   varimo-demo [FILE.csv]
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/tessik/file_stream.h"
#include "varimo/tables/column_append.h"
#include "varimo/tables/data_table_column.h"
#include "varimo/varimo.h"

namespace {

constexpr const char* kDefaultFile = "/usr/share/RDKit/Data/NCI/first_5k.tpsa.csv";

}  // namespace

int main(int argc, char** argv) {
  using namespace Varimo;
  const std::string path = argc > 1 ? argv[1] : kDefaultFile;
  Tessik::zqifstream in(path);
  if (!in.is_open()) {
    std::fprintf(stderr, "varimo-demo: cannot read %s\n", path.c_str());
    return 1;
  }
  std::cout << VarimoVersion() << "\n\nReading " << path << "\n";

  ZqDataTableCol smiles(path + "::SMILES", ZqStatVariableType::Identifier, 5000);
  ZqDataTableCol values(path + "::Value", ZqStatVariableType::Ratio, 5000);
  std::string line;
  std::vector<std::string> fields;
  std::size_t refused = 0;
  ZqStatModelResult firstRefusal(true);
  while (in.getline(line)) {
    if (Corvane::ZqStringStripWhiteSpace(line).empty() || line[0] == '#') continue;
    Corvane::ZqStringTokenize(fields, line, ",", false);
    if (fields.size() != 2) continue;
    ZqConvertStringAndAppendToCol(smiles, fields[0]);
    ZqStatModelResult result = ZqConvertStringAndAppendToCol(values, fields[1]);
    if (result.NotSuccessful()) {
      // Keep the rows aligned: an unreadable value is a missing one.
      ZqAppendMissingDataToCol(values);
      if (refused++ == 0) firstRefusal = result;
    }
  }
  ZqFinishAppendingVars(smiles);
  ZqFinishAppendingVars(values);

  smiles.PrintSummaryPlusStartOfData(5, 1);
  std::cout << "num unique vals = " << smiles.GetNumUniqueDiscreteValues() << "\n\n";
  values.PrintSummaryPlusStartOfData(5, 1);
  std::cout << "num unique vals = " << values.GetNumUniqueDiscreteValues() << "\n";
  values.PrintUniqueDiscreteValues(20);
  std::cout << "\nValues that did not parse: " << refused << "\n";
  if (refused > 0) std::cout << "First refusal:" << firstRefusal.ReportStatResultDetails() << "\n";

  std::cout << "\nStatistics of the values:\n";
  for (unsigned int type = ZqSampleStatisticType::Mean; type < ZqSampleStatisticType::NumTypes; ++type) {
    std::uint64_t numMissing = 0, numBad = 0;
    ZqStatModelResult result;
    const double value = ZqGetSampleStatisticForColumnOfRatioType(result, numMissing, numBad, type, values, 0);
    std::cout << "   " << ZqSampleStatisticType::TypeName[type] << ": " << value << "\n";
    if (type == ZqSampleStatisticType::Mean) {
      std::cout << "   (" << numMissing << " missing and " << numBad << " bad values left out)\n";
    }
  }

  // A refused operation explains itself.
  ZqStatModelResult wrongKind = ZqAppendIntToCol(values, 3);
  std::cout << "\nAppending an int to the finished value column:" << wrongKind.ReportStatResultDetails() << "\n";
  return 0;
}
