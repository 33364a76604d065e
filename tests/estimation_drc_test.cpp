// The device-change checks against the sample devices and against small
// made-up candidates, and the estimation of SERDES, DSP and hard-block rows,
// on a copy of the sample family that also has those tabs.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "engine_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

std::string Text(PD_TABLE* t, int row, const char* column) {
    return t->GetValueAt(row, t->GetColumnIndex(column));
}

// The seven strings of a candidate.
struct Candidate {
    std::string s[7];
    char* p[7];
    Candidate(const std::string& arch, const std::string& device, const std::string& package)
        : s{arch, "Quenra2", device, package, "-2", "Commercial", device + "-2" + package} {
        for (int i = 0; i < 7; ++i) p[i] = &s[i][0];
    }
};

// ---- Against the sample devices ------------------------------------------------

struct DevicePackage {
    const char* device;
    const char* package;
};
const DevicePackage kSampleDevices[] = {
    {"KZQ2-256HC", "SG48"},       {"KZQ2-256HC", "TG100"},     {"KZQ2-640ZE", "SG48"},
    {"KZQ2-640ZE", "TG100"},      {"KZQ2-640ZE", "TG144"},     {"KZQ2-1200HC", "TG100"},
    {"KZQ2-1200HC", "TG144"},     {"KZQ2-1200HC", "CABGA256"}, {"KZQ2-1200UHC", "TG144"},
    {"KZQ2-1200UHC", "CABGA256"},
};

class NothingUsed : public ::testing::TestWithParam<DevicePackage> {};

TEST_P(NothingUsed, PassesAgainstEveryDevice) {
    DeviceStrings dev;
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    Candidate c("zn2c00", GetParam().device, GetParam().package);
    EXPECT_EQ(eng->ResourcesDrcCheck(c.p), 1);
    EXPECT_EQ(eng->DrcMessage, "");
    EXPECT_EQ(eng->DrcErrorCount, 0);
    EXPECT_EQ(eng->NewDeviceData, nullptr);
    EXPECT_EQ(eng->NewDeviceInfo[4], "2");  // the speed behind its "-"
}

INSTANTIATE_TEST_SUITE_P(Samples, NothingUsed, ::testing::ValuesIn(kSampleDevices),
                         [](const auto& info) {
                             std::string name =
                                 std::string(info.param.device) + "_" + info.param.package;
                             for (char& ch : name)
                                 if (ch == '-') ch = '_';
                             return name;
                         });

TEST(DeviceChange, DemoFitsTheBigPartButNotTheSmallest) {
    DeviceStrings dev;
    auto project = LoadProject(std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
    auto eng = MakeEngine(dev, project.get());
    Candidate same("zn2c00", "KZQ2-1200HC", "CABGA256");
    EXPECT_EQ(eng->ResourcesDrcCheck(same.p), 1) << eng->DrcMessage;

    // The demo: 965 LUTs, 40 distributed RAM, 793 registers, EBR and a PLL;
    // KZQ2-256HC SG48 allows 256, 32, 256 and has no EBR nor PLL. The
    // ripple rule reads "# Ripple Slice", which the table doesn't have.
    Candidate small("zn2c00", "KZQ2-256HC", "SG48");
    EXPECT_EQ(eng->ResourcesDrcCheck(small.p), 0);
    const std::string expected =
        "The number of used LUT exceed new device allowed.\n"
        "The number of used RAM exceed new device allowed.\n"
        "The number of used Slices exceed new device allowed.\n";
    EXPECT_EQ(eng->DrcMessage.substr(0, expected.size()), expected);
    EXPECT_NE(eng->DrcMessage.find("The number of used EBR exceed new device allowed.\n"),
              std::string::npos);
    EXPECT_NE(eng->DrcMessage.find("The new device has no PLL.\n"), std::string::npos);
}

TEST(DeviceChange, MissingFilesAbortWithTheirMessage) {
    DeviceStrings dev;
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    Candidate none("nosuch", "X", "Y");
    EXPECT_EQ(eng->ResourcesDrcCheck(none.p), 0);
    EXPECT_EQ(eng->DrcMessage, "Read PWD fail! ");
    // The candidate's data stay until the next check.
    EXPECT_NE(eng->NewDeviceData, nullptr);
    Candidate ok("zn2c00", "KZQ2-640ZE", "TG100");
    EXPECT_EQ(eng->ResourcesDrcCheck(ok.p), 1);
    EXPECT_EQ(eng->NewDeviceData, nullptr);
}

// ---- A family with SERDES, hard-block and DSP tabs ------------------------------

const char* const kExtraTemplates = R"(
[KEYSECT "Tab SERDES"]
_TABLE = PCS

[KEYSECT "Tab FABA"]
_TABLE = FABA, FABA Ctl

[KEYSECT "Tab DSP"]
_TABLE = M9X9, M18X18, ALU54

[TBLSECT "PCS"]
Tag, Quad_Channel, Mode, "# PCS", Tx Mode, Rx Mode, "# X0", "# X1", "# X2", "# X6", "# ISB", Dyn. Pwr (W)
_KEY, Quad, Mode, PCS, Tx, Rx, X0, X1, X2, X6, ISB, DynPwr
_DEFAULT, 0, Full, 0, OFF, OFF, 0, 0, 0, 0, 0, 0

[TBLSECT "FABA"]
Tag, FABA Id., FABA, "# FABA", "# X0", "# ISB", Dyn. Pwr (W)
_KEY, Id, FABA, NFABA, X0, ISB, DynPwr
_DEFAULT, F0, 0, 0, 0, 0, 0

[TBLSECT "FABA Ctl"]
Tag, FABA Id., Dyn. Pwr (W)
_KEY, Id, DynPwr
_DEFAULT, F0, 0

[TBLSECT "M9X9"]
Tag, "# M9X9", "# DSP", "# X0", "# ISB", Dyn. Pwr (W)
_KEY, M9X9, DSP, X0, ISB, DynPwr
_DEFAULT, 0, 0, 0, 0, 0

[TBLSECT "M18X18"]
Tag, "# M18X18", "# DSP", "# X0", "# ISB", Dyn. Pwr (W)
_KEY, M18X18, DSP, X0, ISB, DynPwr
_DEFAULT, 0, 0, 0, 0, 0

[TBLSECT "ALU54"]
Tag, "# ALU54", "# DSP", "# X0", "# ISB", Dyn. Pwr (W)
_KEY, ALU54, DSP, X0, ISB, DynPwr
_DEFAULT, 0, 0, 0, 0, 0
)";

const char* const kExtraRates = R"(
[TBLSECT "PCS"]
Resource, low, Medium, High
X0, 100, 120, 150
ISB, 40, 50, 60

[TBLSECT "DSP"]
Resource, low, Medium, High
X0, 30, 36, 45
ISB, 10, 12, 15

[TBLSECT "FABA"]
Resource, low, Medium, High
X0, 200, 250, 300
)";

// Candidates: a part with nothing, a roomy one of another stem.
const char* const kTinyPwd = R"(#PWC-DATA 1
[TBLSECT "Format"]
Device_Package, Allowed LUT, Allowed RAM, Allowed RIPPLE, Allowed REG, PIO Pins Max, Allowed EBR, Allowed PLL, PCS, FABA, Allowed M9X9, Allowed M18X18, Allowed ALU54, Quad_Channel, FABA Id.
TINY-1_QN8, 0, 0, 0, 0, 0, 0, 0, "", "", "", "", "", "", ""
)";
const char* const kTinyPgt = R"(#PWC-DATA 1
[TBLSECT "PCS"]
Tag, Gearing Ratio
)";
const char* const kRoomyPwd = R"(#PWC-DATA 1
[TBLSECT "Format"]
Device_Package, Allowed LUT, Allowed RAM, Allowed RIPPLE, Allowed REG, PIO Pins Max, Allowed EBR, Allowed PLL, PCS, FABA, Allowed M9X9, Allowed M18X18, Allowed ALU54, Quad_Channel, FABA Id.
ROOMY-1_QN8, 9000, 900, 900, 9000, 300, 20, 2, 4, 2, 4, 4, 2, 0 1, F0 F1
)";
const char* const kRoomyPgt = R"(#PWC-DATA 1
[TBLSECT "PCS"]
Tag, Mode
)";

void Write(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

void AddProjectTable(PD_DATA* project, const char* name, const char* header,
                     std::initializer_list<const char*> rows) {
    auto* t = new PD_TBLSECT(name);
    t->SetTableHeader(header);
    for (const char* row : rows) t->AddTableData(row);
    project->AddSection(t);
}

class WideFamily : public ::testing::Test {
  protected:
    void SetUp() override {
        const std::string src = DevicesDir();
        for (const char* ext : {".pwr", "hp.pwr", ".pqn", ".pwi", ".pwd", ".ptd", ".pcf"})
            std::filesystem::copy_file(src + "/zn2c00" + ext,
                                       dir.File(std::string("zn2c00") + ext));
        Write(dir.File("zn2c00.pgt"), Slurp(src + "/zn2c00.pgt") + kExtraTemplates);
        Write(dir.File("zn2c00.pef"), Slurp(src + "/zn2c00.pef") + kExtraRates);
        Write(dir.File("zx9c00.pwd"), kTinyPwd);
        Write(dir.File("zx9c00.pgt"), kTinyPgt);
        Write(dir.File("zy9c00.pwd"), kRoomyPwd);
        Write(dir.File("zy9c00.pgt"), kRoomyPgt);
        Write(dir.File("zw9c00.pwd"), kRoomyPwd);  // no templates
        setenv("PWC_DATA_DIR", dir.path().c_str(), 1);

        project = DefaultProject();
        AddProjectTable(project.get(), "PCS", "Quad, Mode, PCS, Tx, Rx, X0, X1, X2, X6, ISB",
                        {"0, Full, 0, OFF, OFF, 0, 0, 0, 0, 0"});
        AddProjectTable(project.get(), "FABA", "Id, FABA, NFABA, X0, ISB", {"F0, 0, 0, 0, 0"});
        AddProjectTable(project.get(), "FABA Ctl", "Id", {"F0"});
        AddProjectTable(project.get(), "M9X9", "M9X9, DSP, X0, ISB", {"0, 0, 0, 0"});
        AddProjectTable(project.get(), "M18X18", "M18X18, DSP, X0, ISB", {"0, 0, 0, 0"});
        AddProjectTable(project.get(), "ALU54", "ALU54, DSP, X0, ISB", {"0, 0, 0, 0"});
        eng = std::make_unique<PC_ENG>(dev.Array(), project.get(), "Calculation", false, "", "", "",
                                       "", "", "", nullptr, nullptr, nullptr, "", true, "", "");
    }
    void TearDown() override { setenv("PWC_DATA_DIR", DevicesDir().c_str(), 1); }

    PD_TABLE* Table(const char* panel, const char* table) { return TabTable(*eng, panel, table); }
    void Set(const char* panel, const char* table, const char* column, const char* value) {
        PD_TABLE* t = Table(panel, table);
        ASSERT_NE(t, nullptr) << table;
        if (t->GetNumOfRows() == 0) AddRow(t, {});
        ASSERT_GE(t->GetColumnIndex(column), 0) << column;
        t->SetValueAt(value, 0, t->GetColumnIndex(column));
    }

    ScratchDir dir{"pwc_estimation_drc"};
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(WideFamily, NothingUsedPassesAgainstADeviceWithoutBlocks) {
    Table("SERDES", "PCS")->RemoveAllRows();
    Table("FABA", "FABA")->RemoveAllRows();
    Table("FABA", "FABA Ctl")->RemoveAllRows();
    Candidate tiny("zx9c00", "TINY-1", "QN8");
    EXPECT_EQ(eng->ResourcesDrcCheck(tiny.p), 1) << eng->DrcMessage;
    EXPECT_EQ(eng->DrcMessage, "");
}

struct CheckCase {
    const char* name;
    const char* panel;
    const char* table;
    const char* column;
    const char* value;
    const char* message;  // what the tiny candidate answers
};
const CheckCase kCheckCases[] = {
    {"Luts", "Logic Block", "Logic", "# Logic LUTs", "1",
     "The number of used LUT exceed new device allowed.\n"},
    {"DistRam", "Logic Block", "Logic", "# Dist. RAM", "1",
     "The number of used RAM exceed new device allowed.\n"},
    {"Registers", "Logic Block", "Logic", "# Registers", "1",
     "The number of used Slices exceed new device allowed.\n"},
    {"Io", "I/O", "Input Output", "# I/P", "1",
     "The number of used IO exceed new device allowed.\n"},
    {"Ebr", "Block RAM", "SP RAM", "# EBR Blocks", "1",
     "The number of used EBR exceed new device allowed.\n"},
    {"Pll", "PLL", "PLL", "# PLL", "1", "The new device has no PLL.\n"},
    {"M9x9", "DSP", "M9X9", "# M9X9", "1", "The new device has no M9X9.\n"},
    {"M18x18", "DSP", "M18X18", "# M18X18", "1", "The new device has no M18X18.\n"},
    {"Alu54", "DSP", "ALU54", "# ALU54", "1", "The new device has no ALU54.\n"},
    {"Serdes", "SERDES", "PCS", "# PCS", "1",
     "The new device has no SERDES.\nThe number of used SERDES exceed new device "
     "allowed.\nThe new device has different SERDES type.\nThe new device has no Quad Channel "
     "0.\n"},
    {"Faba", "FABA", "FABA", "# FABA", "1",
     "The new device has no FABA.\nThe number of used FABA exceed new device allowed.\nThe new "
     "device has no FABA ID F0.\n"},
};

class EachCheck : public WideFamily, public ::testing::WithParamInterface<CheckCase> {};

TEST_P(EachCheck, ComplainsOnTheTinyDeviceAndPassesOnTheRoomyOne) {
    const CheckCase& c = GetParam();
    const bool serdes = std::string(c.panel) == "SERDES";
    const bool faba = std::string(c.panel) == "FABA";
    // Only the tab under test uses anything.
    if (!serdes) Table("SERDES", "PCS")->RemoveAllRows();
    if (!faba) {
        Table("FABA", "FABA")->RemoveAllRows();
        Table("FABA", "FABA Ctl")->RemoveAllRows();
    }
    Set(c.panel, c.table, c.column, c.value);
    Candidate tiny("zx9c00", "TINY-1", "QN8");
    EXPECT_EQ(eng->ResourcesDrcCheck(tiny.p), 0);
    EXPECT_EQ(eng->DrcMessage, c.message);
    Candidate roomy("zy9c00", "ROOMY-1", "QN8");
    EXPECT_EQ(eng->ResourcesDrcCheck(roomy.p), 1) << eng->DrcMessage;
}

INSTANTIATE_TEST_SUITE_P(Checks, EachCheck, ::testing::ValuesIn(kCheckCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(WideFamily, MissingTemplatesAbortTheCheck) {
    Candidate c("zw9c00", "ROOMY-1", "QN8");
    EXPECT_EQ(eng->ResourcesDrcCheck(c.p), 0);
    EXPECT_EQ(eng->DrcMessage, "Read PGT fail! ");
}

TEST_F(WideFamily, ElevenComplaintsStopTheWalk) {
    Set("Logic Block", "Logic", "# Logic LUTs", "5");
    Set("Logic Block", "Logic", "# Dist. RAM", "5");
    Set("Logic Block", "Logic", "# Registers", "5");
    Set("I/O", "Input Output", "# I/P", "5");
    Set("Block RAM", "SP RAM", "# EBR Blocks", "1");
    Set("PLL", "PLL", "# PLL", "1");
    Set("SERDES", "PCS", "# PCS", "1");
    Set("FABA", "FABA", "# FABA", "1");
    Set("DSP", "M9X9", "# M9X9", "1");
    Candidate tiny("zx9c00", "TINY-1", "QN8");
    EXPECT_EQ(eng->ResourcesDrcCheck(tiny.p), 0);
    // Six from the fabric tabs, four from SERDES; the first of FABA is the
    // eleventh and ends both its check and the walk before DSP.
    EXPECT_EQ(eng->DrcErrorCount, 11);
    const std::string& m = eng->DrcMessage;
    EXPECT_EQ(m.substr(m.size() - 28), "The new device has no FABA.\n");
    EXPECT_EQ(m.find("M9X9"), std::string::npos);
}

TEST_F(WideFamily, SerdesDspAndHardBlockRowsAreEstimated) {
    Set("SERDES", "PCS", "Tx Mode", "ON");
    Set("DSP", "M9X9", "# DSP", "3");
    Set("FABA", "FABA", "FABA", "2");
    eng->SetEstimationMode("Medium");
    eng->Calculate();
    // No "# Channels": one channel for a row with a direction on.
    EXPECT_EQ(Text(Table("SERDES", "PCS"), 0, "# X0"), "1.2000e+02");
    EXPECT_EQ(Text(Table("SERDES", "PCS"), 0, "# ISB"), "5.0000e+01");
    EXPECT_EQ(Text(Table("DSP", "M9X9"), 0, "# X0"), "1.0800e+02");
    EXPECT_EQ(Text(Table("FABA", "FABA"), 0, "# X0"), "5.0000e+02");
    // The hard blocks' routing counts against the device: 10000 wires
    // entered in a SERDES row leave 240 of 10240.
    Set("SERDES", "PCS", "# X0", "10000");
    Set("DSP", "M9X9", "# X0", "0");
    Set("FABA", "FABA", "# X0", "0");
    EXPECT_TRUE(eng->IsOkToAddMoreRoutingEstimation(240, 0, 0, 0, 0, 0, 0));
    EXPECT_FALSE(eng->IsOkToAddMoreRoutingEstimation(241, 0, 0, 0, 0, 0, 0));
}

}  // namespace
