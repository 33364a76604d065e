// The text report: the demo project byte for byte, and the rules of its
// summaries and utilization blocks on small constructed cases.
#include <cstdlib>

#include "report_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

// Sets an environment variable for the life of the object.
class ScopedEnv {
  public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old, had_ = true;
        setenv(name, value, 1);
    }
    ~ScopedEnv() {
        if (had_)
            setenv(name_, old_.c_str(), 1);
        else
            unsetenv(name_);
    }

  private:
    const char* name_;
    std::string old_;
    bool had_ = false;
};

// The expected report is kept under tests/data/expected; after a deliberate
// change of the model, PWC_UPDATE_EXPECTED=1 rewrites it.
TEST(TextReport, DemoProjectMatchesTheExpectedReport) {
    DemoEngine demo;
    const std::string text = demo.Text();
    const std::string path = std::string(PWC_TEST_SOURCE_DIR) + "/data/expected/demo_report.txt";
    if (const char* update = std::getenv("PWC_UPDATE_EXPECTED"); update && *update == '1')
        std::ofstream(path, std::ios::binary) << text;
    EXPECT_EQ(text, ReadAll(path));
}

TEST(TextReport, SectionsComeInOrderEachLineOpeningWithItsOwnBreak) {
    DemoEngine demo;
    const std::string text = demo.Text();
    ASSERT_EQ(text.rfind("Power Calculator - Report\npwc 0.1.0 - Power Calculator\nDate: ", 0), 0u);
    EXPECT_NE(text.back(), '\n');
    size_t last = 0;
    for (const char* section : {"\n\nPower Model Information\n", "\n\nDesign and Device Details\n",
                                "\n\nPower Supplies\n", "\n\nPower Summary\n", "\n\nIcc Summary\n",
                                "\n\nIO Bank Summary\n", "\n\nPeak Startup\n",
                                "\n\nThermal Summary\n", "\n\nUtilization Details\n"}) {
        const size_t at = text.find(section);
        ASSERT_NE(at, std::string::npos) << section;
        EXPECT_GT(at, last) << section;
        last = at;
    }
}

TEST(TextReport, SummariesAddUpToTheirTotalLines) {
    DemoEngine demo;
    const std::string text = demo.Text();
    double supplies = 0.0, total = -1.0;
    std::istringstream lines(TextBlock(text, "Power Summary"));
    for (std::string line; std::getline(lines, line);) {
        const size_t colon = line.find(" : ");
        if (colon == std::string::npos) continue;
        const double w = Num(line.substr(colon + 3));
        if (line.rfind("Total Power Est. Design  : ", 0) == 0)
            total = w;
        else
            supplies += w;
    }
    ASSERT_GT(total, 0.0);
    EXPECT_NEAR(supplies, total, 1e-5);
    // The blocks' totals reach the summary total less the I/O termination,
    // which has no block of its own in the utilization details.
    double blocks = 0.0;
    std::istringstream all(text.substr(text.find("Utilization Details")));
    for (std::string line; std::getline(all, line);)
        if (line.rfind("Total Power (W) : ", 0) == 0) blocks += Num(line.substr(18));
    EXPECT_LE(blocks, total + 1e-5);
    EXPECT_GT(blocks, 0.5 * total);
}

TEST(TextReport, NoIoRowsGiveNoBankUsed) {
    DemoEngine demo;
    for (const char* table : {"Input Output", "Bidi"})
        TabTable(*demo.eng, "I/O", table)->RemoveAllRows();
    EXPECT_NE(demo.Text().find("\n\nIO Bank Summary\nIO Bank Used : 0\n"), std::string::npos);
}

TEST(TextReport, AOneRowPowerTablePrintsOnlyItsTotalLine) {
    DemoEngine demo;
    PD_TABLE* power = demo.eng->GetPowerTable();
    while (power->GetNumOfRows() > 1) power->RemoveRow(0);
    const std::string block = TextBlock(demo.Text(), "Power Summary");
    EXPECT_EQ(block, std::string("Power Summary\nTotal Power Est. Design  : ") +
                         power->GetValueAt(0, power->GetColumnIndex("Total (W)")) + " W");
}

TEST(TextReport, DetailedReportAddsStaticAndDynamicLinesOnlyForOne) {
    DemoEngine demo;
    unsetenv("PWC_QA_DETAILED_REPORT");
    const std::string plain = demo.Text();
    {
        ScopedEnv zero("PWC_QA_DETAILED_REPORT", "0");
        EXPECT_EQ(demo.Text(), plain);
    }
    {
        ScopedEnv yes("PWC_QA_DETAILED_REPORT", "yes");
        EXPECT_EQ(demo.Text(), plain);
    }
    ScopedEnv one("PWC_QA_DETAILED_REPORT", "1");
    const std::string detailed = demo.Text();
    PD_TABLE* power = demo.eng->GetPowerTable();
    const int last = power->GetNumOfRows() - 1;
    const std::string lines = std::string("\nTotal Static Power Est. Design: ") +
                              power->GetValueAt(last, power->GetColumnIndex("Static (W)")) +
                              " W\nTotal Dynamic Power Est. Design: " +
                              power->GetValueAt(last, power->GetColumnIndex("Dynamic (W)")) +
                              " W\nTotal Power Est. Design  : ";
    EXPECT_NE(detailed.find(lines), std::string::npos);
    EXPECT_EQ(detailed.size(),
              plain.size() + lines.size() - std::string("\nTotal Power Est. Design  : ").size());
}

// Static power is T minus D in the family's format; D and T print as held.
struct StaticCase {
    const char* family;
    const char* staticText;
};
class StaticPower : public ::testing::TestWithParam<StaticCase> {};

TEST_P(StaticPower, IsTotalLessDynamicInTheFamilyFormat) {
    DemoEngine demo(GetParam().family);
    PD_TABLE* total = TabTable(*demo.eng, "Logic Block", "Total Logic Block");
    ASSERT_NE(total, nullptr);
    total->SetValueAt("0.1234567", 0, total->GetColumnIndex("Total Dyn. Pwr (W)"));
    total->SetValueAt("0.30", 0, total->GetColumnIndex("Total Pwr (W)"));
    const std::string block = TextBlock(demo.Text(), "Logic");
    EXPECT_NE(block.find("\nDynamic Power (W) : 0.1234567\nStatic Power (W) : " +
                         std::string(GetParam().staticText) + "\nTotal Power (W) : 0.30"),
              std::string::npos)
        << block;
}

INSTANTIATE_TEST_SUITE_P(Families, StaticPower,
                         ::testing::Values(StaticCase{"Quenra2", "0.176543"},
                                           StaticCase{"Quenra3H", "0.1765"}),
                         [](const auto& info) { return std::string(info.param.family); });

TEST(TextReport, ThermalLinesFollowTheThetaOption) {
    DemoEngine demo;
    PC_ENG& eng = *demo.eng;
    eng.ThetaOption = "UserDefined";
    EXPECT_NE(demo.Text().find("\nBoard Selection : N/A\nHeat Sink : N/A\nAir Flow : N/A\n"),
              std::string::npos);
    eng.ThetaOption = "ThermalModels";
    eng.HeatSinkSelection = "Custom Profile Heat Sink";
    eng.ThetaSACustom = "4.5";
    EXPECT_NE(demo.Text().find("\nHeat Sink : Custom Profile Heat Sink\nAir Flow : N/A\n"),
              std::string::npos);
    eng.ThetaSACustom.clear();
    EXPECT_NE(demo.Text().find("\nAir Flow : " + eng.AirFlowSelection + "\n"), std::string::npos);
    eng.JunctionTemperature.clear();
    EXPECT_NE(demo.Text().find("\nJunction Temperature :  C\n"), std::string::npos);
}

TEST(ClockCount, ReadsTreeCellsAndPlainNumbers) {
    EXPECT_EQ(PC_ENG::GetClockCount("t4_12"), 12);
    EXPECT_EQ(PC_ENG::GetClockCount("t0_1_c1_6_s_3_p_83"), 93);
    EXPECT_EQ(PC_ENG::GetClockCount("0"), 0);
    EXPECT_EQ(PC_ENG::GetClockCount(""), 0);
    EXPECT_EQ(PC_ENG::GetClockCount("7"), 7);
}

TEST(TextReport, ClocksCountOnlyKindsWithPowerDataAndResourcesTheDeviceHas) {
    DemoEngine demo;
    PD_TABLE* clocks = TabTable(*demo.eng, "Clocks", "Clocks");
    auto sum = [&](std::initializer_list<const char*> columns) {
        int n = 0;
        for (const char* c : columns)
            for (int r = 0; r < clocks->GetNumOfRows(); ++r)
                n += PC_ENG::GetClockCount(clocks->GetValueAt(r, clocks->GetColumnIndex(c)));
        return n;
    };
    const std::string block = TextBlock(demo.Text(), "Clocks");
    const int pclk = sum({"# Ptrunk", "# Pbranch", "# Pfeed", "# Ptap", "# Pspine"});
    ASSERT_GT(pclk, 0);
    EXPECT_NE(block.find("\nPCLKs Used : " + std::to_string(pclk) + "\n"), std::string::npos);
    EXPECT_NE(block.find("\nSCLKs Used : " +
                         std::to_string(sum({"# Strunk", "# Sbranch", "# Stap", "# Sspine"}))),
              std::string::npos);
    // A tree cell counts its pairs; a kind without power data has no line.
    clocks->SetValueAt("t0_2_c1_5", 0, clocks->GetColumnIndex("# Ptrunk"));
    const std::string tree = TextBlock(demo.Text(), "Clocks");
    EXPECT_NE(tree.find("\nPCLKs Used : " + std::to_string(pclk - 1 + 7) + "\n"),
              std::string::npos);
    auto* section = dynamic_cast<PD_PWRSECT*>(demo.eng->GetPwrData()->GetSection("Clocks"));
    ASSERT_NE(section, nullptr);
    for (auto& m : section->members)
        if (m.name == "ECLK") m.name = "ECLK-none";
    EXPECT_EQ(TextBlock(demo.Text(), "Clocks").find("ECLKs Used"), std::string::npos);
}

// ---- Panels that the sample device lacks, built by hand --------------------

TEST(TextReport, TablePanelsCountEachTableAndSkipTheirTotals) {
    DemoEngine demo;
    RebuildPanel(*demo.eng, "I/O Term", "DSP",
                 {MakeTable("M9X9", {"# M9X9"}, {{"2"}, {"3"}}),
                  MakeTable("M18X18", {"Name"}, {{"x"}}), MakeTotal("Total DSP", "0.25", "0.5")});
    const std::string text = demo.Text();
    EXPECT_NE(text.find("\n\nDSP\nM9X9 Used : 5\nM18X18 Used : 0\nDynamic Power (W) : "
                        "0.25\nStatic Power (W) : 0.250000\nTotal Power (W) : 0.5\n"),
              std::string::npos);
    // DSP comes between Block RAM and PLL.
    EXPECT_LT(text.find("\n\nBlock RAM\n"), text.find("\n\nDSP\n"));
    EXPECT_LT(text.find("\n\nDSP\n"), text.find("\n\nPLL\n"));
}

TEST(TextReport, SerdesCountsChannelsAndTransmitPlls) {
    DemoEngine demo;
    RebuildPanel(
        *demo.eng, "I/O Term", "SERDES",
        {MakeTable("PCS", {"Tx Mode", "Rx Mode"},
                   {{"OFF", "OFF"}, {"FULL", "OFF"}, {"OFF", "HALF"}}),
         MakeTable("SERDES AUX", {"TXPLL"}, {{"ON"}, {"OFF"}, {"ON"}}),
         MakeTable("REFCLK", {"# REFCLK"}, {{"4"}}), MakeTotal("Total SERDES", "1.0", "1.5")});
    EXPECT_NE(demo.Text().find("\n\nSERDES\nChannels Used : 2\nTXPLL Used : 2\nDynamic"),
              std::string::npos);
    PD_TABLE* pcs = TabTable(*demo.eng, "SERDES", "PCS");
    pcs->AddColumn("# Channels", 0);
    pcs->SetValueAt("4", 0, 0);
    pcs->SetValueAt("1", 1, 0);
    EXPECT_NE(demo.Text().find("\nChannels Used : 5\n"), std::string::npos);
}

TEST(TextReport, FabaWithFiveTablesCountsCoresElseGoesByTable) {
    DemoEngine demo;
    RebuildPanel(*demo.eng, "I/O Term", "FABA",
                 {MakeTable("PCIE", {"Core"}, {{"PCIE x1"}, {"PCIE x4"}}),
                  MakeTable("SRIO", {"Core"}, {{"SRIO"}, {"EMAC"}}),
                  MakeTable("MAC2", {"Core"}, {{"EMAC"}, {"XMAC"}}),
                  MakeTable("MAC3", {"Core"}, {{"XMAC"}}), MakeTotal("Total FABA", "0.1", "0.2")});
    EXPECT_NE(demo.Text().find("\n\nFABA\nPCIE Used : 2\nSRIO Used : 1\nEMAC Used : 2\nXMAC "
                               "Used : 2\nDynamic Power (W) : 0.1\n"),
              std::string::npos);
    PC_PANEL* faba = demo.eng->GetPanel(demo.eng->GetPanelIndex("FABA"));
    delete faba->tables[3];
    faba->tables.erase(faba->tables.begin() + 3);
    EXPECT_NE(demo.Text().find("\n\nFABA\nPCIE Used : 0\nSRIO Used : 0\nMAC2 Used : 0\n"),
              std::string::npos);
}

TEST(TextReport, MipidphyAscAndPfrBlocks) {
    DemoEngine demo;
    RebuildPanel(*demo.eng, "I/O Term", "MIPIDPHY",
                 {MakeTable("DPHY", {"Mode"}, {{"TX"}, {"RX"}, {"RX"}}),
                  MakeTotal("Total MIPIDPHY", "0.01", "0.03")});
    RebuildPanel(*demo.eng, "ASC", "ASC",
                 {MakeTable("ASC", {"# HVOUT"}, {{"2"}, {"1"}}),
                  MakeTable("Total ASC", {"Total Pwr (W)"}, {{"0.004"}})});
    RebuildPanel(
        *demo.eng, "Block RAM", "PFR",
        {MakeTable("PFR", {"# PFR", "# PFR interface logic"}, {{"1", "3"}}),
         MakeTable("PFR2", {"# PFR programming"}, {{"2"}}), MakeTotal("Total PFR", "0.5", "0.75")});
    const std::string text = demo.Text();
    EXPECT_NE(text.find("\n\nMIPIDPHY\nDPHY Used : 3\nDynamic Power (W) : 0.01\nStatic Power "
                        "(W) : 0.020000\nTotal Power (W) : 0.03\n"),
              std::string::npos);
    EXPECT_NE(text.find("\n\nASC\nHVOUT Used : 3\nTotal Power (W) : 0.004\n"), std::string::npos);
    EXPECT_NE(text.find("\n\nPFR\nPFR Used : 1\nPFR interface logic Used : 3\nPFR programming "
                        "Used : 2\nDynamic Power (W) : 0.5\n"),
              std::string::npos);
    EXPECT_EQ(text.find("\n\nBlock RAM\n"), std::string::npos);
}

TEST(TextReport, OtherSkipsJtagReadsPowerTablesAndNeedsTheColumn) {
    DemoEngine demo;
    RebuildPanel(*demo.eng, "Misc", "Misc",
                 {MakeTable("JTAG", {"# JTAG"}, {{"1"}}),
                  MakeTable("POWERFABA", {"# POWER FABA"}, {{"2"}, {"2"}}),
                  MakeTable("SED", {"Mode"}, {{"On"}}), MakeTable("OSC", {"# OSC"}, {{"1"}}),
                  MakeTotal("Total Misc", "0.001", "0.002")});
    const std::string text = demo.Text();
    EXPECT_NE(text.find("\n\nOther\nPOWERFABA Used : 4\nOSC Used : 1\nDynamic Power (W) : 0.001\n"),
              std::string::npos);
    EXPECT_EQ(text.find("JTAG Used"), std::string::npos);
}

TEST(TextReport, EfbLeavesUfmOutOnlyForTheFamiliesWithoutIt) {
    EXPECT_NE(TextBlock(DemoEngine("Quenra2").Text(), "EFB").find("\nUFM Used : 1\n"),
              std::string::npos);
    const std::string block = TextBlock(DemoEngine("Quenra3L").Text(), "EFB");
    EXPECT_NE(block.find("\nTC Used : 1\n"), std::string::npos);
    EXPECT_EQ(block.find("UFM"), std::string::npos);
}

TEST(TextReport, AMissingPanelLeavesItsBlockOutWithoutAWord) {
    DemoEngine demo;
    RebuildPanel(*demo.eng, "PLL", "Not a panel", {});
    const std::string text = demo.Text();
    EXPECT_EQ(text.find("\n\nPLL\n"), std::string::npos);
    EXPECT_EQ(text.find("PLL Used"), std::string::npos);
    EXPECT_NE(text.find("\n\nBlock RAM\n"), std::string::npos);
}

}  // namespace
