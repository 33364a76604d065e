// The clocks tab: clock cells walked into tree resources, their switching
// power by hand, the duty-cycle and oscillator rules, the static terms.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "fabric_test_util.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

// The low-power part: its clock items carry "@KZQ2-640ZE" or no device.
class ClockTab : public ::testing::Test {
  protected:
    void SetUp() override {
        dev.device = "KZQ2-640ZE";
        dev.package = "TG100";
        dev.part = "KZQ2-640ZE-1TG100C";
        project = DefaultProject();
        eng = MakeEngine(dev, project.get());
        clocks = TabTable(*eng, "Clocks", "Clocks");
        ASSERT_NE(clocks, nullptr);
    }
    int AddClock(const std::map<std::string, std::string>& cells) {
        std::map<std::string, std::string> all = {{"Clock Name", "clk"},
                                                  {"Freq. (MHz)", "100"},
                                                  {"CLKEN Duty Cycle (%)", "100"},
                                                  {"DCC", "None"}};
        for (const auto& c : cells) all[c.first] = c.second;
        return AddRow(clocks, all);
    }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
    PD_TABLE* clocks = nullptr;
};

// ---- The clock cell --------------------------------------------------------

struct Use {
    std::string item, debugName;
    double count;
};

struct WalkCase {
    const char* name;
    const char* kind;
    const char* cell;
    const char* row1;
    const char* row2;
    std::vector<Use> uses;
};

class ClockCell : public ClockTab, public ::testing::WithParamInterface<WalkCase> {};

TEST_P(ClockCell, WalksTagsIntoResources) {
    const WalkCase& c = GetParam();
    const std::string trunk = c.kind[0] == 'S' ? "SCLKTrow" : "PCLKTrow";
    const int row = AddClock({{c.kind, c.cell}, {trunk + "1", c.row1}, {trunk + "2", c.row2}});
    RowView v = ViewRow(*eng, clocks, row, "25");
    const auto uses = eng->GetClockCellResources(c.kind, v.names, v.values, false);
    ASSERT_EQ(uses.size(), c.uses.size());
    for (size_t i = 0; i < uses.size(); ++i) {
        EXPECT_EQ(uses[i].item, c.uses[i].item) << i;
        EXPECT_EQ(uses[i].debugName, c.uses[i].debugName) << i;
        EXPECT_EQ(uses[i].count, c.uses[i].count) << i;
    }
}

const char* const kDev = "KZQ2-640ZE";
std::string At(const char* item) {
    return std::string(item) + "@" + kDev;
}

INSTANTIATE_TEST_SUITE_P(
    Cells, ClockCell,
    ::testing::Values(
        WalkCase{"PrimaryTree",
                 "PCLK",
                 "t0_1_c1_6_s_3_p_83",
                 "0",
                 "0",
                 {{At("Ptrunk"), "PCLKtrunk", 1},
                  {"Pbranch", "Pbranch", 6},
                  {At("Pspine"), "PCLKspine", 3},
                  {At("Ptap"), "PCLKtap", 83}}},
        // Letters are tried t, c, f, s, p: the first in that order wins.
        WalkCase{"SeveralLetters",
                 "PCLK",
                 "sp_2_pc_4_ft_1_pf_5",
                 "0",
                 "0",
                 {{At("Pspine"), "PCLKspine", 2},
                  {"Pbranch", "Pbranch", 4},
                  {At("Ptrunk"), "PCLKtrunk", 1},
                  {At("Pfeed"), "PCLKfeed", 5}}},
        // The device's own "Stap" member, the plain "Sspine", "Sbranch" with the device.
        WalkCase{"SecondaryTree",
                 "SCLK",
                 "r1_4_c1_2_b_3_t2_1",
                 "0",
                 "0",
                 {{At("Stap"), "SCLKtap", 4},
                  {"Sspine", "SCLKspine", 2},
                  {At("Sbranch"), "SCLKbranch", 3},
                  {At("Strunk"), "SCLKtrunk", 1}}},
        // No left-right edge clocks on zn2c00; "g" only without "e".
        WalkCase{"EdgeTree",
                 "ECLK",
                 "t_1_l_2_e_3_g_4_ge_5",
                 "0",
                 "0",
                 {{At("Etb"), "ECLKTB", 1},
                  {At("Eclk"), "ECLK", 3},
                  {"FRC_BRIDGE", "FRC_BRIDGE", 4},
                  {At("Eclk"), "ECLK", 5}}},
        WalkCase{"TrunkMatchingNeitherRowIsIgnored",
                 "PCLK",
                 "t4_2_s_1",
                 "3",
                 "5",
                 {{At("Pspine"), "PCLKspine", 1}}},
        WalkCase{"TrunkMatchingTheSecondRowCounts",
                 "PCLK",
                 "t4_2_s_1",
                 "3",
                 "4",
                 {{At("Ptrunk"), "PCLKtrunk", 2}, {At("Pspine"), "PCLKspine", 1}}},
        WalkCase{"TrunkRowZeroTakesAnyTrunk",
                 "PCLK",
                 "t4_2_s_1",
                 "3",
                 "0",
                 {{At("Ptrunk"), "PCLKtrunk", 2}, {At("Pspine"), "PCLKspine", 1}}},
        WalkCase{"SecondaryTrunkRule", "SCLK", "t7_1_r1_2", "1", "2", {{At("Stap"), "SCLKtap", 2}}},
        WalkCase{
            "NoneAndADanglingTag", "PCLK", "s_2_p", "0", "0", {{At("Pspine"), "PCLKspine", 2}}},
        WalkCase{"Zero", "PCLK", "0", "0", "0", {}}),
    [](const ::testing::TestParamInfo<WalkCase>& info) { return std::string(info.param.name); });

// ---- Switching power ------------------------------------------------------------

TEST_F(ClockTab, DynamicPowerIsTheResourcesCapacitanceTimesVoltageFrequencyDuty) {
    // Two spines (1.24 pF), one secondary spine (0.8 pF), one edge clock
    // (0.9 pF) at 100 MHz, clock enabled half the time, on 1.2 V.
    const int row = AddClock(
        {{"CLKEN Duty Cycle (%)", "50"}, {"PCLK", "s_2"}, {"SCLK", "c1_1"}, {"ECLK", "e_1"}});
    eng->Calculate();
    const double current = (2 * 1.24 + 0.8 + 0.9) * 1e-12 * 1.2 * 100e6 * 0.5;
    EXPECT_NEAR(Cell(clocks, row, "Dyn. Pwr (W)"), 1.2 * current, 1e-12);
    PD_TABLE* total = TotalTable(*eng, "Clocks");
    EXPECT_NEAR(Cell(total, 0, "Total Dyn. Pwr (W)"), 1.2 * current, 1e-12);
}

TEST_F(ClockTab, IgnoredTrunkIsLoggedAndTheRestCounts) {
    const int row = AddClock({{"PCLK", "t4_2_s_1"}, {"PCLKTrow1", "3"}, {"PCLKTrow2", "5"}});
    const std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    EXPECT_NE(log.find("PCLK trunk: t4 is ignored coz doesn't match with either 3 or 5"),
              std::string::npos);
    EXPECT_NEAR(Cell(clocks, row, "Dyn. Pwr (W)"), 1.2 * 1.24e-12 * 1.2 * 100e6, 1e-12);
    EXPECT_NE(log.find("PowerDynClocks row(0) = IccDynClocks * vcc = "), std::string::npos);
}

struct GateCase {
    const char* name;
    const char* dcc;
    bool fromOscillator;
    bool switches;
};

class ClockGate : public ClockTab, public ::testing::WithParamInterface<GateCase> {};

TEST_P(ClockGate, DisabledDutyCorrectionOrOscillatorClockHasNoSwitchingPower) {
    const GateCase& c = GetParam();
    const int row = AddClock({{"Clock Name", "clk_a"}, {"DCC", c.dcc}, {"PCLK", "s_2_p_10"}});
    if (c.fromOscillator)
        AddRow(TabTable(*eng, "Misc", "Clock From OSC"), {{"Clock Name", "clk_a"}});
    eng->Calculate();
    if (c.switches)
        EXPECT_GT(Cell(clocks, row, "Dyn. Pwr (W)"), 0.0);
    else
        EXPECT_EQ(Cell(clocks, row, "Dyn. Pwr (W)"), 0.0);
    // Leakage does not care.
    EXPECT_GT(Cell(clocks, row, "Leakage VCC Pwr (W)"), 0.0);
}

INSTANTIATE_TEST_SUITE_P(Rules, ClockGate,
                         ::testing::Values(GateCase{"None", "None", false, true},
                                           GateCase{"Enabled", "Enabled", false, true},
                                           GateCase{"Disabled", "Disabled", false, false},
                                           GateCase{"FromOscillator", "None", true, false}),
                         [](const ::testing::TestParamInfo<GateCase>& info) {
                             return std::string(info.param.name);
                         });

// ---- Static terms -------------------------------------------------------------------

TEST_F(ClockTab, UsedLeakageIsTheUsedBlockRecordPerOccupiedElement) {
    const int row = AddClock({{"PCLK", "s_3_p_10"}});
    RowView v = ViewRow(*eng, clocks, row, "25");
    // 13 elements at A = 0.004 uA, B = 0.028.
    EXPECT_NEAR(eng->ProcessClocksLeakUsed("Clocks", v.names, v.values, "VCC"),
                13 * 0.004e-6 * ExpEq(0.028 * 25), 13 * 0.004e-6 * 2.1 * kEquationDigits);
}

class ClockUnused : public ClockTab {
  protected:
    RowView Unused(const char* tj) {
        RowView v;
        eng->GetArrayOfColumnUnusedNamesClock(nullptr, v.names);
        eng->GetArrayOfColumnUnusedValuesClock(nullptr, v.values);
        v["TJ"] = tj;
        return v;
    }
    double Leak(const char* tj) {
        RowView v = Unused(tj);
        return eng->ProcessClocksLeakUnused("Clocks", v.names, v.values, "VCC");
    }
};

TEST_F(ClockUnused, EmptyTableLeavesTheWholeTreeFree) {
    RowView v = Unused("25");
    EXPECT_EQ(v["Pspine_unused"], "4.0");
    EXPECT_EQ(v["Ptap_unused"], "160.0");
    EXPECT_EQ(v["Sbranch_unused"], "8.0");
    EXPECT_EQ(v["PCLK_unused"], "8.0");
    EXPECT_EQ(v["ECLK_unused"], "2.0");
    eng->Calculate();
    PD_TABLE* total = TotalTable(*eng, "Clocks");
    const double unused = Cell(total, 0, "Unused Leakage VCC Pwr (W)");
    EXPECT_GT(unused, 0.0);
    EXPECT_NEAR(Cell(total, 0, "Total Pwr (W)"),
                unused + Cell(total, 0, "Unused DCbias VCC Pwr (W)"), 1e-12);
}

TEST_F(ClockUnused, OccupiedResourcesLeaveTheFreeCountsAndTheirLeakage) {
    const double before = Leak("25");
    AddClock({{"PCLK", "s_3"}});
    RowView v = Unused("25");
    EXPECT_EQ(v["Pspine_unused"], "1.0");
    EXPECT_EQ(v["PCLK_unused"], "7.0");
    // Three spines at 20000 pA (read on the scale of C) and one clock net's
    // free record of 0.25 uA, all at B = 0.028.
    const double freed = (3 * 20000e-12 + 0.25e-6) * ExpEq(0.028 * 25);
    EXPECT_NEAR(before - Leak("25"), freed, before * kEquationDigits);
}

TEST_F(ClockUnused, LeakageGrowsWithTemperature) {
    AddClock({{"PCLK", "s_1_p_4"}});
    // Every clock coefficient of the low-power part has B = 0.028.
    EXPECT_NEAR(Leak("85") / Leak("25"), ExpEq(0.028 * 60), 5.4 * 2 * kEquationDigits);
}

TEST_F(ClockUnused, BiasCountsPerFreeElementAndPerOccupiedElement) {
    // The sample clock tree draws no bias: give a spine and the used record one.
    auto* tree = dynamic_cast<PD_PWRSECT*>(eng->GetPwrData()->GetSection("Clocks"));
    ASSERT_NE(tree, nullptr);
    PD_COEF spine = *tree->GetABCD(At("Pspine").c_str(), "VCC");
    spine.D = "0.5";
    tree->SetCoef(At("Pspine").c_str(), "VCC", spine);
    tree->Blocks("VCC")->used.D = "0.01";
    const int row = AddClock({{"PCLK", "s_3_p_2"}});
    RowView used = ViewRow(*eng, clocks, row, "25");
    EXPECT_NEAR(eng->ProcessClocksBiasUsed("Clocks", used.names, used.values, "VCC"), 5 * 0.01e-3,
                1e-15);
    RowView v = Unused("25");
    EXPECT_NEAR(eng->ProcessClocksBiasUnused("Clocks", v.names, v.values, "VCC"), 1 * 0.5e-3,
                1e-15);
    EXPECT_DOUBLE_EQ(eng->ProcessFormulaBiasUnusedVcc("Clocks", v.names, v.values),
                     eng->ProcessClocksBiasUnused("Clocks", v.names, v.values, "VCC"));
}

}  // namespace
