// The power of the I/O against hand computations: pins by frequency, load,
// register mode and duty cycle, the external termination, the unused pins of
// a bank; and the I/O rails and blocks of the summary against the columns.
#include <gtest/gtest.h>

#include <algorithm>
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
    EXPECT_NEAR(Cell(Io(), row, "Dyn. VCCIO Pwr (W)"), c.vccioWatts, 1e-12);
    // The row's dynamic power is the sum of its supplies'.
    EXPECT_NEAR(Cell(Io(), row, "Dyn. Pwr (W)"),
                Cell(Io(), row, "Dyn. VCC Pwr (W)") + Cell(Io(), row, "Dyn. VCCIO Pwr (W)") +
                    Cell(Io(), row, "Dyn. VCCAUX Pwr (W)"),
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
    EXPECT_NEAR(Cell(Bidi(), row, "Dyn. VCCIO Pwr (W)"), GetParam().vccioWatts, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Duty, BidiDuty,
                         ::testing::Values(DutyCase{"100", 3.3 * 4.62e-5},
                                           DutyCase{"0", 3.3 * 3.135e-4},
                                           DutyCase{"50", 3.3 * (4.62e-5 + 3.135e-4) / 2}));

// Asleep, the pins' own capacitance is that of the "-sleep" type (none in
// the data), while the load still counts; their static currents stay those
// of the plain types.
TEST_F(IoDesign, SleepingOutputsStillDriveTheirLoad) {
    eng->SetThetaOption("UserDefined", "0");
    eng->SetAmbientTemperature("25");
    const int row = AddRow(Io(), {{"Type", "LVCMOS33"},
                                  {"Bank", "1"},
                                  {"# O/P", "4"},
                                  {"Actual Register Mode", "none"},
                                  {"Output Freq. (MHz)", "20"},
                                  {"Output AF (%)", "25"},
                                  {"Cload (pF)", "10"}});
    eng->Calculate();
    // (4.5 + 10) pF * 3.3 V * 20 MHz * 25 % * 4, times 3.3 V.
    EXPECT_NEAR(Cell(Io(), row, "Dyn. VCCIO Pwr (W)"), 3.1581e-3, 1e-12);
    std::map<std::string, double> awake;
    for (const char* c : {"Leakage VCC Pwr (W)", "Leakage VCCIO Pwr (W)", "Leakage VCCAUX Pwr (W)"})
        awake[c] = Cell(Io(), row, c);
    eng->SetPowerModeType("Sleep");
    eng->Calculate();
    EXPECT_NEAR(Cell(Io(), row, "Dyn. VCCIO Pwr (W)"), 3.1581e-3 * 10 / 14.5, 1e-12);
    for (const auto& [column, watts] : awake) {
        EXPECT_GT(watts, 0.0) << column;
        EXPECT_DOUBLE_EQ(Cell(Io(), row, column.c_str()), watts) << column;
    }
}

// A row's currents don't depend on the rows before it: a project with two
// banks at 3.3 V and 1.8 V gives each row the same watts in either order.
TEST(IoRowOrder, RowsPriceAlikeInAnyOrder) {
    const std::map<std::string, std::string> rows[] = {
        {{"SignalName", "a"}, {"Type", "LVCMOS33"}, {"Bank", "1"}, {"IP", "3"}, {"OP", "2"}},
        {{"SignalName", "b"}, {"Type", "LVCMOS18"}, {"Bank", "2"}, {"IP", "3"}, {"OP", "2"}}};
    const char* const columns[] = {"Leakage VCCIO Pwr (W)", "DCbias VCCIO Pwr (W)",
                                   "Leakage VCCAUX Pwr (W)", "Leakage VCC Pwr (W)"};
    std::map<std::string, std::vector<double>> first;
    for (int order = 0; order < 2; ++order) {
        pwctest::DeviceStrings dev;
        dev.device = "KZQ2-640ZE";
        dev.package = "TG100";
        auto project = pwctest::DefaultProject();
        auto* io = dynamic_cast<PD_TBLSECT*>(project->GetSection("Input Output"));
        ASSERT_NE(io, nullptr);
        AddRow(io, rows[order]);
        AddRow(io, rows[1 - order]);
        auto eng = pwctest::MakeEngine(dev, project.get());
        PD_TABLE* table = pwctest::TabTable(*eng, "I/O", "Input Output");
        for (int r = 0; r < 2; ++r) {
            const std::string name = table->GetValueAt(r, table->GetColumnIndex("Signal Name"));
            std::vector<double> watts;
            for (const char* c : columns) watts.push_back(Cell(table, r, c));
            if (order == 0)
                first[name] = watts;
            else
                for (size_t c = 0; c < watts.size(); ++c)
                    EXPECT_DOUBLE_EQ(watts[c], first[name][c]) << name << " " << columns[c];
        }
    }
    EXPECT_GT(first["a"][0], 0.0);
    EXPECT_GT(first["b"][0], 0.0);
}

// Only the "Bidi" table shares its pins' time between the sides: the
// bidirectional pins of "Input Output" count on both, whatever the duty
// cycle. Two pins at 3.3 V: inputs 1.4 pF at 10 MHz, 50 %; outputs
// 4.5 + 5 pF at 20 MHz, 25 %.
class BidiOfInputOutput : public IoDesign, public ::testing::WithParamInterface<const char*> {};

TEST_P(BidiOfInputOutput, CountOnBothSides) {
    const int row = AddRow(Io(), {{"Type", "LVCMOS33"},
                                  {"Bank", "1"},
                                  {"# Bidi", "2"},
                                  {"Actual Register Mode", "none"},
                                  {"Input Freq. (MHz)", "10"},
                                  {"Input AF (%)", "50"},
                                  {"Output Freq. (MHz)", "20"},
                                  {"Output AF (%)", "25"},
                                  {"Duty Cycle (%)", GetParam()},
                                  {"Cload (pF)", "5"}});
    eng->Calculate();
    const double in = 1.4e-12 * 3.3 * 10e6 * 0.5 * 2;
    const double out = 9.5e-12 * 3.3 * 20e6 * 0.25 * 2;
    EXPECT_NEAR(Cell(Io(), row, "Dyn. VCCIO Pwr (W)"), 3.3 * (in + out), 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Duty, BidiOfInputOutput, ::testing::Values("0", "50", "100"));

// The VCC and VCCAUX dynamic and the VCC bias members go by the table's
// name: "Bidi" is a table of the VCC dynamic selector only.
TEST_F(IoDesign, SelectorsLeaveTheBidiTableOffVccaux) {
    const std::map<std::string, std::string> cells{
        {"Type", "LVCMOS33"},  {"Bank", "1"},    {"Actual Register Mode", "none"},
        {"Freq. (MHz)", "10"}, {"AF (%)", "50"}, {"Duty Cycle (%)", "50"},
        {"Cload (pF)", "5"}};
    auto bidiCells = cells;
    bidiCells["# Bidi"] = "2";
    const int bidi = AddRow(Bidi(), bidiCells);
    const int io = AddRow(Io(), {{"Type", "LVCMOS33"},
                                 {"Bank", "1"},
                                 {"# O/P", "2"},
                                 {"Actual Register Mode", "none"},
                                 {"Output Freq. (MHz)", "10"},
                                 {"Output AF (%)", "50"}});
    eng->Calculate();
    EXPECT_GT(Cell(Io(), io, "Dyn. VCCAUX Pwr (W)"), 0.0);
    EXPECT_EQ(Cell(Bidi(), bidi, "Dyn. VCCAUX Pwr (W)"), 0.0);
    EXPECT_EQ(Cell(Bidi(), bidi, "DCbias VCC Pwr (W)"), 0.0);
    // VCC: 0.05 pF in and 0.08 pF out (no load there), each half the time.
    const double vcc = Num(eng->GetVDPMCategory("Vcc", "Voltage", "-1"));
    const double perSide = vcc * 10e6 * 0.5 * 2 * 0.5;
    EXPECT_NEAR(Cell(Bidi(), bidi, "Dyn. VCC Pwr (W)"), (0.05e-12 + 0.08e-12) * perSide * vcc,
                1e-15);
    int n = 0;
    const auto names = eng->GetArrayOfColumnNames(Bidi(), &n);
    const auto values = eng->GetArrayOfColumnValues(Bidi(), bidi, &n);
    eng->InitConstants(names, values);
    EXPECT_EQ(eng->ProcessFormulaDynVccaux("Bidi", names, values), 0.0);
    EXPECT_EQ(eng->ProcessFormulaBiasUsedVcc("Bidi", names, values), 0.0);
}

// A bank's cells decide its pins' standby; the standby keys of the settings
// only tell the host what it may offer. Two LVCMOS33 inputs at 25 C, 3.3 V:
// per pin 0.02 uA (0.005 uA standing by) and the block's 0.05 uA, times
// e^(0.02 * 25).
struct StandbyCase {
    const char* name;
    bool key;
    const char* cell;
    const char* offered;
    double pinMicroamps;
};

class InputStandby : public IoDesign, public ::testing::WithParamInterface<StandbyCase> {};

TEST_P(InputStandby, FollowsTheBankCell) {
    const StandbyCase& c = GetParam();
    if (c.key) {
        auto* settings = dynamic_cast<PD_KEYSECT*>(project->GetSection("Settings"));
        ASSERT_NE(settings, nullptr);
        settings->AddKeyVal("DisableInRd1", "true");
        eng = pwctest::MakeEngine(dev, project.get());
    }
    eng->SetThetaOption("UserDefined", "0");
    eng->SetAmbientTemperature("25");
    const int bank = Banks()->GetRowNumber(std::string("1"));
    Banks()->SetValueAt(c.cell, bank, Banks()->GetColumnIndex("Allow InRD Shut-off"));
    const int row = AddRow(Io(), {{"Type", "LVCMOS33"}, {"Bank", "1"}, {"# I/P", "2"}});
    eng->Calculate();
    EXPECT_EQ(eng->GetBankInrd(bank), c.offered);
    EXPECT_NEAR(Cell(Io(), row, "Leakage VCCIO Pwr (W)"),
                2 * (c.pinMicroamps + 0.05) * 1e-6 * std::exp(0.02 * 25) * 3.3, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(Cells, InputStandby,
                         ::testing::Values(StandbyCase{"Plain", false, "No", "No", 0.02},
                                           StandbyCase{"CellAllows", false, "Yes", "Yes", 0.005},
                                           StandbyCase{"KeyAlone", true, "No", "Yes", 0.02}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(IoDesign, LogShowsTheBankVoltageAsText) {
    AddRow(Io(), {{"Type", "LVCMOS33"},
                  {"Bank", "0"},
                  {"# O/P", "1"},
                  {"Actual Register Mode", "none"},
                  {"Output Freq. (MHz)", "10"},
                  {"Output AF (%)", "50"}});
    const std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
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
    EXPECT_NEAR(Cell(Term(), row, "DCbias VCCIO Pwr (W)"), watts, 1e-11);
    EXPECT_NEAR(Cell(Term(), row, "Termination Pwr (W)"), watts, 1e-11);
    EXPECT_NEAR(Cell(TermTotal(), 0, "Total Termination Pwr (W)"), watts, 1e-11);
    EXPECT_NEAR(Cell(TermTotal(), 0, "Total Pwr (W)"), watts, 1e-11);
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
    const std::string log = pwctest::CaptureCalcLog(
        [&] { current = eng->ProcessExtOutTerm("I/O Term", names, values); });
    EXPECT_EQ(current, 0.0);
    EXPECT_EQ(log,
              "Termination Calculation iff vthLoad > 0 && IsDifferentialTrue(c_type) == 0 && "
              "(input > 0 || output > 0 || bidi > 0)\nIsDifferentialTrue(c_type) = " +
                  std::string(c.differential) + "\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, InactiveTermination,
                         ::testing::Values(InactiveCase{"SSTL25_I", "0", "False"},
                                           InactiveCase{"LVDS25", "1.2", "True"}));

// On VTT the termination tab prices the row's pins as the I/O data have them
// on that supply: the referenced inputs' divider, 10 uA a pin, the outputs
// nothing; at "Vtt 1.25" for a bank at 2.5 V.
TEST_F(IoDesign, TerminationRowsOnVttDrawTheirPinsBias) {
    // KZQ2-1200UHC has the termination supplies.
    Build("zn2c00", "KZQ2-1200UHC", "CABGA256");
    ASSERT_TRUE(eng->HasSupply("Vtt"));
    SetBank("3", "Vccio 2.5");
    const int row = AddRow(Term(), {{"Type", "SSTL25_I"},
                                    {"Bank", "3"},
                                    {"# I/P", "3"},
                                    {"# O/P", "2"},
                                    {"Rth (Ohm)", "50"},
                                    {"Vth (V)", "1.25"}});
    eng->Calculate();
    EXPECT_NEAR(Cell(Term(), row, "DCbias VTT Pwr (W)"), 3 * 0.01e-3 * 1.25, 1e-15);
    // Two drivers into their networks (as the SSTL25_I case above) on VCCIO.
    EXPECT_NEAR(Cell(Term(), row, "DCbias VCCIO Pwr (W)"), 2 * 0.002777777778 * 2.5, 1e-9);
    EXPECT_NEAR(Cell(Term(), row, "Termination Pwr (W)"),
                Cell(Term(), row, "DCbias VCCIO Pwr (W)") + Cell(Term(), row, "DCbias VTT Pwr (W)"),
                1e-15);
}

// The I/O rows' VTT goes by the VTT of their bank's code, logged per kind.
TEST_F(IoDesign, IoRowsOnVttAtTheirCodesSupply) {
    Build("zn2c00", "KZQ2-1200UHC", "CABGA256");
    SetBank("3", "Vccio 2.5");
    const int row = AddRow(Io(), {{"Type", "SSTL25_I"},
                                  {"Bank", "3"},
                                  {"# I/P", "4"},
                                  {"Actual Register Mode", "none"},
                                  {"Input Freq. (MHz)", "50"},
                                  {"Input AF (%)", "20"}});
    const std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    EXPECT_NEAR(Cell(Io(), row, "DCbias VTT Pwr (W)"), 4 * 0.01e-3 * 1.25, 1e-15);
    EXPECT_EQ(Cell(Io(), row, "Dyn. VTT Pwr (W)"), 0.0);  // no input C on VTT
    EXPECT_GT(Cell(Io(), row, "Leakage VTT Pwr (W)"), 0.0);
    for (const char* piece : {"PowerDynVtt row(0) = IccDynVtt * v = 0.0000e+00 * 1.250 = ",
                              "PowerLeakUsedVtt row(0) = IccLeakUsedVtt * v = ",
                              "PowerBiasUsedVtt row(0) = IccBiasUsedVtt * v = 4.0000e-05 * 1.250 = "
                              "5.0000e-05"})
        EXPECT_NE(log.find(piece), std::string::npos) << piece;
}

// ---- A bank's own terms ------------------------------------------------------------

// Bank 2 of KZQ2-640ZE without rows, by hand from "IO BANK REFS" (D in mA):
// the baseline, the pull term unless "Pullmode" says "none", the slew-rate
// bias last; a blank bank its blank term alone (nothing).
struct BankBiasCase {
    const char* name;
    const char* pullmode;
    const char* blank;
    const char* supply;
    double milliamps;
};

class BankBias : public IoDesign, public ::testing::WithParamInterface<BankBiasCase> {};

TEST_P(BankBias, AddsItsTerms) {
    const BankBiasCase& c = GetParam();
    const std::vector<std::string> names{"Bank", "Pullmode", "Blank"};
    const std::vector<std::string> values{"2", c.pullmode, c.blank};
    eng->InitConstants(names, values);
    EXPECT_NEAR(eng->ProcessBankBias("Bank Voltage", names, values, c.supply), c.milliamps * 1e-3,
                1e-15);
}

INSTANTIATE_TEST_SUITE_P(
    Cells, BankBias,
    ::testing::Values(BankBiasCase{"AuxWithSlewBias", "0.0", "0.0", "VCCAUX", 0.03 + 0.012},
                      BankBiasCase{"VccioWithPull", "0.0", "0.0", "VCCIO", 0.02 + 0.006},
                      BankBiasCase{"VccioWithoutPull", "none", "0.0", "VCCIO", 0.02},
                      BankBiasCase{"Blank", "0.0", "Yes", "VCCAUX", 0.0}),
    [](const auto& info) { return std::string(info.param.name); });

// The slew-rate bias is every bank's, whether it drives and whatever its
// "Slewrate" cell says.
struct SlewCase {
    const char* slewrate;
    int outputs;
};

class SlewBias : public IoDesign, public ::testing::WithParamInterface<SlewCase> {};

TEST_P(SlewBias, IsOnEveryBank) {
    const int bank = Banks()->GetRowNumber(std::string("2"));
    Banks()->SetValueAt(GetParam().slewrate, bank, Banks()->GetColumnIndex("Slewrate"));
    if (GetParam().outputs) AddRow(Io(), {{"Type", "LVCMOS33"}, {"Bank", "2"}, {"# O/P", "2"}});
    SetBank("2", "Vccio 3.3");
    eng->Calculate();
    const double vccaux = Num(eng->GetVDPMCategory("Vccaux", "Voltage", "-1"));
    // A single-ended output adds "_SE_OUT", nothing on VCCAUX.
    EXPECT_NEAR(Cell(Banks(), bank, "DCbias VCCAUX Pwr (W)"), (0.03 + 0.012) * 1e-3 * vccaux,
                1e-15);
}

INSTANTIATE_TEST_SUITE_P(Banks, SlewBias,
                         ::testing::Values(SlewCase{"No", 0}, SlewCase{"Yes", 0}, SlewCase{"No", 2},
                                           SlewCase{"Yes", 2}));

TEST_F(IoDesign, BankLeakageIsLoggedBeforeBankBias) {
    const std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    std::vector<size_t> at;
    for (const char* head :
         {"PowerLeakBankvcc row(0)", "PowerLeakBankvccio row(0)", "PowerLeakBankvccaux row(0)",
          "PowerBiasBankvcc row(0)", "PowerBiasBankvccio row(0)", "PowerBiasBankvccaux row(0)"}) {
        at.push_back(log.find(head));
        EXPECT_NE(at.back(), std::string::npos) << head;
    }
    EXPECT_TRUE(std::is_sorted(at.begin(), at.end()));
}

// ---- Types by name ----------------------------------------------------------------------

// Where a type keeps its name ("zn2c00a"), its coefficients are those of the
// standard's member: LVCMOS33 5 pF against the PIO type's 4.5 pF; a type
// with attributes has none, and only its load switches. Four outputs, 10 pF
// load, 20 MHz, 25 %, 3.3 V.
struct ByNameCase {
    const char* arch;
    const char* type;
    double ownPicofarads;
};

class TypesByName : public IoDesign, public ::testing::WithParamInterface<ByNameCase> {};

TEST_P(TypesByName, PriceTheirPins) {
    const ByNameCase& c = GetParam();
    Build(c.arch, "KZQ2-1200HC", "CABGA256");
    const int row = AddRow(Io(), {{"Type", c.type},
                                  {"Bank", "1"},
                                  {"# O/P", "4"},
                                  {"Actual Register Mode", "none"},
                                  {"Output Freq. (MHz)", "20"},
                                  {"Output AF (%)", "25"},
                                  {"Cload (pF)", "10"}});
    eng->Calculate();
    EXPECT_NEAR(Cell(Io(), row, "Dyn. VCCIO Pwr (W)"),
                (c.ownPicofarads + 10) * 1e-12 * 3.3 * 20e6 * 0.25 * 4 * 3.3, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Archs, TypesByName,
                         ::testing::Values(ByNameCase{"zn2c00", "LVCMOS33", 4.5},
                                           ByNameCase{"zn2c00a", "LVCMOS33", 5},
                                           ByNameCase{"zn2c00a", "LVCMOS33-DRIVE:8mA", 0}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

// ---- Unused pins ------------------------------------------------------------------------

struct UnusedCase {
    int outputs;
    int unused;
};

class UnusedPins : public IoDesign, public ::testing::WithParamInterface<UnusedCase> {};

// Bank 0 of KZQ2-640ZE in TG100 bonds 20 pins. With theta 0 the junction is
// the ambient, 25 C. Each of the 20 pins counts A = 0.002 uA of the unused
// type (an LVCMOS12 input), each free pin the block's 0.05 uA, times
// e^(0.02 * 25) (the evaluator reads the base 2.718282 as e), at K 1 and 3.3 V.
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
    const double scale = std::exp(0.02 * 25) * 3.3;
    const int bank0 = Banks()->GetRowNumber(std::string("0"));
    EXPECT_NEAR(Cell(Banks(), bank0, "Unused Leakage VCCIO Pwr (W)"),
                (0.002e-6 * 20 + 0.05e-6 * c.unused) * scale, 1e-15);
    // The panel's row holds what the banks sum to.
    double banks = 0.0;
    for (int r = 0; r < Banks()->GetNumOfRows(); ++r)
        banks += Cell(Banks(), r, "Unused Leakage VCCIO Pwr (W)");
    EXPECT_NEAR(Cell(IoTotal(), 0, "Unused Leakage VCCIO Pwr (W)"), banks, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, UnusedPins, ::testing::Values(UnusedCase{5, 15}, UnusedCase{20, 0}, UnusedCase{26, -6}),
    [](const auto& info) { return "Used" + std::to_string(info.param.outputs); });

TEST_F(IoDesign, UnusedPinsOfTheWholeDeviceOnTheDefaultVoltage) {
    setenv("PWC_UNUSED_IO_DEVICE", "1", 1);
    eng->Calculate();
    unsetenv("PWC_UNUSED_IO_DEVICE");
    for (int r = 0; r < Banks()->GetNumOfRows(); ++r)
        EXPECT_EQ(Cell(Banks(), r, "Unused Leakage VCCIO Pwr (W)"), 0.0);
    EXPECT_GT(Cell(IoTotal(), 0, "Unused Leakage VCCIO Pwr (W)"), 0.0);
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
    const std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
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
                             ? Cell(t, r, "Dyn. VCCIO Pwr (W)")
                             : 0.0;
            for (const char* c : {"Leakage VCCIO Pwr (W)", "DCbias VCCIO Pwr (W)",
                                  "Unused Leakage VCCIO Pwr (W)", "Unused DCbias VCCIO Pwr (W)"})
                if (t->GetColumnIndex(c) >= 0) sta[rail] += Cell(t, r, c);
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
                if (t->GetColumnIndex(c) >= 0) sta[rail->second] += Cell(t, r, c);
            if (t != Term()) dyn[rail->second] += Cell(t, r, "Dyn. VTT Pwr (W)");
        }
    // The unused pins count in LVCMOS12: on "Vtt 0.6".
    sta["Vtt 0.6"] += Cell(IoTotal(), 0, "Unused Leakage VTT Pwr (W)") +
                      Cell(IoTotal(), 0, "Unused DCbias VTT Pwr (W)");
    ASSERT_GT(sta["Vtt 1.25"], 0.0);
    for (const auto& [code, rail] : byCode) {
        EXPECT_NEAR(Power(rail, 0), sta[rail], 1e-6) << rail;
        EXPECT_NEAR(Power(rail, 1), dyn[rail], 1e-6) << rail;
    }
}

TEST_P(IoSummary, BlockRowIsTheTabsTotalsAndTheSummaryAddsUp) {
    PD_TABLE* block = eng->GetBlockTable();
    const double io = Cell(IoTotal(), 0, "Total Pwr (W)");
    const double term = Cell(TermTotal(), 0, "Total Pwr (W)");
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
            for (int r = 0; r < t->GetNumOfRows(); ++r) columns += Cell(t, r, name.c_str());
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
                for (int r = 0; r < t->GetNumOfRows(); ++r) io += Cell(t, r, c.c_str());
            }
        for (const std::string kind : {"Unused Leakage ", "Unused DCbias "})
            io += Cell(IoTotal(), 0, (kind + tag + " Pwr (W)").c_str());
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
