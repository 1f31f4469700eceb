// ZqStatModelResult: the outcome of every fallible operation of the
// statistics layer. It says whether the operation succeeded and, if not, the
// kind of failure, the chain of routines it travelled through (innermost
// first) and the comments the failing code added.
//
// The calling convention:
//   - a routine that detects a failure builds ZqStatModelResult(false), calls
//     SetFailureTypeAndWhereFailed(type, "Its::Name"), optionally
//     AddExtraComment(...), and returns it;
//   - a caller that sees NotSuccessful() adds AddCallContext("Its::Name"),
//     gives the bad value of its other outputs, and returns;
//   - success is ZqStatModelResult(true), or assigning true.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "varimo/platform/corvane/iter.h"

namespace Varimo {

// The kinds of failure. A set of named numbers rather than a closed type:
// SetFailureTypeAndWhereFailed takes any unsigned value and stores anything
// above InvalidFailureType as InvalidFailureType.
namespace ZqStatModelFailureType {
inline constexpr std::uint32_t FailureTypeUndefined = 0;
inline constexpr std::uint32_t ColumnNotFound = 1;
inline constexpr std::uint32_t ColumnHasWrongDataType = 2;
inline constexpr std::uint32_t ColumnNominalWithWrongNumVals = 3;
inline constexpr std::uint32_t MissingOrBadPredictorValue = 4;
inline constexpr std::uint32_t MissingOrBadResponseValue = 5;
inline constexpr std::uint32_t InternalLogicFailure = 6;
inline constexpr std::uint32_t EmptyStatModel = 7;
inline constexpr std::uint32_t InvalidCachedColumnNums = 8;
inline constexpr std::uint32_t WrongNumPredVars = 9;
inline constexpr std::uint32_t WrongNumRespVars = 10;
inline constexpr std::uint32_t WrongNumParameters = 11;
inline constexpr std::uint32_t WrongModelType = 12;
inline constexpr std::uint32_t NotYetImplemented = 13;
inline constexpr std::uint32_t ArgumentOutOfRange = 14;
inline constexpr std::uint32_t WrongInputMatrixSize = 15;
inline constexpr std::uint32_t WrongInputVectorSize = 16;
inline constexpr std::uint32_t ObjectNotValid = 17;
inline constexpr std::uint32_t NoData = 18;
inline constexpr std::uint32_t MismatchBetweenPrivateVecSizes = 19;
inline constexpr std::uint32_t MismatchBetweenInputVecSizes = 20;
inline constexpr std::uint32_t SingularMatrix = 21;
inline constexpr std::uint32_t SingularScaleOrCovariance = 22;
inline constexpr std::uint32_t NullProbDistFunc = 23;
inline constexpr std::uint32_t InvalidProbDistFunc = 24;
inline constexpr std::uint32_t WrongNumVarsInProbDistFunc = 25;
inline constexpr std::uint32_t WrongPDFType = 26;
inline constexpr std::uint32_t DensityIsUndefined = 27;
inline constexpr std::uint32_t MeanIsUndefined = 28;
inline constexpr std::uint32_t VarianceIsUndefined = 29;
inline constexpr std::uint32_t ModeIsUndefined = 30;
inline constexpr std::uint32_t UnknownArgumentDataType = 31;
inline constexpr std::uint32_t ArgumentIsMissing = 32;
inline constexpr std::uint32_t IntegerArgumentRequired = 33;
inline constexpr std::uint32_t ScalarArgumentRequired = 34;
inline constexpr std::uint32_t LowerBoundViolated = 35;
inline constexpr std::uint32_t UpperBoundViolated = 36;
inline constexpr std::uint32_t SumOfArgumentsWrong = 37;
inline constexpr std::uint32_t InappropriateConstraint = 38;
inline constexpr std::uint32_t RanVarNotFound = 39;
inline constexpr std::uint32_t RanVarAlreadyExists = 40;
inline constexpr std::uint32_t ArgumentNameWrong = 41;
inline constexpr std::uint32_t ArgumentTypeWrong = 42;
inline constexpr std::uint32_t ArgumentValueWrong = 43;
inline constexpr std::uint32_t NameNotFound = 44;
inline constexpr std::uint32_t NamesOutOfOrder = 45;
inline constexpr std::uint32_t DuplicateNames = 46;
inline constexpr std::uint32_t VariableIsReadOnly = 47;
inline constexpr std::uint32_t VectorArgumentRequired = 48;
inline constexpr std::uint32_t MatrixArgumentRequired = 49;
inline constexpr std::uint32_t BadDataViewFileType = 50;
inline constexpr std::uint32_t WrongDataViewFileType = 51;
inline constexpr std::uint32_t WrongDataViewFileState = 52;
inline constexpr std::uint32_t InvalidFailureType = 53;

inline constexpr std::uint32_t NumFailureTypes = 54;

// The report text of each failure type, indexed by its value. Every text
// ends in a newline.
extern const char* const FailureText[NumFailureTypes];
}  // namespace ZqStatModelFailureType

class ZqStatModelResult {
 public:
  // A failure of undefined type until something says otherwise.
  ZqStatModelResult() = default;
  explicit ZqStatModelResult(const bool& success) : success_(success) {}
  ZqStatModelResult(const ZqStatModelResult&) = default;
  ZqStatModelResult& operator=(const ZqStatModelResult&) = default;
  ZqStatModelResult(ZqStatModelResult&&) noexcept = default;
  ZqStatModelResult& operator=(ZqStatModelResult&&) noexcept = default;

  // Assigning false to a result that has already failed keeps its report;
  // any other assignment starts a fresh result with the given flag.
  ZqStatModelResult& operator=(const bool& success);

  bool IsSuccessful() const { return success_; }
  bool NotSuccessful() const { return !success_; }

  // Back to success with nothing recorded.
  void Clear();

  std::uint32_t GetFailureType() const { return failureType_; }
  bool FailTypeIsUndefined() const { return failureType_ == ZqStatModelFailureType::FailureTypeUndefined; }

  // The routine chain, innermost first, and the comments, in the order added.
  // Each iterator owns a copy and outlives the result.
  Corvane::ZqIter<const std::string> GetContext() const;
  Corvane::ZqIter<const std::string> GetComments() const;

  // Marks the result failed with `routine` as the place of failure. An
  // earlier chain is replaced; earlier comments stay. On a result that was
  // successful the type becomes undefined, on a failed one it is kept.
  void SetFailContext(const std::string& routine);
  // SetFailContext, then the type (values above InvalidFailureType become
  // InvalidFailureType).
  void SetFailureTypeAndWhereFailed(const std::uint32_t& failureType, const std::string& routine);
  void SetFailTypeUndefined(const std::string& routine);

  // Appends a caller to the chain. On an empty chain the place of failure is
  // first recorded as "Unknown Failure Routine". The flag is not touched:
  // call this only on a failed result.
  void AddCallContext(const std::string& routine);
  void AddExtraComment(const std::string& comment);

  // "Result is successful!" on success, else the full failure report.
  std::string ReportStatResultDetails() const;

 private:
  bool success_ = false;
  std::vector<std::string> failureContext_;
  std::vector<std::string> extraComments_;
  std::uint32_t failureType_ = ZqStatModelFailureType::FailureTypeUndefined;
};

// A failed result of the given type at `routine`, with `comment` as its one
// comment when it is not empty: the first step of the calling convention in
// one call.
ZqStatModelResult ZqMakeFailedResult(std::uint32_t failureType, const std::string& routine,
                                     const std::string& comment = std::string());

}  // namespace Varimo
