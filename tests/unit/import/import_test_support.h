// What the import tests share: an in-memory file system with contents, a
// host that applies commits as orvhost does and catches any change made to
// its tree outside of them, and small writers for export documents in the
// layout real exports have.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "config/host_api.h"
#include "plugin_host.h"
#include "project_file.h"
#include "support/fake_platform.h"

namespace ads::import::test {

// Files by full path (backslashes), listed in the folders above them.
class MemoryFiles : public ads::testing::FakeFiles {
public:
    std::map<std::string, std::string> contents;

    void Add(const std::string& path, const std::string& text = std::string()) {
        files.insert(path);
        contents[path] = text;
        std::string child = path;
        bool is_directory = false;
        for (size_t cut = child.rfind('\\'); cut != std::string::npos && cut > 0; cut = child.rfind('\\')) {
            const std::string parent = child.substr(0, cut);
            auto& entries = listings[parent];
            const std::string name = child.substr(cut + 1);
            bool listed = false;
            for (const auto& e : entries) listed = listed || e.name == name;
            if (!listed) entries.push_back({name, is_directory, !name.empty() && name[0] == '.'});
            child = parent;
            is_directory = true;
        }
    }
    // "." and ".." resolved and doubled separators dropped, as the system does.
    std::string FullPath(const std::string& path) override {
        std::vector<std::string> parts;
        size_t start = 0;
        while (start <= path.size()) {
            size_t end = path.find('\\', start);
            if (end == std::string::npos) end = path.size();
            const std::string part = path.substr(start, end - start);
            if (part == "..") {
                if (parts.size() > 1) parts.pop_back();
            } else if (!part.empty() && part != ".") {
                parts.push_back(part);
            }
            start = end + 1;
        }
        std::string full;
        for (const std::string& part : parts) full += (full.empty() ? "" : "\\") + part;
        return full;
    }
    bool ReadFile(const std::string& path, std::string* text) override {
        auto it = contents.find(path);
        if (it == contents.end()) return false;
        *text = it->second;
        return true;
    }
};

// Commits as orvhost's host slots do. Between two of its own calls the tree
// must not change: the importer edits copies and hands them over.
class RecordingHost : public config::HostApi {
public:
    explicit RecordingHost(ConfigNode* root) : root_(root) { snapshot_ = host::SerializeProject(*root_); }

    void Commit(ConfigNode* node, ConfigNode* edited) override {
        CheckUntouched();
        ++commits;
        host::CommitEdit(node, *edited);
        snapshot_ = host::SerializeProject(*root_);
    }
    ConfigNode* FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) override {
        CheckUntouched();
        ConfigNode* found = host::PluginHost::FindSettingNode(node, key, flag_key);
        snapshot_ = host::SerializeProject(*root_);
        return found;
    }
    config::ToolRun RunTool(const std::string&, int) override { return {}; }
    void Write(const std::string& text) override { output += text; }
    bool IsOutOfDate(const std::string&, ConfigNode*) override { return false; }
    bool TranslateFile(const std::string&, ConfigNode*) override { return false; }
    bool MakeTarget(const std::string&, ConfigNode*) override { return false; }

    void CheckUntouched() const {
        EXPECT_EQ(snapshot_, host::SerializeProject(*root_)) << "the host's tree changed outside a commit";
    }

    std::string output;
    int commits = 0;

private:
    ConfigNode* root_;
    std::string snapshot_;
};

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
