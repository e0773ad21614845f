// fakeads: the ADS 1.2 command-line tools, simulated for tests and demos.
//
// One program, installed under eight names (armasm, armcc, armcpp, tcc,
// tcpp, armlink, armar, fromelf, each with ".exe"); it becomes the tool its
// own file name names. It takes the tools' command lines (switch tables in
// compiler.cpp, assembler.cpp, linker.cpp, librarian.cpp, fromelf.cpp),
// rejects what the real tool would not take, writes small text objects,
// archives and images (file_formats.h), answers -M, and prints its messages
// in the real tools' exact shapes (diagnostics.h).
//
// The marker language
// -------------------
// A source line that holds "FAKEADS:" asks for a message. After the key
// come a kind word and the message text, which is printed as written (put
// the message tag first, as the real tools do):
//
//   warning TEXT       "file", line N: Warning: TEXT
//   error TEXT         "file", line N: Error: TEXT
//   serious TEXT       "file", line N: Serious error: TEXT
//   fatal TEXT         "file", line N: Fatal error: TEXT, then the tool stops
//                      (the compilers add "Compilation abandoned.")
//   link-warning TEXT  carried in the object; armlink prints Warning: TEXT
//   link-error TEXT    carried in the object; armlink prints Error: TEXT
//   link-fatal TEXT    carried in the object; armlink prints Fatal error: TEXT
//                      and reports nothing after it
//   print TEXT         TEXT as a line of its own, in its place among the messages
//
// Examples:
//   int x; /* FAKEADS: warning C2207W: inventing 'extern int f();' */
//   // FAKEADS: link-error L6218E: Undefined symbol x (referred from main.o).
//           MOV r0, r0 ; FAKEADS: error A1163E: Unknown opcode FOO , expecting opcode or Macro
//
// The marker may stand anywhere on the line (in C usually in a comment, in
// assembler after ";"); a closing "*/" after it is not part of the text. "N"
// is the line's number and "file" the name of the file that holds it: the
// source as the command line spells it, or the header as it was found. In C
// sources only lines that the conditionals keep count; a header's markers
// are reported at its #include. A kind word the language does not have is
// reported as "Serious error: C2999E: FAKEADS marker not understood".
// "#error TEXT" in C gives "Error: C2448E: #error TEXT".
//
// Exit status: 0 when there was no error (warnings allowed), 1 otherwise.
#include <cstdio>
#include <string>
#include <vector>

#include "command_line.h"
#include "paths.h"
#include "tools.h"

namespace fakeads {
namespace {

const ToolInfo kTools[] = {
    {"armcc", ToolKind::kCompiler, "ARM C Compiler, ADS1.2 [Build 848]", false, false},
    {"tcc", ToolKind::kCompiler, "Thumb C Compiler, ADS1.2 [Build 848]", true, false},
    {"armcpp", ToolKind::kCompiler, "ARM C++ Compiler, ADS1.2 [Build 848]", false, true},
    {"tcpp", ToolKind::kCompiler, "Thumb C++ Compiler, ADS1.2 [Build 848]", true, true},
    {"armasm", ToolKind::kAssembler, "ARM Assembler, ADS1.2 [Build 848]"},
    {"armlink", ToolKind::kLinker, "ARM Linker, ADS1.2 [Build 848]"},
    {"armar", ToolKind::kLibrarian, "ARM Librarian, ADS1.2 [Build 848]"},
    {"fromelf", ToolKind::kFromElf, "ARM FromELF, ADS1.2 [Build 848]"},
};

int Run(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out) {
    switch (tool.kind) {
        case ToolKind::kCompiler: return RunCompiler(tool, words, out);
        case ToolKind::kAssembler: return RunAssembler(tool, words, out);
        case ToolKind::kLinker: return RunLinker(tool, words, out);
        case ToolKind::kLibrarian: return RunLibrarian(tool, words, out);
        case ToolKind::kFromElf: return RunFromElf(tool, words, out);
    }
    return kExitFailure;
}

}  // namespace

const ToolInfo* FindTool(const std::string& program) {
    std::string name = Lower(FileName(program));
    if (name.size() > 4 && name.compare(name.size() - 4, 4, ".exe") == 0) name.resize(name.size() - 4);
    for (const ToolInfo& tool : kTools) {
        if (name == tool.name) return &tool;
    }
    return nullptr;
}

}  // namespace fakeads

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    const std::string program = argc > 0 ? argv[0] : "";
    const fakeads::ToolInfo* tool = fakeads::FindTool(program);
    // Run as "fakeads TOOL ..." the first word names the tool.
    if (tool == nullptr && !words.empty()) {
        tool = fakeads::FindTool(words.front());
        if (tool != nullptr) words.erase(words.begin());
    }
    if (tool == nullptr) {
        std::fprintf(stderr,
                     "fakeads: cannot tell which tool to be from the name \"%s\"; install me as armasm, armcc, "
                     "armcpp, tcc, tcpp, armlink, armar or fromelf\n",
                     program.c_str());
        return 2;
    }
    std::string out;
    const int status = fakeads::Run(*tool, words, &out);
    std::fwrite(out.data(), 1, out.size(), stdout);
    std::fflush(stdout);
    return status;
}
