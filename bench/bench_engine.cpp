// Whole-engine timings on the demo and on generated designs (logic rows, I/O
// rows, rows spread over every tab): one pass over the tabs (Calculator), the
// fold into the summary (CalculateTotalPower), and a whole Calculate with its
// temperature loop. The calculation log stays closed.
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

// `rows` logic rows, cycling through plausible modules.
void LogicRows(PD_DATA& project, int rows) {
    auto* logic = dynamic_cast<PD_TBLSECT*>(project.GetSection("Logic"));
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
}

// `ioRows` I/O rows over the demo's four banks, beside its logic.
void IoRows(PD_DATA& project, int ioRows) {
    auto* io = dynamic_cast<PD_TBLSECT*>(project.GetSection("Input Output"));
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
}

// A design of `rows` rows spread over every tab the device shows, each table
// repeating the demo's own rows: logic 40 %, I/O and termination 39 %, clocks
// 5 %, block RAM 12 %, PLLs 1 %, clock dividers 3 %; the embedded function
// block's tables keep their one row each.
void SpreadRows(PD_DATA& project, int rows) {
    const struct {
        const char* table;
        int percent;
    } shares[] = {{"Logic", 40}, {"Input Output", 30}, {"Bidi", 5},    {"Clocks", 5},
                  {"SP RAM", 4}, {"DP RAM", 4},        {"FIFO DC", 4}, {"PLL", 1},
                  {"CLKDIV", 3}, {"Termination", 4}};
    for (const auto& share : shares) {
        auto* table = dynamic_cast<PD_TBLSECT*>(project.GetSection(share.table));
        const int demo = table ? table->GetNumOfRows() : 0;
        if (demo == 0) continue;
        std::vector<std::vector<std::string>> model;
        for (int r = 0; r < demo; ++r) {
            std::vector<std::string> cells;
            for (int c = 0; c < table->GetNumOfColumns(); ++c)
                cells.push_back(table->GetValueAt(r, c));
            model.push_back(cells);
        }
        table->RemoveAllRows();
        for (int r = 0; r < rows * share.percent / 100; ++r) {
            std::vector<std::string> cells = model[r % demo];
            cells[0] += "_" + std::to_string(r);
            table->AddRow(cells);
        }
    }
}

struct Engine {
    // The demo project, edited, on its own device.
    template <class Edit>
    explicit Engine(Edit edit) {
        setenv("PWC_DATA_DIR", (DataDir() + "/devices").c_str(), 1);
        PD_UTIL::SetRunLog(std::fopen("/dev/null", "w"));
        project = std::make_unique<PD_DATA>();
        project->LoadTxtFile((DataDir() + "/projects/demo.pcf").c_str());
        edit(*project);
        const char* strings[7] = {"zn2c00", "Quenra2",    "KZQ2-1200HC", "CABGA256",
                                  "2",      "Commercial", "KZQ2-1200HC"};
        eng = std::make_unique<PC_ENG>(const_cast<char**>(strings), project.get(), "Calculation",
                                       false, "", "", "", "", "", "", nullptr, nullptr, nullptr, "",
                                       false, "", "");
    }
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

Engine Logic(const benchmark::State& state) {
    return Engine([&](PD_DATA& p) { LogicRows(p, static_cast<int>(state.range(0))); });
}
Engine Io(const benchmark::State& state) {
    return Engine([&](PD_DATA& p) { IoRows(p, static_cast<int>(state.range(0))); });
}
Engine Spread(const benchmark::State& state) {
    return Engine([&](PD_DATA& p) { SpreadRows(p, static_cast<int>(state.range(0))); });
}

void BM_CalculatorPass(benchmark::State& state) {
    Engine e = Logic(state);
    for (auto _ : state) e.eng->Calculator();
    state.SetItemsProcessed(state.iterations() * state.range(0));  // rows / second
}

void BM_TotalPower(benchmark::State& state) {
    Engine e = Logic(state);
    for (auto _ : state) e.eng->CalculateTotalPower();
}

void BM_Calculate(benchmark::State& state) {
    Engine e = Logic(state);
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
    Engine e = Io(state);
    for (auto _ : state) e.eng->Calculator();
    state.SetItemsProcessed(state.iterations() * state.range(0));  // rows / second
}

void BM_IoTab(benchmark::State& state) {
    Engine e = Io(state);
    for (auto _ : state) e.eng->IoCalculation();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_IoCalculate(benchmark::State& state) {
    Engine e = Io(state);
    int passes = 0;
    for (auto _ : state) {
        e.eng->Calculate();
        passes = e.eng->GetIterationCount();
    }
    state.counters["passes"] = passes;
}

// The demo project as it stands: every tab of the device, a few rows each.
void BM_DemoCalculate(benchmark::State& state) {
    Engine e([](PD_DATA&) {});
    for (auto _ : state) e.eng->Calculate();
    state.counters["passes"] = e.eng->GetIterationCount();
}

void BM_SpreadCalculatorPass(benchmark::State& state) {
    Engine e = Spread(state);
    for (auto _ : state) e.eng->Calculator();
    state.SetItemsProcessed(state.iterations() * state.range(0));  // rows / second
}

void BM_SpreadCalculate(benchmark::State& state) {
    Engine e = Spread(state);
    int passes = 0;
    for (auto _ : state) {
        e.eng->Calculate();
        passes = e.eng->GetIterationCount();
    }
    state.counters["passes"] = passes;
}

// Estimation mode on the logic designs: the estimate pass alone, with the
// bound's running sums and with its sums over every table at each row, and a
// whole Calculate in estimation mode.
void EstimationOn(Engine& e) {
    const char* strings[7] = {"zn2c00", "Quenra2",    "KZQ2-1200HC", "CABGA256",
                              "2",      "Commercial", "KZQ2-1200HC"};
    e.eng->SetFamilySwitching(const_cast<char**>(strings), e.project.get(), "Calculation", "", "",
                              "", "", nullptr, nullptr, nullptr, true);
}

void BM_EstimationPass(benchmark::State& state) {
    Engine e = Logic(state);
    for (auto _ : state) e.eng->ProcessEstimationMode();
    state.SetItemsProcessed(state.iterations() * state.range(0));  // rows / second
}

void BM_EstimationPassFullSums(benchmark::State& state) {
    Engine e = Logic(state);
    e.eng->estimationRunningSums = false;
    for (auto _ : state) e.eng->ProcessEstimationMode();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_EstimationCalculate(benchmark::State& state) {
    Engine e = Logic(state);
    EstimationOn(e);
    int passes = 0;
    for (auto _ : state) {
        e.eng->Calculate();
        passes = e.eng->GetIterationCount();
    }
    state.counters["passes"] = passes;
}

BENCHMARK(BM_CalculatorPass)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TotalPower)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Calculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoCalculatorPass)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoTab)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoCalculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DemoCalculate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SpreadCalculatorPass)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SpreadCalculate)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EstimationPass)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EstimationPassFullSums)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EstimationCalculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
