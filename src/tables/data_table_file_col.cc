#include <algorithm>
#include <iterator>
#include <unordered_set>

#include "../platform/tessik/huge_pages.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/tables/column_append.h"
#include "varimo/tables/data_table_column_kinds.h"
#include "varimo/tables/data_table_file_info.h"

namespace Varimo {

namespace {

// A deferred column with this many distinct texts or more is an identifier
// column, with fewer a nominal one.
constexpr std::uint64_t kMaxNominalValues = 20;

ZqStatModelResult WithContext(ZqStatModelResult result, const char* routine) {
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

}  // namespace

ZqDataTableFileCol::ZqDataTableFileCol() : col_("___TEMPCOL___", "___TEMPCOL___") {}

ZqDataTableFileCol::ZqDataTableFileCol(const std::string& name, const std::string& fullName,
                                       std::uint32_t statVarType, std::uint64_t numRows,
                                       const std::string& missingValue, std::uint64_t numCols, bool lowerTriangular)
    : col_(name, fullName, statVarType, numRows, numCols, lowerTriangular), missingValue_(missingValue) {}

ZqDataTableFileCol::ZqDataTableFileCol(const std::string& name, const std::string& fullName,
                                       std::uint32_t statVarType, const std::vector<std::string>& discreteValues,
                                       std::uint64_t numRows, const std::string& missingValue)
    : col_(name, fullName, statVarType, discreteValues, numRows), missingValue_(missingValue) {}

ZqDataTableFileCol::ZqDataTableFileCol(const std::string& name, const std::string& fullName, std::uint64_t numRows,
                                       const std::string& missingValue)
    : deferredType_(true), col_(name, fullName), missingValue_(missingValue) {
  // Numbers are the common case; reserving for them avoids regrowth on
  // large files. A text column gives the room back at its first text.
  numbers_.reserve(std::min<std::uint64_t>(numRows, std::uint64_t{1} << 26));
  Tessik::ZqAdviseHugePages(numbers_.data(), numbers_.capacity() * sizeof(double));
}

ZqStatModelResult ZqDataTableFileCol::AddField(const std::string& field) {
  const std::string& value = field.empty() ? missingValue_ : field;
  if (deferredType_) {
    if (allNumbers_) {
      double number = 0.0;
      if (value == missingValue_) {
        numbers_.push_back(VarimoBadData::MissingDouble);
        return ZqStatModelResult(true);
      }
      if (Corvane::ZqStringToNumber(value, number)) {
        numbers_.push_back(number);
        return ZqStatModelResult(true);
      }
      // The first text: from here on keep texts; the numbers seen so far are
      // read again as texts by the file reader.
      allNumbers_ = false;
      leadingTextsNeeded_ = numbers_.size();
      staged_.reserve(numbers_.capacity());
      Tessik::ZqAdviseHugePages(staged_.data(), staged_.capacity() * sizeof(std::string));
      std::vector<double>().swap(numbers_);
    }
    staged_.push_back(value);
    return ZqStatModelResult(true);
  }
  if (value == missingValue_) return WithContext(ZqAppendMissingDataToCol(col_), "ZqDataTableFileCol::AddField");
  return WithContext(ZqConvertStringAndAppendToCol(col_, value), "ZqDataTableFileCol::AddField");
}

ZqStatModelResult ZqDataTableFileCol::AddLineNumber(std::uint64_t lineNumber) {
  const std::int32_t value = lineNumber < static_cast<std::uint64_t>(VarimoBadData::BadIndexInt)
                                 ? static_cast<std::int32_t>(lineNumber)
                                 : VarimoBadData::BadInt;
  return WithContext(ZqAppendIntToCol(col_, value), "ZqDataTableFileCol::AddField");
}

void ZqDataTableFileCol::SupplyLeadingTexts(std::vector<std::string> texts) {
  for (std::string& text : texts) {
    if (text.empty()) text = missingValue_;
  }
  staged_.insert(staged_.begin(), std::make_move_iterator(texts.begin()), std::make_move_iterator(texts.end()));
  leadingTextsNeeded_ = 0;
}

std::uint64_t ZqDataTableFileCol::NumUniqueStringsToConvert(std::uint64_t stopAt) const {
  std::unordered_set<std::string> distinct;
  for (const std::string& text : staged_) {
    distinct.insert(text);
    if (distinct.size() >= stopAt) break;
  }
  return distinct.size();
}

bool ZqDataTableFileCol::ConvertAllStringsAndAddToDataTableCol() {
  // Numbers were converted as they came; only a column that met no text
  // gets here with everything converted.
  if (!allNumbers_) return false;
  col_ = ZqDataTableCol(std::make_unique<ZqDataTableColOfRatioVars>(
      col_.GetColumnName(), col_.GetFullColumnName(), std::move(numbers_), 1, false));
  std::vector<double>().swap(numbers_);
  return true;
}

ZqStatModelResult ZqDataTableFileCol::FillDataTableCol() {
  if (!deferredType_) return ZqStatModelResult(true);
  deferredType_ = false;
  if (ConvertAllStringsAndAddToDataTableCol()) return ZqStatModelResult(true);

  const std::string name = col_.GetColumnName();
  const std::string fullName = col_.GetFullColumnName();
  for (std::string& text : staged_) {
    if (text == missingValue_) text = VarimoBadData::MissingString;
  }
  if (NumUniqueStringsToConvert(kMaxNominalValues) < kMaxNominalValues) {
    col_ = ZqDataTableCol(std::make_unique<ZqDataTableColOfNominals>(name, fullName, std::move(staged_)));
  } else {
    col_ = ZqDataTableCol(std::make_unique<ZqDataTableColOfIdentifiers>(name, fullName, std::move(staged_)));
  }
  std::vector<std::string>().swap(staged_);
  return ZqStatModelResult(true);
}

}  // namespace Varimo
