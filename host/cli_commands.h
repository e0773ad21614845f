// The handlers of orvhost's commands, each reached through the command
// table in cli.cpp with its arguments parsed. A handler returns the exit
// status (0 done, 1 errors in the work) or ends with Fail.
#pragma once

#include "cli_args.h"
#include "platform/platform.h"

namespace ads::host {

int CommandNew(const Arguments& args, platform::Platform& platform);
int CommandAddTarget(const Arguments& args, platform::Platform& platform);
int CommandAddFile(const Arguments& args, platform::Platform& platform);
int CommandShow(const Arguments& args, platform::Platform& platform);
int CommandSet(const Arguments& args, platform::Platform& platform);
int CommandOptions(const Arguments& args, platform::Platform& platform);
int CommandDebugOptions(const Arguments& args, platform::Platform& platform);
int CommandDriversList(const Arguments& args, platform::Platform& platform);
int CommandDriversAdd(const Arguments& args, platform::Platform& platform);
int CommandDriversRemove(const Arguments& args, platform::Platform& platform);
int CommandSettings(const Arguments& args, platform::Platform& platform);
int CommandBuild(const Arguments& args, platform::Platform& platform);
int CommandCompile(const Arguments& args, platform::Platform& platform);
int CommandClean(const Arguments& args, platform::Platform& platform);
int CommandExportCompileCommands(const Arguments& args, platform::Platform& platform);
int CommandParse(const Arguments& args, platform::Platform& platform);
int CommandImport(const Arguments& args, platform::Platform& platform);
int CommandConfigSetToolsDir(const Arguments& args, platform::Platform& platform);
int CommandConfigSetAdsHome(const Arguments& args, platform::Platform& platform);
int CommandConfigShow(const Arguments& args, platform::Platform& platform);

}  // namespace ads::host
