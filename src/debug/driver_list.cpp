#include "debug/driver_list.h"

#include <cstdlib>
#include <memory>
#include <set>

namespace ads::debug {

const char kRegistryKeyMissing[] = "Not found key in the Registry Table!";
const char kDriverTypeUnknown[] = "Target Driver Type Unknown!!!";
const char kInvalidDrive[] = "Invalid drive";

namespace {

const char kCaption[] = "ADS";
using platform::RegistryRoot;

const char kUnknownKindText[] = "Unknown";

}  // namespace

const char* KindText(DriverKind kind) {
    return kind == DriverKind::kUnknown ? kUnknownKindText : kDriverKindTexts[static_cast<int>(kind)];
}

std::string KindKey(DriverKind kind) {
    return std::string(kDriverListKey) + "\\" + kDriverKindSubKeys[static_cast<int>(kind)];
}

DriverKind ProbeDriver(platform::Libraries& libraries, const std::string& path) {
    if (path.empty()) return DriverKind::kUnknown;
    platform::LibraryHandle library = libraries.Load(path);
    if (library == nullptr) return DriverKind::kUnknown;
    DriverKind kind = DriverKind::kUnknown;
    for (int candidate : kDriverProbeOrder) {
        if (libraries.Symbol(library, kDriverKindExports[candidate]) != nullptr) {
            kind = static_cast<DriverKind>(candidate);
            break;
        }
    }
    libraries.Free(library);
    return kind;
}

std::string FormatChosenDriver(DriverKind kind, int number) {
    return std::string(KindText(kind)) + " " + std::to_string(number);
}

bool ParseChosenDriver(const std::string& text, DriverKind* kind, int* number) {
    const size_t blank = text.find(' ');
    if (blank == std::string::npos || blank == 0) return false;
    const std::string prefix = text.substr(0, blank);
    *kind = prefix == "JDI" ? DriverKind::kJdi
          : prefix == "RDI" ? DriverKind::kRdi
          : prefix == "AGDI" ? DriverKind::kAgdi
                             : DriverKind::kUnknown;
    *number = std::atoi(text.c_str() + blank + 1);
    return true;
}

bool DriverList::OpenListKeys() {
    bool ok = true;
    for (const char* key : {kDebuggerKey, kDriverListKey}) {
        if (registry_.CreateKey(RegistryRoot::kCurrentUser, key) == nullptr) {
            ui_.ShowMessage(kRegistryKeyMissing, kCaption);
            ok = false;
        }
    }
    return ok;
}

std::vector<DriverEntry> DriverList::Enumerate() {
    std::vector<DriverEntry> entries;
    if (!OpenListKeys()) return entries;
    for (int index : kDriverListOrder) {
        const auto kind = static_cast<DriverKind>(index);
        std::unique_ptr<platform::RegistryKey> key = registry_.CreateKey(RegistryRoot::kCurrentUser, KindKey(kind));
        std::vector<platform::RegistryValue> values;
        if (key == nullptr || !key->ListValues(&values)) continue;
        for (const platform::RegistryValue& value : values) {
            // A value name is read as the registry's API hands it over: at
            // most 255 characters, the data at most 260 bytes.
            DriverEntry entry;
            entry.kind = kind;
            entry.number = std::atoi(value.name.substr(0, 255).c_str());
            entry.path = value.data.substr(0, 259);
            entries.push_back(entry);
        }
    }
    return entries;
}

bool DriverList::Add(platform::Libraries& libraries, const std::string& path, DriverEntry* added) {
    const DriverKind kind = ProbeDriver(libraries, path);
    if (kind == DriverKind::kUnknown) {
        ui_.ShowMessage(kDriverTypeUnknown, kCaption);
        return false;
    }
    if (!OpenListKeys()) return false;
    std::unique_ptr<platform::RegistryKey> key = registry_.CreateKey(RegistryRoot::kCurrentUser, KindKey(kind));
    std::vector<platform::RegistryValue> values;
    if (key == nullptr || !key->ListValues(&values)) return false;
    std::set<int> used;
    for (const platform::RegistryValue& value : values) used.insert(std::atoi(value.name.c_str()));
    int number = 0;
    while (used.count(number) != 0) ++number;
    if (!key->WriteString(std::to_string(number), path)) return false;
    if (added != nullptr) *added = DriverEntry{kind, number, path};
    return true;
}

bool DriverList::Remove(DriverKind kind, int number, const std::string& path) {
    if (kind == DriverKind::kUnknown) return false;
    std::unique_ptr<platform::RegistryKey> key = registry_.OpenKey(RegistryRoot::kCurrentUser, KindKey(kind));
    std::string stored;
    const std::string name = std::to_string(number);
    if (key == nullptr || !key->ReadString(name, &stored) || stored != path) return false;
    return key->DeleteValue(name);
}

}  // namespace ads::debug
