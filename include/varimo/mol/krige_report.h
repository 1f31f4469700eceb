// The krige report: one molecular prediction as one picture. The molecule
// coloured by what each atom contributes, the predicted distribution
// against the training responses, the training molecules that weighed
// most and, with the options' krige details, the variogram and a dial of
// model quality.
//
//   Varimo::ZqMolKrigeResult result = model.GetResult(query);
//   Varimo::ZqKrigeReportOptions options;
//   options.SetResponseName("pIC50");
//   if (!Varimo::ZqKrigeRenderReport("query.png", result, query, options)) { ... }
//
// The panels are public too, each filling whatever image it is given. All
// return true when everything was drawn; a panel that cannot draw returns
// false with what it drew left in the image. Rendering stores nothing in
// the result or the options; the result is taken non-const because its
// atom contributions are computed on demand.
#pragma once

#include <string>

#include "varimo/mol/krige_report_options.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/platform/lineart/image.h"

namespace Varimo {

// The whole report. rows and cols shape the grid of training molecules;
// both 0 choose 3 by 2 for an upright image and 2 by 3 for a wide one,
// one of them 0 alone leaves the training panel empty. False for an image
// below 100 pixels either way, or an invalid result.
bool ZqKrigeRenderReport(Lineart::ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                         const ZqKrigeReportOptions& options, unsigned int rows, unsigned int cols);
bool ZqKrigeRenderReport(Lineart::ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMCMolBase& mol,
                         const ZqKrigeReportOptions& options, unsigned int rows, unsigned int cols);
// The report on an 800 by 800 page written to `filename`, whose extension
// (.png, .svg, .pdf) picks the format. Nothing is written when rendering
// fails; a file that cannot be written is warned about.
bool ZqKrigeRenderReport(const std::string& filename, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                         const ZqKrigeReportOptions& options);
bool ZqKrigeRenderReport(const std::string& filename, ZqMolKrigeResult& result, const Molkit::ZqMCMolBase& mol,
                         const ZqKrigeReportOptions& options);

// The molecule with its atoms painted by contribution (positive and
// negative colours of the options), at least 100 pixels either way.
bool ZqKrigeRenderMolecule(Lineart::ZqImageBase& image, ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                           const ZqKrigeReportOptions& options);
// The training molecules of largest |weight| in a rows by cols grid, each
// with its response and weight; the query itself, when it is in the
// training set, gets a green border.
bool ZqKrigeRenderTraining(Lineart::ZqImageBase& image, const ZqMolKrigeResult& result,
                           const ZqKrigeReportOptions& options, unsigned int rows, unsigned int cols);
// The predicted normal density over a histogram of the training responses,
// on an axis from their smallest to their largest, with the classes as
// coloured bands labelled by their probabilities.
bool ZqKrigeRenderDistribution(Lineart::ZqImageBase& image, ZqMolKrigeResult& result,
                               const ZqKrigeReportOptions& options);
// The binned variogram, the fitted kernel and the prediction's variance.
bool ZqKrigeRenderVariogram(Lineart::ZqImageBase& image, const ZqMolKrigeResult& result);
// Three rings: the confidence (1 - variance / sill), the variogram's fit,
// and the share of weight on measured training molecules; the lowest of
// them is written in the middle as a percentage.
bool ZqKrigeRenderConfidenceRadial(Lineart::ZqImageBase& image, ZqMolKrigeResult& result);
// A pie of the probabilities of the options' classes; with `legend` beside
// the legend of the distribution panel's two line samples.
bool ZqKrigeRenderClassification(Lineart::ZqImageBase& image, const ZqMolKrigeResult& result,
                                 const ZqKrigeReportOptions& options, bool legend);

}  // namespace Varimo
