#include "varimo/mol/mol_krige.h"

#include "custom_mol_krige.h"
#include "vsepr_mol_krige.h"

namespace Varimo {
namespace {

const Printex::ZqVseprOptions& DefaultFingerprint() {
  static const Printex::ZqVseprOptions options;
  return options;
}

}  // namespace

ZqMolKrige::ZqMolKrige(const ZqGlobalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), nullptr, DefaultFingerprint())) {}
ZqMolKrige::ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const ZqGlobalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), nullptr, distance.GetImpl())) {}
ZqMolKrige::ZqMolKrige(const ZqLocalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), nullptr, DefaultFingerprint())) {}
ZqMolKrige::ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const ZqLocalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), nullptr, distance.GetImpl())) {}

ZqMolKrige::ZqMolKrige(const Molkit::ZqMolPropertyList& drift, const ZqGlobalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), &drift, DefaultFingerprint())) {}
ZqMolKrige::ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const Molkit::ZqMolPropertyList& drift,
                       const ZqGlobalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), &drift, distance.GetImpl())) {}
ZqMolKrige::ZqMolKrige(const Molkit::ZqMolPropertyList& drift, const ZqLocalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), &drift, DefaultFingerprint())) {}
ZqMolKrige::ZqMolKrige(const ZqDefaultKrigeDistanceOptions& distance, const Molkit::ZqMolPropertyList& drift,
                       const ZqLocalKrigeOptions& options)
    : impl_(new ZqVseprMolKrigeImpl(ZqKrigeOptions(options), &drift, distance.GetImpl())) {}

ZqMolKrige::ZqMolKrige(const ZqMolDistanceFxn& distance, const ZqGlobalKrigeOptions& options)
    : impl_(new ZqCustomMolKrigeImpl(distance, nullptr, ZqKrigeOptions(options))) {}
ZqMolKrige::ZqMolKrige(const ZqMolDistanceFxn& distance, const ZqLocalKrigeOptions& options)
    : impl_(new ZqCustomMolKrigeImpl(distance, nullptr, ZqKrigeOptions(options))) {}
ZqMolKrige::ZqMolKrige(const ZqMolDistanceFxn& distance, const Molkit::ZqMolPropertyList& drift,
                       const ZqGlobalKrigeOptions& options)
    : impl_(new ZqCustomMolKrigeImpl(distance, &drift, ZqKrigeOptions(options))) {}
ZqMolKrige::ZqMolKrige(const ZqMolDistanceFxn& distance, const Molkit::ZqMolPropertyList& drift,
                       const ZqLocalKrigeOptions& options)
    : impl_(new ZqCustomMolKrigeImpl(distance, &drift, ZqKrigeOptions(options))) {}

ZqMolKrige::ZqMolKrige(const ZqMolKrige& other) : impl_(other.impl_->CreateCopy()) {}
ZqMolKrige& ZqMolKrige::operator=(const ZqMolKrige& other) {
  if (this != &other) impl_.reset(other.impl_->CreateCopy());
  return *this;
}
ZqMolKrige::~ZqMolKrige() = default;

}  // namespace Varimo
