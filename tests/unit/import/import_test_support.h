// Small writers for export documents in the layout real exports have.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace ads::import::test {

// --- Export documents --------------------------------------------------------

inline std::string Hex(const std::string& bytes) {
    std::string hex;
    char pair[3];
    for (unsigned char c : bytes) {
        std::snprintf(pair, sizeof pair, "%02X", c);
        hex += pair;
    }
    return hex;
}

// A PANELDATA as CodeWarrior writes it: a version word, the tool's name, a
// zero fill, the option text and a zero fill, as upper-case hex, 64 digits
// a line, indented, starting on a line of its own.
inline std::string PanelData(const std::string& panel, const std::string& tool, const std::string& options) {
    std::string data = std::string("\x00\x01\x00\x02", 4) + tool;
    data.resize(40, '\0');
    data += options;
    data.resize((data.size() / 32 + 1) * 32, '\0');
    const std::string hex = Hex(data);
    std::string value = "\n";
    for (size_t i = 0; i < hex.size(); i += 64) value += "                    " + hex.substr(i, 64) + "\n";
    return "<PANELDATA><NAME>" + panel + "</NAME><VALUE>" + value + "                </VALUE></PANELDATA>\n";
}

inline std::string Setting(const std::string& name, const std::string& value) {
    return "<SETTING><NAME>" + name + "</NAME><VALUE>" + value + "</VALUE></SETTING>\n";
}

struct PathEntry {
    std::string path;
    std::string root;
    bool recursive;
};
inline std::string SearchPaths(const std::string& list, const std::vector<PathEntry>& entries) {
    std::string xml = "<SETTING><NAME>" + list + "</NAME>\n";
    for (const PathEntry& e : entries) {
        xml += "<SETTING>\n<SETTING><NAME>SearchPath</NAME>\n" + Setting("Path", e.path) +
               Setting("PathFormat", "Windows") + Setting("PathRoot", e.root) + "</SETTING>\n" +
               Setting("Recursive", e.recursive ? "true" : "false") + Setting("FrameworkPath", "false") +
               Setting("HostFlags", "All") + "</SETTING>\n";
    }
    return xml + "</SETTING>\n";
}

struct Mapping {
    std::string type, extension, compiler;
};
inline std::string Mappings(const std::vector<Mapping>& mappings) {
    std::string xml = "<SETTING><NAME>FileMappings</NAME>\n";
    for (const Mapping& m : mappings) {
        xml += "<SETTING>\n" + Setting("FileType", m.type) + Setting("FileExtension", m.extension) +
               Setting("Compiler", m.compiler) + Setting("EditLanguage", "") + Setting("Precompile", "false") +
               "</SETTING>\n";
    }
    return xml + "</SETTING>\n";
}

inline std::string Linker(const std::string& linker, const std::string& post) {
    return Setting("Linker", linker) + Setting("PreLinker", "None") + Setting("PostLinker", post) +
           Setting("Targetname", "x") +
           "<SETTING><NAME>OutputDirectory</NAME>\n" + Setting("Path", "") + Setting("PathRoot", "Project") +
           "</SETTING>\n";
}

inline std::string Target(const std::string& name, const std::string& settings) {
    return "<TARGET>\n<NAME>" + name + "</NAME>\n<SETTINGLIST>\n" + settings + "</SETTINGLIST>\n</TARGET>\n";
}

inline std::string FileRefXml(const std::string& path, const std::string& access = std::string()) {
    return "<FILEREF>\n<TARGETNAME>x</TARGETNAME>\n<PATHTYPE>Name</PATHTYPE>\n" +
           (access.empty() ? std::string() : "<ACCESSPATH>" + access + "</ACCESSPATH>\n") + "<PATH>" + path +
           "</PATH>\n<PATHFORMAT>Windows</PATHFORMAT>\n</FILEREF>\n";
}

inline std::string GroupXml(const std::string& name, const std::string& refs) {
    return "<GROUP><NAME>" + name + "</NAME>\n" + refs + "</GROUP>\n";
}

constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>";
constexpr char kVersionLine[] = "<?codewarrior exportversion=\"1.0.1\" ideversion=\"4.2\" ?>";
constexpr char kDoctype[] =
    "<!DOCTYPE PROJECT [\n"
    "<!ELEMENT PROJECT (TARGETLIST, TARGETORDER, GROUPLIST, DESIGNLIST?)>\n"
    "<!ELEMENT TARGETLIST (TARGET+)>\n"
    "<!ELEMENT SETTING (NAME?, (VALUE|(SETTING+)))>\n"
    "<!ELEMENT PANELDATA (NAME, VALUE)>\n"
    "]>\n";

// A whole export: declaration, version line, DTD, then the project.
inline std::string Export(const std::string& targets, const std::string& groups = std::string(),
                          const std::string& version_line = kVersionLine) {
    return std::string(kDeclaration) + "\n" + version_line + "\n\n" + kDoctype + "\n<PROJECT>\n<TARGETLIST>\n" +
           targets + "</TARGETLIST>\n<TARGETORDER>\n</TARGETORDER>\n<GROUPLIST>\n" + groups +
           "</GROUPLIST>\n</PROJECT>\n";
}

}  // namespace ads::import::test
