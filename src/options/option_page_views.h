// The tool pages behind the dialog's page interface: a page that keeps page
// states (the assembler's and compilers' pages, either variant) and a page
// that edits its tool's option string (the linker's and fromELF's).
#pragma once

#include <memory>
#include <string>

#include "options/dialog_page.h"
#include "options/pages.h"
#include "options/switch_page.h"

namespace ads::options {

// A page of page states. Lists and the via file are shown as the user
// edits them (one definition per entry, the file name alone) and kept as
// the switch text. "Default" puts the per-target variant back to -1 and
// empty texts, the tool-wide one to `defaults` (the new-target states).
class StatePageView : public DialogPage {
public:
    StatePageView(PageDescription description, PageVariant variant, bool assembler, PageStateSet defaults);

    PageModel& Model() { return model_; }
    const PageModel& Model() const { return model_; }

    const PageDescription& Description() const override { return model_.Description(); }
    std::string Get(int control) const override;
    std::string Set(int control, const std::string& value) override;
    bool Enabled(int control) const override;
    void Default() override;
    bool Changed() const override { return model_.Changed(); }

private:
    PageModel model_;
    PageVariant variant_;
    bool assembler_;
    PageStateSet defaults_;
};

// A page that builds part of an option string. `defaults` is the tool's
// new-target option string that "Default" reads the page's controls from.
class SwitchPageView : public DialogPage {
public:
    SwitchPageView(SwitchPage* page, std::string defaults);

    const PageDescription& Description() const override { return description_; }
    std::string Get(int control) const override;
    std::string Set(int control, const std::string& value) override;
    bool Enabled(int control) const override;
    void Default() override;
    bool Changed() const override { return page_->Changed(); }

private:
    SwitchPage* page_;
    PageDescription description_;
    std::string defaults_;
};

// A page with no controls, for an item whose page is still to come.
class EmptyPage : public StoredPage {
public:
    explicit EmptyPage(std::string title) { description_.title = std::move(title); }
    const PageDescription& Description() const override { return description_; }
    std::string Get(int) const override { return {}; }
    std::string Set(int, const std::string&) override { return "the page has no controls"; }
    void Default() override {}
    bool Changed() const override { return false; }
    void Load(const DialogContext&) override {}
    void Save(const DialogContext&) override {}

private:
    PageDescription description_;
};

}  // namespace ads::options
