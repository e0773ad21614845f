// Generated page-state sets: written as switches and read back, they give
// the same states, except where the switches cannot carry a state back by
// design; those cases are mapped explicitly below, each with its reason.
#include <gtest/gtest.h>

#include <random>

#include "options/assembler_options.h"
#include "options/compiler_options.h"
#include "options/option_tables.h"
#include "options/pages.h"

namespace ads::options {
namespace {

constexpr int kRounds = 3000;

struct Random {
    std::mt19937 engine;
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(engine); }
    int Bit() { return Below(2); }
    template <typename T, size_t N>
    const T& Pick(const T (&items)[N]) { return items[Below(static_cast<int>(N))]; }
};

// Texts chosen so that they hold none of the switches the readers look for.
const char* const kDefines[] = {"DEBUG", "LEVEL=2", "NAME_1", "X=abc", "Y", "MSG=a b"};
const char* const kViaFiles[] = {"opts.via", "C:\\My Files\\build.via", "{Project}cfg\\arm.via"};
const char* const kPredefines[] = {"A SETA 1", "FLAG SETL {TRUE}", "N SETA 0x10", "S SETS hello world"};
const char* const kWidths[] = {"", "79", "100", "132"};
const char* const kLengths[] = {"", "66", "60", "0"};

// Language indexes run over the C++ table for both families: the C combo
// writes nothing for the indexes it does not have.
CompilerSettings RandomCompiler(Random& r) {
    CompilerSettings s;
    s.target = {r.Below(kProcessorCount), r.Below(kFpuCount), r.Below(kCppLanguageCount), r.Bit()};
    for (int& v : s.atpcs) v = r.Bit();
    for (int& v : s.warnings) v = r.Below(4) == 0;  // mostly off, so lists stay short
    for (int& v : s.errors) v = r.Below(3) != 0;
    s.debug_opt = {r.Bit(), r.Bit(), r.Bit(), r.Below(3), r.Bit()};
    for (int& v : s.code_gen) v = r.Bit();
    for (int n = r.Below(3); n > 0; --n) s.preprocessor += DefinesText({r.Pick(kDefines)});
    if (r.Bit()) s.extras = ViaText(r.Pick(kViaFiles));
    return s;
}

// What reading back must give for states written by WriteCompilerOptions.
CompilerSettings ExpectedCompiler(CompilerSettings s, bool c_language) {
    // " -fpu SoftVFP+VFP" is found before " -fpu SoftVFP+VFPv2", a prefix of it.
    if (s.target[kTarFpu] == 6) s.target[kTarFpu] = 5;
    // The C combo has two entries; any other index writes nothing.
    if (c_language && s.target[kTarLanguage] != 1) s.target[kTarLanguage] = 0;
    // " -fx" is not written when " -W" is.
    if (s.warnings[kWarnNone] == 1) s.warnings[kWarnAll] = 0;
    // Letters come from the first " -W": the bare " -W" (no letters) when
    // warnings are off, or the " -W+p" of strict ANSI C++ written before it.
    const bool strict_ansi_cpp = !c_language && s.target[kTarLanguage] == 1;
    if (s.warnings[kWarnNone] == 1 || strict_ansi_cpp) {
        for (const OptionRow& row : kWarningRows) {
            if (row.letter != 0) s.warnings[row.position] = row.on_by_default ? 1 : 0;
        }
        if (strict_ansi_cpp) s.warnings[6] = 1;  // p, "Non-ANSI header"
    }
    return s;
}

AssemblerSettings RandomAssembler(Random& r) {
    AssemblerSettings a;
    a.target = {r.Below(kFpuCount), r.Below(kProcessorCount), r.Bit(), r.Bit()};
    a.atpcs = {r.Below(3), r.Below(4) == 0, r.Bit(), r.Bit(), r.Bit(), r.Bit()};
    for (int& v : a.option) v = r.Bit();
    for (int& v : a.listing) v = r.Bit();
    a.width = r.Pick(kWidths);
    a.length = r.Pick(kLengths);
    std::vector<std::string> entries;
    for (int n = r.Below(3); n > 0; --n) entries.push_back(r.Pick(kPredefines));
    a.predefines = PredefinesText(entries);
    if (r.Bit()) a.extras = ViaText(r.Pick(kViaFiles));
    return a;
}

AssemblerSettings ExpectedAssembler(AssemblerSettings a) {
    if (a.target[kAsmTarFpu] == 6) a.target[kAsmTarFpu] = 5;
    // " -apcs none" is written alone: the other ATPCS choices are lost.
    if (a.atpcs[kAsmCallingStandard] == 1) {
        a.atpcs[kAsmSoftwareStack] = 1;
        a.atpcs[kAsmInterwork] = a.atpcs[kAsmRopi] = a.atpcs[kAsmRwpi] = 0;
    }
    // An empty width is not written and reads back as the default.
    if (a.width.empty()) a.width = kDefaultListingWidth;
    // The page length is never written; only the continuous page writes 0.
    a.length = a.listing[kAsmContinuous] != 0 ? "0" : kDefaultListingLength;
    return a;
}

TEST(RoundTrip, GeneratedCompilerStatesReadBackAsWritten) {
    Random r{std::mt19937(20240611)};
    for (int round = 0; round < kRounds; ++round) {
        const bool c_language = round % 2 == 0;
        const CompilerSettings s = RandomCompiler(r);
        const std::string written = WriteCompilerOptions(s, c_language);
        ASSERT_EQ(ReadCompilerSettings(written, c_language), ExpectedCompiler(s, c_language))
            << "round " << round << ": " << written;
        // Once read, writing is stable.
        const std::string again = WriteCompilerOptions(ReadCompilerSettings(written, c_language), c_language);
        ASSERT_EQ(WriteCompilerOptions(ReadCompilerSettings(again, c_language), c_language), again) << again;
    }
}

TEST(RoundTrip, GeneratedAssemblerStatesReadBackAsWritten) {
    Random r{std::mt19937(7)};
    for (int round = 0; round < kRounds; ++round) {
        const AssemblerSettings a = RandomAssembler(r);
        const std::string written = WriteAssemblerOptions(a);
        ASSERT_EQ(ReadAssemblerSettings(written), ExpectedAssembler(a)) << "round " << round << ": " << written;
        const std::string again = WriteAssemblerOptions(ReadAssemblerSettings(written));
        ASSERT_EQ(WriteAssemblerOptions(ReadAssemblerSettings(again)), again) << again;
    }
}

// Knocks random positions of the target's state out to -1 (not set there)
// and gives `merged` what the overlay must make of them.
template <size_t N>
void Sparse(Random& r, std::array<int, N>& target, const std::array<int, N>& wide, std::array<int, N>& merged) {
    for (size_t i = 0; i < N; ++i) {
        if (r.Bit()) target[i] = kUnset;
        merged[i] = target[i] == kUnset ? wide[i] : target[i];
    }
}

TEST(RoundTrip, TargetStatesOverGeneratedToolWideStrings) {
    Random r{std::mt19937(99)};
    for (int round = 0; round < kRounds; ++round) {
        const bool c_language = round % 2 == 1;
        // A tool-wide string as the tool-wide pages would write it.
        const std::string wide_text = WriteCompilerOptions(RandomCompiler(r), c_language);
        const CompilerSettings wide = ReadCompilerSettings(wide_text, c_language);
        CompilerSettings target = RandomCompiler(r), merged;
        Sparse(r, target.target, wide.target, merged.target);
        Sparse(r, target.atpcs, wide.atpcs, merged.atpcs);
        Sparse(r, target.warnings, wide.warnings, merged.warnings);
        Sparse(r, target.errors, wide.errors, merged.errors);
        Sparse(r, target.debug_opt, wide.debug_opt, merged.debug_opt);
        Sparse(r, target.code_gen, wide.code_gen, merged.code_gen);
        merged.preprocessor = wide.preprocessor + target.preprocessor;
        merged.extras = wide.extras + target.extras;

        ASSERT_EQ(EffectiveCompilerOptions(wide_text, ToPageStates(target), c_language),
                  WriteCompilerOptions(merged, c_language))
            << "round " << round << ": " << wide_text;
    }
}

}  // namespace
}  // namespace ads::options
