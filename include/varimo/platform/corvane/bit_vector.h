// A growable array of bits. Setting a bit past the end grows the array;
// testing a bit past the end reads off. The size is capped at INT_MAX bits:
// a request beyond it reports "Max size for an ZqBitVector is INT_MAX"
// through ZqThrow's Error level and leaves the array as it was.
#pragma once

#include <climits>
#include <cstddef>
#include <vector>

namespace Corvane {

class ZqBitVector {
 public:
  static constexpr std::size_t kMaxSize = INT_MAX;

  ZqBitVector() = default;
  // `size` bits, all off; a size above kMaxSize reports and gives an empty array.
  explicit ZqBitVector(std::size_t size);

  std::size_t GetSize() const { return bits_.size(); }
  // Grows or shrinks to `size` bits; new bits are off. False (with the
  // report) when `size` exceeds kMaxSize.
  bool Resize(std::size_t size);

  // Turns bit `index` on or off, growing the array as needed. False (with
  // the report) when `index` is not below kMaxSize.
  bool SetBitOn(std::size_t index);
  bool SetBitOff(std::size_t index);
  // False for any bit past the end.
  bool IsBitOn(std::size_t index) const { return index < bits_.size() && bits_[index]; }
  bool operator[](std::size_t index) const { return IsBitOn(index); }

  // Turns every bit off, keeping the size.
  void ClearBits();
  std::size_t CountBitsOn() const;

  bool operator==(const ZqBitVector& other) const = default;

 private:
  bool GrowToHold(std::size_t index);
  std::vector<bool> bits_;
};

}  // namespace Corvane
