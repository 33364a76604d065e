#include "designs.h"

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace pwcbench {

std::string DataDir() {
    return std::string(PWC_BENCH_DATA_DIR);
}

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
        logic->AddRow(std::vector<std::string>(std::begin(cells), std::end(cells)));
    }
}

void IoRows(PD_DATA& project, int rows) {
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
    for (int r = 0; r < rows; ++r) {
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

// Logic 40 %, I/O and termination 39 %, clocks 5 %, block RAM 12 %, PLLs 1 %,
// clock dividers 3 %; the embedded function block's tables keep their one
// row each.
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

const std::vector<DesignKind>& DesignKinds() {
    static const std::vector<DesignKind> kinds = {
        {"logic", LogicRows}, {"io", IoRows}, {"mixed", SpreadRows}};
    return kinds;
}

const DesignKind* FindDesign(const std::string& name) {
    for (const DesignKind& k : DesignKinds())
        if (name == k.name) return &k;
    return nullptr;
}

namespace {

std::unique_ptr<PD_DATA> Load(const std::string& path) {
    auto data = std::make_unique<PD_DATA>();
    if (!data->LoadTxtFile(path.c_str())) throw std::runtime_error("cannot load " + path);
    return data;
}

std::string Key(const PD_DATA& data, const char* section, const char* key) {
    const auto* keys = dynamic_cast<const PD_KEYSECT*>(data.GetSection(section));
    const char* value = keys ? keys->GetValue(key) : nullptr;
    return value ? value : "";
}

// The demo's device, as the engine's constructor takes it.
const char* const kDemoDevice[7] = {"zn2c00", "Quenra2",    "KZQ2-1200HC", "CABGA256",
                                    "2",      "Commercial", "KZQ2-1200HC"};

void Quiet() {
    setenv("PWC_DATA_DIR", (DataDir() + "/devices").c_str(), 1);
    static std::FILE* devNull = std::fopen("/dev/null", "w");
    PD_UTIL::SetRunLog(devNull);
}

}  // namespace

Engine Engine::OnDemo(const std::function<void(PD_DATA&)>& edit, const std::string& calcLog) {
    Quiet();
    Engine e;
    e.project = Load(DataDir() + "/projects/demo.pcf");
    edit(*e.project);
    e.eng = std::make_unique<PC_ENG>(const_cast<char**>(kDemoDevice), e.project.get(),
                                     "Calculation", false, "", "", "", "", "", "", nullptr, nullptr,
                                     nullptr, "", false, "", calcLog);
    return e;
}

Engine Engine::OnProject(const std::string& path, const std::string& calcLog) {
    Quiet();
    Engine e;
    e.project = Load(path);
    const std::string family = Key(*e.project, "Project", "Family");
    std::string speed = Key(*e.project, "Project", "Speed");
    if (speed.empty()) {
        speed = Key(*e.project, "Project", "Performance");
        if (!speed.empty() && speed[0] == '-') speed.erase(0, 1);
    }
    std::string arch = Key(*Load(DataDir() + "/devices/catalog"), "Families", family.c_str());
    if (arch.empty()) arch = family;
    std::string strings[7] = {arch,
                              family,
                              Key(*e.project, "Project", "Device"),
                              Key(*e.project, "Project", "Package"),
                              speed,
                              Key(*e.project, "Project", "Operating"),
                              Key(*e.project, "Project", "PartName")};
    char* array[7];
    for (int i = 0; i < 7; ++i) array[i] = &strings[i][0];
    // The firmware-resilience ports lie beside the project: "<stem>_icc.pio".
    std::string stem = path.substr(path.find_last_of('/') + 1);
    stem = stem.substr(0, stem.rfind('.'));
    e.eng = std::make_unique<PC_ENG>(array, e.project.get(), "Calculation", false, "", stem, path,
                                     "", "", "", nullptr, nullptr, nullptr, "", false, "", calcLog);
    return e;
}

bool EstimationOn(Engine& e, const std::string& level) {
    if (!level.empty() && !e.eng->SetEstimationMode(level)) return false;
    // No family change (hence false): only the estimation flag is taken.
    e.eng->SetFamilySwitching(const_cast<char**>(kDemoDevice), e.project.get(), "Calculation", "",
                              "", "", "", nullptr, nullptr, nullptr, true);
    return true;
}

double PeakRssMB() {
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0;
}

}  // namespace pwcbench
