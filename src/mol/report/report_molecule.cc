// The molecule panels: the query painted by its atoms' contributions with
// a two-colour legend, and the plain drawings of training molecules.
#include <cmath>
#include <vector>

#include "report_panels.h"
#include "varimo/mol/krige_report.h"
#include "varimo/platform/corvane/generic_data.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/inkmap/prop_map.h"
#include "varimo/platform/lineart/text.h"

namespace Varimo {

using Lineart::ZqFont;
using Lineart::ZqImageBase;
using Lineart::ZqImageFrame;

std::unique_ptr<Molkit::ZqGraphMol> ZqPrepareReportMolecule(const Molkit::ZqMolBase& mol, double width,
                                                            double height) {
  auto copy = std::make_unique<Molkit::ZqGraphMol>(mol);
  Molkit::ZqSuppressHydrogens(*copy, false, false, true);
  // After the suppression, which makes the atoms anew without their data.
  Molkit::ZqAssignBondiVdWRadii(*copy);
  Lineart::ZqPrepareDepictionOptions depiction(false, true);
  depiction.SetOrientation(2);
  if (width > 1.5 * height) depiction.SetOrientation(3);
  if (height > 1.5 * width) depiction.SetOrientation(4);
  if (!Lineart::ZqPrepareDepiction(*copy, depiction)) return nullptr;
  return copy;
}

Lineart::Zq2DMolDisplayOptions ZqReportDisplayOptions(double width, double height) {
  Lineart::Zq2DMolDisplayOptions look(width, height, 0);
  look.SetBackgroundColor(Corvane::ZqWhite);
  look.SetAtomLabelFontScale(1.0);
  look.SetTitleLocation(2);
  look.SetAtomColorStyle(3);
  return look;
}

bool ZqRenderTrainingElementMolecule(ZqImageBase& image, const Molkit::ZqMolBase& mol) {
  const std::unique_ptr<Molkit::ZqGraphMol> copy =
      ZqPrepareReportMolecule(mol, image.GetWidth(), image.GetHeight());
  if (copy == nullptr) return false;
  const Lineart::Zq2DMolDisplay display(*copy, ZqReportDisplayOptions(image.GetWidth(), image.GetHeight()));
  return Lineart::ZqRenderMolecule(image, display, false);
}

bool ZqKrigeRenderMolecule(ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                           const ZqKrigeReportOptions& options) {
  if (image.GetWidth() < 100 || image.GetHeight() < 100 || !result.Valid()) return false;
  const double baseline =
      options.GetHasContributionBaseline() ? options.GetContributionBaseline() : result.GetResponse();
  const std::unique_ptr<Molkit::ZqGraphMol> copy =
      ZqPrepareReportMolecule(mol, image.GetWidth(), image.GetHeight());
  if (copy == nullptr) return false;

  // A logistic squash into (-1, 1): the more heavy atoms share the
  // prediction, the smaller each one's part, so the same part counts for
  // more in a larger molecule.
  const double heavyAtoms = static_cast<double>(copy->GetNumHeavyAtoms());
  const unsigned int tag = Corvane::ZqGetTag("Contribution");
  const std::vector<double> contributions = result.GetAtomContributions(*copy, baseline);
  for (std::size_t a = 0; a < copy->GetNumAtoms(); ++a) {
    copy->GetAtom(a).SetData(tag, 2.0 / (std::exp(-heavyAtoms * contributions[a]) + 1.0) - 1.0);
  }

  Lineart::Zq2DMolDisplay display(*copy, ZqReportDisplayOptions(image.GetWidth(), image.GetHeight()));
  Inkmap::Zq2DPropMap map(Corvane::ZqWhite);
  map.SetNegativeColor(options.GetContributionNegativeColor());
  map.SetPositiveColor(options.GetContributionPositiveColor());
  map.SetLegendLocation(1);
  map.SetMinValue(-1.0);
  map.SetMaxValue(1.0);
  map.SetLegendFontScale(1.0);
  map.Render(display, "Contribution");
  return Lineart::ZqRenderMolecule(image, display, false);
}

bool ZqKrigeRenderMoleculeWithLegend(ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                                     const ZqKrigeReportOptions& options) {
  const double w = image.GetWidth();
  const double h = image.GetHeight();
  if (w < 100 || h < 100) return false;
  ZqImageFrame moleculeFrame(image, w, 0.9 * h, {0.0, 0.0});
  ZqImageFrame legendFrame(image, w - 10.0, 0.1 * h, {5.0, 0.9 * h});
  if (!ZqKrigeRenderMolecule(moleculeFrame, result, mol, options)) return false;

  ZqAutoBufferImage legend(legendFrame, 0.1);
  ZqImageFrame& g = legend.Get();
  const std::string& name = options.GetResponseName();
  const std::string labels[2] = {
      options.GetContributionPositiveLabel().empty()
          ? Corvane::ZqFormatString(" Contributes to Higher %s", name.c_str())
          : options.GetContributionPositiveLabel(),
      options.GetContributionNegativeLabel().empty()
          ? Corvane::ZqFormatString(" Contributes to Lower %s", name.c_str())
          : options.GetContributionNegativeLabel()};
  const Corvane::ZqColor colors[2] = {options.GetContributionPositiveColor(),
                                      options.GetContributionNegativeColor()};

  // Side by side or one above the other, whichever writes the labels larger.
  struct Shape {
    unsigned int rows;
    unsigned int cols;
  };
  unsigned int best = 0;
  Shape chosen{0, 0};
  for (const Shape shape : {Shape{1, 2}, Shape{2, 1}}) {
    const double m = std::min(g.GetWidth(), g.GetHeight());
    const double rowHeight = (g.GetHeight() - 0.05 * m) / shape.rows;
    const double cellWidth = (g.GetWidth() - 0.05 * m) / shape.cols - rowHeight;
    if (!(cellWidth > 0.0)) continue;
    ZqFont font(3, 0, ZqFontSize(0.8 * rowHeight), 2, Corvane::ZqBlack);
    for (const std::string& label : labels) {
      font.SetSize(Lineart::ZqReduceFontSizeToFit(" " + label, font, 0, cellWidth));
    }
    if (font.GetSize() > best || chosen.rows == 0) {
      best = font.GetSize();
      chosen = shape;
    }
  }
  if (chosen.rows == 0) return false;

  Lineart::ZqImageGrid grid(g, chosen.rows, chosen.cols);
  const ZqFont font(3, 0, best, 2, Corvane::ZqBlack);
  bool drawn = true;
  std::size_t i = 0;
  for (ZqImageFrame* cell : grid.GetCells(0, 0)) {
    ZqAutoBufferImage buffer(*cell, 0.05);
    ZqImageFrame& inner = buffer.Get();
    const double side = inner.GetHeight();
    ZqImageFrame square(inner, side, side, {0.0, 0.0});
    ZqImageFrame rest(inner, inner.GetWidth() - side, side, {side, 0.0});
    square.DrawCircle(Lineart::ZqGetCenter(square), 0.25 * (best + side),
                      Lineart::ZqPen(colors[i], colors[i], 1, 1.0, 0xFFFF));
    drawn = ZqRenderText(rest, " " + labels[i], font, false) && drawn;
    ++i;
  }
  return drawn;
}

}  // namespace Varimo
