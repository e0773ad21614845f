// The error of a page state that cannot be turned into switches: a position
// still -1 after the target's states were laid over the tool-wide ones. The
// build engine catches it, reports what() and builds no command line.
#pragma once

#include <stdexcept>

namespace ads::options {

inline constexpr char kCompilerOptionError[] = "GetTempCCppOption Error";
inline constexpr char kAssemblerOptionError[] = "GetArmAssOption Error";

class OptionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace ads::options
