#include "varimo/platform/lineart/depiction.h"

#include <GraphMol/Depictor/RDDepictor.h>
#include <GraphMol/MolDraw2D/MolDraw2DCairo.h>
#include <GraphMol/MolDraw2D/MolDraw2DUtils.h>

#include <cmath>
#include <exception>
#include <vector>

#include "../molkit/mol_graph.h"
#include "cairo_support.h"
#include "molecule_painter.h"

namespace Lineart {
namespace {

bool IsFlat(const RDKit::Conformer& conformer) {
  for (const RDGeom::Point3D& p : conformer.getPositions()) {
    if (p.z != 0.0) return false;
  }
  return true;
}

// Turns the drawing so that its longest extent (the principal axis of the
// atom positions) lies along x, or along y with `upright`.
void Orient(RDKit::Conformer& conformer, bool upright) {
  const std::size_t n = conformer.getNumAtoms();
  if (n < 2) return;
  double mx = 0.0, my = 0.0;
  for (const RDGeom::Point3D& p : conformer.getPositions()) {
    mx += p.x;
    my += p.y;
  }
  mx /= static_cast<double>(n);
  my /= static_cast<double>(n);
  double sxx = 0.0, syy = 0.0, sxy = 0.0;
  for (const RDGeom::Point3D& p : conformer.getPositions()) {
    sxx += (p.x - mx) * (p.x - mx);
    syy += (p.y - my) * (p.y - my);
    sxy += (p.x - mx) * (p.y - my);
  }
  // The angle of the principal axis, turned onto x (or y).
  const double axis = 0.5 * std::atan2(2.0 * sxy, sxx - syy);
  const double turn = (upright ? M_PI / 2.0 : 0.0) - axis;
  const double c = std::cos(turn), s = std::sin(turn);
  for (RDGeom::Point3D& p : conformer.getPositions()) {
    const double x = p.x - mx, y = p.y - my;
    p.x = c * x - s * y;
    p.y = s * x + c * y;
  }
}

// RDKit's Cairo drawer, kept on the context it is given: Debian's RDKit
// (2022.09) replaces that context with one on a private surface of its own
// when drawing starts, so that nothing reaches the page. Drawing starts
// through the virtual initDrawing(), which here only sets up the context
// as RDKit's own does.
class ContextDrawer : public RDKit::MolDraw2DCairo {
 public:
  ContextDrawer(int width, int height, cairo_t* cairo) : MolDraw2DCairo(width, height, cairo), cairo_(cairo) {}

 private:
  void initDrawing() override { cairo_set_line_cap(cairo_, CAIRO_LINE_CAP_BUTT); }

  cairo_t* cairo_;
};

RDKit::DrawColour ToDraw(Corvane::ZqColor color) {
  return {color.GetRFraction(), color.GetGFraction(), color.GetBFraction(), color.GetAFraction()};
}

void PaintColorKey(cairo_t* cairo, const Zq2DMolDisplay::ColorKey& key, double width, double height) {
  const double barHeight = std::max(3.0, 0.02 * height * key.scale);
  const double barWidth = 0.25 * width;
  const double x = width - barWidth - barHeight, y = height - 2.0 * barHeight;
  cairo_pattern_t* gradient = cairo_pattern_create_linear(x, 0.0, x + barWidth, 0.0);
  const auto stop = [gradient](double at, Corvane::ZqColor c) {
    cairo_pattern_add_color_stop_rgba(gradient, at, c.GetRFraction(), c.GetGFraction(), c.GetBFraction(),
                                      c.GetAFraction());
  };
  stop(0.0, key.low);
  stop(0.5, key.middle);
  stop(1.0, key.high);
  cairo_rectangle(cairo, x, y, barWidth, barHeight);
  cairo_set_source(cairo, gradient);
  cairo_fill_preserve(cairo);
  cairo_pattern_destroy(gradient);
  ZqSetCairoColor(cairo, Corvane::ZqGrey);
  cairo_set_line_width(cairo, 0.5);
  cairo_stroke(cairo);
}

}  // namespace

bool ZqPrepareDepiction(Molkit::ZqGraphMol& mol, const ZqPrepareDepictionOptions& options) {
  if (mol.GetNumAtoms() == 0) return false;
  RDKit::RWMol& graph = mol.EditGraph().mol;
  const bool keep = options.GetKeepCoordinates() && graph.getNumConformers() > 0 && IsFlat(graph.getConformer());
  if (!keep) {
    // Computed on a copy: a failed layout leaves the molecule as it was.
    RDKit::RWMol laidOut(graph);
    try {
      RDDepict::compute2DCoords(laidOut, nullptr, options.GetCanonicalOrientation());
    } catch (const std::exception&) {
      return false;
    }
    graph = laidOut;
  }
  if (options.GetOrientation() == 3 || options.GetOrientation() == 4) {
    Orient(graph.getConformer(), options.GetOrientation() == 4);
  }
  return true;
}

Zq2DMolDisplay::Zq2DMolDisplay(const Molkit::ZqGraphMol& mol, const Zq2DMolDisplayOptions& options)
    : mol_(std::make_unique<Molkit::ZqGraphMol>(mol)), options_(options) {}

Zq2DMolDisplay::Zq2DMolDisplay(const Zq2DMolDisplay& other)
    : mol_(std::make_unique<Molkit::ZqGraphMol>(*other.mol_)),
      options_(other.options_),
      marks_(other.marks_),
      colorKey_(other.colorKey_) {}

Zq2DMolDisplay::~Zq2DMolDisplay() = default;

bool ZqRenderMolecule(ZqImageBase& image, const Zq2DMolDisplay& display, bool border) {
  if (!image.DrawMolecule({0.0, 0.0}, std::make_shared<const Zq2DMolDisplay>(display))) return false;
  return !border || ZqDrawBorder(image, ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 1.0, 0xFFFF));
}

bool ZqPaintMolecule(cairo_t* cairo, const Zq2DMolDisplay& display, const Zq2DPoint& origin) {
  const Zq2DMolDisplayOptions& look = display.GetOptions();
  const int width = static_cast<int>(std::lround(look.GetWidth()));
  const int height = static_cast<int>(std::lround(look.GetHeight()));
  if (width < 1 || height < 1) return false;
  RDKit::RWMol mol(display.GetMol().GetGraph().mol);
  std::vector<int> atoms;
  std::map<int, RDKit::DrawColour> colors;
  std::map<int, double> radii;
  for (const auto& [atom, mark] : display.GetAtomMarks()) {
    if (atom >= mol.getNumAtoms()) continue;
    atoms.push_back(static_cast<int>(atom));
    colors[static_cast<int>(atom)] = ToDraw(mark.color);
    radii[static_cast<int>(atom)] = mark.radius;
  }
  const std::vector<int> noBonds;
  cairo_save(cairo);
  cairo_translate(cairo, origin.x, origin.y);
  bool drawn = true;
  try {
    // Kekulé bonds and wedges as chemists draw them; no hydrogens added,
    // so that atom indices stay those of the marks.
    RDKit::MolDraw2DUtils::prepareMolForDrawing(mol, true, false, true, false);
    ContextDrawer drawer(width, height, cairo);
    RDKit::MolDrawOptions& options = drawer.drawOptions();
    options.backgroundColour = ToDraw(look.GetBackgroundColor());
    options.fillHighlights = true;
    options.continuousHighlight = false;
    options.atomHighlightsAreCircles = true;
    options.legendFontSize = static_cast<int>(std::max(8.0, 0.05 * std::min(look.GetWidth(), look.GetHeight())));
    // RDKit's coordinates have bonds of about 1.5 angstrom drawn 1 unit long.
    if (look.GetScale() > 0.0) options.fixedBondLength = look.GetScale() * 1.5;
    drawer.setFontSize(drawer.fontSize() * look.GetAtomLabelFontScale());
    if (look.GetAtomColorStyle() == 0) RDKit::assignBWPalette(options.atomColourPalette);
    const std::string title = look.GetTitleLocation() != 0 ? display.GetMol().GetName() : std::string();
    drawer.drawMolecule(mol, title, &atoms, &noBonds, &colors, nullptr, &radii);
    drawer.finishDrawing();
    if (display.GetColorKey()) PaintColorKey(cairo, *display.GetColorKey(), look.GetWidth(), look.GetHeight());
  } catch (const std::exception&) {
    drawn = false;
  }
  cairo_restore(cairo);
  return drawn && cairo_status(cairo) == CAIRO_STATUS_SUCCESS;
}

}  // namespace Lineart
