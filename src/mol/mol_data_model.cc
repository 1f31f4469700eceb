// The models over molecules, instantiated once here.
#include "varimo/mol/mol_data_model.h"

#include "varimo/krige/create_krige.h"
#include "varimo/krige/krige_impl.h"

namespace Varimo {
namespace {

template <class M>
using CopyStorage = ZqKrigeCopyPtrElementStorage<M>;

}  // namespace

ZqSCMolKrige::ZqSCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMolBase>& distFxn, const ZqKrigeOptions& options)
    : ZqKrigeImpl(ZqCreateKrige<Molkit::ZqMolBase, CopyStorage<Molkit::ZqMolBase>>(distFxn, options, false)) {}

ZqSCMolKrige::ZqSCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMolBase>& distFxn,
                           const ZqPropertyListFxn<Molkit::ZqMolBase>& propFxn, const ZqKrigeOptions& options)
    : ZqKrigeImpl(ZqCreateKrige<Molkit::ZqMolBase, CopyStorage<Molkit::ZqMolBase>>(distFxn, propFxn, options)) {}

ZqMCMolKrige::ZqMCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMCMolBase>& distFxn, const ZqKrigeOptions& options)
    : ZqKrigeImpl(ZqCreateKrige<Molkit::ZqMCMolBase, CopyStorage<Molkit::ZqMCMolBase>>(distFxn, options, false)) {}

ZqMCMolKrige::ZqMCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMCMolBase>& distFxn,
                           const ZqPropertyListFxn<Molkit::ZqMCMolBase>& propFxn, const ZqKrigeOptions& options)
    : ZqKrigeImpl(ZqCreateKrige<Molkit::ZqMCMolBase, CopyStorage<Molkit::ZqMCMolBase>>(distFxn, propFxn, options)) {}

}  // namespace Varimo
