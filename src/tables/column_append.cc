#include "varimo/tables/column_append.h"

#include <cmath>
#include <sstream>
#include <type_traits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

namespace {

namespace Type = ZqStatVariableType;
namespace Failure = ZqStatModelFailureType;

// The checks every append makes first. Returns false, with `result` filled,
// when the column cannot take a value at all.
bool ColumnAcceptsAppends(const ZqDataTableCol& col, const char* routine, ZqStatModelResult& result) {
  if (col.ColIsReadOnly()) {
    result = ZqMakeFailedResult(Failure::VariableIsReadOnly, routine);
    return false;
  }
  const std::uint32_t type = col.GetStatVariableType();
  if (type != Type::Nominal && type != Type::Interval && type != Type::Ratio && type != Type::Identifier) {
    result = ZqMakeFailedResult(Failure::ColumnHasWrongDataType, routine);
    return false;
  }
  return true;
}

const char* KindWord(std::uint32_t type) {
  switch (type) {
    case Type::Nominal: return "Nominal";
    case Type::Interval: return "Interval";
    case Type::Ratio: return "Ratio";
    default: return "Identifier";
  }
}

// "Tried adding <what>, but <Kind> Var accepts only <accepted>!"
ZqStatModelResult WrongKind(const char* routine, const char* what, std::uint32_t type, const char* accepted) {
  return ZqMakeFailedResult(Failure::ArgumentTypeWrong, routine,
              std::string("Tried adding ") + what + ", but " + KindWord(type) + " Var accepts only " + accepted + "!");
}

// A string into a nominal column: staged while the column has no list yet,
// else stored as its index in the list.
ZqStatModelResult AppendToNominal(ZqDataTableCol& col, const std::string& value, const char* routine) {
  ZqDataTableColBase& impl = col.GetImpl();
  if (impl.GetNumUniqueDiscreteValues() == 0) {
    impl.PushBackString(value);
    return ZqStatModelResult(true);
  }
  const std::uint32_t index = impl.IndexOfStringInListOfPossibleValues(value);
  if (index == VarimoBadData::BadUnsigned) {
    return ZqMakeFailedResult(Failure::ArgumentOutOfRange, routine,
                "String " + value + " not found in list of unique nominal" + " values");
  }
  impl.PushBackUnsigned(index);
  return ZqStatModelResult(true);
}

template <class Number>
std::string StreamText(Number value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

// Truncation toward zero that cannot overflow: values a cast could not
// represent become the bad int, reserved doubles their int counterparts.
std::int32_t TruncateToInt(double value) {
  if (value == VarimoBadData::MissingDouble) return VarimoBadData::MissingInt;
  if (value == VarimoBadData::BadDouble) return VarimoBadData::BadInt;
  if (!(value > -2147483649.0 && value < 2147483648.0)) return VarimoBadData::BadInt;
  return static_cast<std::int32_t>(value);
}

// The numeric converting appends differ only in how the number reaches an
// interval or a ratio column.
template <class Number>
ZqStatModelResult ConvertNumberAndAppend(ZqDataTableCol& col, Number value, const char* routine) {
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, routine, result)) return result;
  ZqDataTableColBase& impl = col.GetImpl();
  switch (col.GetStatVariableType()) {
    case Type::Nominal:
      result = AppendToNominal(col, StreamText(value), "ZqAppendStringToCol");
      if (result.NotSuccessful()) result.AddCallContext(routine);
      return result;
    case Type::Interval:
      if constexpr (std::is_floating_point_v<Number>) {
        impl.PushBackInt(TruncateToInt(static_cast<double>(value)));
      } else {
        impl.PushBackInt(static_cast<std::int32_t>(value));
      }
      return ZqStatModelResult(true);
    case Type::Ratio:
      impl.PushBackDouble(static_cast<double>(value));
      return ZqStatModelResult(true);
    default:
      // The text is kept, yet the call still reports that an identifier
      // column is no place for a number.
      impl.PushBackString(StreamText(value));
      return ZqMakeFailedResult(Failure::ColumnHasWrongDataType, routine);
  }
}

}  // namespace

ZqStatModelResult ZqAppendUnsignedToCol(ZqDataTableCol& col, std::uint32_t value) {
  constexpr const char* kRoutine = "ZqAppendUnsignedToCol";
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, kRoutine, result)) return result;
  switch (const std::uint32_t type = col.GetStatVariableType()) {
    case Type::Interval:
      col.GetImpl().PushBackInt(static_cast<std::int32_t>(value));
      return ZqStatModelResult(true);
    case Type::Ratio: return WrongKind(kRoutine, "unsigned", type, "doubles");
    default: return WrongKind(kRoutine, "unsigned", type, "strings");
  }
}

ZqStatModelResult ZqAppendIntToCol(ZqDataTableCol& col, std::int32_t value) {
  constexpr const char* kRoutine = "ZqAppendIntToCol";
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, kRoutine, result)) return result;
  switch (const std::uint32_t type = col.GetStatVariableType()) {
    case Type::Interval:
      col.GetImpl().PushBackInt(value);
      return ZqStatModelResult(true);
    case Type::Ratio: return WrongKind(kRoutine, "int", type, "doubles");
    default: return WrongKind(kRoutine, "int", type, "strings");
  }
}

ZqStatModelResult ZqAppendFloatToCol(ZqDataTableCol& col, float value) {
  constexpr const char* kRoutine = "ZqAppendFloatToCol";
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, kRoutine, result)) return result;
  switch (const std::uint32_t type = col.GetStatVariableType()) {
    case Type::Ratio:
      col.GetImpl().PushBackDouble(static_cast<double>(value));
      return ZqStatModelResult(true);
    // The interval text says "doubles"; the message is kept as it has
    // always read.
    case Type::Interval: return WrongKind(kRoutine, "float", type, "doubles");
    default: return WrongKind(kRoutine, "float", type, "strings");
  }
}

ZqStatModelResult ZqAppendDoubleToCol(ZqDataTableCol& col, double value) {
  constexpr const char* kRoutine = "ZqAppendDoubleToCol";
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, kRoutine, result)) return result;
  switch (const std::uint32_t type = col.GetStatVariableType()) {
    case Type::Ratio:
      col.GetImpl().PushBackDouble(value);
      return ZqStatModelResult(true);
    case Type::Interval: return WrongKind(kRoutine, "double", type, "ints");
    default: return WrongKind(kRoutine, "double", type, "strings");
  }
}

ZqStatModelResult ZqAppendStringToCol(ZqDataTableCol& col, const std::string& value) {
  constexpr const char* kRoutine = "ZqAppendStringToCol";
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, kRoutine, result)) return result;
  switch (const std::uint32_t type = col.GetStatVariableType()) {
    case Type::Nominal: return AppendToNominal(col, value, kRoutine);
    case Type::Identifier:
      col.GetImpl().PushBackString(value);
      return ZqStatModelResult(true);
    case Type::Interval: return WrongKind(kRoutine, "string", type, "ints");
    default: return WrongKind(kRoutine, "string", type, "doubles");
  }
}

ZqStatModelResult ZqAppendMissingDataToCol(ZqDataTableCol& col) {
  constexpr const char* kRoutine = "ZqAppendMissingDataToCol";
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, kRoutine, result)) return result;
  switch (col.GetStatVariableType()) {
    case Type::Nominal:
    case Type::Identifier: result = ZqAppendStringToCol(col, VarimoBadData::MissingString); break;
    case Type::Interval: result = ZqAppendIntToCol(col, VarimoBadData::MissingInt); break;
    default: result = ZqAppendDoubleToCol(col, VarimoBadData::MissingDouble); break;
  }
  if (result.NotSuccessful()) result.AddCallContext(kRoutine);
  return result;
}

ZqStatModelResult ZqFinishAppendingVars(ZqDataTableCol& col) {
  col.FinishAddingVars();
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqConvertUnsignedAndAppendToCol(ZqDataTableCol& col, std::uint32_t value) {
  return ConvertNumberAndAppend(col, value, "ZqConvertUnsignedAndAppendToCol");
}

ZqStatModelResult ZqConvertIntAndAppendToCol(ZqDataTableCol& col, std::int32_t value) {
  return ConvertNumberAndAppend(col, value, "ZqConvertIntAndAppendToCol");
}

ZqStatModelResult ZqConvertFloatAndAppendToCol(ZqDataTableCol& col, float value) {
  return ConvertNumberAndAppend(col, value, "ZqConvertFloatAndAppendToCol");
}

ZqStatModelResult ZqConvertDoubleAndAppendToCol(ZqDataTableCol& col, double value) {
  return ConvertNumberAndAppend(col, value, "ZqConvertDoubleAndAppendToCol");
}

ZqStatModelResult ZqConvertStringAndAppendToCol(ZqDataTableCol& col, const std::string& value) {
  constexpr const char* kRoutine = "ZqConvertStringAndAppendToCol";
  ZqStatModelResult result;
  if (!ColumnAcceptsAppends(col, kRoutine, result)) return result;
  ZqDataTableColBase& impl = col.GetImpl();
  switch (col.GetStatVariableType()) {
    case Type::Nominal: return AppendToNominal(col, value, kRoutine);
    case Type::Interval: {
      int parsed = 0;
      if (!Corvane::ZqStringToNumber(value, parsed, 10)) {
        return ZqMakeFailedResult(Failure::ArgumentValueWrong, kRoutine, "Unable to parse field : " + value + " as an int!");
      }
      impl.PushBackInt(parsed);
      return ZqStatModelResult(true);
    }
    case Type::Ratio: {
      double parsed = 0.0;
      if (!Corvane::ZqStringToNumber(value, parsed)) {
        return ZqMakeFailedResult(Failure::ArgumentValueWrong, kRoutine, "Unable to parse field : " + value + " as a double!");
      }
      impl.PushBackDouble(parsed);
      return ZqStatModelResult(true);
    }
    default:
      impl.PushBackString(value);
      return ZqStatModelResult(true);
  }
}

}  // namespace Varimo
