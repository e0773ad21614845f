#include "options/assembler_options.h"

#include "options/option_error.h"
#include "options/option_tables.h"

namespace ads::options {

namespace {

// The orders in which switches are written, where they are not the pages'.
constexpr int kTargetWriteOrder[] = {kAsmTarByteOrder, kAsmTarInitialState};
constexpr int kAtpcsWriteOrder[] = {kAsmRwpi, kAsmInterwork, kAsmRopi, kAsmSoftwareStack};
constexpr int kOptionWriteOrder[] = {kAsmKeep, kAsmSplitLdm, kAsmNoWarn, kAsmNoEsc, kAsmCheckRegList, kAsmDebug};
constexpr int kListingWriteOrder[] = {kAsmContinuous, kAsmListOn, kAsmTerse, kAsmXref};

constexpr char kPredefineSwitch[] = " -PD";

}  // namespace

// The plain switches come from the tables; what follows them is what the
// option rules make irregular.
AssemblerSettings ReadAssemblerSettings(const std::string& s, const PathConverter& convert) {
    AssemblerSettings r;
    ReadPlainRows(PageOf(AssemblerPage::kTarget), s, r.target);
    r.target[kAsmTarProcessor] = FindProcessor(ValueAfter(s, " -cpu ").value_or(kDefaultProcessorName));
    r.target[kAsmTarFpu] = ReadFpu(s);

    // ATPCS: as for the compilers, the boxes count only when " -apcs " is
    // there; "/swstna" is tested before "/swst", which is a prefix of it.
    ReadPlainRows(PageOf(AssemblerPage::kAtpcs), s, r.atpcs);
    const bool apcs = Contains(s, " -apcs ");
    if (!apcs) r.atpcs[kAsmInterwork] = r.atpcs[kAsmRopi] = r.atpcs[kAsmRwpi] = 0;
    r.atpcs[kAsmSoftwareStack] = !apcs                     ? 1
                                 : Contains(s, "/swstna") ? 2
                                 : Contains(s, "/swst")   ? 0
                                                          : 1;

    ReadPlainRows(PageOf(AssemblerPage::kOption), s, r.option);
    r.predefines = PredefinesText(PredefineEntries(s));
    ReadPlainRows(PageOf(AssemblerPage::kListingControl), s, r.listing);
    r.length = SpacedValueAfter(s, " -length").value_or(kDefaultListingLength);
    r.width = SpacedValueAfter(s, " -width").value_or(kDefaultListingWidth);
    r.extras = ReadViaText(s, convert);
    return r;
}

PageStateSet ReadAssemblerOptions(const std::string& options, const PathConverter& convert) {
    return ToPageStates(ReadAssemblerSettings(options, convert));
}

// Check boxes are set for any value but 0; radio groups and combos select by
// exact index (see WriteCompilerOptions).
std::string WriteAssemblerOptions(const AssemblerSettings& a) {
    const int processor = a.target[kAsmTarProcessor];
    if (AnyUnset(a) || processor < 0 || processor >= kProcessorCount) throw OptionError(kAssemblerOptionError);
    std::string out;

    const PageTable& target = PageOf(AssemblerPage::kTarget);
    AppendSwitches(out, target, a.target, kTargetWriteOrder);
    if (processor != kDefaultProcessor) out += std::string(" -cpu ") + kProcessors[processor];
    AppendSwitches(out, target, a.target, {kAsmTarFpu});

    // " -apcs none" wins over every other box; software stack "Off" with no
    // box set writes no " -apcs " at all.
    const PageTable& atpcs = PageOf(AssemblerPage::kAtpcs);
    AppendSwitches(out, atpcs, a.atpcs, {kAsmRegNames});
    if (a.atpcs[kAsmCallingStandard] == 1) {
        AppendSwitches(out, atpcs, a.atpcs, {kAsmCallingStandard});
    } else if (!(a.atpcs[kAsmInterwork] == 0 && a.atpcs[kAsmRopi] == 0 && a.atpcs[kAsmRwpi] == 0 &&
                 a.atpcs[kAsmSoftwareStack] == 1)) {
        out += " -apcs ";
        AppendSwitches(out, atpcs, a.atpcs, kAtpcsWriteOrder);
    }

    AppendSwitches(out, PageOf(AssemblerPage::kOption), a.option, kOptionWriteOrder);
    out += a.predefines;
    // Only the continuous page writes a length: the length field itself is
    // never written, on purpose.
    AppendSwitches(out, PageOf(AssemblerPage::kListingControl), a.listing, kListingWriteOrder);
    // The assembler's own default width is not written.
    if (!a.width.empty() && a.width != kDefaultListingWidth) out += " -width " + a.width;
    out += a.extras;
    return out;
}

std::string EffectiveAssemblerOptions(const std::string& tool_wide, const PageStateSet& target,
                                      const PathConverter& convert) {
    return WriteAssemblerOptions(
        OverlayPages(ReadAssemblerSettings(tool_wide, convert), FromPageStates<AssemblerSettings>(target)));
}

const char* DirectiveText(Directive directive) { return kDirectiveChoices[static_cast<int>(directive)].label; }

const char* DirectiveValueLabel(Directive directive) {
    static const char* const kValueLabels[] = {"Numeric", "Logical", "String Value"};
    return kValueLabels[static_cast<int>(directive)];
}

std::string PredefineEntry(const std::string& variable, Directive directive,
                           const std::string& value) {
    return variable + " " + DirectiveText(directive) + " " + value;
}

std::string PredefineSwitch(const std::string& entry) {
    return std::string(kPredefineSwitch) + " " + QuoteIfNeeded(entry);
}

std::string PredefinesText(const std::vector<std::string>& entries) {
    std::string text;
    for (const std::string& entry : entries) text += PredefineSwitch(entry);
    return text;
}

// After each " -PD" the blanks are skipped and one value is read (quoted or
// up to the next blank); the search goes on behind that value, so a " -PD"
// inside a quoted entry is part of the entry. An empty value is no entry.
std::vector<std::string> PredefineEntries(const std::string& text) {
    std::vector<std::string> entries;
    size_t at = text.find(kPredefineSwitch);
    while (at != std::string::npos) {
        size_t pos = text.find_first_not_of(' ', at + sizeof kPredefineSwitch - 1);
        if (pos == std::string::npos) break;
        std::string entry = ReadValue(text, pos);
        if (!entry.empty()) entries.push_back(entry);
        at = text.find(kPredefineSwitch, pos);
    }
    return entries;
}

bool VariableExists(const std::vector<std::string>& entries, const std::string& variable) {
    const std::string needle = variable + " ";
    for (const std::string& entry : entries) {
        if (entry.find(needle) != std::string::npos) return true;
    }
    return false;
}

}  // namespace ads::options
