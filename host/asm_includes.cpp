#include "asm_includes.h"

#include <set>

#include "platform/text.h"

namespace ads::host {

namespace {

// What one line of a source asks for.
enum class LineKind { kOther, kInclude, kEnd };

bool IsBlank(char c) { return platform::IsSpaceOrTab(c); }

// The next field of blank-separated text from *pos on.
std::string NextField(const std::string& text, size_t* pos) {
    while (*pos < text.size() && IsBlank(text[*pos])) ++*pos;
    const size_t start = *pos;
    while (*pos < text.size() && !IsBlank(text[*pos])) ++*pos;
    return text.substr(start, *pos - start);
}

// The assembler takes a directive in capitals or in small letters, not
// mixed: "Get" is no directive.
bool IsDirective(const std::string& word, const std::string& capitals) {
    return word == capitals || word == platform::Lower(capitals);
}

LineKind ReadLine(std::string line, std::string* name) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::string code = line.substr(0, line.find(';'));
    size_t pos = 0;
    if (!code.empty() && !IsBlank(code[0])) NextField(code, &pos);  // the label
    const std::string directive = NextField(code, &pos);
    if (IsDirective(directive, "END")) return LineKind::kEnd;
    if (!IsDirective(directive, "GET") && !IsDirective(directive, "INCLUDE")) return LineKind::kOther;
    *name = platform::Trim(code.substr(pos));
    if (name->size() >= 2 && name->front() == '"' && name->back() == '"') *name = name->substr(1, name->size() - 2);
    return name->empty() ? LineKind::kOther : LineKind::kInclude;
}

// The folders the command line adds to the search: -I and -J, the folder
// attached or the next word, several joined with ";", relative ones taken
// from the project folder.
std::vector<std::string> CommandFolders(const std::string& command, const std::string& project_folder) {
    std::vector<std::string> folders;
    const std::vector<std::string> words = platform::SplitCommandLine(command);
    for (size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.size() < 2 || word[0] != '-' || (word[1] != 'I' && word[1] != 'J')) continue;
        std::string list = word.substr(2);
        if (list.empty() && i + 1 < words.size()) list = words[++i];
        size_t start = 0;
        while (start <= list.size()) {
            size_t semi = list.find(';', start);
            if (semi == std::string::npos) semi = list.size();
            const std::string folder = list.substr(start, semi - start);
            if (!folder.empty()) {
                folders.push_back(platform::IsAbsolutePath(folder) ? folder
                                                                   : platform::JoinPath(project_folder, folder));
            }
            start = semi + 1;
        }
    }
    return folders;
}

}  // namespace

std::vector<std::string> AssemblerIncludes(platform::FileSystem& files, const std::string& source,
                                           const std::string& project_folder, const std::string& command) {
    std::vector<std::string> search = {platform::DirectoryOf(source), project_folder};
    for (std::string& folder : CommandFolders(command, project_folder)) search.push_back(std::move(folder));

    auto find = [&](const std::string& name, const std::string& includer) -> std::string {
        if (platform::IsAbsolutePath(name)) return files.FileExists(name) ? files.FullPath(name) : std::string();
        const std::string beside = platform::JoinPath(platform::DirectoryOf(includer), name);
        if (files.FileExists(beside)) return files.FullPath(beside);
        for (const std::string& folder : search) {
            const std::string candidate = platform::JoinPath(folder, name);
            if (files.FileExists(candidate)) return files.FullPath(candidate);
        }
        return std::string();
    };

    std::vector<std::string> found;
    std::set<std::string> seen = {files.FullPath(source)};
    // Files still to read; each was seen once, so a file that includes
    // itself, or one that includes it, ends the chain.
    std::vector<std::string> pending = {source};
    while (!pending.empty()) {
        const std::string file = pending.back();
        pending.pop_back();
        std::string text;
        if (!files.ReadFile(file, &text)) continue;
        size_t start = 0;
        while (start < text.size()) {
            size_t newline = text.find('\n', start);
            if (newline == std::string::npos) newline = text.size();
            std::string name;
            const LineKind kind = ReadLine(text.substr(start, newline - start), &name);
            start = newline + 1;
            if (kind == LineKind::kEnd) break;
            if (kind != LineKind::kInclude) continue;
            const std::string path = find(name, file);
            if (path.empty() || !seen.insert(path).second) continue;
            found.push_back(path);
            pending.push_back(path);
        }
    }
    return found;
}

}  // namespace ads::host
