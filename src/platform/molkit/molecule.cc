#include "varimo/platform/molkit/molecule.h"

#include <GraphMol/Conformer.h>
#include <GraphMol/Descriptors/MolDescriptors.h>
#include <GraphMol/MolOps.h>
#include <GraphMol/FileParsers/FileParsers.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#include <GraphMol/SmilesParse/SmilesWrite.h>

#include <algorithm>
#include <cctype>
#include <exception>

#include "mol_graph.h"

namespace Molkit {

namespace {

const RDKit::Atom& RDAtom(const ZqMolBase& mol, unsigned int index) {
  return *mol.GetGraph().mol.getAtomWithIdx(index);
}
const RDKit::Bond& RDBond(const ZqMolBase& mol, unsigned int index) {
  return *mol.GetGraph().mol.getBondWithIdx(index);
}

}  // namespace

unsigned int ZqAtomBase::GetAtomicNum() const {
  return static_cast<unsigned int>(RDAtom(*parent_, index_).getAtomicNum());
}
std::string ZqAtomBase::GetSymbol() const { return RDAtom(*parent_, index_).getSymbol(); }
int ZqAtomBase::GetFormalCharge() const { return RDAtom(*parent_, index_).getFormalCharge(); }
unsigned int ZqAtomBase::GetDegree() const { return RDAtom(*parent_, index_).getDegree(); }
unsigned int ZqAtomBase::GetTotalNumHs() const { return RDAtom(*parent_, index_).getTotalNumHs(true); }
bool ZqAtomBase::GetIsAromatic() const { return RDAtom(*parent_, index_).getIsAromatic(); }
bool ZqAtomBase::IsInRing() const {
  const RDKit::ROMol& mol = parent_->GetGraph().mol;
  return mol.getRingInfo()->isInitialized() && mol.getRingInfo()->numAtomRings(index_) > 0;
}

unsigned int ZqBondBase::GetBeginAtomIdx() const { return RDBond(*parent_, index_).getBeginAtomIdx(); }
unsigned int ZqBondBase::GetEndAtomIdx() const { return RDBond(*parent_, index_).getEndAtomIdx(); }
double ZqBondBase::GetBondOrder() const {
  switch (RDBond(*parent_, index_).getBondType()) {
    case RDKit::Bond::SINGLE:
      return 1.0;
    case RDKit::Bond::DOUBLE:
      return 2.0;
    case RDKit::Bond::TRIPLE:
      return 3.0;
    case RDKit::Bond::AROMATIC:
      return 1.5;
    default:
      return 0.0;
  }
}
bool ZqBondBase::GetIsAromatic() const { return RDBond(*parent_, index_).getIsAromatic(); }
bool ZqBondBase::IsInRing() const {
  const RDKit::ROMol& mol = parent_->GetGraph().mol;
  return mol.getRingInfo()->isInitialized() && mol.getRingInfo()->numBondRings(index_) > 0;
}

ZqMolBase::ZqMolBase() : graph_(std::make_unique<ZqMolGraph>()) {}

ZqMolBase::ZqMolBase(std::unique_ptr<ZqMolGraph> graph) : graph_(std::move(graph)) { MakeAtomsAndBonds(); }

ZqMolBase::ZqMolBase(const ZqMolBase& other)
    : Corvane::ZqBase(other),
      graph_(std::make_unique<ZqMolGraph>(*other.graph_)),
      name_(other.name_),
      atoms_(other.atoms_),
      bonds_(other.bonds_),
      sdData_(other.sdData_) {
  // The copies of the atoms and bonds keep their generic data but must
  // point at this molecule.
  for (ZqAtomBase& atom : atoms_) atom.parent_ = this;
  for (ZqBondBase& bond : bonds_) bond.parent_ = this;
}

ZqMolBase& ZqMolBase::operator=(const ZqMolBase& other) {
  if (this != &other) {
    ZqMolBase copy(other);
    Corvane::ZqBase::operator=(copy);
    graph_ = std::move(copy.graph_);
    name_ = std::move(copy.name_);
    atoms_ = std::move(copy.atoms_);
    bonds_ = std::move(copy.bonds_);
    sdData_ = std::move(copy.sdData_);
    for (ZqAtomBase& atom : atoms_) atom.parent_ = this;
    for (ZqBondBase& bond : bonds_) bond.parent_ = this;
  }
  return *this;
}

ZqMolBase::~ZqMolBase() = default;

void ZqMolBase::MakeAtomsAndBonds() {
  atoms_.clear();
  bonds_.clear();
  for (unsigned int i = 0; i < graph_->mol.getNumAtoms(); ++i) atoms_.push_back(ZqAtomBase(this, i));
  for (unsigned int i = 0; i < graph_->mol.getNumBonds(); ++i) bonds_.push_back(ZqBondBase(this, i));
}

std::unique_ptr<ZqMolBase> ZqMakeMol(std::unique_ptr<ZqMolGraph> graph) {
  return std::unique_ptr<ZqMolBase>(new ZqMolBase(std::move(graph)));
}

std::size_t ZqMolBase::GetNumHeavyAtoms() const {
  return static_cast<std::size_t>(
      std::count_if(atoms_.begin(), atoms_.end(), [](const ZqAtomBase& atom) { return !ZqIsHydrogen(atom); }));
}

bool ZqMolBase::HasCoordinates() const { return graph_->mol.getNumConformers() > 0 && !atoms_.empty(); }

std::array<double, 3> ZqMolBase::GetAtomPosition(std::size_t atom) const {
  if (!HasCoordinates() || atom >= atoms_.size()) return {0.0, 0.0, 0.0};
  const RDGeom::Point3D& p = graph_->mol.getConformer().getAtomPos(static_cast<unsigned int>(atom));
  return {p.x, p.y, p.z};
}

bool ZqMolBase::HasSDData(const std::string& tag) const {
  return std::any_of(sdData_.begin(), sdData_.end(), [&tag](const auto& field) { return field.first == tag; });
}

std::string ZqMolBase::GetSDData(const std::string& tag) const {
  for (const auto& [name, text] : sdData_) {
    if (name == tag) return text;
  }
  return {};
}

void ZqMolBase::SetSDData(const std::string& tag, std::string text) {
  for (auto& field : sdData_) {
    if (field.first == tag) {
      field.second = std::move(text);
      return;
    }
  }
  sdData_.emplace_back(tag, std::move(text));
}

std::size_t ZqMolBase::GetRecordAtomIndex(std::size_t atom) const {
  if (atom >= atoms_.size()) return atom;
  int index = 0;
  if (graph_->mol.getAtomWithIdx(static_cast<unsigned int>(atom))->getPropIfPresent(kRecordAtomIndexProperty, index)) {
    return static_cast<std::size_t>(index);
  }
  return atom;
}

std::string ZqMolBase::GetCanonicalSmiles() const {
  // RDKit's writer stores atom ranks and the output order as properties of
  // the molecule it writes, through a const reference: on the shared graph
  // that would be a race between threads reading one molecule.
  const RDKit::ROMol copy(graph_->mol);
  return RDKit::MolToSmiles(copy);
}

ZqMCMolBase::ZqMCMolBase(const ZqMolBase& first) : ZqMolBase(first) { confs_.emplace_back(first.CreateCopy()); }

ZqMCMolBase::ZqMCMolBase(const ZqMCMolBase& other) : ZqMolBase(other), active_(other.active_) {
  for (const auto& conf : other.confs_) confs_.emplace_back(conf->CreateCopy());
}

ZqMCMolBase& ZqMCMolBase::operator=(const ZqMCMolBase& other) {
  if (this != &other) {
    ZqMCMolBase copy(other);
    ZqMolBase::operator=(copy);
    confs_ = std::move(copy.confs_);
    active_ = copy.active_;
  }
  return *this;
}

bool ZqMCMolBase::AddConf(const ZqMolBase& conformer) {
  if (!confs_.empty() && conformer.GetCanonicalSmiles() != confs_.front()->GetCanonicalSmiles()) return false;
  // An empty molecule takes its graph from its first conformer.
  if (confs_.empty() && GetNumAtoms() == 0) ZqMolBase::operator=(conformer);
  confs_.emplace_back(conformer.CreateCopy());
  return true;
}

bool ZqMCMolBase::SetActiveConf(std::size_t index) {
  if (index >= confs_.size()) return false;
  active_ = index;
  return true;
}

void ZqRemoveHydrogensKeepingRecordIndices(RDKit::RWMol& mol) {
  for (RDKit::Atom* atom : mol.atoms()) atom->setProp(kRecordAtomIndexProperty, static_cast<int>(atom->getIdx()));
  RDKit::MolOps::removeHs(mol);
}

namespace {

// Whether the SMILES has a hydrogen atom of its own ("[H]", "[2H+]"), which
// reading takes out of the graph; "[nH]" is a nitrogen with its hydrogen.
bool HasHydrogenAtom(const std::string& smiles) {
  for (std::size_t at = smiles.find('['); at != std::string::npos; at = smiles.find('[', at + 1)) {
    std::size_t i = at + 1;
    while (i < smiles.size() && std::isdigit(static_cast<unsigned char>(smiles[i]))) ++i;
    if (i < smiles.size() && smiles[i] == 'H' && (i + 1 >= smiles.size() || !std::islower(static_cast<unsigned char>(smiles[i + 1])))) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::unique_ptr<ZqMolBase> ZqMolFromSmiles(const std::string& smiles, std::string* error) {
  try {
    // Every atom takes a character: only a longer text can hold too many,
    // and then a parse without perception, which is linear, counts them.
    if (smiles.size() > ZqMaxMoleculeAtoms) {
      RDKit::SmilesParserParams plain;
      plain.sanitize = false;
      plain.removeHs = false;
      const std::unique_ptr<RDKit::RWMol> counted(RDKit::SmilesToMol(smiles, plain));
      if (counted && counted->getNumAtoms() > ZqMaxMoleculeAtoms) {
        if (error) {
          *error = "too large: " + std::to_string(counted->getNumAtoms()) + " atoms, at most " +
                   std::to_string(ZqMaxMoleculeAtoms);
        }
        return nullptr;
      }
    }
    std::unique_ptr<RDKit::RWMol> parsed;
    if (HasHydrogenAtom(smiles)) {
      // Read with the hydrogens, which are then taken out with the heavy
      // atoms' places in the SMILES kept.
      RDKit::SmilesParserParams params;
      params.removeHs = false;
      parsed.reset(RDKit::SmilesToMol(smiles, params));
      if (parsed) ZqRemoveHydrogensKeepingRecordIndices(*parsed);
    } else {
      parsed.reset(RDKit::SmilesToMol(smiles));
    }
    if (!parsed) {
      if (error) *error = "cannot parse SMILES '" + smiles + "'";
      return nullptr;
    }
    auto graph = std::make_unique<ZqMolGraph>();
    graph->mol = *parsed;
    return ZqMakeMol(std::move(graph));
  } catch (const std::exception& e) {
    if (error) *error = "cannot parse SMILES '" + smiles + "': " + e.what();
    return nullptr;
  }
}

bool ZqHasSDData(const ZqMolBase& mol, const std::string& tag) { return mol.HasSDData(tag); }
std::string ZqGetSDData(const ZqMolBase& mol, const std::string& tag) { return mol.GetSDData(tag); }
bool ZqIsHydrogen(const ZqAtomBase& atom) { return atom.GetAtomicNum() == 1; }
double ZqCalculateMolecularWeight(const ZqMolBase& mol) { return RDKit::Descriptors::calcAMW(mol.GetGraph().mol); }

}  // namespace Molkit
