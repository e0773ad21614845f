// Page states and where they are kept.
//
// A PageState is one settings page's controls as decimal integers separated
// by commas ("%d,%d,%d,%d" for a 4-value page; the pages use 4, 5, 6, 7 and
// 16 values). A check box holds 0 or 1, a radio group or combo box the index
// of its entry. -1 means "not set here": the position takes the value of the
// tool-wide option string. Text pages (defines, predefines, via files, the
// listing dimensions) hold their text instead.
//
// Each tool family keeps a set of 16 slots per target, one slot per page at
// a fixed place (CompilerSlot, AssemblerSlot). In the project tree the slots
// are attributes of a settings child of some owner node: "ADS_CParam" for
// the four compiler families, "ADS_AsmParam" for the assembler. The key is
// target name + family suffix + page suffix ("Debug_ArmC_Warnings",
// "Debug_Asm_Tar"; "_ArmC_Tar" for a target without a name).
//
// Owners: the target-level states of a target live under the project root
// (the "OrvaneProject" node); a file's own states live under its "File" node
// (the per-file settings child, same keys); a folder with its own settings
// keeps them under its "Filter" node. Loading reads one owner; nothing here
// falls back from one owner to another.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/project_keys.h"

namespace ads::options {

constexpr int kUnset = -1;
constexpr int kSlotCount = 16;

using PageStateSet = std::array<std::string, kSlotCount>;

// Writes `count` values with "%d" separated by commas.
std::string FormatPageState(const int* values, int count);

// Reads like a formatted scan with the format of `count` values: each value
// may be preceded by white space and must be followed by a comma directly.
// Reading stops at the first mismatch; the positions not reached keep what
// they held. Returns the number of values read. Values beyond the 32-bit
// range are clamped to it.
int ScanPageState(const std::string& text, int* values, int count);

template <size_t N>
std::string FormatPageState(const std::array<int, N>& values) {
    return FormatPageState(values.data(), static_cast<int>(N));
}
template <size_t N>
int ScanPageState(const std::string& text, std::array<int, N>& values) {
    return ScanPageState(text, values.data(), static_cast<int>(N));
}
// The overlay of one integer page: every position of the target's state
// that is -1 takes the tool-wide value at that position. Both states are read
// over all -1 first, so a target page never stored takes the tool-wide page
// whole, and an empty tool-wide state changes nothing.
template <size_t N>
std::array<int, N> OverlayValues(const std::array<int, N>& wide, const std::array<int, N>& target) {
    std::array<int, N> out = target;
    for (size_t i = 0; i < N; ++i) {
        if (out[i] == kUnset) out[i] = wide[i];
    }
    return out;
}
// All -1 with the target's state read over it.
template <size_t N>
std::array<int, N> PageValues(const std::string& state) {
    std::array<int, N> values;
    values.fill(kUnset);
    ScanPageState(state, values);
    return values;
}

enum class Family { kArmC, kThumbC, kArmCpp, kThumbCpp, kArmAsm };
constexpr int kFamilyCount = 5;

// Slots of the four compiler families.
enum CompilerSlot : int {
    kCcTar = 0,
    kCcAtpcs = 1,
    kCcWarnings = 2,
    kCcErrors = 3,
    kCcDebugOpt = 4,
    kCcCodeGen = 5,
    kCcPrePro = 6,
    kCcExtras = 7,
};

// Slots of the assembler.
enum AssemblerSlot : int {
    kAsmTar = 0,
    kAsmAtpcs = 1,
    kAsmOpt = 2,
    kAsmLc = 3,
    kAsmLcPg1 = 4,
    kAsmLcPg2 = 5,
    kAsmPds = 6,
    kAsmEts = 7,
};

inline constexpr const char* kCompilerStatesNode = config::kCParamKey;
inline constexpr const char* kAssemblerStatesNode = config::kAsmParamKey;
inline constexpr const char* kSettingFlagKey = config::kSettingsFlagKey;
using config::kLocalConfigureKey;

bool IsAssembler(Family family);
const char* FamilySuffix(Family family);   // "_ArmC" ... "" for the assembler
const char* StatesNodeName(Family family); // "ADS_CParam" or "ADS_AsmParam"
// The page suffix of a slot ("_Tar", "_Asm_LC_PG1"), null for an unused slot.
const char* PageSuffix(Family family, int slot);
std::string PageStateKey(const std::string& target, Family family, int slot);

// Reads the family's states of one target from owner's settings child into
// `states`. Without the child nothing is read; an absent key leaves its slot.
void LoadPageStates(const ConfigNode* owner, const std::string& target, Family family,
                    PageStateSet& states);

// The page-state groups of the settings dialog.
enum class LanguageGroup : int { kC = 1, kAssembler = 2, kCpp = 3, kAll = 7 };
std::vector<Family> FamiliesOf(LanguageGroup group);

struct TargetPageStates {
    std::string name;
    std::array<PageStateSet, kFamilyCount> sets;

    PageStateSet& Of(Family family) { return sets[static_cast<int>(family)]; }
    const PageStateSet& Of(Family family) const { return sets[static_cast<int>(family)]; }
};

// Loads the group's families for every target in `targets`.
void LoadPageStates(const ConfigNode* owner, LanguageGroup group,
                    std::vector<TargetPageStates>& targets);

// The host's services, shaped like its slots: find (and, when missing,
// create tagged with flag_key) the settings child `key` of `node`; store an
// edited copy of `node`.
using FindSettingNodeFn =
    std::function<ConfigNode*(ConfigNode* node, const char* key, const char* flag_key)>;
using CommitNodeFn = std::function<void(ConfigNode* node, ConfigNode* edited)>;

// Writes every slot of the group's families back under its key, one clone
// and one commit per settings child. A missing child is asked from the host
// (with "ADS_CfgFlag") when the group is kAll; for the single-language groups
// only an existing child is written. Returns false when nothing was written.
bool SavePageStates(ConfigNode* owner, LanguageGroup group,
                    const std::vector<TargetPageStates>& targets,
                    const FindSettingNodeFn& find_setting_node, const CommitNodeFn& commit);

// Ors the pages' changed flags and commits "LocalConfigure" (1 or 0) on
// `node` through a clone. Returns the or.
bool CommitLocalConfigure(ConfigNode* node, const std::vector<bool>& pages_changed,
                          const CommitNodeFn& commit);

}  // namespace ads::options
