// The simulator's memory map: the storage rows of the software simulation
// page, kept in the target as the children "StorageNode0" to "StorageNode31".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ads/config_node.h"

namespace ads::debug {

extern const char kStorageNodePrefix[];     // "StorageNode"
extern const char kTooManyStorageRows[];    // "Too much definitions of storage, please merge them!"
extern const char kWrongNumberInput[];      // "Wrong Number Input!"
extern const char kClockInputError[];       // "Simulation Clock input error! ..."
constexpr size_t kMaxStorageRows = 32;

enum StorageColumn { kColumnType = 0, kColumnStart, kColumnSize, kColumnLoadFile, kColumnDownload, kColumnCount };

struct StorageRow {
    uint32_t type = 0;  // 0 ROM, 1 RAM
    uint32_t start = 0x20000000;
    uint32_t size = 0x8000;
    std::string load_file = "c:\\Data.bin";
    int download = 1;
};

// The grid's header text of a column.
const char* StorageColumnTitle(int column);
// A cell as the grid shows it: "ROM"/"RAM", "0x%x", the path, "Yes"/"No".
std::string StorageCell(const StorageRow& row, int column);

// Reads "%x" the way the grid does: true only when the text yields a number.
bool ReadHex(const std::string& text, uint32_t* value);
// Reads "%lf": true when the text yields a number.
bool ReadClock(const std::string& text, double* value);

// Appends a row with the defaults; false with *message set when 32 exist.
bool AddStorageRow(std::vector<StorageRow>* rows, std::string* message);
// Types `text` into a cell. "Type" and "Download?" read leniently ("ROM" and
// "Yes" exactly, anything else the other choice); the numbers as
// hexadecimal, refused with *message set; columns past the fifth are ignored.
bool EditStorageCell(StorageRow* row, int column, const std::string& text, std::string* message);

// The target's rows, index 0 to 31, skipping missing nodes.
std::vector<StorageRow> ReadStorageRows(const ConfigNode& configuration);
// Replaces the target's storage children with `rows` (deleted rows go).
void WriteStorageRows(ConfigNode* configuration, const std::vector<StorageRow>& rows);
// Reads one storage node as the debugger gets it: numbers "%x" (a missing
// or unreadable one is 0), download 1 for "Yes" in any case.
StorageRow ReadStorageNode(const ConfigNode& node);

}  // namespace ads::debug
