// Feeds arbitrary bytes to one molecule reader (chosen at build time by
// VARIMO_FUZZ_READER: ZqReadSDText or ZqReadSmilesText). A record may be
// left out, but reading must never crash, hang or leak; every record left
// out is named, and every molecule read is whole: its atoms, bonds,
// positions, data and canonical SMILES can be asked for, and a copy has the
// same graph.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/molkit/molecule.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace {

void CheckWhole(const Molkit::ZqMolBase& mol) {
  for (const Molkit::ZqAtomBase& atom : mol.GetAtomIter()) {
    if (&atom.GetParent() != &mol) __builtin_trap();
    (void)atom.GetSymbol();
    (void)atom.GetTotalNumHs();
    (void)atom.IsInRing();
  }
  for (std::size_t b = 0; b < mol.GetNumBonds(); ++b) {
    const Molkit::ZqBondBase& bond = mol.GetBond(b);
    if (bond.GetBeginAtomIdx() >= mol.GetNumAtoms() || bond.GetEndAtomIdx() >= mol.GetNumAtoms()) __builtin_trap();
  }
  if (mol.HasCoordinates()) {
    for (std::size_t a = 0; a < mol.GetNumAtoms(); ++a) (void)mol.GetAtomPosition(a);
  }
  for (const auto& [tag, text] : mol.GetSDDataFields()) {
    // Setting a tag again replaces its text, so each tag is there once.
    if (Molkit::ZqGetSDData(mol, tag) != text) __builtin_trap();
  }
  if (!std::isfinite(Molkit::ZqCalculateMolecularWeight(mol))) __builtin_trap();
  const std::unique_ptr<Molkit::ZqMolBase> copy(mol.CreateCopy());
  if (copy->GetCanonicalSmiles() != mol.GetCanonicalSmiles()) __builtin_trap();
  if (copy->GetSDDataFields() != mol.GetSDDataFields()) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<std::string> errors;
  Molkit::VARIMO_FUZZ_READER(std::string(reinterpret_cast<const char*>(data), size), mols, errors);
  for (const auto& mol : mols) {
    if (!mol) __builtin_trap();
    CheckWhole(*mol);
  }
  for (const std::string& error : errors) {
    if (error.rfind("record ", 0) != 0) __builtin_trap();
  }
  return 0;
}
