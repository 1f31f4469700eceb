// Appending values to a column, checked. Each function first refuses a read-only
// column (VariableIsReadOnly) and a null one (ColumnHasWrongDataType), then acts
// by the column's kind. Failures name the function itself as the routine.
//
// The strict family takes only the values a kind stores:
//   nominal     strings (with a fixed list: strings of the list)
//   interval    int, and unsigned (its bits)
//   ratio       float, double
//   identifier  strings
// and refuses the rest with ArgumentTypeWrong and a comment naming the clash
// ("Tried adding int, but Ratio Var accepts only doubles!").
//
// The converting family converts instead: numbers become text for nominal
// and identifier columns, texts are parsed for interval and ratio ones,
// doubles are truncated toward zero for interval ones.
//
// A failed append leaves the column unchanged, with one exception: a number
// converted and appended to an identifier column stays there although the
// call reports ColumnHasWrongDataType.
#pragma once

#include <cstdint>
#include <string>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/tables/data_table_column.h"

namespace Varimo {

ZqStatModelResult ZqAppendUnsignedToCol(ZqDataTableCol& col, std::uint32_t value);
ZqStatModelResult ZqAppendIntToCol(ZqDataTableCol& col, std::int32_t value);
ZqStatModelResult ZqAppendFloatToCol(ZqDataTableCol& col, float value);
ZqStatModelResult ZqAppendDoubleToCol(ZqDataTableCol& col, double value);
// On a nominal column with a list, a string outside the list fails with
// ArgumentOutOfRange.
ZqStatModelResult ZqAppendStringToCol(ZqDataTableCol& col, const std::string& value);

// Appends the missing value of the column's type.
ZqStatModelResult ZqAppendMissingDataToCol(ZqDataTableCol& col);

// Ends appending (see ZqDataTableColBase::FinishAddingVars).
ZqStatModelResult ZqFinishAppendingVars(ZqDataTableCol& col);

ZqStatModelResult ZqConvertUnsignedAndAppendToCol(ZqDataTableCol& col, std::uint32_t value);
ZqStatModelResult ZqConvertIntAndAppendToCol(ZqDataTableCol& col, std::int32_t value);
// On an interval column: truncated toward zero; the missing and bad doubles
// become the missing and bad ints, and a value outside the int range (or
// NaN, or infinite) the bad int.
ZqStatModelResult ZqConvertFloatAndAppendToCol(ZqDataTableCol& col, float value);
ZqStatModelResult ZqConvertDoubleAndAppendToCol(ZqDataTableCol& col, double value);
// Interval and ratio columns parse the whole text as a base-10 int or a
// double (reserved names are not numbers here) and fail with
// ArgumentValueWrong when it is not one.
ZqStatModelResult ZqConvertStringAndAppendToCol(ZqDataTableCol& col, const std::string& value);

}  // namespace Varimo
