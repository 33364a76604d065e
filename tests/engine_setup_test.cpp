// Building an engine on a device: tabs, summary, defaults, load failures,
// project completion and the device strings.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

#include "engine_fixture.h"

using namespace pwctest;
namespace fs = std::filesystem;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

std::vector<std::string> PanelNames(const PC_ENG& eng) {
    std::vector<std::string> names;
    for (int i = 0; i < eng.GetNumOfPanels(); ++i) names.push_back(eng.GetPanelName(i));
    return names;
}

std::vector<std::string> Column(PD_TABLE* t, int c) {
    std::vector<std::string> cells;
    for (int r = 0; r < t->GetNumOfRows(); ++r) cells.push_back(t->GetValueAt(r, c));
    return cells;
}

bool HasColumn(PD_TABLE* t, const char* name) {
    return t && t->GetColumnIndex(name) >= 0;
}

// The tab order the template asks for: its "Tab " sections in file order.
std::vector<std::string> TemplateTabs(const char* arch, bool withAsc) {
    PD_DATA pgt;
    std::string path = DevicesDir() + "/" + arch + ".pgt";
    EXPECT_TRUE(pgt.LoadTxtFile(path.c_str()));
    std::vector<std::string> tabs{"Summary"};
    for (PD_SECTION* s : pgt.sections) {
        if (s->name.compare(0, 4, "Tab ") != 0) continue;
        if (s->name == "Tab ASC" && !withAsc) continue;
        tabs.push_back(s->name.substr(4));
    }
    return tabs;
}

struct DeviceCase {
    const char* device;
    const char* package;
    bool hasAsc;
    bool hasBlockRam;
};

class EngineOnDevice : public ::testing::TestWithParam<DeviceCase> {};

TEST_P(EngineOnDevice, BuildsTheTabsOfItsTemplate) {
    const DeviceCase& c = GetParam();
    DeviceStrings d;
    d.device = c.device;
    d.package = c.package;
    auto project = DefaultProject();
    if (c.hasAsc) {
        // The ASC tab stands only when the project has both ASC tables.
        ASSERT_NE(project->GetSection("ASC"), nullptr);
        ASSERT_NE(project->GetSection("ASC CURRENT"), nullptr);
    }
    auto eng = MakeEngine(d, project.get());

    std::vector<std::string> expected = TemplateTabs("zn2c00", c.hasAsc);
    if (!c.hasBlockRam) expected.erase(std::find(expected.begin(), expected.end(), "Block RAM"));
    EXPECT_EQ(PanelNames(*eng), expected);
    EXPECT_EQ(eng->GetPanelIndex("Summary"), 0);
    EXPECT_EQ(eng->GetASCcalculator(), c.hasAsc);

    // Every calculated tab ends in its total table with one row; tabs without
    // a calculator yet stay at zero, rounded to this family's six digits.
    const std::set<std::string> calculated = {"Logic Block", "PLL", "Misc", "EFB"};
    for (int i = 1; i < eng->GetNumOfPanels(); ++i) {
        PC_PANEL* p = eng->GetPanel(i);
        PD_TABLE* total = p->GetTable(p->GetNumOfTables() - 1);
        ASSERT_NE(total, nullptr);
        EXPECT_EQ(total->name, std::string("Total ") + p->GetName());
        EXPECT_EQ(total->GetNumOfRows(), 1);
        if (!calculated.count(p->GetName())) {
            EXPECT_STREQ(total->GetValueAt(0, 0), "0.000000");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(SampleDevices, EngineOnDevice,
                         ::testing::Values(DeviceCase{"KZQ2-256HC", "SG48", true, false},
                                           DeviceCase{"KZQ2-640ZE", "TG100", false, true},
                                           DeviceCase{"KZQ2-1200HC", "CABGA256", true, true},
                                           DeviceCase{"KZQ2-1200UHC", "CABGA256", true, true}),
                         [](const auto& info) {
                             std::string n = info.param.device;
                             n.erase(std::remove(n.begin(), n.end(), '-'), n.end());
                             return n;
                         });

TEST(EngineSetup, LogicTabHasResultColumnsAndTotals) {
    DeviceStrings d;
    auto project = DefaultProject();
    auto eng = MakeEngine(d, project.get());
    PC_PANEL* logic = eng->GetPanel(eng->GetPanelIndex("Logic Block"));
    ASSERT_NE(logic, nullptr);
    ASSERT_EQ(logic->GetNumOfTables(), 2);
    PD_TABLE* rows = logic->GetTable(0);
    for (const char* c : {"Dyn. VCC Pwr (W)", "Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)"})
        EXPECT_TRUE(HasColumn(rows, c)) << c;
    // The power-gated supply folds onto VCC.
    EXPECT_FALSE(HasColumn(rows, "Leakage VCCPG Pwr (W)"));
    PD_TABLE* total = logic->GetTable(1);
    EXPECT_EQ(std::string(total->GetColumnName(0)), "Total Dyn. Pwr (W)");
    EXPECT_EQ(std::string(total->GetColumnName(1)), "Total Pwr (W)");
    EXPECT_TRUE(HasColumn(total, "Unused Leakage VCC Pwr (W)"));
    EXPECT_TRUE(HasColumn(total, "Unused DCbias VCC Pwr (W)"));
}

TEST(EngineSetup, SummaryHoldsSuppliesWithDefaultsAndProjectValues) {
    DeviceStrings d;
    auto project = DefaultProject();
    // The project's own voltage wins over the data default.
    auto* vdpm = dynamic_cast<PD_TBLSECT*>(project->GetSection("VDPM"));
    ASSERT_NE(vdpm, nullptr);
    int row = vdpm->GetRowNumber(std::string("Vccaux"));
    ASSERT_GE(row, 0);
    vdpm->SetValueAt("3.135", row, vdpm->GetColumnIndex("Voltage"));
    int vccRow = vdpm->GetRowNumber(std::string("Vcc"));
    vdpm->RemoveRow(vccRow);

    auto eng = MakeEngine(d, project.get());
    PC_PANEL* summary = eng->GetSummaryPanel();
    ASSERT_NE(summary, nullptr);
    std::vector<std::string> tables;
    for (PD_TABLE* t : summary->tables) tables.push_back(t->name);
    std::vector<std::string> expected{"Peak Startup"};
    if (eng->GetPGSupplyTable()) expected.push_back("PGVDPM");
    for (const char* t : {"VDPM", "Current", "Power", "Block"}) expected.push_back(t);
    EXPECT_EQ(tables, expected);

    PD_TABLE* supplies = eng->GetSupplyTable();
    EXPECT_EQ(Column(supplies, 0)[0], "Vcc");
    EXPECT_DOUBLE_EQ(eng->GetSupply("Vccaux"), 3.135);
    // No project row for Vcc: the data default, printed with three decimals.
    EXPECT_STREQ(supplies->GetValueAt("Vcc", "Voltage"), "1.200");
    EXPECT_STREQ(supplies->GetValueAt("Vcc", "DPM"), "1.00");

    PD_TABLE* current = eng->GetCurrentTable();
    PD_TABLE* power = eng->GetPowerTable();
    EXPECT_EQ(current->GetNumOfRows(), supplies->GetNumOfRows() + 1);
    EXPECT_EQ(power->GetNumOfRows(), supplies->GetNumOfRows() + 1);
    EXPECT_EQ(std::string(power->GetColumnName(2)), "Total (W)");

    std::vector<std::string> blocks = Column(eng->GetBlockTable(), 0);
    EXPECT_EQ(blocks.back(), "Total");
    EXPECT_EQ(blocks[blocks.size() - 2], "Other");
    EXPECT_EQ(std::count(blocks.begin(), blocks.end(), "Misc"), 0);
    EXPECT_EQ(std::count(blocks.begin(), blocks.end(), "Logic Block"), 1);
}

TEST(EngineSetup, HighPerformancePartsLoadTheirOwnPowerFile) {
    // The two files differ in their supplies: only the hp parts gate VCCPG.
    DeviceStrings hc;
    auto p1 = DefaultProject();
    auto eHc = MakeEngine(hc, p1.get());
    DeviceStrings ze;
    ze.device = "KZQ2-640ZE";
    ze.package = "TG100";
    auto p2 = DefaultProject();
    auto eZe = MakeEngine(ze, p2.get());
    EXPECT_TRUE(eHc->HasVccpg());
    EXPECT_FALSE(eZe->HasVccpg());
}

TEST(EngineSetup, SpeedGradeKeepsWhatFollowsItsDash) {
    DeviceStrings d;
    d.speed = "L-6";
    auto project = DefaultProject();
    auto eng = MakeEngine(d, project.get());
    EXPECT_STREQ(eng->SpeedGrade(), "6");
    d.speed = "6";
    EXPECT_EQ(eng->ChangeDevice(d.Array()), 1);
}

TEST(EngineSetup, CompletesOlderProjectsOfItsFamily) {
    DeviceStrings d;
    auto project = DefaultProject();
    project->RemoveSection(project->GetSectionIndex("BANDGAP"));
    auto* por = dynamic_cast<PD_TBLSECT*>(project->GetSection("POR"));
    ASSERT_NE(por, nullptr);
    por->RemoveAllRows();
    por->AddTableData("Yes");
    por->AddTableData("No");
    auto eng = MakeEngine(d, project.get());

    auto* bandgap = dynamic_cast<PD_TBLSECT*>(project->GetSection("BANDGAP"));
    ASSERT_NE(bandgap, nullptr);
    EXPECT_STREQ(bandgap->GetColumnName(0), "STANDBY");
    ASSERT_EQ(bandgap->GetNumOfRows(), 1);
    EXPECT_STREQ(bandgap->GetValueAt(0, 0), "No");
    EXPECT_EQ(por->GetNumOfRows(), 2);  // a table the project has keeps its rows
    EXPECT_NE(project->GetSection("MCLK"), nullptr);
    EXPECT_EQ(project->GetSection("LF OSC"), nullptr);
}

TEST(EngineSetup, FamilySwitchKeepsFallbackTypesOnlyOnAChange) {
    DeviceStrings d;
    std::vector<std::string> in{"LVCMOS33"}, out{"LVCMOS25"}, bidi{"LVCMOS18"};
    auto project = DefaultProject();
    auto eng = MakeEngine(d, project.get());
    EXPECT_FALSE(eng->SetFamilySwitching(d.Array(), project.get(), "Calculation", "", "a", "b", "c",
                                         &in, &out, &bidi, false));
    EXPECT_FALSE(eng->SetFamilySwitching(d.Array(), project.get(), "Calculation", "Quenra2", "a",
                                         "b", "c", &in, &out, &bidi, false));
    EXPECT_TRUE(eng->SetFamilySwitching(d.Array(), project.get(), "Calculation", "Orvan2", "a", "b",
                                        "c", &in, &out, &bidi, false));
}

TEST(EngineSetup, VariantDropsBanksFourAndFiveOfPartsWithoutU) {
    auto banks = [](const char* device) {
        DeviceStrings d;
        d.arch = "zn2c00a";
        d.device = device;
        auto project = DefaultProject("zn2c00a");
        auto eng = MakeEngine(d, project.get());
        auto* t = dynamic_cast<PD_TBLSECT*>(eng->GetPcfData()->GetSection("Bank Voltage"));
        EXPECT_NE(t, nullptr);
        return t ? Column(t, 0) : std::vector<std::string>{};
    };
    std::vector<std::string> all{"0", "1", "2", "3", "4", "5"};
    EXPECT_EQ(banks("KZQ2-1200UHC"), all);
    EXPECT_EQ(banks("KZQ2-1200HC"), (std::vector<std::string>{"0", "1", "2", "3"}));
    EXPECT_EQ(banks("KZQ2-640ZE"), all);
}

// A data directory holding only some of the architecture's files.
class PartialDataDir : public ::testing::Test {
  protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("pwc_partial_" + std::to_string(getpid()));
        fs::create_directories(dir);
        setenv("PWC_DATA_DIR", dir.c_str(), 1);
    }
    void TearDown() override {
        setenv("PWC_DATA_DIR", DevicesDir().c_str(), 1);
        fs::remove_all(dir);
    }
    void CopyFile(const std::string& name) { fs::copy_file(DevicesDir() + "/" + name, dir / name); }
    fs::path dir;
};

TEST_F(PartialDataDir, MissingPowerFileIsReportedOnceAndSetUpGoesOn) {
    for (const char* f : {"zn2c00.pgt", "zn2c00.pqn", "zn2c00.pcf"}) CopyFile(f);
    DeviceStrings d;
    d.device = "KZQ2-640ZE";
    d.package = "TG100";
    auto project = DefaultProject();
    testing::internal::CaptureStderr();
    auto eng = MakeEngine(d, project.get());
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("zn2c00.pwr cannot be processed!"), std::string::npos) << err;
    size_t first = err.find("cannot be processed!");
    EXPECT_EQ(err.find("cannot be processed!", first + 1), std::string::npos) << err;
    // Without templates there are no tabs but the summary, and no supplies.
    EXPECT_EQ(eng->GetNumOfPanels(), 1);
    EXPECT_EQ(eng->GetSupplyTable()->GetNumOfRows(), 0);
}

TEST_F(PartialDataDir, PowerStatusOfAFamilyFoundWithoutADevice) {
    std::string status = "x", values = "x";
    EXPECT_FALSE(PC_ENG::getPwrStatus("Quenra", "KZQ2-640ZE_TG100", status, values));
    EXPECT_EQ(status, "");
    EXPECT_EQ(values, "");
    // "Quenra" is found under its architecture's stem.
    fs::copy_file(DevicesDir() + "/zn2c00.pwr", dir / "hq7g00.pwr");
    EXPECT_TRUE(PC_ENG::getPwrStatus("Quenra", "KZQ2-640ZE_TG100", status, values));
    EXPECT_EQ(status, "Production");
    EXPECT_EQ(values, "Preliminary");
}

}  // namespace
