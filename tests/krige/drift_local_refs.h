// The reference data of tests/data/krige/make_drift_local_refs.py (numpy),
// shared by the universal and the local kriging tests, and the kernels that
// the kriging tests build by name.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "reference_file.h"
#include "varimo/krige/krige_kernels.h"

namespace VarimoTest {

struct DriftLocalRefs {
  std::vector<std::vector<double>> points, queries;
  std::vector<double> responses;
  std::vector<std::pair<double, double>> residualPairs;
  std::vector<std::vector<std::string>> universal, local;
};

inline const DriftLocalRefs& DriftLocalReferences() {
  static const DriftLocalRefs data = [] {
    DriftLocalRefs d;
    for (const auto& line : ReadReferenceLines("krige/drift_local_refs.txt")) {
      if (line[0] == "train") {
        d.points.push_back(ToDoubles({line.begin() + 1, line.begin() + 4}, 0));
        d.responses.push_back(ToDouble(line[4]));
      } else if (line[0] == "query") {
        d.queries.push_back(ToDoubles(line, 1));
      } else if (line[0] == "pair") {
        d.residualPairs.emplace_back(ToDouble(line[1]), ToDouble(line[2]));
      } else if (line[0] == "universal") {
        d.universal.push_back(line);
      } else {
        d.local.push_back(line);
      }
    }
    return d;
  }();
  return data;
}

// A kernel by name ("Gaussian", "Spherical" or "Exponential") and parameters.
inline Varimo::ZqKrigeKernel NamedKernel(const std::string& name, double range, double sill, double nugget) {
  const unsigned int type = name == "Gaussian"      ? Varimo::ZqKrigeKernelType::Gaussian
                            : name == "Spherical"   ? Varimo::ZqKrigeKernelType::Spherical
                            : name == "Exponential" ? Varimo::ZqKrigeKernelType::Exponential
                                                    : Varimo::ZqKrigeKernelType::NumTypes;
  Varimo::ZqKrigeKernel kernel(type);
  kernel.SetRange(range);
  kernel.SetSill(sill);
  kernel.SetNugget(nugget);
  return kernel;
}

// A kernel of the references, with its parameters as tokens.
inline Varimo::ZqKrigeKernel ReferenceKernel(const std::string& name, const std::string& range,
                                             const std::string& sill, const std::string& nugget) {
  return NamedKernel(name, ToDouble(range), ToDouble(sill), ToDouble(nugget));
}

}  // namespace VarimoTest
