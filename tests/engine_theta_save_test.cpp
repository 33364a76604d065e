// The theta model, the device limits and saving a project.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "engine_fixture.h"

using namespace pwctest;
namespace fs = std::filesystem;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

double Num(const std::string& s) {
    return std::strtod(s.c_str(), nullptr);
}

class EngineOn : public ::testing::Test {
  protected:
    void Build(const char* device, const char* package, PD_DATA* proj = nullptr) {
        dev.device = device;
        dev.package = package;
        if (!proj) {
            project = DefaultProject();
            proj = project.get();
        }
        eng = MakeEngine(dev, proj);
    }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(EngineOn, ThetaFromTheNewAndTheOldFormat) {
    Build("KZQ2-1200HC", "TG144");
    const std::string key = "KZQ2-1200HC_TG144";
    // Medium board, no heat sink, 200 LFM: one column of the new format.
    eng->ProcessTheta();
    EXPECT_EQ(eng->GetThetaSelectionString(), "Med PCB_200fpm_noHS");
    EXPECT_EQ(eng->ThetaJA, eng->GetTheta(key, "Med PCB_200fpm_noHS"));

    // The old format puts junction-to-air in parallel with the board path.
    setenv("PWC_OLD_PTD_FORMAT", "1", 1);
    eng->ProcessTheta();
    unsetenv("PWC_OLD_PTD_FORMAT");
    const double ja = Num(eng->GetTheta(key, "Theta JA (200lfm)"));
    const double jb = Num(eng->GetTheta(key, "Theta JB"));
    const double ba = Num(eng->GetTheta(key, "Board Medium"));
    EXPECT_NEAR(Num(eng->ThetaJA), 1.0 / (1.0 / ja + 1.0 / (jb + ba)), 0.005);

    // JEDEC without a sink reads the old column names in both formats.
    std::string theta;
    ASSERT_EQ(eng->SetBoardSelection("jedec", theta), 1);
    EXPECT_EQ(eng->BoardSelection, "JEDEC Board (2S2P)");
    EXPECT_EQ(eng->GetThetaSelectionString(), "Theta JA (200lfm)");
    EXPECT_EQ(Num(theta), ja);
    EXPECT_EQ(eng->SetBoardSelection("Huge", theta), 0);
}

TEST_F(EngineOn, ThetaRowsMatchWithWildcards) {
    Build("KZQ2-640ZE", "TG100");
    // "KZQ2-?????_TG100" holds this part; a "?" in the key matches only "?".
    EXPECT_NE(eng->GetTheta("KZQ2-640ZE_TG100", "Theta JC"), "0");
    EXPECT_EQ(eng->GetTheta("KZQ2-640ZE_TG10?", "Theta JC"), "0");
    EXPECT_EQ(eng->GetTheta("KZQ2-640ZE_TG100", "No Such Column"), "0");
    EXPECT_EQ(eng->GetTheta("KZQ2-640ZE_XX", "Theta JC"), "0");
}

TEST_F(EngineOn, HeatSinksAllowTheirAirFlows) {
    Build("KZQ2-1200HC", "TG144");
    std::vector<std::string> flows;
    std::string flow, theta;
    ASSERT_EQ(eng->SetHeatSinkSelection("low", "", flows, flow, theta), 1);
    EXPECT_EQ(eng->HeatSinkSelection, "Low Profile Heat Sink");
    EXPECT_EQ(flows, (std::vector<std::string>{"200 LFM", "500 LFM"}));
    EXPECT_EQ(flow, "200 LFM");
    const double lowSink = Num(theta);
    ASSERT_EQ(eng->SetHeatSinkSelection("No Heat Sink", "", flows, flow, theta), 1);
    EXPECT_EQ(flows.size(), 3u);
    EXPECT_GT(Num(theta), lowSink);  // a heat sink lowers theta

    // A custom sink keeps the user's air flow and marks the sink as custom.
    ASSERT_EQ(eng->SetAirFlowSelection("500 LFM", theta), 1);
    ASSERT_EQ(eng->SetHeatSinkSelection("Custom", "3.5", flows, flow, theta), 1);
    EXPECT_EQ(flows, (std::vector<std::string>{"NA"}));
    EXPECT_EQ(eng->AirFlowSelection, "500 LFM");
    EXPECT_EQ(eng->CustomHeatSink, "Yes");
    EXPECT_EQ(eng->GetThetaSelectionString(), "Med PCB_500fpm_NA");
    EXPECT_EQ(eng->SetHeatSinkSelection("Fan", "", flows, flow, theta), 0);
    EXPECT_EQ(eng->SetAirFlowSelection("Gale", theta), 0);
    EXPECT_EQ(eng->AirFlowSelection, "500 LFM");
}

TEST_F(EngineOn, UserDefinedThetaStopsRecomputation) {
    Build("KZQ2-1200HC", "TG144");
    ASSERT_TRUE(eng->SetThetaOption("UserDefined", "20.00"));
    eng->ProcessTheta();
    EXPECT_EQ(eng->ThetaDRC(), 0);
    std::string theta;
    EXPECT_EQ(eng->SetBoardSelection("Small", theta), 1);
    EXPECT_EQ(eng->BoardSelection, "Medium Board");
    EXPECT_EQ(theta, "20.00");

    // A what-if leaves everything as it was.
    ASSERT_TRUE(eng->SetThetaOption("ThermalModels", ""));
    eng->ProcessTheta();
    const std::string before = eng->ThetaJA;
    std::string whatIf;
    eng->SetBHAGetTheta("Large Board", "High Profile Heat Sink", "500 LFM", "", whatIf);
    EXPECT_NE(whatIf, before);
    EXPECT_EQ(eng->ThetaJA, before);
    EXPECT_EQ(eng->BoardSelection, "Medium Board");
}

TEST_F(EngineOn, DeviceLimitsAndResources) {
    Build("KZQ2-640ZE", "TG100");
    std::string value;
    EXPECT_EQ(eng->DeviceHas("LUT", value), 1);
    EXPECT_EQ(value, "640");
    // A count of "0" is no resource, and the value says so.
    EXPECT_EQ(eng->DeviceHas("DLL", value), 0);
    EXPECT_EQ(value, "0");
    EXPECT_EQ(eng->DeviceHas("No Such Resource", value), 0);
    EXPECT_EQ(value, "0");
    EXPECT_EQ(eng->DrcErrorCount, 0);

    // Limits of the "DRC" section; a missing key means a limit of 0.
    EXPECT_EQ(eng->LimitationDrcCheck("Logic Block", "Freq. (MHz)", 400.0), 1);
    EXPECT_EQ(eng->LimitationDrcCheck("Logic Block", "Freq. (MHz)", 400.5), 0);
    EXPECT_EQ(eng->LimitationDrcCheck("Logic Block", "Freq. (MHz)", -1.0), 0);
    EXPECT_EQ(eng->LimitationDrcCheck("Logic Block", "Nothing", 0.5), 0);
    double limit = 0;
    EXPECT_EQ(eng->GetLimitationDrc("Logic Block", "Freq. (MHz)", &limit), 1);
    EXPECT_DOUBLE_EQ(limit, 400.0);
    EXPECT_EQ(eng->GetLimitationDrc("Logic Block", "Nothing", &limit), 0);
    eng->GetPwrData()->RemoveSection(eng->GetPwrData()->GetSectionIndex("DRC"));
    EXPECT_EQ(eng->LimitationDrcCheck("Logic Block", "Nothing", 1e9), 1);
    EXPECT_EQ(eng->GetPwrStatus(), "Production");
}

TEST_F(EngineOn, AnUnsupportedPackageIsReportedByTheResourceLookUp) {
    Build("KZQ2-640ZE", "CABGA256");
    eng->DrcMessage.clear();
    eng->DrcErrorCount = 0;
    std::string value;
    EXPECT_EQ(eng->DeviceHas("LUT", value), 0);
    EXPECT_EQ(eng->DrcErrorCount, 1);
    EXPECT_EQ(eng->DrcMessage, "The device KZQ2-640ZE_CABGA256 is not supported currently..\n");
}

TEST_F(EngineOn, NewDeviceResourcesMatchExactly) {
    Build("KZQ2-640ZE", "TG100");
    PD_DATA pwd;
    ASSERT_TRUE(pwd.LoadTxtFile((DevicesDir() + "/zn2c00.pwd").c_str()));
    eng->NewDeviceData = &pwd;
    eng->NewDeviceInfo[2] = "KZQ2-1200HC";
    eng->NewDeviceInfo[3] = "TG144";
    std::string value = "unchanged";
    EXPECT_EQ(eng->NewDeviceHas("Allowed LUT", value), 1);
    EXPECT_EQ(value, "1280");
    eng->NewDeviceInfo[3] = "TG14?";
    value = "unchanged";
    EXPECT_EQ(eng->NewDeviceHas("Allowed LUT", value), 0);
    EXPECT_EQ(value, "unchanged");
    EXPECT_EQ(eng->NewDeviceHas("No Such Column", value), 0);
    EXPECT_EQ(value, "0");
    eng->NewDeviceData = nullptr;
}

TEST_F(EngineOn, IoCountCellsFollowTheTypeLists) {
    Build("KZQ2-1200HC", "CABGA256");
    PD_TABLE t("Input Output");
    t.SetTableHeader("Type, # I/P, # O/P, # Bidi");
    t.AddTableData("LVCMOS33, 1, 1, 0");
    t.AddTableData("NoSuchType, 1, 1, 0");
    EXPECT_EQ(eng->DoesCellBecomeUneditable("Input Output", &t, 0, 1), 0);
    EXPECT_EQ(eng->DoesCellBecomeUneditable("Input Output", &t, 1, 1), 1);
    EXPECT_EQ(eng->DoesCellBecomeUneditable("Input Output", &t, 1, 0), 0);
    EXPECT_EQ(eng->DoesCellBecomeUneditable("Logic", &t, 1, 1), 0);
}

class SavedProject : public EngineOn {
  protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("pwc_save_" + std::to_string(getpid()));
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    fs::path dir;
};

std::vector<std::vector<std::string>> Cells(PD_TABLE* t) {
    std::vector<std::vector<std::string>> cells;
    for (int r = 0; r < t->GetNumOfRows(); ++r) {
        cells.emplace_back();
        for (int c = 0; c < t->GetNumOfColumns(); ++c) cells.back().push_back(t->GetValueAt(r, c));
    }
    return cells;
}

TEST_F(SavedProject, ReloadRestoresTheTablesAndSettings) {
    // The engine takes over the project it saves: hand it one it may delete.
    PD_DATA* first = new PD_DATA;
    ASSERT_TRUE(
        first->LoadTxtFile((std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf").c_str()));
    Build("KZQ2-1200HC", "CABGA256", first);
    PD_TABLE* logic = eng->GetPanel(eng->GetPanelIndex("Logic Block"))->GetTable(0);
    logic->SetValueAt("77", 0, logic->GetColumnIndex("Freq. (MHz)"));
    eng->SetSupply("Vccaux", "3.2");
    eng->SetAmbientTemperature("40");
    eng->SetEstimationMode("High");
    eng->Calculate();
    const std::string path = (dir / "saved.pcf").string();
    PD_DATA* saved = eng->SaveAs(path.c_str(), 1);
    ASSERT_EQ(saved, eng->GetProject());

    auto* proj = dynamic_cast<PD_KEYSECT*>(saved->GetSection("Project"));
    ASSERT_NE(proj, nullptr);
    EXPECT_STREQ(proj->GetValue("Performance"), "-2");
    EXPECT_EQ(proj->GetKeyIndex("Speed"), -1);
    auto* thermal = dynamic_cast<PD_KEYSECT*>(saved->GetSection("Thermal"));
    ASSERT_NE(thermal, nullptr);
    EXPECT_STREQ(thermal->GetValue("UserThetaSA"), "No");
    EXPECT_STREQ(thermal->GetValue("CustomThetaSA"), "-1");
    EXPECT_EQ(thermal->GetKey(0), std::string("Airflow"));
    for (const char* skipped :
         {"Peak Startup", "Current", "Power", "Block", "PGVDPM", "Total Logic Block"})
        EXPECT_EQ(saved->GetSection(skipped), nullptr) << skipped;
    EXPECT_NE(saved->GetSection("VDPM"), nullptr);

    PD_DATA reread;
    ASSERT_TRUE(reread.LoadTxtFile(path.c_str()));
    DeviceStrings d2 = dev;
    auto again = MakeEngine(d2, &reread);
    ASSERT_EQ(again->GetNumOfPanels(), eng->GetNumOfPanels());
    for (int p = 0; p < eng->GetNumOfPanels(); ++p) {
        PC_PANEL* a = eng->GetPanel(p);
        PC_PANEL* b = again->GetPanel(p);
        ASSERT_STREQ(a->GetName(), b->GetName());
        ASSERT_EQ(a->GetNumOfTables(), b->GetNumOfTables());
        for (int t = 0; t < a->GetNumOfTables(); ++t)
            EXPECT_EQ(Cells(a->GetTable(t)), Cells(b->GetTable(t)))
                << a->GetName() << " / " << a->GetTable(t)->name;
    }
    EXPECT_EQ(again->AmbientTemperature, "40");
    EXPECT_EQ(again->GetEstimationMode(), "High");
    EXPECT_DOUBLE_EQ(again->GetSupply("Vccaux"), 3.2);
    EXPECT_EQ(again->JunctionTemperature, eng->JunctionTemperature);
}

TEST_F(SavedProject, TemporaryProjectDiffersInTwoKeysAndLeavesTheEngineAlone) {
    Build("KZQ2-1200HC", "CABGA256");
    PD_DATA* before = eng->GetProject();
    std::unique_ptr<PD_DATA> temp(eng->SaveAsTempPCF());
    EXPECT_EQ(eng->GetProject(), before);
    auto* settings = dynamic_cast<PD_KEYSECT*>(temp->GetSection("Settings"));
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->GetKeyIndex("FreqUpperLimit"), -1);
    EXPECT_STREQ(settings->GetValue("FreqLowerUpper"), "100.0000");
    EXPECT_EQ(settings->GetKeyIndex("TempAmbX"), -1);
    // The standby controls of this family are written, each true or false.
    EXPECT_STREQ(settings->GetValue("DisablePLL0"), "false");
    EXPECT_EQ(settings->GetKeyIndex("DisablePLLBL0"), -1);
    EXPECT_STREQ(settings->GetValue("EnablePg7"), "false");
}

}  // namespace
