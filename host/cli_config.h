// "orvhost config ...": where orvhost and the plug-in find the ADS tools.
#pragma once

#include <string>
#include <vector>

#include "platform/platform.h"

namespace ads::host {

// args[0] is "config". Returns the exit status like RunCli.
int RunConfigCommand(const std::vector<std::string>& args, platform::Platform& platform);

}  // namespace ads::host
