// orvhost killed at random moments while it saves a project of 100,000 files:
// the project file is always the old one or the new one, whole, and what a
// killed save leaves behind is never taken for the project.
#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "platform/platform.h"
#include "support/orvhost_fixture.h"

namespace ads {
namespace {

constexpr int kFiles = 100000;
constexpr int kRounds = 10;
constexpr int kMinRounds = 3;
constexpr std::chrono::seconds kBudget(15);
constexpr unsigned kSeed = 1124;

#ifndef _WIN32
using Clock = std::chrono::steady_clock;

// The project's file list, as orvhost add-file would write it.
std::string FileList() {
    std::string list = "<Files>\n";
    for (int i = 0; i < kFiles; ++i) {
        const std::string n = std::to_string(i);
        list += "    <File RelativePath=\"src\\f" + n + ".c\" FileType=\"1\" Output=\"f" + n + ".o\"/>\n";
    }
    return list + "  </Files>";
}

// Starts `orvhost set` on the project, its output dropped.
pid_t StartSave(const std::string& exe, const std::string& dir) {
    const pid_t pid = ::fork();
    if (pid == 0) {
        const int null = ::open("/dev/null", O_WRONLY);
        if (null < 0 || ::chdir(dir.c_str()) != 0) ::_exit(126);
        ::dup2(null, 1);
        ::dup2(null, 2);
        ::execl(exe.c_str(), "orvhost", "set", "p.orv", "--target", "Debug", "KillTest", "1",
                static_cast<char*>(nullptr));
        ::_exit(127);
    }
    return pid;
}

// The names, sizes and times of the folder's entries: it changes when the
// save starts to write, whichever file it writes first.
std::string Snapshot(const std::string& dir) {
    std::string snapshot;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(dir, ignored)) {
        snapshot += entry.path().filename().string() + " " + std::to_string(entry.file_size(ignored)) + " " +
                    std::to_string(entry.last_write_time(ignored).time_since_epoch().count()) + "\n";
    }
    return snapshot;
}

// Runs a save and kills it `delay` after it starts to write (never, when
// delay is negative). Answers how long the writing lasted: from the first
// change of the folder to the last one seen before the kill or the end.
Clock::duration SaveAndKill(const std::string& exe, const std::string& dir, std::chrono::microseconds delay) {
    std::string seen = Snapshot(dir);
    const pid_t pid = StartSave(exe, dir);
    EXPECT_GT(pid, 0);
    Clock::time_point first{}, last{};
    bool killed = false;
    for (;;) {
        int status = 0;
        const pid_t done = ::waitpid(pid, &status, killed ? 0 : WNOHANG);
        if (done == pid || done < 0) return last - first;
        const Clock::time_point now = Clock::now();
        std::string snapshot = Snapshot(dir);
        if (snapshot != seen) {
            if (first == Clock::time_point{}) first = now;
            last = now;
            seen = std::move(snapshot);
        }
        if (first != Clock::time_point{} && delay.count() >= 0 && now - first >= delay) {
            ::kill(pid, SIGKILL);
            killed = true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}
#endif

class ProjectSave : public testing::OrvhostFixture {};

TEST_F(ProjectSave, AKilledSaveLeavesTheOldFileOrTheNewOneWhole) {
#ifdef _WIN32
    GTEST_SKIP() << "the save is killed with POSIX signals";
#else
    platform::FileSystem& fs = *platform::System().files;
    const std::string project = Path("p.orv");
    ASSERT_EQ(0, Orvhost({"new", "p.orv"}).status);
    ASSERT_EQ(0, Orvhost({"add-target", "p.orv", "Debug"}).status);

    std::string old_text, error;
    ASSERT_TRUE(fs.ReadFile(project, &old_text));
    const size_t files_at = old_text.find("<Files/>");
    ASSERT_NE(std::string::npos, files_at) << old_text;
    old_text.replace(files_at, 8, FileList());
    ASSERT_TRUE(fs.WriteFileAtomically(project, old_text, &error)) << error;

    // One save to its end: the new text, and how long the writing lasts.
    const Clock::duration writing = SaveAndKill(exe, dir, std::chrono::microseconds(-1));
    std::string new_text;
    ASSERT_TRUE(fs.ReadFile(project, &new_text));
    ASSERT_NE(std::string::npos, new_text.find("KillTest=\"1\"")) << "the save did not finish";
    ASSERT_NE(old_text, new_text);

    // Kills spread over the writing, and a little past its end. A machine
    // too busy for the rounds in kBudget gets fewer of them.
    std::mt19937 random(kSeed);
    // (A few milliseconds at least: a fast disk may finish between two looks.)
    const long long window = std::chrono::duration_cast<std::chrono::microseconds>(writing).count() * 5 / 4;
    std::uniform_int_distribution<long long> delays(0, window > 5000 ? window : 5000);
    const Clock::time_point end = Clock::now() + kBudget;
    int rounds = 0, old_seen = 0, new_seen = 0;
    for (int round = 0; round < kRounds && (round < kMinRounds || Clock::now() < end); ++round, ++rounds) {
        ASSERT_TRUE(fs.WriteFileAtomically(project, old_text, &error)) << error;
        const std::chrono::microseconds delay(delays(random));
        SaveAndKill(exe, dir, delay);
        std::string text;
        ASSERT_TRUE(fs.ReadFile(project, &text)) << "round " << round;
        const bool is_old = text == old_text, is_new = text == new_text;
        EXPECT_TRUE(is_old || is_new) << "round " << round << ", killed " << delay.count()
                                      << " us into the writing: " << text.size() << " bytes";
        old_seen += is_old;
        new_seen += is_new;
    }
    std::printf("writing takes %lld us; %d kills left the old file %d times, the new one %d times\n",
                static_cast<long long>(std::chrono::duration_cast<std::chrono::microseconds>(writing).count()),
                rounds, old_seen, new_seen);

    // What the killed saves left is not named as a project, and a save that
    // runs to its end still reads and replaces the project file itself.
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(name == "p.orv" || name.size() < 4 || name.compare(name.size() - 4, 4, ".orv") != 0) << name;
    }
    ASSERT_TRUE(fs.WriteFileAtomically(project, old_text, &error)) << error;
    ASSERT_EQ(0, Orvhost({"set", "p.orv", "--target", "Debug", "KillTest", "1"}).status);
    std::string last;
    ASSERT_TRUE(fs.ReadFile(project, &last));
    EXPECT_TRUE(last == new_text);
#endif
}

}  // namespace
}  // namespace ads
