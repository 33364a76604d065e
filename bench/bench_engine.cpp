// Whole-engine timings on the demo and on generated designs (logic rows, I/O
// rows, rows spread over every tab): one pass over the tabs (Calculator), the
// fold into the summary (CalculateTotalPower), and a whole Calculate with its
// temperature loop; and `pwc calc` on the demo as a process of its own. The
// calculation log stays closed.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "designs.h"

extern char** environ;

namespace {

using pwcbench::Engine;

Engine Logic(const benchmark::State& state) {
    return Engine::OnDemo(
        [&](PD_DATA& p) { pwcbench::LogicRows(p, static_cast<int>(state.range(0))); });
}
Engine Io(const benchmark::State& state) {
    return Engine::OnDemo(
        [&](PD_DATA& p) { pwcbench::IoRows(p, static_cast<int>(state.range(0))); });
}
Engine Spread(const benchmark::State& state) {
    return Engine::OnDemo(
        [&](PD_DATA& p) { pwcbench::SpreadRows(p, static_cast<int>(state.range(0))); });
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
    state.counters["peak_rss_MB"] = pwcbench::PeakRssMB();
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
    Engine e = Engine::OnDemo([](PD_DATA&) {});
    for (auto _ : state) e.eng->Calculate();
    state.counters["passes"] = e.eng->GetIterationCount();
}

// `pwc calc` on the demo: spawning the built command (no shell) and waiting
// for it, output dropped. Wall time.
void BM_PwcCalcProcess(benchmark::State& state) {
    const std::string pwc = PWC_BENCH_PWC;
    if (pwc.empty() || access(pwc.c_str(), X_OK) != 0) {
        state.SkipWithError("the pwc command is not built");
        return;
    }
    const std::string project = pwcbench::DataDir() + "/projects/demo.pcf";
    setenv("PWC_DATA_DIR", (pwcbench::DataDir() + "/devices").c_str(), 1);
    const char* argv[] = {pwc.c_str(), "calc", project.c_str(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    for (auto _ : state) {
        pid_t pid = 0;
        int status = 0;
        if (posix_spawn(&pid, pwc.c_str(), &actions, nullptr, const_cast<char**>(argv), environ) !=
                0 ||
            waitpid(pid, &status, 0) != pid || !WIFEXITED(status) ||
            (WEXITSTATUS(status) != 0 && WEXITSTATUS(status) != 3)) {
            state.SkipWithError("pwc calc failed");
            break;
        }
    }
    posix_spawn_file_actions_destroy(&actions);
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
    pwcbench::EstimationOn(e);
    int passes = 0;
    for (auto _ : state) {
        e.eng->Calculate();
        passes = e.eng->GetIterationCount();
    }
    state.counters["passes"] = passes;
}

BENCHMARK(BM_CalculatorPass)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TotalPower)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Calculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoCalculatorPass)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoTab)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IoCalculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DemoCalculate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PwcCalcProcess)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SpreadCalculatorPass)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SpreadCalculate)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EstimationPass)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EstimationPassFullSums)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EstimationCalculate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
