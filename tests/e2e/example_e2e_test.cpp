// The bundled example built as the demo builds it: orvhost, the plug-in and
// the simulated tools, the ARM image target and the Thumb library target,
// then a second build with nothing to do.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/orvhost_fixture.h"

namespace ads {
namespace {

namespace stdfs = std::filesystem;
using ads::testing::Outcome;

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class ExampleTest : public ads::testing::OrvhostFixture {
protected:
    void SetUp() override {
        OrvhostFixture::SetUp();
        if (HasFatalFailure()) return;
        if (!HaveTools()) GTEST_SKIP() << "no simulated tools";
        stdfs::copy(stdfs::path(ADS_EXAMPLES_DIR) / "blinky", dir, stdfs::copy_options::recursive);
        ASSERT_EQ(0, Orvhost({"config", "set-tools-dir", tools}).status);
    }
};

TEST_F(ExampleTest, BuildsBothTargetsAndThenHasNothingToDo) {
    Outcome image = Orvhost({"build", "blinky.orv", "--target", "Debug", "-j", "2"});
    EXPECT_EQ(0, image.status) << image.output;
    for (const char* line : {"compiling src\\startup.s...", "compiling src\\util.cpp...",
                             "src\\led.c(14): Warning: C2870W: variable 'unused' declared but not used",
                             "\r\nLinking...\r\n", "blinky.axf created - 0 error(s), 1 warning(s)",
                             "Translation to elf format successful."}) {
        EXPECT_TRUE(Has(image.output, line)) << line << "\n" << image.output;
    }
    EXPECT_TRUE(stdfs::exists(stdfs::path(dir) / "Debug" / "blinky.axf"));
    EXPECT_TRUE(stdfs::exists(stdfs::path(dir) / "Debug" / "blinky.elf"));

    Outcome library = Orvhost({"build", "blinky.orv", "--target", "ThumbLib"});
    EXPECT_EQ(0, library.status) << library.output;
    EXPECT_TRUE(Has(library.output, "\r\nlibrarian...\r\n")) << library.output;
    EXPECT_TRUE(Has(library.output, "blinky.a created - 0 error(s), 1 warning(s)")) << library.output;
    EXPECT_TRUE(stdfs::exists(stdfs::path(dir) / "ThumbLib" / "blinky.a"));

    Outcome again = Orvhost({"build", "blinky.orv", "--target", "Debug", "-j", "2"});
    EXPECT_EQ(0, again.status) << again.output;
    EXPECT_FALSE(Has(again.output, "compiling")) << again.output;
    EXPECT_FALSE(Has(again.output, "Linking")) << again.output;
    EXPECT_TRUE(Has(again.output, "blinky.axf created - 0 error(s), 0 warning(s)")) << again.output;
}

}  // namespace
}  // namespace ads
