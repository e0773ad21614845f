#include "options/page_state.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace ads::options {

namespace {

const char* const kCompilerPageSuffixes[kSlotCount] = {
    "_Tar", "_Atpcs", "_Warnings", "_Errors", "_Debug_Opt", "_Code_Gen", "_PrePro", "_Extras",
};
const char* const kAssemblerPageSuffixes[kSlotCount] = {
    "_Asm_Tar", "_Asm_Atpcs", "_Asm_Opt", "_Asm_LC", "_Asm_LC_PG1", "_Asm_LC_PG2", "_Asm_PDS", "_Asm_Ets",
};

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// One "%d": white space, an optional sign, at least one digit.
bool ScanInt(const std::string& text, size_t& pos, int& value) {
    size_t p = pos;
    while (p < text.size() && IsSpace(text[p])) ++p;
    bool negative = false;
    if (p < text.size() && (text[p] == '+' || text[p] == '-')) negative = text[p++] == '-';
    if (p >= text.size() || !IsDigit(text[p])) return false;
    int64_t magnitude = 0;
    for (; p < text.size() && IsDigit(text[p]); ++p) {
        if (magnitude <= INT64_C(1) << 32) magnitude = magnitude * 10 + (text[p] - '0');
    }
    int64_t signed_value = negative ? -magnitude : magnitude;
    if (signed_value > INT_MAX) signed_value = INT_MAX;
    if (signed_value < INT_MIN) signed_value = INT_MIN;
    value = static_cast<int>(signed_value);
    pos = p;
    return true;
}

}  // namespace

std::string FormatPageState(const int* values, int count) {
    std::string out;
    char number[16];
    for (int i = 0; i < count; ++i) {
        std::snprintf(number, sizeof number, i == 0 ? "%d" : ",%d", values[i]);
        out += number;
    }
    return out;
}

int ScanPageState(const std::string& text, int* values, int count) {
    size_t pos = 0;
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            if (pos >= text.size() || text[pos] != ',') return i;
            ++pos;
        }
        int value = 0;
        if (!ScanInt(text, pos, value)) return i;
        values[i] = value;
    }
    return count;
}

bool IsAssembler(Family family) { return family == Family::kArmAsm; }

const char* FamilySuffix(Family family) {
    switch (family) {
        case Family::kArmC: return "_ArmC";
        case Family::kThumbC: return "_ThumbC";
        case Family::kArmCpp: return "_ArmCpp";
        case Family::kThumbCpp: return "_ThumbCpp";
        case Family::kArmAsm: return "";
    }
    return "";
}

const char* StatesNodeName(Family family) {
    return IsAssembler(family) ? kAssemblerStatesNode : kCompilerStatesNode;
}

const char* PageSuffix(Family family, int slot) {
    if (slot < 0 || slot >= kSlotCount) return nullptr;
    return IsAssembler(family) ? kAssemblerPageSuffixes[slot] : kCompilerPageSuffixes[slot];
}

std::string PageStateKey(const std::string& target, Family family, int slot) {
    const char* page = PageSuffix(family, slot);
    if (page == nullptr) return std::string();
    return target + FamilySuffix(family) + page;
}

void LoadPageStates(const ConfigNode* owner, const std::string& target, Family family,
                    PageStateSet& states) {
    if (owner == nullptr) return;
    const ConfigNode* child = owner->FindChild(StatesNodeName(family));
    if (child == nullptr) return;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (PageSuffix(family, slot) == nullptr) continue;
        if (const char* value = child->GetAttribute(PageStateKey(target, family, slot).c_str())) {
            states[slot] = value;
        }
    }
}

std::vector<Family> FamiliesOf(LanguageGroup group) {
    switch (group) {
        case LanguageGroup::kC: return {Family::kArmC, Family::kThumbC};
        case LanguageGroup::kAssembler: return {Family::kArmAsm};
        case LanguageGroup::kCpp: return {Family::kArmCpp, Family::kThumbCpp};
        case LanguageGroup::kAll:
            return {Family::kArmC, Family::kThumbC, Family::kArmAsm, Family::kArmCpp,
                    Family::kThumbCpp};
    }
    return {};
}

void LoadPageStates(const ConfigNode* owner, LanguageGroup group,
                    std::vector<TargetPageStates>& targets) {
    for (TargetPageStates& target : targets) {
        for (Family family : FamiliesOf(group)) {
            LoadPageStates(owner, target.name, family, target.Of(family));
        }
    }
}

bool SavePageStates(ConfigNode* owner, LanguageGroup group,
                    const std::vector<TargetPageStates>& targets,
                    const FindSettingNodeFn& find_setting_node, const CommitNodeFn& commit) {
    if (owner == nullptr) return false;
    const std::vector<Family> families = FamiliesOf(group);
    bool wrote = false;
    for (bool assembler : {false, true}) {
        std::vector<Family> here;
        for (Family family : families) {
            if (IsAssembler(family) == assembler) here.push_back(family);
        }
        if (here.empty()) continue;
        const char* node_name = assembler ? kAssemblerStatesNode : kCompilerStatesNode;

        ConfigNode* child = owner->FindChild(node_name);
        if (child == nullptr && group == LanguageGroup::kAll && find_setting_node) {
            child = find_setting_node(owner, node_name, kSettingFlagKey);
        }
        if (child == nullptr) continue;

        std::unique_ptr<ConfigNode> clone(child->Clone());
        for (const TargetPageStates& target : targets) {
            for (Family family : here) {
                for (int slot = 0; slot < kSlotCount; ++slot) {
                    if (PageSuffix(family, slot) == nullptr) continue;
                    clone->SetAttribute(PageStateKey(target.name, family, slot),
                                        target.Of(family)[slot]);
                }
            }
        }
        if (commit) commit(child, clone.get());
        wrote = true;
    }
    return wrote;
}

bool CommitLocalConfigure(ConfigNode* node, const std::vector<bool>& pages_changed,
                          const CommitNodeFn& commit) {
    bool changed = false;
    for (bool page : pages_changed) changed = changed || page;
    if (node == nullptr) return changed;
    std::unique_ptr<ConfigNode> clone(node->Clone());
    clone->SetAttributeInt(kLocalConfigureKey, changed ? 1 : 0);
    if (commit) commit(node, clone.get());
    return changed;
}

}  // namespace ads::options
