// Reading an assembler source: a line is [label] [opcode [operands]] [; comment].
// GET and INCLUDE read another file in place, EXPORT and GLOBAL name the
// global definitions, END ends the file. Conditional assembly is not
// simulated: every line up to END counts.

#include "command_line.h"
#include "paths.h"
#include "source_scan.h"

namespace fakeads {
namespace {

constexpr int kIncludeDepthLimit = 32;

// The line without its ";" comment (a ";" inside "..." is text).
std::string StripComment(const std::string& line) {
    bool quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') quoted = !quoted;
        if (line[i] == ';' && !quoted) return line.substr(0, i);
    }
    return line;
}

std::string NextField(const std::string& text, size_t* pos) {
    while (*pos < text.size() && ads::platform::IsWhitespace(text[*pos])) ++*pos;
    const size_t start = *pos;
    while (*pos < text.size() && !ads::platform::IsWhitespace(text[*pos])) ++*pos;
    return text.substr(start, *pos - start);
}

class AssemblerReader : public SourceReader {
public:
    explicit AssemblerReader(const SearchDirectories& directories) : search_(directories) {}

private:
    void ReadText(const std::string& file, const std::string& text, int depth) override {
        const std::vector<std::string> lines = SplitLines(text);
        for (size_t index = 0; index < lines.size() && !scan_.abandoned; ++index) {
            const int number = static_cast<int>(index) + 1;
            const std::string& raw = lines[index];
            Marker marker;
            if (FindMarker(raw, &marker) && TakeMarker(marker, file, number, 'A', &scan_)) return;
            const std::string code = StripComment(raw);
            size_t pos = 0;
            // A field that starts in the first column is a label.
            if (!code.empty() && !ads::platform::IsWhitespace(code[0])) NextField(code, &pos);
            const std::string opcode = Lower(NextField(code, &pos));
            if (opcode.empty()) continue;
            const std::string operands = ads::platform::TrimSpaceOrTab(code.substr(pos));
            if (depth == 0) ++scan_.code_lines;
            if (opcode == "end") return;
            if (opcode == "export" || opcode == "global") {
                const std::string name = operands.substr(0, operands.find_first_of(" \t,["));
                if (!name.empty()) scan_.symbols.push_back(name);
            } else if (opcode == "get" || opcode == "include") {
                Include(file, number, operands, depth);
            }
        }
    }

    void Include(const std::string& file, int line, std::string name, int depth) {
        if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
        if (name.empty()) {
            Message(file, line, Severity::kError, "A1022E: GET needs a file name");
            return;
        }
        const std::string path = search_.Find(name, file, true);
        if (path.empty()) {
            Message(file, line, Severity::kError, "A1023E: File \"" + name + "\" could not be opened");
            return;
        }
        if (depth + 1 >= kIncludeDepthLimit) {
            Message(file, line, Severity::kFatal, "A1024U: GET nested too deeply");
            return;
        }
        std::string text;
        ReadFile(path, &text);
        AddDependency(path, text, &scan_);
        ReadText(path, text, depth + 1);
    }

    IncludeSearch search_;
};

}  // namespace

SourceScan ScanAssemblerSource(const std::string& source, const SearchDirectories& directories) {
    return AssemblerReader(directories).Read(source);
}

}  // namespace fakeads
