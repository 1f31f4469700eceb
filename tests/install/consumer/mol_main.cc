// A minimal outside program on the molecular layer: reads a SMILES and
// prints its molecular weight.
#include <iostream>

#include <varimo/mol.h>

int main() {
  const auto mol = Molkit::ZqMolFromSmiles("c1ccccc1O");
  if (!mol) return 1;
  std::cout << Molkit::ZqCalculateMolecularWeight(*mol) << '\n';
  return 0;
}
