#include "cli.h"

#include <cstdio>
#include <string>

#include "cli_args.h"
#include "cli_commands.h"
#include "cli_support.h"
#include "plugin_host.h"

namespace ads::host {

namespace {

const CommandOption kTarget = {"--target", "NAME", "a name", "the target to work on (default: the first)"};
const CommandOption kDiagnostics = {"--diagnostics", "FORMAT", "a format (gnu or pane)",
                                    "gnu: each diagnostic as FILE:LINE: error: ... (FILE as seen from the current "
                                    "folder), which editors read; pane (default): as the output pane shows it"};

// Every command of orvhost, in the order the help lists them.
const Command kCommands[] = {
    {"new", "PROJECT", "create an empty project file; its name is the file's base name", 1, 1, {}, CommandNew},
    {"add-target", "PROJECT NAME", "add a build target with the plug-in's defaults", 2, 2, {}, CommandAddTarget},
    {"add-file", "PROJECT PATH", "add a source file, optionally in a group", 2, 2,
     {{"--group", "GROUP", "a name", "the group to put it in; nested groups as A/B"}}, CommandAddFile},
    {"show", "PROJECT", "print the project's targets and files", 1, 1,
     {{"--target", "NAME", "a name", "print only this target"}}, CommandShow},
    {"set", "PROJECT KEY VALUE", "change one setting of a target (the next build of it rebuilds everything)", 3, 3,
     {{"--target", "NAME", "a name", "the target whose setting changes", true}}, CommandSet},
    {"options", "PROJECT", "print the option string each tool gets (armasm, armcc, armcpp, tcc, tcpp); "
                           "exit status 1 when one cannot be made", 1, 1,
     {kTarget, {"--file", "PATH", "a path", "the options of this file of the project"}}, CommandOptions},
    {"debug-options", "PROJECT",
     "print what the debugger receives for a target: mode, options 3 to 6, driver, driver library, application "
     "file, init script, debugger text, update flag, each storage entry (type, start, size, download, file) and "
     "the simulator clock; exit status 1 when the target has none", 1, 1, {kTarget}, CommandDebugOptions},
    {"settings", "PROJECT",
     "click through the plug-in's settings dialog: the steps run in the order given, then OK (or Cancel); "
     "anything refused ends it with exit status 2 and the project file untouched, which is written only when OK "
     "changed something", 1, 1,
     {{"--target", "NAME", "a name", "the target made current (default: the first)"},
      {"--file", "PATH", "a path", "open the dialog on this file of the project (as add-file stored it)"},
      {"--folder", "GROUP", "a group", "open it on this group (nested groups as A/B) instead of the project"},
      {"--page", "ITEM", "a tree item", "click the tree item ITEM", false, true},
      {"--tab", "TAB", "a tab", "click the tab TAB of the page shown", false, true},
      {"--set", "LABEL=VALUE", "LABEL=VALUE", "set the control labelled LABEL on the page shown (check box 0 or 1; "
       "an entry's text or index; a list's entries separated by ';')", false, true},
      {"--default", nullptr, nullptr, "press Default on the page shown", false, true},
      {"--apply", nullptr, nullptr, "press Apply", false, true},
      {"--cancel", nullptr, nullptr, "answer Cancel instead of OK: nothing is saved"},
      {"--show", nullptr, nullptr, "after the steps, print every page's controls with their values and each tool's "
       "command line"}},
     CommandSettings},
    {"build", "PROJECT", "build a target: the files that changed, then the image or library, then the post-link "
                         "step; exit status 1 when any of them failed", 1, 1,
     {kTarget, {"-j", "N", "a number of jobs", "run N file commands at once"},
      {"--rebuild", nullptr, nullptr, "build every file, changed or not"}, kDiagnostics}, CommandBuild},
    {"compile", "PROJECT FILE", "compile or assemble one file when it changed", 2, 2, {kTarget, kDiagnostics},
     CommandCompile},
    {"clean", "PROJECT", "delete a target's objects and image", 1, 1, {kTarget}, CommandClean},
    {"export-compile-commands", "PROJECT",
     "write compile_commands.json beside the project, the C and C++ commands as clangd understands them", 1, 1,
     {kTarget}, CommandExportCompileCommands},
    {"parse", "", "read a tool's captured output on standard input, print it as the output pane shows it and "
                  "then errors=N warnings=M as the plug-in counted them; exit status 1 when N is not 0", 0, 0,
     {{"--link", nullptr, nullptr, "read it as the linker's or the librarian's output"}}, CommandParse},
    {"import", "EXPORT PROJECT",
     "make a new project from a CodeWarrior XML export (targets, tool options, files), saying what could not "
     "be taken over", 2, 2, {}, CommandImport},
    {"drivers list", "", "print the user's debugger target drivers: KIND NUMBER, a tab, the library", 0, 0, {},
     CommandDriversList},
    {"drivers add", "PATH", "register a driver library under the smallest free number of its kind (told by its "
                            "exports: AG_Init, WinRDI_GetRDIProcVec, GetJDI); exit status 1 when it is none", 1, 1, {},
     CommandDriversAdd},
    {"drivers remove", "KIND NUMBER", "remove a driver (KIND: RDI, JDI or AGDI)", 2, 2,
     {{"--path", "PATH", "a path", "remove it only while it names this library"}}, CommandDriversRemove},
    {"config set-tools-dir", "DIR", "look for the ADS tools in DIR first", 1, 1, {}, CommandConfigSetToolsDir},
    {"config set-ads-home", "DIR",
     "record DIR as the ADS installation (DIR\\Bin holds the tools), as the ADS installer does", 1, 1,
     {{"--version", "NAME", "a name", "the version name to record (default: the one recorded, else 1.2)"}},
     CommandConfigSetAdsHome},
    {"config show", "", "print where orvhost and the plug-in find the tools", 0, 0, {}, CommandConfigShow},
};

const char kIntroduction[] =
    "usage: orvhost [-v] COMMAND [ARGS]\n"
    "       orvhost help COMMAND\n"
    "\n"
    "A headless host for the ADS toolchain plug-in: it keeps projects in its\n"
    "own XML format and drives the plug-in the way the IDE does.\n"
    "\n"
    "commands:\n";

const char kClosing[] =
    "\n"
    "global options:\n"
    "  -v                               print every command line that build and\n"
    "                                   compile run, as they run it, on standard\n"
    "                                   output, and the plug-in's trace lines\n"
    "                                   (failures it caught) on standard error\n"
    "  --help, help [COMMAND]           print this text, or a command's usage and\n"
    "                                   options (also: COMMAND --help)\n"
    "\n"
    "exit status: 0 done, 1 errors in the work, 2 bad input.\n"
    "environment: ORVANE_PLUGIN names another plug-in module to load;\n"
    "ORVANE_CONFIG names orvhost's configuration file; ORVANE_REGISTRY names\n"
    "the .reg file that holds the registry (on Windows instead of the real one).\n";

constexpr size_t kHelpColumn = 35;
constexpr size_t kHelpWidth = 79;

// "  TEXT   help", the help starting on a line of its own when TEXT is long
// and broken at blanks to stay within the width.
void PrintRow(const std::string& text, const std::string& help) {
    std::string out = "  " + text;
    size_t column = out.size();
    if (column + 1 > kHelpColumn) {
        out += "\n";
        column = 0;
    }
    size_t at = 0;
    while (at < help.size()) {
        size_t end = help.size();
        if (end - at > kHelpWidth - kHelpColumn) {
            end = help.rfind(' ', at + (kHelpWidth - kHelpColumn));
            if (end == std::string::npos || end <= at) end = help.find(' ', at);
            if (end == std::string::npos) end = help.size();
        }
        if (column > kHelpColumn) {
            out += "\n";
            column = 0;
        }
        out.append(kHelpColumn - column, ' ');
        out += help.substr(at, end - at);
        column = kHelpWidth;
        at = end < help.size() ? end + 1 : end;
    }
    std::printf("%s\n", out.c_str());
}

void PrintHelp() {
    std::fputs(kIntroduction, stdout);
    for (const Command& c : kCommands) {
        PrintRow(Usage(c).substr(std::string("usage: orvhost ").size()), c.help);
    }
    std::fputs(kClosing, stdout);
}

void PrintCommandHelp(const Command& c) {
    std::printf("%s\n\n%s\n", Usage(c).c_str(), c.help);
    if (c.options.empty()) return;
    std::printf("\noptions:\n");
    for (const CommandOption& o : c.options) {
        PrintRow(std::string(o.name) + (o.value != nullptr ? std::string(" ") + o.value : std::string()), o.help);
    }
}

size_t WordCount(const char* name) {
    size_t words = 1;
    for (const char* p = name; *p != '\0'; ++p) words += *p == ' ';
    return words;
}

// The command that `words` begin with; null when none does. *used is the
// number of words its name takes.
const Command* FindCommand(const std::vector<std::string>& words, size_t* used) {
    for (const Command& c : kCommands) {
        const size_t n = WordCount(c.name);
        if (words.size() < n) continue;
        std::string name = words[0];
        for (size_t i = 1; i < n; ++i) name += " " + words[i];
        if (name == c.name) {
            *used = n;
            return &c;
        }
    }
    return nullptr;
}

// Nothing in the table matched: a word that begins two-word commands
// ("config") gets its own complaint.
[[noreturn]] void FailUnknown(const std::vector<std::string>& words) {
    std::string subcommands;
    const std::string group = words[0] + " ";
    for (const Command& c : kCommands) {
        if (std::string(c.name).rfind(group, 0) == 0) {
            subcommands += (subcommands.empty() ? "" : "|") + std::string(c.name).substr(group.size());
        }
    }
    if (subcommands.empty()) Fail("unknown command '" + words[0] + "' (see orvhost --help)");
    if (words.size() < 2) Fail("usage: orvhost " + words[0] + " " + subcommands + " ...");
    Fail("unknown " + words[0] + " command '" + words[1] + "' (see orvhost --help)");
}

int Run(std::vector<std::string> words, platform::Platform& platform) {
    if (!words.empty() && words[0] == "-v") {
        PluginHost::SetTracing(true);
        words.erase(words.begin());
    }
    if (words.empty()) {
        PrintHelp();
        return 2;
    }
    if (words[0] == "--help" || words[0] == "-h" || words[0] == "help") {
        if (words.size() == 1) {
            PrintHelp();
            return 0;
        }
        const std::vector<std::string> asked(words.begin() + 1, words.end());
        size_t used = 0;
        const Command* c = FindCommand(asked, &used);
        if (c == nullptr || used != asked.size()) FailUnknown(asked);
        PrintCommandHelp(*c);
        return 0;
    }
    size_t used = 0;
    const Command* c = FindCommand(words, &used);
    if (c == nullptr) FailUnknown(words);
    const std::vector<std::string> rest(words.begin() + static_cast<std::ptrdiff_t>(used), words.end());
    for (const std::string& word : rest) {
        if (word == "--") break;
        if (word == "--help") {
            PrintCommandHelp(*c);
            return 0;
        }
    }
    return c->run(ParseArguments(*c, rest), platform);
}

}  // namespace

int RunCli(const std::vector<std::string>& args, platform::Platform& platform) {
    try {
        return Run(args, platform);
    } catch (const CliFailure& f) {
        std::fflush(stdout);
        std::fprintf(stderr, "orvhost: %s\n", f.message.c_str());
        return f.status;
    }
}

}  // namespace ads::host
