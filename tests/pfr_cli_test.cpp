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

#include "host.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

const std::string kData = PWC_TEST_DATA_DIR;

class PfrCliEnvironment : public ::testing::Environment {
  public:
    void SetUp() override { setenv("PWC_DATA_DIR", (kData + "/devices").c_str(), 1); }
};
const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new PfrCliEnvironment);

Json Calc(const std::string& project) {
    std::vector<const char*> argv{"pwc", "calc", project.c_str(), "--json"};
    std::ostringstream out, err;
    const int code = pwchost::RunPwc(static_cast<int>(argv.size()), argv.data(), out, err);
    EXPECT_EQ(code, 0) << err.str();
    return code == 0 ? Json::parse(out.str()) : Json::object();
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
