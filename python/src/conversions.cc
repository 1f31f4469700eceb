#include "conversions.h"

namespace VarimoPython {

Varimo::ZqKrigeKernel CandidateKernel(const std::string& name) {
  for (const Varimo::ZqKrigeKernelBase& candidate : Varimo::ZqGetKrigeKernels()) {
    if (candidate.GetName() == name) return Varimo::ZqKrigeKernel(candidate);
  }
  throw py::value_error("no kernel is named '" + name + "'");
}

Varimo::ZqKrigeKernel FromTuple(const KernelTuple& tuple) {
  const auto& [name, sill, nugget, range] = tuple;
  Varimo::ZqKrigeKernel kernel = CandidateKernel(name);
  kernel.SetSill(sill);
  kernel.SetNugget(nugget);
  kernel.SetRange(range);
  return kernel;
}

py::tuple ToPython(const Varimo::ZqKrigeTrainedKernels& trained) {
  py::list kernels;
  for (const Varimo::ZqKrigeKernel& kernel : trained.kernels) kernels.append(py::cast(ToTuple(kernel)));
  return py::make_tuple(kernels, trained.fixed);
}

Varimo::ZqKrigeTrainedKernels TrainedKernelsFrom(const std::vector<KernelTuple>& kernels, bool fixed) {
  Varimo::ZqKrigeTrainedKernels trained;
  for (const KernelTuple& tuple : kernels) trained.kernels.push_back(FromTuple(tuple));
  trained.fixed = fixed;
  return trained;
}

py::tuple ToPython(const Varimo::ZqVariogram& variogram) {
  std::vector<double> distances, semivariances;
  for (unsigned int bin = 0; bin < variogram.GetNumBins(); ++bin) {
    distances.push_back(variogram.GetDistance(bin));
    semivariances.push_back(variogram.GetSemivariance(bin));
  }
  return py::make_tuple(ToArray(distances), ToArray(semivariances));
}

}  // namespace VarimoPython
