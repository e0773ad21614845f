// armlink: objects and libraries in, an image (or, with -partial, an
// object) out; the link messages the objects carry are printed here.
#include <cstdio>
#include <ctime>

#include "command_line.h"
#include "diagnostics.h"
#include "file_formats.h"
#include "linker_listings.h"
#include "paths.h"
#include "tools.h"

namespace fakeads {
namespace {

constexpr uint32_t kDefaultRoBase = 0x8000;
constexpr char kDefaultImage[] = "__image.axf";

bool TakesParenthesised(const std::string& next) { return !next.empty() && next[0] == '('; }

// -remove (ro/rw/zi/dbg): a non-empty list of those names in parentheses.
bool IsRemoveList(const std::string& value, std::string* why) {
    if (value.size() < 3 || value.front() != '(' || value.back() != ')') {
        *why = "expected (ro/rw/zi/dbg)";
        return false;
    }
    const std::string inside = value.substr(1, value.size() - 2);
    size_t start = 0;
    while (start <= inside.size()) {
        size_t end = inside.find('/', start);
        if (end == std::string::npos) end = inside.size();
        const std::string item = Lower(inside.substr(start, end - start));
        if (item != "ro" && item != "rw" && item != "zi" && item != "dbg") {
            *why = item.empty() ? "empty section kind" : "unknown section kind " + item;
            return false;
        }
        start = end + 1;
    }
    return true;
}

bool IsInfoTopics(const std::string& value, std::string* why) {
    size_t start = 0;
    while (start <= value.size()) {
        size_t end = value.find(',', start);
        if (end == std::string::npos) end = value.size();
        const std::string topic = Lower(value.substr(start, end - start));
        bool known = false;
        for (const char* name : {"sizes", "totals", "unused", "veneers", "interwork"}) known = known || topic == name;
        if (!known) {
            *why = "expected sizes, totals, unused, veneers or interwork";
            return false;
        }
        start = end + 1;
    }
    return true;
}

const SwitchTable& LinkerSwitches() {
    static const SwitchTable table{
        {
            {"partial"},
            {"output", Value::kNext},
            {"o", Value::kNext},
            {"elf"},
            {"reloc"},
            {"ro-base", Value::kNext, IsNumber},
            {"ropi"},
            {"rw-base", Value::kNext, IsNumber},
            {"rwpi"},
            {"split"},
            {"debug"},
            {"nodebug"},
            {"remove", Value::kOptionalNext, IsRemoveList, TakesParenthesised},
            {"noremove"},
            {"entry", Value::kNext},
            {"keep", Value::kNext},
            {"first", Value::kNext},
            {"last", Value::kNext},
            {"libpath", Value::kNextMayBeEmpty},
            {"scanlib"},
            {"noscanlib"},
            {"armlib"},
            {"locals"},
            {"nolocals"},
            {"callgraph"},
            {"info", Value::kNext, IsInfoTopics},
            {"map"},
            {"symbols"},
            {"mangled"},
            {"unmangled"},
            {"symdefs", Value::kNext},
            {"edit", Value::kNext},
            {"xref"},
            {"errors", Value::kNext},
            {"list", Value::kNext},
            {"verbose"},
            {"via", Value::kNext},
            {"strict"},
            {"unresolved", Value::kNext},
            {"scatter", Value::kNext},
            {"vsn"},
        },
        Spelling::kCaseless,
    };
    return table;
}

uint32_t Number(const std::string& text) {
    if (!text.empty() && text[0] == '&') return static_cast<uint32_t>(std::stoul(text.substr(1), nullptr, 16));
    return static_cast<uint32_t>(std::stoul(text, nullptr, 0));
}

// The base address of the first load region of a scatter description
// ("LR_ROM 0x0 0x80000 { ... }"); false when the text does not look like
// one (no region, or braces that do not pair up). ";" starts a comment.
bool ScatterBase(const std::string& text, uint32_t* base) {
    int depth = 0;
    bool found = false;
    bool comment = false;
    std::string header;  // the text before a region's "{"
    for (char c : text) {
        if (c == '\n') comment = false;
        if (comment || c == ';') {
            comment = true;
            continue;
        }
        if (c == '{') {
            if (depth == 0 && !found) {
                const std::vector<std::string> words = SplitWords(header);
                std::string why;
                if (words.size() >= 2 && IsNumber(words[1], &why)) {
                    *base = Number(words[1]);
                    found = true;
                }
            }
            ++depth;
            header.clear();
        } else if (c == '}') {
            if (--depth < 0) return false;
            header.clear();
        } else {
            header += c;
        }
    }
    return depth == 0 && found;
}

struct Input {
    std::string path;
    std::string contents;
    ObjectFile object;
};

class Linker {
public:
    Linker(const ToolInfo& tool, std::string* out) : tool_(tool), out_(out), report_(&diagnostics_) {}

    int Run(const std::vector<std::string>& words) {
        std::string error;
        if (!ReadCommandLine(LinkerSwitches(), words, &line_, &error)) {
            report_.General(Severity::kFatal, "L6900U: " + error);
            return Finish(kExitFailure);
        }
        if (line_.Has("vsn")) *out_ += std::string(tool_.banner) + "\n";
        if (line_.inputs.empty()) {
            if (line_.Has("vsn")) return kExitSuccess;
            report_.General(Severity::kFatal, "L6903U: No input files.");
            return Finish(kExitFailure);
        }
        output_ = kDefaultImage;
        for (const Option& option : line_.options) {
            if (option.key == "output" || option.key == "o") output_ = option.value;
        }
        if (!ReadSteering() || !ReadInputs()) return Fail();
        const bool partial = line_.Has("partial");
        if (!partial) {
            CheckAttributes();
            ReportLinkMessages();
        }
        if (report_.Failed()) return Fail();
        if (partial) {
            if (!WriteOutput(WriteObject(PartialObject()))) return Fail();
            return Finish(kExitSuccess);
        }
        const ImageFile image = Image();
        if (!WriteOutput(WriteImage(image))) return Fail();
        Listings(image);
        return Finish(kExitSuccess);
    }

private:
    // Scatter description and steering file: both must be there.
    bool ReadSteering() {
        if (line_.Has("scatter")) {
            const std::string file = line_.Last("scatter");
            std::string text;
            if (!ReadFile(file, &text)) {
                report_.General(Severity::kFatal, "L6003U: Could not open scatter description file " + file + ".");
                return false;
            }
            if (!ScatterBase(text, &scatter_base_)) {
                report_.General(Severity::kError, "L6004E: Scatter description " + file + " is not well formed.");
                return false;
            }
            has_scatter_base_ = true;
        }
        if (line_.Has("edit")) {
            const std::string file = line_.Last("edit");
            if (!FileExists(file)) {
                report_.General(Severity::kFatal, "L6005U: Could not open steering file " + file + ".");
                return false;
            }
        }
        return true;
    }

    bool ReadInputs() {
        for (const std::string& path : line_.inputs) {
            Input input;
            input.path = path;
            if (!ReadFile(path, &input.contents)) {
                report_.General(Severity::kFatal,
                                "L6002U: Could not open file " + path + ": No such file or directory");
                return false;
            }
            std::vector<ArchiveMember> members;
            if (ReadObject(input.contents, &input.object)) {
                inputs_.push_back(input);
            } else if (ReadArchive(input.contents, &members)) {
                // Library members are loaded only for the symbols they
                // define, which the simulation does not model: a library is
                // checked and otherwise left alone.
                for (const ArchiveMember& member : members) {
                    ObjectFile ignored;
                    if (!ReadObject(member.data, &ignored)) {
                        report_.General(Severity::kFatal, "L6001U: Could not read file " + path + "(" + member.name +
                                                              "): not an object of this toolchain.");
                        return false;
                    }
                }
            } else {
                report_.General(Severity::kFatal, "L6001U: Could not read file " + path +
                                                      ": not an object or library of this toolchain.");
                return false;
            }
        }
        if (inputs_.empty()) {
            report_.General(Severity::kFatal, "L6903U: No input objects.");
            return false;
        }
        return true;
    }

    void CheckAttributes() {
        const std::string& order = inputs_.front().object.byte_order;
        for (const Input& input : inputs_) {
            if (input.object.byte_order != order) {
                report_.General(Severity::kError, "L6242E: Cannot link object " + FileName(input.path) +
                                                      " as its attributes are incompatible with the image attributes.");
            }
        }
    }

    void ReportLinkMessages() {
        for (const Input& input : inputs_) {
            for (const LinkMessage& message : input.object.link_messages) {
                const Severity severity = message.kind == MarkerKind::kLinkWarning ? Severity::kWarning
                                          : message.kind == MarkerKind::kLinkFatal ? Severity::kFatal
                                                                                   : Severity::kError;
                report_.General(severity, message.text);
                if (severity == Severity::kFatal) return;
            }
        }
    }

    ObjectFile PartialObject() const {
        ObjectFile object;
        object.tool = tool_.name;
        object.source = output_;
        object.byte_order = inputs_.front().object.byte_order;
        object.attributes.push_back("partial");
        for (const Input& input : inputs_) {
            object.dependencies.push_back(Dependency{input.path, Fingerprint(input.contents)});
            for (const std::string& symbol : input.object.symbols) object.symbols.push_back(symbol);
            for (const LinkMessage& message : input.object.link_messages) object.link_messages.push_back(message);
            object.code_size += input.object.code_size;
        }
        return object;
    }

    ImageFile Image() const {
        ImageFile image;
        image.byte_order = inputs_.front().object.byte_order;
        uint32_t base = line_.Has("reloc") ? 0 : kDefaultRoBase;
        if (has_scatter_base_) base = scatter_base_;
        if (line_.Has("ro-base")) base = Number(line_.Last("ro-base"));
        for (const char* attribute : {"ropi", "rwpi", "reloc", "split"}) {
            if (line_.Has(attribute)) image.attributes.push_back(attribute);
        }
        for (const Option& option : line_.options) {
            if (option.key == "debug") image.debug = true;
            if (option.key == "nodebug") image.debug = false;
        }
        uint32_t address = base;
        std::string seed_text;
        for (const Input& input : inputs_) {
            image.objects.push_back(Dependency{input.path, Fingerprint(input.contents)});
            seed_text += Hex64(Fingerprint(input.contents));
            uint32_t offset = 0;
            for (const std::string& symbol : input.object.symbols) {
                image.symbols.push_back(ImageSymbol{address + offset, symbol, input.path});
                if (offset + 4 < input.object.code_size) offset += 4;
            }
            address += (input.object.code_size + 3) & ~3u;
        }
        const uint32_t ro_size = address - base;
        image.regions.push_back(ImageRegion{"ER_RO", base, ro_size, Fingerprint(seed_text)});
        const uint32_t rw_base = line_.Has("rw-base") ? Number(line_.Last("rw-base")) : address;
        image.regions.push_back(ImageRegion{"ER_RW", rw_base, 4 * static_cast<uint32_t>(inputs_.size()),
                                            Fingerprint(seed_text + "rw")});
        image.entry = base;
        const std::string entry = line_.Last("entry");
        std::string why;
        if (IsNumber(entry, &why)) {
            image.entry = Number(entry);
        } else {
            for (const ImageSymbol& symbol : image.symbols) {
                if (symbol.name == entry) image.entry = symbol.address;
            }
        }
        return image;
    }

    bool WriteOutput(const std::string& contents) {
        if (!WriteFile(output_, contents)) {
            report_.General(Severity::kFatal, "L6904U: Could not create output file " + output_ + ".");
            return false;
        }
        return true;
    }

    void Listings(const ImageFile& image) {
        std::vector<ObjectFile> objects;
        for (const Input& input : inputs_) objects.push_back(input.object);
        std::string listing;
        for (const Option& option : line_.options) {
            if (option.key == "info") listing += InfoListing(option.value, image, objects);
        }
        if (line_.Has("map")) listing += MapListing(image);
        if (line_.Has("symbols")) listing += SymbolListing(image, objects);
        if (line_.Has("xref")) listing += "Section Cross References\n\n";
        if (line_.Has("list")) {
            WriteFile(line_.Last("list"), listing);
        } else {
            listings_ = listing;
        }
        if (line_.Has("callgraph")) {
            WriteFile(DirectoryPart(output_) + StemOf(output_) + ".htm", CallGraph(output_, image));
        }
        if (line_.Has("symdefs")) {
            char date[64];
            const std::time_t now = std::time(nullptr);
            std::strftime(date, sizeof date, "%a %b %d %H:%M:%S %Y", std::localtime(&now));
            WriteFile(line_.Last("symdefs"), SymdefsFile(std::string(tool_.banner), date, image, objects));
        }
    }

    // No stale output may look up to date after a failed link.
    int Fail() {
        RemoveFile(output_);
        return Finish(kExitFailure);
    }

    // The messages, the listings and the closing line: the messages go to
    // the -errors file when there is one.
    int Finish(int status) {
        const std::string closing = report_.Empty() ? std::string() : report_.FinishedLine();
        if (line_.Has("errors")) {
            WriteFile(line_.Last("errors"), diagnostics_ + closing);
            *out_ += listings_;
        } else {
            *out_ += diagnostics_ + listings_ + closing;
        }
        return status;
    }

    const ToolInfo& tool_;
    std::string* out_;
    std::string diagnostics_;
    std::string listings_;
    Report report_;
    CommandLine line_;
    std::string output_;
    std::vector<Input> inputs_;
    uint32_t scatter_base_ = 0;
    bool has_scatter_base_ = false;
};

}  // namespace

int RunLinker(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out) {
    return Linker(tool, out).Run(words);
}

}  // namespace fakeads
