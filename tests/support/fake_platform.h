// A platform whose services a test controls: libraries that load or not,
// a process exit that is taken for real, files and a registry in memory, a
// process runner that records its commands.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <cstdlib>
#include <utility>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/registry.h"

namespace ads::testing {

class FakeLibraries : public platform::Libraries {
public:
    std::map<std::string, void*> modules;          // name -> handle
    std::map<std::string, void*> symbols;          // symbol -> address
    std::vector<std::string> loaded;               // names asked for
    std::vector<void*> freed;
    bool free_succeeds = true;
    bool free_null_succeeds = false;  // only to let a test process survive
    uint32_t last_error = 0;

    platform::LibraryHandle Load(const std::string& name) override {
        loaded.push_back(name);
        auto it = modules.find(name);
        if (it == modules.end()) {
            last_error = 126;
            return nullptr;
        }
        return it->second;
    }
    void* Symbol(platform::LibraryHandle, const char* name) override {
        auto it = symbols.find(name);
        return it == symbols.end() ? nullptr : it->second;
    }
    bool Free(platform::LibraryHandle handle) override {
        freed.push_back(handle);
        if (handle == nullptr && free_null_succeeds) return true;
        if (handle == nullptr || !free_succeeds) {
            last_error = handle == nullptr ? 6 : 5;
            return false;
        }
        return true;
    }
    uint32_t LastError() override { return last_error; }
};

// Ends the process as the real one does: a test that reaches it by mistake
// dies visibly, and death tests see the code.
class FakeProcess : public platform::Process {
public:
    [[noreturn]] void Exit(uint32_t code) override { std::_Exit(static_cast<int>(code)); }
};

// An in-memory file system. A path is a file when it is in `files` (its text
// in `contents`, empty when absent) and a folder when it has a listing; Add()
// files a path under every folder above it, as a real tree lists it.
class FakeFiles : public platform::FileSystem {
public:
    std::set<std::string> files;
    std::map<std::string, std::string> contents;
    std::map<std::string, std::vector<platform::DirectoryEntry>> listings;
    std::set<std::string> read_only;     // files a delete is refused for
    std::vector<std::string> created;    // folders asked for, in order
    uint32_t create_error = 0;           // what creating a new folder answers
    std::vector<std::string> writes;     // files written, in order
    std::string write_failure;           // when set, every write fails with it
    std::vector<std::string> cwd_history;
    std::string cwd = "C:\\work";
    std::string windows_directory = "C:\\WINDOWS";
    int lists = 0;  // how often a folder was listed
    std::map<std::string, int64_t> times;  // files that exist with this time; others in `files` have 0

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

    bool FileExists(const std::string& path) override { return files.count(path) > 0; }
    bool PathExists(const std::string& path) override { return files.count(path) > 0 || listings.count(path) > 0; }
    bool IsDirectory(const std::string& path) override { return listings.count(path) > 0; }
    uint32_t MakeDir(const std::string& path) override {
        created.push_back(path);
        if (listings.count(path)) return platform::kErrorAlreadyExists;
        if (create_error != 0) return create_error;
        listings[path];
        return 0;
    }
    uint32_t RemoveFile(const std::string& path, std::string* message) override {
        if (read_only.count(path)) {
            if (message) *message = "Access is denied.\r\n";
            return platform::kErrorAccessDenied;
        }
        if (files.erase(path)) {
            contents.erase(path);
            return 0;
        }
        if (message) *message = "The system cannot find the file specified.\r\n";
        return platform::kErrorFileNotFound;
    }
    bool ChangeDir(const std::string& path) override {
        cwd_history.push_back(path);
        cwd = path;
        return true;
    }
    std::string CurrentDirectory() override { return cwd; }
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
    bool ListDirectory(const std::string& path, std::vector<platform::DirectoryEntry>* entries) override {
        ++lists;
        auto it = listings.find(path);
        if (it == listings.end()) return false;
        *entries = it->second;
        return true;
    }
    // Without links in memory, a folder is what its path names.
    std::string FileIdentity(const std::string& path) override { return PathExists(path) ? FullPath(path) : ""; }
    std::string WindowsDirectory() override { return windows_directory; }
    bool ModificationTime(const std::string& path, int64_t* time) override {
        auto it = times.find(path);
        *time = it == times.end() ? 0 : it->second;
        return files.count(path) > 0 || it != times.end();
    }
    bool ReadFile(const std::string& path, std::string* text) override {
        if (files.count(path) == 0) return false;
        *text = contents[path];
        return true;
    }
    bool WriteFileAtomically(const std::string& path, const std::string& text, std::string* error) override {
        writes.push_back(path);
        if (listings.count(path) != 0) {
            *error = "is a directory";
            return false;
        }
        if (!write_failure.empty()) {
            *error = write_failure;
            return false;
        }
        files.insert(path);
        contents[path] = text;
        return true;
    }
    std::string ExecutableDirectory() override { return "C:\\Orvane"; }
};

class FakeUi : public platform::UserInterface {
public:
    std::vector<std::string> messages;
    void ShowMessage(const std::string& text, const std::string&) override { messages.push_back(text); }
};

class FakeEnvironment : public platform::Environment {
public:
    std::map<std::string, std::string> vars;
    bool Get(const std::string& name, std::string* value) override {
        auto it = vars.find(name);
        if (it == vars.end()) return false;
        *value = it->second;
        return true;
    }
    void Set(const std::string& name, const std::string& value) override { vars[name] = value; }
};

// Starts nothing: every command counts as not started.
class FakeRunner : public platform::ProcessRunner {
public:
    platform::RunResult Run(const std::string&, const std::string&, size_t) override { return {}; }
};

// An in-memory registry: keys by root and path (compared without regard to
// ASCII case, as the real one does), each an ordered list of values.
class FakeRegistry : public platform::Registry {
public:
    using Values = std::vector<platform::RegistryValue>;
    std::map<std::pair<platform::RegistryRoot, std::string>, Values> keys;

    static std::string Fold(std::string s) {
        for (char& c : s) {
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        return s;
    }
    // Test set-up: writes a text value, creating the key.
    void Set(platform::RegistryRoot root, const std::string& path, const std::string& name,
             const std::string& value) {
        CreateKey(root, path)->WriteString(name, value);
    }

    class Key : public platform::RegistryKey {
    public:
        Key(FakeRegistry* registry, std::pair<platform::RegistryRoot, std::string> id)
            : registry_(registry), id_(std::move(id)) {}
        bool ReadString(const std::string& name, std::string* value) override {
            platform::RegistryValue* v = Find(name);
            if (v == nullptr || !v->is_string) return false;
            *value = v->data;
            return true;
        }
        bool WriteString(const std::string& name, const std::string& value) override {
            if (platform::RegistryValue* v = Find(name)) {
                v->is_string = true;
                v->data = value;
            } else {
                registry_->keys[id_].push_back({name, true, value});
            }
            return true;
        }
        bool ListValues(Values* values) override {
            *values = registry_->keys[id_];
            return true;
        }
        bool DeleteValue(const std::string& name) override {
            Values& values = registry_->keys[id_];
            for (auto it = values.begin(); it != values.end(); ++it) {
                if (Fold(it->name) == Fold(name)) {
                    values.erase(it);
                    return true;
                }
            }
            return false;
        }

    private:
        platform::RegistryValue* Find(const std::string& name) {
            for (platform::RegistryValue& v : registry_->keys[id_]) {
                if (Fold(v.name) == Fold(name)) return &v;
            }
            return nullptr;
        }
        FakeRegistry* registry_;
        std::pair<platform::RegistryRoot, std::string> id_;
    };

    std::unique_ptr<platform::RegistryKey> OpenKey(platform::RegistryRoot root, const std::string& path) override {
        if (keys.count({root, Fold(path)}) == 0) return nullptr;
        return std::make_unique<Key>(this, std::make_pair(root, Fold(path)));
    }
    std::unique_ptr<platform::RegistryKey> CreateKey(platform::RegistryRoot root, const std::string& path) override {
        keys[{root, Fold(path)}];
        return std::make_unique<Key>(this, std::make_pair(root, Fold(path)));
    }
    bool DeleteKey(platform::RegistryRoot root, const std::string& path) override {
        return keys.erase({root, Fold(path)}) > 0;
    }
    std::string LastError() override { return "fake registry"; }
};

struct FakePlatform {
    FakeLibraries libraries;
    FakeProcess process;
    FakeFiles files;
    FakeUi ui;
    FakeEnvironment environment;
    FakeRunner runner;
    FakeRegistry registry;
    platform::Platform platform{&libraries, &files, &ui, &process, &environment, &runner, &registry};
};

}  // namespace ads::testing
