// Whole exports read into the import model: targets, search paths, file
// mappings, the linker setting, panels, the group tree with its file
// look-ups, the failures, and the real exports of shared/testdata.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "import/export_reader.h"
#include "import/panel_readers.h"
#include "import/project_files.h"
#include "import_test_support.h"
#include "platform/platform.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace ads::import {
namespace {

using namespace test;
using ads::testing::FakeFiles;

const char kFolder[] = "C:\\proj";

class ExportReaderTest : public ::testing::Test {
protected:
    bool Read(const std::string& text) {
        ReaderOptions options;
        options.files = &files;
        options.compiler_home = "C:\\ADS";
        return ReadExportText(text, kFolder, options, &model);
    }
    bool HasNote(const std::string& part) const {
        for (const std::string& note : model.notes) {
            if (note.find(part) != std::string::npos) return true;
        }
        return false;
    }

    FakeFiles files;
    ImportModel model;
};

TEST_F(ExportReaderTest, TargetsAreReadInDocumentOrderWithTheirCount) {
    ASSERT_TRUE(Read(Export(Target("Debug", Setting("X", "1")) + Target("Release", "") + Target("Thumb", ""))))
        << model.failure;
    ASSERT_EQ(3u, model.targets.size());
    EXPECT_EQ(3u, model.target_count);
    EXPECT_EQ("Debug", model.targets[0].name);
    EXPECT_EQ("Release", model.targets[1].name);
    EXPECT_EQ("Thumb", model.targets[2].name);
    EXPECT_TRUE(model.failure.empty());
}

TEST_F(ExportReaderTest, SearchPathsGetTheMacroOfTheirRoot) {
    const std::string settings =
        SearchPaths("UserSearchPaths", {{"src", "Project", false},
                                        {"\\inc", "Project", true},
                                        {"Include", "CodeWarrior", false},
                                        {"lib", "System", false},
                                        {"C:\\abs", "Absolute", false},
                                        {"", "Project", false}}) +
        SearchPaths("SystemSearchPaths", {{"Lib", "CodeWarrior", true}});
    ASSERT_TRUE(Read(Export(Target("T", settings)))) << model.failure;
    const ImportTarget& t = model.targets[0];
    const struct {
        const char* path;
        bool recursive;
    } expected[] = {{"{Project}\\src", false}, {"{Project}\\inc", true},      {"{Compiler}\\Include", false},
                    {"{System}\\lib", false},  {"C:\\abs", false},           {"{Project}\\", false}};
    ASSERT_EQ(6u, t.user_paths.size());
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(expected[i].path, t.user_paths[i].path) << i;
        EXPECT_EQ(expected[i].recursive, t.user_paths[i].recursive) << i;
    }
    ASSERT_EQ(1u, t.system_paths.size());
    EXPECT_EQ("{Compiler}\\Lib", t.system_paths[0].path);
    EXPECT_TRUE(t.system_paths[0].recursive);
}

TEST_F(ExportReaderTest, APathRootBesideTheSearchPathCountsToo) {
    const std::string entry =
        "<SETTING><NAME>UserSearchPaths</NAME>\n<SETTING>\n<SETTING><NAME>SearchPath</NAME>\n" + Setting("Path", "x") +
        "</SETTING>\n" + Setting("PathRoot", "Project") + Setting("Recursive", "true") +
        "</SETTING>\n<SETTING>\n" + Setting("Recursive", "false") + "</SETTING>\n</SETTING>\n";
    ASSERT_TRUE(Read(Export(Target("T", entry)))) << model.failure;
    ASSERT_EQ(1u, model.targets[0].user_paths.size()) << "an entry without a path is left out";
    EXPECT_EQ("{Project}\\x", model.targets[0].user_paths[0].path);
    EXPECT_TRUE(HasNote("a search path without a path"));
}

TEST_F(ExportReaderTest, MappingsAreTakenByPositionUntilOneHasFewerThanThreeSettings) {
    const std::string settings = "<SETTING><NAME>FileMappings</NAME>\n<SETTING>\n" + Setting("FileType", "TEXT") +
                                 Setting("FileExtension", ".c") + Setting("Compiler", "ARM C Compiler") +
                                 "</SETTING>\n<SETTING>\n" + Setting("FileType", "") + Setting("FileExtension", "") +
                                 Setting("Compiler", "") + "</SETTING>\n<SETTING>\n" + Setting("FileType", "TEXT") +
                                 Setting("FileExtension", ".x") + "</SETTING>\n<SETTING>\n" +
                                 Setting("FileType", "TEXT") + Setting("FileExtension", ".cpp") +
                                 Setting("Compiler", "ARM C++ Compiler") + "</SETTING>\n</SETTING>\n";
    ASSERT_TRUE(Read(Export(Target("T", settings)))) << model.failure;
    const std::vector<FileMapping>& m = model.targets[0].mappings;
    ASSERT_EQ(2u, m.size());
    EXPECT_EQ("TEXT", m[0].file_type);
    EXPECT_EQ(".c", m[0].extension);
    EXPECT_EQ("ARM C Compiler", m[0].compiler);
    EXPECT_EQ("", m[1].extension);
    EXPECT_EQ("", m[1].compiler);
}

TEST_F(ExportReaderTest, AMappingWithoutItsFileTypeIsReadOneFieldOff) {
    const std::string settings = "<SETTING><NAME>FileMappings</NAME>\n<SETTING>\n" + Setting("FileExtension", ".s") +
                                 Setting("Compiler", "ARM Assembler") + Setting("EditLanguage", "") +
                                 "</SETTING>\n</SETTING>\n";
    ASSERT_TRUE(Read(Export(Target("T", settings)))) << model.failure;
    ASSERT_EQ(1u, model.targets[0].mappings.size());
    const FileMapping& m = model.targets[0].mappings[0];
    EXPECT_EQ(".s", m.file_type);
    EXPECT_EQ("ARM Assembler", m.extension);
    EXPECT_EQ("", m.compiler);
}

TEST_F(ExportReaderTest, TheLinkerSettingTakesTheThreeSettingsAfterIt) {
    struct Case {
        const char* name;
        std::string settings;
        LinkerSetting expected;
    } cases[] = {
        {"the usual four", Setting("Linker", "ARM Linker") + Setting("PreLinker", "") + Setting("PostLinker", "ARM fromELF") +
                               Setting("Targetname", "out"),
         {true, "ARM Linker", "", "ARM fromELF", "out"}},
        {"None names no linker and no post-link step",
         Setting("Linker", "None") + Setting("PreLinker", "None") + Setting("PostLinker", "None") + Setting("T", "None"),
         {true, "", "None", "None", "{Project}"}},
        {"an empty output path is the project's folder",
         Setting("Linker", "ARM Librarian") + Setting("PreLinker", "None") + Setting("PostLinker", "") +
             Setting("Targetname", ""),
         {true, "ARM Librarian", "None", "", "{Project}"}},
        {"by position, whatever the names", Linker("ARM Linker", "ARM fromELF"),
         {true, "ARM Linker", "None", "ARM fromELF", "x"}},
        {"fewer settings after it", Setting("Linker", "ARM Linker"), {true, "ARM Linker", "", "", "{Project}"}},
        {"no Linker setting", Setting("PostLinker", "ARM fromELF"), {false, "", "", "", ""}},
    };
    for (const Case& c : cases) {
        ASSERT_TRUE(Read(Export(Target("T", c.settings)))) << c.name << ": " << model.failure;
        const LinkerSetting& l = model.targets[0].linker;
        EXPECT_EQ(c.expected.present, l.present) << c.name;
        EXPECT_EQ(c.expected.linker, l.linker) << c.name;
        EXPECT_EQ(c.expected.pre_linker, l.pre_linker) << c.name;
        EXPECT_EQ(c.expected.post_linker, l.post_linker) << c.name;
        EXPECT_EQ(c.expected.output, l.output) << c.name;
    }
}

TEST_F(ExportReaderTest, PanelsGoToTheirReadersAndAbsentOnesStayAbsent) {
    const std::string settings = PanelData("Panel_for_armcc", "ARM C Compiler", "-cpu#ARM920T\n-DX\n") +
                                 PanelData("Panel_for_tcc", "Thumb C Compiler", "-cpu#ARM9TDMI\n") +
                                 PanelData("Panel_for_armlink", "ARM Linker", ".linktype=-partial\n") +
                                 PanelData("Panel_for_debugchoice", "ARM Debugger", "RDI") +
                                 PanelData("Panel_for_debugchoice", "ARM Debugger", " AXD") +
                                 PanelData("Panel_for_vendor", "Vendor", "x");
    ASSERT_TRUE(Read(Export(Target("T", settings)))) << model.failure;
    const ImportTarget& t = model.targets[0];
    EXPECT_EQ("-cpu ARM920T", t.panels[kPanelArmC].rows[cc_row::kCpu]);
    EXPECT_EQ("-DX ", t.panels[kPanelArmC].rows[cc_row::kDefinitions]);
    EXPECT_EQ("-cpu ARM9TDMI", t.panels[kPanelThumbC].rows[cc_row::kCpu]);
    EXPECT_EQ("-partial", t.panels[kPanelLinker].rows[link_row::kLinkType]);
    for (PanelKind absent : {kPanelAssembler, kPanelArmCpp, kPanelThumbCpp, kPanelFromElf, kPanelTarget}) {
        EXPECT_FALSE(t.panels[absent].present) << kPanelToolNames[absent];
    }
    EXPECT_EQ("RDI AXD", t.debug_choice) << "each debug choice panel is appended";
    EXPECT_TRUE(HasNote("'Panel_for_vendor' is not an ADS panel"));
}

TEST_F(ExportReaderTest, APanelWhoseDumpLacksItsNameReadsWithTheDefaultsAndSaysSo) {
    // The Thumb compiler's name in the dump of an ARM C panel.
    ASSERT_TRUE(Read(Export(Target("T", PanelData("Panel_for_armcc", "Thumb C Compiler", "-cpu#ARM920T\n")))));
    const PanelRecord& r = model.targets[0].panels[kPanelArmC];
    EXPECT_TRUE(r.present);
    EXPECT_EQ("-cpu ARM7TDMI", r.rows[cc_row::kCpu]);
    EXPECT_TRUE(HasNote("holds no ARM C Compiler options"));
}

TEST_F(ExportReaderTest, RawControlBytesAndEightBitTextsPassThrough) {
    const std::string settings = Setting("Linker", "ARM Linker\x01\x1f") + Setting("PreLinker", "Pr\xE9") +
                                 Setting("PostLinker", "\xE9") + Setting("Targetname", "x");
    ASSERT_TRUE(Read(Export(Target("T\xE9", settings)))) << model.failure;
    EXPECT_EQ("T\xE9", model.targets[0].name);
    EXPECT_EQ("ARM Linker\x01\x1f", model.targets[0].linker.linker);
    EXPECT_EQ("\xE9", model.targets[0].linker.post_linker);
}

TEST_F(ExportReaderTest, TheTargetOrderIsRecorded) {
    std::string text = Export(Target("A", "") + Target("B", ""));
    text.replace(text.find("<TARGETORDER>\n"), 14,
                 "<TARGETORDER>\n<ORDEREDTARGET><NAME>B</NAME></ORDEREDTARGET>\n<ORDEREDTARGET><NAME>A</NAME></ORDEREDTARGET>\n");
    ASSERT_TRUE(Read(text));
    EXPECT_EQ((std::vector<std::string>{"B", "A"}), model.target_order);
    EXPECT_EQ("A", model.targets[0].name) << "targets stay in the order of the target list";
}

// --- Groups and file references ---------------------------------------------

TEST_F(ExportReaderTest, FilesAreFoundBelowTheExportsFolder) {
    files.Add("C:\\proj\\blinky.mcp.xml");
    files.Add("C:\\proj\\src\\main.c");
    files.Add("C:\\proj\\src\\drivers\\Led.C");
    files.Add("C:\\proj\\.hidden\\secret.c");
    files.Add("C:\\proj\\a\\dup.c");
    files.Add("C:\\proj\\b\\dup.c");
    files.Add("C:\\proj\\a\\deep\\top.c");
    files.Add("C:\\proj\\top.c");
    const std::string groups =
        GroupXml("Sources", FileRefXml("main.c") + FileRefXml("led.c") + FileRefXml("dup.c") + FileRefXml("top.c")) +
        FileRefXml("blinky.mcp.xml") + GroupXml("Lost", FileRefXml("secret.c"));
    ASSERT_TRUE(Read(Export(Target("T", ""), groups))) << model.failure;
    ASSERT_EQ(3u, model.groups.size());
    const GroupEntry& sources = model.groups[0];
    EXPECT_TRUE(sources.is_group);
    EXPECT_EQ("Sources", sources.name);
    ASSERT_EQ(4u, sources.entries.size());
    EXPECT_EQ(".\\src\\main.c", sources.entries[0].file.path);
    EXPECT_EQ(".\\src\\drivers\\Led.C", sources.entries[1].file.path) << "names compare without regard to case";
    EXPECT_EQ(".\\a\\dup.c", sources.entries[2].file.path) << "of two as deep, the first found in name order wins";
    EXPECT_EQ(".\\top.c", sources.entries[3].file.path) << "the one fewest folders down wins";
    EXPECT_FALSE(model.groups[1].is_group);
    EXPECT_EQ(".\\blinky.mcp.xml", model.groups[1].file.path);
    EXPECT_TRUE(model.groups[2].entries.empty()) << "hidden folders are not listed";
    EXPECT_TRUE(HasNote("file 'secret.c' in group 'Lost' is neither below"));
}

// A link to a folder above would make the scan endless; every folder is
// listed once, and folders reached without a link come first.
TEST(ProjectFilesScan, LinksToFoldersListedAlreadyAreNotFollowedAgain) {
    namespace stdfs = std::filesystem;
    platform::test_support::TempFolder folder, outside;
    const stdfs::path root = folder.native();
    stdfs::create_directory(root / "sub");
    std::error_code error;
    for (const auto& [target, link] : {std::pair<stdfs::path, const char*>{".", "a"}, {"sub", "a_sub"},
                                       {outside.native(), "ext"}}) {
        stdfs::create_directory_symlink(target, root / link, error);
        if (error) GTEST_SKIP() << "no folder links here: " << error.message();
    }
    std::string ignored;
    platform::FileSystem& fs = *platform::System().files;
    for (const std::string& file : {folder / "a.c", folder / "sub\\b.c", outside / "e.c"}) {
        ASSERT_TRUE(fs.WriteFileAtomically(file, "\n", &ignored)) << file;
    }
    ProjectFiles files;
    files.Scan(fs, folder.path());
    EXPECT_EQ(3u, files.size());
    for (const auto& [name, path] : {std::pair<const char*, std::string>{"a.c", folder / "a.c"},
                                     {"b.c", folder / "sub\\b.c"}, {"e.c", folder / "ext\\e.c"}}) {
        EXPECT_EQ(path, files.Find(name) != nullptr ? *files.Find(name) : "(none)");
    }
}

TEST_F(ExportReaderTest, AnAccessPathIsPutInFrontOfTheNameAsItStands) {
    const std::string groups = GroupXml("G", FileRefXml("a.c", "..\\common\\") + FileRefXml("b.c", "lib"));
    ASSERT_TRUE(Read(Export(Target("T", ""), groups)));
    EXPECT_EQ("..\\common\\a.c", model.groups[0].entries[0].file.path);
    EXPECT_EQ("libb.c", model.groups[0].entries[1].file.path);
}

TEST_F(ExportReaderTest, AFileNotBelowTheFolderIsLookedForOnTheUserSearchPaths) {
    files.Add("C:\\shared\\src\\util.c");
    files.Add("C:\\ADS\\Include\\rt.s");
    files.Add("C:\\proj\\lib\\x.c");
    files.Add("C:\\proj\\.hidden\\y.c");
    const std::string settings = SearchPaths("UserSearchPaths", {{"missing", "Project", false},
                                                                 {".hidden", "Absolute", false},
                                                                 {"..\\shared\\src", "Project", false},
                                                                 {"Include", "CodeWarrior", false},
                                                                 {"C:\\shared\\src", "Absolute", false}});
    // x.c is below the folder too: the folder's list comes first.
    const std::string groups =
        GroupXml("G", FileRefXml("util.c") + FileRefXml("rt.s") + FileRefXml("x.c") + FileRefXml("y.c") + FileRefXml("gone.c"));
    ASSERT_TRUE(Read(Export(Target("T", settings), groups))) << model.failure;
    const std::vector<GroupEntry>& f = model.groups[0].entries;
    ASSERT_EQ(4u, f.size());
    EXPECT_EQ(".\\..\\shared\\src\\util.c", f[0].file.path) << "a path from the project's folder starts with '.'";
    EXPECT_EQ("C:\\ADS\\Include\\rt.s", f[1].file.path) << "others are where they were found";
    EXPECT_EQ(".\\lib\\x.c", f[2].file.path);
    EXPECT_EQ(".\\.hidden\\y.c", f[3].file.path) << "a relative search path starts from the export's folder";
    EXPECT_TRUE(HasNote("file 'gone.c' in group 'G'"));
}

TEST_F(ExportReaderTest, ReferencesWithoutPathAreLeftOutWithANoteAndNestedGroupsKept) {
    files.Add("C:\\proj\\a.c");
    const std::string groups = GroupXml("Top", "<FILEREF><PATHTYPE>Name</PATHTYPE></FILEREF>\n" + FileRefXml("a.c") +
                                                GroupXml("Inner", FileRefXml("gone.c")) + FileRefXml("a.c"));
    ASSERT_TRUE(Read(Export(Target("T", ""), groups)));
    ASSERT_EQ(1u, model.groups.size());
    ASSERT_EQ(3u, model.groups[0].entries.size());
    EXPECT_EQ("Inner", model.groups[0].entries[1].name) << "a group inside a group keeps its place";
    EXPECT_TRUE(HasNote("a file reference without PATH in group 'Top'"));
    EXPECT_TRUE(HasNote("file 'gone.c' in group 'Top/Inner' is neither below"));
}

TEST_F(ExportReaderTest, ReadExportListsTheFolderOfTheExportFile) {
    files.Add("C:\\proj\\sub\\x.c");
    files.Add("C:\\proj\\blinky.xml", Export(Target("T", ""), GroupXml("G", FileRefXml("x.c"))));
    ReaderOptions options;
    options.files = &files;
    ASSERT_TRUE(ReadExport("C:\\proj\\blinky.xml", options, &model)) << model.failure;
    EXPECT_EQ(".\\sub\\x.c", model.groups.at(0).entries.at(0).file.path);
    EXPECT_FALSE(ReadExport("C:\\proj\\none.xml", options, &model));
    EXPECT_EQ("cannot read the file", model.failure);
}

// --- Failures -----------------------------------------------------------------

struct FailureCase {
    const char* name;
    std::string text;
    const char* says;
};

TEST_F(ExportReaderTest, MalformedExportsFailWithoutAPartialResult) {
    const std::string good = Target("Good", Setting("Linker", "ARM Linker"));
    const std::string whole = Export(good + Target("Second", ""), GroupXml("G", FileRefXml("a.c", "x\\")));
    std::string deep = Export(good);
    std::string nest;
    for (int i = 0; i < 300; ++i) nest += "<X>";
    deep.insert(deep.find("</PROJECT>"), nest);
    const FailureCase cases[] = {
        {"empty file", "", "empty"},
        {"wrong second line", Export(good, "", "<?codewarrior exportversion=\"1.0.1\" ideversion=\"5.0\" ?>"), "line 2"},
        {"truncated", whole.substr(0, whole.size() / 2), "XML"},
        {"broken XML", Export(good + "<TARGET><NAME>x</NAME><SETTINGLIST></TARGET>"), "XML"},
        {"no PROJECT", std::string(kDeclaration) + "\n" + kVersionLine + "\n<OTHER/>\n", "PROJECT"},
        {"a raw zero byte", Export(good + Target("Bad", Setting("X", std::string("a\0b", 3)))), "XML"},
        {"nesting deeper than the stack allows", deep, "nested"},
        // Read entry by entry, the text must still be clean as a whole.
        {"a stray closing tag between targets", Export(good + "</SETTINGLIST>" + Target("Second", "")), "XML"},
        {"a broken target after one that ends the list",
         Export(good + "<TARGET><NAME>NoList</NAME></TARGET><TARGET><NAME>x</NAMEX></TARGET>"), "XML"},
        {"a broken group entry", Export(good, GroupXml("G", "<FILEREF><PATH>a.c</FILEREF>")), "XML"},
    };
    for (const FailureCase& c : cases) {
        EXPECT_FALSE(Read(c.text)) << c.name;
        EXPECT_TRUE(model.targets.empty()) << c.name << ": no partial target";
        EXPECT_EQ(0u, model.target_count) << c.name;
        EXPECT_TRUE(model.groups.empty()) << c.name;
        EXPECT_NE(std::string::npos, model.failure.find(c.says)) << c.name << ": " << model.failure;
    }
}

TEST_F(ExportReaderTest, AnXmlErrorNamesItsLineInTheExport) {
    std::string text = Export(Target("T", "<SETTING><NAME>X</NAME>\n<VALUE>1</VALUE>\n</SETTINGX>\n"));
    EXPECT_FALSE(Read(text));
    // Count the export's lines up to the broken closing tag.
    int line = 1;
    for (size_t i = 0; i < text.find("</SETTINGX>"); ++i) line += text[i] == '\n';
    EXPECT_NE(std::string::npos, model.failure.find("line " + std::to_string(line))) << model.failure;
}

// --- The real exports ------------------------------------------------------------

std::string TestData(const std::string& name) {
    std::string text;
    platform::System().files->ReadFile(std::string(ADS_TESTDATA_DIR) + "/codewarrior/" + name, &text);
    return text;
}

TEST_F(ExportReaderTest, RealExportsOfAnotherIdeVersionAreRefused) {
    for (const char* name : {"xerces-DOMPrint.mcp.xml", "symbian-cw_project_template_v3.xml"}) {
        const std::string text = TestData(name);
        if (text.empty()) GTEST_SKIP() << "no " << name << " beside the checkout";
        EXPECT_FALSE(Read(text)) << name;
        EXPECT_NE(std::string::npos, model.failure.find("line 2")) << name;
    }
}

TEST_F(ExportReaderTest, ARealExportReadsWhenItsVersionLineIsTheAcceptedOne) {
    std::string text = TestData("xerces-DOMPrint.mcp.xml");
    if (text.empty()) GTEST_SKIP() << "no xerces-DOMPrint.mcp.xml beside the checkout";
    const size_t second = text.find('\n') + 1;
    text.replace(second, text.find('\n', second) - second, kVersionLine);
    ASSERT_TRUE(Read(text)) << model.failure;
    ASSERT_EQ(4u, model.targets.size());
    EXPECT_EQ("DOMPrint Carbon", model.targets[0].name);
    EXPECT_EQ("MacOS PPC Linker", model.targets[0].linker.linker);
    EXPECT_EQ("{Project}\\:", model.targets[0].user_paths.at(0).path);
    EXPECT_TRUE(model.targets[0].user_paths.at(0).recursive);
    EXPECT_EQ("{Compiler}\\:MSL:", model.targets[0].system_paths.at(1).path);
    EXPECT_FALSE(model.targets[0].mappings.empty());
    EXPECT_EQ((std::vector<std::string>{"DOMPrint All", "DOMPrint Carbon", "DOMPrint Classic", "DOMPrint Mach"}),
              model.target_order);
    EXPECT_FALSE(model.groups.empty());
    EXPECT_EQ("DOMPrint", model.groups[0].name);
}

TEST_F(ExportReaderTest, TheTemplateExportReadsWithoutItsLeadingComment) {
    std::string text = TestData("symbian-cw_project_template_v3.xml");
    if (text.empty()) GTEST_SKIP() << "no symbian-cw_project_template_v3.xml beside the checkout";
    const size_t second = text.find('\n') + 1;
    text.erase(second, text.find("<?codewarrior") - second);
    text.replace(second, text.find('\n', second) - second, kVersionLine);
    ASSERT_TRUE(Read(text)) << model.failure;
    EXPECT_EQ(5u, model.targets.size());
    ASSERT_EQ(3u, model.groups.size());
    EXPECT_EQ("Libraries", model.groups[2].name);
    EXPECT_EQ("WINSCW", model.groups[2].entries.at(0).name) << "a group inside a group";
}

}  // namespace
}  // namespace ads::import
