// The MIPI D-PHY and ASC tabs, and their share of the summary.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "engine_fixture.h"

using pwctest::BlockRow;
using pwctest::Cell;
using pwctest::Num;
using pwctest::PowerRow;

namespace {

pwctest::DeviceStrings Jorvik(const std::string& package) {
    pwctest::DeviceStrings d;
    d.arch = "jv7n00";
    d.family = "Jorvik";
    d.device = "JV-17";
    d.package = package;
    d.speed = "1";
    d.part = "JV-17";
    return d;
}

// An engine on a Jorvik package whose D-PHY tab holds the given rows.
struct DphyEngine {
    pwctest::DeviceStrings d;
    std::unique_ptr<PD_DATA> project = pwctest::DefaultProject("jv7n00");
    std::unique_ptr<PC_ENG> eng;
    PD_TABLE* rows = nullptr;

    explicit DphyEngine(const std::string& package) : d(Jorvik(package)) {
        eng = pwctest::MakeEngine(d, project.get());
        rows = pwctest::TabTable(*eng, "MIPIDPHY", nullptr);
        rows->RemoveAllRows();
    }
    int Add(const char* id, const char* mode, const char* rate, const char* hs,
            const char* standby = "Disable") {
        return pwctest::AddRow(rows, {{"MIPIDPHY Id.", id},
                                      {"Mode", mode},
                                      {"Data Rate (Mbps)", rate},
                                      {"AF (%)", "50"},
                                      {"Percent of time in HS Mode (%)", hs},
                                      {"Allow Standby", standby}});
    }
};

const char* const kTags[] = {"VCC_DPHY", "VCCA_DPHY", "VCCPLL_DPHY"};

}  // namespace

// C * V * F of the sample data's "HS_MODE_TX" and "LP_MODE_TX" on VCC_DPHY
// (6 pF and 2 pF at 1.2 V), times the supply's 1.2 V.
TEST(MipiDphy, HighSpeedShareMixesTheModes) {
    DphyEngine e("CSFBGA121");
    e.Add("DPHY0", "Tx", "1500", "100");
    e.Add("DPHY0", "Tx", "1500", "0");
    e.Add("DPHY0", "Tx", "80", "0");
    e.Add("DPHY0", "Tx", "1500", "25");
    e.eng->Calculate();
    const double hs = 6e-12 * 1.2 * 1.5e9 * 1.2;
    const double lp = 2e-12 * 1.2 * 1e7 * 1.2;  // 10 MHz whatever the data rate
    EXPECT_NEAR(Cell(e.rows, 0, "Dyn. VCC_DPHY0 Pwr (W)"), hs, 1e-12);
    EXPECT_NEAR(Cell(e.rows, 1, "Dyn. VCC_DPHY0 Pwr (W)"), lp, 1e-15);
    EXPECT_NEAR(Cell(e.rows, 2, "Dyn. VCC_DPHY0 Pwr (W)"), lp, 1e-15);
    EXPECT_NEAR(Cell(e.rows, 3, "Dyn. VCC_DPHY0 Pwr (W)"), 0.25 * hs + 0.75 * lp, 1e-12);
    // "Dyn. Pwr (W)" is the sum of the row's dynamic columns.
    double sum = 0.0;
    for (const char* tag : kTags) sum += Cell(e.rows, 3, std::string("Dyn. ") + tag + "0 Pwr (W)");
    EXPECT_NEAR(Cell(e.rows, 3, "Dyn. Pwr (W)"), sum, 1e-12);
    // Standby items switch less than the active ones.
    e.rows->SetValueAt("Enable", 0, e.rows->GetColumnIndex("Allow Standby"));
    e.eng->Calculate();
    EXPECT_LT(Cell(e.rows, 0, "Dyn. VCC_DPHY0 Pwr (W)"), hs / 2);
}

TEST(MipiDphy, AModeNeitherTxNorRxSwitchesNothing) {
    DphyEngine e("CSFBGA121");
    e.Add("DPHY0", "Bridge", "1500", "50");
    e.Add("DPHY0", "Rx", "1500", "50");
    e.eng->Calculate();
    for (const char* tag : kTags) {
        const std::string t = tag;
        EXPECT_EQ(Cell(e.rows, 0, "Dyn. " + t + "0 Pwr (W)"), 0.0) << tag;
        // The block's own DC term stays; the mode items add nothing.
        const double leak = Cell(e.rows, 0, "Leakage " + t + "0 Pwr (W)");
        EXPECT_GT(leak, 0.0) << tag;
        EXPECT_LT(leak, Cell(e.rows, 1, "Leakage " + t + "0 Pwr (W)")) << tag;
    }
}

// Which copy's columns a row fills, by package.
struct CopyCase {
    const char* package;
    const char* id;
    const char* filled;  // copy digit written; "" for the bare names
    const char* other;   // the other copy's digit; null: the package has one
};

class MipiCopies : public ::testing::TestWithParam<CopyCase> {};

TEST_P(MipiCopies, TheIdChoosesTheCopy) {
    const CopyCase& c = GetParam();
    DphyEngine e(c.package);
    e.Add(c.id, "Tx", "1000", "90");
    e.eng->Calculate();
    for (const char* tag : kTags) {
        for (const char* kind : {"Dyn. ", "Leakage ", "DCbias "}) {
            const std::string filled = std::string(kind) + tag + c.filled + " Pwr (W)";
            EXPECT_GT(Cell(e.rows, 0, filled), 0.0) << filled;
            if (!c.other) {
                // One copy: no digit forms at all.
                for (const char* digit : {"0", "1"}) {
                    const std::string named = std::string(kind) + tag + digit + " Pwr (W)";
                    EXPECT_LT(e.rows->GetColumnIndex(named.c_str()), 0) << named;
                }
                continue;
            }
            const std::string other = std::string(kind) + tag + c.other + " Pwr (W)";
            EXPECT_STREQ(e.rows->GetValueAt(0, e.rows->GetColumnIndex(other.c_str())), "0.000000")
                << other;
            const std::string bare = std::string(kind) + tag + " Pwr (W)";
            EXPECT_LT(e.rows->GetColumnIndex(bare.c_str()), 0) << bare;
        }
    }
    // The summary has a supply row per copy, or one bare row per supply.
    for (const char* row : {"Vcc_dphy", "Vcca_dphy", "Vccpll_dphy"}) {
        const std::string name = row;
        EXPECT_EQ(e.eng->HasSupply(name), c.other == nullptr) << name;
        EXPECT_EQ(e.eng->HasSupply(name + "0"), c.other != nullptr) << name;
        EXPECT_EQ(e.eng->HasSupply(name + "1"), c.other != nullptr) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Packages, MipiCopies,
                         ::testing::Values(CopyCase{"CSFBGA121", "DPHY0", "0", "1"},
                                           CopyCase{"CSFBGA121", "DPHY1", "1", "0"},
                                           CopyCase{"CSFBGA121", "1", "1", "0"},
                                           CopyCase{"CKFBGA80", "DPHY1", "", nullptr}));

class MipiTotals : public ::testing::TestWithParam<const char*> {};

// The block's power reaches "Block", its supplies' rows and the total.
TEST_P(MipiTotals, TheBlockAndItsSuppliesAddUp) {
    DphyEngine e(GetParam());
    e.Add("DPHY0", "Rx", "1200", "80");
    e.Add("DPHY1", "Tx", "1500", "90");
    e.eng->Calculate();
    const double block = BlockRow(*e.eng, "MIPIDPHY");
    const double tab = Num(pwctest::TotalTable(*e.eng, "MIPIDPHY")->GetValueAt(0, 1));
    EXPECT_GT(block, 0.0);
    EXPECT_NEAR(block, tab, 1e-6);
    // Each supply row holds exactly its columns: the items' and the unused.
    PD_TABLE* total = pwctest::TotalTable(*e.eng, "MIPIDPHY");
    double supplies = 0.0;
    int rows = 0;
    for (const char* row : {"Vcc_dphy", "Vcca_dphy", "Vccpll_dphy"})
        for (const char* copy : {"", "0", "1"}) {
            const std::string name = std::string(row) + copy;
            if (!e.eng->HasSupply(name)) continue;
            ++rows;
            std::string tag = std::string(row) + copy;
            for (char& ch : tag) ch = static_cast<char>(toupper(ch));
            double columns = Cell(total, 0, "Unused Leakage " + tag + " Pwr (W)") +
                             Cell(total, 0, "Unused DCbias " + tag + " Pwr (W)");
            for (int r = 0; r < e.rows->GetNumOfRows(); ++r)
                for (const char* kind : {"Dyn. ", "Leakage ", "DCbias "})
                    columns += Cell(e.rows, r, kind + tag + " Pwr (W)");
            EXPECT_GT(columns, 0.0) << name;
            EXPECT_NEAR(PowerRow(*e.eng, name, 2), columns, 1e-5) << name;
            supplies += PowerRow(*e.eng, name, 2);
        }
    EXPECT_EQ(rows, std::string(GetParam()) == "CKFBGA80" ? 3 : 6);
    EXPECT_NEAR(supplies, block, 1e-5);
    EXPECT_NEAR(Num(e.eng->GetTotalPower()), block + BlockRow(*e.eng, "Logic Block"), 1e-5);
    const int last = e.eng->GetPowerTable()->GetNumOfRows() - 1;
    EXPECT_NEAR(Num(e.eng->GetPowerTable()->GetValueAt(last, 2)), Num(e.eng->GetTotalPower()),
                1e-5);
}

INSTANTIATE_TEST_SUITE_P(Packages, MipiTotals, ::testing::Values("CSFBGA121", "CKFBGA80"));

// With no rows the free blocks still leak, on every copy.
TEST(MipiDphy, FreeBlocksLeakOnEachCopy) {
    DphyEngine e("CSFBGA121");
    e.eng->Calculate();
    PD_TABLE* total = pwctest::TotalTable(*e.eng, "MIPIDPHY");
    for (const char* copy : {"0", "1"}) {
        const std::string column = std::string("Unused Leakage VCC_DPHY") + copy + " Pwr (W)";
        EXPECT_GT(Cell(total, 0, column), 0.0) << column;
    }
    EXPECT_NEAR(Cell(total, 0, "Unused Leakage VCC_DPHY0 Pwr (W)"),
                Cell(total, 0, "Unused Leakage VCC_DPHY1 Pwr (W)"), 1e-15);
}

// ---- ASC -----------------------------------------------------------------

namespace {

// The HC part's default project with the given ASC rows and equation.
struct AscEngine {
    pwctest::DeviceStrings d;
    std::unique_ptr<PD_DATA> project = pwctest::DefaultProject("zn2c00");
    std::unique_ptr<PC_ENG> eng;

    AscEngine(const std::vector<std::vector<std::string>>& rows, const std::string& current) {
        auto* asc = dynamic_cast<PD_TBLSECT*>(project->GetSection("ASC"));
        auto* equation = dynamic_cast<PD_KEYSECT*>(project->GetSection("ASC CURRENT"));
        EXPECT_TRUE(asc && equation);
        asc->RemoveAllRows();
        for (const auto& r : rows) asc->AddRow(r);
        equation->AddKeyVal("CURRENT", current.c_str());
        eng = pwctest::MakeEngine(d, project.get());
        eng->Calculate();
    }
    PD_TABLE* Rows() { return pwctest::TabTable(*eng, "ASC", nullptr); }
};

}  // namespace

TEST(Asc, InternalRailsUseTheCoreVoltage) {
    AscEngine a({{"A0", "INT", "3.300", "2", "0"}, {"A1", "EXT", "3.300", "2", "0"}},
                "0.001 + Channels * 0.0005");
    const double vcc = a.eng->GetSupply("Vcc");
    ASSERT_GT(vcc, 0.0);
    EXPECT_NEAR(Cell(a.Rows(), 0, "VCC Pwr (W)"), 0.002 * vcc, 1e-12);
    EXPECT_NEAR(Cell(a.Rows(), 1, "VCC Pwr (W)"), 0.002 * 3.3, 1e-12);
}

TEST(Asc, AnUnknownNameCountsZero) {
    AscEngine a({{"A0", "INT", "1.200", "4", "10"}}, "0.001 + Missing * 5 + Channels * 0.0001");
    EXPECT_NEAR(Cell(a.Rows(), 0, "VCC Pwr (W)"), 0.0014 * a.eng->GetSupply("Vcc"), 1e-12);
}

TEST(Asc, AnExternalRailIsAddedOnceAndReachesTheSummary) {
    AscEngine a({{"A0", "EXT", "3.3", "1", "0"},
                 {"A1", "EXT", "3.300", "3", "0"},
                 {"A2", "EXT", "2.5", "1", "0"},
                 {"A3", "INT", "1.2", "1", "0"}},
                "0.001 + Channels * 0.001");
    PD_TABLE* vdpm = a.eng->GetSupplyTable();
    int rails = 0;
    for (int r = 0; r < vdpm->GetNumOfRows(); ++r)
        rails += std::string(vdpm->GetValueAt(r, 0)) == "ASCVCC 3.300";
    EXPECT_EQ(rails, 1);
    EXPECT_TRUE(a.eng->HasSupply("ASCVCC 2.500"));
    // Current and Power keep a row per supply and the total row.
    EXPECT_EQ(a.eng->GetPowerTable()->GetNumOfRows(), vdpm->GetNumOfRows() + 1);
    EXPECT_EQ(a.eng->GetCurrentTable()->GetNumOfRows(), vdpm->GetNumOfRows() + 1);

    // Both 3.3 V rows on one rail: (2 mA + 4 mA) * 3.3 V; its current 6 mA.
    EXPECT_NEAR(PowerRow(*a.eng, "ASCVCC 3.300", 0), 0.006 * 3.3, 1e-6);
    EXPECT_NEAR(PowerRow(*a.eng, "ASCVCC 2.500", 0), 0.002 * 2.5, 1e-6);
    const int row = vdpm->GetRowNumber(std::string("ASCVCC 3.300"));
    EXPECT_NEAR(Num(a.eng->GetCurrentTable()->GetValueAt(row, 0)), 0.006, 1e-6);

    const double block = BlockRow(*a.eng, "ASC");
    const double vcc = a.eng->GetSupply("Vcc");
    EXPECT_NEAR(block, 0.006 * 3.3 + 0.002 * 2.5 + 0.002 * vcc, 1e-6);
    EXPECT_NEAR(block, Num(pwctest::TotalTable(*a.eng, "ASC")->GetValueAt(0, 0)), 1e-6);
    // The core rail's share is in the Vcc column of the matrix and the row.
    EXPECT_NEAR(a.eng->GetStaTable("Vcc", "ASC", a.eng->GetPowerMatrix()), 0.002 * vcc, 1e-6);
    EXPECT_NEAR(a.eng->GetStaTable("ASCVCC 3.300", "ASC", a.eng->GetPowerMatrix()), 0.006 * 3.3,
                1e-6);
    // The supplies' total is the blocks' total.
    const int last = a.eng->GetPowerTable()->GetNumOfRows() - 1;
    EXPECT_NEAR(Num(a.eng->GetPowerTable()->GetValueAt(last, 2)), Num(a.eng->GetTotalPower()),
                1e-5);
}

// Only "EXT" makes a rail; another type runs at its own "VCC" but has no row
// of its own, so its power joins the core supply's.
TEST(Asc, OnlyExtMakesARail) {
    AscEngine a({{"A0", "ext", "3.300", "1", "0"},
                 {"A1", "", "2.500", "1", "0"},
                 {"A2", "INT", "1.800", "1", "0"}},
                "0.001 + Channels * 0.001");
    EXPECT_FALSE(a.eng->HasSupply("ASCVCC 3.300"));
    EXPECT_FALSE(a.eng->HasSupply("ASCVCC 2.500"));
    PD_TABLE* vdpm = a.eng->GetSupplyTable();
    for (int r = 0; r < vdpm->GetNumOfRows(); ++r)
        EXPECT_NE(std::string(vdpm->GetValueAt(r, 0)).rfind("ASCVCC", 0), 0u)
            << vdpm->GetValueAt(r, 0);
    const double vcc = a.eng->GetSupply("Vcc");
    EXPECT_NEAR(Cell(a.Rows(), 0, "VCC Pwr (W)"), 0.002 * 3.3, 1e-12);
    EXPECT_NEAR(Cell(a.Rows(), 1, "VCC Pwr (W)"), 0.002 * 2.5, 1e-12);
    EXPECT_NEAR(Cell(a.Rows(), 2, "VCC Pwr (W)"), 0.002 * vcc, 1e-12);
    const double block = BlockRow(*a.eng, "ASC");
    EXPECT_NEAR(block, 0.002 * (3.3 + 2.5 + vcc), 1e-6);
    EXPECT_NEAR(a.eng->GetStaTable("Vcc", "ASC", a.eng->GetPowerMatrix()), block, 1e-6);
    const int last = a.eng->GetPowerTable()->GetNumOfRows() - 1;
    EXPECT_NEAR(Num(a.eng->GetPowerTable()->GetValueAt(last, 2)), Num(a.eng->GetTotalPower()),
                1e-5);
}

namespace {

// The category part with an ASC tab: a copy of the sample data whose tab
// templates gain one, and a project that fills it.
struct CategoryAscEngine {
    pwctest::ScratchDir dir{"category_asc"};
    std::string oldDataDir = std::getenv("PWC_DATA_DIR") ? std::getenv("PWC_DATA_DIR") : "";
    pwctest::DeviceStrings d;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;

    CategoryAscEngine() {
        std::filesystem::copy(pwctest::DevicesDir(), dir.path());
        std::ofstream(dir.File("wd7r00.pgt"), std::ios::app)
            << "\n[KEYSECT \"Tab ASC\"]\n_TABLE = ASC\n\n"
               "[TBLSECT \"ASC\"]\nTag, Rail, VCCTYPE, VCC, Channels\n"
               "_KEY, Rail, VCCTYPE, VCC, Channels\n_DEFAULT, ASC0, INT, 1.200, 1\n"
               "_VISIBILITY, 1, 1, 1, 1\n_WIDTH, 90, 70, 60, 60\n";
        std::ofstream(dir.File("wd7r00.pcf"), std::ios::app)
            << "\n[TBLSECT \"ASC\"]\nRail, VCCTYPE, VCC, Channels\nA0, INT, 1.200, 2\n"
               "A1, INT, 1.200, 4\n\n[KEYSECT \"ASC CURRENT\"]\nCURRENT = Channels * 0.001\n";
        setenv("PWC_DATA_DIR", dir.path().c_str(), 1);
        project = pwctest::LoadProject(dir.File("wd7r00.pcf"));
        d.arch = "wd7r00";
        d.family = "Dunmar";
        d.device = "WRD-1200R";
        d.package = "CABGA256";
        d.speed = "2";
        d.part = "WRD-1200R";
        eng = pwctest::MakeEngine(d, project.get());
        eng->Calculate();
    }
    ~CategoryAscEngine() { setenv("PWC_DATA_DIR", oldDataDir.c_str(), 1); }
};

}  // namespace

// On the part with supply categories the rails on the core supply land where
// the other blocks' core power does.
TEST(Asc, CoreRailsFollowTheSupplyCategory) {
    CategoryAscEngine a;
    ASSERT_TRUE(a.eng->GetASCcalculator());
    const std::string core = a.eng->FindSupplyCategory("Vcc", "-1");
    const double vcc = Num(a.eng->GetVDPM(core, "Voltage"));
    ASSERT_GT(vcc, 0.0);
    const double block = BlockRow(*a.eng, "ASC");
    EXPECT_NEAR(block, 0.006 * vcc, 1e-6);
    EXPECT_NEAR(a.eng->GetStaTable(core, "ASC", a.eng->GetPowerMatrix()), block, 1e-9);
    // Its power is in the core category's row and so in the summary's total.
    const double logic = a.eng->GetStaTable(core, "Logic Block", a.eng->GetPowerMatrix());
    EXPECT_GE(PowerRow(*a.eng, core, 0) + PowerRow(*a.eng, core, 1), block + logic - 1e-6);
    const int last = a.eng->GetPowerTable()->GetNumOfRows() - 1;
    EXPECT_NEAR(Num(a.eng->GetPowerTable()->GetValueAt(last, 2)), Num(a.eng->GetTotalPower()),
                1e-5);
}
