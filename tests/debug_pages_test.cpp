// The debug panels and their pages, switched by "VRL_PWC_HTML_DEBUG".
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"

using namespace pwctest;
namespace fs = std::filesystem;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

// Sets the switch for the life of the object and restores what was there.
class DebugSwitch {
  public:
    explicit DebugSwitch(const char* value) {
        if (const char* old = std::getenv(kName)) previous_ = old;
        if (value)
            setenv(kName, value, 1);
        else
            unsetenv(kName);
    }
    ~DebugSwitch() {
        if (previous_)
            setenv(kName, previous_->c_str(), 1);
        else
            unsetenv(kName);
    }
    DebugSwitch(const DebugSwitch&) = delete;
    DebugSwitch& operator=(const DebugSwitch&) = delete;

  private:
    static constexpr const char* kName = "VRL_PWC_HTML_DEBUG";
    std::optional<std::string> previous_;
};

// An engine whose debug log, and so its debug folder, lies at `log`.
std::unique_ptr<PC_ENG> MakeLoggedEngine(DeviceStrings& d, PD_DATA* project,
                                         const std::string& log) {
    return std::make_unique<PC_ENG>(d.Array(), project, "Calculation", false, "", "", "", "", "",
                                    "", nullptr, nullptr, nullptr, "", false, "", log);
}

std::unique_ptr<PD_DATA> Demo() {
    return LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
}

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

PD_TABLE* DebugTable(const PC_ENG& eng, const std::string& panel, const char* table) {
    const std::vector<PC_PANEL*>* list = eng.GetDebugPanels();
    if (!list) return nullptr;
    const int index = PC_ENG::GetPanelIndex(panel, *list);
    if (index < 0) return nullptr;
    PC_PANEL* p = (*list)[index];
    return p->GetTable(p->GetTableIndex(table));
}

std::string Cell(PD_TABLE* t, const std::string& row, const std::string& column) {
    for (int r = 0; r < t->GetNumOfRows(); ++r)
        if (row == t->GetValueAt(r, 0)) return t->GetValueAt(r, t->GetColumnIndex(column.c_str()));
    return "";
}

size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

const std::string kStem = "debug_power_detaile";

// ---- Off ------------------------------------------------------------------------

class DebugOff : public ::testing::TestWithParam<const char*> {};

TEST_P(DebugOff, NothingIsKeptAndNoPageIsWritten) {
    DebugSwitch sw(GetParam());
    ScratchDir scratch("debug_off");
    DeviceStrings dev;
    auto project = Demo();
    auto eng = MakeLoggedEngine(dev, project.get(), scratch.File("calc.log"));
    eng->Calculate();
    EXPECT_EQ(eng->GetDebugPanels(), nullptr);
    eng->GenerateDebugPanelHTML(scratch.File("calc.log"));
    EXPECT_FALSE(fs::exists(scratch.path() / "HtmlDebugDir"));
    EXPECT_FALSE(eng->GenerateDebugPanelCSV(""));
}

// Only the exact text "1" switches the pages on.
INSTANTIATE_TEST_SUITE_P(Values, DebugOff, ::testing::Values(nullptr, "0", "true", " 1", "11"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             return "case" + std::to_string(info.index);
                         });

// ---- On -------------------------------------------------------------------------

class DebugOn : public ::testing::Test {
  protected:
    DebugSwitch sw{"1"};
    ScratchDir scratch{"debug_on"};
    DeviceStrings dev;
};

TEST_F(DebugOn, TheDemoGivesLinkedPagesInTheLogsFolder) {
    auto project = Demo();
    auto eng = MakeLoggedEngine(dev, project.get(), scratch.File("calc.log"));
    eng->ProjectName = "demo.pcf";
    eng->Calculate();
    const fs::path folder = scratch.path() / "HtmlDebugDir";
    for (const char* leaf : {".html", "_power_toc.html", "_power_top.html",
                             "_power_LogicBlock_DynamicIcc.html", "_power_IO_SupplyICC.html",
                             "_power_IOTerm_TotalPowCal.html", "_power_BlockRAM_TotalPow.html"})
        EXPECT_TRUE(fs::exists(folder / (kStem + leaf))) << leaf;
    const std::string frames = ReadFile(folder / (kStem + ".html"));
    EXPECT_NE(frames.find("src=\"" + kStem + "_power_top.html\""), std::string::npos);
    EXPECT_NE(frames.find("<title>Power Calculation Equation Debug Report : demo.pcf</title>"),
              std::string::npos);

    // One debug panel per tab but the summary, nine tables each.
    const std::vector<PC_PANEL*>* list = eng->GetDebugPanels();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(static_cast<int>(list->size()), eng->GetNumOfPanels() - 1);
    const std::vector<std::string> tables = {"UnusedLeakIcc", "UnusedBiasIcc", "UsedLeakIcc",
                                             "UsedBiasIcc",   "DynamicIcc",    "SupplyICC",
                                             "TotalICC",      "TotalPowCal",   "TotalPow"};
    for (PC_PANEL* p : *list) {
        ASSERT_EQ(p->GetNumOfTables(), 9) << p->GetName();
        for (int t = 0; t < 9; ++t) EXPECT_EQ(p->GetTable(t)->name, tables[t]);
    }

    // Each pass starts from clean panels: one equation per logic row.
    EXPECT_GT(eng->GetIterationCount(), 1);
    PD_TABLE* dyn = DebugTable(*eng, "Logic Block", "DynamicIcc");
    const std::string luts = Cell(dyn, "LUT_used", "VCC");
    EXPECT_EQ(Count(luts, "ICCdynSLICE_LUT_used_VCC"), 5u) << luts;
    EXPECT_EQ(Count(luts, "#"), 4u);
    const std::string page = ReadFile(folder / (kStem + "_power_LogicBlock_DynamicIcc.html"));
    EXPECT_NE(page.find("<a name=\"LUT_used_VCC\"></a>"), std::string::npos);
    // The first row's term: 0.02625 pF * 1.2 V * 24 MHz (F / 2) * 15 % * 420.
    EXPECT_NE(page.find("4.7628e-05"), std::string::npos);
}

// The total current of a cell is what its equations add up to, and its power
// that current at the supply's voltage (Vcc 1.2 V in the demo).
TEST_F(DebugOn, TotalsFollowTheEquations) {
    auto project = Demo();
    auto eng = MakeLoggedEngine(dev, project.get(), scratch.File("calc.log"));
    PD_TABLE* total = DebugTable(*eng, "Logic Block", "TotalICC");
    PD_TABLE* power = DebugTable(*eng, "Logic Block", "TotalPow");
    PD_TABLE* calc = DebugTable(*eng, "Logic Block", "TotalPowCal");
    ASSERT_NE(total, nullptr);
    const int vcc = total->GetColumnIndex("VCC");
    ASSERT_GE(vcc, 1);
    int checked = 0;
    for (int r = 0; r < total->GetNumOfRows(); ++r) {
        const std::string block = total->GetValueAt(r, 0);
        double sum = 0.0;
        std::string html;
        for (const char* t :
             {"UnusedLeakIcc", "UnusedBiasIcc", "UsedLeakIcc", "UsedBiasIcc", "DynamicIcc"}) {
            const std::string cell = Cell(DebugTable(*eng, "Logic Block", t), block, "VCC");
            if (cell != "0")
                sum += Num(eng->AddHtmlLineBreak("Logic Block", t, block, cell, kStem, html));
        }
        const double amps = Num(total->GetValueAt(r, vcc));
        if (amps == 0.0) continue;
        ++checked;
        EXPECT_NEAR(amps, sum, 1e-5) << block;
        EXPECT_NEAR(Num(power->GetValueAt(r, vcc)), 1.2 * amps, 1e-6) << block;
        EXPECT_EQ(std::string(calc->GetValueAt(r, vcc))
                      .rfind("Power_VCC_" + block +
                                 "= ICC * "
                                 "VOLTAGE =",
                             0),
                  0u);
    }
    EXPECT_GE(checked, 3);
}

TEST_F(DebugOn, TheSwitchChangesNoResult) {
    auto project = Demo();
    auto on = MakeLoggedEngine(dev, project.get(), scratch.File("calc.log"));
    const std::string withPages = on->GetTotalPower();
    on.reset();
    DebugSwitch off(nullptr);
    auto project2 = Demo();
    auto plain = MakeEngine(dev, project2.get());
    EXPECT_EQ(plain->GetTotalPower(), withPages);
}

TEST_F(DebugOn, TwoEquationsInOneCellAreBothShown) {
    auto project = DefaultProject();
    auto eng = MakeLoggedEngine(dev, project.get(), scratch.File("calc.log"));
    const std::string first = "ICCdynX_item_VCC = _C * F = 1*2=2";
    const std::string second = "ICCdynX_item_VCC = _C * F = 3*1=3";
    eng->SaveToDebugPanel("Logic Block", "ICCdynX_item_VCC = _C * F = ", "1*2=2", 2.0, "TESTITEM",
                          "VCC", "DynamicIcc");
    PD_TABLE* dyn = DebugTable(*eng, "Logic Block", "DynamicIcc");
    const std::string one = Cell(dyn, "TESTITEM", "VCC");
    EXPECT_EQ(one, first + "\n");
    std::string html;
    EXPECT_EQ(eng->AddHtmlLineBreak("Logic Block", "DynamicIcc", "TESTITEM", one, kStem, html),
              "2.000000");

    eng->SaveToDebugPanel("Logic Block", "ICCdynX_item_VCC = _C * F = ", "3*1=3", 3.0, "TESTITEM",
                          "VCC", "DynamicIcc");
    const std::string both = Cell(dyn, "TESTITEM", "VCC");
    EXPECT_EQ(both, first + "\n#" + second + "\n");
    EXPECT_EQ(Cell(DebugTable(*eng, "Logic Block", "TotalICC"), "TESTITEM", "VCC"), "5.000000");
    // The supply's sum names the term once.
    const std::string sum = Cell(DebugTable(*eng, "Logic Block", "SupplyICC"), "TESTITEM", "VCC");
    EXPECT_EQ(Count(sum, "ICCdynX_item_VCC%"), 1u) << sum;
    EXPECT_EQ(sum.substr(sum.size() - 10), "= 5.000000") << sum;
    // Another table of the panel gets the row and column too, still "0".
    EXPECT_EQ(Cell(DebugTable(*eng, "Logic Block", "UsedLeakIcc"), "TESTITEM", "VCC"), "0");

    html.clear();
    EXPECT_EQ(eng->AddHtmlLineBreak("Logic Block", "DynamicIcc", "TESTITEM", both, kStem, html),
              "5.000000");
    EXPECT_EQ(Count(html, "<tr>"), 2u);
    EXPECT_EQ(Count(html, "<br>\n<br>\n"), 2u);

    eng->GenerateDebugPanelHTML(scratch.File("calc.log"));
    const fs::path folder = scratch.path() / "HtmlDebugDir";
    const std::string page = ReadFile(folder / (kStem + "_power_LogicBlock_DynamicIcc.html"));
    const size_t at = page.find("<a name=\"TESTITEM_VCC\"></a>");
    ASSERT_NE(at, std::string::npos);
    EXPECT_NE(page.find("<font class=\"table\">Sum</font></td>\n<td width=190><font "
                        "class=\"table\">5.000000</font>",
                        at),
              std::string::npos);
    // The supply's page links the term to the equations' page.
    const std::string sums = ReadFile(folder / (kStem + "_power_LogicBlock_SupplyICC.html"));
    EXPECT_NE(sums.find("href=\"" + kStem + "_power_LogicBlock_DynamicIcc.html#TESTITEM_VCC\">" +
                        "ICCdynX_item_VCC</a>"),
              std::string::npos);
    EXPECT_EQ(eng->setuplinkfile("Logic Block", "SupplyICC", "NoSuchTerm%", "TESTITEM", kStem),
              "NoLink");
}

// A project path is only ever a path: nothing in it runs.
TEST_F(DebugOn, AProjectPathWithShellSyntaxRunsNothing) {
    const std::string odd = "p;touch injected_semi;$(touch injected_dollar)`touch injected_tick`";
    const fs::path dir = scratch.path() / odd;
    auto project = DefaultProject();
    auto eng = MakeLoggedEngine(dev, project.get(), (dir / "calc.log").string());
    eng->Calculate();
    EXPECT_TRUE(fs::exists(dir / "HtmlDebugDir" / (kStem + ".html")));
    for (const char* name : {"injected_semi", "injected_dollar", "injected_tick"}) {
        EXPECT_FALSE(fs::exists(fs::current_path() / name)) << name;
        for (const auto& entry : fs::recursive_directory_iterator(scratch.path()))
            EXPECT_NE(entry.path().filename().string(), name);
    }
    // Only the one odd folder under the test's own.
    int entries = 0;
    for (const auto& entry : fs::directory_iterator(scratch.path())) {
        EXPECT_EQ(entry.path().filename().string(), odd);
        ++entries;
    }
    EXPECT_EQ(entries, 1);
}

// The developer's CSV goes to a fixed folder that nothing makes.
TEST_F(DebugOn, AFolderThatCannotBeMadeLeavesEveryPageRecordedAsNotWritten) {
    std::ofstream(scratch.path() / "HtmlDebugDir") << "a file in the folder's place";
    auto project = Demo();
    auto eng = MakeLoggedEngine(dev, project.get(), scratch.File("calc.log"));
    eng->ClearReportFiles();
    eng->Calculate();
    ASSERT_FALSE(eng->ReportFiles().empty());
    for (const ReportFileResult& file : eng->ReportFiles()) EXPECT_FALSE(file.written) << file.path;
    EXPECT_TRUE(fs::is_regular_file(scratch.path() / "HtmlDebugDir"));
}

TEST_F(DebugOn, TheDevelopersCsvNeedsItsOwnFolder) {
    if (fs::exists("D:")) GTEST_SKIP() << "a folder D: stands in the working directory";
    auto project = DefaultProject();
    auto eng = MakeLoggedEngine(dev, project.get(), scratch.File("calc.log"));
    EXPECT_FALSE(eng->GenerateDebugPanelCSV(scratch.File("ignored.csv")));
    EXPECT_FALSE(fs::exists("D:"));
    EXPECT_FALSE(fs::exists(scratch.File("ignored.csv")));
}

}  // namespace
