#include "varimo/tables/table_split.h"

#include <vector>

#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/numarc/generators.h"
#include "varimo/statistics/distance_matrix.h"
#include "varimo/statistics/sampling.h"
#include "varimo/tables/column_statistics.h"
#include "varimo/tables/maximal_coverage.h"

namespace Varimo {

namespace Failure = ZqStatModelFailureType;

namespace {

std::vector<std::uint64_t> RowNumbers(const ZqDataTable& table) {
  std::vector<std::uint64_t> rows;
  for (const ZqDataTableRow& row : table.GetRows()) rows.push_back(row.GetRowNumber());
  return rows;
}

ZqDataTableRowSet ToRowSet(const std::vector<std::uint64_t>& numbers) {
  std::vector<ZqDataTableRow> rows;
  rows.reserve(numbers.size());
  for (std::uint64_t r : numbers) rows.emplace_back(r);
  return ZqDataTableRowSet(std::move(rows));
}

// Both views are built before either output is assigned, so that an output
// that is also the source is read before it changes.
void AssignViews(ZqDataTable& selected, ZqDataTable& rest, const ZqDataTable& source,
                 const std::vector<std::uint64_t>& selectedRows, const std::vector<std::uint64_t>& restRows) {
  ZqDataTable newSelected(selected.GetTableName(), source, ToRowSet(selectedRows));
  ZqDataTable newRest(rest.GetTableName(), source, ToRowSet(restRows));
  selected = std::move(newSelected);
  rest = std::move(newRest);
}

}  // namespace

ZqStatModelResult ZqSplitDataTableByRandomRowSelection(ZqDataTable& selected, ZqDataTable& rest,
                                                       Numarc::ZqRanNumEngine& engine, double probability,
                                                       const ZqDataTable& source) {
  if (!(probability >= 0.0 && probability <= 1.0)) {
    return ZqMakeFailedResult(Failure::ArgumentOutOfRange, "SplitDataTableByRandomRowSelection",
                              Corvane::ZqMakeString("Bad selectionProbability: ", probability));
  }
  const Numarc::ZqUniformDoubleRNG uniform(0.0, 1.0);
  std::vector<std::uint64_t> chosen, others;
  for (std::uint64_t row : RowNumbers(source)) (uniform(engine) < probability ? chosen : others).push_back(row);
  AssignViews(selected, rest, source, chosen, others);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqSplitDataTableByUnifSamplingWithoutReplacement(ZqDataTable& selected, ZqDataTable& rest,
                                                                   Numarc::ZqRanNumEngine& engine,
                                                                   std::uint64_t count, const ZqDataTable& source) {
  const std::vector<std::uint64_t> rows = RowNumbers(source);
  if (count >= rows.size()) {
    return ZqMakeFailedResult(
        Failure::ArgumentOutOfRange, "ZqSplitDataTableByUnifSamplingWithoutReplacement",
        Corvane::ZqMakeString("Asking to choose ", count, " rows out of ", rows.size(), " rows available"));
  }
  std::vector<std::uint64_t> chosen, others;
  ZqSampleWithoutReplacement(engine, chosen, others, count, rows);
  AssignViews(selected, rest, source, chosen, others);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqSplitDataTableByMaxUnifCoverageOfColVals(ZqDataTable& selected, ZqDataTable& rest,
                                                             Numarc::ZqRanNumEngine& engine, std::uint64_t count,
                                                             const std::string& columnName,
                                                             const ZqDataTable& source) {
  constexpr const char* kRoutine = "ZqSplitDataTableByMaxUnifCoverageOfColVals";
  std::vector<double> data;
  std::uint64_t numCols = 0;
  ZqStatModelResult result = ZqGetDataVectorFromColumnByName(data, numCols, source, columnName);
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }
  const ZqDataTableCol& column = source.GetColumnFromName(result, columnName);
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }
  Eigen::MatrixXd distances;
  GetDistanceMatrix(result, distances, data, numCols, column.ColIsLowerTriangular());
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }
  const std::vector<std::uint64_t> rows = RowNumbers(source);
  const auto n = static_cast<std::uint64_t>(distances.rows());
  if (n != rows.size()) {
    return ZqMakeFailedResult(Failure::InternalLogicFailure, kRoutine,
                              Corvane::ZqMakeString("Distance matrix has ", n, "rows; ", " Whereas dataTable has ",
                                                    rows.size(), " rows"));
  }
  std::vector<std::uint32_t> marks;
  result = ZqGetMaximalCoverageDistanceSubMatrix(engine, marks, count, distances);
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }
  std::vector<std::uint64_t> chosen, others;
  for (std::size_t k = 0; k < rows.size(); ++k) (marks[k] == 1u ? chosen : others).push_back(rows[k]);
  AssignViews(selected, rest, source, chosen, others);
  return ZqStatModelResult(true);
}

ZqDataTable ZqGetNewDataTableByUnifSamplingWithReplacement(Numarc::ZqRanNumEngine& engine, std::uint64_t count,
                                                           const ZqDataTable& source) {
  const std::vector<std::uint64_t> rows = RowNumbers(source);
  std::vector<std::uint64_t> drawn;
  if (!rows.empty()) {
    const Numarc::ZqUniformIntRNG index(0, static_cast<long>(rows.size()) - 1);
    for (std::uint64_t k = 0; k < count; ++k) drawn.push_back(rows[static_cast<std::size_t>(index(engine))]);
  }
  return ZqDataTable(source.GetTableName(), source, ToRowSet(drawn));
}

}  // namespace Varimo
