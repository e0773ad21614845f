// The expressions of #if and #elif: integers, defined NAME, defined(NAME),
// macro names (object-like macros stand for their value, others for 0) and
// the C operators from ?: down to the unary ones.
#pragma once

#include <map>
#include <string>

namespace fakeads {

struct Macro {
    std::string value;
    bool function_like = false;
};
using MacroTable = std::map<std::string, Macro>;

// False with a reason when the text is not an expression.
bool EvaluateCondition(const std::string& text, const MacroTable& macros, long long* value, std::string* why);

}  // namespace fakeads
