// Reading a tool's command line against its switch table. Each tool keeps
// its table as data (name, how the value comes, how the name may be
// spelled, what a value must look like); this file knows no tool.
#pragma once

#include <string>
#include <vector>

#include "platform/text.h"

namespace fakeads {

enum class Value {
    kNone,              // -c
    kNext,              // -o file: the value is the following word
    kNextMayBeEmpty,    // -libpath "": the following word, which may be an empty argument
    kAttached,          // -O2: glued to the name, and there must be one
    kAttachedOptional,  // -W, -Wab+p, -E, -text/c: glued to the name, may be empty
    kAttachedOrNext,    // -Dname or -D name
    kOptionalNext,      // -remove (ro/dbg), -list [file]: the following word when `optional` takes it
};

enum class Spelling {
    kExact,        // case matters: the compilers' -o and -O are two switches
    kCaseless,     // the full name, in any case
    kAbbreviated,  // any case; the capitals of the name are the shortest accepted
                   // abbreviation: "NOTerse" takes -noterse, -NOTERSE, -not, -NoTer
};

// Checks a value; on failure `why` may say more than "bad argument".
using ValueCheck = bool (*)(const std::string& value, std::string* why);
// Whether a kOptionalNext switch takes the following word as its value.
using TakesNext = bool (*)(const std::string& next);

struct Switch {
    const char* name;  // without the leading "-"
    Value value = Value::kNone;
    ValueCheck check = nullptr;  // null: any value (a non-empty one where a value is needed)
    TakesNext takes_next = nullptr;
};

struct SwitchTable {
    std::vector<Switch> switches;
    Spelling spelling = Spelling::kExact;
    // Single-letter switches may be written together ("-rcv").
    bool letters_cluster = false;
};

struct Option {
    std::string key;      // the switch's name as the table spells it (in lower case unless
                          // the table's spelling is exact): the tools look options up by it
    std::string written;  // the word as it stood on the command line
    std::string value;
};

struct CommandLine {
    std::vector<Option> options;       // in command-line order, via files expanded in place
    std::vector<std::string> inputs;   // the words that are not switches, in order

    bool Has(const std::string& key) const;
    // The value of the last occurrence, or `otherwise`.
    std::string Last(const std::string& key, const std::string& otherwise = std::string()) const;
    std::vector<std::string> All(const std::string& key) const;
};

// Reads the words after the program name. "-via file" is expanded in place
// for every tool (the file's words split as the C runtime splits a command
// line; via files may nest). False with a message in the tools' wording:
//   Unrecognised option '-foo'.
//   Option '-o' needs an argument.
//   Bad argument 'ARM999' for option '-cpu'.
//   Could not open via file 'opts.via'.
bool ReadCommandLine(const SwitchTable& table, const std::vector<std::string>& words, CommandLine* out,
                     std::string* error);

// The C runtime's splitting of a command line, without the special first word.
std::vector<std::string> SplitWords(const std::string& text);

// Shared value checks.
bool IsNumber(const std::string& value, std::string* why);         // 42, 0x8000
bool IsNonNegativeInteger(const std::string& value, std::string* why);
using ads::platform::Lower;

}  // namespace fakeads
