// The pwc command on the mid-range families: listed, new projects made and
// calculated, and the demos calculated.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"
#include "host.h"

namespace {

using Json = nlohmann::json;

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

struct Result {
    int code;
    std::string out, err;
};

Result Pwc(const std::vector<std::string>& args) {
    std::vector<const char*> argv{"pwc"};
    for (const std::string& a : args) argv.push_back(a.c_str());
    std::ostringstream out, err;
    const int code = pwchost::RunPwc(static_cast<int>(argv.size()), argv.data(), out, err);
    return {code, out.str(), err.str()};
}

double BlockOf(const Json& report, const std::string& name) {
    for (const Json& b : report["blocks"])
        if (b["name"] == name) return b["total_w"].get<double>();
    return -1.0;
}

struct FamilyCase {
    const char* family;
    const char* arch;
    const char* device;
    const char* package;
    const char* demo;
    std::vector<const char*> blocks;
};

class MidRangeFamily : public ::testing::TestWithParam<FamilyCase> {};

TEST_P(MidRangeFamily, DemoCalculates) {
    const FamilyCase c = GetParam();
    const Result r =
        Pwc({"calc", std::string(PWC_TEST_DATA_DIR) + "/projects/" + c.demo, "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const Json j = Json::parse(r.out);
    EXPECT_EQ(j["device"]["family"], c.family);
    double blocks = 0;
    for (const char* b : c.blocks) {
        EXPECT_GT(BlockOf(j, b), 0.0) << b;
        blocks += BlockOf(j, b);
    }
    EXPECT_GE(j["total_power_w"].get<double>(), blocks - 1e-6);
}

TEST_P(MidRangeFamily, ListedAndNewProjectsCalculate) {
    const FamilyCase c = GetParam();
    const Result listed = Pwc({"devices", "--json"});
    ASSERT_EQ(listed.code, 0) << listed.err;
    bool found = false;
    for (const Json& d : Json::parse(listed.out))
        found = found || (d["device"] == c.device && d["arch"] == c.arch);
    EXPECT_TRUE(found);

    pwctest::ScratchDir dir(std::string("highspeed_new_") + c.arch);
    const std::string project = dir.File("fresh.pcf");
    const Result made = Pwc(
        {"new", "--family", c.family, "--device", c.device, "--package", c.package, "-o", project});
    ASSERT_EQ(made.code, 0) << made.err;
    const Result calc = Pwc({"calc", project, "--json"});
    ASSERT_EQ(calc.code, 0) << calc.err;
    const Json j = Json::parse(calc.out);
    EXPECT_EQ(j["device"]["device"], c.device);
    // An empty design still leaks: the free channels among the rest.
    EXPECT_GT(j["total_power_w"].get<double>(), 0.0);
    EXPECT_GT(BlockOf(j, "SERDES"), 0.0);
}

INSTANTIATE_TEST_SUITE_P(
    Families, MidRangeFamily,
    ::testing::Values(FamilyCase{"Orvan3",
                                 "rv7c00",
                                 "OR3-40",
                                 "FBGA256",
                                 "rv7c00-demo.pcf",
                                 {"Logic Block", "DSP", "SERDES", "PLL", "DLL", "DQSDLL"}},
                      FamilyCase{"Orvan4UM",
                                 "rv7u00",
                                 "OR4UM-25",
                                 "CSFBGA285",
                                 "rv7u00-demo.pcf",
                                 {"Logic Block", "FABA", "SERDES"}}),
    [](const ::testing::TestParamInfo<FamilyCase>& info) { return std::string(info.param.arch); });

}  // namespace
