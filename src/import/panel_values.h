// How the translators read the values of panel rows (see
// panel_translators.h for what the rows hold).
#pragma once

#include <initializer_list>
#include <string>

namespace ads::import {

enum class Flag { kUnset, kOn, kOff, kUnknown };

// A switch row: empty is kUnset; an on word or `on_switch` is kOn; an off
// word or `off_switch` is kOff; anything else kUnknown.
Flag ReadFlag(const std::string& value, const char* on_switch = "", const char* off_switch = "");

// The value with blanks cut at both ends.
std::string Trimmed(const std::string& value);

// True when the value is one of `choices`.
bool OneOf(const std::string& value, std::initializer_list<const char*> choices);

// The value of a "-cpu NAME" or "-fpu NAME" row, without the switch.
std::string SwitchValue(const std::string& row, const char* switch_text);

}  // namespace ads::import
