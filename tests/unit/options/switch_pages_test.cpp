// The linker's pages and the fromELF page: strings read into the controls
// and written back, the controls' rules, and the changed flags.
#include <gtest/gtest.h>

#include "options/fromelf_options.h"
#include "options/linker_options.h"

namespace ads::options {
namespace {

std::string LinkerRoundTrip(const std::string& options) {
    LinkerPages pages;
    pages.Open(options);
    return pages.Text();
}

std::string FromElfRoundTrip(const std::string& options) {
    SwitchPage page(kFromElfRules);
    page.Open(options);
    return page.Built();
}

struct RoundTrip {
    const char* what;
    const char* in;
    const char* out;  // null: the same as `in`
};

TEST(LinkerPages, StringsComeBackInPageOrder) {
    const RoundTrip rows[] = {
        {"nothing set", "", nullptr},
        {"bases and placement of a board project", " -ro-base 0x0 -rw-base  0x0c000000 -first init.o(Init) -map -symbols",
         nullptr},
        {"a makefile's order is the pages' order afterwards",
         " -map -xref -entry 0x30000000 -first startup.o(Init) -ro-base 0x30000000 -list image.map",
         " -ro-base 0x30000000 -entry 0x30000000 -first startup.o(Init) -list image.map -map -xref"},
        {"the read-write base keeps two blanks after its switch", " -rw-base 0xA0000000",
         " -rw-base  0xA0000000"},
        {"the linker's own read-only base is not written", " -ro-base 0x8000 -ropi", " -ropi"},
        {"a scatter file is quoted even without blanks", " -scatter scat_ram.scf", " -scatter \"scat_ram.scf\""},
        {"a scatter file with blanks", " -scatter \"C:\\My Work\\rom.scf\" -entry Vector_Init", nullptr},
        {"no placement (no Layout tab) beside a scatter file", " -scatter \"a.scf\" -first vectors.o", " -scatter \"a.scf\""},
        {"a partial link", " -partial -nodebug -nolocals", nullptr},
        {"relocatable without split drops the read-write base", " -rw-base  0x1000 -reloc -ropi", " -reloc"},
        {"relocatable and split keeps it", " -rw-base  0x1000 -reloc -split", nullptr},
        {"position independence, symbol files", " -ropi -rwpi -split -symdefs syms.txt -edit \"steer it.txt\"", nullptr},
        {"removal of the named kinds", " -remove (ro/zi/dbg) -noscanlib -verbose -armlib -strict", nullptr},
        {"removal of debug sections only is no box", " -remove (dbg) -nodebug", " -nodebug"},
        {"the ro of -ropi is no removal kind", " -ropi -remove (rw/dbg)", nullptr},
        {"an entry point with a blank is quoted", " -entry \"main entry\"", nullptr},
        {"first and last with sections", " -first vectors.o(Vect) -last \"end obj.o(Tail)\"", nullptr},
        {"every listing", " -list \"a b.lst\" -map -symbols -mangled -xref -callgraph -info sizes -info totals"
                          " -info unused -info veneers", nullptr},
        {"extras", " -unresolved dummy -via \"C:\\My Files\\l.via\"", nullptr},
    };
    for (const RoundTrip& row : rows) {
        const std::string out = LinkerRoundTrip(row.in);
        EXPECT_EQ(out, row.out != nullptr ? row.out : row.in) << row.what;
        EXPECT_EQ(LinkerRoundTrip(out), out) << row.what << ": written again";
    }
}

TEST(LinkerPages, ControlsSetOnSeveralTabsJoinInTabOrder) {
    LinkerPages pages;
    pages.Page(LinkerPage::kListing).SetValue(kImageMap, 1);
    pages.Page(LinkerPage::kOption).SetText(kEntryPoint, "0x100");
    pages.Page(LinkerPage::kOutput).SetValue(kRopi, 1);
    EXPECT_EQ(pages.Text(), " -ropi -entry 0x100 -map");
    pages.Page(LinkerPage::kOption).SetValue(kKeepDebug, 0);
    EXPECT_EQ(pages.Page(LinkerPage::kOption).Built(), " -nodebug -entry 0x100");
}

TEST(LinkerPages, EachPageTellsWhetherItsTextChanged) {
    LinkerPages pages;
    pages.Open(" -reloc -map");
    SwitchPage& output = pages.Page(LinkerPage::kOutput);
    output.SetValue(kRwpi, 1);
    EXPECT_FALSE(output.Changed()) << "a relocatable image writes no -rwpi";
    output.SetValue(kRelocatable, 0);
    EXPECT_TRUE(output.Changed());
    EXPECT_FALSE(pages.Page(LinkerPage::kListing).Changed());
    EXPECT_TRUE(pages.Changed());
    output.SetValue(kRelocatable, 1);
    EXPECT_FALSE(pages.Changed()) << "back to the text it was opened with";
}

TEST(LinkerPages, OutputControlsFollowTheLinkTypeAndRelocatable) {
    const auto row_of = [](const std::string& label, const std::string& group) {
        int i = 0;
        while (i < kLinkerPages[0].row_count && (kLinkerOutputRows[i].label != label || kLinkerOutputRows[i].group != group)) ++i;
        EXPECT_LT(i, kLinkerPages[0].row_count) << group << " " << label;
        return i;
    };
    const std::tuple<const char*, const char*, const char*, bool> rows[] = {
        {"", "RO Base", "", true},           {" -reloc", "RO Base", "", false},
        {" -reloc", "Rwpi", "", false},      {" -scatter a.scf", "RW Base", "", false},
        {" -scatter a.scf", "Ropi", "", true}, {" -scatter a.scf", "Edit...", kScatterGroup, true},
        {"", "", kScatterGroup, false},      {"", "Edit...", kSymdefsGroup, false},
        {" -symdefs s.txt", "Edit...", kSymdefsGroup, true},
    };
    for (const auto& [options, label, group, enabled] : rows) {
        LinkerPages pages;
        pages.Open(options);
        EXPECT_EQ(pages.Page(LinkerPage::kOutput).Enabled(row_of(label, group)), enabled) << options << " / " << label;
    }
}

TEST(FromElfPage, StringsComeBackAsThePageWritesThem) {
    const RoundTrip rows[] = {
        {"the new-target default", " -elf", nullptr},
        {"an output name with blanks", " -i32 -output \"C:\\out dir\\image.hex\"", nullptr},
        {"an output name without quotes is not read", " -bin -output image.bin", " -bin"},
        {"-aif is found in -aifbin first", " -aifbin", " -aif"},
        {"text format without flags writes no switch", "", nullptr},
        {"text flags in the page's order", " -c -v -s", " -v -s -c"},
        {"the t of -text counts as a flag", " -text -v -s", " -v -t -s"},
        {"flags are not read beside a format", " -vhx -s", " -vhx"},
        {"switches as a makefile starts them", "-nodebug -bin", " -nodebug -bin"},
        {"a format whose switch is a long word", " -fieldoffsets", nullptr},
    };
    for (const RoundTrip& row : rows) {
        const std::string out = FromElfRoundTrip(row.in);
        EXPECT_EQ(out, row.out != nullptr ? row.out : row.in) << row.what;
        EXPECT_EQ(FromElfRoundTrip(out), out) << row.what << ": written again";
    }
}

TEST(FromElfPage, DebugBoxForAifAndElfTextFlagsForTextOnly) {
    SwitchPage page(kFromElfRules);
    const int debug_row = 0, verbose_row = 4;
    const std::tuple<int, bool, bool> rows[] = {{kFormatAif, true, false}, {kFormatAifBin, true, false},
                                                {kFormatElf, true, false}, {kFormatBin, false, false},
                                                {kFormatText, false, true}};
    for (const auto& [format, debug, flags] : rows) {
        page.SetValue(kOutputFormat, format);
        EXPECT_EQ(page.Enabled(debug_row), debug) << format;
        EXPECT_EQ(page.Enabled(verbose_row), flags) << format;
    }
}

TEST(FromElfPage, ModifiedWhileTheStringDiffersFromTheOneShown) {
    SwitchPage page(kFromElfRules);
    page.Open(" -elf");
    page.SetValue(kIncludeDebug, 0);
    page.SetValue(kOutputFormat, kFormatBin);
    EXPECT_EQ(page.Built(), " -nodebug -bin") << "the box, disabled for binaries, still writes";
    EXPECT_TRUE(page.Changed());
    page.SetValue(kIncludeDebug, 1);
    page.SetValue(kOutputFormat, kFormatElf);
    EXPECT_FALSE(page.Changed());
}

// A value without a control, or with two, would be lost or mixed up.
TEST(SwitchPages, EveryValueHasExactlyOneControl) {
    std::vector<PageTable> tables(std::begin(kLinkerPages), std::end(kLinkerPages));
    tables.push_back(kFromElfPage);
    for (const PageTable& page : tables) {
        std::vector<int> at_position(static_cast<size_t>(page.value_count)), at_slot(8);
        for (const OptionRow& row : std::vector<OptionRow>(page.rows, page.rows + page.row_count)) {
            if (row.position >= 0) ++at_position[static_cast<size_t>(row.position)];
            if (row.kind == ControlKind::kEdit) ++at_slot.at(static_cast<size_t>(row.text_slot));
        }
        while (!at_slot.empty() && at_slot.back() == 0) at_slot.pop_back();
        EXPECT_EQ(at_position, std::vector<int>(at_position.size(), 1)) << page.title;
        EXPECT_EQ(at_slot, std::vector<int>(at_slot.size(), 1)) << page.title;
    }
}

}  // namespace
}  // namespace ads::options
