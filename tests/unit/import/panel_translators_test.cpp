// Panel records into option strings. Every compiler and assembler string
// the import produces must read back into the option pages with every
// position set, and come out of them unchanged.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "build/build_engine.h"
#include "import/panel_readers.h"
#include "import/panel_translators.h"
#include "options/assembler_options.h"
#include "options/compiler_options.h"
#include "options/effective_options.h"
#include "options/option_error.h"

namespace ads::import {
namespace {

namespace opt = ads::options;

template <size_t N>
bool AnyUnset(const std::array<int, N>& values) {
    for (int v : values) {
        if (v == opt::kUnset) return true;
    }
    return false;
}

// The string reads into the pages with no position left at -1, the build's
// own path to it throws nothing, and the pages write it back unchanged.
void ExpectPagesKeepCompiler(const std::string& s, bool c_language, const std::string& context) {
    const opt::CompilerSettings read = opt::ReadCompilerSettings(s, c_language);
    EXPECT_FALSE(AnyUnset(read.target) || AnyUnset(read.atpcs) || AnyUnset(read.warnings) ||
                 AnyUnset(read.errors) || AnyUnset(read.debug_opt) || AnyUnset(read.code_gen))
        << context << ": " << s;
    const opt::Tool tool = c_language ? opt::Tool::kArmcc : opt::Tool::kArmcpp;
    try {
        EXPECT_EQ(s, opt::EffectiveOptions(tool, s, opt::PageStateSet())) << context;
        EXPECT_EQ(s, opt::WriteCompilerOptions(read, c_language)) << context;
    } catch (const opt::OptionError& e) {
        ADD_FAILURE() << context << ": " << e.what() << " for" << s;
    }
}

void ExpectPagesKeepAssembler(const std::string& s, const std::string& context) {
    const opt::AssemblerSettings read = opt::ReadAssemblerSettings(s);
    EXPECT_FALSE(AnyUnset(read.target) || AnyUnset(read.atpcs) || AnyUnset(read.option) || AnyUnset(read.listing))
        << context << ": " << s;
    try {
        EXPECT_EQ(s, opt::EffectiveOptions(opt::Tool::kArmasm, s, opt::PageStateSet())) << context;
        EXPECT_EQ(s, opt::WriteAssemblerOptions(read)) << context;
    } catch (const opt::OptionError& e) {
        ADD_FAILURE() << context << ": " << e.what() << " for" << s;
    }
}

struct Case {
    const char* name;
    std::string panel_text;
    std::string expected;
};

const char kFolder[] = "C:\\proj";

std::string Compiler(PanelKind kind, const std::string& text, std::vector<std::string>* notes = nullptr) {
    return TranslateCompiler(ReadPanel(kind, text), kind == kPanelArmC || kind == kPanelThumbC, kFolder,
                             NoteSink{notes, "t"});
}

TEST(CompilerTranslator, CPanelsBecomeTheStringsTheirPagesWrite) {
    const Case cases[] = {
        {"an empty panel: armcc's own -O2, and debug tables", "", " -O2 -g+"},
        {"processor, FPU, big endian", "-cpu#ARM920T\n-fpu#VFPv2\n.bytesex=big\n", " -fpu VFPv2 -bi -cpu ARM920T -O2 -g+"},
        {"SoftVFP is the compilers' default", "-fpu#SoftVFP\n.bytesex=-littleend\n", " -O2 -g+"},
        {"no FPU", "-fpu\n", " -fpu None -O2 -g+"},
        {"ATPCS qualifiers", "-apcs.inter#/interwork\n-apcs.ropi#/ropi\n-apcs.rwpi#/norwpi\n-apcs.swst#/swst\n",
         " -apcs /interwork/ropi/swst -O2 -g+"},
        {"level, goal, inlining, preprocessor symbols", "-O.level=1\n-O.goal=time\n-Ono_inline=on\n.gtp=on\n",
         " -O1 -Otime -Ono_inline -gtp -g+"},
        {"inlining off by its own switch", "-O.inline=off\n-O.level=-O0\n", " -O0 -Ono_inline -g+"},
        {"code generation", ".schar=-zc\n.areaperfn=on\n-split_ldm=1\n-auto_float_constants=yes\n.enumint=true\n",
         " -O2 -g+ -split_ldm -zo -zc -auto_float_constants -fy"},
        {"switches turned off", ".schar=off\n.areaperfn=0\n-split_ldm=false\n", " -O2 -g+"},
        {"warnings off leave the letters out", ".nowarn=on\n-W=ab\n", " -W -O2 -g+"},
        {"warning letters off and on", "-W=ax+gl\n", " -Wax+gl -O2 -g+"},
        {"error letters", "-E=-Ecz\n", " -Ecz -O2 -g+"},
        {"strict ANSI C", ".lang=-ansi -strict\n", " -ansi -strict -O2 -g+"},
        {"definitions, quoted when they hold a blank", "-DDEBUG\n-DNAME=a b\n", " -O2 -g+ -DDEBUG -D\"NAME=a b\""},
        {"a via file with a blank", "-via=C:\\My Files\\opts.via\n", " -O2 -g+ -via \"C:\\My Files\\opts.via\""},
        {"a relative via file from the export's folder", "-via=..\\opts.via\n", " -O2 -g+ -via C:\\proj\\..\\opts.via"},
    };
    for (const Case& c : cases) {
        const std::string s = Compiler(kPanelArmC, c.panel_text);
        EXPECT_EQ(c.expected, s) << c.name;
        ExpectPagesKeepCompiler(s, true, c.name);
        EXPECT_EQ(s, Compiler(kPanelThumbC, c.panel_text)) << c.name << ": tcc reads the same rows";
    }
}

TEST(CompilerTranslator, CppPanelsTakeTheCppLanguages) {
    const Case cases[] = {
        {"ISO C++ writes nothing", "", " -O2 -g+"},
        {"embedded C++", ".lang=-embeddedcplusplus\n", " -embeddedcplusplus -O2 -g+"},
        {"strict C++", ".lang=-cpp -strict\n", " -cpp -strict -O2 -g+"},
        {"ANSI C", ".lang=-ansi\n", " -ansi -O2 -g+"},
        // The strict ANSI C entry writes " -W+p"; read back, that is the
        // non-ANSI header warning, which the pages then write again.
        {"strict ANSI C on a C++ compiler", ".lang=-ansi -strict\n", " -ansi -strict -W+p -W+p -O2 -g+"},
    };
    for (const Case& c : cases) {
        const std::string s = Compiler(kPanelArmCpp, c.panel_text);
        EXPECT_EQ(c.expected, s) << c.name;
        ExpectPagesKeepCompiler(s, false, c.name);
    }
}

TEST(CompilerTranslator, APanelWithoutTheDebugSwitchStillCompilesWithDebugTables) {
    // The debug row defaults to "1" when the panel lacks its line.
    EXPECT_NE(std::string::npos, Compiler(kPanelArmC, "-O.level=2\n").find(" -g+"));
    EXPECT_NE(std::string::npos, Compiler(kPanelArmC, "-g=+\n").find(" -g+"));
    EXPECT_NE(std::string::npos, Compiler(kPanelArmC, "-g=-\n").find(" -g+")) << "only -g=+ is looked for";
}

TEST(CompilerTranslator, SoftVfpPlusVfpv2ImportsAsSoftVfpPlusVfp) {
    std::vector<std::string> notes;
    const std::string s = Compiler(kPanelArmC, "-fpu#SoftVFP+VFPv2\n", &notes);
    EXPECT_EQ(" -fpu SoftVFP+VFP -O2 -g+", s);
    ExpectPagesKeepCompiler(s, true, "SoftVFP+VFPv2");
    ASSERT_EQ(1u, notes.size());
    EXPECT_NE(std::string::npos, notes[0].find("SoftVFP+VFPv2"));
}

TEST(CompilerTranslator, WhatIsNotCarriedOverIsSaid) {
    const struct {
        const char* text;
        const char* note;
    } cases[] = {
        {".fx=on\n", ".fx 'on' is not taken over: -fx is not an ADS 1.2 compiler switch"},
        {".prefix=pre.h\n", ".prefix 'pre.h' is not taken over"},
        {".asmout=-S\n", ".asmout '-S' is not taken over"},
        {"-cpu#ARM11\n", "processor 'ARM11' is not one the option pages offer; ARM7TDMI is used"},
        {"-fpu#MaverickCrunch\n", "FPU 'MaverickCrunch' is not known"},
        {"-O.level=3\n", "optimisation level '3' is not known; -O2 is used"},
        {"-W=+w\n", "warning letter 'w' is not known"},
        {"-E=y\n", "error letter 'y' is not known"},
        {".lang=-cpp\n", "source language '-cpp' is not one this compiler's page offers"},
        {"-apcs.swst#/swstna\n", "/swstna is an assembler one"},
        {".schar=maybe\n", ".schar 'maybe' is neither on nor off"},
        {"-DVERSION=1.5?\n", "definition '-DVERSION=1.5?' is cut at its first '.' or '?': '-DVERSION=1' is taken over"},
        {"-via=opts.via\n", "via file 'opts.via' is taken as 'C:\\proj\\opts.via', from the export's folder"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> notes;
        const std::string s = Compiler(kPanelArmC, c.text, &notes);
        ExpectPagesKeepCompiler(s, true, c.text);
        ASSERT_FALSE(notes.empty()) << c.text;
        EXPECT_NE(std::string::npos, notes[0].find(c.note)) << c.text << " gave: " << notes[0];
        EXPECT_EQ(0u, notes[0].find("t: ")) << "notes start with where they come from";
    }
    std::vector<std::string> none;
    Compiler(kPanelArmC, ".fx=off\n.prefix=\n", &none);
    EXPECT_TRUE(none.empty()) << "a switch that is off loses nothing";
}

// The pages find " -D" and " -PD" anywhere in a string, also inside a via
// file's name, and would read more definitions out of it each time.
TEST(PanelTranslators, AViaFileNamedLikeASwitchIsLeftOut) {
    std::vector<std::string> notes;
    const std::string c = Compiler(kPanelArmC, "-via=a -DX b\n-DY\n", &notes);
    EXPECT_EQ(" -O2 -g+ -DY", c);
    ExpectPagesKeepCompiler(c, true, "via with -D");
    ASSERT_EQ(2u, notes.size());
    EXPECT_NE(std::string::npos, notes[1].find("'-via \"C:\\proj\\a -DX b\"' is left out")) << notes[1];

    notes.clear();
    const std::string a =
        TranslateAssembler(ReadPanel(kPanelAssembler, "-via#x -PD \"A\"\n.keep=on\n"), "", NoteSink{&notes, ""});
    EXPECT_EQ(" -keep", a);
    ExpectPagesKeepAssembler(a, "via with -PD");
    ASSERT_EQ(1u, notes.size());
    EXPECT_NE(std::string::npos, notes[0].find("is left out")) << notes[0];
}

TEST(CompilerTranslator, EveryEqualsSwitchOfTheCompilerPanelsHasADecision) {
    const PanelSpec spec = SpecOf(kPanelArmC);
    for (int i = 0; i < spec.count; ++i) {
        if (spec.rows[i].separator != '=') continue;
        bool decided = false;
        for (int k = 0; k < kCompilerEqualsSwitchCount; ++k) {
            const CarryOver& c = kCompilerEqualsSwitches[k];
            if (c.row == i) {
                decided = true;
                EXPECT_STREQ(spec.rows[i].name, c.panel_switch);
                EXPECT_TRUE((*c.ads_switch != '\0') != (*c.not_carried != '\0')) << c.panel_switch;
            }
        }
        EXPECT_TRUE(decided) << spec.rows[i].name;
    }
}

TEST(AssemblerTranslator, AssemblerPanelsBecomeTheStringsItsPagesWrite) {
    const Case cases[] = {
        {"an empty panel writes nothing", "", ""},
        {"Thumb, big endian, processor, FPU", "-cpu#ARM920T\n-fpu#FPA\n.bytesex=big\n.codesize=16\n",
         " -bi -16 -cpu ARM920T -fpu FPA"},
        {"ATPCS", "-apcs.inter#/interwork\n-apcs.swst#/swstna\n-apcs.rwpi#/rwpi\n", " -apcs /rwpi/interwork/swstna"},
        {"stack checking", "-apcs.swst#/swst\n", " -apcs /swst"},
        {"options", ".debug=on\n.keep=-keep\n.split_ldm=on\n.warn=off\n.checkr=on\n.esc=-noesc\n",
         " -keep -split_ldm -nowarn -noesc -checkreglist -g"},
        {"warnings and escapes on", ".warn=on\n.esc=on\n", ""},
        {"listing", "-list=on\n.terse=off\n.xref=on\n", " -liston -noterse -xref"},
        {"predefines, quoted or not", "-PD\"BOARD SETA 2\"\n-PDDEBUG SETL {TRUE}\n",
         " -PD \"BOARD SETA 2\" -PD \"DEBUG SETL {TRUE}\""},
        {"a via file from the export's folder", "-via#opts.via\n", " -via C:\\proj\\opts.via"},
        {"predefines keep their dots and quotes", "-PD\"V SETS \\\"v1.2\\\"\"\n", " -PD \"V SETS \\\"v1.2\\\"\""},
    };
    for (const Case& c : cases) {
        const std::string s =
            TranslateAssembler(ReadPanel(kPanelAssembler, c.panel_text), kFolder, NoteSink{nullptr, ""});
        EXPECT_EQ(c.expected, s) << c.name;
        ExpectPagesKeepAssembler(s, c.name);
    }
}

TEST(AssemblerTranslator, AListingFileIsOnlyTurnedOn) {
    std::vector<std::string> notes;
    const std::string s =
        TranslateAssembler(ReadPanel(kPanelAssembler, "-list=start.lst\n"), kFolder, NoteSink{&notes, "t"});
    EXPECT_EQ(" -liston", s);
    ASSERT_EQ(1u, notes.size());
    EXPECT_NE(std::string::npos, notes[0].find("listing file 'start.lst' is not taken over"));
}

// Whatever the panel holds, the strings keep to the pages' grammar.
TEST(PanelTranslators, RandomPanelsAlwaysGiveStringsThePagesKeep) {
    const std::vector<std::string> lines = {
        "-cpu#ARM920T", "-cpu#XScale", "-cpu#bogus", "-cpu", "-fpu#VFPv2", "-fpu#SoftVFP+VFPv2", "-fpu#SoftVFP+VFP",
        "-fpu#None", "-fpu#?", ".bytesex=big", ".bytesex=little", ".bytesex=odd", ".codesize=16", ".codesize=32",
        "-apcs.inter#/interwork", "-apcs.inter#/nointer", "-apcs.ropi#/ropi", "-apcs.rwpi#/rwpi",
        "-apcs.swst#/swst", "-apcs.swst#/swstna", "-apcs.swst#junk", "-g=+", "-O.level=0", "-O.level=1",
        "-O.level=9", ".schar=on", ".areaperfn=1", "-split_ldm=on", "-auto_float_constants=on", ".nowarn=on",
        "-O.inline=off", "-Ono_inline=on", "-via=a b.via", "-via=x.via", "-O.goal=time", ".gtp=on", ".enumint=on",
        ".lang=-ansi -strict", ".lang=-cpp", ".lang=-embeddedcplusplus", ".lang=?", "-W=abgx+lnpstiuqkr",
        "-W=+p", "-W=z", "-E=acfilpz", "-E=q", ".fx=on", "-DA", "-DB=1 2", "-D", "-D -bi", "-D\"Q\"", ".debug=on",
        ".keep=on", ".warn=off", ".checkr=on", ".esc=off", "-list=on", "-list=f.lst", ".terse=off", ".xref=on",
        "-PD\"A SETA 1\"", "-PD", "-PDB SETS x -bi", "-via#v.via",
    };
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        const int count = static_cast<int>(random() % 12);
        for (int i = 0; i < count; ++i) text += lines[random() % lines.size()] + "\n";
        for (PanelKind kind : {kPanelArmC, kPanelArmCpp}) {
            std::vector<std::string> notes;
            const std::string s = Compiler(kind, text, &notes);
            ExpectPagesKeepCompiler(s, kind == kPanelArmC, text);
        }
        const std::string a = TranslateAssembler(ReadPanel(kPanelAssembler, text), kFolder, NoteSink{nullptr, ""});
        ExpectPagesKeepAssembler(a, text);
        if (HasFailure()) return;
    }
}

TEST(LinkerTranslator, LinkerPanelsBecomeWhatTheLinkerPagesWrite) {
    const Case cases[] = {
        {"an empty panel names no entry point", "", ""},
        {"a partial link places nothing", ".linktype=-partial\n-ro-base#0x100\n", " -partial"},
        {"linker's own read-only base not written; two blanks before the read-write base",
         "-ro-base#0x8000\n-rw-base#0x40000000\n-entry#Reset\n", " -rw-base  0x40000000 -entry Reset"},
        {"another read-only base", "-ro-base#0x0\n", " -ro-base 0x0"},
        {"a scatter file, always quoted, from the export's folder", "-scatter#map.scf\n-ro-base#0x100\n",
         " -scatter \"C:\\proj\\map.scf\""},
        {"relocatable: one region", ".linktype#-reloc\n-rw-base#0x100\n", " -reloc"},
        {"removal of the kinds asked for", "-remove.ro#on\n-remove.zi#1\n-remove.rw#off\n",
         " -remove (ro/zi/dbg)"},
        {"cleared boxes write their no forms",
         ".debug#off\n.locals#-nolocals\n.scanlib#0\n.verbose#on\n.strict#-strict\n",
         " -nodebug -nolocals -noscanlib -verbose -strict"},
        {"set boxes of the cleared kind write nothing", ".debug#on\n.locals#on\n.scanlib#-scanlib\n", ""},
        {"layout and listing",
         "-first#startup.o(Reset)\n-last#last.o\n-list#out.lst\n.map#on\n.symbols#on\n.xref#on\n.callgraph#on\n"
         "-info.size#on\n-info.total#on\n-info.unused#on\n-info.veneers#on\n",
         " -first startup.o(Reset) -last last.o -list out.lst -map -symbols -xref -callgraph"
         " -info sizes -info totals -info unused -info veneers"},
        {"an entry point with a blank is quoted", "-entry#my entry\n", " -entry \"my entry\""},
        {"extras, a via file from the export's folder", "-unresolved#dummy\n-via#link.via\n",
         " -unresolved dummy -via C:\\proj\\link.via"},
        {"switches armlink 1.2 does not take", ".armlib#on\n.mangling#on\n", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.expected, TranslateLinker(ReadPanel(kPanelLinker, c.panel_text), kFolder, NoteSink{nullptr, ""})) << c.name;
    }
}

TEST(LinkerTranslator, WhatALinkCannotTakeIsSaid) {
    const struct {
        const char* text;
        const char* note;
    } cases[] = {
        {".linktype=-partial\n-scatter#a.scf\n", "a partial link places nothing"},
        {"-scatter#C:\\a.scf\n-rw-base#0x1\n", "the scatter file places the regions"},
        {".linktype#-reloc\n-rw-base#0x1\n", "read-write base 0x1 is left out"},
        {".linktype#-overlay\n", "link type '-overlay' is not known"},
        {"-remove.ro#off\n", "keeping unused sections is not taken over"},
        {".armlib#on\n", ".armlib 'on' is not taken over"},
        {".mangling#1\n", ".mangling '1' is not taken over"},
        {".map#sometimes\n", ".map 'sometimes' is neither on nor off"},
        {"-list#on\n", "-list names no file"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> notes;
        TranslateLinker(ReadPanel(kPanelLinker, c.text), kFolder, NoteSink{&notes, "t"});
        ASSERT_EQ(1u, notes.size()) << c.text;
        EXPECT_NE(std::string::npos, notes[0].find(c.note)) << c.text << " gave: " << notes[0];
    }
}

TEST(FromElfTranslator, TheFormatAndTheOutputFileAsTheFromElfPageWritesThem) {
    const struct {
        const char* name;
        std::string text;
        std::string expected;
        const char* extension;  // what the post-link step makes of it
    } cases[] = {
        {"plain binary", ".format=-bin\n-output=a.bin\n", " -bin -output \"a.bin\"", "bin"},
        {"text format with its flags", ".format=.text.c\n-output=dis.txt\n", " -c -output \"dis.txt\"", "text"},
        {"flags in the page's order", ".format=.text.sv\n-output=o\n", " -v -s -output \"o\"", "text"},
        {"a format without its dash", ".format=m32\n-output=x y.m32\n", " -m32 -output \"x y.m32\"", "m32"},
        {"no format: ELF", "-output=o.elf\n", " -elf -output \"o.elf\"", "elf"},
        {"no output file", ".format=-i32\n", " -i32", "i32"},
    };
    for (const auto& c : cases) {
        const std::string s = TranslateFromElf(ReadPanel(kPanelFromElf, c.text), NoteSink{nullptr, ""});
        EXPECT_EQ(c.expected, s) << c.name;
        EXPECT_EQ(c.extension, build::FromElfExtension(s)) << c.name;
    }
    std::vector<std::string> notes;
    TranslateFromElf(ReadPanel(kPanelFromElf, ".format=-weird\n.text\n"), NoteSink{&notes, "t"});
    ASSERT_EQ(2u, notes.size());
    EXPECT_NE(std::string::npos, notes[0].find("format '-weird' is not known; ELF is written"));
    EXPECT_NE(std::string::npos, notes[1].find("no output file is named"));
}

}  // namespace
}  // namespace ads::import
