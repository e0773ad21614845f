#include "debug/debug_options.h"

#include <cstdlib>

#include "config/project_keys.h"

namespace ads::debug {

const char kNoDriverLibrary[] = "\"\"";

namespace {

constexpr int kModeField = 1;
constexpr int kDriverField = 2;
constexpr int kFirstOptionField = 3;
constexpr int kLibraryField = 7;

std::string Text(const ConfigNode& node, const char* key) {
    const char* value = node.GetAttribute(key);
    return value != nullptr ? value : "";
}

}  // namespace

bool PackedField(const std::string& packed, int number, std::string* field) {
    size_t begin = 0;
    for (int i = 1; i < number; ++i) {
        const size_t comma = packed.find(',', begin);
        if (comma == std::string::npos) return false;
        begin = comma + 1;
    }
    const size_t end = packed.find(',', begin);
    *field = packed.substr(begin, end == std::string::npos ? std::string::npos : end - begin);
    return true;
}

std::string WithDriverLibrary(const std::string& packed, const std::string& library) {
    size_t begin = 0;
    std::string head = packed;
    for (int i = 1; i < kLibraryField; ++i) {
        const size_t comma = head.find(',', begin);
        if (comma == std::string::npos) {
            head += ',';
            begin = head.size();
        } else {
            begin = comma + 1;
        }
    }
    return head.substr(0, begin) + "(" + library + ")";
}

bool ReadDebugOptions(const ConfigNode& configuration, DriverList& drivers, DebugOptions* out) {
    *out = DebugOptions{};
    out->clock = std::atof(Text(configuration, config::kSimClockKey).c_str());
    const char* packed_text = configuration.GetAttribute(config::kDebugOptionsKey);
    if (packed_text == nullptr) return false;
    const std::string packed = packed_text;

    std::string field;
    for (int n = kModeField; n < kLibraryField && PackedField(packed, n, &field); ++n) {
        if (n == kModeField) out->mode = std::atoi(field.c_str());
        if (n >= kFirstOptionField) out->options[static_cast<size_t>(n - kFirstOptionField)] = std::atoi(field.c_str());
    }
    if (PackedField(packed, kDriverField, &field)) out->driver = field;

    // Field 7 without its first and last character: the parentheses.
    std::string library;
    if (PackedField(packed, kLibraryField, &field) && field.size() >= 2) library = field.substr(1, field.size() - 2);
    if (library != kNoDriverLibrary) {
        bool registered = false;
        for (const DriverEntry& entry : drivers.Enumerate()) registered = registered || entry.path == library;
        if (!registered) library = kNoDriverLibrary;
    }
    out->driver_library = library;
    out->app_file = Text(configuration, config::kAppFileKey);

    out->init_script = Text(configuration, out->mode == 0 ? config::kInitScriptEmuKey : config::kInitScriptSimKey);
    out->debugger_text = Text(configuration, config::kServeDebugOptionsKey);
    if (const char* update = configuration.GetAttribute(config::kUpdateBeforeDebugKey)) {
        out->update_before_debug = std::string(update) == "1" ? 1 : 0;
    }
    for (size_t i = 0; i < kMaxStorageRows; ++i) {
        const std::string name = kStorageNodePrefix + std::to_string(i);
        if (const ConfigNode* node = configuration.FindChild(name.c_str())) {
            out->has_storage[i] = true;
            out->storage[i] = ReadStorageNode(*node);
        }
    }
    return true;
}

}  // namespace ads::debug
