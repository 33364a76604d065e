// Every tab's block total, its supplies and the summary add up, on every
// sample device with the demo design on it.
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "engine_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

double Num(const std::string& s) {
    return std::strtod(s.c_str(), nullptr);
}

struct Device {
    const char* arch;
    const char* device;
    const char* package;
};

std::ostream& operator<<(std::ostream& os, const Device& d) {
    return os << d.arch << "/" << d.device << "/" << d.package;
}

// The rounding of each cell to six places.
constexpr double kCell = 1.5e-6;

// The tabs of a "Block" row.
std::vector<std::string> TabsOf(const std::string& row) {
    if (row == "I/O") return {"I/O", "I/O Term"};
    if (row == "Other") return {"Misc"};
    return {row};
}

// Block rows written only when the device has the block, by their key.
const std::map<std::string, std::string> kOwnedBy = {{"Block RAM", "EBR"}, {"PLL", "PLL"},
                                                     {"SERDES", "PCS"},    {"DLL", "DLL"},
                                                     {"DQSDLL", "DQSDLL"}, {"DDRDLL", "DDRDLL"}};

class EveryTabAddsUp : public ::testing::TestWithParam<Device> {
  protected:
    void SetUp() override {
        dev.arch = GetParam().arch;
        dev.device = GetParam().device;
        dev.package = GetParam().package;
        dev.part = dev.device;
        project = LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
        eng = MakeEngine(dev, project.get());
        eng->Calculate();
    }
    // A tab's own total, as its last table holds it.
    double TabTotal(const std::string& panel) {
        PC_PANEL* p = eng->GetPanel(eng->GetPanelIndex(panel));
        if (!p || p->GetNumOfTables() == 0) return 0.0;
        PD_TABLE* total = p->GetTable(p->GetNumOfTables() - 1);
        return Num(total->GetValueAt(0, total->GetColumnIndex("Total Pwr (W)")));
    }
    double TabsTotal(const std::string& row) {
        double watts = 0.0;
        for (const std::string& panel : TabsOf(row)) watts += TabTotal(panel);
        return watts;
    }
    bool Owned(const std::string& row) {
        auto key = kOwnedBy.find(row);
        return key == kOwnedBy.end() || eng->DeviceHas(key->second) != 0.0;
    }
    // What the tabs of blocks the device lacks draw: their "Block" rows stay
    // 0 by rule, while their supplies still count it.
    double Unowned() {
        double watts = 0.0;
        for (const auto& owned : kOwnedBy)
            if (!Owned(owned.first)) watts += TabTotal(owned.first);
        return watts;
    }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_P(EveryTabAddsUp, EachBlockRowIsItsTabsTotal) {
    PD_TABLE* block = eng->GetBlockTable();
    ASSERT_NE(block, nullptr);
    double sum = 0.0;
    int calculated = 0;
    for (int r = 0; r + 1 < block->GetNumOfRows(); ++r) {
        const std::string name = block->GetValueAt(r, 0);
        const double value = Num(block->GetValueAt(r, 1));
        sum += value;
        EXPECT_NEAR(value, Owned(name) ? TabsTotal(name) : 0.0, 2 * kCell) << name;
        if (value > 0.0) ++calculated;
    }
    // Logic, clocks, I/O and the always-on parts at least.
    EXPECT_GE(calculated, 4);
    EXPECT_STREQ(block->GetValueAt(block->GetNumOfRows() - 1, 0), "Total");
    EXPECT_NEAR(Num(eng->GetTotalPower()), sum, block->GetNumOfRows() * kCell);
}

TEST_P(EveryTabAddsUp, SuppliesAddUpToTheBlocks) {
    PD_TABLE* vdpm = eng->GetSupplyTable();
    PD_TABLE* power = eng->GetPowerTable();
    PD_TABLE* current = eng->GetCurrentTable();
    const int supplies = vdpm->GetNumOfRows();
    double sum = 0.0;
    for (int r = 0; r < supplies; ++r) {
        const std::string name = vdpm->GetValueAt(r, 0);
        const double total = Num(power->GetValueAt(r, 2));
        EXPECT_NEAR(total, Num(power->GetValueAt(r, 0)) + Num(power->GetValueAt(r, 1)), 2 * kCell)
            << name;
        // Dynamic Vtt currents are all taken at the voltage of "Vtt 1.65".
        const double volts = Num(vdpm->GetValueAt(r, 1));
        if (volts > 0.0 && name.rfind("Vtt", 0) != 0) {
            EXPECT_NEAR(Num(current->GetValueAt(r, 2)), total / volts, 3 * kCell / volts) << name;
        }
        sum += total;
    }
    const double grand = Num(power->GetValueAt(supplies, 2));
    EXPECT_NEAR(grand, sum, supplies * kCell);
    // Every watt of every tab lands on a supply of the summary, those of a
    // block the device lacks included.
    EXPECT_NEAR(grand, Num(eng->GetTotalPower()) + Unowned(), (supplies + 12) * kCell);
}

// The supply-by-block matrix says the same per block: its "Total" row holds
// each tab's watts over all supplies.
TEST_P(EveryTabAddsUp, ThePowerMatrixAgreesWithTheTabs) {
    PD_TABLE* block = eng->GetBlockTable();
    PD_TABLE* matrix = eng->GetPowerMatrix();
    ASSERT_NE(matrix, nullptr);
    for (int r = 0; r + 1 < block->GetNumOfRows(); ++r) {
        const std::string name = block->GetValueAt(r, 0);
        if (matrix->GetColumnIndex(name.c_str()) < 0) continue;
        EXPECT_NEAR(eng->GetStaTable("Total", name, matrix), TabsTotal(name), 20 * kCell) << name;
    }
}

std::string DeviceName(const ::testing::TestParamInfo<Device>& info) {
    std::string name =
        std::string(info.param.arch) + "_" + info.param.device + "_" + info.param.package;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Devices, EveryTabAddsUp,
                         ::testing::Values(Device{"zn2c00", "KZQ2-1200HC", "CABGA256"},
                                           Device{"zn2c00", "KZQ2-1200UHC", "CABGA256"},
                                           Device{"zn2c00", "KZQ2-640ZE", "TG144"},
                                           Device{"zn2c00", "KZQ2-256HC", "TG100"},
                                           Device{"zn2c00a", "KZQ2-1200HC", "TG144"}),
                         DeviceName);

}  // namespace
