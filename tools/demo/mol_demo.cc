// varimo-mol-demo: kriging on molecules in a few lines. Trains on RDKit's
// bzr sample (163 benzodiazepine-site ligands with pIC50 in ACTIVITY)
// without every tenth molecule, then predicts those held out and prints
// each prediction with its standard deviation, the chance that the
// molecule is active below 10 nM (pIC50 above 8), the measured value, and
// the atom that raises the prediction most. Given a directory, it also
// draws the report of the first molecule held out there as NAME.png.
//
//   varimo-mol-demo [FILE.sdf [RESPONSE [REPORT_DIR]]]
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "varimo/mol.h"
#include "varimo/mol/krige_report.h"

namespace {

// REPORT_DIR/NAME.png, with the characters a file name should not carry
// replaced; "held-out" for a molecule without a name.
std::string ReportPath(const std::string& dir, const std::string& name) {
  std::string file = name.empty() ? "held-out" : name;
  for (char& c : file) {
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_' && c != '.') c = '_';
  }
  return (std::filesystem::path(dir) / (file + ".png")).string();
}

// The report of one held-out molecule, titled with its name.
bool WriteReport(const std::string& path, Varimo::ZqMolKrigeResult& result, const Molkit::ZqMolBase& mol,
                 const std::string& response) {
  std::error_code failure;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), failure);
  if (failure) return false;
  Varimo::ZqKrigeReportOptions options;
  options.SetResponseName(response);
  if (!mol.GetName().empty()) options.SetTitle(mol.GetName());
  // The same threshold as the P(>8) column, so the picture shows that chance.
  options.PushClassificationBoundry(8.0);
  // Pale bands, so that the histogram and the curve drawn over them show.
  options.PushClassificationColor(Corvane::ZqColor(250, 210, 200));
  options.PushClassificationColor(Corvane::ZqColor(200, 220, 250));
  // The measured value of the molecule, from its SD data, beside the plot.
  options.PushSDProperty(response, "Measured");
  return Varimo::ZqKrigeRenderReport(path, result, mol, options);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf";
  const std::string response = argc > 2 ? argv[2] : "ACTIVITY";
  const std::string reportDir = argc > 3 ? argv[3] : "";
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
  std::string reported;  // the molecule whose report was written
  std::string reportPath;
  for (const Molkit::ZqMolBase* mol : heldOut) {
    Varimo::ZqMolKrigeResult result = model.GetResult(*mol);
    if (!result.Valid()) {
      std::printf("%-24s prediction failed\n", mol->GetName().c_str());
      continue;
    }
    if (!reportDir.empty() && reportPath.empty()) {
      reported = mol->GetName();
      reportPath = ReportPath(reportDir, reported);
      if (!WriteReport(reportPath, result, *mol, response)) {
        std::fprintf(stderr, "varimo-mol-demo: cannot write the report of %s to %s\n", reported.c_str(),
                     reportPath.c_str());
        return 1;
      }
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
  if (!reportPath.empty()) std::printf("report of %s: %s\n", reported.c_str(), reportPath.c_str());
  return 0;
}
