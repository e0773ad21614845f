#include "options/access_paths_page.h"

#include "config/node_text.h"
#include "config/search_paths.h"
#include "options/path_check.h"
#include "options/text_page.h"

namespace ads::options {

namespace {

enum AccessPathsControl { kUserPaths, kSystemPaths };

// The paths of switch texts such as ` -I"a"  -I"b" `.
std::vector<std::string> QuotedPaths(const std::string& switches) {
    std::vector<std::string> paths;
    for (size_t open = switches.find('"'); open != std::string::npos;) {
        const size_t close = switches.find('"', open + 1);
        if (close == std::string::npos) break;
        paths.push_back(switches.substr(open + 1, close - open - 1));
        open = switches.find('"', close + 1);
    }
    return paths;
}

class AccessPathsPage : public TextPage {
public:
    AccessPathsPage()
        : TextPage({kAccessPathsItem, -1, 0, {ListControl("User Paths"), ListControl("System Paths")}}) {}

    void Load(const DialogContext& context) override {
        Show(ReadSearchPathLists(config::Text(context.configuration, config::kSearchPathKey)));
        TakeAsLoaded();
    }

    void Default() override { Show(ReadSearchPathLists(config::kDefaultSearchPath)); }

    std::string Validate() const override {
        for (int control : {kUserPaths, kSystemPaths}) {
            for (const std::string& entry : SplitList(Value(control))) {
                if (std::string problem = Check(control, entry); !problem.empty()) return problem;
            }
        }
        return {};
    }

    void Save(const DialogContext& context) override {
        if (Changed()) {
            const std::string text = WriteSearchPathLists({SplitList(Value(kUserPaths)), SplitList(Value(kSystemPaths))});
            CommitAttributes(context.host, context.configuration, {{config::kSearchPathKey, text}});
        }
        TakeAsLoaded();
    }

protected:
    std::string Check(int control, const std::string& value) const override {
        const char* what = control == kUserPaths ? "The user path" : "The system path";
        for (const std::string& entry : SplitList(value)) {
            if (std::string problem = PathProblem(entry, PathUse::kSearchPath, what); !problem.empty()) return problem;
        }
        return {};
    }

private:
    void Show(const SearchPathLists& lists) {
        Put(kUserPaths, JoinList(lists.user));
        Put(kSystemPaths, JoinList(lists.system));
    }
};

}  // namespace

SearchPathLists ReadSearchPathLists(const std::string& value) {
    const config::SearchPathSwitches switches = config::ParseSearchPath(value);
    return {QuotedPaths(switches.include), QuotedPaths(switches.system_include)};
}

std::string WriteSearchPathLists(const SearchPathLists& lists) {
    std::string text;
    for (const std::string& path : lists.user) text += " -I\"" + path + "\" ";
    for (const std::string& path : lists.system) text += " -J\"" + path + "\" ";
    return text;
}

std::unique_ptr<StoredPage> MakeAccessPathsPage() { return std::make_unique<AccessPathsPage>(); }

}  // namespace ads::options
