#include "debug/storage_list.h"

#include <cstdio>

namespace ads::debug {

const char kStorageNodePrefix[] = "StorageNode";
const char kTooManyStorageRows[] = "Too much definitions of storage, please merge them!";
const char kWrongNumberInput[] = "Wrong Number Input!";
const char kClockInputError[] = "Simulation Clock input error! To other formats, such as 12 12.000 0.12";

namespace {

const char kTypeKey[] = "Type";
const char kStartKey[] = "StartAddress";
const char kSizeKey[] = "Size";
const char kLoadFileKey[] = "LoadFile";
const char kDownloadKey[] = "ShouldDownLoad";

const char* const kColumnTitles[] = {"Type", "Start Address", "Size", "Load File", "Download?"};
// The two choices of the type column, then those of the download column.
const char* const kChoiceTexts[] = {"ROM", "RAM", "Yes", "No"};

bool EqualsIgnoringCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}

std::string Hex(const char* format, uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, format, static_cast<unsigned>(value));
    return text;
}

uint32_t AttributeHex(const ConfigNode& node, const char* key) {
    const char* text = node.GetAttribute(key);
    unsigned value = 0;
    if (text == nullptr || std::sscanf(text, "%x", &value) != 1) return 0;
    return value;
}

}  // namespace

const char* StorageColumnTitle(int column) { return kColumnTitles[column]; }

std::string StorageCell(const StorageRow& row, int column) {
    switch (column) {
    case kColumnType: return kChoiceTexts[row.type == 0 ? 0 : 1];
    case kColumnStart: return Hex("0x%x", row.start);
    case kColumnSize: return Hex("0x%x", row.size);
    case kColumnLoadFile: return row.load_file;
    default: return kChoiceTexts[row.download == 1 ? 2 : 3];
    }
}

bool ReadHex(const std::string& text, uint32_t* value) {
    unsigned number = 0;
    if (std::sscanf(text.c_str(), "%x", &number) != 1) return false;
    *value = number;
    return true;
}

bool ReadClock(const std::string& text, double* value) {
    double number = 0;
    if (std::sscanf(text.c_str(), "%lf", &number) != 1) return false;
    *value = number;
    return true;
}

bool AddStorageRow(std::vector<StorageRow>* rows, std::string* message) {
    if (rows->size() >= kMaxStorageRows) {
        *message = kTooManyStorageRows;
        return false;
    }
    rows->push_back(StorageRow{});
    return true;
}

bool EditStorageCell(StorageRow* row, int column, const std::string& text, std::string* message) {
    switch (column) {
    case kColumnType: row->type = text == kChoiceTexts[0] ? 0 : 1; return true;
    case kColumnDownload: row->download = text == kChoiceTexts[2] ? 1 : 0; return true;
    case kColumnStart:
    case kColumnSize:
        if (!ReadHex(text, column == kColumnStart ? &row->start : &row->size)) {
            *message = kWrongNumberInput;
            return false;
        }
        return true;
    case kColumnLoadFile:
        if (!EqualsIgnoringCase(text, row->load_file)) row->load_file = text;
        return true;
    default: return true;
    }
}

StorageRow ReadStorageNode(const ConfigNode& node) {
    StorageRow row;
    row.type = AttributeHex(node, kTypeKey);
    row.start = AttributeHex(node, kStartKey);
    row.size = AttributeHex(node, kSizeKey);
    const char* file = node.GetAttribute(kLoadFileKey);
    row.load_file = file != nullptr ? file : "";
    const char* download = node.GetAttribute(kDownloadKey);
    row.download = download != nullptr && EqualsIgnoringCase(download, "Yes") ? 1 : 0;
    return row;
}

std::vector<StorageRow> ReadStorageRows(const ConfigNode& configuration) {
    std::vector<StorageRow> rows;
    for (size_t i = 0; i < kMaxStorageRows; ++i) {
        const std::string name = kStorageNodePrefix + std::to_string(i);
        if (const ConfigNode* node = configuration.FindChild(name.c_str())) rows.push_back(ReadStorageNode(*node));
    }
    return rows;
}

void WriteStorageRows(ConfigNode* configuration, const std::vector<StorageRow>& rows) {
    for (size_t i = 0; i < kMaxStorageRows; ++i) {
        const std::string name = kStorageNodePrefix + std::to_string(i);
        if (ConfigNode* old = configuration->FindChild(name.c_str())) configuration->RemoveChild(old);
    }
    for (size_t i = 0; i < rows.size() && i < kMaxStorageRows; ++i) {
        auto* node = new ConfigNode(kStorageNodePrefix + std::to_string(i));
        node->SetAttribute(kTypeKey, Hex("%x", rows[i].type));
        node->SetAttribute(kStartKey, Hex("%x", rows[i].start));
        node->SetAttribute(kSizeKey, Hex("%x", rows[i].size));
        node->SetAttribute(kLoadFileKey, rows[i].load_file);
        node->SetAttribute(kDownloadKey, kChoiceTexts[rows[i].download == 1 ? 2 : 3]);
        configuration->AppendChild(node);
    }
}

}  // namespace ads::debug
