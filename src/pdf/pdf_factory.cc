// The class of each pdf type. Types with set-up tables but no class of
// their own give the null distribution.
#include "varimo/pdf/multivariate_pdfs.h"
#include "varimo/pdf/null_pdf.h"
#include "varimo/pdf/sample_pdfs.h"
#include "varimo/pdf/univariate_pdfs.h"

namespace Varimo {

std::unique_ptr<ZqUniVarPDFImpl> ZqGetUniVarPDFImpl(std::size_t pdfType, const std::string& variableName,
                                                    const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes) {
  switch (pdfType) {
    case 2: return std::make_unique<ZqUniVarGaussImpl>(variableName, parameters, outcomes);
    case 4: return std::make_unique<ZqUniVarStudentsTImpl>(variableName, parameters, outcomes);
    case 6: return std::make_unique<ZqGammaImpl>(variableName, parameters, outcomes);
    case 7: return std::make_unique<ZqChiSquareImpl>(variableName, parameters, outcomes);
    case 8: return std::make_unique<ZqSnedecorsFImpl>(variableName, parameters, outcomes);
    case 9: return std::make_unique<ZqBetaImpl>(variableName, parameters, outcomes);
    case 15: return std::make_unique<ZqGumbelImpl>(variableName, parameters, outcomes);
    case 16: return std::make_unique<ZqGeneralizedExtremeValueImpl>(variableName, parameters, outcomes);
    case 21: return std::make_unique<ZqUniVarContValRandomSampleImpl>(variableName, parameters, outcomes);
    case 25: return std::make_unique<ZqUniVarMixtureImpl>(variableName, parameters, outcomes);
    default: return std::make_unique<ZqUniVarNullPDFImpl>(variableName, parameters, outcomes);
  }
}

// Type 5 has a class of its own (ZqMultiVarStudentsTImpl), but it is not
// chosen here: a Student's t law by pdf type is the null law.
std::unique_ptr<ZqMultiVarPDFImpl> ZqGetMultiVarPDFImpl(std::size_t pdfType,
                                                        const std::vector<std::string>& variableNames,
                                                        const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes) {
  if (pdfType == 3) return std::make_unique<ZqMultiVarGaussImpl>(variableNames, parameters, outcomes);
  return std::make_unique<ZqMultiVarNullPDFImpl>(variableNames, parameters, outcomes);
}

}  // namespace Varimo
