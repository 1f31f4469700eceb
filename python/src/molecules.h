// The bound molecule models.
#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "varimo/mol/mol_predict.h"
#include "varimo/platform/molkit/molecule.h"

namespace VarimoPython {

// Molecules in input order; a row that could not be read holds null and
// has a failure.
struct Molecules {
  Molecules() = default;
  Molecules(Molecules&&) = default;
  Molecules& operator=(Molecules&&) = default;
  Molecules(const Molecules&) = delete;
  Molecules& operator=(const Molecules&) = delete;

  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<std::pair<std::size_t, std::string>> failures;  // row, reason
};

struct Predictions {
  std::vector<Varimo::ZqMolPrediction> results;
};

// The molecule of a row; an IndexError or ValueError when there is none.
const Molkit::ZqMolBase& At(const Molecules& batch, std::size_t row);

void BindMolecules(pybind11::module_& m);
// The report images of predictions.
void BindReports(pybind11::module_& m);
// Screening files and partitions of files into output files.
void BindScreen(pybind11::module_& m);

}  // namespace VarimoPython
