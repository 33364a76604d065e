// DSP slices and hard cores: the two-table forms on the fixture, each DSP kind
// from its own equation section, the free slices and cores, and the log words.
#include <gtest/gtest.h>

#include <string>

#include "highspeed_fixture.h"

namespace {

using namespace hstest;

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

// ---- Two tables: the fixture (family Orvan3, 1.0 V) ------------------------------------

TEST(DspTwoTables, TheFrameWhateverTheFamilyAndNeverTheKindTables) {
    HsEngine eng = HardBlockFixture();
    std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    PD_TABLE* dsp = Table(*eng, "DSP", "DSP");
    // Two MULT18X18 at 100 MHz, 50 %: 10 pF * 1.0 V * 1e8 * 0.5 * 2, times 1.0 V.
    EXPECT_NEAR(Cell(dsp, 0, "Dyn. Pwr (W)"), 10e-12 * 1e8 * 0.5 * 2, 1e-12);
    // Bias: the type's 0.1 mA, the shared part's 0.05 mA and the block's 0.2 mA, each twice.
    EXPECT_NEAR(Cell(dsp, 0, "DCbias VCC Pwr (W)"), (0.1 + 0.05 + 0.2) * 2e-3, 1e-12);
    // Six of eight slices free: the block term's 0.1 mA each.
    EXPECT_NEAR(Cell(Total(*eng, "DSP"), 0, "Unused DCbias VCC Pwr (W)"), 6 * 0.1e-3, 1e-12);
    // The kind tables' words and entries never come up ("M9X9" would cost 100 times more).
    EXPECT_EQ(log.find("M9X9"), std::string::npos);
    EXPECT_NE(log.find("PowerDynDSP row(0) = IccDynDSP * vcc = "), std::string::npos);
    EXPECT_NE(log.find("PowerBiasDSPunused = IccBiasDSPunused * vcc = "), std::string::npos);
    EXPECT_NE(
        log.find("IccBiasDSPused = IccBiasDSP + IccBiasMISC + IccDFBbias + IccBiasRoutingISB"),
        std::string::npos);
}

TEST(DspTwoTables, AnEmptyTypeKeepsTheSharedAndBlockTerms) {
    HsEngine eng = HardBlockFixture();
    PD_TABLE* dsp = Table(*eng, "DSP", "DSP");
    Set(dsp, 0, "Type", "");
    std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    // No type entry; the shared part's 0.05 mA and the block's 0.2 mA, twice.
    EXPECT_EQ(Cell(dsp, 0, "Dyn. Pwr (W)"), 0.0);
    EXPECT_NEAR(Cell(dsp, 0, "DCbias VCC Pwr (W)"), (0.05 + 0.2) * 2e-3, 1e-12);
    EXPECT_EQ(log.find("Error: DSP"), std::string::npos);
}

TEST(FabaTwoTables, TypedCoresAndTheFreeOnes) {
    HsEngine eng = HardBlockFixture();
    std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    PD_TABLE* faba = Table(*eng, "FABA", "FABA");
    EXPECT_NEAR(Cell(faba, 0, "Dyn. Pwr (W)"), 100e-12 * 1e8 * 0.2, 1e-12);
    EXPECT_NEAR(Cell(faba, 0, "DCbias VCC Pwr (W)"), (1 + 0.4) * 1e-3, 1e-12);
    EXPECT_NEAR(Cell(Total(*eng, "FABA"), 0, "Unused DCbias VCC Pwr (W)"), 0.3e-3, 1e-12);
    EXPECT_NE(log.find("PowerLeakFABAused row(0) = IccLeakFABAused * vcc = "), std::string::npos);
    // An empty type prices nothing.
    Set(faba, 0, "Type", "");
    eng->Calculate();
    EXPECT_EQ(Cell(faba, 0, "Dyn. Pwr (W)"), 0.0);
    EXPECT_EQ(Cell(faba, 0, "DCbias VCC Pwr (W)"), 0.0);
}

// ---- Six kinds on Orvan3 ---------------------------------------------------------------

struct KindCase {
    const char* kind;
    double pf;  // C of the kind
    const char* dynLog;
    const char* biasUnusedLog;
};

class DspKind : public ::testing::TestWithParam<KindCase> {};

// Four of the kind at 200 MHz and 25 % on OR3-40 (VCC 1.1 V).
TEST_P(DspKind, PricedFromItsOwnEquationSection) {
    const KindCase c = GetParam();
    HsEngine eng(kOrvan3);
    PD_TABLE* t = Table(*eng, "DSP", c.kind);
    const int row = pwctest::AddRow(t, {{std::string("# ") + c.kind, "4"},
                                        {"Actual Type", c.kind},
                                        {"Freq. (MHz)", "200"},
                                        {"AF (%)", "25"},
                                        {"Speed Mode", "Low"}});
    PD_TABLE* other = Table(*eng, "DSP", c.kind == std::string("M9X9") ? "ALU24" : "M9X9");
    const int otherRow = pwctest::AddRow(other, {{std::string("# ") + other->name, "2"},
                                                 {"Actual Type", other->name},
                                                 {"Freq. (MHz)", "100"},
                                                 {"AF (%)", "50"}});
    std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    const double expected = 1.1 * (c.pf * 1e-12 * 1.1 * 200e6 * 0.25 * 4);
    EXPECT_NEAR(Cell(t, row, "Dyn. Pwr (W)"), expected, 1e-12);
    EXPECT_NE(log.find(c.dynLog), std::string::npos);
    EXPECT_NE(log.find(c.biasUnusedLog), std::string::npos);
    const double otherDyn = Cell(other, otherRow, "Dyn. Pwr (W)");

    // Only the kind's own section changes its price.
    auto* keys = dynamic_cast<PD_KEYSECT*>(eng->GetPqnData()->GetSection(c.kind));
    ASSERT_NE(keys, nullptr);
    keys->AddKeyVal("_ICCdyn", (std::string(keys->GetValue("_ICCdyn")) + " * 3").c_str());
    eng->Calculate();
    EXPECT_NEAR(Cell(t, row, "Dyn. Pwr (W)"), 3 * expected, 1e-12);
    EXPECT_NEAR(Cell(other, otherRow, "Dyn. Pwr (W)"), otherDyn, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DspKind,
    ::testing::Values(KindCase{"M9X9", 5, "PowerDynM9X9 row(0) = IccDynM9X9 * vcc = ",
                               "PowerBiasM9X9unused = IccBiasM9X9unused * vcc = "},
                      KindCase{"M18X18", 16, "PowerDynM18X18 row(0) = IccDynM18X18 * vcc = ",
                               "PowerBiasM18X18unused = IccBiasM18X18unused * vcc = "},
                      KindCase{"ALU54", 12, "PowerDynALU54 row(0) = IccDynALU54 * vcc = ",
                               "PowerBiasALU54unused = IccBiasALU54unused * vcc = "},
                      KindCase{"ALU24", 6, "PowerDynALU54 row(0) = IccDynALU24 * vcc = ",
                               "PowerBiasALU54unused = IccBiasALU24unused * vcc = "},
                      KindCase{"PRADD18", 3, "PowerDynPRADD18 row(0) = IccDynALU24 * vcc = ",
                               "PowerBiasPRADD18unused = IccBiasPRADD18unused * vcc = "},
                      KindCase{"PRADD9", 1.6, "PowerDynALU54 row(0) = IccDynPRADD9 * vcc = ",
                               "PowerBiasPRADD9unused = IccBiasPRADD9unused * vcc = "}),
    [](const ::testing::TestParamInfo<KindCase>& info) { return std::string(info.param.kind); });

TEST(DspKinds, HighSpeedAddsItsPipelineAndFreeSlicesCountPerKind) {
    HsEngine eng(kOrvan3);
    PD_TABLE* t = Table(*eng, "DSP", "M18X18");
    const int row = pwctest::AddRow(t, {{"# M18X18", "4"},
                                        {"Actual Type", "M18X18"},
                                        {"Freq. (MHz)", "200"},
                                        {"AF (%)", "25"},
                                        {"Speed Mode", "High"}});
    eng->Calculate();
    EXPECT_NEAR(Cell(t, row, "Dyn. Pwr (W)"), 1.1 * ((16 + 3.2) * 1e-12 * 1.1 * 200e6 * 0.25 * 4),
                1e-12);
    std::vector<std::string> names, values;
    eng->GetArrayOfColumnUnusedNamesDSP3(nullptr, names);
    eng->GetArrayOfColumnUnusedValuesDSP3(nullptr, values);
    fabtest::Row unused{names, values};
    EXPECT_EQ(unused.Value("M18X18_used"), "4");
    EXPECT_EQ(unused.Value("M18X18_unused"), "28");
    EXPECT_EQ(unused.Value("M9X9_unused"), "64");
    // An empty kind table sums to nothing; the free slices of every kind leak.
    EXPECT_EQ(Cell(Table(*eng, "DSP", "ALU24"), 0, "Dyn. Pwr (W)"), 0.0);
    EXPECT_GT(Cell(Total(*eng, "DSP"), 0, "Unused Leakage VCC Pwr (W)"), 0.0);
}

// ---- Hard cores on Orvan4UM ------------------------------------------------------------

// A core is counted exactly when it is priced: the cell's first word names
// the coefficient entry.
TEST(FabaCores, CountedAsTheyArePriced) {
    HsEngine eng(kOrvan4UM);
    PD_TABLE* mac2 = Table(*eng, "FABA", "MAC2");
    const char* const cores[] = {"EMAC0", "emac 1", " EMAC3 ", "XMAC 10G", "", "EMACS"};
    for (const char* core : cores)
        pwctest::AddRow(mac2, {{"Core", core}, {"Freq. (MHz)", "125"}, {"AF (%)", "20"}});
    EXPECT_EQ(eng->GetTotalOrvan4FabaCore(mac2, "Core", "EMAC"), 2);
    EXPECT_EQ(eng->GetTotalOrvan4FabaCore(mac2, "Core", "XMAC"), 1);
    EXPECT_EQ(eng->GetTotalOrvan4FabaCore(mac2, "None", "EMAC"), 0);
    eng->Calculate();
    for (int r = 0; r < 6; ++r) {
        SCOPED_TRACE(cores[r]);
        PD_TABLE one("MAC2");
        one.SetColumns({"Core"});
        pwctest::AddRow(&one, {{"Core", cores[r]}});
        const int counted = eng->GetTotalOrvan4FabaCore(&one, "Core", "EMAC") +
                            eng->GetTotalOrvan4FabaCore(&one, "Core", "XMAC");
        EXPECT_EQ(counted == 1, Cell(mac2, r, "Dyn. Pwr (W)") > 0.0);
    }
    EXPECT_NEAR(Cell(mac2, 2, "Dyn. Pwr (W)"), 80e-12 * 1.0 * 125e6 * 0.2, 1e-12);
    pwctest::AddRow(Table(*eng, "FABA", "MAC3"), {{"Core", "MCM"}, {"# MEMORY", "1"}});
    std::vector<std::string> names, values;
    eng->GetArrayOfColumnUnusedNamesFABA4(nullptr, names);
    eng->GetArrayOfColumnUnusedValuesFABA4(nullptr, values);
    fabtest::Row unused{names, values};
    EXPECT_EQ(unused.Value("EMAC_unused"), "2");
    EXPECT_EQ(unused.Value("XMAC_unused"), "0");
    EXPECT_EQ(unused.Value("PCIE_unused"), "1");
    EXPECT_EQ(unused.Value("MCM_used"), "1");
    EXPECT_EQ(unused.Value("MCM_unused"), "1");
    // Eleven EMACs on a device of four leave none free, not fewer than none.
    for (int r = 0; r < 9; ++r) pwctest::AddRow(mac2, {{"Core", "EMAC1"}});
    eng->GetArrayOfColumnUnusedValuesFABA4(nullptr, values);
    unused = {names, values};
    EXPECT_EQ(unused.Value("EMAC_unused"), "0");
}

TEST(FabaCores, MemoryControllerAndStandbyAndLogWords) {
    HsEngine eng(kOrvan4UM);
    PD_TABLE* mac3 = Table(*eng, "FABA", "MAC3");
    PD_TABLE* pcie = Table(*eng, "FABA", "PCIE");
    pwctest::AddRow(mac3, {{"Core", "MCM"},
                           {"# MEMORY", "2"},
                           {"Freq. (MHz)", "200"},
                           {"AF (%)", "30"},
                           {"Allow Standby", "Disable"}});
    pwctest::AddRow(
        pcie,
        {{"Core", "PCIE"}, {"Freq. (MHz)", "250"}, {"AF (%)", "25"}, {"Allow Standby", "Enable"}});
    std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    // The controller (150 pF) and its two ports (40 pF each).
    EXPECT_NEAR(Cell(mac3, 0, "Dyn. Pwr (W)"), (150 + 2 * 40) * 1e-12 * 200e6 * 0.3, 1e-12);
    // In standby the PCIe core switches its 20 pF and draws the standby record.
    EXPECT_NEAR(Cell(pcie, 0, "Dyn. Pwr (W)"), 20e-12 * 250e6 * 0.25, 1e-12);
    EXPECT_NEAR(Cell(pcie, 0, "DCbias VCC Pwr (W)"), 0.05e-3, 1e-12);
    for (const char* words : {"PowerDynMAC3 row(0) = IccDynMAC3 * vcc = ",
                              "PowerLeakUsedMCMused row(0) = IccLeakMCMused * vcc = ",
                              "PowerBiasUsedPCIEused row(0) = IccBiasPCIEused * vcc = ",
                              "PowerLeakFABAunused = IccLeakFABAunused * vcc = "})
        EXPECT_NE(log.find(words), std::string::npos) << words;
}

}  // namespace
