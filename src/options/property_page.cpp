#include "options/property_page.h"

#include <set>

#include "config/file_tools.h"
#include "config/node_text.h"
#include "options/page_state.h"
#include "options/text_page.h"

namespace ads::options {

namespace {

enum PropertyControl { kTool, kOwnSettings };

std::vector<int> ToolsOfKind(int kind) {
    switch (kind) {
        case config::kKindC: return {config::kToolArmcc, config::kToolTcc};
        case config::kKindCpp: return {config::kToolArmcpp, config::kToolTcpp};
        case config::kKindAsm: return {config::kToolArmasm};
        default: return {};
    }
}

std::vector<Family> FamiliesOfKind(int kind) {
    switch (kind) {
        case config::kKindC: return {Family::kArmC, Family::kThumbC};
        case config::kKindCpp: return {Family::kArmCpp, Family::kThumbCpp};
        case config::kKindAsm: return {Family::kArmAsm};
        case config::kKindFolder: return FamiliesOf(LanguageGroup::kAll);
        default: return {};
    }
}

class PropertyPage : public TextPage {
public:
    PropertyPage() : TextPage({kPropertyItem, -1, 0, {ComboControl("Tool:", {}), CheckControl("Keep own settings")}}) {}

    bool Enabled(int control) const override {
        if (control == kTool) return description_.controls[kTool].choices.size() > 1;
        return kind_ != config::kKindNone && loaded_own_;
    }

    void Load(const DialogContext& context) override {
        const ConfigNode* node = context.node;
        kind_ = config::kKindNone;
        if (node != nullptr && node->Name() == config::kFileNode) {
            const int type = config::FileTypeOf(node);
            if (!ToolsOfKind(type).empty()) kind_ = type;
        } else if (node != nullptr && node->Name() == config::kFilterNode) {
            kind_ = config::kKindFolder;
        }
        Control& tool = description_.controls[kTool];
        tool.choices.clear();
        for (int t : ToolsOfKind(kind_)) tool.choices.push_back({config::kToolDisplayNames[t], t});
        Put(kTool, kind_ == config::kKindFolder || kind_ == config::kKindNone
                       ? ""
                       : ChoiceLabel(tool.choices, config::ChooseTool(node, context.target, context.configuration)));
        mapped_tool_ = MappedTool(context);
        loaded_own_ = false;
        for (Family family : FamiliesOfKind(kind_)) {
            PageStateSet states;
            LoadPageStates(node, context.target, family, states);
            for (const std::string& state : states) loaded_own_ = loaded_own_ || !state.empty();
        }
        Put(kOwnSettings, loaded_own_ ? "1" : "0");
        TakeAsLoaded();
    }

    void Default() override {
        if (kind_ != config::kKindFolder && kind_ != config::kKindNone) Put(kTool, mapped_tool_);
        Put(kOwnSettings, "0");
    }

    void Save(const DialogContext& context) override {
        if (context.host != nullptr && kind_ != config::kKindNone) {
            if (ControlChanged(kTool)) SaveTool(context);
            if (ControlChanged(kOwnSettings)) DropOwnSettings(context);
        }
        loaded_own_ = Value(kOwnSettings) == "1";
        TakeAsLoaded();
    }

protected:
    std::string Check(int control, const std::string& value) const override {
        if (control == kOwnSettings && value == "1" && !loaded_own_) {
            return "Settings of its own are made on the language pages.";
        }
        return {};
    }

private:
    // The tool the target's mapping gives a file of this kind.
    std::string MappedTool(const DialogContext& context) const {
        ConfigNode probe(config::kFileNode);
        probe.SetAttributeInt(config::kFileTypeKey, kind_);
        return ChoiceLabel(description_.controls[kTool].choices,
                           config::ChooseTool(&probe, context.target, context.configuration));
    }

    void SaveTool(const DialogContext& context) {
        int tool = 0;
        if (!ParseChoice(description_.controls[kTool].choices, Value(kTool), &tool).empty()) return;
        ConfigNode* settings = config::EnsureFileSettings(*context.host, context.node);
        config::EditNode(*context.host, settings, [&](ConfigNode* edit) {
            edit->SetAttributeInt((context.target + config::kToolSuffix).c_str(), tool);
        });
    }

    void DropOwnSettings(const DialogContext& context) {
        std::set<std::string> keys;
        std::set<std::string> children;
        for (Family family : FamiliesOfKind(kind_)) {
            children.insert(StatesNodeName(family));
            for (int slot = 0; slot < kSlotCount; ++slot) {
                if (PageSuffix(family, slot) != nullptr) keys.insert(PageStateKey(context.target, family, slot));
            }
        }
        for (const std::string& name : children) {
            ConfigNode* child = context.node->FindChild(name.c_str());
            config::EditNode(*context.host, child, [&](ConfigNode* edit) {
                std::vector<std::pair<std::string, std::string>> kept;
                for (auto* a = edit->FirstAttribute(); a != nullptr; a = edit->NextAttribute(a)) {
                    if (keys.count(a->Name()) == 0) kept.emplace_back(a->Name(), a->Value());
                }
                edit->ClearAttributes();
                for (const auto& [key, value] : kept) edit->SetAttribute(key, value);
                edit->SetAttributeInt(config::kLocalConfigureKey, 0);
            });
        }
    }

    int kind_ = config::kKindNone;
    bool loaded_own_ = false;
    std::string mapped_tool_;
};

}  // namespace

std::unique_ptr<StoredPage> MakePropertyPage() { return std::make_unique<PropertyPage>(); }

}  // namespace ads::options
