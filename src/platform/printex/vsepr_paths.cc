#include "vsepr_paths.h"

#include <GraphMol/Subgraphs/Subgraphs.h>

#include <algorithm>
#include <string>

namespace Printex {
namespace {

static_assert((ZqVseprFingerprint::kNumBins & (ZqVseprFingerprint::kNumBins - 1)) == 0,
              "bins are taken from the top bits of a hash");
constexpr int kBinBits = 12;
static_assert(ZqVseprFingerprint::kNumBins == (std::size_t{1} << kBinBits), "kBinBits matches kNumBins");

// Starts the identifiers of atom environments, apart from path hashes.
constexpr std::uint64_t kEnvironmentSeed = 0x5EED000000000000ULL;

// The finaliser of splitmix64: every input bit moves about half the
// output bits, so that neighbouring type codes land in unrelated bins.
std::uint64_t Mix(std::uint64_t h) {
  h = (h ^ (h >> 30)) * 0xbf58476d1ce4e5b9ULL;
  h = (h ^ (h >> 27)) * 0x94d049bb133111ebULL;
  return h ^ (h >> 31);
}

bool IsHeavy(const RDKit::Atom& atom) { return atom.getAtomicNum() != 1; }

std::uint32_t AtomType(const RDKit::ROMol& mol, const RDKit::Atom& atom, bool stereo) {
  unsigned int heavyNeighbours = 0;
  for (const RDKit::Atom* neighbour : mol.atomNeighbors(&atom)) heavyNeighbours += IsHeavy(*neighbour) ? 1 : 0;
  const unsigned int hydrogens = std::min(atom.getTotalNumHs(true), 3u);
  const int charge = std::clamp(atom.getFormalCharge(), -3, 3) + 3;
  const RDKit::RingInfo* rings = mol.getRingInfo();
  const bool inRing = rings->isInitialized() && rings->numAtomRings(atom.getIdx()) > 0;
  std::uint32_t type = static_cast<std::uint32_t>(atom.getAtomicNum()) & 0xFFu;
  type |= (atom.getIsAromatic() ? 1u : 0u) << 8;
  type |= std::min(heavyNeighbours, 7u) << 9;
  type |= hydrogens << 12;
  type |= static_cast<std::uint32_t>(charge) << 14;
  type |= (inRing ? 1u : 0u) << 17;
  std::string cip;
  if (stereo && atom.getPropIfPresent(RDKit::common_properties::_CIPCode, cip)) {
    type |= (cip == "R" ? 1u : cip == "S" ? 2u : 0u) << 18;
  }
  return type;
}

std::uint32_t BondType(const RDKit::Bond& bond, bool stereo) {
  std::uint32_t type = 5;
  switch (bond.getBondType()) {
    case RDKit::Bond::SINGLE: type = 1; break;
    case RDKit::Bond::DOUBLE: type = 2; break;
    case RDKit::Bond::TRIPLE: type = 3; break;
    case RDKit::Bond::AROMATIC: type = 4; break;
    default: break;
  }
  if (stereo) {
    if (bond.getStereo() == RDKit::Bond::STEREOE) type |= 1u << 4;
    if (bond.getStereo() == RDKit::Bond::STEREOZ) type |= 2u << 4;
  }
  return type;
}

class PathFinder {
 public:
  PathFinder(const RDKit::ROMol& mol, const ZqVseprOptions& options) : mol_(mol), options_(options) {
    const bool stereo = options.GetStereoAware();
    for (const RDKit::Atom* atom : mol.atoms()) atomTypes_.push_back(AtomType(mol, *atom, stereo));
    for (const RDKit::Bond* bond : mol.bonds()) bondTypes_.push_back(BondType(*bond, stereo));
  }

  // Paths of lengths lower..upper; with `forced`, only those through an
  // atom marked in it.
  void Add(unsigned int lower, unsigned int upper, const std::vector<char>* forced,
           std::vector<ZqVseprFeature>& paths) const {
    if (lower == 0) {
      for (const RDKit::Atom* atom : mol_.atoms()) {
        const int index = static_cast<int>(atom->getIdx());
        if (!IsHeavy(*atom) || (forced && !(*forced)[index])) continue;
        paths.push_back(MakePath({index}, {}));
      }
      if (upper == 0) return;
      lower = 1;
    }
    const RDKit::INT_PATH_LIST_MAP found = RDKit::findAllPathsOfLengthsMtoN(mol_, lower, upper, true, false);
    for (const auto& [length, list] : found) {
      for (const RDKit::PATH_TYPE& bonds : list) {
        std::vector<int> atoms = AtomsOf(bonds);
        if (forced && std::none_of(atoms.begin(), atoms.end(), [&](int a) { return (*forced)[a] != 0; })) continue;
        paths.push_back(MakePath(std::move(atoms), bonds));
      }
    }
  }

  // The environment of radius r around each heavy atom, for r from lower
  // to upper: the atoms within r bonds and the bonds that reach them. Its
  // identifier is built radius by radius from the atom's own identifier
  // and its heavy neighbours' (bond type, identifier) pairs in sorted
  // order, so that it depends on the chemistry alone, not the atom order.
  void AddEnvironments(unsigned int lower, unsigned int upper, std::vector<ZqVseprFeature>& features) const {
    const std::size_t n = mol_.getNumAtoms();
    std::vector<std::uint64_t> ids(atomTypes_.begin(), atomTypes_.end());
    std::vector<std::vector<int>> atoms(n), bonds(n);
    for (std::size_t a = 0; a < n; ++a) atoms[a] = {static_cast<int>(a)};
    std::vector<std::pair<std::uint32_t, std::uint64_t>> neighbours;
    for (unsigned int radius = 1; radius <= upper; ++radius) {
      std::vector<std::uint64_t> grown(n);
      std::vector<std::vector<int>> grownAtoms = atoms, grownBonds = bonds;
      for (const RDKit::Atom* atom : mol_.atoms()) {
        if (!IsHeavy(*atom)) continue;
        const unsigned int a = atom->getIdx();
        neighbours.clear();
        for (const RDKit::Bond* bond : mol_.atomBonds(atom)) {
          const unsigned int other = bond->getOtherAtomIdx(a);
          if (!IsHeavy(*mol_.getAtomWithIdx(other))) continue;
          neighbours.emplace_back(bondTypes_[bond->getIdx()], ids[other]);
          grownAtoms[a].insert(grownAtoms[a].end(), atoms[other].begin(), atoms[other].end());
          grownBonds[a].insert(grownBonds[a].end(), bonds[other].begin(), bonds[other].end());
          grownBonds[a].push_back(static_cast<int>(bond->getIdx()));
        }
        std::sort(neighbours.begin(), neighbours.end());
        std::uint64_t id = Mix(Mix(kEnvironmentSeed + radius) ^ ids[a]);
        for (const auto& [bondType, neighbour] : neighbours) id = Mix(Mix(id ^ bondType) ^ neighbour);
        grown[a] = id;
        SortUnique(grownAtoms[a]);
        SortUnique(grownBonds[a]);
      }
      ids = std::move(grown);
      atoms = std::move(grownAtoms);
      bonds = std::move(grownBonds);
      if (radius < lower) continue;
      for (const RDKit::Atom* atom : mol_.atoms()) {
        if (!IsHeavy(*atom)) continue;
        const unsigned int a = atom->getIdx();
        ZqVseprFeature feature;
        feature.bin = static_cast<std::uint32_t>(ids[a] >> (64 - kBinBits));
        feature.weight = options_.GetWeightByLength() ? 2 * radius : 1;
        feature.atoms = atoms[a];
        feature.bonds = bonds[a];
        features.push_back(std::move(feature));
      }
    }
  }

 private:
  static void SortUnique(std::vector<int>& v) {
    std::sort(v.begin(), v.end());
    v.erase(std::unique(v.begin(), v.end()), v.end());
  }

  // The atoms along a bond path, in order.
  std::vector<int> AtomsOf(const RDKit::PATH_TYPE& bonds) const {
    const RDKit::Bond* first = mol_.getBondWithIdx(bonds.front());
    int atom = static_cast<int>(first->getBeginAtomIdx());
    if (bonds.size() > 1) {
      const RDKit::Bond* second = mol_.getBondWithIdx(bonds[1]);
      if (second->getBeginAtomIdx() == static_cast<unsigned int>(atom) ||
          second->getEndAtomIdx() == static_cast<unsigned int>(atom)) {
        atom = static_cast<int>(first->getEndAtomIdx());
      }
    }
    std::vector<int> atoms{atom};
    for (int bond : bonds) {
      atom = static_cast<int>(mol_.getBondWithIdx(bond)->getOtherAtomIdx(atom));
      atoms.push_back(atom);
    }
    return atoms;
  }

  // Atom, bond, atom, ... along the path.
  std::vector<std::uint32_t> Spell(const std::vector<int>& atoms, const std::vector<int>& bonds) const {
    std::vector<std::uint32_t> spelling;
    spelling.reserve(atoms.size() + bonds.size());
    for (std::size_t i = 0; i < atoms.size(); ++i) {
      spelling.push_back(atomTypes_[atoms[i]]);
      if (i < bonds.size()) spelling.push_back(bondTypes_[bonds[i]]);
    }
    return spelling;
  }

  // A path that runs into a ring and around it back to atom `joint` (a
  // ring on a tail) can go round the ring either way, and which way RDKit
  // reports depends on the atom order. Both ways are spelt, each from
  // either end, and the smallest spelling is the path's.
  std::vector<std::uint32_t> SmallestLassoSpelling(const std::vector<int>& atoms, const std::vector<int>& bonds,
                                                   std::size_t joint) const {
    std::vector<int> otherAtoms(atoms.begin(), atoms.begin() + static_cast<std::ptrdiff_t>(joint) + 1);
    std::vector<int> otherBonds(bonds.begin(), bonds.begin() + static_cast<std::ptrdiff_t>(joint));
    for (std::size_t i = atoms.size() - 1; i-- > joint + 1;) otherAtoms.push_back(atoms[i]);
    otherAtoms.push_back(atoms[joint]);
    for (std::size_t i = bonds.size(); i-- > joint;) otherBonds.push_back(bonds[i]);
    std::vector<std::uint32_t> best;
    for (const std::vector<std::uint32_t>& walk : {Spell(atoms, bonds), Spell(otherAtoms, otherBonds)}) {
      const std::vector<std::uint32_t> reversed(walk.rbegin(), walk.rend());
      if (best.empty() || walk < best) best = walk;
      if (reversed < best) best = reversed;
    }
    return best;
  }

  // A path that closes a ring has no ends: where it starts depends on the
  // atom order of the input. It is spelt from the atom and in the
  // direction that give the smallest spelling, so that the same ring
  // always gives the same feature.
  static std::vector<std::uint32_t> SmallestRingSpelling(const std::vector<std::uint32_t>& spelling) {
    // atom, bond, atom, ..., bond, first atom again: the cycle is all but
    // the last entry.
    std::vector<std::uint32_t> cycle(spelling.begin(), spelling.end() - 1);
    const std::size_t n = cycle.size();
    std::vector<std::uint32_t> best;
    std::vector<std::uint32_t> candidate(n + 1);
    for (int direction = 0; direction < 2; ++direction) {
      for (std::size_t start = 0; start < n; start += 2) {
        for (std::size_t k = 0; k <= n; ++k) {
          // Forwards atom, bond, atom ...; backwards atom, the bond before
          // it, the atom before that ...
          const std::size_t at = direction == 0 ? (start + k) % n : (start + n - k) % n;
          candidate[k] = cycle[at];
        }
        if (best.empty() || candidate < best) best = candidate;
      }
    }
    return best;
  }

  // The path spelt in its smaller direction and hashed: the same path read
  // from either end lands in one bin.
  ZqVseprFeature MakePath(std::vector<int> atoms, std::vector<int> bonds) const {
    std::vector<std::uint32_t> spelling = Spell(atoms, bonds);
    const auto loop = std::find(atoms.begin() + 1, atoms.end() - 1, atoms.back());
    if (bonds.size() > 2 && atoms.front() == atoms.back()) {
      spelling = SmallestRingSpelling(spelling);
    } else if (loop != atoms.end() - 1) {
      spelling = SmallestLassoSpelling(atoms, bonds, static_cast<std::size_t>(loop - atoms.begin()));
    } else {
      spelling = std::min(spelling, std::vector<std::uint32_t>(spelling.rbegin(), spelling.rend()));
    }
    std::uint64_t hash = Mix(spelling.size());
    for (std::uint32_t code : spelling) hash = Mix(hash ^ code);
    ZqVseprFeature path;
    path.bin = static_cast<std::uint32_t>(hash >> (64 - kBinBits));
    path.weight = options_.GetWeightByLength() ? std::max<std::uint32_t>(1, bonds.size()) : 1;
    path.atoms = std::move(atoms);
    path.bonds = std::move(bonds);
    return path;
  }

  const RDKit::ROMol& mol_;
  const ZqVseprOptions& options_;
  std::vector<std::uint32_t> atomTypes_;
  std::vector<std::uint32_t> bondTypes_;
};

// Hydrogens need no path; heavy atoms that the paths missed get the
// longest shorter paths through them.
void ForcePathsOut(const PathFinder& finder, const RDKit::ROMol& mol, unsigned int lower, unsigned int upper,
                   std::vector<ZqVseprFeature>& paths) {
  std::vector<char> covered(mol.getNumAtoms(), 0);
  for (const RDKit::Atom* atom : mol.atoms()) covered[atom->getIdx()] = IsHeavy(*atom) ? 0 : 1;
  for (const ZqVseprFeature& path : paths) {
    for (int atom : path.atoms) covered[atom] = 1;
  }
  for (int length = static_cast<int>(std::min(lower, upper + 1)) - 1; length >= 0; --length) {
    std::vector<char> missed(covered.size());
    std::transform(covered.begin(), covered.end(), missed.begin(), [](char c) { return static_cast<char>(!c); });
    if (std::none_of(missed.begin(), missed.end(), [](char m) { return m != 0; })) break;
    const std::size_t before = paths.size();
    finder.Add(static_cast<unsigned int>(length), static_cast<unsigned int>(length), &missed, paths);
    for (std::size_t p = before; p < paths.size(); ++p) {
      for (int atom : paths[p].atoms) covered[atom] = 1;
    }
  }
}

}  // namespace

std::vector<ZqVseprFeature> ZqFindVseprFeatures(const RDKit::ROMol& mol, const ZqVseprOptions& options) {
  const unsigned int upper = std::min(options.GetMaxPathLength(), ZqVseprOptions::kMaxPathLength);
  const unsigned int lower = std::min(options.GetMinPathLength(), ZqVseprOptions::kMaxPathLength);
  const PathFinder finder(mol, options);
  std::vector<ZqVseprFeature> features;
  if (lower <= upper) finder.Add(lower, upper, nullptr, features);
  if (options.GetForcePathsOut()) ForcePathsOut(finder, mol, lower, upper, features);
  // Environments whose diameter, twice the radius, is a path length.
  finder.AddEnvironments(std::max(1u, (lower + 1) / 2), upper / 2, features);
  return features;
}

}  // namespace Printex
