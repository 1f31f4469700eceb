// Molecule drawings: 2-D coordinates for a molecule, a drawing made of it
// at a size, and that drawing placed on an image. RDKit computes the
// coordinates and draws (its Cairo drawer) when the image is written.
//
//   Molkit::ZqGraphMol mol(someMolecule);
//   Molkit::ZqSuppressHydrogens(mol, false, false, true);
//   Lineart::ZqPrepareDepictionOptions prep(false, true);
//   if (!Lineart::ZqPrepareDepiction(mol, prep)) { ... }
//   Lineart::Zq2DMolDisplayOptions look(300, 200, 0);
//   Lineart::Zq2DMolDisplay display(mol, look);
//   Lineart::ZqRenderMolecule(frame, display, false);
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "varimo/platform/lineart/image.h"
#include "varimo/platform/molkit/graph_mol.h"

namespace Lineart {

// How the 2-D coordinates are made. `keepCoordinates`: a molecule that has
// 2-D coordinates already (all z zero) keeps them; otherwise, and always
// for 3-D input, RDKit computes new ones. `canonicalOrientation`: the new
// coordinates are turned into RDKit's canonical orientation first.
// Orientation then turns the drawing for its frame: 2 leaves it, 3 lays
// the longest extent along x (a wide frame), 4 along y (a tall frame).
class ZqPrepareDepictionOptions {
 public:
  ZqPrepareDepictionOptions(bool keepCoordinates, bool canonicalOrientation)
      : keepCoordinates_(keepCoordinates), canonicalOrientation_(canonicalOrientation) {}
  bool GetKeepCoordinates() const { return keepCoordinates_; }
  bool GetCanonicalOrientation() const { return canonicalOrientation_; }
  unsigned int GetOrientation() const { return orientation_; }
  void SetOrientation(unsigned int orientation) { orientation_ = orientation; }

 private:
  bool keepCoordinates_;
  bool canonicalOrientation_;
  unsigned int orientation_ = 2;
};

// Gives the molecule 2-D coordinates as the options say; false, changing
// nothing, for a molecule without atoms or one RDKit cannot lay out.
bool ZqPrepareDepiction(Molkit::ZqGraphMol& mol, const ZqPrepareDepictionOptions& options);

// The look of a drawing: its size in pixels and a scale (pixels per
// angstrom; 0 fits the molecule to the size). Title location: 0 no title,
// any other the molecule's name under the drawing. Atom colour style: 0
// all black, any other heteroatoms in their element colours.
class Zq2DMolDisplayOptions {
 public:
  Zq2DMolDisplayOptions(double width, double height, double scale) : width_(width), height_(height), scale_(scale) {}
  double GetWidth() const { return width_; }
  double GetHeight() const { return height_; }
  double GetScale() const { return scale_; }
  Corvane::ZqColor GetBackgroundColor() const { return background_; }
  void SetBackgroundColor(Corvane::ZqColor color) { background_ = color; }
  double GetAtomLabelFontScale() const { return atomLabelFontScale_; }
  void SetAtomLabelFontScale(double scale) { atomLabelFontScale_ = scale; }
  unsigned int GetTitleLocation() const { return titleLocation_; }
  void SetTitleLocation(unsigned int location) { titleLocation_ = location; }
  unsigned int GetAtomColorStyle() const { return atomColorStyle_; }
  void SetAtomColorStyle(unsigned int style) { atomColorStyle_ = style; }

 private:
  double width_;
  double height_;
  double scale_;
  Corvane::ZqColor background_ = Corvane::ZqWhite;
  double atomLabelFontScale_ = 1.0;
  unsigned int titleLocation_ = 0;
  unsigned int atomColorStyle_ = 1;
};

// A drawing of a molecule, ready to place: a copy of the molecule with its
// 2-D coordinates, the look, and what property maps painted over it: a
// coloured disc behind each atom they reached (radius in angstrom), and
// optionally a colour key, a bar from the colour of the lowest value to
// that of the highest in the drawing's bottom right corner.
class Zq2DMolDisplay {
 public:
  struct AtomMark {
    Corvane::ZqColor color;
    double radius = 0.0;
  };
  struct ColorKey {
    Corvane::ZqColor low;
    Corvane::ZqColor middle;
    Corvane::ZqColor high;
    double scale = 1.0;  // of the bar's height, 2% of the drawing's
  };

  Zq2DMolDisplay(const Molkit::ZqGraphMol& mol, const Zq2DMolDisplayOptions& options);
  Zq2DMolDisplay(const Zq2DMolDisplay& other);
  ~Zq2DMolDisplay();

  const Molkit::ZqGraphMol& GetMol() const { return *mol_; }
  const Zq2DMolDisplayOptions& GetOptions() const { return options_; }
  const std::map<unsigned int, AtomMark>& GetAtomMarks() const { return marks_; }
  void SetAtomMark(unsigned int atom, const AtomMark& mark) { marks_[atom] = mark; }
  const std::optional<ColorKey>& GetColorKey() const { return colorKey_; }
  void SetColorKey(const ColorKey& key) { colorKey_ = key; }

 private:
  std::unique_ptr<Molkit::ZqGraphMol> mol_;
  Zq2DMolDisplayOptions options_;
  std::map<unsigned int, AtomMark> marks_;
  std::optional<ColorKey> colorKey_;
};

// Places the drawing at the image's top left corner (the image should be
// the drawing's size: a frame made for it). `border`: a thin black frame
// around it.
bool ZqRenderMolecule(ZqImageBase& image, const Zq2DMolDisplay& display, bool border);

}  // namespace Lineart
