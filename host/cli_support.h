// What orvhost's commands share: the failure that ends a command with its
// exit status and one line on standard error, and the session of a command
// that works on a project (the project tree, the loaded plug-in).
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/project_keys.h"
#include "make_engine.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "plugin_host.h"
#include "project_file.h"

namespace ads::host {

// Ends the command: the message goes to standard error after "orvhost: ",
// the status is the exit status (2: bad input, 1: errors in the work).
struct CliFailure {
    int status;
    std::string message;
};

[[noreturn]] inline void Fail(const std::string& message, int status = 2) {
    throw CliFailure{status, message};
}


using platform::DirectoryOf;
using platform::Lower;

// An empty project named `name`: no targets, no files.
inline std::unique_ptr<ConfigNode> NewProjectTree(const std::string& name) {
    auto root = std::make_unique<ConfigNode>(config::kProjectNode);
    root->SetAttribute(config::kNameKey, name.c_str());
    root->AppendChild(new ConfigNode(config::kConfigurationsNode));
    root->AppendChild(new ConfigNode(config::kFilesNode));
    return root;
}

inline std::string ToBackslashes(std::string path) {
    for (char& c : path) {
        if (c == '/') c = '\\';
    }
    return path;
}

// A path for comparing: one kind of separator, one case.
inline std::string ComparablePath(const std::string& path) { return Lower(ToBackslashes(path)); }

// The "File" node whose stored path is `path`, compared as paths are
// (either separator, either case, a leading ".\" ignored); null when none.
inline ConfigNode* FindFileNode(ConfigNode* root, const std::string& path) {
    std::string wanted = ComparablePath(path);
    while (wanted.rfind(".\\", 0) == 0) wanted.erase(0, 2);
    ConfigNode* found = nullptr;
    WalkTree(root, [&](ConfigNode* n) {
        const char* p = n->GetAttribute(config::kRelativePathKey);
        if (found == nullptr && n->Name() == config::kFileNode && p != nullptr) {
            // Imported projects store their paths from ".\".
            std::string stored = Lower(p);
            while (stored.rfind(".\\", 0) == 0) stored.erase(0, 2);
            if (stored == wanted) found = n;
        }
        return false;
    });
    return found;
}

// Which source kind orvhost gives a file, by its extension.
// The target a command works on: the one `--target` names, which must be in
// the project, else the project's first.
inline std::string ChosenTarget(ConfigNode* root, const std::string& project, bool named, const std::string& target) {
    if (named) {
        if (FindConfiguration(root, target) == nullptr) Fail(project + ": no target named '" + target + "'");
        return target;
    }
    ConfigNode* configs = root->FindChild(config::kConfigurationsNode);
    ConfigNode* first = configs ? configs->FirstChild() : nullptr;
    if (first == nullptr) Fail(project + ": the project has no target");
    const char* name = first->GetAttribute(config::kNameKey);
    return name ? name : "";
}

inline int FileTypeFor(const std::string& path) {
    const std::string ext = Lower(platform::ExtensionOf(path));
    if (ext == ".c") return config::kKindC;
    if (ext == ".s" || ext == ".asm") return config::kKindAsm;
    if (ext == ".cpp" || ext == ".cc" || ext == ".cxx" || ext == ".c++") return config::kKindCpp;
    return config::kKindNone;
}

inline const char* KindName(int type) {
    switch (type) {
        case config::kKindC: return "C";
        case config::kKindAsm: return "assembler";
        case config::kKindCpp: return "C++";
        default: return "other";
    }
}

// Prints a value with its control bytes escaped, so that one attribute is
// one line. Quotes and backslashes stay as written: paths read as stored.
inline std::string Printable(const std::string& value) {
    std::string out;
    for (unsigned char c : value) {
        switch (c) {
            case '\r': out += "\\r"; break;
            case '\n': out += "\\n"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20 || c == 0x7f) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\x%02X", c);
                    out += buf;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out;
}

// `text` with its first `from` replaced by `to`.
inline std::string ReplaceFirst(std::string text, const std::string& from, const std::string& to) {
    size_t at = from.empty() ? std::string::npos : text.find(from);
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

// The plug-in's error and warning counters, read through slot 20. Its
// answer is "errors=N warnings=M\n"; false when it gives none.
struct BuildCounts {
    int errors = 0;
    int warnings = 0;
};

inline bool ReadBuildCounts(PluginInterface* plugin, BuildCounts* counts) {
    char answer[64] = {};
    if (plugin->LookupKeyed(kAdsCountsKey, reinterpret_cast<AdsWord>(answer), sizeof answer, 0) != 1) return false;
    answer[sizeof answer - 1] = '\0';
    return std::sscanf(answer, "errors=%d warnings=%d", &counts->errors, &counts->warnings) == 2;
}

// The plug-in module orvhost loads: $ORVANE_PLUGIN, else the one beside
// orvhost.
inline std::string PluginModulePath(platform::Platform& platform) {
    std::string module;
    if (!platform.environment->Get("ORVANE_PLUGIN", &module) || module.empty()) {
        module = platform.files->ExecutableDirectory() + "/" + ADS_PLUGIN_FILE;
    }
    return module;
}

class Session {
public:
    explicit Session(platform::Platform& platform) : platform_(platform), host_(platform) {}

    void Open(const std::string& path) {
        path_ = path;
        // The plug-in moves the working folder while it looks for the
        // tools: everything of the project is kept by its full path.
        full_path_ = platform_.files->FullPath(path);
        project_dir_ = DirectoryOf(full_path_);
        std::string error;
        root_ = LoadProject(*platform_.files, full_path_, &error);
        if (!root_) Fail(ReplaceFirst(error, full_path_, path));
        if (root_->Name() != config::kProjectNode) {
            Fail(path + ": not an orvhost project (root element '" + root_->Name() + "')");
        }
    }

    // The plug-in learns the project root from the first node it is given:
    // the root itself, unless the command installs a new node anyway. It
    // takes the project's folder from the working folder of that call.
    void LoadPlugin(bool introduce_root = true) {
        std::string error;
        if (!host_.Load(PluginModulePath(platform_), &error)) Fail(error);
        EnterProject();
        host_.SetProject(root_.get(), introduce_root);
    }

    // Makes the project's folder the working folder: before every call that
    // hands the plug-in a node of the project.
    void EnterProject() { platform_.files->ChangeDir(project_dir_); }

    void Save() {
        std::string error;
        if (!SaveProject(*platform_.files, full_path_, *root_, &error)) Fail(ReplaceFirst(error, full_path_, path_));
    }

    ConfigNode* Child(const char* name) {
        ConfigNode* node = root_->FindChild(name);
        if (node == nullptr) {
            node = new ConfigNode(name);
            root_->AppendChild(node);
        }
        return node;
    }

    platform::Platform& platform_;
    PluginHost host_;
    std::string path_;       // as the user wrote it, for messages
    std::string full_path_;  // for every file operation
    std::string project_dir_;
    std::unique_ptr<ConfigNode> root_;
};


}  // namespace ads::host
