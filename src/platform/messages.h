// The failures the platform layer reports, worded once for both backends.
#pragma once

#include <string>

namespace ads::platform {

inline constexpr char kEmptyFileName[] = "empty file name";

inline std::string CannotWrite(const std::string& path, const std::string& reason) {
    return "cannot write " + path + ": " + reason;
}

inline std::string NoTemporaryFile(const std::string& reason) {
    return "cannot create a temporary file beside it: " + reason;
}

inline std::string NoProgramIn(const std::string& command_line) {
    return "no program to run in the command line \"" + command_line + "\"";
}

inline std::string CannotRun(const std::string& program, const std::string& reason) {
    return "cannot run " + program + ": " + reason;
}

}  // namespace ads::platform
