// The kriging models over vectors of doubles, compiled into the library.
#pragma once

#include <vector>

#include "varimo/krige/create_krige.h"
#include "varimo/krige/euclidean_distance.h"

namespace Varimo {

using ZqVectorElement = std::vector<double>;
using ZqVectorStorage = ZqKrigeDefaultElementStorage<ZqVectorElement>;

extern template class ZqKrigeTrainingContainer<ZqVectorElement, ZqVectorStorage>;
extern template class ZqStandardKrigeImpl<ZqVectorElement, ZqVectorStorage>;
extern template class ZqSimpleKrige<ZqVectorElement, ZqVectorStorage>;
extern template class ZqOrdinaryKrige<ZqVectorElement, ZqVectorStorage>;

}  // namespace Varimo
