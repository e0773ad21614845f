// Reading a C or C++ source the way the compilers' preprocessor walks it:
// comments, #include (recursively), #define and #undef of object-like
// macros, the conditionals, #error, and the marker comments on active lines.
#include <cctype>

#include "paths.h"
#include "source_scan.h"

namespace fakeads {
namespace {

constexpr int kIncludeDepthLimit = 32;

bool IsIdentifierChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

// The line without its comments (each replaced by a blank); a block comment
// that stays open carries over to the next line.
std::string StripComments(const std::string& line, bool* in_comment) {
    std::string code;
    size_t i = 0;
    while (i < line.size()) {
        if (*in_comment) {
            const size_t end = line.find("*/", i);
            if (end == std::string::npos) return code;
            *in_comment = false;
            code += ' ';
            i = end + 2;
        } else if (line.compare(i, 2, "/*") == 0) {
            *in_comment = true;
            i += 2;
        } else if (line.compare(i, 2, "//") == 0) {
            return code;
        } else if (line[i] == '"' || line[i] == '\'') {
            const char quote = line[i];
            code += line[i++];
            while (i < line.size() && line[i] != quote) {
                if (line[i] == '\\' && i + 1 < line.size()) code += line[i++];
                code += line[i++];
            }
            if (i < line.size()) code += line[i++];
        } else {
            code += line[i++];
        }
    }
    return code;
}

// Spots function definitions at file scope: the text since the last ";" or
// "}" holds a "(" and is followed by "{", and it is neither static nor an
// initialiser.
class Definitions {
public:
    void Feed(const std::string& code, std::vector<std::string>* symbols) {
        for (size_t i = 0; i < code.size(); ++i) {
            const char c = code[i];
            if (c == '"' || c == '\'') {
                const size_t end = code.find(c, i + 1);
                i = end == std::string::npos ? code.size() : end;
                pending_ += ' ';
                continue;
            }
            if (depth_ > 0) {
                if (c == '{') ++depth_;
                if (c == '}' && --depth_ == 0) pending_.clear();
                continue;
            }
            if (c == '{') {
                Define(symbols);
                depth_ = 1;
                pending_.clear();
            } else if (c == ';' || c == '}') {
                pending_.clear();
            } else {
                pending_ += c;
            }
        }
        pending_ += ' ';
    }

private:
    void Define(std::vector<std::string>* symbols) const {
        const size_t paren = pending_.find('(');
        if (paren == std::string::npos || pending_.find('=') < paren) return;
        const std::string head = " " + pending_.substr(0, paren);
        for (const char* word : {"static", "typedef"}) {
            const size_t at = head.find(word);
            if (at != std::string::npos && !IsIdentifierChar(head[at - 1]) &&
                (at + std::string(word).size() >= head.size() || !IsIdentifierChar(head[at + std::string(word).size()]))) {
                return;
            }
        }
        size_t end = head.find_last_not_of(" \t");
        if (end == std::string::npos || !IsIdentifierChar(head[end])) return;
        size_t start = end;
        while (start > 0 && IsIdentifierChar(head[start - 1])) --start;
        if (std::isdigit(static_cast<unsigned char>(head[start]))) return;
        const std::string name = head.substr(start, end - start + 1);
        for (const std::string& known : *symbols) {
            if (known == name) return;
        }
        symbols->push_back(name);
    }

    int depth_ = 0;
    std::string pending_;
};

struct Conditional {
    bool parent_active = true;
    bool taken = false;  // some branch of this #if was chosen already
    bool active = false;
    bool seen_else = false;
    int line = 0;
};

class CReader : public SourceReader {
public:
    CReader(const std::vector<std::string>& defines, const SearchDirectories& directories) : search_(directories) {
        for (const std::string& define : defines) {
            if (!define.empty() && define[0] == '-') {
                macros_.erase(define.substr(1));
                continue;
            }
            const size_t equals = define.find('=');
            if (equals == std::string::npos) {
                macros_[define] = Macro{"1", false};
            } else {
                macros_[define.substr(0, equals)] = Macro{define.substr(equals + 1), false};
            }
        }
    }

private:
    void ReadText(const std::string& file, const std::string& text, int depth) override {
        std::vector<Conditional> stack;
        bool in_comment = false;
        Definitions definitions;
        const std::vector<std::string> lines = SplitLines(text);
        bool announce = true;  // a #line for -E before the next text line
        for (size_t index = 0; index < lines.size() && !scan_.abandoned; ++index) {
            const int number = static_cast<int>(index) + 1;
            const std::string& raw = lines[index];
            const bool active = stack.empty() || stack.back().active;
            const std::string code = ads::platform::TrimSpaceOrTab(StripComments(raw, &in_comment));
            if (active) {
                Marker marker;
                if (FindMarker(raw, &marker) && TakeMarker(marker, file, number, 'C', &scan_)) return;
            }
            if (!code.empty() && code[0] == '#') {
                size_t at = code.find_first_not_of(" \t", 1);
                if (at == std::string::npos) at = code.size();
                size_t end = at;
                while (end < code.size() && IsIdentifierChar(code[end])) ++end;
                const std::string name = code.substr(at, end - at);
                const std::string rest = ads::platform::TrimSpaceOrTab(code.substr(end));
                if (!Conditionals(file, number, name, rest, active, &stack) && active) {
                    Directive(file, number, name, rest, depth);
                    announce = true;
                }
                continue;
            }
            if (!active || code.empty()) continue;
            if (depth == 0) ++scan_.code_lines;
            definitions.Feed(code, &scan_.symbols);
            if (announce) {
                scan_.preprocessed += "#line " + std::to_string(number) + " \"" + file + "\"\n";
                announce = false;
            }
            scan_.preprocessed += code + "\n";
        }
        if (scan_.abandoned) return;
        for (const Conditional& open : stack) {
            Message(file, open.line, Severity::kSerious, "C2291E: #if not terminated by #endif");
        }
    }

    bool Evaluate(const std::string& file, int line, const std::string& expression) {
        long long value = 0;
        std::string why;
        if (!EvaluateCondition(expression, macros_, &value, &why)) {
            Message(file, line, Severity::kSerious, "C2292E: bad expression in #if: " + why);
            return false;
        }
        return value != 0;
    }

    // The conditional directives, seen also in skipped text to keep the
    // nesting; false for any other directive.
    bool Conditionals(const std::string& file, int line, const std::string& name, const std::string& rest,
                      bool active, std::vector<Conditional>* stack) {
        if (name == "if" || name == "ifdef" || name == "ifndef") {
            Conditional frame;
            frame.parent_active = active;
            frame.line = line;
            if (active) {
                if (name == "if") {
                    frame.active = Evaluate(file, line, rest);
                } else {
                    const std::string macro = rest.substr(0, rest.find_first_of(" \t"));
                    frame.active = (macros_.count(macro) > 0) == (name == "ifdef");
                }
            }
            frame.taken = frame.active;
            stack->push_back(frame);
            return true;
        }
        if (name != "elif" && name != "else" && name != "endif") return false;
        if (stack->empty()) {
            if (active) Message(file, line, Severity::kSerious, "C2290E: #" + name + " without #if");
            return true;
        }
        Conditional& frame = stack->back();
        if (name == "endif") {
            stack->pop_back();
            return true;
        }
        if (frame.seen_else) {
            if (frame.parent_active) Message(file, line, Severity::kSerious, "C2290E: #" + name + " after #else");
            frame.active = false;
            return true;
        }
        if (name == "else") {
            frame.seen_else = true;
            frame.active = frame.parent_active && !frame.taken;
        } else {
            frame.active = frame.parent_active && !frame.taken && Evaluate(file, line, rest);
        }
        frame.taken = frame.taken || frame.active;
        return true;
    }

    void Directive(const std::string& file, int line, const std::string& name, const std::string& rest, int depth) {
        if (name == "include") {
            Include(file, line, rest, depth);
        } else if (name == "define") {
            size_t end = 0;
            while (end < rest.size() && IsIdentifierChar(rest[end])) ++end;
            if (end == 0) {
                Message(file, line, Severity::kSerious, "C2293E: #define needs a macro name");
                return;
            }
            const bool function_like = end < rest.size() && rest[end] == '(';
            macros_[rest.substr(0, end)] = Macro{ads::platform::TrimSpaceOrTab(rest.substr(end)), function_like};
        } else if (name == "undef") {
            macros_.erase(rest.substr(0, rest.find_first_of(" \t")));
        } else if (name == "error") {
            Message(file, line, Severity::kError, "C2448E: #error " + rest);
        } else if (name != "pragma" && name != "line" && !name.empty()) {
            Message(file, line, Severity::kSerious, "C2294E: unknown directive #" + name);
        }
    }

    void Include(const std::string& file, int line, std::string operand, int depth) {
        // #include MACRO: the macro's value names the file.
        const auto macro = macros_.find(operand);
        if (macro != macros_.end() && !macro->second.function_like) operand = macro->second.value;
        const char open = operand.empty() ? '\0' : operand[0];
        const char close = open == '"' ? '"' : '>';
        const size_t end = operand.find(close, 1);
        if ((open != '"' && open != '<') || end == std::string::npos || end == 1) {
            Message(file, line, Severity::kSerious, "C2293E: #include expects \"FILENAME\" or <FILENAME>");
            return;
        }
        const std::string name = operand.substr(1, end - 1);
        const std::string path = search_.Find(name, file, open == '"');
        if (path.empty()) {
            // The simulated installation has no library headers: <...> that
            // is nowhere is let pass.
            if (open == '"') {
                Message(file, line, Severity::kSerious, "C2285E: cannot open #include file \"" + name + "\"");
            }
            return;
        }
        if (depth + 1 >= kIncludeDepthLimit) {
            Message(file, line, Severity::kFatal, "C3048U: #include nested too deeply");
            return;
        }
        std::string text;
        ReadFile(path, &text);
        AddDependency(path, text, &scan_);
        ReadText(path, text, depth + 1);
    }

    IncludeSearch search_;
    MacroTable macros_;
};

}  // namespace

SourceScan ScanCSource(const std::string& source, const std::vector<std::string>& defines,
                       const SearchDirectories& directories) {
    return CReader(defines, directories).Read(source);
}

}  // namespace fakeads
