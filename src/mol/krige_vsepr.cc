// The kriging models over Vsepr fingerprints, instantiated once here.
#include "varimo/mol/krige_vsepr.h"

#include "varimo/krige/applicability_domain_impl.h"
#include "varimo/krige/batch_selection_impl.h"
#include "varimo/krige/create_krige.h"
#include "varimo/krige/krige_impl.h"

namespace Varimo {
namespace {

class ZqVseprJaccardDistFxn final : public ZqKrigeDistanceFxn<ZqVseprPropFP> {
 public:
  double operator()(const ZqVseprPropFP& a, const ZqVseprPropFP& b) const override { return 1.0 - a.GetTanimoto(b); }
  ZqVseprJaccardDistFxn* CreateCopy() const override { return new ZqVseprJaccardDistFxn(*this); }
};

class ZqGetVseprPropsFxn final : public ZqPropertyListFxn<ZqVseprPropFP> {
 public:
  explicit ZqGetVseprPropsFxn(std::size_t size) : size_(size) {}
  bool HasProperties(const ZqVseprPropFP& fp) const override { return fp.GetNumProperties() == size_; }
  std::size_t GetSize() const override { return size_; }
  double GetProperty(const ZqVseprPropFP& fp, std::size_t index) const override { return fp.GetProperty(index); }
  ZqGetVseprPropsFxn* CreateCopy() const override { return new ZqGetVseprPropsFxn(*this); }

 private:
  std::size_t size_;
};

}  // namespace

ZqVseprKrige::ZqVseprKrige(const ZqKrigeOptions& options, bool simple)
    : ZqKrigeImpl(ZqCreateKrige<ZqVseprPropFP>(ZqVseprJaccardDistFxn(), options, simple)) {}

ZqVseprKrige::ZqVseprKrige(const ZqKrigeOptions& options, std::size_t numProperties)
    : ZqKrigeImpl(ZqCreateKrige<ZqVseprPropFP>(ZqVseprJaccardDistFxn(), ZqGetVseprPropsFxn(numProperties), options)) {}

// Batch selection and the applicability domain on fingerprints.
template ZqSelection ZqSelectBatch<ZqVseprPropFP>(const ZqKrigeBase<ZqVseprPropFP>&, ZqPoolSource<ZqVseprPropFP>&,
                                                 const ZqSelectionOptions&);
template ZqApplicabilityDomain ZqApplicabilityDomain::FromModel(const ZqKrigeBase<ZqVseprPropFP>&,
                                                                const ZqDomainOptions&);

}  // namespace Varimo
