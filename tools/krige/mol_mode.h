// varimo-krige on molecule files: predicting, saving and loading models,
// and cross-validation.
#pragma once

#include "arguments.h"

namespace VarimoKrige {

// Exit statuses as for CSV files: 0, 1 when no kernel can be trained, 2
// for bad input.
int RunMolecules(const Arguments& args);
int RunCrossValidation(const Arguments& args);

}  // namespace VarimoKrige
