// Constraints files: the kind by name, the pad report's table, the preference
// statements, and the bank voltages they fix on the demo design.
#include <cstdlib>
#include <fstream>

#include "engine_fixture.h"
#include "pr_prefcntl.h"

namespace {

using namespace pwctest;

const std::string kDemo = std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf";

void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

std::string BankVoltage(PC_ENG& eng, const std::string& bank) {
    PD_TABLE* t = eng.GetIoTable("Bank Voltage");
    const int row = eng.BankRowOf(bank);
    return t && row >= 0 ? t->GetValueAt(row, t->GetColumnIndex("Voltage")) : "";
}

class Constraints : public ::testing::Test {
  protected:
    void SetUp() override {
        project = LoadProject(kDemo);
        eng = MakeEngine(device, project.get());
    }
    // An engine on the demo design built with a constraints file.
    std::unique_ptr<PC_ENG> EngineWith(const std::string& constraints) {
        constrainedProject = LoadProject(kDemo);
        return std::make_unique<PC_ENG>(device.Array(), constrainedProject.get(), "Calculation",
                                        false, "", "", "", "", "", "", nullptr, nullptr, nullptr,
                                        "", false, constraints, "");
    }
    DeviceStrings device;
    std::unique_ptr<PD_DATA> project, constrainedProject;
    std::unique_ptr<PC_ENG> eng;
    ScratchDir dir{"constraints"};
};

// ---- The kind of a file -------------------------------------------------------

struct KindCase {
    const char* name;
    int result;
    bool cleared;
};

class ConstraintKind : public Constraints, public ::testing::WithParamInterface<KindCase> {};

TEST_P(ConstraintKind, IsFoundByNameInOrder) {
    const KindCase& c = GetParam();
    eng->bankVoltageConstraints = {{"7", "3.3"}};
    // None of these files exists: the ".prf" route reads nothing.
    EXPECT_EQ(eng->GetUserConstraints(dir.File(c.name)), c.result);
    EXPECT_EQ(eng->bankVoltageConstraints.empty(), c.cleared);
}

INSTANTIATE_TEST_SUITE_P(Names, ConstraintKind,
                         ::testing::Values(KindCase{"design.prf.lpf", 1, true},
                                           KindCase{"design.prf", 1, true},
                                           KindCase{"design.pcf", 0, false},
                                           KindCase{"design.txt", 0, false}));

// ---- Pad reports -------------------------------------------------------------

TEST_F(Constraints, PadRowsGiveBankAndVoltageUntilTheThirdRuler) {
    const std::string path = dir.File("design.pad");
    WriteFile(path,
              "| 9 | 3.3 |\r\n"  // before the heading: not read
              "Vccio by Bank:\r\n"
              "+------+-------+\r\n"
              "| Bank | Vccio |\r\n"
              "+------+-------+\r\n"
              "| 2 | 1.8 |\r\n"
              "| 3 | 2.5V |\r\n"
              "| x |  |\r\n"
              "+------+-------+\r\n"
              "| 4 | 1.5 |\r\n");
    eng->bankVoltageConstraints = {{"7", "3.3"}};
    EXPECT_EQ(eng->GetUserConstraints(path), 1);
    const std::map<std::string, std::string> expected = {{"2", "1.8"}, {"3", "2.5"}};
    EXPECT_EQ(eng->bankVoltageConstraints, expected);
}

TEST_F(Constraints, PadWithoutTheHeadingFixesNothing) {
    const std::string path = dir.File("design.pad");
    WriteFile(path, "+------+-------+\n| Bank | Vccio |\n+------+-------+\n| 2 | 1.8 |\n");
    eng->bankVoltageConstraints = {{"7", "3.3"}};
    EXPECT_EQ(eng->GetUserConstraints(path), 1);
    EXPECT_TRUE(eng->bankVoltageConstraints.empty());
}

TEST_F(Constraints, UnreadablePadEndsTheProcessWithCodeTwo) {
    EXPECT_EXIT(eng->GetUserConstraints(dir.File("missing.pad")), ::testing::ExitedWithCode(2), "");
}

// ---- Preference files --------------------------------------------------------

TEST(PreferenceReader, YieldsSysconfigPairsAndBanksAndSkipsTheRest) {
    PR_PREFCNTL control;
    control.Parse(
        "# comment; with a semicolon\n"
        "sysconfig mcclk_freq = 2.08\n  CONFIG_MODE=SPI;\n"
        "BANK 2 VCCIO 1.8 V; // the LCD bus\n"
        "BANK 3 VCCIO 2.5V;\n"
        "BANK x VCCIO 1.8 V;\n"
        "LOCATE COMP \"a\" SITE \"B4\";\n"
        "BANK 4 VCCIO 3.3");
    const std::vector<PR_PREFOBJ>& objs = control.Objects();
    ASSERT_EQ(objs.size(), 5u);
    EXPECT_EQ(objs[0].type, PR_PREFOBJ::kSysConfig);
    EXPECT_TRUE(objs[0].valid);
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(objs[0].pairs, (Pairs{{"MCCLK_FREQ", "2.08"}, {"CONFIG_MODE", "SPI"}}));
    EXPECT_EQ(objs[0].line, 2);
    EXPECT_TRUE(objs[1].valid);
    EXPECT_EQ(objs[1].bank, 2);
    EXPECT_DOUBLE_EQ(objs[1].voltage, 1.8);
    EXPECT_TRUE(objs[2].valid);
    EXPECT_DOUBLE_EQ(objs[2].voltage, 2.5);
    EXPECT_FALSE(objs[3].valid);
    EXPECT_EQ(objs[4].type, PR_PREFOBJ::kOther);
    EXPECT_FALSE(objs[4].valid);
    // The bad bank, the unused statement, the unfinished last one.
    EXPECT_EQ(control.Advice().size(), 3u);
}

TEST(PreferenceReader, AFileForAnotherDeviceHasNoValidPreference) {
    PR_PREFCNTL control;
    control.Parse("DEVICE KZQ2-640HC; BANK 2 VCCIO 1.8 V;");
    control.init_pm_specifics("zn2c00", "KZQ2-1200HC");
    ASSERT_EQ(control.Objects().size(), 1u);
    EXPECT_FALSE(control.Objects()[0].valid);
    PR_PREFCNTL same;
    same.Parse("DEVICE KZQ2-1200HC; BANK 2 VCCIO 1.8 V;");
    same.init_pm_specifics("zn2c00", "KZQ2-1200HC");
    EXPECT_TRUE(same.Objects()[0].valid);
}

TEST(PreferenceReader, DumpsAdviceWhenTheVariableExistsWhateverItsValue) {
    const char* saved = std::getenv("TW_DUMP_ADVICE");
    const std::string keep = saved ? saved : "";
    unsetenv("TW_DUMP_ADVICE");
    EXPECT_FALSE(PR_PREFCNTL().DumpAdvice());
    setenv("TW_DUMP_ADVICE", "", 1);
    EXPECT_TRUE(PR_PREFCNTL().DumpAdvice());
    if (saved)
        setenv("TW_DUMP_ADVICE", keep.c_str(), 1);
    else
        unsetenv("TW_DUMP_ADVICE");
}

TEST_F(Constraints, PreferenceFileWritesTheEnginesTexts) {
    const std::string path = dir.File("design.lpf");
    WriteFile(path, "SYSCONFIG MCCLK_FREQ=10.23;\nBANK 02 VCCIO 1.80 V;\nBANK 3 VCCIO 2.5;\n");
    eng->bankVoltageConstraints = {{"7", "3.3"}};
    EXPECT_EQ(eng->GetUserConstraints(path), 1);
    EXPECT_EQ(eng->ConfigClockFrequency, "10.2300");
    const std::map<std::string, std::string> expected = {{"2", "1.8"}, {"3", "2.5"}};
    EXPECT_EQ(eng->bankVoltageConstraints, expected);
}

// ---- What the engine does with them -----------------------------------------

class SampleConstraints : public Constraints, public ::testing::WithParamInterface<const char*> {};

TEST_P(SampleConstraints, FixEveryBankWithoutComplaint) {
    const std::string path = std::string(PWC_TEST_DATA_DIR) + "/projects/" + GetParam();
    std::unique_ptr<PC_ENG> fixed = EngineWith(path);
    EXPECT_EQ(fixed->DrcMessage, "");
    const std::map<std::string, std::string> expected = {
        {"0", "3.3"}, {"1", "3.3"}, {"2", "1.8"}, {"3", "2.5"}};
    EXPECT_EQ(fixed->bankVoltageConstraints, expected);
    for (const auto& [bank, volts] : expected)
        EXPECT_EQ(BankVoltage(*fixed, bank), "Vccio " + volts) << bank;
}

INSTANTIATE_TEST_SUITE_P(Files, SampleConstraints, ::testing::Values("demo.lpf", "demo.pad"));

TEST_F(Constraints, AFixedVoltageWinsOverWhatTheBanksRowsWant) {
    const std::string path = dir.File("lcd.lpf");
    WriteFile(path, "BANK 2 VCCIO 3.3 V;\n");
    EXPECT_EQ(BankVoltage(*eng, "2"), "Vccio 1.8");
    std::unique_ptr<PC_ENG> fixed = EngineWith(path);
    EXPECT_EQ(BankVoltage(*fixed, "2"), "Vccio 3.3");
    // The bank's LVCMOS18 rows then conflict with it.
    EXPECT_EQ(fixed->Calculate(), 0);
}

TEST_F(Constraints, AMissingBankAndAVoltageTheBankCantTakeAreReported) {
    const std::string path = dir.File("bad.lpf");
    WriteFile(path, "BANK 9 VCCIO 3.3 V;\nBANK 3 VCCIO 1.35 V;\n");
    std::unique_ptr<PC_ENG> fixed = EngineWith(path);
    EXPECT_NE(fixed->DrcMessage.find("Invalid bank id 9 in constraints file.\n"), std::string::npos)
        << fixed->DrcMessage;
    EXPECT_NE(fixed->DrcMessage.find("The bank VCCIO voltage setting for bank 3 is wrong.\n"),
              std::string::npos)
        << fixed->DrcMessage;
}

}  // namespace
