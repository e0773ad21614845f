// After a clean link: the image converted with fromelf, or the user's own
// command ("Batch File Runner").
#include <cstdio>
#include <cstring>
#include <vector>

#include "build/build_engine.h"
#include "build/node_text.h"
#include "config/path_macros.h"
#include "config/project_keys.h"
#include "options/target_pages.h"
#include "platform/platform.h"
#include "platform/text.h"

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

bool BuildEngine::PostLink(const BuildContext& c, bool linked) {
    std::string kind = Text(c.configuration, config::kPostLinkKey);
    if (EqualsIgnoringCase(kind, config::kPostLinkFromElf)) return RunFromElf(c, linked);
    // What the user's command writes is unknown: it runs after a link of
    // this build only.
    if (EqualsIgnoringCase(kind, config::kPostLinkBatchFile)) return !linked || RunBatchFile(c);
    return true;
}

std::string BuildEngine::FromElfCommand(const BuildContext& c, std::string* output) const {
    std::string switches = Text(c.configuration, config::kFromElfParamsKey);
    std::string command = c.tools.paths[kExeFromelf] + " " + switches;
    output->clear();
    size_t option = switches.find("-output");
    if (option == std::string::npos) {
        size_t dot = application_file_.rfind('.');
        std::string stem = dot == std::string::npos ? application_file_ : application_file_.substr(0, dot);
        *output = stem + "." + FromElfExtension(switches);
        command += " -output \"" + *output + "\"";
    } else {
        // An explicit output name: without a folder it goes to the target's
        // output folder; one with a folder is taken from the project's, one
        // with ":" as it is.
        size_t start = switches.find_first_not_of(' ', option + 7);
        if (start != std::string::npos) {
            bool quoted = switches[start] == '"';
            size_t from = quoted ? start + 1 : start;
            size_t end = switches.find(quoted ? '"' : ' ', from);
            if (end == std::string::npos) end = switches.size();
            std::string name = switches.substr(from, end - from);
            if (name.find_first_of("\\/") == std::string::npos && !platform::IsAbsolutePath(name)) {
                name = platform::JoinPath(Location(c).folder, name);
            }
            *output = platform::IsAbsolutePath(name) ? name : c.project_dir + name;
            std::string rebuilt = switches.substr(0, start) + "\"" + name + "\"" +
                                  switches.substr(quoted && end < switches.size() ? end + 1 : end);
            command = c.tools.paths[kExeFromelf] + " " + rebuilt;
        }
    }
    // fromelf reads the image named last on its command line.
    return command + " \"" + application_file_ + "\"";
}

bool BuildEngine::OlderThanImage(const std::string& output) const {
    int64_t image = 0;
    int64_t converted = 0;
    // Without an image there is nothing to convert.
    if (!platform_->files->ModificationTime(application_file_, &image)) return false;
    return !platform_->files->ModificationTime(output, &converted) || converted < image;
}

bool BuildEngine::RunFromElf(const BuildContext& c, bool linked) {
    if (IsLibraryTarget(c.configuration)) {
        Write(Format(kFromElfSkipped, platform::FileName(application_file_).c_str()));
        return true;
    }
    std::string output;
    const std::string command = FromElfCommand(c, &output);
    // A build that linked nothing converts only an image its conversion is
    // older than.
    if (!linked && !OlderThanImage(output)) return true;
    Write(kFromElfStarted);
    platform_->files->ChangeDir(c.project_dir);
    config::ToolRun run = host_->RunTool(command, 8000);
    const std::string extension = FromElfExtension(Text(c.configuration, config::kFromElfParamsKey));
    if (run.ok && run.exit_code == 0) {
        Write(Format(kTranslationDone, extension.c_str()));
        return true;
    }
    Write(Format(kTranslationFailed, run.output.c_str(), extension.c_str()));
    return false;
}

bool BuildEngine::RunBatchFile(const BuildContext& c) {
    // Read as the "Target Settings" page wrote it: nothing runs unless both
    // fields are there and the flag is 1.
    const options::BatchFile batch = options::ReadBatchFile(Text(c.configuration, config::kBatchFileParamsKey));
    if (batch.flag != 1) return true;
    const std::string& command = batch.command;
    Write(Format(kUserCommand, command.c_str()));
    platform_->files->ChangeDir(c.project_dir);
    config::ToolRun run = host_->RunTool(command, 8000);
    if (run.exit_code == 0 && run.ok) {
        Write(run.output);
        return true;
    }
    Write(Format(kUserCommandFailed, run.exit_code));
    return false;
}

}  // namespace ads::build
