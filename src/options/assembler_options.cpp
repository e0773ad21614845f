#include "options/assembler_options.h"

#include "options/option_error.h"
#include "options/option_tables.h"

namespace ads::options {

const SwitchRow kAssemblerOptionRows[6] = {
    {"Check Register lists", " -checkreglist"},
    {"No Warnings", " -nowarn"},
    {"Source Line Debug", " -g"},
    {"Keep Symbols", " -keep"},
    {"Ignore C_style escape chare", " -noesc"},
    {"Fault Long running Load and Store Multiple", " -split_ldm"},
};

namespace {

// -keep -split_ldm -nowarn -noesc -checkreglist -g
constexpr int kOptionWriteOrder[] = {3, 5, 1, 4, 0, 2};

constexpr char kPredefineSwitch[] = " -PD";

}  // namespace

AssemblerSettings::AssemblerSettings() {
    target.fill(kUnset);
    atpcs.fill(kUnset);
    option.fill(kUnset);
    listing.fill(kUnset);
}

bool AssemblerSettings::operator==(const AssemblerSettings& o) const {
    return target == o.target && atpcs == o.atpcs && option == o.option &&
           listing == o.listing && width == o.width && length == o.length &&
           predefines == o.predefines && extras == o.extras;
}

// The reading order of every page is here, top to bottom.
AssemblerSettings ReadAssemblerSettings(const std::string& s, const PathConverter& convert) {
    AssemblerSettings r;

    // Target
    r.target[kAsmTarByteOrder] = Contains(s, " -bi") ? 0 : 1;
    r.target[kAsmTarInitialState] = Contains(s, " -16") ? 1 : 0;
    r.target[kAsmTarProcessor] = FindProcessor(ValueAfter(s, " -cpu ").value_or(kDefaultProcessorName));
    r.target[kAsmTarFpu] = ReadFpu(s);

    // ATPCS: as for the compilers, the boxes count only when " -apcs " is
    // there; "/swstna" is tested before "/swst", which is a prefix of it.
    r.atpcs[kAsmRegNames] = Contains(s, " -regnames none") ? 1 : 0;
    r.atpcs[kAsmCallingStandard] = Contains(s, " -apcs none") ? 1 : 0;
    const bool apcs = Contains(s, " -apcs ");
    r.atpcs[kAsmRwpi] = apcs && Contains(s, "/rwpi") ? 1 : 0;
    r.atpcs[kAsmInterwork] = apcs && Contains(s, "/interwork") ? 1 : 0;
    r.atpcs[kAsmRopi] = apcs && Contains(s, "/ropi") ? 1 : 0;
    r.atpcs[kAsmSoftwareStack] = !apcs                     ? 1
                                 : Contains(s, "/swstna") ? 2
                                 : Contains(s, "/swst")   ? 0
                                                          : 1;

    // Option
    for (int i = 0; i < 6; ++i) r.option[i] = Contains(s, kAssemblerOptionRows[i].text) ? 1 : 0;

    // Predefines
    r.predefines = PredefinesText(PredefineEntries(s));

    // Listing Control
    r.listing[kAsmContinuous] = Contains(s, " -length 0") ? 1 : 0;
    r.length = SpacedValueAfter(s, " -length").value_or(kDefaultListingLength);
    r.width = SpacedValueAfter(s, " -width").value_or(kDefaultListingWidth);
    r.listing[kAsmListOn] = Contains(s, " -liston") ? 1 : 0;
    r.listing[kAsmTerse] = Contains(s, " -noterse") ? 0 : 1;
    r.listing[kAsmXref] = Contains(s, " -xref") ? 1 : 0;

    // Extras
    r.extras = ReadViaText(s, convert);
    return r;
}

PageStateSet ReadAssemblerOptions(const std::string& options, const PathConverter& convert) {
    return ToPageStates(ReadAssemblerSettings(options, convert));
}

PageStateSet ToPageStates(const AssemblerSettings& a) {
    PageStateSet states;
    states[kAsmTar] = FormatPageState(a.target);
    states[kAsmAtpcs] = FormatPageState(a.atpcs);
    states[kAsmOpt] = FormatPageState(a.option);
    states[kAsmLc] = FormatPageState(a.listing);
    states[kAsmLcPg1] = a.width;
    states[kAsmLcPg2] = a.length;
    states[kAsmPds] = a.predefines;
    states[kAsmEts] = a.extras;
    return states;
}

AssemblerSettings AssemblerSettingsFromStates(const PageStateSet& states) {
    AssemblerSettings a;
    a.target = PageValues<4>(states[kAsmTar]);
    a.atpcs = PageValues<6>(states[kAsmAtpcs]);
    a.option = PageValues<6>(states[kAsmOpt]);
    a.listing = PageValues<4>(states[kAsmLc]);
    a.width = states[kAsmLcPg1];
    a.length = states[kAsmLcPg2];
    a.predefines = states[kAsmPds];
    a.extras = states[kAsmEts];
    return a;
}

AssemblerSettings OverlayAssemblerSettings(const AssemblerSettings& wide, const AssemblerSettings& target) {
    AssemblerSettings a;
    a.target = OverlayValues(wide.target, target.target);
    a.atpcs = OverlayValues(wide.atpcs, target.atpcs);
    a.option = OverlayValues(wide.option, target.option);
    a.listing = OverlayValues(wide.listing, target.listing);
    a.width = target.width.empty() ? wide.width : target.width;
    a.length = target.length.empty() ? wide.length : target.length;
    a.predefines = wide.predefines + target.predefines;
    a.extras = wide.extras + target.extras;
    return a;
}

AssemblerSettings OverlayAssemblerStates(const PageStateSet& wide, const PageStateSet& target) {
    return OverlayAssemblerSettings(AssemblerSettingsFromStates(wide), AssemblerSettingsFromStates(target));
}

namespace {

template <size_t N>
bool AnyUnset(const std::array<int, N>& values) {
    for (int v : values) {
        if (v == kUnset) return true;
    }
    return false;
}

}  // namespace

// Check boxes are set for any value but 0; radio groups and combos select by
// exact index (see WriteCompilerOptions).
std::string WriteAssemblerOptions(const AssemblerSettings& a) {
    const int processor = a.target[kAsmTarProcessor];
    if (AnyUnset(a.target) || AnyUnset(a.atpcs) || AnyUnset(a.option) || AnyUnset(a.listing) ||
        processor < 0 || processor >= kProcessorCount) {
        throw OptionError(kAssemblerOptionError);
    }
    std::string out;

    // 1.-4. Target
    if (a.target[kAsmTarByteOrder] == 0) out += " -bi";
    if (a.target[kAsmTarInitialState] == 1) out += " -16";
    if (processor != kDefaultProcessor) out += std::string(" -cpu ") + kProcessors[processor];
    const int fpu = a.target[kAsmTarFpu];
    if (fpu >= 0 && fpu < kFpuCount) out += kFpus[fpu].switch_text;

    // 5.-6. ATPCS: " -apcs none" wins over every other box.
    if (a.atpcs[kAsmRegNames] == 1) out += " -regnames none";
    const int stack = a.atpcs[kAsmSoftwareStack];
    if (a.atpcs[kAsmCallingStandard] == 1) {
        out += " -apcs none";
    } else if (!(a.atpcs[kAsmInterwork] == 0 && a.atpcs[kAsmRopi] == 0 && a.atpcs[kAsmRwpi] == 0 &&
                 stack == 1)) {
        out += " -apcs ";
        if (a.atpcs[kAsmRwpi] != 0) out += "/rwpi";
        if (a.atpcs[kAsmInterwork] != 0) out += "/interwork";
        if (a.atpcs[kAsmRopi] != 0) out += "/ropi";
        if (stack == 0) out += "/swst";
        if (stack == 2) out += "/swstna";
    }

    // 7. Option
    for (int i : kOptionWriteOrder) {
        if (a.option[i] != 0) out += kAssemblerOptionRows[i].text;
    }
    // 8. Predefines
    out += a.predefines;
    // 9. Only the continuous page writes a length: the length field itself
    // is never written, on purpose.
    if (a.listing[kAsmContinuous] != 0) out += " -length 0";
    // 10.
    if (a.listing[kAsmListOn] != 0) out += " -liston";
    if (a.listing[kAsmTerse] == 0) out += " -noterse";
    if (a.listing[kAsmXref] != 0) out += " -xref";
    // 11. the assembler's own default width is not written
    if (!a.width.empty() && a.width != kDefaultListingWidth) out += " -width " + a.width;
    // 12. Extras
    out += a.extras;
    return out;
}

std::string EffectiveAssemblerOptions(const std::string& tool_wide, const PageStateSet& target,
                                      const PathConverter& convert) {
    return WriteAssemblerOptions(
        OverlayAssemblerSettings(ReadAssemblerSettings(tool_wide, convert), AssemblerSettingsFromStates(target)));
}

const char* DirectiveText(Directive directive) {
    switch (directive) {
        case Directive::kSeta: return "SETA";
        case Directive::kSetl: return "SETL";
        case Directive::kSets: return "SETS";
    }
    return "SETA";
}

const char* DirectiveValueLabel(Directive directive) {
    switch (directive) {
        case Directive::kSeta: return "Numeric";
        case Directive::kSetl: return "Logical";
        case Directive::kSets: return "String Value";
    }
    return "Numeric";
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
