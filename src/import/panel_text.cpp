#include "import/panel_text.h"

#include <algorithm>

namespace ads::import {

std::string DecodePanelText(const std::string& value, const std::string& hex_name) {
    if (hex_name.empty()) return std::string();
    size_t at = value.find(hex_name);
    if (at == std::string::npos) return std::string();
    size_t start = value.find_first_not_of("0 ", at + hex_name.size());
    if (start == std::string::npos) return std::string();

    std::string digits;
    digits.reserve(value.size() - start + 1);
    for (size_t i = start; i < value.size(); ++i) {
        if (value[i] != ' ') digits += value[i];
    }
    // The skip above may have eaten the high zero digit of the first byte.
    if (digits.size() % 2 != 0) digits.insert(digits.begin(), '0');

    auto digit = [](char c) {
        return c >= '0' && c <= '9' ? c - '0' : static_cast<unsigned char>(c) - '7';
    };
    std::string text;
    text.reserve(digits.size() / 2);
    for (size_t i = 0; i + 1 < digits.size(); i += 2) {
        const unsigned char byte = static_cast<unsigned char>(digit(digits[i]) * 16 + digit(digits[i + 1]));
        if (byte == 0) break;  // the text is a C string: the fill after it is not part of it
        text += static_cast<char>(byte);
    }
    return text;
}

std::vector<std::string> SplitOptionLines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        if (end > start) lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::string LookupSwitch(const std::vector<std::string>& lines, const std::string& name, char separator,
                         const std::string& default_text) {
    for (const std::string& line : lines) {
        if (line.compare(0, name.size(), name) != 0) continue;
        size_t at = line.find(separator);
        return at == std::string::npos ? default_text : line.substr(at + 1);
    }
    return name == "-fpu" ? std::string() : default_text;
}

std::vector<std::string> DefinitionLines(const std::vector<std::string>& lines, const std::string& prefix) {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.compare(0, prefix.size(), prefix) == 0) found.push_back(line);
    }
    return found;
}

std::vector<std::string> DefinitionCopies(const std::vector<std::string>& lines, const std::string& prefix) {
    std::vector<std::string> copies = DefinitionLines(lines, prefix);
    for (std::string& copy : copies) copy.erase(std::min(copy.find_first_of("?."), copy.size()));
    return copies;
}

std::string JoinDefinitions(const std::vector<std::string>& copies) {
    std::string joined;
    for (const std::string& copy : copies) joined += copy + " ";
    return joined;
}

std::string HexOf(const std::string& text) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string hex;
    for (unsigned char c : text) {
        hex += kDigits[c >> 4];
        hex += kDigits[c & 15];
    }
    return hex;
}

}  // namespace ads::import
