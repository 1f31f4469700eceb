#include "varimo/ranvar/nran_var_storage.h"

#include <algorithm>
#include <sstream>

namespace Varimo {

namespace {

namespace F = ZqStatModelFailureType;

template <class Value>
constexpr bool kHoldsNothing = std::is_same_v<Value, nZqNoRanVarValue>;

// Class names and row of the comment tables of the storages that hold a value.
template <class Value>
struct StorageTraits;
template <>
struct StorageTraits<double> {
  static constexpr const char* kName = "nZqScalarRanVar";
  static constexpr int kRow = 0;
};
template <>
struct StorageTraits<Eigen::VectorXd> {
  static constexpr const char* kName = "nZqVectorRanVar";
  static constexpr int kRow = 1;
};
template <>
struct StorageTraits<Eigen::MatrixXd> {
  static constexpr const char* kName = "nZqMatrixRanVar";
  static constexpr int kRow = 2;
};

// Comments of a refused request, by [kind held][kind asked for] in the order
// double, VectorXd, MatrixXd; a kind never refuses itself.
constexpr const char* kCantAccept[3][3] = {
    {nullptr, "Private data is a double; Can't accept a VectorXd", "Private data is a double; Can't accept a MatrixXd"},
    {"Private data is a VectorXd; Can't accept a double", nullptr, "Private data is a VectorXd; Can't accept a MatrixXd"},
    {"Private data is a MatrixXd; Can't accept a double", "Private data is a MatrixXd; Can't accept a VectorXd", nullptr},
};
constexpr const char* kCantReturn[3][3] = {
    {nullptr, "Private data is a double; Can't return a VectorXd", "Private data is a double; Can't return a MatrixXd"},
    {"Private data is a VectorXd; Can't return a double", nullptr, "Private data is a VectorXd; Can't return a MatrixXd"},
    {"Private data is a MatrixXd; Can't return a double", "Private data is a MatrixXd; Can't return a VectorXd", nullptr},
};

enum class Request { Load, Read };

// Whether the storage holding Held serves a request for Wanted. A served
// request sets the result to true; a refused one records the refusal.
template <class Held, class Wanted>
bool Serves(ZqStatModelResult& result, const char* method, Request request) {
  if constexpr (std::is_same_v<Held, Wanted>) {
    result = true;
    return true;
  } else {
    result = false;
    if constexpr (kHoldsNothing<Held>) {
      result.SetFailureTypeAndWhereFailed(F::EmptyStatModel, std::string("nZqNullRanVar::") + method);
    } else {
      result.SetFailureTypeAndWhereFailed(F::ArgumentTypeWrong,
                                          std::string(StorageTraits<Held>::kName) + "::" + method);
      const auto& comments = request == Request::Load ? kCantAccept : kCantReturn;
      result.AddExtraComment(comments[StorageTraits<Held>::kRow][StorageTraits<Wanted>::kRow]);
    }
    return false;
  }
}

// The held value if it is of the kind asked for, else null; Wanted carries
// the const of the caller.
template <class Wanted, class Held>
Wanted* PointerTo(Held& held) {
  if constexpr (std::is_same_v<std::remove_const_t<Held>, std::remove_const_t<Wanted>>) {
    return &held;
  } else {
    return nullptr;
  }
}

// Eigen's assignment resizes the destination to the source.
template <class Held, class Given>
void Store(Held& held, const Given& given) {
  if constexpr (std::is_same_v<Held, Given>) held = given;
}

// The null storage names LoadRanVarVec when refusing a double as well: its
// refusals report the vector loader whichever load was asked, and callers
// compare report texts.
template <class Value>
constexpr const char* kLoadValName = kHoldsNothing<Value> ? "LoadRanVarVec" : "LoadRanVarVal";

// At most `limit` of `count`, as an Eigen index.
Eigen::Index Limited(std::size_t limit, Eigen::Index count) {
  return static_cast<Eigen::Index>(std::min(limit, static_cast<std::size_t>(count)));
}

}  // namespace

// --- Doubles.

template <class Value>
void nZqRanVarStorage<Value>::LoadRanVarVal(double value) {
  Store(value_, value);
}

template <class Value>
void nZqRanVarStorage<Value>::LoadRanVarVal(ZqStatModelResult& result, double value) {
  if (Serves<Value, double>(result, kLoadValName<Value>, Request::Load)) Store(value_, value);
}

template <class Value>
double nZqRanVarStorage<Value>::GetRanVarVal() const {
  const double* held = PointerTo<const double>(value_);
  return held != nullptr ? *held : BadDouble();
}

template <class Value>
double nZqRanVarStorage<Value>::GetRanVarVal(ZqStatModelResult& result) const {
  Serves<Value, double>(result, "GetRanVarVal", Request::Read);
  return GetRanVarVal();
}

// --- Vectors.

template <class Value>
void nZqRanVarStorage<Value>::LoadRanVarVec(const Eigen::VectorXd& value) {
  Store(value_, value);
}

template <class Value>
void nZqRanVarStorage<Value>::LoadRanVarVec(ZqStatModelResult& result, const Eigen::VectorXd& value) {
  if (Serves<Value, Eigen::VectorXd>(result, "LoadRanVarVec", Request::Load)) Store(value_, value);
}

template <class Value>
const Eigen::VectorXd& nZqRanVarStorage<Value>::GetRanVarVec() const {
  const Eigen::VectorXd* held = GetConstRanVarVecPtr();
  return held != nullptr ? *held : BadVector();
}

template <class Value>
const Eigen::VectorXd& nZqRanVarStorage<Value>::GetRanVarVec(ZqStatModelResult& result) const {
  Serves<Value, Eigen::VectorXd>(result, "GetRanVarVec", Request::Read);
  return GetRanVarVec();
}

template <class Value>
const Eigen::VectorXd* nZqRanVarStorage<Value>::GetConstRanVarVecPtr() const {
  return PointerTo<const Eigen::VectorXd>(value_);
}

template <class Value>
const Eigen::VectorXd* nZqRanVarStorage<Value>::GetConstRanVarVecPtr(ZqStatModelResult& result) const {
  Serves<Value, Eigen::VectorXd>(result, "GetConstRanVarVecPtr", Request::Read);
  return GetConstRanVarVecPtr();
}

template <class Value>
Eigen::VectorXd* nZqRanVarStorage<Value>::GetRanVarVecPtr() {
  return PointerTo<Eigen::VectorXd>(value_);
}

template <class Value>
Eigen::VectorXd* nZqRanVarStorage<Value>::GetRanVarVecPtr(ZqStatModelResult& result) {
  Serves<Value, Eigen::VectorXd>(result, "GetRanVarVecPtr", Request::Read);
  return GetRanVarVecPtr();
}

// --- Matrices.

template <class Value>
void nZqRanVarStorage<Value>::LoadRanVarMat(const Eigen::MatrixXd& value) {
  Store(value_, value);
}

template <class Value>
void nZqRanVarStorage<Value>::LoadRanVarMat(ZqStatModelResult& result, const Eigen::MatrixXd& value) {
  if (Serves<Value, Eigen::MatrixXd>(result, "LoadRanVarMat", Request::Load)) Store(value_, value);
}

template <class Value>
const Eigen::MatrixXd& nZqRanVarStorage<Value>::GetRanVarMat() const {
  const Eigen::MatrixXd* held = GetConstRanVarMatPtr();
  return held != nullptr ? *held : BadMatrix();
}

template <class Value>
const Eigen::MatrixXd& nZqRanVarStorage<Value>::GetRanVarMat(ZqStatModelResult& result) const {
  Serves<Value, Eigen::MatrixXd>(result, "GetRanVarMat", Request::Read);
  return GetRanVarMat();
}

template <class Value>
const Eigen::MatrixXd* nZqRanVarStorage<Value>::GetConstRanVarMatPtr() const {
  return PointerTo<const Eigen::MatrixXd>(value_);
}

template <class Value>
const Eigen::MatrixXd* nZqRanVarStorage<Value>::GetConstRanVarMatPtr(ZqStatModelResult& result) const {
  Serves<Value, Eigen::MatrixXd>(result, "GetConstRanVarMatPtr", Request::Read);
  return GetConstRanVarMatPtr();
}

template <class Value>
Eigen::MatrixXd* nZqRanVarStorage<Value>::GetRanVarMatPtr() {
  return PointerTo<Eigen::MatrixXd>(value_);
}

template <class Value>
Eigen::MatrixXd* nZqRanVarStorage<Value>::GetRanVarMatPtr(ZqStatModelResult& result) {
  Serves<Value, Eigen::MatrixXd>(result, "GetRanVarMatPtr", Request::Read);
  return GetRanVarMatPtr();
}

// --- Printing.

template <class Value>
std::string nZqRanVarStorage<Value>::Print([[maybe_unused]] std::size_t printLimit) const {
  std::ostringstream out;
  if constexpr (kHoldsNothing<Value>) {
    out << "No data for Null Random Variable\n";
  } else if constexpr (std::is_same_v<Value, double>) {
    out << "Data is a scalar double" << "Random Variable Value: " << value_ << "\n";
  } else if constexpr (std::is_same_v<Value, Eigen::VectorXd>) {
    out << "Data is a dynamically sized vector of doubles (Eigen::VectorXd)" << "Size = " << value_.size()
        << "; Print limit = " << printLimit << "\n"
        << "Random Variable Vector: " << "\n"
        << value_.head(Limited(printLimit, value_.size())) << "\n";
  } else {
    out << "Data is a dynamically sized matrix of doubles (Eigen::MatrixXd)" << "Num Rows = " << value_.rows()
        << "; Num Cols = " << value_.cols() << "; Print limit = " << printLimit << "\n"
        << "Random Variable Matrix: " << "\n"
        << value_.topLeftCorner(Limited(printLimit, value_.rows()), Limited(printLimit, value_.cols())) << "\n";
  }
  return out.str();
}

template class nZqRanVarStorage<nZqNoRanVarValue>;
template class nZqRanVarStorage<double>;
template class nZqRanVarStorage<Eigen::VectorXd>;
template class nZqRanVarStorage<Eigen::MatrixXd>;

}  // namespace Varimo
