// Engines for the PLL, DLL family, Misc and EFB tests: the sample devices and
// the clock-block fixture under tests/data, a row's names and values, cells
// read at full precision, and a calculation log kept in a per-test directory.
#ifndef PWC_TESTS_FABRIC_PLL_MISC_FIXTURE_H
#define PWC_TESTS_FABRIC_PLL_MISC_FIXTURE_H

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"

namespace fabtest {

using pwctest::AddRow;
using pwctest::Cell;
using pwctest::Num;

// The leakage equations' e.
inline double Exp(double x) {
    return std::pow(2.718282, x);
}

inline PD_TABLE* Table(PC_ENG& eng, const std::string& panel, const std::string& table) {
    return pwctest::TabTable(eng, panel, table.c_str());
}

inline PD_TABLE* Total(PC_ENG& eng, const std::string& panel) {
    return pwctest::TotalTable(eng, panel);
}

inline void Set(PD_TABLE* t, int row, const std::string& column, const std::string& value) {
    ASSERT_GE(t->GetColumnIndex(column.c_str()), 0) << column;
    t->SetValueAt(value.c_str(), row, t->GetColumnIndex(column.c_str()));
}

struct Row {
    std::vector<std::string> names, values;
    std::string Value(const std::string& name) const {
        for (size_t i = 0; i < names.size(); ++i)
            if (names[i] == name) return values[i];
        return "";
    }
};

inline Row RowOf(PC_ENG& eng, PD_TABLE* t, int row) {
    int n = 0;
    Row r{eng.GetArrayOfColumnNames(t, &n), eng.GetArrayOfColumnValues(t, row, &n)};
    eng.InitConstants(r.names, r.values);
    return r;
}

// An engine on the fixture "tk9c00" (device KST-500, package QN48), whose
// data the test directory holds; the sample data are in force again after.
struct FixtureEngine {
    FixtureEngine() {
        dev.arch = "tk9c00";
        dev.family = "Kestrel";
        dev.device = "KST-500";
        dev.package = "QN48";
        dev.speed = "1";
        dev.part = "KST-500";
        const std::string dir = std::string(PWC_TEST_SOURCE_DIR) + "/data/devices";
        project = pwctest::LoadProject(dir + "/tk9c00.pcf");
        setenv("PWC_DATA_DIR", dir.c_str(), 1);
        eng = pwctest::MakeEngine(dev, project.get());
        setenv("PWC_DATA_DIR", pwctest::DevicesDir().c_str(), 1);
    }
    pwctest::DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

// An engine on a sample device with the default, empty project.
struct SampleEngine {
    SampleEngine(const std::string& device, const std::string& package) {
        dev.device = device;
        dev.package = package;
        dev.part = device;
        project = pwctest::DefaultProject();
        eng = pwctest::MakeEngine(dev, project.get());
    }
    pwctest::DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

// The "Block" row of a block in the summary.
inline double BlockRow(PC_ENG& eng, const std::string& block) {
    return Num(eng.GetBlockTable()->GetValueAt(block.c_str(), "Total (W)"));
}

}  // namespace fabtest

#endif
