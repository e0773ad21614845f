#include "build/output_location.h"

#include "build/node_text.h"
#include "config/project_keys.h"

namespace ads::build {

namespace {

// One backslash between folders: a macro's value ends with one, so
// "{Project}\out" would give two; ".\" steps and trailing backslashes go too.
// A leading "\\" (a share) and a drive's root ("C:\") are kept.
std::string TidyFolder(const std::string& folder) {
    std::string out;
    for (char c : folder) {
        if (c == '\\' && out.size() > 1 && out.back() == '\\') continue;
        out += c;
        const size_t n = out.size();
        if (c == '\\' && n >= 3 && out[n - 2] == '.' && out[n - 3] == '\\') out.resize(n - 2);
    }
    for (;;) {
        const size_t n = out.size();
        if (n >= 2 && out[n - 1] == '.' && out[n - 2] == '\\') {
            out.resize(n - 1);
        } else if (n >= 2 && out[n - 1] == '\\' && out[n - 2] != ':' && out[n - 2] != '\\') {
            out.resize(n - 1);
        } else {
            return out;
        }
    }
}

}  // namespace

bool IsLibraryTarget(const ConfigNode* configuration) {
    return EqualsIgnoringCase(Text(configuration, config::kLinkerNameKey), config::kLinkerArmar);
}

OutputLocation LocateOutput(const ConfigNode* configuration, const std::string& project_name,
                            const std::string& target, const config::PathMacros& macros) {
    const std::string user = Text(configuration, config::kUserAppFileKey);
    const std::string name = (user.empty() ? project_name : user) + (IsLibraryTarget(configuration) ? ".a" : ".axf");
    const std::string setting = Text(configuration, config::kOutputDirKey);
    OutputLocation out;
    if (setting.empty() || setting == config::kProjectMacro) {
        out.folder = macros.project + target;
        out.command_path = ".\\" + target + "\\" + name;
    } else {
        out.folder = TidyFolder(config::ResolveAgainstProject(config::ReplaceOneMacroKind(setting, macros), macros));
    }
    out.full_path = platform::JoinPath(out.folder, name);
    if (out.command_path.empty()) out.command_path = out.full_path;
    return out;
}

}  // namespace ads::build
