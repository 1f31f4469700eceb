// Fingerprints of several kinds behind one type, for a distance chosen by
// number (the molecular models' ZqMolKrigePrintexDistFxn).
//
//   Printex::ZqFingerPrint a, b;
//   if (Printex::ZqMakeFP(a, molA, Printex::kZqMorganFP) && Printex::ZqMakeFP(b, molB, Printex::kZqMorganFP))
//     similarity = Printex::ZqTanimoto(a, b);
//
// The kinds: the Vsepr fingerprint with default options (weighted paths,
// see vsepr_fingerprint.h); RDKit's Morgan fingerprint of radius 2 folded
// to 2048 bits (circular environments, ECFP4-like); RDKit's topological
// fingerprint of branched paths of 1 to 7 bonds in 2048 bits.
#pragma once

#include <cstdint>
#include <vector>

#include "varimo/platform/molkit/molecule.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Printex {

enum ZqFingerPrintType : unsigned int {
  kZqVseprFP = 0,
  kZqMorganFP = 1,
  kZqTopologicalFP = 2,
};

class ZqFingerPrint {
 public:
  static constexpr unsigned int kNumBits = 2048;

  // No kind yet: ZqTanimoto with it is 0.
  ZqFingerPrint() = default;
  bool IsSet() const { return set_; }
  unsigned int GetType() const { return type_; }
  // The bits of a bit fingerprint (64 to a word), empty for Vsepr.
  const std::vector<std::uint64_t>& GetBits() const { return bits_; }
  const ZqVseprFingerprint& GetVsepr() const { return vsepr_; }

 private:
  friend bool ZqMakeFP(ZqFingerPrint& fp, const Molkit::ZqMolBase& mol, unsigned int type);
  bool set_ = false;
  unsigned int type_ = 0;
  std::vector<std::uint64_t> bits_;
  ZqVseprFingerprint vsepr_;
};

// Makes the fingerprint of `type` (a ZqFingerPrintType); false, leaving
// `fp` unset, for an unknown type or a molecule without heavy atoms.
bool ZqMakeFP(ZqFingerPrint& fp, const Molkit::ZqMolBase& mol, unsigned int type);
// The Tanimoto coefficient in [0, 1]: common over combined bits, or the
// Vsepr coefficient. 0 for fingerprints of different kinds or unset ones;
// 1 for two of one kind without bits.
double ZqTanimoto(const ZqFingerPrint& a, const ZqFingerPrint& b);

}  // namespace Printex
