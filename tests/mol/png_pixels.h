// Reading back the PNG files that drawing tests write.
#pragma once

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

// A PNG file read back through Cairo; pixels as 0xRRGGBB.
class PngPixels {
 public:
  explicit PngPixels(const std::string& path) : surface_(cairo_image_surface_create_from_png(path.c_str())) {}
  ~PngPixels() { cairo_surface_destroy(surface_); }
  PngPixels(const PngPixels&) = delete;
  PngPixels& operator=(const PngPixels&) = delete;

  bool Read() const { return cairo_surface_status(surface_) == CAIRO_STATUS_SUCCESS; }
  int Width() const { return cairo_image_surface_get_width(surface_); }
  int Height() const { return cairo_image_surface_get_height(surface_); }
  std::uint32_t At(int x, int y) const {
    const unsigned char* row = cairo_image_surface_get_data(surface_) + y * cairo_image_surface_get_stride(surface_);
    std::uint32_t pixel;
    std::memcpy(&pixel, row + 4 * x, sizeof pixel);
    return pixel & 0xFFFFFF;
  }
  bool IsWhite(int x, int y) const { return At(x, y) == 0xFFFFFF; }
  // The first and last columns with anything but white in rows [top, bottom).
  std::pair<int, int> InkedColumns(int top, int bottom) const {
    int first = Width(), last = -1;
    for (int y = top; y < bottom; ++y) {
      for (int x = 0; x < Width(); ++x) {
        if (IsWhite(x, y)) continue;
        first = std::min(first, x);
        last = std::max(last, x);
      }
    }
    return {first, last};
  }

 private:
  cairo_surface_t* surface_;
};
