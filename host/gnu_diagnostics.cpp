#include "gnu_diagnostics.h"

#include <cctype>

#include "platform/text.h"

namespace ads::host {

namespace {

struct Severity {
    const char* pane;  // as the plug-in writes it
    const char* gnu;
};

const Severity kSeverities[] = {
    {"Warning:", "warning:"},
    {"Error:", "error:"},
    {"Serious error:", "error:"},
    {"Fatal error:", "error:"},
};

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

}  // namespace

GnuDiagnostics::GnuDiagnostics(platform::FileSystem& files, std::string project_folder, std::string current_folder)
    : files_(files), project_(std::move(project_folder)), current_(std::move(current_folder)) {
    // "/" and "C:\" end in a separator that the names below them do not repeat.
    while (!current_.empty() && IsSeparator(current_.back())) current_.pop_back();
}

std::string GnuDiagnostics::Rewrite(const std::string& pane) const {
    std::string out;
    size_t start = 0;
    while (start < pane.size()) {
        size_t end = pane.find('\n', start);
        end = end == std::string::npos ? pane.size() : end + 1;
        out += RewriteLine(pane.substr(start, end - start));
        start = end;
    }
    return out;
}

std::string GnuDiagnostics::RewriteLine(const std::string& line) const {
    size_t body_end = line.size();
    while (body_end > 0 && (line[body_end - 1] == '\n' || line[body_end - 1] == '\r')) --body_end;
    // The first "(digits):": a name may hold brackets of its own.
    for (size_t open = line.find('('); open != std::string::npos && open < body_end; open = line.find('(', open + 1)) {
        size_t digits_end = open + 1;
        while (digits_end < body_end && std::isdigit(static_cast<unsigned char>(line[digits_end]))) ++digits_end;
        if (open == 0 || digits_end == open + 1 || line.compare(digits_end, 2, "):") != 0) continue;
        size_t message = digits_end + 2;
        while (message < body_end && line[message] == ' ') ++message;
        for (const Severity& severity : kSeverities) {
            const std::string word = severity.pane;
            if (line.compare(message, word.size(), word) != 0) continue;
            return DisplayPath(line.substr(0, open)) + ":" + line.substr(open + 1, digits_end - open - 1) + ": " +
                   severity.gnu + line.substr(message + word.size());
        }
        return line;
    }
    return line;
}

std::string GnuDiagnostics::DisplayPath(const std::string& name) const {
    const std::string full =
        files_.FullPath(platform::IsAbsolutePath(name) ? name : platform::JoinPath(project_, name));
    if (full.size() > current_.size() && full.compare(0, current_.size(), current_) == 0 &&
        IsSeparator(full[current_.size()])) {
        return full.substr(current_.size() + 1);
    }
    return full;
}

}  // namespace ads::host
