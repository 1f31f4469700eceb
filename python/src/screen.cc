// Screening molecule files, or partitions of them, into output files with
// the library's screening call: the rows, bytes and messages of
// varimo-krige --load ... --predict ... --out ....
#include <pybind11/stl.h>

#include <optional>
#include <tuple>
#include <string>

#include "conversions.h"
#include "molecules.h"
#include "varimo/mol/mol_model.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/mol/mol_screen.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace VarimoPython {
namespace {

Molkit::ZqMoleculeFileFormat FormatNamed(const std::string& name) {
  if (name == "sd") return Molkit::ZqMoleculeFileFormat::SD;
  if (name == "csv") return Molkit::ZqMoleculeFileFormat::SmilesCsv;
  if (name == "smiles") return Molkit::ZqMoleculeFileFormat::Smiles;
  throw py::value_error("a molecule file format is 'sd', 'smiles' or 'csv', not '" + name + "'");
}

bool EndsWith(const std::string& text, const std::string& suffix) {
  return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// The rows of `reader` into `outPath`, written whole or not at all; what
// happened, as a dict: rows, failed, failures [(row, name, reason)],
// read_error.
py::dict Screen(const Varimo::ZqMolModel& model, Molkit::ZqMoleculeReader& reader, const std::string& outPath,
                bool header, std::optional<double> threshold, const std::string& thresholdText, unsigned int threads,
                bool fallbackKernels, std::size_t chunkSize) {
  if (!model.IsTrained()) throw py::value_error("the model is not trained");
  Varimo::ZqMolScreenOptions options;
  options.threads = threads;
  options.chunkSize = chunkSize;
  options.fallbackKernels = fallbackKernels;
  Varimo::ZqMolScreenOutput output;
  output.sd = EndsWith(outPath, ".sdf") || EndsWith(outPath, ".sdf.gz");
  output.header = header;
  output.threshold = threshold;
  output.thresholdText = thresholdText;
  std::vector<std::tuple<std::size_t, std::string, std::string>> failures;
  Varimo::ZqMolScreenSummary summary;
  std::string error;
  bool committed = false;
  {
    py::gil_scoped_release release;
    Molkit::ZqOutputFile out;
    if (out.Open(outPath, error)) {
      summary = Varimo::ZqScreenMoleculesInto(model, reader, options, output, out,
                                              [&](std::vector<Varimo::ZqMolScreenRow>& chunk) {
                                                for (const Varimo::ZqMolScreenRow& row : chunk) {
                                                  if (!row.failure.empty()) {
                                                    failures.emplace_back(row.row, row.record.name, row.failure);
                                                  }
                                                }
                                                return true;
                                              });
      // A damaged input writes nothing: its rows are not all there.
      committed = summary.readError.empty() && out.Commit(error);
      if (!summary.readError.empty()) error = summary.readError;
    }
  }
  if (!committed) throw py::value_error(error);
  py::dict d;
  d["rows"] = summary.rows;
  d["failed"] = summary.failed;
  d["failures"] = failures;
  return d;
}

}  // namespace

void BindScreen(py::module_& m) {
  m.def("screen_file", [](const Varimo::ZqMolModel& model, const std::string& path, const std::string& outPath,
                          bool header, std::optional<double> threshold, const std::string& thresholdText,
                          unsigned int threads, bool fallbackKernels, std::size_t chunkSize) {
    std::string error;
    std::unique_ptr<Molkit::ZqMoleculeReader> reader = Molkit::ZqMoleculeReader::Open(path, error);
    if (!reader) {
      PyErr_SetString(PyExc_FileNotFoundError, error.c_str());
      throw py::error_already_set();
    }
    return Screen(model, *reader, outPath, header, threshold, thresholdText, threads, fallbackKernels, chunkSize);
  }, py::arg("model"), py::arg("path"), py::arg("out_path"), py::arg("header") = true,
     py::arg("threshold") = std::nullopt, py::arg("threshold_text") = "", py::arg("threads") = 1,
     py::arg("fallback_kernels") = false, py::arg("chunk_size") = 512,
     "Screens a molecule file into out_path (CSV, or SD records for .sdf and .sdf.gz).");
  m.def("screen_text", [](const Varimo::ZqMolModel& model, const std::string& text, const std::string& format,
                          std::size_t firstNumber, const std::string& inputHeader, const std::string& outPath,
                          bool header, std::optional<double> threshold, const std::string& thresholdText,
                          unsigned int threads, bool fallbackKernels, std::size_t chunkSize) {
    if (firstNumber == 0) throw py::value_error("records are numbered from 1");
    std::unique_ptr<Molkit::ZqMoleculeReader> reader =
        Molkit::ZqMoleculeReader::FromText(text, FormatNamed(format), firstNumber, inputHeader);
    return Screen(model, *reader, outPath, header, threshold, thresholdText, threads, fallbackKernels, chunkSize);
  }, py::arg("model"), py::arg("text"), py::arg("format"), py::arg("first_number"), py::arg("input_header"),
     py::arg("out_path"), py::arg("header") = true, py::arg("threshold") = std::nullopt,
     py::arg("threshold_text") = "", py::arg("threads") = 1, py::arg("fallback_kernels") = false,
     py::arg("chunk_size") = 512,
     "Screens the text of part of a molecule file, its first record numbered first_number (the header line of a "
     "SMILES or CSV file given apart), into out_path.");
  m.def("model_checksum", [](const std::string& text) { return Varimo::ZqMolModelChecksum(text); },
        py::arg("text"), "The checksum a model file's last line holds, or None.");
}

}  // namespace VarimoPython
