#include "build/build_engine.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

#include "build/messages.h"
#include "build/node_text.h"
#include "build/tool_choice.h"
#include "config/defaults.h"
#include "config/project_keys.h"
#include "config/search_paths.h"
#include "options/option_error.h"
#include "platform/text.h"

namespace ads::build {

namespace {

int ExecutableOf(int tool) {
    switch (tool) {
        case kToolArmasm: return kExeArmasm;
        case kToolArmcc: return kExeArmcc;
        case kToolArmcpp: return kExeArmcpp;
        case kToolTcc: return kExeTcc;
        case kToolTcpp: return kExeTcpp;
        default: return -1;
    }
}
}  // namespace

std::string ReplaceAll(std::string text, const std::string& macro, const std::string& value) {
    if (macro.empty()) return text;
    size_t pos = 0;
    while ((pos = text.find(macro, pos)) != std::string::npos) {
        text.replace(pos, macro.size(), value);
        pos += value.size();
    }
    return text;
}

std::string Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string out(n > 0 ? static_cast<size_t>(n) : 0, '\0');
    if (n > 0) std::vsnprintf(&out[0], out.size() + 1, format, args);
    va_end(args);
    return out;
}

config::PathMacros BuildEngine::Macros(const BuildContext& c) const {
    return config::MakePathMacros(c.project_dir, c.tools.arm_home, *platform_->files);
}

const std::set<std::string>* BuildEngine::Dependencies(const std::string& source) const {
    auto it = dependencies_.find(source);
    return it == dependencies_.end() ? nullptr : &it->second;
}

bool BuildEngine::UpdateNode(const BuildContext& context, ConfigNode* node) {
    if (node == nullptr || node->Name() != config::kFileNode || context.project_root == nullptr) return false;
    int type = FileTypeOf(node);
    if (type < config::kKindC || type > config::kKindCpp) return false;
    ConfigNode* configurations = context.project_root->FindChild(config::kConfigurationsNode);
    if (configurations == nullptr) return false;
    // Only targets the file knows nothing about yet get their entries: a
    // tool chosen earlier stays until it is assigned again.
    ConfigNode* settings = FindFileSettings(node);
    bool missing = settings == nullptr;
    for (ConfigNode* c = configurations->FirstChild(); c != nullptr && !missing; c = c->NextSibling()) {
        const char* name = c->GetAttribute(config::kNameKey);
        if (name != nullptr && settings->GetAttribute(name) == nullptr) missing = true;
    }
    if (!missing) return false;
    std::vector<std::pair<std::string, std::string>> kept;
    if (settings != nullptr) {
        for (auto* a = settings->FirstAttribute(); a; a = settings->NextAttribute(a)) kept.emplace_back(a->Name(), a->Value());
    }
    AssignToolsOnAdd(*host_, node, configurations);
    // Entries the file had for known targets stay as they were.
    if (!kept.empty()) {
        if (ConfigNode* now = FindFileSettings(node)) {
            config::EditNode(*host_, now, [&](ConfigNode* edit) {
                for (auto& kv : kept) edit->SetAttribute(kv.first, kv.second);
            });
        }
    }
    return false;
}

std::string BuildEngine::CommandTemplate(const BuildContext& c, const char* key, const char* fallback) {
    const char* text = c.configuration->GetAttribute(key);
    if (text != nullptr) return text;
    // A missing template is created with its default on first use.
    config::EditNode(*host_, c.configuration, [&](ConfigNode* edit) { edit->SetAttribute(key, fallback); });
    return fallback;
}

std::string BuildEngine::IncludeSwitches(const BuildContext& c, bool only_when_set) {
    const char* value = c.configuration ? c.configuration->GetAttribute(config::kSearchPathKey) : nullptr;
    if (value == nullptr && only_when_set) return std::string();
    // Expanding "*" walks folders: done once per build and search path, not
    // once per file (BuildTarget and CompileFile forget it).
    std::string key = c.project_dir + '\n' + c.tools.arm_home + '\n' + (value ? value : "");
    if (include_cache_valid_ && key == include_cache_key_) return include_cache_;
    std::string switches = ExpandIncludeSwitches(c, value);
    include_cache_key_ = key;
    include_cache_ = switches;
    include_cache_valid_ = true;
    return switches;
}

std::string BuildEngine::ExpandIncludeSwitches(const BuildContext& c, const char* value) {
    config::SearchPathSwitches parsed = config::ParseSearchPath(value ? value : "");
    config::PathMacros macros = Macros(c);
    // Each entry is expanded when the tools run: its macro, its "*" for all
    // sub-folders, and a relative path taken from the project folder.
    std::string out;
    auto expand = [&](const std::string& text, const char* flag) {
        size_t pos = 0;
        for (;;) {
            size_t q1 = text.find('"', pos);
            if (q1 == std::string::npos) break;
            size_t q2 = text.find('"', q1 + 1);
            if (q2 == std::string::npos) break;
            std::string dirs = config::ExpandSearchPathEntry(text.substr(q1 + 1, q2 - q1 - 1), macros, *platform_->files);
            size_t start = 0;
            for (size_t semi = dirs.find(';'); semi != std::string::npos; semi = dirs.find(';', start)) {
                std::string dir = dirs.substr(start, semi - start);
                if (!dir.empty()) {
                    // A trailing backslash would escape the closing quote.
                    while (dir.size() > 1 && dir.back() == '\\') dir.pop_back();
                    out += std::string(" ") + flag + "\"" + dir + "\"";
                }
                start = semi + 1;
            }
            pos = q2 + 1;
        }
    };
    expand(parsed.include, "-I");
    expand(parsed.system_include, "-J");
    return out;
}

void BuildEngine::ScanDependencies(const BuildContext& c, const std::string& compiler, const std::string& source) {
    platform_->files->ChangeDir(c.project_dir);
    config::ToolRun run = host_->RunTool(compiler + " -M \"" + source + "\"", 8000);
    if (!run.ok || run.exit_code != 0) return;
    std::set<std::string>& set = dependencies_[source];
    set.clear();
    const std::string& out = run.output;
    size_t colon = out.size() > 1 ? out.find(':', 1) : std::string::npos;
    while (colon != std::string::npos) {
        size_t newline = out.find('\n', colon);
        if (newline == std::string::npos) break;
        std::string dep = platform::Trim(out.substr(colon + 1, newline - colon - 1));
        dep = ReplaceAll(dep, "\\ ", " ");
        for (char& ch : dep) {
            if (ch == '/') ch = '\\';
        }
        if (!dep.empty()) set.insert(platform_->files->FullPath(dep));
        colon = out.find(':', newline);
    }
}

bool BuildEngine::FileCommand(const BuildContext& c, ConfigNode* file, std::string* text) {
    uint32_t error = platform_->files->MakeDir(c.project_dir + c.target);
    if (error != 0 && error != platform::kErrorAlreadyExists) Write(kCreateFolderFailed);

    int type = FileTypeOf(file);
    if (type < config::kKindC || type > config::kKindCpp) return false;
    const char* relative = file->GetAttribute(config::kRelativePathKey);
    if (relative == nullptr) return false;
    if (FindFileSettings(file) == nullptr) {
        host_->FindSettingNode(file, SettingsNodeName(type), config::kSettingsFlagKey);
    }
    if (c.configuration == nullptr) return false;
    bool assembler = type == config::kKindAsm;
    std::string command = CommandTemplate(c, assembler ? config::kAsmParamKey : config::kCParamKey,
                                          assembler ? config::kDefaultAsmTemplate : config::kDefaultCTemplate);
    command = ReplaceAll(command, "$(SOURCE)", relative);
    const std::string object = Text(file, config::kOutputKey);
    command = ReplaceAll(command, "$(OBJ)", Format(".\\%s\\%s", c.target.c_str(), object.c_str()));
    Write(Format(kCompilingForMake, relative));

    int tool = ChooseTool(file, c.target, c.configuration);
    int exe = ExecutableOf(tool);
    std::string executable = exe >= 0 ? c.tools.paths[static_cast<size_t>(exe)] : std::string();
    std::string option_string;
    if (exe >= 0) {
        config::PathMacros macros = Macros(c);
        option_string = FileOptionString(c.configuration, file, c.target, tool,
                                         [&](const std::string& name) { return config::ConvertViaFilePath(name, macros); });
        // The scan sees the same include folders as the compile, so that
        // headers found through them enter the dependency set too.
        if (tool != kToolArmasm) ScanDependencies(c, executable + option_string + IncludeSwitches(c, false), relative);
    }
    command = ReplaceAll(command, "$(ADS_PARAM)", option_string);
    // Debug information is always asked for, whatever the debug page says.
    *text = executable + (assembler ? " -g " : " -g+ ") + IncludeSwitches(c, false) + command;
    parser_->ClearLinkStep();
    return true;
}

bool BuildEngine::CommandFor(const BuildContext& context, ConfigNode* node, std::string* text) {
    text->clear();
    if (node == nullptr) return false;
    try {
        if (node->Name() == config::kFileNode) return FileCommand(context, node, text);
        if (node == context.project_root || node->Parent() == nullptr) return RootCommand(context, text);
    } catch (const options::OptionError& e) {
        // No command line for a file whose options cannot be resolved.
        Write(std::string(e.what()) + "\r\n");
        text->clear();
    }
    return false;
}

}  // namespace ads::build
