// Walking a large project: a hundred thousand files in one folder, and a
// folder nesting ten thousand deep. Prints the time of one walk with each
// of the two callbacks the plug-in runs from the root (the target settings
// reader and the current-configuration finder) and the process's peak
// memory, beside a plain loop over the same nodes as the baseline.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>

#include "ads/config_node.h"
#include "config/target_settings.h"
#include "platform/platform.h"

namespace {

using ads::ConfigNode;

std::unique_ptr<ConfigNode> WideProject(int files) {
    auto root = std::make_unique<ConfigNode>("OrvaneProject");
    root->SetAttribute("Name", "bench");
    auto* configs = new ConfigNode("Configurations");
    root->AppendChild(configs);
    for (const char* name : {"Debug", "Release"}) {
        auto* c = new ConfigNode("Configuration");
        c->SetAttribute("Name", name);
        configs->AppendChild(c);
    }
    auto* list = new ConfigNode("Files");
    root->AppendChild(list);
    for (int i = 0; i < files; ++i) {
        auto* f = new ConfigNode("File");
        f->SetAttribute("RelativePath", "src\\file" + std::to_string(i) + ".c");
        f->SetAttributeInt("FileType", 1);
        auto* s = new ConfigNode("ADS_CParam");
        s->SetAttribute("Debug", " -O0 -g+");
        s->SetAttributeInt("Debug_tool", 2);
        f->AppendChild(s);
        list->AppendChild(f);
    }
    return root;
}

std::unique_ptr<ConfigNode> DeepProject(int depth) {
    auto root = std::make_unique<ConfigNode>("OrvaneProject");
    ConfigNode* n = root.get();
    for (int i = 0; i < depth; ++i) {
        auto* f = new ConfigNode("Filter");
        n->AppendChild(f);
        auto* file = new ConfigNode("File");
        file->SetAttributeInt("FileType", 2);
        f->AppendChild(file);
        n = f;
    }
    return root;
}

// The baseline: every node once, by plain pre-order pointer chasing.
size_t CountNodes(ConfigNode* root) {
    size_t n = 0;
    ConfigNode* c = root;
    while (c != nullptr) {
        ++n;
        if (c->FirstChild()) { c = c->FirstChild(); continue; }
        while (c != root && c->NextSibling() == nullptr) c = c->Parent();
        c = c == root ? nullptr : c->NextSibling();
    }
    return n;
}

void BM_WalkWideCountAll(benchmark::State& state) {
    auto root = WideProject(100000);
    for (auto _ : state) {
        size_t visits = 0;
        ads::WalkTree(root.get(), [&](ConfigNode*) { return ++visits, false; });
        benchmark::DoNotOptimize(visits);
    }
}
BENCHMARK(BM_WalkWideCountAll)->Unit(benchmark::kMillisecond);

void BM_BaselineLoopWide(benchmark::State& state) {
    auto root = WideProject(100000);
    for (auto _ : state) benchmark::DoNotOptimize(CountNodes(root.get()));
}
BENCHMARK(BM_BaselineLoopWide)->Unit(benchmark::kMillisecond);

void BM_WalkWideFindCurrentTarget(benchmark::State& state) {
    auto root = WideProject(100000);
    for (auto _ : state) benchmark::DoNotOptimize(ads::config::FindCurrentConfiguration(root.get(), "Release"));
}
BENCHMARK(BM_WalkWideFindCurrentTarget)->Unit(benchmark::kMillisecond);

void BM_WalkWideSettingsReader(benchmark::State& state) {
    auto root = WideProject(100000);
    ads::config::HostDefaults host;
    for (auto _ : state) {
        std::vector<ads::config::TargetRecord> records;
        ads::config::TargetSettingsReader reader(&records, "Debug", &host, 0);
        ads::WalkTree(root.get(), [&](ConfigNode* n) { return reader(n); });
        benchmark::DoNotOptimize(records);
    }
}
BENCHMARK(BM_WalkWideSettingsReader)->Unit(benchmark::kMillisecond);

void BM_WalkDeep(benchmark::State& state) {
    auto root = DeepProject(10000);
    for (auto _ : state) {
        size_t visits = 0;
        ads::WalkTree(root.get(), [&](ConfigNode*) { return ++visits, false; });
        benchmark::DoNotOptimize(visits);
    }
}
BENCHMARK(BM_WalkDeep)->Unit(benchmark::kMillisecond);

void BM_BaselineLoopDeep(benchmark::State& state) {
    auto root = DeepProject(10000);
    for (auto _ : state) benchmark::DoNotOptimize(CountNodes(root.get()));
}
BENCHMARK(BM_BaselineLoopDeep)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::printf("peak memory: %.1f MiB (the 100,000-file project held in memory, and the walks)\n",
                static_cast<double>(ads::platform::PeakMemoryBytes()) / (1024.0 * 1024.0));
    return 0;
}
