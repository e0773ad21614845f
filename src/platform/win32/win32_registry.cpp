// The Windows registry through the ANSI functions. SystemRegistry() hands it
// out unless ORVANE_REGISTRY names a ".reg" file to use instead.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/registry.h"

#include <map>
#include <memory>

#include "platform/platform.h"

namespace ads::platform {
namespace {

// The ADS installer is a 32-bit program and its entries live in the 32-bit
// view of the registry; the 64-bit build asks for that view explicitly, so
// both builds see the same keys (32-bit Windows ignores the flag).
constexpr REGSAM kView = KEY_WOW64_32KEY;

HKEY RootKey(RegistryRoot root) {
    return root == RegistryRoot::kLocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::string KeyName(RegistryRoot root, const std::string& path) {
    return path.empty() ? std::string(RegistryRootName(root)) : std::string(RegistryRootName(root)) + "\\" + path;
}

std::string SystemText(LONG code) {
    char buffer[512] = {0};
    DWORD size = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(code), 0, buffer, sizeof buffer, nullptr);
    std::string text(buffer, size);
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n' || text.back() == ' ')) text.pop_back();
    if (text.empty()) text = "system error " + std::to_string(code);
    return text;
}

// RegDeleteKeyExA chooses the view; it is missing from 32-bit Windows XP,
// where RegDeleteKeyA does the same.
LONG DeleteOneKey(HKEY root, const std::string& path) {
    using DeleteKeyEx = LONG(WINAPI*)(HKEY, LPCSTR, REGSAM, DWORD);
    static const DeleteKeyEx delete_ex = [] {
        HMODULE advapi = ::GetModuleHandleA("advapi32.dll");
        return advapi ? reinterpret_cast<DeleteKeyEx>(
                            reinterpret_cast<void*>(::GetProcAddress(advapi, "RegDeleteKeyExA")))
                      : nullptr;
    }();
    return delete_ex ? delete_ex(root, path.c_str(), kView, 0) : ::RegDeleteKeyA(root, path.c_str());
}

class Win32Registry;

class Win32Key final : public RegistryKey {
public:
    Win32Key(std::string* error, HKEY key, std::string name) : error_(error), key_(key), name_(std::move(name)) {}
    ~Win32Key() override { ::RegCloseKey(key_); }

    bool ReadString(const std::string& name, std::string* value) override {
        DWORD type = 0;
        DWORD size = 0;
        LONG result = ::RegQueryValueExA(key_, name.c_str(), nullptr, &type, nullptr, &size);
        std::string buffer;
        while (result == ERROR_SUCCESS || result == ERROR_MORE_DATA) {
            if (type != REG_SZ && type != REG_EXPAND_SZ) return Fail(name, "not a text value");
            buffer.assign(static_cast<size_t>(size) + 1, '\0');
            DWORD got = size;
            result = ::RegQueryValueExA(key_, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(&buffer[0]), &got);
            if (result == ERROR_SUCCESS) {
                buffer.resize(got);
                *value = buffer.c_str();  // up to the terminator
                return true;
            }
            size = got;  // it grew meanwhile: once more
        }
        return Fail(name, SystemText(result));
    }

    bool WriteString(const std::string& name, const std::string& value) override {
        LONG result = ::RegSetValueExA(key_, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                                       static_cast<DWORD>(value.size() + 1));
        return result == ERROR_SUCCESS || Fail(name, SystemText(result));
    }

    bool ListValues(std::vector<RegistryValue>* values) override {
        values->clear();
        for (DWORD index = 0;; ++index) {
            DWORD max_name = 0, max_data = 0;
            LONG result = ::RegQueryInfoKeyA(key_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                             &max_name, &max_data, nullptr, nullptr);
            if (result != ERROR_SUCCESS) return Fail("", SystemText(result));
            std::string name(static_cast<size_t>(max_name) + 1, '\0');
            std::string data(static_cast<size_t>(max_data) + 1, '\0');
            DWORD name_size = max_name + 1;
            DWORD data_size = max_data + 1;
            DWORD type = 0;
            result = ::RegEnumValueA(key_, index, &name[0], &name_size, nullptr, &type,
                                     reinterpret_cast<BYTE*>(&data[0]), &data_size);
            if (result == ERROR_NO_MORE_ITEMS) return true;
            if (result == ERROR_MORE_DATA) {
                --index;  // grew meanwhile: ask again
                continue;
            }
            if (result != ERROR_SUCCESS) return Fail("", SystemText(result));
            RegistryValue value;
            value.name.assign(name.c_str(), name_size);
            value.is_string = type == REG_SZ || type == REG_EXPAND_SZ;
            if (value.is_string) {
                data.resize(data_size);
                value.data = data.c_str();
            }
            values->push_back(value);
        }
    }

    bool DeleteValue(const std::string& name) override {
        LONG result = ::RegDeleteValueA(key_, name.c_str());
        return result == ERROR_SUCCESS || Fail(name, SystemText(result));
    }

private:
    bool Fail(const std::string& value, const std::string& why) {
        *error_ = name_ + " " + (value.empty() ? std::string("@") : "\"" + value + "\"") + ": " + why;
        return false;
    }

    std::string* error_;
    HKEY key_;
    std::string name_;
};

class Win32Registry final : public Registry {
public:
    std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, const std::string& path) override {
        HKEY key = nullptr;
        // Full access where the system grants it; a standard user is refused
        // full access to HKEY_LOCAL_MACHINE and must still find the tools.
        LONG result = ::RegOpenKeyExA(RootKey(root), path.c_str(), 0, KEY_ALL_ACCESS | kView, &key);
        if (result == ERROR_ACCESS_DENIED) {
            result = ::RegOpenKeyExA(RootKey(root), path.c_str(), 0, KEY_READ | kView, &key);
        }
        if (result != ERROR_SUCCESS) return Fail(root, path, result);
        return std::make_unique<Win32Key>(&error_, key, KeyName(root, path));
    }

    std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, const std::string& path) override {
        HKEY key = nullptr;
        LONG result = ::RegCreateKeyExA(RootKey(root), path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                        KEY_ALL_ACCESS | kView, nullptr, &key, nullptr);
        if (result != ERROR_SUCCESS) return Fail(root, path, result);
        return std::make_unique<Win32Key>(&error_, key, KeyName(root, path));
    }

    bool DeleteKey(RegistryRoot root, const std::string& path) override {
        if (path.empty()) {
            error_ = KeyName(root, path) + ": a root key cannot be deleted";
            return false;
        }
        LONG result = DeleteTree(RootKey(root), path);
        if (result != ERROR_SUCCESS) {
            error_ = KeyName(root, path) + ": " + SystemText(result);
            return false;
        }
        return true;
    }

    std::string LastError() override { return error_; }

private:
    std::nullptr_t Fail(RegistryRoot root, const std::string& path, LONG result) {
        error_ = KeyName(root, path) + ": " + SystemText(result);
        return nullptr;
    }

    // The subkeys first, then the key; the depth is the key's own.
    static LONG DeleteTree(HKEY root, const std::string& path) {
        HKEY key = nullptr;
        LONG result = ::RegOpenKeyExA(root, path.c_str(), 0, KEY_ALL_ACCESS | kView, &key);
        if (result != ERROR_SUCCESS) return result;
        for (;;) {
            char name[256];
            DWORD size = sizeof name;
            result = ::RegEnumKeyExA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr);
            if (result != ERROR_SUCCESS) break;
            result = DeleteTree(root, path + "\\" + std::string(name, size));
            if (result != ERROR_SUCCESS) break;
        }
        ::RegCloseKey(key);
        if (result != ERROR_NO_MORE_ITEMS) return result;
        return DeleteOneKey(root, path);
    }

    std::string error_;
};

// The real registry, or the file ORVANE_REGISTRY names.
class SwitchingRegistry final : public Registry {
public:
    std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, const std::string& path) override {
        return Current().OpenKey(root, path);
    }
    std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, const std::string& path) override {
        return Current().CreateKey(root, path);
    }
    bool DeleteKey(RegistryRoot root, const std::string& path) override { return Current().DeleteKey(root, path); }
    std::string LastError() override { return last_ ? last_->LastError() : std::string(); }

private:
    Registry& Current() {
        Platform& system = System();
        std::string path;
        if (system.environment->Get("ORVANE_REGISTRY", &path) && !path.empty()) {
            std::unique_ptr<RegistryFile>& file = files_[path];
            if (!file) file = std::make_unique<RegistryFile>(*system.files, path);
            last_ = file.get();
        } else {
            last_ = &WindowsRegistry();
        }
        return *last_;
    }

    std::map<std::string, std::unique_ptr<RegistryFile>> files_;
    Registry* last_ = nullptr;
};

}  // namespace

Registry& WindowsRegistry() {
    static Win32Registry registry;
    return registry;
}

Registry& SystemRegistry() {
    static SwitchingRegistry registry;
    return registry;
}

}  // namespace ads::platform
