// The whole report: an optional title strip over the panels, laid out
// upright (molecule, distribution and details on the left, training
// molecules on the right) or wide (molecule, distribution and details on
// top, training molecules below).
#include "varimo/mol/krige_report.h"

#include "report_panels.h"
#include "varimo/platform/lineart/recorded_image.h"

namespace Varimo {
namespace {

using Lineart::ZqFont;
using Lineart::ZqImageBase;
using Lineart::ZqImageFrame;

bool RenderMoleculePanel(ZqImageBase& frame, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                         const ZqKrigeReportOptions& options) {
  ZqAutoBufferImage buffer(frame, 0.05);
  return ZqKrigeRenderMoleculeWithLegend(buffer.Get(), result, mol, options);
}

bool RenderVariogramPanel(ZqImageBase& frame, const ZqMolKrigeResult& result) {
  ZqAutoBufferImage buffer(frame, 0.05);
  return ZqKrigeRenderVariogram(buffer.Get(), result);
}

bool RenderDialPanel(ZqImageBase& frame, ZqMolKrigeResult& result) {
  ZqAutoBufferImage buffer(frame, 0.05);
  return ZqKrigeRenderConfidenceRadial(buffer.Get(), result);
}

bool RenderTrainingPanel(ZqImageBase& frame, const ZqMolKrigeResult& result, const ZqKrigeReportOptions& options,
                         unsigned int rows, unsigned int cols) {
  ZqAutoBufferImage buffer(frame, 0.0);
  return ZqKrigeRenderTraining(buffer.Get(), result, options, rows, cols);
}

bool RenderUpright(ZqImageBase& body, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                   const ZqTextVariables& variables, const ZqKrigeReportOptions& options, unsigned int rows,
                   unsigned int cols) {
  const Lineart::ZqPen pen = ZqReportPen();
  ZqImageHorizontalSplit columns(body, 0.4);
  if (!RenderTrainingPanel(columns.right, result, options, rows, cols)) return false;
  Lineart::ZqDrawBorder(columns.right, pen);
  if (!options.GetShowKrigeDetails()) {
    ZqImageVerticalSplit left(columns.left, 0.6);
    if (!RenderMoleculePanel(left.top, result, mol, options)) return false;
    if (!ZqRenderDistributionAndProperties(left.bottom, result, variables, options)) return false;
    Lineart::ZqDrawBorder(left.top, pen);
    Lineart::ZqDrawBorder(left.bottom, pen);
    return true;
  }
  ZqImageVerticalSplit left(columns.left, 0.8);
  ZqImageHorizontalSplit details(left.bottom, 0.5);
  if (!RenderVariogramPanel(details.left, result)) return false;
  if (!RenderDialPanel(details.right, result)) return false;
  ZqImageVerticalSplit upper(left.top, 0.6);
  if (!RenderMoleculePanel(upper.top, result, mol, options)) return false;
  if (!ZqRenderDistributionAndProperties(upper.bottom, result, variables, options)) return false;
  Lineart::ZqDrawBorder(details.left, pen);
  Lineart::ZqDrawBorder(details.right, pen);
  Lineart::ZqDrawBorder(upper.top, pen);
  Lineart::ZqDrawBorder(upper.bottom, pen);
  return true;
}

bool RenderWide(ZqImageBase& body, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                const ZqTextVariables& variables, const ZqKrigeReportOptions& options, unsigned int rows,
                unsigned int cols) {
  const Lineart::ZqPen pen = ZqReportPen();
  ZqImageVerticalSplit bands(body, 0.4);
  ZqImageHorizontalSplit top(bands.top, 0.5);
  ZqImageHorizontalSplit right(top.right, 0.65);
  ZqImageVerticalSplit details(right.right, 0.5);
  // The training molecules below go without a border of their own.
  if (!RenderTrainingPanel(bands.bottom, result, options, rows, cols)) return false;
  if (!RenderMoleculePanel(top.left, result, mol, options)) return false;
  ZqImageFrame& distribution = options.GetShowKrigeDetails() ? right.left : top.right;
  if (!ZqRenderDistributionAndProperties(distribution, result, variables, options)) return false;
  if (options.GetShowKrigeDetails()) {
    if (!RenderVariogramPanel(details.bottom, result)) return false;
    Lineart::ZqDrawBorder(details.bottom, pen);
    if (!RenderDialPanel(details.top, result)) return false;
    Lineart::ZqDrawBorder(details.top, pen);
  }
  Lineart::ZqDrawBorder(distribution, pen);
  Lineart::ZqDrawBorder(top.left, pen);
  return true;
}

bool RenderReportWithTitle(ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                           const ZqTextVariables& variables, const ZqKrigeReportOptions& options, unsigned int rows,
                           unsigned int cols) {
  const double w = image.GetWidth();
  const double h = image.GetHeight();
  const bool titled = !options.GetTitle().empty();
  if (titled) {
    ZqImageFrame title(image, w, 0.05 * h, {0.0, 0.0});
    if (!ZqRenderText(title, options.GetTitle(), ZqFont(3, 0, ZqFontSize(title.GetHeight()), 1, Corvane::ZqBlack),
                      true)) {
      return false;
    }
  }
  ZqImageFrame body(image, w, titled ? 0.95 * h : h, {0.0, titled ? 0.05 * h : 0.0});
  const bool upright = body.GetWidth() <= body.GetHeight();
  if (rows == 0 && cols == 0) {
    rows = upright ? 3 : 2;
    cols = upright ? 2 : 3;
  }
  return upright ? RenderUpright(body, result, mol, variables, options, rows, cols)
                 : RenderWide(body, result, mol, variables, options, rows, cols);
}

template <typename Mol>
bool RenderReport(ZqImageBase& image, ZqMolKrigeResult& result, const Mol& mol, const ZqKrigeReportOptions& options,
                  unsigned int rows, unsigned int cols) {
  ZqTextVariables variables;
  for (unsigned long i = 0; i < options.GetNumProperties(); ++i) {
    variables.Push(options.GetPropertyName(i), options.GetPropertyValue(i, mol), Corvane::ZqBlack);
  }
  return RenderReportWithTitle(image, result, mol, variables, options, rows, cols);
}

template <typename Mol>
bool RenderReportFile(const std::string& filename, ZqMolKrigeResult& result, const Mol& mol,
                      const ZqKrigeReportOptions& options) {
  Lineart::ZqMultiPageImageFile file(2, 2);
  Lineart::ZqImage page(file.NewPage());
  if (!RenderReport(page, result, mol, options, 0, 0)) return false;
  return Lineart::ZqWriteImage(filename, page);
}

}  // namespace

bool ZqKrigeRenderReport(ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                         const ZqKrigeReportOptions& options, unsigned int rows, unsigned int cols) {
  return RenderReport(image, result, mol, options, rows, cols);
}

bool ZqKrigeRenderReport(ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMCMolBase& mol,
                         const ZqKrigeReportOptions& options, unsigned int rows, unsigned int cols) {
  return RenderReport(image, result, mol, options, rows, cols);
}

bool ZqKrigeRenderReport(const std::string& filename, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                         const ZqKrigeReportOptions& options) {
  return RenderReportFile(filename, result, mol, options);
}

bool ZqKrigeRenderReport(const std::string& filename, ZqMolKrigeResult& result, const Molkit::ZqMCMolBase& mol,
                         const ZqKrigeReportOptions& options) {
  return RenderReportFile(filename, result, mol, options);
}

}  // namespace Varimo
