#include "import/project_import.h"

#include "build/tool_choice.h"
#include "config/defaults.h"
#include "config/path_macros.h"
#include "config/target_settings.h"
#include "import/panel_readers.h"
#include "import/panel_translators.h"
#include "import/project_files.h"

namespace ads::import {

namespace {

// The compilers of the mapping string, in its order, with the name each
// mapping gives them.
struct MappedTool {
    const char* compiler;
    const char* tool;
    int kind;  // the FileType of what it translates
};
const MappedTool kMappedTools[] = {
    {"ARM C Compiler", "armcc", config::kKindC},
    {"ARM C++ Compiler", "armcpp", config::kKindCpp},
    {"Thumb C Compiler", "tcc", config::kKindC},
    {"Thumb C++ Compiler", "tcpp", config::kKindCpp},
    {"ARM Assembler", "armasm", config::kKindAsm},
};

// The five tool panels with the key each is written under.
struct ToolKey {
    PanelKind panel;
    const char* key;
    const char* tool;
};
const ToolKey kToolKeys[] = {
    {kPanelAssembler, "ADS_GArmAsmParam", "armasm"}, {kPanelArmC, "ADS_GArmCCParam", "armcc"},
    {kPanelArmCpp, "ADS_GArmCppParam", "armcpp"},    {kPanelThumbC, "ADS_GThmCCParam", "tcc"},
    {kPanelThumbCpp, "ADS_GThmCppParam", "tcpp"},
};

std::string BaseName(const std::string& path) {
    const size_t cut = path.find_last_of("\\/");
    std::string name = cut == std::string::npos ? path : path.substr(cut + 1);
    const size_t dot = name.find('.');
    if (dot != std::string::npos && dot > 0) name.resize(dot);
    return name;
}

std::string ExtensionOf(const std::string& path) {
    const size_t cut = path.find_last_of("\\/");
    const size_t dot = path.rfind('.');
    if (dot == std::string::npos || (cut != std::string::npos && dot < cut)) return std::string();
    return LowerAscii(path.substr(dot));
}

// The post-link steps the build knows, "None" being none.
bool IsAdsPostLinker(const std::string& name) {
    const std::string lower = LowerAscii(name);
    return lower == "arm fromelf" || lower == "batch file runner" || name == "None";
}

ConfigNode* MakeFile(const FileRef& ref, const std::string& group, const ImportModel& model) {
    auto* file = new ConfigNode("File");
    file->SetAttribute("RelativePath", ref.path);
    const int kind = FileKindOf(ref.path, model);
    file->SetAttributeInt("FileType", kind);
    if (kind == config::kKindC || kind == config::kKindAsm || kind == config::kKindCpp) {
        file->SetAttribute("Output", config::ObjectFileName(ref.path));
    }
    if (!group.empty()) file->SetAttribute("Group", group);
    return file;
}

// Every new source file gets its tool and option text for every target, as
// a file the user adds does. Groups are one level deep.
void AssignTools(config::HostApi& host, ConfigNode* first_new, ConfigNode* configurations) {
    auto assign = [&](ConfigNode* node) {
        if (node->Name() != "File") return;
        int32_t kind = 0;
        node->GetAttributeInt("FileType", &kind);
        if (kind == config::kKindC || kind == config::kKindAsm || kind == config::kKindCpp) {
            build::AssignToolsOnAdd(host, node, configurations);
        }
    };
    for (ConfigNode* node = first_new; node != nullptr; node = node->NextSibling()) {
        assign(node);
        if (node->Name() != "Filter") continue;
        for (ConfigNode* child = node->FirstChild(); child != nullptr; child = child->NextSibling()) assign(child);
    }
}

void AddFileTree(config::HostApi& host, ConfigNode* files, ConfigNode* configurations, const ImportModel& model) {
    if (model.groups.empty()) return;
    size_t before = 0;
    for (ConfigNode* c = files->FirstChild(); c != nullptr; c = c->NextSibling()) ++before;
    config::EditNode(host, files, [&](ConfigNode* edit) {
        for (const GroupEntry& entry : model.groups) {
            if (!entry.is_group) {
                for (const FileRef& ref : entry.files) edit->AppendChild(MakeFile(ref, std::string(), model));
                continue;
            }
            auto* filter = new ConfigNode("Filter");
            filter->SetAttribute("Name", entry.name);
            for (const FileRef& ref : entry.files) filter->AppendChild(MakeFile(ref, entry.name, model));
            edit->AppendChild(filter);
        }
    });
    ConfigNode* first_new = files->FirstChild();
    for (size_t i = 0; i < before && first_new != nullptr; ++i) first_new = first_new->NextSibling();
    AssignTools(host, first_new, configurations);
}

// A target's configuration keys, written in the order a new target has
// them, with a note for each thing of the export that is not taken over.
class TargetKeys {
public:
    TargetKeys(const ImportTarget& target, std::vector<std::string>* notes)
        : target_(target), notes_(notes), where_("target '" + target.name + "'"), target_notes_{notes, where_} {}

    Attributes Take() { return std::move(keys_); }

    // Only what the chosen device names: the rest stays unset.
    void PutDevice(const DeviceSettings& device) {
        PutIfSet("DEVICE", device.device);
        PutIfSet("VENDOR", device.vendor);
        PutIfSet("FAMINY", device.family);
        PutIfSet("CPU", device.cpu);
        PutIfSet("SIMDL", device.simulator_dll);
        PutIfSet("MONDL", device.monitor_dll);
        PutIfSet("RGF", device.rgf);
        PutIfSet("SIMCLK", device.simulator_clock);
    }

    void PutDefaults() {
        Put("Name", target_.name);
        Put("ADS_CParam", config::kDefaultCTemplate);
        Put("ADS_AsmParam", config::kDefaultAsmTemplate);
        Put("ADS_LinkParam", config::kDefaultLinkTemplate);
        Put("ADS_OPTDBG", config::kDefaultDebugOptions);
        Put("ADS_USRAPPFILE", "");
    }

    void PutSearchPaths() {
        Put("SearchPath", SearchPathText(target_));
        int recursive = 0;
        for (const auto* list : {&target_.user_paths, &target_.system_paths}) {
            for (const SearchPath& p : *list) recursive += p.recursive ? 1 : 0;
        }
        if (recursive > 0) {
            target_notes_.Add(std::to_string(recursive) +
                              " recursive search path(s) are taken over without their sub-folders");
        }
    }

    void PutLinkerPanel() {
        const PanelRecord& linker = target_.panels[kPanelLinker];
        if (linker.present) Put("ADS_LNKPARAM", TranslateLinker(linker, PanelNotes("ARM Linker")));
    }

    void PutFileMap() {
        const std::string map = MappingString(target_.mappings);
        if (map.empty()) target_notes_.Add("no file mapping names an ADS tool");
        Put("ADS_FileMap", map);
    }

    // The names are kept as the export has them, whatever the build makes of
    // them; the output folder is always the default one.
    void PutLinkers() {
        const std::string& linker_name = target_.linker.linker;
        if (!linker_name.empty() && LowerAscii(linker_name) != "arm linker" &&
            LowerAscii(linker_name) != "arm librarian") {
            target_notes_.Add("linker '" + linker_name + "' is not an ADS tool; the target is linked with armlink");
        }
        Put("ADS_LinkerName", linker_name);
        Put("ADS_OUTPUT_DIR", config::kDefaultOutputDir);
        const std::string& post = target_.linker.post_linker;
        if (!post.empty() && !IsAdsPostLinker(post)) {
            target_notes_.Add("post-linker '" + post + "' is not one the plug-in runs after a link");
        }
        Put("ADS_PostLnk", post.empty() ? config::kDefaultPostLink : post);
    }

    void PutFromElfPanel() {
        const PanelRecord& elf = target_.panels[kPanelFromElf];
        if (elf.present) Put("ADS_FromELFParam", TranslateFromElf(elf, PanelNotes("ARM fromELF")));
    }

    // A tool without a panel gets no key and one note names them all.
    void PutToolPanels() {
        std::string missing;
        for (const ToolKey& k : kToolKeys) {
            const PanelRecord& panel = target_.panels[k.panel];
            if (!panel.present) {
                missing += missing.empty() ? k.tool : std::string(", ") + k.tool;
                continue;
            }
            const NoteSink sink = PanelNotes(kPanelToolNames[k.panel]);
            if (k.panel == kPanelAssembler) {
                Put(k.key, TranslateAssembler(panel, sink));
            } else {
                Put(k.key, TranslateCompiler(panel, k.panel == kPanelArmC || k.panel == kPanelThumbC, sink));
            }
        }
        if (!missing.empty()) {
            target_notes_.Add("the export has no panel for " + missing + "; the target keeps no options for " +
                              (missing.find(',') == std::string::npos ? "that tool" : "those tools"));
        }
    }

    void NoteWhatStaysBehind() const {
        const PanelRecord& target_panel = target_.panels[kPanelTarget];
        if (target_panel.present && !target_panel.rows[target_row::kOutputName].empty()) {
            target_notes_.Add("output name '" + target_panel.rows[target_row::kOutputName].substr(12) +
                              "' is not taken over; the image is named after the project");
        }
        if (!target_.debug_choice.empty()) {
            target_notes_.Add("the debugger choice is not taken over; the target starts with the RDI debugger");
        }
    }

    void PutDebugScripts() {
        Put("ServeDebugOptions", "");
        Put("InitScriptForSim", "");
        Put("InitScriptForEmu", "");
    }

private:
    void Put(const char* key, const std::string& value) { keys_.emplace_back(key, value); }
    void PutIfSet(const char* key, const std::string& value) {
        if (!value.empty()) Put(key, value);
    }
    NoteSink PanelNotes(const std::string& panel) const { return NoteSink{notes_, where_ + ", " + panel}; }

    const ImportTarget& target_;
    std::vector<std::string>* notes_;
    const std::string where_;
    const NoteSink target_notes_;
    Attributes keys_;
};

}  // namespace

std::string MappingString(const std::vector<FileMapping>& mappings) {
    if (mappings.empty()) return config::kDefaultFileMap;
    std::string text;
    for (const MappedTool& tool : kMappedTools) {
        std::string extensions;
        for (const FileMapping& m : mappings) {
            if (LowerAscii(m.compiler) != LowerAscii(tool.compiler)) continue;
            if (!extensions.empty()) extensions += "&&";
            extensions += m.extension;
        }
        if (extensions.empty()) continue;
        // Only the armcc group goes without the comma, even when it is
        // missing and another group comes first.
        text += std::string(tool.tool) == "armcc" ? "(" : ",(";
        text += extensions + "@" + tool.tool + ")";
    }
    return text;
}

std::string SearchPathText(const ImportTarget& target) {
    std::string text;
    for (const SearchPath& p : target.user_paths) text += " -I\"" + p.path + "\" ";
    for (const SearchPath& p : target.system_paths) text += " -J\"" + p.path + "\" ";
    return text;
}

int FileKindOf(const std::string& path, const ImportModel& model) {
    const std::string extension = ExtensionOf(path);
    if (extension.empty()) return config::kKindNone;
    for (const ImportTarget& target : model.targets) {
        for (const FileMapping& m : target.mappings) {
            if (LowerAscii(m.extension) != extension) continue;
            for (const MappedTool& tool : kMappedTools) {
                if (LowerAscii(m.compiler) == LowerAscii(tool.compiler)) return tool.kind;
            }
        }
    }
    if (extension == ".c") return config::kKindC;
    if (extension == ".s" || extension == ".asm") return config::kKindAsm;
    if (extension == ".cpp" || extension == ".cc" || extension == ".cxx" || extension == ".c++" || extension == ".cp") {
        return config::kKindCpp;
    }
    return config::kKindNone;
}

Attributes ConfigurationKeys(const ImportTarget& target, const DeviceSettings& device, std::vector<std::string>* notes) {
    TargetKeys keys(target, notes);
    keys.PutDevice(device);
    keys.PutDefaults();
    keys.PutSearchPaths();
    keys.PutLinkerPanel();
    keys.PutFileMap();
    keys.PutLinkers();
    keys.PutFromElfPanel();
    keys.PutToolPanels();
    keys.NoteWhatStaysBehind();
    keys.PutDebugScripts();
    return keys.Take();
}

std::vector<std::string> ImportNotes(const ImportModel& model) {
    std::vector<std::string> notes = model.notes;
    for (const ImportTarget& target : model.targets) ConfigurationKeys(target, DeviceSettings(), &notes);
    return notes;
}

int ImportProject(config::HostApi& host, ConfigNode* project, const ImportRequest& request, ImportModel* model_out) {
    if (project == nullptr) return 0;
    const std::string name = request.project_name.empty() ? BaseName(request.export_path) : request.project_name;
    config::EditNode(host, project, [&](ConfigNode* p) {
        p->SetAttribute("Name", name);
        p->SetAttribute("BuildTool", kBuildToolValue);
        p->SetAttribute("Version", kVersionValue);
        p->SetAttribute("Author", kAuthorValue);
        if (p->FindChild("Configurations") == nullptr) p->AppendChild(new ConfigNode("Configurations"));
        if (p->FindChild("Files") == nullptr) p->AppendChild(new ConfigNode("Files"));
    });
    ConfigNode* configurations = project->FindChild("Configurations");
    ConfigNode* files = project->FindChild("Files");
    if (configurations == nullptr || files == nullptr) return 0;

    ImportModel model;
    const bool read = ReadExport(request.export_path, request.reader, &model);
    if (!read) host.Write(kImportFailed);

    if (!model.targets.empty()) {
        config::EditNode(host, configurations, [&](ConfigNode* edit) {
            for (const ImportTarget& target : model.targets) {
                auto* configuration = new ConfigNode("Configuration");
                for (const auto& [key, value] : ConfigurationKeys(target, request.device, nullptr)) {
                    configuration->SetAttribute(key, value);
                }
                edit->AppendChild(configuration);
            }
        });
    }
    AddFileTree(host, files, configurations, model);
    if (model_out != nullptr) *model_out = std::move(model);
    return read ? 1 : 0;
}

}  // namespace ads::import
