// The registry: keys under HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER holding
// named string values. The Win32 backend is the real registry; the file
// backend keeps the keys in a file of the Windows ".reg" export format, which
// is what the POSIX build uses, and what the Windows build uses too when
// ORVANE_REGISTRY names a file.
//
// Key texts are taken exactly as given: a doubled backslash stays doubled,
// nothing is trimmed. As in the real registry, key and value names compare
// without regard to ASCII case. The empty value name is the key's default
// value ("@" in a .reg file).
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace ads::platform {

class Environment;
class FileSystem;
namespace reg_file {
struct Document;
}

enum class RegistryRoot { kLocalMachine, kCurrentUser };

// "HKEY_LOCAL_MACHINE" or "HKEY_CURRENT_USER".
const char* RegistryRootName(RegistryRoot root);

struct RegistryValue {
    std::string name;        // "" for the default value
    bool is_string = false;  // REG_SZ or REG_EXPAND_SZ
    std::string data;        // the text of a string value; empty for the others
};

// One open key; destroying it closes the key.
class RegistryKey {
public:
    virtual ~RegistryKey() = default;
    // A string value; false when it is missing or holds another type.
    virtual bool ReadString(const std::string& name, std::string* value) = 0;
    // Creates or replaces a string value.
    virtual bool WriteString(const std::string& name, const std::string& value) = 0;
    // Every value of the key, in the key's order.
    virtual bool ListValues(std::vector<RegistryValue>* values) = 0;
    // False when the value does not exist or cannot be deleted.
    virtual bool DeleteValue(const std::string& name) = 0;
};

class Registry {
public:
    virtual ~Registry() = default;
    // RegOpenKeyExA: null when the key does not exist or cannot be opened.
    virtual std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, const std::string& path) = 0;
    // RegCreateKeyExA: opens the key, creating it (and its parents) when
    // missing; null on failure.
    virtual std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, const std::string& path) = 0;
    // Deletes the key with everything below it; false when it was not there
    // or cannot be deleted.
    virtual bool DeleteKey(RegistryRoot root, const std::string& path) = 0;
    // Why the last failed call of this registry or of one of its keys
    // failed: for the file backend the file and line of a malformed file,
    // for the Win32 backend the key and the system's text. Missing keys and
    // values are failures too.
    virtual std::string LastError() = 0;
};

// The registry kept in a ".reg" file ("REGEDIT4" or "Windows Registry Editor
// Version 5.00"; the latter also in UTF-16 with its byte-order mark). The
// file is read at every call, so changes made by others are seen; a missing
// or empty file is an empty registry. A malformed file makes every call
// fail with LastError naming the file and the line, and is never rewritten.
// Changes rewrite the file through FileSystem::WriteFileAtomically, keeping
// its header, encoding, line ends, comments and every line that was not
// changed; a new file gets the version 5 header. Values of other types
// (dword:, hex:) are kept as written and are not strings.
class RegistryFile final : public Registry {
public:
    RegistryFile(FileSystem& files, std::string path);

    const std::string& path() const { return path_; }

    std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, const std::string& path) override;
    std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, const std::string& path) override;
    bool DeleteKey(RegistryRoot root, const std::string& path) override;
    std::string LastError() override { return last_error_; }

private:
    class Key;
    friend class Key;

    bool Load(reg_file::Document* doc);
    bool Save(const reg_file::Document& doc);
    static void AppendSection(reg_file::Document* doc, RegistryRoot root, const std::string& path);

    FileSystem& files_;
    std::string path_;
    std::string last_error_;
};

// Where the registry file is when the environment does not say otherwise:
// $ORVANE_REGISTRY, else $XDG_CONFIG_HOME/orvane/registry.reg, else
// $HOME/.config/orvane/registry.reg. Empty when none of them is set.
std::string DefaultRegistryFilePath(Environment& environment);

#ifdef _WIN32
// The real registry, whatever the environment says.
Registry& WindowsRegistry();
#endif

// The registry of this machine: on POSIX the file above; on Windows the real
// registry, or the file that ORVANE_REGISTRY names when it is set. The
// location is looked up at every call, never while the platform's own
// services are being built, so System() may hand this out.
Registry& SystemRegistry();

}  // namespace ads::platform
