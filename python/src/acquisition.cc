// Acquisition functions on arrays, the selection options and picks shared
// by both model kinds, conformal intervals and the applicability domain.
#include "acquisition.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <string>
#include <vector>

#include "conversions.h"
#include "molecules.h"
#include "varimo/krige/acquisition.h"
#include "varimo/krige/applicability_domain.h"
#include "varimo/krige/calibration.h"
#include "varimo/mol/mol_uncertainty.h"

namespace VarimoPython {
namespace {

using Array = py::array_t<double, py::array::c_style | py::array::forcecast>;

Varimo::ZqAcquisitionKind AcquisitionNamed(const std::string& name) {
  const auto kind = Varimo::ZqAcquisitionKindNamed(name);
  if (!kind) throw py::value_error("acquisition is 'greedy', 'ucb', 'ei', 'pi' or 'thompson', not '" + name + "'");
  return *kind;
}

py::array_t<double> Acquisition(const std::string& name, const Array& mean, const Array& sd, double best,
                                 double kappa, double xi, bool minimize) {
  Varimo::ZqAcquisitionOptions options;
  options.kind = AcquisitionNamed(name);
  if (options.kind == Varimo::ZqAcquisitionKind::Thompson) {
    throw py::value_error("thompson is a joint posterior draw over a pool, not a function of mean and sd: use suggest");
  }
  options.kappa = kappa;
  options.xi = xi;
  options.minimize = minimize;
  if (const std::string problem = Varimo::ZqCheckAcquisitionOptions(options); !problem.empty()) {
    throw py::value_error(problem);
  }
  if (mean.ndim() != 1 || sd.ndim() != 1 || mean.shape(0) != sd.shape(0)) {
    throw py::value_error("mean and sd must be one-dimensional and of one length");
  }
  std::vector<double> values(static_cast<std::size_t>(mean.shape(0)));
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = Varimo::ZqAcquisition(options, mean.data()[i], sd.data()[i], best);
  }
  return ToArray(values);
}

// Interval ends of predictions and variances; NaN where a prediction failed.
py::tuple Intervals(const Varimo::ZqConformalIntervals& intervals, const Array& prediction, const Array& variance,
                    double alpha, bool scaled) {
  if (const std::string problem = Varimo::ZqCheckIntervalAlpha(alpha); !problem.empty()) throw py::value_error(problem);
  if (prediction.ndim() != 1 || variance.ndim() != 1 || prediction.shape(0) != variance.shape(0)) {
    throw py::value_error("prediction and variance must be one-dimensional and of one length");
  }
  std::vector<double> lower(static_cast<std::size_t>(prediction.shape(0))), upper(lower.size());
  for (std::size_t i = 0; i < lower.size(); ++i) {
    const double m = prediction.data()[i], v = variance.data()[i];
    const auto ends = scaled ? intervals.GetScaledNormalInterval(m, v, alpha) : intervals.GetInterval(m, v, alpha);
    lower[i] = ends.first;
    upper[i] = ends.second;
  }
  return py::make_tuple(ToArray(lower), ToArray(upper));
}

// nearest_similarity, within_radius, sd_ratio, in_domain of predictions;
// NaN, 0 and False where a prediction failed.
py::tuple Assess(const Varimo::ZqApplicabilityDomain& domain, const Predictions& predictions) {
  std::vector<double> similarity, ratio;
  std::vector<long> within;
  std::vector<bool> inside;
  for (const Varimo::ZqMolPrediction& p : predictions.results) {
    const Varimo::ZqDomainAssessment a =
        p.result.Valid() ? domain.Assess(p.result.GetKrigeResult()) : Varimo::ZqDomainAssessment();
    similarity.push_back(a.nearestSimilarity);
    ratio.push_back(a.sdRatio);
    within.push_back(static_cast<long>(a.withinRadius));
    inside.push_back(a.inDomain);
  }
  py::array_t<bool> flags(static_cast<py::ssize_t>(inside.size()));
  for (std::size_t i = 0; i < inside.size(); ++i) flags.mutable_data()[i] = inside[i];
  return py::make_tuple(ToArray(similarity), ToArray(within), ToArray(ratio), flags);
}

}  // namespace

Varimo::ZqSelectionOptions SelectionOptions(const py::dict& o) {
  Varimo::ZqSelectionOptions options;
  options.acquisition.kind = AcquisitionNamed(o["acquisition"].cast<std::string>());
  const std::string batch = o["batch"].cast<std::string>();
  const auto kind = Varimo::ZqBatchKindNamed(batch);
  if (!kind) {
    throw py::value_error("batch is 'top', 'believer', 'liar-min', 'liar-mean', 'liar-max' or 'thompson', not '" +
                          batch + "'");
  }
  options.batch = *kind;
  options.acquisition.kappa = o["kappa"].cast<double>();
  options.acquisition.xi = o["xi"].cast<double>();
  options.acquisition.minimize = o["minimize"].cast<bool>();
  options.picks = o["n"].cast<std::size_t>();
  options.candidates = o["candidates"].cast<std::size_t>();
  options.seed = o["seed"].cast<std::uint64_t>();
  options.threads = o["threads"].cast<unsigned int>();
  options.excludeTraining = o["exclude_training"].cast<bool>();
  options.allowDuplicates = o["allow_duplicates"].cast<bool>();
  options.exclude = o["exclude"].cast<std::vector<std::size_t>>();
  if (const std::string problem = Varimo::ZqCheckSelectionOptions(options); !problem.empty()) {
    throw py::value_error(problem);
  }
  return options;
}

py::tuple PicksToPython(const Varimo::ZqSelection& selection) {
  if (!selection.Ok()) throw py::value_error(selection.error);
  std::vector<long> index;
  std::vector<double> prediction, sd, acquisition;
  for (const Varimo::ZqSelectionPick& pick : selection.picks) {
    index.push_back(static_cast<long>(pick.index));
    prediction.push_back(pick.prediction);
    sd.push_back(pick.sd);
    acquisition.push_back(pick.acquisition);
  }
  return py::make_tuple(ToArray(index), ToArray(prediction), ToArray(sd), ToArray(acquisition));
}

void BindAcquisition(py::module_& m) {
  m.def("acquisition", &Acquisition, py::arg("kind"), py::arg("mean"), py::arg("sd"), py::arg("best"),
        py::arg("kappa"), py::arg("xi"), py::arg("minimize"));
  m.def("best_response", &Varimo::ZqBestResponse, py::arg("responses"), py::arg("minimize"));

  py::class_<Varimo::ZqConformalIntervals>(m, "ConformalIntervals")
      .def(py::init<const std::vector<double>&, const std::vector<double>&, const std::vector<double>&>(),
           py::arg("measured"), py::arg("predicted"), py::arg("variances"))
      .def_property_readonly("num_scores", &Varimo::ZqConformalIntervals::GetNumScores)
      .def_property_readonly("variance_scale", &Varimo::ZqConformalIntervals::GetVarianceScale)
      .def("interval", &Intervals, py::arg("prediction"), py::arg("variance"), py::arg("alpha"),
           py::arg("scaled") = false);
  m.def("calibrate_mol_model", [](const Varimo::ZqMolModel& model, unsigned int folds, std::uint64_t seed,
                                  unsigned int threads) {
    py::gil_scoped_release release;
    return Varimo::ZqCalibrateMolModel(model, folds, seed, threads);
  }, py::arg("model"), py::arg("folds"), py::arg("seed"), py::arg("threads"));
  m.def("summarize_calibration", [](const std::vector<double>& measured, const std::vector<double>& predicted,
                                    const std::vector<double>& variances) {
    if (predicted.size() != measured.size() || variances.size() != measured.size()) {
      throw py::value_error("measured, predicted and variances differ in length");
    }
    const Varimo::ZqCalibration c = Varimo::ZqSummarizeCalibration(measured, predicted, variances);
    py::dict d;
    d["coverage50"] = c.coverage50;
    d["coverage80"] = c.coverage80;
    d["coverage90"] = c.coverage90;
    d["coverage95"] = c.coverage95;
    d["miscalibration_area"] = c.miscalibrationArea;
    d["spearman_error_sd"] = c.spearmanErrorSd;
    d["nlpd"] = c.meanNegativeLogDensity;
    return d;
  }, py::arg("measured"), py::arg("predicted"), py::arg("variances"));

  py::class_<Varimo::ZqApplicabilityDomain>(m, "ApplicabilityDomain")
      .def_property_readonly("threshold", &Varimo::ZqApplicabilityDomain::GetThreshold)
      .def("assess", &Assess, py::arg("predictions"));
  m.def("mol_domain", [](const Varimo::ZqMolModel& model, double quantile) {
    Varimo::ZqDomainOptions options;
    options.quantile = quantile;
    py::gil_scoped_release release;
    return Varimo::ZqMolModelDomain(model, options);
  }, py::arg("model"), py::arg("quantile"));
}

}  // namespace VarimoPython
