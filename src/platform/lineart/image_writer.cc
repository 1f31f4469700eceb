#include "varimo/platform/lineart/recorded_image.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <numbers>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cairo_support.h"
#include "molecule_painter.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Lineart {
namespace {

enum class ImageFormat { Png, Svg, Pdf, Unknown };

constexpr int kStippleBits = 16;
constexpr std::uint16_t kSolidStipple = 0xFFFF;
constexpr double kFullTurn = 360.0;

ImageFormat FormatOf(const std::string& filename) {
  std::string extension = std::filesystem::path(filename).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (extension == ".png") return ImageFormat::Png;
  if (extension == ".svg") return ImageFormat::Svg;
  if (extension == ".pdf") return ImageFormat::Pdf;
  return ImageFormat::Unknown;
}

double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

// Cairo's dash pattern starts with a drawn run; a stipple may start with a
// gap. Counting the stipple as a ring, the runs are listed from a bit that
// starts a drawn run, and the offset puts bit 0 back at the line's start.
void SetDash(cairo_t* cairo, std::uint16_t stipple, double lineWidth) {
  if (stipple == kSolidStipple) {
    cairo_set_dash(cairo, nullptr, 0, 0.0);
    return;
  }
  const auto bit = [stipple](int i) { return (stipple >> (i % kStippleBits)) & 1; };
  int start = 0;
  while (bit(start) == 0 || bit(start + kStippleBits - 1) == 1) ++start;
  std::vector<double> dashes;
  int run = 1;
  for (int i = start + 1; i < start + kStippleBits; ++i) {
    if (bit(i) == bit(i - 1)) {
      ++run;
    } else {
      dashes.push_back(run * lineWidth);
      run = 1;
    }
  }
  dashes.push_back(run * lineWidth);
  cairo_set_dash(cairo, dashes.data(), static_cast<int>(dashes.size()),
                 ((kStippleBits - start) % kStippleBits) * lineWidth);
}

void Stroke(cairo_t* cairo, const ZqPen& pen) {
  const double width = pen.GetLineWidth();
  // A pen of no width or with no bit set draws no line; Cairo would refuse
  // a dash pattern of zero lengths and spoil the whole image.
  if (!(width > 0.0) || !std::isfinite(width) || pen.GetLineStipple() == 0) {
    cairo_new_path(cairo);
    return;
  }
  ZqSetCairoColor(cairo, pen.GetBackground());
  cairo_set_line_width(cairo, width);
  SetDash(cairo, pen.GetLineStipple(), width);
  cairo_stroke(cairo);
}

void FillAndStroke(cairo_t* cairo, const ZqPen& pen) {
  if (pen.GetFill()) {
    ZqSetCairoColor(cairo, pen.GetForeground());
    cairo_fill_preserve(cairo);
  }
  Stroke(cairo, pen);
}

// How far the arc turns, in [0, 360] degrees: an end before the start goes
// on through 0, and a whole turn or more is the full circle.
double Sweep(const ZqDrawCall& call) {
  const double sweep = call.endAngle - call.startAngle;
  if (std::fabs(sweep) >= kFullTurn) return kFullTurn;
  return sweep < 0.0 ? sweep + kFullTurn : sweep;
}

// Counter-clockwise on the screen is, with Cairo's y growing downward, the
// direction of decreasing angles.
void AddArc(cairo_t* cairo, const ZqDrawCall& call, double sweep) {
  cairo_arc_negative(cairo, call.a.x, call.a.y, call.radius, Radians(-call.startAngle),
                     Radians(-(call.startAngle + sweep)));
}

void DrawText(cairo_t* cairo, const ZqDrawCall& call) {
  const std::string text = ZqCairoText(call.text);
  if (text.empty() || call.font.GetSize() == 0) return;
  cairo_save(cairo);
  ZqSelectCairoFont(cairo, call.font);
  ZqSetCairoColor(cairo, call.font.GetColor());
  cairo_translate(cairo, call.a.x, call.a.y);
  cairo_rotate(cairo, Radians(-call.font.GetRotationAngle()));
  cairo_text_extents_t extents;
  cairo_text_extents(cairo, text.c_str(), &extents);
  double shift = 0.0;
  if (call.font.GetAlignment() == ZqFont::kCentred) shift = -extents.x_advance / 2.0;
  if (call.font.GetAlignment() == ZqFont::kRight) shift = -extents.x_advance;
  cairo_move_to(cairo, shift, 0.0);
  cairo_show_text(cairo, text.c_str());
  cairo_restore(cairo);
}

// False when the painter could not draw the molecule (it keeps RDKit's
// exceptions and its own state to itself): one molecule must not cost the
// whole file.
bool DrawMolecule(cairo_t* cairo, const ZqDrawCall& call) {
  return !call.molecule || ZqPaintMolecule(cairo, *call.molecule, call.a);
}

// Cairo turns coordinates into fixed point without looking; a NaN from a
// failed computation upstream is left out rather than drawn somewhere.
bool HasFiniteGeometry(const ZqDrawCall& call) {
  for (double value : {call.a.x, call.a.y, call.b.x, call.b.y, call.radius, call.startAngle, call.endAngle,
                       call.font.GetRotationAngle()}) {
    if (!std::isfinite(value)) return false;
  }
  return true;
}

// The number of molecules that could not be drawn.
std::size_t Replay(cairo_t* cairo, const ZqImage& image) {
  std::size_t unpainted = 0;
  for (const ZqDrawCall& call : image.GetCalls()) {
    if (!HasFiniteGeometry(call)) continue;
    cairo_new_path(cairo);
    switch (call.kind) {
      case ZqDrawCall::Kind::Line:
        cairo_move_to(cairo, call.a.x, call.a.y);
        cairo_line_to(cairo, call.b.x, call.b.y);
        Stroke(cairo, call.pen);
        break;
      case ZqDrawCall::Kind::Circle:
        cairo_arc(cairo, call.a.x, call.a.y, call.radius, 0.0, 2.0 * std::numbers::pi);
        cairo_close_path(cairo);
        FillAndStroke(cairo, call.pen);
        break;
      case ZqDrawCall::Kind::Arc:
        AddArc(cairo, call, Sweep(call));
        Stroke(cairo, call.pen);
        break;
      case ZqDrawCall::Kind::Pie: {
        // A whole pie is a disc: no edge runs in from the centre.
        const double sweep = Sweep(call);
        if (sweep < kFullTurn) cairo_move_to(cairo, call.a.x, call.a.y);
        AddArc(cairo, call, sweep);
        cairo_close_path(cairo);
        FillAndStroke(cairo, call.pen);
        break;
      }
      case ZqDrawCall::Kind::Rectangle:
        cairo_rectangle(cairo, std::min(call.a.x, call.b.x), std::min(call.a.y, call.b.y),
                        std::fabs(call.b.x - call.a.x), std::fabs(call.b.y - call.a.y));
        FillAndStroke(cairo, call.pen);
        break;
      case ZqDrawCall::Kind::Text:
        DrawText(cairo, call);
        break;
      case ZqDrawCall::Kind::Molecule:
        if (!DrawMolecule(cairo, call)) ++unpainted;
        break;
    }
  }
  return unpainted;
}

// Where the bytes of an image go. Cairo's own file output misses failed
// writes (a PDF on a full disk comes back as written), so the bytes come
// through here, and the first failure is kept with the system's reason.
class FileSink {
 public:
  explicit FileSink(const std::string& filename)
      : file_(std::fopen(filename.c_str(), "wb")), error_(file_ != nullptr ? 0 : errno) {}
  ~FileSink() {
    if (file_ != nullptr) std::fclose(file_);
  }
  FileSink(const FileSink&) = delete;
  FileSink& operator=(const FileSink&) = delete;

  // Cairo's write function; the closure is the sink.
  static cairo_status_t Write(void* closure, const unsigned char* data, unsigned int length) {
    FileSink& sink = *static_cast<FileSink*>(closure);
    if (sink.file_ != nullptr && !sink.Failed() && std::fwrite(data, 1, length, sink.file_) == length) {
      return CAIRO_STATUS_SUCCESS;
    }
    sink.Fail();
    return CAIRO_STATUS_WRITE_ERROR;
  }

  // Flushes and closes the file; false when any byte did not reach it.
  bool Close() {
    if (file_ != nullptr && std::fclose(std::exchange(file_, nullptr)) != 0) Fail();
    return !Failed();
  }
  bool Failed() const { return error_ != 0; }
  std::string Reason() const { return std::error_code(error_, std::generic_category()).message(); }

 private:
  void Fail() {
    if (error_ == 0) error_ = errno != 0 ? errno : EIO;
  }

  std::FILE* file_;
  int error_;
};

ZqCairoSurface CreateSurface(ImageFormat format, FileSink& sink, double width, double height) {
  if (format == ImageFormat::Svg) {
    return ZqCairoSurface(cairo_svg_surface_create_for_stream(FileSink::Write, &sink, width, height));
  }
  if (format == ImageFormat::Pdf) {
    return ZqCairoSurface(cairo_pdf_surface_create_for_stream(FileSink::Write, &sink, width, height));
  }
  // Sizes past what an int holds are cut to one still far beyond Cairo's
  // limit, so that Cairo refuses them with its own reason.
  constexpr double kBeyondCairosLimit = 1 << 30;
  const int pixelsWide = static_cast<int>(std::min(std::ceil(width), kBeyondCairosLimit));
  const int pixelsHigh = static_cast<int>(std::min(std::ceil(height), kBeyondCairosLimit));
  return ZqCairoSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixelsWide, pixelsHigh));
}

bool CannotWrite(const std::string& filename, const std::string& reason) {
  Corvane::ZqThrow.Warning("ZqWriteImage, cannot write %s: %s", filename.c_str(), reason.c_str());
  return false;
}

// A file cut short would pass for a picture: it goes, and the warning says why.
bool Abandon(const std::string& filename, FileSink& sink, cairo_status_t status) {
  sink.Close();
  std::remove(filename.c_str());
  return CannotWrite(filename, sink.Failed() ? sink.Reason() : cairo_status_to_string(status));
}

}  // namespace

bool ZqWriteImage(const std::string& filename, const ZqImage& image) {
  const ImageFormat format = FormatOf(filename);
  if (format == ImageFormat::Unknown) {
    Corvane::ZqThrow.Warning("ZqWriteImage, unknown image format of %s (use .png, .svg or .pdf)", filename.c_str());
    return false;
  }
  const double width = image.GetWidth();
  const double height = image.GetHeight();
  if (!(width >= 1.0 && height >= 1.0 && std::isfinite(width) && std::isfinite(height))) {
    Corvane::ZqThrow.Warning("ZqWriteImage, cannot write %s: the image is %g x %g pixels, not at least 1 x 1",
                             filename.c_str(), width, height);
    return false;
  }

  FileSink sink(filename);
  if (sink.Failed()) return CannotWrite(filename, sink.Reason());
  // Declared after the sink: vector surfaces write to it until they go.
  const ZqCairoSurface surface = CreateSurface(format, sink, width, height);
  if (const cairo_status_t status = cairo_surface_status(surface.get()); status != CAIRO_STATUS_SUCCESS) {
    return Abandon(filename, sink, status);
  }
  std::size_t unpainted = 0;
  {
    // The context goes before the surface is finished, as Cairo asks.
    const ZqCairoContext cairo(cairo_create(surface.get()));
    ZqSetCairoColor(cairo.get(), Corvane::ZqWhite);
    cairo_paint(cairo.get());
    unpainted = Replay(cairo.get(), image);
    if (const cairo_status_t status = cairo_status(cairo.get()); status != CAIRO_STATUS_SUCCESS) {
      return Abandon(filename, sink, status);
    }
  }
  cairo_status_t status = CAIRO_STATUS_SUCCESS;
  if (format == ImageFormat::Png) {
    status = cairo_surface_write_to_png_stream(surface.get(), FileSink::Write, &sink);
  } else {
    cairo_surface_finish(surface.get());
    status = cairo_surface_status(surface.get());
  }
  if (status != CAIRO_STATUS_SUCCESS || !sink.Close()) return Abandon(filename, sink, status);
  if (unpainted > 0) {
    Corvane::ZqThrow.Warning("ZqWriteImage, %zu molecule(s) could not be drawn in %s", unpainted, filename.c_str());
  }
  return true;
}

}  // namespace Lineart
