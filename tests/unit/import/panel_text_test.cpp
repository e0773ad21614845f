// Panel dumps decoded into option text, switches looked up in it, and the
// records the panel readers fill.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "import/panel_readers.h"
#include "import/panel_text.h"
#include "import_test_support.h"

namespace ads::import {
namespace {

using test::Hex;

const std::string kAsmName = "41524D20417373656D626C6572";  // ARM Assembler

struct DecodeCase {
    const char* name;
    std::string value;
    std::string expected;
};

TEST(PanelText, DecodesTheTextBehindThePanelName) {
    const DecodeCase cases[] = {
        {"name, zero fill, text", "00010002" + kAsmName + "000000" + Hex("-keep\n"), "-keep\n"},
        {"blanks of the dump anywhere", "0001 " + kAsmName + " 0000 00 2D6B 6565 70", "-keep"},
        {"zero bytes after the text end it", kAsmName + "00" + Hex("-g") + "0000" + Hex("junk"), "-g"},
        {"name not there", "0001" + Hex("ARM Linker") + "00" + Hex("-g"), ""},
        {"only zeros after the name", kAsmName + "0000 0000", ""},
        {"nothing after the name", kAsmName, ""},
        {"empty value", "", ""},
        // The first byte 0x0A: its high '0' is skipped with the fill, and the
        // odd count of digits gets its '0' back.
        {"first byte below 0x10", kAsmName + "0000" + Hex("\n-g\n"), "\n-g\n"},
        {"first byte 0x01", kAsmName + "00" + Hex("\x01-g"), "\x01-g"},
    };
    for (const DecodeCase& c : cases) EXPECT_EQ(c.expected, DecodePanelText(c.value, kAsmName)) << c.name;
}

TEST(PanelText, AFirstByteBelowSixteenStillDecodesThanksToTheOddLengthFix) {
    // "\t-g": 09 2D 67; the skip eats "0", leaving "92D67", odd: "092D67".
    EXPECT_EQ("\t-g", DecodePanelText(kAsmName + "0009" + "2D67", kAsmName));
}

TEST(PanelText, LowerCaseHexDigitsDecodeToWrongBytes) {
    // Only upper-case digits are supported: 'd' counts 'd' - '7' = 45.
    const std::string text = DecodePanelText(kAsmName + "00" + "2d6b", kAsmName);
    ASSERT_EQ(2u, text.size());
    EXPECT_NE("-k", text);
    EXPECT_EQ(static_cast<char>(2 * 16 + ('d' - '7')), text[0]);
    // and a lower-case panel name is not found at all
    EXPECT_EQ("", DecodePanelText("41524d20417373656d626c6572" + Hex("-g"), kAsmName));
}

TEST(PanelText, AHugeValueDecodesWhole) {
    const std::string line = "-DNAME=1\n";
    std::string options;
    while (options.size() < (1u << 20)) options += line;
    const std::string value = kAsmName + "00" + Hex(options);
    EXPECT_EQ(options, DecodePanelText(value, kAsmName));
}

TEST(PanelText, OptionLinesLeaveEmptyLinesOut) {
    EXPECT_EQ((std::vector<std::string>{"-a", "b", " "}), SplitOptionLines("\n-a\n\nb\n \n"));
    EXPECT_TRUE(SplitOptionLines("").empty());
    EXPECT_TRUE(SplitOptionLines("\n\n").empty());
}

struct LookupCase {
    const char* name;
    std::vector<std::string> lines;
    std::string switch_name;
    char separator;
    std::string default_text;
    std::string expected;
};

TEST(SwitchLookup, FindsTheFirstLineThatBeginsWithTheName) {
    const LookupCase cases[] = {
        {"value after '#'", {"-cpu#ARM920T"}, "-cpu", '#', "ARM7TDMI", "ARM920T"},
        {"value after '='", {".bytesex=big"}, ".bytesex", '=', "", "big"},
        {"only the first separator counts", {"-via=a=b"}, "-via", '=', "", "a=b"},
        {"the first matching line wins", {"-cpu#ARM9TDMI", "-cpu#ARM920T"}, "-cpu", '#', "", "ARM9TDMI"},
        {"a prefix of a longer name matches", {"-cpux#Y"}, "-cpu", '#', "", "Y"},
        {"case counts", {"-CPU#Y"}, "-cpu", '#', "D", "D"},
        {"no separator: the default", {"-cpu ARM920T"}, "-cpu", '#', "ARM7TDMI", "ARM7TDMI"},
        {"the other separator is no separator", {".debug#on"}, ".debug", '=', "off", "off"},
        {"not found: the default", {"-fpu#None"}, "-cpu", '#', "ARM7TDMI", "ARM7TDMI"},
        {"-fpu not found: empty, whatever the default", {"-cpu#X"}, "-fpu", '#', "None", ""},
        {"-fpu found without a separator: the default", {"-fpu"}, "-fpu", '#', "None", "None"},
        {"a name holding the separator", {"-g=+"}, "-g=+", '=', "1", "+"},
        {"empty value", {"-via#"}, "-via", '#', "x", ""},
    };
    for (const LookupCase& c : cases) {
        EXPECT_EQ(c.expected, LookupSwitch(c.lines, c.switch_name, c.separator, c.default_text)) << c.name;
    }
}

TEST(Definitions, EachIsCutBeforeItsFirstQuestionMarkOrDot) {
    const std::vector<std::string> lines = {"-DDEBUG", "-DLEVEL=2?1", "-DVERSION=1.2", "-cpu#X", "-D", "x-DNOT"};
    const std::vector<std::string> copies = DefinitionCopies(lines, "-D");
    EXPECT_EQ((std::vector<std::string>{"-DDEBUG", "-DLEVEL=2", "-DVERSION=1", "-D"}), copies);
    EXPECT_EQ("-DDEBUG -DLEVEL=2 -DVERSION=1 -D ", JoinDefinitions(copies));
    EXPECT_EQ("", JoinDefinitions({}));
}

TEST(PanelNames, TheHexNamesAreTheToolNamesInUpperCaseHex) {
    for (int i = 0; i < kPanelCount; ++i) EXPECT_EQ(Hex(kPanelToolNames[i]), kPanelHexNames[i]) << kPanelToolNames[i];
    EXPECT_EQ(Hex("ARM Debugger"), kDebugChoiceHexName);
    EXPECT_EQ(kPanelArmCpp, PanelOfName("Panel_for_armcpp"));
    EXPECT_EQ(kPanelTarget, PanelOfName("Panel_for_armtarget"));
    EXPECT_EQ(kPanelCount, PanelOfName("Panel_for_debugchoice"));
    EXPECT_EQ(kPanelCount, PanelOfName("panel_for_armcc"));
}

TEST(PanelReaders, AMissingCpuIsTheDefaultProcessorAndAMissingFpuAnEmptyRow) {
    const PanelRecord r = ReadPanel(kPanelArmC, ".bytesex=big\n");
    ASSERT_EQ(static_cast<size_t>(cc_row::kCount), r.rows.size());
    EXPECT_EQ("-cpu ARM7TDMI", r.rows[cc_row::kCpu]);
    EXPECT_EQ("", r.rows[cc_row::kFpu]);
    EXPECT_EQ("big", r.rows[cc_row::kByteSex]);
    EXPECT_EQ("1", r.rows[cc_row::kDebugTables]) << "the debug switch defaults to 1";
}

TEST(PanelReaders, CpuAndFpuRowsHoldTheWholeSwitch) {
    struct Case {
        const char* text;
        const char* cpu;
        const char* fpu;
    } cases[] = {
        {"-cpu#ARM920T\n-fpu#VFPv2\n", "-cpu ARM920T", "-fpu VFPv2"},
        {"-cpu\n-fpu\n", "-cpu ARM7TDMI", "-fpu None"},
        {"-cpu#\n-fpu#\n", "-cpu ", ""},
    };
    for (const Case& c : cases) {
        const PanelRecord r = ReadPanel(kPanelAssembler, c.text);
        EXPECT_EQ(c.cpu, r.rows[asm_row::kCpu]) << c.text;
        EXPECT_EQ(c.fpu, r.rows[asm_row::kFpu]) << c.text;
    }
}

TEST(PanelReaders, EveryReaderFillsOneRowPerSwitchAndKeepsTheLinesNoRowNames) {
    const struct {
        PanelKind kind;
        int rows;
    } kinds[] = {{kPanelAssembler, asm_row::kCount}, {kPanelArmC, cc_row::kCount},   {kPanelThumbCpp, cc_row::kCount},
                 {kPanelLinker, link_row::kCount},   {kPanelFromElf, elf_row::kCount}, {kPanelTarget, target_row::kCount}};
    for (const auto& k : kinds) {
        const PanelRecord r = ReadPanel(k.kind, "-unheard=1\n");
        EXPECT_TRUE(r.present);
        EXPECT_EQ(static_cast<size_t>(k.rows), r.rows.size()) << kPanelToolNames[k.kind];
        EXPECT_EQ((std::vector<std::string>{"-unheard=1"}), r.unknown) << kPanelToolNames[k.kind];
    }
    EXPECT_EQ(19, asm_row::kCount) << "the assembler record has 19 strings";
}

TEST(PanelReaders, TheAssemblerTakesItsDefinitionsFromPDLinesUncut) {
    const PanelRecord r = ReadPanel(kPanelAssembler, "-PD\"A SETA 1\"\n-PDB SETS \"1.2?\"\n-DNOT\n");
    EXPECT_EQ((std::vector<std::string>{"-PD\"A SETA 1\"", "-PDB SETS \"1.2?\""}), r.definitions);
    EXPECT_EQ("-PD\"A SETA 1\" -PDB SETS \"1.2?\" ", r.rows[asm_row::kDefinitions]);
    EXPECT_EQ((std::vector<std::string>{"-DNOT"}), r.unknown);
}

TEST(PanelReaders, APartialLinkIsMarkedByItsOwnLine) {
    EXPECT_EQ("-partial", ReadPanel(kPanelLinker, ".linktype=-partial\n").rows[link_row::kLinkType]);
    EXPECT_EQ("-reloc", ReadPanel(kPanelLinker, ".linktype#-reloc\n").rows[link_row::kLinkType]);
    EXPECT_EQ("", ReadPanel(kPanelLinker, ".linktype=-reloc\n").rows[link_row::kLinkType]);
    EXPECT_EQ("", ReadPanel(kPanelLinker, "-entry\n").rows[link_row::kEntry]) << "no entry point unless one is named";
}

TEST(PanelReaders, TheTargetPanelCarriesTheOutputNameAndTheProjectNameChoice) {
    const PanelRecord r = ReadPanel(kPanelTarget, "outputtype#Library\n-outputname#app.axf\nuseprojectname#0\n");
    EXPECT_EQ("Library", r.rows[target_row::kOutputType]);
    EXPECT_EQ("-outputname app.axf", r.rows[target_row::kOutputName]);
    EXPECT_EQ(" --no_useprojectname", r.rows[target_row::kNoProjectName]);
    const PanelRecord d = ReadPanel(kPanelTarget, "outputtype#Executable\n");
    EXPECT_EQ("", d.rows[target_row::kOutputName]);
    EXPECT_EQ("", d.rows[target_row::kNoProjectName]);
}

}  // namespace
}  // namespace ads::import
