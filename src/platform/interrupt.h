// What an interrupted build leaves behind. A tool stopped while it writes
// its object leaves a half-written file newer than its source, which the
// next build would take as made. Once CleanUpOnInterrupt has run, an
// interruption (Ctrl-C, a request to end, the terminal going away; on
// Windows the console's control events) first ends the commands that the
// process runner has running and waits for them, then deletes every file
// named by a live InterruptGuard, and then lets the process end as the
// interruption would have ended it. From the interruption on, the runner
// starts no command.
#pragma once

#include <string>

namespace ads::platform {

// Once, early in main, before any thread starts. An interruption that the
// process ignored when it started stays ignored; the commands the runner
// starts get the system's default handling.
void CleanUpOnInterrupt();

// Whether an interruption is being handled: its cleanup deletes what the
// guards name, and says so.
bool Interrupted();

// Names a file that a running command writes, for as long as the guard
// lives. When an interruption deletes the file, `note` and a line end go
// to standard error.
class InterruptGuard {
public:
    InterruptGuard(const std::string& path, const std::string& note);
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    int slot_;
};

}  // namespace ads::platform
