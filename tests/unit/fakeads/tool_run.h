// Runs the simulated ADS tools the way the plug-in does: a Windows command
// line through the platform's process runner, in a folder of the test's
// own, with the tool copies found beside the test program under
// fakeads/Bin.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "support/temp_folder.h"

namespace ads::fakeads_test {

struct ToolResult {
    int exit_code = -1;
    std::string output;  // line ends as "\n": the Windows build prints "\r\n"
};

// The quoted path of one tool copy ("armcc", "armlink" ...).
inline std::string Tool(const std::string& name) {
    return platform::QuoteArgument(platform::System().files->ExecutableDirectory() + "/fakeads/Bin/" + name + ".exe");
}

inline std::string WithoutCarriageReturns(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c != '\r') out += c;
    }
    return out;
}

inline std::string Lines(std::initializer_list<std::string> lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

// A temporary project folder with the files a test writes into it.
class ToolTest : public ::testing::Test {
protected:
    // Writes a file below the folder; `name` uses "\" or "/" and its
    // folders are created.
    void Write(const std::string& name, const std::string& text) {
        const std::filesystem::path path = Native(name);
        std::filesystem::create_directories(path.parent_path());
        ASSERT_TRUE(platform::test_support::WriteNative(path, text)) << name;
    }

    bool Exists(const std::string& name) const { return std::filesystem::exists(Native(name)); }

    std::string Read(const std::string& name) const { return platform::test_support::ReadNative(Native(name)); }

    // Runs "TOOL ARGUMENTS" in the folder.
    ToolResult Run(const std::string& tool, const std::string& arguments) {
        const platform::RunResult run =
            platform::System().runner->Run(Tool(tool) + " " + arguments, folder_.path(), 1 << 20);
        EXPECT_TRUE(run.started) << run.error;
        return ToolResult{run.exit_code, WithoutCarriageReturns(run.output)};
    }

    std::filesystem::path Native(const std::string& name) const {
        std::string relative = name;
        for (char& c : relative) {
            if (c == '\\') c = '/';
        }
        return folder_.native() / std::filesystem::u8path(relative);
    }

    platform::test_support::TempFolder folder_;
};

}  // namespace ads::fakeads_test
