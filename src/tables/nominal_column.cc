#include <algorithm>
#include <ostream>
#include <unordered_map>
#include <utility>

#include "column_helpers.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {

ZqDataTableColOfNominals::ZqDataTableColOfNominals(const std::string& name, const std::string& fullName,
                                                   std::uint64_t numRows, std::uint64_t numCols,
                                                   bool lowerTriangular)
    : ZqDataTableColBase(name, fullName, numCols, lowerTriangular) {
  staged_.reserve(ColumnDetail::ElementsToReserve(numRows, numCols, lowerTriangular));
}

ZqDataTableColOfNominals::ZqDataTableColOfNominals(const std::string& name, const std::string& fullName,
                                                   std::vector<std::string> texts)
    : ZqDataTableColBase(name, fullName, 1, false), staged_(std::move(texts)) {}

ZqDataTableColOfNominals::ZqDataTableColOfNominals(const std::string& name, const std::string& fullName,
                                                   const std::vector<std::string>& discreteValues,
                                                   std::uint64_t numRows, std::uint64_t numCols,
                                                   bool lowerTriangular)
    : ZqDataTableColBase(name, fullName, numCols, lowerTriangular), uniqueValues_(discreteValues) {
  // The missing and bad strings are always in a fixed list, so that missing
  // data can be appended to any nominal column.
  uniqueValues_.emplace_back(VarimoBadData::BadString);
  uniqueValues_.emplace_back(VarimoBadData::MissingString);
  std::sort(uniqueValues_.begin(), uniqueValues_.end());
  indices_.reserve(ColumnDetail::ElementsToReserve(numRows, numCols, lowerTriangular));
}

std::uint32_t ZqDataTableColOfNominals::IndexOfStringInListOfPossibleValues(const std::string& value) const {
  const auto found = std::find(uniqueValues_.begin(), uniqueValues_.end(), value);
  if (found == uniqueValues_.end()) return VarimoBadData::BadUnsigned;
  return static_cast<std::uint32_t>(found - uniqueValues_.begin());
}

ZqStatModelResult ZqDataTableColOfNominals::FindStringInUniqueNominalVals(std::uint32_t& index,
                                                                         const std::string& value) const {
  index = IndexOfStringInListOfPossibleValues(value);
  if (index != VarimoBadData::BadUnsigned) return ZqStatModelResult(true);
  ZqStatModelResult result(false);
  result.SetFailureTypeAndWhereFailed(ZqStatModelFailureType::ArgumentOutOfRange,
                                      "ZqDataTableColOfNominals::FindStringInUniqueNominalVals");
  result.AddExtraComment("String " + value + " not found in list of unique nominal" + " values");
  return result;
}

void ZqDataTableColOfNominals::FinishAddingVars() {
  if (ColIsReadOnly()) return;
  if (uniqueValues_.empty()) LoadUniqueNominalValues();
  SetColReadOnly(true);
}

void ZqDataTableColOfNominals::LoadUniqueNominalValues() {
  // The list is the distinct staged strings in ascending order, and each
  // element's index is its string's place in that list. Numbering the
  // distinct strings by first appearance and sorting only those keeps this
  // linear in the number of elements (a column has few categories and many
  // rows).
  std::unordered_map<std::string, std::uint32_t> firstSeen;
  std::vector<std::uint32_t> seenIndex(staged_.size());
  for (std::size_t position = 0; position < staged_.size(); ++position) {
    const auto [entry, inserted] =
        firstSeen.try_emplace(staged_[position], static_cast<std::uint32_t>(firstSeen.size()));
    seenIndex[position] = entry->second;
  }
  std::vector<std::pair<const std::string*, std::uint32_t>> distinct;
  distinct.reserve(firstSeen.size());
  for (const auto& [value, seen] : firstSeen) distinct.emplace_back(&value, seen);
  std::sort(distinct.begin(), distinct.end(), [](const auto& a, const auto& b) { return *a.first < *b.first; });
  std::vector<std::uint32_t> listIndexOfSeen(distinct.size());
  uniqueValues_.reserve(distinct.size());
  for (const auto& [value, seen] : distinct) {
    listIndexOfSeen[seen] = static_cast<std::uint32_t>(uniqueValues_.size());
    uniqueValues_.push_back(*value);
  }
  indices_.resize(staged_.size());
  for (std::size_t position = 0; position < staged_.size(); ++position) {
    indices_[position] = listIndexOfSeen[seenIndex[position]];
  }
  std::vector<std::string>().swap(staged_);
}

std::uint32_t ZqDataTableColOfNominals::GetStatVariableType() const { return ZqStatVariableType::Nominal; }
std::uint32_t ZqDataTableColOfNominals::GetStatVarDataType() const { return ZqStatVarDataType::String; }

std::uint64_t ZqDataTableColOfNominals::GetNumElementsInCol() const {
  return uniqueValues_.empty() ? staged_.size() : indices_.size();
}

void ZqDataTableColOfNominals::PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const {
  PrintValueList(uniqueValues_, maxNum, out);
}

bool ZqDataTableColOfNominals::GetListIndexOfElement(std::uint64_t elementIndex, std::uint32_t& listIndex) const {
  // Before the list is built the element count is the staged count while no
  // index exists yet; such reads must find nothing rather than read past
  // the index vector.
  if (elementIndex >= GetNumElementsInCol() || elementIndex >= indices_.size()) return false;
  listIndex = indices_[elementIndex];
  return true;
}

const std::string* ZqDataTableColOfNominals::ListEntry(std::uint64_t row, std::uint64_t col, bool& pastList) const {
  pastList = false;
  std::uint32_t listIndex = 0;
  if (!GetListIndexOfElement(GetElementIndex(row, col), listIndex)) return nullptr;
  if (listIndex >= uniqueValues_.size()) {
    pastList = true;
    return nullptr;
  }
  return &uniqueValues_[listIndex];
}

bool ZqDataTableColOfNominals::RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
  bool pastList = false;
  const std::string* entry = ListEntry(row, col, pastList);
  return entry != nullptr && ZqIsMissing(*entry);
}

bool ZqDataTableColOfNominals::RowColHasBadData(std::uint64_t row, std::uint64_t col) const {
  bool pastList = false;
  const std::string* entry = ListEntry(row, col, pastList);
  return entry != nullptr && ZqIsBad(*entry);
}

std::uint32_t ZqDataTableColOfNominals::GetUnsigned(std::uint64_t row, std::uint64_t col) const {
  bool pastList = false;
  const std::string* entry = ListEntry(row, col, pastList);
  if (entry == nullptr) return pastList ? VarimoBadData::BadUnsigned : VarimoBadData::BadIndexUnsigned;
  if (ZqIsMissing(*entry)) return VarimoBadData::MissingUnsigned;
  if (ZqIsBad(*entry)) return VarimoBadData::BadUnsigned;
  return static_cast<std::uint32_t>(entry - uniqueValues_.data());
}

std::int32_t ZqDataTableColOfNominals::GetInt(std::uint64_t row, std::uint64_t col) const {
  bool pastList = false;
  const std::string* entry = ListEntry(row, col, pastList);
  if (entry == nullptr) return pastList ? VarimoBadData::BadInt : VarimoBadData::BadIndexInt;
  if (ZqIsMissing(*entry)) return VarimoBadData::MissingInt;
  if (ZqIsBad(*entry)) return VarimoBadData::BadInt;
  return static_cast<std::int32_t>(entry - uniqueValues_.data());
}

double ZqDataTableColOfNominals::GetDouble(std::uint64_t row, std::uint64_t col) const {
  bool pastList = false;
  const std::string* entry = ListEntry(row, col, pastList);
  if (entry == nullptr) return pastList ? VarimoBadData::BadDouble : VarimoBadData::BadIndexDouble;
  if (ZqIsMissing(*entry)) return VarimoBadData::MissingDouble;
  if (ZqIsBad(*entry)) return VarimoBadData::BadDouble;
  return static_cast<double>(entry - uniqueValues_.data());
}

std::string ZqDataTableColOfNominals::GetString(std::uint64_t row, std::uint64_t col) const {
  bool pastList = false;
  const std::string* entry = ListEntry(row, col, pastList);
  if (entry == nullptr) {
    return pastList ? VarimoBadData::BadLookupIndexName : VarimoBadData::BadIndexToLookupTableName;
  }
  return *entry;
}

}  // namespace Varimo
