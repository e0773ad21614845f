#include "config/file_tools.h"

#include "config/defaults.h"
#include "config/node_text.h"
#include "config/project_keys.h"

namespace ads::config {

const char* const kToolDisplayNames[6] = {
    "", "ARM Assembler", "ARM C Compiler", "ARM C++ Compiler", "Thumb C Compiler", "Thumb C++ Compiler",
};

namespace {

bool Contains(const std::string& text, const char* what) { return text.find(what) != std::string::npos; }

}  // namespace

const char* SettingsNodeName(int file_type) { return file_type == kKindAsm ? kAsmParamKey : kCParamKey; }

ConfigNode* FindFileSettings(const ConfigNode* file) {
    if (file == nullptr) return nullptr;
    for (ConfigNode* c = file->FirstChild(); c != nullptr; c = c->NextSibling()) {
        if (c->Name() == kAsmParamKey || c->Name() == kCParamKey) return c;
    }
    return nullptr;
}

ConfigNode* EnsureFileSettings(HostApi& host, ConfigNode* file) {
    if (ConfigNode* s = FindFileSettings(file)) return s;
    return host.FindSettingNode(file, SettingsNodeName(FileTypeOf(file)), kSettingsFlagKey);
}

std::string FileMapOf(const ConfigNode* configuration) {
    const char* map = configuration ? configuration->GetAttribute(kFileMapKey) : nullptr;
    return map ? map : kDefaultFileMap;
}

int ChooseTool(const ConfigNode* file, const std::string& target, const ConfigNode* configuration) {
    if (file == nullptr) return kNoTool;
    if (const ConfigNode* s = FindFileSettings(file)) {
        int32_t tool = 0;
        if (s->GetAttributeInt((target + kToolSuffix).c_str(), &tool) != nullptr) return tool;
    }
    // The map is never split into its groups: only the markers count.
    switch (FileTypeOf(file)) {
        case kKindAsm: return kToolArmasm;
        case kKindC: return Contains(FileMapOf(configuration), "@armcc") ? kToolArmcc : kToolTcc;
        case kKindCpp: return Contains(FileMapOf(configuration), "@armcpp") ? kToolArmcpp : kToolTcpp;
        default: return kNoTool;
    }
}

bool AssignToolsOnAdd(HostApi& host, ConfigNode* file, ConfigNode* configurations) {
    if (file == nullptr || configurations == nullptr || configurations->Name() != kConfigurationsNode) return false;
    bool named = false;
    for (ConfigNode* c = configurations->FirstChild(); c != nullptr && !named; c = c->NextSibling()) {
        named = c->GetAttribute(kNameKey) != nullptr;
    }
    if (!named) return true;
    ConfigNode* settings = EnsureFileSettings(host, file);
    if (settings == nullptr) return true;
    const int type = FileTypeOf(file);
    // One edit for every target: a project with many targets and files
    // would otherwise copy each file's settings once per target.
    EditNode(host, settings, [&](ConfigNode* edit) {
        for (ConfigNode* c = configurations->FirstChild(); c != nullptr; c = c->NextSibling()) {
            const char* name = c->GetAttribute(kNameKey);
            if (name == nullptr) continue;
            const std::string map = FileMapOf(c);
            const std::string tool_key = std::string(name) + kToolSuffix;
            // The C and C++ branches start from the ARM key even for the
            // Thumb compilers; the compile step computes the right string.
            switch (type) {
                case kKindC:
                    edit->SetAttribute(name, Text(c, kArmCcParamsKey).c_str());
                    edit->SetAttributeInt(tool_key.c_str(), Contains(map, "@armcc") ? kToolArmcc : kToolTcc);
                    break;
                case kKindCpp:
                    edit->SetAttribute(name, Text(c, kArmCppParamsKey).c_str());
                    edit->SetAttributeInt(tool_key.c_str(), Contains(map, "@armcpp") ? kToolArmcpp : kToolTcpp);
                    break;
                case kKindAsm:
                    edit->SetAttribute(name, Text(c, kArmAsmParamsKey).c_str());
                    // Without "@armasm" no tool is stored; the assembler is
                    // still chosen by the file's kind.
                    if (Contains(map, "@armasm")) edit->SetAttributeInt(tool_key.c_str(), kToolArmasm);
                    break;
                default:
                    edit->SetAttribute(name, "");
            }
        }
    });
    return true;
}

void AssignToolInTarget(HostApi& host, ConfigNode* file, const std::string& target,
                        const ConfigNode* configuration) {
    if (file == nullptr || file->Name() != kFileNode) return;
    int type = FileTypeOf(file);
    int tool = type == kKindC ? kToolArmcc : type == kKindCpp ? kToolArmcpp : type == kKindAsm ? kToolArmasm : kNoTool;
    if (tool == kNoTool) return;
    ConfigNode* settings = EnsureFileSettings(host, file);
    if (settings == nullptr) return;
    const char* key = type == kKindC ? kArmCcParamsKey : type == kKindCpp ? kArmCppParamsKey : kArmAsmParamsKey;
    EditNode(host, settings, [&](ConfigNode* edit) {
        edit->SetAttribute(target.c_str(), Text(configuration, key).c_str());
        edit->SetAttributeInt((target + kToolSuffix).c_str(), tool);
    });
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

std::vector<MappingRow> MappingRows(const std::string& map) {
    static const char* const kWords[6] = {"", "armasm", "armcc", "armcpp", "tcc", "tcpp"};
    std::vector<MappingRow> rows;
    size_t open = map.find('(');
    while (open != std::string::npos) {
        const size_t close = map.find(')', open);
        const std::string group = map.substr(open + 1, close == std::string::npos ? close : close - open - 1);
        const size_t at = group.rfind('@');
        std::string tool;
        if (at != std::string::npos) {
            for (int t = kToolArmasm; t <= kToolTcpp; ++t) {
                if (group.compare(at + 1, std::string::npos, kWords[t]) == 0) tool = kToolDisplayNames[t];
            }
        }
        const std::string extensions = group.substr(0, at);
        for (size_t start = 0; start < extensions.size();) {
            size_t end = extensions.find("&&", start);
            if (end == std::string::npos) end = extensions.size();
            if (end > start) rows.push_back({extensions.substr(start, end - start), tool, true});
            start = end + 2;
        }
        if (close == std::string::npos) break;
        open = map.find('(', close);
    }
    return rows;
}

}  // namespace ads::config
