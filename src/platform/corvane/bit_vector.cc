#include "varimo/platform/corvane/bit_vector.h"

#include <algorithm>

#include "varimo/platform/corvane/error_handler.h"

namespace Corvane {

namespace {
void ReportTooLarge() { ZqThrow.Error("Max size for an ZqBitVector is INT_MAX"); }
}  // namespace

ZqBitVector::ZqBitVector(std::size_t size) { Resize(size); }

bool ZqBitVector::Resize(std::size_t size) {
  if (size > kMaxSize) {
    ReportTooLarge();
    return false;
  }
  bits_.resize(size, false);
  return true;
}

bool ZqBitVector::GrowToHold(std::size_t index) {
  if (index < bits_.size()) return true;
  if (index >= kMaxSize) {
    ReportTooLarge();
    return false;
  }
  bits_.resize(index + 1, false);
  return true;
}

bool ZqBitVector::SetBitOn(std::size_t index) {
  if (!GrowToHold(index)) return false;
  bits_[index] = true;
  return true;
}

bool ZqBitVector::SetBitOff(std::size_t index) {
  // Turning off a bit past the end changes nothing that a test could see,
  // but the array still grows so that its size follows the highest bit set.
  if (!GrowToHold(index)) return false;
  bits_[index] = false;
  return true;
}

void ZqBitVector::ClearBits() { std::fill(bits_.begin(), bits_.end(), false); }

std::size_t ZqBitVector::CountBitsOn() const {
  return static_cast<std::size_t>(std::count(bits_.begin(), bits_.end(), true));
}

}  // namespace Corvane
