#include "varimo/tables/data_table_column.h"

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {

ZqDataTableColBase* ZqGetDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                                      std::uint64_t numRows, std::uint64_t numCols, bool lowerTriangular) {
  switch (statVarType) {
    case ZqStatVariableType::Nominal:
      return new ZqDataTableColOfNominals(name, fullName, numRows, numCols, lowerTriangular);
    case ZqStatVariableType::Interval:
      return new ZqDataTableColOfIntervalVars(name, fullName, numRows, numCols, lowerTriangular);
    case ZqStatVariableType::Ratio:
      return new ZqDataTableColOfRatioVars(name, fullName, numRows, numCols, lowerTriangular);
    case ZqStatVariableType::Identifier:
      return new ZqDataTableColOfIdentifiers(name, fullName, numRows, numCols, lowerTriangular);
    default:
      return new ZqNullDataTableCol(name, fullName);
  }
}

ZqDataTableCol::ZqDataTableCol() : impl_(std::make_shared<ZqNullDataTableCol>()) {}

ZqDataTableCol::ZqDataTableCol(const std::string& name, const std::string& fullName)
    : impl_(std::make_shared<ZqNullDataTableCol>(name, fullName)) {}

ZqDataTableCol::ZqDataTableCol(const std::string& name, std::uint32_t statVarType, std::uint64_t numRows,
                               std::uint64_t numCols, bool lowerTriangular)
    : ZqDataTableCol(name, name, statVarType, numRows, numCols, lowerTriangular) {}

ZqDataTableCol::ZqDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                               std::uint64_t numRows, std::uint64_t numCols, bool lowerTriangular)
    : impl_(ZqGetDataTableCol(name, fullName, statVarType, numRows, numCols, lowerTriangular)) {}

ZqDataTableCol::ZqDataTableCol(const std::string& name, const std::vector<double>& values, std::uint64_t numCols,
                               bool lowerTriangular)
    : impl_(std::make_shared<ZqDataTableColOfRatioVars>(name, name, values, numCols, lowerTriangular)) {}

ZqDataTableCol::ZqDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                               std::uint64_t numCols, const std::vector<ZqRowColValue>& values,
                               std::uint64_t numRows, bool lowerTriangular) {
  if (statVarType == ZqStatVariableType::Ratio) {
    impl_ = std::make_shared<ZqDataTableColOfRatioVars>(name, fullName, numCols, values, numRows, lowerTriangular);
  } else {
    impl_ = std::make_shared<ZqNullDataTableCol>(name, fullName);
  }
}

ZqDataTableCol::ZqDataTableCol(const std::string& name, std::uint32_t statVarType,
                               const std::vector<std::string>& discreteValues, std::uint64_t numRows,
                               std::uint64_t numCols, bool lowerTriangular)
    : ZqDataTableCol(name, name, statVarType, discreteValues, numRows, numCols, lowerTriangular) {}

ZqDataTableCol::ZqDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                               const std::vector<std::string>& discreteValues, std::uint64_t numRows,
                               std::uint64_t numCols, bool lowerTriangular) {
  if (discreteValues.empty() || statVarType != ZqStatVariableType::Nominal) {
    impl_.reset(ZqGetDataTableCol(name, fullName, statVarType, numRows, numCols, lowerTriangular));
  } else {
    impl_ = std::make_shared<ZqDataTableColOfNominals>(name, fullName, discreteValues, numRows, numCols,
                                                       lowerTriangular);
  }
}

ZqDataTableCol::ZqDataTableCol(std::unique_ptr<ZqDataTableColBase> impl) : impl_(std::move(impl)) {
  if (!impl_) impl_ = std::make_shared<ZqNullDataTableCol>();
}

}  // namespace Varimo
