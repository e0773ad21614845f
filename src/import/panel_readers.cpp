#include "import/panel_readers.h"

#include "import/panel_text.h"

namespace ads::import {

const char* const kPanelDataNames[kPanelCount] = {
    "Panel_for_armasm", "Panel_for_armcc",   "Panel_for_armcpp",  "Panel_for_tcc",
    "Panel_for_tcpp",   "Panel_for_armlink", "Panel_for_fromelf", "Panel_for_armtarget",
};

const char* const kPanelToolNames[kPanelCount] = {
    "ARM Assembler",      "ARM C Compiler", "ARM C++ Compiler", "Thumb C Compiler",
    "Thumb C++ Compiler", "ARM Linker",     "ARM fromELF",      "ARM Target",
};

const char* const kPanelHexNames[kPanelCount] = {
    "41524D20417373656D626C6572",         // ARM Assembler
    "41524D204320436F6D70696C6572",       // ARM C Compiler
    "41524D20432B2B20436F6D70696C6572",   // ARM C++ Compiler
    "5468756D62204320436F6D70696C6572",   // Thumb C Compiler
    "5468756D6220432B2B20436F6D70696C6572",  // Thumb C++ Compiler
    "41524D204C696E6B6572",               // ARM Linker
    "41524D2066726F6D454C46",             // ARM fromELF
    "41524D20546172676574",               // ARM Target
};

const char kDebugChoicePanel[] = "Panel_for_debugchoice";
const char kDebugChoiceHexName[] = "41524D204465627567676572";  // ARM Debugger

namespace {

constexpr RowKind V = RowKind::kValue;

const RowSpec kAssemblerRows[asm_row::kCount] = {
    {"-cpu", '#', "ARM7TDMI", RowKind::kCpu},
    {"-fpu", '#', "None", RowKind::kFpu},
    {".bytesex", '=', "", V},
    {".codesize", '=', "", V},
    {"-apcs.inter", '#', "", V},
    {"-apcs.ropi", '#', "", V},
    {"-apcs.rwpi", '#', "", V},
    {"-apcs.swst", '#', "", V},
    {".debug", '=', "", V},
    {".split_ldm", '=', "", V},
    {".keep", '=', "", V},
    {".warn", '=', "", V},
    {".checkr", '=', "", V},
    {".esc", '=', "", V},
    {"-list", '=', "", V},
    {".terse", '=', "", V},
    {".xref", '=', "", V},
    {"-via", '#', "", V},
    {"-PD", 0, "", RowKind::kPredefines},
};

// The same rows for the four compilers; each reader searches the dump for
// its own compiler's name.
const RowSpec kCompilerRows[cc_row::kCount] = {
    {"-cpu", '#', "ARM7TDMI", RowKind::kCpu},
    {"-fpu", '#', "None", RowKind::kFpu},
    {".bytesex", '=', "", V},
    {"-apcs.inter", '#', "", V},
    {"-apcs.ropi", '#', "", V},
    {"-apcs.rwpi", '#', "", V},
    {"-apcs.swst", '#', "", V},
    {"-g=+", '=', "1", V},
    {"-O.level=", '=', "", V},
    {".schar", '=', "", V},
    {".areaperfn", '=', "", V},
    {"-split_ldm", '=', "", V},
    {"-auto_float_constants", '=', "", V},
    {".nowarn", '=', "", V},
    {"-O.inline", '=', "", V},
    {"-Ono_inline", '=', "", V},
    {"-via", '=', "", V},
    {"-O.goal", '=', "", V},
    {".gtp", '=', "", V},
    {".enumint", '=', "", V},
    {".lang", '=', "", V},
    {"-W=", '=', "", V},
    {"-E=", '=', "", V},
    {".fx", '=', "", V},
    {".prefix", '=', "", V},
    {".asmout", '=', "", V},
    {"-D", 0, "", RowKind::kDefinitions},
};

const RowSpec kLinkerRows[link_row::kCount] = {
    {".linktype", '#', "", RowKind::kLinkType},
    {"-entry", '#', "", V},  // no entry point unless the panel names one
    {"-scatter", '#', "", V},
    {"-ro-base", '#', "", V},
    {"-rw-base", '#', "", V},
    {"-first", '#', "", V},
    {"-last", '#', "", V},
    {"-remove.ro", '#', "", V},
    {"-remove.rw", '#', "", V},
    {"-remove.zi", '#', "", V},
    {".debug", '#', "", V},
    {".scanlib", '#', "", V},
    {".armlib", '#', "", V},
    {".locals", '#', "", V},
    {".verbose", '#', "", V},
    {".strict", '#', "", V},
    {".map", '#', "", V},
    {".symbols", '#', "", V},
    {".mangling", '#', "", V},
    {".xref", '#', "", V},
    {"-list", '#', "", V},
    {".callgraph", '#', "", V},
    {"-info.size", '#', "", V},
    {"-info.total", '#', "", V},
    {"-info.unused", '#', "", V},
    {"-info.veneers", '#', "", V},
    {"-unresolved", '#', "", V},
    {"-via", '#', "", V},
};

const RowSpec kFromElfRows[elf_row::kCount] = {
    {".format", '=', "", V},
    {"-output", '=', "", V},
};

const RowSpec kTargetRows[target_row::kCount] = {
    {"outputtype", '#', "", V},
    {"-outputname", '#', "", RowKind::kOutputName},
    {"useprojectname", '#', "1", RowKind::kProjectName},
};

const char kPartialLinkLine[] = ".linktype=-partial";

bool Begins(const std::string& line, const char* prefix) {
    return line.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

}  // namespace

PanelSpec SpecOf(PanelKind kind) {
    switch (kind) {
        case kPanelAssembler: return {kAssemblerRows, asm_row::kCount};
        case kPanelArmC:
        case kPanelArmCpp:
        case kPanelThumbC:
        case kPanelThumbCpp: return {kCompilerRows, cc_row::kCount};
        case kPanelLinker: return {kLinkerRows, link_row::kCount};
        case kPanelFromElf: return {kFromElfRows, elf_row::kCount};
        case kPanelTarget: return {kTargetRows, target_row::kCount};
        default: return {nullptr, 0};
    }
}

PanelRecord ReadPanel(PanelKind kind, const std::string& panel_text) {
    PanelRecord record;
    record.present = true;
    const PanelSpec spec = SpecOf(kind);
    const std::vector<std::string> lines = SplitOptionLines(panel_text);
    record.rows.resize(static_cast<size_t>(spec.count));
    for (int i = 0; i < spec.count; ++i) {
        const RowSpec& row = spec.rows[i];
        std::string& out = record.rows[static_cast<size_t>(i)];
        if (row.kind == RowKind::kDefinitions || row.kind == RowKind::kPredefines) {
            record.definition_lines = DefinitionLines(lines, row.name);
            record.definitions =
                row.kind == RowKind::kPredefines ? record.definition_lines : DefinitionCopies(lines, row.name);
            out = JoinDefinitions(record.definitions);
            continue;
        }
        const std::string value = LookupSwitch(lines, row.name, row.separator, row.default_text);
        switch (row.kind) {
            case RowKind::kCpu:
                out = "-cpu " + value;
                break;
            case RowKind::kFpu:
                out = value.empty() ? std::string() : "-fpu " + value;
                break;
            case RowKind::kLinkType: {
                bool partial = false;
                for (const std::string& line : lines) partial = partial || line == kPartialLinkLine;
                out = partial ? "-partial" : value;
                break;
            }
            case RowKind::kProjectName:
                out = value == "0" || value == "false" || value == "no" ? " --no_useprojectname" : "";
                break;
            case RowKind::kOutputName:
                out = value.empty() ? std::string() : "-outputname " + value;
                break;
            default:
                out = value;
        }
    }
    for (const std::string& line : lines) {
        bool known = false;
        for (int i = 0; i < spec.count && !known; ++i) known = Begins(line, spec.rows[i].name);
        if (!known) record.unknown.push_back(line);
    }
    return record;
}

PanelKind PanelOfName(const std::string& name) {
    for (int i = 0; i < kPanelCount; ++i) {
        if (name == kPanelDataNames[i]) return static_cast<PanelKind>(i);
    }
    return kPanelCount;
}

}  // namespace ads::import
