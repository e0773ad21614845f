// The "ARM FromELF" page: the image converter's switches. It keeps no page
// state; the option string it builds is what the target stores. The combo
// texts are the page's own, "Text imformation" included.
#pragma once

#include "options/option_rows.h"
#include "options/switch_page.h"

namespace ads::options {

inline constexpr char kFromElfCaption[] = "ADS Tools ARM FromELF";

enum FromElfPosition : int {
    kIncludeDebug, kOutputFormat, kTextVerbose, kTextData, kTextDebugTable, kTextSize, kTextStrings, kTextSymbols,
    kTextDisassemble, kTextRelocations };
enum FromElfText : int { kOutputFile };

// The entries of the format combo, by index.
enum FromElfFormat : int {
    kFormatAif, kFormatAifBin, kFormatBin, kFormatM32, kFormatI32, kFormatIhf, kFormatText, kFormatElf, kFormatBhx,
    kFormatFieldOffsets, kFormatVhx };
inline constexpr OptionChoice kFromElfFormats[] = {
    {"Executable AIF", " -aif"},
    {"Non executable AIF", " -aifbin"},
    {"Plain binary", " -bin"},
    {"Motorola 32 bit Hex", " -m32"},
    {"Intel 32 bit Hex", " -i32"},
    {"Intellec Hex", " -ihf"},
    {"Text imformation", ""},
    {"ELF", " -elf"},
    {"Byte Oriented Hex", " -bhx"},
    {"Structure field Offsets", " -fieldoffsets"},
    {"Verilog Hex", " -vhx"},
    {},
};

inline constexpr char kTextFlagsGroup[] = "Text format flags";
inline constexpr OptionRow kFromElfRows[] = {
    Check("Include debug sections in object", "Options", kIncludeDebug, "", " -nodebug"),
    Combo("", "Output Format", kOutputFormat, ChoiceSource::kListed, kFromElfFormats),
    TextRow(ControlKind::kEdit, "", "Output file name", kOutputFile),
    Browse("...", "Output file name", kOutputFile, "All Files (*.*)|*.*||"),
    Check("Verbose", kTextFlagsGroup, kTextVerbose, " -v"),
    Check("Print contents of data section", kTextFlagsGroup, kTextData, " -d"),
    Check("Print debug table", kTextFlagsGroup, kTextDebugTable, " -g"),
    Check("Print object size", kTextFlagsGroup, kTextSize, " -z"),
    Check("Print string table", kTextFlagsGroup, kTextStrings, " -t"),
    Check("Print symbol table", kTextFlagsGroup, kTextSymbols, " -s"),
    Check("Disassemble code", kTextFlagsGroup, kTextDisassemble, " -c"),
    Check("Print relocation inform", kTextFlagsGroup, kTextRelocations, " -r"),
};
inline constexpr PageTable kFromElfPage = Page("ARM FromELF", -1, kFromElfRows);
extern const SwitchPageRules kFromElfRules;

}  // namespace ads::options
