#include "import/panel_values.h"

#include <cstring>

namespace ads::import {

Flag ReadFlag(const std::string& raw, const char* on_switch, const char* off_switch) {
    const std::string value = Trimmed(raw);
    if (value.empty()) return Flag::kUnset;
    if (OneOf(value, {"1", "on", "true", "yes"}) || (*on_switch != '\0' && value == on_switch)) return Flag::kOn;
    if (OneOf(value, {"0", "off", "false", "no"}) || (*off_switch != '\0' && value == off_switch)) return Flag::kOff;
    return Flag::kUnknown;
}

std::string Trimmed(const std::string& value) {
    const size_t begin = value.find_first_not_of(' ');
    if (begin == std::string::npos) return std::string();
    return value.substr(begin, value.find_last_not_of(' ') - begin + 1);
}

bool OneOf(const std::string& value, std::initializer_list<const char*> choices) {
    for (const char* choice : choices) {
        if (value == choice) return true;
    }
    return false;
}

std::string SwitchValue(const std::string& row, const char* switch_text) {
    const size_t n = std::strlen(switch_text);
    return Trimmed(row.compare(0, n, switch_text) == 0 ? row.substr(n) : row);
}

}  // namespace ads::import
