// Cost of the effective option string: one tool of one target, and one per
// file over a project of 10,000 files that each hold their own page states.
// The baseline in the same run is the attribute look-up the build engine
// does for every file anyway (the file's stored option string); the program
// ends by printing each median and its ratio to the baseline.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "options/effective_options.h"

namespace {

using ads::ConfigNode;
using namespace ads::options;

constexpr int kFiles = 10000;
constexpr char kToolWide[] =
    " -cpu ARM920T -fpu SoftVFP+VFP -apcs /interwork -Wax+g -O2 -Otime -g+ -DBOARD=3 -DNDEBUG -zo";

struct Project {
    std::unique_ptr<ConfigNode> root = std::make_unique<ConfigNode>("OrvaneProject");
    ConfigNode* configuration = nullptr;
    std::vector<ConfigNode*> files;

    Project() {
        auto* configurations = new ConfigNode("Configurations");
        root->AppendChild(configurations);
        configuration = new ConfigNode("Configuration");
        configuration->SetAttribute("Name", "Debug");
        configuration->SetAttribute("ADS_GArmCCParam", kToolWide);
        configurations->AppendChild(configuration);

        auto* states = new ConfigNode("ADS_CParam");
        root->AppendChild(states);
        states->SetAttribute("Debug_ArmC_Tar", "-1,-1,1,-1");
        states->SetAttribute("Debug_ArmC_Debug_Opt", "-1,0,-1,1,-1");

        auto* group = new ConfigNode("Filter");
        root->AppendChild(group);
        for (int i = 0; i < kFiles; ++i) {
            auto* file = new ConfigNode("File");
            file->SetAttribute("RelativePath", "src\\f" + std::to_string(i) + ".c");
            file->SetAttribute("FileType", "1");
            auto* own = new ConfigNode("ADS_CParam");
            own->SetAttribute("Debug", kToolWide);
            own->SetAttribute("Debug_tool", "2");
            own->SetAttribute("Debug_ArmC_Tar", i % 2 ? "44,-1,-1,-1" : "-1,2,-1,0");
            own->SetAttribute("Debug_ArmC_Warnings", "-1,-1,0,-1,1,-1,-1,-1,-1,-1,-1,-1,-1,-1,-1,-1");
            own->SetAttribute("Debug_ArmC_Code_Gen", "1,-1,-1,-1,-1");
            own->SetAttribute("Debug_ArmC_PrePro", " -DFILE_" + std::to_string(i));
            file->AppendChild(own);
            group->AppendChild(file);
            files.push_back(file);
        }
    }
};

Project& TheProject() {
    static Project project;
    return project;
}

void BM_OneTarget(benchmark::State& state) {
    Project& p = TheProject();
    for (auto _ : state) {
        benchmark::DoNotOptimize(EffectiveOptions(Tool::kArmcc, p.configuration, p.root.get(), "Debug"));
    }
}

// One call per iteration, walking the 10,000 files in turn.
void BM_PerFile(benchmark::State& state) {
    Project& p = TheProject();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(EffectiveOptions(Tool::kArmcc, p.configuration, p.files[i], "Debug"));
        if (++i == p.files.size()) i = 0;
    }
}

// All 10,000 files per iteration.
void BM_AllFiles(benchmark::State& state) {
    Project& p = TheProject();
    for (auto _ : state) {
        for (ConfigNode* file : p.files) {
            benchmark::DoNotOptimize(EffectiveOptions(Tool::kArmcc, p.configuration, file, "Debug"));
        }
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
}

// Baseline: fetching each file's stored option string.
void BM_BaselineFileAttribute(benchmark::State& state) {
    Project& p = TheProject();
    size_t i = 0;
    for (auto _ : state) {
        const ConfigNode* own = p.files[i]->FindChild("ADS_CParam");
        benchmark::DoNotOptimize(std::string(own->GetAttribute("Debug")));
        if (++i == p.files.size()) i = 0;
    }
}

BENCHMARK(BM_OneTarget)->Repetitions(10)->ReportAggregatesOnly(true);
BENCHMARK(BM_PerFile)->Repetitions(10)->ReportAggregatesOnly(true);
BENCHMARK(BM_AllFiles)->Unit(benchmark::kMillisecond)->Repetitions(10)->ReportAggregatesOnly(true);
BENCHMARK(BM_BaselineFileAttribute)->Repetitions(10)->ReportAggregatesOnly(true);

// Keeps the medians so that the ratios can be printed at the end.
class MedianReporter : public benchmark::ConsoleReporter {
public:
    std::map<std::string, double> medians_ns;      // wall time
    std::map<std::string, double> cpu_medians_ns;  // CPU time of the thread

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                const double to_ns = 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
                medians_ns[run.run_name.function_name] = run.GetAdjustedRealTime() * to_ns;
                cpu_medians_ns[run.run_name.function_name] = run.GetAdjustedCPUTime() * to_ns;
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    MedianReporter reporter;
    TheProject();  // built before timing
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (auto* medians : {&reporter.medians_ns, &reporter.cpu_medians_ns}) {
        const double baseline = (*medians)["BM_BaselineFileAttribute"];
        std::printf("\nmedian per call, %s time, ratio to the file attribute look-up:\n",
                    medians == &reporter.medians_ns ? "wall" : "CPU");
        for (const char* name : {"BM_OneTarget", "BM_PerFile"}) {
            const double ns = (*medians)[name];
            std::printf("  %-26s %10.1f ns  x%.1f\n", name, ns, baseline > 0 ? ns / baseline : 0.0);
        }
        const double all = (*medians)["BM_AllFiles"];
        std::printf("  %-26s %10.3f ms  (%.1f ns per file)\n", "BM_AllFiles (10,000 files)", all / 1e6,
                    all / kFiles);
        std::printf("  %-26s %10.1f ns\n", "BM_BaselineFileAttribute", baseline);
    }
    benchmark::Shutdown();
    return 0;
}
