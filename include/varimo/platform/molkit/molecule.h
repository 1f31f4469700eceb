// Molecules for the molecular models: a thin layer over RDKit that keeps
// RDKit out of this header, so that a program linking Varimo::varimo_mol
// needs no RDKit headers of its own.
//
//   std::string error;
//   std::unique_ptr<Molkit::ZqMolBase> mol = Molkit::ZqMolFromSmiles("c1ccccc1O", &error);
//   for (const Molkit::ZqAtomBase& atom : mol->GetAtomIter()) ...
//   if (Molkit::ZqHasSDData(*mol, "ACTIVITY")) text = Molkit::ZqGetSDData(*mol, "ACTIVITY");
//
// A molecule is its graph (atoms and bonds; hydrogens are implicit, as
// RDKit's readers leave them, except isotopic ones and those that cannot be
// implicit, as in H2), at most one set
// of coordinates, its name, the SD data fields of its file record (text,
// in file order) and the typed generic data of Corvane::ZqBase. Atoms and
// bonds carry generic data of their own, for example per-atom
// contributions. A ZqMCMolBase adds conformers, each a molecule of the same
// graph with coordinates and SD data of its own, and one active conformer.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "varimo/platform/corvane/generic_data.h"
#include "varimo/platform/corvane/iter.h"

namespace Molkit {

class ZqMolBase;
struct ZqMolGraph;  // the RDKit molecule, private to the library

class ZqAtomBase : public Corvane::ZqBase {
 public:
  unsigned int GetIdx() const { return index_; }
  unsigned int GetAtomicNum() const;
  std::string GetSymbol() const;
  int GetFormalCharge() const;
  // Bonded neighbours in the graph (explicit hydrogens count, implicit
  // ones do not).
  unsigned int GetDegree() const;
  // Hydrogens on the atom: implicit ones and hydrogen atoms bonded to it.
  unsigned int GetTotalNumHs() const;
  bool GetIsAromatic() const;
  bool IsInRing() const;
  const ZqMolBase& GetParent() const { return *parent_; }

 private:
  friend class ZqMolBase;
  ZqAtomBase(const ZqMolBase* parent, unsigned int index) : parent_(parent), index_(index) {}

  const ZqMolBase* parent_;
  unsigned int index_;
};

class ZqBondBase : public Corvane::ZqBase {
 public:
  unsigned int GetIdx() const { return index_; }
  unsigned int GetBeginAtomIdx() const;
  unsigned int GetEndAtomIdx() const;
  // 1, 2, 3, or 1.5 for an aromatic bond; 0 for other kinds.
  double GetBondOrder() const;
  bool GetIsAromatic() const;
  bool IsInRing() const;
  const ZqMolBase& GetParent() const { return *parent_; }

 private:
  friend class ZqMolBase;
  ZqBondBase(const ZqMolBase* parent, unsigned int index) : parent_(parent), index_(index) {}

  const ZqMolBase* parent_;
  unsigned int index_;
};

class ZqMolBase : public Corvane::ZqBase {
 public:
  // An empty molecule: no atoms.
  ZqMolBase();
  ZqMolBase(const ZqMolBase& other);
  ZqMolBase& operator=(const ZqMolBase& other);
  ~ZqMolBase() override;

  // A new copy of the molecule, of its own class, owned by the caller.
  virtual ZqMolBase* CreateCopy() const { return new ZqMolBase(*this); }

  const std::string& GetName() const { return name_; }
  void SetName(std::string name) { name_ = std::move(name); }

  std::size_t GetNumAtoms() const { return atoms_.size(); }
  std::size_t GetNumHeavyAtoms() const;
  ZqAtomBase& GetAtom(std::size_t index) { return atoms_[index]; }
  const ZqAtomBase& GetAtom(std::size_t index) const { return atoms_[index]; }
  Corvane::ZqIter<ZqAtomBase> GetAtomIter() {
    return Corvane::ZqMakeIterView<ZqAtomBase>(atoms_.begin(), atoms_.end());
  }
  Corvane::ZqIter<const ZqAtomBase> GetAtomIter() const {
    return Corvane::ZqMakeIterView<const ZqAtomBase>(atoms_.cbegin(), atoms_.cend());
  }
  std::size_t GetNumBonds() const { return bonds_.size(); }
  ZqBondBase& GetBond(std::size_t index) { return bonds_[index]; }
  const ZqBondBase& GetBond(std::size_t index) const { return bonds_[index]; }

  // Coordinates of the one conformer, when the input had them; the origin
  // without them or for an index past the atoms.
  bool HasCoordinates() const;
  std::array<double, 3> GetAtomPosition(std::size_t atom) const;

  // The SD data fields, in the order of the file record; setting an
  // existing tag replaces its text in place.
  bool HasSDData(const std::string& tag) const;
  // The text under `tag`; empty when there is none.
  std::string GetSDData(const std::string& tag) const;
  void SetSDData(const std::string& tag, std::string text);
  const std::vector<std::pair<std::string, std::string>>& GetSDDataFields() const { return sdData_; }

  // The index the atom had in the file record the molecule was read from:
  // its own index, unless the reader took explicit hydrogens out of the
  // graph, which moves the heavy atoms after them.
  std::size_t GetRecordAtomIndex(std::size_t atom) const;

  // RDKit's canonical SMILES of the graph, written from a copy: the writer
  // leaves properties on the molecule it writes, and this one may be read
  // by several threads at once.
  std::string GetCanonicalSmiles() const;

  // The RDKit molecule behind it; for the library's own code.
  const ZqMolGraph& GetGraph() const { return *graph_; }

 protected:
  // Takes over an RDKit molecule; how the readers make molecules.
  explicit ZqMolBase(std::unique_ptr<ZqMolGraph> graph);
  friend std::unique_ptr<ZqMolBase> ZqMakeMol(std::unique_ptr<ZqMolGraph> graph);

  // For molecules whose graph the library edits (ZqGraphMol): the RDKit
  // molecule, and the atoms and bonds made anew after an edit, which
  // drops their generic data.
  ZqMolGraph& GetMutableGraph() { return *graph_; }
  void MakeAtomsAndBonds();

 private:

  std::unique_ptr<ZqMolGraph> graph_;
  std::string name_;
  std::vector<ZqAtomBase> atoms_;
  std::vector<ZqBondBase> bonds_;
  std::vector<std::pair<std::string, std::string>> sdData_;
};

// A molecule with several conformers of one graph. As a ZqMolBase it is the
// molecule of its first conformer, with SD data of its own; the conformers
// keep theirs.
class ZqMCMolBase : public ZqMolBase {
 public:
  ZqMCMolBase() = default;
  // The molecule and its data, with `first` as the first and active
  // conformer.
  explicit ZqMCMolBase(const ZqMolBase& first);
  ZqMCMolBase(const ZqMCMolBase& other);
  ZqMCMolBase& operator=(const ZqMCMolBase& other);
  ZqMolBase* CreateCopy() const override { return new ZqMCMolBase(*this); }

  // Appends a copy; false, adding nothing, when its graph differs (by
  // canonical SMILES) from the first conformer's. An empty molecule
  // (default constructed) becomes a copy of its first conformer.
  bool AddConf(const ZqMolBase& conformer);
  std::size_t GetNumConfs() const { return confs_.size(); }
  ZqMolBase& GetConf(std::size_t index) { return *confs_[index]; }
  const ZqMolBase& GetConf(std::size_t index) const { return *confs_[index]; }
  // The first conformer until set; a molecule with no conformers has none,
  // and the molecule itself stands in for it.
  const ZqMolBase& GetActiveConf() const {
    if (confs_.empty()) return *this;
    return *confs_[active_];
  }
  std::size_t GetActiveConfIndex() const { return active_; }
  // False for an index past the conformers.
  bool SetActiveConf(std::size_t index);

 private:
  std::vector<std::unique_ptr<ZqMolBase>> confs_;
  std::size_t active_ = 0;
};

// The most atoms (hydrogens in the graph included) a molecule may have:
// RDKit's perception of a molecule's stereochemistry grows much faster
// than its size (a chain of 2000 atoms takes seconds, one of 10000 hours),
// so larger ones, far beyond any drug or peptide a model is made for, are
// refused before they are read.
constexpr std::size_t ZqMaxMoleculeAtoms = 1000;

// A molecule from SMILES; null with `error` set (when given) for SMILES
// that do not parse or sanitise, or describe more than ZqMaxMoleculeAtoms
// atoms.
std::unique_ptr<ZqMolBase> ZqMolFromSmiles(const std::string& smiles, std::string* error = nullptr);
// A molecule from the text of one MDL mol block or SD record, with its SD
// data fields; null with `error` set on failure (or more than
// ZqMaxMoleculeAtoms atoms).
std::unique_ptr<ZqMolBase> ZqMolFromMolBlock(const std::string& block, std::string* error = nullptr);
// A molecule from RDKit's binary form (its pickle, as Chem.Mol.ToBinary
// writes it, from the same RDKit): the graph and coordinates as they were,
// the "_Name" property as the name and every other public property as an
// SD data field, in text. Null with `error` set for bytes that are not one,
// or a molecule of more than ZqMaxMoleculeAtoms atoms.
std::unique_ptr<ZqMolBase> ZqMolFromRDKitBinary(const std::string& binary, std::string* error = nullptr);

bool ZqHasSDData(const ZqMolBase& mol, const std::string& tag);
std::string ZqGetSDData(const ZqMolBase& mol, const std::string& tag);
bool ZqIsHydrogen(const ZqAtomBase& atom);
// The average molecular weight, implicit hydrogens included (RDKit's
// calcAMW), in g/mol.
double ZqCalculateMolecularWeight(const ZqMolBase& mol);

}  // namespace Molkit
