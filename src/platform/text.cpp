#include "platform/text.h"

#include <algorithm>

namespace ads::platform {

namespace {

char LowerChar(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

size_t LastSeparator(const std::string& path) { return path.find_last_of("\\/"); }

template <typename Blank>
std::string TrimWhere(const std::string& text, Blank blank) {
    size_t begin = 0, end = text.size();
    while (begin < end && blank(text[begin])) ++begin;
    while (end > begin && blank(text[end - 1])) --end;
    return text.substr(begin, end - begin);
}

// FileName cut before the dot that `find` picks, unless that dot leads.
template <typename Find>
std::string CutAtDot(const std::string& path, Find find) {
    std::string name = FileName(path);
    const size_t dot = find(name);
    if (dot != std::string::npos && dot > 0) name.resize(dot);
    return name;
}

}  // namespace

bool IsSpaceOrTab(char c) { return c == ' ' || c == '\t'; }

bool IsWhitespace(char c) { return IsSpaceOrTab(c) || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }

std::string Trim(const std::string& text) { return TrimWhere(text, IsWhitespace); }

std::string TrimSpaceOrTab(const std::string& text) { return TrimWhere(text, IsSpaceOrTab); }

bool StartsWithByteOrderMark(const std::string& text) { return text.compare(0, 3, kUtf8ByteOrderMark) == 0; }

std::string Lower(std::string text) {
    for (char& c : text) c = LowerChar(c);
    return text;
}

bool EqualsIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return LowerChar(x) == LowerChar(y); });
}

bool StartsWithIgnoringCase(const std::string& text, const std::string& prefix) {
    return text.size() >= prefix.size() && EqualsIgnoringCase(text.substr(0, prefix.size()), prefix);
}

bool LessIgnoringCase(const std::string& a, const std::string& b) {
    const size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i) {
        const char x = LowerChar(a[i]), y = LowerChar(b[i]);
        if (x != y) return static_cast<unsigned char>(x) < static_cast<unsigned char>(y);
    }
    if (a.size() != b.size()) return a.size() < b.size();
    return a < b;
}

std::string FileName(const std::string& path) {
    const size_t slash = LastSeparator(path);
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string StemOf(const std::string& path) {
    return CutAtDot(path, [](const std::string& name) { return name.rfind('.'); });
}

std::string StemBeforeFirstDot(const std::string& path) {
    return CutAtDot(path, [](const std::string& name) { return name.find('.'); });
}

std::string ExtensionOf(const std::string& path) {
    const std::string name = FileName(path);
    const size_t dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot);
}

std::string DirectoryOf(const std::string& path) {
    const size_t slash = LastSeparator(path);
    if (slash == std::string::npos) return std::string();
    return slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
}

std::string JoinPath(const std::string& directory, const std::string& name) {
    if (directory.empty() || directory.back() == '\\' || directory.back() == '/') return directory + name;
    return directory + "\\" + name;
}

}  // namespace ads::platform
