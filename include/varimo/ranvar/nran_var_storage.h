// The storage behind an nZqRanVar (nran_var.h): nothing, a double, a dense
// vector or a dense matrix. Every storage answers every request; a request
// for a kind of value it does not hold is quietly ignored (loads) or answered
// with the bad value of the kind asked for (reads): the bad double
// 1.7976931348623157e308, an empty vector or matrix, or a null pointer.
//
// The forms that take a ZqStatModelResult& report such a request as well:
// the null storage with EmptyStatModel and no comment, the others with
// ArgumentTypeWrong and a comment such as "Private data is a double; Can't
// accept a VectorXd". The routine named is the storage class and the method,
// "nZqScalarRanVar::LoadRanVarVec". A served request sets the result to true
// before it stores or reads. A refusal assigns false to the result before
// setting the failure, so the comments of an earlier failure in the same
// result are kept.
#pragma once

#include <Eigen/Core>

#include <cstddef>
#include <string>
#include <type_traits>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/foundations/stats_data_types.h"

namespace Varimo {

class nZqRanVarBase {
 public:
  virtual ~nZqRanVarBase() = default;

  virtual void LoadRanVarVal(double value) = 0;
  virtual void LoadRanVarVal(ZqStatModelResult& result, double value) = 0;
  virtual double GetRanVarVal() const = 0;
  virtual double GetRanVarVal(ZqStatModelResult& result) const = 0;

  // Loading a vector or matrix resizes the stored one to the given size.
  virtual void LoadRanVarVec(const Eigen::VectorXd& value) = 0;
  virtual void LoadRanVarVec(ZqStatModelResult& result, const Eigen::VectorXd& value) = 0;
  virtual const Eigen::VectorXd& GetRanVarVec() const = 0;
  virtual const Eigen::VectorXd& GetRanVarVec(ZqStatModelResult& result) const = 0;
  virtual const Eigen::VectorXd* GetConstRanVarVecPtr() const = 0;
  virtual const Eigen::VectorXd* GetConstRanVarVecPtr(ZqStatModelResult& result) const = 0;
  // Writable access to the stored vector, valid while the storage lives.
  virtual Eigen::VectorXd* GetRanVarVecPtr() = 0;
  virtual Eigen::VectorXd* GetRanVarVecPtr(ZqStatModelResult& result) = 0;

  virtual void LoadRanVarMat(const Eigen::MatrixXd& value) = 0;
  virtual void LoadRanVarMat(ZqStatModelResult& result, const Eigen::MatrixXd& value) = 0;
  virtual const Eigen::MatrixXd& GetRanVarMat() const = 0;
  virtual const Eigen::MatrixXd& GetRanVarMat(ZqStatModelResult& result) const = 0;
  virtual const Eigen::MatrixXd* GetConstRanVarMatPtr() const = 0;
  virtual const Eigen::MatrixXd* GetConstRanVarMatPtr(ZqStatModelResult& result) const = 0;
  virtual Eigen::MatrixXd* GetRanVarMatPtr() = 0;
  virtual Eigen::MatrixXd* GetRanVarMatPtr(ZqStatModelResult& result) = 0;

  // What the storage holds; a vector shows its first printLimit elements, a
  // matrix its top-left printLimit by printLimit block.
  virtual std::string Print(std::size_t printLimit) const = 0;

 protected:
  nZqRanVarBase() = default;
  nZqRanVarBase(const nZqRanVarBase&) = default;
  nZqRanVarBase& operator=(const nZqRanVarBase&) = default;

  static double BadDouble() { return VarimoBadData::BadDouble; }
  const Eigen::VectorXd& BadVector() const { return badVector_; }
  const Eigen::MatrixXd& BadMatrix() const { return badMatrix_; }

 private:
  // Always empty: what a read of a kind the storage does not hold returns.
  Eigen::VectorXd badVector_;
  Eigen::MatrixXd badMatrix_;
};

// The "value" of the storage that holds nothing.
struct nZqNoRanVarValue {};

// One storage class per kind of value; use the names below. The four share
// one definition because they differ only in which requests they serve.
template <class Value>
class nZqRanVarStorage final : public nZqRanVarBase {
 public:
  nZqRanVarStorage()
    requires std::is_same_v<Value, nZqNoRanVarValue>
  = default;
  explicit nZqRanVarStorage(const Value& value)
    requires(!std::is_same_v<Value, nZqNoRanVarValue>)
      : value_(value) {}

  void LoadRanVarVal(double value) override;
  void LoadRanVarVal(ZqStatModelResult& result, double value) override;
  double GetRanVarVal() const override;
  double GetRanVarVal(ZqStatModelResult& result) const override;

  void LoadRanVarVec(const Eigen::VectorXd& value) override;
  void LoadRanVarVec(ZqStatModelResult& result, const Eigen::VectorXd& value) override;
  const Eigen::VectorXd& GetRanVarVec() const override;
  const Eigen::VectorXd& GetRanVarVec(ZqStatModelResult& result) const override;
  const Eigen::VectorXd* GetConstRanVarVecPtr() const override;
  const Eigen::VectorXd* GetConstRanVarVecPtr(ZqStatModelResult& result) const override;
  Eigen::VectorXd* GetRanVarVecPtr() override;
  Eigen::VectorXd* GetRanVarVecPtr(ZqStatModelResult& result) override;

  void LoadRanVarMat(const Eigen::MatrixXd& value) override;
  void LoadRanVarMat(ZqStatModelResult& result, const Eigen::MatrixXd& value) override;
  const Eigen::MatrixXd& GetRanVarMat() const override;
  const Eigen::MatrixXd& GetRanVarMat(ZqStatModelResult& result) const override;
  const Eigen::MatrixXd* GetConstRanVarMatPtr() const override;
  const Eigen::MatrixXd* GetConstRanVarMatPtr(ZqStatModelResult& result) const override;
  Eigen::MatrixXd* GetRanVarMatPtr() override;
  Eigen::MatrixXd* GetRanVarMatPtr(ZqStatModelResult& result) override;

  std::string Print(std::size_t printLimit) const override;

 private:
  Value value_{};
};

// Holds nothing; every checked request fails with EmptyStatModel.
using nZqNullRanVar = nZqRanVarStorage<nZqNoRanVarValue>;
using nZqScalarRanVar = nZqRanVarStorage<double>;
using nZqVectorRanVar = nZqRanVarStorage<Eigen::VectorXd>;
using nZqMatrixRanVar = nZqRanVarStorage<Eigen::MatrixXd>;

// Defined once, in the library.
extern template class nZqRanVarStorage<nZqNoRanVarValue>;
extern template class nZqRanVarStorage<double>;
extern template class nZqRanVarStorage<Eigen::VectorXd>;
extern template class nZqRanVarStorage<Eigen::MatrixXd>;

}  // namespace Varimo
