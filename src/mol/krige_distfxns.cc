#include "varimo/mol/krige_distfxns.h"

#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/generic_data.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/printex/fingerprint.h"

namespace Varimo {

bool ZqMolKrigeDefaultDistFxn::PrepMol(Molkit::ZqMolBase& mol) const {
  return Printex::ZqPrepVsepr(mol, options_.GetImpl());
}

double ZqMolKrigeDefaultDistFxn::operator()(const Molkit::ZqMolBase& a, const Molkit::ZqMolBase& b) const {
  const double tanimoto = Printex::ZqGetVseprTanimoto(a, b, -1.0);
  if (tanimoto == -1.0) {
    Corvane::ZqThrow.Error(
        "ZqMolKrigeDefaultDistFxn::PrepMol not called on mol passed to ZqMolKrigeDefaultDistFxn::operator()");
    return 1.0;
  }
  return 1.0 - tanimoto;
}

ZqMolKrigePrintexDistFxn::ZqMolKrigePrintexDistFxn(unsigned int fpType)
    : fpType_(fpType), tag_(Corvane::ZqGetTag(Corvane::ZqMakeString("ZqFingerPrint (type ", fpType, ")"))) {}

bool ZqMolKrigePrintexDistFxn::PrepMol(Molkit::ZqMolBase& mol) const {
  Printex::ZqFingerPrint fp;
  if (!Printex::ZqMakeFP(fp, mol, fpType_)) return false;
  mol.SetData(tag_, std::move(fp));
  return true;
}

double ZqMolKrigePrintexDistFxn::operator()(const Molkit::ZqMolBase& a, const Molkit::ZqMolBase& b) const {
  const auto* fpA = a.GetData<Printex::ZqFingerPrint>(tag_);
  const auto* fpB = b.GetData<Printex::ZqFingerPrint>(tag_);
  if (fpA == nullptr || fpB == nullptr) {
    Corvane::ZqThrow.Error(
        "ZqMolKrigePrintexDistFxn::PrepMol no called on mol passed to ZqMolKrigePrintexDistFxn::operator(), or "
        "PrepMol failed");
    return 1.0;
  }
  return 1.0 - Printex::ZqTanimoto(*fpA, *fpB);
}

}  // namespace Varimo
