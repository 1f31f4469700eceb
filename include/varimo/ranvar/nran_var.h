// nZqRanVar: a named random variable of the second generation, holding a
// double, a dense vector or a dense matrix, with a read-only flag and its own
// constraints.
//
//   ZqCheckRanVarConstraints positive({}, {ZqRanVarElemWiseConstraint(ZqRanVarConstraintKind::ElementIsPositive)});
//   nZqRanVar variance(nZqRanVarMajorType::UniVarGaussian, nZqUniVarGaussRanVarsMinorType::Variance,
//                      "Univariate Gaussian Random Variable::Variance", positive, 2.0);
//   if (variance.CheckConstraints(3.0).IsSuccessful()) variance.LoadRanVarVal(3.0);
//
// Copies share. A copy (or an assignment) shares the value of its source,
// so a load through either is seen by both; the value lives until the last
// handle sharing it goes. The constraints are never shared: each handle has
// its own copy. The count of sharing handles is a plain counter, so handles
// that share a value must stay on one thread at a time.
//
// Loading never checks the constraints; call CheckConstraints first. A
// read-only handle ignores every write (pointer forms give null), and the
// forms with a ZqStatModelResult& report it as VariableIsReadOnly. Reads go
// to the storage as they are: asking for a kind of value the handle does not
// hold gives the bad value of that kind (see nran_var_storage.h).
#pragma once

#include <Eigen/Core>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/ranvar/nran_var_types.h"
#include "varimo/ranvar/ran_var_constraints.h"

namespace Varimo {

class nZqRanVarBase;

class nZqRanVar {
 public:
  // Read-only, of the null major type, over storage that holds nothing, with
  // the default constraints that refuse everything.
  nZqRanVar();
  // Read-write handles on a new value; the data type follows the value.
  nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
            const ZqCheckRanVarConstraints& constraints, double value);
  nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
            const ZqCheckRanVarConstraints& constraints, const Eigen::VectorXd& value);
  nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
            const ZqCheckRanVarConstraints& constraints, const Eigen::MatrixXd& value);
  // Shares the source's value, with the source's flag, types, name and a copy
  // of its constraints.
  nZqRanVar(const nZqRanVar& other);
  nZqRanVar& operator=(const nZqRanVar& other);
  ~nZqRanVar();

  // --- Reads.
  double GetRanVarVal() const;
  double GetRanVarVal(ZqStatModelResult& result) const;
  const Eigen::VectorXd& GetRanVarVec() const;
  const Eigen::VectorXd& GetRanVarVec(ZqStatModelResult& result) const;
  const Eigen::VectorXd* GetConstRanVarVecPtr() const;
  const Eigen::VectorXd* GetConstRanVarVecPtr(ZqStatModelResult& result) const;
  const Eigen::MatrixXd& GetRanVarMat() const;
  const Eigen::MatrixXd& GetRanVarMat(ZqStatModelResult& result) const;
  const Eigen::MatrixXd* GetConstRanVarMatPtr() const;
  const Eigen::MatrixXd* GetConstRanVarMatPtr(ZqStatModelResult& result) const;

  // --- Writes, refused while read-only. The pointers stay valid while any
  // handle shares the value and no handle re-attaches it.
  void LoadRanVarVal(double value);
  void LoadRanVarVal(ZqStatModelResult& result, double value);
  void LoadRanVarVec(const Eigen::VectorXd& value);
  void LoadRanVarVec(ZqStatModelResult& result, const Eigen::VectorXd& value);
  Eigen::VectorXd* GetRanVarVecPtr();
  Eigen::VectorXd* GetRanVarVecPtr(ZqStatModelResult& result);
  void LoadRanVarMat(const Eigen::MatrixXd& value);
  void LoadRanVarMat(ZqStatModelResult& result, const Eigen::MatrixXd& value);
  Eigen::MatrixXd* GetRanVarMatPtr();
  Eigen::MatrixXd* GetRanVarMatPtr(ZqStatModelResult& result);

  // --- Identity and state.
  std::uint32_t GetRanVarMajorType() const { return majorType_; }
  std::uint32_t GetRanVarMinorType() const { return minorType_; }
  const std::string& GetRanVarTypeName() const { return typeName_; }
  bool IsDesiredType(std::uint32_t majorType, std::uint32_t minorType) const {
    return majorType_ == majorType && minorType_ == minorType;
  }
  // An nZqRanVarDataType code: the kind of value this handle was made for.
  std::uint32_t GetRanVarRequiredDataType() const { return requiredDataType_; }
  bool RanVarDataIsReadOnly() const { return readOnly_; }
  void SetRanVarDataReadOnly() { readOnly_ = true; }
  void ClearRanVarDataReadOnly() { readOnly_ = false; }
  // How many handles share this handle's value, this one included.
  std::uint64_t GetRanVarRefCount() const { return *refCount_; }

  // Type, data type, access, constraints and value, one item a line; see
  // nZqRanVarBase::Print for printLimit.
  std::string Print(std::size_t printLimit) const;

  // The value against this handle's constraints. A value of a kind other
  // than the handle's data type fails with ArgumentTypeWrong at
  // "nZqRanVar::CheckConstraints".
  ZqStatModelResult CheckConstraints(double value) const;
  ZqStatModelResult CheckConstraints(const Eigen::VectorXd& value) const;
  ZqStatModelResult CheckConstraints(const Eigen::MatrixXd& value) const;

  // Makes this handle a read-only view of the source's value; the source
  // keeps its access and its writes show here. With checkConstraints the
  // two data types must be equal (ArgumentTypeWrong), the source's value
  // readable as that type, and accepted by this handle's constraints;
  // on failure the handle is unchanged. Without it nothing is tested, not
  // even the data types, and the data type of this handle is kept whatever
  // the kind of value it now sees.
  ZqStatModelResult AttachData(const nZqRanVar& source, bool checkConstraints);

 private:
  template <class Value>
  nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
            const ZqCheckRanVarConstraints& constraints, std::uint32_t dataType, const Value& value);
  template <class Value>
  ZqStatModelResult CheckConstraintsOfType(std::uint32_t dataType, const char* kindText, const Value& value) const;

  // Starts sharing the source's value, letting go of the current one. Safe
  // when both already share the same value.
  void ShareDataOf(const nZqRanVar& source);
  // Lets go of the value; the last handle deletes it and its counter.
  void ReleaseData();

  bool readOnly_;
  std::uint32_t requiredDataType_;
  std::uint32_t majorType_;
  std::uint32_t minorType_;
  std::string typeName_;
  std::unique_ptr<ZqCheckRanVarConstraints> constraints_;
  nZqRanVarBase* data_;
  std::uint64_t* refCount_;
};

// Appends the eight variables of a univariate Gaussian to ranVars, in this
// order: mean, variance (positive), sample mean 0, sample variance 1
// (positive), a single observation 0, and empty vectors of training
// observations, testing observations and training weights (non-negative).
// A variance that is not positive fails with LowerBoundViolated and appends
// nothing.
ZqStatModelResult SetupUniVarGaussianRanVars(std::vector<nZqRanVar>& ranVars, double mean, double variance);

}  // namespace Varimo
