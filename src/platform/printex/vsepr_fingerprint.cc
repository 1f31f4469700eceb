#include "varimo/platform/printex/vsepr_fingerprint.h"

#include <algorithm>
#include <bit>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "../molkit/mol_graph.h"
#include "varimo/platform/corvane/generic_data.h"
#include "vsepr_paths.h"

namespace Printex {
namespace {

constexpr std::size_t kBins = ZqVseprFingerprint::kNumBins;

// sum(min(a, b)) over the bins: the heart of every comparison. SSE2 takes
// sixteen bins per instruction and sums them with one SAD.
std::uint32_t SumOfMinima(const std::uint8_t* a, const std::uint8_t* b) {
#if defined(__SSE2__)
  static_assert(kBins % 32 == 0, "two vectors per step");
  const __m128i zero = _mm_setzero_si128();
  __m128i sum0 = zero;
  __m128i sum1 = zero;
  for (std::size_t i = 0; i < kBins; i += 32) {
    const __m128i a0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i));
    const __m128i b0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
    const __m128i a1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i + 16));
    const __m128i b1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i + 16));
    sum0 = _mm_add_epi64(sum0, _mm_sad_epu8(_mm_min_epu8(a0, b0), zero));
    sum1 = _mm_add_epi64(sum1, _mm_sad_epu8(_mm_min_epu8(a1, b1), zero));
  }
  alignas(16) std::uint64_t lanes[2];
  _mm_store_si128(reinterpret_cast<__m128i*>(lanes), _mm_add_epi64(sum0, sum1));
  return static_cast<std::uint32_t>(lanes[0] + lanes[1]);
#else
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < kBins; ++i) sum += std::min(a[i], b[i]);
  return sum;
#endif
}

// A bin weighs as much as the heaviest feature hashed into it.
void Mark(std::vector<std::uint8_t>& bytes, const ZqVseprFeature& feature) {
  bytes[feature.bin] = std::max(bytes[feature.bin], static_cast<std::uint8_t>(feature.weight));
}

// Fingerprints whose bins all weigh 0 or 1 (the default, unweighted
// features) are also kept as bits: their sum of minima is the number of
// bits set in both, eight times fewer words to read than bytes, counted by
// the POPCNT instruction where the processor has it.
#if defined(__x86_64__) && (defined(__clang__) ? __clang_major__ >= 14 : defined(__GNUC__))
#define VARIMO_POPCNT_CLONES __attribute__((target_clones("popcnt", "default")))
#else
#define VARIMO_POPCNT_CLONES
#endif

constexpr std::size_t kWords = kBins / 64;

VARIMO_POPCNT_CLONES std::uint32_t CommonBits(const std::uint64_t* a, const std::uint64_t* b) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < kWords; ++i) sum += static_cast<std::uint32_t>(std::popcount(a[i] & b[i]));
  return sum;
}

// The byte weights of the molecule's features that `select` takes.
template <class Select>
std::vector<std::uint8_t> FeatureBytes(const Molkit::ZqMolBase& mol, const ZqVseprOptions& options, Select select) {
  std::vector<std::uint8_t> bytes(kBins, 0);
  for (const ZqVseprFeature& feature : ZqFindVseprFeatures(mol.GetGraph().mol, options)) {
    if (select(feature)) Mark(bytes, feature);
  }
  return bytes;
}

unsigned int FingerprintTag() {
  static const unsigned int tag = Corvane::ZqGetTag("ZqVseprFingerprint");
  return tag;
}

}  // namespace

bool ZqVseprOptions::operator==(const ZqVseprOptions& other) const {
  return maxPathLength_ == other.maxPathLength_ && minPathLength_ == other.minPathLength_ &&
         forcePathsOut_ == other.forcePathsOut_ && weightByLength_ == other.weightByLength_ &&
         stereoAware_ == other.stereoAware_;
}

void ZqVseprFingerprint::SetBytes(std::vector<std::uint8_t> bytes, const ZqVseprOptions& options) {
  options_ = options;
  weights_.clear();
  byteVolume_ = 0;
  for (std::uint8_t b : bytes) byteVolume_ += b;
  // No weight anywhere is the empty fingerprint, whatever made it.
  bits_.clear();
  if (byteVolume_ == 0) {
    bytes_.clear();
    return;
  }
  bytes_ = std::move(bytes);
  if (std::all_of(bytes_.begin(), bytes_.end(), [](std::uint8_t b) { return b <= 1; })) {
    bits_.assign(kWords, 0);
    for (std::size_t i = 0; i < kBins; ++i) bits_[i / 64] |= static_cast<std::uint64_t>(bytes_[i]) << (i % 64);
  }
}

ZqVseprFingerprint ZqVseprFingerprint::FromBytes(std::vector<std::uint8_t> bytes, const ZqVseprOptions& options) {
  ZqVseprFingerprint fp;
  fp.SetBytes(bytes.size() == kBins ? std::move(bytes) : std::vector<std::uint8_t>(), options);
  return fp;
}

bool ZqVseprFingerprint::Setup(const Molkit::ZqMolBase& mol, const ZqVseprOptions& options) {
  if (mol.GetNumHeavyAtoms() == 0) {
    SetBytes({}, options);
    return false;
  }
  SetBytes(FeatureBytes(mol, options, [](const ZqVseprFeature&) { return true; }), options);
  return true;
}

bool ZqVseprFingerprint::Setup(const Molkit::ZqAtomBase& atom, const ZqVseprOptions& options) {
  if (Molkit::ZqIsHydrogen(atom)) {
    SetBytes({}, options);
    return false;
  }
  const int index = static_cast<int>(atom.GetIdx());
  SetBytes(FeatureBytes(atom.GetParent(), options,
                       [index](const ZqVseprFeature& path) {
                         return std::find(path.atoms.begin(), path.atoms.end(), index) != path.atoms.end();
                       }),
            options);
  return true;
}

bool ZqVseprFingerprint::Setup(const Molkit::ZqBondBase& bond, const ZqVseprOptions& options) {
  const Molkit::ZqMolBase& mol = bond.GetParent();
  if (Molkit::ZqIsHydrogen(mol.GetAtom(bond.GetBeginAtomIdx())) ||
      Molkit::ZqIsHydrogen(mol.GetAtom(bond.GetEndAtomIdx()))) {
    SetBytes({}, options);
    return false;
  }
  const int index = static_cast<int>(bond.GetIdx());
  SetBytes(FeatureBytes(mol, options,
                       [index](const ZqVseprFeature& path) {
                         return std::find(path.bonds.begin(), path.bonds.end(), index) != path.bonds.end();
                       }),
            options);
  return true;
}

double ZqVseprFingerprint::GetWeight(std::size_t bin) const {
  if (!bytes_.empty()) return bytes_[bin];
  if (!weights_.empty()) return weights_[bin];
  return 0.0;
}

void ZqVseprFingerprint::MakeReal() {
  if (!weights_.empty()) return;
  weights_.assign(kBins, 0.0);
  for (std::size_t i = 0; i < bytes_.size(); ++i) weights_[i] = bytes_[i];
  bytes_.clear();
  bits_.clear();
  byteVolume_ = 0;
}

ZqVseprFingerprint& ZqVseprFingerprint::Scale(double factor) {
  if (IsEmpty()) return *this;
  MakeReal();
  for (double& w : weights_) w *= factor;
  return *this;
}

template <class Op>
ZqVseprFingerprint ZqVseprFingerprint::Combine(const ZqVseprFingerprint& other, Op op) const {
  ZqVseprFingerprint result;
  result.options_ = IsEmpty() ? other.options_ : options_;
  result.weights_.resize(kBins);
  for (std::size_t i = 0; i < kBins; ++i) result.weights_[i] = op(GetWeight(i), other.GetWeight(i));
  return result;
}

ZqVseprFingerprint ZqVseprFingerprint::operator+(const ZqVseprFingerprint& other) const {
  if (IsEmpty() && other.IsEmpty()) return *this;
  return Combine(other, [](double a, double b) { return a + b; });
}

ZqVseprFingerprint& ZqVseprFingerprint::operator+=(const ZqVseprFingerprint& other) {
  if (other.IsEmpty()) return *this;
  if (IsEmpty()) options_ = other.options_;
  MakeReal();
  for (std::size_t i = 0; i < kBins; ++i) weights_[i] += other.GetWeight(i);
  return *this;
}

ZqVseprFingerprint ZqVseprFingerprint::operator&(const ZqVseprFingerprint& other) const {
  if (weights_.empty() && other.weights_.empty()) {
    // Byte weights (or none): the minimum stays in bytes.
    ZqVseprFingerprint result;
    const ZqVseprOptions& options = IsEmpty() ? other.options_ : options_;
    if (IsEmpty() || other.IsEmpty()) {
      result.options_ = options;
      return result;
    }
    std::vector<std::uint8_t> minima(kBins);
    for (std::size_t i = 0; i < kBins; ++i) minima[i] = std::min(bytes_[i], other.bytes_[i]);
    result.SetBytes(std::move(minima), options);
    return result;
  }
  return Combine(other, [](double a, double b) { return std::min(a, b); });
}

double ZqVseprFingerprint::GetVolume() const {
  if (!bytes_.empty()) return byteVolume_;
  double volume = 0.0;
  for (double w : weights_) volume += w;
  return volume;
}

double ZqVseprFingerprint::GetTanimoto(const ZqVseprFingerprint& other) const {
  if (weights_.empty() && other.weights_.empty()) {
    if (IsEmpty() || other.IsEmpty()) return IsEmpty() && other.IsEmpty() ? 1.0 : 0.0;
    const std::uint32_t common = !bits_.empty() && !other.bits_.empty()
                                     ? CommonBits(bits_.data(), other.bits_.data())
                                     : SumOfMinima(bytes_.data(), other.bytes_.data());
    return static_cast<double>(common) / static_cast<double>(byteVolume_ + other.byteVolume_ - common);
  }
  double common = 0.0;
  double total = 0.0;
  for (std::size_t i = 0; i < kBins; ++i) {
    const double a = std::max(GetWeight(i), 0.0);
    const double b = std::max(other.GetWeight(i), 0.0);
    common += std::min(a, b);
    total += std::max(a, b);
  }
  if (total == 0.0) return 1.0;
  return std::clamp(common / total, 0.0, 1.0);
}

std::vector<ZqVseprFingerprint> ZqMakeVseprAtomFingerprints(const Molkit::ZqMolBase& mol,
                                                            const ZqVseprOptions& options) {
  std::vector<ZqVseprFingerprint> atoms(mol.GetNumAtoms());
  std::vector<std::vector<std::uint8_t>> bytes(mol.GetNumAtoms(), std::vector<std::uint8_t>(kBins, 0));
  for (const ZqVseprFeature& feature : ZqFindVseprFeatures(mol.GetGraph().mol, options)) {
    for (int atom : feature.atoms) Mark(bytes[atom], feature);
  }
  for (std::size_t a = 0; a < atoms.size(); ++a) atoms[a].SetBytes(std::move(bytes[a]), options);
  return atoms;
}

bool ZqPrepVsepr(Molkit::ZqMolBase& mol, const ZqVseprOptions& options) {
  ZqVseprFingerprint fp;
  if (!fp.Setup(mol, options)) return false;
  mol.SetData(FingerprintTag(), std::move(fp));
  return true;
}

const ZqVseprFingerprint* ZqGetVseprFingerprint(const Molkit::ZqMolBase& mol) {
  return mol.GetData<ZqVseprFingerprint>(FingerprintTag());
}

double ZqGetVseprTanimoto(const Molkit::ZqMolBase& a, const Molkit::ZqMolBase& b, double errorValue) {
  const ZqVseprFingerprint* fpA = ZqGetVseprFingerprint(a);
  const ZqVseprFingerprint* fpB = ZqGetVseprFingerprint(b);
  if (fpA == nullptr || fpB == nullptr) return errorValue;
  return fpA->GetTanimoto(*fpB);
}

}  // namespace Printex
