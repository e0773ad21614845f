// orvhost's command line.
#pragma once

#include <string>
#include <vector>

#include "platform/platform.h"

namespace ads::host {

// Runs one command; returns the exit status: 0 done, 1 errors in the work,
// 2 bad input (a line on standard error names the file and the reason).
int RunCli(const std::vector<std::string>& args, platform::Platform& platform);

}  // namespace ads::host
