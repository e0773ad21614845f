// armcc, tcc, armcpp and tcpp: one compiler with four names.
#include <cctype>

#include "command_line.h"
#include "diagnostics.h"
#include "file_formats.h"
#include "pace.h"
#include "paths.h"
#include "source_scan.h"
#include "targets.h"
#include "tools.h"

namespace fakeads {
namespace {

bool IsOptimisation(const std::string& value, std::string* why) {
    for (const char* known : {"0", "1", "2", "space", "time", "no_inline", "inline"}) {
        if (value == known) return true;
    }
    *why = "expected 0, 1, 2, space, time, inline or no_inline";
    return false;
}

// -W letters: lower-case letters, with at most one "+" turning the
// following ones on instead of off ("-Wax+gp", "-W+p").
bool IsWarningLetters(const std::string& value, std::string* why) {
    int plus = 0;
    for (char c : value) {
        if (c == '+') {
            ++plus;
        } else if (c < 'a' || c > 'z') {
            *why = "warning letters are lower-case letters and one '+'";
            return false;
        }
    }
    if (plus > 1) {
        *why = "only one '+' in a warning letter list";
        return false;
    }
    return true;
}

// -E letters: the errors to downgrade ("-Ecz"); -E alone preprocesses only.
bool IsErrorLetters(const std::string& value, std::string* why) {
    for (char c : value) {
        if (c < 'a' || c > 'z') {
            *why = "error letters are lower-case letters";
            return false;
        }
    }
    return true;
}

bool IsIdentifier(const std::string& name) {
    if (name.empty() || std::isdigit(static_cast<unsigned char>(name[0]))) return false;
    for (char c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_') return false;
    }
    return true;
}

// -DNAME or -DNAME=VALUE.
bool IsDefinition(const std::string& value, std::string* why) {
    if (IsIdentifier(value.substr(0, value.find('=')))) return true;
    *why = "a definition is NAME or NAME=VALUE";
    return false;
}

bool IsMacroName(const std::string& value, std::string* why) {
    if (IsIdentifier(value)) return true;
    *why = "not a macro name";
    return false;
}

const SwitchTable& CompilerSwitches() {
    static const SwitchTable table{
        {
            {"c"},
            {"o", Value::kNext},
            {"g"},
            {"g+"},
            {"g-"},
            {"gtp"},
            {"O", Value::kAttached, IsOptimisation},
            {"cpu", Value::kNext, IsProcessorName},
            {"fpu", Value::kNext, IsFpuName},
            {"apcs", Value::kNext, IsApcsQualifiers},
            {"bi"},
            {"bigend"},
            {"li"},
            {"littleend"},
            {"ansi"},
            {"strict"},
            {"cpp"},
            {"embeddedcplusplus"},
            {"W", Value::kAttachedOptional, IsWarningLetters},
            {"E", Value::kAttachedOptional, IsErrorLetters},
            {"fx"},
            {"fy"},
            {"zc"},
            {"zo"},
            {"split_ldm"},
            {"auto_float_constants"},
            {"D", Value::kAttachedOrNext, IsDefinition},
            {"U", Value::kAttachedOrNext, IsMacroName},
            {"I", Value::kAttachedOrNext},
            {"J", Value::kAttachedOrNext},
            {"via", Value::kNext},
            {"M"},
            {"vsn"},
        },
        Spelling::kExact,
    };
    return table;
}

// The object's record of how it was compiled.
std::vector<std::string> Attributes(const CommandLine& line) {
    std::vector<std::string> attributes;
    attributes.push_back("cpu " + line.Last("cpu", "ARM7TDMI"));
    attributes.push_back("fpu " + line.Last("fpu", "SoftVFP"));
    if (line.Has("apcs")) attributes.push_back("apcs " + line.Last("apcs"));
    bool debug = false;
    std::string level = "2", goal = "space";
    for (const Option& option : line.options) {
        if (option.key == "g" || option.key == "g+") debug = true;
        if (option.key == "g-") debug = false;
        if (option.key == "O") {
            if (option.value == "space" || option.value == "time") {
                goal = option.value;
            } else if (std::isdigit(static_cast<unsigned char>(option.value[0]))) {
                level = option.value;
            }
        }
    }
    attributes.push_back(std::string("debug ") + (debug ? "on" : "off"));
    attributes.push_back("optimise " + level + " " + goal);
    return attributes;
}

ByteOrder Order(const CommandLine& line) {
    ByteOrder order = ByteOrder::kLittle;
    for (const Option& option : line.options) {
        if (option.key == "bi" || option.key == "bigend") order = ByteOrder::kBig;
        if (option.key == "li" || option.key == "littleend") order = ByteOrder::kLittle;
    }
    return order;
}

void Abandon(const std::string& message, Report* report, std::string* out) {
    report->General(Severity::kFatal, message);
    *out += "Compilation abandoned.\n";
}

}  // namespace

std::string DependencyRule(const std::string& object, const std::vector<std::string>& dependencies) {
    auto escape = [](const std::string& path) {
        std::string escaped;
        for (char c : path) {
            if (c == ' ') escaped += '\\';
            escaped += c;
        }
        return escaped;
    };
    std::string rule;
    for (const std::string& dependency : dependencies) rule += escape(object) + ": " + escape(dependency) + "\n";
    return rule;
}

int RunCompiler(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out) {
    Report report(out);
    CommandLine line;
    std::string error;
    if (!ReadCommandLine(CompilerSwitches(), words, &line, &error)) {
        Abandon("C3900U: " + error, &report, out);
        return kExitFailure;
    }
    if (line.Has("vsn")) *out += std::string(tool.banner) + "\n";
    if (line.inputs.empty()) {
        if (line.Has("vsn")) return kExitSuccess;
        Abandon("C3901U: No source file given.", &report, out);
        return kExitFailure;
    }

    const std::string object_name = line.Last("o");
    std::vector<std::string> defines;
    SearchDirectories directories;
    bool preprocess_only = false;
    for (const Option& option : line.options) {
        if (option.key == "E" && option.value.empty()) preprocess_only = true;
        if (option.key == "D") defines.push_back(option.value);
        if (option.key == "U") defines.push_back("-" + option.value);
        if (option.key == "I") directories.user.push_back(option.value);
        if (option.key == "J") directories.system.push_back(option.value);
    }
    const bool dependencies_only = line.Has("M");
    const bool compile_only = line.Has("c") || dependencies_only || preprocess_only;
    const Pace pace = PaceFromEnvironment();
    PacedCommand paced(dependencies_only ? pace.scan_ms : preprocess_only ? 0 : pace.compile_ms);
    if (!object_name.empty() && compile_only && line.inputs.size() > 1) {
        Abandon("C3902U: -o cannot name the output of more than one source.", &report, out);
        return kExitFailure;
    }

    int status = kExitSuccess;
    std::vector<std::string> objects;
    for (const std::string& source : line.inputs) {
        if (!FileExists(source)) {
            Abandon("C3051U: Could not open source file \"" + source + "\".", &report, out);
            return kExitFailure;
        }
        const std::string object = compile_only && !object_name.empty() ? object_name : StemOf(source) + ".o";
        const SourceScan scan = ScanCSource(source, defines, directories);
        if (dependencies_only) {
            std::vector<std::string> paths;
            for (const Dependency& dependency : scan.dependencies) paths.push_back(dependency.path);
            *out += DependencyRule(object, paths);
            continue;
        }
        if (preprocess_only) *out += scan.preprocessed;

        Report file_report(out);
        for (const SourceMessage& message : scan.messages) {
            if (message.raw) {
                file_report.Line(message.text);
            } else {
                file_report.AtLine(message.file, message.line, message.severity, message.text);
            }
        }
        if (scan.abandoned) {
            *out += "Compilation abandoned.\n";
            if (!preprocess_only) RemoveFile(object);
            return kExitFailure;
        }
        *out += file_report.SummaryLine(source);
        if (preprocess_only) {
            if (file_report.Failed()) status = kExitFailure;
            continue;
        }
        if (file_report.Failed()) {
            RemoveFile(object);  // no stale object may look up to date
            status = kExitFailure;
            continue;
        }

        ObjectFile file;
        file.tool = tool.name;
        file.source = source;
        file.state = tool.thumb ? "thumb" : "arm";
        file.byte_order = ByteOrderWord(Order(line));
        file.attributes = Attributes(line);
        for (const std::string& define : defines) file.defines.push_back(define);
        file.dependencies = scan.dependencies;
        file.symbols = scan.symbols;
        file.link_messages = scan.link_messages;
        file.code_size = 4 * (scan.code_lines == 0 ? 1 : scan.code_lines);
        if (!paced.WriteFile(object, WriteObject(file))) {
            Abandon("C3052U: Could not write object file \"" + object + "\".", &report, out);
            return kExitFailure;
        }
        objects.push_back(object);
    }
    if (compile_only || status != kExitSuccess) return status;

    // Without -c the compiler links what it compiled, as the real ones do.
    std::vector<std::string> link = objects;
    link.push_back("-o");
    link.push_back(object_name.empty() ? "__image.axf" : object_name);
    static const ToolInfo linker{"armlink", ToolKind::kLinker, "ARM Linker, ADS1.2 [Build 848]"};
    return RunLinker(linker, link, out);
}

}  // namespace fakeads
