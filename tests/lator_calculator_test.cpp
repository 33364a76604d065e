// Calculator, its tokens and stacks: numeric texts without names.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "baspclator/pc_lator.h"

namespace {

double Calc(const std::string& text) {
    Calculator calculator(text.c_str());
    calculator.InToPost();
    return calculator.Evaluate();
}

TEST(LatorToken, TableAndCharacterMapping) {
    const char* operators = "()^*/+-";
    for (int i = 0; operators[i] != '\0'; ++i) {
        const Token token = OperatorToToken(operators[i]);
        EXPECT_EQ(token, static_cast<Token>(TK_LEFT_PAREN + i));
        EXPECT_EQ(TokenToChar(token), operators[i]);
    }
    for (const char c : {'\n', ' ', 'e', '~', '!', '&', '0', '_', '\x7f'}) {
        EXPECT_EQ(OperatorToToken(c), TK_END) << int(c);
    }
    for (const Token token : {TK_END, TK_OPERAND, static_cast<Token>(9)}) {
        EXPECT_EQ(TokenToChar(token), '/');
    }
    // Left association for + - * /, right association for ^.
    for (const Token t : {TK_MULTIPLY, TK_DIVIDE, TK_ADD, TK_SUBTRACT}) {
        EXPECT_LE(PrecTable[t][0], PrecTable[t][1]);
    }
    EXPECT_GT(PrecTable[TK_POWER][0], PrecTable[TK_POWER][1]);
    EXPECT_EQ(PrecTable[TK_END][1], -1);
    EXPECT_EQ(PrecTable[TK_LEFT_PAREN][0], 100);
}

TEST(LatorStack, CapacityPushPopTop) {
    struct Case {
        int argument, capacity;
    };
    for (const Case c :
         {Case{0, 100}, Case{-5, 100}, Case{1, 1}, Case{99, 99}, Case{100, 100}, Case{500, 100}}) {
        Stack_Operand stack(c.argument);
        EXPECT_EQ(stack.Capacity(), c.capacity) << c.argument;
        for (int i = 0; i < c.capacity; ++i) EXPECT_TRUE(stack.Push(i));
        EXPECT_FALSE(stack.Push(-1.0));  // dropped
        EXPECT_EQ(stack.Top(), c.capacity - 1);
        double value = 0;
        for (int i = c.capacity - 1; i >= 0; --i) {
            ASSERT_TRUE(stack.Pop(value));
            EXPECT_EQ(value, i);
        }
        value = 42.0;
        EXPECT_FALSE(stack.Pop(value));
        EXPECT_EQ(value, 42.0);
    }
    Stack_Operator operators(100);
    Token token = TK_ADD;
    EXPECT_FALSE(operators.Pop(token));
    EXPECT_EQ(token, TK_ADD);
}

TEST(LatorStackDeathTest, TopOnEmptyEndsProcess) {
    EXPECT_EXIT(
        {
            Stack_Operand stack(100);
            stack.Top();
        },
        ::testing::ExitedWithCode(1), "");
    EXPECT_EXIT(
        {
            Stack_Operator stack(100);
            stack.Top();
        },
        ::testing::ExitedWithCode(1), "");
}

struct CalcCase {
    const char* text;
    double expected;
};

class LatorArithmetic : public ::testing::TestWithParam<CalcCase> {};

TEST_P(LatorArithmetic, ByHand) {
    EXPECT_DOUBLE_EQ(Calc(GetParam().text), GetParam().expected) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Precedence, LatorArithmetic,
    ::testing::Values(CalcCase{"2+3*4", 14}, CalcCase{"(2+3)*4", 20}, CalcCase{"2^3^2", 512},
                      CalcCase{"(2^3)^2", 64}, CalcCase{"2*3^2", 18}, CalcCase{"2^3*2", 16},
                      CalcCase{"10-4-3", 3}, CalcCase{"100/10/5", 2}, CalcCase{"8/2*4", 16},
                      CalcCase{"1+2*3-4/2", 5}, CalcCase{"((1+2)*(3+4))/7", 3},
                      CalcCase{"2*(3+(4-1)*2)", 18}, CalcCase{"7\n", 7}, CalcCase{"1.5*4", 6},
                      CalcCase{"5.", 5}, CalcCase{"0.125*8", 1}, CalcCase{"1.2.3", 1.2}));

INSTANTIATE_TEST_SUITE_P(MinusAsOperatorOrSign, LatorArithmetic,
                         ::testing::Values(CalcCase{"3-2", 1}, CalcCase{"3*-2", -6},
                                           CalcCase{"-3*2", -6},
                                           CalcCase{"(3)-2", 1},  // ")" keeps "last was a number"
                                           CalcCase{"(-3)*-2", 6}, CalcCase{"2^-1", 0.5},
                                           CalcCase{"-(2)", -2},  // missing left operand stays 0
                                           CalcCase{"1--2", 3}, CalcCase{"5-(-3)", 8}));

INSTANTIATE_TEST_SUITE_P(
    UnknownCharacters, LatorArithmetic,
    ::testing::Values(CalcCase{"1e-05", -5},  // the numbers 1 and -5; the last one is the top
                      CalcCase{"3 -2", -2}, CalcCase{"2*3 ", 6}, CalcCase{"1 2", 2},
                      // "-" after a blank is an operator without its left operand (0),
                      // flushed by the next blank: 0-3, then 2 on top.
                      CalcCase{"3 - 2", 2}));

INSTANTIATE_TEST_SUITE_P(MissingOperands, LatorArithmetic,
                         ::testing::Values(CalcCase{"*2", 0}, CalcCase{"2*", 0}, CalcCase{"2+", 2},
                                           CalcCase{"3*4+", 15},  // left stays 3 from "*": 3 + 12
                                           CalcCase{"(2)", 2}));

TEST(LatorEvaluate, EulerBaseRule) {
    const double e = 2.718282;
    EXPECT_DOUBLE_EQ(Calc("2.718282^2"), std::exp(2.0));
    EXPECT_DOUBLE_EQ(Calc("2.718281^2"), std::pow(2.718281, 2.0));
    EXPECT_DOUBLE_EQ(Calc("2.7182824^3"), std::exp(3.0));
    EXPECT_DOUBLE_EQ(Calc("2.718281828^2"), std::pow(2.718281828, 2.0));  // "2.7182818"
    EXPECT_DOUBLE_EQ(Calc("12.718282^2"), std::exp(2.0));                 // substring test, kept
    EXPECT_DOUBLE_EQ(Calc("2.71828249^2"), std::exp(2.0));
    EXPECT_DOUBLE_EQ(Calc("2.71828299^2"), std::pow(2.71828299, 2.0));  // prints 2.7182830
    EXPECT_DOUBLE_EQ(Calc("2.718282^-1"), std::exp(-1.0));
    EXPECT_DOUBLE_EQ(Calc("-2.718282^2"), std::exp(2.0));  // the sign is part of the literal
    EXPECT_NE(std::exp(2.0), std::pow(e, 2.0));

    // Reference: the rule written with snprintf and strstr.
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> fraction(0.7182810, 0.7182840);
    for (int i = 0; i < 2000; ++i) {
        const double base = static_cast<double>(random() % 40) + fraction(random);
        char text[64];
        std::snprintf(text, sizeof(text), "%.7f", base);
        const bool isE = std::strstr(text, "2.718282") != nullptr;
        std::string formula = text;
        formula += "^1.5";
        // The formula reads the base back from its own "%.7f" text.
        const double read = std::strtod(text, nullptr);
        EXPECT_EQ(Calc(formula), isE ? std::exp(1.5) : std::pow(read, 1.5)) << formula;
    }
}

TEST(LatorEvaluate, EulerBaseAgreesWithPrintedText) {
    // Bases given exactly (25 decimals read back to the same double), near the
    // rounding edges of the seventh decimal and across magnitudes.
    std::mt19937_64 random(3);
    std::vector<double> bases = {2.71828195,         2.71828295, 2.718281949999, 2.718282950001,
                                 2.7182819500000001, 12.718282,  102.7182825,    -2.718282,
                                 32.71828249999,     0.0,        1e-9,           92.718282};
    for (int i = 0; i < 3000; ++i) {
        const double whole = static_cast<double>(random() % 100000);
        const double edge = (random() % 2 == 0) ? 0.71828195 : 0.71828295;
        const double jitter = std::ldexp(static_cast<double>(random() % 2001) - 1000.0, -40);
        bases.push_back(whole + edge + jitter);
        bases.push_back(whole + 0.7182 + static_cast<double>(random() % 100000) * 1e-9);
        bases.push_back(std::ldexp(static_cast<double>(random() >> 11), -40));
    }
    for (const double base : bases) {
        char printed[64];
        std::snprintf(printed, sizeof(printed), "%.7f", base);
        const bool isE = std::strstr(printed, "2.718282") != nullptr;
        char formula[96];
        std::snprintf(formula, sizeof(formula), "%.25f^1.5", std::fabs(base));
        const double read = std::strtod(formula, nullptr);
        ASSERT_EQ(read, std::fabs(base)) << formula;
        EXPECT_EQ(Calc(formula), isE ? std::exp(1.5) : std::pow(read, 1.5)) << formula;
    }
}

TEST(LatorEvaluate, DivisionByZeroFollowsFloatingPoint) {
    EXPECT_EQ(Calc("1/0"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(Calc("-1/0"), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(Calc("0/0")));
}

TEST(LatorEvaluate, LiteralsReadLikeStrtod) {
    const char* fixed[] = {"0.00000000000312000000",
                           "50000000.00000000000000000000",
                           "0.12500000000000000000",
                           "1200.00",
                           "1.20",
                           "0.1",
                           "0.3",
                           "123456789012345678901234567890",
                           "9007199254740993",
                           "0.000000000000000000000000000123",
                           "-0.0",
                           "-7.25",
                           "00012.5000",
                           "3.14159265358979323846264338327950288",
                           "1.7976931348623157",
                           "4.9406564584124654",
                           "100.5",
                           "1.05"};
    for (const char* text : fixed) {
        const double value = Calc(text);
        const double reference = std::strtod(text, nullptr);
        EXPECT_EQ(value, reference) << text;
        EXPECT_EQ(std::signbit(value), std::signbit(reference)) << text;
    }
    std::mt19937_64 random(11);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        if (random() % 4 == 0) text += '-';
        const int integerDigits = static_cast<int>(random() % 12);
        const int fractionDigits = static_cast<int>(random() % 24);
        for (int d = 0; d < integerDigits; ++d) text += char('0' + random() % 10);
        if (integerDigits == 0) text += '0';
        text += '.';
        for (int d = 0; d < fractionDigits; ++d) {
            text += random() % 3 == 0 ? '0' : char('0' + random() % 10);
        }
        EXPECT_EQ(Calc(text), std::strtod(text.c_str(), nullptr)) << text;
    }
    // The engine's own texts: doubles printed by "%.20f", most with 17 to 21
    // significant digits, and midpoints between two doubles written exactly.
    for (int i = 0; i < 50000; ++i) {
        const double v =
            std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(random() % 70));
        char text[400];
        std::snprintf(text, sizeof text, "%.20f", v);
        ASSERT_EQ(Calc(text), std::strtod(text, nullptr)) << text;
    }
    for (const char* midpoint :
         {"9007199254740993", "9007199254740995", "0.50000000000000005551", "1152921504606846977",
          "4503599627370497.5", "9007199254740993.0000000000001", "9007199254740992.9999999999999",
          "0.1000000000000000055511151231257827"}) {
        EXPECT_EQ(Calc(midpoint), std::strtod(midpoint, nullptr)) << midpoint;
    }
    // A literal is read from its first 99 characters.
    const std::string longLiteral = "1" + std::string(120, '0');
    EXPECT_EQ(Calc(longLiteral), 1e98);
}

TEST(LatorCalculator, OwnCopyAndPostfixLayout) {
    char text[] = "1+2";
    Calculator calculator(text);
    text[0] = '9';
    EXPECT_STREQ(calculator.GetInfix(), "1+2\n");
    calculator.InToPost();
    const double expected[] = {1.0, 1.0, 1.0, 2.0, TK_ADD};
    ASSERT_EQ(calculator.GetPostfixCount(), 5);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(calculator.GetPostfix()[i], expected[i]);
    EXPECT_EQ(calculator.Evaluate(), 3.0);

    Calculator withEnd("4\n");
    EXPECT_STREQ(withEnd.GetInfix(), "4\n");
    Calculator empty("");
    EXPECT_STREQ(empty.GetInfix(), "\n");

    // Long texts leave the inline storage.
    std::string sum = "1";
    for (int i = 0; i < 20; ++i) sum += "+1.000000000000000000000000";
    EXPECT_DOUBLE_EQ(Calc(sum), 21.0);
}

TEST(LatorCalculator, PostfixAreaIsBounded) {
    // 60 numbers need 120 slots: the numbers beyond 100 slots are dropped, so
    // the additions lack operands and reuse their previous ones.
    std::string text = "1";
    for (int i = 0; i < 59; ++i) text += "+1";
    Calculator calculator(text.c_str());
    calculator.InToPost();
    EXPECT_LE(calculator.GetPostfixCount(), Calculator::kPostfixSlots);
    EXPECT_TRUE(std::isfinite(calculator.Evaluate()));
}

TEST(LatorCalculatorDeathTest, UnbalancedAndEmptyEndProcess) {
    EXPECT_EXIT(Calc("1+2)"), ::testing::ExitedWithCode(1), "");
    EXPECT_EXIT(Calc(")"), ::testing::ExitedWithCode(1), "");
    EXPECT_EXIT(Calc(""), ::testing::ExitedWithCode(1), "");
    // The blank flushes "(" from the stack, so ")" finds none.
    EXPECT_EXIT(Calc("2*(3 +4)"), ::testing::ExitedWithCode(1), "");
}

}  // namespace
