// What the files of the POSIX backend share; nothing outside src/platform/posix
// includes this.
#pragma once

#include "platform/interrupt_slots.h"
#include "platform/platform.h"

#include <signal.h>
#include <sys/types.h>

#include <string>

namespace ads::platform {

// The path as the system takes it: every "\" turned into "/".
std::string SystemPath(const std::string& path);

// The folder of the running program, without a trailing slash ("/" for the
// root); empty when the system does not tell.
std::string ExecutableFolder();

// The system's text for an errno value, without a line end.
std::string ErrnoText(int error);

namespace interrupt {

// The runner's children, for an interruption to end: a slot is claimed
// before the fork, holding kChildStarting, and holds the child's pid until
// the child has been waited for.
constexpr pid_t kChildStarting = -1;
Slots<pid_t>& RunningChildren();

// For a child between fork and exec: the signals the interruption handling
// took over get their default handling back. Safe in a forked child.
void RestoreDefaultSignals();

// While it lives, every signal waits in the calling thread: a child started
// with vfork, which shares our memory until it execs, runs no handler of
// ours, and an interruption does not come between the start of a child and
// the record of its pid.
class BlockedSignals {
public:
    BlockedSignals();
    ~BlockedSignals();
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t previous_;
};

}  // namespace interrupt

class PosixProcessRunner final : public ProcessRunner {
public:
    RunResult Run(const std::string& command_line, const std::string& working_directory,
                  size_t limit) override;
};

}  // namespace ads::platform
