// The single-file compile, the target build and its link or archive
// command.
#include <cstring>

#include "build/build_engine.h"
#include "build/node_text.h"
#include "build/tool_choice.h"
#include "config/defaults.h"
#include "config/path_macros.h"
#include "config/project_keys.h"
#include "options/option_error.h"
#include "platform/folders.h"
#include "platform/text.h"

namespace ads::build {

namespace {
const char kArchiveTemplate[] = "-r \"$(ELF)\" $(OBJS)";

std::string ProjectName(const ConfigNode* root) { return Text(root, config::kNameKey); }
}  // namespace

int BuildEngine::CompileFile(const BuildContext& c, ConfigNode* file) {
    if (!c.tools.found) {
        platform_->ui->ShowMessage(kNoToolsForCompile, kMessageTitle);
        return 0;
    }
    if (file == nullptr) return 0;
    ForgetIncludeSwitches();
    parser_->ResetCounters();
    const char* name = file->Root()->GetAttribute(config::kNameKey);
    Write(Format(kBanner, name ? name : kUnnamedProject, c.target.c_str()));

    GiveDistinctObjects(c);

    if (!host_->IsOutOfDate(c.target, file)) {
        const char* output = file->GetAttribute(config::kOutputKey);
        if (output == nullptr) return 0;
        std::string object = output;
        Write(Format(kCompiling, object.substr(0, object.size() >= 2 ? object.size() - 2 : 0).c_str()));
        Write(kSkipping);
        Write(Format(kUpToDateSummary, output, parser_->errors(), parser_->warnings()));
        return 1;
    }
    if (c.configuration == nullptr) return 0;
    int32_t type = 0;
    const char* type_text = file->GetAttributeInt(config::kFileTypeKey, &type);
    platform_->files->ChangeDir(c.project_dir);

    if (type_text == nullptr || type != config::kKindAsm) {
        // C and C++ files: the host translates them, asking for the command.
        // A translation that failed is an error, whatever its output said.
        const bool translated = host_->TranslateFile(c.target, file);
        if (!translated && parser_->errors() == 0) parser_->CountFailedCommand();
        const char* output = file->GetAttribute(config::kOutputKey);
        if (output == nullptr) return 0;
        Write(Format(kCreateSummary, output, parser_->errors(), parser_->warnings()));
        return translated ? 1 : 0;
    }
    return AssembleFile(c, file);
}

// Assembler files are assembled here, not by the host.
int BuildEngine::AssembleFile(const BuildContext& c, ConfigNode* file) {
    const char* relative = file->GetAttribute(config::kRelativePathKey);
    if (relative == nullptr) return 0;
    std::string path = relative;
    size_t slash = path.rfind('\\');
    std::string display = slash == std::string::npos ? path : path.substr(slash + 1);
    size_t dot = display.rfind('.');
    if (dot != std::string::npos) display.resize(dot);
    if (FindFileSettings(file) == nullptr) host_->FindSettingNode(file, config::kAsmParamKey, config::kSettingsFlagKey);
    std::string command = CommandTemplate(c, config::kAsmParamKey, config::kDefaultAsmTemplate);
    command = ReplaceAll(command, "$(SOURCE)", relative);
    const char* output = file->GetAttribute(config::kOutputKey);
    std::string object = output ? Format(".\\%s\\%s", c.target.c_str(), output) : path;
    command = ReplaceAll(command, "$(OBJ)", object);
    Write(Format(kAssembling, display.c_str()));
    std::string option_string;
    try {
        config::PathMacros macros = Macros(c);
        option_string = FileOptionString(c.configuration, file, c.target, kToolArmasm,
                                         [&](const std::string& n) { return config::ConvertViaFilePath(n, macros); });
    } catch (const options::OptionError& e) {
        Write(std::string(e.what()) + "\r\n");
        return 0;
    }
    command = ReplaceAll(command, "$(ADS_PARAM)", option_string);
    std::string line = c.tools.paths[kExeArmasm] + " -g " + IncludeSwitches(c, true) + command;
    uint32_t error = platform_->files->MakeDir(c.project_dir + c.target);
    if (error != 0 && error != platform::kErrorAlreadyExists) Write(kCreateFolderFailed);
    // The assembler's output is read through a 1024-byte buffer: the rest
    // is lost.
    config::ToolRun run = host_->RunTool(line, 1024);
    parser_->ResetLineState();
    parser_->ClearLinkStep();
    const bool failed = !run.ok || run.exit_code != 0;
    std::string text = run.output;
    if (failed && platform::Trim(text).empty()) {
        text = run.ok ? Format(kToolExitCode, relative, run.exit_code) : Format(kToolNotRun, relative);
    }
    Write(parser_->ParseRun(text.data(), text.size(), failed));
    if (output == nullptr) return 0;
    Write(Format(kCreateSummary, output, parser_->errors(), parser_->warnings()));
    return run.ok ? 1 : 0;
}

std::string BuildEngine::ObjectList(const BuildContext& c) {
    std::string list;
    ForEachObject(c.project_root, [&](ConfigNode*, const std::string&, const std::string& output, bool own) {
        list += own ? " \"" + output + "\"" : " \".\\" + c.target + "\\" + output + "\"";
    });
    return list;
}

OutputLocation BuildEngine::Location(const BuildContext& c) const {
    return LocateOutput(c.configuration, ProjectName(c.project_root), c.target, Macros(c));
}

void BuildEngine::MakeOutputFolder(const OutputLocation& location) {
    platform::MakeFoldersOf(*platform_->files, location.folder);
    uint32_t error = platform_->files->MakeDir(location.folder);
    if (error != 0 && error != platform::kErrorAlreadyExists) Write(kCreateFolderFailed);
}

bool BuildEngine::RootCommand(const BuildContext& c, std::string* text) {
    // A target whose files failed is never linked.
    if (parser_->errors() != 0) {
        Write(kTargetNotCreated);
        return false;
    }
    if (c.configuration == nullptr) return false;
    bool library = IsLibraryTarget(c.configuration);
    std::string command;
    if (library) {
        Write(kArchiving);
        parser_->SetLinkStep();
        command = c.tools.paths[kExeArmar] + " " + kArchiveTemplate;
    } else {
        Write(kLinking);
        parser_->SetLinkStep();
        command = c.tools.paths[kExeArmlink] + " " +
                  CommandTemplate(c, config::kLinkParamKey, config::kDefaultLinkTemplate);
    }
    const OutputLocation location = Location(c);
    application_file_ = location.full_path;
    command = ReplaceAll(command, "$(ELF)", location.command_path);
    command = ReplaceAll(command, "$(OBJS)", ObjectList(c));

    std::string linker = Text(c.configuration, config::kLinkerParamsKey);
    size_t scatter = linker.find("-scatter");
    if (scatter != std::string::npos) {
        // The scatter description's path goes through the path macros.
        size_t start = linker.find_first_not_of(' ', scatter + 8);
        if (start != std::string::npos) {
            size_t end;
            std::string path;
            if (linker[start] == '"') {
                size_t close = linker.find('"', start + 1);
                path = linker.substr(start + 1, close == std::string::npos ? std::string::npos : close - start - 1);
                end = close == std::string::npos ? linker.size() : close + 1;
            } else {
                end = linker.find(' ', start);
                if (end == std::string::npos) end = linker.size();
                path = linker.substr(start, end - start);
            }
            std::string converted = config::ConvertViaFilePath(path, Macros(c));
            linker.replace(start, end - start, "\"" + converted + "\"");
        }
    }
    command = ReplaceAll(command, "$(ADS_LNKPARAM)", linker);
    *text = command;
    link_given_ = true;
    return true;
}

int BuildEngine::BuildTarget(const BuildContext& c, uintptr_t arg) {
    if (arg == 0 && c.configuration != nullptr) {
        int32_t rebuild = 0;
        if (c.configuration->GetAttributeInt(config::kRebuildKey, &rebuild) != nullptr && rebuild != 0) {
            // The pending rebuild request is consumed.
            config::EditNode(*host_, c.configuration,
                             [](ConfigNode* e) { e->SetAttributeInt(config::kRebuildKey, 0); });
        }
    }
    platform_->files->ChangeDir(c.project_dir);
    if (!c.tools.found) {
        platform_->ui->ShowMessage(kNoToolsForBuild, kMessageTitle);
        return 0;
    }
    parser_->ResetCounters();
    ForgetIncludeSwitches();
    std::string project = ProjectName(c.project_root);
    if (project.empty() || c.target.empty() || c.project_dir.empty() || c.configuration == nullptr) {
        Write(kNoProjectOrTarget);
        return 0;
    }
    const OutputLocation location = Location(c);
    MakeOutputFolder(location);
    Write(Format(kBanner, project.c_str(), c.target.c_str()) + Format(kBuildTargetLine, c.target.c_str()));
    GiveDistinctObjects(c);
    // The image the post-link step converts, also when the make finds
    // nothing to link.
    application_file_ = location.full_path;
    link_given_ = false;
    const bool made = host_->MakeTarget(c.target, c.project_root);
    if (made && Text(c.configuration, config::kAppFileKey) != location.command_path) {
        config::EditNode(*host_, c.configuration, [&](ConfigNode* e) {
            e->SetAttribute(config::kAppFileKey, location.command_path.c_str());
        });
    }
    if (!made && parser_->errors() == 0) {
        // The make failed where the parser saw no error: still a failure.
        parser_->CountFailedCommand();
        Write(kTargetNotCreated);
    }
    const char* kind = IsLibraryTarget(c.configuration) ? kLibrarySummary : kImageSummary;
    Write(Format(kind, project.c_str(), parser_->errors(), parser_->warnings()));
    if (parser_->errors() >= 1) return 0;
    return PostLink(c, link_given_) ? 1 : 0;
}

}  // namespace ads::build
