#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "engine/baspcpanel/pc_text.h"

namespace {

struct CompareCase {
    const char* a;
    const char* b;
    int expected;
};

class StricmpTest : public testing::TestWithParam<CompareCase> {};

TEST_P(StricmpTest, DifferenceOfUpperCasedCharacters) {
    const CompareCase& c = GetParam();
    EXPECT_EQ(pc_stricmp(c.a, c.b), c.expected) << c.a << " vs " << c.b;
}

INSTANTIATE_TEST_SUITE_P(Cases, StricmpTest,
                         testing::Values(CompareCase{"low", "LOW", 0}, CompareCase{"", "", 0},
                                         CompareCase{"", "a", -'A'}, CompareCase{"a", "", 'A'},
                                         CompareCase{"abc", "ABD", 'C' - 'D'},
                                         CompareCase{"Vcc", "VCCIO", -'I'},
                                         // Upper-casing puts "_" above the letters.
                                         CompareCase{"_", "a", '_' - 'A'},
                                         CompareCase{"1.2V", "1.2v", 0}));

TEST(AddInParallelTest, ResistorRule) {
    EXPECT_DOUBLE_EQ(AddInParallel(100.0, 100.0), 50.0);
    EXPECT_DOUBLE_EQ(AddInParallel(2.0, 6.0), 1.5);
    EXPECT_DOUBLE_EQ(AddInParallel(0.0, 5.0), 0.0);
    EXPECT_TRUE(std::isnan(AddInParallel(0.0, 0.0)));
}

TEST(StrisdigitTest, EmptyTextIsAllDigitsAndAnyOtherCharacterFails) {
    EXPECT_TRUE(strisdigit(""));
    EXPECT_TRUE(strisdigit("0123456789"));
    for (const char* text : {"12a", "-1", "1.5", " 1", "1 "})
        EXPECT_FALSE(strisdigit(text)) << text;
}

TEST(CollectionHelpersTest, CountAndAddOnce) {
    EXPECT_EQ(CountCharInString("a,b,,c", ','), 3);
    EXPECT_EQ(CountCharInString("", ','), 0);
    std::vector<std::string> items;
    for (const char* item : {"Vcc", "Vccio", "Vcc", "vcc", "Vccio"}) AddToVector(items, item);
    EXPECT_EQ(items, (std::vector<std::string>{"Vcc", "Vccio", "vcc"}));
}

TEST(Getdouble2StringTest, TwentyDecimals) {
    EXPECT_EQ(Getdouble2String(0.5), "0.50000000000000000000");
    EXPECT_EQ(Getdouble2String(-2.25), "-2.25000000000000000000");
    // The binary value nearest 0.1 is 0.1000000000000000055511...
    EXPECT_EQ(Getdouble2String(0.1), "0.10000000000000000555");
    // 301 integer digits, the point and 20 decimals.
    EXPECT_EQ(Getdouble2String(1e300).size(), 322u);
}

struct TextCase {
    const char* in;
    const char* out;
};

class RemoveLastZerosTest : public testing::TestWithParam<TextCase> {};

TEST_P(RemoveLastZerosTest, CutsAtFirstZeroBehindTheDot) {
    EXPECT_EQ(RemoveLastZeros(GetParam().in), GetParam().out) << GetParam().in;
}

INSTANTIATE_TEST_SUITE_P(Cases, RemoveLastZerosTest,
                         testing::Values(TextCase{"1.2", "1.2"}, TextCase{"1.50", "1.5"},
                                         TextCase{"1.05", "1."}, TextCase{"1.000", "1."},
                                         TextCase{"2.500", "2.5"}, TextCase{"100", "100"},
                                         TextCase{"0.5", "0.5"}, TextCase{"10.5", "10.5"},
                                         TextCase{".50", ".50"}, TextCase{"", ""}));

TEST(NumberInTextTest, FirstRunOfDigits) {
    EXPECT_EQ(GetStringFirstNumberStr("LVCMOS25_8"), "25");
    EXPECT_EQ(GetStringFirstNumberStr("a1.5"), "1");
    EXPECT_EQ(GetStringFirstNumberStr("HSTL"), "");
    EXPECT_EQ(GetStringFirstNumber("LVCMOS25_8"), 25);
    EXPECT_EQ(GetStringFirstNumber("x007y"), 7);
    EXPECT_EQ(GetStringFirstNumber("HSTL"), 0);
}

TEST(NumberInTextTest, DotJoinsOnlyAfterTheFirstDigit) {
    EXPECT_EQ(GetStringNumberStr("LVCMOS1.5"), "1.5");
    EXPECT_EQ(GetStringNumberStr("V.1.2x"), "1.2");
    EXPECT_EQ(GetStringNumberStr("v1.2.3"), "1.2.3");
    EXPECT_EQ(GetStringNumberStr("SSTL15_II"), "15");
    EXPECT_EQ(GetStringNumberStr("x.y"), "");
}

struct VoltageCase {
    const char* standard;
    int tenths;
};

class VoltageTest : public testing::TestWithParam<VoltageCase> {};

TEST_P(VoltageTest, TenthsOfAVolt) {
    EXPECT_EQ(GetStringFirstNumberforVoltage(GetParam().standard), GetParam().tenths)
        << GetParam().standard;
}

INSTANTIATE_TEST_SUITE_P(Cases, VoltageTest,
                         testing::Values(VoltageCase{"LVDS", 25}, VoltageCase{"MLVDS", 25},
                                         VoltageCase{"RSDS", 25}, VoltageCase{"HYPT", 25},
                                         VoltageCase{"HSTL", 33}, VoltageCase{"LVTTL", 33},
                                         VoltageCase{"LVCMOS12", 12}, VoltageCase{"LVCMOS33", 33},
                                         VoltageCase{"SSTL18_I", 18}));

using Tokens = std::vector<std::string>;

TEST(TokensTest, KeepsEmptyTokensButNoneBehindATrailingSeparator) {
    EXPECT_EQ(GetArrayOfTokensWithTrim("a,,b", ",", true), (Tokens{"a", "", "b"}));
    EXPECT_EQ(GetArrayOfTokensWithTrim("a,b", ",", true), (Tokens{"a", "b"}));
    EXPECT_EQ(GetArrayOfTokensWithTrim(",a", ",", true), (Tokens{"", "a"}));
    EXPECT_EQ(GetArrayOfTokensWithTrim("a,", ",", true), (Tokens{"a"}));
    EXPECT_EQ(GetArrayOfTokensWithTrim(",", ",", true), (Tokens{""}));
    EXPECT_EQ(GetArrayOfTokensWithTrim("a", ",", true), (Tokens{"a"}));
    EXPECT_EQ(GetArrayOfTokensWithTrim("", ",", true), Tokens{});
}

TEST(TokensTest, OnlyFirstDelimiterCharacterSeparates) {
    EXPECT_EQ(GetArrayOfTokensWithTrim("1, 2;3", ",;", true), (Tokens{"1", " 2;3"}));
    EXPECT_EQ(GetArrayOfTokensWithTrim("a-b", "", true), (Tokens{"a-b"}));
}

TEST(TokensTest, FalseAlsoDropsBlanksAtTokenEnds) {
    EXPECT_EQ(GetArrayOfTokensWithTrim(" a b , c,", ",", false), (Tokens{"a b", "c"}));
    EXPECT_EQ(GetArrayOfTokensWithTrim(" a b , c,", ",", true), (Tokens{" a b ", " c"}));
}

TEST(TokensTest, SetCollectsDistinctTokens) {
    EXPECT_EQ(GetSetOfTokensWithTrim("b,a,b,,", ",", true), (std::set<std::string>{"", "a", "b"}));
}

class RemoveUnderlineTest : public testing::TestWithParam<TextCase> {};

TEST_P(RemoveUnderlineTest, DropsUnderlineThatBeginsATerm) {
    std::string formula = GetParam().in;
    RemoveUnderlinefromFormula(formula);
    EXPECT_EQ(formula, GetParam().out) << GetParam().in;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RemoveUnderlineTest,
    testing::Values(TextCase{"_A*_B", "A*B"}, TextCase{"(_A+_B)", "(A+B)"}, TextCase{"x_y", "x_y"},
                    // Behind "+" or "-" only the first one goes.
                    TextCase{"_A+_B-_C", "A+B-_C"}, TextCase{"_A-_B+_C", "A-B+_C"},
                    TextCase{"_A/_B*_C/_D", "A/B*C/D"}, TextCase{"__A", "_A"}, TextCase{"", ""}));

class NameConvertTest : public testing::TestWithParam<TextCase> {};

TEST_P(NameConvertTest, FirstMatchingRuleInOrder) {
    std::string out = "stale";
    NameConvert(GetParam().in, out);
    EXPECT_EQ(out, GetParam().out) << GetParam().in;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, NameConvertTest,
    testing::Values(TextCase{"# Logic LUT4s", "LUT"}, TextCase{"# Dist RAMs", "RAM"},
                    TextCase{"# Ripple Slices", "RIPPLE"}, TextCase{"# Registers", "REG"},
                    TextCase{"# Shift Registers", "SHIFTREG"}, TextCase{"#ISBCLK", "ISBCLK"},
                    TextCase{"# Clock Enables", "Clock Enables"}, TextCase{"#Ebg", "Ebg"},
                    TextCase{"Freq. (MHz)", "Freq. (MHz)"},
                    // Earlier rows win; "Is" rows need the whole title.
                    TextCase{"# Logic # Dist", "LUT"}, TextCase{"Total # Registers", "REG"},
                    TextCase{"# ISBCLK", "ISBCLK"}, TextCase{"x#ISBCLK", "x#ISBCLK"},
                    TextCase{"#Ebg2", "#Ebg2"}, TextCase{"a# b# c", "b# c"}));

struct SectionCase {
    const char* section;
    std::vector<const char*> keys;
};

TEST(GetDataSectionTypeTest, EveryKeyOfEachGroup) {
    const SectionCase groups[] = {
        {"SLICE",
         {"LUT", "LUT_unused", "RAM", "RIPPLE", "REG", "REG_unused", "LUT_RAM_RIP_REG", "LUT_REG"}},
        {"ROUTING", {"X0",     "X0_unused",     "X1",    "X1_unused",    "X2",     "X2_unused",
                     "X6",     "X6_unused",     "ISB",   "ISB_unused",   "ISBCLK", "ISBCLK_unused",
                     "ISBLUT", "ISBLUT_unused", "ISBCE", "ISBCE_unused", "ISBLSR", "ISBLSR_unused",
                     "ISBM",   "ISBM_unused"}},
        {"PCLK", {"Ptrunk", "Pbranch", "Pspine", "Pfeed", "Ptap"}},
        {"SCLK", {"Strunk", "Sspine", "Stap", "Sbranch"}},
        {"ECLK", {"Eclk", "Etb", "Elr"}},
        {"IO", {"I/P", "O/P"}},
    };
    for (const SectionCase& group : groups)
        for (const char* key : group.keys) EXPECT_EQ(GetDataSectionType(key), group.section) << key;
    for (const char* other : {"", "lut", "X3", "SHIFTREG", "I/O", "LUT "})
        EXPECT_EQ(GetDataSectionType(other), "") << other;
}

}  // namespace
