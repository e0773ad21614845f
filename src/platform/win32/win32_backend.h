// What the files of the Win32 backend share. It does not include <windows.h>:
// only the backend's .cpp files do.
#pragma once

#include "platform/interrupt_slots.h"
#include "platform/platform.h"

#include <cstdint>
#include <string>

namespace ads::platform {

// FormatMessageA's text for a system error code, with its own line end.
std::string SystemMessage(uint32_t code);
// The same text without the line end, to go inside a sentence.
std::string SystemMessageLine(uint32_t code);

namespace interrupt {

// The runner's children, for an interruption to end: a slot is claimed
// before the process is created, holding kChildStarting, and holds its
// process handle until it has been waited for.
extern void* const kChildStarting;
Slots<void*>& RunningChildren();

}  // namespace interrupt

class Win32ProcessRunner final : public ProcessRunner {
public:
    RunResult Run(const std::string& command_line, const std::string& working_directory,
                  size_t limit) override;
};

}  // namespace ads::platform
