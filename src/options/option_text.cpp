#include "options/option_text.h"

namespace ads::options {

std::string ConvertPath(const PathConverter& convert, const std::string& path) {
    return convert ? convert(path) : path;
}

std::optional<std::string> ValueAfter(const std::string& text, const char* key) {
    size_t at = text.find(key);
    if (at == std::string::npos) return std::nullopt;
    size_t begin = at + std::char_traits<char>::length(key);
    size_t end = text.find(' ', begin);
    if (end == std::string::npos) end = text.size();
    return text.substr(begin, end - begin);
}

std::optional<std::string> SpacedValueAfter(const std::string& text, const char* key) {
    size_t at = text.find(key);
    if (at == std::string::npos) return std::nullopt;
    size_t begin = text.find_first_not_of(' ', at + std::char_traits<char>::length(key));
    if (begin == std::string::npos) return std::string();
    size_t end = text.find(' ', begin);
    if (end == std::string::npos) end = text.size();
    return text.substr(begin, end - begin);
}

// Quoted values follow the Windows command-line rules, so that what the
// tools receive is what the page holds: inside quotes, 2n backslashes before
// a quote stand for n backslashes and the quote ends the value; 2n+1 stand
// for n backslashes and a quote; other backslashes stand for themselves.
std::string ReadValue(const std::string& text, size_t& pos) {
    std::string value;
    if (pos < text.size() && text[pos] == '"') {
        ++pos;
        while (pos < text.size()) {
            size_t slashes = 0;
            while (pos < text.size() && text[pos] == '\\') ++slashes, ++pos;
            if (pos < text.size() && text[pos] == '"') {
                value.append(slashes / 2, '\\');
                ++pos;
                if (slashes % 2 == 0) return value;  // the closing quote
                value += '"';
            } else {
                value.append(slashes, '\\');
                if (pos < text.size()) value += text[pos++];
            }
        }
        return value;
    }
    size_t end = text.find(' ', pos);
    if (end == std::string::npos) end = text.size();
    value = text.substr(pos, end - pos);
    pos = end;
    return value;
}

std::string QuoteIfNeeded(const std::string& value) {
    return value.find_first_of(" \"") == std::string::npos ? value : Quoted(value);
}

std::string Quoted(const std::string& value) {
    std::string quoted = "\"";
    size_t slashes = 0;
    for (char c : value) {
        if (c == '\\') {
            ++slashes;
            continue;
        }
        // Backslashes before a quote are doubled, and the quote escaped.
        quoted.append(c == '"' ? 2 * slashes + 1 : slashes, '\\');
        slashes = 0;
        quoted += c;
    }
    quoted.append(2 * slashes, '\\');  // before the closing quote
    quoted += '"';
    return quoted;
}

std::optional<std::string> ReadValueAfter(const std::string& text, const char* key) {
    size_t at = text.find(key);
    if (at == std::string::npos) return std::nullopt;
    size_t pos = text.find_first_not_of(' ', at + std::char_traits<char>::length(key));
    if (pos == std::string::npos) return std::string();
    return ReadValue(text, pos);
}

std::string Unquote(const std::string& value) {
    if (value.size() < 2 || value.front() != '"') return value;
    size_t pos = 0;
    std::string inner = ReadValue(value, pos);
    return pos == value.size() ? inner : value;
}

}  // namespace ads::options

namespace ads::options {

namespace {
constexpr char kVia[] = " -via ";
}

std::string ViaText(const std::string& file) {
    return file.empty() ? std::string() : kVia + QuoteIfNeeded(file);
}

std::string ViaFile(const std::string& text) {
    size_t at = text.find(kVia);
    if (at == std::string::npos) return std::string();
    return Unquote(text.substr(at + sizeof kVia - 1));
}

std::string ReadViaText(const std::string& options, const PathConverter& convert) {
    size_t at = options.find(kVia);
    if (at == std::string::npos) return std::string();
    std::string name = ConvertPath(convert, Unquote(options.substr(at + sizeof kVia - 1)));
    return kVia + QuoteIfNeeded(name);
}

}  // namespace ads::options
