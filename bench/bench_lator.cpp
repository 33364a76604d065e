// ProcessCalculator on the engine's two most frequent kinds of equation, with
// values in the engine's print formats. Reports heap allocations per evaluation.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "baspclator/pc_lator.h"

namespace {
std::size_t allocations = 0;
}

// Out of line, so that the compiler does not pair the free() below with a
// new-expression of the caller.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
    return operator new(size);
}
[[gnu::noinline]] void operator delete(void* p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void* p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

namespace {

struct Row {
    std::vector<std::string> names, values;
    std::vector<const char*> namePtrs, valuePtrs;
};

// About thirty columns as a table row offers them; the formula's names are
// spread among them, the last ones near the end.
Row MakeRow() {
    Row row;
    const char* pairs[][2] = {
        {"Block", "LUT4"},
        {"Count", "1200"},
        {"_Ksupply", "1.00000000000000000000"},
        {"Freq. (MHz)", "50.00"},
        {"_C_COMP_used", "0.00000000000312000000"},
        {"AF (%)", "12.50"},
        {"Clock", "clk_main"},
        {"_SUPPLY", "1.20"},
        {"Device", "KT-100"},
        {"archName", "kt7g00"},
        {"_ProcessX", "1.15000000000000000000"},
        {"Dist RAM", "0"},
        {"Ripple", "0"},
        {"F", "50000000.00000000000000000000"},
        {"_A_COMP_used", "0.00001230000000000000"},
        {"Clock Enable", "100.00"},
        {"Reset", "0"},
        {"_B_COMP_used", "0.02150000000000000000"},
        {"Fanout", "3.00"},
        {"_Kvcc", "0.97000000000000000000"},
        {"_Route", "0.40000000000000000000"},
        {"VCCAUX", "2.50"},
        {"VCCIO", "3.30"},
        {"AF", "0.12500000000000000000"},
        {"T", "85.00"},
        {"_Fanout", "3.00"},
        {"_COMP", "1200.00"},
        {"_COMP_used", "1200.00"},
        {"e", "2.718282"},
        {"_DPM", "1.00"},
    };
    for (const auto& pair : pairs) {
        row.names.emplace_back(pair[0]);
        row.values.emplace_back(pair[1]);
    }
    for (std::size_t i = 0; i < row.names.size(); ++i) {
        row.namePtrs.push_back(row.names[i].c_str());
        row.valuePtrs.push_back(row.values[i].c_str());
    }
    return row;
}

const std::string kDynamic = "_C_COMP_used*_SUPPLY*F*AF*_COMP*_DPM";
const std::string kDynamicTen =
    "_C_COMP_used*_SUPPLY*F*AF*_COMP*_DPM*_Kvcc*_ProcessX*(1+_Route*_Fanout)";
const std::string kLeakage = "_Ksupply*_ProcessX*_A_COMP_used*e^(_B_COMP_used*T)*_COMP_used";

template <bool kVectors>
void Evaluate(benchmark::State& state, const std::string& formula) {
    const Row row = MakeRow();
    const int count = static_cast<int>(row.names.size());
    std::string trace;
    trace.reserve(512);
    const std::size_t before = allocations;
    for (auto _ : state) {
        const double result =
            kVectors ? PC_LATOR::ProcessCalculator(formula, trace, row.names, row.values, count)
                     : PC_LATOR::ProcessCalculator(formula, trace, row.namePtrs.data(),
                                                   row.valuePtrs.data(), count);
        benchmark::DoNotOptimize(result);
        benchmark::DoNotOptimize(trace.data());
    }
    state.counters["allocs/eval"] = benchmark::Counter(static_cast<double>(allocations - before),
                                                       benchmark::Counter::kAvgIterations);
    state.SetLabel(trace);
}

void BM_DynamicVector(benchmark::State& state) {
    Evaluate<true>(state, kDynamic);
}
void BM_DynamicArrays(benchmark::State& state) {
    Evaluate<false>(state, kDynamic);
}
void BM_DynamicTenNamesVector(benchmark::State& state) {
    Evaluate<true>(state, kDynamicTen);
}
void BM_LeakageVector(benchmark::State& state) {
    Evaluate<true>(state, kLeakage);
}
void BM_LeakageArrays(benchmark::State& state) {
    Evaluate<false>(state, kLeakage);
}

BENCHMARK(BM_DynamicVector);
BENCHMARK(BM_DynamicArrays);
BENCHMARK(BM_DynamicTenNamesVector);
BENCHMARK(BM_LeakageVector);
BENCHMARK(BM_LeakageArrays);

}  // namespace

BENCHMARK_MAIN();
