// The console's control events on Windows (interrupt.h). Windows runs the
// handler on a thread of its own while the others go on; when the handler
// answers FALSE the system's own handler ends the process.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/interrupt.h"
#include "platform/interrupt_slots.h"
#include "platform/win32/win32_backend.h"

namespace ads::platform {

namespace interrupt {

namespace {

Slots<void*> g_children;
std::atomic<bool> g_handling{false};

// How long the commands get to end once they were ended.
constexpr DWORD kPatienceMs = 5000;
// How long a slot may show a command that is being started.
constexpr int kStartingRounds = 1000;

void EndChildren() {
    HANDLE processes[kSlots];
    size_t count = 0;
    for (size_t i = 0; i < kSlots; ++i) {
        void* process = g_children.Get(i);
        for (int round = 0; process == kChildStarting && round < kStartingRounds; ++round) {
            ::Sleep(1);
            process = g_children.Get(i);
        }
        if (process == nullptr || process == kChildStarting) continue;
        ::TerminateProcess(process, STATUS_CONTROL_C_EXIT);
        processes[count++] = process;
    }
    for (size_t k = 0; k < count; ++k) ::WaitForSingleObject(processes[k], kPatienceMs);
}

void Delete(const GuardedFile* const* files, size_t count) {
    const HANDLE error = ::GetStdHandle(STD_ERROR_HANDLE);
    for (size_t i = 0; i < count; ++i) {
        if (!::DeleteFileA(files[i]->path.c_str())) continue;
        DWORD written = 0;
        if (error != nullptr && error != INVALID_HANDLE_VALUE) {
            ::WriteFile(error, files[i]->note.data(), static_cast<DWORD>(files[i]->note.size()), &written, nullptr);
        }
    }
}

BOOL WINAPI OnControl(DWORD) {
    // A second event waits for the first to end us.
    if (g_handling.exchange(true)) {
        for (;;) ::Sleep(1000);
    }
    Interrupted().store(true);
    static const GuardedFile* files[kSlots];
    const size_t count = GuardedNow(files);
    EndChildren();
    Delete(files, count);
    return FALSE;
}

}  // namespace

void* const kChildStarting = INVALID_HANDLE_VALUE;

Slots<void*>& RunningChildren() { return g_children; }

std::string SystemFormOf(const std::string& path) { return path; }

}  // namespace interrupt

void CleanUpOnInterrupt() { ::SetConsoleCtrlHandler(interrupt::OnControl, TRUE); }

}  // namespace ads::platform
