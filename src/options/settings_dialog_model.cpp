#include "options/settings_dialog_model.h"

#include <map>

#include "config/defaults.h"
#include "config/project_keys.h"
#include "options/assembler_options.h"
#include "options/compiler_options.h"
#include "options/effective_options.h"
#include "options/fromelf_options.h"
#include "options/option_error.h"
#include "options/option_page_views.h"
#include "options/access_paths_page.h"
#include "options/file_mapping_page.h"
#include "options/property_page.h"
#include "options/target_pages.h"

namespace ads::options {

namespace {

enum class EntryKind { kFamily, kLinker, kFromElf, kStored };

struct FamilyItem {
    const char* item;
    Family family;
    Tool tool;
};
constexpr FamilyItem kFamilyItems[] = {
    {"ARM Assembler", Family::kArmAsm, Tool::kArmasm},   {"ARM C Compiler", Family::kArmC, Tool::kArmcc},
    {"ARM C++ Compiler", Family::kArmCpp, Tool::kArmcpp}, {"Thumb C Compiler", Family::kThumbC, Tool::kTcc},
    {"Thumb C++ Compiler", Family::kThumbCpp, Tool::kTcpp}};

bool CLanguage(Family family) { return family == Family::kArmC || family == Family::kThumbC; }

std::string Attribute(const ConfigNode* node, const char* key) {
    const char* value = node != nullptr ? node->GetAttribute(key) : nullptr;
    return value != nullptr ? value : "";
}

std::string NewTargetString(Family family) {
    const config::OptionModel d = config::BuiltinDefaults();
    switch (family) {
        case Family::kArmAsm: return d.armasm_params;
        case Family::kArmC: return d.armcc_params;
        case Family::kArmCpp: return d.armcpp_params;
        case Family::kThumbC: return d.tcc_params;
        case Family::kThumbCpp: return d.tcpp_params;
    }
    return {};
}

PageStateSet ReadToolWide(Family family, const std::string& text) {
    return IsAssembler(family) ? ReadAssemblerOptions(text) : ReadCompilerOptions(text, CLanguage(family));
}

std::string WriteToolWide(Family family, const PageStateSet& states) {
    if (IsAssembler(family)) return WriteAssemblerOptions(FromPageStates<AssemblerSettings>(states));
    return WriteCompilerOptions(FromPageStates<CompilerSettings>(states), CLanguage(family));
}

std::string JoinChoices(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& n : names) {
        if (n.empty()) continue;
        text += (text.empty() ? "\"" : ", \"") + n + "\"";
    }
    return text;
}

}  // namespace

std::unique_ptr<StoredPage> MakeItemPage(const std::string& item) {
    if (item == kTargetSettingsItem) return MakeTargetSettingsPage();
    if (item == kSelectCpuItem) return MakeSelectCpuPage();
    if (item == kArmTargetItem) return MakeArmTargetPage();
    if (item == kAccessPathsItem) return MakeAccessPathsPage();
    if (item == kFileMappingsItem) return MakeFileMappingsPage();
    if (item == kPropertyItem) return MakePropertyPage();
    return nullptr;
}

struct SettingsDialogModel::Entry {
    std::string item;
    EntryKind kind = EntryKind::kStored;
    Family family = Family::kArmC;
    Tool tool = Tool::kArmcc;
    std::vector<std::unique_ptr<DialogPage>> pages;
    PageStateSet loaded;  // a tool-wide family: the states read from its string
    std::string tab;      // the selected tab of a tool entry
};

SettingsDialogModel::SettingsDialogModel(int scope, DialogContext context, const PageFactory& factory,
                                         PathConverter via)
    : scope_(scope), context_(std::move(context)), via_(std::move(via)), tree_(SettingsTree(scope)),
      fromelf_(kFromElfRules) {
    const bool whole_target = scope_ == kScopeTarget;
    // The scope's page-state group, for every target, before any page is filled.
    const bool language_group = scope_ == kScopeC || scope_ == kScopeAssembler || scope_ == kScopeCpp || scope_ == kScopeAll;
    if (language_group) {
        if (const ConfigNode* all = context_.project ? context_.project->FindChild(config::kConfigurationsNode)
                                                     : nullptr) {
            for (const ConfigNode* c = all->FirstChild(); c != nullptr; c = c->NextSibling()) {
                if (c->Name() == config::kConfigurationNode) states_.push_back({Attribute(c, config::kNameKey), {}});
            }
        }
        current_ = states_.size();
        for (size_t i = 0; i < states_.size(); ++i) {
            if (states_[i].name == context_.target) current_ = i;
        }
        if (current_ == states_.size()) states_.push_back({context_.target, {}});
        LoadPageStates(context_.node, static_cast<LanguageGroup>(scope_), states_);
    }

    for (const TreeItem& t : tree_) {
        if (t.image != kImagePage) continue;
        auto entry = std::make_unique<Entry>();
        entry->item = t.label;
        for (const FamilyItem& f : kFamilyItems) {
            if (t.label != f.item) continue;
            entry->kind = EntryKind::kFamily;
            entry->family = f.family;
            entry->tool = f.tool;
        }
        if (entry->kind == EntryKind::kFamily) {
            const PageVariant variant = whole_target ? PageVariant::kToolWide : PageVariant::kPerTarget;
            const PageStateSet defaults = ReadToolWide(entry->family, NewTargetString(entry->family));
            entry->loaded = whole_target
                                ? ReadToolWide(entry->family, Attribute(context_.configuration, ToolWideKey(entry->tool)))
                                : states_[current_].Of(entry->family);
            for (PageDescription& d : DescribePages(entry->family, variant)) {
                auto view = std::make_unique<StatePageView>(std::move(d), variant, IsAssembler(entry->family), defaults);
                view->Model().Load(entry->loaded);
                entry->pages.push_back(std::move(view));
            }
        } else if (t.label == "ARM Linker") {
            entry->kind = EntryKind::kLinker;
            linker_.Open(Attribute(context_.configuration, config::kLinkerParamsKey));
            for (int p = 0; p < kLinkerPageCount; ++p) {
                entry->pages.push_back(std::make_unique<SwitchPageView>(&linker_.Page(static_cast<LinkerPage>(p)), ""));
            }
        } else if (t.label == "ARM FromELF") {
            entry->kind = EntryKind::kFromElf;
            fromelf_.Open(Attribute(context_.configuration, config::kFromElfParamsKey));
            entry->pages.push_back(std::make_unique<SwitchPageView>(&fromelf_, config::kDefaultFromElfParams));
        } else {
            std::unique_ptr<StoredPage> page = factory ? factory(t.label) : nullptr;
            if (page == nullptr) page = std::make_unique<EmptyPage>(t.label);
            page->Load(context_);
            entry->pages.push_back(std::move(page));
        }
        if (entry->pages.size() > 1) entry->tab = entry->pages.front()->Description().title;
        entries_.push_back(std::move(entry));
    }
}

SettingsDialogModel::~SettingsDialogModel() = default;

SettingsDialogModel::Entry* SettingsDialogModel::Find(const std::string& item) {
    for (auto& e : entries_) {
        if (e->item == item) return e.get();
    }
    return nullptr;
}

const SettingsDialogModel::Entry* SettingsDialogModel::Find(const std::string& item) const {
    return const_cast<SettingsDialogModel*>(this)->Find(item);
}

std::vector<DialogPage*> SettingsDialogModel::ShownTabs(const Entry& entry) const {
    std::vector<DialogPage*> shown;
    for (size_t i = 0; i < entry.pages.size(); ++i) {
        if (entry.kind == EntryKind::kLinker && !linker_.TabShown(static_cast<LinkerPage>(i))) continue;
        shown.push_back(entry.pages[i].get());
    }
    return shown;
}

std::string SettingsDialogModel::Select(const std::string& item) {
    std::vector<std::string> labels;
    for (const TreeItem& t : tree_) {
        if (t.label == item) {
            selected_ = item;
            return {};
        }
        labels.push_back(t.label);
    }
    return "no item \"" + item + "\" in the tree (items: " + JoinChoices(labels) + ")";
}

std::string SettingsDialogModel::Caption() const {
    const char* caption = PageCaption(selected_);
    return caption != nullptr && Find(selected_) != nullptr ? caption : "";
}

std::vector<std::string> SettingsDialogModel::Tabs() const {
    std::vector<std::string> tabs;
    const Entry* entry = Find(selected_);
    if (entry == nullptr || entry->pages.size() < 2) return tabs;
    for (DialogPage* p : ShownTabs(*entry)) tabs.push_back(p->Description().title);
    return tabs;
}

std::string SettingsDialogModel::SelectedTab() const {
    const std::vector<std::string> tabs = Tabs();
    const Entry* entry = Find(selected_);
    for (const std::string& t : tabs) {
        if (t == entry->tab) return t;
    }
    // A tab that was hidden (the linker's "Layout") gives way to the first.
    return tabs.empty() ? std::string() : tabs.front();
}

std::string SettingsDialogModel::SelectTab(const std::string& tab) {
    Entry* entry = Find(selected_);
    const std::vector<std::string> tabs = Tabs();
    if (tabs.empty()) return "\"" + selected_ + "\" has no tabs";
    for (const std::string& t : tabs) {
        if (t == tab) {
            entry->tab = tab;
            return {};
        }
    }
    return "no tab \"" + tab + "\" on \"" + selected_ + "\" (tabs: " + JoinChoices(tabs) + ")";
}

DialogPage* SettingsDialogModel::ShownPage() {
    Entry* entry = Find(selected_);
    if (entry == nullptr) return nullptr;
    if (entry->pages.size() == 1) return entry->pages.front().get();
    const std::string tab = SelectedTab();
    for (DialogPage* p : ShownTabs(*entry)) {
        if (p->Description().title == tab) return p;
    }
    return nullptr;
}

std::vector<std::string> SettingsDialogModel::ControlNames(const DialogPage& page) {
    const std::vector<Control>& controls = page.Description().controls;
    std::vector<std::string> base(controls.size());
    std::map<std::string, int> count;
    for (size_t i = 0; i < controls.size(); ++i) {
        const Control& c = controls[i];
        if (c.kind == ControlKind::kButton && !page.Presses(static_cast<int>(i))) continue;
        // A label broken over two lines is named on one.
        for (char ch : c.label.empty() ? c.group : c.label) {
            if (ch != '\n' && ch != '\r') base[i] += ch;
        }
        ++count[base[i]];
    }
    std::vector<std::string> names(controls.size());
    std::map<std::string, int> seen;
    for (size_t i = 0; i < controls.size(); ++i) {
        if (base[i].empty()) continue;
        std::string name = base[i];
        if (count[name] > 1 && !controls[i].label.empty() && !controls[i].group.empty()) {
            name = controls[i].group + ": " + name;
        }
        const int n = ++seen[name];
        names[i] = n > 1 ? name + " #" + std::to_string(n) : name;
    }
    return names;
}

std::string SettingsDialogModel::Set(const std::string& label, const std::string& value) {
    DialogPage* page = ShownPage();
    if (page == nullptr) return "\"" + selected_ + "\" shows no page; select a page first";
    const std::vector<std::string> names = ControlNames(*page);
    std::string where = "\"" + selected_ + "\"";
    if (!Tabs().empty()) where += " tab \"" + SelectedTab() + "\"";
    for (size_t i = 0; i < names.size(); ++i) {
        if (names[i].empty() || names[i] != label) continue;
        const int control = static_cast<int>(i);
        if (!page->Enabled(control)) return "\"" + label + "\" on " + where + " is disabled";
        const bool button = page->Description().controls[i].kind == ControlKind::kButton;
        const std::string refused = button ? page->Press(control) : page->Set(control, value);
        if (button && !refused.empty()) return "\"" + label + "\" on " + where + ": " + refused;
        if (!refused.empty()) return "\"" + label + "\" on " + where + ": \"" + value + "\" refused: " + refused;
        return {};
    }
    return "no control \"" + label + "\" on " + where + " (controls: " + JoinChoices(names) + ")";
}

void SettingsDialogModel::Default() {
    if (DialogPage* page = ShownPage()) page->Default();
}

PageStateSet SettingsDialogModel::CurrentStates(const Entry& entry) const {
    PageStateSet states = entry.loaded;
    for (const auto& p : entry.pages) static_cast<const StatePageView&>(*p).Model().Store(states);
    return states;
}

std::string SettingsDialogModel::FamilyText(const Entry& entry, std::string* error) const {
    try {
        return WriteToolWide(entry.family, CurrentStates(entry));
    } catch (const OptionError& e) {
        *error = e.what();
        return {};
    }
}

std::string SettingsDialogModel::Validate(const Entry& entry) const {
    bool changed = false;
    // A page the user did not touch keeps what it had, whatever that is.
    for (const auto& p : entry.pages) {
        if (!p->Changed()) continue;
        const std::string message = p->Validate();
        if (!message.empty()) return message;
        changed = true;
    }
    if (entry.kind == EntryKind::kFamily && scope_ == kScopeTarget && changed) {
        std::string error;
        FamilyText(entry, &error);
        if (!error.empty()) return entry.item + ": " + error;
    }
    return {};
}

void SettingsDialogModel::Save(Entry& entry) {
    bool changed = false;
    for (const auto& p : entry.pages) changed = changed || p->Changed();
    if (!changed) return;
    saved_ = true;
    config::HostApi& host = *context_.host;
    switch (entry.kind) {
        case EntryKind::kFamily: {
            const PageStateSet states = CurrentStates(entry);
            if (scope_ == kScopeTarget) {
                std::string error;
                const std::string text = FamilyText(entry, &error);
                config::EditNode(host, context_.configuration,
                                 [&](ConfigNode* c) { c->SetAttribute(ToolWideKey(entry.tool), text); });
            } else {
                states_[current_].Of(entry.family) = states;
                const char* node_name = StatesNodeName(entry.family);
                if (context_.node->FindChild(node_name) == nullptr) {
                    host.FindSettingNode(context_.node, node_name, kSettingFlagKey);
                }
                SavePageStates(
                    context_.node, static_cast<LanguageGroup>(scope_), states_,
                    [&host](ConfigNode* n, const char* k, const char* f) { return host.FindSettingNode(n, k, f); },
                    [&host](ConfigNode* n, ConfigNode* e) { host.Commit(n, e); });
                std::vector<bool> flags;
                for (const auto& p : entry.pages) flags.push_back(p->Changed());
                CommitLocalConfigure(context_.node->FindChild(node_name), flags,
                                     [&host](ConfigNode* n, ConfigNode* e) { host.Commit(n, e); });
            }
            entry.loaded = states;
            for (auto& p : entry.pages) static_cast<StatePageView&>(*p).Model().Load(states);
            break;
        }
        case EntryKind::kLinker: {
            const std::string text = linker_.Text();
            config::EditNode(host, context_.configuration,
                             [&](ConfigNode* c) { c->SetAttribute(config::kLinkerParamsKey, text); });
            linker_.Open(text);
            break;
        }
        case EntryKind::kFromElf: {
            const std::string text = fromelf_.Built();
            config::EditNode(host, context_.configuration,
                             [&](ConfigNode* c) { c->SetAttribute(config::kFromElfParamsKey, text); });
            fromelf_.Open(text);
            break;
        }
        case EntryKind::kStored: static_cast<StoredPage&>(*entry.pages.front()).Save(context_); break;
    }
}

std::string SettingsDialogModel::Apply() {
    for (const auto& e : entries_) {
        const std::string message = Validate(*e);
        if (!message.empty()) return message;
    }
    // "Property" may take a node's own states away: it saves after the
    // language pages, which write every state of the node.
    for (auto& e : entries_) {
        if (e->kind != EntryKind::kStored) Save(*e);
    }
    for (auto& e : entries_) {
        if (e->kind == EntryKind::kStored) Save(*e);
    }
    return {};
}

std::vector<std::string> SettingsDialogModel::Tools() const {
    std::vector<std::string> tools;
    for (const auto& e : entries_) {
        if (e->kind == EntryKind::kFamily) tools.push_back(ToolName(e->tool));
        if (e->kind == EntryKind::kLinker) tools.push_back("armlink");
        if (e->kind == EntryKind::kFromElf) tools.push_back("fromelf");
    }
    return tools;
}

bool SettingsDialogModel::CommandLine(const std::string& tool, std::string* text) const {
    text->clear();
    for (const auto& e : entries_) {
        if (e->kind == EntryKind::kLinker && tool == "armlink") {
            *text = linker_.Text();
            return true;
        }
        if (e->kind == EntryKind::kFromElf && tool == "fromelf") {
            *text = fromelf_.Built();
            return true;
        }
        if (e->kind != EntryKind::kFamily || tool != ToolName(e->tool)) continue;
        try {
            std::string tool_wide = Attribute(context_.configuration, ToolWideKey(e->tool));
            std::vector<PageStateSet> layers;
            const std::vector<const ConfigNode*> owners = StateOwners(context_.node);
            for (const ConfigNode* owner : owners) {
                PageStateSet layer;
                if (scope_ != kScopeTarget && owner == owners.back()) {
                    layer = CurrentStates(*e);
                } else {
                    LoadPageStates(owner, context_.target, e->family, layer);
                }
                layers.push_back(layer);
            }
            if (scope_ == kScopeTarget) tool_wide = WriteToolWide(e->family, CurrentStates(*e));
            *text = EffectiveOptions(e->tool, tool_wide, layers, via_);
            return true;
        } catch (const OptionError& error) {
            *text = error.what();
            return false;
        }
    }
    return false;
}

std::string SettingsDialogModel::Show() const {
    std::string out;
    for (const TreeItem& t : tree_) {
        const Entry* entry = Find(t.label);
        if (entry == nullptr) continue;
        const char* caption = PageCaption(t.label);
        out += "[" + t.label + "] " + (caption != nullptr ? caption : "") + "\n";
        const std::vector<DialogPage*> pages = ShownTabs(*entry);
        for (const DialogPage* page : pages) {
            std::string indent = "  ";
            if (pages.size() > 1 || entry->kind == EntryKind::kFamily || entry->kind == EntryKind::kLinker) {
                out += "  (" + page->Description().title + ")\n";
                indent = "    ";
            }
            const std::vector<std::string> names = ControlNames(*page);
            for (size_t i = 0; i < names.size(); ++i) {
                if (names[i].empty()) continue;
                const int control = static_cast<int>(i);
                std::string value = page->Get(control);
                for (char& ch : value) {
                    if (ch == '\n') ch = ';';
                }
                out += indent + names[i] + " = " + value + (page->Enabled(control) ? "" : "  (disabled)") + "\n";
            }
        }
    }
    out += "Equivalent Command Line\n";
    for (const std::string& tool : Tools()) {
        std::string text;
        CommandLine(tool, &text);
        out += "  " + tool + ":" + text + "\n";
    }
    return out;
}

}  // namespace ads::options
