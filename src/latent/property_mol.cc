#include "varimo/latent/property_mol.h"

#include <ostream>
#include <sstream>

#include "varimo/latent/pls_krige.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

ZqMolPLSPropertyList::ZqMolPLSPropertyList(const Molkit::ZqMolPropertyList& predictors,
                                           const Molkit::ZqMolPropertyList& responses, unsigned long numLatent)
    : predictors_(predictors.CreateCopy()),
      responses_(responses.CreateCopy()),
      J_(predictors.GetSize()),
      K_(responses.GetSize()),
      numLatent_(numLatent) {
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, "_J = %lu\n", J_);
}

ZqMolPLSPropertyList::ZqMolPLSPropertyList(const ZqMolPLSPropertyList& other)
    : Molkit::ZqMolPropertyList(other),
      predictors_(other.predictors_->CreateCopy()),
      responses_(other.responses_->CreateCopy()),
      numMols_(other.numMols_),
      J_(other.J_),
      K_(other.K_),
      innerTol_(other.innerTol_),
      residualTol_(other.residualTol_),
      predictorValues_(other.predictorValues_),
      responseValues_(other.responseValues_),
      Fstar_(other.Fstar_),
      numLatent_(other.numLatent_),
      trained_(other.trained_) {}

ZqMolPLSPropertyList& ZqMolPLSPropertyList::operator=(const ZqMolPLSPropertyList& other) {
  if (this != &other) {
    ZqMolPLSPropertyList copy(other);
    std::swap(predictors_, copy.predictors_);
    std::swap(responses_, copy.responses_);
    numMols_ = copy.numMols_;
    J_ = copy.J_;
    K_ = copy.K_;
    innerTol_ = copy.innerTol_;
    residualTol_ = copy.residualTol_;
    predictorValues_ = std::move(copy.predictorValues_);
    responseValues_ = std::move(copy.responseValues_);
    Fstar_ = std::move(copy.Fstar_);
    numLatent_ = copy.numLatent_;
    trained_ = copy.trained_;
  }
  return *this;
}

template <class Mol>
bool ZqMolPLSPropertyList::AddTrainingOf(const Mol& mol) {
  if (!predictors_->HasProperties(mol)) {
    Corvane::ZqThrow.Warning("At least one of the properties is not there, molecule will be ignored...");
    return false;
  }
  for (unsigned long j = 0; j < J_; ++j) predictorValues_.push_back(predictors_->GetProperty(mol, j));
  if (!responses_->HasProperties(mol)) {
    // The predictors just appended stay: the caller must not train on an
    // unbalanced table, and Train refuses one.
    Corvane::ZqThrow.Warning("At least one of the responses is not there, molecule will be ignored...");
    return false;
  }
  for (unsigned long k = 0; k < K_; ++k) responseValues_.push_back(responses_->GetProperty(mol, k));
  ++numMols_;
  return true;
}

bool ZqMolPLSPropertyList::AddTraining(const Molkit::ZqMolBase& mol) { return AddTrainingOf(mol); }
bool ZqMolPLSPropertyList::AddTraining(const Molkit::ZqMCMolBase& mol) { return AddTrainingOf(mol); }

namespace {

void PrintValues(std::ostream& out, const char* label, const std::vector<double>& values) {
  out << label;
  for (std::size_t k = 0; k < values.size(); ++k) out << (k == 0 ? "" : " ") << values[k];
  out << "\n";
}

// Sends what `out` holds to the output sink and empties it, so that the
// report keeps its place among the warnings.
void Flush(std::ostringstream& out) {
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
  out.str("");
}

}  // namespace

int ZqMolPLSPropertyList::Train() {
  trained_ = false;
  std::ostringstream out;
  out << "Started the PLS training..." << "\n";
  out << "Number of observations (mols)          : I = " << numMols_ << "\n";
  out << "Number of predictors   (properties)    : J = " << J_ << "\n";
  out << "Number of responses    (for Kriging 1) : K = " << K_ << "\n";
  if (numMols_ < 2 || J_ == 0 || K_ == 0 || predictorValues_.size() != numMols_ * J_ ||
      responseValues_.size() != numMols_ * K_) {
    Flush(out);
    Corvane::ZqThrow.Warning(
        "ZqMolPLSPropertyList::Train, need two or more molecules with all properties and responses "
        "(%lu molecules, %zu predictor values, %zu response values)",
        numMols_, predictorValues_.size(), responseValues_.size());
    return 0;
  }

  const Eigen::Index I = static_cast<Eigen::Index>(numMols_), J = static_cast<Eigen::Index>(J_),
                     K = static_cast<Eigen::Index>(K_);
  Eigen::MatrixXd X(I, J), Y(I, K);
  for (Eigen::Index i = 0; i < I; ++i) {
    for (Eigen::Index j = 0; j < J; ++j) X(i, j) = predictorValues_[static_cast<std::size_t>(i * J + j)];
    for (Eigen::Index k = 0; k < K; ++k) Y(i, k) = responseValues_[static_cast<std::size_t>(i * K + k)];
  }

  ZqPartialLeastSquareRegression pls(innerTol_, residualTol_, X, Y);
  const unsigned long found = pls.BuildLatentVectorsViaNIPALS();
  out << "total number of latent vectors found = " << found << "\n";
  if (numLatent_ > found) {
    Flush(out);
    Corvane::ZqThrow.Warning(
        "Attempt to keep number of latent vectors more than found, instead total number of found latent vectors "
        "will be used: %lu",
        found);
    numLatent_ = found;
  }
  std::vector<double> ofX, ofY;
  pls.GetVarianceProportions(ofX, ofY);
  PrintValues(out, "Proportion of total X variance reproduced per latent vector = ", ofX);
  PrintValues(out, "Proportion of total Y variance reproduced per latent vector = ", ofY);

  out << "Starting to work on RESS, PRESS coefficients calculation..." << "\n";
  double ress = 0.0;
  Eigen::MatrixXd yHat, yPredicted;
  pls.Predict(numLatent_, ress, yHat);
  const double press = ZqPredictedResidualSumOfSquares(numLatent_, innerTol_, residualTol_, X, Y, yPredicted);
  out << "L     = " << numLatent_ << "\n";
  out << "RESS  = " << ress << "\n";
  out << "PRESS = " << press << "\n";

  // The score weights must give back the scores: on standardised rows
  // through F, on raw rows with a leading 1 through Fstar.
  std::vector<Eigen::VectorXd> t, u, p, w, c;
  std::vector<double> b;
  pls.GetTUPWCB(t, u, p, w, c, b);
  Eigen::MatrixXd T(I, static_cast<Eigen::Index>(numLatent_));
  for (unsigned long l = 0; l < numLatent_; ++l) T.col(static_cast<Eigen::Index>(l)) = t[l];
  Eigen::MatrixXd F, Fstar;
  pls.GetFPLS(F, Fstar);
  out << "norm difference T-X_hat*FPLS = " << Matrix_Norm(T - Zscore(X) * F) << "\n";
  Eigen::MatrixXd withOne(I, J + 1);
  withOne << Eigen::MatrixXd::Ones(I, 1), X;
  out << "norm difference T-Xstar*Fstar = " << Matrix_Norm(T - withOne * Fstar) << "\n";
  out << "last but not least Fstar = " << "\n" << Fstar << "\n";

  Fstar_ = Fstar;
  trained_ = true;
  out << "Finished the PLS training..." << "\n";
  Flush(out);
  return 1;
}

void ZqMolPLSPropertyList::Clear() {
  numMols_ = 0;
  predictorValues_.clear();
  responseValues_.clear();
  innerTol_ = 1e-6;
  residualTol_ = 1e-6;
  J_ = predictors_->GetSize();
  Fstar_.resize(0, 0);
  trained_ = false;
}

bool ZqMolPLSPropertyList::HasProperties(const Molkit::ZqMolBase& mol) const {
  return predictors_->HasProperties(mol) && trained_;
}

bool ZqMolPLSPropertyList::HasProperties(const Molkit::ZqMCMolBase& mol) const {
  return predictors_->HasProperties(mol) && trained_;
}

template <class Mol>
double ZqMolPLSPropertyList::ScoreOf(const Mol& mol, unsigned long index) const {
  if (index >= numLatent_ || static_cast<Eigen::Index>(index) >= Fstar_.cols()) {
    Corvane::ZqThrow.Warning(
        "Requested index is outside of the size of the PLS list; zero will be returned but it is meaningless...");
    return 0.0;
  }
  const Eigen::Index column = static_cast<Eigen::Index>(index);
  double score = Fstar_(0, column);
  for (unsigned long j = 0; j < J_; ++j) {
    score += predictors_->GetProperty(mol, j) * Fstar_(static_cast<Eigen::Index>(j) + 1, column);
  }
  return score;
}

double ZqMolPLSPropertyList::GetProperty(const Molkit::ZqMolBase& mol, unsigned long index) const {
  return ScoreOf(mol, index);
}

double ZqMolPLSPropertyList::GetProperty(const Molkit::ZqMCMolBase& mol, unsigned long index) const {
  return ScoreOf(mol, index);
}

}  // namespace Varimo
