// From the panel records of an export to the option strings of our tools:
// the compiler and assembler records become tool-wide option strings in the
// grammar of the option pages (every position of every page set, the string
// stable when the pages read it and write it again), the linker record the
// switches the linker pages write, the fromELF record the switches of the
// fromELF page.
//
// What the panel rows hold. A row is empty when the export does not carry the
// switch. Switch rows take an on word ("1", "on", "true", "yes"), an off word
// ("0", "off", "false", "no") or the ADS switch itself (".schar=-zc",
// ".warn=-nowarn"). Value rows hold the value: a processor or FPU name, an
// address, a file, ".bytesex=big|little", ".codesize=16|32",
// "-apcs.inter#/interwork|/nointerwork" (likewise /ropi, /rwpi, /swst,
// /swstna), "-O.level=0|1|2", "-O.goal=time|space", ".lang=" a language's
// switches ("-ansi -strict", "-cpp", "-embeddedcplusplus"), "-W=" and "-E="
// the letters of -W and -E ("ab+gl", "cz"), ".format=" a fromELF format
// ("-bin", ".text.c" for the text format with its flag letters).
#pragma once

#include <string>
#include <vector>

#include "import/import_model.h"

namespace ads::import {

// Where the notes of one translation go, each prefixed with `where`
// ("target 'Debug', ARM C Compiler").
struct NoteSink {
    std::vector<std::string>* notes;
    std::string where;
    void Add(const std::string& text) const {
        if (notes != nullptr) notes->push_back(where + ": " + text);
    }
};

// What becomes of one switch of a panel: the ADS switch it is carried over
// as, or why it is not ("" when it is).
struct CarryOver {
    int row;
    const char* panel_switch;
    const char* ads_switch;
    const char* not_carried;
};

// Every '=' switch of the compiler panels; a switch is carried over when the
// real compilers take it (ads-tools.md) and the option pages can hold it.
extern const CarryOver kCompilerEqualsSwitches[];
extern const int kCompilerEqualsSwitchCount;
// The switches of the linker panel.
extern const CarryOver kLinkerSwitches[];
extern const int kLinkerSwitchCount;

// A file a tool reads (a via file, a scatter description): the row's value
// unquoted, and when it is a relative path, written from `folder` (the
// export's folder) so that it is found whatever the working folder of a
// build, with a note naming `what` and both paths. A full path, one from a
// drive's root and one starting with a path macro stay as they are.
std::string InputFile(const std::string& row, const char* what, const std::string& folder, const NoteSink& notes);

// armcc and tcc take `c_language`; armcpp and tcpp do not.
std::string TranslateCompiler(const PanelRecord& record, bool c_language, const std::string& folder,
                              const NoteSink& notes);
std::string TranslateAssembler(const PanelRecord& record, const std::string& folder, const NoteSink& notes);
std::string TranslateLinker(const PanelRecord& record, const std::string& folder, const NoteSink& notes);
// The format switch and, when the panel names an output file,
// ` -output "name"`.
std::string TranslateFromElf(const PanelRecord& record, const NoteSink& notes);

}  // namespace ads::import
