#include "options/path_check.h"

#include <cctype>

#include "config/path_macros.h"

namespace ads::options {

namespace {

// The path with every macro taken out; `kinds` counts the macro kinds used.
std::string WithoutMacros(const std::string& path, int* kinds, bool* unknown_brace) {
    std::string rest = path;
    *kinds = 0;
    for (const char* macro : {config::kProjectMacro, config::kCompilerMacro, config::kSystemMacro}) {
        const std::string m = macro;
        bool used = false;
        for (size_t at = rest.find(m); at != std::string::npos; at = rest.find(m, at)) {
            // A macro stands for a folder with its backslash: keep a mark so
            // that "{Project}" counts as the start of an absolute-looking path.
            rest.replace(at, m.size(), "\\");
            used = true;
        }
        *kinds += used ? 1 : 0;
    }
    *unknown_brace = rest.find_first_of("{}") != std::string::npos;
    return rest;
}

}  // namespace

std::string PathProblem(const std::string& path, PathUse use, const std::string& what) {
    if (path.find_first_not_of(' ') == std::string::npos) return what + " can't be empty.";
    int kinds = 0;
    bool unknown_brace = false;
    std::string rest = WithoutMacros(path, &kinds, &unknown_brace);
    if (use == PathUse::kFileName) {
        if (kinds > 0 || unknown_brace) return what + " is a file name: it can't hold a macro.";
        if (path.find_first_of("\\/:") != std::string::npos) return what + " is a file name: it can't hold a folder.";
    }
    if (unknown_brace) return what + " \"" + path + "\" holds a macro other than {Project}, {Compiler} or {System}.";
    if (kinds > 1) return what + " \"" + path + "\" mixes two macros: only the first kind would be replaced.";
    if (use == PathUse::kSearchPath && !rest.empty() && rest.back() == '*') rest.pop_back();
    for (size_t i = 0; i < rest.size(); ++i) {
        const char c = rest[i];
        const bool drive = c == ':' && i == 1 && std::isalpha(static_cast<unsigned char>(rest[0]));
        if ((c == ':' && !drive) || std::string("<>\"|?*;").find(c) != std::string::npos ||
            static_cast<unsigned char>(c) < 32) {
            return what + " \"" + path + "\" can't hold '" + std::string(1, c) + "' there.";
        }
    }
    return {};
}

}  // namespace ads::options
