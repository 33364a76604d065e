// Graph sweeps on the demo design: point counts, order and the model's
// trends, and the engine left as it was.
#include "engine_fixture.h"

namespace {

using namespace pwctest;

const std::string kDemo = std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf";

class Graph : public ::testing::Test {
  protected:
    void SetUp() override {
        project = LoadProject(kDemo);
        eng = MakeEngine(device, project.get());
        // Nothing but what a test opens up.
        Skip(eng->SectionLowerLimit, eng->SectionUpperLimit);
        Skip(eng->TempAmbLowerLimit, eng->TempAmbUpperLimit);
        Skip(eng->FreqLowerLimit, eng->FreqUpperLimit);
    }
    // Reversed by more than any step: no point.
    static void Skip(double& lower, double& upper) {
        lower = 1e6;
        upper = -1e6;
    }
    static std::vector<double> Xs(const std::vector<grpdata>& v) {
        std::vector<double> xs;
        for (const grpdata& p : v) xs.push_back(p.x);
        return xs;
    }
    // Every cell of every tab, and the thermal and process texts.
    std::vector<std::string> State() const {
        std::vector<std::string> all;
        for (int p = 0; p < eng->GetNumOfPanels(); ++p) {
            PC_PANEL* panel = eng->GetPanel(p);
            for (int t = 0; t < panel->GetNumOfTables(); ++t) {
                PD_TABLE* table = panel->GetTable(t);
                for (int r = 0; r < table->GetNumOfRows(); ++r)
                    for (int c = 0; c < table->GetNumOfColumns(); ++c)
                        all.push_back(table->name + "/" + std::to_string(r) + "/" +
                                      std::to_string(c) + "=" + table->GetValueAt(r, c));
            }
        }
        for (const std::string* s :
             {&eng->JunctionTemperature, &eng->MaxSafeAmbient, &eng->AmbientTemperature})
            all.push_back(*s);
        all.push_back(eng->GetProcessType());
        all.push_back(eng->GetTotalPower());
        return all;
    }
    DeviceStrings device;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

struct CountCase {
    double lower, upper, step;
    std::vector<double> xs;
};

class SupplyCount : public Graph, public ::testing::WithParamInterface<CountCase> {};

TEST_P(SupplyCount, TruncatesAndRunsDownFromTheUpperLimit) {
    const CountCase& c = GetParam();
    eng->SectionLowerLimit = c.lower;
    eng->SectionUpperLimit = c.upper;
    eng->SectionResolution = c.step;
    eng->CollectDataForGraph();
    const std::vector<double> xs = Xs(eng->SectionTypical);
    ASSERT_EQ(xs.size(), c.xs.size());
    for (std::size_t i = 0; i < xs.size(); ++i) EXPECT_NEAR(xs[i], c.xs[i], 1e-9) << i;
    EXPECT_EQ(eng->SectionWorst.size(), eng->IsWorstTypeAvailable() ? xs.size() : 0u);
    EXPECT_TRUE(eng->TempAmbTypical.empty());
    EXPECT_TRUE(eng->FreqTypical.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, SupplyCount,
    ::testing::Values(
        CountCase{1.14, 1.26, 0.05, {1.26, 1.21, 1.16}},  // 2.4 steps: 3 points
                                                          // 0.2 / 0.1 is a hair below 2 in doubles:
                                                          // the count truncates to 1.
        CountCase{1.10, 1.30, 0.10, {1.30, 1.20}}, CountCase{1.00, 1.50, 0.25, {1.50, 1.25, 1.00}},
        CountCase{1.20, 1.20, 0.05, {1.20}},
        CountCase{1.30, 1.10, 0.05, {}}));  // reversed: skipped

TEST_F(Graph, PowerFollowsVoltageAmbientAndFrequency) {
    eng->SectionLowerLimit = 1.14;
    eng->SectionUpperLimit = 1.26;
    eng->SectionResolution = 0.12;
    // Without "TempAmbX" the project names "Ambient Temperature" as the
    // plotted tab, which has no power.
    eng->TempAmbY = "Total Power";
    eng->TempAmbLowerLimit = 25.0;
    eng->TempAmbUpperLimit = 85.0;
    eng->TempAmbResolution = 60.0;
    eng->FreqX = "clk_sys";
    eng->FreqLowerLimit = 20.0;
    eng->FreqUpperLimit = 120.0;
    eng->FreqAmbResolution = 100.0;
    eng->CollectDataForGraph();
    for (const std::vector<grpdata>* v :
         {&eng->SectionTypical, &eng->TempAmbTypical, &eng->FreqTypical}) {
        ASSERT_EQ(v->size(), 2u);
        // Upper limit first: more voltage, heat or clock, more power.
        EXPECT_GT((*v)[0].y, (*v)[1].y);
        EXPECT_GT((*v)[1].y, 0.0);
    }
    EXPECT_DOUBLE_EQ(eng->FreqTypical[0].x, 120.0);
    if (eng->IsWorstTypeAvailable()) {
        for (std::size_t i = 0; i < eng->SectionTypical.size(); ++i)
            EXPECT_GT(eng->SectionWorst[i].y, eng->SectionTypical[i].y);
    }
}

TEST_F(Graph, TheEngineIsAsItWasAfterASweep) {
    eng->SectionLowerLimit = 1.15;
    eng->SectionUpperLimit = 1.25;
    eng->SectionResolution = 0.1;
    eng->TempAmbLowerLimit = 0.5;
    eng->TempAmbUpperLimit = 100.0;
    eng->TempAmbResolution = 99.5;
    eng->FreqX = "clk_spi";
    eng->FreqLowerLimit = 10.0;
    eng->FreqUpperLimit = 50.0;
    eng->FreqAmbResolution = 40.0;
    eng->SetWorstType();
    eng->Calculate();
    const std::vector<std::string> before = State();
    eng->graphDirty = true;
    eng->CollectDataForGraph();
    EXPECT_EQ(eng->FreqTypical.size(), 2u);
    const std::vector<std::string> after = State();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) EXPECT_EQ(after[i], before[i]);
    EXPECT_FALSE(eng->graphDirty);
    EXPECT_FALSE(eng->graphProcessing);
}

TEST_F(Graph, ZeroLimitsTakeTheDefaultsAndProgressCountsEveryPoint) {
    eng->SectionLowerLimit = eng->SectionUpperLimit = eng->SectionResolution = 0.0;
    eng->SectionX.clear();
    int calls = 0, last = 0, due = 0;
    eng->graphProgress = [&](int done, int total) {
        ++calls;
        last = done;
        due = total;
    };
    eng->CollectDataForGraph();
    EXPECT_EQ(eng->SectionX, "Vcc");
    EXPECT_DOUBLE_EQ(eng->SectionLowerLimit, 1.14);
    EXPECT_DOUBLE_EQ(eng->SectionUpperLimit, 1.26);
    EXPECT_DOUBLE_EQ(eng->SectionResolution, 0.024);
    const std::size_t expected = static_cast<std::size_t>((1.26 - 1.14) / 0.024) + 1;
    EXPECT_EQ(eng->SectionTypical.size(), expected);
    EXPECT_NEAR(eng->SectionTypical.back().x, 1.26 - (expected - 1) * 0.024, 1e-12);
    EXPECT_EQ(calls, static_cast<int>(expected));
    EXPECT_EQ(last, due);
}

TEST_F(Graph, NoClocksNoFrequencySweep) {
    PD_TABLE* clocks = TabTable(*eng, "Clocks", nullptr);
    ASSERT_NE(clocks, nullptr);
    while (clocks->GetNumOfRows() > 0) clocks->RemoveRow(0);
    eng->FreqLowerLimit = 10.0;
    eng->FreqUpperLimit = 100.0;
    eng->CollectDataForGraph();
    EXPECT_TRUE(eng->FreqTypical.empty());
    EXPECT_TRUE(eng->FreqWorst.empty());
}

}  // namespace
