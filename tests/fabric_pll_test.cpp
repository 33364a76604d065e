// The PLL tab on devices with and without its own supplies, and the DLL
// family's tabs, against hand computations of C*V*F*AF, block bias and
// leakage, their log words and their rows of the summary.
#include <gtest/gtest.h>

#include "fabric_pll_misc_fixture.h"

using namespace fabtest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

// 25 MHz in, N 4, V 8, M 1: the VCO runs at 800 MHz.
constexpr double kVco = 800e6;

void AddPll(PD_TABLE* pll, const std::string& standby) {
    AddRow(pll, {{"PLL Name", "p0"},
                 {"# PLL", "1"},
                 {"Clock Name", "clk_in"},
                 {"Freq. (MHz)", "25"},
                 {"Output Clock Name", "clk_out"},
                 {"N", "4"},
                 {"V", "8"},
                 {"M", "1"},
                 {"Allow Standby", standby}});
}

struct PllCase {
    const char* device;
    const char* package;
    double cVcc, cVccpll;       // pF per VCO cycle; 0: no VCCPLL
    double dVcc, dVccpll;       // block bias, mA
    double standbyA, standbyB;  // VCC standby record's A (uA) and B
};

class PllOnDevice : public ::testing::TestWithParam<PllCase> {};

TEST_P(PllOnDevice, SupplyColumnsFollowTheModel) {
    const PllCase& c = GetParam();
    SampleEngine s(c.device, c.package);
    PC_ENG& eng = *s.eng;
    PD_TABLE* pll = Table(eng, "PLL", "PLL");
    ASSERT_NE(pll, nullptr);
    AddPll(pll, "Disable");
    eng.Calculate();

    // AF 100 % at the VCO frequency, count 1, DPM 1, times the supply for watts.
    EXPECT_NEAR(Cell(pll, 0, "Dyn. VCC Pwr (W)"), c.cVcc * 1e-12 * 1.2 * kVco * 1.2, 1e-12);
    EXPECT_NEAR(Cell(pll, 0, "DCbias VCC Pwr (W)"), c.dVcc * 1e-3 * 1.2, 1e-12);
    const bool ownSupply = c.cVccpll > 0.0;
    EXPECT_EQ(eng.HasSupply("Vccpll"), ownSupply);
    EXPECT_EQ(pll->GetColumnIndex("Dyn. VCCPLL Pwr (W)") >= 0, ownSupply);
    EXPECT_NEAR(Cell(pll, 0, "Dyn. VCCPLL Pwr (W)"), c.cVccpll * 1e-12 * 1.2 * kVco * 1.2, 1e-12);
    EXPECT_NEAR(Cell(pll, 0, "DCbias VCCPLL Pwr (W)"), ownSupply ? c.dVccpll * 1e-3 * 1.2 : 0.0,
                1e-12);
    EXPECT_NEAR(Cell(pll, 0, "Dyn. Pwr (W)"),
                Cell(pll, 0, "Dyn. VCC Pwr (W)") + Cell(pll, 0, "Dyn. VCCPLL Pwr (W)"), 1e-15);

    // The block's row is its tab's total; each supply's row holds its columns.
    PD_TABLE* total = Total(eng, "PLL");
    double sum = 0.0;
    for (const char* col : {"Dyn. Pwr (W)", "Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)",
                            "Leakage VCCPLL Pwr (W)", "DCbias VCCPLL Pwr (W)"})
        sum += Cell(pll, 0, col);
    for (const char* col : {"Unused Leakage VCC Pwr (W)", "Unused DCbias VCC Pwr (W)",
                            "Unused Leakage VCCPLL Pwr (W)", "Unused DCbias VCCPLL Pwr (W)"})
        sum += Cell(total, 0, col);
    EXPECT_NEAR(Cell(total, 0, "Total Pwr (W)"), sum, 1e-12);
    EXPECT_NEAR(BlockRow(eng, "PLL"), sum, 1e-6);
    if (ownSupply) {
        const double vccpll = Cell(pll, 0, "Dyn. VCCPLL Pwr (W)") +
                              Cell(pll, 0, "Leakage VCCPLL Pwr (W)") +
                              Cell(pll, 0, "DCbias VCCPLL Pwr (W)") +
                              Cell(total, 0, "Unused Leakage VCCPLL Pwr (W)") +
                              Cell(total, 0, "Unused DCbias VCCPLL Pwr (W)");
        const int row = eng.GetSupplyTable()->GetRowNumber(std::string("Vccpll"));
        EXPECT_NEAR(Num(eng.GetPowerTable()->GetValueAt(row, 2)), vccpll, 2e-6);
    }
    EXPECT_NEAR(eng.GetStaTable("Vcc", "PLL", eng.GetPowerMatrix()),
                Cell(pll, 0, "Dyn. VCC Pwr (W)") + Cell(pll, 0, "Leakage VCC Pwr (W)") +
                    Cell(pll, 0, "DCbias VCC Pwr (W)") +
                    Cell(total, 0, "Unused Leakage VCC Pwr (W)") +
                    Cell(total, 0, "Unused DCbias VCC Pwr (W)"),
                2e-6);

    // In sleep the VCC loop takes the sleep entry, whose C is 0 here.
    eng.SetPowerModeType("Sleep");
    eng.Calculate();
    EXPECT_EQ(Cell(pll, 0, "Dyn. VCC Pwr (W)"), 0.0);
}

TEST_P(PllOnDevice, StandbyMovesTheAnalogBlockToTheCoreSupply) {
    const PllCase& c = GetParam();
    SampleEngine s(c.device, c.package);
    PC_ENG& eng = *s.eng;
    PD_TABLE* pll = Table(eng, "PLL", "PLL");
    AddPll(pll, "Enable");
    eng.Calculate();
    const Row r = RowOf(eng, pll, 0);
    const double t = Num(r.Value("TJ"));
    // The block's standby record of VCC, at K 1 (1.2 V) and process 1.
    const double expected = c.standbyA * 1e-6 * Exp(c.standbyB * t);
    EXPECT_NEAR(eng.ProcessPLLleakVccpllUsed("PLL", r.names, r.values, "VCCPLL"), expected,
                expected * 1e-6);
    EXPECT_NEAR(eng.ProcessPLLbiasVccpllUsed("PLL", r.names, r.values, "VCCPLL"), 0.01e-3, 1e-15);
    EXPECT_NEAR(
        eng.ProcessPLLleakVccUsed("PLL", r.names, r.values, "VCC"),
        expected + eng.GetIccLeak("PLL", "PLL", "PLL", 1.0, "PLL", "VCC", r.names, r.values),
        expected * 1e-6);
    // The selectors pick the PLL's VCC members by the panel's name.
    EXPECT_DOUBLE_EQ(eng.ProcessFormulaDynVcc("PLL", r.names, r.values),
                     eng.ProcessPLLdynVcc("PLL", r.names, r.values, "VCC"));
    EXPECT_DOUBLE_EQ(eng.ProcessFormulaBiasUsedVcc("PLL", r.names, r.values),
                     eng.ProcessPLLbiasVccUsed("PLL", r.names, r.values, "VCC"));
}

INSTANTIATE_TEST_SUITE_P(
    Devices, PllOnDevice,
    ::testing::Values(PllCase{"KZQ2-640ZE", "TG100", 0.6, 1.8, 0.02, 0.45, 0.1, 0.026},
                      PllCase{"KZQ2-1200HC", "CABGA256", 2.52, 0.0, 0.5, 0.0, 0.26, 0.028}),
    [](const auto& info) {
        return info.param.cVccpll > 0 ? std::string("OwnSupply") : std::string("CoreOnly");
    });

TEST(PllTwelveVolt, VccTwelveIsInTheBlockButNotInItsSupplyRow) {
    FixtureEngine f;
    PC_ENG& eng = *f.eng;
    const std::string log = pwctest::CaptureCalcLog([&] { eng.Calculate(); });
    PD_TABLE* pll = Table(eng, "PLL", "PLL");
    ASSERT_EQ(pll->GetNumOfRows(), 1);
    EXPECT_NEAR(Cell(pll, 0, "Dyn. VCC12 Pwr (W)"), 0.5e-12 * 1.2 * kVco * 1.2, 1e-12);
    EXPECT_NEAR(Cell(pll, 0, "Dyn. VCCPLL Pwr (W)"), 2e-12 * 1.8 * kVco * 1.8, 1e-12);
    EXPECT_NEAR(Cell(pll, 0, "DCbias VCC12 Pwr (W)"), 0.1e-3 * 1.2, 1e-15);
    // Leakage is never negative, on VCC12 as on the other supplies.
    for (const char* column :
         {"Leakage VCC Pwr (W)", "Leakage VCCPLL Pwr (W)", "Leakage VCC12 Pwr (W)"})
        EXPECT_GT(Cell(pll, 0, column), 0.0) << column;
    EXPECT_NE(log.find("PowerDynPLLvcc12 row(0) = idxDynPLLvcc12 * vcc12 = "), std::string::npos);
    EXPECT_NE(log.find("PLL uses Fvco=Freq*N*V/M=2.5e+07*4*8/1=8e+08"), std::string::npos);
    // Written to the matrix under "Vcc12", a row it lacks: the Vcc1.2 supply
    // row holds nothing of the PLL, while the block's total counts it.
    const int row = eng.GetSupplyTable()->GetRowNumber(std::string("Vcc1.2"));
    EXPECT_EQ(Num(eng.GetPowerTable()->GetValueAt(row, 2)), 0.0);
    EXPECT_NEAR(BlockRow(eng, "PLL"), Cell(Total(eng, "PLL"), 0, "Total Pwr (W)"), 1e-4);
    EXPECT_GT(Cell(Total(eng, "PLL"), 0, "Total Pwr (W)"),
              Cell(pll, 0, "Dyn. VCC12 Pwr (W)") + Cell(pll, 0, "Dyn. VCCPLL Pwr (W)"));
}

// ---- The DLL family, from one table ----------------------------------------------------

struct FamilyCase {
    const char* panel;
    double cPf;         // switched C of VCC (and VCCPG) per element
    double freq, af;    // Hz, fraction
    double count;       // used elements of the fixture's row
    double dfbD;        // used block bias of VCC (and VCCPG), mA
    double elementA;    // per-element leakage A, uA
    double total;       // elements in the device
    double dfbUnusedA;  // unused block leakage A, uA
    const char* leakWords;
    const char* biasWords;
};

class ClockFamily : public ::testing::TestWithParam<FamilyCase> {};

TEST_P(ClockFamily, RowUnusedRowTotalsAndLogWords) {
    const FamilyCase& c = GetParam();
    FixtureEngine f;
    PC_ENG& eng = *f.eng;
    const std::string log = pwctest::CaptureCalcLog([&] { eng.Calculate(); });
    PD_TABLE* rows = Table(eng, c.panel, c.panel);
    ASSERT_NE(rows, nullptr);
    ASSERT_EQ(rows->GetNumOfRows(), 1);

    EXPECT_NEAR(Cell(rows, 0, "Dyn. Pwr (W)"), c.cPf * 1e-12 * 1.2 * c.freq * c.af * c.count * 1.2,
                1e-12);
    EXPECT_NEAR(Cell(rows, 0, "DCbias VCC Pwr (W)"), c.dfbD * 1e-3 * c.count * 1.2, 1e-12);
    EXPECT_NE(log.find(c.leakWords), std::string::npos) << c.leakWords;
    EXPECT_NE(log.find(c.biasWords), std::string::npos) << c.biasWords;

    // The device-wide row: the element term over all elements, the block term
    // over the free ones.
    PD_TABLE* total = Total(eng, c.panel);
    Row unused;
    eng.GetArrayOfColumnUnusedNamesPLLDLLDQS(total, unused.names);
    eng.GetArrayOfColumnUnusedValuesPLLDLLDQS(total, unused.values);
    eng.InitConstants(unused.names, unused.values);
    const std::string n = c.panel;
    EXPECT_EQ(Num(unused.Value(n + "_total")), c.total);
    EXPECT_EQ(Num(unused.Value(n + "_unused")), c.total - c.count);
    const double t = Num(unused.Value("TJ"));
    const double leak =
        (c.elementA * c.total + c.dfbUnusedA * (c.total - c.count)) * 1e-6 * Exp(0.02 * t);
    const PC_ENG::PanelFrame* frame = PC_ENG::ClockBlockFrame(c.panel);
    ASSERT_NE(frame, nullptr);
    EXPECT_NEAR((eng.*frame->unused[0].leak)(c.panel, unused.names, unused.values, "VCC"), leak,
                leak * 1e-6);

    double sum = 0.0;
    for (const char* col : {"Dyn. Pwr (W)", "Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)"})
        sum += Cell(rows, 0, col);
    for (const char* col : {"Unused Leakage VCC Pwr (W)", "Unused DCbias VCC Pwr (W)"})
        sum += Cell(total, 0, col);
    EXPECT_NEAR(Cell(total, 0, "Total Pwr (W)"), sum, 1e-15);
    EXPECT_NEAR(Cell(total, 0, "Total Dyn. Pwr (W)"), Cell(rows, 0, "Dyn. Pwr (W)"), 1e-15);
    EXPECT_NEAR(BlockRow(eng, c.panel), sum, 1e-4);
    EXPECT_NEAR(eng.GetStaTable("Vcc", c.panel, eng.GetPowerMatrix()), sum, 1e-4);
}

// Rows of the fixture: 100 MHz, the ESB at 50 MHz and 20 %. DDRDLL and DLLDEL
// run on VCC and VCCPG, both at the core voltage.
INSTANTIATE_TEST_SUITE_P(
    Tabs, ClockFamily,
    ::testing::Values(FamilyCase{"DLL", 0.8, 100e6, 1.0, 1, 0.1, 0.2, 2, 0.1,
                                 "PowerLeakDLLused row(0) = PowerLeakDLLused * vcc = ",
                                 "PowerBiasDLLused row(0) = IccBiasDLLused * vcc = "},
                      FamilyCase{"DDRDLL", 1.4, 100e6, 1.0, 1, 0.14, 0.3, 2, 0.15,
                                 "PowerLeakDDRDLLused row(0) = IccLeakDDRDLLused * vcc = ",
                                 "PowerBiasDDRDLLused row(0) = IccBiasDDRDLLused * vcc = "},
                      FamilyCase{"DQSDLL", 0.9, 100e6, 1.0, 1, 0.08, 0.25, 1, 0.12,
                                 "PowerLeakDQSDLLused row(0) = IccLeakDQSDLLused * vcc = ",
                                 "PowerBiasDQSDLLused row(0) = IccBiasDQSDLLused * vcc = "},
                      FamilyCase{"DQS", 0.4, 100e6, 1.0, 2, 0.03, 0.1, 4, 0.05,
                                 "PowerLeakDQSused row(0) = IccLeakDQSused * vcc = ",
                                 "PowerBiasDQSused row(0) = IccLeakDQSused * vcc = "},
                      FamilyCase{"DLLDEL", 0.4, 100e6, 1.0, 2, 0.01, 0.05, 4, 0.04,
                                 "PowerLeakDLLDELused row(0) = IccLeakDLLDELused * vcc = ",
                                 "PowerBiasDLLDELused row(0) = IccLeakDLLDELused * vcc = "},
                      FamilyCase{"ESB", 1.5, 50e6, 0.2, 1, 0.05, 0.4, 2, 0.2,
                                 "PowerLeakDQSDLLused row(0) = IccLeakDQSDLLused * vcc = ",
                                 "PowerBiasESBused row(0) = IccBiasESBused * vcc = "}),
    [](const auto& info) { return std::string(info.param.panel); });

TEST(ClockFamilyEdges, TypelessDllAndOverusedDqs) {
    FixtureEngine f;
    PC_ENG& eng = *f.eng;
    PD_TABLE* dll = Table(eng, "DLL", "DLL");
    Set(dll, 0, "Type", "");
    PD_TABLE* dqs = Table(eng, "DQS", "DQS");
    Set(dqs, 0, "# DQS", "6");
    eng.Calculate();
    // A DLL without a type switches nothing; its block bias stays.
    EXPECT_EQ(Cell(dll, 0, "Dyn. Pwr (W)"), 0.0);
    EXPECT_GT(Cell(dll, 0, "DCbias VCC Pwr (W)"), 0.0);
    Row r;
    eng.GetArrayOfColumnUnusedNamesPLLDLLDQS(Total(eng, "DLL"), r.names);
    eng.GetArrayOfColumnUnusedValuesPLLDLLDQS(Total(eng, "DLL"), r.values);
    EXPECT_EQ(r.Value("Type"), "DLL");
    // Six used of four: the free count goes below zero and stands.
    eng.GetArrayOfColumnUnusedValuesPLLDLLDQS(Total(eng, "DQS"), r.values);
    eng.GetArrayOfColumnUnusedNamesPLLDLLDQS(Total(eng, "DQS"), r.names);
    EXPECT_EQ(r.Value("DQS_unused"), "-2");
    EXPECT_EQ(r.Value("DQS_used"), "6");
}

TEST(ClockFamilyEdges, DdrDllStandbyTakesTheStandbyRecords) {
    FixtureEngine f;
    PC_ENG& eng = *f.eng;
    PD_TABLE* ddr = Table(eng, "DDRDLL", "DDRDLL");
    Set(ddr, 0, "Allow Standby", "Enable");
    eng.Calculate();
    // Standby D: 0.01 mA on VCC, 0 on VCCPG.
    EXPECT_NEAR(Cell(ddr, 0, "DCbias VCC Pwr (W)"), 0.01e-3 * 1.2, 1e-15);
    // The selectors know the DQS control block and nothing else of the family.
    const Row r = RowOf(eng, ddr, 0);
    EXPECT_EQ(eng.ProcessFormulaBiasUsedVcc("DDRDLL", r.names, r.values), 0.0);
    EXPECT_DOUBLE_EQ(eng.ProcessFormulaBiasUnusedVcc("DQSCNTL", r.names, r.values),
                     eng.ProcessDQSCNTLbiasUnused("DQSCNTL", r.names, r.values, "VCC"));
}

}  // namespace
