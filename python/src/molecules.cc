// The molecule models: batches of parsed molecules, the model with its
// records and files, predictions, cross-validation and reports.
#include "molecules.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "acquisition.h"
#include "conversions.h"
#include "varimo/mol/mol_cross_validation.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/mol/mol_predict.h"
#include "varimo/mol/mol_screen.h"
#include "varimo/mol/mol_selection.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace VarimoPython {

const Molkit::ZqMolBase& At(const Molecules& batch, std::size_t row) {
  if (row >= batch.mols.size()) throw py::index_error("row " + std::to_string(row) + " is past the molecules");
  if (!batch.mols[row]) throw py::value_error("row " + std::to_string(row) + " holds no molecule");
  return *batch.mols[row];
}

namespace {

// The molecules of a batch, in input order.
std::vector<const Molkit::ZqMolBase*> Pointers(const Molecules& batch) {
  std::vector<const Molkit::ZqMolBase*> pointers;
  for (const auto& mol : batch.mols) pointers.push_back(mol.get());
  return pointers;
}

// Molecules from SMILES strings (str) and RDKit binaries (bytes); `fields`
// become SD data of every molecule, each value written with every digit a
// double holds, so that the drift reads it back exactly; a value that is
// not finite leaves its field out, and the model then refuses the molecule.
Molecules FromInputs(const py::list& items, const std::map<std::string, std::vector<double>>& fields) {
  enum class Kind { Smiles, Binary, Missing };
  std::vector<std::pair<Kind, std::string>> inputs;
  for (const py::handle item : items) {
    if (py::isinstance<py::bytes>(item)) {
      inputs.emplace_back(Kind::Binary, item.cast<std::string>());
    } else if (py::isinstance<py::str>(item)) {
      inputs.emplace_back(Kind::Smiles, item.cast<std::string>());
    } else if (item.is_none()) {
      inputs.emplace_back(Kind::Missing, std::string());
    } else {
      throw py::type_error("a molecule is a SMILES string or an RDKit molecule, not " +
                           std::string(py::str(item.get_type())));
    }
  }
  for (const auto& [name, values] : fields) {
    if (values.size() != inputs.size()) {
      throw py::value_error("the field " + name + " has " + std::to_string(values.size()) + " values for " +
                            std::to_string(inputs.size()) + " molecules");
    }
  }
  Molecules batch;
  batch.mols.resize(inputs.size());
  py::gil_scoped_release release;
  for (std::size_t row = 0; row < inputs.size(); ++row) {
    const auto& [kind, text] = inputs[row];
    std::string error;
    if (kind == Kind::Missing) {
      batch.failures.emplace_back(row, "no molecule");
      continue;
    }
    if (kind == Kind::Smiles && text.find('\0') != std::string::npos) {
      batch.failures.emplace_back(row, "a NUL byte in the SMILES");
      continue;
    }
    std::unique_ptr<Molkit::ZqMolBase> mol =
        kind == Kind::Smiles ? Molkit::ZqMolFromSmiles(text, &error) : Molkit::ZqMolFromRDKitBinary(text, &error);
    if (!mol) {
      batch.failures.emplace_back(row, error);
      continue;
    }
    for (const auto& [name, values] : fields) {
      if (!std::isfinite(values[row])) continue;
      char number[40];
      std::snprintf(number, sizeof number, "%.17g", values[row]);
      mol->SetSDData(name, number);
    }
    batch.mols[row] = std::move(mol);
  }
  return batch;
}

// The record number (from 1) of a reader's message "record N ...".
std::optional<std::size_t> RecordOfMessage(const std::string& message) {
  std::size_t record = 0;
  if (std::sscanf(message.c_str(), "record %zu", &record) != 1 || record == 0) return std::nullopt;
  return record;
}

// Every record of a molecule file in its row (record N in row N - 1); the
// records that cannot be read are failures of their rows.
Molecules FromFile(const std::string& path) {
  if (!std::filesystem::exists(path)) {
    PyErr_SetString(PyExc_FileNotFoundError, ("no such file: " + path).c_str());
    throw py::error_already_set();
  }
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<std::string> errors;
  std::vector<std::size_t> records;
  bool read = false;
  {
    py::gil_scoped_release release;
    read = Molkit::ZqReadMoleculeFile(path, mols, errors, &records);
  }
  if (!read) throw py::value_error("cannot read " + path);
  std::size_t rows = records.empty() ? 0 : records.back();
  for (const std::string& error : errors) {
    if (const auto record = RecordOfMessage(error)) rows = std::max(rows, *record);
  }
  Molecules batch;
  batch.mols.resize(rows);
  for (std::size_t i = 0; i < mols.size(); ++i) batch.mols[records[i] - 1] = std::move(mols[i]);
  for (const std::string& error : errors) {
    if (const auto record = RecordOfMessage(error)) batch.failures.emplace_back(*record - 1, error);
  }
  return batch;
}

Varimo::ZqMolModelSettings Settings(unsigned int maxPath, unsigned int minPath, bool forcePathsOut,
                                    bool weightByLength, bool stereoAware, unsigned int local,
                                    std::vector<std::string> drift, std::string kernel, const std::string& fit,
                                    std::string responseName) {
  Varimo::ZqMolModelSettings settings;
  settings.fingerprint.SetMaxPathLength(maxPath)
      .SetMinPathLength(minPath)
      .SetForcePathsOut(forcePathsOut)
      .SetWeightByLength(weightByLength)
      .SetStereoAware(stereoAware);
  settings.numLocal = local;
  settings.drift = std::move(drift);
  if (!kernel.empty() && !Varimo::ZqIsKrigeKernelName(kernel)) throw py::value_error("no kernel is named '" + kernel + "'");
  settings.kernel = std::move(kernel);
  if (fit != "variogram" && fit != "likelihood") throw py::value_error("kernel_fit is 'variogram' or 'likelihood', not '" + fit + "'");
  if (fit == "likelihood" && local > 0) throw py::value_error("kernel_fit='likelihood' is for global models, not local");
  settings.fit = fit == "likelihood" ? Varimo::ZqKernelFit::Likelihood : Varimo::ZqKernelFit::Variogram;
  settings.responseName = std::move(responseName);
  return settings;
}

py::dict SettingsDict(const Varimo::ZqMolModelSettings& settings) {
  py::dict d;
  d["max_path"] = settings.fingerprint.GetMaxPathLength();
  d["min_path"] = settings.fingerprint.GetMinPathLength();
  d["force_paths_out"] = settings.fingerprint.GetForcePathsOut();
  d["weight_by_length"] = settings.fingerprint.GetWeightByLength();
  d["stereo_aware"] = settings.fingerprint.GetStereoAware();
  d["local"] = settings.numLocal;
  d["drift"] = settings.drift;
  d["kernel"] = settings.kernel;
  d["fit"] = settings.fit == Varimo::ZqKernelFit::Likelihood ? "likelihood" : "variogram";
  d["response_name"] = settings.responseName;
  return d;
}

// The rows of `batch` with their responses, in order; the model refuses
// some (a drift field missing): their rows are returned.
std::vector<std::size_t> AddRecords(Varimo::ZqMolModel& model, const Molecules& batch,
                                    const std::vector<std::size_t>& rows, const std::vector<double>& responses) {
  if (rows.size() != responses.size()) throw py::value_error("rows and responses differ in length");
  for (std::size_t row : rows) At(batch, row);
  std::vector<std::size_t> refused;
  py::gil_scoped_release release;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!model.AddTraining(*batch.mols[rows[i]], responses[i])) refused.push_back(rows[i]);
  }
  return refused;
}

Varimo::ZqMolVariance VarianceKind(bool full) {
  return full ? Varimo::ZqMolVariance::kFull : Varimo::ZqMolVariance::kKriging;
}

py::tuple Values(const Predictions& predictions, bool full) {
  const std::size_t n = predictions.results.size();
  py::array_t<double> prediction(n), variance(n);
  py::array_t<bool> valid(n);
  for (std::size_t i = 0; i < n; ++i) {
    const Varimo::ZqMolKrigeResult& result = predictions.results[i].result;
    prediction.mutable_at(i) = result.Valid() ? NanIfFailed(result.GetResponse()) : std::nan("");
    const double v = full ? result.GetFullVariance() : result.GetVariance();
    variance.mutable_at(i) = result.Valid() ? NanIfFailed(v) : std::nan("");
    valid.mutable_at(i) = result.Valid() && !std::isnan(prediction.at(i)) && !std::isnan(variance.at(i));
  }
  return py::make_tuple(prediction, variance, valid);
}

// Training record ids, weights and distances of the k elements of largest
// weight of each prediction; -1 and NaN where there are fewer.
py::tuple Neighbours(const Predictions& predictions, std::size_t k) {
  const std::size_t n = predictions.results.size();
  py::array_t<long> ids({n, k});
  py::array_t<double> weights({n, k}), distances({n, k});
  for (std::size_t i = 0; i < n; ++i) {
    const Varimo::ZqMolKrigeResult& result = predictions.results[i].result;
    const std::vector<unsigned int> top =
        result.Valid() ? Varimo::ZqLargestWeights(result, k) : std::vector<unsigned int>();
    for (std::size_t j = 0; j < k; ++j) {
      const bool has = j < top.size();
      ids.mutable_at(i, j) = has ? static_cast<long>(result.GetKrigeResult().GetID(top[j])) : -1;
      weights.mutable_at(i, j) = has ? result.GetElementWeight(top[j]) : std::nan("");
      distances.mutable_at(i, j) = has ? result.GetElementDistance(top[j]) : std::nan("");
    }
  }
  return py::make_tuple(ids, weights, distances);
}

py::list Contributions(const Predictions& predictions, const Molecules& batch) {
  py::list out;
  for (std::size_t i = 0; i < predictions.results.size(); ++i) {
    const std::vector<double>& all = predictions.results[i].contributions;
    const Molkit::ZqMolBase* mol = i < batch.mols.size() ? batch.mols[i].get() : nullptr;
    if (all.empty() || mol == nullptr) {
      out.append(py::none());
      continue;
    }
    std::vector<double> heavy;
    for (std::size_t a = 0; a < all.size(); ++a) {
      if (!Molkit::ZqIsHydrogen(mol->GetAtom(a))) heavy.push_back(all[a]);
    }
    out.append(ToArray(heavy));
  }
  return out;
}

py::array_t<double> ProbabilityAbove(const Predictions& predictions, double threshold, bool full) {
  const std::size_t n = predictions.results.size();
  py::array_t<double> p(n);
  for (std::size_t i = 0; i < n; ++i) {
    const Varimo::ZqMolKrigeResult& result = predictions.results[i].result;
    p.mutable_at(i) = result.Valid() ? Varimo::ZqProbabilityGreaterThan(result, threshold, VarianceKind(full)) : std::nan("");
    if (result.Valid() && !(p.at(i) >= 0.0 && p.at(i) <= 1.0)) p.mutable_at(i) = std::nan("");
  }
  return p;
}

py::dict CrossValidate(const Varimo::ZqMolModelSettings& settings, const Molecules& batch,
                       const std::vector<std::size_t>& rows, const std::vector<double>& responses,
                       unsigned int folds, std::uint64_t seed, unsigned int threads) {
  if (rows.size() != responses.size()) throw py::value_error("rows and responses differ in length");
  std::vector<const Molkit::ZqMolBase*> mols;
  for (std::size_t row : rows) mols.push_back(&At(batch, row));
  Varimo::ZqMolCrossValidation cv;
  {
    py::gil_scoped_release release;
    cv = Varimo::ZqCrossValidateMolModel(settings, mols, responses, folds, seed, threads);
  }
  std::vector<double> prediction, variance;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    prediction.push_back(NanIfFailed(cv.prediction[i]));
    variance.push_back(NanIfFailed(cv.variance[i]));
  }
  std::vector<std::size_t> refused;
  for (std::size_t i : cv.refused) refused.push_back(rows[i]);
  py::list kernels;
  for (const Varimo::ZqMolCrossValidationFold& fold : cv.folds) {
    kernels.append(fold.trained ? py::cast(fold.kernel) : py::none());
  }
  py::dict d;
  d["fold"] = ToArray(cv.fold);
  d["prediction"] = ToArray(prediction);
  d["variance"] = ToArray(variance);
  d["refused"] = refused;
  d["fold_kernels"] = kernels;
  d["rmse"] = cv.summary.rmse;
  d["r2"] = cv.summary.r2;
  d["coverage95"] = cv.summary.coverage95;
  d["counted"] = cv.summary.counted;
  d["failed"] = cv.summary.failed;
  return d;
}

}  // namespace

void BindMolecules(py::module_& m) {
  py::class_<Molecules>(m, "Molecules", "Parsed molecules in input order; a row that failed holds none.")
      .def("__len__", [](const Molecules& b) { return b.mols.size(); })
      .def_property_readonly("failures", [](const Molecules& b) { return b.failures; },
                             "(row, reason) of every row without a molecule")
      .def("names", [](const Molecules& b) {
        std::vector<std::string> names;
        for (const auto& mol : b.mols) names.push_back(mol ? mol->GetName() : std::string());
        return names;
      })
      .def("field", [](const Molecules& b, const std::string& tag) {
        std::vector<std::optional<std::string>> values;
        for (const auto& mol : b.mols) {
          if (mol && mol->HasSDData(tag)) {
            values.emplace_back(mol->GetSDData(tag));
          } else {
            values.emplace_back(std::nullopt);
          }
        }
        return values;
      }, "The text of an SD field of every row; None where absent.")
      .def("num_heavy_atoms", [](const Molecules& b) {
        std::vector<long> counts;
        for (const auto& mol : b.mols) counts.push_back(mol ? static_cast<long>(mol->GetNumHeavyAtoms()) : -1);
        return ToArray(counts);
      });
  m.def("molecules_from_inputs", &FromInputs, py::arg("items"), py::arg("fields") = std::map<std::string, std::vector<double>>());
  m.def("read_molecule_file", &FromFile, py::arg("path"));

  py::class_<Predictions>(m, "Predictions")
      .def("__len__", [](const Predictions& p) { return p.results.size(); })
      .def("values", &Values, py::arg("full") = false,
           "(prediction, variance, valid); NaN where a prediction failed; full: the full kriging variance")
      .def("neighbours", &Neighbours, py::arg("k"))
      .def("contributions", &Contributions, py::arg("molecules"))
      .def("probability_above", &ProbabilityAbove, py::arg("threshold"), py::arg("full") = false)
      .def("kernels", [](const Predictions& p) {
        std::vector<std::optional<std::string>> names;
        for (const auto& r : p.results) {
          if (r.result.Valid()) {
            names.emplace_back(r.result.GetKernel().GetName());
          } else {
            names.emplace_back(std::nullopt);
          }
        }
        return names;
      }, "The name of the kernel behind each prediction; None where it failed.");

  py::class_<Varimo::ZqMolModel>(m, "MolModel")
      .def(py::init([](unsigned int maxPath, unsigned int minPath, bool forcePathsOut, bool weightByLength,
                       bool stereoAware, unsigned int local, std::vector<std::string> drift, std::string kernel,
                       const std::string& fit, std::string responseName) {
             return Varimo::ZqMolModel(Settings(maxPath, minPath, forcePathsOut, weightByLength, stereoAware, local,
                                                std::move(drift), std::move(kernel), fit, std::move(responseName)));
           }),
           py::arg("max_path"), py::arg("min_path"), py::arg("force_paths_out"), py::arg("weight_by_length"),
           py::arg("stereo_aware"), py::arg("local"), py::arg("drift"), py::arg("kernel"), py::arg("fit"),
           py::arg("response_name"))
      .def_property_readonly("settings", [](const Varimo::ZqMolModel& model) { return SettingsDict(model.GetSettings()); })
      .def_property_readonly("num_records", &Varimo::ZqMolModel::GetNumRecords)
      .def_property_readonly("responses", [](const Varimo::ZqMolModel& model) { return ToArray(model.GetResponses()); })
      .def_property_readonly("mean_response", &Varimo::ZqMolModel::GetMeanResponse)
      .def_property_readonly("trained", &Varimo::ZqMolModel::IsTrained)
      .def("add", &AddRecords, py::arg("molecules"), py::arg("rows"), py::arg("responses"),
           "Adds the rows in order; returns the rows the model refused.")
      .def("train", [](Varimo::ZqMolModel& model) {
        py::gil_scoped_release release;
        return model.Train();
      })
      .def("predict", [](const Varimo::ZqMolModel& model, const Molecules& batch, unsigned int threads,
                         bool contributions, bool fallbackKernels) {
        if (!model.IsTrained()) throw py::value_error("the model is not trained");
        Predictions predictions;
        Varimo::ZqMolPredictOptions options;
        options.threads = threads;
        options.contributions = contributions;
        options.baseline = model.GetMeanResponse();
        const std::vector<const Molkit::ZqMolBase*> queries = Pointers(batch);
        py::gil_scoped_release release;
        predictions.results = Varimo::ZqPredictMolecules(model.GetKrige(), queries, options);
        for (std::size_t i = 0; fallbackKernels && i < queries.size(); ++i) {
          Varimo::ZqMolPrediction& p = predictions.results[i];
          if (queries[i] == nullptr || p.result.Valid()) continue;
          p.result = model.GetFallbackResult(*queries[i]);
          if (contributions && p.result.Valid()) p.contributions = p.result.GetAtomContributions(*queries[i], options.baseline);
        }
        return predictions;
      }, py::arg("molecules"), py::arg("threads") = 1, py::arg("contributions") = false,
         py::arg("fallback_kernels") = false)
      .def("drift_extrapolations", [](const Varimo::ZqMolModel& model, const Molecules& batch) {
        // (row, what lies outside) for each molecule whose drift leaves the
        // training range.
        std::vector<std::pair<std::size_t, std::string>> out;
        for (std::size_t i = 0; i < batch.mols.size(); ++i) {
          if (!batch.mols[i]) continue;
          std::string text = Varimo::ZqDescribeDriftExtrapolation(model, *batch.mols[i]);
          if (!text.empty()) out.emplace_back(i, std::move(text));
        }
        return out;
      }, py::arg("molecules"))
      .def("explain_failures", [](const Varimo::ZqMolModel& model, const Molecules& batch,
                                  const std::vector<std::size_t>& rows) {
        // Why each of these rows got no valid prediction, in the program's words.
        std::vector<std::string> out;
        for (const std::size_t row : rows) {
          const bool present = row < batch.mols.size() && batch.mols[row];
          out.push_back(present ? Varimo::ZqExplainFailedPrediction(model, *batch.mols[row], false)
                                : std::string("the prediction failed"));
        }
        return out;
      }, py::arg("molecules"), py::arg("rows"))
      .def("explain_no_kernel", [](const Varimo::ZqMolModel& model, const std::vector<std::string>& warnings) {
        // Why training failed, in the program's words, given what it reported.
        return Varimo::ZqExplainNoKernel(model, warnings);
      }, py::arg("warnings"))
      .def("kernel", [](const Varimo::ZqMolModel& model) { return ToTuple(model.GetKernel()); })
      .def("trained_kernels", [](const Varimo::ZqMolModel& model) { return ToPython(model.GetTrainedKernels()); })
      .def("variogram", [](const Varimo::ZqMolModel& model) {
        Varimo::ZqVariogram variogram = [&] {
          py::gil_scoped_release release;
          return model.GetKrige().GetVariogram();
        }();
        return ToPython(variogram);
      })
      .def("to_text", [](const Varimo::ZqMolModel& model) {
        if (!model.IsTrained()) throw py::value_error("the model is not trained");
        return py::bytes(Varimo::ZqWriteMolModel(model));
      })
      .def_static("from_text", [](const std::string& text, const std::string& name) {
        std::string error;
        std::optional<Varimo::ZqMolModel> model;
        {
          py::gil_scoped_release release;
          model = Varimo::ZqReadMolModel(text, name, error);
        }
        if (!model) throw py::value_error(error);
        return std::move(*model);
      }, py::arg("text"), py::arg("name"))
      .def("record_name", [](const Varimo::ZqMolModel& model, std::size_t i) {
        if (i >= model.GetNumRecords()) throw py::index_error("no record " + std::to_string(i));
        return model.GetRecord(i).GetName();
      })
      .def("record_smiles", [](const Varimo::ZqMolModel& model, std::size_t i) {
        if (i >= model.GetNumRecords()) throw py::index_error("no record " + std::to_string(i));
        return model.GetRecord(i).GetCanonicalSmiles();
      })
      .def("select", [](const Varimo::ZqMolModel& model, const Molecules& pool, const py::dict& options) {
        const Varimo::ZqSelectionOptions selection = SelectionOptions(options);
        Varimo::ZqMolListPool source(model, Pointers(pool), selection.threads);
        Varimo::ZqSelection chosen;
        {
          py::gil_scoped_release release;
          chosen = Varimo::ZqSelectMolecules(model, source, selection);
        }
        return PicksToPython(chosen);
      }, py::arg("pool"), py::arg("options"))
      .def("cross_validate", [](const Varimo::ZqMolModel& model, const Molecules& batch,
                                const std::vector<std::size_t>& rows, const std::vector<double>& responses,
                                unsigned int folds, std::uint64_t seed, unsigned int threads) {
        return CrossValidate(model.GetSettings(), batch, rows, responses, folds, seed, threads);
      }, py::arg("molecules"), py::arg("rows"), py::arg("responses"), py::arg("folds"), py::arg("seed"),
         py::arg("threads"));

  m.def("select_training", [](const Molecules& batch, const std::string& response) {
    std::vector<std::size_t> records;
    for (std::size_t row = 0; row < batch.mols.size(); ++row) records.push_back(row + 1);
    std::vector<std::string> errors;
    const Varimo::ZqMolTrainingRecords set = Varimo::ZqSelectMolTraining(Pointers(batch), records, response, errors);
    return py::make_tuple(set.indices, ToArray(set.responses), errors);
  }, py::arg("molecules"), py::arg("response"),
     "The rows whose SD field `response` is a finite number on a molecule with heavy atoms, their values, and "
     "a message for each row left out.");
}

}  // namespace VarimoPython
