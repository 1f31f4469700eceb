#include "vsepr_paths.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

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

// A path while it is walked: atoms[0..length] and the bonds between them.
struct Walk {
  int atoms[ZqVseprOptions::kMaxPathLength + 1];
  int bonds[ZqVseprOptions::kMaxPathLength];
  std::size_t length = 0;  // in bonds
};

class PathFinder {
 public:
  PathFinder(const RDKit::ROMol& mol, const ZqVseprOptions& options) : mol_(mol), options_(options) {
    const bool stereo = options.GetStereoAware();
    for (const RDKit::Atom* atom : mol.atoms()) atomTypes_.push_back(AtomType(mol, *atom, stereo));
    for (const RDKit::Bond* bond : mol.bonds()) bondTypes_.push_back(BondType(*bond, stereo));
    neighbours_.resize(mol.getNumAtoms());
    for (const RDKit::Bond* bond : mol.bonds()) {
      const RDKit::Atom& begin = *bond->getBeginAtom();
      const RDKit::Atom& end = *bond->getEndAtom();
      if (!IsHeavy(begin) || !IsHeavy(end)) continue;
      const int b = static_cast<int>(bond->getIdx());
      neighbours_[begin.getIdx()].push_back({static_cast<int>(end.getIdx()), b});
      neighbours_[end.getIdx()].push_back({static_cast<int>(begin.getIdx()), b});
    }
  }

  // Paths of lengths lower..upper; with `forced`, only those through an
  // atom marked in it.
  void Add(unsigned int lower, unsigned int upper, const std::vector<char>* forced,
           const std::function<void(const ZqVseprFeature&)>& visit) const {
    if (lower == 0) {
      for (const RDKit::Atom* atom : mol_.atoms()) {
        const int index = static_cast<int>(atom->getIdx());
        if (!IsHeavy(*atom) || (forced && !(*forced)[index])) continue;
        Walk alone;
        alone.atoms[0] = index;
        Emit(alone, visit);
      }
      if (upper == 0) return;
      lower = 1;
    }
    std::vector<char> inWalk(mol_.getNumAtoms(), 0);
    Walk walk;
    for (const RDKit::Atom* atom : mol_.atoms()) {
      if (!IsHeavy(*atom)) continue;
      walk.atoms[0] = static_cast<int>(atom->getIdx());
      inWalk[walk.atoms[0]] = 1;
      Extend(walk, inWalk, lower, upper, forced, visit);
      inWalk[walk.atoms[0]] = 0;
    }
  }

  // The environment of radius r around each heavy atom, for r from lower
  // to upper: the atoms within r bonds and the bonds that reach them. Its
  // identifier is built radius by radius from the atom's own identifier
  // and its heavy neighbours' (bond type, identifier) pairs in sorted
  // order, so that it depends on the chemistry alone, not the atom order.
  void AddEnvironments(unsigned int lower, unsigned int upper, bool members,
                       const std::function<void(const ZqVseprFeature&)>& visit) const {
    const std::size_t n = mol_.getNumAtoms();
    std::vector<std::uint64_t> ids(atomTypes_.begin(), atomTypes_.end());
    std::vector<std::vector<int>> atoms(members ? n : 0), bonds(members ? n : 0);
    for (std::size_t a = 0; a < atoms.size(); ++a) atoms[a] = {static_cast<int>(a)};
    std::vector<std::pair<std::uint32_t, std::uint64_t>> neighbours;
    std::vector<std::uint64_t> grown(n);
    for (unsigned int radius = 1; radius <= upper; ++radius) {
      std::vector<std::vector<int>> grownAtoms = atoms, grownBonds = bonds;
      for (std::size_t a = 0; a < n; ++a) {
        if (!IsHeavy(*mol_.getAtomWithIdx(static_cast<unsigned int>(a)))) continue;
        neighbours.clear();
        for (const auto& [other, bond] : neighbours_[a]) {
          neighbours.emplace_back(bondTypes_[static_cast<std::size_t>(bond)], ids[static_cast<std::size_t>(other)]);
          if (!members) continue;
          grownAtoms[a].insert(grownAtoms[a].end(), atoms[other].begin(), atoms[other].end());
          grownBonds[a].insert(grownBonds[a].end(), bonds[other].begin(), bonds[other].end());
          grownBonds[a].push_back(bond);
        }
        std::sort(neighbours.begin(), neighbours.end());
        std::uint64_t id = Mix(Mix(kEnvironmentSeed + radius) ^ ids[a]);
        for (const auto& [bondType, neighbour] : neighbours) id = Mix(Mix(id ^ bondType) ^ neighbour);
        grown[a] = id;
        if (!members) continue;
        SortUnique(grownAtoms[a]);
        SortUnique(grownBonds[a]);
      }
      ids.swap(grown);
      atoms = std::move(grownAtoms);
      bonds = std::move(grownBonds);
      if (radius < lower) continue;
      for (std::size_t a = 0; a < n; ++a) {
        if (!IsHeavy(*mol_.getAtomWithIdx(static_cast<unsigned int>(a)))) continue;
        ZqVseprFeature feature;
        feature.bin = static_cast<std::uint32_t>(ids[a] >> (64 - kBinBits));
        feature.weight = options_.GetWeightByLength() ? 2 * radius : 1;
        if (members) {
          feature.atoms = atoms[a];
          feature.bonds = bonds[a];
        }
        visit(feature);
      }
    }
  }

 private:
  static void SortUnique(std::vector<int>& v) {
    std::sort(v.begin(), v.end());
    v.erase(std::unique(v.begin(), v.end()), v.end());
  }

  // Walks on from the last atom of `walk`, one bond at a time. The paths
  // are those of RDKit's findAllPathsOfLengthsMtoN over the bonds between
  // heavy atoms (the paths the fingerprint was defined on): no atom twice,
  // except that a path of the longest length may end on an atom it has
  // passed (closing a ring, or running round one back to its own middle),
  // and each set of bonds once. Every simple path is reached from both
  // ends, every ring from each of its atoms both ways round, and a path
  // that runs round a ring both ways; one of each is kept, by a rule on
  // atom indices.
  void Extend(Walk& walk, std::vector<char>& inWalk, unsigned int lower, unsigned int upper,
              const std::vector<char>* forced, const std::function<void(const ZqVseprFeature&)>& visit) const {
    const std::size_t length = walk.length + 1;
    const int last = walk.atoms[walk.length];
    for (const auto& [next, bond] : neighbours_[static_cast<std::size_t>(last)]) {
      walk.atoms[length] = next;
      walk.bonds[length - 1] = bond;
      walk.length = length;
      if (!inWalk[next]) {
        if (length >= lower && walk.atoms[0] < next && Touches(walk, forced)) Emit(walk, visit);
        if (length < upper) {
          inWalk[next] = 1;
          Extend(walk, inWalk, lower, upper, forced, visit);
          inWalk[next] = 0;
        }
      } else if (upper > 1 && length == upper && next != walk.atoms[length - 2] && KeptClosure(walk) &&
                 Touches(walk, forced)) {
        Emit(walk, visit);
      }
      walk.length = length - 1;
    }
  }

  // A closed walk is kept in one of its forms: a ring from its smallest
  // atom towards the smaller of that atom's two ring neighbours, a ring on
  // a tail round the way whose first ring atom is the smaller.
  static bool KeptClosure(const Walk& walk) {
    const std::size_t n = walk.length;
    const int joint = walk.atoms[n];
    if (joint == walk.atoms[0]) {
      for (std::size_t i = 1; i < n; ++i) {
        if (walk.atoms[i] < joint) return false;
      }
      return walk.atoms[1] < walk.atoms[n - 1];
    }
    std::size_t j = 1;
    while (walk.atoms[j] != joint) ++j;
    return walk.atoms[j + 1] < walk.atoms[n - 1];
  }

  static bool Touches(const Walk& walk, const std::vector<char>* forced) {
    if (!forced) return true;
    for (std::size_t i = 0; i <= walk.length; ++i) {
      if ((*forced)[static_cast<std::size_t>(walk.atoms[i])]) return true;
    }
    return false;
  }

  // Atom, bond, atom, ... along the walk: 2 n + 1 codes for n bonds.
  using Spelling = std::array<std::uint32_t, 2 * ZqVseprOptions::kMaxPathLength + 1>;

  std::size_t Spell(const int* atoms, const int* bonds, std::size_t length, Spelling& spelling) const {
    for (std::size_t i = 0; i < length; ++i) {
      spelling[2 * i] = atomTypes_[static_cast<std::size_t>(atoms[i])];
      spelling[2 * i + 1] = bondTypes_[static_cast<std::size_t>(bonds[i])];
    }
    spelling[2 * length] = atomTypes_[static_cast<std::size_t>(atoms[length])];
    return 2 * length + 1;
  }

  // The smaller of a spelling and its reverse, lexicographically.
  static void SmallerDirection(Spelling& spelling, std::size_t size) {
    for (std::size_t i = 0, k = size - 1; i < k; ++i, --k) {
      if (spelling[i] == spelling[k]) continue;
      if (spelling[k] < spelling[i]) std::reverse(spelling.begin(), spelling.begin() + static_cast<std::ptrdiff_t>(size));
      return;
    }
  }

  static bool Less(const Spelling& a, const Spelling& b, std::size_t size) {
    return std::lexicographical_compare(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(size), b.begin(),
                                        b.begin() + static_cast<std::ptrdiff_t>(size));
  }

  // A path that runs into a ring and around it back to atom `joint` (a
  // ring on a tail) can go round the ring either way, and which way is
  // kept depends on the atom order. Both ways are spelt, each from either
  // end, and the smallest spelling is the path's.
  void SmallestLassoSpelling(const Walk& walk, std::size_t joint, Spelling& best) const {
    Walk other;
    const std::size_t n = walk.length;
    std::copy(walk.atoms, walk.atoms + joint + 1, other.atoms);
    std::copy(walk.bonds, walk.bonds + joint, other.bonds);
    std::size_t at = joint + 1;
    for (std::size_t i = n; i-- > joint + 1;) other.atoms[at++] = walk.atoms[i];
    other.atoms[at] = walk.atoms[joint];
    at = joint;
    for (std::size_t i = n; i-- > joint;) other.bonds[at++] = walk.bonds[i];
    Spelling second;
    const std::size_t size = Spell(walk.atoms, walk.bonds, n, best);
    Spell(other.atoms, other.bonds, n, second);
    SmallerDirection(best, size);
    SmallerDirection(second, size);
    if (Less(second, best, size)) best = second;
  }

  // A path that closes a ring has no ends: where it starts depends on the
  // atom order of the input. It is spelt from the atom and in the
  // direction that give the smallest spelling, so that the same ring
  // always gives the same feature.
  static void SmallestRingSpelling(Spelling& spelling, std::size_t size) {
    // atom, bond, atom, ..., bond, first atom again: the cycle is all but
    // the last entry.
    const std::size_t n = size - 1;
    const Spelling cycle = spelling;
    Spelling candidate;
    bool first = true;
    for (int direction = 0; direction < 2; ++direction) {
      for (std::size_t start = 0; start < n; start += 2) {
        for (std::size_t k = 0; k <= n; ++k) {
          // Forwards atom, bond, atom ...; backwards atom, the bond before
          // it, the atom before that ...
          const std::size_t at = direction == 0 ? (start + k) % n : (start + n - k) % n;
          candidate[k] = cycle[at];
        }
        if (first || Less(candidate, spelling, size)) spelling = candidate;
        first = false;
      }
    }
  }

  // The path spelt in its smaller direction and hashed: the same path read
  // from either end lands in one bin.
  void Emit(const Walk& walk, const std::function<void(const ZqVseprFeature&)>& visit) const {
    const std::size_t n = walk.length;
    Spelling spelling;
    std::size_t size = 2 * n + 1;
    // Where the last atom was passed before, if it was: a ring on a tail.
    const int* loop = n > 0 ? std::find(walk.atoms + 1, walk.atoms + n, walk.atoms[n]) : walk.atoms;
    if (n > 2 && walk.atoms[0] == walk.atoms[n]) {
      Spell(walk.atoms, walk.bonds, n, spelling);
      SmallestRingSpelling(spelling, size);
    } else if (n > 0 && loop != walk.atoms + n) {
      SmallestLassoSpelling(walk, static_cast<std::size_t>(loop - walk.atoms), spelling);
    } else {
      Spell(walk.atoms, walk.bonds, n, spelling);
      SmallerDirection(spelling, size);
    }
    std::uint64_t hash = Mix(size);
    for (std::size_t i = 0; i < size; ++i) hash = Mix(hash ^ spelling[i]);
    ZqVseprFeature path;
    path.bin = static_cast<std::uint32_t>(hash >> (64 - kBinBits));
    path.weight = options_.GetWeightByLength() ? std::max<std::uint32_t>(1, static_cast<std::uint32_t>(n)) : 1;
    path.atoms = std::span<const int>(walk.atoms, n + 1);
    path.bonds = std::span<const int>(walk.bonds, n);
    visit(path);
  }

  const RDKit::ROMol& mol_;
  const ZqVseprOptions& options_;
  std::vector<std::uint32_t> atomTypes_;
  std::vector<std::uint32_t> bondTypes_;
  // Per atom, its heavy neighbours and the bonds to them; empty for hydrogens.
  std::vector<std::vector<std::pair<int, int>>> neighbours_;
};

// Hydrogens need no path; heavy atoms that the paths missed get the
// longest shorter paths through them.
void ForcePathsOut(const PathFinder& finder, const RDKit::ROMol& mol, unsigned int lower, unsigned int upper,
                   std::vector<char>& covered, const std::function<void(const ZqVseprFeature&)>& visit) {
  for (const RDKit::Atom* atom : mol.atoms()) {
    if (!IsHeavy(*atom)) covered[atom->getIdx()] = 1;
  }
  const auto cover = [&](const ZqVseprFeature& path) {
    for (int atom : path.atoms) covered[static_cast<std::size_t>(atom)] = 1;
    visit(path);
  };
  for (int length = static_cast<int>(std::min(lower, upper + 1)) - 1; length >= 0; --length) {
    std::vector<char> missed(covered.size());
    std::transform(covered.begin(), covered.end(), missed.begin(), [](char c) { return static_cast<char>(!c); });
    if (std::none_of(missed.begin(), missed.end(), [](char m) { return m != 0; })) break;
    finder.Add(static_cast<unsigned int>(length), static_cast<unsigned int>(length), &missed, cover);
  }
}

}  // namespace

void ZqVisitVseprFeatures(const RDKit::ROMol& mol, const ZqVseprOptions& options, bool members,
                          const std::function<void(const ZqVseprFeature&)>& visit) {
  const unsigned int upper = std::min(options.GetMaxPathLength(), ZqVseprOptions::kMaxPathLength);
  const unsigned int lower = std::min(options.GetMinPathLength(), ZqVseprOptions::kMaxPathLength);
  const PathFinder finder(mol, options);
  // The atoms on a path, for ForcePathsOut.
  std::vector<char> covered(mol.getNumAtoms(), 0);
  const auto visitPath = [&](const ZqVseprFeature& path) {
    for (int atom : path.atoms) covered[static_cast<std::size_t>(atom)] = 1;
    visit(path);
  };
  if (lower <= upper) finder.Add(lower, upper, nullptr, visitPath);
  if (options.GetForcePathsOut()) ForcePathsOut(finder, mol, lower, upper, covered, visit);
  // Environments whose diameter, twice the radius, is a path length.
  finder.AddEnvironments(std::max(1u, (lower + 1) / 2), upper / 2, members, visit);
}

}  // namespace Printex
