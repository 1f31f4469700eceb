#include "varimo/version.h"

#include <gtest/gtest.h>

#include <string>

namespace Varimo {
namespace {

TEST(VersionRecord, ConstantsOfTheBuild) {
  EXPECT_STREQ(VarimoGetVersion(), VARIMO_VERSION_STRING);
  // Release 0.1.0 of the project is number 100: later releases count up.
  EXPECT_GE(VarimoGetRelease(), 100u);
  EXPECT_NE(VarimoGetDebugRelease(), VarimoGetNonDebugRelease());
  EXPECT_STREQ(VarimoGetPlatform(), "Linux");
  EXPECT_GT(std::string(VarimoGetArch()).size(), 0u);
  EXPECT_NE(std::string(VarimoGetConfigureArgs()).find("-DCMAKE_BUILD_TYPE="), std::string::npos);
  EXPECT_EQ(std::string(VarimoVersion()).rfind(std::string("Varimo ") + VARIMO_VERSION_STRING, 0), 0u);
}

}  // namespace
}  // namespace Varimo
