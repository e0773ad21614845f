#include "source_scan.h"

#include "paths.h"

namespace fakeads {

IncludeSearch::IncludeSearch(const SearchDirectories& directories) : written_(directories) {}

void IncludeSearch::Expand() {
    auto expand = [](const std::vector<std::string>& directories) {
        std::vector<std::string> out;
        for (const std::string& directory : directories) {
            if (!directory.empty() && directory.back() == '*') {
                std::string top = directory.substr(0, directory.size() - 1);
                if (top.empty()) top = ".";
                for (std::string& below : DirectoryTree(top)) out.push_back(std::move(below));
            } else {
                out.push_back(directory);
            }
        }
        return out;
    };
    user_ = expand(written_.user);
    system_ = expand(written_.system);
    expanded_ = true;
}

std::string IncludeSearch::Find(const std::string& name, const std::string& includer, bool quoted) {
    const bool absolute = (name.size() > 1 && name[1] == ':') || (!name.empty() && (name[0] == '\\' || name[0] == '/'));
    if (absolute) return FileExists(name) ? name : std::string();
    const std::string beside = JoinPath(DirectoryPart(includer), name);
    if (quoted && FileExists(beside)) return beside;
    if (!expanded_) Expand();
    std::vector<std::string> candidates;
    if (quoted) {
        for (const std::string& directory : user_) candidates.push_back(JoinPath(directory, name));
        for (const std::string& directory : system_) candidates.push_back(JoinPath(directory, name));
    } else {
        for (const std::string& directory : system_) candidates.push_back(JoinPath(directory, name));
        for (const std::string& directory : user_) candidates.push_back(JoinPath(directory, name));
    }
    for (const std::string& candidate : candidates) {
        if (FileExists(candidate)) return candidate;
    }
    return std::string();
}

bool TakeMarker(const Marker& marker, const std::string& file, int line, char tag_letter, SourceScan* scan) {
    SourceMessage message;
    message.file = file;
    message.line = line;
    message.text = marker.text;
    switch (marker.kind) {
        case MarkerKind::kWarning: message.severity = Severity::kWarning; break;
        case MarkerKind::kError: message.severity = Severity::kError; break;
        case MarkerKind::kSerious: message.severity = Severity::kSerious; break;
        case MarkerKind::kFatal: message.severity = Severity::kFatal; break;
        case MarkerKind::kPrint: message.raw = true; break;
        case MarkerKind::kLinkWarning:
        case MarkerKind::kLinkError:
        case MarkerKind::kLinkFatal:
            scan->link_messages.push_back(LinkMessage{marker.kind, marker.text});
            return false;
        case MarkerKind::kUnknown:
            message.severity = Severity::kSerious;
            message.text = std::string(1, tag_letter) + "2999E: FAKEADS marker not understood: '" + marker.word + "'";
            break;
    }
    scan->messages.push_back(message);
    if (message.severity == Severity::kFatal && !message.raw) {
        scan->abandoned = true;
        return true;
    }
    return false;
}

void AddDependency(const std::string& path, const std::string& contents, SourceScan* scan) {
    for (const Dependency& known : scan->dependencies) {
        if (known.path == path) return;
    }
    scan->dependencies.push_back(Dependency{path, Fingerprint(contents)});
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

SourceScan SourceReader::Read(const std::string& source) {
    std::string text;
    ReadFile(source, &text);
    AddDependency(source, text, &scan_);
    ReadText(source, text, 0);
    return scan_;
}

void SourceReader::Message(const std::string& file, int line, Severity severity, const std::string& text) {
    SourceMessage message;
    message.file = file;
    message.line = line;
    message.severity = severity;
    message.text = text;
    scan_.messages.push_back(message);
    if (severity == Severity::kFatal) scan_.abandoned = true;
}

}  // namespace fakeads
