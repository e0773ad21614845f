// What the CodeWarrior export reader makes of an export: the targets with
// their settings and tool panels, the group tree with the files found for
// it, and the notes on what could not be taken over. The importer owns one
// model for the duration of one import.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace ads::import {

// The ADS tool panels of a target. The first seven are the tools, in the
// order of the table of tool names (0 to 6); the target panel comes last.
enum PanelKind : int {
    kPanelAssembler = 0,
    kPanelArmC,
    kPanelArmCpp,
    kPanelThumbC,
    kPanelThumbCpp,
    kPanelLinker,
    kPanelFromElf,
    kPanelTarget,
    kPanelCount
};
constexpr int kToolPanelCount = 7;

// The rows of each panel record, one string per switch the panel carries.
// Each row is empty or holds the looked-up value (the "-cpu" and "-fpu" rows
// hold the whole switch, "-cpu ARM920T").
namespace asm_row {
enum : int {
    kCpu, kFpu, kByteSex, kCodeSize, kInterwork, kRopi, kRwpi, kSwst, kDebug, kSplitLdm, kKeep,
    kWarn, kCheckRegisters, kEscapes, kList, kTerse, kXref, kVia, kDefinitions, kCount
};
}
namespace cc_row {
enum : int {
    kCpu, kFpu, kByteSex, kInterwork, kRopi, kRwpi, kSwst, kDebugTables, kOptLevel, kSignedChar,
    kAreaPerFunction, kSplitLdm, kAutoFloat, kNoWarnings, kInline, kNoInline, kVia,
    // The further '=' switches of the compiler panels.
    kOptGoal, kNoPreproSymbols, kEnumInt, kLanguage, kWarningLetters, kErrorLetters,
    kAllWarnings, kPrefixFile, kAssemblyOut,
    kDefinitions, kCount
};
}
namespace link_row {
enum : int {
    kLinkType, kEntry, kScatter, kRoBase, kRwBase, kFirst, kLast, kRemoveRo, kRemoveRw, kRemoveZi,
    kDebug, kScanLib, kArmLib, kLocals, kVerbose, kStrict, kMap, kSymbols, kMangling, kXref, kList,
    kCallgraph, kInfoSizes, kInfoTotals, kInfoUnused, kInfoVeneers, kUnresolved, kVia, kCount
};
}
namespace elf_row {
enum : int { kFormat, kOutput, kCount };
}
namespace target_row {
enum : int { kOutputType, kOutputName, kNoProjectName, kCount };
}

struct PanelRecord {
    bool present = false;
    std::vector<std::string> rows;         // one per row of the panel's kind
    std::vector<std::string> definitions;  // the copies the definitions row joins
    std::vector<std::string> definition_lines;  // the lines they were copied from
    std::vector<std::string> unknown;      // option lines that no row names
};

struct SearchPath {
    std::string path;       // with its macro: "{Project}\src"
    bool recursive = false;
};

struct FileMapping {
    std::string file_type;
    std::string extension;  // ".c"
    std::string compiler;   // "ARM C Compiler"
};

// The "Linker" setting and the three settings after it, by position.
struct LinkerSetting {
    bool present = false;
    std::string linker;       // "None" reads as empty
    std::string pre_linker;
    std::string post_linker;  // "None": no step after the link
    std::string output;       // empty or "None" reads as "{Project}"
};

struct ImportTarget {
    std::string name;
    LinkerSetting linker;
    std::vector<FileMapping> mappings;
    std::vector<SearchPath> user_paths;
    std::vector<SearchPath> system_paths;
    std::array<PanelRecord, kPanelCount> panels;
    std::string debug_choice;
};

struct FileRef {
    std::string name;  // the PATH text
    std::string path;  // where it was found, relative to the export's folder when below it
};

// One entry of GROUPLIST or of a group: a file, or a group with its own
// files and groups in the order the export lists them.
struct GroupEntry {
    bool is_group = false;
    std::string name;                 // a group's name
    FileRef file;                     // a file's reference
    std::vector<GroupEntry> entries;  // a group's entries
};

struct ImportModel {
    // The export's folder: file references and the relative paths of the
    // panels start from it.
    std::string folder;
    std::vector<ImportTarget> targets;
    size_t target_count = 0;
    std::vector<std::string> target_order;
    std::vector<GroupEntry> groups;
    // What the reader could not take over, one sentence each.
    std::vector<std::string> notes;
    // Why the read failed; empty after a successful read.
    std::string failure;
};

}  // namespace ads::import
