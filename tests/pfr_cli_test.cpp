// The pwc command on the firmware-resilience demo: its port files are found
// beside the project, and the block's power shows in the report.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"
#include "host_fixture.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

const std::string kData = PWC_TEST_DATA_DIR;

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

Json Calc(const std::string& project) {
    const pwctest::PwcRun r = pwctest::Pwc({"calc", project, "--json"});
    EXPECT_EQ(r.code, 0) << r.err;
    return r.code == 0 ? Json::parse(r.out) : Json::object();
}

double Block(const Json& report, const std::string& name) {
    for (const Json& b : report["blocks"])
        if (b["name"] == name) return b["total_w"].get<double>();
    ADD_FAILURE() << "no block " << name;
    return 0.0;
}

TEST(PfrCli, TheDemoRunsAndItsPortsCountOnlyBesideTheProject) {
    const Json demo = Calc(kData + "/projects/wd7r00-demo.pcf");
    const double withPorts = Block(demo, "PFR");
    EXPECT_GT(withPorts, 0.0);
    double blocks = 0.0;
    for (const Json& b : demo["blocks"]) blocks += b["total_w"].get<double>();
    EXPECT_NEAR(demo["total_power_w"].get<double>(), blocks, 1e-5);

    // The same project alone in a folder: no port files, only the block's
    // own terms.
    const fs::path dir = fs::path(::testing::TempDir()) / ("pfr_cli_" + std::to_string(getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir);
    fs::copy_file(kData + "/projects/wd7r00-demo.pcf", dir / "wd7r00-demo.pcf");
    const double alone = Block(Calc((dir / "wd7r00-demo.pcf").string()), "PFR");
    fs::remove_all(dir);
    EXPECT_GT(alone, 0.0);
    EXPECT_LT(alone, withPorts);
}

}  // namespace
