// The model file (.vkm) is text, so that it can be read and diffed:
//
//   varimo-krige molecule model 1
//   fingerprint MAX MIN FORCE WEIGHT STEREO      the Vsepr options
//   local K                                      0 for a global model
//   drift TAG<TAB>TAG...                         nothing after "drift" without drift
//   kernel NAME<TAB>SILL<TAB>NUGGET<TAB>RANGE    the trained kernel
//   records N
//   then per record: "response Y<TAB>BIN:WEIGHT ..." (its fingerprint's
//   bins), then the molecule as an SD record ending with "$$$$"
//   checksum H                                   FNV-1a 64 of all bytes before this line
//
// Numbers are C hexadecimal floats (%a), exact. Loading adds the records
// in order and trains again: training is deterministic, so the model is
// the one saved. The saved fingerprints and kernel check that: a molecule
// read back with another fingerprint, or a retrained kernel that differs,
// means the file comes from another version, and it is refused.
#include "mol_model.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "varimo/mol/krige_distance_options.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/mol_property.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace VarimoKrige {
namespace {

constexpr const char* kMagic = "varimo-krige molecule model 1";

std::string Hex(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%a", value);
  return text;
}

bool ParseHex(const std::string& text, double& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return end == text.c_str() + text.size();
}

std::uint64_t Fnv1a(const std::string& text) {
  std::uint64_t hash = 0xcbf29ce484222325ULL;
  for (unsigned char c : text) {
    hash ^= c;
    hash *= 0x100000001b3ULL;
  }
  return hash;
}

std::string Bins(const Molkit::ZqMolBase& mol, const Printex::ZqVseprOptions& options) {
  const Printex::ZqVseprFingerprint fp(mol, options);
  std::string bins;
  for (std::size_t bin = 0; bin < Printex::ZqVseprFingerprint::kNumBins; ++bin) {
    if (fp.GetWeight(bin) == 0.0) continue;
    if (!bins.empty()) bins += ' ';
    bins += std::to_string(bin) + ':' + std::to_string(static_cast<int>(fp.GetWeight(bin)));
  }
  return bins;
}

std::string KernelLine(const Varimo::ZqKrigeKernel& kernel) {
  return kernel.GetName() + '\t' + Hex(kernel.GetSill()) + '\t' + Hex(kernel.GetNugget()) + '\t' +
         Hex(kernel.GetRange());
}

// Reads the lines of a model file one by one, naming the line of a failure.
class LineReader {
 public:
  explicit LineReader(std::istringstream& in) : in_(in) {}
  bool Next(std::string& line) {
    if (!std::getline(in_, line)) return false;
    ++number_;
    return true;
  }
  // The value after `key` and a space on the next line.
  bool Field(const std::string& key, std::string& value) {
    std::string line;
    if (!Next(line) || line.compare(0, key.size() + 1, key + ' ') != 0) {
      if (line == key) {
        value.clear();
        return true;
      }
      return false;
    }
    value = line.substr(key.size() + 1);
    return true;
  }
  std::size_t GetNumber() const { return number_; }

 private:
  std::istringstream& in_;
  std::size_t number_ = 0;
};

}  // namespace

std::unique_ptr<Varimo::ZqMolKrige> MakeMolModel(const MolModelSettings& settings) {
  Varimo::ZqDefaultKrigeDistanceOptions distance;
  distance.SetMaxPathLength(settings.fingerprint.GetMaxPathLength())
      .SetMinPathLength(settings.fingerprint.GetMinPathLength())
      .SetForcePathsOut(settings.fingerprint.GetForcePathsOut())
      .SetWeightByLength(settings.fingerprint.GetWeightByLength())
      .SetStereoAware(settings.fingerprint.GetStereoAware());
  Varimo::ZqLocalKrigeOptions local;
  local.SetNumLocal(settings.numLocal);
  if (settings.drift.empty()) {
    if (settings.numLocal > 0) return std::make_unique<Varimo::ZqMolKrige>(distance, local);
    return std::make_unique<Varimo::ZqMolKrige>(distance, Varimo::ZqGlobalKrigeOptions());
  }
  Molkit::ZqMolPropertyPushList drift;
  for (const std::string& tag : settings.drift) drift.Push(Molkit::ZqMolSDDataPropertyFxn(tag));
  if (settings.numLocal > 0) return std::make_unique<Varimo::ZqMolKrige>(distance, drift, local);
  return std::make_unique<Varimo::ZqMolKrige>(distance, drift, Varimo::ZqGlobalKrigeOptions());
}

bool SaveMolModel(const std::string& path, const TrainedMolModel& trained, std::string& error) {
  const MolModelSettings& settings = trained.settings;
  const Printex::ZqVseprOptions& fp = settings.fingerprint;
  std::ostringstream out;
  out << kMagic << '\n';
  out << "fingerprint " << fp.GetMaxPathLength() << ' ' << fp.GetMinPathLength() << ' ' << fp.GetForcePathsOut()
      << ' ' << fp.GetWeightByLength() << ' ' << fp.GetStereoAware() << '\n';
  out << "local " << settings.numLocal << '\n';
  out << "drift";
  for (std::size_t k = 0; k < settings.drift.size(); ++k) out << (k == 0 ? ' ' : '\t') << settings.drift[k];
  out << '\n';
  out << "kernel " << KernelLine(trained.model->GetKernel()) << '\n';
  out << "records " << trained.mols.size() << '\n';
  for (std::size_t i = 0; i < trained.mols.size(); ++i) {
    out << "response " << Hex(trained.responses[i]) << '\t' << Bins(*trained.mols[i], fp) << '\n';
    out << Molkit::ZqMolToSDRecord(*trained.mols[i]);
  }
  std::string text = out.str();
  text += MolModelChecksumLine(text);
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) {
    error = "cannot write " + path;
    return false;
  }
  return true;
}

std::string MolModelChecksumLine(const std::string& text) {
  char line[40];
  std::snprintf(line, sizeof line, "checksum %016" PRIx64 "\n", Fnv1a(text));
  return line;
}

std::optional<TrainedMolModel> LoadMolModel(const std::string& path, std::string& error) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    error = "cannot read " + path;
    return std::nullopt;
  }
  std::stringstream whole;
  whole << file.rdbuf();
  return ReadMolModel(whole.str(), path, error);
}

std::optional<TrainedMolModel> ReadMolModel(const std::string& text, const std::string& name, std::string& error) {
  auto fail = [&](const std::string& why) {
    error = name + ": " + why;
    return std::nullopt;
  };
  if (text.compare(0, std::string(kMagic).size() + 1, std::string(kMagic) + '\n') != 0) {
    return fail("not a varimo-krige molecule model (or of another format version)");
  }
  const std::size_t checksumAt = text.rfind("checksum ");
  std::uint64_t stored = 0;
  if (checksumAt == std::string::npos || (checksumAt > 0 && text[checksumAt - 1] != '\n') ||
      std::sscanf(text.c_str() + checksumAt, "checksum %" SCNx64, &stored) != 1) {
    return fail("cut short (no checksum line)");
  }
  if (stored != Fnv1a(text.substr(0, checksumAt))) return fail("corrupt (checksum does not match)");

  std::istringstream in(text.substr(0, checksumAt));
  LineReader lines(in);
  std::string line, value;
  lines.Next(line);
  TrainedMolModel trained;
  MolModelSettings& settings = trained.settings;
  unsigned int max = 0, min = 0, force = 0, weight = 0, stereo = 0;
  if (!lines.Field("fingerprint", value) ||
      std::sscanf(value.c_str(), "%u %u %u %u %u", &max, &min, &force, &weight, &stereo) != 5) {
    return fail("bad fingerprint line");
  }
  settings.fingerprint.SetMaxPathLength(max);
  settings.fingerprint.SetMinPathLength(min);
  settings.fingerprint.SetForcePathsOut(force != 0);
  settings.fingerprint.SetWeightByLength(weight != 0);
  settings.fingerprint.SetStereoAware(stereo != 0);
  if (!lines.Field("local", value) || !Corvane::ZqStringToNumber(value, settings.numLocal)) return fail("bad local line");
  if (!lines.Field("drift", value)) return fail("bad drift line");
  if (!value.empty()) Corvane::ZqStringTokenize(settings.drift, value, "\t", false);
  std::string kernelLine;
  if (!lines.Field("kernel", kernelLine)) return fail("bad kernel line");
  std::size_t count = 0;
  if (!lines.Field("records", value) || !Corvane::ZqStringToNumber(value, count)) return fail("bad records line");

  trained.model = MakeMolModel(settings);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string where = "record " + std::to_string(i + 1);
    std::string responseText, bins;
    if (!lines.Field("response", value)) return fail(where + ": no response line");
    const std::size_t tab = value.find('\t');
    responseText = value.substr(0, tab);
    bins = tab == std::string::npos ? std::string() : value.substr(tab + 1);
    double response = 0.0;
    if (!ParseHex(responseText, response)) return fail(where + ": bad response " + responseText);
    std::string block;
    bool ended = false;
    while (lines.Next(line)) {
      block += line + '\n';
      if (line.rfind("$$$$", 0) == 0) {
        ended = true;
        break;
      }
    }
    if (!ended) return fail(where + ": cut short");
    std::string why;
    std::unique_ptr<Molkit::ZqMolBase> mol = Molkit::ZqMolFromMolBlock(block, &why);
    if (!mol) return fail(where + ": " + why);
    if (Bins(*mol, settings.fingerprint) != bins) {
      return fail(where + ": the molecule gives another fingerprint than the saved one (another version?)");
    }
    if (!trained.model->AddTraining(*mol, response)) return fail(where + ": refused by the model");
    trained.mols.push_back(std::move(mol));
    trained.responses.push_back(response);
  }
  if (lines.Next(line)) return fail("unexpected text after the records at line " + std::to_string(lines.GetNumber()));
  if (!trained.model->Train()) return fail("the model cannot be trained again");
  if (KernelLine(trained.model->GetKernel()) != kernelLine) {
    return fail("retraining gives another kernel than the saved one (another version?)");
  }
  return trained;
}

}  // namespace VarimoKrige
