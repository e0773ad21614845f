// What the files of the Win32 backend share. It does not include <windows.h>:
// only the backend's .cpp files do.
#pragma once

#include "platform/platform.h"

#include <cstdint>
#include <string>

namespace ads::platform {

// FormatMessageA's text for a system error code, with its own line end.
std::string SystemMessage(uint32_t code);
// The same text without the line end, to go inside a sentence.
std::string SystemMessageLine(uint32_t code);

class Win32ProcessRunner final : public ProcessRunner {
public:
    RunResult Run(const std::string& command_line, const std::string& working_directory,
                  size_t limit) override;
};

}  // namespace ads::platform
