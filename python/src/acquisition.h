// The bound acquisition functions, batch selection, calibrated intervals
// and applicability domain.
#pragma once

#include <pybind11/pybind11.h>

#include "varimo/krige/batch_selection.h"

namespace VarimoPython {

// Selection options from the keyword values Python passes; a ValueError
// for an unknown acquisition or batch name.
Varimo::ZqSelectionOptions SelectionOptions(const pybind11::dict& options);
// The picks as (index, prediction, sd, acquisition) arrays; a ValueError
// with the selection's own message on failure.
pybind11::tuple PicksToPython(const Varimo::ZqSelection& selection);

void BindAcquisition(pybind11::module_& m);

}  // namespace VarimoPython
