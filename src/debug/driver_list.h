// The user's list of debugger target drivers: libraries kept in the
// registry under the host's debugger key, one key per kind, each value a
// driver (its name the driver's number, its data the library path).
#pragma once

#include <string>
#include <vector>

#include "ads/debugger_drivers.h"
#include "platform/platform.h"
#include "platform/registry.h"

namespace ads::debug {

enum class DriverKind { kRdi = 0, kJdi = 1, kAgdi = 2, kUnknown = 3 };

extern const char kRegistryKeyMissing[];   // "Not found key in the Registry Table!"
extern const char kDriverTypeUnknown[];    // "Target Driver Type Unknown!!!"
extern const char kInvalidDrive[];         // "Invalid drive"

struct DriverEntry {
    DriverKind kind = DriverKind::kUnknown;
    int number = 0;
    std::string path;
};

// "RDI", "JDI", "AGDI" or "Unknown".
const char* KindText(DriverKind kind);
// The registry key of a kind: the list key, a second backslash and the
// kind's sub-key, kept exactly so ("...TargetDlls\\RDIs").
std::string KindKey(DriverKind kind);

// The kind a library proves by its exports, asked in the order AGDI, RDI,
// JDI; kUnknown when the path is empty, the library does not load or
// exports none of them.
DriverKind ProbeDriver(platform::Libraries& libraries, const std::string& path);

// "RDI 0": the kind's text, a blank, the number.
std::string FormatChosenDriver(DriverKind kind, int number);
// Reads "KIND NUMBER"; false (outputs untouched) when the text has no blank
// after its first character. A prefix that is no kind reads as kUnknown.
bool ParseChosenDriver(const std::string& text, DriverKind* kind, int* number);

class DriverList {
public:
    DriverList(platform::Registry& registry, platform::UserInterface& ui) : registry_(registry), ui_(ui) {}

    // Every driver, the kinds in the order RDI, AGDI, JDI, each in the
    // registry's value order. Opening the keys creates what is missing; a
    // key that can be neither opened nor created is reported once.
    std::vector<DriverEntry> Enumerate();
    // Registers the library under the smallest free number of its kind.
    // False (with the message) when it is of no known kind.
    bool Add(platform::Libraries& libraries, const std::string& path, DriverEntry* added = nullptr);
    // Deletes the driver when its stored path still equals `path`.
    bool Remove(DriverKind kind, int number, const std::string& path);

private:
    bool OpenListKeys();

    platform::Registry& registry_;
    platform::UserInterface& ui_;
};

}  // namespace ads::debug
