// The tool-path page ("Config ADS tools Path") as a dialog page, so that a
// window or a host without windows shows and sets it like every other page:
// the edit field "BIN:" in the group "ADS-ARM tools" and the "..." button.
// It keeps nothing in the project: OK (Accept) makes the field the tool
// directory and locates the tools again.
#pragma once

#include "options/dialog_page.h"
#include "plugin/tool_path_page.h"

namespace ads::plugin {

class ToolPathDialogPage : public options::DialogPage {
public:
    enum ControlIndex { kDirectory, kBrowse };

    // The field starts with the toolchain's tool directory.
    explicit ToolPathDialogPage(Toolchain* toolchain);

    const options::PageDescription& Description() const override { return description_; }
    std::string Get(int control) const override;
    std::string Set(int control, const std::string& value) override;
    // The installation's "Bin" folder (FindArmHome); the field stays as it
    // is when no installation is known.
    void Default() override;
    bool Changed() const override { return page_.field() != opened_; }
    // An empty field, or a folder without "armasm.exe", is refused.
    std::string Validate() const override;

    // The "..." button.
    void Browse(const ToolPathPage::FolderBrowser& browser) { page_.Browse(browser); }
    // OK: see ToolPathPage::Accept.
    bool Accept();

private:
    Toolchain* toolchain_;
    ToolPathPage page_;
    std::string opened_;
    options::PageDescription description_;
};

}  // namespace ads::plugin
