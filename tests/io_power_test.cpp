// The power of the I/O against hand computations: pins by frequency, load,
// register mode and duty cycle, the external termination, the unused pins of
// a bank; and the I/O rails and blocks of the summary against the columns.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "io_fixture.h"

using namespace iotest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

// ---- Switching pins ----------------------------------------------------------------

// KZQ2-640ZE on VCCIO: an LVCMOS33 output 4.5 pF, an input 1.4 pF; bank at 3.3 V.
struct SwitchCase {
    const char* name;
    const char* mode;
    int inputs, outputs;
    double vccioWatts;
};

class SwitchingPins : public IoDesign, public ::testing::WithParamInterface<SwitchCase> {};

TEST_P(SwitchingPins, DrawCVFOnVccio) {
    const SwitchCase& c = GetParam();
    const int row = AddRow(Io(), {{"Type", "LVCMOS33"},
                                  {"Bank", "1"},
                                  {"# I/P", std::to_string(c.inputs)},
                                  {"# O/P", std::to_string(c.outputs)},
                                  {"Actual Register Mode", c.mode},
                                  {"Input Freq. (MHz)", "40"},
                                  {"Input AF (%)", "10"},
                                  {"Output Freq. (MHz)", "20"},
                                  {"Output AF (%)", "25"},
                                  {"Cload (pF)", "10"},
                                  {"PG", "OFF"}});
    eng->Calculate();
    EXPECT_NEAR(Full(Io(), row, "Dyn. VCCIO Pwr (W)"), c.vccioWatts, 1e-12);
    // The row's dynamic power is the sum of its supplies'.
    EXPECT_NEAR(Full(Io(), row, "Dyn. Pwr (W)"),
                Full(Io(), row, "Dyn. VCC Pwr (W)") + Full(Io(), row, "Dyn. VCCIO Pwr (W)") +
                    Full(Io(), row, "Dyn. VCCAUX Pwr (W)"),
                1e-15);
}

// Outputs: (4.5 + 10) pF * 3.3 V * 20 MHz * 25 % * 4 = 0.957 mA, times 3.3 V;
// a registered output toggles at half the clock. Inputs: 1.4 pF * 3.3 V *
// 40 MHz * 10 % * 2 = 36.96 uA, times 3.3 V; a DDR input at half the clock.
INSTANTIATE_TEST_SUITE_P(Modes, SwitchingPins,
                         ::testing::Values(SwitchCase{"Combinational", "none", 0, 4, 3.1581e-3},
                                           SwitchCase{"CombinatorialWord", "COMBINATORIAL", 0, 4,
                                                      3.1581e-3},
                                           SwitchCase{"RegisteredOutput", "OREG", 0, 4, 1.57905e-3},
                                           SwitchCase{"DdrOutput", "ODDR", 0, 4, 3.1581e-3},
                                           SwitchCase{"Input", "none", 2, 0, 1.21968e-4},
                                           SwitchCase{"DdrInput", "IDDR", 2, 0, 6.0984e-5}),
                         [](const auto& info) { return std::string(info.param.name); });

// A bidirectional pin listens for the duty cycle and drives for the rest:
// 1.4 pF in, 4.5 + 5 pF out, at 3.3 V, 10 MHz, 50 %, two pins.
struct DutyCase {
    const char* duty;
    double vccioWatts;
};

class BidiDuty : public IoDesign, public ::testing::WithParamInterface<DutyCase> {};

TEST_P(BidiDuty, SharesTheSidesByTheDutyCycle) {
    const int row = AddRow(Bidi(), {{"Type", "LVCMOS33"},
                                    {"Bank", "1"},
                                    {"# Bidi", "2"},
                                    {"Actual Register Mode", "none"},
                                    {"Freq. (MHz)", "10"},
                                    {"AF (%)", "50"},
                                    {"Duty Cycle (%)", GetParam().duty},
                                    {"Cload (pF)", "5"},
                                    {"PG", "OFF"}});
    eng->Calculate();
    EXPECT_NEAR(Full(Bidi(), row, "Dyn. VCCIO Pwr (W)"), GetParam().vccioWatts, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Duty, BidiDuty,
                         ::testing::Values(DutyCase{"100", 3.3 * 4.62e-5},
                                           DutyCase{"0", 3.3 * 3.135e-4},
                                           DutyCase{"50", 3.3 * (4.62e-5 + 3.135e-4) / 2}));

TEST_F(IoDesign, SleepingOutputsDriveNoLoad) {
    const int row = AddRow(Io(), {{"Type", "LVCMOS33"},
                                  {"Bank", "1"},
                                  {"# O/P", "4"},
                                  {"Actual Register Mode", "none"},
                                  {"Output Freq. (MHz)", "20"},
                                  {"Output AF (%)", "25"},
                                  {"Cload (pF)", "10"}});
    eng->Calculate();
    const double awake = Full(Io(), row, "Dyn. VCCIO Pwr (W)");
    EXPECT_GT(awake, 0.0);
    eng->SetPowerModeType("Sleep");
    eng->Calculate();
    EXPECT_EQ(Full(Io(), row, "Dyn. VCCIO Pwr (W)"), 0.0);
    EXPECT_GT(Full(Io(), row, "Leakage VCCIO Pwr (W)"), 0.0);
}

TEST_F(IoDesign, LogShowsTheBankVoltageAsText) {
    AddRow(Io(), {{"Type", "LVCMOS33"},
                  {"Bank", "0"},
                  {"# O/P", "1"},
                  {"Actual Register Mode", "none"},
                  {"Output Freq. (MHz)", "10"},
                  {"Output AF (%)", "50"}});
    const std::string log = CaptureLog([&] { eng->Calculate(); });
    for (const char* piece :
         {"PowerDynIOvccio row(0) = IccDynIOvccio * vccio = ", " * 3.300 = ",
          "PowerDynIOvcc row(0) = IccDynIOvcc * vcc = ", "PowerLeakBankvcc row(",
          "(mode == none && COMBINATORIAL) || mode == ODDR, hence CVF",
          "IccDynPIO = ", "Calculting Unused IOs power per Bank....",
          "Calculting Unused IOs power for bank :3", "PowerLeakMFG_BLKvcc row(0)"})
        EXPECT_NE(log.find(piece), std::string::npos) << piece;
}

// ---- External termination ---------------------------------------------------------------

struct TermCase {
    const char* name;
    const char* type;
    const char* bankVoltage;
    const char* rth;
    const char* vth;
    int outputs;
    double ioh, voh, iol, vol, current, vccio;
};

class Termination : public IoDesign, public ::testing::WithParamInterface<TermCase> {};

TEST_P(Termination, FollowsTheResistorNetwork) {
    const TermCase& c = GetParam();
    SetBank("2", c.bankVoltage);
    const int row = AddRow(Term(), {{"Type", c.type},
                                    {"Bank", "2"},
                                    {"# O/P", std::to_string(c.outputs)},
                                    {"Rth (Ohm)", c.rth},
                                    {"Vth (V)", c.vth}});
    int n = 0;
    const auto names = eng->GetArrayOfColumnNames(Term(), &n);
    const auto values = eng->GetArrayOfColumnValues(Term(), row, &n);
    const PC_ENG::Termination t = eng->TerminationOf("I/O Term", names, values, "VCCIO", false);
    ASSERT_TRUE(t.active);
    EXPECT_NEAR(t.ioh, c.ioh, 1e-10);
    EXPECT_NEAR(t.voh, c.voh, 1e-9);
    EXPECT_NEAR(t.iol, c.iol, 1e-10);
    EXPECT_NEAR(t.vol, c.vol, 1e-9);
    EXPECT_NEAR(t.current, c.current, 1e-11);
    EXPECT_NEAR(eng->ProcessExtOutTerm("I/O Term", names, values), c.current, 1e-11);

    eng->Calculate();
    const double watts = c.current * c.outputs * c.vccio;
    EXPECT_NEAR(Full(Term(), row, "DCbias VCCIO Pwr (W)"), watts, 1e-11);
    EXPECT_NEAR(Full(Term(), row, "Termination Pwr (W)"), watts, 1e-11);
    EXPECT_NEAR(Full(TermTotal(), 0, "Total Termination Pwr (W)"), watts, 1e-11);
    EXPECT_NEAR(Full(TermTotal(), 0, "Total Pwr (W)"), watts, 1e-11);
}

// By hand: IOH = |Vpu - Vth| / (Rpu + Rth), VOH = Vpu - Rpu * IOH,
// IOL = (Vth - Vpd) / (Rpd + Rth), VOL = Vth - IOL * Rth,
// I = (((VCCIO - VOH) * IOH + VOL * IOL) / 2) / VCCIO.
INSTANTIATE_TEST_SUITE_P(
    Networks, Termination,
    ::testing::Values(
        // Pull-up at VCCIO 2.5 V, 25 ohm each way, 50 ohm to 1.25 V.
        TermCase{"SstlToHalfVccio", "SSTL25_I", "Vccio 2.5", "50", "1.25", 1, 1.25 / 75,
                 2.5 - 25 * 1.25 / 75, 1.25 / 75, 1.25 - 50 * 1.25 / 75, 0.002777777778, 2.5},
        // The load's voltage above the pull-up's 1.8 V: IOH stays positive.
        TermCase{"LoadAboveThePullUp", "HSTL18_I", "Vccio 1.8", "50", "2.0", 1, 0.2 / 75,
                 1.8 - 25 * 0.2 / 75, 2.0 / 75, 2.0 - 50 * 2.0 / 75, 0.004987654321, 1.8},
        // The pull-up on VCCAUX (3.3 V), 100 ohm to 1.65 V.
        TermCase{"PullUpOnVccaux", "PCI33", "Vccio 3.3", "100", "1.65", 1, 0.0132, 2.97, 0.0132,
                 0.33, 0.00132, 3.3},
        // Two outputs draw twice the power of one.
        TermCase{"TwoOutputs", "LVCMOS33", "Vccio 3.3", "50", "1.65", 2, 0.020625, 2.68125,
                 0.020625, 0.61875, 0.0038671875, 3.3}),
    [](const auto& info) { return std::string(info.param.name); });

struct InactiveCase {
    const char* type;
    const char* vth;
    const char* differential;
};

class InactiveTermination : public IoDesign, public ::testing::WithParamInterface<InactiveCase> {};

TEST_P(InactiveTermination, DrawsNothingAndSaysWhy) {
    const InactiveCase& c = GetParam();
    const int row = AddRow(
        Term(),
        {{"Type", c.type}, {"Bank", "0"}, {"# O/P", "1"}, {"Rth (Ohm)", "50"}, {"Vth (V)", c.vth}});
    int n = 0;
    const auto names = eng->GetArrayOfColumnNames(Term(), &n);
    const auto values = eng->GetArrayOfColumnValues(Term(), row, &n);
    double current = -1.0;
    const std::string log =
        CaptureLog([&] { current = eng->ProcessExtOutTerm("I/O Term", names, values); });
    EXPECT_EQ(current, 0.0);
    EXPECT_EQ(log,
              "Termination Calculation iff vthLoad > 0 && IsDifferentialTrue(c_type) == 0 && "
              "(input > 0 || output > 0 || bidi > 0)\nIsDifferentialTrue(c_type) = " +
                  std::string(c.differential) + "\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, InactiveTermination,
                         ::testing::Values(InactiveCase{"SSTL25_I", "0", "False"},
                                           InactiveCase{"LVDS25", "1.2", "True"}));

TEST_F(IoDesign, TerminationOnVttDrawsHalfTheLowLevelCurrent) {
    // KZQ2-1200UHC has the termination supplies.
    Build("zn2c00", "KZQ2-1200UHC", "CABGA256");
    ASSERT_TRUE(eng->HasSupply("Vtt"));
    SetBank("3", "Vccio 2.5");
    const int row = AddRow(Term(), {{"Type", "SSTL25_I"},
                                    {"Bank", "3"},
                                    {"# O/P", "2"},
                                    {"Rth (Ohm)", "50"},
                                    {"Vth (V)", "1.25"}});
    eng->Calculate();
    // IOL = 1.25 V / 75 ohm, half the time, two outputs, at "Vtt 1.25".
    EXPECT_NEAR(Full(Term(), row, "DCbias VTT Pwr (W)"), 1.25 / 75 * 0.5 * 2 * 1.25, 1e-11);
    EXPECT_NEAR(Full(Term(), row, "Termination Pwr (W)"),
                Full(Term(), row, "DCbias VCCIO Pwr (W)") + Full(Term(), row, "DCbias VTT Pwr (W)"),
                1e-15);
}

// ---- Unused pins ------------------------------------------------------------------------

struct UnusedCase {
    int outputs;
    int unused;
};

class UnusedPins : public IoDesign, public ::testing::WithParamInterface<UnusedCase> {};

// Bank 0 of KZQ2-640ZE in TG100 bonds 20 pins. With theta 0 the junction is
// the ambient, 25 C; an unused pin leaks A = 0.02 uA (LVCMOS12 input) plus
// the block's 0.03 uA, times e^(0.02 * 25) (the evaluator reads the base
// 2.718282 as e), at K 1 and 3.3 V.
TEST_P(UnusedPins, CountByBankUnclamped) {
    const UnusedCase& c = GetParam();
    eng->SetThetaOption("UserDefined", "0");
    eng->SetAmbientTemperature("25");
    AddRow(Io(), {{"Type", "LVCMOS33"}, {"Bank", "0"}, {"# O/P", std::to_string(c.outputs)}});
    EXPECT_EQ(eng->GetBankUsedIO("0", "all"), c.outputs);
    EXPECT_EQ(eng->GetBankUsedIO("0", "# O/P"), c.outputs);
    EXPECT_EQ(eng->GetBankUsedIO("0", "# I/P"), 0);
    EXPECT_EQ(eng->GetBankUnusedIO("0"), c.unused);
    // A bank the device lacks has the negative of its use.
    AddRow(Io(), {{"Type", "LVCMOS33"}, {"Bank", "7"}, {"# I/P", "3"}});
    EXPECT_EQ(eng->GetBankUnusedIO("7"), -3);
    Io()->RemoveRow(Io()->GetNumOfRows() - 1);

    eng->Calculate();
    const double perPin = (0.02e-6 + 0.03e-6) * std::exp(0.02 * 25) * 3.3;
    const int bank0 = Banks()->GetRowNumber(std::string("0"));
    EXPECT_NEAR(Full(Banks(), bank0, "Unused Leakage VCCIO Pwr (W)"), perPin * c.unused, 1e-15);
    // The panel's row holds what the banks sum to.
    double banks = 0.0;
    for (int r = 0; r < Banks()->GetNumOfRows(); ++r)
        banks += Full(Banks(), r, "Unused Leakage VCCIO Pwr (W)");
    EXPECT_NEAR(Full(IoTotal(), 0, "Unused Leakage VCCIO Pwr (W)"), banks, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, UnusedPins, ::testing::Values(UnusedCase{5, 15}, UnusedCase{20, 0}, UnusedCase{26, -6}),
    [](const auto& info) { return "Used" + std::to_string(info.param.outputs); });

TEST_F(IoDesign, UnusedPinsOfTheWholeDeviceOnTheDefaultVoltage) {
    setenv("PWC_UNUSED_IO_DEVICE", "1", 1);
    eng->Calculate();
    unsetenv("PWC_UNUSED_IO_DEVICE");
    for (int r = 0; r < Banks()->GetNumOfRows(); ++r)
        EXPECT_EQ(Full(Banks(), r, "Unused Leakage VCCIO Pwr (W)"), 0.0);
    EXPECT_GT(Full(IoTotal(), 0, "Unused Leakage VCCIO Pwr (W)"), 0.0);
    // 78 pins of TG100, at the hardware default of 3.3 V.
    std::vector<std::string> values;
    eng->GetArrayOfColumnUnusedValuesIO(-1, values);
    EXPECT_EQ(values[0], "78.0");
    EXPECT_EQ(values[4], "3.300");
}

struct ReachCase {
    const char* arch;
    bool countsBank5;
};

class UnreachableUnused : public IoDesign, public ::testing::WithParamInterface<ReachCase> {};

TEST_P(UnreachableUnused, CountOnTheVariantOnly) {
    Build(GetParam().arch, "KZQ2-1200HC", "CABGA256");
    const std::string log = CaptureLog([&] { eng->Calculate(); });
    EXPECT_EQ(log.find("Calculting Unused IOs power for bank :5") != std::string::npos,
              GetParam().countsBank5);
    EXPECT_NE(log.find("Calculting Unused IOs power for bank :3"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Archs, UnreachableUnused,
                         ::testing::Values(ReachCase{"zn2c00", false}, ReachCase{"zn2c00a", true}),
                         [](const auto& info) { return std::string(info.param.arch); });

// ---- The I/O in the summary ---------------------------------------------------------------

class IoSummary : public IoDesign, public ::testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        Build("zn2c00", GetParam(), "CABGA256",
              std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf");
        eng->Calculate();
    }
    // The supply row a row's bank runs on.
    std::string RailOf(PD_TABLE* t, int row) {
        const std::string bank =
            t == Banks() ? t->GetValueAt(row, 0) : t->GetValueAt(row, t->GetColumnIndex("Bank"));
        return BankVoltage(bank);
    }
    double Power(const std::string& supply, int column) {
        PD_TABLE* vdpm = eng->GetSupplyTable();
        return Num(eng->GetPowerTable()->GetValueAt(vdpm->GetRowNumber(supply), column));
    }
    std::vector<PD_TABLE*> RowTables() { return {Io(), Bidi(), Term(), Banks()}; }
};

TEST_P(IoSummary, VccioRailsAreTheSumsOfTheColumnsOfTheirBanks) {
    std::map<std::string, double> sta, dyn;
    for (PD_TABLE* t : RowTables())
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            const std::string rail = RailOf(t, r);
            dyn[rail] += t->GetColumnIndex("Dyn. VCCIO Pwr (W)") >= 0 && t != Banks()
                             ? Full(t, r, "Dyn. VCCIO Pwr (W)")
                             : 0.0;
            for (const char* c : {"Leakage VCCIO Pwr (W)", "DCbias VCCIO Pwr (W)",
                                  "Unused Leakage VCCIO Pwr (W)", "Unused DCbias VCCIO Pwr (W)"})
                if (t->GetColumnIndex(c) >= 0) sta[rail] += Full(t, r, c);
        }
    ASSERT_GT(sta["Vccio 3.3"], 0.0);
    ASSERT_GT(dyn["Vccio 1.8"], 0.0);
    for (const char* rail : {"Vccio 3.3", "Vccio 2.5", "Vccio 1.8", "Vccio 1.5", "Vccio 1.2"}) {
        EXPECT_NEAR(Power(rail, 0), sta[rail], 1e-6) << rail;
        EXPECT_NEAR(Power(rail, 1), dyn[rail], 1e-6) << rail;
    }
}

TEST_P(IoSummary, VttRailsAreTheSumsOfTheColumnsOfTheirStandards) {
    if (!eng->HasSupply("Vtt")) {
        EXPECT_EQ(eng->GetSupplyTable()->GetRowNumber(std::string("Vtt 1.25")), -1);
        return;
    }
    std::map<std::string, double> sta, dyn;
    const std::map<std::string, std::string> byCode = {{"33", "Vtt 1.65"},
                                                       {"25", "Vtt 1.25"},
                                                       {"18", "Vtt 0.9"},
                                                       {"15", "Vtt 0.75"},
                                                       {"12", "Vtt 0.6"}};
    for (PD_TABLE* t : {Io(), Bidi(), Term()})
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            const std::string type = t->GetValueAt(r, t->GetColumnIndex("Type"));
            const auto rail = byCode.find(type.substr(type.find_first_of("0123456789"), 2));
            if (rail == byCode.end()) continue;
            for (const char* c : {"Leakage VTT Pwr (W)", "DCbias VTT Pwr (W)"})
                if (t->GetColumnIndex(c) >= 0) sta[rail->second] += Full(t, r, c);
            if (t != Term()) dyn[rail->second] += Full(t, r, "Dyn. VTT Pwr (W)");
        }
    // The unused pins count in LVCMOS12: on "Vtt 0.6".
    sta["Vtt 0.6"] += Full(IoTotal(), 0, "Unused Leakage VTT Pwr (W)") +
                      Full(IoTotal(), 0, "Unused DCbias VTT Pwr (W)");
    ASSERT_GT(sta["Vtt 1.25"], 0.0);
    for (const auto& [code, rail] : byCode) {
        EXPECT_NEAR(Power(rail, 0), sta[rail], 1e-6) << rail;
        EXPECT_NEAR(Power(rail, 1), dyn[rail], 1e-6) << rail;
    }
}

TEST_P(IoSummary, BlockRowIsTheTabsTotalsAndTheSummaryAddsUp) {
    PD_TABLE* block = eng->GetBlockTable();
    const double io = Full(IoTotal(), 0, "Total Pwr (W)");
    const double term = Full(TermTotal(), 0, "Total Pwr (W)");
    ASSERT_GT(term, 0.0);
    EXPECT_NEAR(Num(block->GetValueAt("I/O", "Total (W)")), io + term, 1e-6);

    // The tab's total is every power column of its rows and banks, and its
    // unused row.
    double columns = 0.0;
    for (PD_TABLE* t : {Io(), Bidi(), Banks()})
        for (int c = 0; c < t->GetNumOfColumns(); ++c) {
            const std::string name = t->GetColumnName(c);
            if (name.find("Pwr (W)") == std::string::npos || name == "Dyn. Pwr (W)" ||
                name.compare(0, 7, "Unused ") == 0)
                continue;
            for (int r = 0; r < t->GetNumOfRows(); ++r) columns += Full(t, r, name.c_str());
        }
    for (int c = 2; c < IoTotal()->GetNumOfColumns(); ++c)
        columns += Num(IoTotal()->GetNoRoundValueAt(0, c));
    EXPECT_NEAR(io, columns, 1e-12);

    // Supplies and blocks agree: no I/O power is lost on the way.
    PD_TABLE* power = eng->GetPowerTable();
    EXPECT_NEAR(Num(power->GetValueAt(power->GetNumOfRows() - 1, 2)), Num(eng->GetTotalPower()),
                2e-5);
}

TEST_P(IoSummary, CoreAndAuxiliaryRailsIncludeTheIoColumns) {
    for (const auto& [rail, tag] :
         std::vector<std::pair<const char*, std::string>>{{"Vcc", "VCC"}, {"Vccaux", "VCCAUX"}}) {
        double io = 0.0;
        for (PD_TABLE* t : {Io(), Bidi(), Banks()})
            for (const std::string kind : {"Dyn. ", "Leakage ", "DCbias "}) {
                const std::string c = kind + tag + " Pwr (W)";
                if (t->GetColumnIndex(c.c_str()) < 0) continue;
                for (int r = 0; r < t->GetNumOfRows(); ++r) io += Full(t, r, c.c_str());
            }
        for (const std::string kind : {"Unused Leakage ", "Unused DCbias "})
            io += Full(IoTotal(), 0, (kind + tag + " Pwr (W)").c_str());
        EXPECT_GT(io, 0.0) << rail;
        EXPECT_NEAR(eng->GetStaTable(rail, "I/O", eng->GetPowerMatrix()), io, 1e-6) << rail;
        EXPECT_GE(Power(rail, 2) + 1e-6, io) << rail;
    }
}

INSTANTIATE_TEST_SUITE_P(Devices, IoSummary, ::testing::Values("KZQ2-1200HC", "KZQ2-1200UHC"),
                         [](const auto& info) {
                             std::string n = info.param;
                             n.erase(std::remove(n.begin(), n.end(), '-'), n.end());
                             return n;
                         });

}  // namespace
