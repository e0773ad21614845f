#include "import/project_import.h"

#include <set>

#include "config/defaults.h"
#include "config/file_tools.h"
#include "config/path_macros.h"
#include "config/target_settings.h"
#include "import/panel_readers.h"
#include "import/panel_translators.h"
#include "import/project_files.h"
#include "platform/text.h"

namespace ads::import {

namespace {

// The tools of the mapping string, in its order, with the word it gives
// them.
struct MappedTool {
    int number;
    const char* tool;
    int kind;  // the FileType of what it translates
};
const MappedTool kMappedTools[] = {
    {config::kToolArmcc, "armcc", config::kKindC},
    {config::kToolArmcpp, "armcpp", config::kKindCpp},
    {config::kToolTcc, "tcc", config::kKindC},
    {config::kToolTcpp, "tcpp", config::kKindCpp},
    {config::kToolArmasm, "armasm", config::kKindAsm},
};

// A mapping's compiler names the tool (the mapping page's name).
bool Names(const FileMapping& mapping, const MappedTool& tool) {
    return platform::EqualsIgnoringCase(mapping.compiler, config::kToolDisplayNames[tool.number]);
}

// The five tool panels with the key each is written under.
struct ToolKey {
    PanelKind panel;
    const char* key;
    const char* tool;
};
const ToolKey kToolKeys[] = {
    {kPanelAssembler, config::kArmAsmParamsKey, "armasm"}, {kPanelArmC, config::kArmCcParamsKey, "armcc"},
    {kPanelArmCpp, config::kArmCppParamsKey, "armcpp"},    {kPanelThumbC, config::kThumbCcParamsKey, "tcc"},
    {kPanelThumbCpp, config::kThumbCppParamsKey, "tcpp"},
};

// The post-link steps the build knows, "None" being none.
bool IsAdsPostLinker(const std::string& name) {
    return platform::EqualsIgnoringCase(name, config::kPostLinkFromElf) ||
           platform::EqualsIgnoringCase(name, config::kPostLinkBatchFile) || name == "None";
}

// `taken` holds the objects of the project's sources, lower case: two
// sources of one base name get distinct objects.
ConfigNode* MakeFile(const FileRef& ref, const std::string& group, const ImportModel& model,
                     std::set<std::string>* taken) {
    auto* file = new ConfigNode(config::kFileNode);
    file->SetAttribute(config::kRelativePathKey, ref.path);
    const int kind = FileKindOf(ref.path, model);
    file->SetAttributeInt(config::kFileTypeKey, kind);
    if (kind == config::kKindC || kind == config::kKindAsm || kind == config::kKindCpp) {
        const std::string object = config::DistinctObjectFileName(ref.path, *taken);
        taken->insert(platform::Lower(object));
        file->SetAttribute(config::kOutputKey, object);
    }
    if (!group.empty()) file->SetAttribute(config::kGroupKey, group);
    return file;
}

// A group's entries under `parent`: files, and groups as "Filter" nodes
// holding theirs. `group` is the path of the group, "A/B" as the host
// writes nested groups. The export's nesting is bounded by the reader.
void AppendEntries(ConfigNode* parent, const std::vector<GroupEntry>& entries, const std::string& group,
                   const ImportModel& model, std::set<std::string>* taken) {
    for (const GroupEntry& entry : entries) {
        if (!entry.is_group) {
            parent->AppendChild(MakeFile(entry.file, group, model, taken));
            continue;
        }
        auto* filter = new ConfigNode(config::kFilterNode);
        filter->SetAttribute(config::kNameKey, entry.name);
        AppendEntries(filter, entry.entries, group.empty() ? entry.name : group + "/" + entry.name, model, taken);
        parent->AppendChild(filter);
    }
}

void AddFileTree(config::HostApi& host, ConfigNode* files, ConfigNode* configurations, const ImportModel& model) {
    if (model.groups.empty()) return;
    size_t before = 0;
    for (ConfigNode* c = files->FirstChild(); c != nullptr; c = c->NextSibling()) ++before;
    std::set<std::string> taken = config::ObjectsOfSources(files->Root(), nullptr);
    config::EditNode(host, files,
                     [&](ConfigNode* edit) { AppendEntries(edit, model.groups, std::string(), model, &taken); });
    ConfigNode* first_new = files->FirstChild();
    for (size_t i = 0; i < before && first_new != nullptr; ++i) first_new = first_new->NextSibling();
    // Every new source file gets its tool and option text for every target,
    // as a file the user adds does.
    WalkTree(first_new, [&](ConfigNode* node) {
        if (node->Name() != config::kFileNode) return false;
        int32_t kind = 0;
        node->GetAttributeInt(config::kFileTypeKey, &kind);
        if (kind == config::kKindC || kind == config::kKindAsm || kind == config::kKindCpp) {
            config::AssignToolsOnAdd(host, node, configurations);
        }
        return false;
    });
}

// Targets named like one before them, in the export or in the project, get
// " (2)", " (3)" ... so that each can be chosen by its name.
void MakeNamesUnique(ImportModel& model, const ConfigNode* configurations) {
    std::set<std::string> taken;
    for (const ConfigNode* c = configurations->FirstChild(); c != nullptr; c = c->NextSibling()) {
        if (const char* name = c->GetAttribute(config::kNameKey)) taken.insert(name);
    }
    for (ImportTarget& target : model.targets) {
        if (target.name.empty() || taken.insert(target.name).second) continue;
        std::string unique;
        for (int n = 2; !taken.insert(unique = target.name + " (" + std::to_string(n) + ")").second; ++n) {
        }
        model.notes.push_back("target '" + target.name + "' is imported as '" + unique +
                              "': the name is taken by a target before it");
        target.name = unique;
    }
}

// A target's configuration keys, written in the order a new target has
// them, with a note for each thing of the export that is not taken over.
class TargetKeys {
public:
    TargetKeys(const ImportTarget& target, const std::string& folder, std::vector<std::string>* notes)
        : target_(target),
          folder_(folder),
          notes_(notes),
          where_("target '" + target.name + "'"),
          target_notes_{notes, where_} {}

    Attributes Take() { return std::move(keys_); }

    // Only what the chosen device names: the rest stays unset.
    void PutDevice(const DeviceSettings& device) {
        PutIfSet(config::kDeviceKey, device.device);
        PutIfSet(config::kVendorKey, device.vendor);
        PutIfSet("FAMINY", device.family);
        PutIfSet(config::kCpuKey, device.cpu);
        PutIfSet("SIMDL", device.simulator_dll);
        PutIfSet("MONDL", device.monitor_dll);
        PutIfSet("RGF", device.rgf);
        PutIfSet(config::kSimClockKey, device.simulator_clock);
    }

    void PutDefaults() {
        Put(config::kNameKey, target_.name);
        Put(config::kCParamKey, config::kDefaultCTemplate);
        Put(config::kAsmParamKey, config::kDefaultAsmTemplate);
        Put(config::kLinkParamKey, config::kDefaultLinkTemplate);
        Put(config::kDebugOptionsKey, config::kDefaultDebugOptions);
        Put(config::kUserAppFileKey, "");
    }

    void PutSearchPaths() {
        Put(config::kSearchPathKey, SearchPathText(target_));
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
        if (linker.present) Put(config::kLinkerParamsKey, TranslateLinker(linker, folder_, PanelNotes("ARM Linker")));
    }

    void PutFileMap() {
        const std::string map = MappingString(target_.mappings);
        if (map.empty()) target_notes_.Add("no file mapping names an ADS tool");
        Put(config::kFileMapKey, map);
    }

    // The names are kept as the export has them, whatever the build makes of
    // them; the output folder is always the default one.
    void PutLinkers() {
        const std::string& linker_name = target_.linker.linker;
        if (!linker_name.empty() && !platform::EqualsIgnoringCase(linker_name, config::kLinkerArmlink) &&
            !platform::EqualsIgnoringCase(linker_name, config::kLinkerArmar)) {
            target_notes_.Add("linker '" + linker_name + "' is not an ADS tool; the target is linked with armlink");
        }
        Put(config::kLinkerNameKey, linker_name);
        Put(config::kOutputDirKey, config::kDefaultOutputDir);
        const std::string& post = target_.linker.post_linker;
        if (!post.empty() && !IsAdsPostLinker(post)) {
            target_notes_.Add("post-linker '" + post + "' is not one the plug-in runs after a link");
        }
        if (platform::EqualsIgnoringCase(post, config::kPostLinkBatchFile)) {
            target_notes_.Add("the export holds no command for the post-linker '" + post +
                              "': nothing runs after the link until one is set in " + config::kBatchFileParamsKey);
        }
        Put(config::kPostLinkKey, post.empty() ? config::kDefaultPostLink : post);
    }

    void PutFromElfPanel() {
        const PanelRecord& elf = target_.panels[kPanelFromElf];
        if (elf.present) Put(config::kFromElfParamsKey, TranslateFromElf(elf, PanelNotes("ARM fromELF")));
    }

    // A tool without a panel gets the options of a new target, and one note
    // names them all.
    void PutToolPanels() {
        std::string missing;
        for (const ToolKey& k : kToolKeys) {
            const PanelRecord& panel = target_.panels[k.panel];
            if (!panel.present) {
                missing += missing.empty() ? k.tool : std::string(", ") + k.tool;
                Put(k.key, k.panel == kPanelAssembler ? config::kDefaultAsmParams : config::kDefaultCompilerParams);
                continue;
            }
            const NoteSink sink = PanelNotes(kPanelToolNames[k.panel]);
            if (k.panel == kPanelAssembler) {
                Put(k.key, TranslateAssembler(panel, folder_, sink));
            } else {
                Put(k.key, TranslateCompiler(panel, k.panel == kPanelArmC || k.panel == kPanelThumbC, folder_, sink));
            }
        }
        if (!missing.empty()) {
            target_notes_.Add("the export has no panel for " + missing + "; " +
                              (missing.find(',') == std::string::npos ? "that tool gets" : "those tools get") +
                              " the options of a new target");
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
        Put(config::kServeDebugOptionsKey, "");
        Put(config::kInitScriptSimKey, "");
        Put(config::kInitScriptEmuKey, "");
    }

private:
    void Put(const char* key, const std::string& value) { keys_.emplace_back(key, value); }
    void PutIfSet(const char* key, const std::string& value) {
        if (!value.empty()) Put(key, value);
    }
    NoteSink PanelNotes(const std::string& panel) const { return NoteSink{notes_, where_ + ", " + panel}; }

    const ImportTarget& target_;
    const std::string& folder_;
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
            if (!Names(m, tool)) continue;
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
    const std::string extension = platform::Lower(platform::ExtensionOf(path));
    if (extension.empty()) return config::kKindNone;
    for (const ImportTarget& target : model.targets) {
        for (const FileMapping& m : target.mappings) {
            if (platform::Lower(m.extension) != extension) continue;
            for (const MappedTool& tool : kMappedTools) {
                if (Names(m, tool)) return tool.kind;
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

Attributes ConfigurationKeys(const ImportTarget& target, const std::string& folder, const DeviceSettings& device,
                             std::vector<std::string>* notes) {
    TargetKeys keys(target, folder, notes);
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
    for (const ImportTarget& target : model.targets) ConfigurationKeys(target, model.folder, DeviceSettings(), &notes);
    return notes;
}

int ImportProject(config::HostApi& host, ConfigNode* project, const ImportRequest& request, ImportModel* model_out) {
    if (project == nullptr) return 0;
    const std::string name =
        request.project_name.empty() ? platform::StemBeforeFirstDot(request.export_path) : request.project_name;
    config::EditNode(host, project, [&](ConfigNode* p) {
        p->SetAttribute(config::kNameKey, name);
        p->SetAttribute("BuildTool", kBuildToolValue);
        p->SetAttribute("Version", kVersionValue);
        p->SetAttribute("Author", kAuthorValue);
        if (p->FindChild(config::kConfigurationsNode) == nullptr) {
            p->AppendChild(new ConfigNode(config::kConfigurationsNode));
        }
        if (p->FindChild(config::kFilesNode) == nullptr) p->AppendChild(new ConfigNode(config::kFilesNode));
    });
    ConfigNode* configurations = project->FindChild(config::kConfigurationsNode);
    ConfigNode* files = project->FindChild(config::kFilesNode);
    if (configurations == nullptr || files == nullptr) return 0;

    ImportModel model;
    const bool read = ReadExport(request.export_path, request.reader, &model);
    if (!read) host.Write(kImportFailed);

    if (!model.targets.empty()) {
        MakeNamesUnique(model, configurations);
        config::EditNode(host, configurations, [&](ConfigNode* edit) {
            for (const ImportTarget& target : model.targets) {
                auto* configuration = new ConfigNode(config::kConfigurationNode);
                for (const auto& [key, value] : ConfigurationKeys(target, model.folder, request.device, nullptr)) {
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
