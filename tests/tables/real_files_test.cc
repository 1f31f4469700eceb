// Loaders on real files that nobody here wrote (Debian's rdkit-data),
// checked against what Python's csv module reads from the same files
// (tests/data/tables/make_real_file_refs.py).
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/tables/data_table_file_info.h"
#include "varimo/tables/data_table_files.h"

namespace Varimo {
namespace {

namespace Type = ZqStatVariableType;

struct ExpectedFile {
  std::string path;
  std::size_t numColumns = 0, numRows = 0;
  std::vector<std::string> names, kinds;
  struct Cell {
    std::size_t row, column;
    std::string text;
  };
  std::vector<Cell> cells;
};

std::vector<ExpectedFile> ReadExpectations() {
  std::ifstream in(VarimoTest::DataPath("tables/real_file_refs.tsv"));
  std::vector<ExpectedFile> files;
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> f;
    Corvane::ZqStringTokenize(f, line, "\t", false);
    if (f[0] == "file") {
      files.push_back({f[1], std::stoul(f[2]), std::stoul(f[3]), {}, {}, {}});
    } else if (f[0] == "kind") {
      files.back().names.push_back(f[2]);
      files.back().kinds.push_back(f[3]);
    } else if (f[0] == "cell") {
      files.back().cells.push_back({std::stoul(f[1]), std::stoul(f[2]), f.size() > 3 ? f[3] : std::string()});
    }
  }
  return files;
}

const char* KindName(std::uint32_t type) {
  switch (type) {
    case Type::Ratio: return "Ratio";
    case Type::Nominal: return "Nominal";
    case Type::Identifier: return "Identifier";
    default: return "Other";
  }
}

TEST(RealFiles, CsvLoaderAgreesWithPythonCsv) {
  const std::vector<ExpectedFile> files = ReadExpectations();
  ASSERT_EQ(files.size(), 3u);
  for (const ExpectedFile& expected : files) {
    SCOPED_TRACE(expected.path);
    Tessik::zqifstream stream(expected.path);
    ASSERT_TRUE(stream.is_open()) << "rdkit-data is installed by scripts/install-deps";
    ZqDataTable table("real");
    const ZqStatModelResult result = ZqLoadDataTableFromCSVFileWithHeader(table, stream, expected.path);
    ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
    ASSERT_EQ(table.GetNumColumns(), expected.numColumns + 1);  // plus the line numbers
    EXPECT_EQ(table.GetNumRows(), expected.numRows);
    for (std::size_t c = 0; c < expected.numColumns; ++c) {
      EXPECT_EQ(KindName(table.GetColumnFromName(expected.names[c]).GetStatVariableType()), expected.kinds[c])
          << expected.names[c];
    }
    for (const ExpectedFile::Cell& cell : expected.cells) {
      const ZqDataTableCol& col = table.GetColumnFromName(expected.names[cell.column]);
      if (col.GetStatVariableType() == Type::Ratio) {
        if (cell.text.empty()) {
          EXPECT_TRUE(col.RowColHasMissingData(cell.row, 0));
        } else {
          EXPECT_EQ(col.GetDouble(cell.row, 0), std::strtod(cell.text.c_str(), nullptr)) << cell.text;
        }
      } else {
        EXPECT_EQ(col.GetString(cell.row, 0), cell.text.empty() ? "MissingStringData" : cell.text);
      }
    }
  }
}

// The TPSA sample starts with a "#" remark instead of a header, which no
// loader takes for a comment; configured for it ("#" remarks, no header),
// the file reader reads it.
TEST(RealFiles, TpsaSampleWithAConfiguredReader) {
  const std::string path = "/usr/share/RDKit/Data/NCI/first_5k.tpsa.csv";
  Tessik::zqifstream stream(path);
  ASSERT_TRUE(stream.is_open());
  ZqDataTableFileInfo file(stream, path, ZqDataTableFileHeaderType::NoHeader,
                           ZqDataTableFileDataLayoutType::Rectangular, ",\n", "\"", "#", "?");
  ZqStatModelResult result = file.SetFileColumns();
  if (result.IsSuccessful()) result = file.ProcessDataLines();
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  ASSERT_EQ(file.GetNumColumnsInFile(), 2u);
  const ZqDataTableCol& smiles = file.GetFileColumns()[0].GetDataTableCol();
  const ZqDataTableCol& tpsa = file.GetFileColumns()[1].GetDataTableCol();
  // 4999 data lines (Python: sum(1 for line in f) - 1), SMILES as identifiers.
  EXPECT_EQ(smiles.GetNumElementsInCol(), 4999u);
  EXPECT_EQ(smiles.GetStatVariableType(), Type::Identifier);
  EXPECT_EQ(smiles.GetString(0, 0), "CC1=CC(=O)C=CC1=O");
  EXPECT_EQ(tpsa.GetStatVariableType(), Type::Ratio);
  EXPECT_EQ(tpsa.GetDouble(0, 0), 34.14);
  EXPECT_EQ(tpsa.GetDouble(4998, 0), 16.13);  // the last line of the file
  EXPECT_EQ(file.GetLineNumberColumn().GetDataTableCol().GetInt(0, 0), 2);
}

}  // namespace
}  // namespace Varimo
