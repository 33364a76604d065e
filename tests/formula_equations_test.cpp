// Equation look-up, the polynomial swap, the constants, and the logic and
// routing members on the sample device.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"

using namespace pwctest;

namespace {

using Row = std::vector<std::string>;

class FormulaEquations : public ::testing::Test {
  protected:
    void SetUp() override {
        unsetenv("VRL_PWC_POLINOMIAL");
        setenv("PWC_DATA_DIR", DevicesDir().c_str(), 1);
        project = DefaultProject();
        eng = MakeEngine(dev, project.get());
    }
    void TearDown() override {
        unsetenv("VRL_PWC_POLINOMIAL");
        PD_UTIL::DebugMode(0, "0");
    }
    PD_KEYSECT* Pqn(const char* name) {
        return dynamic_cast<PD_KEYSECT*>(eng->GetPqnData()->GetSection(name));
    }
    template <class F>
    std::string Logged(F f) {
        return CaptureCalcLog(f);
    }

    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(FormulaEquations, LookUpAndBuiltInChoice) {
    Row none;
    EXPECT_EQ(eng->GetformulafromPqn("Logic", "Dynamic", none, none),
              "_C_COMP_used * _SUPPLY * F * AF * _COMP * _DPM");
    EXPECT_EQ(eng->GetformulafromPqn("No Such", "Dynamic", none, none), "0");
    Pqn("Logic")->AddKeyVal("_ICCbias_used", "");
    EXPECT_EQ(eng->GetformulafromPqn("Logic", "_ICCbias_used", none, none), "0");

    // Names in order, numbers too; operators are left out.
    Row list;
    EXPECT_EQ(eng->GetCalculationformula("Logic", "_ICCbiasDFB_used", list, none, none),
              "_D_DCforBLOCK_used * _COMP_used");
    EXPECT_EQ(list, (Row{"_D_DCforBLOCK_used", "_COMP_used"}));
    list.clear();
    Pqn("Logic")->AddKeyVal("_ICCbias_unused", "_D_COMP_unused * 2.5");
    eng->GetCalculationformula("Logic", "leak_unused", list, none, none);
    EXPECT_EQ(list.front(), "_Ksupply");
    list.clear();
    eng->GetCalculationformula("Logic", "_ICCbias_unused", list, none, none);
    EXPECT_EQ(list, (Row{"_D_COMP_unused", "2.5"}));

    std::string log = Logged([&] {
        list.clear();
        EXPECT_EQ(eng->GetCalculationformula("Logic", "_ICCbias_used", list, none, none), "0");
    });
    EXPECT_EQ(log, "Note: There is no _ICCbias_used equation for Logic !\n");
    EXPECT_TRUE(list.empty());

    EXPECT_FALSE(eng->hardCodeFormula("Logic"));
    EXPECT_TRUE(eng->hardCodeFormula("EFB"));  // one key only
    EXPECT_TRUE(eng->hardCodeFormula("No Such"));
}

TEST_F(FormulaEquations, PolynomialSectionsTakeOverOnce) {
    PD_DATA* pwr = eng->GetPwrData();
    PD_DATA* pqn = eng->GetPqnData();
    EXPECT_FALSE(eng->polynomial_equation_type("SLICE"));
    eng->Detect5thpolyEquation();
    EXPECT_FALSE(eng->IsPolynomialMode());
    EXPECT_TRUE(pwr->DoesSectionExist("SLICE-5thpolynomial"));

    setenv("VRL_PWC_POLINOMIAL", "1", 1);
    for (int run = 0; run < 2; ++run) {
        eng->Detect5thpolyEquation();
        EXPECT_TRUE(eng->IsPolynomialMode());
        EXPECT_TRUE(eng->polynomial_equation_type("SLICE"));
        EXPECT_TRUE(pwr->DoesSectionExist("SLICE-EXPONENT"));
        EXPECT_FALSE(pwr->DoesSectionExist("SLICE-5thpolynomial"));
        EXPECT_FALSE(pwr->DoesSectionExist("SLICE-EXPONENT-EXPONENT"));
        EXPECT_TRUE(pqn->DoesSectionExist("Logic Block-EXPONENT"));
        EXPECT_NE(std::string(Pqn("Logic Block")->GetValue("_ICCleak_used")).find("T^5"),
                  std::string::npos);
    }
    setenv("VRL_PWC_POLINOMIAL", "0", 1);
    eng->Detect5thpolyEquation();
    EXPECT_FALSE(eng->IsPolynomialMode());
}

TEST_F(FormulaEquations, ConstantsAreComputedOnceUntilReset) {
    eng->ResetConstants();
    Row names = {"VCC", "VCCIO", "VCCAUX"};
    Row values = {"1.26", "2.5", "3.3"};
    eng->InitConstants(names, values);
    EXPECT_NEAR(std::strtod(eng->GetKsupply("VCC").c_str(), nullptr), std::exp(3.2 * 1.26 - 3.84),
                1e-6);
    // The banks' voltages differ from row to row: the I/O factor is 1.
    EXPECT_NEAR(std::strtod(eng->GetKsupply("VCCIO").c_str(), nullptr), 1.0, 1e-15);
    EXPECT_NEAR(std::strtod(eng->GetKsupply("VCCAUX").c_str(), nullptr), 1.0, 1e-15);
    // No voltage in the row, or no formula: "0".
    EXPECT_EQ(eng->GetKsupply("VCCPG"), "0");
    EXPECT_EQ(eng->GetKsupply("VCCJ"), "0");
    EXPECT_EQ(eng->GetKsupply("NOT A SUPPLY"), "");

    const std::string kvcc = eng->GetKsupply("VCC");
    values[0] = "1.2";
    eng->InitConstants(names, values);
    EXPECT_EQ(eng->GetKsupply("VCC"), kvcc);
    eng->ResetConstants();
    eng->InitConstants(names, values);
    EXPECT_NEAR(std::strtod(eng->GetKsupply("VCC").c_str(), nullptr), 1.0, 1e-6);

    // A formula that yields zero gives "0.0", which is kept.
    EXPECT_EQ(eng->Get_dK("Kvccaux", names, values, 3, "0"), "0.0");
    EXPECT_EQ(eng->Get_dK("Kvccaux", names, values, 3, ""), "0");
    EXPECT_EQ(eng->Get_dK("Kvccj", names, values, 3, "1.2"), "0");
}

TEST_F(FormulaEquations, SummedEquationText) {
    EXPECT_EQ(PC_ENG::Addmore2equation("0", "LUT", "C*V", "", 0.5), "LUT%C*V = 0.500000");
    const std::string one = PC_ENG::Addmore2equation("0", "LUT", "C*V", "", 0.5);
    EXPECT_EQ(PC_ENG::Addmore2equation(one, "REG", "C*F", "", 0.25),
              "LUT%C*V  +  REG%C*F = 0.750000");
    // A named term only adds to the sum.
    EXPECT_EQ(PC_ENG::Addmore2equation(one, "LUT", "C*V", "", 0.25), "LUT%C*V  = 0.750000");
}

// ---- Logic and routing on the sample data ------------------------------------------------

// A logic row as the logic tab offers it, on KZQ2-1200HC (zn2c00hp.pwr).
class LogicMembers : public FormulaEquations {
  protected:
    void SetUp() override {
        FormulaEquations::SetUp();
        names = {"LUT", "RAM",    "RIPPLE",      "REG",    "X0",         "X1",     "X2",    "X6",
                 "ISB", "ISBCLK", "Freq. (MHz)", "AF (%)", "Clock Name", "VCC",    "VCCPG", "DPM",
                 "TJ",  "Device", "Package",     "Speed",  "Operating",  "Process"};
        values = {"100", "0",           "0",        "50", "0",          "0",      "0",   "0",
                  "0",   "10",          "100",      "10", "clk",        "1.2",    "1.2", "1.00",
                  "25",  "KZQ2-1200HC", "CABGA256", "2",  "Commercial", "Typical"};
        eng->ResetConstants();
        eng->InitConstants(names, values);
    }
    Row names, values;
};

TEST_F(LogicMembers, DynamicSumFromTheSampleCoefficients) {
    // hp SLICE: LUT 0.02625 pF at F/2, REG 0.01575 pF at F; ROUTING ISBCLK
    // 0.0126 pF at AF 100 %. 100 MHz, AF 10 %, 1.2 V.
    auto c = [&](const char* block, const char* item) {
        return std::strtod(eng->FindABCDusedvalueFromPwrSupply("VCC", block, item, "", "C").c_str(),
                           nullptr);
    };
    const double lut = c("SLICE", "LUT_used") * 1e-12 * 1.2 * 50e6 * 0.1 * 100;
    const double reg = c("SLICE", "REG_used") * 1e-12 * 1.2 * 100e6 * 0.1 * 50;
    const double isbclk = c("ROUTING", "ISBCLK_used") * 1e-12 * 1.2 * 100e6 * 1.0 * 10;
    EXPECT_DOUBLE_EQ(c("SLICE", "LUT_used"), 0.02625);
    const double expected = lut + reg + isbclk;
    EXPECT_NEAR(eng->ProcessLogicDynVcc("Logic Block", names, values, "VCC"), expected,
                expected * 1e-9);
    // Routing has no VCCPG supply: on VCCPG it adds nothing.
    EXPECT_NEAR(eng->GetRoutingISBdyn("Logic Block", names, values, "VCCPG"), 0.0, 1e-20);
    EXPECT_NEAR(eng->GetRoutingISBdyn("Logic Block", names, values), isbclk, isbclk * 1e-9);
}

TEST_F(LogicMembers, UsedLeakageAndBiasSums) {
    const double leak = eng->ProcessLogicLeakUsedVcc("Logic Block", names, values, "VCC");
    const double parts = eng->GetIccLeak("Logic Block", "SLICE", "LUT_used", "LUT", "LUT_used",
                                         "VCC", names, values) +
                         eng->GetIccLeak("Logic Block", "SLICE", "REG_used", "REG", "REG_used",
                                         "VCC", names, values) +
                         eng->GetIccLeakDFB("Logic Block", "SLICE", "DCforBLOCK_used", 150.0, "x",
                                            "VCC", names, values) +
                         eng->GetRoutingISBleakUsed("Logic Block", names, values, "VCC");
    EXPECT_GT(leak, 0.0);
    EXPECT_NEAR(leak, parts, parts * 1e-12);

    // Leakage grows with temperature.
    values[16] = "85";
    EXPECT_GT(eng->ProcessLogicLeakUsedVcc("Logic Block", names, values, "VCC"), 2 * leak);

    // Worst-case process: the first matching key of KZQ2-1200HC_CABGA256_2_C.
    values[16] = "25";
    values[21] = "Worst";
    EXPECT_EQ(eng->GetProcessX(names, values), "1.95");
    EXPECT_NEAR(eng->ProcessLogicLeakUsedVcc("Logic Block", names, values, "VCC"), 1.95 * leak,
                leak * 1e-5);
    EXPECT_GE(eng->ProcessLogicBiasUsedVcc("Logic Block", names, values, "VCC"), 0.0);
}

TEST_F(LogicMembers, UnusedSumsAndTheirLog) {
    names.insert(names.end(), {"LUT_unused", "REG_unused", "X0_unused", "ISBCLK_unused"});
    values.insert(values.end(), {"1000", "1000", "500", "20"});
    double leak = 0.0;
    std::string log =
        Logged([&] { leak = eng->ProcessLogicLeakUnused("Logic Block", names, values, "VCC"); });
    EXPECT_GT(leak, 0.0);
    EXPECT_NE(log.find("IccLeakLogicRoutingUnused = IccLeakLUTunused + IccLeakREGunused + "
                       "IccLeakDFBlogicUnused + IccLeakISBroutCIBUnused = "),
              std::string::npos);
    EXPECT_NE(log.find("ICCleakDFBunused_SLICE_(lutUnused+regUnused)_VCC= "), std::string::npos);
    EXPECT_NE(log.find("ICCleakunused_ROUTING_X0_unused_VCC= "), std::string::npos);
    EXPECT_GE(eng->ProcessLogicBiasUnused("Logic Block", names, values, "VCC"), 0.0);
}

TEST_F(LogicMembers, PolynomialDataAgreeWithTheExponentialFit) {
    const double exponential = eng->ProcessLogicLeakUsedVcc("Logic Block", names, values, "VCC");
    setenv("VRL_PWC_POLINOMIAL", "1", 1);
    eng->Detect5thpolyEquation();
    const double polynomial = eng->ProcessLogicLeakUsedVcc("Logic Block", names, values, "VCC");
    EXPECT_NE(polynomial, exponential);
    EXPECT_NEAR(polynomial, exponential, exponential * 0.02);
}

TEST_F(LogicMembers, SharedPatternOfABlock) {
    // The slice as a block of its own: dynamic C x V x F x AF x count.
    names.push_back("SLICE");
    values.push_back("4");
    names.push_back("SLICE_total");
    values.push_back("8");
    names.push_back("SLICE_unused");
    values.push_back("2");
    const double expected =
        eng->GetIccDyn("Logic Block", "SLICE", "SLICE", "SLICE", "SLICE", "VCC", names, values);
    EXPECT_EQ(eng->ProcessBlockDyn("SLICE", "VCC", false, names, values), expected);
    const double dfb =
        eng->GetIccLeakDFB("SLICE", "SLICE", "DCforBLOCK_used", 4.0, "SLICE", "VCC", names, values);
    EXPECT_GT(dfb, 0.0);
    EXPECT_EQ(eng->ProcessBlockLeakUsed("SLICE", "VCC", false, names, values), dfb);
    const double unusedDfb = eng->GetIccLeakDFBUnused("SLICE", "SLICE", "DCforBLOCK_unused", 2.0,
                                                      "SLICE_unused", "VCC", names, values);
    EXPECT_EQ(
        eng->ProcessBlockLeakUnused("SLICE", "VCC", names, values),
        eng->GetIccLeakUnused("SLICE", "SLICE", "SLICE", 8.0, "SLICE_total", "VCC", names, values) +
            unusedDfb);
}

}  // namespace
