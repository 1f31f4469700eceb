// The result families of the transforms: every overload converts its
// arguments to double (the reserved values keep their meaning), calls the
// one overload that holds the rule, and converts the result.
#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"
#include "varimo/tables/data_transforms.h"

namespace Varimo {
namespace {

namespace DT = ZqStatVarDataType;
namespace ST = ZqStatVariableType;

double ToDouble(std::uint32_t v) { return ZqDoubleFromUnsigned(v); }
double ToDouble(std::int32_t v) { return ZqDoubleFromInt(v); }
double ToDouble(double v) { return v; }
double ToDouble(const std::string& v) { return ZqDoubleFromString(v); }

template <class T>
std::vector<double> ToDoubles(const std::vector<T>& values) {
  std::vector<double> out;
  out.reserve(values.size());
  for (const T& v : values) out.push_back(ToDouble(v));
  return out;
}

std::string NameOf(const std::vector<std::string>& names, std::uint32_t value) {
  if (value < names.size()) return names[value];
  if (value == VarimoBadData::MissingUnsigned) return VarimoBadData::MissingDoubleName;
  if (value == VarimoBadData::BadUnsigned) return VarimoBadData::BadDoubleName;
  return VarimoBadData::BadIndexDoubleName;
}

}  // namespace

// The overloads of one argument type A, for a family whose rule gives a
// double (D) or an unsigned (U) from the argument as a double.
#define VARIMO_FROM_DOUBLE_RULE(Class, A)                                                               \
  std::uint32_t Class::GetUnsigned(A a) const { return ZqUnsignedFromDouble(GetDouble(ToDouble(a))); } \
  std::int32_t Class::GetInt(A a) const { return ZqIntFromDouble(GetDouble(ToDouble(a))); }            \
  std::string Class::GetString(A a) const { return ZqStringFromDouble(GetDouble(ToDouble(a))); }
#define VARIMO_FROM_UNSIGNED_RULE(Class, A)                                                             \
  std::int32_t Class::GetInt(A a) const { return ZqIntFromUnsigned(GetUnsigned(ToDouble(a))); }        \
  double Class::GetDouble(A a) const { return ZqDoubleFromUnsigned(GetUnsigned(ToDouble(a))); }        \
  std::string Class::GetString(A a) const { return StringFromUnsigned(GetUnsigned(ToDouble(a))); }

// ------------------------------------------------------------ one argument, double result

std::uint32_t ZqDoubleResultOfDoubleArg::DataTypeOfTransformArgument() const { return DT::Double; }
std::uint32_t ZqDoubleResultOfDoubleArg::DataTypeOfTransformResult() const { return DT::Double; }
std::uint32_t ZqDoubleResultOfDoubleArg::StatVarTypeOfTransformResult() const { return ST::Ratio; }
VARIMO_FROM_DOUBLE_RULE(ZqDoubleResultOfDoubleArg, std::uint32_t)
VARIMO_FROM_DOUBLE_RULE(ZqDoubleResultOfDoubleArg, std::int32_t)
VARIMO_FROM_DOUBLE_RULE(ZqDoubleResultOfDoubleArg, double)
VARIMO_FROM_DOUBLE_RULE(ZqDoubleResultOfDoubleArg, const std::string&)
double ZqDoubleResultOfDoubleArg::GetDouble(std::uint32_t a) const { return GetDouble(ToDouble(a)); }
double ZqDoubleResultOfDoubleArg::GetDouble(std::int32_t a) const { return GetDouble(ToDouble(a)); }
double ZqDoubleResultOfDoubleArg::GetDouble(const std::string& a) const { return GetDouble(ToDouble(a)); }
// The rule itself belongs to each transform; this one is never reached.
double ZqDoubleResultOfDoubleArg::GetDouble(double a) const { return a; }

// ------------------------------------------------------------ one argument, nominal result

std::uint32_t ZqNominalResultOfDoubleArg::DataTypeOfTransformArgument() const { return DT::Double; }
std::uint32_t ZqNominalResultOfDoubleArg::DataTypeOfTransformResult() const { return DT::Unsigned; }
std::uint32_t ZqNominalResultOfDoubleArg::StatVarTypeOfTransformResult() const { return ST::Nominal; }
std::string ZqNominalResultOfDoubleArg::StringFromUnsigned(std::uint32_t value) const { return NameOf(names_, value); }
VARIMO_FROM_UNSIGNED_RULE(ZqNominalResultOfDoubleArg, std::uint32_t)
VARIMO_FROM_UNSIGNED_RULE(ZqNominalResultOfDoubleArg, std::int32_t)
VARIMO_FROM_UNSIGNED_RULE(ZqNominalResultOfDoubleArg, double)
VARIMO_FROM_UNSIGNED_RULE(ZqNominalResultOfDoubleArg, const std::string&)
std::uint32_t ZqNominalResultOfDoubleArg::GetUnsigned(std::uint32_t a) const { return GetUnsigned(ToDouble(a)); }
std::uint32_t ZqNominalResultOfDoubleArg::GetUnsigned(std::int32_t a) const { return GetUnsigned(ToDouble(a)); }
std::uint32_t ZqNominalResultOfDoubleArg::GetUnsigned(const std::string& a) const { return GetUnsigned(ToDouble(a)); }
std::uint32_t ZqNominalResultOfDoubleArg::GetUnsigned(double) const { return VarimoBadData::BadUnsigned; }

#undef VARIMO_FROM_DOUBLE_RULE
#undef VARIMO_FROM_UNSIGNED_RULE

// ------------------------------------------------------------ two arguments

#define VARIMO_PAIR_FROM_DOUBLE_RULE(Class, A, B)                                                                 \
  std::uint32_t Class::GetUnsigned(A a, B b) const { return ZqUnsignedFromDouble(GetDouble(ToDouble(a), ToDouble(b))); } \
  std::int32_t Class::GetInt(A a, B b) const { return ZqIntFromDouble(GetDouble(ToDouble(a), ToDouble(b))); }            \
  std::string Class::GetString(A a, B b) const { return ZqStringFromDouble(GetDouble(ToDouble(a), ToDouble(b))); }
#define VARIMO_PAIR_DOUBLE_FORWARD(Class, A, B) \
  double Class::GetDouble(A a, B b) const { return GetDouble(ToDouble(a), ToDouble(b)); }
#define VARIMO_PAIR_FROM_UNSIGNED_RULE(Class, A, B)                                                              \
  std::int32_t Class::GetInt(A a, B b) const { return ZqIntFromUnsigned(GetUnsigned(ToDouble(a), ToDouble(b))); }      \
  double Class::GetDouble(A a, B b) const { return ZqDoubleFromUnsigned(GetUnsigned(ToDouble(a), ToDouble(b))); }      \
  std::string Class::GetString(A a, B b) const { return StringFromUnsigned(GetUnsigned(ToDouble(a), ToDouble(b))); }
#define VARIMO_PAIR_UNSIGNED_FORWARD(Class, A, B) \
  std::uint32_t Class::GetUnsigned(A a, B b) const { return GetUnsigned(ToDouble(a), ToDouble(b)); }

// Every pair of argument types, the first varying slowest; the pair of
// doubles, which holds the rule, is left to `SKIP`.
#define VARIMO_ALL_PAIRS(M, Class)                                                    \
  M(Class, std::uint32_t, std::uint32_t) M(Class, std::uint32_t, std::int32_t)        \
  M(Class, std::uint32_t, double) M(Class, std::uint32_t, const std::string&)         \
  M(Class, std::int32_t, std::uint32_t) M(Class, std::int32_t, std::int32_t)          \
  M(Class, std::int32_t, double) M(Class, std::int32_t, const std::string&)           \
  M(Class, double, std::uint32_t) M(Class, double, std::int32_t)                      \
  M(Class, double, const std::string&)                                                \
  M(Class, const std::string&, std::uint32_t) M(Class, const std::string&, std::int32_t) \
  M(Class, const std::string&, double) M(Class, const std::string&, const std::string&)

std::uint32_t ZqDoubleResultOfTwoDoubleArgs::DataTypeOfFirstTransformArgument() const { return DT::Double; }
std::uint32_t ZqDoubleResultOfTwoDoubleArgs::DataTypeOfSecondTransformArgument() const { return DT::Double; }
std::uint32_t ZqDoubleResultOfTwoDoubleArgs::DataTypeOfTransformResult() const { return DT::Double; }
std::uint32_t ZqDoubleResultOfTwoDoubleArgs::StatVarTypeOfTransformResult() const { return ST::Ratio; }
VARIMO_ALL_PAIRS(VARIMO_PAIR_FROM_DOUBLE_RULE, ZqDoubleResultOfTwoDoubleArgs)
VARIMO_PAIR_FROM_DOUBLE_RULE(ZqDoubleResultOfTwoDoubleArgs, double, double)
VARIMO_ALL_PAIRS(VARIMO_PAIR_DOUBLE_FORWARD, ZqDoubleResultOfTwoDoubleArgs)
double ZqDoubleResultOfTwoDoubleArgs::GetDouble(double a, double) const { return a; }

std::uint32_t ZqNominalResultOfTwoDoubleArgs::DataTypeOfFirstTransformArgument() const { return DT::Double; }
std::uint32_t ZqNominalResultOfTwoDoubleArgs::DataTypeOfSecondTransformArgument() const { return DT::Double; }
std::uint32_t ZqNominalResultOfTwoDoubleArgs::DataTypeOfTransformResult() const { return DT::Unsigned; }
std::uint32_t ZqNominalResultOfTwoDoubleArgs::StatVarTypeOfTransformResult() const { return ST::Nominal; }
std::string ZqNominalResultOfTwoDoubleArgs::StringFromUnsigned(std::uint32_t value) const {
  return NameOf(names_, value);
}
VARIMO_ALL_PAIRS(VARIMO_PAIR_FROM_UNSIGNED_RULE, ZqNominalResultOfTwoDoubleArgs)
VARIMO_PAIR_FROM_UNSIGNED_RULE(ZqNominalResultOfTwoDoubleArgs, double, double)
VARIMO_ALL_PAIRS(VARIMO_PAIR_UNSIGNED_FORWARD, ZqNominalResultOfTwoDoubleArgs)
std::uint32_t ZqNominalResultOfTwoDoubleArgs::GetUnsigned(double, double) const { return VarimoBadData::BadUnsigned; }

#undef VARIMO_PAIR_FROM_DOUBLE_RULE
#undef VARIMO_PAIR_DOUBLE_FORWARD
#undef VARIMO_PAIR_FROM_UNSIGNED_RULE
#undef VARIMO_PAIR_UNSIGNED_FORWARD
#undef VARIMO_ALL_PAIRS

// ------------------------------------------------------------ a vector of arguments

#define VARIMO_VEC_FROM_DOUBLE_RULE(T)                                                                      \
  std::uint32_t ZqDoubleResultOfVecOfDoubles::GetUnsigned(const std::vector<T>& a) const {                 \
    return ZqUnsignedFromDouble(GetDouble(ToDoubles(a)));                                                   \
  }                                                                                                         \
  std::int32_t ZqDoubleResultOfVecOfDoubles::GetInt(const std::vector<T>& a) const {                       \
    return ZqIntFromDouble(GetDouble(ToDoubles(a)));                                                        \
  }                                                                                                         \
  std::string ZqDoubleResultOfVecOfDoubles::GetString(const std::vector<T>& a) const {                     \
    return ZqStringFromDouble(GetDouble(ToDoubles(a)));                                                     \
  }
VARIMO_VEC_FROM_DOUBLE_RULE(std::uint32_t)
VARIMO_VEC_FROM_DOUBLE_RULE(std::int32_t)
VARIMO_VEC_FROM_DOUBLE_RULE(double)
VARIMO_VEC_FROM_DOUBLE_RULE(std::string)
#undef VARIMO_VEC_FROM_DOUBLE_RULE
double ZqDoubleResultOfVecOfDoubles::GetDouble(const std::vector<std::uint32_t>& a) const {
  return GetDouble(ToDoubles(a));
}
double ZqDoubleResultOfVecOfDoubles::GetDouble(const std::vector<std::int32_t>& a) const {
  return GetDouble(ToDoubles(a));
}
double ZqDoubleResultOfVecOfDoubles::GetDouble(const std::vector<std::string>& a) const {
  return GetDouble(ToDoubles(a));
}
double ZqDoubleResultOfVecOfDoubles::GetDouble(const std::vector<double>&) const { return VarimoBadData::BadDouble; }
std::uint32_t ZqDoubleResultOfVecOfDoubles::DataTypeOfTransformArgument() const { return DT::Double; }
std::uint32_t ZqDoubleResultOfVecOfDoubles::DataTypeOfTransformResult() const { return DT::Double; }
std::uint32_t ZqDoubleResultOfVecOfDoubles::StatVarTypeOfTransformResult() const { return ST::Ratio; }

}  // namespace Varimo
