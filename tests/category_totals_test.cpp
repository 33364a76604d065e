// The category part's totals: the Logic and Clocks tabs' share of the plain
// VCCIO rail, and the rails of external ASC rows.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

const char* const kVccioColumns[] = {"Dyn. VCCIO Pwr (W)", "Leakage VCCIO Pwr (W)",
                                     "DCbias VCCIO Pwr (W)"};
const char* const kUnusedVccioColumns[] = {"Unused Leakage VCCIO Pwr (W)",
                                           "Unused DCbias VCCIO Pwr (W)"};

double ColumnSum(PD_TABLE* t, const std::string& column) {
    double sum = 0.0;
    for (int r = 0; r < t->GetNumOfRows(); ++r) sum += Cell(t, r, column);
    return sum;
}

// A tab's watts on the VCCIO rail: its rows' three columns and its free part.
double VccioShare(PC_ENG& eng, const std::string& panel) {
    double sum = 0.0;
    for (const char* c : kVccioColumns) sum += ColumnSum(TabTable(eng, panel, nullptr), c);
    for (const char* c : kUnusedVccioColumns) sum += Cell(TotalTable(eng, panel), 0, c);
    return sum;
}

// A block's column of the power matrix over all supply rows.
double MatrixColumn(PC_ENG& eng, const std::string& block) {
    PD_TABLE* vdpm = eng.GetSupplyTable();
    double sum = 0.0;
    for (int r = 0; r < vdpm->GetNumOfRows(); ++r)
        sum += eng.GetStaTable(vdpm->GetValueAt(r, 0), block, eng.GetPowerMatrix());
    return sum;
}

// The sum of the supplies' and of the blocks' rows, last rows left out.
double SupplyRowsTotal(PC_ENG& eng) {
    PD_TABLE* power = eng.GetPowerTable();
    double sum = 0.0;
    for (int r = 0; r + 1 < power->GetNumOfRows(); ++r) sum += Num(power->GetValueAt(r, 2));
    return sum;
}
double BlockRowsTotal(PC_ENG& eng) {
    PD_TABLE* block = eng.GetBlockTable();
    double sum = 0.0;
    for (int r = 0; r + 1 < block->GetNumOfRows(); ++r) sum += Num(block->GetValueAt(r, 1));
    return sum;
}

// The demo design on the category part.
class CategoryDemo : public ::testing::Test {
  protected:
    void SetUp() override {
        project = LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/wd7r00-demo.pcf");
        eng = MakeEngine(d, project.get());
        eng->Calculate();
        vccio = eng->FindSupplyCategory("Vccio", "-1");
        core = eng->FindSupplyCategory("Vcc", "-1");
    }
    DeviceStrings d = Dunmar();
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
    std::string vccio, core;
};

}  // namespace

TEST_F(CategoryDemo, ThePlainVccioRailIsTheMapsRow) {
    EXPECT_EQ(vccio, "Vccio 1.8");
    EXPECT_DOUBLE_EQ(Num(eng->GetVDPM(vccio, "Voltage")), 1.8);
}

// C x V x F x AF x N on VCCIO, times VCCIO: the registers' 0.002 pF, and the
// block record's 20 nA per used element of the slice.
TEST_F(CategoryDemo, LogicRowsPriceTheirVccioShareByHand) {
    PD_TABLE* rows = TabTable(*eng, "Logic Block", nullptr);
    ASSERT_EQ(rows->GetNumOfRows(), 2);
    const double v = 1.8;
    // ctrl_fsm: 290 registers at 50 MHz, AF 15 %; 380 + 12 + 40 + 290 elements.
    EXPECT_NEAR(Cell(rows, 0, "Dyn. VCCIO Pwr (W)"), 0.002e-12 * v * 50e6 * 0.15 * 290 * v, 1e-12);
    EXPECT_NEAR(Cell(rows, 0, "DCbias VCCIO Pwr (W)"), 0.00002e-3 * 722 * v, 1e-12);
    // seq_timer: 110 registers at 12 MHz, AF 20 %; 120 + 30 + 110 elements.
    EXPECT_NEAR(Cell(rows, 1, "Dyn. VCCIO Pwr (W)"), 0.002e-12 * v * 12e6 * 0.20 * 110 * v, 1e-12);
    EXPECT_NEAR(Cell(rows, 1, "DCbias VCCIO Pwr (W)"), 0.00002e-3 * 260 * v, 1e-12);
    // Leakage grows with the element count: A e^(B T) per element.
    EXPECT_GT(Cell(rows, 0, "Leakage VCCIO Pwr (W)"), Cell(rows, 1, "Leakage VCCIO Pwr (W)"));
    EXPECT_GT(Cell(rows, 1, "Leakage VCCIO Pwr (W)"), 0.0);
    // The VCC columns stay the row's core power; "Dyn. Pwr (W)" copies them.
    EXPECT_EQ(std::string(rows->GetValueAt(0, rows->GetColumnIndex("Dyn. Pwr (W)"))),
              rows->GetValueAt(0, rows->GetColumnIndex("Dyn. VCC Pwr (W)")));
    PD_TABLE* total = TotalTable(*eng, "Logic Block");
    for (const char* c : kUnusedVccioColumns) EXPECT_GT(Cell(total, 0, c), 0.0) << c;
}

// The primary trunk's 0.15 pF on VCCIO and the block record's 50 nA per
// occupied element (1 trunk, 6 branches, 3 spines, 83 taps).
TEST_F(CategoryDemo, ClockRowsPriceTheirVccioShareByHand) {
    PD_TABLE* rows = TabTable(*eng, "Clocks", nullptr);
    ASSERT_EQ(rows->GetNumOfRows(), 2);
    const double v = 1.8;
    EXPECT_NEAR(Cell(rows, 0, "Dyn. VCCIO Pwr (W)"), 0.15e-12 * v * 50e6 * 1.0 * 1 * v, 1e-12);
    EXPECT_NEAR(Cell(rows, 0, "DCbias VCCIO Pwr (W)"), 0.00005e-3 * 93 * v, 1e-12);
    // clk_slow holds no primary trunk: no switching share on VCCIO.
    EXPECT_DOUBLE_EQ(Cell(rows, 1, "Dyn. VCCIO Pwr (W)"), 0.0);
    // The free clock nets' receivers are off: they leak, but draw no bias.
    PD_TABLE* total = TotalTable(*eng, "Clocks");
    EXPECT_GT(Cell(total, 0, "Unused Leakage VCCIO Pwr (W)"), 0.0);
    EXPECT_DOUBLE_EQ(Cell(total, 0, "Unused DCbias VCCIO Pwr (W)"), 0.0);
}

// Each tab's VCCIO share is on the VCCIO row of the matrix, the rest on the
// core's category, and together they make the tab's block row.
TEST_F(CategoryDemo, TheVccioShareLandsOnItsRowAndTheBlockAddsUp) {
    for (const char* panel : {"Logic Block", "Clocks"}) {
        SCOPED_TRACE(panel);
        const double share = VccioShare(*eng, panel);
        ASSERT_GT(share, 1e-5);
        const double block = BlockRow(*eng, panel);
        EXPECT_NEAR(block, Cell(TotalTable(*eng, panel), 0, "Total Pwr (W)"), 1e-6);
        EXPECT_NEAR(eng->GetStaTable(vccio, panel, eng->GetPowerMatrix()), share, 1e-6);
        EXPECT_NEAR(eng->GetStaTable(core, panel, eng->GetPowerMatrix()), block - share, 2e-6);
        // Nothing counted twice, nothing lost: the column is the block.
        EXPECT_NEAR(MatrixColumn(*eng, panel), block, 2e-6);
    }
}

// The VCCIO row's dynamic power holds both tabs' switching share on top of
// the I/O tab's; the core row's dynamic power holds none of it.
TEST_F(CategoryDemo, DynamicVccioPowerIsCountedOnceOnTheVccioRow) {
    double dynShare = 0.0;
    double coreDyn = 0.0;
    for (const char* panel : {"Logic Block", "Clocks"}) {
        dynShare += ColumnSum(TabTable(*eng, panel, nullptr), "Dyn. VCCIO Pwr (W)");
        coreDyn += Cell(TotalTable(*eng, panel), 0, "Total Dyn. Pwr (W)");
    }
    coreDyn -= dynShare;
    ASSERT_GT(dynShare, 1e-5);
    EXPECT_GE(PowerRow(*eng, vccio, 1), dynShare - 1e-6);
    // The core row's dynamic power: these two tabs' core share and the
    // others' (all non-negative), never the VCCIO share on top.
    EXPECT_GE(PowerRow(*eng, core, 1), coreDyn - 1e-6);
    // Supplies and blocks tell the same total.
    EXPECT_NEAR(SupplyRowsTotal(*eng), BlockRowsTotal(*eng), 1e-5);
    EXPECT_NEAR(Num(eng->GetTotalPower()), BlockRowsTotal(*eng), 1e-5);
    const int last = eng->GetPowerTable()->GetNumOfRows() - 1;
    EXPECT_NEAR(Num(eng->GetPowerTable()->GetValueAt(last, 2)), Num(eng->GetTotalPower()), 1e-5);
}

// Raising a logic row's frequency adds its switching power once to the
// total, on the two rails in proportion to their columns.
TEST_F(CategoryDemo, AFasterLogicRowRaisesTheTotalByItsOwnDynamicPower) {
    PD_TABLE* rows = TabTable(*eng, "Logic Block", nullptr);
    const int freq = rows->GetColumnIndex("Freq. (MHz)");
    const double before = Num(eng->GetTotalPower());
    const double vccioBefore = PowerRow(*eng, vccio, 1);
    const double dynBefore =
        Cell(rows, 0, "Dyn. VCC Pwr (W)") + Cell(rows, 0, "Dyn. VCCIO Pwr (W)");
    const double vccioDynBefore = Cell(rows, 0, "Dyn. VCCIO Pwr (W)");
    rows->SetValueAt("500", 0, freq);  // ten times 50 MHz
    eng->Calculate();
    const double dynAfter = Cell(rows, 0, "Dyn. VCC Pwr (W)") + Cell(rows, 0, "Dyn. VCCIO Pwr (W)");
    EXPECT_NEAR(Cell(rows, 0, "Dyn. VCCIO Pwr (W)"), 10 * vccioDynBefore, 1e-12);
    EXPECT_NEAR(dynAfter, 10 * dynBefore, 1e-9);
    // Leakage follows the warmer die, so the total rises at least by the
    // added switching power.
    EXPECT_GE(Num(eng->GetTotalPower()) - before, dynAfter - dynBefore - 2e-6);
    EXPECT_NEAR(PowerRow(*eng, vccio, 1) - vccioBefore, 9 * vccioDynBefore, 2e-6);
    EXPECT_NEAR(SupplyRowsTotal(*eng), BlockRowsTotal(*eng), 1e-5);
}

// The polynomial form of the slices' data is a fit of the exponential one:
// the VCCIO leakage of both forms agrees closely.
TEST_F(CategoryDemo, ThePolynomialFormGivesTheSameVccioLeakage) {
    PD_TABLE* rows = TabTable(*eng, "Logic Block", nullptr);
    const double exponential = Cell(rows, 0, "Leakage VCCIO Pwr (W)");
    const double unusedExp = Cell(TotalTable(*eng, "Logic Block"), 0, kUnusedVccioColumns[0]);
    setenv("VRL_PWC_POLINOMIAL", "1", 1);
    auto poly = MakeEngine(d, project.get());
    poly->Calculate();
    unsetenv("VRL_PWC_POLINOMIAL");
    rows = TabTable(*poly, "Logic Block", nullptr);
    ASSERT_GT(exponential, 0.0);
    EXPECT_NEAR(Cell(rows, 0, "Leakage VCCIO Pwr (W)"), exponential, 0.02 * exponential);
    EXPECT_NEAR(Cell(TotalTable(*poly, "Logic Block"), 0, kUnusedVccioColumns[0]), unusedExp,
                0.02 * unusedExp);
}

// ---- External ASC rails on the category part ------------------------------

namespace {

// The category part with an ASC tab: a copy of the sample data whose tab
// templates gain one, and a project with one internal and one external row.
struct CategoryAscEngine {
    ScratchDir dir{"category_totals_asc"};
    std::string oldDataDir = std::getenv("PWC_DATA_DIR") ? std::getenv("PWC_DATA_DIR") : "";
    DeviceStrings d = Dunmar();
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;

    CategoryAscEngine() {
        std::filesystem::copy(DevicesDir(), dir.path());
        std::ofstream(dir.File("wd7r00.pgt"), std::ios::app)
            << "\n[KEYSECT \"Tab ASC\"]\n_TABLE = ASC\n\n"
               "[TBLSECT \"ASC\"]\nTag, Rail, VCCTYPE, VCC, Channels\n"
               "_KEY, Rail, VCCTYPE, VCC, Channels\n_DEFAULT, ASC0, INT, 1.200, 1\n"
               "_VISIBILITY, 1, 1, 1, 1\n_WIDTH, 90, 70, 60, 60\n";
        std::ofstream(dir.File("wd7r00.pcf"), std::ios::app)
            << "\n[TBLSECT \"ASC\"]\nRail, VCCTYPE, VCC, Channels\nA0, INT, 1.200, 2\n"
               "A1, EXT, 3.3, 4\nA2, EXT, 2.500, 1\n\n"
               "[KEYSECT \"ASC CURRENT\"]\nCURRENT = Channels * 0.001\n";
        setenv("PWC_DATA_DIR", dir.path().c_str(), 1);
        project = LoadProject(dir.File("wd7r00.pcf"));
        eng = MakeEngine(d, project.get());
        eng->Calculate();
    }
    ~CategoryAscEngine() { setenv("PWC_DATA_DIR", oldDataDir.c_str(), 1); }
};

}  // namespace

TEST(CategoryAsc, AnExternalRailLandsOnItsOwnRow) {
    CategoryAscEngine a;
    ASSERT_TRUE(a.eng->GetASCcalculator());
    PC_ENG& eng = *a.eng;
    const std::string core = eng.FindSupplyCategory("Vcc", "-1");
    const double vcc = Num(eng.GetVDPM(core, "Voltage"));
    // 4 channels of 1 mA at 3.3 V and 1 at 2.5 V on their rails; 2 at the core.
    EXPECT_NEAR(PowerRow(eng, "ASCVCC 3.300", 0), 0.004 * 3.3, 1e-6);
    EXPECT_NEAR(PowerRow(eng, "ASCVCC 2.500", 0), 0.001 * 2.5, 1e-6);
    EXPECT_NEAR(PowerRow(eng, "ASCVCC 3.300", 2), 0.004 * 3.3, 1e-6);
    PD_TABLE* current = eng.GetCurrentTable();
    EXPECT_NEAR(Num(current->GetValueAt(
                    eng.GetSupplyTable()->GetRowNumber(std::string("ASCVCC 3.300")), 0)),
                0.004, 1e-6);
    EXPECT_NEAR(eng.GetStaTable("ASCVCC 3.300", "ASC", eng.GetPowerMatrix()), 0.004 * 3.3, 1e-6);
    EXPECT_NEAR(eng.GetStaTable(core, "ASC", eng.GetPowerMatrix()), 0.002 * vcc, 1e-6);
    const double block = BlockRow(eng, "ASC");
    EXPECT_NEAR(block, 0.002 * vcc + 0.004 * 3.3 + 0.001 * 2.5, 1e-6);
    EXPECT_NEAR(MatrixColumn(eng, "ASC"), block, 2e-6);
    // Supplies and blocks tell the same total.
    EXPECT_NEAR(SupplyRowsTotal(eng), BlockRowsTotal(eng), 1e-5);
    EXPECT_NEAR(Num(eng.GetTotalPower()), BlockRowsTotal(eng), 1e-5);
}

// ---- Parts without categories -----------------------------------------------

// Their Logic and Clocks tabs have no VCCIO share; each tab is on the core
// supply whole.
class PlainPart : public ::testing::TestWithParam<const char*> {};

TEST_P(PlainPart, LogicAndClocksStayWhollyOnTheCore) {
    DeviceStrings d;
    auto project = DefaultProject(d.arch);
    auto eng = MakeEngine(d, project.get());
    eng->Calculate();
    const std::string panel = GetParam();
    ASSERT_NE(TabTable(*eng, panel, nullptr), nullptr);
    for (const char* c : kVccioColumns)
        EXPECT_LT(TabTable(*eng, panel, nullptr)->GetColumnIndex(c), 0) << c;
    for (const char* c : kUnusedVccioColumns)
        EXPECT_LT(TotalTable(*eng, panel)->GetColumnIndex(c), 0) << c;
    const double block = BlockRow(*eng, panel);
    EXPECT_NEAR(eng->GetStaTable("Vcc", panel, eng->GetPowerMatrix()), block, 1e-4);
    EXPECT_NEAR(MatrixColumn(*eng, panel), block, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(Tabs, PlainPart, ::testing::Values("Logic Block", "Clocks"));
