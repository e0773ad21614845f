#include "dependency_file.h"

#include <cstdio>

#include "platform/platform.h"

namespace ads::host {

namespace {

const char kHeader[] = "orvhost dependencies 1";
const char kTarget[] = "target ";
const char kResult[] = "result ";
const char kSource[] = "source ";
const char kDependency[] = "  ";

bool NeedsEscape(unsigned char c) { return c < 0x20 || c == 0x7f || c == '%'; }

std::string Escape(const std::string& value) {
    std::string out;
    out.reserve(value.size());
    for (unsigned char c : value) {
        if (NeedsEscape(c)) {
            char buf[4];
            std::snprintf(buf, sizeof buf, "%%%02X", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

bool Unescape(const std::string& text, size_t from, std::string* value) {
    value->clear();
    for (size_t i = from; i < text.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '%') {
            if (i + 2 >= text.size()) return false;
            int high = HexDigit(text[i + 1]);
            int low = HexDigit(text[i + 2]);
            if (high < 0 || low < 0) return false;
            *value += static_cast<char>(high * 16 + low);
            i += 2;
        } else if (NeedsEscape(c)) {
            return false;
        } else {
            *value += static_cast<char>(c);
        }
    }
    return true;
}

bool StartsWith(const std::string& line, const char* prefix) { return line.rfind(prefix, 0) == 0; }

}  // namespace

std::string DependencyFilePath(const std::string& project_file) { return project_file + ".deps"; }

std::string SerializeDependencies(const DependencyFile& file) {
    std::string out = kHeader;
    out += '\n';
    for (const auto& [target, record] : file.targets) {
        out += kTarget + Escape(target) + '\n';
        if (record.result != BuildResult::kUnknown) {
            out += kResult;
            out += record.result == BuildResult::kSucceeded ? "ok" : "failed";
            out += '\n';
        }
        for (const auto& [source, dependencies] : record.sets) {
            out += kSource + Escape(source) + '\n';
            for (const std::string& dependency : dependencies) out += kDependency + Escape(dependency) + '\n';
        }
    }
    return out;
}

bool ParseDependencies(const std::string& text, DependencyFile* file) {
    file->targets.clear();
    DependencyFile parsed;
    TargetDependencies* target = nullptr;
    std::vector<std::string>* set = nullptr;
    bool header = false;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) return false;  // every line ends with "\n"
        std::string line = text.substr(start, end - start);
        start = end + 1;
        // A raw CR is never written: one at the end comes from an editor.
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::string value;
        if (!header) {
            if (line != kHeader) return false;
            header = true;
        } else if (StartsWith(line, kTarget)) {
            if (!Unescape(line, sizeof kTarget - 1, &value)) return false;
            if (parsed.targets.count(value) != 0) return false;
            target = &parsed.targets[value];
            set = nullptr;
        } else if (StartsWith(line, kResult)) {
            if (target == nullptr || set != nullptr || target->result != BuildResult::kUnknown) return false;
            value = line.substr(sizeof kResult - 1);
            if (value == "ok") {
                target->result = BuildResult::kSucceeded;
            } else if (value == "failed") {
                target->result = BuildResult::kFailed;
            } else {
                return false;
            }
        } else if (StartsWith(line, kSource)) {
            if (target == nullptr || !Unescape(line, sizeof kSource - 1, &value)) return false;
            if (target->sets.count(value) != 0) return false;
            set = &target->sets[value];
        } else if (StartsWith(line, kDependency)) {
            if (set == nullptr || !Unescape(line, sizeof kDependency - 1, &value)) return false;
            set->push_back(value);
        } else {
            return false;
        }
    }
    if (!header) return false;
    *file = std::move(parsed);
    return true;
}

bool LoadDependencies(platform::FileSystem& files, const std::string& path, DependencyFile* file) {
    file->targets.clear();
    std::string text;
    if (!files.ReadFile(path, &text)) return false;
    return ParseDependencies(text, file);
}

bool SaveDependencies(platform::FileSystem& files, const std::string& path, const DependencyFile& file,
                      std::string* error) {
    std::string reason;
    if (files.WriteFileAtomically(path, SerializeDependencies(file), &reason)) return true;
    *error = path + ": cannot write the dependency file: " + reason;
    return false;
}

}  // namespace ads::host
