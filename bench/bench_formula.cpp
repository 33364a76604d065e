// The current models on one row of the sample logic tab (KZQ2-1200HC), with the
// calculation log closed: time per GetIccDyn and GetIccLeak, the evaluator
// alone on the same substituted equation (the difference is the models' own
// share), and a whole logic row as the tab calculator asks for it.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "baspcengin.h"
#include "baspclator/pc_lator.h"
#include "pd_util.h"

namespace {

using Row = std::vector<std::string>;

struct Fixture {
    Fixture() {
        setenv("PWC_DATA_DIR", PWC_BENCH_DATA_DIR "/devices", 1);
        std::string strings[7] = {"zn2c00", "Quenra2",    "KZQ2-1200HC",           "CABGA256",
                                  "2",      "Commercial", "KZQ2-1200HC-2CABGA256C"};
        char* device[7];
        for (int i = 0; i < 7; ++i) device[i] = &strings[i][0];
        project.LoadTxtFile(PWC_BENCH_DATA_DIR "/devices/zn2c00.pcf");
        eng = std::make_unique<PC_ENG>(device, &project, "Calculation", false, "", "", "", "", "",
                                       "", nullptr, nullptr, nullptr, "", false, "", "");
        PC_PANEL* panel = eng->GetPanel(eng->GetPanelIndex("Logic Block"));
        PD_TABLE* logic = panel->GetTable(panel->GetTableIndex("Logic"));
        Row cells(logic->GetNumOfColumns(), "0");
        auto set = [&](const char* column, const char* value) {
            cells[logic->GetColumnIndex(column)] = value;
        };
        set("Clock Name", "clk_main");
        set("# Logic LUTs", "800");
        set("# Registers", "600");
        set("# Dist. RAM", "16");
        set("# Ripple Slices", "40");
        set("# X0", "900");
        set("# X1", "700");
        set("# X2", "300");
        set("# X6", "80");
        set("# ISB", "1500");
        set("# ISBCLK", "600");
        set("Freq. (MHz)", "48");
        set("AF (%)", "12.5");
        logic->AddRow(cells);
        names = eng->GetArrayOfColumnNames(logic, nullptr);
        values = eng->GetArrayOfColumnValues(logic, logic->GetNumOfRows() - 1, nullptr);
        eng->ResetConstants();
        eng->InitConstants(names, values);
    }
    PD_DATA project;
    std::unique_ptr<PC_ENG> eng;
    Row names, values;
};

Fixture& Shared() {
    static Fixture f;
    return f;
}

void BM_GetIccDyn(benchmark::State& state) {
    Fixture& f = Shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(f.eng->GetIccDyn("Logic Block", "SLICE", "REG_used", "REG",
                                                  "REG_used", "VCC", f.names, f.values));
}
BENCHMARK(BM_GetIccDyn);

void BM_GetIccLeak(benchmark::State& state) {
    Fixture& f = Shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(f.eng->GetIccLeak("Logic Block", "SLICE", "LUT_used", "LUT",
                                                   "LUT_used", "VCC", f.names, f.values));
}
BENCHMARK(BM_GetIccLeak);

// The evaluator alone on the equations above with the values the models bind
// (the same print formats: coefficients "%.20lf", counts "%.2lf").
void BM_EvaluatorDyn(benchmark::State& state) {
    const std::string formula = "_C_COMP_used * _SUPPLY * F * AF * _COMP * _DPM";
    const Row vars = {"_C_COMP_used", "_SUPPLY", "F", "AF", "_COMP", "_DPM"};
    const Row vals = {"0.00000000000001575000", "1.20",   "48000000.00000000000000000000",
                      "0.12500000000000000000", "600.00", "1.00"};
    std::string trace;
    for (auto _ : state)
        benchmark::DoNotOptimize(PC_LATOR::ProcessCalculator(formula, trace, vars, vals, 6));
}
BENCHMARK(BM_EvaluatorDyn);

void BM_EvaluatorLeak(benchmark::State& state) {
    const std::string formula =
        "_Ksupply * _ProcessX * _A_COMP_used * e^(_B_COMP_used * T) * _COMP_used";
    const Row vars = {"_Ksupply",     "_ProcessX", "_A_COMP_used", "e",
                      "_B_COMP_used", "T",         "_COMP_used"};
    const Row vals = {"1.00000000000000000000",
                      "1.00",
                      "0.00000001560000000000",
                      "2.718282",
                      "0.03000000000000000062",
                      "25.00000000000000000000",
                      "800.00"};
    std::string trace;
    for (auto _ : state)
        benchmark::DoNotOptimize(PC_LATOR::ProcessCalculator(formula, trace, vars, vals, 7));
}
BENCHMARK(BM_EvaluatorLeak);

// What the logic tab asks per row and supply: dynamic, used leakage and used
// bias with their routing terms (about thirty equations).
void BM_LogicRowVcc(benchmark::State& state) {
    Fixture& f = Shared();
    for (auto _ : state) {
        double sum = f.eng->ProcessLogicDynVcc("Logic Block", f.names, f.values, "VCC");
        sum += f.eng->ProcessLogicLeakUsedVcc("Logic Block", f.names, f.values, "VCC");
        sum += f.eng->ProcessLogicBiasUsedVcc("Logic Block", f.names, f.values, "VCC");
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_LogicRowVcc);

}  // namespace

BENCHMARK_MAIN();
