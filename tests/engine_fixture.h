// Building engines on the bundled sample devices.
#ifndef PWC_TESTS_ENGINE_FIXTURE_H
#define PWC_TESTS_ENGINE_FIXTURE_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "baspcengin.h"
#include "pd_util.h"

namespace pwctest {

struct DeviceStrings {
    std::string arch = "zn2c00";
    std::string family = "Quenra2";
    std::string device = "KZQ2-1200HC";
    std::string package = "CABGA256";
    std::string speed = "2";
    std::string operating = "Commercial";
    std::string part = "KZQ2-1200HC-2CABGA256C";

    // The seven texts as the constructor takes them; valid while *this lives.
    char** Array() {
        ptrs[0] = &arch[0];
        ptrs[1] = &family[0];
        ptrs[2] = &device[0];
        ptrs[3] = &package[0];
        ptrs[4] = &speed[0];
        ptrs[5] = &operating[0];
        ptrs[6] = &part[0];
        return ptrs;
    }
    char* ptrs[7] = {};
};

inline std::string DevicesDir() {
    return std::string(PWC_TEST_DATA_DIR) + "/devices";
}

// A project loaded from a file of the sample data.
inline std::unique_ptr<PD_DATA> LoadProject(const std::string& path) {
    auto data = std::make_unique<PD_DATA>();
    EXPECT_TRUE(data->LoadTxtFile(path.c_str())) << path;
    return data;
}

inline std::unique_ptr<PD_DATA> DefaultProject(const std::string& arch = "zn2c00") {
    return LoadProject(DevicesDir() + "/" + arch + ".pcf");
}

inline std::unique_ptr<PC_ENG> MakeEngine(DeviceStrings& d, PD_DATA* project,
                                          const std::string& oldFamily = "") {
    return std::make_unique<PC_ENG>(d.Array(), project, "Calculation", false, "", "", "", "", "",
                                    "", nullptr, nullptr, nullptr, oldFamily, false, "", "");
}

// Runs f with the calculation log open on a fresh file; what f logged.
template <class F>
std::string CaptureCalcLog(F f) {
    static int count = 0;
    // The process id keeps test binaries that run side by side apart.
    const std::string path = ::testing::TempDir() + "pwc_calc_log_" + std::to_string(getpid()) +
                             "_" + std::to_string(++count) + ".txt";
    std::remove(path.c_str());
    PD_UTIL::DebugMode(3, path);
    f();
    PD_UTIL::DebugMode(0, "0");
    std::ifstream in(path);
    std::stringstream all;
    all << in.rdbuf();
    in.close();
    std::remove(path.c_str());
    return all.str();
}

inline double Num(const std::string& s) {
    return std::strtod(s.c_str(), nullptr);
}

// A table of a tab by name (null: its table 0), and the tab's total table.
inline PD_TABLE* TabTable(PC_ENG& eng, const std::string& panel, const char* table) {
    PC_PANEL* p = eng.GetPanel(eng.GetPanelIndex(panel));
    if (!p) return nullptr;
    return table ? p->GetTable(p->GetTableIndex(table)) : p->GetTable(0);
}
inline PD_TABLE* TotalTable(PC_ENG& eng, const std::string& panel) {
    PC_PANEL* p = eng.GetPanel(eng.GetPanelIndex(panel));
    return p ? p->GetTable(p->GetNumOfTables() - 1) : nullptr;
}

// Appends a row of "0" cells with the given ones set; its index.
inline int AddRow(PD_TABLE* t, const std::map<std::string, std::string>& cells) {
    std::vector<std::string> row(t->GetNumOfColumns(), "0");
    for (const auto& [column, value] : cells) {
        const int c = t->GetColumnIndex(column.c_str());
        EXPECT_GE(c, 0) << column;
        if (c >= 0) row[c] = value;
    }
    t->AddRow(row);
    return t->GetNumOfRows() - 1;
}

// The category-supply sample part.
inline DeviceStrings Dunmar() {
    DeviceStrings d;
    d.arch = "wd7r00";
    d.family = "Dunmar";
    d.device = "WRD-1200R";
    d.package = "CABGA256";
    d.speed = "2";
    d.part = "WRD-1200R";
    return d;
}

// A block's watts in the "Block" table, and a supply's static (0) or
// dynamic (1) watts in the "Power" table.
inline double BlockRow(PC_ENG& eng, const std::string& block) {
    PD_TABLE* t = eng.GetBlockTable();
    return Num(t->GetValueAt(t->GetRowNumber(block), 1));
}
inline double PowerRow(PC_ENG& eng, const std::string& supply, int column) {
    const int row = eng.GetSupplyTable()->GetRowNumber(supply);
    EXPECT_GE(row, 0) << supply;
    return Num(eng.GetPowerTable()->GetValueAt(row, column));
}

// The full value behind a (possibly rounded) cell; 0 for an absent column.
inline double Cell(PD_TABLE* t, int row, const std::string& column) {
    const int c = t->GetColumnIndex(column.c_str());
    return c < 0 ? 0.0 : Num(t->GetNoRoundValueAt(row, c));
}

// A folder of the test's own, removed with everything in it when it goes.
class ScratchDir {
  public:
    explicit ScratchDir(const std::string& name)
        : path_(std::filesystem::path(::testing::TempDir()) /
                (name + "_" + std::to_string(getpid()))) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~ScratchDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::string File(const std::string& leaf) const { return (path_ / leaf).string(); }

  private:
    std::filesystem::path path_;
};

// Points the data directory at the sample devices for every test.
class SampleDataEnvironment : public ::testing::Environment {
  public:
    void SetUp() override { setenv("PWC_DATA_DIR", DevicesDir().c_str(), 1); }
};

}  // namespace pwctest

#endif
