// The settings window as the IDE shows it: ShowSettings opens it modally and
// a second thread clicks through it with window messages.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "win32/settings_project.h"

namespace ads::testing {
namespace {

constexpr int kOk = 1, kCancel = 2;
constexpr int kApply = 100, kDefault = 101;  // the dialog's own button ids

bool NoDisplay() {
    // wine draws its windows through X here: without a display none opens.
    const char* display = std::getenv("DISPLAY");
    return display == nullptr || *display == '\0';
}

std::string Joined(const std::vector<std::string>& v) {
    std::string s;
    for (const std::string& e : v) s += e + "|";
    return s;
}

std::string Attribute(const ConfigNode* node, const char* key) {
    const char* v = node->GetAttribute(key);
    return v != nullptr ? v : "(absent)";
}

TEST(SettingsWindowTest, ClicksInTheWindowReachTheHostsTreeOnlyWhenAccepted) {
    if (NoDisplay()) GTEST_SKIP() << "DISPLAY is unset: wine opens no window without an X display";
    using Steps = std::function<bool(WindowDriver&)>;
    const Steps ropi = [](WindowDriver& d) {
        return d.SelectItem("ARM Linker") && d.SelectTab("Output") && d.Click("Ropi");
    };
    const struct Row {
        const char* name;
        Steps steps;
        int last;  // the button that ends the session
        int answer;
        bool ropi_stored;
        bool rebuild;
    } rows[] = {
        {"Ropi, OK", ropi, IDOK, kOk, true, true},
        {"Ropi, Cancel", ropi, IDCANCEL, kCancel, false, false},
        {"Ropi, Apply, Cancel", [&](WindowDriver& d) { return ropi(d) && (d.Press(kApply), true); }, IDCANCEL,
         kCancel, true, true},
        {"Ropi, Default, OK", [&](WindowDriver& d) { return ropi(d) && (d.Press(kDefault), true); }, IDOK, kOk, false,
         false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        SettingsProject p;
        p.host.commits.clear();
        bool stepped = false;
        double shown = 0;
        bool seen = false;
        const int answer = p.Show(
            p.project.get(),
            [&](WindowDriver& d) {
                stepped = row.steps(d);
                d.Press(row.last);
                if (IsWindowVisible(d.dialog())) d.Press(IDCANCEL);  // still open: OK was refused
            },
            &shown, &seen);
        std::printf("%s: the window was visible %.3f s after the call\n", row.name, shown);
        ASSERT_TRUE(seen);
        EXPECT_TRUE(stepped);
        EXPECT_EQ(row.answer, answer);
        const std::string linker = Attribute(p.target, "ADS_LNKPARAM");
        EXPECT_EQ(row.ropi_stored, linker.find(" -ropi") != std::string::npos) << linker;
        EXPECT_EQ(row.rebuild ? "1" : "(absent)", Attribute(p.target, "ADS_ReBuild"));
        if (!row.ropi_stored && !row.rebuild) {
            EXPECT_TRUE(p.host.commits.empty());
        }
    }
}

TEST(SettingsWindowTest, TheWindowShowsTheScopesTreeAndFollowsTypingInItsCommandLines) {
    if (NoDisplay()) GTEST_SKIP() << "DISPLAY is unset: wine opens no window without an X display";
    const struct Row {
        const char* name;
        int scope;  // 8: the project, 1: the C file, 2: the assembler file, 7: the folder
        std::string tree;
        const char* item;
        const char* tab;
        const char* label;
        const char* typed;
        const char* shown;  // what the command lines then hold; null: not checked
        int last;           // the button that ends the session
    } rows[] = {
        {"project", 8,
         "Target|Select CPU|Target Settings|Access Paths|File Mappings|ARM Target|Language Setting|ARM Assembler|"
         "ARM C Compiler|ARM C++ Compiler|Thumb C Compiler|Thumb C++ Compiler|Linker|ARM Linker|ARM FromELF|Debuger|"
         "ARM Debug|",
         "ARM Linker", "Option", "Image entry point", "0x100", " -entry 0x100", IDCANCEL},
        {"C file", 1, "Target|Property|Language Setting|ARM C Compiler|Thumb C Compiler|", "ARM C Compiler", "Extras",
         "Via file Name", "opts.via", nullptr, IDOK},
        {"assembler file", 2, "Target|Property|Language Setting|ARM Assembler|", "ARM Assembler", "Extras",
         "Via file Name", "asm.via", nullptr, IDOK},
        {"folder", 7,
         "Target|Property|Language Setting|ARM Assembler|ARM C Compiler|ARM C++ Compiler|Thumb C Compiler|"
         "Thumb C++ Compiler|",
         "Thumb C Compiler", "Extras", "Via file Name", "dir.via", nullptr, IDOK},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        SettingsProject p;
        p.host.commits.clear();
        std::string tree, before, after;
        bool typed = false;
        double shown = 0;
        bool seen = false;
        const int answer = p.Show(
            row.scope == 8 ? p.project.get() : row.scope == 1 ? p.c_file : row.scope == 2 ? p.asm_file : p.folder,
            [&](WindowDriver& d) {
                tree = Joined(d.TreeItems());
                typed = d.SelectItem(row.item) && d.SelectTab(row.tab);
                before = Joined(d.CommandLines());
                typed = typed && d.Type(row.label, row.typed);
                after = Joined(d.CommandLines());
                d.Press(row.last);
                if (IsWindowVisible(d.dialog())) d.Press(IDCANCEL);  // still open: OK was refused
            },
            &shown, &seen);
        std::printf("%s: the window was visible %.3f s after the call\n", row.name, shown);
        ASSERT_TRUE(seen);
        EXPECT_EQ(row.last == IDOK ? kOk : kCancel, answer);
        EXPECT_EQ(row.tree, tree);
        EXPECT_TRUE(typed);
        if (row.shown != nullptr) {
            EXPECT_EQ(std::string::npos, before.find(row.shown)) << before;
            EXPECT_NE(std::string::npos, after.find(row.shown)) << after;
        }
        // OK saves the typed value (and asks for a rebuild); Cancel leaves the tree alone.
        EXPECT_EQ(row.last == IDOK, !p.host.commits.empty());
        EXPECT_EQ(row.last == IDOK ? "1" : "(absent)", Attribute(p.target, "ADS_ReBuild"));
    }
}

TEST(SettingsWindowTest, AStorageCellTypedInTheGridIsSavedOnOk) {
    if (NoDisplay()) GTEST_SKIP() << "DISPLAY is unset: wine opens no window without an X display";
    SettingsProject p;
    bool typed = false;
    double shown = 0;
    const int answer = p.Show(
        p.project.get(),
        [&](WindowDriver& d) {
            typed = d.SelectItem("ARM Debug") && d.TypeInCell(1, 2, "0x4000");
            d.Press(IDOK);
            if (IsWindowVisible(d.dialog())) d.Press(IDCANCEL);  // still open: OK was refused
        },
        &shown);
    EXPECT_TRUE(typed);
    EXPECT_EQ(kOk, answer);
    const ConfigNode* row = p.target->FindChild("StorageNode1");
    ASSERT_NE(nullptr, row);
    EXPECT_EQ("4000", Attribute(row, "Size"));
    EXPECT_EQ("20000000", Attribute(row, "StartAddress"));
}

}  // namespace
}  // namespace ads::testing
