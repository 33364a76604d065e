// Load speed of the two file forms on a generated data file of about 5 MB.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "pd_data.h"

namespace {

std::string Number(unsigned& seed) {
    seed = seed * 1103515245u + 12345u;
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", (seed >> 8) % 100000 / 997.0);
    return text;
}

// A mix like device data: many small key sections (equations), tables of a few
// thousand rows, and power sections with many members.
PD_DATA* Generate() {
    auto* data = new PD_DATA;
    unsigned seed = 7;
    for (int s = 0; s < 1000; ++s) {
        auto* k = new PD_KEYSECT(("Block " + std::to_string(s)).c_str());
        k->AddKeyVal("_SECTION", "LUT, REG, RAM, Carry Chain");
        for (int i = 0; i < 20; ++i)
            k->AddKeyVal(("_ICCdyn_" + std::to_string(i)).c_str(),
                         ("C * V * Freq * AF / 100 * " + Number(seed) + " + A * exp(B * (TJ - 25))")
                             .c_str());
        data->AddSection(k);
    }
    for (int s = 0; s < 14; ++s) {
        auto* t = new PD_TBLSECT(("Theta " + std::to_string(s)).c_str());
        t->SetTableHeader("Device_Package, Grade, Theta JA, Theta JB, Theta JC, Airflow, Note");
        for (int r = 0; r < 3000; ++r) {
            PD_TABLE::Row row(7);
            row[0].text = "KZQ2-" + std::to_string(r % 97) + "HC_SG" + std::to_string(r % 11);
            row[1].text = std::to_string(r % 3 + 6);
            for (int c = 2; c < 6; ++c) row[c].text = Number(seed);
            row[6].text = r % 5 ? "" : "see note, \"B\"";
            t->rows.push_back(row);
        }
        data->AddSection(t);
    }
    for (int s = 0; s < 20; ++s) {
        auto* p = new PD_PWRSECT(("PWR " + std::to_string(s)).c_str());
        for (const char* v : {"VCC", "VCCAUX", "VCCIO", "VCCPG"}) p->AddSupply(v);
        for (int m = 0; m < 150; ++m) {
            for (const std::string& v : p->supplies) {
                PD_COEF c;
                for (char l = 'A'; l <= 'J'; ++l)
                    *c.Letter(l) = l < 'E' || m % 3 == 0 ? Number(seed) : "null";
                p->SetCoef(("M" + std::to_string(m) + "@KZQ2-" + std::to_string(m % 7)).c_str(),
                           v.c_str(), c);
            }
        }
        data->AddSection(p);
    }
    return data;
}

struct Files {
    std::string text, binary;
    std::size_t textBytes = 0, binaryBytes = 0;
    Files() {
        const std::string stem = "/tmp/pwc_bench_data_" + std::to_string(getpid());
        text = stem + ".pwr";
        binary = stem + ".bin";
        PD_DATA* data = Generate();
        data->SaveTxtFile(text.c_str());
        data->SaveBinFile(binary.c_str());
        textBytes = data->ToText().size();
        binaryBytes = data->ToBinary().size();
        delete data;
    }
    ~Files() {
        std::remove(text.c_str());
        std::remove(binary.c_str());
    }
};

const Files& TheFiles() {
    static const Files files;
    return files;
}

void BM_LoadTxtFile(benchmark::State& state) {
    const Files& f = TheFiles();
    for (auto _ : state) {
        PD_DATA d;
        if (!d.LoadTxtFile(f.text.c_str())) state.SkipWithError("text load failed");
        benchmark::DoNotOptimize(d.GetNumOfSections());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.textBytes));
    state.counters["file_MB"] = f.textBytes / 1e6;
}

void BM_LoadBinFile(benchmark::State& state) {
    const Files& f = TheFiles();
    for (auto _ : state) {
        PD_DATA d;
        if (!d.LoadBinFile(f.binary.c_str())) state.SkipWithError("binary load failed");
        benchmark::DoNotOptimize(d.GetNumOfSections());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.binaryBytes));
    state.counters["file_MB"] = f.binaryBytes / 1e6;
}

}  // namespace

BENCHMARK(BM_LoadTxtFile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadBinFile)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
