// orvhost building projects as a user does: the real plug-in beside
// orvhost, the simulated ADS tools (bin/fakeads/Bin) as the tool folder, a
// fresh project folder, nothing but the command line.
#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "support/orvhost_fixture.h"

namespace ads {
namespace {

using ads::testing::Count;
using ads::testing::Outcome;

class BuildTest : public ads::testing::OrvhostFixture {
protected:
    // demo.orv with the target Debug and the given sources, the tools set.
    void MakeProject(const std::vector<std::pair<std::string, std::string>>& sources) {
        ASSERT_EQ(0, Orvhost({"config", "set-tools-dir", tools}).status);
        ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
        ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Debug"}).status);
        for (const auto& [name, text] : sources) {
            Write(name, text);
            Outcome r = Orvhost({"add-file", "demo.orv", name});
            ASSERT_EQ(0, r.status) << r.output;
        }
    }
};

const std::pair<std::string, std::string> kMain = {
    "src/main.c", "#include \"local.h\"\nint main(void) { return LOCAL; }\n"};
const std::pair<std::string, std::string> kLocal = {"src/local.h", "#define LOCAL 1\n"};
const std::pair<std::string, std::string> kUtil = {"src/util.c", "int util(void) { return 2; }\n"};
#ifdef _WIN32
const std::string kUtilPath = "src\\util.c";
#else
const std::string kUtilPath = "src/util.c";
#endif
const std::pair<std::string, std::string> kStart = {"start.s", "  AREA start, CODE\n  END\n"};

TEST_F(BuildTest, BadInputIsRefusedBeforeAnythingIsBuilt) {
    ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
    ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Debug"}).status);
    ExpectRefused({"build", "demo.orv", "--target", "Nope"}, "demo.orv: no target named 'Nope'");
    ExpectRefused({"build", "demo.orv", "-j", "0"}, "-j needs a number of jobs");
    ExpectRefused({"build", "demo.orv", "-jx"}, "-j needs a number of jobs");
    ExpectRefused({"build", "demo.orv", "--fast"}, "unknown option '--fast'");
    ExpectRefused({"build"}, "usage: orvhost build");
    ExpectRefused({"build", "missing.orv"}, "missing.orv");
    ExpectRefused({"compile", "demo.orv", "nothere.c"}, "demo.orv: no source file 'nothere.c' in the project");
    ExpectRefused({"compile", "demo.orv"}, "usage: orvhost compile");
    ExpectRefused({"clean", "demo.orv", "--target"}, "--target needs a name");
    ExpectRefused({"export-compile-commands", "demo.orv", "-j", "2"}, "unknown option '-j'");

    ASSERT_EQ(0, Orvhost({"new", "empty.orv"}).status);
    Outcome r = Orvhost({"build", "empty.orv"});
    EXPECT_EQ(2, r.status);
    EXPECT_NE(std::string::npos, r.output.find("empty.orv: no target to build")) << r.output;
}

TEST_F(BuildTest, HelpNamesTheBuildCommands) {
    Outcome r = Orvhost({"--help"});
    for (const char* text : {"build PROJECT [--target NAME] [-j N] [--rebuild]", "compile PROJECT FILE",
                             "clean PROJECT", "export-compile-commands PROJECT"}) {
        EXPECT_NE(std::string::npos, r.output.find(text)) << text;
    }
}

TEST_F(BuildTest, ABuildMakesWhatChangedAndNothingElse) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, kUtil, kStart});

    Outcome r = Orvhost({"build", "demo.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    for (const char* text : {"compiling src\\main.c...", "compiling src\\util.c...", "compiling start.s...",
                             "Linking...", "demo.axf created - 0 error(s), 0 warning(s)"}) {
        EXPECT_NE(std::string::npos, r.output.find(text)) << text << "\n" << r.output;
    }
    for (const char* file : {"Debug/main.o", "Debug/util.o", "Debug/start.o", "Debug/demo.axf", "demo.orv.deps"}) {
        EXPECT_TRUE(Exists(file)) << file;
    }

    r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(0u, Count(r.output, "compiling ")) << r.output;
    EXPECT_EQ(0u, Count(r.output, "Linking...")) << r.output;
    EXPECT_EQ(0u, Count(r.output, "FromELF")) << "the conversion is newer than the image";

    // The header main.c includes: main.c again, and the image.
    Age("src/local.h", 5);
    r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(1u, Count(r.output, "compiling ")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("compiling src\\main.c...")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("Linking...")) << r.output;

    r = Orvhost({"build", "demo.orv", "--rebuild"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(3u, Count(r.output, "compiling ")) << r.output;
}

TEST_F(BuildTest, ErrorsFailTheBuildAndLeaveTheTargetUnlinked) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, {"src/util.c", "int util(void) { return x; } /* FAKEADS: error C2456E: undeclared name */\n"}});

    Outcome r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(1, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("src\\util.c(1): Error: C2456E: undeclared name")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("Target not created")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("demo.axf created - 1 error(s)")) << r.output;
    EXPECT_FALSE(Exists("Debug/demo.axf"));

    // Still failing: only the broken file again, its line as editors read it.
    r = Orvhost({"build", "demo.orv", "--diagnostics", "gnu"});
    EXPECT_EQ(1, r.status) << r.output;
    EXPECT_EQ(1u, Count(r.output, "compiling ")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find(kUtilPath + ":1: error: C2456E: undeclared name")) << r.output;

    Write("src/util.c", "int util(void) { return 2; }\n");
    r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(1u, Count(r.output, "compiling ")) << r.output;
    EXPECT_TRUE(Exists("Debug/demo.axf"));
}

TEST_F(BuildTest, AParallelBuildKeepsTheMessagesInFileOrder) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    std::vector<std::pair<std::string, std::string>> sources;
    for (int i = 0; i < 8; ++i) {
        const std::string name = "f" + std::to_string(i);
        sources.push_back({"src/" + name + ".c", "int " + name + "; /* FAKEADS: warning C2207W: from " + name + " */\n"});
    }
    MakeProject(sources);

    Outcome parallel = Orvhost({"build", "demo.orv", "-j", "4"});
    ASSERT_EQ(0, parallel.status) << parallel.output;
    size_t last = 0;
    for (int i = 0; i < 8; ++i) {
        const std::string line = "src\\f" + std::to_string(i) + ".c(1): Warning: C2207W: from f" + std::to_string(i);
        size_t at = parallel.output.find(line);
        ASSERT_NE(std::string::npos, at) << line << "\n" << parallel.output;
        EXPECT_LT(last, at) << line;
        last = at;
    }
    EXPECT_NE(std::string::npos, parallel.output.find("demo.axf created - 0 error(s), 8 warning(s)")) << parallel.output;

    Outcome serial = Orvhost({"build", "demo.orv", "-j1", "--rebuild"});
    ASSERT_EQ(0, serial.status) << serial.output;
    EXPECT_NE(std::string::npos, serial.output.find("demo.axf created - 0 error(s), 8 warning(s)")) << serial.output;
}

TEST_F(BuildTest, AFailedPostLinkStepFailsTheBuild) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kUtil});
    const std::string failing = "1,(" + platform::QuoteArgument(tools + "/fromelf.exe") + " -bogus)";
    ASSERT_EQ(0, Orvhost({"set", "demo.orv", "ADS_BatchFileParam", failing, "--target", "Debug"}).status);
    ASSERT_EQ(0, Orvhost({"set", "demo.orv", "ADS_FromELFParam", " -bogus", "--target", "Debug"}).status);
    for (const char* step : {"Batch File Runner", "ARM fromELF"}) {
        ASSERT_EQ(0, Orvhost({"set", "demo.orv", "ADS_PostLnk", step, "--target", "Debug"}).status);
        Outcome r = Orvhost({"build", "demo.orv"});
        EXPECT_EQ(1, r.status) << step << "\n" << r.output;
        EXPECT_NE(std::string::npos, r.output.find("demo.axf created - 0 error(s)")) << r.output;
    }
}

TEST_F(BuildTest, AnAssemblerSourceIsAssembledAgainWhenAFileItGetsChanges) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    Write("inc/defs.s", "X EQU 1\n");
    MakeProject({kUtil});
    Write("start.s", "  AREA start, CODE\n  GET defs.s\n  END\n");
    Outcome r = Orvhost({"add-file", "demo.orv", "start.s"});
    EXPECT_NE(std::string::npos, r.output.find("added assembler file 'start.s' (object start.o)")) << r.output;
    ASSERT_EQ(0, Orvhost({"set", "demo.orv", "SearchPath", " -I\"inc\" ", "--target", "Debug"}).status);
    ASSERT_EQ(0, Orvhost({"build", "demo.orv"}).status);

    Age("inc/defs.s", 5);
    r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(1u, Count(r.output, "compiling ")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("compiling start.s...")) << r.output;
}

TEST_F(BuildTest, ParseShowsACapturedOutputAsThePaneDoesWithThePluginsCounts) {
#ifdef _WIN32
    GTEST_SKIP() << "the output is handed over by a POSIX shell";
#endif
    struct Row { const char* name; std::string input, option, expected; int status; };
    const Row rows[] = {
        {"compiler output", "\"src\\a.c\", line 3: Error: C2456E: undeclared\r\nsrc\\a.c: 0 warnings, 1 error\r\n", "",
         "src\\a.c(3): Error: C2456E: undeclared\r\nerrors=1 warnings=0\n", 1},
        {"linker output", "Warning: L6306W: w\nFinished: 0 information, 2 warning and 0 error messages.\n", " --link",
         "Warning: L6306W: w\nerrors=0 warnings=2\n", 0},
        {"no last line end", "Error: L6218E: x", " --link", "Error: L6218E: x\nerrors=0 warnings=0\n", 0},
    };
    for (const Row& row : rows) {
        Write("log.txt", row.input);
        const std::string line = platform::QuoteArgument(exe) + " parse" + row.option + " < log.txt";
        platform::RunResult r = platform::System().runner->Run("sh -c " + platform::QuoteArgument(line), dir, 1 << 16);
        EXPECT_EQ(row.status, r.exit_code) << row.name;
        EXPECT_EQ(row.expected, r.output) << row.name;
    }
}

// The source is gone: the compiler's complaint is no message the parser
// knows, and still the failure is counted and nothing is linked.
TEST_F(BuildTest, ACompileThatFailsWithoutAKnownMessageIsCountedAndNothingIsLinked) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, kUtil});
    std::filesystem::remove(Path("src/util.c"));
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"build", "demo.orv"}, {"build", "demo.orv", "-j", "2"}, {"compile", "demo.orv", "src/util.c"}}) {
        Outcome r = Orvhost(args);
        EXPECT_EQ(1, r.status) << r.output;
        EXPECT_NE(std::string::npos, r.output.find("Could not open source file \"src\\util.c\"")) << r.output;
        EXPECT_NE(std::string::npos, r.output.find(" - 1 error(s)")) << r.output;
        EXPECT_EQ(std::string::npos, r.output.find("Linking...")) << r.output;
        EXPECT_FALSE(Exists("Debug/demo.axf"));
    }
}

TEST_F(BuildTest, VerbosePrintsEveryCommandLineAsItRunsIt) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, kStart});
    Outcome r = Orvhost({"-v", "build", "demo.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    // main.c's scan and compile, the assembly, the link and the conversion.
    EXPECT_EQ(1u, Count(r.output, "armcc.exe -O0 -g+ ")) << r.output;
    EXPECT_EQ(1u, Count(r.output, " -M \"src\\main.c\"\n")) << r.output;
    EXPECT_EQ(1u, Count(r.output, " -c \"src\\main.c\" -o \".\\Debug\\main.o\"\n")) << r.output;
    for (const char* tool : {"armasm.exe -g ", "armlink.exe ", "fromelf.exe "}) {
        EXPECT_EQ(1u, Count(r.output, std::string("Bin\\") + tool)) << tool << "\n" << r.output;
    }
    r = Orvhost({"build", "demo.orv", "--rebuild"});
    EXPECT_EQ(0u, Count(r.output, "fakeads")) << r.output;

    Age("start.s", 5);
    r = Orvhost({"-v", "compile", "demo.orv", "start.s"});
    EXPECT_EQ(1u, Count(r.output, "armasm.exe -g ")) << r.output;
}

// Ctrl-C while both compiles write their objects (the simulated compiler
// holds half an object on disk while it takes its time).
TEST_F(BuildTest, AnInterruptedBuildLeavesNoHalfWrittenObject) {
#ifdef _WIN32
    GTEST_SKIP() << "interrupted with POSIX signals";
#else
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, kUtil});
    ASSERT_EQ(0, Orvhost({"build", "demo.orv"}).status);
    Age("src/main.c", 5);
    Age("src/util.c", 5);
    const size_t whole = Read("Debug/main.o").size() + Read("Debug/util.o").size();
    const auto written = [&] {  // both half-written
        const size_t main = Read("Debug/main.o").size(), util = Read("Debug/util.o").size();
        return main > 0 && util > 0 && main + util <= whole / 2 + 1;
    };

    ::setenv("FAKEADS_DELAY_MS", "0,60000", 1);
    const pid_t pid = ::fork();
    if (pid == 0) {
        const int log = ::open(Path("build.log").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (log < 0 || ::chdir(dir.c_str()) != 0) ::_exit(126);
        ::signal(SIGINT, SIG_DFL);  // a test run in the background may ignore it
        ::dup2(log, 1);
        ::dup2(log, 2);
        ::execl(exe.c_str(), "orvhost", "build", "demo.orv", "-j", "2", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::unsetenv("FAKEADS_DELAY_MS");
    ASSERT_GT(pid, 0);
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!written() && std::chrono::steady_clock::now() < give_up) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(written()) << Read("build.log");
    ::kill(pid, SIGINT);
    int status = 0;
    ASSERT_EQ(pid, ::waitpid(pid, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_FALSE(Exists("Debug/main.o"));
    EXPECT_FALSE(Exists("Debug/util.o"));
    EXPECT_EQ(1u, Count(Read("build.log"), "orvhost: deleted 'Debug\\util.o', which an interrupted command was writing\n"))
        << Read("build.log");

    Outcome r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(2u, Count(r.output, "compiling ")) << r.output;
#endif
}

TEST_F(BuildTest, ARebuildRequestOfTheProjectIsHonouredAndConsumed) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, kUtil});
    ASSERT_EQ(0, Orvhost({"build", "demo.orv"}).status);
    // As the settings dialog leaves it after a change.
    std::string project = Read("demo.orv");
    const std::string element = "<Configuration Name=\"Debug\"";
    const size_t at = project.find(element);
    ASSERT_NE(std::string::npos, at) << project;
    Write("demo.orv", project.insert(at + element.size(), " ADS_ReBuild=\"1\""));
    const std::string flag = "ADS_ReBuild=\"0\"";

    Outcome r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(2u, Count(r.output, "compiling ")) << r.output;
    EXPECT_NE(std::string::npos, Read("demo.orv").find(flag)) << "the request is consumed";

    r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0u, Count(r.output, "compiling ")) << r.output;
}

TEST_F(BuildTest, OneFileIsCompiledWhenItChanged) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, kUtil});

    Outcome r = Orvhost({"compile", "demo.orv", "src\\util.c"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("Create util.o - 0 error(s), 0 warning(s)")) << r.output;
    EXPECT_TRUE(Exists("Debug/util.o"));
    EXPECT_FALSE(Exists("Debug/main.o"));

    r = Orvhost({"compile", "demo.orv", Path("src/util.c")});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("skipping ... (no relevant changes detected)")) << r.output;

    Write("src/util.c", "int util(void) { return x; } /* FAKEADS: error C2456E: undeclared name */\n");
    Age("src/util.c", 5);
    r = Orvhost({"compile", "demo.orv", "src/util.c"});
    EXPECT_EQ(1, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("Create util.o - 1 error(s), 0 warning(s)")) << r.output;
}

TEST_F(BuildTest, CleanRemovesTheObjectsAndTheImage) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, kUtil});
    ASSERT_EQ(0, Orvhost({"build", "demo.orv"}).status);
    ASSERT_TRUE(Exists("Debug/demo.axf"));

    Outcome r = Orvhost({"clean", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("Deleting intermediate files: demo - Debug")) << r.output;
    for (const char* file : {"Debug/main.o", "Debug/util.o", "Debug/demo.axf"}) EXPECT_FALSE(Exists(file)) << file;

    r = Orvhost({"build", "demo.orv"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(2u, Count(r.output, "compiling ")) << r.output;
    EXPECT_TRUE(Exists("Debug/demo.axf"));
}

TEST_F(BuildTest, CompileCommandsListTheCAndCppFilesForClangd) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject({kMain, kLocal, {"src/drv.cpp", "int drv;\n"}, kStart});
    Outcome r = Orvhost({"export-compile-commands", "demo.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("(2 entries)")) << r.output;
    EXPECT_EQ(std::string::npos, r.output.find("compiling ")) << r.output;

    const std::string json = Read("compile_commands.json");
    EXPECT_EQ(2u, Count(json, "\"directory\": ")) << json;
    EXPECT_EQ(1u, Count(json, "\"-xc\"")) << json;
    EXPECT_EQ(1u, Count(json, "\"-xc++\"")) << json;
    EXPECT_EQ(2u, Count(json, "\"--target=arm-none-eabi\"")) << json;
    EXPECT_EQ(std::string::npos, json.find("start.s")) << json;
    EXPECT_EQ(std::string::npos, json.find("armcc")) << json;
    EXPECT_EQ(std::string::npos, json.find("-g+")) << json;
}

}  // namespace
}  // namespace ads
