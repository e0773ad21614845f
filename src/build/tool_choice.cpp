#include "build/tool_choice.h"

#include "build/node_text.h"

#include <cstring>

#include "config/defaults.h"
#include "options/effective_options.h"
#include "options/page_state.h"

namespace ads::build {

const char kSettingsFlagKey[] = "ADS_CfgFlag";
const char kAsmSettings[] = "ADS_AsmParam";
const char kCSettings[] = "ADS_CParam";

const char* const kToolDisplayNames[6] = {
    "", "ARM Assembler", "ARM C Compiler", "ARM C++ Compiler", "Thumb C Compiler", "Thumb C++ Compiler",
};

namespace {

bool Contains(const std::string& text, const char* what) { return text.find(what) != std::string::npos; }

}  // namespace

const char* SettingsNodeName(int file_type) { return file_type == 2 ? kAsmSettings : kCSettings; }

ConfigNode* FindFileSettings(const ConfigNode* file) {
    if (file == nullptr) return nullptr;
    for (ConfigNode* c = file->FirstChild(); c != nullptr; c = c->NextSibling()) {
        if (c->Name() == kAsmSettings || c->Name() == kCSettings) return c;
    }
    return nullptr;
}

ConfigNode* EnsureFileSettings(config::HostApi& host, ConfigNode* file) {
    if (ConfigNode* s = FindFileSettings(file)) return s;
    return host.FindSettingNode(file, SettingsNodeName(FileTypeOf(file)), kSettingsFlagKey);
}

std::string FileMapOf(const ConfigNode* configuration) {
    const char* map = configuration ? configuration->GetAttribute("ADS_FileMap") : nullptr;
    return map ? map : config::kDefaultFileMap;
}

int ChooseTool(const ConfigNode* file, const std::string& target, const ConfigNode* configuration) {
    if (file == nullptr) return kNoTool;
    if (const ConfigNode* s = FindFileSettings(file)) {
        int32_t tool = 0;
        if (s->GetAttributeInt((target + "_tool").c_str(), &tool) != nullptr) return tool;
    }
    // The map is never split into its groups: only the markers count.
    switch (FileTypeOf(file)) {
        case 2: return kToolArmasm;
        case 1: return Contains(FileMapOf(configuration), "@armcc") ? kToolArmcc : kToolTcc;
        case 3: return Contains(FileMapOf(configuration), "@armcpp") ? kToolArmcpp : kToolTcpp;
        default: return kNoTool;
    }
}

bool AssignToolsOnAdd(config::HostApi& host, ConfigNode* file, ConfigNode* configurations) {
    if (file == nullptr || configurations == nullptr || configurations->Name() != "Configurations") return false;
    int type = FileTypeOf(file);
    for (ConfigNode* c = configurations->FirstChild(); c != nullptr; c = c->NextSibling()) {
        const char* name = c->GetAttribute("Name");
        if (name == nullptr) continue;
        ConfigNode* settings = EnsureFileSettings(host, file);
        if (settings == nullptr) continue;
        std::string map = FileMapOf(c);
        std::string tool_key = std::string(name) + "_tool";
        config::EditNode(host, settings, [&](ConfigNode* edit) {
            edit->SetAttribute(name, "");
            // The C and C++ branches start from the ARM key even for the
            // Thumb compilers; the compile step computes the right string.
            switch (type) {
                case 1:
                    edit->SetAttribute(name, Text(c, "ADS_GArmCCParam").c_str());
                    edit->SetAttributeInt(tool_key.c_str(), Contains(map, "@armcc") ? kToolArmcc : kToolTcc);
                    break;
                case 3:
                    edit->SetAttribute(name, Text(c, "ADS_GArmCppParam").c_str());
                    edit->SetAttributeInt(tool_key.c_str(), Contains(map, "@armcpp") ? kToolArmcpp : kToolTcpp);
                    break;
                case 2:
                    edit->SetAttribute(name, Text(c, "ADS_GArmAsmParam").c_str());
                    // Without "@armasm" no tool is stored; the assembler is
                    // still chosen by the file's kind.
                    if (Contains(map, "@armasm")) edit->SetAttributeInt(tool_key.c_str(), kToolArmasm);
                    break;
            }
        });
    }
    return true;
}

void AssignToolInTarget(config::HostApi& host, ConfigNode* file, const std::string& target,
                        const ConfigNode* configuration) {
    if (file == nullptr || file->Name() != "File") return;
    int type = FileTypeOf(file);
    int tool = type == 1 ? kToolArmcc : type == 3 ? kToolArmcpp : type == 2 ? kToolArmasm : kNoTool;
    if (tool == kNoTool) return;
    ConfigNode* settings = EnsureFileSettings(host, file);
    if (settings == nullptr) return;
    const char* key = type == 1 ? "ADS_GArmCCParam" : type == 3 ? "ADS_GArmCppParam" : "ADS_GArmAsmParam";
    config::EditNode(host, settings, [&](ConfigNode* edit) {
        edit->SetAttribute(target.c_str(), Text(configuration, key).c_str());
        edit->SetAttributeInt((target + "_tool").c_str(), tool);
    });
}

std::string FileOptionString(const ConfigNode* configuration, const ConfigNode* file,
                             const std::string& target, int tool,
                             const options::PathConverter& convert_via_path) {
    if (tool < kToolArmasm || tool > kToolTcpp) return std::string();
    return options::EffectiveOptions(static_cast<options::Tool>(tool), configuration, file, target,
                                     convert_via_path);
}

bool RefreshLocalConfigure(config::HostApi& host, ConfigNode* node, const std::string& target) {
    if (node == nullptr) return false;
    auto own_states = [&](const ConfigNode* owner, options::Family family) {
        options::PageStateSet set;
        options::LoadPageStates(owner, target, family, set);
        for (const std::string& slot : set) {
            if (!slot.empty()) return true;
        }
        return false;
    };
    bool local = false;
    if (node->Name() == "File") {
        int type = FileTypeOf(node);
        if (type == 2) {
            local = own_states(node, options::Family::kArmAsm);
        } else if (type == 1) {
            local = own_states(node, options::Family::kArmC) || own_states(node, options::Family::kThumbC);
        } else if (type == 3) {
            local = own_states(node, options::Family::kArmCpp) || own_states(node, options::Family::kThumbCpp);
        }
    } else if (node->Name() == "Filter") {
        for (options::Family f : {options::Family::kArmAsm, options::Family::kArmC, options::Family::kThumbC,
                                  options::Family::kArmCpp, options::Family::kThumbCpp}) {
            local = own_states(node, f) || local;
        }
    } else {
        return false;
    }
    ConfigNode* settings = FindFileSettings(node);
    if (settings == nullptr) return local;
    config::EditNode(host, settings, [&](ConfigNode* edit) { edit->SetAttributeInt("LocalConfigure", local ? 1 : 0); });
    return local;
}

std::string BuildMappingString(const std::vector<MappingRow>& rows) {
    std::string groups[6] = {"", "@armasm", "@armcc", "@armcpp", "@tcc", "@tcpp"};
    for (const MappingRow& row : rows) {
        if (!row.checked) continue;
        for (int tool = kToolArmasm; tool <= kToolTcpp; ++tool) {
            if (row.tool != kToolDisplayNames[tool]) continue;
            std::string& group = groups[tool];
            // The later row's extension goes first.
            if (group[0] != '@') group.insert(0, "&&");
            group.insert(0, row.extension);
        }
    }
    std::string map = "(" + groups[kToolArmasm] + "),(";
    map += groups[kToolArmcc] == "@armcc" ? groups[kToolTcc] : groups[kToolArmcc];
    map += "),(";
    map += groups[kToolArmcpp] == "@armcpp" ? groups[kToolTcpp] : groups[kToolArmcpp];
    map += ")";
    return map;
}

}  // namespace ads::build
