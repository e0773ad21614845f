// orvhost settings with the real plug-in: what a click through its dialog
// leaves in the project file and in the next build's commands.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/orvhost_fixture.h"

namespace ads {
namespace {

using ads::testing::Outcome;

class SettingsTest : public ads::testing::OrvhostFixture {
protected:
    // demo.orv: the target Debug, g\a.c in the group G, b.c and c.c beside it.
    void MakeProject() {
        ASSERT_EQ(0, Orvhost({"config", "set-tools-dir", tools}).status);
        ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
        ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Debug"}).status);
        for (const char* name : {"g/a.c", "b.c", "c.c"}) {
            Write(name, "int f(void) { return 0; }\n");
            std::vector<std::string> args{"add-file", "demo.orv", name};
            if (name[0] == 'g') args.insert(args.end(), {"--group", "G"});
            ASSERT_EQ(0, Orvhost(args).status);
        }
    }
    Outcome Settings(std::vector<std::string> args) {
        args.insert(args.begin(), {"settings", "demo.orv"});
        return Orvhost(args);
    }
    // An attribute's value as the project file holds it.
    std::string Stored(const std::string& key) {
        const std::string text = Read("demo.orv");
        const size_t at = text.find(" " + key + "=\"");
        if (at == std::string::npos) return "(absent)";
        const size_t start = at + key.size() + 3;
        return text.substr(start, text.find('"', start) - start);
    }
};

TEST_F(SettingsTest, TheStepsOfOneSessionLandInTheTargetInTheirOrder) {
    MakeProject();
    Outcome r = Settings({"--target", "Debug", "--page", "ARM Linker", "--tab", "Output", "--set", "Ropi=1",
                          "--tab", "Option", "--set", "Image entry point=0x100", "--tab", "Listing", "--set",
                          "Image map=1", "--page", "ARM FromELF", "--set", "Include debug sections in object=0",
                          "--set", "Output Format=Plain binary"});
    ASSERT_EQ(0, r.status) << r.output;
    const std::string linker = Stored("ADS_LNKPARAM");
    const size_t ropi = linker.find(" -ropi"), entry = linker.find(" -entry 0x100"), map = linker.find(" -map");
    EXPECT_TRUE(ropi < entry && entry < map && map != std::string::npos) << linker;
    EXPECT_NE(std::string::npos, Stored("ADS_FromELFParam").find(" -nodebug -bin")) << Stored("ADS_FromELFParam");
    EXPECT_EQ("1", Stored("ADS_ReBuild"));
}

TEST_F(SettingsTest, ACompilerSettingReachesOnlyTheFilesOfItsScope) {
    if (!HaveTools()) GTEST_SKIP() << "the simulated tools are not built: " << tools;
    MakeProject();
    const struct {
        std::vector<std::string> scope;
        const char* label;
    } kScopes[] = {{{}, "Plain char is signed"},                        // -zc, every file
                   {{"--folder", "G"}, "Enum container always int"},   // -fy, g\a.c
                   {{"--file", "c.c"}, "One ELF section per function"}};  // -zo, c.c
    for (const auto& s : kScopes) {
        std::vector<std::string> args = s.scope;
        args.insert(args.end(), {"--page", "ARM C Compiler", "--tab", "Code Gen", "--set"});
        args.push_back(s.label + std::string("=1"));
        Outcome r = Settings(args);
        ASSERT_EQ(0, r.status) << s.label << "\n" << r.output;
    }
    Outcome r = Orvhost({"-v", "build", "demo.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    const struct {
        const char* file;
        const char* has;  // of the three switches
    } kFiles[] = {{"g\\a.c", " -zc -fy"}, {"b.c", " -zc"}, {"c.c", " -zc -zo"}};
    for (const auto& f : kFiles) {
        const size_t at = r.output.find(std::string(" -c \"") + f.file + "\"");
        ASSERT_NE(std::string::npos, at) << f.file << "\n" << r.output;
        const std::string line = r.output.substr(r.output.rfind('\n', at) + 1, at - r.output.rfind('\n', at));
        for (const char* sw : {" -zc", " -fy", " -zo"}) {
            const bool expected = std::string(f.has).find(sw) != std::string::npos;
            EXPECT_EQ(expected, line.find(sw) != std::string::npos) << f.file << sw << "\n" << line;
        }
    }
}

TEST_F(SettingsTest, CancelAndEveryRefusalLeaveTheFileAsItWas) {
    MakeProject();
    const std::string before = Read("demo.orv");
    Outcome r = Settings({"--page", "ARM Linker", "--tab", "Output", "--set", "Ropi=1", "--cancel"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(before, Read("demo.orv"));

    const std::vector<std::string> linker = {"settings", "demo.orv", "--page", "ARM Linker"};
    const struct {
        std::vector<std::string> steps;
        const char* names;
    } kRefused[] = {
        {{"--page", "No Such Page"}, "No Such Page"},
        {{"--tab", "No Such Tab"}, "No Such Tab"},
        {{"--tab", "Output", "--set", "No Such Label=1"}, "No Such Label"},
        {{"--tab", "Output", "--set", "Ropi=2"}, "Ropi"},
        {{"--tab", "Output", "--set", "Ropi=1", "--page", "ARM FromELF", "--set", "Output Format=Punched tape"},
         "Punched tape"},
    };
    for (const auto& c : kRefused) {
        std::vector<std::string> args = linker;
        args.insert(args.end(), c.steps.begin(), c.steps.end());
        ExpectRefused(args, c.names);
    }
}

}  // namespace
}  // namespace ads
