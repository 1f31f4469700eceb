// All template definitions of the kriging models, for element types other
// than those compiled into the library. Include it in one source file.
#pragma once

#include "varimo/krige/local_krige_impl.h"
#include "varimo/krige/ordinary_krige_impl.h"
#include "varimo/krige/simple_krige_impl.h"
#include "varimo/krige/standard_krige_impl.h"
#include "varimo/krige/svd_model_impl.h"
#include "varimo/krige/training_container_impl.h"
#include "varimo/krige/universal_krige_impl.h"
