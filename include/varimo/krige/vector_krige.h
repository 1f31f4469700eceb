// The kriging models over vectors of doubles, compiled into the library.
#pragma once

#include <vector>

#include "varimo/krige/create_krige.h"
#include "varimo/krige/euclidean_distance.h"
#include "varimo/krige/svd_model.h"

namespace Varimo {

using ZqVectorElement = std::vector<double>;
using ZqVectorStorage = ZqKrigeDefaultElementStorage<ZqVectorElement>;
// The storage of the local models' per-query containers.
using ZqVectorLocalStorage = ZqKrigeUnmanagedPtrElementStorage<ZqVectorElement>;

extern template class ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorStorage>;
extern template class ZqStandardKrigeImpl<ZqVectorElement, ZqVectorStorage>;
extern template class ZqSimpleKrige<ZqVectorElement, ZqVectorStorage>;
extern template class ZqOrdinaryKrige<ZqVectorElement, ZqVectorStorage>;
extern template class ZqUniversalKrige<ZqVectorElement, ZqVectorStorage>;

extern template class ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorLocalStorage>;
extern template class ZqStandardKrigeImpl<ZqVectorElement, ZqVectorLocalStorage>;
extern template class ZqSimpleKrige<ZqVectorElement, ZqVectorLocalStorage>;
extern template class ZqOrdinaryKrige<ZqVectorElement, ZqVectorLocalStorage>;
extern template class ZqUniversalKrige<ZqVectorElement, ZqVectorLocalStorage>;

extern template class ZqLocalKrigeImpl<ZqVectorElement, ZqVectorStorage>;
extern template class ZqLocalSimpleKrige<ZqVectorElement, ZqVectorStorage>;
extern template class ZqLocalOrdinaryKrige<ZqVectorElement, ZqVectorStorage>;
extern template class ZqLocalUniversalKrige<ZqVectorElement, ZqVectorStorage>;

}  // namespace Varimo
