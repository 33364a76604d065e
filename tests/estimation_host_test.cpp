// `pwc calc --estimate` and `pwc fit` on the demo project.
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"
#include "host_fixture.h"

namespace {

using Json = nlohmann::json;

const std::string kData = PWC_TEST_DATA_DIR;
const std::string kDemo = kData + "/projects/demo.pcf";

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

using pwctest::Pwc;
using pwctest::PwcRun;

double RoutingUsed(const Json& j, const std::string& cls, const char* field = "used") {
    for (const Json& r : j["estimation"]["routing"])
        if (r["class"] == cls) return r[field].get<double>();
    ADD_FAILURE() << "no class " << cls;
    return 0.0;
}

TEST(EstimateCommand, MoreRoutingAtHighThanAtLowWithinTheDevice) {
    const PwcRun low = Pwc({"calc", kDemo, "--estimate", "low", "--json"});
    const PwcRun high = Pwc({"calc", kDemo, "--estimate", "High", "--json"});
    ASSERT_EQ(low.code, 0) << low.err;
    ASSERT_EQ(high.code, 0) << high.err;
    const Json l = Json::parse(low.out), h = Json::parse(high.out);
    EXPECT_EQ(h["estimation"]["level"], "High");
    for (const char* cls : {"X0", "X1", "X2", "X6", "ISB"}) {
        EXPECT_GT(RoutingUsed(h, cls), RoutingUsed(l, cls)) << cls;
        EXPECT_LE(RoutingUsed(h, cls), RoutingUsed(h, cls, "device")) << cls;
    }
    EXPECT_GT(h["estimation"]["clock_tree"]["Ptap"].get<int>(),
              l["estimation"]["clock_tree"]["Ptap"].get<int>());
    // More wires draw more power.
    EXPECT_GT(h["total_power_w"].get<double>(), l["total_power_w"].get<double>());
}

TEST(EstimateCommand, TextReportAndBadLevel) {
    const PwcRun text = Pwc({"calc", kDemo, "--estimate", "Medium"});
    ASSERT_EQ(text.code, 0) << text.err;
    EXPECT_NE(text.out.find("Estimated routing (Medium)"), std::string::npos);
    EXPECT_NE(text.out.find("Estimated clock tree"), std::string::npos);
    const PwcRun bad = Pwc({"calc", kDemo, "--estimate", "Extreme"});
    EXPECT_EQ(bad.code, pwchost::kExitUsage);
    EXPECT_NE(bad.err.find("unknown estimation level 'Extreme'"), std::string::npos);
}

TEST(FitCommand, EveryDeviceOfTheFamilyWhenNoneIsNamed) {
    const PwcRun run = Pwc({"fit", kDemo, "--json"});
    ASSERT_EQ(run.code, 0) << run.err;
    const Json j = Json::parse(run.out);
    ASSERT_EQ(j.size(), 10u);
    for (const Json& r : j) {
        const bool big = r["device"].get<std::string>().find("1200") != std::string::npos;
        EXPECT_EQ(r["fits"].get<bool>(), big) << r.dump();
        EXPECT_EQ(r["messages"].empty(), big) << r.dump();
    }
}

TEST(FitCommand, NoCandidateFitsGivesTheDesignRuleCode) {
    const PwcRun run = Pwc({"fit", kDemo, "--device", "KZQ2-256HC", "--package", "SG48"});
    EXPECT_EQ(run.code, pwchost::kExitDesignRule) << run.err;
    EXPECT_NE(run.out.find("KZQ2-256HC  SG48     no    The number of used LUT exceed"),
              std::string::npos)
        << run.out;
    const PwcRun unpaired = Pwc({"fit", kDemo, "--device", "KZQ2-256HC"});
    EXPECT_EQ(unpaired.code, pwchost::kExitUsage);
    const PwcRun unknown = Pwc({"fit", kDemo, "--device", "KZQ2-9", "--package", "SG48"});
    EXPECT_EQ(unknown.code, pwchost::kExitUsage);
    EXPECT_NE(unknown.err.find("unknown device 'KZQ2-9'"), std::string::npos) << unknown.err;
}

}  // namespace
