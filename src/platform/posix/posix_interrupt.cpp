// SIGINT, SIGTERM and SIGHUP on POSIX (interrupt.h). The handler only calls
// what is safe in a signal handler: kill, waitpid, nanosleep, unlink, write,
// sigaction, pthread_sigmask and raise, over tables filled beforehand.
#include "platform/interrupt.h"
#include "platform/interrupt_slots.h"
#include "platform/posix/posix_backend.h"

#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace ads::platform {

namespace interrupt {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr size_t kSignalCount = sizeof kSignals / sizeof kSignals[0];

// Which of kSignals we handle; written before any thread starts.
bool g_taken[kSignalCount] = {};
Slots<pid_t> g_children;
std::atomic<bool> g_handling{false};

// How long the commands get to end after they were told to (in rounds of
// kRoundMs), and how long after they were killed.
constexpr long kRoundMs = 10;
constexpr int kPatienceRounds = 500;
constexpr int kKilledRounds = 100;
// How long a slot may show a command that is being started.
constexpr int kStartingRounds = 1000;

void Pause(long ms) {
    timespec left{ms / 1000, (ms % 1000) * 1000000L};
    while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

void WriteAll(int fd, const char* text, size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(fd, text, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        text += written;
        size -= static_cast<size_t>(written);
    }
}

// Tells every running command to end as we were told, then waits for them:
// a command still running after the patience is killed.
void EndChildren(int signal_number) {
    pid_t pids[kSlots];
    size_t count = 0;
    for (size_t i = 0; i < kSlots; ++i) {
        pid_t pid = g_children.Get(i);
        for (int round = 0; pid == kChildStarting && round < kStartingRounds; ++round) {
            Pause(1);
            pid = g_children.Get(i);
        }
        if (pid <= 0) continue;
        ::kill(pid, signal_number);
        pids[count++] = pid;
    }
    for (int round = 0; round <= kPatienceRounds + kKilledRounds; ++round) {
        bool running = false;
        for (size_t k = 0; k < count; ++k) {
            if (pids[k] == 0) continue;
            // 0: still running; the pid, or an error when the runner's own
            // thread has waited for it already: gone.
            if (::waitpid(pids[k], nullptr, WNOHANG) == 0) {
                if (round == kPatienceRounds) ::kill(pids[k], SIGKILL);
                running = true;
            } else {
                pids[k] = 0;
            }
        }
        if (!running) return;
        Pause(kRoundMs);
    }
}

void Delete(const GuardedFile* const* files, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        if (::unlink(files[i]->path.c_str()) == 0) WriteAll(2, files[i]->note.data(), files[i]->note.size());
    }
}

void OnInterrupt(int signal_number) {
    // A second signal, in another thread, waits for the first to end us.
    if (g_handling.exchange(true)) {
        for (;;) Pause(1000);
    }
    Interrupted().store(true);
    const GuardedFile* files[kSlots];
    const size_t count = GuardedNow(files);
    EndChildren(signal_number);
    Delete(files, count);

    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    sigemptyset(&standard.sa_mask);
    ::sigaction(signal_number, &standard, nullptr);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal_number);
    ::pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(signal_number);
    ::_exit(128 + signal_number);
}

}  // namespace

Slots<pid_t>& RunningChildren() { return g_children; }

void RestoreDefaultSignals() {
    for (size_t i = 0; i < kSignalCount; ++i) {
        if (g_taken[i]) ::signal(kSignals[i], SIG_DFL);
    }
}

BlockedSignals::BlockedSignals() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, &previous_);
}

BlockedSignals::~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

std::string SystemFormOf(const std::string& path) { return SystemPath(path); }

}  // namespace interrupt

void CleanUpOnInterrupt() {
    struct sigaction action {};
    action.sa_handler = interrupt::OnInterrupt;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (int s : interrupt::kSignals) sigaddset(&action.sa_mask, s);
    for (size_t i = 0; i < interrupt::kSignalCount; ++i) {
        struct sigaction before {};
        if (::sigaction(interrupt::kSignals[i], nullptr, &before) != 0 || before.sa_handler == SIG_IGN) continue;
        interrupt::g_taken[i] = ::sigaction(interrupt::kSignals[i], &action, nullptr) == 0;
    }
}

}  // namespace ads::platform
