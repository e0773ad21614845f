// "orvhost build | compile | clean | export-compile-commands": the commands
// that run the plug-in's build entries over orvhost's make engine.
#pragma once

#include <string>
#include <vector>

#include "platform/platform.h"

namespace ads::host {

// Whether args[0] names one of these commands.
bool IsBuildCommand(const std::string& command);

// Returns the exit status like RunCli: 0 done, 1 errors in the build, 2 bad
// input (one line on standard error, the project left as it was).
int RunBuildCommand(const std::vector<std::string>& args, platform::Platform& platform);

}  // namespace ads::host
