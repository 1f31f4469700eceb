// What a krige report shows and how: title, response name and format,
// contribution colours and baseline, the properties listed beside the
// molecule, and the classes of the response.
//
//   Varimo::ZqKrigeReportOptions options;
//   options.SetTitle("Benzodiazepine receptor");
//   options.SetResponseName("pIC50");
//   options.PushSDProperty("NAME", "Name");
//   options.PushClassificationBoundry(6.0);          // two classes, below and above 6
//
// The handle owns its implementation; copies are independent.
#pragma once

#include <memory>
#include <string>

#include "varimo/platform/corvane/color.h"
#include "varimo/platform/molkit/mol_property.h"

namespace Varimo {

class ZqKrigeReportOptionsImpl;

class ZqKrigeReportOptions {
 public:
  ZqKrigeReportOptions();
  ZqKrigeReportOptions(const ZqKrigeReportOptions& other);
  ZqKrigeReportOptions& operator=(const ZqKrigeReportOptions& other);
  ~ZqKrigeReportOptions();

  const std::string& GetTitle() const;
  void SetTitle(const std::string& title);
  void ClearTitle();
  // The name of the predicted quantity; "Response" by default.
  const std::string& GetResponseName() const;
  void SetResponseName(const std::string& name);
  // The response is a decimal logarithm: values are shown as 10 to it.
  bool GetUnlog() const;
  void SetUnlog(bool unlog);
  // Significant figures of the number formats; 4 by default.
  unsigned int GetResponseSignificantFigures() const;
  void SetResponseSignificantFigures(unsigned int figures);
  // Show 95% intervals beside the values.
  bool GetShowConfidence() const;
  void SetShowConfidence(bool show);
  bool GetHigherIsBetter() const;
  void SetHigherIsBetter(bool higher);

  // Contributions are measured against this value when set, else against
  // the prediction itself.
  bool GetHasContributionBaseline() const;
  double GetContributionBaseline() const;
  void SetContributionBaseline(double baseline);
  void ClearContributionBaseline();
  Corvane::ZqColor GetContributionPositiveColor() const;
  void SetContributionPositiveColor(Corvane::ZqColor color);
  Corvane::ZqColor GetContributionNegativeColor() const;
  void SetContributionNegativeColor(Corvane::ZqColor color);
  // Texts of the contribution legend; empty ones leave the defaults.
  const std::string& GetContributionPositiveLabel() const;
  void SetContributionPositiveLabel(const std::string& label);
  const std::string& GetContributionNegativeLabel() const;
  void SetContributionNegativeLabel(const std::string& label);
  void ClearContributionLabels();

  // The property list: SD data fields first, then computed properties, in
  // the order pushed. A tag pushed alone is its own display name.
  void PushSDProperty(const std::string& tag);
  void PushSDProperty(const std::string& tag, const std::string& name);
  void PushProperty(const Molkit::ZqMolPropertyFxn& fxn, const std::string& name, unsigned int significantFigures);
  unsigned long GetNumProperties() const;
  // Empty past the end of the list.
  std::string GetPropertyName(unsigned long i) const;
  // The text shown for the molecule: the SD datum (of the molecule, else
  // of its active conformer, else of the first conformer that has it), or
  // the computed value in the format of its significant figures; empty
  // when the molecule has none.
  std::string GetPropertyValue(unsigned long i, const Molkit::ZqMolBase& mol) const;
  std::string GetPropertyValue(unsigned long i, const Molkit::ZqMCMolBase& mol) const;
  void ClearProperties();

  // Classes of the response, split at the boundaries (±DBL_MAX and the
  // infinities are refused silently, NaN with a warning; a boundary pushed
  // twice is kept once). Their
  // colours: those pushed, once there are two or more, else six defaults;
  // class i takes colour i modulo their number.
  void PushClassificationBoundry(double boundary);
  void PushClassificationColor(Corvane::ZqColor color);
  // 0 without boundaries, else one more than their number.
  unsigned long GetNumClassifications() const;
  double GetClassificationLowerBound(unsigned long i) const;
  double GetClassificationUpperBound(unsigned long i) const;
  Corvane::ZqColor GetClassificationColor(unsigned long i) const;
  void ClearClassifications();

  // Draw the variogram and the model quality panels; true by default.
  bool GetShowKrigeDetails() const;
  void SetShowKrigeDetails(bool show);

  // Back to the defaults.
  void Clear();

 private:
  std::unique_ptr<ZqKrigeReportOptionsImpl> impl_;
};

}  // namespace Varimo
