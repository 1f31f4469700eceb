// The Vsepr fingerprint: a weighted fingerprint of the bond paths and atom
// environments of a molecule, the default similarity of the molecular
// models.
//
//   Printex::ZqVseprOptions options;                 // features of 1 to 6 bonds
//   Printex::ZqVseprFingerprint a(molA, options), b(molB, options);
//   double t = a.GetTanimoto(b);                     // in [0, 1]
//
// Design. Features come in two families, each hashed into one of kNumBins
// bins. Hydrogens never enter a feature, so explicit and implicit
// hydrogens give one fingerprint.
// - Paths: every linear path of MinPathLength..MaxPathLength bonds between
//   heavy atoms (RDKit's findAllPathsOfLengthsMtoN), spelt as the
//   alternating sequence of its atom and bond types, read in whichever
//   direction gives the smaller sequence. RDKit closes a ring only with a
//   path of the longest length: such a path, and a path that runs round a
//   ring back to its own middle, is spelt from the atom and direction that
//   give the smallest spelling, so that a molecule's fingerprint never
//   depends on the order of its atoms in the file.
// - Environments: around each heavy atom, the atoms within r bonds, for
//   every radius r whose diameter 2r is one of the path lengths (r >= 1).
//   An environment's identifier grows radius by radius from its centre's
//   and its heavy neighbours' (bond type, identifier) pairs, in sorted
//   order. Paths see chains and rings; environments see branching, which
//   no single path does (an isopropyl and a propyl share all their paths
//   of one bond).
// An atom's type is its element, aromaticity, number of heavy neighbours,
// hydrogen count (up to 3), formal charge and ring membership; a bond's
// type is its order.
//
// A bin weighs as much as the heaviest feature hashed into it: 1, or the
// feature's size with WeightByLength. Summing repeated features instead
// was measured and lost (0.008 in cross-validated RMSE on bzr, 0.001 on
// the larger series below).
//
// The similarity is the weighted Tanimoto (Ruzicka) coefficient,
// sum(min(a, b)) / sum(max(a, b)) over the bins, in [0, 1]. Fingerprints
// of molecules, atoms and bonds keep their weights as bytes, which makes
// the coefficient exact integer arithmetic over 4 KiB: identical
// fingerprints compare to exactly 1, so that the kriging engine folds them
// into one element, and a comparison is about a thousand vector instructions.
// 4096 bins keep the features of a drug-sized molecule (a few hundred)
// mostly apart; 2048 bins cost 0.003 to 0.02 in cross-validated RMSE.
// Scaled and summed fingerprints, which the contributions of a prediction
// are made of, hold real weights instead.
//
// An atom's fingerprint holds the features of its molecule that contain
// it, and a bond's those that contain it: their overlap with a molecule's
// fingerprint says how much of that molecule the atom or bond explains.
//
// The options:
// - MaxPathLength, MinPathLength: the path lengths in bonds, and the
//   diameters of the environments; 0 makes each heavy atom a feature of
//   its own. Both are cut to kMaxPathLength.
// - ForcePathsOut: an atom that no path of the chosen lengths reaches (in a
//   molecule too small for them, or an ion on its own) is given the longest
//   shorter paths through it, down to the atom alone. Every heavy atom then
//   has a feature, and every molecule with heavy atoms a fingerprint.
// - WeightByLength: a path of n bonds weighs n instead of 1 (an atom alone
//   weighs 1), an environment its diameter, so that the larger shapes count
//   for more than the atom pairs that every molecule shares.
// - StereoAware: atom types carry the CIP label (R or S) and double bonds
//   their E or Z label, as RDKit assigned them when reading the molecule,
//   so that stereoisomers differ.
//
// Defaults: features of 1 to 6 bonds, paths forced out, unweighted, stereo
// blind, chosen by 5-fold cross-validation of pIC50 (two seeds) on two
// series: bzr (163 molecules) and a series of 1017 sulfonamides
// (CHEMBL2321810). Mean RMSE for maximum lengths 4, 5, 6, 7: 0.774, 0.781,
// 0.792, 0.796 on bzr and 0.524, 0.517, 0.506, 0.504 on the larger series.
// Six bonds span a ring with its substituent; seven cost a third more time
// for little. Paths alone, with summed weights in 1024 bins, gave 0.820 and
// 0.511. Atoms as features (minimum 0) and stereo changed the RMSE by less
// than 0.005; weighting by length gained 0.003 on the larger series and
// lost 0.012 on bzr. Stereo is often missing or arbitrary in activity
// files, so it stays off.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "varimo/platform/molkit/molecule.h"

namespace Printex {

class ZqVseprOptions {
 public:
  static constexpr unsigned int kMaxPathLength = 10;

  unsigned int GetMaxPathLength() const { return maxPathLength_; }
  void SetMaxPathLength(unsigned int length) { maxPathLength_ = length; }
  unsigned int GetMinPathLength() const { return minPathLength_; }
  void SetMinPathLength(unsigned int length) { minPathLength_ = length; }
  bool GetForcePathsOut() const { return forcePathsOut_; }
  void SetForcePathsOut(bool force) { forcePathsOut_ = force; }
  bool GetWeightByLength() const { return weightByLength_; }
  void SetWeightByLength(bool weight) { weightByLength_ = weight; }
  bool GetStereoAware() const { return stereoAware_; }
  void SetStereoAware(bool aware) { stereoAware_ = aware; }

  bool operator==(const ZqVseprOptions& other) const;
  bool operator!=(const ZqVseprOptions& other) const { return !(*this == other); }

 private:
  unsigned int maxPathLength_ = 6;
  unsigned int minPathLength_ = 1;
  bool forcePathsOut_ = true;
  bool weightByLength_ = false;
  bool stereoAware_ = false;
};

class ZqVseprFingerprint {
 public:
  static constexpr std::size_t kNumBins = 4096;
  // The version of the features, their spelling and hashing. Files that
  // keep fingerprints (model files) store it and trust only fingerprints of
  // this version: raise it with any change that alters a fingerprint.
  static constexpr unsigned int kVersion = 1;

  // A molecule's fingerprint from its byte weights, one per bin, as
  // GetWeight gives them back; empty for weights of another length.
  static ZqVseprFingerprint FromBytes(std::vector<std::uint8_t> bytes, const ZqVseprOptions& options);

  // Empty: no weight anywhere, default options.
  ZqVseprFingerprint() = default;
  ZqVseprFingerprint(const Molkit::ZqMolBase& mol, const ZqVseprOptions& options) { Setup(mol, options); }
  ZqVseprFingerprint(const Molkit::ZqAtomBase& atom, const ZqVseprOptions& options) { Setup(atom, options); }
  ZqVseprFingerprint(const Molkit::ZqBondBase& bond, const ZqVseprOptions& options) { Setup(bond, options); }

  // Each replaces the fingerprint. False, leaving it empty, for a molecule
  // without heavy atoms, a hydrogen atom or a bond to one.
  bool Setup(const Molkit::ZqMolBase& mol, const ZqVseprOptions& options);
  bool Setup(const Molkit::ZqAtomBase& atom, const ZqVseprOptions& options);
  bool Setup(const Molkit::ZqBondBase& bond, const ZqVseprOptions& options);

  // Multiplies every weight.
  ZqVseprFingerprint& Scale(double factor);
  // Bin-wise sum and minimum. The result has the options of the left
  // operand, or of the right one when the left is empty.
  ZqVseprFingerprint operator+(const ZqVseprFingerprint& other) const;
  ZqVseprFingerprint& operator+=(const ZqVseprFingerprint& other);
  ZqVseprFingerprint operator&(const ZqVseprFingerprint& other) const;

  // The sum of the weights.
  double GetVolume() const;
  const ZqVseprOptions& GetOptions() const { return options_; }
  // The weighted Tanimoto coefficient, in [0, 1]; weights below zero count
  // as zero. Two fingerprints without weight are alike: 1.
  double GetTanimoto(const ZqVseprFingerprint& other) const;

  bool IsEmpty() const { return bytes_.empty() && weights_.empty(); }
  double GetWeight(std::size_t bin) const;

 private:
  friend std::vector<ZqVseprFingerprint> ZqMakeVseprAtomFingerprints(const Molkit::ZqMolBase& mol,
                                                                     const ZqVseprOptions& options);
  void SetBytes(std::vector<std::uint8_t> bytes, const ZqVseprOptions& options);
  void MakeReal();
  template <class Op>
  ZqVseprFingerprint Combine(const ZqVseprFingerprint& other, Op op) const;

  // Byte weights of a molecule, atom or bond (and their minimum), or real
  // weights, or neither when empty.
  std::vector<std::uint8_t> bytes_;
  // The same bytes as bits when all are 0 or 1, for fast comparisons.
  std::vector<std::uint64_t> bits_;
  std::vector<double> weights_;
  std::uint32_t byteVolume_ = 0;
  ZqVseprOptions options_;
};

// The fingerprint of every atom of the molecule, by atom index, from one
// search of its paths: what Setup on each atom gives, for the cost of one.
std::vector<ZqVseprFingerprint> ZqMakeVseprAtomFingerprints(const Molkit::ZqMolBase& mol,
                                                            const ZqVseprOptions& options);

// Makes the molecule's fingerprint and keeps it on the molecule, for
// ZqGetVseprTanimoto; false, storing nothing, as Setup.
bool ZqPrepVsepr(Molkit::ZqMolBase& mol, const ZqVseprOptions& options);
// The fingerprint that ZqPrepVsepr stored, or null.
const ZqVseprFingerprint* ZqGetVseprFingerprint(const Molkit::ZqMolBase& mol);
// The Tanimoto coefficient of the stored fingerprints; `errorValue` when
// either molecule has none.
double ZqGetVseprTanimoto(const Molkit::ZqMolBase& a, const Molkit::ZqMolBase& b, double errorValue);

}  // namespace Printex
