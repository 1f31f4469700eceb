// The report image of one prediction.
#include <string>

#include "conversions.h"
#include "molecules.h"
#include "varimo/mol/krige_report.h"
#include "varimo/mol/mol_model.h"

namespace VarimoPython {
namespace {

// The report of prediction `row` to `path` (its extension picks PNG, SVG
// or PDF); the molecule is coloured against the training mean, as
// varimo-krige's reports are.
void RenderReport(const Varimo::ZqMolModel& model, Predictions& predictions, const Molecules& batch,
                  std::size_t row, const std::string& path, const std::string& title) {
  if (row >= predictions.results.size()) throw py::index_error("no prediction " + std::to_string(row));
  Varimo::ZqMolKrigeResult& result = predictions.results[row].result;
  if (!result.Valid()) throw py::value_error("the prediction of row " + std::to_string(row) + " failed: no report");
  const Molkit::ZqMolBase& mol = At(batch, row);
  Varimo::ZqKrigeReportOptions options;
  if (!model.GetSettings().responseName.empty()) options.SetResponseName(model.GetSettings().responseName);
  options.SetContributionBaseline(model.GetMeanResponse());
  if (!title.empty()) options.SetTitle(title);
  bool drawn = false;
  {
    py::gil_scoped_release release;
    drawn = Varimo::ZqKrigeRenderReport(path, result, mol, options);
  }
  if (!drawn) throw py::value_error("cannot draw or write the report " + path);
}

}  // namespace

void BindReports(py::module_& m) {
  m.def("render_report", &RenderReport, py::arg("model"), py::arg("predictions"), py::arg("molecules"),
        py::arg("row"), py::arg("path"), py::arg("title") = "");
}

}  // namespace VarimoPython
