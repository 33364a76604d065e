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

using pwctest::AddRow;
using pwctest::Cell;
using pwctest::Num;

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
