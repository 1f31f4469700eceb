#include "varimo/mol/krige_report_options.h"

#include <cfloat>
#include <cmath>
#include <iterator>
#include <set>
#include <vector>

#include "varimo/mol/krige_report_format.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

class ZqKrigeReportOptionsImpl {
 public:
  ZqKrigeReportOptionsImpl() = default;
  ZqKrigeReportOptionsImpl(const ZqKrigeReportOptionsImpl& other)
      : title(other.title),
        responseName(other.responseName),
        unlog(other.unlog),
        responseSignificantFigures(other.responseSignificantFigures),
        showConfidence(other.showConfidence),
        higherIsBetter(other.higherIsBetter),
        hasContributionBaseline(other.hasContributionBaseline),
        contributionBaseline(other.contributionBaseline),
        contributionPositiveColor(other.contributionPositiveColor),
        contributionNegativeColor(other.contributionNegativeColor),
        contributionPositiveLabel(other.contributionPositiveLabel),
        contributionNegativeLabel(other.contributionNegativeLabel),
        sdTags(other.sdTags),
        sdNames(other.sdNames),
        propertyNames(other.propertyNames),
        propertyDigits(other.propertyDigits),
        classificationBoundaries(other.classificationBoundaries),
        classificationColors(other.classificationColors),
        showKrigeDetails(other.showKrigeDetails) {
    for (const auto& fxn : other.propertyFxns) propertyFxns.emplace_back(fxn->CreateCopy());
  }

  template <class M>
  std::string PropertyValue(unsigned long i, const M& mol) const;

  std::string title;
  std::string responseName = "Response";
  bool unlog = false;
  unsigned int responseSignificantFigures = 4;
  bool showConfidence = false;
  bool higherIsBetter = true;
  bool hasContributionBaseline = false;
  double contributionBaseline = 0.0;
  Corvane::ZqColor contributionPositiveColor = Corvane::ZqBlue;
  Corvane::ZqColor contributionNegativeColor = Corvane::ZqRed;
  std::string contributionPositiveLabel;
  std::string contributionNegativeLabel;
  std::vector<std::string> sdTags;
  std::vector<std::string> sdNames;
  std::vector<std::unique_ptr<Molkit::ZqMolPropertyFxn>> propertyFxns;
  std::vector<std::string> propertyNames;
  std::vector<unsigned int> propertyDigits;
  std::set<double> classificationBoundaries;
  const std::vector<Corvane::ZqColor> defaultClassificationColors = {
      Corvane::ZqRed, Corvane::ZqBlue, Corvane::ZqGreen, {255, 0, 255}, {0, 255, 255}, {255, 255, 0}};
  std::vector<Corvane::ZqColor> classificationColors;
  bool showKrigeDetails = true;
};

namespace {

std::string SDDatum(const Molkit::ZqMolBase& mol, const std::string& tag) {
  return mol.HasSDData(tag) ? mol.GetSDData(tag) : std::string();
}

// A conformer set keeps data of its own and per conformer: the molecule's
// first, then the active conformer's, then any conformer's.
std::string SDDatum(const Molkit::ZqMCMolBase& mol, const std::string& tag) {
  if (mol.HasSDData(tag)) return mol.GetSDData(tag);
  if (mol.GetActiveConf().HasSDData(tag)) return mol.GetActiveConf().GetSDData(tag);
  for (std::size_t c = 0; c < mol.GetNumConfs(); ++c) {
    if (mol.GetConf(c).HasSDData(tag)) return mol.GetConf(c).GetSDData(tag);
  }
  return std::string();
}

std::string Format(double value, unsigned int figures) {
  // The format is one of ZqGetFormatString's "%.Nf" or "%f".
  return Corvane::ZqFormatString(ZqGetFormatString(value, figures).c_str(), value);
}

}  // namespace

template <class M>
std::string ZqKrigeReportOptionsImpl::PropertyValue(unsigned long i, const M& mol) const {
  if (i < sdTags.size()) return SDDatum(mol, sdTags[i]);
  i -= sdTags.size();
  if (i >= propertyFxns.size() || !propertyFxns[i]->Has(mol)) return std::string();
  return Format(propertyFxns[i]->Get(mol), propertyDigits[i]);
}

ZqKrigeReportOptions::ZqKrigeReportOptions() : impl_(std::make_unique<ZqKrigeReportOptionsImpl>()) {}
ZqKrigeReportOptions::ZqKrigeReportOptions(const ZqKrigeReportOptions& other)
    : impl_(std::make_unique<ZqKrigeReportOptionsImpl>(*other.impl_)) {}
ZqKrigeReportOptions& ZqKrigeReportOptions::operator=(const ZqKrigeReportOptions& other) {
  if (this != &other) impl_ = std::make_unique<ZqKrigeReportOptionsImpl>(*other.impl_);
  return *this;
}
ZqKrigeReportOptions::~ZqKrigeReportOptions() = default;

const std::string& ZqKrigeReportOptions::GetTitle() const { return impl_->title; }
void ZqKrigeReportOptions::SetTitle(const std::string& title) { impl_->title = title; }
void ZqKrigeReportOptions::ClearTitle() { impl_->title.clear(); }
const std::string& ZqKrigeReportOptions::GetResponseName() const { return impl_->responseName; }
void ZqKrigeReportOptions::SetResponseName(const std::string& name) { impl_->responseName = name; }
bool ZqKrigeReportOptions::GetUnlog() const { return impl_->unlog; }
void ZqKrigeReportOptions::SetUnlog(bool unlog) { impl_->unlog = unlog; }
unsigned int ZqKrigeReportOptions::GetResponseSignificantFigures() const {
  return impl_->responseSignificantFigures;
}
void ZqKrigeReportOptions::SetResponseSignificantFigures(unsigned int figures) {
  impl_->responseSignificantFigures = figures;
}
bool ZqKrigeReportOptions::GetShowConfidence() const { return impl_->showConfidence; }
void ZqKrigeReportOptions::SetShowConfidence(bool show) { impl_->showConfidence = show; }
bool ZqKrigeReportOptions::GetHigherIsBetter() const { return impl_->higherIsBetter; }
void ZqKrigeReportOptions::SetHigherIsBetter(bool higher) { impl_->higherIsBetter = higher; }

bool ZqKrigeReportOptions::GetHasContributionBaseline() const { return impl_->hasContributionBaseline; }
double ZqKrigeReportOptions::GetContributionBaseline() const { return impl_->contributionBaseline; }
void ZqKrigeReportOptions::SetContributionBaseline(double baseline) {
  impl_->contributionBaseline = baseline;
  impl_->hasContributionBaseline = true;
}
void ZqKrigeReportOptions::ClearContributionBaseline() {
  impl_->contributionBaseline = 0.0;
  impl_->hasContributionBaseline = false;
}
Corvane::ZqColor ZqKrigeReportOptions::GetContributionPositiveColor() const {
  return impl_->contributionPositiveColor;
}
void ZqKrigeReportOptions::SetContributionPositiveColor(Corvane::ZqColor color) {
  impl_->contributionPositiveColor = color;
}
Corvane::ZqColor ZqKrigeReportOptions::GetContributionNegativeColor() const {
  return impl_->contributionNegativeColor;
}
void ZqKrigeReportOptions::SetContributionNegativeColor(Corvane::ZqColor color) {
  impl_->contributionNegativeColor = color;
}
const std::string& ZqKrigeReportOptions::GetContributionPositiveLabel() const {
  return impl_->contributionPositiveLabel;
}
void ZqKrigeReportOptions::SetContributionPositiveLabel(const std::string& label) {
  impl_->contributionPositiveLabel = label;
}
const std::string& ZqKrigeReportOptions::GetContributionNegativeLabel() const {
  return impl_->contributionNegativeLabel;
}
void ZqKrigeReportOptions::SetContributionNegativeLabel(const std::string& label) {
  impl_->contributionNegativeLabel = label;
}
void ZqKrigeReportOptions::ClearContributionLabels() {
  impl_->contributionPositiveLabel.clear();
  impl_->contributionNegativeLabel.clear();
}

void ZqKrigeReportOptions::PushSDProperty(const std::string& tag) { PushSDProperty(tag, tag); }
void ZqKrigeReportOptions::PushSDProperty(const std::string& tag, const std::string& name) {
  impl_->sdTags.push_back(tag);
  impl_->sdNames.push_back(name);
}
void ZqKrigeReportOptions::PushProperty(const Molkit::ZqMolPropertyFxn& fxn, const std::string& name,
                                        unsigned int significantFigures) {
  impl_->propertyFxns.emplace_back(fxn.CreateCopy());
  impl_->propertyNames.push_back(name);
  impl_->propertyDigits.push_back(significantFigures);
}
unsigned long ZqKrigeReportOptions::GetNumProperties() const {
  return static_cast<unsigned long>(impl_->sdTags.size() + impl_->propertyFxns.size());
}
std::string ZqKrigeReportOptions::GetPropertyName(unsigned long i) const {
  if (i < impl_->sdNames.size()) return impl_->sdNames[i];
  i -= impl_->sdNames.size();
  return i < impl_->propertyNames.size() ? impl_->propertyNames[i] : std::string();
}
std::string ZqKrigeReportOptions::GetPropertyValue(unsigned long i, const Molkit::ZqMolBase& mol) const {
  return impl_->PropertyValue(i, mol);
}
std::string ZqKrigeReportOptions::GetPropertyValue(unsigned long i, const Molkit::ZqMCMolBase& mol) const {
  return impl_->PropertyValue(i, mol);
}
void ZqKrigeReportOptions::ClearProperties() {
  impl_->sdTags.clear();
  impl_->sdNames.clear();
  impl_->propertyFxns.clear();
  impl_->propertyNames.clear();
  impl_->propertyDigits.clear();
}

void ZqKrigeReportOptions::PushClassificationBoundry(double boundary) {
  // A NaN would break the ordering of the set, and with it every class.
  if (std::isnan(boundary)) {
    Corvane::ZqThrow.Warning(
        "ZqKrigeReportOptions::PushClassificationBoundry, a boundary that is not a number is refused");
    return;
  }
  // The two ends of the scale (and beyond) bound the outer classes already.
  if (boundary >= DBL_MAX || boundary <= -DBL_MAX) return;
  impl_->classificationBoundaries.insert(boundary);
}
void ZqKrigeReportOptions::PushClassificationColor(Corvane::ZqColor color) {
  impl_->classificationColors.push_back(color);
}
unsigned long ZqKrigeReportOptions::GetNumClassifications() const {
  const std::size_t n = impl_->classificationBoundaries.size();
  return n == 0 ? 0 : static_cast<unsigned long>(n + 1);
}
double ZqKrigeReportOptions::GetClassificationLowerBound(unsigned long i) const {
  if (i == 0 || i > impl_->classificationBoundaries.size()) return -DBL_MAX;
  return *std::next(impl_->classificationBoundaries.begin(), static_cast<std::ptrdiff_t>(i - 1));
}
double ZqKrigeReportOptions::GetClassificationUpperBound(unsigned long i) const {
  if (i >= impl_->classificationBoundaries.size()) return DBL_MAX;
  return *std::next(impl_->classificationBoundaries.begin(), static_cast<std::ptrdiff_t>(i));
}
Corvane::ZqColor ZqKrigeReportOptions::GetClassificationColor(unsigned long i) const {
  const std::vector<Corvane::ZqColor>& colors =
      impl_->classificationColors.size() >= 2 ? impl_->classificationColors : impl_->defaultClassificationColors;
  return colors[i % colors.size()];
}
void ZqKrigeReportOptions::ClearClassifications() {
  impl_->classificationBoundaries.clear();
  impl_->classificationColors.clear();
}

bool ZqKrigeReportOptions::GetShowKrigeDetails() const { return impl_->showKrigeDetails; }
void ZqKrigeReportOptions::SetShowKrigeDetails(bool show) { impl_->showKrigeDetails = show; }

void ZqKrigeReportOptions::Clear() { impl_ = std::make_unique<ZqKrigeReportOptionsImpl>(); }

}  // namespace Varimo
