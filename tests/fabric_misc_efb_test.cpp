// The always-on sum of the Misc tab term by term, its row tables, the EFB
// tab with and without its parts, the summary rows of both, and the standby
// current of an empty design.
#include <gtest/gtest.h>

#include <sstream>

#include "fabric_pll_misc_fixture.h"

using namespace fabtest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

Row DeviceWideRow(PC_ENG& eng) {
    Row r;
    eng.GetArrayOfColumnUnusedNamesMiscTotal(nullptr, r.names);
    eng.GetArrayOfColumnUnusedValuesMiscTotal(nullptr, r.values);
    eng.InitConstants(r.names, r.values);
    return r;
}

// The `.pwr` blocks in the order their leakage lines appear in the log.
std::vector<std::string> LeakBlocks(const std::string& log) {
    static const char* const kBlocks[] = {"POWER_MANAGER", "REGULATOR", "FLASH", "CONFIG",
                                          "SHIFTREGS",     "GBUF",      "REFS",  "IREF",
                                          "MISC",          "PWRSWITCH", "MCLK",  "DQS"};
    std::vector<std::string> blocks;
    std::istringstream in(log);
    std::string line;
    while (std::getline(in, line)) {
        for (const char* b : kBlocks) {
            if (line.rfind(std::string("ICCleakused_") + b + "_", 0) != 0) continue;
            if (blocks.empty() || blocks.back() != b) blocks.push_back(b);
        }
    }
    return blocks;
}

struct AlwaysOnCase {
    const char* device;
    const char* package;
    std::vector<std::string> order;  // blocks of the VCC leakage, in order
    double biasMilliamps;            // the VCC bias, worked out from the data
};

class AlwaysOn : public ::testing::TestWithParam<AlwaysOnCase> {};

TEST_P(AlwaysOn, VccSumTermByTermInItsOrder) {
    const AlwaysOnCase& c = GetParam();
    SampleEngine s(c.device, c.package);
    PC_ENG& eng = *s.eng;
    const Row r = DeviceWideRow(eng);
    double leak = 0.0;
    const std::string log = pwctest::CaptureCalcLog(
        [&] { leak = eng.ProcessMiscLeakVccUsed("Misc", r.names, r.values, "VCC"); });
    EXPECT_EQ(LeakBlocks(log), c.order);
    EXPECT_NE(
        log.find("IccLeakTotalMiscUsed = IccRegulator + IccLeakMiscFlash + IccLeakMiscConfig + "
                 "IccLeakMiscShiftregs + IccLeakMiscRefs + IccLeakMiscIref + IccLeakMiscMisc + "
                 "IccLeakDFBadditional + IccPowerSerdesUnused +IccPowerDQSunused + "
                 "IccLeakMiscPwrswitch;"),
        std::string::npos);

    // The sum is its members'; the power manager's block comes first where
    // the device has one.
    double parts = eng.ProcessMiscRegulatorLeakUsed(r.names, r.values) +
                   eng.ProcessMiscFlashLeakUsed(r.names, r.values) +
                   eng.ProcessMiscConfigLeakUsed(r.names, r.values) +
                   eng.ProcessMiscShiftregsUsed(r.names, r.values) +
                   eng.ProcessMiscRefsLeakUsed(r.names, r.values) +
                   eng.ProcessMiscIrefLeakUsed(r.names, r.values) +
                   eng.ProcessMiscMiscLeakUsed(r.names, r.values) +
                   eng.ProcessMiscPwrSwitchLeakUsed(r.names, r.values);
    const bool manager = c.order.front() == "POWER_MANAGER";
    const double managerTerm = eng.GetIccLeakAt("MISC", "POWER_MANAGER", "DCforBLOCK_used@", 1.0,
                                                "m", "VCC", r.names, r.values);
    EXPECT_EQ(managerTerm > 0.0, manager);
    if (manager) parts += managerTerm;
    EXPECT_NEAR(leak, parts, leak * 1e-12);
    EXPECT_GT(leak, 0.0);

    // Bias has no temperature: the D of every term, in mA.
    EXPECT_NEAR(eng.ProcessMiscBiasVccUsed("Misc", r.names, r.values, "VCC"),
                c.biasMilliamps * 1e-3, 1e-12);
}

// KZQ2-640ZE: no regulator, power switch or power manager. Bias, mA: flash
// 0.001 + 0.002, references 0.005 + 0.01, power-on reset 0.006, bandgaps 0.02.
// KZQ2-1200HC adds the regulator's 0.05 and the manager's 0.012, and its
// flash is 0.001 + 0.003.
INSTANTIATE_TEST_SUITE_P(
    Devices, AlwaysOn,
    ::testing::Values(AlwaysOnCase{"KZQ2-640ZE",
                                   "TG100",
                                   {"FLASH", "CONFIG", "SHIFTREGS", "REFS", "MISC"},
                                   0.044},
                      AlwaysOnCase{"KZQ2-1200HC",
                                   "CABGA256",
                                   {"POWER_MANAGER", "REGULATOR", "FLASH", "CONFIG", "SHIFTREGS",
                                    "REFS", "MISC", "PWRSWITCH"},
                                   0.107}),
    [](const auto& info) {
        return info.param.order.front() == "POWER_MANAGER" ? std::string("WithPowerManager")
                                                           : std::string("WithoutPowerManager");
    });

TEST(AlwaysOnParts, ConfigLeakageAndStandbyEntries) {
    SampleEngine s("KZQ2-640ZE", "TG100");
    PC_ENG& eng = *s.eng;
    Row r = DeviceWideRow(eng);
    const double t = Num(r.Value("TJ"));
    // Block A 0.2 uA and the device's element A 1.05 uA, B 0.026, K 1.
    const double config = (0.2 + 1.05) * 1e-6 * Exp(0.026 * t);
    EXPECT_NEAR(eng.ProcessMiscConfigLeakUsed(r.names, r.values), config, config * 1e-6);

    // Power-on reset and bandgap allowed to stand by: their standby entries.
    PD_TABLE* por = Table(eng, "Misc", "POR");
    PD_TABLE* bandgap = Table(eng, "Misc", "BANDGAP");
    ASSERT_EQ(por->GetNumOfRows(), 1);
    Set(por, 0, "Allow Standby", "Yes");
    Set(bandgap, 0, "Allow Standby", "Yes");
    r = DeviceWideRow(eng);
    EXPECT_EQ(r.Value("StandbyPor"), "Enable");
    EXPECT_EQ(r.Value("StandbyBandgap"), "Enable");
    // mA: flash 0.003, references 0.0005 + 0.001, reset 0.0005, bandgaps 0.02.
    EXPECT_NEAR(eng.ProcessMiscBiasVccUsed("Misc", r.names, r.values, "VCC"), 0.025e-3, 1e-12);
}

TEST(AlwaysOnParts, BandgapControllerOnlyOnLowPowerPartsWithTheSetting) {
    for (const auto& [device, package, disable, expected] :
         std::vector<std::tuple<std::string, std::string, bool, bool>>{
             {"KZQ2-640ZE", "TG100", true, true},
             {"KZQ2-640ZE", "TG100", false, false},
             {"KZQ2-1200HC", "CABGA256", true, false}}) {
        SampleEngine s(device, package);
        s.eng->DisableBandgap = disable;
        s.eng->Calculate();
        EXPECT_EQ(s.eng->GetBandgapController(), expected) << device << " " << disable;
    }
}

TEST(MiscRows, FixtureTablesAddUpInTheirTotals) {
    FixtureEngine f;
    PC_ENG& eng = *f.eng;
    const std::string log = pwctest::CaptureCalcLog([&] { eng.Calculate(); });
    // The departures of the log words stand.
    for (const char* words : {"PowerLeakMCLKunused = IccLeakUnusedMCLK * vcc = ",
                              "PowerLeakVccDTRused row(0) = IccLeakVccI2Cused * vcc = ",
                              "PowerBiasVccDTRused row(0) = IccBiasVccUFMused * vcc = ",
                              "PowerBiasDTRunused = IccBiasTotalCIBTEST * vcc = ",
                              "\nPowerDynVccj = IccDynMiscVccj * vccj = "})
        EXPECT_NE(log.find(words), std::string::npos) << words;

    // JTAG on VCCJ: 3 inputs of 1 pF and 1 output of 4 pF at 10 MHz, AF 100 %.
    PD_TABLE* jtag = Table(eng, "Misc", "JTAG");
    EXPECT_NEAR(Cell(jtag, 0, "Dyn. VCCJ Pwr (W)"), 7e-12 * 3.3 * 10e6 * 3.3, 1e-12);
    EXPECT_NEAR(Cell(jtag, 0, "DCbias VCCJ Pwr (W)"), (3 * 0.01 + 0.02) * 1e-3 * 3.3, 1e-12);
    EXPECT_DOUBLE_EQ(Cell(jtag, 0, "Dyn. Pwr (W)"), Cell(jtag, 0, "Dyn. VCCJ Pwr (W)"));
    // The port's own block counts once, beside its pins.
    EXPECT_NE(
        log.find("IccLeakMiscVccjUsed = IccLeakJtagDFB + IccLeakJtagInput + IccLeakJtagOutput = "),
        std::string::npos);
    EXPECT_GT(Cell(jtag, 0, "Leakage VCCJ Pwr (W)"), 0.0);
    // The clock divider at 100 MHz and 50 %, on VCC and VCCPG alike.
    PD_TABLE* clkdiv = Table(eng, "Misc", "CLKDIV");
    EXPECT_NEAR(Cell(clkdiv, 0, "Dyn. Pwr (W)"), 0.4e-12 * 1.2 * 100e6 * 0.5 * 1.2, 1e-12);
    // The temperature reader: VCCAUX too.
    PD_TABLE* dtr = Table(eng, "Misc", "DTR");
    EXPECT_NEAR(Cell(dtr, 0, "Dyn. VCCAUX Pwr (W)"), 0.4e-12 * 2.5 * 1e6 * 1.0 * 2.5, 1e-12);
    EXPECT_NEAR(Cell(dtr, 0, "Dyn. Pwr (W)"),
                Cell(dtr, 0, "Dyn. VCC Pwr (W)") + Cell(dtr, 0, "Dyn. VCCAUX Pwr (W)"), 1e-15);

    // "Total Pwr (W)": the row tables' columns and the total table's own.
    PD_TABLE* total = Total(eng, "Misc");
    double sum = 0.0;
    for (const char* t : {"CLKDIV", "MCLK", "LF OSC", "CIBTEST", "DTR", "I2C", "UFM", "JTAG"}) {
        PD_TABLE* table = Table(eng, "Misc", t);
        for (const char* col :
             {"Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)", "Dyn. VCC Pwr (W)",
              "Leakage VCCAUX Pwr (W)", "DCbias VCCAUX Pwr (W)", "Dyn. VCCAUX Pwr (W)",
              "Leakage VCCJ Pwr (W)", "DCbias VCCJ Pwr (W)", "Dyn. VCCJ Pwr (W)"})
            sum += Cell(table, 0, col);
    }
    for (int c = 2; c < total->GetNumOfColumns(); ++c) sum += Num(total->GetNoRoundValueAt(0, c));
    EXPECT_NEAR(Cell(total, 0, "Total Pwr (W)"), sum, 1e-12);
    EXPECT_NEAR(BlockRow(eng, "Other"), sum, 1e-4);
    EXPECT_GT(Cell(total, 0, "Total Leakage VCCAUX Pwr (W)"), 0.0);
}

// ---- EFB ----------------------------------------------------------------------------------

TEST(Efb, NothingUsedLeavesTheWishboneOut) {
    SampleEngine s("KZQ2-1200HC", "CABGA256");
    PC_ENG& eng = *s.eng;
    const std::string log = pwctest::CaptureCalcLog([&] { eng.Calculate(); });
    EXPECT_FALSE(eng.detectWBused());
    EXPECT_NE(log.find("PowerDynWISHBONE row(0) = IccDynEfbWISHBONE * vcc = 0 * 1.2 = 0"),
              std::string::npos);
    EXPECT_EQ(log.find("ICCdynEFB_WISHBONE"), std::string::npos);
    // The configuration clock: 0.16 pF at 66 MHz, every cycle.
    EXPECT_NE(log.find("PowerDynCONFIG  = IccDynEfbCONFIG * vcc = "), std::string::npos);
    PD_TABLE* total = Total(eng, "EFB");
    EXPECT_NEAR(Cell(total, 0, "Total Dyn. Pwr (W)"), 0.16e-12 * 1.2 * 66e6 * 1.2, 1e-12);
    // The block left free: its unused record only.
    EXPECT_GT(Cell(total, 0, "Unused Leakage VCC Pwr (W)"), 0.0);
}

TEST(Efb, PartsTheirBridgeAndTheSummary) {
    SampleEngine s("KZQ2-1200HC", "CABGA256");
    PC_ENG& eng = *s.eng;
    PD_TABLE* tc = Table(eng, "EFB", "TC");
    AddRow(tc, {{"# TC", "1"}, {"WB Used", "No"}, {"Freq. (MHz)", "12"}, {"AF (%)", "10"}});
    EXPECT_FALSE(eng.detectWBused());
    Set(tc, 0, "WB Used", "Yes");
    EXPECT_TRUE(eng.detectWBused());
    Set(tc, 0, "WB Used", "No");
    PD_TABLE* i2c = Table(eng, "EFB", "I2C1");
    AddRow(i2c, {{"# I2C1", "1"}, {"Freq. (MHz)", "12"}, {"AF (%)", "10"}});
    EXPECT_TRUE(eng.detectWBused());
    PD_TABLE* wb = Table(eng, "EFB", "WISHBONE");
    AddRow(wb, {{"# WISHBONE", "1"}, {"Freq. (MHz)", "12"}, {"AF (%)", "10"}});
    eng.Calculate();

    // C (hp data) x 1.2 V x 12 MHz x 10 % x 1, times 1.2 V.
    EXPECT_NEAR(Cell(i2c, 0, "Dyn. Pwr (W)"), 0.945e-12 * 1.2 * 12e6 * 0.1 * 1.2, 1e-12);
    EXPECT_NEAR(Cell(tc, 0, "Dyn. Pwr (W)"), 1.155e-12 * 1.2 * 12e6 * 0.1 * 1.2, 1e-12);
    EXPECT_NEAR(Cell(wb, 0, "Dyn. Pwr (W)"), 2.31e-12 * 1.2 * 12e6 * 0.1 * 1.2, 1e-12);

    PD_TABLE* total = Total(eng, "EFB");
    double dyn = 0.16e-12 * 1.2 * 66e6 * 1.2;
    for (PD_TABLE* t : {i2c, tc, wb}) dyn += Cell(t, 0, "Dyn. Pwr (W)");
    EXPECT_NEAR(Cell(total, 0, "Total Dyn. Pwr (W)"), dyn, 1e-12);
    double all = dyn;
    for (const char* col : {"Total Leakage VCC Pwr (W)", "Total DCbias VCC Pwr (W)",
                            "Unused Leakage VCC Pwr (W)", "Unused DCbias VCC Pwr (W)"})
        all += Cell(total, 0, col);
    EXPECT_NEAR(Cell(total, 0, "Total Pwr (W)"), all, 1e-12);
    EXPECT_NEAR(BlockRow(eng, "EFB"), all, 1e-6);
    EXPECT_NEAR(eng.GetStaTable("Vcc", "EFB", eng.GetPowerMatrix()), all, 1e-6);
    // The block is in use: the used record's D, 0.02 mA, counts once.
    Row r;
    eng.GetArrayOfColumnUnusedNamesEFB(total, r.names);
    eng.GetArrayOfColumnUnusedValuesEFB(total, r.values);
    EXPECT_EQ(r.Value("EFB_used"), "1");
    EXPECT_EQ(r.Value("WISHBONE_used"), "1");
    EXPECT_EQ(r.Value("I2C2_unused"), "1");
    EXPECT_NEAR(eng.ProcessEFBbiasVccUsed("EFB", r.names, r.values, "VCC"), 0.02e-3, 1e-12);
}

// ---- The summary --------------------------------------------------------------------------

TEST(Summary, DemoBlocksAndSuppliesAddUp) {
    auto project = pwctest::LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
    pwctest::DeviceStrings d;
    auto eng = pwctest::MakeEngine(d, project.get());
    eng->Calculate();
    // The demo's PLL, timer, I2C and the device's own standby current count.
    for (const char* block : {"PLL", "EFB", "Other"}) {
        const std::string panel = std::string(block) == "Other" ? "Misc" : block;
        const double total = Cell(Total(*eng, panel), 0, "Total Pwr (W)");
        EXPECT_GT(total, 0.0) << block;
        EXPECT_NEAR(BlockRow(*eng, block), total, 1e-6) << block;
    }
    // Every block on this device sits on VCC, VCCAUX and the ASC rails: the
    // supplies' total is the blocks' total, and the Vcc row is its matrix row.
    PD_TABLE* power = eng->GetPowerTable();
    const int last = power->GetNumOfRows() - 1;
    EXPECT_NEAR(Num(power->GetValueAt(last, 2)), Num(eng->GetTotalPower()), 1e-5);
    const int vcc = eng->GetSupplyTable()->GetRowNumber(std::string("Vcc"));
    double row = 0.0;
    for (const char* block :
         {"Logic Block", "Clocks", "I/O", "Block RAM", "PLL", "EFB", "Other", "ASC"})
        row += eng->GetStaTable("Vcc", block, eng->GetPowerMatrix());
    EXPECT_NEAR(Num(power->GetValueAt(vcc, 2)), row, 1e-5);
}

// The static current of an empty design at 25 C, typical process, on VCC:
// within what small low-power FPGAs of this size publish (see
// docs/sample-data.md).
struct StandbyCase {
    const char* device;
    const char* package;
    double low, high;  // amperes
};

class EmptyDesign : public ::testing::TestWithParam<StandbyCase> {};

TEST_P(EmptyDesign, StandbyCurrentInThePublishedRange) {
    const StandbyCase& c = GetParam();
    SampleEngine s(c.device, c.package);
    s.eng->SetAmbientTemperature("25");
    s.eng->Calculate();
    const int vcc = s.eng->GetSupplyTable()->GetRowNumber(std::string("Vcc"));
    const double amps = Num(s.eng->GetCurrentTable()->GetValueAt(vcc, 0));
    EXPECT_GE(amps, c.low);
    EXPECT_LE(amps, c.high);
    // Leakage grows with temperature.
    s.eng->SetAmbientTemperature("85");
    s.eng->Calculate();
    EXPECT_GT(Num(s.eng->GetCurrentTable()->GetValueAt(vcc, 0)), amps * 1.5);
}

INSTANTIATE_TEST_SUITE_P(Devices, EmptyDesign,
                         ::testing::Values(StandbyCase{"KZQ2-640ZE", "TG100", 20e-6, 150e-6},
                                           StandbyCase{"KZQ2-256HC", "SG48", 80e-6, 600e-6},
                                           StandbyCase{"KZQ2-1200HC", "CABGA256", 150e-6, 1.5e-3}),
                         [](const auto& info) {
                             std::string n = info.param.device;
                             n.erase(std::remove(n.begin(), n.end(), '-'), n.end());
                             return n;
                         });

}  // namespace
