// The least-squares fit over vectors of doubles, instantiated once here:
// Eigen's SVD is too heavy to compile in every user of the engine.
#include "varimo/krige/svd_model_impl.h"

namespace Varimo {

template class ZqSVD<std::vector<double>>;

}  // namespace Varimo
