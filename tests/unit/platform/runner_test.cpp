#include "platform/platform.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <mutex>
#include <thread>
#include <vector>

namespace ads::platform {
namespace {

namespace fs = std::filesystem;
using test_support::Join;
using test_support::TempFolder;

constexpr size_t kNoLimit = 1 << 24;

std::string ChildPath() {
    return Join(System().files->ExecutableDirectory(),
                std::string("ads_test_child") + test_support::kExecutableSuffix);
}

// The child's command line: its quoted path and a script (see support/test_child.cpp).
std::string Child(const std::string& script) { return QuoteArgument(ChildPath()) + " " + script; }

RunResult RunCommand(const std::string& command_line, const std::string& working_directory = "",
              size_t limit = kNoLimit) {
    return System().runner->Run(command_line, working_directory, limit);
}

std::string Echoed(const std::vector<std::string>& arguments) {
    std::string text;
    for (const std::string& argument : arguments) text += "arg=[" + argument + "]\n";
    return text;
}

std::string QuotedTail(const std::vector<std::string>& arguments) {
    std::string tail;
    for (const std::string& argument : arguments) tail += " " + QuoteArgument(argument);
    return tail;
}

// The "cwd=" line of the child's output.
std::string PrintedDirectory(const std::string& output) {
    const size_t start = output.find("cwd=");
    if (start == std::string::npos) return std::string();
    const size_t end = output.find('\n', start);
    return output.substr(start + 4, end - start - 4);
}

TEST(ProcessRunnerTest, QuotedArgumentsArriveUnchanged) {
    const std::vector<std::vector<std::string>> rows = {
        {"plain", "-O2", "x.c"},
        {"with blank", "tab\there", ""},
        {"C:\\Program Files\\ARM\\", "\\\\server\\share\\"},
        {"-DNAME=\"a b\"", "\"", "\\\"", "a\\\\\"b"},
        {"trailing\\\\", "  ", "\"quoted\""},
    };
    for (const auto& arguments : rows) {
        const RunResult result = RunCommand(Child("--args" + QuotedTail(arguments)));
        ASSERT_TRUE(result.started) << result.error;
        EXPECT_EQ(result.output, Echoed(arguments)) << QuotedTail(arguments);
        EXPECT_EQ(result.exit_code, 0);
    }
}

TEST(ProcessRunnerTest, HandWrittenCommandLinesArriveAsTheRuntimeReadsThem) {
    const struct {
        const char* tail;
        std::vector<std::string> arguments;
    } rows[] = {
        {"a\tb   c", {"a", "b", "c"}},
        {"\"a b\" c\\d e\\\\", {"a b", "c\\d", "e\\\\"}},
        {"e\\\"f g\\\\\"h i\"", {"e\"f", "g\\h i"}},
        {"x\\\\\\\"y \"\"", {"x\\\"y", ""}},
        {"-I\"C:\\My Dir\\inc\" -o\"out dir\\x.o\"", {"-IC:\\My Dir\\inc", "-oout dir\\x.o"}},
    };
    for (const auto& row : rows) {
        const RunResult result = RunCommand(Child(std::string("--args ") + row.tail));
        ASSERT_TRUE(result.started) << result.error;
        EXPECT_EQ(result.output, Echoed(row.arguments)) << row.tail;
    }
}

TEST(ProcessRunnerTest, RandomArgumentsSurviveTheTripToTheProgram) {
    const char alphabet[] = {'a', ' ', '\t', '"', '\\', '\\', '-'};
    std::mt19937 random(77);
    std::uniform_int_distribution<int> letter(0, sizeof alphabet - 1);
    std::uniform_int_distribution<int> length(0, 6);
    for (int round = 0; round < 12; ++round) {
        std::vector<std::string> arguments(5);
        for (std::string& argument : arguments) {
            const int size = length(random);
            for (int k = 0; k < size; ++k) argument += alphabet[letter(random)];
        }
        const RunResult result = RunCommand(Child("--args" + QuotedTail(arguments)));
        ASSERT_TRUE(result.started) << result.error;
        EXPECT_EQ(result.output, Echoed(arguments)) << QuotedTail(arguments);
    }
}

TEST(ProcessRunnerTest, OutputAndErrorShareOnePipeInOrder) {
    const RunResult result = RunCommand(Child("--out first --err second --out third --err fourth"));
    ASSERT_TRUE(result.started) << result.error;
    EXPECT_EQ(result.output, "first\nsecond\nthird\nfourth\n");
    EXPECT_FALSE(result.truncated);
}

TEST(ProcessRunnerTest, OutputBeyondTheLimitIsReadAndDropped) {
    const struct {
        long bytes;
        size_t limit;
        size_t kept;
        bool truncated;
    } rows[] = {
        {0, 100, 0, false},
        {100, 100, 100, false},
        {101, 100, 100, true},
        {1000, 0, 0, true},
        {300000, 1000, 1000, true},  // far past the pipe's buffer
        {300000, 300000, 300000, false},
    };
    for (const auto& row : rows) {
        const RunResult result =
            RunCommand(Child("--bytes " + std::to_string(row.bytes) + " --exit 3"), "", row.limit);
        ASSERT_TRUE(result.started) << result.error;
        EXPECT_EQ(result.output.size(), row.kept) << row.bytes << " bytes, limit " << row.limit;
        EXPECT_EQ(result.truncated, row.truncated) << row.bytes << " bytes, limit " << row.limit;
        // The child was not blocked: it went on to its exit code.
        EXPECT_EQ(result.exit_code, 3);
        for (size_t i = 0; i < result.output.size(); i += 997) {
            ASSERT_EQ(result.output[i], static_cast<char>('0' + i % 10)) << "byte " << i;
        }
    }
}

TEST(ProcessRunnerTest, ExitCodesComeBack) {
    for (int code : {0, 1, 2, 42, 255}) {
        const RunResult result = RunCommand(Child("--exit " + std::to_string(code)));
        ASSERT_TRUE(result.started) << result.error;
        EXPECT_EQ(result.exit_code, code);
    }
}

#ifndef _WIN32
TEST(ProcessRunnerTest, DeathBySignalGives128PlusTheSignal) {
    const RunResult result = RunCommand(Child("--out before --signal --out after"));
    ASSERT_TRUE(result.started) << result.error;
    EXPECT_EQ(result.exit_code, 128 + 15);
    EXPECT_EQ(result.output, "before\n");
}
#endif

TEST(ProcessRunnerTest, TheProgramRunsInTheGivenFolderAndOursStaysPut) {
    TempFolder folder;
    fs::create_directory(folder.native() / "sub dir");
    FileSystem& files = *System().files;
    const std::string ours = files.CurrentDirectory();

    const RunResult inside = RunCommand(Child("--cwd"), folder / "sub dir");
    ASSERT_TRUE(inside.started) << inside.error;
    EXPECT_TRUE(fs::equivalent(PrintedDirectory(inside.output), folder.native() / "sub dir"))
        << inside.output;
    EXPECT_EQ(files.CurrentDirectory(), ours);

    const RunResult here = RunCommand(Child("--cwd"), "");
    ASSERT_TRUE(here.started) << here.error;
    EXPECT_TRUE(fs::equivalent(PrintedDirectory(here.output), ours)) << here.output;
}

TEST(ProcessRunnerTest, ARelativeProgramPathCountsFromOurFolderNotTheChilds) {
    TempFolder folder;
    FileSystem& files = *System().files;
    const std::string ours = files.CurrentDirectory();
    ASSERT_TRUE(files.ChangeDir(files.ExecutableDirectory()));
    const RunResult result =
        RunCommand(std::string(".\\ads_test_child") + test_support::kExecutableSuffix + " --cwd", folder.path());
    ASSERT_TRUE(files.ChangeDir(ours));
    ASSERT_TRUE(result.started) << result.error;
    EXPECT_TRUE(fs::equivalent(PrintedDirectory(result.output), folder.native())) << result.output;
}

// As CreateProcess does, a bare program name is looked for in our own
// program's folder before the search path.
TEST(ProcessRunnerTest, ABareProgramNameIsFoundBesideOurProgram) {
    TempFolder folder;
    FileSystem& files = *System().files;
    const std::string ours = files.CurrentDirectory();
    ASSERT_TRUE(files.ChangeDir(folder.path()));
    const RunResult result =
        RunCommand(std::string("ads_test_child") + test_support::kExecutableSuffix + " --out found");
    ASSERT_TRUE(files.ChangeDir(ours));
    ASSERT_TRUE(result.started) << result.error;
    EXPECT_EQ(result.output, "found\n");
}

TEST(ProcessRunnerTest, ProgramsThatCannotStartSayWhy) {
    TempFolder folder;
    const struct {
        const char* name;
        std::string command_line;
        std::string working_directory;
    } rows[] = {
        {"missing program", QuoteArgument(folder / "no such program.exe") + " -a", ""},
        {"missing program on the search path", "ads_no_such_program_anywhere.exe", ""},
        {"folder as program", QuoteArgument(folder.path()), ""},
        {"empty command line", "", ""},
        {"missing working folder", Child("--out x"), folder / "missing"},
    };
    for (const auto& row : rows) {
        const RunResult result = RunCommand(row.command_line, row.working_directory);
        EXPECT_FALSE(result.started) << row.name;
        EXPECT_FALSE(result.error.empty()) << row.name;
        EXPECT_EQ(result.output, "") << row.name;
    }
}

#ifndef _WIN32
// A file that starts with "MZ" is a Windows program: it runs under the wine
// found on the search path, given the program's POSIX path and the arguments.
TEST(ProcessRunnerTest, WindowsProgramsRunUnderWine) {
    TempFolder folder;
    std::ofstream(folder.native() / "wine") << "#!/bin/sh\nfor a in \"$@\"; do echo \"wine:[$a]\"; done\n";
    std::ofstream(folder.native() / "tool.exe") << "MZ\x90";
    fs::permissions(folder.native() / "wine", fs::perms::owner_all);
    fs::permissions(folder.native() / "tool.exe", fs::perms::owner_all);

    const char* path = std::getenv("PATH");
    const std::string saved = path ? path : "";
    ::setenv("PATH", (folder.path() + ":" + saved).c_str(), 1);
    const RunResult result = RunCommand(QuoteArgument(folder / "tool.exe") + " -c \"a b\" C:\\x", folder.path());
    ::setenv("PATH", saved.c_str(), 1);

    ASSERT_TRUE(result.started) << result.error;
    EXPECT_EQ(result.output, "wine:[" + (folder.native() / "tool.exe").string() +
                                 "]\nwine:[-c]\nwine:[a b]\nwine:[C:\\x]\n");
}
#endif

TEST(ProcessRunnerTest, ParallelRunsEachGetTheirOwnOutputAndExitCode) {
    constexpr int kRuns = 8;
    std::vector<RunResult> results(kRuns);
    std::vector<std::thread> threads;
    for (int i = 0; i < kRuns; ++i) {
        threads.emplace_back([i, &results] {
            const std::string tag = "run " + std::to_string(i);
            results[i] = RunCommand(Child("--bytes 100000 --sleep 200 --out \"" + tag + "\" --exit " +
                                         std::to_string(10 + i)));
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (int i = 0; i < kRuns; ++i) {
        ASSERT_TRUE(results[i].started) << i << ": " << results[i].error;
        EXPECT_EQ(results[i].exit_code, 10 + i);
        ASSERT_EQ(results[i].output.size(), 100000 + std::string("run 0\n").size()) << i;
        EXPECT_EQ(results[i].output.substr(100000), "run " + std::to_string(i) + "\n");
    }
}

// Each run's child must inherit only its own pipe. Had a slow child
// inherited the write end of a quick run's pipe, that quick run would not end
// before the slow child did. The slow children here live until the test
// releases them, which it does only after every quick run has ended: a quick
// run held up by a slow child would wait until the slow ones give up, and
// they would say "timed out". No clock decides the outcome.
TEST(ProcessRunnerTest, ASlowProgramDoesNotHoldUpQuickRunsBesideIt) {
    constexpr int kSlowChildren = 8;
    constexpr int kQuickThreads = 4;
    test_support::TempFolder folder;
    const std::string release = folder.path() + "/release";
    std::atomic<int> slow_started{0};
    std::vector<RunResult> slow_results(kSlowChildren);
    std::vector<std::string> wrong_quick(kQuickThreads);
    std::vector<std::thread> slow;
    for (int s = 0; s < kSlowChildren; ++s) {
        slow.emplace_back([s, &release, &slow_started, &slow_results] {
            std::this_thread::sleep_for(std::chrono::milliseconds(40 * s));
            ++slow_started;
            slow_results[s] = RunCommand(Child("--wait-for " + QuoteArgument(release) + " 120000"));
        });
    }
    std::vector<std::thread> quick;
    for (int q = 0; q < kQuickThreads; ++q) {
        quick.emplace_back([q, &slow_started, &wrong_quick] {
            // Quick runs go on while slow children are being started, and a few after.
            for (int after = 0; after < 3;) {
                if (slow_started == kSlowChildren) ++after;
                const RunResult result = RunCommand(Child("--out quick"));
                if (result.output != "quick\n" && wrong_quick[q].empty()) {
                    wrong_quick[q] = "exit=" + std::to_string(result.exit_code) + " error=" + result.error +
                                     " output=[" + result.output + "]";
                }
            }
        });
    }
    for (std::thread& thread : quick) thread.join();
    std::ofstream(release).put('x');
    for (std::thread& thread : slow) thread.join();
    for (int q = 0; q < kQuickThreads; ++q) EXPECT_EQ("", wrong_quick[q]) << "quick thread " << q;
    for (int s = 0; s < kSlowChildren; ++s) {
        EXPECT_EQ("released\n", slow_results[s].output) << "slow child " << s << ": a quick run waited for it";
    }
}

}  // namespace
}  // namespace ads::platform
