// Page states and where they are kept.
//
// A PageState is one settings page's controls as decimal integers separated
// by commas ("%d,%d,%d,%d" for a 4-value page; a page's size follows from its
// table of rows). A check box holds 0 or 1, a radio group or combo box the
// index of its entry. -1 means "not set here": the position takes the value
// of the tool-wide option string. Text pages (defines, predefines, via files,
// the listing dimensions) hold their text instead.
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
// keeps them under its "Filter" node. Loading reads one owner; the
// effective option string (effective_options.h) lays the owners from the
// root down over one another.
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
// A settings struct (CompilerSettings, AssemblerSettings) names its pages
// once, in a static ForEachPage(visit) that calls visit(slot, &field, merge)
// for each: an integer page is a std::array<int, N>, a text page a
// std::string. The functions below walk that list, so converting to and
// from page states, the overlay and the unresolved test are written once.
enum class Merge {
    kByPosition,    // integer page: every -1 of the target takes the tool-wide value
    kJoined,        // text page: tool-wide text, then the target's
    kTargetWhenSet, // single value: the target's text unless it is empty
};

namespace page_fields {

template <size_t N>
void Clear(std::array<int, N>& values) { values.fill(kUnset); }
inline void Clear(std::string& text) { text.clear(); }

// A page from its state: all -1 (or empty) with the state read over it.
template <size_t N>
void Read(std::array<int, N>& values, const std::string& state) {
    values.fill(kUnset);
    ScanPageState(state, values);
}
inline void Read(std::string& text, const std::string& state) { text = state; }

template <size_t N>
std::string Write(const std::array<int, N>& values) { return FormatPageState(values); }
inline std::string Write(const std::string& text) { return text; }

template <size_t N>
void Overlay(std::array<int, N>& out, const std::array<int, N>& wide, const std::array<int, N>& target, Merge) {
    for (size_t i = 0; i < N; ++i) out[i] = target[i] == kUnset ? wide[i] : target[i];
}
inline void Overlay(std::string& out, const std::string& wide, const std::string& target, Merge merge) {
    out = merge == Merge::kJoined ? wide + target : target.empty() ? wide : target;
}

template <size_t N>
bool Unset(const std::array<int, N>& values) {
    for (int v : values) {
        if (v == kUnset) return true;
    }
    return false;
}
inline bool Unset(const std::string&) { return false; }

}  // namespace page_fields

template <class Settings>
void ClearPages(Settings& s) {
    Settings::ForEachPage([&](int, auto field, Merge) { page_fields::Clear(s.*field); });
}

template <class Settings>
PageStateSet ToPageStates(const Settings& s) {
    PageStateSet states;
    Settings::ForEachPage([&](int slot, auto field, Merge) { states[slot] = page_fields::Write(s.*field); });
    return states;
}

// Positions not in a state stay -1.
template <class Settings>
Settings FromPageStates(const PageStateSet& states) {
    Settings s;
    Settings::ForEachPage([&](int slot, auto field, Merge) { page_fields::Read(s.*field, states[slot]); });
    return s;
}

// The target's pages over the tool-wide ones, each page by its merge rule. A
// tool-wide page that is all -1 changes nothing.
template <class Settings>
Settings OverlayPages(const Settings& wide, const Settings& target) {
    Settings s;
    Settings::ForEachPage([&](int, auto field, Merge merge) {
        page_fields::Overlay(s.*field, wide.*field, target.*field, merge);
    });
    return s;
}

// The layers laid over one another in order, each over what the ones
// before it made.
template <class Settings>
Settings OverlayLayers(Settings s, const std::vector<PageStateSet>& layers) {
    for (const PageStateSet& layer : layers) s = OverlayPages(s, FromPageStates<Settings>(layer));
    return s;
}

// True when any position of an integer page is still -1.
template <class Settings>
bool AnyUnset(const Settings& s) {
    bool unset = false;
    Settings::ForEachPage([&](int, auto field, Merge) { unset = unset || page_fields::Unset(s.*field); });
    return unset;
}

template <class Settings>
bool SamePages(const Settings& a, const Settings& b) {
    bool same = true;
    Settings::ForEachPage([&](int, auto field, Merge) { same = same && a.*field == b.*field; });
    return same;
}

enum class Family { kArmC, kThumbC, kArmCpp, kThumbCpp, kArmAsm };
constexpr int kFamilyCount = 5;

// Slots of the four compiler families and of the assembler, in page-state sets.
enum CompilerSlot : int {
    kCcTar, kCcAtpcs, kCcWarnings, kCcErrors, kCcDebugOpt, kCcCodeGen, kCcPrePro, kCcExtras };
enum AssemblerSlot : int { kAsmTar, kAsmAtpcs, kAsmOpt, kAsmLc, kAsmLcPg1, kAsmLcPg2, kAsmPds, kAsmEts };

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
