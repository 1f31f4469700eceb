// Conversions between the library's values and Python's, in one place.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

#include "varimo/krige/krige_base.h"
#include "varimo/krige/variogram.h"

namespace VarimoPython {

namespace py = pybind11;

// A copy of the values as a one-dimensional numpy array.
template <class T>
py::array_t<T> ToArray(const std::vector<T>& values) {
  py::array_t<T> array(static_cast<py::ssize_t>(values.size()));
  std::copy(values.begin(), values.end(), array.mutable_data());
  return array;
}

// The library marks a failed number with the largest double; Python users
// expect NaN there.
inline double NanIfFailed(double value) { return value >= 1e300 || !std::isfinite(value) ? std::nan("") : value; }

using KernelTuple = std::tuple<std::string, double, double, double>;  // name, sill, nugget, range

inline KernelTuple ToTuple(const Varimo::ZqKrigeKernelBase& kernel) {
  return {kernel.GetName(), kernel.GetSill(), kernel.GetNugget(), kernel.GetRange()};
}

// The candidate kernel of that name (ZqGetKrigeKernels), with its default
// parameters; a ValueError for an unknown name.
Varimo::ZqKrigeKernel CandidateKernel(const std::string& name);
// The candidate kernel of that name with the tuple's parameters.
Varimo::ZqKrigeKernel FromTuple(const KernelTuple& tuple);

// The trained state as (list of kernel tuples, fixed), and back.
py::tuple ToPython(const Varimo::ZqKrigeTrainedKernels& trained);
Varimo::ZqKrigeTrainedKernels TrainedKernelsFrom(const std::vector<KernelTuple>& kernels, bool fixed);

// (distances, semivariances) of the bins, as numpy arrays.
py::tuple ToPython(const Varimo::ZqVariogram& variogram);

}  // namespace VarimoPython
