// The eight tools of the simulated toolchain. Each reads its words (the
// command line after the program name), does its work in the current
// directory, appends what it prints to *out and returns its exit status.
#pragma once

#include <string>
#include <vector>

namespace fakeads {

constexpr int kExitSuccess = 0;
constexpr int kExitFailure = 1;

enum class ToolKind { kCompiler, kAssembler, kLinker, kLibrarian, kFromElf };

struct ToolInfo {
    const char* name;    // "armcc": the program's file name without ".exe"
    ToolKind kind;
    const char* banner;  // printed for -vsn
    bool thumb = false;  // compilers: tcc and tcpp start in Thumb state
    bool cplusplus = false;
};

// The tool a program file name stands for (any case, with or without
// ".exe", with or without a directory); null for any other name.
const ToolInfo* FindTool(const std::string& program);

int RunCompiler(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out);
int RunAssembler(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out);
int RunLinker(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out);
int RunLibrarian(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out);
int RunFromElf(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out);

// The -M answer: one "object: dependency" line per dependency, blanks in
// names escaped as "\ ".
std::string DependencyRule(const std::string& object, const std::vector<std::string>& dependencies);

}  // namespace fakeads
