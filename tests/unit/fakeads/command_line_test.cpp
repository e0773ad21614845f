// The tools take every command line our plug-in writes (each switch of the
// option pages, in the pages' spellings and the real tools' ones), and turn
// down what the real tools would not take.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tool_run.h"

namespace ads::fakeads_test {
namespace {

struct CommandRow {
    const char* name;
    const char* tool;
    std::string arguments;
};

class CommandLineTest : public ToolTest {
protected:
    void SetUp() override {
        Write("src\\main.c", "#include \"board.h\"\nint main(void) { return 0; }\n");
        Write("inc\\board.h", "#define BOARD 1\n");
        Write("src\\start.s", "        AREA    Reset, CODE, READONLY\n        EXPORT  Reset\nReset   B       Reset\n        END\n");
        Write("Debug\\.keep", "");
        Write("compiler.via", "-O1 -g+\n-cpu \"ARM920T\"\n");
        Write("assembler.via", "-g -keep");
        Write("link.via", "-map\n-info sizes\n");
        Write("layout.scf", "LR_ROM 0x0 0x80000\n{\n    ER_RO +0\n    {\n        * (+RO)\n    }\n}\n");
        Write("steer.txt", "HIDE helper\n");
        ASSERT_EQ(Run("armcc", "-c \"src\\main.c\" -I inc -o \".\\Debug\\main.o\"").exit_code, 0);
        ASSERT_EQ(Run("armasm", "\"src\\start.s\" \".\\Debug\\start.o\"").exit_code, 0);
        ASSERT_EQ(Run("armlink", "\".\\Debug\\main.o\" \".\\Debug\\start.o\" -o \".\\Debug\\blinky.axf\"").exit_code, 0);
    }

    void ExpectAccepted(const std::vector<CommandRow>& rows) {
        for (const CommandRow& row : rows) {
            SCOPED_TRACE(std::string(row.name) + ": " + row.tool + " " + row.arguments);
            const ToolResult result = Run(row.tool, row.arguments);
            EXPECT_EQ(result.exit_code, 0) << result.output;
            // No "Error:", "Serious error:" or "Fatal error:" of any tool.
            EXPECT_EQ(result.output.find("rror"), std::string::npos) << result.output;
        }
    }
};

const char kCompile[] = " -c \"src\\main.c\" -o \".\\Debug\\main.o\"";
// What the plug-in puts in front of a C compiler's option string.
const char kCompilerHead[] = "-g+  -I\".\\inc\"  -J\"C:\\ADS\\Include\" ";
const char kAssemble[] = " \"src\\start.s\" \".\\Debug\\start.o\"";
const char kObjects[] = "\".\\Debug\\main.o\" \".\\Debug\\start.o\"";
const char kElf[] = " -o \".\\Debug\\blinky.axf\"";

TEST_F(CommandLineTest, CompilersTakeEverySwitchOfTheirPages) {
    const std::string head = kCompilerHead;
    const std::string tail = kCompile;
    ExpectAccepted({
        {"AsThePluginWritesIt", "armcc", head + " -O0 -g+ -cpu ARM920T" + tail},
        {"DefaultSearchPathUnexpanded", "armcc",
         "-g+  -I\".*\"  -J\"{Compiler}Include*\"  -J\"{Compiler}Lib*\"  -O2 -g+" + tail},
        {"StrictC", "armcc", head + " -ansi -strict -O2 -g+" + tail},
        {"CxxAnsi", "armcpp", head + " -ansi -O2 -g+" + tail},
        {"CxxStrictAnsi", "armcpp", head + " -ansi -strict -W+p -O2 -g+" + tail},
        {"CxxStrict", "armcpp", head + " -cpp -strict -O2 -g+" + tail},
        {"EmbeddedCxx", "tcpp", head + " -embeddedcplusplus -O2 -g+" + tail},
        {"ThumbC", "tcc", head + " -O2 -g+" + tail},
        {"FpuFpa", "armcc", head + " -fpu FPA -O2" + tail},
        {"FpuVfpv1", "armcc", head + " -fpu VFPv1 -O2" + tail},
        {"FpuVfpv2", "armcc", head + " -fpu VFPv2 -O2" + tail},
        {"FpuSoftFpa", "armcc", head + " -fpu SoftFPA -O2" + tail},
        {"FpuSoftVfpPlusVfp", "armcc", head + " -fpu SoftVFP+VFP -O2" + tail},
        {"FpuSoftVfpPlusVfpv2", "armcc", head + " -fpu SoftVFP+VFPv2 -O2" + tail},
        {"FpuNone", "armcc", head + " -fpu None -O2" + tail},
        {"FpuLowerCase", "armcc", head + " -fpu softvfp -O2" + tail},
        {"BigEndianAndArchitecture", "armcc", head + " -bi -cpu 4T -O2" + tail},
        {"ProcessorWithRevision", "armcc", head + " -cpu ARM966E-S-rev0 -O2" + tail},
        {"XScale", "armcc", head + " -cpu XScale -O2" + tail},
        {"AllAtpcsBoxes", "armcc", head + " -apcs /rwpi/interwork/ropi/swst -O2" + tail},
        {"AtpcsNoForms", "armcc", head + " -apcs /noswst/inter/norwpi/noropi -O2" + tail},
        {"AtpcsSwstna", "armcpp", head + " -apcs /swstna -O2" + tail},
        {"NoWarnings", "armcc", head + " -W -O2" + tail},
        {"WarnAll", "armcc", head + " -fx -O2" + tail},
        {"WarningLetters", "armcc", head + " -W -Wax+gp -O2" + tail},
        {"AllWarningLetters", "armcc", head + " -Wabkrqx+gtlnpsiu -O2" + tail},
        {"RealLogWarningLetters", "armcc", head + " -Wb+adefgiklmopvx -O2" + tail},
        {"OnlyEnabledWarnings", "armcpp", head + " -W+p -O2" + tail},
        {"ErrorLetters", "armcc", head + " -Eacfilpz -O2" + tail},
        {"RealLogErrorLetters", "armcc", head + " -Ecz -O2" + tail},
        {"DebugOptPage", "armcc", head + " -O1 -Otime -Ono_inline -gtp -g+" + tail},
        {"OptimiseForSpace", "armcc", head + " -O2 -Ospace -g-" + tail},
        {"PlainDashG", "armcc", head + " -O0 -g" + tail},
        {"Preprocessor", "armcc", head + " -O2 -g+ -DDEBUG -DLEVEL=2 -D NAME -DEMPTY=" + tail},
        {"CodeGen", "armcc", head + " -O2 -g+ -split_ldm -zo -zc -auto_float_constants -fy" + tail},
        {"Extras", "armcc", head + " -O2 -g+ -via \"compiler.via\"" + tail},
        {"EndianWordsOfRealLogs", "armcc", head + " -bigend -littleend -O2" + tail},
        {"EveryPageAtOnce", "armcc",
         head + " -ansi -strict -fpu VFPv2 -bi -cpu ARM920T -apcs /rwpi/interwork/ropi/swst -W -Wax+gp -Ecz"
                " -O1 -Otime -Ono_inline -gtp -g+ -DDEBUG -split_ldm -zo -zc -auto_float_constants -fy"
                " -via compiler.via" + tail},
        {"UndefineAndVersion", "armcc", head + " -UNAME -vsn" + tail},
    });
}

TEST_F(CommandLineTest, AssemblerTakesEverySwitchOfItsPages) {
    const std::string head = "-g  -I\".\\inc\"  -J\"C:\\ADS\\Include\" ";
    const std::string tail = kAssemble;
    ExpectAccepted({
        {"AsThePluginWritesIt", "armasm", head + tail},
        {"TargetPage", "armasm", head + " -bi -16 -cpu ARM920T -fpu VFPv2" + tail},
        {"ArmState", "armasm", head + " -32 -littleend -bigend" + tail},
        {"CallingStandardNone", "armasm", head + " -regnames none -apcs none" + tail},
        {"AtpcsBoxes", "armasm", head + " -apcs /rwpi/interwork/ropi/swstna" + tail},
        {"AtpcsOfRealLogs", "armasm", head + " -apcs /noswst/inter" + tail},
        {"OptionPage", "armasm", head + " -keep -split_ldm -nowarn -noesc -checkreglist -g" + tail},
        {"Predefines", "armasm", head + " -PD \"X SETL {TRUE}\" -PD \"N SETA 3\" -PD \"S SETS \\\"abc\\\"\"" + tail},
        {"ListingPage", "armasm", head + " -length 0 -liston -noterse -xref -width 100" + tail},
        {"Extras", "armasm", head + " -via \"assembler.via\"" + tail},
        {"CapitalisedAbbreviations", "armasm", head + " -NOTerse -WIdth 100 -Length 60 -Xref -list listing.txt" + tail},
        {"ShortestAbbreviations", "armasm", head + " -NOT -wi 90 -l 0 -x -LI -BI" + tail},
        {"ListWithoutAFile", "armasm", head + " -list" + tail},
        {"ObjectWithDashO", "armasm", "-g -o \".\\Debug\\start.o\" \"src\\start.s\""},
        {"RegisterNamesAndCache", "armasm", head + " -regnames callstd -unsafe -nocache -maxcache 8" + tail},
    });
    EXPECT_TRUE(Exists("listing.txt"));
    EXPECT_TRUE(Exists("start.lst")) << "-list without a file lists into the source's name";
}

TEST_F(CommandLineTest, LinkerTakesEverySwitchOfItsPages) {
    const std::string objects = kObjects;
    const std::string elf = kElf;
    ExpectAccepted({
        {"DefaultTemplate", "armlink", objects + " " + elf},
        {"SimpleLayout", "armlink", objects + " -ro-base 0x0 -rw-base  0x40000000 -ropi -rwpi -split" + elf},
        {"Relocatable", "armlink", objects + " -reloc -split -rw-base  0x1000" + elf},
        {"Partial", "armlink", objects + " -partial -o \".\\Debug\\partial.o\""},
        {"Scattered", "armlink", objects + " -scatter \"layout.scf\"" + elf},
        {"SymbolFiles", "armlink", objects + " -symdefs \"syms.txt\" -edit \"steer.txt\"" + elf},
        {"OptionPage", "armlink",
         objects + " -remove (ro/rw/zi/dbg) -nodebug -nolocals -noscanlib -verbose -armlib -strict -entry 0x8000" + elf},
        {"RemoveDebugOnly", "armlink", objects + " -remove (dbg)" + elf},
        {"RemoveAlone", "armlink", objects + " -remove" + elf},
        {"EntryWithBlanks", "armlink", objects + " -entry \"Reset\"" + elf},
        {"LayoutPage", "armlink", objects + " -first \"start.o(Reset)\" -last main.o" + elf},
        {"ListingPage", "armlink",
         objects + " -list \"out.lst\" -map -symbols -mangled -xref -callgraph -info sizes -info totals"
                   " -info unused -info veneers" + elf},
        {"ExtrasPage", "armlink", objects + " -unresolved foo -via \"link.via\"" + elf},
        {"OfRealLogs", "armlink",
         objects + " -elf -debug -locals -scanlib -keep main.o(.text) -noremove -errors err.txt -output x.axf"},
        {"LibraryPath", "armlink", objects + " -libpath \"a,b,\"" + elf},
        {"EmptyLibraryPath", "armlink", objects + " -libpath \"\"" + elf},
        {"InfoList", "armlink", objects + " -info sizes,totals,interwork -unmangled" + elf},
        {"AnyCase", "armlink", objects + " -MAP -Output x.axf"},
    });
    EXPECT_TRUE(Exists("syms.txt"));
    EXPECT_TRUE(Exists("out.lst"));
    EXPECT_TRUE(Exists("Debug\\blinky.htm")) << "-callgraph writes its page beside the image";
}

TEST_F(CommandLineTest, LibrarianAndFromElfTakeTheirCommandLines) {
    const std::string image = " \".\\Debug\\blinky.axf\"";
    ExpectAccepted({
        {"ArchiveAsThePluginWritesIt", "armar", "-r \".\\Debug\\blinky.a\" \".\\Debug\\main.o\" \".\\Debug\\start.o\""},
        {"CreateVerbose", "armar", "-c -v -r lib.a \".\\Debug\\main.o\""},
        {"LettersTogether", "armar", "-rcv lib2.a \".\\Debug\\start.o\""},
        {"List", "armar", "-t lib.a"},
        {"PlainBinary", "fromelf", "-bin -output \"x.bin\"" + image},
        {"ElfWithoutDebug", "fromelf", "-nodebug -elf -output \"x.elf\"" + image},
        {"Motorola", "fromelf", "-m32 -output \"x.m32\"" + image},
        {"Intel", "fromelf", "-i32 -output \"x.i32\"" + image},
        {"Intellec", "fromelf", "-ihf -output \"x.ihf\"" + image},
        {"Aif", "fromelf", "-nodebug -aif -output \"x.aif\"" + image},
        {"AifBin", "fromelf", "-aifbin -output \"x.aifbin\"" + image},
        {"ByteHex", "fromelf", "-bhx -output \"x.bhx\"" + image},
        {"VerilogHex", "fromelf", "-vhx -output \"x.vhx\"" + image},
        {"FieldOffsets", "fromelf", "-fieldoffsets -output \"x.fieldoffsets\"" + image},
        {"TextFlagsOneByOne", "fromelf", "-v -d -g -z -t -s -c -r -output \"x.text\"" + image},
        {"TextFlagsTogether", "fromelf", "-text/cs -output \"y.text\"" + image},
        {"TextOfRealLogs", "fromelf", "-text -v -s" + image},
        {"TextWithoutFlags", "fromelf", "-output \"z.text\"" + image},
    });
}

// A wrong command line ends in a fatal error and a failed exit, whatever
// the words of the message.
TEST_F(CommandLineTest, WrongCommandLinesAreTurnedDown) {
    const std::string c = kCompile;
    // A failed link removes its output: the rows keep away from the image
    // the fromelf rows convert.
    const char* const kRejectedElf = " -o \".\\Debug\\rejected.axf\"";
    const std::vector<CommandRow> rows = {
        {"UnknownCompilerSwitch", "armcc", "-foo" + c},
        {"CompilerSwitchesAreCaseSensitive", "armcc", "-CPU ARM920T" + c},
        {"UnknownProcessor", "armcc", "-cpu ARM999" + c},
        {"UnknownFpu", "armcc", "-fpu VFPv3" + c},
        {"AtpcsWithoutSlash", "armcc", "-apcs interwork" + c},
        {"UnknownAtpcsQualifier", "armcc", "-apcs /interwork/fast" + c},
        {"EmptyAtpcsQualifier", "armcc", "-apcs /ropi/" + c},
        {"AssemblerNoneIsNotForCompilers", "armcc", "-apcs none" + c},
        {"OptimisationLevelThree", "armcc", "-O3" + c},
        {"TwoPlusesInWarningLetters", "armcc", "-Wa+b+c" + c},
        {"CapitalWarningLetter", "armcc", "-WA" + c},
        {"DigitErrorLetter", "armcc", "-E1" + c},
        {"DefineOfANumber", "armcc", "-D1X" + c},
        {"OutputWithoutName", "armcc", "-c \"src\\main.c\" -o"},
        {"EmptyOutputName", "armcc", "-c \"src\\main.c\" -o \"\""},
        {"MissingViaFile", "armcc", "-via nowhere.via" + c},
        {"NoSource", "armcc", "-c -O2"},
        {"UnknownAssemblerSwitch", "armasm", "-nowarnings" + std::string(kAssemble)},
        {"AbbreviationTooShort", "armasm", "-no" + std::string(kAssemble)},
        {"WidthNotANumber", "armasm", "-width wide" + std::string(kAssemble)},
        {"PredefineWithUnknownDirective", "armasm", "-PD \"X SETQ 1\"" + std::string(kAssemble)},
        {"PredefineWithBadLogical", "armasm", "-PD \"X SETL maybe\"" + std::string(kAssemble)},
        {"RegisterNamesSome", "armasm", "-regnames some" + std::string(kAssemble)},
        {"ThreeFileNames", "armasm", "\"src\\start.s\" a.o b.o"},
        {"UnknownLinkerSwitch", "armlink", std::string(kObjects) + " -rwbase 0x0" + kRejectedElf},
        {"BaseNotANumber", "armlink", std::string(kObjects) + " -ro-base zz" + kRejectedElf},
        {"BaseTooLarge", "armlink", std::string(kObjects) + " -ro-base 0x100000000" + kRejectedElf},
        {"RemoveUnknownKind", "armlink", std::string(kObjects) + " -remove (ro/xx)" + kRejectedElf},
        {"UnknownInfoTopic", "armlink", std::string(kObjects) + " -info everything" + kRejectedElf},
        {"ScatterWithoutFile", "armlink", std::string(kObjects) + " -o x.axf -scatter"},
        {"MissingScatterFile", "armlink", std::string(kObjects) + " -scatter \"none.scf\"" + kRejectedElf},
        {"MissingSteeringFile", "armlink", std::string(kObjects) + " -edit \"none.txt\"" + kRejectedElf},
        {"UnknownLibrarianSwitch", "armar", "-q lib.a \".\\Debug\\main.o\""},
        {"LibrarianWithoutCommand", "armar", "lib.a \".\\Debug\\main.o\""},
        {"LibrarianWithTwoCommands", "armar", "-r -t lib.a"},
        {"UnknownTextFlag", "fromelf", "-text/q \".\\Debug\\blinky.axf\""},
        {"UnknownFromElfFormat", "fromelf", "-hex -output x \".\\Debug\\blinky.axf\""},
        {"BinaryNeedsAnOutput", "fromelf", "-bin \".\\Debug\\blinky.axf\""},
    };
    for (const CommandRow& row : rows) {
        SCOPED_TRACE(std::string(row.name) + ": " + row.tool + " " + row.arguments);
        const ToolResult result = Run(row.tool, row.arguments);
        EXPECT_EQ(result.output.rfind("Fatal error: ", 0), 0u) << result.output;
        EXPECT_EQ(result.exit_code, 1);
    }
}

// The closing lines after a command-line error: the compilers abandon, the
// linker counts a fatal error.
TEST_F(CommandLineTest, RejectionsEndTheWayEachToolEnds) {
    EXPECT_EQ(Run("tcpp", "-foo").output,
              Lines({"Fatal error: C3900U: Unrecognised option '-foo'.", "Compilation abandoned."}));
    EXPECT_EQ(Run("armlink", "-foo").output,
              Lines({"Fatal error: L6900U: Unrecognised option '-foo'.",
                     "Finished: 0 information, 0 warning, 0 error and 1 fatal error messages."}));
    EXPECT_EQ(Run("armasm", "-foo").output, Lines({"Fatal error: A1900U: Unrecognised option '-foo'."}));
}

TEST_F(CommandLineTest, ViaFilesReadAsCommandLines) {
    Write("nested.via", "-DFROM_VIA \"-DSPACED=a b\"\n-via \"inner.via\"\n");
    Write("inner.via", "-DINNER");
    Write("src\\via.c", "#if !defined(FROM_VIA) || !defined(INNER) || !defined(SPACED)\n#error via not read\n#endif\n");
    const ToolResult result = Run("armcc", "-via nested.via -c \"src\\via.c\" -o via.o");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_NE(Read("via.o").find("define SPACED=a b\n"), std::string::npos);

    Write("loop.via", "-via loop.via");
    const ToolResult loop = Run("armcc", "-via loop.via -c \"src\\via.c\"");
    EXPECT_EQ(loop.output.rfind("Fatal error: ", 0), 0u) << loop.output;
    EXPECT_EQ(loop.exit_code, 1);
}

// The program takes its part from its own file name, in any case.
TEST_F(CommandLineTest, ToolIsChosenByTheProgramName) {
    const std::string bin = platform::System().files->ExecutableDirectory() + "/fakeads/Bin/";
    std::filesystem::copy_file(std::filesystem::u8path(bin + "armlink.exe"), Native("ARMLINK.EXE"));
    std::filesystem::copy_file(std::filesystem::u8path(bin + "armlink.exe"), Native("armtool.exe"));
    const platform::RunResult upper =
        platform::System().runner->Run(platform::QuoteArgument(folder_.path() + "/ARMLINK.EXE") + " -vsn", folder_.path(), 4096);
    EXPECT_EQ(WithoutCarriageReturns(upper.output), Lines({"ARM Linker, ADS1.2 [Build 848]"}));
    const platform::RunResult unknown =
        platform::System().runner->Run(platform::QuoteArgument(folder_.path() + "/armtool.exe") + " -vsn", folder_.path(), 4096);
    EXPECT_EQ(unknown.exit_code, 2);
    EXPECT_NE(unknown.output.find("cannot tell which tool"), std::string::npos) << unknown.output;
}

}  // namespace
}  // namespace ads::fakeads_test
