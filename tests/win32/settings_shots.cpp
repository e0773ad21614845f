// Writes the settings window as BMP files, one per tree item and tab of the
// project, a folder, a C file and an assembler file:
//   ads_settings_shots FOLDER
// names them <scope>-<item>[-<tab>].bmp and lists them on standard output.
#include <cstdio>
#include <string>

#include "win32/settings_project.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: ads_settings_shots FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    CreateDirectoryA(folder.c_str(), nullptr);
    ads::testing::SettingsProject p;
    const struct {
        const char* scope;
        ads::ConfigNode* node;
    } scopes[] = {{"target", p.project.get()}, {"folder", p.folder}, {"c", p.c_file}, {"asm", p.asm_file}};
    int written = 0, failed = 0;
    for (const auto& s : scopes) {
        double shown = 0;
        bool seen = false;
        p.Show(
            s.node,
            [&](ads::testing::WindowDriver& d) {
                auto shoot = [&](const std::string& item, const std::string& tab) {
                    const std::string path = folder + "\\" + ads::testing::ShotName(s.scope, item, tab);
                    if (d.Capture(path)) {
                        ++written;
                        std::printf("%s\n", path.c_str());
                    } else {
                        ++failed;
                        std::fprintf(stderr, "could not write %s\n", path.c_str());
                    }
                };
                for (const std::string& item : d.TreeItems()) {
                    d.SelectItem(item);
                    const std::vector<std::string> tabs = d.Tabs();
                    if (tabs.empty()) shoot(item, "");
                    for (const std::string& tab : tabs) {
                        d.SelectTab(tab);
                        shoot(item, tab);
                    }
                }
                d.Press(IDCANCEL);
            },
            &shown, &seen);
        if (!seen) {
            std::fprintf(stderr, "no settings window for %s (is DISPLAY set?)\n", s.scope);
            return 1;
        }
        std::printf("%s: the window was visible %.3f s after the call\n", s.scope, shown);
    }
    std::printf("%d written, %d failed\n", written, failed);
    return failed == 0 ? 0 : 1;
}
