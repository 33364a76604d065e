// The models' own number reading and printing must give what strtod and
// printf give, bit for bit and character for character; and what the models
// keep while a tab is calculated must not outlive it.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "baspcformula/formula_util.h"
#include "engine_fixture.h"

using namespace pwctest;
using pwcformula::PrintFixedTo;
using pwcformula::ToNumber;

namespace {

::testing::AssertionResult ReadsAsStrtod(const std::string& text) {
    const double expected = std::strtod(text.c_str(), nullptr);
    const double got = ToNumber(text);
    if (std::memcmp(&expected, &got, sizeof got) == 0 || (std::isnan(expected) && std::isnan(got)))
        return ::testing::AssertionSuccess();
    char line[160];
    std::snprintf(line, sizeof line, "'%s': strtod %.17g, ToNumber %.17g", text.c_str(), expected,
                  got);
    return ::testing::AssertionFailure() << line;
}

::testing::AssertionResult PrintsAsPrintf(double value, int precision) {
    char expected[512];
    std::snprintf(expected, sizeof expected, "%.*f", precision, value);
    std::string got;
    PrintFixedTo(got, value, precision);
    if (got == expected) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "precision " << precision << ": printf " << expected << ", PrintFixedTo " << got;
}

class NumberTexts : public ::testing::TestWithParam<const char*> {};

TEST_P(NumberTexts, ReadLikeStrtod) {
    EXPECT_TRUE(ReadsAsStrtod(GetParam()));
}

// Cells as users and printf write them, and texts that only strtod reads.
INSTANTIATE_TEST_SUITE_P(
    Cells, NumberTexts,
    ::testing::Values("", "-", ".", "-.", ".5", "5.", "0", "-0", "-0.0", "000", "00012.50", "48",
                      "12.5", "1.20", "0.14999999999999999445", "48000000.00000000000000000000",
                      "0.00000000000001575000", "0.000000000000000000000000001", "123456789012345",
                      "1234567890123456", "9007199254740993", "1234567890123456.5", "0x1A", "0X10",
                      "0x", " 12", "+3", "1e5", "1e", "0.1e-2", "12abc", "1..2", "--1", "inf",
                      "-inf", "nan", "1e400", "1e-400"));

TEST(NumberTexts, PrintedNumbersReadBackLikeStrtod) {
    std::mt19937_64 rng(7);
    const char* formats[] = {"%.0f", "%.2f", "%.10f", "%.20f", "%g", "%.17g"};
    char text[600];
    for (int i = 0; i < 20000; ++i) {
        const double v =
            std::ldexp(static_cast<double>(rng() >> 11), -static_cast<int>(rng() % 90));
        for (const char* format : formats) {
            std::snprintf(text, sizeof text, format, (i % 2 ? -v : v));
            ASSERT_TRUE(ReadsAsStrtod(text));
        }
    }
}

TEST(FixedPrinting, MatchesPrintf) {
    const double inf = std::numeric_limits<double>::infinity();
    const double specials[] = {
        0.0,   -0.0,   1.0,   -1.0,  0.5,   0.125, 1e15, -1e15,       999999999999999.0,
        1e300, 5e-324, 1.005, 2.675, 310.0, inf,   -inf, std::nan("")};
    for (double v : specials)
        for (int p : {0, 1, 2, 4, 6, 10, 20}) EXPECT_TRUE(PrintsAsPrintf(v, p));
    std::mt19937_64 rng(11);
    for (int i = 0; i < 20000; ++i) {
        const double v =
            i % 2 ? static_cast<double>(rng() % 100000) / 100.0
                  : std::ldexp(static_cast<double>(rng() >> 11), -static_cast<int>(rng() % 80));
        for (int p : {1, 2, 20}) ASSERT_TRUE(PrintsAsPrintf(v, p));
    }
}

// Outside a tab the models read the data afresh: an equation edited after a
// calculation is the one in force at the next call.
TEST(ModelCaches, EditsAfterACalculationCount) {
    setenv("PWC_DATA_DIR", DevicesDir().c_str(), 1);
    DeviceStrings dev;
    auto project = DefaultProject();
    auto eng = MakeEngine(dev, project.get());
    const PC_ENG::Row names = {"REG", "Freq. (MHz)", "AF (%)", "VCC", "DPM"};
    const PC_ENG::Row values = {"100", "50", "20", "1.2", "1.00"};
    const double before =
        eng->GetIccDyn("Logic Block", "SLICE", "REG_used", "REG", "REG_used", "VCC", names, values);
    EXPECT_GT(before, 0.0);
    auto* keys = dynamic_cast<PD_KEYSECT*>(eng->GetPqnData()->GetSection("Logic Block"));
    ASSERT_NE(keys, nullptr);
    keys->AddKeyVal("_ICCdyn", "_C_COMP_used * _SUPPLY * F * AF * _COMP * _DPM * 2");
    EXPECT_DOUBLE_EQ(
        eng->GetIccDyn("Logic Block", "SLICE", "REG_used", "REG", "REG_used", "VCC", names, values),
        2 * before);
    eng->Calculate();
    keys->AddKeyVal("_ICCdyn", "0");
    EXPECT_EQ(
        eng->GetIccDyn("Logic Block", "SLICE", "REG_used", "REG", "REG_used", "VCC", names, values),
        0.0);
}

}  // namespace
