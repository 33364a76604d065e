// The logic tab's powers against hand computations, the summary totals, and
// the junction temperature loop.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "engine_fixture.h"
#include "pc_settling.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

double Num(const char* s) {
    return std::strtod(s, nullptr);
}

PD_TABLE* LogicRows(PC_ENG& eng) {
    return eng.GetPanel(eng.GetPanelIndex("Logic Block"))->GetTable(0);
}
PD_TABLE* LogicTotal(PC_ENG& eng) {
    return eng.GetPanel(eng.GetPanelIndex("Logic Block"))->GetTable(1);
}

// A project on the plain (non-hp) device with one logic row of LUTs only.
class OneLogicRow : public ::testing::Test {
  protected:
    void SetUp() override {
        dev.device = "KZQ2-640ZE";
        dev.package = "TG100";
        project = DefaultProject();
        eng = MakeEngine(dev, project.get());
        rows = LogicRows(*eng);
        std::vector<std::string> cells(rows->GetNumOfColumns(), "0");
        cells[rows->GetColumnIndex("Module Name")] = "m";
        cells[rows->GetColumnIndex("Clock Name")] = "clk";
        cells[rows->GetColumnIndex("# Logic LUTs")] = "1000";
        cells[rows->GetColumnIndex("Freq. (MHz)")] = "100";
        cells[rows->GetColumnIndex("AF (%)")] = "20";
        rows->AddRow(cells);
    }
    // The full value behind the rounded cell.
    double Cell(const char* column) {
        return Num(rows->GetNoRoundValueAt(rows->GetNumOfRows() - 1, rows->GetColumnIndex(column))
                       .c_str());
    }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
    PD_TABLE* rows = nullptr;
};

TEST_F(OneLogicRow, DynamicPowerIsCapacitanceVoltageFrequencyActivity) {
    eng->Calculate();
    // LUTs toggle on one clock edge: F/2. C 0.025 pF, V 1.2, 100 MHz, 20 %,
    // 1000 LUTs, DPM 1, then times the core voltage for watts.
    const double current = 0.025e-12 * 1.2 * (100e6 / 2) * 0.20 * 1000 * 1.0;
    EXPECT_NEAR(Cell("Dyn. VCC Pwr (W)"), 1.2 * current, 1e-9);
    EXPECT_DOUBLE_EQ(Cell("Dyn. Pwr (W)"), Cell("Dyn. VCC Pwr (W)"));

    // Doubling the frequency doubles the dynamic power.
    const double before = Cell("Dyn. VCC Pwr (W)");
    rows->SetValueAt("200", rows->GetNumOfRows() - 1, rows->GetColumnIndex("Freq. (MHz)"));
    eng->Calculate();
    EXPECT_NEAR(Cell("Dyn. VCC Pwr (W)"), 2 * before, 1e-9);
}

TEST_F(OneLogicRow, UsedLeakageFollowsTheExponentialModel) {
    eng->SetAmbientTemperature("25");
    eng->Calculate();
    const double tj = std::strtod(eng->JunctionTemperature.c_str(), nullptr);
    ASSERT_GT(tj, 25.0);
    // Per element A = 0.006 uA e^(0.028 T) for 1000 LUTs, and the block term
    // A = 0.0008 uA e^(0.028 T) over the 1000 elements; K is 1 at 1.2 V and
    // the typical process multiplier 1. The equation's e is 2.718282.
    const double e = 2.718282;
    const double perLut = 0.006e-6 * std::pow(e, 0.028 * tj) * 1000;
    const double block = 0.0008e-6 * std::pow(e, 0.028 * tj) * 1000;
    // The junction is rounded to two decimals before the pass: allow for it.
    EXPECT_NEAR(Cell("Leakage VCC Pwr (W)"), 1.2 * (perLut + block), 1.2 * (perLut + block) * 1e-3);
}

TEST_F(OneLogicRow, SelectorsPickTheLogicMembersByPanelName) {
    int n = 0;
    const std::vector<std::string> names = eng->GetArrayOfColumnNames(rows, &n);
    const std::vector<std::string> values =
        eng->GetArrayOfColumnValues(rows, rows->GetNumOfRows() - 1, &n);
    eng->InitConstants(names, values);
    const double dyn = eng->ProcessLogicDynVcc("Logic Block", names, values, "VCC");
    EXPECT_GT(dyn, 0.0);
    EXPECT_DOUBLE_EQ(eng->ProcessFormulaDynVcc("Logic Block", names, values), dyn);
    EXPECT_DOUBLE_EQ(eng->ProcessFormulaBiasUsedVcc("Logic Block", names, values),
                     eng->ProcessLogicBiasUsedVcc("Logic Block", names, values, "VCC"));
    EXPECT_EQ(eng->ProcessFormulaDynVcc("Nowhere", names, values), 0.0);
    EXPECT_EQ(eng->ProcessFormulaDynVccaux("Logic Block", names, values), 0.0);
}

TEST_F(OneLogicRow, DcBlockRecordsAreChosenByItem) {
    // The sample slice's records: used 0.0008, unused 0.0006, sleep 0.0001 and
    // standby 0.0003 uA; a letter the records lack, or a missing supply, is "0".
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply("VCC", "SLICE", "DCforBLOCK_used", "", "A"),
              "0.0008");
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply("VCC", "SLICE", "DCforBLOCK_unused", "", "A"),
              "0.0006");
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply("VCC", "SLICE", "DCforBLOCK_sleep", "", "A"),
              "0.0001");
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply("VCC", "SLICE", "DCforBLOCK_standby", "", "A"),
              "0.0003");
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply("VCCAUX", "SLICE", "DCforBLOCK_used", "", "A"),
              "0");
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply("VCC", "NOSECTION", "LUT_used", "", "C"), "0");
    // A member known only for one device and package is found through them.
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply("VCC", "SLICE", "RIPPLE", "", "C"), "0.03");
}

TEST_F(OneLogicRow, TotalsAddUp) {
    eng->Calculate();
    PD_TABLE* total = LogicTotal(*eng);
    const double sum =
        Cell("Dyn. VCC Pwr (W)") + Cell("Leakage VCC Pwr (W)") + Cell("DCbias VCC Pwr (W)") +
        Num(total->GetValueAt(0, total->GetColumnIndex("Unused Leakage VCC Pwr (W)"))) +
        Num(total->GetValueAt(0, total->GetColumnIndex("Unused DCbias VCC Pwr (W)")));
    EXPECT_NEAR(Num(total->GetValueAt(0, total->GetColumnIndex("Total Pwr (W)"))), sum, 1e-6);

    // The block's row in the summary is its tab's total, rounded.
    PD_TABLE* block = eng->GetBlockTable();
    EXPECT_NEAR(Num(block->GetValueAt("Logic Block", "Total (W)")), Num(total->GetValueAt(0, 1)),
                1e-6);

    // "Block" total is the sum of its rows; "Power" total the sum of its rows.
    double blocks = 0.0;
    for (int r = 0; r + 1 < block->GetNumOfRows(); ++r) blocks += Num(block->GetValueAt(r, 1));
    EXPECT_NEAR(Num(eng->GetTotalPower().c_str()), blocks, 1e-5);
    PD_TABLE* power = eng->GetPowerTable();
    const int last = power->GetNumOfRows() - 1;
    for (int c = 0; c < 3; ++c) {
        double s = 0.0;
        for (int r = 0; r < last; ++r) s += Num(power->GetValueAt(r, c));
        EXPECT_NEAR(Num(power->GetValueAt(last, c)), s, 1e-5) << c;
    }
    for (int r = 0; r <= last; ++r)
        EXPECT_NEAR(Num(power->GetValueAt(r, 2)),
                    Num(power->GetValueAt(r, 0)) + Num(power->GetValueAt(r, 1)), 1e-5);

    // The logic tab is all on VCC: its cell of the Vcc row, and the row's
    // current is its power over the supply's voltage.
    PD_TABLE* current = eng->GetCurrentTable();
    const int vcc = eng->GetSupplyTable()->GetRowNumber(std::string("Vcc"));
    EXPECT_NEAR(eng->GetStaTable("Vcc", "Logic Block", eng->GetPowerMatrix()),
                Num(total->GetValueAt(0, 1)), 1e-5);
    EXPECT_NEAR(Num(current->GetValueAt(vcc, 2)), Num(power->GetValueAt(vcc, 2)) / 1.2, 1e-5);

    // The matrices agree with the summary: the Vcc row's total.
    EXPECT_NEAR(eng->GetStaTable("Vcc", "Total", eng->GetPowerMatrix()),
                Num(power->GetValueAt(vcc, 2)), 1e-5);
}

TEST_F(OneLogicRow, CellsAreRoundedToSixDigitsForThisFamily) {
    eng->Calculate();
    std::string text =
        rows->GetValueAt(rows->GetNumOfRows() - 1, rows->GetColumnIndex("Dyn. VCC Pwr (W)"));
    ASSERT_NE(text.find('.'), std::string::npos);
    EXPECT_EQ(text.size() - text.find('.') - 1, 6u) << text;
    // The full value stays behind the rounded text.
    std::string full =
        rows->GetNoRoundValueAt(rows->GetNumOfRows() - 1, rows->GetColumnIndex("Dyn. VCC Pwr (W)"));
    EXPECT_EQ(full.size() - full.find('.') - 1, 20u) << full;
    EXPECT_EQ(std::string(eng->GetTotalPower()).size() - eng->GetTotalPower().find('.') - 1, 6u);
}

TEST_F(OneLogicRow, SleepTurnsThePowerGatedSupplyOff) {
    // On the hp device the slice is fed by VCC and VCCPG.
    DeviceStrings hp;
    auto p = DefaultProject();
    auto e = MakeEngine(hp, p.get());
    ASSERT_EQ(e->PwrSectionHasVccVccpg("SLICE"), (std::vector<std::string>{"VCC", "VCCPG"}));
    PD_TABLE* r = LogicRows(*e);
    std::vector<std::string> cells(r->GetNumOfColumns(), "0");
    cells[r->GetColumnIndex("# Logic LUTs")] = "500";
    cells[r->GetColumnIndex("Freq. (MHz)")] = "50";
    cells[r->GetColumnIndex("AF (%)")] = "20";
    r->AddRow(cells);
    e->Calculate();
    const int dyn = r->GetColumnIndex("Dyn. VCC Pwr (W)");
    const double normal = Num(r->GetValueAt(0, dyn));
    e->SetPowerModeType("Sleep");
    e->Calculate();
    const double sleep = Num(r->GetValueAt(0, dyn));
    EXPECT_GT(normal, 0.0);
    EXPECT_LT(sleep, normal);
}

TEST_F(OneLogicRow, IoSuppliesSumTheRowsOfTheirBankVoltage) {
    // Until the I/O tab calculates, put powers into its cells by hand.
    PC_PANEL* io = eng->GetPanel(eng->GetPanelIndex("I/O"));
    ASSERT_NE(io, nullptr);
    PD_TABLE* inout = io->GetTable(0);
    PD_TABLE* banks = io->GetTable(2);
    ASSERT_EQ(banks->name, "Bank Voltage");
    banks->RemoveAllRows();
    std::vector<std::string> bank(banks->GetNumOfColumns(), "");
    bank[0] = "0";
    bank[banks->GetColumnIndex("Voltage")] = "Vccio 3.3";
    banks->AddRow(bank);
    bank[0] = "1";
    bank[banks->GetColumnIndex("Voltage")] = "Vccio 2.5";
    banks->AddRow(bank);
    banks->SetValueAt("0.004", 1, banks->GetColumnIndex("Unused Leakage VCCIO Pwr (W)"));
    const int bankCol = inout->GetColumnIndex("Bank");
    const int leak = inout->GetColumnIndex("Leakage VCCIO Pwr (W)");
    const int dyn = inout->GetColumnIndex("Dyn. VCCIO Pwr (W)");
    ASSERT_GE(leak, 0);
    ASSERT_GE(dyn, 0);
    std::vector<std::string> cells(inout->GetNumOfColumns(), "0");
    for (const char* b : {"0", "1", "0", "7"}) {
        cells[bankCol] = b;
        cells[leak] = "0.001";
        cells[dyn] = "0.010";
        inout->AddRow(cells);
    }
    eng->CalculateTotalPower();
    PD_TABLE* power = eng->GetPowerTable();
    PD_TABLE* vdpm = eng->GetSupplyTable();
    const int v33 = vdpm->GetRowNumber(std::string("Vccio 3.3"));
    const int v25 = vdpm->GetRowNumber(std::string("Vccio 2.5"));
    // Two rows in bank 0 at 3.3 V; one in bank 1 at 2.5 V plus its unused
    // pins; the row of an unknown bank counts nowhere.
    EXPECT_NEAR(Num(power->GetValueAt(v33, 0)), 0.002, 1e-9);
    EXPECT_NEAR(Num(power->GetValueAt(v33, 1)), 0.020, 1e-9);
    EXPECT_NEAR(Num(power->GetValueAt(v25, 0)), 0.005, 1e-9);
    EXPECT_NEAR(Num(eng->GetCurrentTable()->GetValueAt(v25, 1)), 0.010 / 2.5, 1e-6);
    EXPECT_NEAR(eng->GetStaTable("Vccio 3.3", "I/O", eng->GetPowerMatrix()), 0.022, 1e-6);
    EXPECT_NEAR(eng->GetStaTable("Vccio 3.3", "I/O", eng->GetCurrentMatrix()), 0.022 / 3.3, 1e-6);
}

TEST(JunctionSettling, BandAndSentinel) {
    // The first pass always approaches.
    pwc::JunctionSettling t(25.0);
    EXPECT_TRUE(t.Apply(50.0));
    EXPECT_DOUBLE_EQ(t.change, 100.0);
    // A shrinking positive change approaches; a growing one diverges.
    EXPECT_TRUE(t.Apply(60.0));   // +20 %
    EXPECT_FALSE(t.Apply(80.0));  // +33 %
    // From positive to negative passes when smaller.
    pwc::JunctionSettling u(100.0);
    EXPECT_TRUE(u.Apply(110.0));  // +10 %
    EXPECT_TRUE(u.Apply(104.5));  // -5 %
    EXPECT_TRUE(u.Apply(104.0));  // rising towards zero
    EXPECT_FALSE(u.Apply(90.0));  // -13 %, growing downward
    // A zero start takes 0.01 as its base.
    pwc::JunctionSettling z(0.0);
    EXPECT_TRUE(z.Apply(0.0));
    EXPECT_DOUBLE_EQ(z.change, 0.0);
    EXPECT_TRUE(z.Within(-1.0, 0.1));
}

class Thermal : public ::testing::Test {
  protected:
    void SetUp() override {
        project = LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
        dev.device = "KZQ2-1200HC";
        dev.package = "CABGA256";
        eng = MakeEngine(dev, project.get());
    }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(Thermal, JunctionIsAmbientPlusThetaTimesPower) {
    eng->Calculate();
    const double ambient = Num(eng->AmbientTemperature.c_str());
    const double tj = Num(eng->JunctionTemperature.c_str());
    const double theta = Num(eng->ThetaJA.c_str());
    const double power = Num(eng->GetTotalPower().c_str());
    ASSERT_GT(theta, 0.0);
    ASSERT_GT(power, 0.0);
    EXPECT_NEAR(tj, ambient + theta * power, 0.02);
    // The safe ambient is the limit less theta times the power at the limit.
    EXPECT_LT(Num(eng->MaxSafeAmbient.c_str()), 85.0);
    EXPECT_GT(Num(eng->MaxSafeAmbient.c_str()), ambient);
}

TEST_F(Thermal, LeakageAndJunctionRiseWithAmbient) {
    eng->SetAmbientTemperature("25");
    eng->Calculate();
    const double p25 = Num(eng->GetTotalPower().c_str());
    const double tj25 = Num(eng->JunctionTemperature.c_str());
    eng->SetAmbientTemperature("70");
    eng->Calculate();
    EXPECT_GT(Num(eng->GetTotalPower().c_str()), p25);
    EXPECT_GT(Num(eng->JunctionTemperature.c_str()), tj25 + 45.0);
}

TEST_F(Thermal, HotJunctionIsCappedInTheDisplay) {
    eng->SetThetaOption("UserDefined", "40");
    eng->SetAmbientTemperature("124.9");
    eng->Calculate();
    EXPECT_EQ(eng->JunctionTemperature, "125+");

    // A negative safe ambient reads as a runaway.
    eng->SetThetaOption("UserDefined", "100000");
    eng->SetAmbientTemperature("25");
    eng->Calculate();
    EXPECT_LT(Num(eng->MaxSafeAmbient.c_str()), 0.0);
    EXPECT_EQ(eng->JunctionTemperature, "125++");

    setenv("VRL_PWC_HIGHTEMP", "1", 1);
    eng->SetThetaOption("UserDefined", "40");
    eng->SetAmbientTemperature("124.9");
    eng->Calculate();
    unsetenv("VRL_PWC_HIGHTEMP");
    EXPECT_GT(Num(eng->JunctionTemperature.c_str()), 125.0);
}

TEST_F(Thermal, SingleSafeAmbientPassStopsAfterTheFirstEstimate) {
    setenv("SINGLE_MAX_SAFE_AMBIENT_ITERATION", "Yes", 1);
    auto p = LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
    auto e = MakeEngine(dev, p.get());
    unsetenv("SINGLE_MAX_SAFE_AMBIENT_ITERATION");
    EXPECT_EQ(e->JunctionDone, 0);
    EXPECT_EQ(Num(e->JunctionTemperature.c_str()), 85.5);
    EXPECT_EQ(e->GetIterationCount(), 1);
}

}  // namespace
