// After a clean link: the image converted with fromelf, or the user's own
// command ("Batch File Runner").
#include <cstdio>
#include <cstring>
#include <vector>

#include "build/build_engine.h"
#include "build/node_text.h"
#include "config/path_macros.h"
#include "config/project_keys.h"

namespace ads::build {

namespace {

// The output formats by the switch that asks for them, in the order they
// are looked for. "-aif" comes first and is part of "-aifbin", so an
// "-aifbin" conversion gets "aif": kept as it is.
const char* const kFormats[][2] = {
    {"-aif", "aif"}, {"-aifbin", "aifbin"}, {"-bin", "bin"}, {"-m32", "m32"}, {"-i32", "i32"},
    {"-ihf", "ihf"}, {"-elf", "elf"}, {"-bhx", "bhx"}, {"-fieldoffsets", "fieldoffsets"}, {"-vhx", "vhx"},
};

}  // namespace

std::string FromElfExtension(const std::string& switches) {
    for (const auto& format : kFormats) {
        if (switches.find(format[0]) != std::string::npos) return format[1];
    }
    return "text";
}

void BuildEngine::PostLink(const BuildContext& c) {
    std::string kind = Text(c.configuration, config::kPostLinkKey);
    if (EqualsIgnoringCase(kind, config::kPostLinkFromElf)) {
        RunFromElf(c);
    } else if (EqualsIgnoringCase(kind, config::kPostLinkBatchFile)) {
        RunBatchFile(c);
    }
}

void BuildEngine::RunFromElf(const BuildContext& c) {
    Write(kFromElfStarted);
    std::string switches = Text(c.configuration, config::kFromElfParamsKey);
    std::string command = c.tools.paths[kExeFromelf] + " " + switches;
    std::string extension = FromElfExtension(switches);
    size_t output = switches.find("-output");
    if (output == std::string::npos) {
        size_t dot = application_file_.rfind('.');
        std::string stem = dot == std::string::npos ? application_file_ : application_file_.substr(0, dot);
        command += " -output \"" + stem + "." + extension + "\"";
    } else {
        // An explicit output name: without a folder it goes to the target's
        // output folder ("{Project}" being the project's folder); one with
        // ":" is taken as it is.
        size_t start = switches.find_first_not_of(' ', output + 7);
        if (start != std::string::npos) {
            bool quoted = switches[start] == '"';
            size_t from = quoted ? start + 1 : start;
            size_t end = switches.find(quoted ? '"' : ' ', from);
            if (end == std::string::npos) end = switches.size();
            std::string name = switches.substr(from, end - from);
            if (name.find('\\') == std::string::npos && name.find(':') == std::string::npos) {
                std::string dir =
                    ReplaceAll(Text(c.configuration, config::kOutputDirKey), config::kProjectMacro, c.project_dir);
                if (!dir.empty() && dir.back() != '\\') dir += '\\';
                name = dir + name;
            }
            std::string rebuilt = switches.substr(0, start) + "\"" + name + "\"" +
                                  switches.substr(quoted && end < switches.size() ? end + 1 : end);
            command = c.tools.paths[kExeFromelf] + " " + rebuilt;
        }
    }
    // fromelf reads the image named last on its command line.
    command += " \"" + application_file_ + "\"";
    platform_->files->ChangeDir(c.project_dir);
    config::ToolRun run = host_->RunTool(command, 8000);
    if (run.ok && run.exit_code == 0) {
        Write(Format(kTranslationDone, extension.c_str()));
    } else {
        Write(Format(kTranslationFailed, run.output.c_str(), extension.c_str()));
    }
}

void BuildEngine::RunBatchFile(const BuildContext& c) {
    std::string value = Text(c.configuration, config::kBatchFileParamsKey);
    int flag = 0;
    std::vector<char> text(value.size() + 2, '\0');
    // "%d,(%s)": the captured text starts with the "(" and the command ends
    // at the first ")", so a command cannot hold one.
    if (std::sscanf(value.c_str(), "%d,%[^)])", &flag, text.data()) != 2 || flag != 1) return;
    std::string command = text.data() + 1;
    Write(Format(kUserCommand, command.c_str()));
    platform_->files->ChangeDir(c.project_dir);
    config::ToolRun run = host_->RunTool(command, 8000);
    if (run.exit_code == 0 && run.ok) {
        Write(run.output);
    } else {
        Write(Format(kUserCommandFailed, run.exit_code));
    }
}

}  // namespace ads::build
