// Tables written with the CSV writer and read back by the loaders.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"
#include "varimo/tables/data_table_files.h"

namespace Varimo {
namespace {

namespace Bad = VarimoBadData;
namespace Type = ZqStatVariableType;

ZqDataTable ReadCsv(const std::string& text) {
  Tessik::zqifstream stream;
  stream.OpenText(text);
  ZqDataTable table("back");
  const ZqStatModelResult result = ZqLoadDataTableFromCSVFileWithHeader(table, stream, "rt");
  EXPECT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  return table;
}

std::string WriteCsv(const ZqDataTable& table, const std::string& title = "") {
  std::ostringstream out;
  ZqWriteDataTableToCSVFileWithHeader(out, table, title);
  return out.str();
}

// A random table of every scalar kind. Doubles have at most six significant
// digits, which is what the writer keeps.
ZqDataTable RandomTable(unsigned seed, std::size_t rows, bool reservedNumbers) {
  std::mt19937 engine(seed);
  std::uniform_int_distribution<int> hundredths(-99999, 99999), small(-500, 500), category(0, 4), pick(0, 9);
  ZqDataTableCol ratio("ratio", Type::Ratio, rows), interval("interval", Type::Interval, rows),
      nominal("nominal", Type::Nominal, rows), identifier("identifier", Type::Identifier, rows);
  for (std::size_t r = 0; r < rows; ++r) {
    const int roll = pick(engine);
    if (reservedNumbers && roll == 0) {
      ZqAppendMissingDataToCol(ratio);
      ZqAppendIntToCol(interval, Bad::BadInt);
    } else {
      ZqAppendDoubleToCol(ratio, hundredths(engine) / 100.0);
      ZqAppendIntToCol(interval, small(engine));
    }
    if (roll == 1) {
      ZqAppendMissingDataToCol(nominal);
      ZqAppendStringToCol(identifier, Bad::BadString);
    } else if (roll == 2) {
      ZqAppendStringToCol(nominal, Bad::BadString);
      ZqAppendMissingDataToCol(identifier);
    } else {
      ZqAppendStringToCol(nominal, "class " + std::to_string(category(engine)));
      ZqAppendStringToCol(identifier, "mol, #" + std::to_string(r));  // commas need quoting
    }
  }
  ZqDataTable table("random");
  for (ZqDataTableCol* col : {&ratio, &interval, &nominal, &identifier}) {
    col->FinishAddingVars();
    EXPECT_TRUE(table.AddColumn(*col).IsSuccessful());
  }
  return table;
}

class CsvRoundTrip : public ::testing::TestWithParam<unsigned> {};

TEST_P(CsvRoundTrip, EveryCellReadsBackTheSame) {
  const std::size_t rows = 200;
  const ZqDataTable original = RandomTable(GetParam(), rows, false);
  const ZqDataTable back = ReadCsv(WriteCsv(original));
  ASSERT_EQ(back.GetNumRows(), rows);
  for (const char* name : {"ratio", "interval", "nominal", "identifier"}) {
    const ZqDataTableCol& before = original.GetColumnFromName(name);
    const ZqDataTableCol& after = back.GetColumnFromName(name);
    for (std::uint64_t r = 0; r < rows; ++r) {
      ASSERT_EQ(after.GetString(r, 0), before.GetString(r, 0)) << name << " row " << r;
      ASSERT_EQ(after.GetDouble(r, 0), before.GetDouble(r, 0)) << name << " row " << r;
      ASSERT_EQ(after.RowColHasMissingData(r, 0), before.RowColHasMissingData(r, 0)) << name << " row " << r;
      ASSERT_EQ(after.RowColHasBadData(r, 0), before.RowColHasBadData(r, 0)) << name << " row " << r;
    }
  }
  // Kinds: integers come back as ratio (files do not say "integer"), the
  // rest as they were.
  EXPECT_EQ(back.GetColumnFromName("ratio").GetStatVariableType(), Type::Ratio);
  EXPECT_EQ(back.GetColumnFromName("interval").GetStatVariableType(), Type::Ratio);
  EXPECT_EQ(back.GetColumnFromName("nominal").GetStatVariableType(), Type::Nominal);
  EXPECT_EQ(back.GetColumnFromName("identifier").GetStatVariableType(), Type::Identifier);
  EXPECT_EQ(back.GetColumnFromName("nominal").GetUniqueDiscreteValues(),
            original.GetColumnFromName("nominal").GetUniqueDiscreteValues());
}

INSTANTIATE_TEST_SUITE_P(Seeds, CsvRoundTrip, ::testing::Values(1u, 2u, 3u, 4u));

// Reserved numbers are written by name, and a name is no number: such a
// column comes back as text, holding the same texts.
TEST(CsvRoundTripReserved, NumericColumnsWithReservedValuesComeBackAsText) {
  const ZqDataTable original = RandomTable(7, 100, true);
  const ZqDataTable back = ReadCsv(WriteCsv(original));
  for (const char* name : {"ratio", "interval"}) {
    const ZqDataTableCol& before = original.GetColumnFromName(name);
    const ZqDataTableCol& after = back.GetColumnFromName(name);
    EXPECT_EQ(after.GetStatVariableType(), Type::Identifier) << name;
    for (std::uint64_t r = 0; r < 100; ++r) ASSERT_EQ(after.GetString(r, 0), before.GetString(r, 0));
  }
}

// A similarity matrix with its index and titles, written under a two-line
// title, reads back as a PGS file.
TEST(PgsRoundTrip, LowerTriangleWrittenAndReadBack) {
  const std::size_t n = 12;
  std::mt19937 engine(3);
  std::uniform_int_distribution<int> permille(0, 1000);
  ZqDataTableCol index("Index", Type::Interval, n), title("Title", Type::Identifier, n);
  std::vector<double> triangle;
  for (std::size_t i = 0; i < n; ++i) {
    ZqAppendIntToCol(index, static_cast<int>(i));
    ZqAppendStringToCol(title, "item" + std::to_string(i));
    for (std::size_t j = 0; j <= i; ++j) triangle.push_back(i == j ? 1.0 : permille(engine) / 1000.0);
  }
  ZqDataTable table("sim");
  ASSERT_TRUE(table.AddColumn(index).IsSuccessful());
  ASSERT_TRUE(table.AddColumn(title).IsSuccessful());
  ASSERT_TRUE(table.AddColumn(ZqDataTableCol("SimilarityMatrix", triangle, n, true)).IsSuccessful());

  Tessik::zqifstream stream;
  stream.OpenText(WriteCsv(table, "% similarities\n% of twelve items"));
  ZqDataTable back("back");
  const ZqStatModelResult result = ZqLoadDataTableFromPGSFile(back, stream, "rt", false);
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  const ZqDataTableCol& before = table.GetColumnFromName("SimilarityMatrix");
  const ZqDataTableCol& after = back.GetColumnFromName("SimilarityMatrix");
  for (std::uint64_t i = 0; i < n; ++i) {
    EXPECT_EQ(back.GetColumnFromName("Title").GetString(i, 0), "item" + std::to_string(i));
    EXPECT_EQ(back.GetColumnFromName("Index").GetInt(i, 0), static_cast<int>(i));
    for (std::uint64_t j = 0; j < n; ++j) ASSERT_EQ(after.GetDouble(i, j), before.GetDouble(i, j));
  }
}

}  // namespace
}  // namespace Varimo
