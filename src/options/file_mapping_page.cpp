#include "options/file_mapping_page.h"

#include <algorithm>
#include <set>

#include "config/defaults.h"
#include "config/file_tools.h"
#include "config/node_text.h"
#include "options/text_page.h"
#include "platform/text.h"

namespace ads::options {

namespace {

using config::kToolDisplayNames;
using config::MappingRow;

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The list's entries as checked rows; blanks around the '=' do not count.
std::vector<MappingRow> Rows(const std::string& list) {
    std::vector<MappingRow> rows;
    for (const std::string& entry : SplitList(list)) {
        const size_t equals = entry.find('=');
        const std::string tool = equals == std::string::npos ? "" : Trimmed(entry.substr(equals + 1));
        rows.push_back({Trimmed(entry.substr(0, equals)), tool, true});
    }
    return rows;
}

int ToolOf(const std::string& name) {
    for (int tool = config::kToolArmasm; tool <= config::kToolTcpp; ++tool) {
        if (name == kToolDisplayNames[tool]) return tool;
    }
    return config::kNoTool;
}

std::string ListProblem(const std::string& list) {
    std::set<std::string> extensions;
    bool used[6] = {};
    for (const MappingRow& row : Rows(list)) {
        const std::string entry = row.extension + "=" + row.tool;
        if (row.extension.size() < 2 || row.extension[0] != '.' ||
            row.extension.find_first_of(" ()&@,=;.", 1) != std::string::npos) {
            return "\"" + entry + "\": an extension is a dot and a name, such as \".c\".";
        }
        const int tool = ToolOf(row.tool);
        if (tool == config::kNoTool) {
            std::string names;
            for (int t = config::kToolArmasm; t <= config::kToolTcpp; ++t) {
                names += std::string(t == config::kToolArmasm ? "" : ", ") + "\"" + kToolDisplayNames[t] + "\"";
            }
            return "\"" + entry + "\": the tool is one of " + names + ".";
        }
        if (!extensions.insert(platform::Lower(row.extension)).second) {
            return "\"" + row.extension + "\" is mapped twice.";
        }
        used[tool] = true;
    }
    if (used[config::kToolArmcc] && used[config::kToolTcc]) {
        return "The C files of a target go to one compiler: map them to the ARM C Compiler or to the Thumb C Compiler.";
    }
    if (used[config::kToolArmcpp] && used[config::kToolTcpp]) {
        return "The C++ files of a target go to one compiler: map them to the ARM C++ Compiler or to the Thumb C++ "
               "Compiler.";
    }
    return {};
}

class FileMappingsPage : public TextPage {
public:
    FileMappingsPage() : TextPage({kFileMappingsItem, -1, 0, {ListControl("Mappings")}}) {}

    void Load(const DialogContext& context) override {
        Put(0, MappingList(config::FileMapOf(context.configuration)));
        TakeAsLoaded();
    }

    void Default() override { Put(0, MappingList(config::kDefaultFileMap)); }

    std::string Validate() const override { return ListProblem(Value(0)); }

    void Save(const DialogContext& context) override {
        if (Changed()) CommitAttributes(context.host, context.configuration, {{config::kFileMapKey, MappingString(Value(0))}});
        TakeAsLoaded();
    }

protected:
    std::string Check(int, const std::string& value) const override { return ListProblem(value); }

public:
    std::string Set(int control, const std::string& value) override {
        std::string reason = TextPage::Set(control, value);
        if (reason.empty()) Put(0, MappingList(MappingString(Value(0))));
        return reason;
    }
};

}  // namespace

std::string MappingList(const std::string& map) {
    std::vector<std::string> entries;
    for (const MappingRow& row : config::MappingRows(map)) entries.push_back(row.extension + "=" + row.tool);
    return JoinList(entries);
}

std::string MappingString(const std::string& list) {
    // Each checked row's extension goes in front of its group's, so the
    // rows are handed over last first to keep the list's order.
    std::vector<MappingRow> rows = Rows(list);
    std::reverse(rows.begin(), rows.end());
    return config::BuildMappingString(rows);
}

std::unique_ptr<StoredPage> MakeFileMappingsPage() { return std::make_unique<FileMappingsPage>(); }

}  // namespace ads::options
