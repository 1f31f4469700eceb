// varimo-mol-demo: kriging on molecules in a few lines. Trains on RDKit's
// bzr sample (163 benzodiazepine-site ligands with pIC50 in ACTIVITY)
// without every tenth molecule, then predicts those held out and prints
// each prediction with its standard deviation, the chance that the
// molecule is active below 10 nM (pIC50 above 8), the measured value, and
// the atom that raises the prediction most.
//
//   varimo-mol-demo [FILE.sdf [RESPONSE]]
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "varimo/mol.h"

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf";
  const std::string response = argc > 2 ? argv[2] : "ACTIVITY";
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<std::string> errors;
  if (!Molkit::ZqReadSDFile(path, mols, errors)) {
    std::fprintf(stderr, "varimo-mol-demo: cannot read %s\n", path.c_str());
    return 1;
  }
  Varimo::ZqSCMolGetSDData measured(response);
  Varimo::ZqMolKrige model{Varimo::ZqGlobalKrigeOptions()};
  std::vector<const Molkit::ZqMolBase*> heldOut;
  for (std::size_t i = 0; i < mols.size(); ++i) {
    if (!measured.Has(*mols[i])) continue;
    if (i % 10 == 0) {
      heldOut.push_back(mols[i].get());
    } else {
      model.AddTraining(*mols[i], measured.Get(*mols[i]));
    }
  }
  if (!model.Train()) {
    std::fprintf(stderr, "varimo-mol-demo: no kernel could be trained\n");
    return 1;
  }
  const Varimo::ZqKrigeKernel kernel = model.GetKernel();
  std::printf("%zu molecules read from %s; kernel %s (sill %.3f, nugget %.3f, range %.3f)\n\n", mols.size(),
              path.c_str(), kernel.GetName().c_str(), kernel.GetSill(), kernel.GetNugget(), kernel.GetRange());
  std::printf("%-24s %9s %7s %9s %9s  %s\n", "held out", "predicted", "sd", "P(>8)", "measured", "strongest atom");
  double squares = 0.0;
  for (const Molkit::ZqMolBase* mol : heldOut) {
    Varimo::ZqMolKrigeResult result = model.GetResult(*mol);
    if (!result.Valid()) {
      std::printf("%-24s prediction failed\n", mol->GetName().c_str());
      continue;
    }
    const std::vector<double> contributions = result.GetAtomContributions(*mol);
    std::size_t strongest = 0;
    for (std::size_t a = 1; a < contributions.size(); ++a) {
      if (contributions[a] > contributions[strongest]) strongest = a;
    }
    const double error = result.GetResponse() - measured.Get(*mol);
    squares += error * error;
    std::printf("%-24s %9.2f %7.2f %9.2f %9.2f  %s%zu\n", mol->GetName().c_str(), result.GetResponse(),
                std::sqrt(result.GetVariance()), Varimo::ZqProbabilityGreaterThan(result, 8.0), measured.Get(*mol),
                mol->GetAtom(strongest).GetSymbol().c_str(), strongest + 1);
  }
  std::printf("\nRMSE on the %zu held out: %.3f\n", heldOut.size(), std::sqrt(squares / heldOut.size()));
  return 0;
}
