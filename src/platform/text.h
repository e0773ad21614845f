// Text and path helpers shared by every program of the project, the
// simulated tools included. Each name has one meaning; where callers need
// a different answer they use a different name.
//
// Paths are taken as written: "\" and "/" both separate folders, and no
// helper touches the file system.
#pragma once

#include <string>

namespace ads::platform {

// Blanks. IsSpaceOrTab: ' ' and '\t' only, the blanks inside one line of
// a command or a .reg file. IsWhitespace: those and '\r', '\n', '\v', '\f'
// (what isspace answers in the "C" locale).
bool IsSpaceOrTab(char c);
bool IsWhitespace(char c);

// The text without leading and trailing whitespace (IsWhitespace).
std::string Trim(const std::string& text);
// The text without leading and trailing spaces and tabs only.
std::string TrimSpaceOrTab(const std::string& text);

// The UTF-8 byte order mark that editors put before a text.
inline constexpr char kUtf8ByteOrderMark[] = "\xEF\xBB\xBF";
// True when the text starts with it.
bool StartsWithByteOrderMark(const std::string& text);

// ASCII letters lowered; every other byte, 8-bit ones included, is kept.
std::string Lower(std::string text);
// ASCII comparisons that ignore case. LessIgnoringCase orders "a" < "B" <
// "b2" and, so that a sort gives one order on every machine, names that
// differ only in case by their bytes ("ABC" < "abc").
bool EqualsIgnoringCase(const std::string& a, const std::string& b);
bool StartsWithIgnoringCase(const std::string& text, const std::string& prefix);
bool LessIgnoringCase(const std::string& a, const std::string& b);

// The name after the last separator: "src\main.c" gives "main.c", a bare
// name gives itself.
std::string FileName(const std::string& path);
// FileName without its last extension: "a.b.c" gives "a.b". A name that
// only starts with a dot keeps it (".profile").
std::string StemOf(const std::string& path);
// FileName up to its first dot: "proj.mcp.xml" gives "proj". A name that
// only starts with a dot keeps it.
std::string StemBeforeFirstDot(const std::string& path);
// The last extension of FileName with its dot, as written: "src\a.b.C"
// gives ".C", ".s" gives ".s", "dir.x\name" gives "".
std::string ExtensionOf(const std::string& path);
// The folder part without its trailing separator: "src\main.c" gives
// "src", a bare name gives "", and "/a" gives "/" (the root stays a folder).
std::string DirectoryOf(const std::string& path);
// A folder and a name joined with one "\", none added when the folder is
// empty or already ends in a separator.
std::string JoinPath(const std::string& directory, const std::string& name);

}  // namespace ads::platform
