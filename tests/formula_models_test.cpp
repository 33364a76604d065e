// The current models on hand-made coefficient and equation sections: each
// expected current is computed here from the coefficients (C pF, A uA, D mA,
// MHz, percent) independently of the engine.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "baspcformula/formula_util.h"
#include "engine_fixture.h"

using namespace pwctest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

using Row = std::vector<std::string>;

const char kPwr[] = R"(#PWC-DATA 1
[PWRSECT "TSLICE"]
supplies: VCC, VCCX
coef: LUT_used, VCC, 2, 0.03, 0.5, 1.5
coef: LUT_unused, VCC, 1, 0.03, null, 0.5
coef: X@KZQ2-1200HC_CABGA256, VCC, 1, 0.03, 3, 0
coef: Y@KZQ2-1200HC, VCC, 1, 0.03, 4, 0
coef: DCforBLOCK_standby, VCC, 0, 0, 0, 0
coef: TX, VCC, 0, 0, 0, 2
dcblock: used, VCC, 1, 0.02, 2
dcblock: unused, VCC, 0.5, 0.02, 3
dcblock: sleep, VCC, 0.25, 0.02, 4
dcblock: standby, VCC, 0.125, 0.02, 5

[PWRSECT "TPLL"]
supplies: VCC
coef: VCO, VCC, 0, 0, 1, 0

[PWRSECT "TPOLY"]
supplies: VCC
coef: LUT_used, VCC, null, null, 0.5, 0, 0.000001, 0.00002, 0.0003, 0.004, 0.05, 0.6
dcblock: used, VCC, null, null, 0, 0.000001, 0.00002, 0.0003, 0.004, 0.05, 0.6
dcblock: unused, VCC, null, null, 0, 0.000002, 0.00004, 0.0006, 0.008, 0.1, 1.2

[PWRSECT "TPOLYBOTH"]
supplies: VCC
coef: LUT_used, VCC, 2, 0.03, 0.5, 0, 0.000001, 0.00002, 0.0003, 0.004, 0.05, 0.6

[KEYSECT "Worst Case Process Leakage Multiplier"]
KZQ2-1200HC_CABGA256_6_C = 2.5, Production
KZQ2-1200HC_CABGA256_?_I = 1.5, Production
)";

const char kPqn[] = R"(#PWC-DATA 1
[KEYSECT "TEQ"]
_ICCdyn            = _C_COMP_used * _SUPPLY * F * AF * _COMP * _DPM
_ICCleak_used      = _Ksupply * _ProcessX * _A_COMP_used * e^(_B_COMP_used * T) * _COMP_used
_ICCleak_unused    = _Ksupply * _ProcessX * _A_COMP_unused * e^(_B_COMP_unused * T) * _COMP_unused
_ICCleakDFB_used   = _Ksupply * _ProcessX * _A_DCforBLOCK_used * e^(_B_DCforBLOCK_used * T) * _COUNT_used
_ICCleakDFB_unused = _Ksupply * _ProcessX * _A_DCforBLOCK_unused * e^(_B_DCforBLOCK_unused * T) * _COUNT_unused
_ICCbias_used      = _D_COMP_used * _COMP_used
_ICCbias_unused    = _D_COMP_unused * _COMP_unused
_ICCbiasDFB_used   = _D_DCforBLOCK_used * _COMP_used
_ICCbiasDFB_unused = _D_DCforBLOCK_unused * _COMP_unused

[KEYSECT "TNOF"]
_ICCdyn = _C_COMP_used*_SUPPLY*F*AF*_COMP
_ICCleak_used =

[KEYSECT "THARD"]
_SECTION = TSLICE

[KEYSECT "Bank Voltage"]
_ICCbias_used = 1000
_ICCdyn = 0
)";

class FormulaModels : public ::testing::Test {
  protected:
    void SetUp() override {
        unsetenv("VRL_PWC_POLINOMIAL");
        project = DefaultProject();
        eng = MakeEngine(dev, project.get());
        Merge(eng->GetPwrData(), kPwr);
        Merge(eng->GetPqnData(), kPqn);
        eng->ResetConstants();
        *eng->KValue("Kvcc") = "1";
        names = {"LUT",     "Freq. (MHz)", "AF (%)",    "Clock Name", "VCC", "DPM", "TJ", "Device",
                 "Package", "Speed",       "Operating", "Process",    "N",   "V",   "M"};
        values = {"100",      "50", "20",         "clk",     "1.2", "1.00", "25", "KZQ2-1200HC",
                  "CABGA256", "-6", "Commercial", "Typical", "4",   "2",    "0"};
    }
    void TearDown() override { PD_UTIL::DebugMode(0, "0"); }

    // Replaces or adds each section of the text in the engine's data.
    static void Merge(PD_DATA* target, const std::string& text) {
        PD_DATA parsed;
        ASSERT_TRUE(parsed.ParseText(text, "test"));
        for (PD_SECTION* s : parsed.sections) {
            target->RemoveSection(target->GetSectionIndex(s->GetName()));
            target->AddSection(s->Clone());
        }
    }
    void Set(const std::string& name, const std::string& value) {
        for (size_t i = 0; i < names.size(); ++i)
            if (names[i] == name) {
                values[i] = value;
                return;
            }
        names.push_back(name);
        values.push_back(value);
    }
    // Runs f with the calculation log open and returns what it wrote.
    template <class F>
    std::string Logged(F f) {
        return CaptureCalcLog(f);
    }

    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
    Row names, values;
};

// C 0.5 pF, 1.2 V, 50 MHz, 20 %, 100 elements, DPM 1.
constexpr double kDyn = 0.5e-12 * 1.2 * 50e6 * 0.2 * 100;

TEST_F(FormulaModels, DynamicProductAndItsForms) {
    EXPECT_NEAR(eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
                kDyn, kDyn * 1e-12);
    EXPECT_NEAR(
        eng->GetIccDynFper2("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
        kDyn / 2, kDyn * 1e-12);
    EXPECT_NEAR(
        eng->GetIccDynAF100("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
        kDyn / 0.2, kDyn * 1e-12);
    // Coefficient given in farads; the block plays no part.
    EXPECT_NEAR(
        eng->GetIccDyn("TEQ", "LUT_used", 100.0, "lut", "VCC", 50e6, 0.2, 0.5e-12, names, values),
        kDyn, kDyn * 1e-12);
    // DPM scales; an unknown supply has no voltage; a missing item has no C.
    Set("DPM", "2");
    EXPECT_NEAR(eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
                2 * kDyn, kDyn * 1e-12);
    EXPECT_EQ(eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCCX", names, values),
              0.0);
    EXPECT_EQ(eng->GetIccDyn("TEQ", "TSLICE", "NONE", "LUT", "lut", "VCC", names, values), 0.0);
    // Counts print with two decimals into the equation.
    Set("DPM", "1");
    EXPECT_NEAR(eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", 1.004, "lut", "VCC", names, values),
                kDyn / 100, kDyn * 1e-12);
}

TEST_F(FormulaModels, RegulatorOverridesTheCoreVoltage) {
    Set("archName", "zn2c00");
    Set("VCC", "1.0");
    // The device ends in "C": the core runs from the regulator's 1.20 V.
    EXPECT_NEAR(eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
                kDyn, kDyn * 1e-12);
    Set("archName", "");
    EXPECT_NEAR(eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
                kDyn / 1.2, kDyn * 1e-12);
}

TEST_F(FormulaModels, SwitchBoxClockRunsAtFullActivity) {
    Set("AF (%)", "12.5");
    const double full = 0.5e-12 * 1.2 * 50e6 * 1.0 * 100;
    std::string log = Logged([&] {
        EXPECT_NEAR(
            eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "ISBCLK_used", "VCC", names, values),
            full, full * 1e-12);
    });
    EXPECT_NE(log.find("AF = 100%, only for ISBCLK_used\n"), std::string::npos);
    EXPECT_NEAR(eng->GetIccDynFper2("TEQ", "TSLICE", "LUT_used", "LUT", "ISBCLK_used", "VCC", names,
                                    values),
                full * 0.125 / 2, full * 1e-12);
}

TEST_F(FormulaModels, OscillatorAndDutyCycleClocksDrawNothing) {
    auto table = [&](const char* panel, const char* name) {
        PC_PANEL* p = eng->GetPanel(eng->GetPanelIndex(panel));
        return p ? p->GetTable(p->GetTableIndex(name)) : nullptr;
    };
    PD_TABLE* osc = table("Misc", "Clock From OSC");
    PD_TABLE* clocks = table("Clocks", "Clocks");
    ASSERT_NE(osc, nullptr);
    ASSERT_NE(clocks, nullptr);
    std::vector<std::string> row(osc->GetNumOfColumns(), "");
    row[osc->GetColumnIndex("Clock Name")] = "osc_clk";
    osc->AddRow(row);
    for (const char* dcc : {"Disabled", "Enabled", "None"}) {
        std::vector<std::string> c(clocks->GetNumOfColumns(), "0");
        c[clocks->GetColumnIndex("Clock Name")] = std::string("dcc_") + dcc;
        c[clocks->GetColumnIndex("DCC")] = dcc;
        clocks->AddRow(c);
    }
    eng->setClockOscList();
    eng->setClockDCCMap();

    const std::pair<const char*, double> cases[] = {{"osc_clk", 0.0},      {"dcc_Disabled", 0.0},
                                                    {"dcc_Enabled", kDyn}, {"dcc_None", kDyn},
                                                    {"other", kDyn},       {"", kDyn}};
    for (const auto& c : cases) {
        Set("Clock Name", c.first);
        EXPECT_NEAR(eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
                    c.second, kDyn * 1e-12)
            << c.first;
    }
    EXPECT_DOUBLE_EQ(eng->getFreqfromClockOscStatue("osc_clk", 5.0), 0.0);
    EXPECT_DOUBLE_EQ(eng->getAFfromClockDCCMap("dcc_Disabled", 0.5), 0.0);
    EXPECT_EQ(eng->FindCorrectClockName("", "", {}, {}), "Default_Clock_Name");
}

TEST_F(FormulaModels, PllFrequencyAndTheZeroDivider) {
    std::string log = Logged(
        [&] { EXPECT_DOUBLE_EQ(eng->GetFreqForPLL(10e6, names, values), 10e6 * 4 * 2 / 1.0); });
    EXPECT_NE(log.find("Error! M = 0, setting M = 1.\n"), std::string::npos);
    EXPECT_NE(log.find("PLL uses Fvco=Freq*N*V/M="), std::string::npos);
    Set("M", "4");
    EXPECT_DOUBLE_EQ(eng->GetFreqForPLL(10e6, names, values), 10e6 * 4 * 2 / 4);
    // A "PLL" block runs at the VCO frequency: 1 pF x 1.2 V x 80 MHz x 100 %.
    EXPECT_NEAR(eng->GetIccDynAF100("TEQ", "TPLL", "VCO", 1.0, "pll", "VCC", 10e6, names, values),
                1e-12 * 1.2 * 10e6 * 4 * 2 / 4, 1e-18);
}

TEST_F(FormulaModels, DisplayOfTheHalvedFrequency) {
    std::string log = Logged([&] {
        eng->GetIccDynFper2("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values);
    });
    EXPECT_NE(log.find("ICCdynTSLICE_lut_VCC = _C_COMP_used * _SUPPLY * (F / 2 ) * AF * _COMP * "
                       "_DPM = \n"),
              std::string::npos)
        << log;
    // Without "* F *" the shown text is the equation, the mark, then the
    // equation from its fifth character on; the number is unaffected.
    const std::string eq = "_C_COMP_used*_SUPPLY*F*AF*_COMP";
    log = Logged([&] {
        EXPECT_NEAR(
            eng->GetIccDynFper2("TNOF", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
            kDyn / 2, kDyn * 1e-12);
    });
    EXPECT_NE(log.find("ICCdynTSLICE_lut_VCC = " + eq + "* (F / 2 ) *" + eq.substr(4) + " = \n"),
              std::string::npos)
        << log;
}

TEST_F(FormulaModels, DynamicLogLines) {
    std::string log = Logged([&] {
        eng->GetIccDyn("TEQ", "TSLICE", "LUT_used", "LUT", "lut@", "VCC", names, values);
        eng->GetIccDyn("TEQ", "LUT_used", 1.0, "out", "VCC", 1.0, 1.0, 1e-12, names, values);
        eng->ProcessIccDyn("TEQ", 1.0, 1.0, 1.0, 1e-12, 1.0, "row", "col", names, values, "T");
    });
    EXPECT_NE(log.find("ICCdynTSLICE_lut@KZQ2-1200HC_VCC = _C_COMP_used * _SUPPLY * F * AF * "
                       "_COMP * _DPM = \n0.00000000000050000000*1.20*50000000.00000000000000000000"
                       "*0.20000000000000001110*100.00*1.00=0.0006\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("IccDyn_TEQ_out_VCC = _C_COMP_used"), std::string::npos);
    EXPECT_NE(log.find("IccDyn_row_col_VCC= _C_COMP_used"), std::string::npos);
}

// ---- Coefficient look-up ----------------------------------------------------------------

struct CoefCase {
    const char* supply;
    const char* block;
    const char* item;
    const char* letter;
    const char* expected;
};

class CoefficientLookUp : public FormulaModels, public ::testing::WithParamInterface<CoefCase> {};

TEST_P(CoefficientLookUp, FindsTheRecordOrZero) {
    const CoefCase& c = GetParam();
    EXPECT_EQ(eng->FindABCDusedvalueFromPwrSupply(c.supply, c.block, c.item, "", c.letter),
              c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Records, CoefficientLookUp,
    ::testing::Values(CoefCase{"VCC", "TSLICE", "LUT_used", "C", "0.5"},
                      CoefCase{"VCC", "TSLICE", "LUT_used", "D", "1.5"},
                      CoefCase{"VCC", "TSLICE", "LUT_used", "Q", "0"},
                      CoefCase{"VCC", "TSLICE", "DCforBLOCK_used", "A", "1"},
                      CoefCase{"VCC", "TSLICE", "DCforBLOCK_used", "D", "2"},
                      CoefCase{"VCC", "TSLICE", "DCforBLOCK_unused", "A", "0.5"},
                      CoefCase{"VCC", "TSLICE", "DCforBLOCK_unused", "D", "3"},
                      CoefCase{"VCC", "TSLICE", "DCforBLOCK_sleep", "A", "0.25"},
                      CoefCase{"VCC", "TSLICE", "DCforBLOCK_standby", "D", "5"},
                      CoefCase{"VCC", "TPOLY", "DCforBLOCK_standby", "A", "0"},
                      CoefCase{"VCC", "TPOLY", "DCforBLOCK_sleep", "A", "0"},
                      // "@" device, then "_" package.
                      CoefCase{"VCC", "TSLICE", "Y", "C", "4"},
                      CoefCase{"VCC", "TSLICE", "X", "C", "3"},
                      CoefCase{"VCC", "TSLICE", "X@KZQ2-1200HC", "C", "3"},
                      CoefCase{"VCC", "TSLICE", "Z", "C", "0"},
                      CoefCase{"VCCQ", "TSLICE", "LUT_used", "C", "0"},
                      CoefCase{"VCC", "NOSUCH", "LUT_used", "C", "0"}));

TEST_F(FormulaModels, MissingDataIsNotedInTheLog) {
    std::string log = Logged([&] {
        eng->FindABCDusedvalueFromPwrSupply("VCC", "NOSUCH", "A", "", "C");
        eng->FindABCDusedvalueFromPwrSupply("VCCQ", "TSLICE", "LUT_used", "", "C");
    });
    EXPECT_NE(log.find("Note: Could'nt find data section :NOSUCH\n"), std::string::npos);
    EXPECT_NE(log.find("Note: There is no supply VCCQ in data section TSLICE\n"),
              std::string::npos);
}

// ---- Leakage ----------------------------------------------------------------------------

// A 2 uA, B 0.03, 100 elements.
double ExpLeak(double t, double k = 1.0, double x = 1.0) {
    return k * x * 2e-6 * std::exp(0.03 * t) * 100;
}

TEST_F(FormulaModels, LeakageEquationAndBuiltInForm) {
    const double eq =
        eng->GetIccLeak("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values);
    const double hard =
        eng->GetIccLeak("THARD", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values);
    EXPECT_DOUBLE_EQ(hard, ExpLeak(25));
    // The equation sees printed coefficients and its e is 2.718282: the two
    // agree to about the seventh digit.
    EXPECT_NEAR(eq, ExpLeak(25), ExpLeak(25) * 1e-6);

    // Temperature, K factor and process multiplier scale it.
    Set("TJ", "85");
    EXPECT_DOUBLE_EQ(
        eng->GetIccLeak("THARD", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
        ExpLeak(85));
    *eng->KValue("Kvcc") = "1.5";
    Set("Process", "Worst");
    EXPECT_DOUBLE_EQ(
        eng->GetIccLeak("THARD", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
        ExpLeak(85, 1.5, 2.5));
    EXPECT_NEAR(eng->GetIccLeak("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
                ExpLeak(85, 1.5, 2.5), ExpLeak(85, 1.5, 2.5) * 1e-6);
    // An unknown supply has no K factor and so no leakage.
    EXPECT_EQ(eng->GetIccLeak("THARD", "TSLICE", "LUT_used", "LUT", "lut", "VCCX", names, values),
              0.0);
}

TEST_F(FormulaModels, ProcessMultiplierKey) {
    const std::pair<std::vector<std::pair<const char*, const char*>>, const char*> cases[] = {
        {{{"Process", "Worst"}}, "2.5"},
        {{{"Process", "Worst"}, {"Speed", "6"}}, "2.5"},
        {{{"Process", "Worst"}, {"Operating", "Industrial"}, {"Speed", "2"}}, "1.5"},
        {{{"Process", "Worst"}, {"Device", "KZQ2-256HC"}}, "1"},
        {{{"Process", "Typical"}}, "1.00"},
        {{{"Process", "Best"}}, "1"},
    };
    for (const auto& c : cases) {
        Row n = names, v = values;
        for (const auto& kv : c.first)
            for (size_t i = 0; i < n.size(); ++i)
                if (n[i] == kv.first) v[i] = kv.second;
        EXPECT_EQ(eng->GetProcessX(n, v), c.second) << c.first[0].second;
    }
}

TEST_F(FormulaModels, PolynomialLeakage) {
    EXPECT_TRUE(eng->polynomial_equation_type("TPOLY"));
    EXPECT_FALSE(eng->polynomial_equation_type("TPOLYBOTH"));
    EXPECT_FALSE(eng->polynomial_equation_type("TSLICE"));
    EXPECT_FALSE(eng->polynomial_equation_type("NOSUCH"));
    auto poly = [](double t, double scale) {
        return scale *
               (1e-6 * std::pow(t, 5) + 2e-5 * std::pow(t, 4) + 3e-4 * std::pow(t, 3) +
                4e-3 * t * t + 0.05 * t + 0.6) *
               1e-6;
    };
    EXPECT_NEAR(eng->GetIccLeak("THARD", "TPOLY", "LUT_used", "LUT", "lut", "VCC", names, values),
                poly(25, 100), poly(25, 100) * 1e-12);
    EXPECT_NEAR(
        eng->GetIccLeakDFB("THARD", "TPOLY", "DCforBLOCK_used", 3.0, "blk", "VCC", names, values),
        poly(25, 3), poly(25, 3) * 1e-12);
    EXPECT_NEAR(eng->GetIccLeakDFBUnused("THARD", "TPOLY", "DCforBLOCK_unused", 3.0, "blk", "VCC",
                                         names, values),
                poly(25, 6), poly(25, 6) * 1e-12);
    // A and E both given: the exponential form runs.
    EXPECT_DOUBLE_EQ(
        eng->GetIccLeak("THARD", "TPOLYBOTH", "LUT_used", "LUT", "lut", "VCC", names, values),
        ExpLeak(25));
}

TEST_F(FormulaModels, BlockLeakageByRecord) {
    // DC block records: A (uA) 1 used, 0.5 unused, 0.25 sleep, 0.125 standby; B 0.02.
    auto dfb = [](double a, double count) { return a * 1e-6 * std::exp(0.02 * 25) * count; };
    const std::pair<const char*, double> used[] = {{"DCforBLOCK_used", dfb(1, 4)},
                                                   {"DCforBLOCK_sleep", dfb(0.25, 4)},
                                                   {"DCforBLOCK_standby", dfb(0.125, 4)},
                                                   {"LUT_used", 0.0}};
    for (const auto& c : used) {
        EXPECT_NEAR(eng->GetIccLeakDFB("TEQ", "TSLICE", c.first, 4.0, "blk", "VCC", names, values),
                    c.second, dfb(1, 4) * 1e-6)
            << c.first;
    }
    EXPECT_DOUBLE_EQ(
        eng->GetIccLeakDFB("THARD", "TSLICE", "DCforBLOCK_used", 4.0, "blk", "VCC", names, values),
        dfb(1, 4));
    EXPECT_NEAR(eng->GetIccLeakDFBUnused("TEQ", "TSLICE", "DCforBLOCK_unused", 4.0, "blk", "VCC",
                                         names, values),
                dfb(0.5, 4), dfb(1, 4) * 1e-6);
    // Sleep counts only for the used block equation.
    EXPECT_EQ(eng->GetIccLeakDFBUnused("TEQ", "TSLICE", "DCforBLOCK_sleep", 4.0, "blk", "VCC",
                                       names, values),
              0.0);
    // Unused per-element leakage has no built-in form.
    EXPECT_NEAR(
        eng->GetIccLeakUnused("TEQ", "TSLICE", "LUT_unused", 10.0, "u", "VCC", names, values),
        1e-6 * std::exp(0.03 * 25) * 10, 1e-12);
    EXPECT_EQ(
        eng->GetIccLeakUnused("THARD", "TSLICE", "LUT_unused", 10.0, "u", "VCC", names, values),
        0.0);
}

TEST_F(FormulaModels, LeakageLogLines) {
    std::string log = Logged([&] {
        eng->GetIccLeak("THARD", "TSLICE", "LUT_used", 100.0, "lut", "VCC", names, values);
        eng->GetIccLeak("TEQ", "TSLICE", "LUT_used", 100.0, "lut", "VCC", names, values);
        eng->GetIccLeakDFBUnused("TEQ", "TSLICE", "DCforBLOCK_unused", 1.0, "b", "VCC", names,
                                 values);
        eng->GetIccLeakDFBUnused("THARD", "TPOLY", "DCforBLOCK_unused", 1.0, "b", "VCC", names,
                                 values);
    });
    EXPECT_NE(log.find("ICCleakused_TSLICE_lut_VCC= _Ksupply * _ProcessX * _A_COMP_used * "
                       "e^(_B_COMP_used * T) * _COMP_used = \n1.0000000000 * 1.0000000000 * "
                       "0.0000020000 * 2.718282^(0.0300000000 * 25.0000000000) * "
                       "100.0000000000 = "),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("ICCleakused_TSLICE_lut_VCC = _Ksupply"), std::string::npos);
    EXPECT_NE(log.find("ICCleakDFBunused_TSLICE_b_VCC= _Ksupply"), std::string::npos);
    EXPECT_NE(log.find("ICCleakused_TPOLY_b_VCC= _Ksupply * _ProcessX * (_E_DCforBLOCK_unused"),
              std::string::npos);
}

// ---- Bias --------------------------------------------------------------------------------

TEST_F(FormulaModels, BiasForms) {
    // D 1.5 mA x 100 elements.
    const double bias = 1.5e-3 * 100;
    EXPECT_NEAR(eng->GetIccBias("TEQ", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
                bias, bias * 1e-12);
    EXPECT_DOUBLE_EQ(
        eng->GetIccBias("THARD", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values), bias);
    // "Bank Voltage" ignores its equation ("1000") and uses the built-in form.
    EXPECT_DOUBLE_EQ(
        eng->GetIccBias("Bank Voltage", "TSLICE", "LUT_used", "LUT", "lut", "VCC", names, values),
        bias);
    EXPECT_NEAR(
        eng->GetIccBiasUnused("TEQ", "TSLICE", "LUT_unused", 10.0, "u", "VCC", names, values),
        0.5e-3 * 10, 1e-15);
    const std::pair<const char*, double> dfb[] = {{"DCforBLOCK_used", 2e-3 * 3},
                                                  {"DCforBLOCK_sleep", 4e-3 * 3},
                                                  {"DCforBLOCK_standby", 5e-3 * 3},
                                                  {"DEFAULT", 0.0}};
    for (const auto& c : dfb)
        EXPECT_NEAR(eng->GetIccBiasDFB("TEQ", "TSLICE", c.first, 3.0, "b", "VCC", names, values),
                    c.second, 1e-15)
            << c.first;
    EXPECT_NEAR(eng->GetIccBiasDFBUnused("TEQ", "TSLICE", "DCforBLOCK_unused", 3.0, "b", "VCC",
                                         names, values),
                3e-3 * 3, 1e-15);
    EXPECT_EQ(eng->GetIccBiasDFBUnused("TEQ", "TSLICE", "DCforBLOCK_sleep", 3.0, "b", "VCC", names,
                                       values),
              0.0);
    EXPECT_DOUBLE_EQ(eng->GetDbiasAt("TEQ", "TSLICE", "LUT_used", "VCC", names, values), 1.5e-3);
    EXPECT_DOUBLE_EQ(eng->GetDbiasDFB("TEQ", "TSLICE", "DCforBLOCK_unused", "VCC", names, values),
                     3e-3);
    // The clock helpers' form: the sample "Clocks" equation is _D_COMP_total * _COMP_total.
    EXPECT_NEAR(eng->ProcessIccDcBias("used", 2e-3, 4.0, "r", "c", "T"), 8e-3, 1e-15);
}

TEST_F(FormulaModels, SerdesDriverEmphasisAddsToBias) {
    Merge(eng->GetPwrData(),
          "#PWC-DATA 1\n[PWRSECT \"SERDES IO\"]\nsupplies: VCCHTX\n"
          "coef: TX, VCCHTX, 0, 0, 0, 2\n");
    Set("TXN", "3");
    EXPECT_NEAR(eng->GetIccBias("TEQ", "SERDES IO", "TX", "TXN", "tx", "VCCHTX", names, values),
                2e-3 * 3, 1e-15);
    Set("LPRE_TOTAL", "0.01");
    EXPECT_NEAR(eng->GetIccBias("TEQ", "SERDES IO", "TX", "TXN", "tx", "VCCHTX", names, values),
                (2e-3 + 0.01) * 3, 1e-15);
    // The built-in form has no such step.
    EXPECT_NEAR(eng->GetIccBias("THARD", "SERDES IO", "TX", "TXN", "tx", "VCCHTX", names, values),
                2e-3 * 3, 1e-15);
}

TEST_F(FormulaModels, BiasLogLines) {
    std::string log = Logged([&] {
        eng->GetIccBias("THARD", "TSLICE", "LUT_used", 2.0, "lut", "VCC", names, values);
        eng->GetIccBiasUnused("TEQ", "TSLICE", "LUT_unused", 2.0, "u", "VCC", names, values);
    });
    EXPECT_NE(log.find("ICCbiasused_TSLICE_lut_VCC= _D_COMP_used * _COMP_used = \n"
                       "0.00150000000000000003 * 2.0000000000 = 0.0030000000\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("ICCbiasunused_TSLICE_u_VCC = _D_COMP_unused * _COMP_unused = \n"
                       "0.00050000000000000001*2.00=0.001\n"),
              std::string::npos)
        << log;
}

TEST(FormulaFreeFunctions, LeakageAndBiasWithBlockShare) {
    double leak = 0, bias = 0;
    EXPECT_DOUBLE_EQ(LeakageAndDFB(10, 2e-6, 0.03, leak, 0.5, 1.2),
                     1.2 * 2e-6 * std::exp(3.0) * 10 * 0.5);
    EXPECT_DOUBLE_EQ(leak, 1.2 * 2e-6 * std::exp(3.0) * 10);
    EXPECT_DOUBLE_EQ(BiasAndDFB(4, 0.25, bias, 3), 3.0);
    EXPECT_DOUBLE_EQ(bias, 1.0);
}

}  // namespace
