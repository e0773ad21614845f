// Importing a large CodeWarrior export: 50 targets, each with every ADS
// panel, and 5,000 files in 50 groups, the sources on disk below the
// export's folder. Measured: the whole import into a project tree through
// host commits as orvhost makes them, the read alone, and as the baseline
// TinyXML parsing the same file. Ends with each median, its ratio to the
// baseline and the process's peak memory after the import and after every
// run, with what the runs added to it beside the export's size.
#include <benchmark/benchmark.h>

#include <tinyxml.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <random>
#include <memory>
#include <string>

#include "config/host_api.h"
#include "import/export_filter.h"
#include "import/export_reader.h"
#include "import/panel_text.h"
#include "import/project_import.h"
#include "platform/platform.h"
#include "plugin_host.h"

namespace {

using namespace ads;

constexpr int kTargets = 50;
constexpr int kGroups = 50;
constexpr int kFilesPerGroup = 100;
constexpr int kFiles = kGroups * kFilesPerGroup;
constexpr double kMegabyte = 1024.0 * 1024.0;

std::string Setting(const std::string& name, const std::string& value) {
    return "<SETTING><NAME>" + name + "</NAME><VALUE>" + value + "</VALUE></SETTING>\n";
}

std::string Panel(const char* panel, const char* tool, const std::string& options) {
    std::string data = std::string("\x00\x01\x00\x02", 4) + tool;
    data.resize(40, '\0');
    data += options;
    data.resize((data.size() / 32 + 1) * 32, '\0');
    const std::string hex = import::HexOf(data);
    std::string value = "\n";
    for (size_t i = 0; i < hex.size(); i += 64) value += "                    " + hex.substr(i, 64) + "\n";
    return std::string("<PANELDATA><NAME>") + panel + "</NAME><VALUE>" + value + "</VALUE></PANELDATA>\n";
}

std::string SearchPath(const std::string& path, const char* root) {
    return "<SETTING>\n<SETTING><NAME>SearchPath</NAME>\n" + Setting("Path", path) + Setting("PathFormat", "Windows") +
           Setting("PathRoot", root) + "</SETTING>\n" + Setting("Recursive", "false") + "</SETTING>\n";
}

std::string Mapping(const char* extension, const char* compiler) {
    return "<SETTING>\n" + Setting("FileType", "TEXT") + Setting("FileExtension", extension) +
           Setting("Compiler", compiler) + Setting("EditLanguage", "") + "</SETTING>\n";
}

std::string Export() {
    std::string text = std::string("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\n") +
                       import::kExportVersionLine + "\n\n<!DOCTYPE PROJECT [\n<!ELEMENT PROJECT (TARGETLIST)>\n]>\n" +
                       "<PROJECT>\n<TARGETLIST>\n";
    const std::string compiler = "-cpu#ARM920T\n.bytesex=little\n-apcs.inter#/interwork\n-g=+\n-O.level=1\n"
                                 "-W=a+g\n.areaperfn=on\n-DBOARD=2\n-DDEBUG\n";
    for (int t = 0; t < kTargets; ++t) {
        const bool thumb = t % 2 == 1;
        text += "<TARGET>\n<NAME>Target" + std::to_string(t) + "</NAME>\n<SETTINGLIST>\n";
        text += "<SETTING><NAME>UserSearchPaths</NAME>\n" + SearchPath("src", "Project") + SearchPath("inc", "Project") +
                "</SETTING>\n<SETTING><NAME>SystemSearchPaths</NAME>\n" + SearchPath("Include", "CodeWarrior") +
                "</SETTING>\n";
        text += Setting("Linker", thumb ? "ARM Librarian" : "ARM Linker") + Setting("PreLinker", "None") +
                Setting("PostLinker", thumb ? "None" : "ARM fromELF") + Setting("Targetname", "t");
        text += "<SETTING><NAME>FileMappings</NAME>\n" + Mapping(".c", thumb ? "Thumb C Compiler" : "ARM C Compiler") +
                Mapping(".cpp", thumb ? "Thumb C++ Compiler" : "ARM C++ Compiler") + Mapping(".s", "ARM Assembler") +
                Mapping(".h", "") + "</SETTING>\n";
        text += Panel("Panel_for_armasm", "ARM Assembler", ".debug=on\n.keep=on\n-PD\"BOARD SETA 2\"\n") +
                Panel("Panel_for_armcc", "ARM C Compiler", compiler) +
                Panel("Panel_for_armcpp", "ARM C++ Compiler", compiler + ".lang=-cpp\n") +
                Panel("Panel_for_tcc", "Thumb C Compiler", compiler) +
                Panel("Panel_for_tcpp", "Thumb C++ Compiler", compiler) +
                Panel("Panel_for_armlink", "ARM Linker", "-ro-base#0x0\n-rw-base#0x40000000\n.map#on\n") +
                Panel("Panel_for_fromelf", "ARM fromELF", ".format=-bin\n-output=out.bin\n");
        text += "</SETTINGLIST>\n</TARGET>\n";
    }
    text += "</TARGETLIST>\n<GROUPLIST>\n";
    const char* const kExtensions[] = {".c", ".cpp", ".s", ".h"};
    for (int g = 0; g < kGroups; ++g) {
        text += "<GROUP><NAME>Group" + std::to_string(g) + "</NAME>\n";
        for (int f = 0; f < kFilesPerGroup; ++f) {
            text += "<FILEREF>\n<PATHTYPE>Name</PATHTYPE>\n<PATH>f" + std::to_string(g) + "_" + std::to_string(f) +
                    kExtensions[f % 4] + "</PATH>\n<PATHFORMAT>Windows</PATHFORMAT>\n</FILEREF>\n";
        }
        text += "</GROUP>\n";
    }
    return text + "</GROUPLIST>\n</PROJECT>\n";
}

// The export and its sources, written once into a folder of the run's own.
struct Setup {
    std::string folder;
    std::string export_path;
    std::string text;

    Setup() {
        platform::Platform& p = platform::System();
        folder = (std::filesystem::temp_directory_path() /
                  ("ads_import_bench_" + std::to_string(std::random_device()() % 1000000)))
                     .string();
        p.files->MakeDir(folder);
        std::string error;
        for (int g = 0; g < kGroups; ++g) {
            const std::string sub = folder + "/g" + std::to_string(g);
            p.files->MakeDir(sub);
            const char* const kExtensions[] = {".c", ".cpp", ".s", ".h"};
            for (int f = 0; f < kFilesPerGroup; ++f) {
                p.files->WriteFileAtomically(
                    sub + "/f" + std::to_string(g) + "_" + std::to_string(f) + kExtensions[f % 4], "\n", &error);
            }
        }
        text = Export();
        export_path = folder + "/big.mcp.xml";
        p.files->WriteFileAtomically(export_path, text, &error);
    }
    ~Setup() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
};

Setup& TheSetup() {
    static Setup setup;
    return setup;
}

// Commits and settings children as orvhost's host slots make them.
class BenchHost : public config::HostApi {
public:
    void Commit(ConfigNode* node, ConfigNode* edited) override { host::CommitEdit(node, *edited); }
    ConfigNode* FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) override {
        return host::PluginHost::FindSettingNode(node, key, flag_key);
    }
    config::ToolRun RunTool(const std::string&, int) override { return {}; }
    void Write(const std::string& text) override { std::fputs(text.c_str(), stderr); }
    bool IsOutOfDate(const std::string&, ConfigNode*) override { return false; }
    bool TranslateFile(const std::string&, ConfigNode*) override { return false; }
    bool MakeTarget(const std::string&, ConfigNode*) override { return false; }
};

void BM_ImportProject(benchmark::State& state) {
    Setup& s = TheSetup();
    import::ImportRequest request;
    request.export_path = s.export_path;
    request.project_name = "big";
    request.reader.files = platform::System().files;
    size_t files = 0;
    for (auto _ : state) {
        auto root = std::make_unique<ConfigNode>("OrvaneProject");
        BenchHost host;
        if (import::ImportProject(host, root.get(), request) != 1) state.SkipWithError("import failed");
        files = 0;
        WalkTree(root.get(), [&](ConfigNode* n) {
            files += n->Name() == "File";
            return false;
        });
    }
    state.counters["files"] = static_cast<double>(files);
}

void BM_ReadExport(benchmark::State& state) {
    Setup& s = TheSetup();
    import::ReaderOptions options;
    options.files = platform::System().files;
    for (auto _ : state) {
        import::ImportModel model;
        if (!import::ReadExport(s.export_path, options, &model)) state.SkipWithError("read failed");
        benchmark::DoNotOptimize(model.targets.size());
    }
}

// Baseline: TinyXML parsing the export's text, DOCTYPE block removed.
void BM_BaselineTinyXmlParse(benchmark::State& state) {
    Setup& s = TheSetup();
    std::string text = s.text;
    text.erase(text.find("<!DOCTYPE"), text.find("]>") + 3 - text.find("<!DOCTYPE"));
    for (auto _ : state) {
        TiXmlDocument document;
        document.Parse(text.c_str(), nullptr, TIXML_ENCODING_LEGACY);
        benchmark::DoNotOptimize(document.Error());
    }
}

BENCHMARK(BM_ImportProject)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->ReportAggregatesOnly(true);
BENCHMARK(BM_ReadExport)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_BaselineTinyXmlParse)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

// Also the process's peak as each benchmark's runs end: the import runs
// first, so the peak then is the import's own, before TinyXML's tree of the
// whole export (the baseline) raises it.
class MedianReporter : public benchmark::ConsoleReporter {
public:
    std::map<std::string, double> medians_ms;
    std::map<std::string, uint64_t> peak_after;

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                const double to_ms = 1e3 / benchmark::GetTimeUnitMultiplier(run.time_unit);
                medians_ms[run.run_name.function_name] = run.GetAdjustedRealTime() * to_ms;
                peak_after[run.run_name.function_name] = platform::PeakMemoryBytes();
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

void PrintPeak(const char* what, uint64_t peak, uint64_t before, size_t export_size) {
    const uint64_t grown = peak > before ? peak - before : 0;
    std::printf("peak memory %s: %.1f MB, %.1f MB above the %.1f MB before the first run (x%.1f the export's size)\n",
                what, static_cast<double>(peak) / kMegabyte, static_cast<double>(grown) / kMegabyte,
                static_cast<double>(before) / kMegabyte, static_cast<double>(grown) / static_cast<double>(export_size));
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    MedianReporter reporter;
    Setup& s = TheSetup();  // written before timing
    std::printf("export: %d targets, %d files, %zu bytes\n", kTargets, kFiles, s.text.size());
    // The import runs first: what the peak grows by is its own.
    const uint64_t before = platform::PeakMemoryBytes();
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double baseline = reporter.medians_ms["BM_BaselineTinyXmlParse"];
    std::printf("\nmedian wall time, ratio to TinyXML parsing the same file:\n");
    for (const char* name : {"BM_ImportProject", "BM_ReadExport", "BM_BaselineTinyXmlParse"}) {
        const double ms = reporter.medians_ms[name];
        std::printf("  %-24s %10.1f ms  x%.1f\n", name, ms, baseline > 0 ? ms / baseline : 0.0);
    }
    if (reporter.peak_after.count("BM_ImportProject") != 0) {
        PrintPeak("after the import", reporter.peak_after["BM_ImportProject"], before, s.text.size());
    }
    PrintPeak("after every run", platform::PeakMemoryBytes(), before, s.text.size());
    benchmark::Shutdown();
    return 0;
}
