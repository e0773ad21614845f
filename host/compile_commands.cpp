#include "compile_commands.h"

#include <cstdio>

#include "platform/platform.h"
#include "platform/text.h"

namespace ads::host {

namespace {

// The tool's name: the program's file name without folder and ".exe".
std::string ToolName(const std::string& program) {
    std::string name = platform::Lower(platform::FileName(program));
    if (name.size() > 4 && name.compare(name.size() - 4, 4, ".exe") == 0) name.resize(name.size() - 4);
    return name;
}

// Processors clang knows by the ADS name, or by its architecture.
struct Processor {
    const char* ads;
    const char* clang;
};
const Processor kProcessors[] = {
    {"4", "-march=armv4"},           {"4t", "-march=armv4t"},         {"5t", "-march=armv5t"},
    {"5te", "-march=armv5te"},       {"5texp", "-march=armv5te"},     {"5tej", "-march=armv5tej"},
    {"xscale", "-mcpu=xscale"},      {"arm7tdmi", "-mcpu=arm7tdmi"},  {"arm7tdmi-s", "-mcpu=arm7tdmi-s"},
    {"arm710t", "-mcpu=arm710t"},    {"arm720t", "-mcpu=arm720t"},    {"arm740t", "-march=armv4t"},
    {"arm810", "-mcpu=arm810"},      {"sa-110", "-mcpu=strongarm110"}, {"sa-1100", "-mcpu=strongarm1100"},
    {"arm9tdmi", "-mcpu=arm9tdmi"},  {"arm920t", "-mcpu=arm920t"},    {"arm922t", "-mcpu=arm922t"},
    {"arm940t", "-mcpu=arm940t"},    {"arm9e-s", "-mcpu=arm9e"},      {"arm9ej-s", "-march=armv5tej"},
    {"arm926ej-s", "-mcpu=arm926ej-s"}, {"arm946e-s", "-mcpu=arm946e-s"}, {"arm966e-s", "-mcpu=arm966e-s"},
    {"arm9e-s-rev0", "-mcpu=arm9e"}, {"arm946e-s-rev0", "-mcpu=arm946e-s"}, {"arm966e-s-rev0", "-mcpu=arm966e-s"},
    {"arm10tdmi", "-mcpu=arm10tdmi"}, {"arm1020t", "-mcpu=arm1020t"}, {"arm10e", "-mcpu=arm10e"},
    {"arm1020e", "-mcpu=arm1020e"},  {"arm1022e", "-mcpu=arm1022e"},
};
const char kDefaultProcessor[] = "-mcpu=arm7tdmi";

struct FloatingPoint {
    const char* ads;
    std::vector<const char*> clang;
};
const FloatingPoint kFloatingPoint[] = {
    {"vfpv1", {"-mfpu=vfpv2", "-mfloat-abi=hard"}},
    {"vfpv2", {"-mfpu=vfpv2", "-mfloat-abi=hard"}},
    {"softvfp+vfp", {"-mfpu=vfpv2", "-mfloat-abi=softfp"}},
    {"softvfp+vfpv2", {"-mfpu=vfpv2", "-mfloat-abi=softfp"}},
    {"softvfp", {"-mfloat-abi=soft"}},
    {"softfpa", {"-mfloat-abi=soft"}},
    {"fpa", {"-mfloat-abi=soft"}},
    {"none", {"-mfloat-abi=soft"}},
};

// What one ADS command says, as far as clang cares.
struct Reading {
    std::string processor = kDefaultProcessor;
    bool strict = false;
    bool int_enums = false;
    std::vector<std::string> arguments;  // in the order of the command
    PathStyle style;
};

std::string PathText(std::string path, PathStyle style) {
    if (style.posix) {
        for (char& c : path) {
            if (c == '\\') c = '/';
        }
    }
    return path;
}

// Each folder of a ";"-list, a final "*" (all subfolders) cut: clang has no
// such thing, and the folder itself is what most includes need.
void Folders(const std::string& list, const char* flag, bool separate, Reading* r) {
    size_t start = 0;
    while (start <= list.size()) {
        size_t end = list.find(';', start);
        if (end == std::string::npos) end = list.size();
        std::string folder = list.substr(start, end - start);
        size_t star = folder.find('*');
        if (star != std::string::npos) folder.resize(star);
        if (!folder.empty()) {
            folder = PathText(folder, r->style);
            if (separate) {
                r->arguments.push_back(flag);
                r->arguments.push_back(folder);
            } else {
                r->arguments.push_back(flag + folder);
            }
        }
        start = end + 1;
    }
}

using Mapper = void (*)(const std::string& word, const std::string& value, Reading* r);

void Drop(const std::string&, const std::string&, Reading*) {}
void Include(const std::string&, const std::string& value, Reading* r) { Folders(value, "-I", false, r); }
void SystemInclude(const std::string&, const std::string& value, Reading* r) {
    Folders(value, "-isystem", true, r);
}
void Define(const std::string& word, const std::string& value, Reading* r) {
    if (!value.empty()) r->arguments.push_back(word.substr(0, 2) + value);
}
void SelectProcessor(const std::string&, const std::string& value, Reading* r) {
    r->processor.clear();
    for (const Processor& p : kProcessors) {
        if (platform::Lower(value) == p.ads) r->processor = p.clang;
    }
}
void Fpu(const std::string&, const std::string& value, Reading* r) {
    for (const FloatingPoint& f : kFloatingPoint) {
        if (platform::Lower(value) != f.ads) continue;
        for (const char* a : f.clang) r->arguments.push_back(a);
    }
}
void BigEndian(const std::string&, const std::string&, Reading* r) { r->arguments.push_back("-mbig-endian"); }
void LittleEndian(const std::string&, const std::string&, Reading* r) {
    r->arguments.push_back("-mlittle-endian");
}
void NoWarnings(const std::string&, const std::string&, Reading* r) { r->arguments.push_back("-w"); }
void SignedChar(const std::string&, const std::string&, Reading* r) { r->arguments.push_back("-fsigned-char"); }
void IntEnums(const std::string&, const std::string&, Reading* r) { r->int_enums = true; }
void Strict(const std::string&, const std::string&, Reading* r) { r->strict = true; }

enum class Shape {
    kWord,       // the whole word
    kWordValue,  // the whole word, the value in the next word
    kAttached,   // a word that starts with the switch, the rest is the value
    kAttachedOrNext,  // as kAttached; the next word when nothing is attached
};

struct Rule {
    const char* spelling;
    Shape shape;
    Mapper map;
};

// First match wins: the exact words come before the prefixes that would
// also take them.
const Rule kRules[] = {
    {"-I", Shape::kAttachedOrNext, Include},
    {"-J", Shape::kAttachedOrNext, SystemInclude},
    {"-D", Shape::kAttachedOrNext, Define},
    {"-U", Shape::kAttachedOrNext, Define},
    {"-cpu", Shape::kWordValue, SelectProcessor},
    {"-fpu", Shape::kWordValue, Fpu},
    {"-apcs", Shape::kWordValue, Drop},
    {"-via", Shape::kWordValue, Drop},
    {"-o", Shape::kWordValue, Drop},
    {"-errors", Shape::kWordValue, Drop},
    {"-bi", Shape::kWord, BigEndian},
    {"-bigend", Shape::kWord, BigEndian},
    {"-li", Shape::kWord, LittleEndian},
    {"-littleend", Shape::kWord, LittleEndian},
    {"-W", Shape::kWord, NoWarnings},
    {"-zc", Shape::kWord, SignedChar},
    {"-fy", Shape::kWord, IntEnums},
    {"-strict", Shape::kWord, Strict},
    {"-W", Shape::kAttached, Drop},
    {"-E", Shape::kAttached, Drop},
    {"-O", Shape::kAttached, Drop},
    {"-g", Shape::kAttached, Drop},
    {"-f", Shape::kAttached, Drop},
    {"-z", Shape::kAttached, Drop},
};

}  // namespace

std::vector<std::string> ClangdArguments(const std::string& ads_command, SourceLanguage language,
                                         const std::string& file, PathStyle style) {
    const std::vector<std::string> words = platform::SplitCommandLine(ads_command);
    Reading r;
    r.style = style;
    for (size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        for (const Rule& rule : kRules) {
            const std::string spelling = rule.spelling;
            const bool whole = word == spelling;
            const bool prefix = word.size() > spelling.size() && word.compare(0, spelling.size(), spelling) == 0;
            std::string value;
            if (rule.shape == Shape::kWord) {
                if (!whole) continue;
            } else if (rule.shape == Shape::kWordValue) {
                if (!whole) continue;
                if (i + 1 < words.size()) value = words[++i];
            } else if (rule.shape == Shape::kAttached) {
                if (!prefix) continue;
                value = word.substr(spelling.size());
            } else {
                if (!whole && !prefix) continue;
                if (prefix) {
                    value = word.substr(spelling.size());
                } else if (i + 1 < words.size()) {
                    value = words[++i];
                }
            }
            rule.map(word, value, &r);
            break;
        }
    }

    std::vector<std::string> args = {"clang", "--target=arm-none-eabi"};
    if (!r.processor.empty()) args.push_back(r.processor);
    const std::string tool = words.empty() ? std::string() : ToolName(words[0]);
    if (tool == "tcc" || tool == "tcpp") args.push_back("-mthumb");
    if (language == SourceLanguage::kC) {
        args.push_back("-xc");
        args.push_back(r.strict ? "-std=c89" : "-std=gnu89");
    } else {
        args.push_back("-xc++");
        args.push_back("-std=c++98");
    }
    if (!r.int_enums) args.push_back("-fshort-enums");
    args.insert(args.end(), r.arguments.begin(), r.arguments.end());
    args.push_back("-c");
    args.push_back(file);
    return args;
}

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20 || c == 0x7f) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\u%04x", c);
                    out += buf;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out + "\"";
}

std::string CompileCommandsJson(const std::vector<CompileCommand>& commands) {
    std::string out = "[";
    for (size_t i = 0; i < commands.size(); ++i) {
        const CompileCommand& c = commands[i];
        out += i == 0 ? "\n" : ",\n";
        out += "  {\n    \"directory\": " + JsonString(c.directory) + ",\n";
        out += "    \"file\": " + JsonString(c.file) + ",\n";
        out += "    \"arguments\": [";
        for (size_t a = 0; a < c.arguments.size(); ++a) {
            if (a > 0) out += ", ";
            out += JsonString(c.arguments[a]);
        }
        out += "]\n  }";
    }
    out += commands.empty() ? "]\n" : "\n]\n";
    return out;
}

}  // namespace ads::host
