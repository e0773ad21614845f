// compile_commands.json for clangd: each C and C++ file's ADS compiler
// command, turned into arguments clang understands.
//
// What the ADS switches become (first matching row wins; the program's
// name and every other word are dropped):
//
//   ADS                          clang
//   (armcc, tcc, armcpp, tcpp)   clang --target=arm-none-eabi; tcc and tcpp add -mthumb
//   -cpu NAME                    -mcpu=... or -march=... when clang knows the
//                                processor, else nothing (default: -mcpu=arm7tdmi)
//   -fpu VFPv1|VFPv2             -mfpu=vfpv2 -mfloat-abi=hard
//   -fpu SoftVFP+VFP[v2]         -mfpu=vfpv2 -mfloat-abi=softfp
//   -fpu SoftVFP|SoftFPA|None|FPA  -mfloat-abi=soft
//   -bi, -bigend / -li, -littleend  -mbig-endian / -mlittle-endian
//   -I"a;b"                      -Ia -Ib (a trailing "*" cut, the folder kept)
//   -J"a;b"                      -isystem a -isystem b
//   -Dx, -Ux                     kept
//   -W (alone)                   -w
//   -zc                          -fsigned-char
//   -fy                          nothing; without it -fshort-enums, since ADS
//                                sizes an enum by its values
//   -strict                      C is -std=c89 instead of -std=gnu89
//   -W..., -E..., -O..., -g..., -f..., -z..., -apcs X, -via F, -o F,
//   -errors F, -c, -ansi, -cpp, -embeddedcplusplus, -split_ldm, any other
//                                dropped
//
// C files get -xc and -std=gnu89 (or c89), C++ files -xc++ -std=c++98; the
// source follows "-c" at the end. With POSIX paths, backslashes in paths
// become slashes.
#pragma once

#include <string>
#include <vector>

namespace ads::host {

enum class SourceLanguage { kC, kCpp };

struct PathStyle {
    bool posix = false;  // "\" in paths becomes "/"
};

// The clang arguments for an ADS compiler command line; `file` is the source
// as clangd should see it.
std::vector<std::string> ClangdArguments(const std::string& ads_command, SourceLanguage language,
                                         const std::string& file, PathStyle style);

struct CompileCommand {
    std::string directory;
    std::string file;
    std::vector<std::string> arguments;
};

// A JSON string literal: quote, backslash and control bytes escaped, every
// other byte as it is (UTF-8 stays UTF-8).
std::string JsonString(const std::string& text);

// The whole file: a JSON array of {"directory", "file", "arguments"}.
std::string CompileCommandsJson(const std::vector<CompileCommand>& commands);

}  // namespace ads::host
