// Elements of varimo-krige: the rows of a CSV file as vectors of the
// feature columns' values.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "varimo/tables/data_table.h"

namespace VarimoKrige {

// A loaded CSV file.
struct CsvTable {
  Varimo::ZqDataTable table;
  std::string path;
};

// Loads `path`; nothing, with `error` set, when it cannot be read.
std::optional<CsvTable> LoadCsv(const std::string& path, std::string& error);

// The names of the numeric columns of the file, in file order, but those
// named in `except`.
std::vector<std::string> NumericColumnNames(const CsvTable& csv, const std::vector<std::string>& except);

// One numeric column's values by row; a missing or bad cell is NaN. Nothing,
// with `error` set, when the file has no such column or it is not numeric.
std::optional<std::vector<double>> NumericColumn(const CsvTable& csv, const std::string& name, std::string& error);

// The rows as vectors of the named columns' values, in the order named.
std::optional<std::vector<std::vector<double>>> FeatureRows(const CsvTable& csv,
                                                            const std::vector<std::string>& names,
                                                            std::string& error);

}  // namespace VarimoKrige
