// SERDES and PCS: the Tx driver's slices on their own and through the engine,
// channel rows worked out by hand, the Orvan4 forms by "Mode", the transmit
// PLLs, and the totals of the new architectures.
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "dcu_calc.h"
#include "highspeed_fixture.h"

namespace {

using namespace hstest;

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

// ---- The driver's slices ----------------------------------------------------------

// The slices' total in microamperes, by the codes the routine wrote.
int SliceTotal(std::map<std::string, std::string>& map) {
    int total = 0;
    for (int s = 0; s < 6; ++s) {
        const std::string code = map["TDRV_SLICE" + std::to_string(s) + "_CUR"];
        EXPECT_EQ(code.substr(0, 2), "0b");
        EXPECT_EQ(code.size(), s < 2 ? 5u : 4u) << "slice " << s;
        const int value = static_cast<int>(std::strtol(code.c_str() + 2, nullptr, 2));
        total += s < 2 ? 100 * (value + 1) : 800 * (value + 1);
    }
    return total;
}

std::map<std::string, std::string> Settings(const std::string& amplitude, int ohms, int pre,
                                            int post) {
    return {{"CH_MODE", "8B10B"},
            {"TXAMPLITUDE", amplitude},
            {"TXDIFFTERM", std::to_string(ohms)},
            {"TXDEPRE", std::to_string(pre)},
            {"TXDEPOST", std::to_string(post)}};
}

struct DriverCase {
    int millivolts, ohms, pre, post;
};

class DriverSlices : public ::testing::TestWithParam<DriverCase> {};

TEST_P(DriverSlices, GiveBackTheIntendedCurrentWithinOneStep) {
    const DriverCase c = GetParam();
    auto map = Settings(std::to_string(c.millivolts), c.ohms, c.pre, c.post);
    ASSERT_EQ(DCU_CALC::calc_tdrv_slice_vals(map), 0);
    const double intended = 1000.0 * c.millivolts / c.ohms * (1.0 + (c.pre + c.post) / 20.0);
    EXPECT_LE(std::fabs(SliceTotal(map) - intended), DCU_CALC::kFineStep);
}

INSTANTIATE_TEST_SUITE_P(Settings, DriverSlices,
                         ::testing::Values(DriverCase{800, 100, 0, 2}, DriverCase{400, 100, 0, 0},
                                           DriverCase{1300, 100, 0, 0}, DriverCase{1000, 150, 3, 4},
                                           DriverCase{600, 100, 0, 5}, DriverCase{110, 50, 10, 10},
                                           DriverCase{700, 100, 10, 10}));

TEST(DriverSlicesAlone, TheDocumentedExample) {
    auto map = Settings("800", 100, 0, 2);
    ASSERT_EQ(DCU_CALC::calc_tdrv_slice_vals(map), 0);
    EXPECT_EQ(map["TDRV_SLICE0_CUR"], "0b011");
    EXPECT_EQ(map["TDRV_SLICE1_CUR"], "0b011");
    EXPECT_EQ(map["TDRV_SLICE2_CUR"], "0b10");
    EXPECT_EQ(map["TDRV_SLICE5_CUR"], "0b01");
    EXPECT_EQ(SliceTotal(map), 8800);
}

TEST(DriverSlicesAlone, PresetCodesAndMonotoneInAmplitude) {
    auto code = Settings("4", 100, 0, 0);  // preset 4: 800 mV
    auto mv = Settings("800", 100, 0, 0);
    ASSERT_EQ(DCU_CALC::calc_tdrv_slice_vals(code), 0);
    ASSERT_EQ(DCU_CALC::calc_tdrv_slice_vals(mv), 0);
    EXPECT_EQ(SliceTotal(code), SliceTotal(mv));
    int previous = 0;
    for (int amplitude = 340; amplitude <= 1300; amplitude += 20) {
        auto map = Settings(std::to_string(amplitude), 100, 0, 1);
        ASSERT_EQ(DCU_CALC::calc_tdrv_slice_vals(map), 0) << amplitude;
        const int total = SliceTotal(map);
        EXPECT_GE(total, previous) << amplitude;
        previous = total;
    }
}

TEST(DriverSlicesAlone, CombinationsTheDriverCannotMake) {
    const std::map<std::string, std::map<std::string, std::string>> cases = {
        {"no amplitude", Settings("", 100, 0, 0)},
        {"amplitude above range", Settings("1320", 100, 0, 0)},
        {"amplitude text", Settings("8x", 100, 0, 0)},
        {"termination too low", Settings("800", 20, 0, 0)},
        {"taps above the main current", Settings("800", 100, 12, 10)},
        {"too little current", Settings("200", 100, 0, 0)},
        {"too much current", Settings("1300", 50, 0, 0)},
    };
    for (auto [name, map] : cases) {
        map["TDRV_SLICE3_CUR"] = "0b11";
        EXPECT_NE(DCU_CALC::calc_tdrv_slice_vals(map), 0) << name;
        for (int s = 0; s < 6; ++s)
            EXPECT_EQ(map["TDRV_SLICE" + std::to_string(s) + "_CUR"], "") << name;
    }
}

// ---- The driver through the engine's "LPRE_TOTAL" ------------------------------------

const char* const kLpreError = "Wrong combination for Tx driver pre/post emphasis calculator!";

struct LpreRow {
    HsEngine eng{kOrvan3};
    PD_TABLE* pcs = Table(*eng, "SERDES", "PCS");
    int row = pwctest::AddRow(pcs, {{"Mode", "8B10B"},
                                    {"# Channels", "1"},
                                    {"Freq. (MHz)", "250"},
                                    {"Allow Standby", "Disable"},
                                    {"TX Pre-emphasis", "Enabled"},
                                    {"Differential Amplitude", "800"},
                                    {"Output Termination", "100 Ohm"},
                                    {"De-emphasis Pre-cursor Select", "Disabled"},
                                    {"De-emphasis Post-cursor Select", "2"}});
    std::string Total(const std::string& amplitude, const std::string& ohms, const std::string& pre,
                      const std::string& post) {
        Set(pcs, row, "Differential Amplitude", amplitude);
        Set(pcs, row, "Output Termination", ohms);
        Set(pcs, row, "De-emphasis Pre-cursor Select", pre);
        Set(pcs, row, "De-emphasis Post-cursor Select", post);
        return eng->GetSerdesLpretotal(pcs, row, pcs->GetColumnIndex("LPRE_TOTAL"));
    }
    int ErrorCount() const {
        size_t n = 0, at = 0;
        while ((at = eng.eng->DrcMessage.find(kLpreError, at)) != std::string::npos) ++n, ++at;
        return static_cast<int>(n);
    }
};

TEST(TxDriverTotal, SlicesInAmperesWrittenToTheCell) {
    LpreRow r;
    EXPECT_EQ(r.Total("800", "100 Ohm", "Disabled", "2"), "0.008800");
    EXPECT_STREQ(r.pcs->GetValueAt(r.row, r.pcs->GetColumnIndex("LPRE_TOTAL")), "0.008800");
    // The row's formulas see the same text.
    fabtest::Row seen = fabtest::RowOf(*r.eng, r.pcs, r.row);
    EXPECT_EQ(seen.Value("LPRE_TOTAL"), "0.008800");
    EXPECT_EQ(r.ErrorCount(), 0);
}

TEST(TxDriverTotal, AmplitudesThatCountAndThoseThatDoNot) {
    LpreRow r;
    // 110 mV counts: 2.2 mA main current into 50 ohms, doubled by the taps.
    EXPECT_EQ(r.Total("110", "50 Ohm", "10", "10"), "0.004400");
    EXPECT_EQ(r.ErrorCount(), 0);
    const int errors = r.eng->DrcErrorCount;
    // 105 and 1320 don't: the amplitude stays unset and the routine fails,
    // leaving six first-step slices; the complaint is made once.
    EXPECT_EQ(r.Total("105", "50 Ohm", "10", "10"), "0.003400");
    EXPECT_EQ(r.Total("1320", "100 Ohm", "Disabled", "Disabled"), "0.003400");
    EXPECT_EQ(r.ErrorCount(), 1);
    EXPECT_EQ(r.eng->DrcErrorCount, errors + 1);
}

TEST(TxDriverTotal, ResetVariableZeroesTheTotalButKeepsTheReport) {
    LpreRow r;
    setenv("PWC_RESET_LPRE_TOTAL", "1", 1);
    const std::string good = r.Total("800", "100 Ohm", "Disabled", "2");
    const std::string bad = r.Total("800", "100 Ohm", "15", "10");
    unsetenv("PWC_RESET_LPRE_TOTAL");
    EXPECT_EQ(good, "0.000000");
    EXPECT_EQ(bad, "0.000000");
    EXPECT_EQ(r.ErrorCount(), 1);
}

TEST(TxDriverTotal, AbsentColumnGivesNoText) {
    HsEngine eng(kOrvan3);
    PD_TABLE* logic = Table(*eng, "Logic Block", "Logic");
    pwctest::AddRow(logic, {});
    EXPECT_EQ(eng->GetSerdesLpretotal(logic, 0, 0), "");
}

// ---- Channel rows by hand -----------------------------------------------------------------

// Two 8B10B channels at 250 MHz on OR3-40: C in pF, V in volts, F in Hz, the
// equations' "AF" 100 %, DPM 1.
TEST(PcsRow, WorkedOutOnTwoSuppliesAndTheDriverSupply) {
    LpreRow r;
    Set(r.pcs, r.row, "# Channels", "2");
    r.eng->Calculate();
    const double vcc = 1.1, vcca = 1.1, vcchtx = 1.2, f = 250e6, n = 2;
    // VCC: the PCS of the mode (20 pF); the SERDES IO has no VCC, the row no routing.
    EXPECT_NEAR(Cell(r.pcs, r.row, "Dyn. VCC Pwr (W)"), vcc * (20e-12 * vcc * f * n), 1e-12);
    // VCCA: the PCS (2 pF), the serializer (10 pF) and the deserializer (14 pF).
    EXPECT_NEAR(Cell(r.pcs, r.row, "Dyn. VCCA Pwr (W)"),
                vcca * ((2 + 10 + 14) * 1e-12 * vcca * f * n), 1e-12);
    // VCCHTX: the driver's own 0.5 mA and its slices, per channel.
    EXPECT_NEAR(Cell(r.pcs, r.row, "DCbias VCCHTX Pwr (W)"), vcchtx * (0.5e-3 + 0.0088) * n, 1e-12);
    // The row's plain dynamic column sums its supplies.
    double dyn = 0;
    for (const char* s : {"VCC", "VCCA", "VCCHTX", "VCCHRX", "VCCAUXA"})
        dyn += Cell(r.pcs, r.row, std::string("Dyn. ") + s + " Pwr (W)");
    EXPECT_NEAR(Cell(r.pcs, r.row, "Dyn. Pwr (W)"), dyn, 1e-15);
}

TEST(PcsRow, DisabledEmphasisTakesItsOwnEntryAndNoSlices) {
    LpreRow r;
    Set(r.pcs, r.row, "TX Pre-emphasis", "Disabled");
    r.eng->Calculate();
    // "TX_DISABLED": 8 pF serializer, and its bias without the slices.
    EXPECT_NEAR(Cell(r.pcs, r.row, "Dyn. VCCA Pwr (W)"), 1.1 * ((2 + 8 + 14) * 1e-12 * 1.1 * 250e6),
                1e-12);
    EXPECT_NEAR(Cell(r.pcs, r.row, "DCbias VCCHTX Pwr (W)"), 1.2 * 0.5e-3, 1e-12);
}

TEST(PcsRow, StandbyTakesTheStandbyEntriesAndRecords) {
    LpreRow r;
    Set(r.pcs, r.row, "Allow Standby", "Enable");
    r.eng->Calculate();
    // "8B10B_standby": 0.5 pF on VCC; the PCS block's standby record 0.05 mA.
    EXPECT_NEAR(Cell(r.pcs, r.row, "Dyn. VCC Pwr (W)"), 1.1 * 0.5e-12 * 1.1 * 250e6, 1e-12);
    EXPECT_NEAR(Cell(r.pcs, r.row, "DCbias VCC Pwr (W)"), 1.1 * 0.05e-3, 1e-12);
    // The channel's references stand by at 0.2 mA instead of 1 mA.
    EXPECT_NEAR(Cell(r.pcs, r.row, "DCbias VCCAUXA Pwr (W)"), 2.5 * 0.2e-3, 1e-12);
}

TEST(PcsRow, EmptyModeIsReportedAndKeepsTheBlockTerm) {
    LpreRow r;
    Set(r.pcs, r.row, "Mode", "");
    const std::string log = pwctest::CaptureCalcLog([&] { r.eng->Calculate(); });
    EXPECT_NE(log.find("Error: PCS mode not specified!"), std::string::npos);
    EXPECT_NE(log.find("IccBiasPCSdfb"), std::string::npos);
    EXPECT_NEAR(Cell(r.pcs, r.row, "Dyn. VCC Pwr (W)"), 0.0, 1e-15);
    // No mode entry, but the PCS block's 0.2 mA record for the channel stays.
    EXPECT_NEAR(Cell(r.pcs, r.row, "DCbias VCC Pwr (W)"), 1.1 * 0.2e-3, 1e-12);
    EXPECT_GT(Cell(r.pcs, r.row, "Dyn. VCCA Pwr (W)"), 0.0);  // the analogue part still runs
}

TEST(TxDriverTotal, CellsReadByTheirLeadingNumber) {
    LpreRow r;
    EXPECT_EQ(r.Total("800 mV", "100 Ohm", "Disabled", "2.0"), "0.008800");
    EXPECT_EQ(r.Total(" 800", "100 Ohm", "0 steps", "2 steps"), "0.008800");
    EXPECT_EQ(r.ErrorCount(), 0);
    // A fraction of a step is no setting the driver has.
    EXPECT_EQ(r.Total("800 mV", "100 Ohm", "Disabled", "2.5"), "0.003400");
    EXPECT_EQ(r.ErrorCount(), 1);
}

// ---- The Orvan4 forms by "Mode" -----------------------------------------------------------

struct ModeCase {
    const char* mode;
    bool tx, rx;
};

class Orvan4Mode : public ::testing::TestWithParam<ModeCase> {};

// One channel, Tx at 2500 and Rx at 1250 MHz, loss-of-signal detection on.
TEST_P(Orvan4Mode, HalvesRunByMode) {
    const ModeCase c = GetParam();
    HsEngine eng(kOrvan4UM);
    PD_TABLE* pcs = Table(*eng, "SERDES", "PCS");
    const int row = pwctest::AddRow(pcs, {{"Mode", c.mode},
                                          {"# Channels", "1"},
                                          {"Tx Data Rate (MHz)", "2500"},
                                          {"Rx Data Rate (MHz)", "1250"},
                                          {"Allow Standby", "Disable"},
                                          {"Receive Loss-of-Signal Port", "Enabled"}});
    eng->Calculate();
    // Loss-of-signal detection runs on any channel that isn't disabled.
    const double tx = c.tx, rx = c.rx, los = c.tx || c.rx;
    // VCC at 1.0 V: PCS_TX 0.8 pF at the Tx rate, PCS_RX 1.0 pF and LOS 0.02 pF at the Rx rate.
    EXPECT_NEAR(Cell(pcs, row, "Dyn. VCC Pwr (W)"),
                0.8e-12 * 2500e6 * tx + 1.0e-12 * 1250e6 * rx + 0.02e-12 * 1250e6 * los, 1e-12);
    // VCCHTX 1.2 V: the driver's 7.5 mA; VCCHRX: the receiver's 3.5 mA and LOS 0.3 mA.
    EXPECT_NEAR(Cell(pcs, row, "DCbias VCCHTX Pwr (W)"), 1.2 * 7.5e-3 * tx, 1e-12);
    EXPECT_NEAR(Cell(pcs, row, "DCbias VCCHRX Pwr (W)"), 1.2 * (3.5e-3 * rx + 0.3e-3 * los), 1e-12);
    // The block record on VCCAUXA while any half runs.
    EXPECT_NEAR(Cell(pcs, row, "DCbias VCCAUXA Pwr (W)"),
                1.8 * ((tx || rx ? 0.8e-3 : 0.0) + 0.2e-3 * rx), 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Modes, Orvan4Mode,
                         ::testing::Values(ModeCase{"Tx Only", true, false},
                                           ModeCase{"Rx Only", false, true},
                                           ModeCase{"Tx Rx", true, true},
                                           ModeCase{"Disabled", false, false},
                                           ModeCase{"", true, true}),
                         [](const ::testing::TestParamInfo<ModeCase>& info) {
                             std::string name;
                             for (const char* m = info.param.mode; *m; ++m)
                                 if (std::isalnum(static_cast<unsigned char>(*m))) name += *m;
                             return name.empty() ? std::string("Empty") : name;
                         });

TEST(SerdesAux, TransmitPllPricedWhenOnItsEquationHalvingTheLineRate) {
    HsEngine eng(kOrvan4UM);
    PD_TABLE* aux = Table(*eng, "SERDES", "SERDES AUX");
    const int on = pwctest::AddRow(
        aux, {{"TXPLL", "ON"}, {"Tx Max Data Rate (Gbps)", "5"}, {"Allow Standby", "Disable"}});
    const int off = pwctest::AddRow(
        aux, {{"TXPLL", "OFF"}, {"Tx Max Data Rate (Gbps)", "5"}, {"Allow Standby", "Disable"}});
    eng->Calculate();
    EXPECT_NEAR(Cell(aux, on, "Dyn. VCCA Pwr (W)"), 1.0 * 0.8e-12 * 1.0 * 2.5e9, 1e-12);
    EXPECT_NEAR(Cell(aux, on, "DCbias VCCAUXA Pwr (W)"), 1.8 * (1.5e-3 + 0.2e-3), 1e-12);
    EXPECT_EQ(Cell(aux, off, "Dyn. Pwr (W)"), 0.0);
    EXPECT_EQ(Cell(aux, off, "DCbias VCCAUXA Pwr (W)"), 0.0);
}

TEST(SerdesAux, TransmitPllsDrawOnTheCoreAndChannelSuppliesOnly) {
    std::vector<std::string> supplies;
    for (const PC_ENG::SupplyPass& p : PC_ENG::SerdesFrame().tables.at(1).passes)
        supplies.push_back(p.supply);
    EXPECT_EQ(supplies, (std::vector<std::string>{"VCC", "VCCA", "VCCAUXA"}));
}

// Free channels on OR4UM-45, CABGA554: 8 channels in 4 duals; 3 used leave 5
// channels and 2 duals. On VCCAUXA (1.8 V) each free channel's "SERDES IO"
// record (0.04 mA) counts once for its APIO and once for its PCS.
TEST(FreeChannels, ApioAndPcsTermsOnTheChannelSupplies) {
    HsEngine eng(kOrvan4UM);
    PD_TABLE* pcs = Table(*eng, "SERDES", "PCS");
    pwctest::AddRow(pcs, {{"Mode", "Tx Rx"}, {"# Channels", "3"}, {"Allow Standby", "Disable"}});
    std::string log = pwctest::CaptureCalcLog([&] { eng->Calculate(); });
    EXPECT_NEAR(Cell(Total(*eng, "SERDES"), 0, "Unused DCbias VCCAUXA Pwr (W)"),
                1.8 * (0.04e-3 + 0.04e-3) * 5, 1e-12);
    EXPECT_NE(log.find("IccBiasAPIOunused"), std::string::npos);
    EXPECT_NE(log.find("IccBiasPCSunused"), std::string::npos);
    EXPECT_NE(log.find("IccLeakPCSunused"), std::string::npos);
    std::vector<std::string> names, values;
    eng->GetArrayOfColumnUnusedNamesPCS(nullptr, names);
    eng->GetArrayOfColumnUnusedValuesPCS(nullptr, values);
    fabtest::Row unused{names, values};
    EXPECT_EQ(unused.Value("Channels_used"), "3");
    EXPECT_EQ(unused.Value("DUAL_used"), "2");
    EXPECT_EQ(unused.Value("DUAL_unused"), "2");
    EXPECT_EQ(unused.Value("PCS_unused"), "5");
    // More channels than the device has leave none free, not fewer than none.
    Set(pcs, 0, "# Channels", "10");
    eng->GetArrayOfColumnUnusedValuesPCS(nullptr, values);
    unused = {names, values};
    EXPECT_EQ(unused.Value("SERDESio_unused"), "0");
    EXPECT_EQ(unused.Value("DUAL_unused"), "0");
}

// ---- Totals of the new architectures ----------------------------------------------------

struct DemoCase {
    Device device;
    const char* project;
    int decimals;
    std::vector<const char*> blocks;
    std::vector<const char*> serdesOnly;  // supplies no other block draws from
};

class DemoTotals : public ::testing::TestWithParam<DemoCase> {};

int Decimals(const std::string& text) {
    const size_t dot = text.find('.');
    return dot == std::string::npos ? 0 : static_cast<int>(text.size() - dot - 1);
}

TEST_P(DemoTotals, BlocksSuppliesAndSummaryAddUp) {
    const DemoCase c = GetParam();
    Device d = c.device;
    HsEngine eng(d, ProjectPath(c.project));
    PD_TABLE* block = eng->GetBlockTable();
    double blocks = 0;
    for (int r = 0; r + 1 < block->GetNumOfRows(); ++r) {
        EXPECT_EQ(Decimals(block->GetValueAt(r, 1)), c.decimals) << block->GetValueAt(r, 0);
        blocks += Num(block->GetNoRoundValueAt(r, 1));
    }
    EXPECT_NEAR(Num(block->GetNoRoundValueAt(block->GetNumOfRows() - 1, 1)), blocks, 1e-12);
    for (const char* name : c.blocks) {
        SCOPED_TRACE(name);
        EXPECT_GT(BlockRow(*eng, name), 0.0);
        EXPECT_NEAR(Num(block->GetNoRoundValueAt(block->GetRowNumber(name), 1)),
                    Cell(Total(*eng, name), 0, "Total Pwr (W)"), 1e-12);
    }
    // A supply only the SERDES draws from is the sum of its columns.
    PC_PANEL* serdes = eng->GetPanel(eng->GetPanelIndex("SERDES"));
    PD_TABLE* power = eng->GetPowerTable();
    for (const char* supply : c.serdesOnly) {
        SCOPED_TRACE(supply);
        std::string tag = supply;
        for (char& ch : tag) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
        double sta = 0, dyn = 0;
        for (PD_TABLE* t : serdes->tables)
            for (int r = 0; r < t->GetNumOfRows(); ++r) {
                dyn += Cell(t, r, "Dyn. " + tag + " Pwr (W)");
                for (const char* kind :
                     {"Leakage ", "DCbias ", "Unused Leakage ", "Unused DCbias "})
                    sta += Cell(t, r, kind + tag + " Pwr (W)");
            }
        // "Power" has a row for each row of "VDPM", in its order.
        const int row = eng->GetSupplyTable()->GetRowNumber(std::string(supply));
        ASSERT_GE(row, 0);
        EXPECT_NEAR(Num(power->GetNoRoundValueAt(row, 0)), sta, 1e-12);
        EXPECT_NEAR(Num(power->GetNoRoundValueAt(row, 1)), dyn, 1e-12);
        EXPECT_GT(sta + dyn, 0.0);
        // The power matrix shows the block's share, at the family's rounding.
        EXPECT_NEAR(eng->GetStaTable(supply, "SERDES", eng->GetPowerMatrix()), sta + dyn,
                    c.decimals == 4 ? 5e-5 : 5e-7);
    }
}

INSTANTIATE_TEST_SUITE_P(Architectures, DemoTotals,
                         ::testing::Values(DemoCase{{"rv7c00", "Orvan3", "OR3-95", "FBGA672"},
                                                    "rv7c00-demo.pcf",
                                                    4,
                                                    {"Logic Block", "DSP", "SERDES", "PLL"},
                                                    {"Vcca", "Vcchtx", "Vcchrx", "Vccauxa"}},
                                           DemoCase{{"rv7u00", "Orvan4UM", "OR4UM-45", "CABGA554"},
                                                    "rv7u00-demo.pcf",
                                                    6,
                                                    {"Logic Block", "FABA", "SERDES"},
                                                    {"Vcca", "Vcchtx", "Vcchrx", "Vccauxa"}}),
                         [](const ::testing::TestParamInfo<DemoCase>& info) {
                             return std::string(info.param.device.arch);
                         });

}  // namespace

// ---- Architecture rules the sample devices don't reach ------------------------------------

// The rv7c00 data under another architecture's name, in a folder of the
// test's own: each text replacement turns them into what that architecture
// reads.
struct RenamedArch {
    const char* arch;
    const char* family;
    std::vector<std::pair<std::string, std::string>> edits;  // in every file
    hstest::Device base = hstest::kOrvan3;                   // whose data, on which device
};

std::string ReadAll(const std::string& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

HsEngine EngineOn(const RenamedArch& a, const pwctest::ScratchDir& dir) {
    for (const char* ext : {"pwr", "pqn", "pgt", "pcf", "pwd", "ptd", "pwi", "pef"}) {
        std::string text = ReadAll(pwctest::DevicesDir() + "/" + a.base.arch + "." + ext);
        for (const auto& [from, to] : a.edits)
            for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
                text.replace(at, from.size(), to);
        std::ofstream(dir.File(std::string(a.arch) + "." + ext)) << text;
    }
    return HsEngine({a.arch, a.family, a.base.device, a.base.package}, "", dir.path().string());
}

// One channel row of the renamed data, priced; its VCC dynamic power and the
// VCC bias of the free channels.
struct ArchRow {
    double dynVcc, unusedBiasVcc;
    std::string channelsUsed;  // of the free channels' row
};

ArchRow PriceOn(const RenamedArch& a, const std::map<std::string, std::string>& cells) {
    pwctest::ScratchDir dir(std::string("highspeed_") + a.arch);
    HsEngine eng = EngineOn(a, dir);
    PD_TABLE* pcs = Table(*eng, "SERDES", "PCS");
    EXPECT_NE(pcs, nullptr);
    if (!pcs) return {};
    const int row = pwctest::AddRow(pcs, cells);
    eng->Calculate();
    std::vector<std::string> names, values;
    eng->GetArrayOfColumnUnusedNamesPCS(nullptr, names);
    eng->GetArrayOfColumnUnusedValuesPCS(nullptr, values);
    return {Cell(pcs, row, "Dyn. VCC Pwr (W)"),
            Cell(Total(*eng, "SERDES"), 0, "Unused DCbias VCC Pwr (W)"),
            fabtest::Row{names, values}.Value("Channels_used")};
}

const std::map<std::string, std::string> kChannel = {{"Mode", "8B10B"},
                                                     {"# Channels", "2"},
                                                     {"Freq. (MHz)", "250"},
                                                     {"Allow Standby", "Disable"},
                                                     {"TX Pre-emphasis", "Enabled"}};
// The PCS of 8B10B: 20 pF per channel at 1.1 V and 250 MHz.
const double kTwoChannelsVcc = 1.1 * 20e-12 * 1.1 * 250e6 * 2;

TEST(PcsArchitectures, ModeFromEmphasisAndGearing) {
    // The mode's entry renamed as the emphasis and gearing cells name it; the
    // count is the row's "PCS" column.
    const RenamedArch gy = {"gy7s00",
                            "Belmir",
                            {{"coef: 8B10B,", "coef: AMP_BOOST_ENABLED_CGA_DISABLED,"},
                             {"\"# Channels\"", "\"# PCS\""},
                             {", Channels,", ", PCS,"}}};
    std::map<std::string, std::string> cells = kChannel;
    cells.erase("# Channels");
    cells["# PCS"] = "2";
    EXPECT_NEAR(PriceOn(gy, cells).dynVcc, kTwoChannelsVcc, 1e-12);
    cells["TX Pre-emphasis"] = "Disabled";  // AMP_BOOST_DISABLED_...: no such entry
    EXPECT_EQ(PriceOn(gy, cells).dynVcc, 0.0);
}

TEST(PcsArchitectures, CountOfPcsBlocksAndFreeHalves) {
    // rv7d00 reads the mode but counts its "PCS" column.
    const RenamedArch d = {
        "rv7d00", "Orvan3", {{"\"# Channels\"", "\"# PCS\""}, {", Channels,", ", PCS,"}}};
    std::map<std::string, std::string> cells = kChannel;
    cells.erase("# Channels");
    cells["# PCS"] = "2";
    const ArchRow blocks = PriceOn(d, cells);
    EXPECT_NEAR(blocks.dynVcc, kTwoChannelsVcc, 1e-12);
    EXPECT_EQ(blocks.channelsUsed, "2");  // the free channels count the same column

    // bf7p00m also counts the free channels' Tx and Rx halves on VCC: 0.5 and
    // 0.25 mA for each of the two left of four.
    const std::string halves =
        "coef: XAUI_standby, VCC, 0.6, 0.026, 0.6, 0\ncoef: PCS_TX_unused, VCC, 0, 0.026, null, "
        "0.5\ncoef: PCS_RX_unused, VCC, 0, 0.026, null, 0.25";
    const RenamedArch m = {
        "bf7p00m", "Orvan3", {{"coef: XAUI_standby, VCC, 0.6, 0.026, 0.6, 0", halves}}};
    const RenamedArch plain = {"rv7c00", "Orvan3", m.edits};
    EXPECT_NEAR(PriceOn(m, kChannel).unusedBiasVcc, 1.1 * 0.75e-3 * 2, 1e-12);
    EXPECT_NEAR(PriceOn(plain, kChannel).unusedBiasVcc, 0.0, 1e-15);
}

TEST(PcsArchitectures, DeviceWithoutGroupsHasNoFreeGroups) {
    const RenamedArch a = {"rv7c00", "Orvan3", {{", PCS, DUAL,", ", PCS, GROUPS,"}}};
    pwctest::ScratchDir dir("highspeed_nodual");
    HsEngine eng = EngineOn(a, dir);
    pwctest::AddRow(Table(*eng, "SERDES", "PCS"), kChannel);
    std::vector<std::string> names, values;
    eng->GetArrayOfColumnUnusedNamesPCS(nullptr, names);
    eng->GetArrayOfColumnUnusedValuesPCS(nullptr, values);
    fabtest::Row unused{names, values};
    EXPECT_EQ(unused.Value("DUAL_used"), "0");
    EXPECT_EQ(unused.Value("DUAL_unused"), "0");
    EXPECT_EQ(unused.Value("SERDESio_unused"), "2");
}

TEST(SerdesAuxRate, TheEngineGivesTheLineRate) {
    // Without the data's halving the PLL switches its 0.8 pF at the full
    // 5 Gbit/s: 4 mA at 1.0 V on VCCA.
    const RenamedArch a = {"rv7u00", "Orvan4UM", {{"F / 2 * AF", "F * AF"}}, hstest::kOrvan4UM};
    pwctest::ScratchDir dir("highspeed_txpll");
    HsEngine eng = EngineOn(a, dir);
    PD_TABLE* aux = Table(*eng, "SERDES", "SERDES AUX");
    const int on = pwctest::AddRow(
        aux, {{"TXPLL", "ON"}, {"Tx Max Data Rate (Gbps)", "5"}, {"Allow Standby", "Disable"}});
    eng->Calculate();
    EXPECT_NEAR(Cell(aux, on, "Dyn. VCCA Pwr (W)"), 1.0 * 0.8e-12 * 1.0 * 5e9, 1e-12);
}
