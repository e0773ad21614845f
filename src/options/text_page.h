// The base of the pages that keep each control's value as one text and
// store it in attributes of the project's nodes: the target's own pages
// ("Target Settings", "Access Paths", "File Mappings", "Select CPU", "ARM
// Target", "ARM Debug") and "Property". A page holds the texts it was loaded
// with beside the texts the user made, so Changed() is a comparison and a
// page writes only what differs.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "options/dialog_page.h"

namespace ads::options {

class TextPage : public StoredPage {
public:
    const PageDescription& Description() const override { return description_; }
    std::string Get(int control) const override;
    // Takes the value in the control's form (see dialog_page.h), asks Check
    // about it and keeps it. A disabled or unknown control refuses.
    std::string Set(int control, const std::string& value) override;
    bool Changed() const override { return values_ != loaded_; }

protected:
    explicit TextPage(PageDescription description);

    // Whether the page accepts the value (in its stored form: a combo's
    // label, "0"/"1", list entries joined by '\n'); empty or the reason.
    virtual std::string Check(int control, const std::string& value) const {
        (void)control;
        (void)value;
        return {};
    }

    const std::string& Value(int control) const { return values_[static_cast<size_t>(control)]; }
    void Put(int control, std::string value) { values_[static_cast<size_t>(control)] = std::move(value); }
    bool ControlChanged(int control) const {
        return values_[static_cast<size_t>(control)] != loaded_[static_cast<size_t>(control)];
    }
    // After a load or a save: what the page shows is what is stored.
    void TakeAsLoaded() { loaded_ = values_; }

    PageDescription description_;

private:
    std::vector<std::string> values_;
    std::vector<std::string> loaded_;
};

// Commits the (key, value) pairs on `node` through one clone, leaving every
// other attribute as it is; nothing when the list is empty or no node.
void CommitAttributes(config::HostApi* host, ConfigNode* node,
                      const std::vector<std::pair<const char*, std::string>>& attributes);

// Shorthands for the controls of these pages.
Control EditControl(const char* label, const char* group = "");
Control ListControl(const char* label, const char* group = "");
Control CheckControl(const char* label, const char* group = "");
Control ComboControl(const char* label, const std::vector<std::string>& labels, const char* group = "");

}  // namespace ads::options
