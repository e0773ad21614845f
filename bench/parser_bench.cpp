// Throughput of the tool-output parser against std::regex doing the same
// rewrite (same source pattern in ECMAScript syntax, anchored where the last
// match ended, same output and counts), on 1 MiB of dense compiler
// diagnostics and on 1 MiB of output without any. Two more inputs, built to
// make a backtracking matcher slow, run on the parser alone: std::regex
// recurses once per character of a long closure and would overflow the
// stack on them. The run ends with the ratio of the two engines per input.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <regex>
#include <string>

#include "build/output_parser.h"

namespace {

constexpr size_t kInputSize = size_t{1} << 20;

std::string Fill(const std::string& lines) {
    std::string text;
    text.reserve(kInputSize + lines.size());
    while (text.size() + lines.size() <= kInputSize) text += lines;
    return text;
}

const std::string& DenseDiagnostics() {
    static const std::string text = Fill(
        "\"..\\..\\services\\avs\\ring.c\", line 272: Warning: C2207W: inventing 'extern int "
        "HWIO_RINGER_MN_A_MDIV_OUT();'\r\n"
        "\"..\\..\\drivers\\efuse\\efuse.c\", line 121: Error: C2456E: undeclared name, inventing "
        "'extern int HWIO_EF_CONFIG_MSB_JTAG_EN_N_BMSK'\r\n"
        "\"..\\..\\drivers\\efuse\\efuse.c\", line 121: Serious error: C2432E: non-constant initialiser\r\n"
        "\"start.s\", line 10: Error: A1163E: Unknown opcode FOO , expecting opcode or Macro\r\n");
    return text;
}

const std::string& NoDiagnostics() {
    static const std::string text = Fill(
        "ARM C Compiler, ADS1.2 [Build 848]\r\n"
        "..\\..\\drivers\\efuse\\efuse.c: 0 warnings, 4 errors, 4 serious errors\r\n"
        "main.o: main.c\r\n"
        "main.o: .\\inc\\board.h\r\n"
        "Compilation abandoned.\r\n");
    return text;
}

const std::string& UnclosedQuote() {
    static const std::string text = "\"" + std::string(kInputSize - 1, 'x');
    return text;
}

const std::string& LineWithoutEnd() {
    static const std::string head = "\"main.c\", line 7: Error: ";
    static const std::string text = head + std::string(kInputSize - head.size(), 'x');
    return text;
}

struct Result {
    std::string pane;
    int errors = 0;
    int warnings = 0;
};

Result ParseWithParser(ads::build::OutputParser& parser, const std::string& text) {
    parser.ResetCounters();
    Result result;
    result.pane = parser.Parse(text.data(), text.size());
    result.errors = parser.errors();
    result.warnings = parser.warnings();
    return result;
}

// The same rewrite with std::regex: each search must start where the last
// match ended, the text between matches is dropped, lines are classified by
// the same substring tests.
Result ParseWithStdRegex(const std::string& text) {
    static const std::regex source("^\"([^\"]*)\", line ([0-9]+):([^\n]*)\n", std::regex::ECMAScript);
    Result result;
    std::smatch match;
    auto from = text.cbegin();
    while (from != text.cend() &&
           std::regex_search(from, text.cend(), match, source, std::regex_constants::match_continuous)) {
        const std::string line = match.format("$1($2):$3\n");
        if (line.find("Error") != std::string::npos || line.find("Serious error:") != std::string::npos ||
            line.find("Fatal error:") != std::string::npos) {
            ++result.errors;
        } else if (line.find("Warning") != std::string::npos) {
            ++result.warnings;
        }
        result.pane += line;
        from = match[0].second;
    }
    return result;
}

void CheckSameResult(const std::string& text, const char* name) {
    ads::build::OutputParser parser;
    const Result ours = ParseWithParser(parser, text);
    const Result theirs = ParseWithStdRegex(text);
    if (ours.pane != theirs.pane || ours.errors != theirs.errors || ours.warnings != theirs.warnings) {
        std::fprintf(stderr, "%s: the parser and std::regex disagree\n", name);
        std::exit(1);
    }
}

void BM_Parser(benchmark::State& state, const std::string& (*input)()) {
    const std::string& text = input();
    ads::build::OutputParser parser;
    for (auto _ : state) {
        Result result = ParseWithParser(parser, text);
        benchmark::DoNotOptimize(result);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

void BM_StdRegex(benchmark::State& state, const std::string& (*input)()) {
    const std::string& text = input();
    for (auto _ : state) {
        Result result = ParseWithStdRegex(text);
        benchmark::DoNotOptimize(result);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

BENCHMARK_CAPTURE(BM_Parser, DenseDiagnostics, DenseDiagnostics)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_StdRegex, DenseDiagnostics, DenseDiagnostics)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Parser, NoDiagnostics, NoDiagnostics)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_StdRegex, NoDiagnostics, NoDiagnostics)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Parser, UnclosedQuote, UnclosedQuote)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Parser, LineWithoutEnd, LineWithoutEnd)->Unit(benchmark::kMicrosecond);

// Prints the usual table, then the parser's throughput against std::regex
// for each input that both ran.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            const auto rate = run.counters.find("bytes_per_second");
            if (rate == run.counters.end()) continue;
            const std::string name = run.benchmark_name();
            const size_t slash = name.find('/');
            if (slash == std::string::npos) continue;
            rates_[name.substr(slash + 1)][name.substr(0, slash)] = rate->second.value / (1024.0 * 1024.0);
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\n%-18s %14s %14s %8s\n", "input", "parser MiB/s", "std::regex", "ratio");
        for (const auto& [input, engines] : rates_) {
            const auto ours = engines.find("BM_Parser");
            const auto theirs = engines.find("BM_StdRegex");
            if (ours == engines.end()) continue;
            if (theirs == engines.end()) {
                std::printf("%-18s %14.1f %14s %8s\n", input.c_str(), ours->second, "-", "-");
            } else {
                std::printf("%-18s %14.1f %14.1f %7.1fx\n", input.c_str(), ours->second, theirs->second,
                            ours->second / theirs->second);
            }
        }
    }

private:
    std::map<std::string, std::map<std::string, double>> rates_;
};

}  // namespace

int main(int argc, char** argv) {
    CheckSameResult(DenseDiagnostics(), "DenseDiagnostics");
    CheckSameResult(NoDiagnostics(), "NoDiagnostics");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
