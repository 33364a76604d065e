// The banks of a device: their records from the device's "Format" cells, the
// voltage codes, the voltage chosen for each bank from its rows, conflicts,
// fixed voltages, the power guard and the banks the user cannot reach.
#include <gtest/gtest.h>

#include "io_fixture.h"

using namespace iotest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

// ---- Records from "Format" ----------------------------------------------------------

struct BankRecord {
    int id;
    bool user;
    int io, pio;
};
struct FormatCase {
    const char* name;
    const char* bank;
    const char* pioCells;
    int numberOfBanks;
    std::vector<BankRecord> records;
};

class BankFormat : public IoDesign, public ::testing::WithParamInterface<FormatCase> {};

TEST_P(BankFormat, RecordsFollowTheCells) {
    const FormatCase& c = GetParam();
    auto* format = dynamic_cast<PD_TBLSECT*>(eng->GetPwdData()->GetSection("Format"));
    ASSERT_NE(format, nullptr);
    const int row = format->GetRowNumber(std::string("KZQ2-640ZE_TG100"));
    format->SetValueAt(c.bank, row, format->GetColumnIndex("Bank"));
    format->SetValueAt(c.pioCells, row, format->GetColumnIndex("Bank PIO Cells"));
    eng->SetBankInformation();
    EXPECT_EQ(eng->GetNumberOfBanks(), c.numberOfBanks);
    const std::vector<BANKIO>& banks = eng->GetBanks();
    ASSERT_EQ(banks.size(), c.records.size());
    for (size_t i = 0; i < banks.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(banks[i].id, c.records[i].id);
        EXPECT_EQ(banks[i].name, std::to_string(c.records[i].id));
        EXPECT_EQ(banks[i].user, c.records[i].user);
        EXPECT_EQ(banks[i].ioCount, c.records[i].io);
        EXPECT_EQ(banks[i].pioCount, c.records[i].pio);
        // Every bank of this architecture takes the five voltages, 1.35 V not.
        EXPECT_EQ(banks[i].vccios, (std::set<std::string>{"Vccio 1.2", "Vccio 1.5", "Vccio 1.8",
                                                          "Vccio 2.5", "Vccio 3.3"}));
        EXPECT_EQ(eng->BankExistingCheck(banks[i].id), c.records[i].user ? 1 : 0);
        EXPECT_EQ(eng->BankIsUserAvailable(banks[i].name), c.records[i].user ? 1 : 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cells, BankFormat,
    ::testing::Values(
        FormatCase{"BothColumns",
                   "4(0-10_1-9_2-10_3-10)",
                   "4(0-16_1-14_2-16_3-14)",
                   4,
                   {{0, true, 10, 16}, {1, true, 9, 14}, {2, true, 10, 16}, {3, true, 10, 14}}},
        // Sorted by id; PIO cells that no pin reaches make a bank of their own,
        // and the larger count wins.
        FormatCase{"UnbondedBank",
                   "2(1-5_0-7)",
                   "3(0-8_1-6_2-4)",
                   3,
                   {{0, true, 7, 8}, {1, true, 5, 6}, {2, false, 0, 4}}},
        // Without PIO cells a bank's PIO count is its I/O count.
        FormatCase{"NoPioCells", "2(0-12_1-11)", "", 2, {{0, true, 12, 12}, {1, true, 11, 11}}},
        // Groups that are no id-value pair are passed over.
        FormatCase{"Malformed", "3(0-5_x-2_2-_7)", "", 3, {{0, true, 5, 5}}},
        FormatCase{"Empty", "", "", 0, {}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(IoDesign, UnknownBankNumbersAreNotUserBanks) {
    EXPECT_EQ(eng->BankExistingCheck(9), 0);
    EXPECT_EQ(eng->BankIsUserAvailable("9"), 0);
    EXPECT_EQ(eng->BankIsUserAvailable("bank"), 0);
}

// ---- Voltage codes ---------------------------------------------------------------------

struct CodeCase {
    const char* code;
    const char* vccio;   // voltage of the VCCIO row
    const char* vtt;     // GetVttFromVccio
    const char* vccaux;  // GetVccauxFromVccio
};

class VoltageCodes : public IoDesign, public ::testing::WithParamInterface<CodeCase> {};

TEST_P(VoltageCodes, MapToTheirSupplyRows) {
    const CodeCase& c = GetParam();
    EXPECT_EQ(eng->GetVccio(c.code), c.vccio);
    EXPECT_EQ(eng->GetVttFromVccio(c.code), c.vtt);
    EXPECT_EQ(eng->GetVccauxFromVccio(c.code), c.vccaux);
}

INSTANTIATE_TEST_SUITE_P(Codes, VoltageCodes,
                         ::testing::Values(CodeCase{"33", "3.300", "1.65", "Vccaux 3.3"},
                                           CodeCase{"25", "2.500", "1.25", "Vccaux 2.5"},
                                           CodeCase{"18", "1.800", "0.90", "Vccaux 1.8"},
                                           CodeCase{"15", "1.500", "0.75", "Vccaux 1.5"},
                                           // No "Vccaux 1.2" row: the core supply stands in.
                                           CodeCase{"12", "1.200", "0.60", "Vcc"}));

TEST_F(IoDesign, CodesReadInVoltsAndBankRowsGiveTheirVoltage) {
    EXPECT_EQ(eng->GetVccio("3.3"), "3.300");
    EXPECT_EQ(eng->GetVccio("1.8"), "1.800");
    // A device without the row answers nothing; an unknown code neither.
    EXPECT_EQ(eng->GetVccio("1.35"), "");
    EXPECT_EQ(eng->GetVccio("42"), "");
    EXPECT_EQ(eng->GetVccaux("33.0"), "Vccaux 3.3");
    EXPECT_EQ(eng->GetVtt("165.0"), "");  // no Vtt rows on this device

    SetBank("1", "Vccio 2.5");
    EXPECT_EQ(eng->GetVccioFromBank(Banks()->GetRowNumber(std::string("1"))), "2.500");
    // A row whose text names no VCCIO, or no row at all, runs at 1.2 V.
    SetBank("2", "x");
    EXPECT_EQ(eng->GetVccioFromBank(Banks()->GetRowNumber(std::string("2"))), "1.2");
    EXPECT_EQ(eng->GetVccioFromBank(-1), "1.2");
    EXPECT_EQ(eng->BankVccioCode("1"), "25");
}

// ---- The voltage chosen for a bank ----------------------------------------------------

struct IoUse {
    const char* type;
    int inputs, outputs;
};
struct ChoiceCase {
    const char* name;
    std::vector<IoUse> rows;  // all in bank 1
    const char* before;
    const char* after;
};

class BankChoice : public IoDesign, public ::testing::WithParamInterface<ChoiceCase> {};

TEST_P(BankChoice, TakesWhatTheRowsAllow) {
    const ChoiceCase& c = GetParam();
    for (const IoUse& u : c.rows)
        AddRow(Io(), {{"Type", u.type},
                      {"Bank", "1"},
                      {"# I/P", std::to_string(u.inputs)},
                      {"# O/P", std::to_string(u.outputs)}});
    SetBank("1", c.before);
    eng->BankDo();
    EXPECT_EQ(BankVoltage("1"), c.after);
    // What the bank takes, its rows accept: the check passes.
    EXPECT_EQ(eng->IotypeDesignRulecheck(), 1) << eng->DrcMessage;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BankChoice,
    ::testing::Values(
        // An output allows one voltage.
        ChoiceCase{"OutputSetsItsVoltage", {{"LVCMOS18", 0, 2}}, "Vccio 3.3", "Vccio 1.8"},
        // "(2.5)_3.3": a voltage the type allows stays.
        ChoiceCase{"AllowedVoltageStays", {{"LVCMOS25", 3, 0}}, "Vccio 3.3", "Vccio 3.3"},
        // "(1.5)_1.8": otherwise the preferred one.
        ChoiceCase{"PreferredInParentheses", {{"LVCMOS15", 1, 0}}, "Vccio 3.3", "Vccio 1.5"},
        // "ALL_2.5" takes what the bank's record allows, and that is what
        // LVDS25 allows on each list it stands on: its output's "(2.5)".
        ChoiceCase{"AllTakesTheRecordsSet", {{"LVDS25", 1, 0}}, "Vccio 1.8", "Vccio 2.5"},
        // The output decides; the input's "2.5_(3.3)" admits it.
        ChoiceCase{"OutputBeforeInput",
                   {{"LVCMOS33", 1, 0}, {"LVCMOS25", 0, 1}},
                   "Vccio 1.8",
                   "Vccio 2.5"},
        // A preferred voltage another row refuses gives way to one all take.
        ChoiceCase{"FirstAllowedWhenPreferredRefused",
                   {{"LVCMOS15", 1, 0}, {"SSTL18_I", 2, 0}},
                   "Vccio 3.3",
                   "Vccio 1.8"},
        // A drive the list lacks sets no bound: the cell stays.
        ChoiceCase{"UnlistedDrive", {{"LVCMOS18-DRIVE:5mA", 0, 1}}, "Vccio 3.3", "Vccio 3.3"},
        // A bank without rows in use keeps a voltage it can take.
        ChoiceCase{"UnusedBankKeepsItsVoltage", {}, "Vccio 1.5", "Vccio 1.5"},
        ChoiceCase{"UnusedBankTakesTheDefault", {}, "Vccio 9.9", "Vccio 3.3"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(IoDesign, AllVoltagesOfABankAreThoseOfItsRecord) {
    AddRow(Io(), {{"Type", "LVCMOS18"}, {"Bank", "1"}, {"# O/P", "2"}});
    eng->BankDo();
    // LVCMOS18 stands on all three lists; its output allows 1.8 V alone.
    EXPECT_EQ(eng->GetBankAllVccios(1), (std::set<std::string>{"Vccio 1.8"}));
    // A bank without rows keeps the device's five; no record, nothing.
    EXPECT_EQ(eng->GetBankAllVccios(2).size(), 5u);
    EXPECT_TRUE(eng->GetBankAllVccios(9).empty());
}

// ---- Conflicts ------------------------------------------------------------------------

TEST_F(IoDesign, DisjointRowsGiveOneConflictPerBank) {
    AddRow(Io(), {{"Type", "LVCMOS33"}, {"Bank", "2"}, {"# O/P", "1"}});
    AddRow(Io(), {{"Type", "LVCMOS18"}, {"Bank", "2"}, {"# O/P", "3"}});
    AddRow(Io(), {{"Type", "LVCMOS12"}, {"Bank", "2"}, {"# O/P", "1"}});
    // Another bank whose row fits its voltage says nothing.
    AddRow(Io(), {{"Type", "LVCMOS33"}, {"Bank", "0"}, {"# I/P", "1"}});
    const std::string conflict = "There is VCCIO voltage conflict in bank 2.\n";
    const int errors = eng->DrcErrorCount;
    EXPECT_EQ(eng->Calculate(), 0);
    EXPECT_EQ(eng->DrcMessage, conflict);
    EXPECT_EQ(eng->DrcErrorCount, errors + 1);
    // A second check reports the conflict once, not twice.
    EXPECT_EQ(eng->IotypeDesignRulecheck(), 0);
    EXPECT_EQ(eng->DrcMessage, conflict);
    EXPECT_EQ(eng->DrcErrorCount, errors + 1);
    // Resolved, the message goes.
    Io()->RemoveRow(0);
    Io()->RemoveRow(1);
    SetBank("2", "Vccio 1.8");
    EXPECT_EQ(eng->Calculate(), 1);
    EXPECT_EQ(eng->DrcMessage, "");
    EXPECT_EQ(eng->DrcErrorCount, errors);
}

TEST_F(IoDesign, AVoltageTheRowsRefuseIsAConflict) {
    AddRow(Bidi(), {{"Type", "LVCMOS25"}, {"Bank", "3"}, {"# Bidi", "4"}});
    SetBank("3", "Vccio 3.3");
    EXPECT_EQ(eng->IotypeDesignRulecheck(), 0);
    EXPECT_EQ(eng->DrcMessage, "There is VCCIO voltage conflict in bank 3.\n");
    SetBank("3", "Vccio 2.5");
    EXPECT_EQ(eng->IotypeDesignRulecheck(), 1);
}

// One allowed text a row: an output's, replaced by the input's when the row
// has inputs too; the bidirectional pins of "Input Output" play no part.
struct RowTextCase {
    const char* name;
    const char* type;
    int inputs, outputs, bidi;
    const char* voltage;
    int result;
};

class OneTextPerRow : public IoDesign, public ::testing::WithParamInterface<RowTextCase> {};

TEST_P(OneTextPerRow, DecidesTheCheck) {
    const RowTextCase& c = GetParam();
    AddRow(Io(), {{"Type", c.type},
                  {"Bank", "1"},
                  {"# I/P", std::to_string(c.inputs)},
                  {"# O/P", std::to_string(c.outputs)},
                  {"# Bidi", std::to_string(c.bidi)}});
    SetBank("1", c.voltage);
    eng->DrcErrorCount = 0;
    EXPECT_EQ(eng->IotypeDesignRulecheck(), c.result);
    EXPECT_EQ(eng->DrcMessage, c.result ? "" : "There is VCCIO voltage conflict in bank 1.\n");
}

// LVCMOS33: output "(3.3)", input "2.5_(3.3)", bidirectional "(3.3)".
INSTANTIATE_TEST_SUITE_P(
    Rows, OneTextPerRow,
    ::testing::Values(RowTextCase{"OutputAlone", "LVCMOS33", 0, 1, 0, "Vccio 2.5", 0},
                      RowTextCase{"InputAlone", "LVCMOS33", 1, 0, 0, "Vccio 2.5", 1},
                      RowTextCase{"InputReplacesOutput", "LVCMOS33", 1, 1, 0, "Vccio 2.5", 1},
                      RowTextCase{"InputTextStillBinds", "LVCMOS33", 1, 1, 0, "Vccio 1.8", 0},
                      // LVCMOS25 bidirectional pins would ask for "(2.5)".
                      RowTextCase{"BidiPinsPlayNoPart", "LVCMOS25", 0, 0, 3, "Vccio 3.3", 1},
                      RowTextCase{"BidiBesideAnInput", "LVCMOS33", 1, 0, 3, "Vccio 2.5", 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(IoDesign, RowsWithoutPinsOrWithUnknownTypesSetNoBound) {
    AddRow(Io(), {{"Type", "LVCMOS18"}, {"Bank", "0"}});  // no pins
    AddRow(Io(), {{"Type", "NOSUCH33"}, {"Bank", "0"}, {"# O/P", "2"}});
    AddRow(Io(), {{"Type", "LVDS25"}, {"Bank", "0"}, {"# I/P", "1"}});  // ALL_2.5
    EXPECT_EQ(eng->IotypeDesignRulecheck(), 1) << eng->DrcMessage;
    const auto allowed = eng->BankAllowedVccios();
    ASSERT_EQ(allowed.count("0"), 1u);
    EXPECT_EQ(allowed.at("0").size(), 5u);
}

// ---- Fixed voltages, the power guard, unreachable banks -----------------------------

TEST_F(IoDesign, ConstraintsFixVoltagesAndReportWhatTheyCannot) {
    eng->bankVoltageConstraints = {{"1", "1.8"}, {"2", "5.0"}, {"9", "3.3"}};
    eng->BankDo();
    // Not in force: nothing happens.
    EXPECT_EQ(BankVoltage("1"), "Vccio 3.3");
    eng->bankConstraintsInForce = true;
    eng->DrcMessage.clear();
    eng->BankDo();
    EXPECT_EQ(BankVoltage("1"), "Vccio 1.8");
    // Written as the file says, then reported.
    EXPECT_EQ(BankVoltage("2"), "Vccio 5.0");
    EXPECT_EQ(eng->DrcMessage,
              "The bank VCCIO voltage setting for bank 2 is wrong.\n"
              "Invalid bank id 9 in constraints file.\n");
}

TEST_F(IoDesign, PowerGuardFollowsTheRowsOfTheBank) {
    AddRow(Io(), {{"Type", "LVCMOS33"}, {"Bank", "0"}, {"# I/P", "1"}, {"PG", "OFF"}});
    const int guarded =
        AddRow(Bidi(), {{"Type", "LVCMOS33"}, {"Bank", "1"}, {"# Bidi", "1"}, {"PG", "OFF"}});
    eng->BankDo();
    PD_TABLE* b = Banks();
    const int pg = b->GetColumnIndex("PG");
    EXPECT_STREQ(b->GetValueAt(b->GetRowNumber(std::string("0")), pg), "OFF");
    EXPECT_STREQ(b->GetValueAt(b->GetRowNumber(std::string("2")), pg), "N/A");
    eng->SetBankPowerGuard("Bidi", "ON", guarded, Bidi()->GetColumnIndex("PG"));
    EXPECT_TRUE(eng->hasPowerGuardOn("Bidi", "1"));
    EXPECT_STREQ(b->GetValueAt(b->GetRowNumber(std::string("1")), pg), "ON");
    EXPECT_EQ(eng->GetBankPG(b->GetRowNumber(std::string("1"))), "ON");
}

TEST_F(IoDesign, ShutOffAnswersTakeTheCellOrTheStandbyKey) {
    PD_TABLE* b = Banks();
    const int row = b->GetRowNumber(std::string("1"));
    EXPECT_EQ(eng->GetBankInrd(row), "No");
    // "N/A" reads as allowed in the two receiver and driver columns.
    EXPECT_EQ(eng->GetBankLvdso(row), "Yes");
    b->SetValueAt("Yes", row, b->GetColumnIndex("Allow PUSL Shut-off"));
    EXPECT_EQ(eng->GetBankPusl(row), "Yes");
    EXPECT_EQ(eng->GetStandbyControl("Bank Voltage", row, "Allow PUSL Shut-off"), "Yes");
    EXPECT_EQ(eng->GetBankSlewrate(row), "No");
    EXPECT_EQ(eng->GetStandbyOption("Bank Voltage", "PG"),
              (std::vector<std::string>{"ON", "OFF", "N/A"}));
}

struct ReachCase {
    const char* arch;
    std::vector<std::string> rows;
};

class UnreachableBanks : public IoDesign, public ::testing::WithParamInterface<ReachCase> {};

// KZQ2-1200HC has PIO cells in banks 4 and 5 that its packages do not bond.
TEST_P(UnreachableBanks, AreListedOnTheVariantOnly) {
    Build(GetParam().arch, "KZQ2-1200HC", "CABGA256");
    std::vector<std::string> rows;
    for (int r = 0; r < Banks()->GetNumOfRows(); ++r) rows.push_back(Banks()->GetValueAt(r, 0));
    EXPECT_EQ(rows, GetParam().rows);
    EXPECT_EQ(eng->GetNumberOfBanks(), 6);
    if (rows.size() == 6) {
        EXPECT_EQ(BankVoltage("4"), "Vccio 1.2");
        EXPECT_EQ(BankVoltage("5"), "Vccio 1.2");
    }
}

INSTANTIATE_TEST_SUITE_P(Archs, UnreachableBanks,
                         ::testing::Values(ReachCase{"zn2c00", {"0", "1", "2", "3"}},
                                           ReachCase{"zn2c00a", {"0", "1", "2", "3", "4", "5"}}),
                         [](const auto& info) { return std::string(info.param.arch); });

TEST_F(IoDesign, TableTakesTheProjectsCellsAndDefaults) {
    auto* bv = dynamic_cast<PD_TBLSECT*>(project->GetSection("Bank Voltage"));
    ASSERT_NE(bv, nullptr);
    bv->SetValueAt("Vccio 1.8", bv->GetRowNumber(std::string("2")), bv->GetColumnIndex("Voltage"));
    bv->SetValueAt("Yes", bv->GetRowNumber(std::string("2")), bv->GetColumnIndex("InRD"));
    eng = pwctest::MakeEngine(dev, project.get());
    PD_TABLE* b = Banks();
    ASSERT_EQ(b->GetNumOfRows(), 4);
    const int row = b->GetRowNumber(std::string("2"));
    EXPECT_STREQ(b->GetValueAt(row, b->GetColumnIndex("Voltage")), "Vccio 1.8");
    EXPECT_STREQ(b->GetValueAt(row, b->GetColumnIndex("Allow InRD Shut-off")), "Yes");
    // Filled anew, the project's columns come back and every other column
    // reads "0.0".
    while (b->GetNumOfRows() > 0) b->RemoveRow(0);
    eng->BankDo();
    ASSERT_EQ(b->GetNumOfRows(), 4);
    const std::set<std::string> own{"Bank",
                                    "Voltage",
                                    "Allow InRD Shut-off",
                                    "Allow LVDSO Shut-off",
                                    "PG",
                                    "Allow PUSL Shut-off",
                                    "Slewrate"};
    EXPECT_STREQ(b->GetValueAt(row, b->GetColumnIndex("Allow InRD Shut-off")), "Yes");
    EXPECT_STREQ(b->GetValueAt(row, b->GetColumnIndex("Slewrate")), "No");
    int others = 0;
    for (int c = 0; c < b->GetNumOfColumns(); ++c) {
        if (own.count(b->GetColumnName(c))) continue;
        ++others;
        EXPECT_STREQ(b->GetValueAt(row, c), "0.0") << b->GetColumnName(c);
    }
    EXPECT_GT(others, 0);
}

}  // namespace
