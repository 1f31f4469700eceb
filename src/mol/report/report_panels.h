// The report's private panels and the helpers the panels share.
#pragma once

#include <memory>
#include <string>

#include "report_layout.h"
#include "varimo/mol/krige_report_options.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/platform/lineart/depiction.h"

namespace Varimo {

double ZqGetMinTrainingResponse(const ZqMolKrigeResult& result);
double ZqGetMaxTrainingResponse(const ZqMolKrigeResult& result);

// A value as the report shows it: in the result's shared format, or, for
// a decimal logarithm shown unlogged, 10 to it in a format of its own.
std::string ZqFormatResponse(const ZqMolKrigeResult& result, double value, const ZqKrigeReportOptions& options);

// The drawing copy of a molecule for a frame of this size: hydrogens
// suppressed, van der Waals radii given, 2-D coordinates turned to suit
// the frame's shape. Null when no coordinates could be made.
std::unique_ptr<Molkit::ZqGraphMol> ZqPrepareReportMolecule(const Molkit::ZqMolBase& mol, double width,
                                                            double height);
// The look of every molecule in the report: white, labels at full size,
// the name under the drawing, heteroatoms coloured.
Lineart::Zq2DMolDisplayOptions ZqReportDisplayOptions(double width, double height);

bool ZqKrigeRenderMoleculeWithLegend(Lineart::ZqImageBase& image, ZqMolKrigeResult& result,
                                     const Molkit::ZqMolBase& mol, const ZqKrigeReportOptions& options);
bool ZqRenderTrainingElementMolecule(Lineart::ZqImageBase& image, const Molkit::ZqMolBase& mol);

bool ZqRenderDistributionAndProperties(Lineart::ZqImageBase& image, ZqMolKrigeResult& result,
                                       const ZqTextVariables& variables, const ZqKrigeReportOptions& options);
bool ZqRenderClassificationLegend(Lineart::ZqImageBase& image);
// The classes' probabilities as a pie filling the image.
bool ZqRenderClassification(Lineart::ZqImageBase& image, const ZqMolKrigeResult& result,
                            const ZqKrigeReportOptions& options);

}  // namespace Varimo
