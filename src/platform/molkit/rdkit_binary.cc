// Molecules handed over in RDKit's own binary form, as the Python package
// receives RDKit molecules: both sides use the same RDKit, so the graph
// arrives exactly as the caller had it, sanitised and aromatised.
#include <GraphMol/MolPickler.h>

#include <exception>

#include "mol_graph.h"

namespace Molkit {

std::unique_ptr<ZqMolBase> ZqMolFromRDKitBinary(const std::string& binary, std::string* error) {
  auto graph = std::make_unique<ZqMolGraph>();
  try {
    RDKit::MolPickler::molFromPickle(binary, &graph->mol, RDKit::PicklerOps::AllProps);
  } catch (const std::exception& e) {
    if (error) *error = std::string("not an RDKit molecule: ") + e.what();
    return nullptr;
  }
  if (graph->mol.getNumAtoms() > ZqMaxMoleculeAtoms) {
    if (error) {
      *error = "too large: " + std::to_string(graph->mol.getNumAtoms()) + " atoms, at most " +
               std::to_string(ZqMaxMoleculeAtoms);
    }
    return nullptr;
  }
  std::string name;
  graph->mol.getPropIfPresent(RDKit::common_properties::_Name, name);
  std::vector<std::pair<std::string, std::string>> fields;
  for (const std::string& key : graph->mol.getPropList(false, false)) {
    std::string text;
    try {
      text = graph->mol.getProp<std::string>(key);
    } catch (const std::exception&) {
      continue;  // a property with no text form is no SD field
    }
    fields.emplace_back(key, text);
  }
  std::unique_ptr<ZqMolBase> mol = ZqMakeMol(std::move(graph));
  mol->SetName(name);
  for (auto& [key, text] : fields) mol->SetSDData(key, std::move(text));
  return mol;
}

}  // namespace Molkit
