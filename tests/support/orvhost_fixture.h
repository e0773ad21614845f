// orvhost run as a user runs it, for the end-to-end tests: the program
// beside the test program, a fresh folder as the working folder, a registry
// file and a settings file of the test's own in that folder (absent until a
// test or orvhost writes them), and the simulated ADS tools' folder.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support/temp_folder.h"

namespace ads::testing {

struct Outcome {
    int status;
    std::string output;  // standard output and standard error together
};

inline size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

class OrvhostFixture : public ::testing::Test {
protected:
    void SetUp() override {
        dir = folder.path();
        exe = fs().ExecutableDirectory() + "/orvhost" + platform::test_support::kExecutableSuffix;
        ASSERT_TRUE(fs().FileExists(exe)) << exe;
        tools = fs().ExecutableDirectory() + "/fakeads/Bin";
        registry = Path("registry.reg");
        config = Path("orvhost.conf");
        platform::Environment& env = *platform::System().environment;
        env.Set("ORVANE_REGISTRY", registry);
        env.Set("ORVANE_CONFIG", config);
    }

    static platform::FileSystem& fs() { return *platform::System().files; }

    // orvhost with these arguments (quoted by Windows rules) in the folder.
    Outcome Orvhost(const std::vector<std::string>& args, size_t limit = 1 << 22) {
        std::string line = platform::QuoteArgument(exe);
        for (const std::string& a : args) line += " " + platform::QuoteArgument(a);
        platform::RunResult r = platform::System().runner->Run(line, dir, limit);
        EXPECT_TRUE(r.started) << r.error;
        return {r.exit_code, r.output};
    }

    // The builds need the simulated tools; a test without them skips.
    bool HaveTools() { return fs().FileExists(tools + "/armcc.exe"); }

    // A name in the folder; a full path stays as it is.
    std::string Path(const std::string& name) const {
        const bool full = !name.empty() && (name[0] == '/' || name.find(':') != std::string::npos);
        return full ? name : dir + "/" + name;
    }
    bool Exists(const std::string& name) const { return std::filesystem::exists(std::filesystem::path(Path(name))); }
    // Writes a file, making the folders it needs.
    void Write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
        std::string error;
        ASSERT_TRUE(fs().WriteFileAtomically(Path(name), text, &error)) << error;
    }
    std::string Read(const std::string& name) {
        std::string text;
        fs().ReadFile(Path(name), &text);
        return text;
    }
    // Makes a file newer than anything a build wrote so far.
    void Age(const std::string& name, int seconds_from_now) {
        std::filesystem::last_write_time(std::filesystem::path(Path(name)),
                                         std::filesystem::file_time_type::clock::now() +
                                             std::chrono::seconds(seconds_from_now));
    }

    // A bad-input run: status 2, one line that names what was wrong, the
    // project file exactly as it was, and nothing built.
    void ExpectRefused(const std::vector<std::string>& args, const std::string& names,
                       const std::string& project = "demo.orv") {
        const std::string before = Read(project);
        Outcome r = Orvhost(args);
        EXPECT_EQ(2, r.status) << r.output;
        EXPECT_NE(std::string::npos, r.output.find(names)) << r.output;
        EXPECT_EQ(1u, Count(r.output, "\n")) << r.output;
        EXPECT_EQ(before, Read(project));
        EXPECT_FALSE(Exists("Debug")) << "nothing built";
    }

    platform::test_support::TempFolder folder;
    std::string dir, exe, tools, registry, config;
};

}  // namespace ads::testing
