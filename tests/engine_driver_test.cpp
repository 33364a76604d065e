// The host's operations: device change, defaults, frequencies, modes and the
// supply table.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "engine_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

class EngineTest : public ::testing::Test {
  protected:
    void SetUp() override {
        project = DefaultProject();
        eng = MakeEngine(dev, project.get());
    }
    PD_TABLE* Table(const char* panel, const char* table) {
        PC_PANEL* p = eng->GetPanel(eng->GetPanelIndex(panel));
        return p ? p->GetTable(p->GetTableIndex(table)) : nullptr;
    }
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(EngineTest, ChangeDeviceRecalculatesOnlyWhatDiffers) {
    DeviceStrings same = dev;
    const int before = eng->GetIterationCount();
    EXPECT_EQ(eng->ChangeDevice(same.Array()), 1);
    EXPECT_EQ(eng->GetIterationCount(), before);

    DeviceStrings otherArch = dev;
    otherArch.arch = "zn3c00a";
    EXPECT_EQ(eng->ChangeDevice(otherArch.Array()), 0);

    // Another package recalculates, and the engine keeps its own package.
    DeviceStrings otherPackage = dev;
    otherPackage.package = "SG48";
    EXPECT_EQ(eng->ChangeDevice(otherPackage.Array()), eng->Calculate());
    EXPECT_STREQ(eng->PackageName(), dev.package.c_str());
}

TEST_F(EngineTest, DefaultFrequencyRewritesOnlyMarkedCells) {
    PD_TABLE* logic = Table("Logic Block", "Logic");
    ASSERT_NE(logic, nullptr);
    int freq = logic->GetColumnIndex("Freq. (MHz)");
    ASSERT_GE(freq, 0);
    logic->AddRow(std::vector<std::string>(logic->GetNumOfColumns(), "0"));
    logic->AddRow(std::vector<std::string>(logic->GetNumOfColumns(), "0"));
    int r = logic->GetNumOfRows() - 2;
    logic->SetValueAt("0^d^", r, freq);
    logic->SetValueAt("100", r + 1, freq);
    eng->SetDefaultFreq(25.0);
    EXPECT_STREQ(logic->GetValueAt(r, freq), "25.0000^d^");
    EXPECT_STREQ(logic->GetValueAt(r + 1, freq), "100");
    EXPECT_DOUBLE_EQ(eng->GetDefaultFreq(), 25.0);

    int af = logic->GetColumnIndex("AF (%)");
    ASSERT_GE(af, 0);
    logic->SetValueAt("10^d^", r, af);
    eng->SetDefaultAF(12.5);
    EXPECT_STREQ(logic->GetValueAt(r, af), "12.5000^d^");
    EXPECT_STREQ(logic->GetValueAt(r, freq), "25.0000^d^");
}

TEST_F(EngineTest, SetFrequencyFollowsTheClockNamesAndThePllPairing) {
    PD_TABLE* logic = Table("Logic Block", "Logic");
    ASSERT_NE(logic, nullptr);
    std::vector<std::string> cells(logic->GetNumOfColumns(), "");
    cells[logic->GetColumnIndex("Clock Name")] = "clk_a";
    cells[logic->GetColumnIndex("Freq. (MHz)")] = "10";
    logic->AddRow(cells);
    cells[logic->GetColumnIndex("Clock Name")] = "clk_b";
    logic->AddRow(cells);
    const int n = logic->GetNumOfRows();
    const int fc = logic->GetColumnIndex("Freq. (MHz)");
    eng->SetFrequency(eng->GetPanel(eng->GetPanelIndex("Logic Block")), "clk_a", "75");
    EXPECT_STREQ(logic->GetValueAt(n - 2, fc), "75");
    EXPECT_STREQ(logic->GetValueAt(n - 1, fc), "10");

    // In a table named "PLL" the input frequency follows the output clock's
    // name; elsewhere it follows the input clock's name.
    for (const char* tableName : {"PLL", "Clock Mux"}) {
        PC_PANEL panel("Any");
        PD_TABLE* t = new PD_TABLE(tableName);
        t->SetTableHeader("Clock Input Name, Output Clock Name, Input Freq. (MHz)");
        t->AddTableData("osc, sys, 12");
        panel.AddTable(t);
        panel.AddTable(new PD_TABLE("Total"));
        eng->SetFrequency(&panel, "osc", "24");
        eng->SetFrequency(&panel, "sys", "48");
        EXPECT_STREQ(t->GetValueAt(0, 2), std::string(tableName) == "PLL" ? "48" : "24");
    }

    // A panel of one table is left alone.
    PC_PANEL single("Single");
    PD_TABLE* t = new PD_TABLE("Single");
    t->SetTableHeader("Clock Name, Freq. (MHz)");
    t->AddTableData("clk_a, 1");
    single.AddTable(t);
    eng->SetFrequency(&single, "clk_a", "99");
    EXPECT_STREQ(t->GetValueAt(0, 1), "1");
}

TEST_F(EngineTest, PanelLookUpsOutOfRange) {
    EXPECT_EQ(eng->GetPanel(-1), nullptr);
    EXPECT_STREQ(eng->GetPanelName(-1), "");
    EXPECT_EQ(eng->GetPanel(eng->GetNumOfPanels()), nullptr);
    EXPECT_EQ(eng->GetPanelIndex("No Such Tab"), -1);
    EXPECT_EQ(eng->GetTotalPower(),
              eng->GetBlockTable()->GetValueAt(eng->GetBlockTable()->GetNumOfRows() - 1, 1));
}

TEST_F(EngineTest, PowerModeTakesEffectAtTheNextPass) {
    EXPECT_EQ(eng->GetPowerModeType(), "Normal");
    eng->SetPowerModeType("Sleep");
    EXPECT_EQ(eng->GetPowerModeFlag(), 0);
    eng->Calculator();
    EXPECT_EQ(eng->GetPowerModeFlag(), 1);
    // An unknown mode keeps the flag of the previous pass.
    eng->SetPowerModeType("Standby");
    eng->Calculator();
    EXPECT_EQ(eng->GetPowerModeFlag(), 1);
    eng->SetPowerModeType("Normal");
    eng->Calculator();
    EXPECT_EQ(eng->GetPowerModeFlag(), 0);
}

TEST_F(EngineTest, ModeSettersAcceptOnlyTheirWords) {
    EXPECT_TRUE(eng->SetEstimationMode("LOW"));
    EXPECT_EQ(eng->GetEstimationMode(), "LOW");
    EXPECT_FALSE(eng->SetEstimationMode("Extreme"));
    EXPECT_EQ(eng->GetEstimationMode(), "LOW");

    EXPECT_FALSE(eng->SetThetaOption("Guess", "12"));
    EXPECT_TRUE(eng->SetThetaOption("UserDefined", "12.5"));
    EXPECT_EQ(eng->ThetaJA, "12.5");
    // Case-blind acceptance, but only the exact spelling stores the value.
    EXPECT_TRUE(eng->SetThetaOption("userdefined", "99"));
    EXPECT_EQ(eng->ThetaJA, "12.5");
    EXPECT_EQ(eng->ThetaOption, "userdefined");

    eng->SetASCcalculator("on");
    EXPECT_TRUE(eng->GetASCcalculator());
    eng->SetASCcalculator("");
    EXPECT_EQ(eng->GetASCcalculator(),
              project->GetSection("ASC") != nullptr && project->GetSection("ASC CURRENT"));
}

TEST_F(EngineTest, SupplyNamesTranslateBothWays) {
    struct {
        const char* pcf;
        const char* pwr;
    } const toPwr[] = {{"Vccio 3.3", "VCCIO_33"}, {"Vcc c", "VCC_C"},        {"Vcc1.2", "VCC12"},
                       {"Vccaux", "VCCAUX"},      {"Vcc_dphy1", "VCC_DPHY"}, {"Vcc", "VCC"}};
    for (const auto& c : toPwr) {
        std::string out;
        eng->TranslateSupplyPCFtoPWR(c.pcf, out);
        EXPECT_EQ(out, c.pwr) << c.pcf;
    }
    struct {
        const char* pwr;
        const char* pcf;
    } const toPcf[] = {{"VCCIO_33", "Vccio 3.3"}, {"VCCIO_135", "Vccio 1.35"},
                       {"VCC12", "Vcc1.2"},       {"VCCAUX", "Vccaux"},
                       {"VCC_C", "Vcc"},          {"VCCPLL_E", "Vccpll"},
                       {"VPP2V5", "Vpp2v5"},      {"VCCA_DPHY", "Vcca_dphy"}};
    for (const auto& c : toPcf) {
        std::string out;
        eng->TranslateSupplyPWRtoPCF(c.pwr, out);
        EXPECT_EQ(out, c.pcf) << c.pwr;
    }
}

TEST_F(EngineTest, SupplyLookUpsAndSetters) {
    EXPECT_TRUE(eng->HasSupply("vccaux"));
    EXPECT_TRUE(eng->HasSupply("VCCIO 3.3"));
    EXPECT_FALSE(eng->HasSupply("Vcchtx"));
    EXPECT_DOUBLE_EQ(eng->GetSupply("Vcchtx"), 0.0);

    // The setter needs the exact name.
    eng->SetSupply("vccaux", "2.5");
    EXPECT_NE(eng->GetSupply("Vccaux"), 2.5);
    eng->SetSupply("Vccaux", "2.5");
    EXPECT_DOUBLE_EQ(eng->GetSupply("Vccaux"), 2.5);
    eng->SetMult("Vccaux", "1.10");
    EXPECT_DOUBLE_EQ(eng->GetMult("Vccaux"), 1.10);
    EXPECT_EQ(eng->GetVDPM("VCCAUX", "DPM"), "1.10");

    // On a device with the power-gated supply, Vccpg follows Vcc.
    ASSERT_TRUE(eng->HasVccpg());
    eng->SetSupply("Vcc", "1.23");
    EXPECT_STREQ(eng->GetPGSupplyTable()->GetValueAt("Vccpg", "Voltage"), "1.23");
    eng->updataVDPM(1.1875, "vcc");
    EXPECT_STREQ(eng->GetSupplyTable()->GetValueAt("Vcc", "Voltage"), "1.188");
}

TEST_F(EngineTest, SupplyListAndLimits) {
    std::unique_ptr<char[]> list(eng->ListOfSupplies());
    std::string text = list.get();
    EXPECT_EQ(text.find("Vcc,"), 0u);
    EXPECT_EQ(text.find("Vcc,", 1), std::string::npos);
    EXPECT_EQ(text.back(), ',');
    // A row for another device pattern is no supply of this device.
    auto* supplies = dynamic_cast<PD_TBLSECT*>(eng->GetPwrData()->GetSection("SUPPLIES"));
    ASSERT_NE(supplies, nullptr);
    std::vector<std::string> row(supplies->GetNumOfColumns(), "1.0");
    row[supplies->GetColumnIndex("SupplyName")] = "VCCJ@KZQ9-????";
    supplies->AddRow(row);
    row[supplies->GetColumnIndex("SupplyName")] = "VCCP@KZQ2-1200?C";
    supplies->AddRow(row);
    std::unique_ptr<char[]> again(eng->ListOfSupplies());
    EXPECT_EQ(std::string(again.get()), text + "Vccp,");

    const std::string min = eng->GetSuupliesValueFromPwr("VCC", "Min");
    const std::string max = eng->GetSuupliesValueFromPwr("VCC", "Max");
    ASSERT_FALSE(min.empty());
    EXPECT_TRUE(eng->IsSupplyValid("Vcc", min.c_str()));
    EXPECT_TRUE(eng->IsSupplyValid("Vcc", max.c_str()));
    char above[32];
    std::snprintf(above, sizeof above, "%.3f", std::strtod(max.c_str(), nullptr) + 0.01);
    EXPECT_FALSE(eng->IsSupplyValid("Vcc", above));
    EXPECT_FALSE(eng->IsSupplyValid("Vcchtx", "1.2"));
    EXPECT_TRUE(eng->IsMultValid("Vccio 3.3"));
    EXPECT_FALSE(eng->IsMultValid("Vcchtx"));
}

TEST_F(EngineTest, ConstantsStartEmptyAndResetToZero) {
    ASSERT_NE(eng->KValue("Kvcc"), nullptr);
    EXPECT_EQ(eng->KValue("Kvccfoo"), nullptr);
    EXPECT_EQ(eng->GetKsupply("NOSUCH"), "");
    *eng->KValue("Kvcc") = "1.5";
    EXPECT_EQ(eng->GetKsupply("VCC"), "1.5");
    eng->SetSupply("Vcc", "1.2");
    EXPECT_EQ(eng->GetKsupply("VCC"), "0");
    // A process change works the scale factors out again too.
    *eng->KValue("Kvcc") = "1.5";
    eng->SetWorstType();
    EXPECT_EQ(eng->GetKsupply("VCC"), "0");
}

TEST_F(EngineTest, RegulatorReplacesTheCoreSupplyForPartsEndingInC) {
    std::vector<std::string> names{"VCC", "VCCPLL", "archName", "Device"};
    std::vector<std::string> values{"1.26", "1.2", "zn2c00", "KZQ2-1200HC"};
    const double regulated = eng->FindCorrectSupply("VCC", names, values);
    EXPECT_NE(regulated, 1.26);
    values[3] = "KZQ2-640ZE";
    EXPECT_DOUBLE_EQ(eng->FindCorrectSupply("VCC", names, values), 1.26);
    EXPECT_DOUBLE_EQ(eng->FindCorrectSupply("VCCAUX", names, values), 0.0);
}

TEST_F(EngineTest, RowNamesCarryWhatTheModelsRead) {
    PD_TABLE* logic = Table("Logic Block", "Logic");
    ASSERT_NE(logic, nullptr);
    logic->AddRow(std::vector<std::string>(logic->GetNumOfColumns(), "7"));
    int n = 0, m = 0;
    std::vector<std::string> names = eng->GetArrayOfColumnNames(logic, &n);
    std::vector<std::string> values =
        eng->GetArrayOfColumnValues(logic, logic->GetNumOfRows() - 1, &m);
    ASSERT_EQ(n, m);
    ASSERT_EQ(names.size(), values.size());
    auto value = [&](const char* name) {
        auto it = std::find(names.begin(), names.end(), name);
        return it == names.end() ? std::string("<none>") : values[it - names.begin()];
    };
    EXPECT_EQ(value("LUT"), "7");
    EXPECT_EQ(value("REG"), "7");
    EXPECT_EQ(value("VCC"), eng->GetVDPM("Vcc", "Voltage"));
    EXPECT_EQ(value("VCCIO_33"), eng->GetVDPM("Vccio 3.3", "Voltage"));
    EXPECT_EQ(value("DPM"), "1.00");
    EXPECT_EQ(value("TJ"), eng->AmbientTemperature);
    EXPECT_EQ(value("Device"), dev.device);
    EXPECT_EQ(value("Package"), dev.package);
    EXPECT_EQ(value("Speed"), dev.speed);
    EXPECT_EQ(value("Operating"), dev.operating);
    EXPECT_EQ(value("Process"), "Typical");
    EXPECT_EQ(value("archName"), "zn2c00");
    // No power column reaches a formula.
    for (const std::string& name : names) EXPECT_EQ(name.find("Pwr (W)"), std::string::npos);
}

TEST_F(EngineTest, ProcessTypesOfTheDevice) {
    EXPECT_STREQ(eng->GetProcessType(), "Typical");
    EXPECT_TRUE(eng->IsWorstTypeAvailable());
    EXPECT_FALSE(eng->IsProcessTypeAvailable("Fast"));
    eng->SetWorstType();
    EXPECT_STREQ(eng->GetProcessType(), "Worst");
    eng->SetProcessType("AVeryLongProcessNameIndeed");
    EXPECT_EQ(std::strlen(eng->GetProcessType()), 15u);
    EXPECT_FALSE(eng->GetRevision().empty());
}

}  // namespace
