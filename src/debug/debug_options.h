// The debug options the host's debugger asks for before a session: read
// from the target's configuration, and the three values the debugger writes
// back into it.
#pragma once

#include <array>
#include <string>

#include "ads/config_node.h"
#include "debug/driver_list.h"
#include "debug/storage_list.h"

namespace ads::debug {

// What the two double quotes stand for: no driver library.
extern const char kNoDriverLibrary[];  // "\"\""

// One field of the packed debug options, numbered from 1: the text after
// the (n-1)-th comma up to the next comma. False when the text has fewer
// commas. No quoting: a comma inside a field cuts it.
bool PackedField(const std::string& packed, int number, std::string* field);
// The packed options with field 7 replaced by "(" + library + ")"; missing
// fields before it are added empty.
std::string WithDriverLibrary(const std::string& packed, const std::string& library);

struct DebugOptions {
    double clock = 0;  // "SIMCLK", 0 when missing
    int mode = 0;
    std::array<int, 4> options{};  // fields 3 to 6
    std::string driver;            // field 2
    std::string driver_library;    // field 7 without its parentheses, or kNoDriverLibrary
    std::string app_file;
    std::string init_script;
    std::string debugger_text;
    int update_before_debug = 0;
    std::array<bool, kMaxStorageRows> has_storage{};
    std::array<StorageRow, kMaxStorageRows> storage{};
};

// Fills *options from the target. False when the target has no packed
// debug options; the clock is read before that test.
bool ReadDebugOptions(const ConfigNode& configuration, DriverList& drivers, DebugOptions* options);

}  // namespace ads::debug
