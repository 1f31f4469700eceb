#include "varimo/smoothers/regression_result.h"

#include <sstream>

#include "varimo/tables/column_plot_points.h"
#include "varimo/tables/column_statistics.h"

namespace Varimo {

const char* const ZqUniVarRegressResultColTypes::TypeName[NumTypes] = {
    "Unknown", "Predictors", "Responses", "PredictedResponses", "ResidualErrors", "AbsoluteResidualErrors"};
const char* const ZqSimilarityRegressionResultColTypes::TypeName[NumTypes] = {
    "Unknown", "PredictedResponses", "AverageSimilarityWeights", "ResidualErrors", "AbsoluteResidualErrors",
    "EstimatedPredictionError"};

namespace {

// The summary shared by both results; `columns` writes the table part.
template <class Columns>
std::string Summary(const ZqStatModelResult& result, const std::string& model, const std::string& title,
                    const std::vector<double>& parameters, const std::vector<std::string>& names,
                    Columns columns) {
  std::ostringstream out;
  out << "Regression Model: " << model << "\n";
  out << "Result type: " << title << "\n";
  if (result.NotSuccessful()) {
    out << "Result of Regression:\n" << result.ReportStatResultDetails();
    return out.str();
  }
  out << "Model Parameters: \n";
  for (std::size_t i = 0; i < names.size(); ++i) {
    out << names[i] << ": ";
    if (i < parameters.size()) {
      out << parameters[i];
    } else {
      out << "Parameter is Not Defined";
    }
    out << "\n";
  }
  columns(out);
  return out.str();
}

// used and unused rows from the column statistics' missing and bad counts.
void Counts(const ZqDataTable& table, std::uint64_t missing, std::uint64_t bad, unsigned long& used,
            unsigned long& unused) {
  unused = static_cast<unsigned long>(missing + bad);
  const std::uint64_t rows = table.GetNumRows();
  used = static_cast<unsigned long>(rows >= missing + bad ? rows - missing - bad : 0);
}

double ColumnStatistic(const ZqDataTable& table, ZqStatModelResult& result, unsigned long& used,
                       unsigned long& unused, unsigned int statType, const std::string& name,
                       unsigned long element, const char* routine) {
  std::uint64_t missing = 0, bad = 0;
  const double value =
      ZqGetSampleStatisticForColumnOfRatioType(result, missing, bad, statType, table, name, element);
  Counts(table, missing, bad, used, unused);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return value;
}

double PairStatistic(const ZqDataTable& table, ZqStatModelResult& result, unsigned long& used, unsigned long& unused,
                     unsigned int statType, const std::string& first, const std::string& second,
                     const char* routine) {
  std::uint64_t missing = 0, bad = 0;
  const double value =
      ZqGetTwoSampleStatisticForTwoColumnsOfRatioType(result, missing, bad, statType, table, first, second, 0, 0);
  Counts(table, missing, bad, used, unused);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return value;
}

// The window and indices are passed on as given; the routine is the
// calling class's method.
ZqStatModelResult ScatterPlot(const ZqDataTable& table, Numarc::ZqDataSeries& series, double& xMin, double& xMax,
                              double& yMin, double& yMax, const std::string& xName, const std::string& yName,
                              unsigned long xIndex, unsigned long yIndex, const double (&window)[4],
                              const char* routine) {
  ZqStatModelResult result = ZqGetScatterPlotPtsForColumnNamePair(series, xMin, xMax, yMin, yMax, table, xName,
                                                                  yName, xIndex, yIndex, window[0], window[1],
                                                                  window[2], window[3]);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

}  // namespace

// ------------------------------------------------------------ on a predictor

ZqUnivariateRegressionResult::ZqUnivariateRegressionResult(const ZqStatModelResult& result) : result_(result) {}

ZqUnivariateRegressionResult::ZqUnivariateRegressionResult(const ZqStatModelResult& result,
                                                           const std::string& modelName,
                                                           const std::string& resultTitle, const ZqDataTable& table,
                                                           const std::vector<double>& parameters,
                                                           const std::vector<std::string>& parameterNames,
                                                           unsigned long predictorIndex)
    : result_(result),
      modelName_(modelName),
      resultTitle_(resultTitle),
      table_(table),
      parameters_(parameters),
      parameterNames_(parameterNames),
      predictorIndex_(predictorIndex) {}

const ZqDataTableCol& ZqUnivariateRegressionResult::GetColumnFromName(ZqStatModelResult& result,
                                                                      const std::string& name) const {
  return table_.GetColumnFromName(result, name);
}

double ZqUnivariateRegressionResult::GetSampleStatisticOnColumn(ZqStatModelResult& result, unsigned long& usedRows,
                                                                unsigned long& unusedRows, unsigned int statType,
                                                                std::string columnName) const {
  return ColumnStatistic(table_, result, usedRows, unusedRows, statType, columnName, predictorIndex_,
                         "ZqUnivariateRegressionResult::GetSampleStatisticOnColumn");
}

double ZqUnivariateRegressionResult::GetSampleStatisticOnColumnPair(ZqStatModelResult& result,
                                                                    unsigned long& usedRows,
                                                                    unsigned long& unusedRows, unsigned int statType,
                                                                    const std::string& first,
                                                                    const std::string& second) const {
  return PairStatistic(table_, result, usedRows, unusedRows, statType, first, second,
                       "ZqUnivariateRegressionResult::GetSampleStatisticOnColumnPair");
}

ZqStatModelResult ZqUnivariateRegressionResult::GetScatterPlotPtsForColumnNamePair(
    Numarc::ZqDataSeries& series, double& xMin, double& xMax, double& yMin, double& yMax, const std::string& xName,
    const std::string& yName, unsigned long xIndex, unsigned long yIndex, double xlo, double xhi, double ylo,
    double yhi) const {
  return ScatterPlot(table_, series, xMin, xMax, yMin, yMax, xName, yName, xIndex, yIndex, {xlo, xhi, ylo, yhi},
                     "ZqUnivariateRegressionResult::GetScatterPlotPtsForColumnNamePair");
}

std::string ZqUnivariateRegressionResult::PrintSummary() const {
  return Summary(result_, modelName_, resultTitle_, parameters_, parameterNames_, [&](std::ostream& out) {
    for (const ZqDataTableCol& col : table_.GetColumns()) col.PrintSummary(out);
  });
}

std::string ZqUnivariateRegressionResult::PrintSummaryPlusFirstRowsOfData(unsigned long firstRows,
                                                                          unsigned long numColumns) const {
  return Summary(result_, modelName_, resultTitle_, parameters_, parameterNames_, [&](std::ostream& out) {
    for (const ZqDataTableCol& col : table_.GetColumns()) col.PrintSummaryPlusStartOfData(firstRows, numColumns, out);
  });
}

// ------------------------------------------------------------ on similarity

ZqSimilarityRegressionResult::ZqSimilarityRegressionResult(const ZqStatModelResult& result) : result_(result) {}

ZqSimilarityRegressionResult::ZqSimilarityRegressionResult(const ZqStatModelResult& result,
                                                           const std::string& modelName,
                                                           const std::string& resultTitle, const ZqDataTable& table,
                                                           const std::vector<double>& parameters,
                                                           const std::vector<std::string>& parameterNames)
    : result_(result),
      modelName_(modelName),
      resultTitle_(resultTitle),
      table_(table),
      parameters_(parameters),
      parameterNames_(parameterNames) {}

const ZqDataTableCol& ZqSimilarityRegressionResult::GetColumnFromName(ZqStatModelResult& result,
                                                                      const std::string& name) const {
  return table_.GetColumnFromName(result, name);
}

double ZqSimilarityRegressionResult::GetSampleStatisticOnColumn(ZqStatModelResult& result, unsigned long& usedRows,
                                                                unsigned long& unusedRows, unsigned int statType,
                                                                std::string columnName) const {
  return ColumnStatistic(table_, result, usedRows, unusedRows, statType, columnName, 0,
                         "ZqSimilarityRegressionResult::GetSampleStatisticOnColumn");
}

double ZqSimilarityRegressionResult::GetSampleStatisticOnColumnPair(ZqStatModelResult& result,
                                                                    unsigned long& usedRows,
                                                                    unsigned long& unusedRows, unsigned int statType,
                                                                    const std::string& first,
                                                                    const std::string& second) const {
  return PairStatistic(table_, result, usedRows, unusedRows, statType, first, second,
                       "ZqSimilarityRegressionResult::GetSampleStatisticOnColumnPair");
}

ZqStatModelResult ZqSimilarityRegressionResult::GetScatterPlotPtsForColumnNamePair(
    Numarc::ZqDataSeries& series, double& xMin, double& xMax, double& yMin, double& yMax, const std::string& xName,
    const std::string& yName, unsigned long xIndex, unsigned long yIndex, double xlo, double xhi, double ylo,
    double yhi) const {
  return ScatterPlot(table_, series, xMin, xMax, yMin, yMax, xName, yName, xIndex, yIndex, {xlo, xhi, ylo, yhi},
                     "ZqSimilarityRegressionResult::GetScatterPlotPtsForColumnNamePair");
}

std::string ZqSimilarityRegressionResult::PrintSummary() const {
  return Summary(result_, modelName_, resultTitle_, parameters_, parameterNames_, [&](std::ostream& out) {
    for (const ZqDataTableCol& col : table_.GetColumns()) col.PrintSummary(out);
  });
}

std::string ZqSimilarityRegressionResult::PrintSummaryPlusFirstRowsOfData(unsigned long firstRows,
                                                                          unsigned long numColumns) const {
  return Summary(result_, modelName_, resultTitle_, parameters_, parameterNames_, [&](std::ostream& out) {
    for (const ZqDataTableCol& col : table_.GetColumns()) col.PrintSummaryPlusStartOfData(firstRows, numColumns, out);
  });
}

}  // namespace Varimo
