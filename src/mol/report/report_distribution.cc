// The predicted distribution against the training responses: an axis from
// the smallest to the largest training response with the class bounds as
// ticks, the classes as coloured bands with their probabilities, a
// histogram of the training responses and the predicted normal density;
// and the pie of the classes' probabilities.
#include <algorithm>
#include <cmath>
#include <vector>

#include "report_panels.h"
#include "varimo/mol/krige_report.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/lineart/text.h"

namespace Varimo {
namespace {

using Lineart::Zq2DPoint;
using Lineart::ZqFont;
using Lineart::ZqImageBase;
using Lineart::ZqImageFrame;
using Lineart::ZqPen;

constexpr double kTwoPi = 6.283185307179586;

ZqPen HistogramPen() { return ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 1.0, 0xF0F0); }
ZqPen PredictionPen() { return ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 2.0, 0xFFFF); }
ZqPen FillPen(Corvane::ZqColor color) { return ZqPen(color, color, 1, 1.0, 0xFFFF); }

// Maps a response in [lo, hi] linearly onto [left, right]; with all
// training responses equal, everything sits in the middle.
struct Axis {
  double lo;
  double hi;
  double left;
  double right;
  double operator()(double v) const {
    if (!(hi > lo)) return 0.5 * (left + right);
    return left + (v - lo) / (hi - lo) * (right - left);
  }
};

std::string HeaderText(const ZqMolKrigeResult& result, const ZqKrigeReportOptions& options) {
  const double response = result.GetResponse();
  std::string text = options.GetResponseName() + " " + ZqFormatResponse(result, response, options);
  if (options.GetShowConfidence()) {
    const double half = 1.96 * std::sqrt(result.GetVariance());
    text += " [" + ZqFormatResponse(result, response - half, options) + ", " +
            ZqFormatResponse(result, response + half, options) + "]";
  }
  return text;
}

// The tick values: the training range's ends and the class bounds inside.
std::vector<double> Ticks(const ZqKrigeReportOptions& options, double lo, double hi) {
  std::vector<double> ticks{lo, hi};
  const unsigned long classes = options.GetNumClassifications();
  for (unsigned long i = 0; i + 1 < classes; ++i) {
    const double bound = options.GetClassificationUpperBound(i);
    if (bound > lo && bound < hi) ticks.push_back(bound);
  }
  std::sort(ticks.begin(), ticks.end());
  return ticks;
}

// The size of the tick labels: as large as the strip allows, smaller where
// neighbouring labels would overlap, turned diagonal when even 8 pixels
// crowd them. Changes `font` and the axis height `axisHeight`.
void FitTickFont(ZqFont& font, double& axisHeight, const std::vector<std::string>& labels,
                 const std::vector<double>& positions, const std::string& measured, double W, double H) {
  const std::size_t count = labels.size();
  for (std::size_t k = 0; k < count; ++k) {
    font.SetSize(Lineart::ZqReduceFontSizeToFit(measured, font, 8, std::min(W / (count + 1.0), 0.2 * W)));
  }
  for (std::size_t k = 0; k + 1 < count && count > 1; ++k) {
    const double dx = positions[k + 1] - positions[k];
    const double sum = Lineart::ZqEstimateTextWidth(labels[k], font) + Lineart::ZqEstimateTextWidth(labels[k + 1], font);
    const double need = 0.5 * sum * 1.1;
    if (dx < need) font.SetSize(std::max(8u, ZqFontSize(font.GetSize() * dx / need)));
  }
  if (font.GetSize() != 8) return;
  axisHeight = 0.75 * H;
  font.SetSize(100);
  font.SetRotationAngle(315.0);
  const double room = (H - axisHeight) * std::sqrt(2.0);
  for (std::size_t k = 0; k + 1 < count; ++k) {
    const double dx = positions[k + 1] - positions[k];
    font.SetSize(std::min(font.GetSize(), ZqFontSize(dx)));
    font.SetSize(Lineart::ZqReduceFontSizeToFit(labels[k], font, 8, room));
    font.SetSize(Lineart::ZqReduceFontSizeToFit(labels[k + 1], font, 8, room));
  }
}

// The classes inside the training range as bands over the plot, each
// labelled with the probability of the prediction falling in it there.
void DrawClasses(ZqImageFrame& plot, const Axis& x, const ZqMolKrigeResult& result,
                 const ZqKrigeReportOptions& options, double axisHeight) {
  struct Band {
    double lower;
    double upper;
    int candidate;
  };
  std::vector<Band> bands;
  int size = 0;
  for (unsigned long i = 0; i < options.GetNumClassifications(); ++i) {
    const double lower = std::max(options.GetClassificationLowerBound(i), x.lo);
    const double upper = std::min(options.GetClassificationUpperBound(i), x.hi);
    if (!(lower < upper)) continue;
    const double left = x(lower);
    const double right = x(upper);
    plot.DrawRectangle({left, 0.0}, {right, plot.GetHeight()}, FillPen(options.GetClassificationColor(i)));
    const int candidate = static_cast<int>(std::min((right - left) / 3.0, axisHeight));
    bands.push_back({lower, upper, candidate});
    if (candidate > 7 && (size == 0 || candidate < size)) size = candidate;
  }
  if (size == 0) return;
  for (const Band& band : bands) {
    const std::string text =
        Corvane::ZqFormatString("%2.0f%%", 100.0 * ZqProbabilityBetween(result, band.lower, band.upper));
    const double left = x(band.lower);
    const double width = x(band.upper) - left;
    if (band.candidate < 8) {
      plot.DrawText({left + 2.0 * width / 3.0, 8.0}, text, ZqFont(2, 2, 8, 1, Corvane::ZqBlack, 90.0), width);
    } else {
      plot.DrawText({left + 0.5 * width, static_cast<double>(size)}, text,
                    ZqFont(2, 2, static_cast<unsigned int>(size), 1, Corvane::ZqBlack), width);
    }
  }
}

// Ten bins over the training range, scaled to unit Euclidean norm; false
// when there is nothing to scale.
bool DrawHistogram(ZqImageFrame& plot, const Axis& x, const ZqMolKrigeResult& result) {
  constexpr int kBins = 10;
  const double width = (x.hi - x.lo) / kBins;
  std::vector<double> counts(kBins, 0.0);
  for (const double v : result.GetTrainingResponses(true)) {
    int bin = kBins - 1;
    for (int k = 0; k < kBins; ++k) {
      if (x.lo + (k + 1) * width >= v) {
        bin = k;
        break;
      }
    }
    counts[bin] += 1.0;
  }
  double norm = 0.0;
  for (const double c : counts) norm += c * c;
  norm = std::sqrt(norm);
  if (norm < 1e-8) return false;
  const double h = plot.GetHeight();
  for (int k = 0; k < kBins; ++k) {
    const double value = counts[k] / norm;
    if (value < 1e-8) continue;
    const double left = x(x.lo + k * width);
    const double right = x(x.lo + (k + 1) * width);
    const double top = h - value * h;
    plot.DrawLine({left, h}, {left, top}, HistogramPen());
    plot.DrawLine({right, h}, {right, top}, HistogramPen());
    plot.DrawLine({left, top}, {right, top}, HistogramPen());
  }
  return true;
}

// The predicted normal density, flattened when the prediction is less
// certain than a quarter of the sill so that a vague prediction looks
// vague; a line at the prediction when there is no variance.
bool DrawPrediction(ZqImageFrame& plot, const Axis& x, const ZqMolKrigeResult& result) {
  const double mu = result.GetResponse();
  const double variance = result.GetVariance();
  const double h = plot.GetHeight();
  if (variance < 1e-8) {
    plot.DrawLine({x(mu), 0.0}, {x(mu), h}, PredictionPen());
    return true;
  }
  if (x.hi <= x.lo) return false;
  const double peak = std::sqrt(1.0 / (kTwoPi * variance));
  const double reference = std::sqrt(1.0 / (kTwoPi * 0.25 * result.GetKernel().GetSill()));
  const double scale = reference > peak ? peak / reference : 1.0;
  const double step = (x.hi - x.lo) * 0.01;
  auto point = [&](double v) {
    return Zq2DPoint(x(v), h - scale * std::exp(-(0.5 / variance) * (v - mu) * (v - mu)) * h);
  };
  Zq2DPoint previous = point(x.lo);
  for (int k = 1; k <= 100; ++k) {
    const Zq2DPoint next = point(x.lo + k * step);
    plot.DrawLine(previous, next, PredictionPen());
    previous = next;
  }
  return true;
}

}  // namespace

bool ZqKrigeRenderDistribution(ZqImageBase& image, ZqMolKrigeResult& result, const ZqKrigeReportOptions& options) {
  // An invalid result has no prediction nor training responses to show.
  if (!result.Valid()) return false;
  const double w = image.GetWidth();
  const double h = image.GetHeight();
  ZqImageFrame header(image, w, 0.1 * h, {0.0, 0.0});
  ZqImageFrame legendStrip(image, w, 0.1 * h, {0.0, 0.1 * h});
  ZqImageFrame q(image, w, h - 0.2 * h, {0.0, 0.2 * h});
  const double W = q.GetWidth();
  const double H = q.GetHeight();

  {
    ZqAutoBufferImage buffer(header, 0.1);
    if (!ZqRenderText(buffer.Get(), HeaderText(result, options),
                      ZqFont(3, 2, ZqFontSize(header.GetHeight()), 1, Corvane::ZqBlack), true)) {
      return false;
    }
  }

  double axisHeight = 0.85 * H;
  const double xl = 0.1 * W;
  const Axis x{ZqGetMinTrainingResponse(result), ZqGetMaxTrainingResponse(result), xl, W - xl};

  const std::vector<double> ticks = Ticks(options, x.lo, x.hi);
  std::vector<std::string> labels;
  std::vector<double> positions;
  for (const double tick : ticks) {
    labels.push_back(ZqFormatResponse(result, tick, options));
    positions.push_back(x(tick));
  }
  ZqFont tickFont(3, 0, ZqFontSize((H - axisHeight) * 0.5), 1, Corvane::ZqBlack);
  FitTickFont(tickFont, axisHeight, labels, positions, ZqFormatResponse(result, result.GetResponse(), options), W,
              H);

  ZqImageFrame strip(q, W, H - axisHeight, {0.0, axisHeight});
  const ZqPen tickPen(Corvane::ZqBlack, Corvane::ZqBlack, 0, 2.0, 0xFFFF);
  for (std::size_t k = 0; k < ticks.size(); ++k) {
    const double c = std::min(positions[k], W - positions[k]);
    ZqImageFrame cell(strip, c, strip.GetHeight(), {positions[k] - 0.5 * c, 0.0});
    if (!ZqRenderText(cell, labels[k], tickFont, false)) return false;
    cell.DrawLine({0.5 * c, 0.0}, {0.5 * c, 0.25 * cell.GetHeight()}, tickPen);
  }
  strip.DrawLine({x.left, 1.0}, {x.right, 1.0}, tickPen);

  ZqFont probability(3, 0, 200, 1, Corvane::ZqBlack, 90.0);
  probability.SetSize(Lineart::ZqReduceFontSizeToFit("Probability", probability, 0, 0.75 * axisHeight));
  if (probability.GetSize() > 5 && probability.GetSize() * 5.0 < W) {
    q.DrawText({0.8 * probability.GetSize(), 0.5 * axisHeight}, "Probability", probability, 0.75 * axisHeight);
  }

  ZqImageFrame plot(q, x.right - x.left, axisHeight, {x.left, 0.0});
  const Axis bx{x.lo, x.hi, 0.0, plot.GetWidth()};
  DrawClasses(plot, bx, result, options, axisHeight);
  if (!DrawHistogram(plot, bx, result)) return false;
  if (!DrawPrediction(plot, bx, result)) return false;

  ZqAutoBufferImage legend(legendStrip, 0.1);
  return ZqRenderClassificationLegend(legend.Get());
}

bool ZqRenderClassificationLegend(ZqImageBase& image) {
  ZqImageHorizontalSplit halves(image, 0.5);
  ZqAutoBufferImage leftBuffer(halves.left, 0.1);
  ZqAutoBufferImage rightBuffer(halves.right, 0.1);
  ZqImageHorizontalSplit training(leftBuffer.Get(), 0.25);
  ZqImageHorizontalSplit prediction(rightBuffer.Get(), 0.25);
  ZqFont font(3, 0, ZqFontSize(2.0 * image.GetHeight() / 3.0), 2, Corvane::ZqBlack);
  font.SetSize(Lineart::ZqReduceFontSizeToFit("Training Molecules", font, 0, training.right.GetWidth()));
  font.SetSize(Lineart::ZqReduceFontSizeToFit("This Molecule", font, 0, prediction.right.GetWidth()));

  auto sample = [](ZqImageFrame& frame, const ZqPen& pen) {
    const double y = 0.5 * frame.GetHeight();
    frame.DrawLine({0.05 * frame.GetWidth(), y}, {0.95 * frame.GetWidth(), y}, pen);
  };
  sample(training.left, HistogramPen());
  const bool left = ZqRenderText(training.right, "Training Molecules", font, false);
  sample(prediction.left, PredictionPen());
  const bool right = ZqRenderText(prediction.right, "This Molecule", font, false);
  return left && right;
}

bool ZqRenderClassification(ZqImageBase& image, const ZqMolKrigeResult& result,
                            const ZqKrigeReportOptions& options) {
  if (!result.Valid()) return false;
  const double radius = 0.5 * std::min(image.GetWidth(), image.GetHeight());
  const Zq2DPoint centre = Lineart::ZqGetCenter(image);
  double cumulative = 0.0;
  for (unsigned long i = 0; i < options.GetNumClassifications(); ++i) {
    const double p = ZqProbabilityBetween(result, options.GetClassificationLowerBound(i),
                                          options.GetClassificationUpperBound(i));
    image.DrawPie(centre, cumulative * 360.0, (cumulative + p) * 360.0, radius,
                  FillPen(options.GetClassificationColor(i)));
    cumulative += p;
  }
  image.DrawCircle(centre, radius, ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 1.0, 0xFFFF));
  return true;
}

bool ZqKrigeRenderClassification(ZqImageBase& image, const ZqMolKrigeResult& result,
                                 const ZqKrigeReportOptions& options, bool legend) {
  const bool hasClasses = options.GetNumClassifications() > 0;
  if (!legend) {
    if (hasClasses) ZqRenderClassification(image, result, options);
    return true;
  }
  const bool wide = image.GetWidth() > image.GetHeight();
  Lineart::ZqImageGrid grid(image, wide ? 1 : 2, wide ? 2 : 1);
  ZqAutoBufferImage pie(grid.GetCell(1, 1), 0.05);
  if (hasClasses) ZqRenderClassification(pie.Get(), result, options);
  ZqAutoBufferImage key(wide ? grid.GetCell(1, 2) : grid.GetCell(2, 1), 0.05);
  return ZqRenderClassificationLegend(key.Get());
}

}  // namespace Varimo
