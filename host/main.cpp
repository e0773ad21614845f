#include <cstdio>
#include <string>
#include <vector>

#include "cli.h"
#include "platform/interrupt.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
    ads::platform::UseBinaryStandardStreams();
    // Ctrl-C in a build deletes the objects being written.
    ads::platform::CleanUpOnInterrupt();
    ads::platform::Platform& platform = ads::platform::System();
    // Message boxes of the plug-in go to standard error: nobody is there to
    // press OK.
    platform.environment->Set("ORVANE_HEADLESS", "1");
    std::vector<std::string> args(argv + 1, argv + argc);
    int status = ads::host::RunCli(args, platform);
    std::fflush(stdout);
    return status;
}
