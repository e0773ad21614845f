#include "condition.h"

#include <cctype>

#include "platform/text.h"

namespace fakeads {
namespace {

constexpr int kExpansionLimit = 64;

class Evaluator {
public:
    Evaluator(const std::string& text, const MacroTable& macros, int depth)
        : text_(text), macros_(macros), depth_(depth) {}

    bool Run(long long* value, std::string* why) {
        *value = Conditional();
        Blanks();
        if (error_.empty() && pos_ < text_.size()) error_ = "unexpected '" + text_.substr(pos_) + "'";
        *why = error_;
        return error_.empty();
    }

private:
    void Blanks() {
        while (pos_ < text_.size() && ads::platform::IsWhitespace(text_[pos_])) ++pos_;
    }

    bool Take(const char* op) {
        Blanks();
        const std::string token = op;
        if (text_.compare(pos_, token.size(), token) != 0) return false;
        // "<" must not take the first half of "<<" or "<=", nor "&" of "&&".
        const char after = pos_ + token.size() < text_.size() ? text_[pos_ + token.size()] : '\0';
        if (token.size() == 1) {
            const bool doubles = std::string("|&<>+-").find(token[0]) != std::string::npos && after == token[0];
            const bool compares = std::string("<>!").find(token[0]) != std::string::npos && after == '=';
            if (doubles || compares) return false;
        }
        pos_ += token.size();
        return true;
    }

    void Fail(const std::string& message) {
        if (error_.empty()) error_ = message;
    }

    long long Conditional() {
        const long long condition = Or();
        if (!Take("?")) return condition;
        const long long yes = Conditional();
        if (!Take(":")) Fail("missing ':'");
        const long long no = Conditional();
        return condition ? yes : no;
    }

    long long Or() {
        long long value = And();
        while (Take("||")) value = (And() != 0) | (value != 0);
        return value;
    }

    long long And() {
        long long value = BitOr();
        while (Take("&&")) value = (BitOr() != 0) & (value != 0);
        return value;
    }

    long long BitOr() {
        long long value = BitXor();
        while (Take("|")) value |= BitXor();
        return value;
    }

    long long BitXor() {
        long long value = BitAnd();
        while (Take("^")) value ^= BitAnd();
        return value;
    }

    long long BitAnd() {
        long long value = Equality();
        while (Take("&")) value &= Equality();
        return value;
    }

    long long Equality() {
        long long value = Relation();
        for (;;) {
            if (Take("==")) value = value == Relation();
            else if (Take("!=")) value = value != Relation();
            else return value;
        }
    }

    long long Relation() {
        long long value = Shift();
        for (;;) {
            if (Take("<=")) value = value <= Shift();
            else if (Take(">=")) value = value >= Shift();
            else if (Take("<")) value = value < Shift();
            else if (Take(">")) value = value > Shift();
            else return value;
        }
    }

    long long Shift() {
        long long value = Sum();
        for (;;) {
            if (Take("<<")) value = static_cast<long long>(static_cast<unsigned long long>(value) << (Sum() & 63));
            else if (Take(">>")) value >>= (Sum() & 63);
            else return value;
        }
    }

    long long Sum() {
        long long value = Product();
        for (;;) {
            if (Take("+")) value += Product();
            else if (Take("-")) value -= Product();
            else return value;
        }
    }

    long long Product() {
        long long value = Unary();
        for (;;) {
            long long right;
            if (Take("*")) {
                value *= Unary();
            } else if (Take("/") || Take("%")) {
                const bool divide = text_[pos_ - 1] == '/';
                right = Unary();
                if (right == 0) {
                    Fail("division by zero");
                    return 0;
                }
                value = divide ? value / right : value % right;
            } else {
                return value;
            }
        }
    }

    long long Unary() {
        if (Take("!")) return !Unary();
        if (Take("~")) return ~Unary();
        if (Take("-")) return -Unary();
        if (Take("+")) return Unary();
        return Primary();
    }

    std::string Identifier() {
        Blanks();
        const size_t start = pos_;
        while (pos_ < text_.size() &&
               (std::isalnum(static_cast<unsigned char>(text_[pos_])) || text_[pos_] == '_')) {
            ++pos_;
        }
        return text_.substr(start, pos_ - start);
    }

    long long Primary() {
        Blanks();
        if (pos_ >= text_.size()) {
            Fail("missing operand");
            return 0;
        }
        if (Take("(")) {
            const long long value = Conditional();
            if (!Take(")")) Fail("missing ')'");
            return value;
        }
        const char c = text_[pos_];
        if (std::isdigit(static_cast<unsigned char>(c))) {
            size_t used = 0;
            long long value = 0;
            try {
                value = static_cast<long long>(std::stoull(text_.substr(pos_), &used, 0));
            } catch (...) {
                Fail("bad number");
                return 0;
            }
            pos_ += used;
            while (pos_ < text_.size() && std::string("uUlL").find(text_[pos_]) != std::string::npos) ++pos_;
            return value;
        }
        if (!std::isalpha(static_cast<unsigned char>(c)) && c != '_') {
            Fail(std::string("unexpected '") + c + "'");
            return 0;
        }
        const std::string name = Identifier();
        if (name == "defined") {
            const bool parenthesised = Take("(");
            const std::string macro = Identifier();
            if (macro.empty()) Fail("'defined' needs a name");
            if (parenthesised && !Take(")")) Fail("missing ')'");
            return macros_.count(macro) ? 1 : 0;
        }
        const auto found = macros_.find(name);
        if (found == macros_.end() || found->second.function_like) return 0;
        if (depth_ >= kExpansionLimit) {
            Fail("macro " + name + " expands without end");
            return 0;
        }
        if (found->second.value.find_first_not_of(" \t") == std::string::npos) return 0;
        long long value = 0;
        std::string why;
        if (!Evaluator(found->second.value, macros_, depth_ + 1).Run(&value, &why)) Fail(why);
        return value;
    }

    const std::string& text_;
    const MacroTable& macros_;
    int depth_;
    size_t pos_ = 0;
    std::string error_;
};

}  // namespace

bool EvaluateCondition(const std::string& text, const MacroTable& macros, long long* value, std::string* why) {
    return Evaluator(text, macros, 0).Run(value, why);
}

}  // namespace fakeads
