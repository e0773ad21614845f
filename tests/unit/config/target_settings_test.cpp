#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "config/target_settings.h"

namespace ads::config {
namespace {

ConfigNode* Add(ConfigNode* parent, const char* name) {
    auto* n = new ConfigNode(name);
    parent->AppendChild(n);
    return n;
}

ConfigNode* AddTarget(ConfigNode* configs, const char* name) {
    ConfigNode* c = Add(configs, "Configuration");
    c->SetAttribute("Name", name);
    return c;
}

std::vector<TargetRecord> ReadAll(ConfigNode* root, const std::string& current, const HostDefaults& host,
                                  int kind = 0) {
    std::vector<TargetRecord> records;
    TargetSettingsReader reader(&records, current, &host, kind);
    WalkTree(root, [&](ConfigNode* n) { return reader(n); });
    return records;
}

HostDefaults Host() {
    HostDefaults h;
    h.vendor = "ACME";
    h.device = "Board7";
    h.processors = {"IRAM(0x40000000)", "cpu(ARM920T)", "CPU(ARM7TDMI)"};
    return h;
}

TEST(TargetSettingsReader, ReadsEveryKeyOfATarget) {
    ConfigNode root("OrvaneProject");
    ConfigNode* configs = Add(&root, "Configurations");
    ConfigNode* c = AddTarget(configs, "Debug");
    const char* keys[][2] = {
        {"ADS_LNKPARAM", " -map"},          {"ADS_OPTDBG", "1,RDI 0,1,0,1,0,(\"\")"},
        {"CPU", "ARM920T"},                 {"DEVICE", "S3C2410"},
        {"VENDOR", "Samsung"},              {"AppFile", "out.axf"},
        {"ADS_USRAPPFILE", "app"},          {"ADS_OUTPUT_DIR", "{Project}"},
        {"ADS_LinkerName", "ARM Librarian"}, {"ADS_FileMap", "(.s@armasm),(.c@tcc),(.cpp@tcpp)"},
        {"ADS_GArmAsmParam", " -g"},        {"ADS_GArmCCParam", " -O1"},
        {"ADS_GArmCppParam", " -O2"},       {"ADS_GThmCCParam", " -Otime"},
        {"ADS_GThmCppParam", " -zo"},       {"InitScriptForSim", "sim.ini"},
        {"InitScriptForEmu", "emu.ini"},    {"ADS_FromELFParam", " -bin"},
        {"ADS_PostLnk", "None"},            {"UpdateTgtBeforeDbg", "1"},
        {"ServeDebugOptions", "x"},         {"ADS_BatchFileParam", "1,(make.bat)"},
        {"SearchPath", " -I\"inc\" "},      {"SIMCLK", "33.5"},
    };
    for (auto& kv : keys) c->SetAttribute(kv[0], kv[1]);

    std::vector<TargetRecord> r = ReadAll(&root, "Debug", Host());
    ASSERT_EQ(1u, r.size());
    const TargetRecord& t = r[0];
    EXPECT_EQ("Debug", t.name);
    EXPECT_TRUE(t.current);
    EXPECT_EQ(" -map", t.linker_params);
    EXPECT_EQ("1,RDI 0,1,0,1,0,(\"\")", t.debug_options);
    EXPECT_EQ("ARM920T", t.cpu);
    EXPECT_EQ("S3C2410", t.device);
    EXPECT_EQ("Samsung", t.vendor);
    EXPECT_EQ("out.axf", t.app_file);
    EXPECT_EQ("app", t.user_app_file);
    EXPECT_TRUE(t.has_user_app_file);
    EXPECT_EQ("{Project}", t.output_dir);
    EXPECT_EQ("ARM Librarian", t.linker_name);
    EXPECT_EQ("(.s@armasm),(.c@tcc),(.cpp@tcpp)", t.file_map);
    EXPECT_EQ(" -g", t.armasm_params);
    EXPECT_EQ(" -O1", t.armcc_params);
    EXPECT_EQ(" -O2", t.armcpp_params);
    EXPECT_EQ(" -Otime", t.tcc_params);
    EXPECT_EQ(" -zo", t.tcpp_params);
    EXPECT_EQ("sim.ini", t.init_script_sim);
    EXPECT_EQ("emu.ini", t.init_script_emu);
    EXPECT_EQ(" -bin", t.fromelf_params);
    EXPECT_EQ("None", t.post_link);
    EXPECT_TRUE(t.update_before_debug);
    EXPECT_EQ("x", t.serve_debug_options);
    EXPECT_EQ("1,(make.bat)", t.batch_file_params);
    EXPECT_EQ(" -I\"inc\" ", t.search_path);
    EXPECT_DOUBLE_EQ(33.5, t.sim_clock);
}

TEST(TargetSettingsReader, MissingKeysTakeTheirFallbacks) {
    ConfigNode root("OrvaneProject");
    ConfigNode* configs = Add(&root, "Configurations");
    Add(configs, "Configuration");  // no Name at all
    std::vector<TargetRecord> r = ReadAll(&root, "", Host());
    ASSERT_EQ(1u, r.size());
    const TargetRecord& t = r[0];
    EXPECT_EQ("", t.name);
    EXPECT_FALSE(t.current);  // an absent name never makes a target current
    // The processor comes from the host's list: the first entry that begins
    // with "CPU" in any case, taken whole.
    EXPECT_EQ("cpu(ARM920T)", t.cpu);
    EXPECT_EQ("Board7", t.device);
    EXPECT_EQ("ACME", t.vendor);
    EXPECT_EQ("", t.user_app_file);
    EXPECT_FALSE(t.has_user_app_file);
    EXPECT_FALSE(t.update_before_debug);
    EXPECT_EQ(0.0, t.sim_clock);
    EXPECT_TRUE(t.storage.empty());
    EXPECT_EQ("", t.linker_name);
}

TEST(TargetSettingsReader, ProcessorFallbackIsEmptyWhenNoEntryBeginsWithCpu) {
    HostDefaults h = Host();
    h.processors = {"ICPU(x)", "CP", ""};
    EXPECT_EQ("", DefaultProcessor(h));
    h.processors = {"Cpu"};
    EXPECT_EQ("Cpu", DefaultProcessor(h));
}

TEST(TargetSettingsReader, OnlyTheTextOneSetsTheUpdateBeforeDebugFlag) {
    struct Row {
        const char* value;
        bool flag;
    } rows[] = {{"1", true}, {"01", false}, {"1 ", false}, {"0", false}, {"", false}, {"true", false}};
    for (const Row& row : rows) {
        ConfigNode root("OrvaneProject");
        AddTarget(Add(&root, "Configurations"), "T")->SetAttribute("UpdateTgtBeforeDbg", row.value);
        EXPECT_EQ(row.flag, ReadAll(&root, "T", Host())[0].update_before_debug) << '"' << row.value << '"';
    }
}

TEST(TargetSettingsReader, StorageNodesAreReadInNumberOrderSkippingGaps) {
    ConfigNode root("OrvaneProject");
    ConfigNode* t = AddTarget(Add(&root, "Configurations"), "T");
    auto storage = [&](const char* name, const char* type, const char* start, const char* size,
                       const char* file, const char* download) {
        ConfigNode* s = Add(t, name);
        s->SetAttribute("Type", type);
        s->SetAttribute("StartAddress", start);
        s->SetAttribute("Size", size);
        s->SetAttribute("LoadFile", file);
        s->SetAttribute("ShouldDownLoad", download);
    };
    // Stored out of order, with gaps and with numbers the reader never asks for.
    storage("StorageNode31", "1", "40000000", "4000", "ram.bin", "no");
    storage("StorageNode0", "0", "0", "8000", "c:\\Data.bin", "Yes");
    storage("StorageNode2", "1", "0x20000000", "ff", "", "yEs");
    storage("StorageNode32", "0", "1", "1", "never.bin", "Yes");
    storage("StorageNode-1", "0", "1", "1", "never.bin", "Yes");
    storage("StorageNode01", "0", "1", "1", "never.bin", "Yes");

    const TargetRecord r = ReadAll(&root, "T", Host())[0];
    ASSERT_EQ(3u, r.storage.size());
    EXPECT_EQ(0u, r.storage[0].type);
    EXPECT_EQ(0x8000u, r.storage[0].size);
    EXPECT_EQ("c:\\Data.bin", r.storage[0].load_file);
    EXPECT_TRUE(r.storage[0].should_download);
    EXPECT_EQ(0x20000000u, r.storage[1].start_address);  // "%x" accepts the 0x prefix
    EXPECT_EQ(0xffu, r.storage[1].size);
    EXPECT_TRUE(r.storage[1].should_download);           // "Yes" in any case
    EXPECT_EQ(0x40000000u, r.storage[2].start_address);
    EXPECT_FALSE(r.storage[2].should_download);
}

TEST(TargetSettingsReader, AnEmptyConfigurationsNodeEmptiesTheTargetList) {
    ConfigNode root("OrvaneProject");
    Add(&root, "Configurations");
    std::vector<TargetRecord> records(3);
    TargetSettingsReader reader(&records, "T", nullptr, 0);
    WalkTree(&root, [&](ConfigNode* n) { return reader(n); });
    EXPECT_TRUE(records.empty());
}

TEST(TargetSettingsReader, MarksOnlyTheCurrentTargetAndKeepsTheOrder) {
    ConfigNode root("OrvaneProject");
    ConfigNode* configs = Add(&root, "Configurations");
    AddTarget(configs, "Release");
    AddTarget(configs, "Debug");
    AddTarget(configs, "debug");
    std::vector<TargetRecord> r = ReadAll(&root, "Debug", Host());
    ASSERT_EQ(3u, r.size());
    EXPECT_EQ("Release", r[0].name);
    EXPECT_FALSE(r[0].current);
    EXPECT_TRUE(r[1].current);
    EXPECT_FALSE(r[2].current);
}

TEST(TargetSettingsReader, PageStatesAreReadOnlyForTheKindsTheyConcern) {
    ConfigNode root("OrvaneProject");
    ConfigNode* t = AddTarget(Add(&root, "Configurations"), "T");
    t->SetAttribute("ADS_ArmAsm_Tar", "1,2,3,4");
    t->SetAttribute("ADS_ArmAsm_Opt", "0,0,1,1,0,1");
    t->SetAttribute("ADS_ArmC_Tar", "32,4,0,1");
    t->SetAttribute("ADS_ArmCpp_Tar", "32,4,2,1");

    TargetRecord asm_file = ReadAll(&root, "T", Host(), kKindAsm)[0];
    EXPECT_TRUE(asm_file.has_asm_states);
    EXPECT_EQ("1,2,3,4", asm_file.asm_states[0]);
    EXPECT_EQ("", asm_file.asm_states[1]);  // the six are read together
    EXPECT_EQ("0,0,1,1,0,1", asm_file.asm_states[2]);
    EXPECT_EQ("", asm_file.armc_target_state);

    TargetRecord c_file = ReadAll(&root, "T", Host(), kKindC)[0];
    EXPECT_FALSE(c_file.has_asm_states);
    EXPECT_EQ("32,4,0,1", c_file.armc_target_state);
    EXPECT_EQ("", c_file.armcpp_target_state);

    TargetRecord folder = ReadAll(&root, "T", Host(), kKindFolder)[0];
    EXPECT_TRUE(folder.has_asm_states);
    EXPECT_EQ("32,4,0,1", folder.armc_target_state);
    EXPECT_EQ("32,4,2,1", folder.armcpp_target_state);

    // Without the target page the assembler pages keep their defaults.
    ConfigNode bare("OrvaneProject");
    AddTarget(Add(&bare, "Configurations"), "T")->SetAttribute("ADS_ArmAsm_Opt", "1,1,1,1,1,1");
    EXPECT_FALSE(ReadAll(&bare, "T", Host(), kKindAsm)[0].has_asm_states);
}

// A project whose "Files" node comes before "Configurations": the walk then
// reads the targets before it reaches the files.
struct FileProject {
    ConfigNode root{"OrvaneProject"};
    ConfigNode* files;
    ConfigNode* configs;
    FileProject() {
        files = Add(&root, "Files");
        configs = Add(&root, "Configurations");
        AddTarget(configs, "A");
        AddTarget(configs, "B");
    }
    ConfigNode* File(int type, std::vector<std::pair<std::string, std::string>> settings) {
        ConfigNode* f = Add(files, "File");
        f->SetAttributeInt("FileType", type);
        ConfigNode* s = Add(f, "ADS_CParam");
        for (auto& kv : settings) s->SetAttribute(kv.first, kv.second);
        return f;
    }
};

TEST(TargetSettingsReader, PerFileTextsGoToTheToolChosenForEachTarget) {
    FileProject p;
    p.File(1, {{"A", " -O2"}, {"A_tool", "2"}, {"B", " -O1"}, {"B_tool", "4"}});
    std::vector<TargetRecord> r = ReadAll(&p.root, "A", Host());
    ASSERT_EQ(2u, r.size());
    EXPECT_EQ(" -O2", r[0].file_armcc);
    EXPECT_EQ("", r[0].file_tcc);
    EXPECT_EQ(" -O1", r[1].file_tcc);
    EXPECT_EQ("", r[1].file_armcc);
}

TEST(TargetSettingsReader, PerFileTextsByKind) {
    struct Row {
        const char* what;
        int type;
        const char* tool;
        std::string TargetRecord::*field;  // null: nothing stored
    } rows[] = {
        {"C file for armcc", 1, "2", &TargetRecord::file_armcc},
        {"C file for tcc", 1, "4", &TargetRecord::file_tcc},
        {"C file with a C++ tool stores nothing", 1, "3", nullptr},
        {"C file without a tool stores nothing", 1, nullptr, nullptr},
        {"C++ file for armcpp", 3, "3", &TargetRecord::file_armcpp},
        {"C++ file for tcpp", 3, "5", &TargetRecord::file_tcpp},
        {"C++ file with a C tool stores nothing", 3, "2", nullptr},
        {"assembler file whatever its tool", 2, "0", &TargetRecord::file_armasm},
        {"assembler file without a tool", 2, nullptr, &TargetRecord::file_armasm},
        {"other kinds are not read", 4, "2", nullptr},
        {"kind 0 is not read", 0, "2", nullptr},
    };
    for (const Row& row : rows) {
        FileProject p;
        std::vector<std::pair<std::string, std::string>> s = {{"A", " -x"}};
        if (row.tool) s.push_back({"A_tool", row.tool});
        p.File(row.type, s);
        TargetRecord r = ReadAll(&p.root, "A", Host())[0];
        std::string TargetRecord::*all[] = {&TargetRecord::file_armasm, &TargetRecord::file_armcc,
                                            &TargetRecord::file_armcpp, &TargetRecord::file_tcc,
                                            &TargetRecord::file_tcpp};
        for (auto field : all) {
            EXPECT_EQ(field == row.field ? " -x" : "", r.*field) << row.what;
        }
    }
}

TEST(TargetSettingsReader, AFileWithoutChildrenHasNoPerFileTexts) {
    FileProject p;
    ConfigNode* f = Add(p.files, "File");
    f->SetAttributeInt("FileType", 2);
    f->SetAttribute("A", " -attribute-on-the-file-itself");
    TargetRecord r = ReadAll(&p.root, "A", Host())[0];
    EXPECT_EQ("", r.file_armasm);
}

TEST(TargetSettingsReader, NullAndNamelessNodesAreSkipped) {
    std::vector<TargetRecord> records(1);
    TargetSettingsReader reader(&records, "T", nullptr, 0);
    EXPECT_FALSE(reader(nullptr));
    ConfigNode nameless("");
    EXPECT_FALSE(reader(&nameless));
    EXPECT_EQ(1u, records.size());
}

TEST(CurrentConfiguration, FindsTheTargetByNameAnywhereBelowTheRoot) {
    ConfigNode root("OrvaneProject");
    ConfigNode* configs = Add(&root, "Configurations");
    AddTarget(configs, "Release");
    ConfigNode* debug = AddTarget(configs, "Debug");
    Add(configs, "Configuration");  // nameless
    Add(&root, "Files");
    EXPECT_EQ(debug, FindCurrentConfiguration(&root, "Debug"));
    EXPECT_EQ(nullptr, FindCurrentConfiguration(&root, "debug"));
    EXPECT_EQ(nullptr, FindCurrentConfiguration(&root, "Missing"));
    EXPECT_EQ(nullptr, FindCurrentConfiguration(nullptr, "Debug"));
    // A node of another name that carries the attribute is not a target.
    ConfigNode* impostor = Add(&root, "Other");
    impostor->SetAttribute("Name", "Impostor");
    EXPECT_EQ(nullptr, FindCurrentConfiguration(&root, "Impostor"));
}

}  // namespace
}  // namespace ads::config
