#include "varimo/version.h"

#include <gtest/gtest.h>

#include <string>

namespace Varimo {
namespace {

TEST(VersionRecord, ConstantsOfTheBuild) {
  EXPECT_STREQ(VarimoGetVersion(), VARIMO_VERSION_STRING);
  EXPECT_EQ(VarimoGetRelease(),
            VARIMO_VERSION_MAJOR * 10000u + VARIMO_VERSION_MINOR * 100u + VARIMO_VERSION_PATCH);
  EXPECT_NE(VarimoGetDebugRelease(), VarimoGetNonDebugRelease());
  EXPECT_STREQ(VarimoGetPlatform(), "Linux");
  EXPECT_GT(std::string(VarimoGetArch()).size(), 0u);
  EXPECT_NE(std::string(VarimoGetConfigureArgs()).find("-DCMAKE_BUILD_TYPE="), std::string::npos);
  EXPECT_EQ(std::string(VarimoVersion()).rfind(std::string("Varimo ") + VARIMO_VERSION_STRING, 0), 0u);
}

}  // namespace
}  // namespace Varimo
