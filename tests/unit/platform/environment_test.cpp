#include "platform/platform.h"

#include <gtest/gtest.h>

#include <string>

namespace ads::platform {
namespace {

TEST(EnvironmentTest, SetVariablesReadBackAndUnsetOnesAreMissing) {
    Environment& environment = *System().environment;
    std::string value = "untouched";
    EXPECT_FALSE(environment.Get("ADS_PLATFORM_TEST_NEVER_SET", &value));
    EXPECT_EQ(value, "untouched");

    environment.Set("ADS_PLATFORM_TEST_VALUE", "C:\\Keil\\ARM; with blanks");
    ASSERT_TRUE(environment.Get("ADS_PLATFORM_TEST_VALUE", &value));
    EXPECT_EQ(value, "C:\\Keil\\ARM; with blanks");

    const std::string long_value(5000, 'v');  // past a first guess at the size
    environment.Set("ADS_PLATFORM_TEST_VALUE", long_value);
    ASSERT_TRUE(environment.Get("ADS_PLATFORM_TEST_VALUE", &value));
    EXPECT_EQ(value, long_value);
}

TEST(UserInterfaceTest, HeadlessMessageBoxGoesToStandardErrorAsCaptionAndText) {
    System().environment->Set("ORVANE_HEADLESS", "1");
    ::testing::internal::CaptureStderr();
    System().ui->ShowMessage("Cannot find OrvMake.dll", "ADS");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "ADS: Cannot find OrvMake.dll\n");
}

}  // namespace
}  // namespace ads::platform
