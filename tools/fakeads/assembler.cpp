// armasm: armasm [options] source [object]
#include <cctype>
#include <cstdio>

#include "command_line.h"
#include "diagnostics.h"
#include "file_formats.h"
#include "paths.h"
#include "source_scan.h"
#include "targets.h"
#include "tools.h"

namespace fakeads {
namespace {

constexpr char kDefaultWidth[] = "79";
constexpr char kDefaultLength[] = "66";

bool EndsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && Lower(text.substr(text.size() - tail.size())) == tail;
}

// "-list file" takes the following word unless it is a switch or the
// source or object itself ("armasm -list start.s start.o").
bool TakesListFile(const std::string& next) {
    if (next.empty() || next[0] == '-') return false;
    for (const char* extension : {".s", ".asm", ".o", ".obj"}) {
        if (EndsWith(next, extension)) return false;
    }
    return true;
}

bool IsRegisterNames(const std::string& value, std::string* why) {
    const std::string word = Lower(value);
    if (word == "none" || word == "callstd" || word == "all") return true;
    *why = "expected none, callstd or all";
    return false;
}

// -PD "NAME SETA 1", "NAME SETL {TRUE}", "NAME SETS \"text\"".
bool IsPredefine(const std::string& value, std::string* why) {
    const std::vector<std::string> words = SplitWords(value);
    const size_t name_end = value.find_first_of(" \t");
    const std::string name = value.substr(0, name_end);
    bool name_ok = !name.empty() && !std::isdigit(static_cast<unsigned char>(name[0]));
    for (char c : name) name_ok = name_ok && (std::isalnum(static_cast<unsigned char>(c)) || c == '_');
    if (!name_ok || words.size() < 3) {
        *why = "a predefine is NAME SETA value, NAME SETL value or NAME SETS value";
        return false;
    }
    const std::string directive = Lower(words[1]);
    if (directive != "seta" && directive != "setl" && directive != "sets") {
        *why = "unknown directive " + words[1];
        return false;
    }
    if (directive == "setl") {
        const std::string logical = Lower(words[2]);
        if (logical != "{true}" && logical != "{false}") {
            *why = "a logical value is {TRUE} or {FALSE}";
            return false;
        }
    }
    return true;
}

// Capitals mark the shortest abbreviation each switch accepts, any case.
const SwitchTable& AssemblerSwitches() {
    static const SwitchTable table{
        {
            {"16"},
            {"32"},
            {"APCS", Value::kNext, IsAssemblerApcs},
            {"BIgend"},
            {"LIttleend"},
            {"CPU", Value::kNext, IsProcessorName},
            {"FPU", Value::kNext, IsFpuName},
            {"G"},
            {"I", Value::kAttachedOrNext},
            {"J", Value::kAttachedOrNext},
            {"KEEP"},
            {"LIST", Value::kOptionalNext, nullptr, TakesListFile},
            {"LISTON"},
            {"NOTerse"},
            {"Xref"},
            {"WIdth", Value::kNext, IsNonNegativeInteger},
            {"Length", Value::kNext, IsNonNegativeInteger},
            {"NOWARN"},
            {"NOESC"},
            {"CHECKREGLIST"},
            {"SPLIT_LDM"},
            {"REGNAMES", Value::kNext, IsRegisterNames},
            {"PD", Value::kNext, IsPredefine},
            {"PREDEFINE", Value::kNext, IsPredefine},
            {"O", Value::kNext},
            {"VIA", Value::kNext},
            {"M"},
            {"VSN"},
            {"UNSAFE"},
            {"NOCACHE"},
            {"MAXCACHE", Value::kNext, IsNonNegativeInteger},
            {"ERRORS", Value::kNext},
        },
        Spelling::kAbbreviated,
    };
    return table;
}

// A listing of the source: line number, address, text; pages of `length`
// lines (0: one continuous page), lines cut at `width` characters.
std::string Listing(const std::string& source, const CommandLine& line) {
    std::string text;
    ReadFile(source, &text);
    const int width = std::stoi(line.Last("width", kDefaultWidth));
    const int length = std::stoi(line.Last("length", kDefaultLength));
    std::string listing;
    int page = 0, on_page = 0;
    auto header = [&] {
        if (page > 0) listing += "\f";
        listing += "ARM Macro Assembler    Page " + std::to_string(++page) + "\n\n";
        on_page = 2;
    };
    header();
    uint32_t address = 0;
    std::vector<std::pair<std::string, int>> labels;
    const std::vector<std::string> lines = SplitLines(text);
    for (size_t i = 0; i < lines.size(); ++i) {
        if (length > 0 && on_page >= length) header();
        char prefix[32];
        std::snprintf(prefix, sizeof prefix, "%5u %08x ", static_cast<unsigned>(i + 1), static_cast<unsigned>(address));
        std::string entry = prefix + lines[i];
        if (width > 0 && entry.size() > static_cast<size_t>(width)) entry.resize(static_cast<size_t>(width));
        listing += entry + "\n";
        ++on_page;
        const std::string code = lines[i].substr(0, lines[i].find(';'));
        size_t pos = 0;
        if (!code.empty() && !ads::platform::IsWhitespace(code[0])) {
            pos = code.find_first_of(" \t");
            labels.emplace_back(code.substr(0, pos), static_cast<int>(i + 1));
        }
        if (pos != std::string::npos && code.find_first_not_of(" \t", pos) != std::string::npos) address += 4;
    }
    if (line.Has("xref")) {
        listing += "\nCross reference\n";
        for (const auto& label : labels) listing += label.first + "  defined at line " + std::to_string(label.second) + "\n";
    }
    return listing;
}

}  // namespace

int RunAssembler(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out) {
    Report report(out);
    CommandLine line;
    std::string error;
    if (!ReadCommandLine(AssemblerSwitches(), words, &line, &error)) {
        report.General(Severity::kFatal, "A1900U: " + error);
        return kExitFailure;
    }
    if (line.Has("vsn")) *out += std::string(tool.banner) + "\n";
    if (line.inputs.empty()) {
        if (line.Has("vsn")) return kExitSuccess;
        report.General(Severity::kFatal, "A1901U: No source file given.");
        return kExitFailure;
    }
    if (line.inputs.size() > 2 || (line.inputs.size() == 2 && line.Has("o"))) {
        report.General(Severity::kFatal, "A1902U: Too many file names on the command line.");
        return kExitFailure;
    }
    const std::string source = line.inputs[0];
    const std::string object = line.inputs.size() == 2 ? line.inputs[1] : line.Last("o", StemOf(source) + ".o");
    if (!FileExists(source)) {
        report.General(Severity::kFatal, "A1903U: Could not open source file \"" + source + "\".");
        return kExitFailure;
    }

    SearchDirectories directories;
    directories.user = line.All("i");
    directories.system = line.All("j");
    const SourceScan scan = ScanAssemblerSource(source, directories);
    if (line.Has("m")) {
        std::vector<std::string> paths;
        for (const Dependency& dependency : scan.dependencies) paths.push_back(dependency.path);
        *out += DependencyRule(object, paths);
        return kExitSuccess;
    }

    for (const SourceMessage& message : scan.messages) {
        if (message.raw) {
            report.Line(message.text);
        } else if (message.severity != Severity::kWarning || !line.Has("nowarn")) {
            report.AtLine(message.file, message.line, message.severity, message.text);
        }
    }
    if (scan.abandoned) {
        RemoveFile(object);
        return kExitFailure;
    }
    *out += report.SummaryLine(source);
    if (report.Failed()) {
        RemoveFile(object);
        return kExitFailure;
    }

    if (line.Has("list") || line.Has("liston")) {
        const std::string listing_file = line.Last("list").empty() ? StemOf(source) + ".lst" : line.Last("list");
        if (!WriteFile(listing_file, Listing(source, line))) {
            report.General(Severity::kFatal, "A1905U: Could not write listing file \"" + listing_file + "\".");
            return kExitFailure;
        }
    }

    ObjectFile file;
    file.tool = tool.name;
    file.source = source;
    bool thumb = false;
    std::string order = ByteOrderWord(ByteOrder::kLittle);
    for (const Option& option : line.options) {
        if (option.key == "16") thumb = true;
        if (option.key == "32") thumb = false;
        if (option.key == "bigend") order = ByteOrderWord(ByteOrder::kBig);
        if (option.key == "littleend") order = ByteOrderWord(ByteOrder::kLittle);
    }
    file.state = thumb ? "thumb" : "arm";
    file.byte_order = order;
    file.attributes.push_back("cpu " + line.Last("cpu", "ARM7TDMI"));
    file.attributes.push_back("fpu " + line.Last("fpu", "SoftVFP"));
    if (line.Has("apcs")) file.attributes.push_back("apcs " + line.Last("apcs"));
    file.attributes.push_back(std::string("debug ") + (line.Has("g") ? "on" : "off"));
    if (line.Has("keep")) file.attributes.push_back("keep-symbols");
    for (const Option& option : line.options) {
        if (option.key == "pd" || option.key == "predefine") file.defines.push_back(option.value);
    }
    file.dependencies = scan.dependencies;
    file.symbols = scan.symbols;
    file.link_messages = scan.link_messages;
    file.code_size = 4 * (scan.code_lines == 0 ? 1 : scan.code_lines);
    if (!WriteFile(object, WriteObject(file))) {
        report.General(Severity::kFatal, "A1904U: Could not write object file \"" + object + "\".");
        return kExitFailure;
    }
    return kExitSuccess;
}

}  // namespace fakeads
