#include "varimo/mol/mol_model_file.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace Varimo {
namespace {

constexpr const char* kMagic = "varimo molecule model 2";
constexpr const char* kMagicVersion1 = "varimo-krige molecule model 1";
// Every this many records, the saved fingerprint is checked against the
// molecule's own.
constexpr std::size_t kCheckEvery = 50;

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

std::uint64_t Fnv1a(const char* text, std::size_t size) {
  std::uint64_t hash = 0xcbf29ce484222325ULL;
  for (std::size_t i = 0; i < size; ++i) {
    hash ^= static_cast<unsigned char>(text[i]);
    hash *= 0x100000001b3ULL;
  }
  return hash;
}

const Printex::ZqVseprOptions& FingerprintOptions(const ZqMolModelSettings& settings) {
  return settings.fingerprint.GetImpl();
}

// The occupied bins of the molecule's fingerprint, as "BIN:WEIGHT ...".
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

// The fingerprint of saved bins ("BIN:WEIGHT ..."); nothing for text that
// is not such a list.
std::optional<Printex::ZqVseprFingerprint> FingerprintFromBins(const std::string& bins,
                                                               const Printex::ZqVseprOptions& options) {
  std::vector<std::uint8_t> bytes(Printex::ZqVseprFingerprint::kNumBins, 0);
  const char* at = bins.c_str();
  while (*at != '\0') {
    char* end = nullptr;
    const unsigned long bin = std::strtoul(at, &end, 10);
    if (end == at || *end != ':' || bin >= bytes.size()) return std::nullopt;
    at = end + 1;
    const unsigned long weight = std::strtoul(at, &end, 10);
    if (end == at || weight == 0 || weight > 255 || bytes[bin] != 0) return std::nullopt;
    bytes[bin] = static_cast<std::uint8_t>(weight);
    at = end;
    if (*at == ' ') ++at;
  }
  return Printex::ZqVseprFingerprint::FromBytes(std::move(bytes), options);
}

std::string KernelLine(const ZqKrigeKernelBase& kernel) {
  return kernel.GetName() + '\t' + Hex(kernel.GetSill()) + '\t' + Hex(kernel.GetNugget()) + '\t' +
         Hex(kernel.GetRange());
}

// The candidate kernel of a kernel line, with its parameters; nothing for an
// unknown name or a number that does not read.
std::optional<ZqKrigeKernel> KernelFromLine(const std::string& line) {
  std::vector<std::string> fields;
  Corvane::ZqStringTokenize(fields, line, "\t", false);
  double sill = 0.0, nugget = 0.0, range = 0.0;
  if (fields.size() != 4 || !ParseHex(fields[1], sill) || !ParseHex(fields[2], nugget) ||
      !ParseHex(fields[3], range)) {
    return std::nullopt;
  }
  for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
    if (candidate.GetName() != fields[0]) continue;
    ZqKrigeKernel kernel(candidate);
    kernel.SetSill(sill);
    kernel.SetNugget(nugget);
    kernel.SetRange(range);
    return kernel;
  }
  return std::nullopt;
}

// Reads the lines of a model file one by one.
class LineReader {
 public:
  explicit LineReader(std::istringstream& in) : in_(in) {}
  bool Next(std::string& line) {
    if (!std::getline(in_, line)) return false;
    ++number_;
    return true;
  }
  // The value after `key` and a space on the next line; an empty value for
  // a line that is `key` alone.
  bool Field(const std::string& key, std::string& value) {
    std::string line;
    if (!Next(line)) return false;
    if (line == key) {
      value.clear();
      return true;
    }
    if (line.compare(0, key.size() + 1, key + ' ') != 0) return false;
    value = line.substr(key.size() + 1);
    return true;
  }
  std::size_t GetNumber() const { return number_; }

 private:
  std::istringstream& in_;
  std::size_t number_ = 0;
};

struct Header {
  ZqMolModelSettings settings;
  unsigned int fingerprintVersion = 0;  // 0 in version 1 files, which do not say
  ZqKrigeTrainedKernels kernels;
  std::size_t numRecords = 0;
  bool version1 = false;
};

// The lines before the records; the error names the line that is wrong.
bool ReadHeader(LineReader& lines, bool version1, Header& header, std::string& why) {
  std::string value;
  header.version1 = version1;
  ZqMolModelSettings& settings = header.settings;
  unsigned int max = 0, min = 0, force = 0, weight = 0, stereo = 0;
  char rest = 0;
  if (!lines.Field("fingerprint", value) ||
      std::sscanf(value.c_str(), "%u %u %u %u %u%c", &max, &min, &force, &weight, &stereo, &rest) != 5) {
    why = "bad fingerprint line";
    return false;
  }
  settings.fingerprint.SetMaxPathLength(max).SetMinPathLength(min).SetForcePathsOut(force != 0)
      .SetWeightByLength(weight != 0).SetStereoAware(stereo != 0);
  if (!version1) {
    if (!lines.Field("fingerprint-version", value) ||
        !Corvane::ZqStringToNumber(value, header.fingerprintVersion)) {
      why = "bad fingerprint-version line";
      return false;
    }
    if (header.fingerprintVersion != Printex::ZqVseprFingerprint::kVersion) {
      why = "fingerprints of version " + value + ", this library makes version " +
            std::to_string(Printex::ZqVseprFingerprint::kVersion) + ": train the model again";
      return false;
    }
  }
  if (!lines.Field("local", value) || !Corvane::ZqStringToNumber(value, settings.numLocal)) {
    why = "bad local line";
    return false;
  }
  if (!version1) {
    unsigned int predictTraining = 0;
    if (!lines.Field("local-options", value) ||
        std::sscanf(value.c_str(), "%u %u%c", &predictTraining, &settings.maxVariogramSize, &rest) != 2 ||
        predictTraining > 1) {
      why = "bad local-options line";
      return false;
    }
    settings.predictTraining = predictTraining == 1;
  }
  if (!lines.Field("drift", value)) {
    why = "bad drift line";
    return false;
  }
  if (!value.empty()) Corvane::ZqStringTokenize(settings.drift, value, "\t", false);
  if (version1) {
    if (!lines.Field("kernel", value)) {
      why = "bad kernel line";
      return false;
    }
    std::optional<ZqKrigeKernel> kernel = KernelFromLine(value);
    if (!kernel) {
      why = "bad kernel line";
      return false;
    }
    header.kernels.kernels.push_back(*kernel);
    header.kernels.fixed = settings.numLocal == 0;
  } else {
    // "all" or a kernel's name, then " likelihood" for a fit by likelihood.
    const std::string byLikelihood = " likelihood";
    const bool valid = lines.Field("kernel-fit", value);
    if (valid && value.size() > byLikelihood.size() &&
        value.compare(value.size() - byLikelihood.size(), byLikelihood.size(), byLikelihood) == 0) {
      settings.fit = ZqKernelFit::Likelihood;
      value.erase(value.size() - byLikelihood.size());
    }
    // The likelihood fit is for global models only.
    if (!valid || (value != "all" && !ZqIsKrigeKernelName(value)) ||
        (settings.fit == ZqKernelFit::Likelihood && settings.numLocal > 0)) {
      why = "bad kernel-fit line";
      return false;
    }
    if (value != "all") settings.kernel = value;
    if (!lines.Field("response-name", settings.responseName)) {
      why = "bad response-name line";
      return false;
    }
    std::size_t count = 0;
    char state[16] = {};
    if (!lines.Field("kernels", value) || std::sscanf(value.c_str(), "%zu %15s%c", &count, state, &rest) != 2 ||
        count == 0 || (std::string(state) != "fitted" && std::string(state) != "fixed")) {
      why = "bad kernels line";
      return false;
    }
    header.kernels.fixed = std::string(state) == "fixed";
    for (std::size_t k = 0; k < count; ++k) {
      std::optional<ZqKrigeKernel> kernel;
      if (!lines.Field("kernel", value) || !(kernel = KernelFromLine(value))) {
        why = "bad kernel line " + std::to_string(k + 1) + " of " + std::to_string(count);
        return false;
      }
      header.kernels.kernels.push_back(*kernel);
    }
  }
  if (!lines.Field("records", value) || !Corvane::ZqStringToNumber(value, header.numRecords)) {
    why = "bad records line";
    return false;
  }
  return true;
}

}  // namespace

std::string ZqWriteMolModel(const ZqMolModel& model) {
  const ZqMolModelSettings& settings = model.GetSettings();
  const ZqDefaultKrigeDistanceOptions& fp = settings.fingerprint;
  const ZqKrigeTrainedKernels trained = model.GetTrainedKernels();
  std::ostringstream out;
  out << kMagic << '\n';
  out << "fingerprint " << fp.GetMaxPathLength() << ' ' << fp.GetMinPathLength() << ' ' << fp.GetForcePathsOut()
      << ' ' << fp.GetWeightByLength() << ' ' << fp.GetStereoAware() << '\n';
  out << "fingerprint-version " << Printex::ZqVseprFingerprint::kVersion << '\n';
  out << "local " << settings.numLocal << '\n';
  out << "local-options " << settings.predictTraining << ' ' << settings.maxVariogramSize << '\n';
  out << "drift";
  for (std::size_t k = 0; k < settings.drift.size(); ++k) out << (k == 0 ? ' ' : '\t') << settings.drift[k];
  out << '\n';
  out << "kernel-fit " << (settings.kernel.empty() ? std::string("all") : settings.kernel)
      << (settings.fit == ZqKernelFit::Likelihood ? " likelihood" : "") << '\n';
  out << "response-name" << (settings.responseName.empty() ? "" : " " + settings.responseName) << '\n';
  out << "kernels " << trained.kernels.size() << (trained.fixed ? " fixed" : " fitted") << '\n';
  for (const ZqKrigeKernel& kernel : trained.kernels) out << "kernel " << KernelLine(kernel) << '\n';
  out << "records " << model.GetNumRecords() << '\n';
  for (std::size_t i = 0; i < model.GetNumRecords(); ++i) {
    out << "response " << Hex(model.GetResponse(i)) << '\t' << Bins(model.GetRecord(i), FingerprintOptions(settings))
        << '\n';
    out << Molkit::ZqMolToSDRecord(model.GetRecord(i));
  }
  std::string text = out.str();
  text += ZqMolModelChecksumLine(text);
  return text;
}

bool ZqSaveMolModel(const std::string& path, const ZqMolModel& model, std::string& error) {
  if (!model.IsTrained()) {
    error = "cannot save an untrained model to " + path;
    return false;
  }
  const std::string text = ZqWriteMolModel(model);
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) {
    error = "cannot write " + path;
    return false;
  }
  return true;
}

std::string ZqMolModelChecksumLine(const std::string& text) {
  char line[40];
  std::snprintf(line, sizeof line, "checksum %016" PRIx64 "\n", Fnv1a(text.data(), text.size()));
  return line;
}

std::optional<std::uint64_t> ZqMolModelChecksum(const std::string& text) {
  const std::size_t at = text.rfind("checksum ");
  std::uint64_t stored = 0;
  if (at == std::string::npos || (at > 0 && text[at - 1] != '\n') ||
      std::sscanf(text.c_str() + at, "checksum %" SCNx64, &stored) != 1) {
    return std::nullopt;
  }
  return stored;
}

std::optional<ZqMolModel> ZqLoadMolModel(const std::string& path, std::string& error) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    error = "cannot read " + path;
    return std::nullopt;
  }
  std::stringstream whole;
  whole << file.rdbuf();
  return ZqReadMolModel(whole.str(), path, error);
}

std::optional<ZqMolModel> ZqReadMolModel(const std::string& text, const std::string& name, std::string& error) {
  auto fail = [&](const std::string& why) {
    error = name + ": " + why;
    return std::nullopt;
  };
  auto startsWith = [&](const char* magic) {
    const std::string line = std::string(magic) + '\n';
    return text.compare(0, line.size(), line) == 0;
  };
  const bool version1 = startsWith(kMagicVersion1);
  if (!version1 && !startsWith(kMagic)) return fail("not a varimo molecule model (or of another format version)");
  const std::optional<std::uint64_t> stored = ZqMolModelChecksum(text);
  if (!stored) return fail("cut short (no checksum line)");
  const std::size_t checksumAt = text.rfind("checksum ");
  if (*stored != Fnv1a(text.data(), checksumAt)) return fail("corrupt (checksum does not match)");

  std::istringstream in(text.substr(0, checksumAt));
  LineReader lines(in);
  std::string line, value, why;
  lines.Next(line);
  Header header;
  if (!ReadHeader(lines, version1, header, why)) return fail(why);

  ZqMolModel model(header.settings);
  const Printex::ZqVseprOptions& options = FingerprintOptions(header.settings);
  for (std::size_t i = 0; i < header.numRecords; ++i) {
    const std::string where = "record " + std::to_string(i + 1);
    if (!lines.Field("response", value)) return fail(where + ": no response line");
    const std::size_t tab = value.find('\t');
    const std::string responseText = value.substr(0, tab);
    const std::string bins = tab == std::string::npos ? std::string() : value.substr(tab + 1);
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
    std::unique_ptr<Molkit::ZqMolBase> mol = Molkit::ZqMolFromMolBlock(block, &why);
    if (!mol) return fail(where + ": " + why);
    // Fingerprinting is most of the cost of adding a molecule: the saved
    // fingerprint is used, and a sample checks that it is the molecule's.
    const bool check = header.version1 || i % kCheckEvery == 0;
    if (check && Bins(*mol, options) != bins) {
      return fail(where + ": the molecule gives another fingerprint than the saved one (another version?)");
    }
    if (header.version1) {
      if (!model.AddTraining(*mol, response)) return fail(where + ": refused by the model");
      continue;
    }
    const std::optional<Printex::ZqVseprFingerprint> fp = FingerprintFromBins(bins, options);
    if (!fp) return fail(where + ": bad fingerprint bins");
    if (!model.AddTraining(*mol, *fp, response)) return fail(where + ": refused by the model");
  }
  if (lines.Next(line)) return fail("unexpected text after the records at line " + std::to_string(lines.GetNumber()));
  if (model.GetNumRecords() == 0) return fail("no records");

  if (header.version1 && header.settings.numLocal > 0) {
    // A version 1 file keeps only the first of a local model's kernels:
    // fitting them again must find it.
    if (!model.Train()) return fail("the model cannot be trained again");
    if (KernelLine(model.GetKernel()) != KernelLine(header.kernels.kernels.front())) {
      return fail("retraining gives another kernel than the saved one (another version?)");
    }
    return model;
  }
  if (!model.TrainWithKernels(header.kernels)) return fail("the saved kernel does not train the model");
  return model;
}

}  // namespace Varimo
