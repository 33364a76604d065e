// The usage statistics and the power matrices as comma-separated files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields;
    std::stringstream in(line);
    for (std::string f; std::getline(in, f, ',');) fields.push_back(f);
    if (!line.empty() && line.back() == ',') fields.push_back("");
    return fields;
}

// The lines of a table: the line that starts with `header` and the non-empty
// lines that follow it, up to the first empty one.
std::vector<std::string> TableLines(const std::string& text, const std::string& header) {
    std::vector<std::string> table;
    bool in = false;
    for (const std::string& line : Lines(text)) {
        if (!in && line.rfind(header, 0) == 0) in = true;
        if (!in) continue;
        if (line.empty()) break;
        table.push_back(line);
    }
    return table;
}

void ExpectEvenFields(const std::vector<std::string>& table, const std::string& what) {
    ASSERT_FALSE(table.empty()) << what;
    const size_t width = Fields(table[0]).size();
    for (const std::string& line : table) EXPECT_EQ(Fields(line).size(), width) << what << line;
}

bool Holds(const std::string& text, const std::string& line) {
    for (const std::string& l : Lines(text))
        if (l == line) return true;
    return false;
}

class DemoStatistics : public ::testing::Test {
  protected:
    void SetUp() override {
        project = LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
        eng = MakeEngine(dev, project.get());
        eng->Calculate();
        eng->DetailedResourcestatistic(scratch.File("demo"));
        resources = ReadFile(scratch.File("demo_ResourceUsage.csv"));
        clocks = ReadFile(scratch.File("demo_ClockUsage.csv"));
        tree = ReadFile(scratch.File("demo_ClockTreeUsage.csv"));
    }
    ScratchDir scratch{"statistics_demo"};
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
    std::string resources, clocks, tree;
};

TEST_F(DemoStatistics, TheThreeFilesParseAsTables) {
    EXPECT_EQ(
        resources.rfind("\n\n\nThis table shows how much HW component used in the design\n\n\n"
                        "Resource name,Resource Used, Device total Resources,Resources used "
                        "percentage\n",
                        0),
        0u);
    // A resource line has four fields; one the device lacks, or a type, two.
    for (const std::string& line : TableLines(resources, "Resource name,")) {
        const size_t n = Fields(line).size();
        if (line.find(", Data Missing") != std::string::npos || line.rfind("   IO TYPE: ", 0) == 0)
            EXPECT_EQ(n, 2u) << line;
        else
            EXPECT_EQ(n, 4u) << line;
    }
    ExpectEvenFields(TableLines(clocks, "Component\\Clk Name(Frequency)"), "clock usage");
    ExpectEvenFields(TableLines(tree, "Clock Name,"), "clock tree");
    EXPECT_EQ(
        clocks.rfind("\n\n\nThis table shows how much load for each clock in the design\n\n\n", 0),
        0u);
    EXPECT_EQ(tree.rfind("\nThis table shows Clock tree components usage\n\n\n", 0), 0u);
    for (const auto& f : eng->ReportFiles()) EXPECT_TRUE(f.written) << f.path;
}

// The demo's logic rows hold 420 + 260 + 130 + 95 + 60 LUTs of 1280.
TEST_F(DemoStatistics, LogicLinesAgainstTheDevice) {
    EXPECT_TRUE(Holds(resources, "Allowed LUT,965.00,1280.00,75.39%")) << resources;
    EXPECT_TRUE(Holds(resources, "Allowed RAM,40.00,160.00,25.00%")) << resources;
    // A clock column the device does not list.
    EXPECT_TRUE(Holds(resources, "Logic Fanout, Data Missing")) << resources;
}

// 5 inputs, 31 outputs and 2 bidirectional pins on a package of 206, with
// each standard's pins behind the line.
TEST_F(DemoStatistics, PinsMergeIntoOneResourceWithTheirTypes) {
    const std::vector<std::string> lines = Lines(resources);
    size_t at = 0;
    while (at < lines.size() && lines[at] != "PIO Pins Max,38.00,206.00,18.45%") ++at;
    ASSERT_LT(at + 4, lines.size()) << resources;
    EXPECT_EQ(lines[at + 1], "   IO TYPE: LVCMOS18,19.00");
    EXPECT_EQ(lines[at + 2], "   IO TYPE: LVCMOS33,17.00");
    EXPECT_EQ(lines[at + 3], "   IO TYPE: LVDS25,1.00");
    EXPECT_EQ(lines[at + 4], "   IO TYPE: SSTL25_I,1.00");
    for (const char* pin : {"I/P,", "O/P,", "Bidi,"})
        for (const std::string& line : lines) EXPECT_NE(line.rfind(pin, 0), 0u) << line;
}

TEST_F(DemoStatistics, ClockLoadsAndTree) {
    const std::vector<std::string> usage = TableLines(clocks, "Component\\Clk Name(Frequency)");
    const std::vector<std::string> header = Fields(usage[0]);
    auto column = [&](const std::string& label) {
        for (size_t i = 0; i < header.size(); ++i)
            if (header[i] == label) return static_cast<int>(i);
        return -1;
    };
    const int sys = column("clk_sys(48.0)");
    ASSERT_GE(sys, 0) << usage[0];
    auto cell = [&](const std::string& component, int c) -> std::string {
        for (const std::string& line : usage)
            if (line.rfind(component + ",", 0) == 0) return Fields(line)[c];
        return "";
    };
    // Three logic rows run on clk_sys; uart and adc_data take 3 of its inputs.
    EXPECT_EQ(cell("Logic Block", sys), "3.00");
    EXPECT_EQ(cell("I/P", sys), "3.00");
    EXPECT_EQ(cell("O/P", sys), "3.00");
    EXPECT_EQ(cell("IO-Pins", sys), "6.00");

    // clk_sys takes 83 taps and clk_spi 11: 94 of 320 at 48 and 24 MHz.
    const std::vector<std::string> t = TableLines(tree, "Clock Name,");
    const std::vector<std::string> th = Fields(t[0]);
    int taps = -1;
    for (size_t i = 0; i < th.size(); ++i)
        if (th[i] == "Ptap") taps = static_cast<int>(i);
    ASSERT_GE(taps, 0);
    std::map<std::string, std::string> footer;
    for (const std::string& line : t) footer[Fields(line)[0]] = Fields(line)[taps];
    EXPECT_EQ(footer["Total Resources"], "320");
    EXPECT_EQ(footer["Total Used"], "94");
    EXPECT_EQ(footer["Used Percentage"], "29.38");
    EXPECT_EQ(footer["Average Frequency"], "45.19");
    EXPECT_EQ(footer["clk_sys"], "83");
}

TEST(Statistics, ADesignWithoutClocksGivesHeadersOnly) {
    ScratchDir scratch("statistics_no_clocks");
    DeviceStrings dev;
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    eng->DetailedResourcestatistic(scratch.File("empty"));
    const std::string clocks = ReadFile(scratch.File("empty_ClockUsage.csv"));
    const std::string tree = ReadFile(scratch.File("empty_ClockTreeUsage.csv"));
    EXPECT_EQ(clocks,
              "\n\n\nThis table shows how much load for each clock in the design\n\n\n"
              "Component\\Clk Name(Frequency)\n");
    const std::vector<std::string> t = TableLines(tree, "Clock Name,");
    ASSERT_EQ(t.size(), 1u) << tree;
    EXPECT_EQ(t[0].rfind("Clock Name,Freq. (MHz),CLKEN Duty Cycle (%),", 0), 0u);
}

TEST(Statistics, APanelWithoutATotalTableAddsNoGroup) {
    ScratchDir scratch("statistics_no_total");
    DeviceStrings dev;
    auto project = LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
    auto eng = MakeEngine(dev, project.get());
    auto groups = [&] {
        std::vector<std::string> names;
        eng->GetResourcesUsage();
        for (const auto& g : eng->GetResourceGroups()) names.push_back(g.name);
        return names;
    };
    std::vector<std::string> before = groups();
    EXPECT_NE(std::find(before.begin(), before.end(), "PLL"), before.end());
    PC_PANEL* pll = eng->GetPanel(eng->GetPanelIndex("PLL"));
    ASSERT_NE(pll, nullptr);
    pll->AddTable(new PD_TABLE("PLL Notes"));
    std::vector<std::string> after = groups();
    EXPECT_EQ(std::find(after.begin(), after.end(), "PLL"), after.end());
    EXPECT_EQ(after.size() + 1, before.size());
}

// A hard-block tab: each row is one instance of the core or quad it names,
// and channels and quads both count against "Allowed PCS".
TEST(Statistics, HardBlockRowsCountOnePerCore) {
    DeviceStrings dev;
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    PC_PANEL* panel = eng->GetPanel(eng->GetPanelIndex("PLL"));
    ASSERT_NE(panel, nullptr);
    panel->SetName("SERDES");
    auto* pcs = new PD_TABLE("PCS");
    pcs->SetColumns({"Tag", "Quad_Channel", "# Channels", "Core"});
    pcs->AddRow({"", "Q0", "2", "PCIE"});
    pcs->AddRow({"", "Q1", "1", ""});
    panel->tables.insert(panel->tables.end() - 1, pcs);
    eng->GetResourcesUsage();
    const PC_ENG::ResourceGroup* group = nullptr;
    for (const auto& g : eng->GetResourceGroups())
        if (g.name == "PLL") group = &g;
    ASSERT_NE(group, nullptr);
    ASSERT_TRUE(group->resources.count("Allowed PCS"));
    EXPECT_DOUBLE_EQ(group->resources.at("Allowed PCS")[0], 2.0 + 3.0);
    ASSERT_TRUE(group->resources.count("PCIE"));
    EXPECT_DOUBLE_EQ(group->resources.at("PCIE")[0], 1.0);
    // The sample devices list no PCS: the line says so.
    EXPECT_EQ(group->resources.at("Allowed PCS").size(), 1u);
}

// One logic row of 320 LUTs on each device: used against the device's count.
struct LutCase {
    const char* device;
    const char* package;
    const char* line;
};

std::ostream& operator<<(std::ostream& os, const LutCase& c) {
    return os << c.device << "/" << c.package;
}

class LutShare : public ::testing::TestWithParam<LutCase> {};

TEST_P(LutShare, OneRowAgainstTheDevice) {
    ScratchDir scratch("statistics_lut");
    DeviceStrings dev;
    dev.device = GetParam().device;
    dev.package = GetParam().package;
    dev.part = dev.device;
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    AddRow(TabTable(*eng, "Logic Block", "Logic"),
           {{"Module Name", "m"}, {"# Logic LUTs", "320"}, {"Freq. (MHz)", "10"}});
    eng->Calculate();
    eng->DetailedResourcestatistic(scratch.File("lut"));
    const std::string text = ReadFile(scratch.File("lut_ResourceUsage.csv"));
    EXPECT_TRUE(Holds(text, GetParam().line)) << text;
}

INSTANTIATE_TEST_SUITE_P(
    Devices, LutShare,
    ::testing::Values(LutCase{"KZQ2-1200HC", "CABGA256", "Allowed LUT,320.00,1280.00,25.00%"},
                      LutCase{"KZQ2-640ZE", "TG144", "Allowed LUT,320.00,640.00,50.00%"},
                      LutCase{"KZQ2-256HC", "SG48", "Allowed LUT,320.00,256.00,125.00%"}),
    [](const ::testing::TestParamInfo<LutCase>& info) {
        std::string name = std::string(info.param.device) + "_" + info.param.package;
        for (char& c : name)
            if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
        return name;
    });

// ---- Power matrices -------------------------------------------------------------

// A matrix of the file: its rows by supply, its cells by block.
std::map<std::string, std::map<std::string, double>> Matrix(const std::string& text,
                                                            const std::string& name) {
    std::map<std::string, std::map<std::string, double>> m;
    const std::vector<std::string> all = Lines(text);
    size_t at = 0;
    while (at < all.size() && all[at] != "Power Calculator Matrix Debug Table : " + name) ++at;
    if (at + 2 >= all.size()) return m;
    std::vector<std::string> table;
    for (size_t i = at + 2; i < all.size() && !all[i].empty(); ++i) table.push_back(all[i]);
    ExpectEvenFields(table, name);
    const std::vector<std::string> header = Fields(table[0]);
    EXPECT_EQ(header[0], "Supply\\Blocks");
    for (size_t r = 1; r < table.size(); ++r) {
        const std::vector<std::string> f = Fields(table[r]);
        for (size_t c = 1; c < f.size() && c < header.size(); ++c)
            if (!header[c].empty()) m[f[0]][header[c]] = Num(f[c]);
    }
    return m;
}

TEST_F(DemoStatistics, MatrixTotalsAreTheSummarys) {
    ASSERT_EQ(eng->GeneratePowerMatrixTableCSV(scratch.File("matrix.csv")), 1);
    const std::string text = ReadFile(scratch.File("matrix.csv"));
    EXPECT_EQ(text.rfind("\n\n\nThis matrix shows how much power is pulled by each component\n"
                         "from different power supply.\nUnit: (W)\n",
                         0),
              0u);
    const auto power = Matrix(text, "Power_Matrix_For_Power");
    const auto current = Matrix(text, "Power_Matrix_For_Current");
    ASSERT_FALSE(power.empty());
    ASSERT_FALSE(current.empty());
    PD_TABLE* vdpm = eng->GetSupplyTable();
    const int n = vdpm->GetNumOfRows();
    // Each supply's row total, and the corner, are the summary's totals.
    for (const auto& [matrix, summary] : {std::make_pair(&power, eng->GetPowerTable()),
                                          std::make_pair(&current, eng->GetCurrentTable())}) {
        for (int r = 0; r < n; ++r) {
            const std::string supply = vdpm->GetValueAt(r, 0);
            EXPECT_NEAR(matrix->at(supply).at("Total"), Num(summary->GetValueAt(r, 2)), 2e-5)
                << supply;
        }
        EXPECT_NEAR(matrix->at("Total").at("Total"), Num(summary->GetValueAt(n, 2)), 1e-4);
    }
    // The logic's watts: VCC at 1.2 V.
    EXPECT_NEAR(power.at("Vcc").at("Logic Block"), 1.2 * current.at("Vcc").at("Logic Block"), 2e-6);
}

TEST_F(DemoStatistics, GenPowerMatrixTableCSVWritesToTheGivenFile) {
    const std::string path = scratch.File("one_matrix.csv");
    FILE* file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr);
    eng->GenPowerMatrixTableCSV(file, eng->GetCurrentMatrix());
    std::fclose(file);
    const std::string text = ReadFile(path);
    EXPECT_EQ(text, PC_ENG::PowerMatrixTableCSVText(eng->GetCurrentMatrix()));
    EXPECT_EQ(text.rfind("Power Calculator Matrix Debug Table : Power_Matrix_For_Current\n\n"
                         "Supply\\Blocks,Logic Block,",
                         0),
              0u)
        << text;
}

TEST_F(DemoStatistics, MatrixPageHoldsBothTables) {
    eng->GeneratePowerMatrixTableHTML(scratch.File("matrix"));
    const std::string frames = ReadFile(scratch.File("matrix.html"));
    EXPECT_NE(frames.find("src=\"matrix_power_detail.html\""), std::string::npos) << frames;
    const std::string page = ReadFile(scratch.File("matrix_power_detail.html"));
    EXPECT_NE(page.find("Power Calculator debug matrix Report"), std::string::npos);
    const size_t amps = page.find("Power_Matrix_For_Current");
    const size_t watts = page.find("Power_Matrix_For_Power");
    ASSERT_NE(amps, std::string::npos);
    ASSERT_NE(watts, std::string::npos);
    EXPECT_LT(amps, watts);
    const std::string corner = eng->GetPowerMatrix()->GetValueAt(
        eng->GetPowerMatrix()->GetNumOfRows() - 1, eng->GetPowerMatrix()->GetNumOfColumns() - 1);
    EXPECT_NE(
        page.find("<td><center><font class=\"table\">" + corner + "</font></center></td>", watts),
        std::string::npos);
}

// The matrices start at zero in the family's format: six places for Quenra2.
TEST(Statistics, MatricesStartInTheFamilyFormat) {
    DeviceStrings dev;
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    eng->CreatePowerMatrices();
    PD_TABLE* m = eng->GetPowerMatrix();
    ASSERT_NE(m, nullptr);
    EXPECT_STREQ(m->GetValueAt(0, 1), "0.000000");
    EXPECT_EQ(m->columns.front(), "Supply\\Blocks");
    EXPECT_EQ(m->columns.back(), "Total");
    EXPECT_GE(m->GetColumnIndex("Other"), 0);
    EXPECT_LT(m->GetColumnIndex("Misc"), 0);
    EXPECT_LT(m->GetColumnIndex("I/O Term"), 0);
    EXPECT_STREQ(m->GetValueAt(m->GetNumOfRows() - 1, 0), "Total");
    EXPECT_EQ(m->GetNumOfRows(), eng->GetSupplyTable()->GetNumOfRows() + 1);
}

}  // namespace
