// A molecule property list whose properties are partial least squares
// scores: trained on molecules that carry J predictor properties and K
// responses, it gives for a new molecule its scores on the first L latent
// vectors. Used as the drift of a universal kriging model, it lets the model
// work on a few scores in place of many raw properties.
//
//   Varimo::ZqMolPLSPropertyList scores(descriptors, activity, 3);
//   for (auto& mol : training) scores.AddTraining(*mol);
//   if (scores.Train()) Varimo::ZqMolKrige model(scores, Varimo::ZqGlobalKrigeOptions());
//
// The constructor and Train() print their report through Corvane's output
// sink;
// warnings go through Corvane::ZqThrow.
#pragma once

#include <Eigen/Core>

#include <memory>
#include <vector>

#include "varimo/platform/molkit/mol_property.h"

namespace Varimo {

class ZqMolPLSPropertyList : public Molkit::ZqMolPropertyList {
 public:
  // Copies both lists; keeps at most numLatent scores. Prints "_J = " and J.
  ZqMolPLSPropertyList(const Molkit::ZqMolPropertyList& predictors, const Molkit::ZqMolPropertyList& responses,
                       unsigned long numLatent);
  ZqMolPLSPropertyList(const ZqMolPLSPropertyList& other);
  ZqMolPLSPropertyList& operator=(const ZqMolPLSPropertyList& other);

  // True when the molecule had every predictor and every response, which
  // are then appended. A molecule without all predictors is ignored with a
  // warning; one without all responses too, but its predictors stay
  // appended (and make the table inconsistent: Train then fails).
  bool AddTraining(const Molkit::ZqMolBase& mol);
  bool AddTraining(const Molkit::ZqMCMolBase& mol);

  // Fits the model on the molecules added, prints the report, keeps
  // min(numLatent, found) scores and returns 1; 0, untrained, when fewer
  // than two molecules were added or the values do not make a table.
  // Costs a model per molecule for the leave-one-out error it reports.
  int Train();
  // Forgets the training data and the model.
  void Clear();

  // The predictors are there and the list is trained.
  bool HasProperties(const Molkit::ZqMolBase& mol) const override;
  bool HasProperties(const Molkit::ZqMCMolBase& mol) const override;
  // L, the number of scores kept.
  unsigned long GetSize() const override { return numLatent_; }
  // The score on latent vector `index`: [1, x] . column index of Fstar. For
  // an index at or beyond L, a warning and 0.
  double GetProperty(const Molkit::ZqMolBase& mol, unsigned long index) const override;
  double GetProperty(const Molkit::ZqMCMolBase& mol, unsigned long index) const override;
  Molkit::ZqMolPropertyList* CreateCopy() const override { return new ZqMolPLSPropertyList(*this); }

 private:
  template <class Mol>
  bool AddTrainingOf(const Mol& mol);
  template <class Mol>
  double ScoreOf(const Mol& mol, unsigned long index) const;

  std::unique_ptr<Molkit::ZqMolPropertyList> predictors_;
  std::unique_ptr<Molkit::ZqMolPropertyList> responses_;
  unsigned long numMols_ = 0;
  unsigned long J_ = 0;
  unsigned long K_ = 0;
  double innerTol_ = 1e-6;
  double residualTol_ = 1e-6;
  std::vector<double> predictorValues_;
  std::vector<double> responseValues_;
  Eigen::MatrixXd Fstar_;
  unsigned long numLatent_ = 0;
  bool trained_ = false;
};

}  // namespace Varimo
