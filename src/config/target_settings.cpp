#include "config/target_settings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "config/node_text.h"
#include "platform/text.h"

namespace ads::config {

namespace {

uint32_t Hex(const ConfigNode& node, const char* key) {
    unsigned int value = 0;
    if (const char* text = node.GetAttribute(key)) std::sscanf(text, "%x", &value);
    return value;
}

}  // namespace

std::string DefaultProcessor(const HostDefaults& host) {
    for (const std::string& entry : host.processors) {
        if (platform::StartsWithIgnoringCase(entry, "CPU")) return entry;
    }
    return std::string();
}

TargetRecord TargetSettingsReader::ReadTarget(const ConfigNode& c) const {
    TargetRecord r;
    if (const char* name = c.GetAttribute(kNameKey)) {
        r.name = name;
        r.current = r.name == current_;
    }
    r.linker_params = Text(c, kLinkerParamsKey);
    r.debug_options = Text(c, kDebugOptionsKey);
    if (const char* cpu = c.GetAttribute(kCpuKey)) {
        r.cpu = cpu;
    } else if (host_ != nullptr) {
        r.cpu = DefaultProcessor(*host_);
    }
    if (const char* device = c.GetAttribute(kDeviceKey)) {
        r.device = device;
    } else if (host_ != nullptr) {
        r.device = host_->device;
    }
    if (const char* vendor = c.GetAttribute(kVendorKey)) {
        r.vendor = vendor;
    } else if (host_ != nullptr) {
        r.vendor = host_->vendor;
    }
    r.app_file = Text(c, kAppFileKey);
    r.user_app_file = Text(c, kUserAppFileKey);
    r.has_user_app_file = !r.user_app_file.empty();
    r.output_dir = Text(c, kOutputDirKey);
    r.linker_name = Text(c, kLinkerNameKey);
    r.file_map = Text(c, kFileMapKey);
    r.armasm_params = Text(c, kArmAsmParamsKey);
    r.armcc_params = Text(c, kArmCcParamsKey);
    r.armcpp_params = Text(c, kArmCppParamsKey);
    r.tcc_params = Text(c, kThumbCcParamsKey);
    r.tcpp_params = Text(c, kThumbCppParamsKey);
    r.init_script_sim = Text(c, kInitScriptSimKey);
    r.init_script_emu = Text(c, kInitScriptEmuKey);
    r.fromelf_params = Text(c, kFromElfParamsKey);
    r.post_link = Text(c, kPostLinkKey);
    // Only "1" sets the flag ("01" does not); a target without the key keeps
    // the flag clear.
    if (const char* update = c.GetAttribute(kUpdateBeforeDebugKey)) {
        r.update_before_debug = std::strcmp(update, "1") == 0;
    }
    r.serve_debug_options = Text(c, kServeDebugOptionsKey);
    r.batch_file_params = Text(c, kBatchFileParamsKey);
    r.search_path = Text(c, kSearchPathKey);

    static const char* const kAsmKeys[6] = {"ADS_ArmAsm_Tar", "ADS_ArmAsm_Atpcs", "ADS_ArmAsm_Opt",
                                            "ADS_ArmAsm_PDS", "ADS_ArmAsm_LC",    "ADS_ArmAsm_Ets"};
    if ((kind_ == kKindAsm || kind_ == kKindFolder) && c.GetAttribute(kAsmKeys[0]) != nullptr) {
        r.has_asm_states = true;
        for (int i = 0; i < 6; ++i) r.asm_states[i] = Text(c, kAsmKeys[i]);
    }
    if (kind_ == kKindC || kind_ == kKindFolder) r.armc_target_state = Text(c, "ADS_ArmC_Tar");
    if (kind_ == kKindCpp || kind_ == kKindFolder) r.armcpp_target_state = Text(c, "ADS_ArmCpp_Tar");

    c.GetAttributeDouble(kSimClockKey, &r.sim_clock);

    for (int i = 0; i < kMaxStorageNodes; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "%s%d", "StorageNode", i);
        const ConfigNode* s = c.FindChild(name);
        if (s == nullptr) continue;  // a gap in the numbering is skipped
        StorageEntry e;
        e.type = Hex(*s, "Type");
        e.start_address = Hex(*s, "StartAddress");
        e.size = Hex(*s, "Size");
        e.load_file = Text(*s, "LoadFile");
        const char* download = s->GetAttribute("ShouldDownLoad");
        e.should_download = download != nullptr && platform::EqualsIgnoringCase(download, "Yes");
        r.storage.push_back(e);
    }
    return r;
}

void TargetSettingsReader::ReadFile(const ConfigNode& file) {
    int32_t type = 0;
    file.GetAttributeInt(kFileTypeKey, &type);
    const ConfigNode* s = file.FirstChild();
    if (s == nullptr) return;
    if (type != kKindC && type != kKindAsm && type != kKindCpp) return;
    for (TargetRecord& r : *records_) {
        int32_t tool = 0;
        s->GetAttributeInt((r.name + kToolSuffix).c_str(), &tool);
        const char* text = s->GetAttribute(r.name.c_str());
        if (text == nullptr) continue;
        switch (type) {
            case kKindC:
                if (tool == 2) r.file_armcc = text;
                else if (tool == 4) r.file_tcc = text;
                break;
            case kKindCpp:
                if (tool == 3) r.file_armcpp = text;
                else if (tool == 5) r.file_tcpp = text;
                break;
            case kKindAsm:
                r.file_armasm = text;
                break;
        }
    }
}

bool TargetSettingsReader::operator()(ConfigNode* node) {
    if (node == nullptr || node->Name().empty()) return false;
    if (node->Name() == kFileNode) {
        ReadFile(*node);
        return false;
    }
    if (node->Name() == kConfigurationsNode) {
        records_->clear();
        for (ConfigNode* c = node->FirstChild(); c != nullptr; c = c->NextSibling()) {
            records_->push_back(ReadTarget(*c));
        }
        return true;
    }
    return false;
}

ConfigNode* FindCurrentConfiguration(ConfigNode* root, const std::string& target) {
    ConfigNode* found = nullptr;
    WalkTree(root, [&](ConfigNode* node) {
        if (node->Name() != kConfigurationNode) return false;
        const char* name = node->GetAttribute(kNameKey);
        if (name == nullptr || target != name) return false;
        found = node;
        return true;
    });
    return found;
}

}  // namespace ads::config
