// The block RAM tab on VCC and VCCM, the unused blocks, and how the clock
// and memory tabs enter the summary.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "fabric_test_util.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

// KZQ2-1200HC: the hp data, whose block RAM also draws from VCCM.
class BlockRam : public ::testing::Test {
  protected:
    void SetUp() override {
        project = DefaultProject();
        eng = MakeEngine(dev, project.get());
        ASSERT_TRUE(eng->PwrSectionHasSupply("EBR", "VCCM"));
    }
    PD_TABLE* Table(const char* name) { return TabTable(*eng, "Block RAM", name); }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(BlockRam, SinglePortSwitchesOnVccAndVccm) {
    PD_TABLE* sp = Table("SP RAM");
    const int row = AddRow(sp, {{"Module Name", "m"},
                                {"Type", "SP_x9"},
                                {"# EBR Blocks", "2"},
                                {"Clock Name", "clk"},
                                {"Freq. (MHz)", "50"},
                                {"AF (%)", "20"}});
    const std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    // C of SP_x9: 3.57 pF on VCC, 1.071 pF on VCCM; both at 1.2 V.
    const double perPf = 1e-12 * 1.2 * 50e6 * 0.20 * 2;
    EXPECT_NEAR(Cell(sp, row, "Dyn. Pwr (W)"), 1.2 * 3.57 * perPf, 1e-12);
    EXPECT_NEAR(Cell(sp, row, "Dyn. VCCM Pwr (W)"), 1.2 * 1.071 * perPf, 1e-12);
    EXPECT_NE(log.find("PowerDynSPRAM row(0) = IccDynSPRAM * vcc = "), std::string::npos);
    EXPECT_NE(log.find("PowerDynSPRAM row(0) = IccDynSPRAM * vccm = "), std::string::npos);
}

TEST_F(BlockRam, DualPortHalvesRunAtTheirOwnClocks) {
    PD_TABLE* dp = Table("DP RAM");
    const int row = AddRow(dp, {{"TypeA", "DP_x9"},
                                {"TypeB", "DP_x9"},
                                {"# EBR Blocks", "1"},
                                {"RdCLK Freq. (MHz)", "40"},
                                {"Rd AF (%)", "10"},
                                {"WrCLK Freq. (MHz)", "20"},
                                {"Wr AF (%)", "30"}});
    const std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    // 1.9635 pF a side on VCC.
    const double current = 1.9635e-12 * 1.2 * (40e6 * 0.10 + 20e6 * 0.30);
    EXPECT_NEAR(Cell(dp, row, "Dyn. Pwr (W)"), 1.2 * current, 1e-12);
    // The dual-port leakage line says "idx" and keeps " * vcc = " on VCCM too.
    const std::string leak = "PowerLeakDPRAM row(0) = idxLeakDPRAM * vcc = ";
    const size_t first = log.find(leak);
    ASSERT_NE(first, std::string::npos);
    EXPECT_NE(log.find(leak, first + 1), std::string::npos);
    EXPECT_EQ(log.find("IccDynDPRAM * vccm"), std::string::npos);
}

TEST_F(BlockRam, UsedLeakageOnVccAndVccmByHand) {
    PD_TABLE* sp = Table("SP RAM");
    const int row = AddRow(sp, {{"Type", "SP_x9"}, {"# EBR Blocks", "2"}});
    RowView v = ViewRow(*eng, sp, row, "25");
    // K is 1 at 1.2 V and the typical multiplier 1: per block A of the type
    // and the used block record, both at B = 0.03.
    const double e = ExpEq(0.03 * 25);
    EXPECT_NEAR(eng->ProcessSPRAMLeakVccUsed("SP RAM", v.names, v.values, "VCC"),
                2 * (0.052e-6 + 0.65e-6) * e, 3e-6 * kEquationDigits);
    EXPECT_NEAR(eng->ProcessSPRAMLeakVccUsed("SP RAM", v.names, v.values, "VCCM"),
                2 * (0.13e-6 + 0.26e-6) * e, 2e-6 * kEquationDigits);
    EXPECT_DOUBLE_EQ(eng->ProcessFormulaDynVcc("SP RAM", v.names, v.values),
                     eng->ProcessSPRAMdynVcc("SP RAM", v.names, v.values, "VCC"));
}

TEST_F(BlockRam, EmptyTablesLeaveEveryBlockFree) {
    RowView v;
    eng->GetArrayOfColumnUnusedNamesBLOCK(nullptr, v.names);
    eng->GetArrayOfColumnUnusedValuesBLOCK(nullptr, v.values);
    EXPECT_EQ(v["BRAM_unused"], "7");
    EXPECT_EQ(v["BRAM_used"], "0");
    v["TJ"] = "25";
    eng->InitConstants(v.names, v.values);
    const double e = ExpEq(0.03 * 25);
    EXPECT_NEAR(eng->ProcessBlockRAMleakUnused("Block RAM", v.names, v.values, "VCC"),
                7 * 0.52e-6 * e, 8e-6 * kEquationDigits);
    EXPECT_NEAR(eng->ProcessBlockRAMleakUnused("Block RAM", v.names, v.values, "VCCM"),
                7 * 0.21e-6 * e, 4e-6 * kEquationDigits);

    eng->Calculate();
    PD_TABLE* total = TotalTable(*eng, "Block RAM");
    const double vcc = Cell(total, 0, "Unused Leakage VCC Pwr (W)");
    const double vccm = Cell(total, 0, "Unused Leakage VCCM Pwr (W)");
    EXPECT_GT(vcc, 0.0);
    EXPECT_NEAR(vccm / vcc, 0.21 / 0.52, 1e-9);
    EXPECT_NEAR(Cell(total, 0, "Total Pwr (W)"), vcc + vccm, 1e-12);
}

// ---- An empty type, in each table -------------------------------------------------

struct TypeCase {
    const char* table;
    const char* error;
    std::map<std::string, std::string> valid;
    const char* emptied;
};

class EmptyType : public BlockRam, public ::testing::WithParamInterface<TypeCase> {};

TEST_P(EmptyType, IsLoggedAndGivesNothingWhileOtherRowsGoOn) {
    const TypeCase& c = GetParam();
    PD_TABLE* t = Table(c.table);
    ASSERT_NE(t, nullptr);
    std::map<std::string, std::string> cells = c.valid;
    cells["# EBR Blocks"] = "1";
    std::map<std::string, std::string> broken = cells;
    broken[c.emptied] = "";
    const int bad = AddRow(t, broken);
    const int good = AddRow(t, cells);
    const std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    EXPECT_NE(log.find(c.error), std::string::npos);
    for (const char* column : {"Dyn. Pwr (W)", "Leakage VCC Pwr (W)", "Dyn. VCCM Pwr (W)"}) {
        EXPECT_EQ(Cell(t, bad, column), 0.0) << column;
        EXPECT_GT(Cell(t, good, column), 0.0) << column;
    }
}

std::map<std::string, std::string> DualCells(const char* type, const char* fa, const char* aa,
                                             const char* fb, const char* ab) {
    return {{"TypeA", type}, {"TypeB", type}, {fa, "25"}, {aa, "20"}, {fb, "25"}, {ab, "20"}};
}

INSTANTIATE_TEST_SUITE_P(
    Tables, EmptyType,
    ::testing::Values(TypeCase{"SP RAM",
                               "Error: SPRAM Type Not Specified",
                               {{"Type", "SP_x4"}, {"Freq. (MHz)", "25"}, {"AF (%)", "20"}},
                               "Type"},
                      TypeCase{"DP RAM", "Error: DPRAM Type Not Specified",
                               DualCells("DP_x4", "RdCLK Freq. (MHz)", "Rd AF (%)",
                                         "WrCLK Freq. (MHz)", "Wr AF (%)"),
                               "TypeA"},
                      TypeCase{"DP RAM True", "Error: DPRAM True Type Not Specified",
                               DualCells("DPT_x4", "CLK A Freq. (MHz)", "CLK A AF (%)",
                                         "CLK B Freq. (MHz)", "CLK B AF (%)"),
                               "TypeB"},
                      TypeCase{"FIFO DC", "Error: FIFO Type Not Specified",
                               DualCells("FIFO_x4", "RdCLK Freq. (MHz)", "Rd AF (%)",
                                         "WrCLK Freq. (MHz)", "Wr AF (%)"),
                               "TypeA"}),
    [](const ::testing::TestParamInfo<TypeCase>& info) {
        std::string name = info.param.table;
        for (char& ch : name)
            if (ch == ' ') ch = '_';
        return name;
    });

TEST(BlockRamWithoutVccm, LeavesTheVccmColumnsAloneAndMakesNoSecondCall) {
    DeviceStrings dev;
    dev.device = "KZQ2-640ZE";
    dev.package = "TG100";
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    EXPECT_FALSE(eng->PwrSectionHasSupply("EBR", "VCCM"));
    PD_TABLE* sp = TabTable(*eng, "Block RAM", "SP RAM");
    AddRow(sp, {{"Type", "SP_x9"}, {"# EBR Blocks", "1"}, {"Freq. (MHz)", "50"}, {"AF (%)", "10"}});
    const std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    EXPECT_EQ(sp->GetColumnIndex("Dyn. VCCM Pwr (W)"), -1);
    EXPECT_EQ(log.find(" * vccm = "), std::string::npos);
    EXPECT_NE(log.find("PowerLeakSPRAMunused = IccLeakSPRAMunused * vcc = "), std::string::npos);
    PD_TABLE* total = TotalTable(*eng, "Block RAM");
    EXPECT_NEAR(Cell(total, 0, "Total Pwr (W)"),
                Cell(sp, 0, "Dyn. Pwr (W)") + Cell(sp, 0, "Leakage VCC Pwr (W)") +
                    Cell(sp, 0, "DCbias VCC Pwr (W)") +
                    Cell(total, 0, "Unused Leakage VCC Pwr (W)") +
                    Cell(total, 0, "Unused DCbias VCC Pwr (W)"),
                1e-12);
}

TEST_F(BlockRam, VccmColumnsKeepTheirCellsWhenTheMemoriesLoseTheSupply) {
    PD_TABLE* sp = Table("SP RAM");
    const int row = AddRow(
        sp, {{"Type", "SP_x9"}, {"# EBR Blocks", "1"}, {"Freq. (MHz)", "50"}, {"AF (%)", "20"}});
    sp->SetValueAt("0.5", row, sp->GetColumnIndex("Dyn. VCCM Pwr (W)"));
    auto* ebr = dynamic_cast<PD_PWRSECT*>(eng->GetPwrData()->GetSection("EBR"));
    ASSERT_EQ(ebr->supplies.back(), "VCCM");
    ebr->supplies.pop_back();
    eng->Calculate();
    EXPECT_EQ(Cell(sp, row, "Dyn. VCCM Pwr (W)"), 0.5);
    EXPECT_GT(Cell(sp, row, "Dyn. Pwr (W)"), 0.0);
}

// ---- The summary --------------------------------------------------------------------

struct SummaryCase {
    const char* name;
    const char* device;
    const char* package;
    bool demo;
};

class FabricSummary : public ::testing::TestWithParam<SummaryCase> {};

TEST_P(FabricSummary, BlockRowsAndSupplyRowsTakeInTheTabs) {
    const SummaryCase& c = GetParam();
    DeviceStrings dev;
    dev.device = c.device;
    dev.package = c.package;
    auto project = c.demo ? LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf")
                          : DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    if (!c.demo) {
        AddRow(TabTable(*eng, "Clocks", "Clocks"), {{"Clock Name", "clk"},
                                                    {"Freq. (MHz)", "80"},
                                                    {"CLKEN Duty Cycle (%)", "100"},
                                                    {"PCLK", "t0_1_c1_4_s_2_p_40"}});
        AddRow(
            TabTable(*eng, "Block RAM", "SP RAM"),
            {{"Type", "SP_x18"}, {"# EBR Blocks", "2"}, {"Freq. (MHz)", "80"}, {"AF (%)", "25"}});
    }
    eng->Calculate();
    PD_TABLE* block = eng->GetBlockTable();
    PD_TABLE* matrix = eng->GetPowerMatrix();
    for (const char* tab : {"Clocks", "Block RAM"}) {
        const double total = Num(TotalTable(*eng, tab)->GetValueAt(0, 1));
        EXPECT_GT(total, 0.0) << tab;
        EXPECT_NEAR(Num(block->GetValueAt(tab, "Total (W)")), total, 1e-6) << tab;
    }
    // Clocks only on Vcc; the memories on Vcc and, where there is one, Vccm.
    const double clocks = Num(TotalTable(*eng, "Clocks")->GetValueAt(0, 1));
    EXPECT_NEAR(eng->GetStaTable("Vcc", "Clocks", matrix), clocks, 2e-6);
    const double ram = Num(TotalTable(*eng, "Block RAM")->GetValueAt(0, 1));
    EXPECT_NEAR(eng->GetStaTable("Vcc", "Block RAM", matrix) +
                    eng->GetStaTable("Vccm", "Block RAM", matrix),
                ram, 2e-6);
    EXPECT_EQ(eng->HasSupply("Vccm"), c.demo);
    if (!c.demo) return;
    // The Vccm row is the memories' VCCM columns, used and free.
    double vccm = 0.0;
    for (const char* t : {"SP RAM", "DP RAM", "DP RAM True", "FIFO DC"}) {
        PD_TABLE* table = TabTable(*eng, "Block RAM", t);
        for (int r = 0; r < table->GetNumOfRows(); ++r)
            for (const char* col :
                 {"Dyn. VCCM Pwr (W)", "Leakage VCCM Pwr (W)", "DCbias VCCM Pwr (W)"})
                vccm += Cell(table, r, col);
    }
    PD_TABLE* total = TotalTable(*eng, "Block RAM");
    vccm += Cell(total, 0, "Unused Leakage VCCM Pwr (W)") +
            Cell(total, 0, "Unused DCbias VCCM Pwr (W)");
    PD_TABLE* power = eng->GetPowerTable();
    const int row = eng->GetSupplyTable()->GetRowNumber(std::string("Vccm"));
    ASSERT_GE(row, 0);
    EXPECT_GT(vccm, 0.0);
    EXPECT_NEAR(Num(power->GetValueAt(row, 2)), vccm, 2e-6);
}

INSTANTIATE_TEST_SUITE_P(
    Devices, FabricSummary,
    ::testing::Values(SummaryCase{"LowPower", "KZQ2-640ZE", "TG100", false},
                      SummaryCase{"DemoOnHC", "KZQ2-1200HC", "CABGA256", true}),
    [](const ::testing::TestParamInfo<SummaryCase>& info) { return std::string(info.param.name); });

}  // namespace
