// The bound models on rows of numbers.
#pragma once

#include <pybind11/pybind11.h>

namespace VarimoPython {

void BindVectors(pybind11::module_& m);

}  // namespace VarimoPython
