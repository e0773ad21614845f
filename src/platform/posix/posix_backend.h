// What the files of the POSIX backend share; nothing outside src/platform/posix
// includes this.
#pragma once

#include "platform/platform.h"

#include <string>

namespace ads::platform {

// The path as the system takes it: every "\" turned into "/".
std::string SystemPath(const std::string& path);

// The folder of the running program, without a trailing slash ("/" for the
// root); empty when the system does not tell.
std::string ExecutableFolder();

// The system's text for an errno value, without a line end.
std::string ErrnoText(int error);

class PosixProcessRunner final : public ProcessRunner {
public:
    RunResult Run(const std::string& command_line, const std::string& working_directory,
                  size_t limit) override;
};

}  // namespace ads::platform
