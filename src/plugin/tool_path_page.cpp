#include "plugin/tool_path_page.h"

namespace ads::plugin {

const char kToolPathTitle[] = "Config ADS tools Path";
const char kToolPathGroup[] = "ADS-ARM tools";
const char kToolPathLabel[] = "BIN:";
const char kToolPathBrowseButton[] = "...";
const char kToolPathBrowseStart[] = "C:\\";
const char kToolPathPrompt[] = "Please Choose Tools Path(eg\xA3\xBA" "D:\\ADSv1_2\\Bin):";

ToolPathPage::ToolPathPage(Toolchain* toolchain) : toolchain_(toolchain), field_(toolchain->directory()) {}

void ToolPathPage::Browse(const FolderBrowser& browser) {
    std::string chosen;
    if (browser && browser(kToolPathBrowseStart, kToolPathPrompt, &chosen)) field_ = chosen;
}

bool ToolPathPage::Accept() {
    // The search starts again from the candidates; the chosen directory
    // counts through FindArmHome, which takes a stored "...\Bin" directory's
    // parent when the registry names no installation.
    toolchain_->set_directory(field_);
    return toolchain_->LocateTools();
}

}  // namespace ads::plugin
