// Kriging on rows of numbers: the engine of varimo-krige's CSV mode.
#include "vectors.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "acquisition.h"
#include "conversions.h"
#include "varimo/krige/applicability_domain.h"
#include "varimo/krige/cross_validation.h"
#include "varimo/krige/vector_model.h"

namespace VarimoPython {
namespace {

class VectorModel {
 public:
  VectorModel(const std::string& model, std::size_t numFeatures, std::size_t numDrift, unsigned int local,
              const std::string& kernel, const std::string& fit, const std::string& metric)
      : kernel_(kernel), byLikelihood_(fit == "likelihood") {
    using Model = Varimo::ZqVectorKrigeSettings::Model;
    if (model == "simple") {
      settings_.model = Model::Simple;
    } else if (model == "ordinary") {
      settings_.model = Model::Ordinary;
    } else if (model == "universal") {
      settings_.model = Model::Universal;
    } else {
      throw py::value_error("model is 'simple', 'ordinary' or 'universal', not '" + model + "'");
    }
    if (!kernel.empty()) CandidateKernel(kernel);  // refuses an unknown name
    if (fit != "variogram" && fit != "likelihood") {
      throw py::value_error("kernel_fit is 'variogram' or 'likelihood', not '" + fit + "'");
    }
    if (byLikelihood_ && local > 0) throw py::value_error("kernel_fit='likelihood' is for global models, not local");
    using Metric = Varimo::ZqVectorKrigeSettings::Metric;
    if (metric == "euclidean") {
      settings_.metric = Metric::Euclidean;
    } else if (metric == "minmax") {
      settings_.metric = Metric::MinMax;
    } else {
      throw py::value_error("metric is 'euclidean' or 'minmax', not '" + metric + "'");
    }
    settings_.numFeatures = numFeatures;
    settings_.numDrift = numDrift;
    settings_.numLocal = local;
    model_ = Varimo::ZqMakeVectorKrige(settings_);
  }

  // Adds the rows in order; returns those the model refuses.
  std::vector<std::size_t> Add(const py::array_t<double, py::array::c_style | py::array::forcecast>& x,
                               const py::array_t<double, py::array::c_style | py::array::forcecast>& y) {
    const std::vector<Varimo::ZqVectorElement> rows = Rows(x);
    if (y.ndim() != 1 || static_cast<std::size_t>(y.shape(0)) != rows.size()) {
      throw py::value_error("y needs one value per row of X");
    }
    std::vector<std::size_t> refused;
    const double* values = y.data();
    py::gil_scoped_release release;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (!Varimo::ZqIsUsableRow(settings_, rows[i]) || !std::isfinite(values[i]) ||
          !model_->AddTraining(rows[i], values[i])) {
        refused.push_back(i);
      }
    }
    trained_ = false;
    return refused;
  }

  // Every candidate, or the named one fitted alone, as varimo-krige --kernel
  // and --fit.
  bool Train() {
    if (byLikelihood_) {
      std::optional<Varimo::ZqKrigeKernel> kernel;
      if (!kernel_.empty()) kernel.emplace(CandidateKernel(kernel_));
      py::gil_scoped_release release;
      trained_ = Varimo::ZqTrainVectorByLikelihood(*model_, settings_, kernel ? &*kernel : nullptr);
      return trained_;
    }
    if (kernel_.empty()) {
      py::gil_scoped_release release;
      trained_ = model_->Train();
      return trained_;
    }
    Varimo::ZqKrigeKernel kernel = CandidateKernel(kernel_);
    py::gil_scoped_release release;
    trained_ = model_->Train(kernel);
    return trained_;
  }

  bool TrainWithKernels(const std::vector<KernelTuple>& kernels, bool fixed) {
    const Varimo::ZqKrigeTrainedKernels trained = TrainedKernelsFrom(kernels, fixed);
    py::gil_scoped_release release;
    trained_ = model_->TrainWithKernels(trained);
    return trained_;
  }

  py::tuple Predict(const py::array_t<double, py::array::c_style | py::array::forcecast>& x, unsigned int threads) {
    if (!trained_) throw py::value_error("the model is not trained");
    const std::vector<Varimo::ZqVectorElement> rows = Rows(x);
    std::vector<double> predictions, variances;
    {
      py::gil_scoped_release release;
      Varimo::ZqPredictVectorRows(*model_, rows, threads, predictions, variances);
    }
    return py::make_tuple(ToArray(predictions), ToArray(variances));
  }

  // The picks from the rows of a pool (batch_selection.h).
  py::tuple Select(const py::array_t<double, py::array::c_style | py::array::forcecast>& x, const py::dict& options) {
    if (!trained_) throw py::value_error("the model is not trained");
    const Varimo::ZqSelectionOptions selection = SelectionOptions(options);
    const std::vector<Varimo::ZqVectorElement> rows = Rows(x);
    Varimo::ZqPoolInMemory<Varimo::ZqVectorElement> pool(rows);
    Varimo::ZqSelection chosen;
    {
      py::gil_scoped_release release;
      chosen = Varimo::ZqSelectBatch(*model_, pool, selection);
    }
    return PicksToPython(chosen);
  }

  // nearest distance, training rows within the radius, sd ratio and
  // in_domain of each row, against the domain of the training rows.
  py::tuple Applicability(const py::array_t<double, py::array::c_style | py::array::forcecast>& x, double quantile) {
    if (!trained_) throw py::value_error("the model is not trained");
    const std::vector<Varimo::ZqVectorElement> rows = Rows(x);
    std::vector<double> nearest(rows.size()), ratio(rows.size());
    std::vector<long> within(rows.size());
    py::array_t<bool> inside(static_cast<py::ssize_t>(rows.size()));
    {
      py::gil_scoped_release release;
      Varimo::ZqDomainOptions options;
      options.quantile = quantile;
      const Varimo::ZqApplicabilityDomain domain = Varimo::ZqApplicabilityDomain::FromModel(*model_, options);
      const Varimo::ZqKrigeBase<Varimo::ZqVectorElement>& model = *model_;
      for (std::size_t i = 0; i < rows.size(); ++i) {
        const Varimo::ZqDomainAssessment a = Varimo::ZqIsUsableRow(settings_, rows[i])
                                                 ? domain.Assess(model.GetKrigeResult(rows[i]))
                                                 : Varimo::ZqDomainAssessment();
        nearest[i] = a.nearestDistance;
        ratio[i] = a.sdRatio;
        within[i] = static_cast<long>(a.withinRadius);
        inside.mutable_data()[i] = a.inDomain;
      }
    }
    return py::make_tuple(ToArray(nearest), ToArray(within), ToArray(ratio), inside);
  }

  KernelTuple Kernel() const { return ToTuple(std::as_const(*model_).GetKernel()); }
  py::tuple TrainedKernels() const { return ToPython(model_->GetTrainedKernels()); }
  py::tuple Variogram() const {
    const Varimo::ZqKrigeBase<Varimo::ZqVectorElement>& model = *model_;
    Varimo::ZqVariogram variogram = [&] {
      py::gil_scoped_release release;
      return model.GetVariogram();
    }();
    return ToPython(variogram);
  }
  double ErrorValue() const { return model_->GetErrorValue(); }

 private:
  std::vector<Varimo::ZqVectorElement> Rows(const py::array_t<double, py::array::c_style | py::array::forcecast>& x) const {
    if (x.ndim() != 2) throw py::value_error("X must be two-dimensional");
    const std::size_t n = static_cast<std::size_t>(x.shape(0)), width = static_cast<std::size_t>(x.shape(1));
    if (width != settings_.numFeatures + settings_.numDrift) {
      throw py::value_error("X has " + std::to_string(width) + " columns; the model reads " +
                            std::to_string(settings_.numFeatures + settings_.numDrift));
    }
    std::vector<Varimo::ZqVectorElement> rows(n);
    const double* data = x.data();
    for (std::size_t i = 0; i < n; ++i) rows[i].assign(data + i * width, data + (i + 1) * width);
    return rows;
  }

  Varimo::ZqVectorKrigeSettings settings_;
  std::string kernel_;
  bool byLikelihood_ = false;
  std::unique_ptr<Varimo::ZqKrigeBase<Varimo::ZqVectorElement>> model_;
  bool trained_ = false;
};

}  // namespace

void BindVectors(py::module_& m) {
  py::class_<VectorModel>(m, "VectorModel")
      .def(py::init<const std::string&, std::size_t, std::size_t, unsigned int, const std::string&,
                    const std::string&, const std::string&>(),
           py::arg("model"), py::arg("num_features"), py::arg("num_drift"), py::arg("local"), py::arg("kernel"),
           py::arg("fit") = "variogram", py::arg("metric") = "euclidean")
      .def("add", &VectorModel::Add, py::arg("x"), py::arg("y"))
      .def("train", &VectorModel::Train)
      .def("train_with_kernels", &VectorModel::TrainWithKernels, py::arg("kernels"), py::arg("fixed"))
      .def("predict", &VectorModel::Predict, py::arg("x"), py::arg("threads") = 1)
      .def("select", &VectorModel::Select, py::arg("x"), py::arg("options"))
      .def("applicability", &VectorModel::Applicability, py::arg("x"), py::arg("quantile"))
      .def("kernel", &VectorModel::Kernel)
      .def("trained_kernels", &VectorModel::TrainedKernels)
      .def("variogram", &VectorModel::Variogram)
      .def_property_readonly("error_value", &VectorModel::ErrorValue);

  m.def("cross_validation_folds", [](std::size_t n, unsigned int folds, std::uint64_t seed) {
    return ToArray(Varimo::ZqCrossValidationFolds(n, folds, seed));
  }, py::arg("n"), py::arg("folds"), py::arg("seed"));
  m.def("summarize_cross_validation", [](const std::vector<double>& measured, const std::vector<double>& predicted,
                                         const std::vector<double>& variances) {
    if (predicted.size() != measured.size() || variances.size() != measured.size()) {
      throw py::value_error("measured, predicted and variances differ in length");
    }
    const Varimo::ZqCrossValidationSummary summary = Varimo::ZqSummarizeCrossValidation(measured, predicted, variances);
    py::dict d;
    d["rmse"] = summary.rmse;
    d["r2"] = summary.r2;
    d["coverage95"] = summary.coverage95;
    d["counted"] = summary.counted;
    d["failed"] = summary.failed;
    return d;
  }, py::arg("measured"), py::arg("predicted"), py::arg("variances"));
}

}  // namespace VarimoPython
