// libFuzzer target of the registry kept in a ".reg" file: arbitrary bytes as
// the file, and a value name and text written into it.
//
// Besides not crashing, it checks what must hold for any input:
//   - a file that does not read names a line of the file and is never
//     rewritten, whatever is asked of it;
//   - a file that reads takes a written value, reads it back, and still
//     reads; every other key keeps its values, and the changed key lists
//     its old values with the new one replaced or added at the end;
//   - writing the same value twice leaves the same file; a new key leaves
//     every line before it as it was;
//   - deleting the value takes every spelling of its name out of the key.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/registry.h"
#include "support/fake_platform.h"

namespace {

using namespace ads::platform;

void Require(bool condition) {
    if (!condition) std::abort();
}

const char kPath[] = "/r.reg";

// Files in memory; folders always exist.
class MemoryFiles final : public ads::testing::FakeFiles {
public:
    std::map<std::string, std::string> contents;

    bool PathExists(const std::string& path) override { return contents.count(path) > 0; }
    bool IsDirectory(const std::string&) override { return true; }
    bool ReadFile(const std::string& path, std::string* text) override {
        const auto it = contents.find(path);
        if (it == contents.end()) return false;
        *text = it->second;
        return true;
    }
    bool WriteFileAtomically(const std::string& path, const std::string& text, std::string*) override {
        contents[path] = text;
        return true;
    }
};

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameNoCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (Lower(a[i]) != Lower(b[i])) return false;
    }
    return true;
}

struct KeyName {
    RegistryRoot root;
    std::string path;
};

// The keys that "[...]" lines of an 8-bit file name under the two roots the
// plug-in reaches: the keys whose values a change elsewhere must not touch.
std::vector<KeyName> KeysNamedIn(const std::string& text) {
    std::vector<KeyName> keys;
    for (size_t start = 0; start < text.size();) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(start, end - start);
        start = end + 1;
        const size_t open = line.find_first_not_of(" \t");
        const size_t close = line.rfind(']');
        if (open == std::string::npos || line[open] != '[' || close == std::string::npos || close < open) continue;
        const std::string key = line.substr(open + 1, close - open - 1);
        const size_t slash = key.find('\\');
        const std::string root = key.substr(0, slash);
        const std::string path = slash == std::string::npos ? std::string() : key.substr(slash + 1);
        for (RegistryRoot r : {RegistryRoot::kLocalMachine, RegistryRoot::kCurrentUser}) {
            if (SameNoCase(root, RegistryRootName(r))) keys.push_back({r, path});
        }
    }
    return keys;
}

bool SameValues(const std::vector<RegistryValue>& a, const std::vector<RegistryValue>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i].name != b[i].name || a[i].is_string != b[i].is_string || a[i].data != b[i].data) return false;
    }
    return true;
}

std::vector<RegistryValue> ValuesOf(RegistryFile& registry, const KeyName& key) {
    std::vector<RegistryValue> values;
    const std::unique_ptr<RegistryKey> open = registry.OpenKey(key.root, key.path);
    if (open != nullptr) Require(open->ListValues(&values));
    return values;
}

size_t LineCount(const std::string& bytes) {
    size_t lines = 1;
    for (char c : bytes) lines += c == '\n';
    return lines;
}

void MalformedFileStaysAsItIs(MemoryFiles& files, RegistryFile& registry, const KeyName& key) {
    const std::string before = files.contents[kPath];
    // "<path>:<line>: <reason>", the line within the file (a UTF-16 file
    // counts fewer lines than its bytes hold '\n').
    const std::string error = registry.LastError();
    const std::string prefix = std::string(kPath) + ":";
    Require(error.compare(0, prefix.size(), prefix) == 0);
    const size_t line = std::strtoul(error.c_str() + prefix.size(), nullptr, 10);
    Require(line >= 1 && line <= LineCount(before));

    Require(registry.CreateKey(key.root, key.path) == nullptr);
    Require(!registry.DeleteKey(key.root, key.path.empty() ? "X" : key.path));
    Require(files.contents[kPath] == before);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The file comes first, so that a seed file is mostly read as it is;
    // its last bytes are the edit: the value, the name, then their lengths
    // and the choice of key.
    std::string file(reinterpret_cast<const char*>(data), size);
    auto take_back = [&file](size_t count) {
        count = count < file.size() ? count : file.size();
        const std::string back = file.substr(file.size() - count);
        file.resize(file.size() - count);
        return back;
    };
    const std::string lengths = take_back(2);
    const bool into_named_key = !lengths.empty() && (lengths.back() & 0x80) != 0;
    std::string name = take_back(lengths.empty() ? 0 : static_cast<unsigned char>(lengths.back()) % 16);
    std::string value = take_back(lengths.size() < 2 ? 0 : static_cast<unsigned char>(lengths[0]) % 48);

    MemoryFiles files;
    files.contents[kPath] = file;
    RegistryFile registry(files, kPath);

    const bool utf16 = file.size() >= 2 && file.compare(0, 2, "\xFF\xFE") == 0;
    const std::vector<KeyName> named = utf16 ? std::vector<KeyName>() : KeysNamedIn(file);
    KeyName target{RegistryRoot::kCurrentUser, "Software\\Fuzz"};
    // A key line may hold a lone CR, which reads, but no key with a line end
    // can be created (the file could not hold it), so such keys only stay.
    if (into_named_key && !named.empty()) {
        const KeyName& chosen = named[name.size() % named.size()];
        if (chosen.path.find_first_of("\r\n") == std::string::npos) target = chosen;
    }

    if (registry.OpenKey(RegistryRoot::kCurrentUser, "") == nullptr) {
        MalformedFileStaysAsItIs(files, registry, target);
        return 0;
    }

    // A UTF-16 file holds characters, not bytes: only texts that are UTF-8
    // read back as written, and ASCII ones are enough here.
    if (utf16) {
        for (std::string* text : {&name, &value}) {
            for (char& c : *text) c = static_cast<char>(c & 0x7F);
        }
    }

    std::map<size_t, std::vector<RegistryValue>> before;
    for (size_t i = 0; i < named.size(); ++i) before[i] = ValuesOf(registry, named[i]);
    const bool target_existed = registry.OpenKey(target.root, target.path) != nullptr;
    std::vector<RegistryValue> expected = ValuesOf(registry, target);

    const std::unique_ptr<RegistryKey> key = registry.CreateKey(target.root, target.path);
    Require(key != nullptr);
    if (name.find_first_of("\r\n") != std::string::npos || value.find_first_of("\r\n") != std::string::npos) {
        const std::string unchanged = files.contents[kPath];
        Require(!key->WriteString(name, value));
        Require(files.contents[kPath] == unchanged);
        return 0;
    }
    Require(key->WriteString(name, value));

    std::string read;
    Require(key->ReadString(name, &read) && read == value);
    bool replaced = false;
    for (RegistryValue& v : expected) {
        if (SameNoCase(v.name, name)) {
            v.is_string = true;
            v.data = value;
            replaced = true;
        }
    }
    if (!replaced) expected.push_back({name, true, value});
    Require(SameValues(ValuesOf(registry, target), expected));
    for (size_t i = 0; i < named.size(); ++i) {
        if (SameNoCase(named[i].path, target.path) && named[i].root == target.root) continue;
        Require(SameValues(ValuesOf(registry, named[i]), before[i]));
    }

    // The same write again changes nothing; a new key went in behind every
    // line that was there.
    const std::string written = files.contents[kPath];
    Require(key->WriteString(name, value));
    Require(files.contents[kPath] == written);
    if (!target_existed && !utf16 && !file.empty() && file.back() == '\n') {
        Require(written.compare(0, file.size(), file) == 0);
    }

    Require(key->DeleteValue(name));
    Require(!key->ReadString(name, &read));
    std::vector<RegistryValue> remaining;
    for (const RegistryValue& v : expected) {
        if (!SameNoCase(v.name, name)) remaining.push_back(v);
    }
    Require(SameValues(ValuesOf(registry, target), remaining));
    return 0;
}
