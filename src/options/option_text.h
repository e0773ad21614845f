// Small text tools shared by the option readers and writers.
//
// An OptionString is read by substring search over the whole string, never
// by splitting it into words: a switch counts as present when its text,
// leading blank included, occurs anywhere. A switch's value runs from just
// after the switch to the next blank (' ') or the end of the string.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace ads::options {

// Turns a via-file name as it stands in an option string into the name the
// tools are given (the path macros of the search paths). Empty = unchanged.
using PathConverter = std::function<std::string(const std::string&)>;

std::string ConvertPath(const PathConverter& convert, const std::string& path);

inline bool Contains(const std::string& text, const char* needle) {
    return text.find(needle) != std::string::npos;
}

// The text after the first occurrence of `key` up to the next blank, or
// nothing when `key` does not occur.
std::optional<std::string> ValueAfter(const std::string& text, const char* key);

// As ValueAfter, but blanks right after `key` are skipped first, for switches
// written with a blank between switch and value (" -width 100").
std::optional<std::string> SpacedValueAfter(const std::string& text, const char* key);

// Reads one value starting at `pos`: a value opening with a double quote runs
// to the closing quote and comes back without its quotes, backslashes and
// quotes inside it read by the Windows command-line rules; any other value
// runs to the next blank. `pos` is moved past what was read.
std::string ReadValue(const std::string& text, size_t& pos);

// Wraps a value holding a blank (or a double quote) in double quotes, so that
// ReadValue and the tools' command-line parsing give the value back; other
// values come back as they are.
std::string QuoteIfNeeded(const std::string& value);

// Wraps a value in double quotes whatever it holds, with the escapes of
// QuoteIfNeeded, for a switch whose value is always written quoted.
std::string Quoted(const std::string& value);

// The value after the first occurrence of `key`, blanks after `key` skipped,
// read as ReadValue reads it; nothing when `key` does not occur.
std::optional<std::string> ReadValueAfter(const std::string& text, const char* key);

// The inverse of QuoteIfNeeded for a value that is one quoted piece; any
// other value comes back as it is.
std::string Unquote(const std::string& value);

// The text of an "Extras" page: " -via " and the file name (quoted when it
// holds a blank), or empty when there is no file.
std::string ViaText(const std::string& file);
// The file name of an "Extras" text, without its quotes; empty when none.
std::string ViaFile(const std::string& text);

// Reads the "Extras" page out of an option string: everything after the
// first " -via " is the file name. One pair of enclosing quotes is taken off
// before the name goes through `convert`, so that a name written quoted does
// not gain a second pair each time it is read back.
std::string ReadViaText(const std::string& options, const PathConverter& convert);

}  // namespace ads::options
