// Whole-engine timings on generated logic and I/O designs: one pass over the
// tabs (Calculator), the fold into the summary (CalculateTotalPower), and a
// whole Calculate with its temperature loop. The calculation log stays closed.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "pwc.h"

namespace {

std::string DataDir() {
    return std::string(PWC_BENCH_DATA_DIR);
}

struct Engine {
    explicit Engine(int rows) {
        setenv("PWC_DATA_DIR", (DataDir() + "/devices").c_str(), 1);
        PD_UTIL::SetRunLog(std::fopen("/dev/null", "w"));
        project = std::make_unique<PD_DATA>();
        project->LoadTxtFile((DataDir() + "/projects/demo.pcf").c_str());
        // A design of `rows` logic rows, cycling through plausible modules.
        auto* logic = dynamic_cast<PD_TBLSECT*>(project->GetSection("Logic"));
        logic->RemoveAllRows();
        const char* clocks[] = {"clk_sys", "clk_spi", "clk_slow"};
        for (int r = 0; r < rows; ++r) {
            const int lut = 20 + r % 180;
            const std::string cells[] = {"m" + std::to_string(r),
                                         clocks[r % 3],
                                         std::to_string(lut),
                                         std::to_string(r % 7),
                                         std::to_string(r % 11),
                                         std::to_string(lut * 3 / 4),
                                         std::to_string(lut * 4),
                                         std::to_string(lut * 2),
                                         std::to_string(lut * 3 / 2),
                                         std::to_string(lut / 3),
                                         std::to_string(lut * 4),
                                         std::to_string(lut / 5),
                                         std::to_string(12 + r % 60),
                                         std::to_string(5 + r % 25),
                                         "0"};
            std::vector<std::string> row(std::begin(cells), std::end(cells));
            logic->AddRow(row);
        }
        Build();
    }
    // The demo's logic and `ioRows` I/O rows over its four banks.
    Engine(int ioRows, bool) {
        setenv("PWC_DATA_DIR", (DataDir() + "/devices").c_str(), 1);
        PD_UTIL::SetRunLog(std::fopen("/dev/null", "w"));
        project = std::make_unique<PD_DATA>();
        project->LoadTxtFile((DataDir() + "/projects/demo.pcf").c_str());
        auto* io = dynamic_cast<PD_TBLSECT*>(project->GetSection("Input Output"));
        io->RemoveAllRows();
        // Type, bank, inputs, outputs, register mode: what the banks allow.
        struct Kind {
            const char* type;
            const char* bank;
            int in, out;
            const char* mode;
        } const kinds[] = {{"LVCMOS33", "0", 2, 2, "none"},
                           {"LVCMOS33-DRIVE:8mA", "0", 0, 4, "OREG"},
                           {"LVCMOS33-DRIVE:4mA", "1", 0, 6, "none"},
                           {"LVCMOS33", "1", 1, 0, "IREG"},
                           {"LVCMOS18-DRIVE:8mA", "2", 0, 8, "OREG"},
                           {"LVCMOS18", "2", 2, 1, "none"},
                           {"LVDS25", "3", 1, 0, "none"},
                           {"SSTL25_I", "3", 0, 1, "ODDR"}};
        const char* clocks[] = {"clk_sys", "clk_spi", "clk_slow"};
        for (int r = 0; r < ioRows; ++r) {
            const Kind& k = kinds[r % 8];
            const std::string freq = std::to_string(12 + r % 60);
            const std::string cells[] = {"io" + std::to_string(r),
                                         k.type,
                                         k.bank,
                                         std::to_string(k.in),
                                         std::to_string(k.out),
                                         "0",
                                         k.mode,
                                         freq,
                                         std::to_string(5 + r % 25),
                                         freq,
                                         std::to_string(5 + r % 20),
                                         std::to_string(4 + r % 8),
                                         "50",
                                         clocks[r % 3],
                                         clocks[r % 3],
                                         "OFF",
                                         "0",
                                         "0",
                                         "0",
                                         "0",
                                         "0",
                                         "0",
                                         "0"};
            io->AddRow(std::vector<std::string>(std::begin(cells), std::end(cells)));
        }
        Build();
    }
    void Build() {
        const char* strings[7] = {"zn2c00", "Quenra2",    "KZQ2-1200HC", "CABGA256",
                                  "2",      "Commercial", "KZQ2-1200HC"};
        eng = std::make_unique<PC_ENG>(const_cast<char**>(strings), project.get(), "Calculation",
                                       false, "", "", "", "", "", "", nullptr, nullptr, nullptr, "",
                                       false, "", "");
    }
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

void BM_CalculatorPass(benchmark::State& state) {
    Engine e(static_cast<int>(state.range(0)));
    for (auto _ : state) e.eng->Calculator();
    state.SetItemsProcessed(state.iterations() * state.range(0));  // rows / second
}

void BM_TotalPower(benchmark::State& state) {
    Engine e(static_cast<int>(state.range(0)));
    for (auto _ : state) e.eng->CalculateTotalPower();
}

void BM_Calculate(benchmark::State& state) {
    Engine e(static_cast<int>(state.range(0)));
    int passes = 0;
    for (auto _ : state) {
        e.eng->Calculate();
        passes = e.eng->GetIterationCount();
    }
    state.counters["passes"] = passes;
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peak_rss_MB"] = usage.ru_maxrss / 1024.0;
}

void BM_IoCalculatorPass(benchmark::State& state) {
    Engine e(static_cast<int>(state.range(0)), true);
    for (auto _ : state) e.eng->Calculator();
    state.SetItemsProcessed(state.iterations() * state.range(0));  // rows / second
}

void BM_IoTab(benchmark::State& state) {
    Engine e(static_cast<int>(state.range(0)), true);
    for (auto _ : state) e.eng->IoCalculation();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_IoCalculate(benchmark::State& state) {
    Engine e(static_cast<int>(state.range(0)), true);
    int passes = 0;
    for (auto _ : state) {
        e.eng->Calculate();
        passes = e.eng->GetIterationCount();
    }
    state.counters["passes"] = passes;
}

void BM_DemoCalculate(benchmark::State& state) {
    setenv("PWC_DATA_DIR", (DataDir() + "/devices").c_str(), 1);
    PD_UTIL::SetRunLog(std::fopen("/dev/null", "w"));
    PD_DATA project;
    project.LoadTxtFile((DataDir() + "/projects/demo.pcf").c_str());
    const char* strings[7] = {"zn2c00", "Quenra2",    "KZQ2-1200HC", "CABGA256",
                              "2",      "Commercial", "KZQ2-1200HC"};
    PC_ENG eng(const_cast<char**>(strings), &project, "Calculation", false, "", "", "", "", "", "",
               nullptr, nullptr, nullptr, "", false, "", "");
    for (auto _ : state) eng.Calculate();
    state.counters["passes"] = eng.GetIterationCount();
}

BENCHMARK(BM_CalculatorPass)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TotalPower)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Calculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoCalculatorPass)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoTab)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoCalculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DemoCalculate)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
