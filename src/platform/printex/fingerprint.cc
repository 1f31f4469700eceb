#include "varimo/platform/printex/fingerprint.h"

#include <DataStructs/ExplicitBitVect.h>
#include <GraphMol/Fingerprints/Fingerprints.h>
#include <GraphMol/Fingerprints/MorganFingerprints.h>

#include <bitset>
#include <memory>

#include "../molkit/mol_graph.h"

namespace Printex {
namespace {

std::vector<std::uint64_t> PackBits(const ExplicitBitVect& bits) {
  std::vector<std::uint64_t> words((bits.getNumBits() + 63) / 64, 0);
  std::vector<int> on;
  bits.getOnBits(on);
  for (int bit : on) words[bit / 64] |= std::uint64_t{1} << (bit % 64);
  return words;
}

int PopCount(std::uint64_t word) { return static_cast<int>(std::bitset<64>(word).count()); }

}  // namespace

bool ZqMakeFP(ZqFingerPrint& fp, const Molkit::ZqMolBase& mol, unsigned int type) {
  fp = ZqFingerPrint();
  if (mol.GetNumHeavyAtoms() == 0) return false;
  const RDKit::ROMol& graph = mol.GetGraph().mol;
  switch (type) {
    case kZqVseprFP:
      if (!fp.vsepr_.Setup(mol, ZqVseprOptions())) return false;
      break;
    case kZqMorganFP: {
      const std::unique_ptr<ExplicitBitVect> bits(
          RDKit::MorganFingerprints::getFingerprintAsBitVect(graph, 2, ZqFingerPrint::kNumBits));
      fp.bits_ = PackBits(*bits);
      break;
    }
    case kZqTopologicalFP: {
      const std::unique_ptr<ExplicitBitVect> bits(RDKit::RDKFingerprintMol(graph, 1, 7, ZqFingerPrint::kNumBits));
      fp.bits_ = PackBits(*bits);
      break;
    }
    default:
      return false;
  }
  fp.set_ = true;
  fp.type_ = type;
  return true;
}

double ZqTanimoto(const ZqFingerPrint& a, const ZqFingerPrint& b) {
  if (!a.IsSet() || !b.IsSet() || a.GetType() != b.GetType()) return 0.0;
  if (a.GetType() == kZqVseprFP) return a.GetVsepr().GetTanimoto(b.GetVsepr());
  int common = 0;
  int combined = 0;
  for (std::size_t i = 0; i < a.GetBits().size(); ++i) {
    common += PopCount(a.GetBits()[i] & b.GetBits()[i]);
    combined += PopCount(a.GetBits()[i] | b.GetBits()[i]);
  }
  return combined == 0 ? 1.0 : static_cast<double>(common) / combined;
}

}  // namespace Printex
