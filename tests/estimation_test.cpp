// Estimation mode: routing and clock-tree estimates from the sample rates,
// the device bound, the hidden data's reset and restore, and the repair of
// imported I/O rows.
#include <gtest/gtest.h>

#include <cstdlib>

#include "engine_fixture.h"
#include "pc_families.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

std::unique_ptr<PC_ENG> MakeEstimatingEngine(DeviceStrings& d, PD_DATA* project,
                                             const std::string& mode = "Calculation",
                                             const std::string& oldFamily = "") {
    return std::make_unique<PC_ENG>(d.Array(), project, mode, false, "", "", "", "", "", "",
                                    nullptr, nullptr, nullptr, oldFamily, true, "", "");
}

std::string Text(PD_TABLE* t, int row, const char* column) {
    return t->GetValueAt(row, t->GetColumnIndex(column));
}

// Unsets the variable when it goes.
class EnvScope {
  public:
    EnvScope(const char* name, const char* value) : name_(name) { setenv(name, value, 1); }
    ~EnvScope() { unsetenv(name_); }

  private:
    const char* name_;
};

// The default project of KZQ2-1200HC CABGA256 (10240 X0 wires, 11200 switch
// boxes in all), estimation on.
class Estimating : public ::testing::Test {
  protected:
    void SetUp() override {
        unsetenv("VRL_PWC_CLOSE_ESTIMATION");
        project = DefaultProject();
        eng = MakeEstimatingEngine(dev, project.get());
        logic = TabTable(*eng, "Logic Block", nullptr);
        clocks = TabTable(*eng, "Clocks", nullptr);
    }
    int LogicRow(const std::string& luts, const std::string& x0 = "0",
                 const std::string& clock = "clk") {
        return AddRow(logic, {{"Module Name", "m"},
                              {"Clock Name", clock},
                              {"# Logic LUTs", luts},
                              {"# X0", x0},
                              {"Freq. (MHz)", "50"}});
    }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
    PD_TABLE* logic = nullptr;
    PD_TABLE* clocks = nullptr;
};

// Rates of the sample file for one level: LUT, RAM, REG, RIPPLE on X0 and
// ISB, and what a row of 10 LUTs, 2 RAM, 8 registers and 4 ripple slices
// takes, worked out by hand.
struct LevelCase {
    const char* level;
    const char* x0;   // 10*lut + 2*ram + 8*reg + 4*ripple
    const char* isb;  // the same on ISB
};
const LevelCase kLevels[] = {
    {"low", "5.4000e+01", "5.0000e+01"},     // 30+8+8+8; 30+8+4+8
    {"Medium", "6.9600e+01", "5.8800e+01"},  // 40+10+9.6+10; 35+9+4.8+10
    {"High", "8.6000e+01", "6.8400e+01"},    // 50+12+12+12; 40+10+6.4+12
};

class EstimatingLevels : public Estimating, public ::testing::WithParamInterface<LevelCase> {};

TEST_P(EstimatingLevels, LogicRowTakesRateTimesCountOfEachKind) {
    const LevelCase& c = GetParam();
    ASSERT_TRUE(eng->SetEstimationMode(c.level));
    const int row = AddRow(logic, {{"Module Name", "m"},
                                   {"Clock Name", "clk"},
                                   {"# Logic LUTs", "10"},
                                   {"# Dist. RAM", "2"},
                                   {"# Registers", "8"},
                                   {"# Ripple Slices", "4"}});
    eng->Calculate();
    EXPECT_EQ(Text(logic, row, "# X0"), c.x0);
    EXPECT_EQ(Text(logic, row, "# ISB"), c.isb);
    // The switch boxes' clock share is not estimated.
    EXPECT_EQ(Text(logic, row, "# ISBCLK"), "0");
}

INSTANTIATE_TEST_SUITE_P(Levels, EstimatingLevels, ::testing::ValuesIn(kLevels),
                         [](const auto& info) { return std::string(info.param.level); });

TEST_F(Estimating, MoreRoutingAtHighThanAtLowAndNothingForAnEmptyRow) {
    const int row = LogicRow("100");
    const int empty = LogicRow("0");
    double x0[2];
    int i = 0;
    for (const char* level : {"low", "High"}) {
        eng->SetEstimationMode(level);
        eng->Calculate();
        x0[i++] = Cell(logic, row, "# X0");
    }
    EXPECT_DOUBLE_EQ(x0[0], 300.0);
    EXPECT_DOUBLE_EQ(x0[1], 500.0);
    EXPECT_EQ(Text(logic, empty, "# X0"), "0.0000e+00");
}

TEST_F(Estimating, CloseEstimationOneSkipsAndZeroDoesNot) {
    const int row = LogicRow("100", "123");
    {
        EnvScope env("VRL_PWC_CLOSE_ESTIMATION", "1");
        eng->Calculate();
        EXPECT_EQ(Text(logic, row, "# X0"), "123");
    }
    {
        EnvScope env("VRL_PWC_CLOSE_ESTIMATION", "0");
        eng->Calculate();
        EXPECT_EQ(Text(logic, row, "# X0"), "4.0000e+02");
    }
}

TEST_F(Estimating, RowBeyondTheDeviceKeepsItsOldValuesOthersTheirEstimates) {
    const int before = LogicRow("100", "11");
    const int tooBig = LogicRow("3000", "77");  // 12000 X0 wires of 10240
    const int after = LogicRow("200", "22");
    eng->Calculate();
    EXPECT_EQ(Text(logic, before, "# X0"), "4.0000e+02");
    EXPECT_EQ(Text(logic, tooBig, "# X0"), "77");
    EXPECT_EQ(Text(logic, tooBig, "# ISB"), "0");  // restored as it was
    EXPECT_EQ(Text(logic, after, "# X0"), "8.0000e+02");
}

TEST_F(Estimating, ExactFitPassesOneMoreWireFails) {
    // Nothing is in use in the default project.
    EXPECT_TRUE(eng->IsOkToAddMoreRoutingEstimation(10240, 7680, 0, 0, 5120, 1920, 11200));
    EXPECT_FALSE(eng->IsOkToAddMoreRoutingEstimation(10241, 0, 0, 0, 0, 0, 0));
    EXPECT_FALSE(eng->IsOkToAddMoreRoutingEstimation(0, 0, 0, 0, 0, 0, 11201));
    // The device has no X1d wires at all.
    EXPECT_FALSE(eng->IsOkToAddMoreRoutingEstimation(0, 0, 1, 0, 0, 0, 0));
    // What the rows hold counts: 10000 entered on one row leaves 240.
    LogicRow("0", "10000");
    EXPECT_TRUE(eng->IsOkToAddMoreRoutingEstimation(240, 0, 0, 0, 0, 0, 0));
    EXPECT_FALSE(eng->IsOkToAddMoreRoutingEstimation(241, 0, 0, 0, 0, 0, 0));
}

TEST(EstimationFamilies, OnlyRv7c00IsUnbounded) {
    EXPECT_TRUE(pwc::HasUnboundedRoutingEstimate("rv7c00"));
    for (const char* arch : {"zn2c00", "rv7c00a", "kt7c00", ""})
        EXPECT_FALSE(pwc::HasUnboundedRoutingEstimate(arch)) << arch;
    EXPECT_TRUE(pwc::EstimatesIsbOnLuts("zn2c00p"));
    EXPECT_TRUE(pwc::EstimatesIsbOnLuts("wd7r00"));
    EXPECT_FALSE(pwc::EstimatesIsbOnLuts("bf7p00"));
}

// The running sums must answer as the sums over all tables would: designs
// where a later row's old value makes an earlier row fail, and where the
// bound bites part way through.
struct BoundCase {
    const char* name;
    std::vector<std::pair<const char*, const char*>> rows;  // LUTs, old "# X0"
    std::vector<bool> estimated;                            // expected
};
const BoundCase kBoundCases[] = {
    {"LaterOldValueBlocksFirst",
     {{"500", "0"}, {"100", "0"}, {"100", "9000"}},
     {false, true, true}},
    {"BitesPartWay",
     {{"100", "0"}, {"500", "0"}, {"100", "0"}, {"100", "9000"}},
     {true, false, true, true}},
    {"AllFit", {{"100", "5"}, {"200", "6"}}, {true, true}},
};

class BoundSums : public Estimating, public ::testing::WithParamInterface<BoundCase> {};

TEST_P(BoundSums, RunningSumsAnswerAsFullSums) {
    const BoundCase& c = GetParam();
    std::vector<int> rows;
    for (const auto& [luts, x0] : c.rows) rows.push_back(LogicRow(luts, x0));
    PD_TABLE* io = TabTable(*eng, "I/O", "Input Output");
    const int ioRow = AddRow(io, {{"Signal Name", "s"}, {"Type", "LVCMOS33"}, {"# I/P", "4"}});

    std::vector<std::vector<std::string>> results[2];
    for (bool running : {true, false}) {
        // Same starting values each time.
        for (PD_TABLE* t : {logic, io})
            for (int r = 0; r < t->GetNumOfRows(); ++r)
                for (const char* column : {"# X0", "# X1", "# X2", "# X6", "# ISB"})
                    t->SetValueAt("0", r, t->GetColumnIndex(column));
        for (size_t i = 0; i < rows.size(); ++i)
            logic->SetValueAt(c.rows[i].second, rows[i], logic->GetColumnIndex("# X0"));
        eng->estimationRunningSums = running;
        eng->ProcessEstimationMode();
        for (PD_TABLE* t : {logic, io})
            for (int r = 0; r < t->GetNumOfRows(); ++r)
                results[running].push_back(
                    {Text(t, r, "# X0"), Text(t, r, "# X1"), Text(t, r, "# ISB")});
    }
    EXPECT_EQ(results[0], results[1]);
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::string x0 = Text(logic, rows[i], "# X0");
        EXPECT_EQ(x0.find('e') != std::string::npos, c.estimated[i]) << "row " << i << ": " << x0;
    }
    EXPECT_EQ(Text(io, ioRow, "# X0"), "2.4000e+01");
}

INSTANTIATE_TEST_SUITE_P(Designs, BoundSums, ::testing::ValuesIn(kBoundCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Estimating, SummaryAndLastTablesAreNeverTouched) {
    LogicRow("100", "5");
    PD_TABLE* total = TotalTable(*eng, "Logic Block");
    total->AddColumn("# X0", total->GetNumOfColumns());
    for (int r = 0; r < total->GetNumOfRows(); ++r)
        total->SetValueAt("55", r, total->GetColumnIndex("# X0"));
    PD_TABLE* block = eng->GetBlockTable();
    block->AddColumn("# X0", block->GetNumOfColumns());
    ASSERT_GT(block->GetNumOfRows(), 0);
    block->SetValueAt("66", 0, block->GetColumnIndex("# X0"));
    eng->ProcessEstimationMode();
    for (int r = 0; r < total->GetNumOfRows(); ++r) EXPECT_EQ(Text(total, r, "# X0"), "55");
    EXPECT_EQ(Text(block, 0, "# X0"), "66");
    EXPECT_EQ(Text(logic, 0, "# X0"), "4.0000e+02");
}

TEST_F(Estimating, TableClocksFillsEveryClockRowAtTheLevel) {
    const int row = AddRow(clocks, {{"Clock Name", "clk"}, {"Freq. (MHz)", "50"}});
    eng->SetEstimationMode("High");
    eng->Calculate();
    // The sample rates per clock net at "High"; trunk row figure 0.
    EXPECT_EQ(Text(clocks, row, "# Pfeed"), "f_2");
    EXPECT_EQ(Text(clocks, row, "# Ptrunk"), "t0_1");
    EXPECT_EQ(Text(clocks, row, "# Ptap"), "p_60");
    EXPECT_EQ(Text(clocks, row, "# Pbranch"), "c1_8");
    EXPECT_EQ(Text(clocks, row, "# Strunk"), "t0_0");
}

TEST_F(Estimating, WithoutTableClocksRowsBuildTheClockTree) {
    PD_DATA* pef = eng->GetPefData();
    pef->RemoveSection(pef->GetSectionIndex("Table Clocks"));
    ASSERT_EQ(clocks->GetRowNumber(std::string("fresh")), -1);
    clocks->AddRow(std::vector<std::string>(clocks->GetNumOfColumns(), "0"));
    clocks->SetValueAt("old", 0, clocks->GetColumnIndex("Clock Name"));
    clocks->SetValueAt("p_7", 0, clocks->GetColumnIndex("# Ptap"));
    for (int i = 0; i < 2; ++i)
        AddRow(logic, {{"Module Name", "m"},
                       {"Clock Name", "fresh"},
                       {"# Registers", "100"},
                       {"Freq. (MHz)", "25"}});
    eng->ProcessEstimationMode();
    // The existing clock's tree was cleared first.
    EXPECT_EQ(Text(clocks, 0, "# Ptap"), "0");
    const int fresh = clocks->GetRowNumber(std::string("fresh"));
    ASSERT_GE(fresh, 0);
    EXPECT_EQ(Text(clocks, fresh, "Freq. (MHz)"), "25");
    // 100 registers at 0.125 taps each, two rows: 12.5 + 0.5 -> 13, then
    // 13 + 12.5 + 0.5 -> 26. Branches: 1 + 0.5 -> 1, then 1 + 1 + 0.5 -> 2.
    EXPECT_EQ(Text(clocks, fresh, "# Ptap"), "p_26");
    EXPECT_EQ(Text(clocks, fresh, "# Pbranch"), "c1_2");
    EXPECT_EQ(Text(clocks, fresh, "# Ptrunk"), "t0_0");
    // The power columns behind the template's cells are zero.
    const int n = clocks->GetNumOfColumns();
    for (int c = n - 3; c < n; ++c) EXPECT_EQ(std::string(clocks->GetValueAt(fresh, c)), "0");
}

TEST_F(Estimating, ClockCellsAddUpAndRoundHalfUp) {
    const int row = AddRow(clocks, {{"Clock Name", "c"}, {"# Ptap", "t0_1_c1_6_s_3_p_83"}});
    EXPECT_EQ(eng->GetClockComponentUsagefromRow(clocks, row, "# Ptap"), 93);
    EXPECT_EQ(eng->GetClockComponentUsagefromRow(clocks, row, "# Pfeed"), 0);
    EXPECT_EQ(eng->ClocksTimesAndAssignedTrunkNumber(3, "Ptap", "p_"), "p_3");
    EXPECT_EQ(eng->ClocksTimesAndAssignedTrunkNumber(-1, "Ptap", "p_"), "");
}

TEST_F(Estimating, RestoreAfterAnEmptySaveDoesNothing) {
    const int row = LogicRow("1", "9");
    eng->RestoreHiddendata(logic, row);
    EXPECT_EQ(Text(logic, row, "# X0"), "9");
    eng->ResetHidenDataOnRow(logic, row);
    EXPECT_EQ(Text(logic, row, "# X0"), "0");
    eng->RestoreHiddendata(logic, row);
    EXPECT_EQ(Text(logic, row, "# X0"), "9");
    eng->RestoreHiddendata(logic, row);  // the save is spent
    EXPECT_EQ(Text(logic, row, "# X0"), "9");
}

TEST(EstimationIoCheck, RowInAMissingBankMovesToTheFirstBankAndUnknownTypesToTheDefault) {
    DeviceStrings dev;
    dev.device = "KZQ2-640ZE";  // banks 0 to 3
    dev.package = "TG100";
    auto project = DefaultProject();
    auto* io = dynamic_cast<PD_TBLSECT*>(project->GetSection("Input Output"));
    ASSERT_NE(io, nullptr);
    std::vector<std::string> cells(io->GetNumOfColumns(), "0");
    auto set = [&](const char* key, const char* value) { cells[io->GetColumnIndex(key)] = value; };
    set("SignalName", "a");
    set("Type", "LVCMOS33");
    set("Bank", "5");
    io->AddRow(cells);
    set("SignalName", "b");
    set("Type", "NO_SUCH_STANDARD");
    set("Bank", "2");
    io->AddRow(cells);
    auto eng = MakeEstimatingEngine(dev, project.get(), "Estimation");
    PD_TABLE* rows = TabTable(*eng, "I/O", "Input Output");
    EXPECT_EQ(Text(rows, 0, "Bank"), "0");
    EXPECT_EQ(Text(rows, 0, "Type"), "LVCMOS33");
    EXPECT_EQ(Text(rows, 1, "Bank"), "2");
    EXPECT_EQ(Text(rows, 1, "Type"), "LVCMOS33");  // the template's default
}

// A design carried over from another family: its types become the nearest
// that this device offers, and only during such a switch.
struct TypeCase {
    const char* type;
    const char* switched;     // from another family
    const char* notSwitched;  // the same family
};
const TypeCase kTypeCases[] = {
    {"LVCMOS33-8mA", "LVCMOS33-DRIVE:8mA", "LVCMOS33"},  // same standard and drive
    {"LVCMOS25-3mA", "LVCMOS25", "LVCMOS33"},            // same standard
    {"SSTL18_II", "SSTL18_I", "LVCMOS33"},               // same standard, other suffix
    {"HSTL12_I", "HSTL18_I", "LVCMOS33"},                // same class
    {"FOO25", "LVCMOS33", "LVCMOS33"},                   // nothing like it: the default
    {"LVCMOS18", "LVCMOS18", "LVCMOS18"},                // offered as it is
};

class ImportedTypes : public ::testing::TestWithParam<TypeCase> {};

TEST_P(ImportedTypes, BecomeTypesTheDeviceOffers) {
    for (bool switched : {true, false}) {
        DeviceStrings dev;
        auto project = DefaultProject();
        auto* io = dynamic_cast<PD_TBLSECT*>(project->GetSection("Input Output"));
        std::vector<std::string> cells(io->GetNumOfColumns(), "0");
        cells[io->GetColumnIndex("SignalName")] = "s";
        cells[io->GetColumnIndex("Type")] = GetParam().type;
        io->AddRow(cells);
        auto eng =
            MakeEstimatingEngine(dev, project.get(), "Estimation", switched ? "Orvan2" : "Quenra2");
        EXPECT_EQ(Text(TabTable(*eng, "I/O", "Input Output"), 0, "Type"),
                  switched ? GetParam().switched : GetParam().notSwitched)
            << (switched ? "switched" : "same family");
    }
}

INSTANTIATE_TEST_SUITE_P(Types, ImportedTypes, ::testing::ValuesIn(kTypeCases));

}  // namespace
