// varimo-krige on molecule files: predicting (training or loading a model,
// saving it), cross-validation and choosing from a pool.
#pragma once

#include <string>

#include "arguments.h"

namespace VarimoKrige {

// Exit statuses as for CSV files: 0, 1 when no kernel can be trained, 2
// for bad input.
int RunMolecules(const Arguments& args);
int RunCrossValidation(const Arguments& args);
int RunSelection(const Arguments& args);

// False, with `error` naming both, when an output path is an input or
// another output: the run would overwrite what it reads or writes.
bool CheckPathsDiffer(const Arguments& args, std::string& error);

// Whether an output path names an SD file (.sdf or .sdf.gz, in any case).
bool IsSDOutput(const std::string& path);

}  // namespace VarimoKrige
