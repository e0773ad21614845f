#include "options/option_tables.h"

#include "options/option_text.h"

namespace ads::options {

const char* const kProcessors[kProcessorCount] = {
    "3", "3m", "4", "4T", "4xM", "4TxM", "5", "5T", "5xM", "5TxM", "5E", "5TE", "5TExP",
    "5TEJ", "XScale", "ARM6", "ARM60", "ARM600", "ARM610", "ARM7", "ARM710A", "ARM710AM",
    "ARM7100", "ARM7500", "ARM7500FE", "ARM7D", "ARM7DI", "ARM7DM", "ARM7EJ-S", "ARM7DMI",
    "ARM7TM", "ARM7TDM", "ARM7TDMI", "ARM710T", "ARM720T", "ARM740T", "ARM7TM-S",
    "ARM7TDMI-S", "ARM7T-S", "ARM7TDI-S", "ARM810", "SA-110", "SA-1100", "ARM9TDMI",
    "ARM920T", "ARM922T", "ARM940T", "ARM9E-S", "ARM9EJ-S", "ARM926EJ-S", "ARM946E-S",
    "ARM966E-S", "ARM9E-S-rev0", "ARM946E-S-rev0", "ARM966E-S-rev0", "ARM10TDMI",
    "ARM1020T", "ARM10200", "ARM10E", "ARM1020E", "ARM1022E", "ARM10200E",
};

const FpuEntry kFpus[kFpuCount] = {
    {"FPA format and instructions", " -fpu FPA"},
    {"VFPv1 format and instructions", " -fpu VFPv1"},
    {"VFPv2 format and instructions", " -fpu VFPv2"},
    {"Old-style mixed-endian softfp", " -fpu SoftFPA"},
    {"Pure-endian softfp", ""},
    {"VFP with softvfp calling", " -fpu SoftVFP+VFP"},
    {"VFPv2 with softvfp calling", " -fpu SoftVFP+VFPv2"},
    {"No floating point", " -fpu None"},
};

const LanguageEntry kCLanguages[kCLanguageCount] = {
    {"ANSI/ISO Standard C", ""},
    {"Strict ANSI/ISO Standard C (ANSI X3.159)", " -ansi -strict"},
};

const LanguageEntry kCppLanguages[kCppLanguageCount] = {
    {"ANSI/ISO Standard C", " -ansi"},
    {"Strict ANSI/ISO Standard C (ANSI X3.159)", " -ansi -strict -W+p"},
    {"ISO Standard C++", ""},
    {"Strict ISO/IEC Standard C++", " -cpp -strict"},
    {"Embedded C++", " -embeddedcplusplus"},
};

int FindProcessor(const std::string& name) {
    for (int i = 0; i < kProcessorCount; ++i) {
        if (name == kProcessors[i]) return i;
    }
    return -1;
}

int ReadFpu(const std::string& options) {
    static const int kReadOrder[] = {3, 5, 6, 7, 0, 1, 2};
    for (int index : kReadOrder) {
        if (Contains(options, kFpus[index].switch_text)) return index;
    }
    return kFpuSoftDefault;
}

}  // namespace ads::options
