// The directory macros of search paths and via files: "{Project}",
// "{Compiler}" and "{System}", and how a path that uses them becomes a
// directory the tools can take.
#pragma once

#include <string>

namespace ads::platform {
class FileSystem;
}

namespace ads::config {

extern const char kProjectMacro[];   // "{Project}"
extern const char kCompilerMacro[];  // "{Compiler}"
extern const char kSystemMacro[];    // "{System}"

// What each macro stands for, every value with its trailing backslash.
struct PathMacros {
    std::string project;   // the project's directory
    std::string compiler;  // the ADS home (FindArmHome)
    std::string system;    // the Windows directory
};

// "\" appended unless the text ends with one; an empty text becomes "\".
std::string WithTrailingBackslash(std::string directory);
// The ADS home with its trailing blanks cut and a backslash added.
std::string CompilerMacroValue(std::string arm_home);
// The Windows directory as a 512-byte buffer takes it (empty when it is 512
// bytes or longer), with a backslash added.
std::string SystemMacroValue(platform::FileSystem& files);
PathMacros MakePathMacros(const std::string& project_directory, const std::string& arm_home,
                          platform::FileSystem& files);

// Replaces every occurrence of one macro, the first of "{Project}",
// "{Compiler}" and "{System}" that the text holds. A second kind in the same
// text is left as it stands, deliberately.
std::string ReplaceOneMacroKind(const std::string& text, const PathMacros& macros);
// A path that is not absolute (holds no ":" and does not start with "/") is
// taken relative to the project directory.
std::string ResolveAgainstProject(const std::string& path, const PathMacros& macros);

// The via file name of an "Extras" page, through the same rules: one macro
// kind replaced, then made absolute against the project directory. A name
// wrapped in double quotes loses them first.
std::string ConvertViaFilePath(const std::string& name, const PathMacros& macros);

}  // namespace ads::config
