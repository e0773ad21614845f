#include "cli_args.h"

#include <cctype>

#include "cli_support.h"

namespace ads::host {

namespace {

const CommandOption* FindOption(const Command& command, const std::string& name) {
    for (const CommandOption& option : command.options) {
        if (name == option.name) return &option;
    }
    return nullptr;
}

// "-j4" for a one-letter option "-j" that takes a value.
const CommandOption* FindJoined(const Command& command, const std::string& word) {
    for (const CommandOption& option : command.options) {
        const std::string name = option.name;
        if (option.value != nullptr && name.size() == 2 && word.size() > 2 && word.compare(0, 2, name) == 0) {
            return &option;
        }
    }
    return nullptr;
}

}  // namespace

std::string Usage(const Command& command) {
    std::string usage = std::string("usage: orvhost ") + command.name;
    if (*command.arguments != '\0') usage += std::string(" ") + command.arguments;
    for (const CommandOption& option : command.options) {
        std::string text = option.name;
        if (option.value != nullptr) text += std::string(" ") + option.value;
        usage += option.required ? " " + text : " [" + text + "]";
        if (option.repeats) usage += "...";
    }
    return usage;
}

Arguments ParseArguments(const Command& command, const std::vector<std::string>& words) {
    Arguments args;
    bool options_end = false;
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        // "-1,0,2" is a value, not an option.
        if (options_end || word.size() < 2 || word[0] != '-' || std::isdigit(static_cast<unsigned char>(word[1]))) {
            args.positional.push_back(word);
            continue;
        }
        if (word == "--") {
            options_end = true;
            continue;
        }
        if (const CommandOption* option = FindOption(command, word)) {
            if (option->value != nullptr && i + 1 >= words.size()) Fail(word + " needs " + option->needs);
            args.options[word] = option->value != nullptr ? words[++i] : std::string();
            args.sequence.emplace_back(word, args.options[word]);
        } else if (const CommandOption* joined = FindJoined(command, word)) {
            args.options[joined->name] = word.substr(2);
            args.sequence.emplace_back(joined->name, word.substr(2));
        } else {
            Fail("unknown option '" + word + "' (a value that starts with '-' goes after '--'); " + Usage(command));
        }
    }
    if (args.positional.size() < command.min_positional || args.positional.size() > command.max_positional) {
        Fail(Usage(command));
    }
    for (const CommandOption& option : command.options) {
        if (option.required && !args.Has(option.name)) Fail(Usage(command));
    }
    return args;
}

}  // namespace ads::host
