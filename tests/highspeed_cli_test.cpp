// The pwc command on the mid-range families: listed, new projects made and
// calculated, and the demos calculated.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"
#include "host_fixture.h"

namespace {

using Json = nlohmann::json;

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

using Result = pwctest::PwcRun;
using pwctest::Pwc;

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
    int digits;  // of the reports' static power
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

TEST_P(MidRangeFamily, DemoReports) {
    const FamilyCase c = GetParam();
    pwctest::ScratchDir dir(std::string("highspeed_report_") + c.arch);
    const std::string demo = std::string(PWC_TEST_DATA_DIR) + "/projects/" + c.demo;
    const Result r =
        Pwc({"report", demo, "-o", dir.path().string(), "--format", "text,html,csv,matrix"});
    ASSERT_EQ(r.code, 0) << r.err;
    const std::string stem = std::string(c.demo).substr(0, std::string(c.demo).size() - 4);
    std::ifstream in(dir.File(stem + ".txt"));
    std::stringstream all;
    all << in.rdbuf();
    const std::string text = all.str();
    for (const char* b : c.blocks) {
        const std::string heading = std::string(b) == "Logic Block" ? "Logic" : b;
        EXPECT_NE(text.find("\n\n" + heading + "\n"), std::string::npos) << heading;
    }
    // Static power is worked out, in the family's number of places.
    size_t at = text.find("\nStatic Power (W) : ");
    ASSERT_NE(at, std::string::npos);
    const size_t start = at + std::string("\nStatic Power (W) : ").size();
    const std::string value = text.substr(start, text.find('\n', start) - start);
    EXPECT_EQ(value.size() - value.find('.') - 1, static_cast<size_t>(c.digits)) << value;

    // The power matrix's corner is the design's total.
    const Json calc = Json::parse(Pwc({"calc", demo, "--json"}).out);
    std::ifstream matrix(dir.File(stem + "_PowerMatrix.csv"));
    std::string line, corner;
    bool inPower = false;
    while (std::getline(matrix, line)) {
        if (line.find("Power_Matrix_For_Power") != std::string::npos) inPower = true;
        if (line.find("Power_Matrix_For_Current") != std::string::npos) inPower = false;
        if (inPower && line.rfind("Total,", 0) == 0) {
            line.pop_back();  // the trailing ","
            corner = line.substr(line.rfind(',') + 1);
        }
    }
    ASSERT_FALSE(corner.empty());
    EXPECT_NEAR(std::stod(corner), calc["total_power_w"].get<double>(), 2e-4) << corner;
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
                                 {"Logic Block", "DSP", "SERDES", "PLL", "DLL", "DQSDLL"},
                                 4},
                      FamilyCase{"Orvan4UM",
                                 "rv7u00",
                                 "OR4UM-25",
                                 "CSFBGA285",
                                 "rv7u00-demo.pcf",
                                 {"Logic Block", "FABA", "SERDES"},
                                 6}),
    [](const ::testing::TestParamInfo<FamilyCase>& info) { return std::string(info.param.arch); });

}  // namespace
