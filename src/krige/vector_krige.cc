// The models over vectors of doubles, instantiated once here.
#include "varimo/krige/vector_krige.h"

#include "varimo/krige/krige_impl.h"

namespace Varimo {

template class ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorStorage>;
template class ZqStandardKrigeImpl<ZqVectorElement, ZqVectorStorage>;
template class ZqSimpleKrige<ZqVectorElement, ZqVectorStorage>;
template class ZqOrdinaryKrige<ZqVectorElement, ZqVectorStorage>;
template class ZqUniversalKrige<ZqVectorElement, ZqVectorStorage>;

template class ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorLocalStorage>;
template class ZqStandardKrigeImpl<ZqVectorElement, ZqVectorLocalStorage>;
template class ZqSimpleKrige<ZqVectorElement, ZqVectorLocalStorage>;
template class ZqOrdinaryKrige<ZqVectorElement, ZqVectorLocalStorage>;
template class ZqUniversalKrige<ZqVectorElement, ZqVectorLocalStorage>;

template class ZqLocalKrigeImpl<ZqVectorElement, ZqVectorStorage>;
template class ZqLocalSimpleKrige<ZqVectorElement, ZqVectorStorage>;
template class ZqLocalOrdinaryKrige<ZqVectorElement, ZqVectorStorage>;
template class ZqLocalUniversalKrige<ZqVectorElement, ZqVectorStorage>;

template bool ZqFillCovarianceMatrix(Eigen::MatrixXd&,
                                     const ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorStorage>&,
                                     const ZqKrigeKernelBase&);
template bool ZqGetDistAndDiff(std::vector<std::pair<double, double>>&,
                               const ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorStorage>&, bool);
template bool ZqGetDistAndDiffResidual(std::vector<std::pair<double, double>>&,
                                       const ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorStorage>&, bool);

}  // namespace Varimo
