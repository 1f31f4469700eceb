// An RGBA colour with 8-bit channels, and the named colours drawing code uses.
#pragma once

#include <cstdint>

namespace Corvane {

class ZqColor {
 public:
  constexpr ZqColor() = default;  // opaque black
  constexpr ZqColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha = 255)
      : red_(red), green_(green), blue_(blue), alpha_(alpha) {}

  constexpr std::uint8_t GetR() const { return red_; }
  constexpr std::uint8_t GetG() const { return green_; }
  constexpr std::uint8_t GetB() const { return blue_; }
  constexpr std::uint8_t GetA() const { return alpha_; }
  constexpr void SetA(std::uint8_t alpha) { alpha_ = alpha; }
  // Channels as fractions in [0, 1], as vector drawing libraries take them.
  constexpr double GetRFraction() const { return red_ / 255.0; }
  constexpr double GetGFraction() const { return green_ / 255.0; }
  constexpr double GetBFraction() const { return blue_ / 255.0; }
  constexpr double GetAFraction() const { return alpha_ / 255.0; }

  constexpr bool operator==(const ZqColor&) const = default;

 private:
  std::uint8_t red_ = 0, green_ = 0, blue_ = 0, alpha_ = 255;
};

inline constexpr ZqColor ZqBlack{0, 0, 0};
inline constexpr ZqColor ZqWhite{255, 255, 255};
inline constexpr ZqColor ZqRed{255, 0, 0};
inline constexpr ZqColor ZqGreen{0, 255, 0};
inline constexpr ZqColor ZqBlue{0, 0, 255};
inline constexpr ZqColor ZqMagenta{255, 0, 255};
inline constexpr ZqColor ZqCyan{0, 255, 255};
inline constexpr ZqColor ZqYellow{255, 255, 0};
inline constexpr ZqColor ZqGrey{128, 128, 128};
inline constexpr ZqColor ZqLightGrey{211, 211, 211};
inline constexpr ZqColor ZqDarkGrey{105, 105, 105};
inline constexpr ZqColor ZqDarkBlue{0, 0, 139};
inline constexpr ZqColor ZqDarkGreen{0, 100, 0};
inline constexpr ZqColor ZqDarkRed{139, 0, 0};
inline constexpr ZqColor ZqOrange{255, 165, 0};

}  // namespace Corvane
