
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table_file_info.h"
#include "varimo/tables/data_table_files.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

namespace {

namespace Header = ZqDataTableFileHeaderType;
namespace Layout = ZqDataTableFileDataLayoutType;

// Every loader shares quotes, comments and the missing marker.
constexpr const char* kQuotes = "'\"";
constexpr const char* kComments = "%";
constexpr const char* kMissing = "?";

struct FileFormat {
  const char* routine;
  std::uint32_t headerType;
  std::uint32_t layoutType;
  const char* headerDelimiters;
  const char* dataDelimiters;
};

constexpr FileFormat kArff{"LoadDataTableFromArffFile", Header::Arff, Layout::Rectangular, " \t\n", " ,\n"};
constexpr FileFormat kPlainWithoutHeader{"LoadDataTableFromPlainFileWithoutHeader", Header::NoHeader,
                                         Layout::Rectangular, " \t\n", " ,\n"};
constexpr FileFormat kPlainWithHeader{"LoadDataTableFromPlainFileWithHeader", Header::NamesLine, Layout::Rectangular,
                                      " ,\t\n", " \t,\n"};
constexpr FileFormat kCsvWithHeader{"LoadDataTableFromCSVFileWithHeader", Header::NamesLine, Layout::Rectangular,
                                    ",\n", ",\n"};
constexpr FileFormat kPgs{"LoadDataTableFromPGSFile", Header::TwoCommentsThenNames,
                          Layout::LeadingColumnsPlusLowerTriangular, " ,\n", ",\n"};

enum class Echo { None, Summary, SummaryAndValues };

void EchoColumn(const ZqDataTableCol& col, Echo echo) {
  if (echo == Echo::None) return;
  col.PrintSummaryPlusStartOfData(10, 10);
  if (echo == Echo::SummaryAndValues) {
    Corvane::ZqPrint(Corvane::ZqOutputStream::Out, "num unique vals = %llu\n",
                     static_cast<unsigned long long>(col.GetNumUniqueDiscreteValues()));
    col.PrintUniqueDiscreteValues(10);
  }
}

ZqStatModelResult Load(const FileFormat& format, ZqDataTable& table, Tessik::zqifstream& stream,
                       const std::string& fileName, Echo echo) {
  ZqDataTableFileInfo file(stream, fileName, format.headerType, format.layoutType, format.headerDelimiters,
                           format.dataDelimiters, kQuotes, kQuotes, kComments, kMissing);
  ZqStatModelResult result =
      format.layoutType == Layout::LeadingColumnsPlusLowerTriangular
          ? file.SetFileColumns({"Index", "Title", "SimilarityMatrix"},
                                {ZqStatVariableType::Interval, ZqStatVariableType::Identifier,
                                 ZqStatVariableType::Ratio},
                                {1, 1, 1}, true)
          : file.SetFileColumns();
  if (result.IsSuccessful()) result = file.ProcessDataLines();
  if (result.NotSuccessful()) {
    result.AddCallContext(format.routine);
    return result;
  }
  result = table.AddColumn(file.GetLineNumberColumn().GetDataTableCol());
  EchoColumn(file.GetLineNumberColumn().GetDataTableCol(), echo);
  for (const ZqDataTableFileCol& col : file.GetFileColumns()) {
    if (result.NotSuccessful()) break;
    result = table.AddColumn(col.GetDataTableCol());
    EchoColumn(col.GetDataTableCol(), echo);
  }
  if (result.NotSuccessful()) result.AddCallContext(format.routine);
  return result;
}

}  // namespace

ZqStatModelResult ZqLoadDataTableFromCSVFileWithHeader(ZqDataTable& table, Tessik::zqifstream& stream,
                                                       const std::string& fileName) {
  return Load(kCsvWithHeader, table, stream, fileName, Echo::None);
}

ZqStatModelResult ZqLoadDataTableFromPlainFileWithHeader(ZqDataTable& table, Tessik::zqifstream& stream,
                                                         const std::string& fileName) {
  return Load(kPlainWithHeader, table, stream, fileName, Echo::None);
}

ZqStatModelResult ZqLoadDataTableFromPlainFileWithoutHeader(ZqDataTable& table, Tessik::zqifstream& stream,
                                                            const std::string& fileName) {
  return Load(kPlainWithoutHeader, table, stream, fileName, Echo::SummaryAndValues);
}

ZqStatModelResult ZqLoadDataTableFromArffFile(ZqDataTable& table, Tessik::zqifstream& stream,
                                              const std::string& fileName) {
  return Load(kArff, table, stream, fileName, Echo::None);
}

ZqStatModelResult ZqLoadDataTableFromPGSFile(ZqDataTable& table, Tessik::zqifstream& stream,
                                             const std::string& fileName, bool printColumns) {
  return Load(kPgs, table, stream, fileName, printColumns ? Echo::Summary : Echo::None);
}

}  // namespace Varimo
