// The tables shared by the compiler and assembler pages: processors, floating
// point units and the source languages of the compilers.
#pragma once

#include <string>

namespace ads::options {

constexpr int kProcessorCount = 62;
constexpr int kDefaultProcessor = 32;
inline constexpr char kDefaultProcessorName[] = "ARM7TDMI";
extern const char* const kProcessors[kProcessorCount];

// Index of `name` in the processor table by exact comparison, or -1.
int FindProcessor(const std::string& name);

struct FpuEntry {
    const char* combo_text;
    const char* switch_text;  // "" for the compilers' default
};
constexpr int kFpuCount = 8;
constexpr int kFpuSoftDefault = 4;  // "Pure-endian softfp" writes nothing
extern const FpuEntry kFpus[kFpuCount];

// The FPU as an option string names it: the first candidate that occurs
// decides, in this order, and none of them means kFpuSoftDefault.
// " -fpu SoftVFP+VFP" comes before " -fpu SoftVFP+VFPv2" and is a prefix of
// it, so the latter reads back as the former: kept so on purpose.
int ReadFpu(const std::string& options);

struct LanguageEntry {
    const char* combo_text;
    const char* switch_text;
};
constexpr int kCLanguageCount = 2;
constexpr int kCppLanguageCount = 5;
extern const LanguageEntry kCLanguages[kCLanguageCount];
extern const LanguageEntry kCppLanguages[kCppLanguageCount];

}  // namespace ads::options
