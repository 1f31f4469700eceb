// Life, sharing, reads and writes of nZqRanVar.
#include "varimo/ranvar/nran_var.h"

#include <string>

#include "varimo/ranvar/nran_var_storage.h"

namespace Varimo {

namespace {

// Whether a write must be refused because the handle is read-only; a checked
// write records the refusal.
bool WriteRefused(bool readOnly, ZqStatModelResult& result, const char* routine) {
  if (!readOnly) return false;
  result = false;
  result.SetFailureTypeAndWhereFailed(ZqStatModelFailureType::VariableIsReadOnly, routine);
  return true;
}

}  // namespace

nZqRanVar::nZqRanVar()
    : readOnly_(true),
      requiredDataType_(nZqRanVarDataType::Unknown),
      majorType_(nZqRanVarMajorType::NullRanVar),
      minorType_(nZqNullRanVarMinorType::Unknown),
      typeName_(std::string(nZqRanVarMajorType::TypeName[nZqRanVarMajorType::NullRanVar]) + "::" +
                nZqNullRanVarMinorType::TypeName[nZqNullRanVarMinorType::Unknown]),
      constraints_(std::make_unique<ZqCheckRanVarConstraints>()),
      data_(new nZqNullRanVar()),
      refCount_(new std::uint64_t(1)) {}

template <class Value>
nZqRanVar::nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
                     const ZqCheckRanVarConstraints& constraints, std::uint32_t dataType, const Value& value)
    : readOnly_(false),
      requiredDataType_(dataType),
      majorType_(majorType),
      minorType_(minorType),
      typeName_(typeName),
      constraints_(constraints.CreateCopy()),
      data_(new nZqRanVarStorage<Value>(value)),
      refCount_(new std::uint64_t(1)) {}

nZqRanVar::nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
                     const ZqCheckRanVarConstraints& constraints, double value)
    : nZqRanVar(majorType, minorType, typeName, constraints, nZqRanVarDataType::ScalarDouble, value) {}

nZqRanVar::nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
                     const ZqCheckRanVarConstraints& constraints, const Eigen::VectorXd& value)
    : nZqRanVar(majorType, minorType, typeName, constraints, nZqRanVarDataType::VectorXd, value) {}

nZqRanVar::nZqRanVar(std::uint32_t majorType, std::uint32_t minorType, const std::string& typeName,
                     const ZqCheckRanVarConstraints& constraints, const Eigen::MatrixXd& value)
    : nZqRanVar(majorType, minorType, typeName, constraints, nZqRanVarDataType::MatrixXd, value) {}

nZqRanVar::nZqRanVar(const nZqRanVar& other)
    : readOnly_(other.readOnly_),
      requiredDataType_(other.requiredDataType_),
      majorType_(other.majorType_),
      minorType_(other.minorType_),
      typeName_(other.typeName_),
      constraints_(other.constraints_->CreateCopy()),
      data_(other.data_),
      refCount_(other.refCount_) {
  ++*refCount_;
}

nZqRanVar& nZqRanVar::operator=(const nZqRanVar& other) {
  readOnly_ = other.readOnly_;
  requiredDataType_ = other.requiredDataType_;
  majorType_ = other.majorType_;
  minorType_ = other.minorType_;
  typeName_ = other.typeName_;
  constraints_.reset(other.constraints_->CreateCopy());
  ShareDataOf(other);
  return *this;
}

nZqRanVar::~nZqRanVar() { ReleaseData(); }

void nZqRanVar::ShareDataOf(const nZqRanVar& source) {
  // Count the new holder before letting go of the old value: when both are
  // the same (self-assignment, or a copy attached to its source) the value
  // must not reach a count of zero on the way.
  // The source's pointers are taken first, as the source may be this handle.
  nZqRanVarBase* const data = source.data_;
  std::uint64_t* const refCount = source.refCount_;
  ++*refCount;
  ReleaseData();
  data_ = data;
  refCount_ = refCount;
}

void nZqRanVar::ReleaseData() {
  if (--*refCount_ == 0) {
    delete data_;
    delete refCount_;
  }
  data_ = nullptr;
  refCount_ = nullptr;
}

// --- Reads go straight to the storage.

double nZqRanVar::GetRanVarVal() const { return data_->GetRanVarVal(); }
double nZqRanVar::GetRanVarVal(ZqStatModelResult& result) const { return data_->GetRanVarVal(result); }
const Eigen::VectorXd& nZqRanVar::GetRanVarVec() const { return data_->GetRanVarVec(); }
const Eigen::VectorXd& nZqRanVar::GetRanVarVec(ZqStatModelResult& result) const {
  return data_->GetRanVarVec(result);
}
const Eigen::VectorXd* nZqRanVar::GetConstRanVarVecPtr() const { return data_->GetConstRanVarVecPtr(); }
const Eigen::VectorXd* nZqRanVar::GetConstRanVarVecPtr(ZqStatModelResult& result) const {
  return data_->GetConstRanVarVecPtr(result);
}
const Eigen::MatrixXd& nZqRanVar::GetRanVarMat() const { return data_->GetRanVarMat(); }
const Eigen::MatrixXd& nZqRanVar::GetRanVarMat(ZqStatModelResult& result) const {
  return data_->GetRanVarMat(result);
}
const Eigen::MatrixXd* nZqRanVar::GetConstRanVarMatPtr() const { return data_->GetConstRanVarMatPtr(); }
const Eigen::MatrixXd* nZqRanVar::GetConstRanVarMatPtr(ZqStatModelResult& result) const {
  return data_->GetConstRanVarMatPtr(result);
}

// --- Writes pass the read-only flag first.

void nZqRanVar::LoadRanVarVal(double value) {
  if (!readOnly_) data_->LoadRanVarVal(value);
}

void nZqRanVar::LoadRanVarVal(ZqStatModelResult& result, double value) {
  if (!WriteRefused(readOnly_, result, "nZqRanVar::LoadRanVarVal")) data_->LoadRanVarVal(result, value);
}

void nZqRanVar::LoadRanVarVec(const Eigen::VectorXd& value) {
  if (!readOnly_) data_->LoadRanVarVec(value);
}

void nZqRanVar::LoadRanVarVec(ZqStatModelResult& result, const Eigen::VectorXd& value) {
  if (!WriteRefused(readOnly_, result, "nZqRanVar::LoadRanVarVec")) data_->LoadRanVarVec(result, value);
}

Eigen::VectorXd* nZqRanVar::GetRanVarVecPtr() { return readOnly_ ? nullptr : data_->GetRanVarVecPtr(); }

Eigen::VectorXd* nZqRanVar::GetRanVarVecPtr(ZqStatModelResult& result) {
  return WriteRefused(readOnly_, result, "nZqRanVar::GetRanVarVecPtr") ? nullptr : data_->GetRanVarVecPtr(result);
}

void nZqRanVar::LoadRanVarMat(const Eigen::MatrixXd& value) {
  if (!readOnly_) data_->LoadRanVarMat(value);
}

void nZqRanVar::LoadRanVarMat(ZqStatModelResult& result, const Eigen::MatrixXd& value) {
  if (!WriteRefused(readOnly_, result, "nZqRanVar::LoadRanVarMat")) data_->LoadRanVarMat(result, value);
}

Eigen::MatrixXd* nZqRanVar::GetRanVarMatPtr() { return readOnly_ ? nullptr : data_->GetRanVarMatPtr(); }

Eigen::MatrixXd* nZqRanVar::GetRanVarMatPtr(ZqStatModelResult& result) {
  return WriteRefused(readOnly_, result, "nZqRanVar::GetRanVarMatPtr") ? nullptr : data_->GetRanVarMatPtr(result);
}

std::string nZqRanVar::Print(std::size_t printLimit) const {
  return "Random Variable Type is " + typeName_ + "\n" + "Random Variable Required Data Type is " +
         nZqRanVarDataType::RanVarDataTypeName[requiredDataType_] + "\n" +
         (readOnly_ ? "Random Variable is read-only" : "Random Variable allows read-write access") + "\n" +
         constraints_->Print() + data_->Print(printLimit);
}

}  // namespace Varimo
