// fromelf: fromelf [format] [-nodebug] [-output file] image
#include <cctype>

#include "command_line.h"
#include "diagnostics.h"
#include "file_formats.h"
#include "image_formats.h"
#include "paths.h"
#include "tools.h"

namespace fakeads {
namespace {

constexpr char kTextFlags[] = "vdgztscr";

// -text/cs: the flags of the text description after a "/".
bool IsTextFlags(const std::string& value, std::string* why) {
    if (value.empty()) return true;
    if (value[0] != '/' || value.size() < 2) {
        *why = "text flags are written -text/flags";
        return false;
    }
    for (size_t i = 1; i < value.size(); ++i) {
        if (std::string(kTextFlags).find(static_cast<char>(std::tolower(static_cast<unsigned char>(value[i])))) ==
            std::string::npos) {
            *why = std::string("unknown text flag ") + value[i];
            return false;
        }
    }
    return true;
}

const char* const kFormats[] = {"bin", "elf", "m32", "i32", "ihf", "aif", "aifbin", "bhx", "vhx", "fieldoffsets", "text"};

const SwitchTable& FromElfSwitches() {
    static const SwitchTable table{
        {
            {"bin"},
            {"elf"},
            {"m32"},
            {"i32"},
            {"ihf"},
            {"aif"},
            {"aifbin"},
            {"bhx"},
            {"vhx"},
            {"fieldoffsets"},
            {"text", Value::kAttachedOptional, IsTextFlags},
            // The text flags written one by one, as the option page writes them.
            {"v"},
            {"d"},
            {"g"},
            {"z"},
            {"t"},
            {"s"},
            {"c"},
            {"r"},
            {"nodebug"},
            {"output", Value::kNext},
            {"o", Value::kNext},
            {"via", Value::kNext},
            {"vsn"},
        },
        Spelling::kCaseless,
    };
    return table;
}

}  // namespace

int RunFromElf(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out) {
    Report report(out);
    CommandLine line;
    std::string error;
    if (!ReadCommandLine(FromElfSwitches(), words, &line, &error)) {
        report.General(Severity::kFatal, "Q0900U: " + error);
        return kExitFailure;
    }
    if (line.Has("vsn")) *out += std::string(tool.banner) + "\n";
    if (line.inputs.size() != 1) {
        if (line.inputs.empty() && line.Has("vsn")) return kExitSuccess;
        report.General(Severity::kFatal, line.inputs.empty() ? std::string("Q0901U: No input file given.")
                                                             : "Q0902U: More than one input file given.");
        return kExitFailure;
    }

    // The last format switch decides; without one the image is described as text.
    std::string format = "text";
    std::string flags;
    std::string output;
    bool nodebug = false;
    for (const Option& option : line.options) {
        for (const char* known : kFormats) {
            if (option.key == known) format = known;
        }
        if (option.key == "text") {
            for (size_t i = 1; i < option.value.size(); ++i) {
                flags += static_cast<char>(std::tolower(static_cast<unsigned char>(option.value[i])));
            }
        }
        if (option.key.size() == 1 && std::string(kTextFlags).find(option.key[0]) != std::string::npos) {
            flags += option.key;
        }
        if (option.key == "output" || option.key == "o") output = option.value;
        if (option.key == "nodebug") nodebug = true;
    }

    // Only the text formats may go to the standard output.
    if (output.empty() && format != "text" && format != "fieldoffsets") {
        report.General(Severity::kFatal, "Q0105U: -output is needed for -" + format + ".");
        return kExitFailure;
    }

    const std::string input = line.inputs[0];
    std::string contents;
    if (!ReadFile(input, &contents)) {
        report.General(Severity::kFatal, "Q0103U: Could not open file " + input + ": No such file or directory");
        return kExitFailure;
    }
    ImageFile image;
    ObjectFile object;
    std::string converted;
    if (ReadImage(contents, &image)) {
        if (nodebug) image.debug = false;
        if (format == "bin") converted = PlainBinary(image);
        else if (format == "elf") converted = WriteImage(image);
        else if (format == "m32") converted = MotorolaHex(image, FileName(output.empty() ? input : output));
        else if (format == "i32") converted = IntelHex(image, true);
        else if (format == "ihf") converted = IntelHex(image, false);
        else if (format == "aif") converted = AifImage(image, true);
        else if (format == "aifbin") converted = AifImage(image, false);
        else if (format == "bhx") converted = ByteHex(image);
        else if (format == "vhx") converted = VerilogHex(image);
        else if (format == "fieldoffsets") converted = FieldOffsets(input, image);
        else converted = TextDescription(input, image, flags);
    } else if (ReadObject(contents, &object) && format == "text") {
        converted = ObjectDescription(input, object, flags);
    } else {
        report.General(Severity::kFatal, "Q0104U: " + input + " is not an image of this toolchain.");
        return kExitFailure;
    }

    if (output.empty()) {
        *out += converted;
        return kExitSuccess;
    }
    if (!WriteFile(output, converted)) {
        report.General(Severity::kFatal, "Q0106U: Could not write file " + output + ".");
        return kExitFailure;
    }
    return kExitSuccess;
}

}  // namespace fakeads
