// The firmware-resilience part: its port files, its tab, its bank 0 and its
// category totals.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <string>
#include <vector>

#include "engine_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

std::string ProjectsDir() {
    return std::string(PWC_TEST_DATA_DIR) + "/projects";
}

void Write(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}

// An engine on the demo design, its ports read from `dir` under `stem`.
std::unique_ptr<PC_ENG> PfrEngine(DeviceStrings& d, PD_DATA* project, const std::string& stem,
                                  const std::string& dir = ProjectsDir()) {
    return std::make_unique<PC_ENG>(d.Array(), project, "Calculation", false, "", stem,
                                    dir + "/wd7r00-demo.pcf", "", "", "", nullptr, nullptr, nullptr,
                                    "", false, "", "");
}

std::unique_ptr<PD_DATA> Demo() {
    return LoadProject(ProjectsDir() + "/wd7r00-demo.pcf");
}

double At(PD_TABLE* t, int row, const std::string& column) {
    return Num(t->GetValueAt(row, t->GetColumnIndex(column.c_str())));
}

// ---- Port files ---------------------------------------------------------

TEST(PfrPortFiles, HeadersInAnyOrderAndNaCellsGiveTheTypeTexts) {
    ScratchDir dir("pfr_ports");
    Write(dir.File("d_icc.pio"),
          "ICC_ID SLEWRATE DIFFDRIVE ICC_Port_Name DRIVE DIR IO_TYPE\n"
          "\n"
          "  0 FAST NA clk 8 Output LVCMOS18  \n"
          "1 NA 2 pair NA Input LVDS\n"
          "2 NA NA plain NA Input LVCMOS33\n");
    Write(dir.File("d_icc1.pio"),
          "DIR Port_Name DRIVE IO_TYPE SLEWRATE DIFFDRIVE\n"
          "Bidi sda 4 LVCMOS33 SLOW NA\n");
    std::vector<_ICCPORT> icc, icc1;
    ASSERT_TRUE(PC_ENG::ReadPortFile(dir.File("d_icc.pio"), false, icc));
    ASSERT_TRUE(PC_ENG::ReadPortFile(dir.File("d_icc1.pio"), true, icc1));
    ASSERT_EQ(icc.size(), 3u);
    EXPECT_EQ(icc[0].name, "clk");
    EXPECT_EQ(icc[0].iotype, "LVCMOS18-8mA-SLEW:FAST");
    EXPECT_EQ(icc[0].direction, "Output");
    EXPECT_EQ(icc[1].iotype, "LVDS-DIFFDRIVE:2");
    EXPECT_EQ(icc[2].iotype, "LVCMOS33");
    ASSERT_EQ(icc1.size(), 1u);
    EXPECT_EQ(icc1[0].name, "sda");
    EXPECT_EQ(icc1[0].iotype, "LVCMOS33-4mA-SLEW:SLOW");
    EXPECT_EQ(icc1[0].direction, "Bidi");
    EXPECT_FALSE(PC_ENG::ReadPortFile(dir.File("missing.pio"), false, icc));
}

TEST(PfrPortFiles, OverridesMatchWholeNamesOnly) {
    ScratchDir dir("pfr_override");
    Write(dir.File("o.txt"),
          "IO_TYPE ICC_Port_Name DIR DRIVE\n"
          "LVCMOS25 clk Bidi 12\n"
          "SSTL18 cl Input NA\n");
    std::vector<_ICCPORT> ports{{"clk", "LVCMOS18", "Output"}, {"clk2", "LVCMOS18", "Output"}};
    PC_ENG::ApplyPortOverrides(dir.File("o.txt"), ports);
    EXPECT_EQ(ports[0].iotype, "LVCMOS25-12mA");
    EXPECT_EQ(ports[0].direction, "Bidi");
    EXPECT_EQ(ports[1].iotype, "LVCMOS18");
    EXPECT_EQ(ports[1].direction, "Output");
}

TEST(PfrPortFiles, TheDemoLoadsItsPortsAndTheBlocksData) {
    DeviceStrings d = Dunmar();
    auto project = Demo();
    auto eng = PfrEngine(d, project.get(), "wd7r00-demo");
    EXPECT_EQ(eng->GetIccPorts().size(), 4u);
    ASSERT_EQ(eng->GetIcc1Ports().size(), 3u);
    EXPECT_EQ(eng->GetIcc1Ports()[1].direction, "Bidi");
    PD_DATA* pwr = eng->GetPwrData();
    EXPECT_NE(dynamic_cast<PD_PWRSECT*>(pwr->GetSection("PFR")), nullptr);
    EXPECT_NE(pwr->GetSection("PFR VCCIO VALUE"), nullptr);
    // The device's own scale factors and identity stand.
    auto* scale = dynamic_cast<PD_KEYSECT*>(pwr->GetSection("Scale Factors"));
    ASSERT_NE(scale, nullptr);
    EXPECT_STREQ(scale->GetValue("PFR_Kvcc"), "1");
    EXPECT_STREQ(dynamic_cast<PD_KEYSECT*>(pwr->GetSection("Info"))->GetValue("_ARCHITECTURE"),
                 "wd7r00");
    // A second read empties the lists first.
    EXPECT_TRUE(eng->ReadPFRFile(ProjectsDir() + "/x.pcf", "", "wd7r00-demo", "", ""));
    EXPECT_EQ(eng->GetIccPorts().size(), 4u);
    EXPECT_FALSE(eng->ReadPFRFile("", "", "wd7r00-demo", "", ""));
}

// ---- The tab ------------------------------------------------------------

class PfrTab : public ::testing::Test {
  protected:
    PD_TABLE* Block() { return TabTable(*eng, "PFR", "PFR"); }
    PD_TABLE* Total() { return TotalTable(*eng, "PFR"); }
    DeviceStrings d = Dunmar();
    std::unique_ptr<PD_DATA> project = Demo();
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(PfrTab, PortsArePricedAsIoRowsIntoThePlainSupplyColumns) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    PD_TABLE* b = Block();
    ASSERT_NE(b, nullptr);
    // Every result column is on the device's table: a term without its
    // column would be reported on the error stream.
    ::testing::internal::CaptureStderr();
    eng->Calculate();
    EXPECT_EQ(::testing::internal::GetCapturedStderr().find("has no column"), std::string::npos);
    for (const char* kind : {"Dyn. ", "Leakage ", "DCbias "})
        for (const char* tag : {"VCC", "VCCIO", "VCCAUX", "VTT"})
            EXPECT_GE(b->GetColumnIndex((std::string(kind) + tag + " Pwr (W)").c_str()), 0)
                << kind << tag;
    // The ports' VCCIO goes to the plain columns; the bank columns hold only
    // the banks' own interface terms, which have no dynamic part.
    EXPECT_GT(At(b, 0, "Dyn. VCCIO Pwr (W)"), 0.0);
    EXPECT_GT(At(b, 0, "Leakage VCCIO Pwr (W)"), 0.0);
    EXPECT_GT(At(b, 0, "Leakage Bank3 VCCIO Pwr (W)"), 0.0);
    EXPECT_LT(b->GetColumnIndex("Dyn. Bank3 VCCIO Pwr (W)"), 0);
    EXPECT_GT(At(b, 0, "Dyn. VCC Pwr (W)"), 0.0);
    EXPECT_NEAR(At(b, 0, "Dyn. Pwr (W)"),
                At(b, 0, "Dyn. VCC Pwr (W)") + At(b, 0, "Dyn. VCCAUX Pwr (W)") +
                    At(b, 0, "Dyn. VCCIO Pwr (W)") + At(b, 0, "Dyn. VTT Pwr (W)"),
                4e-6);
    EXPECT_NEAR(At(Total(), 0, "Total Dyn. Pwr (W)"), At(b, 0, "Dyn. Pwr (W)"), 1e-6);
    // Both banks in use: nothing left free.
    EXPECT_EQ(At(Total(), 0, "Unused Leakage Bank3 VCCIO Pwr (W)"), 0.0);
}

TEST_F(PfrTab, EmptyPortListsPriceOnlyTheBlocksOwnTerms) {
    eng = PfrEngine(d, project.get(), "no_such_design");
    ASSERT_TRUE(eng->GetIccPorts().empty());
    PD_TABLE* b = Block();
    PD_TABLE* t = Total();
    for (const char* tag : {"VCC", "VCCAUX", "VCCIO", "VTT"})
        EXPECT_EQ(At(b, 0, std::string("Dyn. ") + tag + " Pwr (W)"), 0.0) << tag;
    EXPECT_EQ(At(b, 0, "Dyn. Pwr (W)"), 0.0);
    EXPECT_EQ(At(b, 0, "Leakage Bank3 VCCIO Pwr (W)"), 0.0);
    // The block's DC bias by hand: VCC at the regulated core's feed (VCCAUX,
    // 3.3 V), D of the DC block 0.040 mA and of the element 0.010 mA.
    EXPECT_NEAR(At(b, 0, "DCbias VCC Pwr (W)"), 3.3 * (0.040 + 0.010) * 1e-3, 2e-6);
    EXPECT_NEAR(At(b, 0, "DCbias VCCAUX Pwr (W)"), 3.3 * (0.120 + 0.025) * 1e-3, 2e-6);
    EXPECT_GT(At(b, 0, "Leakage VCC Pwr (W)"), 0.0);
    // Both banks left free: their interfaces leak as unused.
    EXPECT_GT(At(t, 0, "Unused Leakage Bank3 VCCIO Pwr (W)"), 0.0);
    EXPECT_GT(At(t, 0, "Unused Leakage Bank4 VCCAUX Pwr (W)"), 0.0);
    double own = 0.0;
    for (const char* c : {"Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)", "Leakage VCCAUX Pwr (W)",
                          "DCbias VCCAUX Pwr (W)"})
        own += At(b, 0, c);
    for (const char* bank : {"3", "4"})
        for (const char* c :
             {"Unused Leakage Bank%s VCCIO Pwr (W)", "Unused DCbias Bank%s VCCIO Pwr (W)",
              "Unused Leakage Bank%s VCCAUX Pwr (W)", "Unused DCbias Bank%s VCCAUX Pwr (W)"}) {
            char name[128];
            std::snprintf(name, sizeof name, c, bank);
            own += At(t, 0, name);
        }
    EXPECT_NEAR(At(t, 0, "Total Pwr (W)"), own, 12e-6);
    // The free banks' log lines.
    const std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    for (const char* line :
         {"PowerLeakVccioPFRBank3Unused = IccLeakVccioPFRBankUnused * vccio = ",
          "PowerBiasVccauxPFRBank4Unused = IccBiasVccauxPFRBankUnused * vccaux = "})
        EXPECT_NE(log.find(line), std::string::npos) << line;
    EXPECT_EQ(log.find(")Unused"), std::string::npos);
}

TEST_F(PfrTab, LeakageGrowsWithTemperatureAndTheLogNamesItsTerms) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    eng->SetAmbientTemperature("25");
    eng->Calculate();
    const double cool = At(Block(), 0, "Leakage VCC Pwr (W)");
    eng->SetAmbientTemperature("85");
    std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    EXPECT_GT(At(Block(), 0, "Leakage VCC Pwr (W)"), cool);
    EXPECT_NE(log.find("PowerLeakVccPFRUsed row(0) = IccLeakVccPFRUsed * vcc = "),
              std::string::npos);
    EXPECT_NE(log.find("PowerBiasVccioPFRBank(3) = IccBiasVccioPFRBankUsed * vccio = "),
              std::string::npos);
}

TEST_F(PfrTab, AnUnusedBlockLeaksAsUnused) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    PD_TABLE* b = Block();
    b->SetValueAt("0", 0, b->GetColumnIndex("# PFR"));
    std::string log = CaptureCalcLog([&] { eng->Calculate(); });
    // The ports' VCC share stays; the block's own terms go to the unused side.
    EXPECT_EQ(At(b, 0, "DCbias VCCAUX Pwr (W)"), 0.0);
    EXPECT_GT(At(Total(), 0, "Unused Leakage VCC Pwr (W)"), 0.0);
    EXPECT_NE(log.find("powerLeakVccPFRunused = IccLeakVccPFRUnused * vcc = "), std::string::npos);
}

// ---- Bank 0 ---------------------------------------------------------------

TEST_F(PfrTab, BankZeroTakesTheOneVoltageThePortsWant) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    PD_TABLE* banks = TabTable(*eng, "I/O", "Bank Voltage");
    const int row = banks->GetRowNumber(std::string("0"));
    const int col = banks->GetColumnIndex("Voltage");
    // Mode "I2C" wants 3.3 V on bank 0; the design's LVCMOS33 there agrees.
    banks->SetValueAt("Vccio 2.5", row, col);
    eng->PFRTabUpdated();
    EXPECT_STREQ(banks->GetValueAt(row, col), "Vccio 3.3");
}

TEST_F(PfrTab, TwoWantedVoltagesChangeNothing) {
    // A mode without a bank 0 entry leaves the bank's own choice: with no
    // I/O on it, 2.5 V and 3.3 V.
    auto* io = dynamic_cast<PD_TBLSECT*>(project->GetSection("Input Output"));
    ASSERT_NE(io, nullptr);
    for (int r = io->GetNumOfRows() - 1; r >= 0; --r)
        if (std::string(io->GetValueAt(r, io->GetColumnIndex("Bank"))) == "0") io->RemoveRow(r);
    auto* logic = dynamic_cast<PD_TBLSECT*>(project->GetSection("PFR interface logic"));
    ASSERT_NE(logic, nullptr);
    logic->SetValueAt("SPI", 0, logic->GetColumnIndex("Mode"));
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    ASSERT_EQ(eng->GetBankAllVccios(0).size(), 2u);
    PD_TABLE* banks = TabTable(*eng, "I/O", "Bank Voltage");
    const int row = banks->GetRowNumber(std::string("0"));
    const int col = banks->GetColumnIndex("Voltage");
    banks->SetValueAt("Vccio 2.5", row, col);
    eng->PFRTabUpdated();
    EXPECT_STREQ(banks->GetValueAt(row, col), "Vccio 2.5");
}

// ---- Categories and totals ------------------------------------------------

TEST_F(PfrTab, CategoriesMapTheRailsOfTheBlock) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    EXPECT_EQ(eng->FindSupplyCategory("Vcc", "-1"), "Vccaux");
    EXPECT_EQ(eng->FindSupplyCategory("Vccio", "13"), "Vccio 1.8");
    EXPECT_EQ(eng->FindSupplyCategory("Vccio", "14"), "Vcc");
    EXPECT_EQ(eng->FindSupplyCategory("Vccaux", "13"), "Vccb");
    EXPECT_EQ(eng->FindSupplyCategory("Nothing", "13"), "Nothing");
    EXPECT_TRUE(eng->HasSupply("Vccb"));
    EXPECT_FALSE(eng->HasSupply("Vccpll"));
    EXPECT_STREQ(eng->GetSupplyTable()->GetValueAt("Vcc", "Voltage"), "1.000");
}

TEST_F(PfrTab, TheBlocksPowerReachesBlockSuppliesAndTotal) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    PD_TABLE* block = eng->GetBlockTable();
    const double pfr = At(Total(), 0, "Total Pwr (W)");
    ASSERT_GT(pfr, 1e-4);
    EXPECT_NEAR(Num(block->GetValueAt("PFR", "Total (W)")), pfr, 1e-6);
    // The supply terms add up to the tab's total, and each is on a row of
    // the summary whose power holds at least that much.
    double terms = 0.0;
    PD_TABLE* power = eng->GetPowerTable();
    PD_TABLE* vdpm = eng->GetSupplyTable();
    std::map<std::string, double> bySupply;
    for (const PC_ENG::CategoryTerm& t : eng->PfrSupplyTerms()) {
        terms += t.sta + t.dyn;
        bySupply[t.supply] += t.sta + t.dyn;
    }
    EXPECT_NEAR(terms, pfr, 12e-6);
    for (const auto& [supply, watts] : bySupply) {
        const int r = vdpm->GetRowNumber(supply);
        ASSERT_GE(r, 0) << supply;
        EXPECT_GE(Num(power->GetValueAt(r, 2)) + 2e-6, watts) << supply;
    }
    EXPECT_EQ(bySupply.count("Vccb"), 0u);
    // By hand from the tab: the ports' plain VCCIO and bank 3's interface
    // go to the 1.8 V rail (groups -1 and 13), bank 4's to 3.3 V (group 15).
    PD_TABLE* b = Block();
    auto sum = [&](const std::string& tag) {
        double w = At(b, 0, "Dyn. " + tag + " Pwr (W)");
        for (const char* kind : {"Leakage ", "DCbias "})
            w += At(b, 0, kind + tag + " Pwr (W)") +
                 At(Total(), 0, std::string("Unused ") + kind + tag + " Pwr (W)");
        return w;
    };
    const double rail18 = sum("VCCIO") + sum("Bank3 VCCIO") + sum("Bank3 VCCAUX");
    const double rail33 = sum("Bank4 VCCIO") + sum("Bank4 VCCAUX");
    EXPECT_GT(sum("VCCIO"), 0.0);
    EXPECT_GT(rail33, 0.0);
    EXPECT_NEAR(bySupply["Vccio 1.8"], rail18, 1e-12);
    EXPECT_NEAR(bySupply["Vccio 3.3"], rail33, 1e-12);
    PD_TABLE* m = eng->GetPowerMatrix();
    EXPECT_NEAR(eng->GetStaTable("Vccio 1.8", "PFR", m), rail18, 2e-6);
    EXPECT_NEAR(eng->GetStaTable("Vccio 3.3", "PFR", m), rail33, 2e-6);
    EXPECT_NEAR(eng->GetStaTable("Vccaux", "PFR", m), sum("VCC") + sum("VCCAUX"), 2e-6);
    // The grand totals: the blocks' sum, and the supplies' which the block's
    // matrix column says the same about.
    const int last = power->GetNumOfRows() - 1;
    EXPECT_NEAR(Num(eng->GetTotalPower()), Num(power->GetValueAt(last, 2)), 12e-6);
    // A bank rail fed by the I/O tab and the block holds both shares, and
    // the plain VCCIO share of the logic and the clock tree.
    PD_TABLE* matrix = eng->GetPowerMatrix();
    const int r18 = vdpm->GetRowNumber(std::string("Vccio 1.8"));
    double rail18Blocks = 0.0;
    for (const char* tab : {"I/O", "PFR", "Logic Block", "Clocks"})
        rail18Blocks += eng->GetStaTable("Vccio 1.8", tab, matrix);
    EXPECT_NEAR(Num(power->GetValueAt(r18, 2)), rail18Blocks, 4e-6);
    EXPECT_NEAR(eng->GetStaTable("Total", "PFR", eng->GetPowerMatrix()), pfr, 12e-6);
}

TEST_F(PfrTab, IoVccioGoesToTheSupplyItsBanksCategoryNames) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    // By hand: each I/O row's VCCIO watts on the supply that the category
    // map gives for its bank's voltage (3.3 V on banks 0, 4 and 5 is fed by
    // VCCAUX, 1.8 V on bank 3 by VCC).
    PD_TABLE* banks = TabTable(*eng, "I/O", "Bank Voltage");
    auto bankVoltage = [&](const std::string& bank) {
        return std::string(
            banks->GetValueAt(banks->GetRowNumber(bank), banks->GetColumnIndex("Voltage")));
    };
    std::map<std::string, double> bySupply;
    for (const char* name : {"Input Output", "Bidi", "Bank Voltage"}) {
        PD_TABLE* t = TabTable(*eng, "I/O", name);
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            const std::string bank = t->GetValueAt(r, t->GetColumnIndex("Bank"));
            double w = 0.0;
            for (const char* c :
                 {"Dyn. VCCIO Pwr (W)", "Leakage VCCIO Pwr (W)", "DCbias VCCIO Pwr (W)",
                  "Unused Leakage VCCIO Pwr (W)", "Unused DCbias VCCIO Pwr (W)"})
                if (t->GetColumnIndex(c) >= 0) w += At(t, r, c);
            bySupply[eng->FindSupplyCategory(bankVoltage(bank), bank)] += w;
        }
    }
    ASSERT_GT(bySupply["Vccaux"], 0.0);
    PD_TABLE* m = eng->GetPowerMatrix();
    EXPECT_NEAR(eng->GetStaTable("Vccio 3.3", "I/O", m), bySupply["Vccio 3.3"], 2e-6);
    EXPECT_NEAR(eng->GetStaTable("Vccio 2.5", "I/O", m), bySupply["Vccio 2.5"], 2e-6);
    // The spilled shares, against the rounded cells.
    double spill = 0.0;
    for (const PC_ENG::CategoryTerm& t : eng->IoCategorySpill()) {
        EXPECT_NEAR(t.sta + t.dyn, bySupply[t.supply], 2e-6) << t.supply;
        spill += t.sta + t.dyn;
    }
    EXPECT_GT(spill, 0.0);
    // Nothing lost: the supplies' total is the blocks' total.
    PD_TABLE* power = eng->GetPowerTable();
    EXPECT_NEAR(Num(eng->GetTotalPower()), Num(power->GetValueAt(power->GetNumOfRows() - 1, 2)),
                12e-6);
}

TEST_F(PfrTab, TheJunctionSeesTheBlocksPower) {
    eng = PfrEngine(d, project.get(), "wd7r00-demo");
    const double with = Num(eng->GetTotalPower());
    const std::string tjWith = eng->JunctionTemperature;
    auto project2 = Demo();
    DeviceStrings d2 = Dunmar();
    auto quiet = PfrEngine(d2, project2.get(), "no_such_design");
    PD_TABLE* b = TabTable(*quiet, "PFR", "PFR");
    b->SetValueAt("0", 0, b->GetColumnIndex("# PFR"));
    quiet->Calculate();
    const double without = Num(quiet->GetTotalPower());
    const double pfrWith = At(Total(), 0, "Total Pwr (W)");
    EXPECT_GT(with, without);
    EXPECT_NEAR(with - without, pfrWith - At(TotalTable(*quiet, "PFR"), 0, "Total Pwr (W)"), 5e-5);
    EXPECT_GT(Num(tjWith), Num(quiet->JunctionTemperature));
}

// ---- Peak start-up --------------------------------------------------------

class PfrPeak : public ::testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(PfrPeak, KeysTakeTheOperatingLetterAndZeroIsNotCharacterised) {
    DeviceStrings d = Dunmar();
    d.operating = GetParam().first;
    auto project = Demo();
    auto eng = PfrEngine(d, project.get(), "wd7r00-demo");
    PD_TABLE* peak = eng->GetPeakStartupTable();
    ASSERT_NE(peak, nullptr);
    EXPECT_STREQ(peak->GetValueAt("Vccaux", "Peak Startup (A)"), GetParam().second);
    EXPECT_STREQ(peak->GetValueAt("Vccio", "Peak Startup (A)"), "N/A");
}

INSTANTIATE_TEST_SUITE_P(Operating, PfrPeak,
                         ::testing::Values(std::make_pair("Commercial", "0.0420"),
                                           std::make_pair("Industrial", "0.0450")));

}  // namespace
