// Model files: a trained ZqMolModel as text (.vkm), so that it can be read,
// diffed and checked.
//
//   varimo molecule model 2
//   fingerprint MAX MIN FORCE WEIGHT STEREO      the fingerprint options
//   fingerprint-version V                        of the fingerprint's features
//   local K                                      0 for a global model
//   local-options P M                            predict-training (0 or 1), the most
//                                                variogram pairs (0: the default)
//   drift TAG<TAB>TAG...                         nothing after "drift" without drift
//   kernel-fit NAME [likelihood]                 the candidate asked for; "all" for the best;
//                                                "likelihood" when fitted by likelihood
//   response-name NAME                           may be empty
//   kernels N fitted|fixed                       the trained state (ZqKrigeTrainedKernels)
//   kernel NAME<TAB>SILL<TAB>NUGGET<TAB>RANGE    N lines, in the order a query tries them
//   records N
//   then per record: "response Y<TAB>BIN:WEIGHT ..." (its fingerprint's
//   bins), then the molecule as an SD record ending with "$$$$"
//   checksum H                                   FNV-1a 64 of all bytes before this line
//
// Numbers are C hexadecimal floats (%a), exact. Loading adds the records in
// order with their saved fingerprints and restores the saved kernels,
// making no fingerprint and fitting nothing: a load costs reading the
// molecules, the distances and one factorisation, and the model predicts
// what the saved one did to the last bit. Fingerprints of another version
// are refused, and a sample of the molecules (the first, and every 50th)
// is fingerprinted again as a check of the file.
//
// Version 1 files ("varimo-krige molecule model 1", without the
// fingerprint-version, local-options, kernel-fit, response-name and kernels
// lines and with
// one "kernel" line) still load: every molecule is fingerprinted again and
// must give its saved fingerprint; a global model trains with its kernel
// as saved, a local one fits its kernels again and must find the saved one
// first.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "varimo/mol/mol_model.h"

namespace Varimo {

// The text of the file; the model must be trained.
std::string ZqWriteMolModel(const ZqMolModel& model);
// Writes the file; false, with `error` set, when the model is not trained
// or the file cannot be written.
bool ZqSaveMolModel(const std::string& path, const ZqMolModel& model, std::string& error);

// The trained model of a file; nothing, with `error` set to one line that
// starts with the path, for a file that cannot be read, is not a model file,
// is corrupt, cut short, or of another version of the fingerprints.
std::optional<ZqMolModel> ZqLoadMolModel(const std::string& path, std::string& error);
// The same from the file's text; `name` starts the error message.
std::optional<ZqMolModel> ZqReadMolModel(const std::string& text, const std::string& name, std::string& error);

// The last line of a file whose text before it is `text`.
std::string ZqMolModelChecksumLine(const std::string& text);
// The checksum of a model file's text, as its last line holds it: what
// names a model in the outputs made with it. Nothing for a text without a
// checksum line.
std::optional<std::uint64_t> ZqMolModelChecksum(const std::string& text);

}  // namespace Varimo
