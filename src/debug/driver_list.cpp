#include "debug/driver_list.h"

#include <cstdlib>
#include <memory>
#include <set>

namespace ads::debug {

const char kDebuggerKey[] = "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger";
const char kDriverListKey[] = "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger\\TargetDlls\\";
const char kRegistryKeyMissing[] = "Not found key in the Registry Table!";
const char kDriverTypeUnknown[] = "Target Driver Type Unknown!!!";
const char kInvalidDrive[] = "Invalid drive";

namespace {

const char kCaption[] = "ADS";
using platform::RegistryRoot;

// Indexed by kind: the export that proves it and the key below the list.
const char* const kKindExports[] = {"WinRDI_GetRDIProcVec", "GetJDI", "AG_Init"};
const char* const kKindSubKeys[] = {"RDIs", "JDIs", "AGDIs"};
const char* const kKindTexts[] = {"RDI", "JDI", "AGDI", "Unknown"};

// The order in which the exports are asked for, and the list is shown.
const DriverKind kProbeOrder[] = {DriverKind::kAgdi, DriverKind::kRdi, DriverKind::kJdi};
const DriverKind kListOrder[] = {DriverKind::kRdi, DriverKind::kAgdi, DriverKind::kJdi};

}  // namespace

const char* KindText(DriverKind kind) { return kKindTexts[static_cast<int>(kind)]; }

std::string KindKey(DriverKind kind) {
    return std::string(kDriverListKey) + "\\" + kKindSubKeys[static_cast<int>(kind)];
}

DriverKind ProbeDriver(platform::Libraries& libraries, const std::string& path) {
    if (path.empty()) return DriverKind::kUnknown;
    platform::LibraryHandle library = libraries.Load(path);
    if (library == nullptr) return DriverKind::kUnknown;
    DriverKind kind = DriverKind::kUnknown;
    for (DriverKind candidate : kProbeOrder) {
        if (libraries.Symbol(library, kKindExports[static_cast<int>(candidate)]) != nullptr) {
            kind = candidate;
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
    for (DriverKind kind : kListOrder) {
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
