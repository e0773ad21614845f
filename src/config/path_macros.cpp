#include "config/path_macros.h"

#include "platform/platform.h"

namespace ads::config {

const char kProjectMacro[] = "{Project}";
const char kCompilerMacro[] = "{Compiler}";
const char kSystemMacro[] = "{System}";

namespace {

// GetWindowsDirectoryA's buffer, terminator included.
constexpr size_t kWindowsDirectoryBuffer = 512;

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

std::string WithTrailingBackslash(std::string directory) {
    if (directory.empty() || directory.back() != '\\') directory += '\\';
    return directory;
}

std::string CompilerMacroValue(std::string arm_home) {
    while (!arm_home.empty() && (arm_home.back() == ' ' || arm_home.back() == '\t')) arm_home.pop_back();
    return WithTrailingBackslash(arm_home);
}

std::string SystemMacroValue(platform::FileSystem& files) {
    std::string directory = files.WindowsDirectory();
    if (directory.size() + 1 > kWindowsDirectoryBuffer) directory.clear();
    return WithTrailingBackslash(directory);
}

PathMacros MakePathMacros(const std::string& project_directory, const std::string& arm_home,
                          platform::FileSystem& files) {
    PathMacros m;
    m.project = WithTrailingBackslash(project_directory);
    m.compiler = CompilerMacroValue(arm_home);
    m.system = SystemMacroValue(files);
    return m;
}

std::string ReplaceOneMacroKind(const std::string& text, const PathMacros& macros) {
    if (text.find(kProjectMacro) != std::string::npos) return ReplaceAll(text, kProjectMacro, macros.project);
    if (text.find(kCompilerMacro) != std::string::npos) return ReplaceAll(text, kCompilerMacro, macros.compiler);
    if (text.find(kSystemMacro) != std::string::npos) return ReplaceAll(text, kSystemMacro, macros.system);
    return text;
}

std::string ResolveAgainstProject(const std::string& path, const PathMacros& macros) {
    return platform::IsAbsolutePath(path) ? path : macros.project + path;
}

std::string ConvertViaFilePath(const std::string& name, const PathMacros& macros) {
    std::string bare = name;
    if (bare.size() >= 2 && bare.front() == '"' && bare.back() == '"') bare = bare.substr(1, bare.size() - 2);
    return ResolveAgainstProject(ReplaceOneMacroKind(bare, macros), macros);
}

}  // namespace ads::config
