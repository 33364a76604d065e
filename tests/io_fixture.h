// An engine on a sample device with I/O rows added by hand.
#ifndef PWC_TESTS_IO_FIXTURE_H
#define PWC_TESTS_IO_FIXTURE_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "engine_fixture.h"

namespace iotest {

inline double Num(const std::string& s) {
    return std::strtod(s.c_str(), nullptr);
}

// The full value behind a rounded cell.
inline double Full(PD_TABLE* t, int row, const char* column) {
    return Num(t->GetNoRoundValueAt(row, t->GetColumnIndex(column)));
}

// A row of zeros with the named cells set.
inline int AddRow(PD_TABLE* t, const std::map<std::string, std::string>& cells) {
    std::vector<std::string> row(t->GetNumOfColumns(), "0");
    for (const auto& [column, value] : cells) {
        const int c = t->GetColumnIndex(column.c_str());
        EXPECT_GE(c, 0) << column;
        if (c >= 0) row[c] = value;
    }
    t->AddRow(row);
    return t->GetNumOfRows() - 1;
}

// Runs f with the calculation log open; what f logged. The log lives in a
// directory of this test and process, removed afterwards.
template <class F>
std::string CaptureLog(F f) {
    namespace fs = std::filesystem;
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(info->test_suite_name()) + "_" + info->name();
    for (char& ch : name)
        if (ch == '/') ch = '_';
    const fs::path dir =
        fs::path(::testing::TempDir()) / ("pwc_io_" + name + "_" + std::to_string(getpid()));
    fs::create_directories(dir);
    const std::string path = (dir / "calc.log").string();
    PD_UTIL::DebugMode(3, path);
    f();
    PD_UTIL::DebugMode(0, "0");
    std::stringstream all;
    {
        std::ifstream in(path);
        all << in.rdbuf();
    }
    fs::remove_all(dir);
    return all.str();
}

class IoDesign : public ::testing::Test {
  protected:
    // The plain part, whose coefficients the hand computations use.
    void SetUp() override { Build("zn2c00", "KZQ2-640ZE", "TG100"); }

    void Build(const std::string& arch, const std::string& device, const std::string& package,
               const std::string& projectPath = "") {
        dev.arch = arch;
        dev.device = device;
        dev.package = package;
        project =
            projectPath.empty() ? pwctest::DefaultProject(arch) : pwctest::LoadProject(projectPath);
        eng = pwctest::MakeEngine(dev, project.get());
    }

    PD_TABLE* Table(const char* panel, const char* table) {
        PC_PANEL* p = eng->GetPanel(eng->GetPanelIndex(panel));
        return p ? p->GetTable(p->GetTableIndex(table)) : nullptr;
    }
    PD_TABLE* Io() { return Table("I/O", "Input Output"); }
    PD_TABLE* Bidi() { return Table("I/O", "Bidi"); }
    PD_TABLE* Banks() { return Table("I/O", "Bank Voltage"); }
    PD_TABLE* IoTotal() { return Table("I/O", "Total I/O"); }
    PD_TABLE* Term() { return Table("I/O Term", "Termination"); }
    PD_TABLE* TermTotal() { return Table("I/O Term", "Total I/O Term"); }

    void SetBank(const std::string& bank, const std::string& voltage) {
        PD_TABLE* b = Banks();
        b->SetValueAt(voltage.c_str(), b->GetRowNumber(bank), b->GetColumnIndex("Voltage"));
    }
    std::string BankVoltage(const std::string& bank) {
        PD_TABLE* b = Banks();
        return b->GetValueAt(b->GetRowNumber(bank), b->GetColumnIndex("Voltage"));
    }

    pwctest::DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

}  // namespace iotest

#endif
