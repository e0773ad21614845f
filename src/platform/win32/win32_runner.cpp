// Runs a command line with CreateProcessA, exactly as written, and collects
// standard output and standard error through one pipe.
//
// Handles and threads: the child must inherit the write end of its own pipe
// and nothing else. If a second thread's child inherited it too, our read
// would not end until that other child ended. Two guards: the handle list of
// the extended startup information names the only handles to inherit, and a
// lock keeps our inheritable handles alive only while no other run of ours is
// starting a process (for systems that ignore the list).
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/win32/win32_backend.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace ads::platform {
namespace {

std::mutex& StartLock() {
    static std::mutex lock;
    return lock;
}

struct Handle {
    HANDLE value = nullptr;
    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { Close(); }
    void Close() {
        if (value != nullptr && value != INVALID_HANDLE_VALUE) ::CloseHandle(value);
        value = nullptr;
    }
};

// The attribute list that limits inheritance to `handles`; empty when the
// system cannot make one (then the lock alone protects the start).
class InheritList {
public:
    InheritList(HANDLE* handles, size_t count) {
        SIZE_T size = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        if (size == 0) return;
        storage_.resize(size);
        auto* list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(storage_.data());
        if (!::InitializeProcThreadAttributeList(list, 1, 0, &size)) return;
        if (!::UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles,
                                         count * sizeof(HANDLE), nullptr, nullptr)) {
            ::DeleteProcThreadAttributeList(list);
            return;
        }
        list_ = list;
    }
    ~InheritList() {
        if (list_) ::DeleteProcThreadAttributeList(list_);
    }
    InheritList(const InheritList&) = delete;
    InheritList& operator=(const InheritList&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST get() const { return list_; }

private:
    std::vector<char> storage_;
    LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
};

std::string ProgramName(const std::string& command_line) {
    const std::vector<std::string> words = SplitCommandLine(command_line);
    return words.empty() ? std::string() : words[0];
}

}  // namespace

RunResult Win32ProcessRunner::Run(const std::string& command_line,
                                  const std::string& working_directory, size_t limit) {
    RunResult result;
    const std::string program = ProgramName(command_line);
    if (program.empty()) {
        result.error = NoProgramIn(command_line);
        return result;
    }

    // CreateProcessA may write into the command line.
    std::vector<char> line(command_line.begin(), command_line.end());
    line.push_back('\0');

    Handle read_end;
    PROCESS_INFORMATION process = {};
    DWORD start_error = 0;
    // An interruption either finds the slot, and waits for the handle to be
    // in it, or has been noticed here: no command starts after it.
    const int slot = interrupt::RunningChildren().Claim(interrupt::kChildStarting);
    auto forget = [slot] {
        if (slot >= 0) interrupt::RunningChildren().Release(slot);
    };
    if (interrupt::Interrupted().load()) {
        forget();
        result.error = CannotRun(program, SystemMessageLine(ERROR_OPERATION_ABORTED));
        return result;
    }
    {
        std::lock_guard<std::mutex> guard(StartLock());
        Handle write_end;
        Handle input;
        if (!::CreatePipe(&read_end.value, &write_end.value, nullptr, 0) ||
            !::SetHandleInformation(write_end.value, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT)) {
            result.error = CannotRun(program, SystemMessageLine(::GetLastError()));
            forget();
            return result;
        }
        SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
        input.value = ::CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    &inheritable, OPEN_EXISTING, 0, nullptr);
        if (input.value == INVALID_HANDLE_VALUE) {
            result.error = CannotRun(program, SystemMessageLine(::GetLastError()));
            forget();
            return result;
        }

        HANDLE inherited[] = {write_end.value, input.value};
        InheritList inherit(inherited, 2);
        STARTUPINFOEXA startup = {};
        startup.StartupInfo.cb = sizeof startup;
        startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        startup.StartupInfo.hStdInput = input.value;
        startup.StartupInfo.hStdOutput = write_end.value;
        startup.StartupInfo.hStdError = write_end.value;
        startup.lpAttributeList = inherit.get();
        DWORD flags = CREATE_NO_WINDOW;
        if (inherit.get()) flags |= EXTENDED_STARTUPINFO_PRESENT;

        // A child that dies while it is being set up is reported as an
        // internal error (wine does so under load, before the program's own
        // code has run): nothing of the program ran, so it is started again.
        for (int attempt = 0;; ++attempt) {
            if (::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr,
                                 working_directory.empty() ? nullptr : working_directory.c_str(),
                                 &startup.StartupInfo, &process)) {
                start_error = 0;
                break;
            }
            start_error = ::GetLastError();
            if (start_error != ERROR_INTERNAL_ERROR || attempt == 2) break;
            ::Sleep(50 * (attempt + 1));
            // The command line may have been written into: start from the original.
            std::copy(command_line.begin(), command_line.end(), line.begin());
        }
        if (start_error == 0 && slot >= 0) interrupt::RunningChildren().Set(slot, process.hProcess);
        // write_end and input close here, before another run may start:
        // from now on only the child holds the pipe's write end.
    }
    if (start_error != 0) {
        result.error = CannotRun(program, SystemMessageLine(start_error));
        forget();
        return result;
    }
    ::CloseHandle(process.hThread);
    result.started = true;

    char buffer[65536];
    for (;;) {
        DWORD count = 0;
        if (!::ReadFile(read_end.value, buffer, sizeof buffer, &count, nullptr)) break;  // broken pipe: all written
        const size_t room = limit - result.output.size();
        if (count > room) result.truncated = true;
        result.output.append(buffer, count < room ? count : room);
    }

    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exit_code = 0;
    if (::GetExitCodeProcess(process.hProcess, &exit_code)) result.exit_code = static_cast<int>(exit_code);
    forget();
    // An interruption may be using the handle: the process ends soon anyway.
    if (!interrupt::Interrupted().load()) ::CloseHandle(process.hProcess);
    return result;
}

}  // namespace ads::platform
