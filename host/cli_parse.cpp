// orvhost parse: a tool's captured output, read from standard input, shown
// as the plug-in's output pane shows it and counted by the plug-in.
#include <cstdio>
#include <string>

#include "cli_commands.h"
#include "cli_support.h"

namespace ads::host {

namespace {

std::string ReadStandardInput() {
    std::string text;
    char chunk[4096];
    for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, stdin)) > 0;) text.append(chunk, n);
    if (std::ferror(stdin)) Fail("cannot read standard input", 1);
    return text;
}

}  // namespace

int CommandParse(const Arguments& args, platform::Platform& platform) {
    const std::string text = ReadStandardInput();
    PluginHost host(platform);
    std::string error;
    if (!host.Load(PluginModulePath(platform), &error)) Fail(error, 1);
    std::string pane;
    host.SetOutput(&pane);
    host.table()->ParseOutput(text.c_str(), args.Has("--link") ? kAdsParseLinkStep : 0);
    BuildCounts counts;
    if (!ReadBuildCounts(host.table(), &counts)) Fail("the plug-in does not tell its counts", 1);
    // The counts line stands on a line of its own, whatever the pane ends with.
    if (!pane.empty() && pane.back() != '\n') pane += "\n";
    std::printf("%serrors=%d warnings=%d\n", pane.c_str(), counts.errors, counts.warnings);
    return counts.errors > 0 ? 1 : 0;
}

}  // namespace ads::host
