// Feeds arbitrary text to the model file reader, with a valid checksum line
// appended so that the bytes reach the parser instead of stopping at the
// checksum test. Reading must never crash, hang or leak; a model that is
// refused says why, under the name given; one that loads is trained and has
// a response for each record.
#include <cstddef>
#include <cstdint>
#include <string>

#include "varimo/mol/mol_model_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  text += Varimo::ZqMolModelChecksumLine(text);
  std::string error;
  const auto model = Varimo::ZqReadMolModel(text, "model", error);
  if (!model) {
    if (error.rfind("model: ", 0) != 0 || error.size() == 7) __builtin_trap();
    return 0;
  }
  if (!error.empty() || !model->IsTrained() || model->GetResponses().size() != model->GetNumRecords()) {
    __builtin_trap();
  }
  return 0;
}
