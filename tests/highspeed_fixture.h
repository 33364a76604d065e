// Engines for the SERDES, DSP and FABA tests: the mid-range sample devices
// "rv7c00" (Orvan3) and "rv7u00" (Orvan4UM), and the hard-block fixture
// "hb9d00" under tests/data with the two-table DSP and FABA forms.
#ifndef PWC_TESTS_HIGHSPEED_FIXTURE_H
#define PWC_TESTS_HIGHSPEED_FIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include "fabric_pll_misc_fixture.h"

namespace hstest {

using fabtest::BlockRow;
using fabtest::Cell;
using fabtest::Num;
using fabtest::Set;
using fabtest::Table;
using fabtest::Total;

struct Device {
    const char* arch;
    const char* family;
    const char* device;
    const char* package;
};

const Device kOrvan3 = {"rv7c00", "Orvan3", "OR3-40", "FBGA484"};
const Device kOrvan4UM = {"rv7u00", "Orvan4UM", "OR4UM-45", "CABGA554"};

// An engine on a device, with a project file (the default one when empty).
struct HsEngine {
    explicit HsEngine(const Device& d, const std::string& projectPath = "",
                      const std::string& dataDir = "") {
        dev.arch = d.arch;
        dev.family = d.family;
        dev.device = d.device;
        dev.package = d.package;
        dev.speed = "1";
        dev.part = d.device;
        project = pwctest::LoadProject(projectPath.empty()
                                           ? (dataDir.empty() ? pwctest::DevicesDir() : dataDir) +
                                                 "/" + d.arch + ".pcf"
                                           : projectPath);
        if (!dataDir.empty()) setenv("PWC_DATA_DIR", dataDir.c_str(), 1);
        eng = pwctest::MakeEngine(dev, project.get());
        setenv("PWC_DATA_DIR", pwctest::DevicesDir().c_str(), 1);
    }
    PC_ENG& operator*() { return *eng; }
    PC_ENG* operator->() { return eng.get(); }
    pwctest::DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

// The hard-block fixture, family Orvan3 (device HB-10, package QN48).
inline HsEngine HardBlockFixture() {
    return HsEngine({"hb9d00", "Orvan3", "HB-10", "QN48"}, "",
                    std::string(PWC_TEST_SOURCE_DIR) + "/data/devices");
}

inline std::string ProjectPath(const std::string& name) {
    return std::string(PWC_TEST_DATA_DIR) + "/projects/" + name;
}

}  // namespace hstest

#endif
