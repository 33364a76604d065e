// PC_LATOR: pieces, name binding, the regulator rule and the classifiers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "baspclator/pc_lator.h"

namespace {

using Strings = std::vector<std::string>;

// One row bound in both forms, so every case runs through both.
struct Row {
    Strings names, values;
    std::vector<const char*> namePtrs, valuePtrs;

    Row(Strings n, Strings v) : names(std::move(n)), values(std::move(v)) {
        for (const std::string& s : names) namePtrs.push_back(s.c_str());
        for (const std::string& s : values) valuePtrs.push_back(s.c_str());
    }
    int Count() const { return static_cast<int>(names.size()); }

    // Result and trace of both forms; they must agree.
    double Run(const std::string& formula, std::string& trace) const {
        std::string arrayTrace = trace;
        const double byVectors =
            PC_LATOR::ProcessCalculator(formula, trace, names, values, Count());
        const double byArrays = PC_LATOR::ProcessCalculator(formula, arrayTrace, namePtrs.data(),
                                                            valuePtrs.data(), Count());
        // Without a trace the pieces are read one by one: the same value.
        const double untraced = PC_LATOR::EvaluateFormula(formula, names, values, Count());
        EXPECT_EQ(trace, arrayTrace) << formula;
        if (!std::isnan(byVectors)) {
            EXPECT_EQ(byVectors, byArrays) << formula;
            EXPECT_EQ(byVectors, untraced) << formula;
        } else {
            EXPECT_TRUE(std::isnan(untraced)) << formula;
        }
        return byVectors;
    }
};

std::vector<std::string> Pieces(const char* text) {
    int count = -1;
    char** pieces = PC_LATOR::BreakIntoPieces(text, &count);
    std::vector<std::string> result;
    for (int i = 0; i < count; ++i) {
        result.emplace_back(pieces[i]);
        delete[] pieces[i];
    }
    delete[] pieces;
    return result;
}

std::string G(double value) {
    char text[64];
    std::snprintf(text, sizeof(text), "%g", value);
    return text;
}

TEST(LatorPieces, StateRules) {
    EXPECT_EQ(Pieces("A*2"), (Strings{"A", "*", "2"}));
    EXPECT_EQ(Pieces("2+A"), (Strings{"", "2", "+", "A"}));  // empty piece before a digit
    EXPECT_EQ(Pieces("VCC12"), (Strings{"VCC", "12"}));
    EXPECT_EQ(Pieces("(A+1)"), (Strings{"(A", "+", "1", ")"}));
    EXPECT_EQ(Pieces("((A+1))"), (Strings{"(", "(", "A", "+", "1", ")", ")"}));
    EXPECT_EQ(Pieces("_C_used * F\t/ 1.5e"), (Strings{"_C_used", "*", "F", "/", "1.5", "e"}));
    EXPECT_EQ(Pieces("A B"), (Strings{"AB"}));  // blanks are dropped, not separators
    EXPECT_EQ(Pieces("x^-2"), (Strings{"x", "^", "-", "2"}));
    EXPECT_EQ(Pieces(".5*A"), (Strings{".", "5", "*", "A"}));  // "." at index 0 is no digit
    EXPECT_EQ(Pieces("1.2.3"), (Strings{"", "1.2.3"}));
    EXPECT_EQ(Pieces("-A"), (Strings{"-A"}));
    EXPECT_EQ(Pieces(""), Strings{});
    EXPECT_EQ(Pieces(" \n\t"), Strings{});
    int count = -1;
    delete[] PC_LATOR::BreakIntoPieces(nullptr, &count);
    EXPECT_EQ(count, 0);

    // The array grows past its first 10 entries.
    std::string many = "A";
    for (int i = 0; i < 30; ++i) many += "+A";
    EXPECT_EQ(Pieces(many.c_str()).size(), 61u);
}

TEST(LatorComponents, NamesMayHoldDigits) {
    EXPECT_EQ(PC_LATOR::BreakIntoComponets("VCC12*F+_B2"), (Strings{"VCC12", "F", "_B2"}));
    EXPECT_EQ(PC_LATOR::BreakIntoComponets("2*A1 + (B)"), (Strings{"A1", "B"}));
    EXPECT_EQ(PC_LATOR::BreakIntoComponets("A 3"), (Strings{"A", "3"}));
    EXPECT_EQ(PC_LATOR::BreakIntoComponets("A*0.5"), (Strings{"A", "0", "5"}));
    EXPECT_EQ(PC_LATOR::BreakIntoComponets(""), Strings{});
}

TEST(LatorBinding, SubstitutesTextAndTraces) {
    const Row row({"A", "B", "NEG", "C_used", "F", "e", "EMPTY"},
                  {"3", "4", "-2.5", "0.00000000000312000000", "50000000.00000000000000000000",
                   "2.718282", ""});
    std::string trace;
    EXPECT_EQ(row.Run("A*2", trace), 6.0);
    EXPECT_EQ(trace, "3*2=6");
    EXPECT_EQ(row.Run("A + B * 2", trace), 11.0);
    EXPECT_EQ(trace, "3+4*2=11");
    EXPECT_EQ(row.Run("B*NEG", trace), -10.0);  // "-" after an operator reads as a sign
    EXPECT_EQ(trace, "4*-2.5=-10");
    EXPECT_EQ(row.Run("B-NEG", trace), 6.5);
    EXPECT_EQ(trace, "4--2.5=6.5");
    EXPECT_DOUBLE_EQ(row.Run("C_used*F", trace), 0.00000000000312 * 50000000.0);
    EXPECT_EQ(trace, "0.00000000000312000000*50000000.00000000000000000000=" +
                         G(0.00000000000312 * 50000000.0));
    EXPECT_DOUBLE_EQ(row.Run("e^(A-B)", trace), std::exp(-1.0));
    EXPECT_EQ(trace, "2.718282^(3-4)=" + G(std::exp(-1.0)));
    EXPECT_DOUBLE_EQ(row.Run("((A+1))*2", trace), 8.0);
    EXPECT_EQ(row.Run("1/0", trace), HUGE_VAL);
    EXPECT_EQ(trace, "1/0=inf");
    EXPECT_TRUE(std::isnan(row.Run("0+(A-A)/(B-B)", trace)));
    volatile double zero = 0.0;  // the sign of the NaN is the machine's, not the compiler's
    EXPECT_EQ(trace, "0+(3-3)/(4-4)=" + G(0.0 + zero / zero));
}

TEST(LatorBinding, MissingOrEmptyValueGivesMinusOne) {
    const Row row({"A", "EMPTY", "VCCIO"}, {"3", "", "2.5"});
    for (const char* formula : {"A*Z", "EMPTY+1", "(A+1)", "VCC12", "A*2,5", "-A"}) {
        std::string trace = "unchanged";
        EXPECT_EQ(row.Run(formula, trace), -1.0) << formula;
        EXPECT_EQ(trace, "unchanged") << formula;
    }
    // Exponent form is no part of the language: 1e-05 gives 1 and -5.
    const Row exponent({"X"}, {"1e-05"});
    std::string trace;
    EXPECT_EQ(exponent.Run("X", trace), -5.0);
    // The count limits the names searched.
    std::string limited = "unchanged";
    EXPECT_EQ(PC_LATOR::ProcessCalculator("A*VCCIO", limited, row.names, row.values, 1), -1.0);
    EXPECT_EQ(PC_LATOR::ProcessCalculator("A*A", limited, row.names, row.values, 1), 9.0);
}

TEST(LatorBinding, AgreesWithCppExpressions) {
    const double a = 1.25, b = -0.5, c = 3.0, f = 2.5e7, af = 0.125;
    const Row row({"_A", "_B", "_C", "F", "AF", "e"},
                  {"1.25000000000000000000", "-0.50", "3.00", "25000000.00",
                   "0.12500000000000000000", "2.718282"});
    struct Case {
        const char* formula;
        double expected;
    };
    const Case cases[] = {
        {"_A*F*AF", a * f * af},
        {"_A+_B*_C", a + b * c},
        {"1*(_A+_B)*_C", (a + b) * c},  // a leading "(" would join the name
        {"_C^2^0.5", std::pow(c, std::pow(2.0, 0.5))},
        {"_C-_A-_B", c - a - b},
        {"_C/_A/AF", c / a / af},
        {"_A*e^(_B*_C)", a * std::exp(b * c)},
        {"F/1000000*(_C-1)^2", f / 1000000 * std::pow(c - 1, 2.0)},
        {"_A*_B", a * b},
        {"_C*_B^2", c * std::pow(b, 2.0)},
    };
    for (const Case& t : cases) {
        std::string trace;
        EXPECT_DOUBLE_EQ(row.Run(t.formula, trace), t.expected) << t.formula << " " << trace;
    }
}

TEST(LatorBinding, LongValuesAndFormulas) {
    // The vector form reads a value through the 100-byte buffer.
    const std::string longValue = "1" + std::string(120, '0');
    const Strings names = {"L"};
    const Strings values = {longValue};
    std::string trace;
    EXPECT_EQ(PC_LATOR::ProcessCalculator("L", trace, names, values, 1), 1e98);
    EXPECT_EQ(trace, longValue.substr(0, 99) + "=" + G(1e98));
    EXPECT_EQ(std::string(PC_LATOR::FindValueUsingIndex("L", names, values, 1)).size(), 99u);

    // A formula far beyond the evaluator's inline text.
    std::string formula = "L/L";
    for (int i = 0; i < 9; ++i) formula += "+L/L";
    EXPECT_EQ(PC_LATOR::ProcessCalculator(formula, trace, names, values, 1), 10.0);
}

// Formulas of names, numbers, operators and blanks, with values that are
// plain numbers, negative, or texts that only read joined to their
// neighbours: with and without a trace, the same value. (Texts with letters or
// a leading point can end the process in the postfix conversion, with or
// without a trace.)
TEST(LatorBinding, UntracedAgreesWithTracedOnRandomFormulas) {
    const Strings names = {"A", "B", "C", "_D_x", "T", "VCC"};
    const Strings shapes[] = {
        {"0.00000000000312000000", "-0.5", "25.50000000000000000000", "2.718282", "1.20", "3"},
        {"-3", "5.", "1.2.3", "-0.25", "12", "0"},
        {"7", "-7", "5.", "00012.50", "99999999999999999999.5", "2"},
    };
    const char* operands[] = {"A", "B",   "C",   "_D_x", "T",  "VCC",
                              "2", "0.5", "1 2", "e",    "2A", "B2"};
    const char* operators[] = {"+", "-", "*", "/", "^", " * ", "-"};
    std::mt19937_64 random(5);
    // expression := ["-"] operand | "(" expression ")", joined by operators.
    std::function<std::string(int)> expression = [&](int depth) {
        std::string text;
        const int terms = 1 + static_cast<int>(random() % 4);
        for (int t = 0; t < terms; ++t) {
            if (t > 0) text += operators[random() % 7];
            if (random() % 5 == 0) text += "-";
            if (depth < 3 && random() % 4 == 0)
                text += "(" + expression(depth + 1) + ")";
            else
                text += operands[random() % 12];
        }
        return text;
    };
    for (int i = 0; i < 20000; ++i) {
        const Strings& values = shapes[i % 3];
        const std::string formula = expression(0);
        std::string trace;
        const double traced = PC_LATOR::ProcessCalculator(formula, trace, names, values);
        const double untraced = PC_LATOR::EvaluateFormula(formula, names, values);
        if (std::isnan(traced)) {
            ASSERT_TRUE(std::isnan(untraced)) << formula;
        } else {
            ASSERT_EQ(traced, untraced) << formula << " with " << values[0];
        }
    }
}

TEST(LatorLookup, FirstExactMatch) {
    const Row row({"VCC", "VCCIO", "A", "A"}, {"1.2", "3.3", "first", "second"});
    EXPECT_STREQ(PC_LATOR::FindValueUsingIndex("A", row.names, row.values), "first");
    EXPECT_STREQ(PC_LATOR::FindValueUsingIndex(std::string("VCCIO"), row.names, row.values), "3.3");
    EXPECT_STREQ(PC_LATOR::FindValueUsingIndex("VCCI", row.names, row.values), "");
    EXPECT_STREQ(PC_LATOR::FindValueUsingIndex("", row.names, row.values), "");
    EXPECT_STREQ(PC_LATOR::FindValueUsingIndex("A", row.namePtrs.data(), row.valuePtrs.data(), 4),
                 "first");
    EXPECT_STREQ(PC_LATOR::FindValueUsingIndex("A", row.namePtrs.data(), row.valuePtrs.data(), 2),
                 "");
    EXPECT_STREQ(
        PC_LATOR::FindValueUsingIndex("VCCIOX", row.namePtrs.data(), row.valuePtrs.data(), 4), "");
    // The vector form returns one shared buffer.
    const char* first = PC_LATOR::FindValueUsingIndex("VCC", row.names, row.values);
    const char* second = PC_LATOR::FindValueUsingIndex("VCCIO", row.names, row.values);
    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "3.3");
}

struct RegulatorCase {
    const char* arch;
    const char* device;
    bool expected;
};

class LatorRegulator : public ::testing::TestWithParam<RegulatorCase> {};

TEST_P(LatorRegulator, ByArchitectureAndDevice) {
    const RegulatorCase& c = GetParam();
    const Row row({"archName", "Device", "VCC", "VCCIO", "VCC_CORE_DYN_OVERRIDE"},
                  {c.arch, c.device, "1.20", "3.30", "0.95"});
    EXPECT_EQ(PC_LATOR::IsRegulatorBeingUsed(row.names, row.values), c.expected);
    EXPECT_EQ(
        PC_LATOR::IsRegulatorBeingUsed(row.namePtrs.data(), row.valuePtrs.data(), row.Count()),
        c.expected);
    EXPECT_EQ(RegulatorInUse(c.arch, c.device), c.expected);

    std::string trace;
    EXPECT_DOUBLE_EQ(row.Run("VCC*2", trace), c.expected ? 1.9 : 2.4);
    EXPECT_EQ(trace, c.expected ? "0.95*2=1.9" : "1.20*2=2.4");
    // Only the piece "VCC" itself is replaced.
    EXPECT_DOUBLE_EQ(row.Run("VCCIO*2", trace), 6.6);
    EXPECT_EQ(trace, "3.30*2=6.6");
}

INSTANTIATE_TEST_SUITE_P(
    Architectures, LatorRegulator,
    ::testing::Values(
        RegulatorCase{"kt7g00", "KT-100C", true}, RegulatorCase{"kt7g00", "KT-100", false},
        RegulatorCase{"hq7g00", "X-40C", true}, RegulatorCase{"hq7g00", "X-40E", false},
        RegulatorCase{"hq7g00e", "X-40C", true}, RegulatorCase{"zn3c00a", "Z-9C", true},
        RegulatorCase{"zn3c00f", "Z-9C", true}, RegulatorCase{"zn3c00f", "Z-9c", false},
        RegulatorCase{"wd7c00", "W-1C", true}, RegulatorCase{"wd7c00", "W-1", false},
        RegulatorCase{"zn2c00", "Z-2C", true}, RegulatorCase{"zn2c00b", "Z-2C", true},
        RegulatorCase{"xzn2c00", "Z-2C", true}, RegulatorCase{"zn2c00b", "Z-2E", false},
        RegulatorCase{"hq7g00p", "X-40E", true}, RegulatorCase{"zn2c00p", "Z-2E", true},
        RegulatorCase{"zn2c00ap", "", true}, RegulatorCase{"wd7r00", "W", true},
        RegulatorCase{"hq7g00ee", "X-40C", false}, RegulatorCase{"kt7g", "KT-100C", false},
        RegulatorCase{"zn3c00", "Z-9C", false}, RegulatorCase{"", "X-40C", false}));

TEST(LatorRegulator, WithoutPairsNoRegulator) {
    const Row row({"VCC"}, {"1.20"});
    EXPECT_FALSE(PC_LATOR::IsRegulatorBeingUsed(row.names, row.values));
    EXPECT_TRUE(ArchUsesRegulatorWhenDeviceEndsInC("kt7g00"));
    EXPECT_FALSE(ArchAlwaysUsesRegulator("kt7g00"));
    EXPECT_TRUE(ArchAlwaysUsesRegulator("wd7r00"));
    // Override missing: "VCC" becomes empty text, the evaluation goes on.
    const Row noOverride({"archName", "Device", "VCC"}, {"wd7r00", "W", "1.20"});
    std::string trace;
    EXPECT_DOUBLE_EQ(noOverride.Run("2+VCC", trace), 2.0);
    EXPECT_EQ(trace, "2+=2");
}

TEST(LatorClassifiers, Texts) {
    EXPECT_TRUE(IsItNumber('0'));
    EXPECT_TRUE(IsItNumber('9'));
    EXPECT_FALSE(IsItNumber('.'));
    EXPECT_TRUE(IsItNumber("0123"));
    EXPECT_FALSE(IsItNumber("12a"));
    EXPECT_TRUE(IsItLetter('_'));
    EXPECT_TRUE(IsItLetter('z'));
    EXPECT_TRUE(IsItLetter('Q'));
    EXPECT_FALSE(IsItLetter('1'));
    EXPECT_FALSE(IsItLetter('@'));
    EXPECT_TRUE(IsItLetter("AbC"));
    EXPECT_FALSE(IsItLetter("A_B"));  // "_" counts only for one character
    EXPECT_FALSE(IsItLetter("A1"));

    struct Case {
        const char* text;
        bool expected;
    };
    for (const Case c : {Case{"", true}, Case{"12", true}, Case{"1.5", true}, Case{"5.", true},
                         Case{".5", true}, Case{"1.2.3", false}, Case{"-1", false},
                         Case{"+1", false}, Case{"1e5", false}, Case{" 1", false}}) {
        EXPECT_EQ(IsRightNumber(c.text), c.expected) << c.text;
    }
    for (const char* op : {"+", "-", "(", ")", "*", "^", "/"}) EXPECT_TRUE(IsOperand(op)) << op;
    for (const char* op : {"", "**", "%", "=", "(A", "e"}) EXPECT_FALSE(IsOperand(op)) << op;

    for (const char* op : {"==", ">=", "<=", "||", ">", "<", "!=", "&&"}) {
        EXPECT_TRUE(IsBoolRelationOperand(op)) << op;
    }
    for (const char* op : {"", "=", "!", "&", "|", "(", "=>"}) {
        EXPECT_FALSE(IsBoolRelationOperand(op)) << op;
    }
    struct Priority {
        const char* text;
        int expected;
    };
    for (const Priority p :
         {Priority{"==", 4}, Priority{">=", 4}, Priority{"<=", 4}, Priority{">", 4},
          Priority{"<", 4}, Priority{"!=", 4}, Priority{"||", 3}, Priority{"&&", 3},
          Priority{"(", 5}, Priority{")", 5}, Priority{"+", 0}, Priority{"A", 0}}) {
        EXPECT_EQ(GetOperandPriority(p.text), p.expected) << p.text;
    }
}

TEST(LatorTrace, PrintsLikeG) {
    const Strings names = {"X", "S"};
    auto check = [&](const std::string& value, const char* scale) {
        std::string trace;
        const double result = PC_LATOR::ProcessCalculator("X*S", trace, names, {value, scale}, 2);
        EXPECT_EQ(trace, value + "*" + scale + "=" + G(result)) << value << "*" << scale;
    };
    // Rounding edges of the sixth digit, exact ties, the style switches.
    for (const char* value : {"0.000001234567",
                              "123456789",
                              "1234567",
                              "100000",
                              "999999.5",
                              "999999.4999999",
                              "9.999995",
                              "9.9999950000001",
                              "9.99997",
                              "99999.7",
                              "0.0000999997",
                              "123456.5",
                              "123457.5",
                              "0.0001",
                              "0.00009999995",
                              "0.00001",
                              "-0.0",
                              "3.14159265358979",
                              "1000000",
                              "1.234565",
                              "0.1",
                              "0.3"}) {
        check(value, "1");
    }
    std::mt19937_64 random(5);
    const char* scales[] = {"1", "0.00000000001", "100000000000", "0.000000000000000000001",
                            "1000000000000000000000000"};
    char text[64];
    for (int i = 0; i < 20000; ++i) {
        const double mantissa = static_cast<double>(random() % 100000000000ULL) /
                                std::pow(10.0, static_cast<double>(random() % 12));
        std::snprintf(text, sizeof(text), "%.12f", mantissa);
        check(text, scales[random() % 5]);
        // Halfway in decimal at the seventh significant digit.
        std::snprintf(text, sizeof(text), "%llu5",
                      static_cast<unsigned long long>(100000 + random() % 900000));
        check(text, scales[random() % 5]);
    }
}

TEST(LatorBindingDeathTest, EmptyFormulaEndsProcess) {
    const Strings names = {"A"}, values = {"1"};
    std::string trace;
    EXPECT_EXIT(PC_LATOR::ProcessCalculator("", trace, names, values, 1),
                ::testing::ExitedWithCode(1), "");
    EXPECT_EXIT(PC_LATOR::ProcessCalculator("A)", trace, names, values, 1),
                ::testing::ExitedWithCode(1), "");
}

}  // namespace
