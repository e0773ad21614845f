// orvhost's commands as data: each command declares its words, its
// arguments and its options once, and one parser, the help texts and the
// usage errors all come from that declaration.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform.h"

namespace ads::host {

struct CommandOption {
    const char* name;   // "--target", "-j" (a one-letter option also takes "-j4")
    const char* value;  // what it takes ("NAME"), null for a switch
    const char* needs;  // the complaint when the value is missing: "a name" gives "--target needs a name"
    const char* help;   // one line
    bool required = false;
    bool repeats = false;  // may be given more than once; the usage shows "..."
};

// What the parser hands a command: its positional words in order and the
// value of each option given (empty for a switch; the last one when it was
// given more than once), and every option with its value in the order given.
struct Arguments {
    std::vector<std::string> positional;
    std::map<std::string, std::string> options;
    std::vector<std::pair<std::string, std::string>> sequence;

    bool Has(const std::string& option) const { return options.count(option) != 0; }
    std::string Value(const std::string& option) const {
        auto it = options.find(option);
        return it == options.end() ? std::string() : it->second;
    }
    const std::string& operator[](size_t i) const { return positional[i]; }
};

using CommandHandler = int (*)(const Arguments& args, platform::Platform& platform);

struct Command {
    const char* name;       // "build", or two words: "config show"
    const char* arguments;  // the positional words as the usage shows them: "PROJECT FILE"
    const char* help;       // one line
    size_t min_positional;
    size_t max_positional;
    std::vector<CommandOption> options;
    CommandHandler run;
};

// "usage: orvhost build PROJECT [--target NAME] [-j N] [--rebuild]".
std::string Usage(const Command& command);

// Parses the words after the command's name. Bad input ends the command
// (Fail, status 2): an unknown option, an option without its value, a
// missing required option, too few or too many positional words. "--" ends
// the options: every word after it is positional.
Arguments ParseArguments(const Command& command, const std::vector<std::string>& words);

}  // namespace ads::host
