#include "varimo/krige/krige_result.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>

#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr unsigned int kBadID = 0xFFFFFFFF;

}  // namespace

ZqKrigeResultImpl::ZqKrigeResultImpl(const ZqKrigeResultImpl& other)
    : baseline_(other.baseline_),
      borderVariance_(other.borderVariance_),
      kernel_(other.kernel_ ? other.kernel_->CreateCopy() : nullptr),
      elements_(other.elements_),
      copies_(other.copies_) {}

ZqKrigeResultImpl& ZqKrigeResultImpl::operator=(const ZqKrigeResultImpl& other) {
  if (this != &other) {
    ZqKrigeResultImpl copy(other);
    baseline_ = copy.baseline_;
    borderVariance_ = copy.borderVariance_;
    kernel_ = std::move(copy.kernel_);
    elements_ = std::move(copy.elements_);
    copies_ = std::move(copy.copies_);
  }
  return *this;
}

double ZqKrigeResultImpl::GetDistance(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetDistance(%d).  Invalid element", element);
    return kLargest;
  }
  return elements_[element].distance;
}

double ZqKrigeResultImpl::GetWeight(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetWeight(%d).  Invalid element", element);
    return kLargest;
  }
  return elements_[element].weight;
}

double ZqKrigeResultImpl::GetResponse(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetResponse(%d).  Invalid element", element);
    return kLargest;
  }
  return elements_[element].response;
}

bool ZqKrigeResultImpl::GetResponseIsUnmeasured(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetResponseIsUnmeasured(%d).  Invalid element", element);
    return true;
  }
  return elements_[element].isUnmeasured;
}

bool ZqKrigeResultImpl::GetHasID(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetHasID(%d).  Invalid element", element);
    return true;
  }
  return elements_[element].hasID;
}

unsigned int ZqKrigeResultImpl::GetID(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetID(%d).  Invalid element", element);
    return kBadID;
  }
  return elements_[element].id;
}

ZqKrigeKernel ZqKrigeResultImpl::GetKernel() const {
  if (!kernel_) {
    if (!Valid()) {
      Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetKernel().  Result is not valid");
    } else {
      Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetKernel().  No kernel");
    }
    return ZqKrigeKernel(0);
  }
  return ZqKrigeKernel(*kernel_);
}

unsigned int ZqKrigeResultImpl::GetNumCopies(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetNumCopies(%d).  Invalid element", element);
    return 0;
  }
  const auto list = copies_.find(element);
  return list == copies_.end() ? 1u : static_cast<unsigned int>(list->second.size());
}

bool ZqKrigeResultImpl::GetHasMultipleCopies(unsigned int element) const {
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::GetHasMultipleCopies(%d).  Invalid element", element);
    return false;
  }
  return GetNumCopies(element) > 1;
}

template <class Field>
bool ZqKrigeResultImpl::FindCopyField(const char* routine, unsigned int element, unsigned int copy,
                                      Field Copy::*copyField, Field Element::*elementField, Field& out) const {
  const auto list = copies_.find(element);
  if (list != copies_.end()) {
    if (copy > list->second.size()) {
      Corvane::ZqThrow.Error("ZqKrigeResultImpl::%s(%d,%d), invalid copy key", routine, element, copy);
      return false;
    }
    // An index equal to the length passes the test above; it has no data
    // and gets the default without a message.
    if (copy == list->second.size()) return false;
    out = list->second[copy].*copyField;
    return true;
  }
  if (element >= elements_.size()) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::%s(%d,%d), invalid element", routine, element, copy);
    return false;
  }
  if (copy != 0) {
    Corvane::ZqThrow.Error("ZqKrigeResultImpl::%s(%d,%d), invalid copy", routine, element, copy);
    return false;
  }
  out = elements_[element].*elementField;
  return true;
}

double ZqKrigeResultImpl::GetResponse(unsigned int element, unsigned int copy) const {
  double out = kLargest;
  return FindCopyField("GetResponse", element, copy, &Copy::response, &Element::response, out) ? out : kLargest;
}

bool ZqKrigeResultImpl::GetResponseIsUnmeasured(unsigned int element, unsigned int copy) const {
  bool out = true;
  return FindCopyField("GetResponseIsUnmeasured", element, copy, &Copy::isUnmeasured, &Element::isUnmeasured, out)
             ? out
             : true;
}

bool ZqKrigeResultImpl::GetHasID(unsigned int element, unsigned int copy) const {
  bool out = false;
  return FindCopyField("GetHasID", element, copy, &Copy::hasID, &Element::hasID, out) ? out : false;
}

unsigned int ZqKrigeResultImpl::GetID(unsigned int element, unsigned int copy) const {
  unsigned int out = kBadID;
  return FindCopyField("GetID", element, copy, &Copy::id, &Element::id, out) ? out : kBadID;
}

unsigned int ZqKrigeResultImpl::AddElement(double distance, double weight, double response, bool isUnmeasured,
                                           unsigned int id, bool hasID) {
  elements_.push_back({distance, weight, response, isUnmeasured, id, hasID});
  return static_cast<unsigned int>(elements_.size() - 1);
}

bool ZqKrigeResultImpl::PushCopyData(unsigned int element, double response, bool isUnmeasured, unsigned int id,
                                     bool hasID) {
  copies_[element].push_back({response, isUnmeasured, id, hasID});
  return element < elements_.size();
}

void ZqKrigeResultImpl::Clear() {
  baseline_ = 0.0;
  kernel_.reset();
  elements_.clear();
  copies_.clear();
}

double ZqCalculateResponse(const ZqKrigeResultBase& result, double errorValue) {
  if (!result.Valid()) return errorValue;
  double response = result.GetBaselineResponse();
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) response += result.GetWeight(i) * result.GetResponse(i);
  return response;
}

double ZqCalculateVariance(const ZqKrigeResultBase& result, double errorValue) {
  if (!result.Valid()) return errorValue;
  const ZqKrigeKernel kernel = result.GetKernel();
  const double sill = kernel.GetSill();
  double variance = sill;
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) {
    variance -= result.GetWeight(i) * (sill - kernel.GetValue(result.GetDistance(i)));
  }
  return variance < 0.0 ? errorValue : variance;
}

double ZqCalculateFullVariance(const ZqKrigeResultBase& result, double errorValue) {
  const double variance = ZqCalculateVariance(result, -1.0);
  if (variance < 0.0) return errorValue;
  const double full = variance + result.GetBorderVariance();
  return full < 0.0 || std::isnan(full) ? errorValue : full;
}

double ZqSumWeights(const ZqKrigeResultBase& result, double errorValue) {
  if (!result.Valid()) return errorValue;
  double sum = 0.0;
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) sum += result.GetWeight(i);
  return sum;
}

double ZqSumAbsWeights(const ZqKrigeResultBase& result, double errorValue) {
  if (!result.Valid()) return errorValue;
  double sum = 0.0;
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) sum += std::fabs(result.GetWeight(i));
  return sum;
}

double ZqSumSquaredWeights(const ZqKrigeResultBase& result, double errorValue) {
  if (!result.Valid()) return errorValue;
  double squares = 0.0, absolutes = 0.0;
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) {
    const double w = result.GetWeight(i);
    squares += w * w;
    absolutes += std::fabs(w);
  }
  return squares / absolutes;
}

namespace {

// The |w|-weighted spread of the responses of the listed elements, whose
// total |w| is not zero.
double AbsWeightedSpread(const ZqKrigeResultBase& result, const std::vector<unsigned int>& elements, bool addNugget) {
  double total = 0.0, largest = 0.0, weighted = 0.0;
  for (unsigned int e : elements) {
    const double w = std::fabs(result.GetWeight(e));
    total += w;
    largest = std::max(largest, w);
    weighted += w * result.GetResponse(e);
  }
  const double mean = weighted / total;
  double spread = 0.0;
  for (unsigned int e : elements) {
    const double deviation = result.GetResponse(e) - mean;
    spread += std::fabs(result.GetWeight(e)) * deviation * deviation;
  }
  if (!addNugget) return spread / total;
  return result.GetKernel().GetNugget() * largest / total + spread / total;
}

}  // namespace

double ZqAbsWeightedVariance(const ZqKrigeResultBase& result, double fraction, bool addNugget, double errorValue) {
  if (!result.Valid()) return errorValue;
  const unsigned int count = result.GetNumElements();
  std::vector<unsigned int> order(count);
  std::iota(order.begin(), order.end(), 0u);
  double total = 0.0;
  for (unsigned int e : order) total += std::fabs(result.GetWeight(e));

  if (fraction == 1.0) {
    // Zero total weight gives the sill here but the error value below; the
    // asymmetry is part of the statistic's definition.
    if (total == 0.0) return result.GetKernel().GetSill();
    return AbsWeightedSpread(result, order, addNugget);
  }
  // A NaN weight would break the ordering of the sort below.
  if (total == 0.0 || std::isnan(total)) return errorValue;
  std::sort(order.begin(), order.end(), [&result](unsigned int a, unsigned int b) {
    return std::fabs(result.GetWeight(a)) > std::fabs(result.GetWeight(b));
  });
  std::size_t used = 0;
  double share = 0.0;
  while (used < count && share / total <= fraction) share += std::fabs(result.GetWeight(order[used++]));
  // Never rest on fewer than five elements unless fewer exist.
  used = std::max<std::size_t>(used, std::min<std::size_t>(5, count));
  order.resize(used);
  return AbsWeightedSpread(result, order, addNugget);
}

}  // namespace Varimo
