// Transforms: small objects with one rule that turn one value, two values
// or a vector of values into a new value, for columns computed on each read
// from their source columns (derived_columns.h). Every rule passes the
// reserved values through: a missing argument gives missing, a bad one bad,
// in the result's type (for two arguments, missing first).
//
// A transform answers in every data type for arguments of every data type;
// a double-result transform does its work in GetDouble of doubles, a
// nominal-result one in GetUnsigned of doubles (0 or 1, read as "False"
// and "True" by the column comparisons), and the other overloads convert.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Varimo {

// The getters of one argument of each data type.
#define VARIMO_TRANSFORM_GETTERS_1(QUALIFIER, TAIL)                                \
  QUALIFIER std::uint32_t GetUnsigned(std::uint32_t a) const TAIL;                 \
  QUALIFIER std::uint32_t GetUnsigned(std::int32_t a) const TAIL;                  \
  QUALIFIER std::uint32_t GetUnsigned(double a) const TAIL;                        \
  QUALIFIER std::uint32_t GetUnsigned(const std::string& a) const TAIL;            \
  QUALIFIER std::int32_t GetInt(std::uint32_t a) const TAIL;                       \
  QUALIFIER std::int32_t GetInt(std::int32_t a) const TAIL;                        \
  QUALIFIER std::int32_t GetInt(double a) const TAIL;                              \
  QUALIFIER std::int32_t GetInt(const std::string& a) const TAIL;                  \
  QUALIFIER double GetDouble(std::uint32_t a) const TAIL;                          \
  QUALIFIER double GetDouble(std::int32_t a) const TAIL;                           \
  QUALIFIER double GetDouble(double a) const TAIL;                                 \
  QUALIFIER double GetDouble(const std::string& a) const TAIL;                     \
  QUALIFIER std::string GetString(std::uint32_t a) const TAIL;                     \
  QUALIFIER std::string GetString(std::int32_t a) const TAIL;                      \
  QUALIFIER std::string GetString(double a) const TAIL;                            \
  QUALIFIER std::string GetString(const std::string& a) const TAIL

// One result type over the 16 pairs of argument types, the first varying
// slowest.
#define VARIMO_TRANSFORM_PAIRS(QUALIFIER, R, NAME, TAIL)                                            \
  QUALIFIER R NAME(std::uint32_t a, std::uint32_t b) const TAIL;                                    \
  QUALIFIER R NAME(std::uint32_t a, std::int32_t b) const TAIL;                                     \
  QUALIFIER R NAME(std::uint32_t a, double b) const TAIL;                                           \
  QUALIFIER R NAME(std::uint32_t a, const std::string& b) const TAIL;                               \
  QUALIFIER R NAME(std::int32_t a, std::uint32_t b) const TAIL;                                     \
  QUALIFIER R NAME(std::int32_t a, std::int32_t b) const TAIL;                                      \
  QUALIFIER R NAME(std::int32_t a, double b) const TAIL;                                            \
  QUALIFIER R NAME(std::int32_t a, const std::string& b) const TAIL;                                \
  QUALIFIER R NAME(double a, std::uint32_t b) const TAIL;                                           \
  QUALIFIER R NAME(double a, std::int32_t b) const TAIL;                                            \
  QUALIFIER R NAME(double a, double b) const TAIL;                                                  \
  QUALIFIER R NAME(double a, const std::string& b) const TAIL;                                      \
  QUALIFIER R NAME(const std::string& a, std::uint32_t b) const TAIL;                               \
  QUALIFIER R NAME(const std::string& a, std::int32_t b) const TAIL;                                \
  QUALIFIER R NAME(const std::string& a, double b) const TAIL;                                      \
  QUALIFIER R NAME(const std::string& a, const std::string& b) const TAIL
#define VARIMO_TRANSFORM_GETTERS_2(QUALIFIER, TAIL)                      \
  VARIMO_TRANSFORM_PAIRS(QUALIFIER, std::uint32_t, GetUnsigned, TAIL);   \
  VARIMO_TRANSFORM_PAIRS(QUALIFIER, std::int32_t, GetInt, TAIL);         \
  VARIMO_TRANSFORM_PAIRS(QUALIFIER, double, GetDouble, TAIL);            \
  VARIMO_TRANSFORM_PAIRS(QUALIFIER, std::string, GetString, TAIL)

#define VARIMO_TRANSFORM_GETTERS_VEC(QUALIFIER, TAIL)                                      \
  QUALIFIER std::uint32_t GetUnsigned(const std::vector<std::uint32_t>& a) const TAIL;     \
  QUALIFIER std::uint32_t GetUnsigned(const std::vector<std::int32_t>& a) const TAIL;      \
  QUALIFIER std::uint32_t GetUnsigned(const std::vector<double>& a) const TAIL;            \
  QUALIFIER std::uint32_t GetUnsigned(const std::vector<std::string>& a) const TAIL;       \
  QUALIFIER std::int32_t GetInt(const std::vector<std::uint32_t>& a) const TAIL;           \
  QUALIFIER std::int32_t GetInt(const std::vector<std::int32_t>& a) const TAIL;            \
  QUALIFIER std::int32_t GetInt(const std::vector<double>& a) const TAIL;                  \
  QUALIFIER std::int32_t GetInt(const std::vector<std::string>& a) const TAIL;             \
  QUALIFIER double GetDouble(const std::vector<std::uint32_t>& a) const TAIL;              \
  QUALIFIER double GetDouble(const std::vector<std::int32_t>& a) const TAIL;               \
  QUALIFIER double GetDouble(const std::vector<double>& a) const TAIL;                     \
  QUALIFIER double GetDouble(const std::vector<std::string>& a) const TAIL;                \
  QUALIFIER std::string GetString(const std::vector<std::uint32_t>& a) const TAIL;         \
  QUALIFIER std::string GetString(const std::vector<std::int32_t>& a) const TAIL;          \
  QUALIFIER std::string GetString(const std::vector<double>& a) const TAIL;                \
  QUALIFIER std::string GetString(const std::vector<std::string>& a) const TAIL

#define VARIMO_PURE = 0
#define VARIMO_NONE

// ------------------------------------------------------------ bases

class ZqSingleArgDataTransformBase {
 public:
  virtual ~ZqSingleArgDataTransformBase() = default;
  virtual ZqSingleArgDataTransformBase* CreateCopy() const = 0;
  virtual std::string GetTransformName() const = 0;
  virtual std::uint32_t DataTypeOfTransformArgument() const = 0;
  virtual std::uint32_t DataTypeOfTransformResult() const = 0;
  virtual std::uint32_t StatVarTypeOfTransformResult() const = 0;
  VARIMO_TRANSFORM_GETTERS_1(virtual, VARIMO_PURE);
};

class ZqTwoArgsDataTransformBase {
 public:
  virtual ~ZqTwoArgsDataTransformBase() = default;
  virtual ZqTwoArgsDataTransformBase* CreateCopy() const = 0;
  virtual std::string GetTransformName() const = 0;
  virtual std::uint32_t DataTypeOfFirstTransformArgument() const = 0;
  virtual std::uint32_t DataTypeOfSecondTransformArgument() const = 0;
  virtual std::uint32_t DataTypeOfTransformResult() const = 0;
  virtual std::uint32_t StatVarTypeOfTransformResult() const = 0;
  VARIMO_TRANSFORM_GETTERS_2(virtual, VARIMO_PURE);
};

class ZqVecOfArgsDataTransformBase {
 public:
  virtual ~ZqVecOfArgsDataTransformBase() = default;
  virtual ZqVecOfArgsDataTransformBase* CreateCopy() const = 0;
  virtual std::string GetTransformName() const = 0;
  virtual std::uint32_t DataTypeOfTransformArgument() const = 0;
  virtual std::uint32_t DataTypeOfTransformResult() const = 0;
  virtual std::uint32_t StatVarTypeOfTransformResult() const = 0;
  VARIMO_TRANSFORM_GETTERS_VEC(virtual, VARIMO_PURE);
};

// ------------------------------------------------------------ result families

// Works in GetDouble(double); the rest convert to and from double.
class ZqDoubleResultOfDoubleArg : public ZqSingleArgDataTransformBase {
 public:
  std::uint32_t DataTypeOfTransformArgument() const override;
  std::uint32_t DataTypeOfTransformResult() const override;
  std::uint32_t StatVarTypeOfTransformResult() const override;
  VARIMO_TRANSFORM_GETTERS_1(VARIMO_NONE, override);
};

// Works in GetUnsigned(double); GetString reads the value in its names.
class ZqNominalResultOfDoubleArg : public ZqSingleArgDataTransformBase {
 public:
  explicit ZqNominalResultOfDoubleArg(const std::vector<std::string>& names) : names_(names) {}
  std::uint32_t DataTypeOfTransformArgument() const override;
  std::uint32_t DataTypeOfTransformResult() const override;
  std::uint32_t StatVarTypeOfTransformResult() const override;
  VARIMO_TRANSFORM_GETTERS_1(VARIMO_NONE, override);
  // The name of a value; the reserved names past the list.
  std::string StringFromUnsigned(std::uint32_t value) const;
  const std::vector<std::string>& GetNames() const { return names_; }

 private:
  std::vector<std::string> names_;
};

class ZqDoubleResultOfTwoDoubleArgs : public ZqTwoArgsDataTransformBase {
 public:
  std::uint32_t DataTypeOfFirstTransformArgument() const override;
  std::uint32_t DataTypeOfSecondTransformArgument() const override;
  std::uint32_t DataTypeOfTransformResult() const override;
  std::uint32_t StatVarTypeOfTransformResult() const override;
  VARIMO_TRANSFORM_GETTERS_2(VARIMO_NONE, override);
};

class ZqNominalResultOfTwoDoubleArgs : public ZqTwoArgsDataTransformBase {
 public:
  explicit ZqNominalResultOfTwoDoubleArgs(const std::vector<std::string>& names) : names_(names) {}
  std::uint32_t DataTypeOfFirstTransformArgument() const override;
  std::uint32_t DataTypeOfSecondTransformArgument() const override;
  std::uint32_t DataTypeOfTransformResult() const override;
  std::uint32_t StatVarTypeOfTransformResult() const override;
  VARIMO_TRANSFORM_GETTERS_2(VARIMO_NONE, override);
  std::string StringFromUnsigned(std::uint32_t value) const;
  const std::vector<std::string>& GetNames() const { return names_; }

 private:
  std::vector<std::string> names_;
};

class ZqDoubleResultOfVecOfDoubles : public ZqVecOfArgsDataTransformBase {
 public:
  std::uint32_t DataTypeOfTransformArgument() const override;
  std::uint32_t DataTypeOfTransformResult() const override;
  std::uint32_t StatVarTypeOfTransformResult() const override;
  VARIMO_TRANSFORM_GETTERS_VEC(VARIMO_NONE, override);
};

#undef VARIMO_TRANSFORM_GETTERS_1
#undef VARIMO_TRANSFORM_PAIRS
#undef VARIMO_TRANSFORM_GETTERS_2
#undef VARIMO_TRANSFORM_GETTERS_VEC
#undef VARIMO_PURE
#undef VARIMO_NONE

// ------------------------------------------------------------ the rules

// A transform of one double with a rule `double Rule(double) const`.
#define VARIMO_DOUBLE_TRANSFORM(Class)                                                      \
  class Class final : public ZqDoubleResultOfDoubleArg {                                   \
   public:                                                                                  \
    using ZqDoubleResultOfDoubleArg::GetDouble;                                             \
    ZqSingleArgDataTransformBase* CreateCopy() const override { return new Class(*this); }  \
    std::string GetTransformName() const override;                                          \
    double GetDouble(double x) const override;

VARIMO_DOUBLE_TRANSFORM(ZqAddAScalarDataTransform)
  explicit ZqAddAScalarDataTransform(double c) : c_(c) {}
 private:
  double c_;
};
VARIMO_DOUBLE_TRANSFORM(ZqSubtractAScalarDataTransform)
  explicit ZqSubtractAScalarDataTransform(double c) : c_(c) {}
 private:
  double c_;
};
VARIMO_DOUBLE_TRANSFORM(ZqSubtractFromAScalarDataTransform)
  explicit ZqSubtractFromAScalarDataTransform(double c) : c_(c) {}
 private:
  double c_;
};
VARIMO_DOUBLE_TRANSFORM(ZqMultiplyByScalarDataTransform)
  explicit ZqMultiplyByScalarDataTransform(double c) : c_(c) {}
 private:
  double c_;
};
VARIMO_DOUBLE_TRANSFORM(ZqDivideByScalarDataTransform)
  explicit ZqDivideByScalarDataTransform(double c) : c_(c) {}
 private:
  double c_;
};
VARIMO_DOUBLE_TRANSFORM(ZqDivideIntoScalarDataTransform)
  explicit ZqDivideIntoScalarDataTransform(double c) : c_(c) {}
 private:
  double c_;
};
VARIMO_DOUBLE_TRANSFORM(ZqSqrtDataTransform)
};
VARIMO_DOUBLE_TRANSFORM(ZqLogDataTransform)
};
VARIMO_DOUBLE_TRANSFORM(ZqAbsoluteValueDataTransform)
};
// The log odds of x on [lo, hi], x first clipped to [lo + eps, hi - eps];
// bad outside [lo, hi].
VARIMO_DOUBLE_TRANSFORM(ZqLogisticDataTransform)
  ZqLogisticDataTransform(double lo, double hi, double eps) : lo_(lo), hi_(hi), eps_(eps) {}
 private:
  double lo_, hi_, eps_;
};
#undef VARIMO_DOUBLE_TRANSFORM

#define VARIMO_TWO_DOUBLE_TRANSFORM(Class)                                                 \
  class Class final : public ZqDoubleResultOfTwoDoubleArgs {                               \
   public:                                                                                  \
    using ZqDoubleResultOfTwoDoubleArgs::GetDouble;                                         \
    ZqTwoArgsDataTransformBase* CreateCopy() const override { return new Class(*this); }    \
    std::string GetTransformName() const override;                                          \
    double GetDouble(double a, double b) const override;                                    \
  }
VARIMO_TWO_DOUBLE_TRANSFORM(ZqSumOfTwoDoubles);
VARIMO_TWO_DOUBLE_TRANSFORM(ZqDifferenceOfTwoDoubles);
VARIMO_TWO_DOUBLE_TRANSFORM(ZqProductOfTwoDoubles);
VARIMO_TWO_DOUBLE_TRANSFORM(ZqRatioOfTwoDoubles);
#undef VARIMO_TWO_DOUBLE_TRANSFORM

#define VARIMO_VEC_TRANSFORM(Class)                                                        \
  class Class final : public ZqDoubleResultOfVecOfDoubles {                                \
   public:                                                                                  \
    using ZqDoubleResultOfVecOfDoubles::GetDouble;                                          \
    ZqVecOfArgsDataTransformBase* CreateCopy() const override { return new Class(*this); }  \
    std::string GetTransformName() const override;                                          \
    double GetDouble(const std::vector<double>& a) const override;                          \
  }
VARIMO_VEC_TRANSFORM(ZqMaxOfVecOfDoubles);
VARIMO_VEC_TRANSFORM(ZqMinOfVecOfDoubles);
VARIMO_VEC_TRANSFORM(ZqRangeOfVecOfDoubles);
VARIMO_VEC_TRANSFORM(ZqAveOfVecOfDoubles);
VARIMO_VEC_TRANSFORM(ZqVarianceOfVecOfDoubles);
#undef VARIMO_VEC_TRANSFORM

// Comparisons of an argument with a scalar: 1 when it holds, else 0.
#define VARIMO_SCALAR_COMPARISON(Class)                                                     \
  class Class final : public ZqNominalResultOfDoubleArg {                                   \
   public:                                                                                  \
    using ZqNominalResultOfDoubleArg::GetUnsigned;                                          \
    Class(double c, const std::vector<std::string>& names) : ZqNominalResultOfDoubleArg(names), c_(c) {} \
    ZqSingleArgDataTransformBase* CreateCopy() const override { return new Class(*this); }  \
    std::string GetTransformName() const override;                                          \
    std::uint32_t GetUnsigned(double x) const override;                                     \
                                                                                            \
   private:                                                                                 \
    double c_;                                                                              \
  }
VARIMO_SCALAR_COMPARISON(ZqArgGreaterThanScalar);
VARIMO_SCALAR_COMPARISON(ZqArgGreaterEqualToScalar);
VARIMO_SCALAR_COMPARISON(ZqArgEqualToScalar);
VARIMO_SCALAR_COMPARISON(ZqArgLessEqualToScalar);
VARIMO_SCALAR_COMPARISON(ZqArgLessThanScalar);
#undef VARIMO_SCALAR_COMPARISON

#define VARIMO_PAIR_COMPARISON(Class)                                                       \
  class Class final : public ZqNominalResultOfTwoDoubleArgs {                               \
   public:                                                                                  \
    using ZqNominalResultOfTwoDoubleArgs::GetUnsigned;                                      \
    explicit Class(const std::vector<std::string>& names) : ZqNominalResultOfTwoDoubleArgs(names) {} \
    ZqTwoArgsDataTransformBase* CreateCopy() const override { return new Class(*this); }    \
    std::string GetTransformName() const override;                                          \
    std::uint32_t GetUnsigned(double a, double b) const override;                           \
  }
VARIMO_PAIR_COMPARISON(ZqArgOneGreaterThanArgTwo);
VARIMO_PAIR_COMPARISON(ZqArgOneGreaterEqualToArgTwo);
VARIMO_PAIR_COMPARISON(ZqArgOneEqualToArgTwo);
VARIMO_PAIR_COMPARISON(ZqArgOneLessEqualToArgTwo);
VARIMO_PAIR_COMPARISON(ZqArgOneLessThanArgTwo);
#undef VARIMO_PAIR_COMPARISON

}  // namespace Varimo
