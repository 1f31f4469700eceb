// Feeds arbitrary text to varimo-krige's model file reader, with a valid
// checksum line appended so that the bytes reach the parser instead of
// stopping at the checksum test. Reading must never crash, hang or leak; a
// model that is refused says why, under the name given; one that loads has
// a molecule for each response.
#include <cstddef>
#include <cstdint>
#include <string>

#include "mol_model.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  text += VarimoKrige::MolModelChecksumLine(text);
  std::string error;
  const auto trained = VarimoKrige::ReadMolModel(text, "model", error);
  if (!trained) {
    if (error.rfind("model: ", 0) != 0 || error.size() == 7) __builtin_trap();
    return 0;
  }
  if (!error.empty() || trained->mols.size() != trained->responses.size() || !trained->model) __builtin_trap();
  return 0;
}
