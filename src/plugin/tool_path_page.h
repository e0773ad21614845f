// The tool-path page ("Config ADS tools Path"): the user names the folder of
// the ADS tools by hand. This is the page's whole logic; a dialog binds its
// controls to it and asks the folder browser through a callback.
#pragma once

#include <functional>
#include <string>

#include "plugin/toolchain.h"

namespace ads::plugin {

extern const char kToolPathTitle[];          // "Config ADS tools Path"
extern const char kToolPathGroup[];          // "ADS-ARM tools"
extern const char kToolPathLabel[];          // "BIN:"
extern const char kToolPathBrowseButton[];   // "..."
extern const char kToolPathBrowseStart[];    // "C:\"
// "Please Choose Tools Path(eg：D:\ADSv1_2\Bin):", the full-width colon in
// the GBK code page (0xA3 0xBA), as the prompt has always been stored.
extern const char kToolPathPrompt[];

class ToolPathPage {
public:
    // Shows the folder browser starting at `start` with `prompt`; true with
    // *chosen set when the user picked a folder.
    using FolderBrowser =
        std::function<bool(const std::string& start, const std::string& prompt, std::string* chosen)>;

    // The field starts with the toolchain's current tool directory.
    explicit ToolPathPage(Toolchain* toolchain);

    const std::string& field() const { return field_; }
    void SetField(std::string text) { field_ = std::move(text); }

    // The "..." button: a chosen folder goes into the field; a cancelled
    // browser leaves it as it is.
    void Browse(const FolderBrowser& browser);
    // OK: the field becomes the tool directory and the tools are located
    // again (which registers them with the host). Returns what LocateTools
    // returned.
    bool Accept();

private:
    Toolchain* toolchain_;
    std::string field_;
};

}  // namespace ads::plugin
