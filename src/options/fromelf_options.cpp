#include "options/fromelf_options.h"

#include "options/option_text.h"

namespace ads::options {

namespace {

// The formats in the order they are looked for. "-aif" comes first and is
// part of "-aifbin", so a string with " -aifbin" reads back as "Executable
// AIF": kept so on purpose.
constexpr FromElfFormat kFormatReadOrder[] = {kFormatAif, kFormatAifBin, kFormatBin, kFormatM32, kFormatI32,
                                              kFormatIhf, kFormatElf, kFormatBhx, kFormatFieldOffsets, kFormatVhx};
constexpr int kTextFlags[] = {kTextVerbose, kTextData, kTextDebugTable, kTextSize,
                              kTextStrings, kTextSymbols, kTextDisassemble, kTextRelocations};

const OptionRow& RowOf(int position) { return *RowAt(kFromElfPage, position); }

void ReadFromElf(const std::string& s, PageValues& v) {
    int format = kFormatText;
    for (FromElfFormat f : kFormatReadOrder) {
        // The switch without its leading blank.
        if (Contains(s, kFromElfFormats[f].switch_text + 1)) {
            format = f;
            break;
        }
    }
    v.values[kOutputFormat] = format;
    for (int flag : kTextFlags) v.values[flag] = format == kFormatText && Contains(s, RowOf(flag).set_switch + 1);

    // Only a name between double quotes is read.
    v.texts[kOutputFile].clear();
    const size_t output = s.find("-output");
    const size_t open = output == std::string::npos ? output : s.find('"', output);
    const size_t close = open == std::string::npos ? open : s.find('"', open + 1);
    if (close != std::string::npos) v.texts[kOutputFile] = s.substr(open + 1, close - open - 1);

    v.values[kIncludeDebug] = !Contains(s, "-nodebug");
}

std::string WriteFromElf(const PageValues& v) {
    std::string out = SwitchOf(RowOf(kIncludeDebug), v.Value(kIncludeDebug), true);
    const int format = v.Value(kOutputFormat);
    if (format == kFormatText) {
        for (int flag : kTextFlags) out += SwitchOf(RowOf(flag), v.Value(flag), true);
    } else {
        out += SwitchOf(RowOf(kOutputFormat), format, true);
    }
    if (!v.Text(kOutputFile).empty()) out += " -output \"" + v.Text(kOutputFile) + "\"";
    return out;
}

// Debug sections can be kept in an AIF or ELF image only; the text flags
// belong to the text format.
bool FromElfEnabled(const PageValues& v, int index) {
    const int position = kFromElfRows[index].position;
    const int format = v.Value(kOutputFormat);
    if (position == kIncludeDebug) return format == kFormatAif || format == kFormatAifBin || format == kFormatElf;
    if (position >= kTextVerbose) return format == kFormatText;
    return true;
}

}  // namespace

const SwitchPageRules kFromElfRules = {&kFromElfPage, ReadFromElf, WriteFromElf, FromElfEnabled};

}  // namespace ads::options
