// libFuzzer target of the option codec: arbitrary bytes as a tool-wide
// option string, as page states laid over it, and as list-page texts.
//
// Besides not crashing, it checks what must hold for any input:
//   - writing either succeeds or fails with exactly the family's error text;
//     what it writes is empty or starts with a blank, unless a target's text
//     page (inserted as it stands) does not;
//   - a page state that was scanned and formatted scans back to itself;
//   - list entries read out of any text are written and read back unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "options/assembler_options.h"
#include "options/compiler_options.h"
#include "options/option_error.h"
#include "options/pages.h"

namespace {

using namespace ads::options;

void Require(bool condition) {
    if (!condition) std::abort();
}

bool BlankLed(const std::string& text) { return text.empty() || text[0] == ' '; }

void CompilerString(const std::string& text, const PageStateSet& states) {
    const bool texts_blank_led = BlankLed(states[kCcPrePro]) && BlankLed(states[kCcExtras]);
    for (bool c_language : {true, false}) {
        try {
            const std::string out = EffectiveCompilerOptions(text, states, c_language);
            Require(BlankLed(out) || !texts_blank_led);
        } catch (const OptionError& e) {
            Require(std::strcmp(e.what(), kCompilerOptionError) == 0);
        }
    }
}

void AssemblerString(const std::string& text, const PageStateSet& states) {
    const bool texts_blank_led = BlankLed(states[kAsmPds]) && BlankLed(states[kAsmEts]);
    try {
        const std::string out = EffectiveAssemblerOptions(text, states);
        Require(BlankLed(out) || !texts_blank_led);
    } catch (const OptionError& e) {
        Require(std::strcmp(e.what(), kAssemblerOptionError) == 0);
    }
}

void PageStates(const std::string& text) {
    for (int count : {kTargetPageSize, kDebugOptPageSize, kAsmAtpcsPageSize, kErrorsPageSize, kWarningsPageSize}) {
        int values[kWarningsPageSize];
        for (int& v : values) v = kUnset;
        ScanPageState(text, values, count);
        int back[kWarningsPageSize];
        Require(ScanPageState(FormatPageState(values, count), back, count) == count);
        Require(std::memcmp(values, back, sizeof(int) * count) == 0);
    }
}

void ListTexts(const std::string& text) {
    const std::vector<std::string> predefines = PredefineEntries(text);
    Require(PredefineEntries(PredefinesText(predefines)) == predefines);
    const std::vector<std::string> defines = DefineEntries(text);
    Require(DefineEntries(DefinesText(defines)) == defines);
    if (!text.empty()) Require(ViaFile(ViaText(text)) == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);

    // The part before the first 0 byte is the option string; the parts after
    // it fill the page-state slots in turn.
    PageStateSet states;
    size_t cut = input.find('\0');
    const std::string text = input.substr(0, cut);
    for (int slot = 0; slot < kSlotCount && cut != std::string::npos; ++slot) {
        size_t next = input.find('\0', cut + 1);
        states[slot] = input.substr(cut + 1, next == std::string::npos ? std::string::npos : next - cut - 1);
        cut = next;
    }

    CompilerString(text, {});
    CompilerString(text, states);
    AssemblerString(text, {});
    AssemblerString(text, states);
    PageStates(input);
    ListTexts(text);
    return 0;
}
