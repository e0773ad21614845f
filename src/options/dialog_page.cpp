#include "options/dialog_page.h"

#include <cstdlib>

namespace ads::options {

namespace {

bool ParseIndex(const std::string& text, int* out) {
    if (text.empty() || text.size() > 9) return false;
    int value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        value = value * 10 + (c - '0');
    }
    *out = value;
    return true;
}

}  // namespace

std::string ParseCheck(const std::string& value, bool allow_unset, int* out) {
    if (value == "0" || value == "1") {
        *out = value[0] - '0';
        return {};
    }
    if (allow_unset && value == "-1") {
        *out = kUnset;
        return {};
    }
    return allow_unset ? "takes 0, 1 or -1 (the level above decides)" : "takes 0 or 1";
}

std::string ParseChoice(const std::vector<Choice>& choices, const std::string& value, int* out) {
    for (const Choice& c : choices) {
        if (c.label == value) {
            *out = c.value;
            return {};
        }
    }
    int index = 0;
    if (ParseIndex(value, &index) && index < static_cast<int>(choices.size())) {
        *out = choices[static_cast<size_t>(index)].value;
        return {};
    }
    std::string reason = "takes one of:";
    for (size_t i = 0; i < choices.size(); ++i) reason += (i == 0 ? " \"" : ", \"") + choices[i].label + "\"";
    if (choices.empty()) reason += " nothing";
    return reason + " (or its index)";
}

const std::string& ChoiceLabel(const std::vector<Choice>& choices, int value) {
    static const std::string kNone;
    for (const Choice& c : choices) {
        if (c.value == value) return c.label;
    }
    return kNone;
}

std::vector<std::string> SplitList(const std::string& value) {
    std::vector<std::string> entries;
    std::string piece;
    for (char c : value) {
        if (c == ';' || c == '\n') {
            if (!piece.empty()) entries.push_back(piece);
            piece.clear();
        } else if (c != '\r') {
            piece += c;
        }
    }
    if (!piece.empty()) entries.push_back(piece);
    return entries;
}

std::string JoinList(const std::vector<std::string>& entries) {
    std::string text;
    for (size_t i = 0; i < entries.size(); ++i) text += (i == 0 ? "" : "\n") + entries[i];
    return text;
}

}  // namespace ads::options
