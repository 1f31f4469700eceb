// The version record: constants fixed when the library was configured.
#pragma once

#include "varimo/version_config.h"

namespace Varimo {

// Release text "major.minor.patch".
const char* VarimoGetVersion();
// The release as one number, major * 10000 + minor * 100 + patch.
unsigned int VarimoGetRelease();
// Whether this library was built as a debug build, and its negation.
bool VarimoGetDebugRelease();
bool VarimoGetNonDebugRelease();
// Processor and operating system the library was built for ("x86_64", "Linux").
const char* VarimoGetArch();
const char* VarimoGetPlatform();
// The cache settings the build was configured with, as -D arguments.
const char* VarimoGetConfigureArgs();
// One line naming the library, its release, build type, processor and system.
const char* VarimoVersion();

}  // namespace Varimo
