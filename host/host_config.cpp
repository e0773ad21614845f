#include "host_config.h"

#include "platform/folders.h"
#include "platform/text.h"

namespace ads::host {

namespace {

const char kToolsDir[] = "tools-dir";

struct Line {
    std::string raw;   // without its line end
    std::string name;  // empty for blank and comment lines
    std::string value;
};

// The file's lines; false with *error set when one is not a setting.
bool ParseLines(const std::string& path, const std::string& text, std::vector<Line>* lines, std::string* error) {
    lines->clear();
    size_t number = 0;
    for (size_t start = 0; start < text.size();) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        Line line;
        line.raw = text.substr(start, end - start);
        if (!line.raw.empty() && line.raw.back() == '\r') line.raw.pop_back();
        start = end + 1;
        ++number;
        const std::string content = platform::Trim(line.raw);
        if (!content.empty() && content[0] != '#' && content[0] != ';') {
            const size_t equals = content.find('=');
            if (equals == std::string::npos) {
                *error = path + ":" + std::to_string(number) + ": expected NAME = VALUE";
                return false;
            }
            line.name = platform::Trim(content.substr(0, equals));
            line.value = platform::Trim(content.substr(equals + 1));
            if (line.name != kToolsDir) {
                *error = path + ":" + std::to_string(number) + ": unknown setting '" + line.name +
                         "' (known: " + kToolsDir + ")";
                return false;
            }
        }
        lines->push_back(line);
    }
    return true;
}

bool ReadLines(platform::FileSystem& files, const std::string& path, std::vector<Line>* lines, std::string* error) {
    std::string text;
    if (!files.ReadFile(path, &text)) {
        lines->clear();
        if (!files.PathExists(path)) return true;
        *error = path + ": cannot read orvhost's configuration";
        return false;
    }
    return ParseLines(path, text, lines, error);
}

}  // namespace

std::string HostConfigPath(platform::Environment& environment) {
    std::string value;
    if (environment.Get("ORVANE_CONFIG", &value) && !value.empty()) return value;
#ifdef _WIN32
    if (environment.Get("APPDATA", &value) && !value.empty()) return value + "\\Orvane\\orvhost.conf";
#endif
    if (environment.Get("XDG_CONFIG_HOME", &value) && !value.empty()) return value + "/orvane/orvhost.conf";
    if (environment.Get("HOME", &value) && !value.empty()) return value + "/.config/orvane/orvhost.conf";
    return std::string();
}

bool LoadHostConfig(platform::FileSystem& files, const std::string& path, HostConfig* config,
                    std::string* error) {
    std::vector<Line> lines;
    if (!ReadLines(files, path, &lines, error)) return false;
    config->tool_directories.clear();
    for (const Line& line : lines) {
        if (line.name == kToolsDir && !line.value.empty()) config->tool_directories.push_back(line.value);
    }
    return true;
}

bool SetToolDirectory(platform::FileSystem& files, const std::string& path, const std::string& directory,
                      std::string* error) {
    if (directory.empty() || directory.find_first_of("\r\n") != std::string::npos ||
        platform::Trim(directory) != directory) {
        *error = "'" + directory + "': not a folder name orvhost can keep";
        return false;
    }
    std::vector<Line> lines;
    if (!ReadLines(files, path, &lines, error)) return false;
    if (lines.empty()) lines.push_back({"# orvhost's configuration (see orvhost --help)", "", ""});
    const std::string setting = std::string(kToolsDir) + " = " + directory;
    std::string text;
    bool written = false;
    for (const Line& line : lines) {
        if (line.name == kToolsDir) {
            if (written) continue;
            text += setting + "\n";
            written = true;
        } else {
            text += line.raw + "\n";
        }
    }
    if (!written) text += setting + "\n";
    platform::MakeFoldersOf(files, path);
    return files.WriteFileAtomically(path, text, error);
}

}  // namespace ads::host
