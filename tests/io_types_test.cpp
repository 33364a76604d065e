// I/O standards: the classes of a type by architecture, the PIO types of the
// power data, the output voltage of a standard and the device's type lists.
#include <gtest/gtest.h>

#include <cctype>

#include "io_fixture.h"

using namespace iotest;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

// An engine on an architecture whose data files the samples lack: its type
// rules need only the architecture's name.
std::unique_ptr<PC_ENG> EngineOnArch(const std::string& arch, pwctest::DeviceStrings& d,
                                     std::unique_ptr<PD_DATA>& project) {
    d.arch = arch;
    project = pwctest::DefaultProject();
    if (arch.find("zn2c00") == 0) return pwctest::MakeEngine(d, project.get());
    testing::internal::CaptureStderr();
    auto eng = pwctest::MakeEngine(d, project.get());
    testing::internal::GetCapturedStderr();
    return eng;
}

// ---- Classes --------------------------------------------------------------------------

struct ClassCase {
    const char* arch;
    const char* type;
    bool trueDifferential, singleEnd, halved, lvds;
};

class Classes : public ::testing::TestWithParam<ClassCase> {};

TEST_P(Classes, FollowTheListsOfTheArchitecture) {
    const ClassCase& c = GetParam();
    pwctest::DeviceStrings d;
    std::unique_ptr<PD_DATA> project;
    auto eng = EngineOnArch(c.arch, d, project);
    EXPECT_EQ(eng->IsDifferentialTrue(c.type), c.trueDifferential);
    EXPECT_EQ(eng->IsSingleEnd(c.type), c.singleEnd);
    EXPECT_EQ(eng->IsDifferentialTrueDividedBy2(c.type), c.halved);
    EXPECT_EQ(PC_ENG::isLVDStype(c.type), c.lvds);
}

INSTANTIATE_TEST_SUITE_P(
    Types, Classes,
    ::testing::Values(ClassCase{"zn2c00", "LVDS25", true, false, false, true},
                      ClassCase{"zn2c00", "LVDS25E", false, false, false, false},
                      ClassCase{"zn2c00", "BLVDS25", true, false, false, false},
                      ClassCase{"zn2c00", "LVPECL33", true, false, false, false},
                      ClassCase{"zn2c00", "MIPI", true, false, false, false},
                      ClassCase{"zn2c00", "LVCMOS33D", true, false, false, false},
                      // The long list holds the plain SSTL18 and SSTL15 names too.
                      ClassCase{"zn2c00", "SSTL18_I", true, false, false, false},
                      ClassCase{"zn2c00", "SSTL25_I", false, true, false, false},
                      ClassCase{"zn2c00", "SSTL25D_I", false, false, false, false},
                      ClassCase{"zn2c00", "HSTL18_I", false, true, false, false},
                      ClassCase{"zn2c00", "LVCMOS33", false, true, false, false},
                      ClassCase{"zn2c00", "LVCMOS33-DRIVE:8mA", false, true, false, false},
                      // The whole text is tested here: the "D" of DRIVE makes it not single-ended.
                      ClassCase{"zn2c00", "SSTL25_I-DRIVE:8mA", false, false, false, false},
                      ClassCase{"zn2c00", "NOSUCH", false, true, false, false},
                      ClassCase{"zn2c00a", "SSTL15D_II", true, false, false, false},
                      // Only the standard is tested on these.
                      ClassCase{"gy7s00", "SSTL25_I-DRIVE:8mA", false, true, false, false},
                      ClassCase{"bf7p00", "LVDS", true, false, true, true},
                      ClassCase{"bf7p00", "LVDS25", true, false, false, true},
                      ClassCase{"bf7p00", "LVPECL33", true, false, true, false},
                      ClassCase{"bf7p00", "LVCMOS25D", true, false, true, false},
                      // Older architectures: the short list and the "D" of SSTL.
                      ClassCase{"hq7g00", "SSTL18_I", false, true, false, false},
                      ClassCase{"hq7g00", "SSTL18D_I", true, false, false, false},
                      ClassCase{"hq7g00", "HSTL18D_I", false, false, false, false},
                      ClassCase{"hq7g00", "RSDS", true, false, false, false}),
    [](const auto& info) {
        std::string n = std::string(info.param.arch) + "_" + info.param.type;
        for (char& ch : n)
            if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
        return n;
    });

// ---- PIO types ------------------------------------------------------------------------

struct PioCase {
    const char* arch;
    const char* type;
    const char* input;
    const char* output;
};

class PioTypes : public ::testing::TestWithParam<PioCase> {};

TEST_P(PioTypes, NameTheCoefficientsOfTheType) {
    const PioCase& c = GetParam();
    pwctest::DeviceStrings d;
    std::unique_ptr<PD_DATA> project;
    auto eng = EngineOnArch(c.arch, d, project);
    EXPECT_EQ(eng->DetermineInputPIOtype(c.type), c.input);
    EXPECT_EQ(eng->DetermineOutputPIOtype(c.type), c.output);
}

INSTANTIATE_TEST_SUITE_P(
    Types, PioTypes,
    ::testing::Values(
        PioCase{"zn2c00", "LVCMOS33", "SingleEndIn_33", "SingleEndOut"},
        PioCase{"zn2c00", "LVCMOS33-DRIVE:8mA", "SingleEndIn_33", "SingleEndOut"},
        PioCase{"zn2c00", "PCI33", "SingleEndIn_33", "SingleEndOut"},
        PioCase{"zn2c00", "SSTL25_I", "SingleEndIn_25", "SingleEndOut"},
        PioCase{"zn2c00", "HSTL15_I", "SingleEndIn_15", "SingleEndOut"},
        PioCase{"zn2c00", "LVCMOS12", "SingleEndIn_12", "SingleEndOut"},
        // No code of its own: the plain single-ended type.
        PioCase{"zn2c00", "SSTL135_I", "SingleEndIn", "SingleEndOut"},
        PioCase{"zn2c00", "VORELLE", "SingleEndIn", "SingleEndOut"},
        PioCase{"zn2c00", "HSTL18D_I", "Diffin", "Diffout"},
        PioCase{"zn2c00", "LVDS25", "Diffin", "Diffout"},
        PioCase{"zn2c00", "MLVDS25", "Diffin", "Diffout"},
        PioCase{"zn2c00", "MIPI", "DEFAULT", "DEFAULT"},
        PioCase{"zn2c00", "IN:LVCMOS25", "SingleEndIn_25", "SingleEndOut"},
        // Exact names: the variant keeps its type, as older architectures do.
        PioCase{"zn2c00a", "LVCMOS33", "LVCMOS33", "LVCMOS33"},
        PioCase{"zn2c00a", "LVDS25-DIFFDRIVE:3.5", "LVDS25-DIFFDRIVE:3.5", "LVDS25-DIFFDRIVE:3.5"},
        PioCase{"bf7p00m", "LVCMOS18", "SingleEndIn_18", "SingleEndOut"},
        PioCase{"bf7p00g", "LVDS", "Diffin", "Diffout"},
        // Older architectures keep the type; some spell it their way.
        PioCase{"hq7g00", "LVCMOS33-DRIVE:8mA", "LVCMOS33-DRIVE:8mA", "LVCMOS33-DRIVE:8mA"},
        PioCase{"gy7scm00", "LVCMOS33-DRIVE:8mA-PWRSAVE:OFF", "LVCMOS33-8mA-OFF",
                "LVCMOS33-8mA-OFF"}),
    [](const auto& info) { return "Case" + std::to_string(info.index); });

// ---- Output voltage of a standard ------------------------------------------------------

struct OutputCase {
    const char* standard;
    double vccio;
    bool found;
    double volts;
};

class OutputVoltage : public ::testing::TestWithParam<OutputCase> {};

TEST_P(OutputVoltage, FollowsTheExpressionOfItsRow) {
    const OutputCase& c = GetParam();
    bool found = !c.found;
    EXPECT_NEAR(PC_ENG::IoTypeOutputVoltage(c.standard, c.vccio, &found), c.volts, 1e-12);
    EXPECT_EQ(found, c.found);
}

INSTANTIATE_TEST_SUITE_P(
    Standards, OutputVoltage,
    ::testing::Values(OutputCase{"LVCMOS33_8", 3.3, true, 2.5},    // VCCIO-0.8
                      OutputCase{"LVTTL33_2", 3.3, true, 2.3},     // VCCIO-1.0
                      OutputCase{"LVCMOS25_0.1", 2.5, true, 2.1},  // VCCIO-0.4
                      OutputCase{"LVCMOS15_2", 1.5, true, 0.75},   // 0.5*VCCIO
                      OutputCase{"PCI33", 3.3, true, 2.64},        // 0.8*VCCIO
                      OutputCase{"SSTL25_I", 2.5, true, 1.34},     // VCCIO-1.16
                      OutputCase{"LVDS25", 2.5, true, 0.35},
                      OutputCase{"LVCMOS33D_12", 3.3, true, 2.5},
                      // The 94th row is the last one searched.
                      OutputCase{"HYPT_4", 2.5, true, 0.6},
                      // The last two rows stand in the table and are never found.
                      OutputCase{"LVCMOS33D_16", 3.3, false, 3.3},
                      OutputCase{"LVCMOS33D_20", 3.3, false, 3.3},
                      OutputCase{"LVCMOS33", 3.3, false, 3.3}),
    [](const auto& info) { return "Case" + std::to_string(info.index); });

// Only the architectures that classify by the standard find a standard with
// its drive in the table; the PIO type of the others ("SingleEndOut") is in
// no row, and the pad sits at VCCIO.
struct PadCase {
    const char* arch;
    double volts;
};

class PadVoltage : public IoDesign, public ::testing::WithParamInterface<PadCase> {};

TEST_P(PadVoltage, OfATerminatedOutput) {
    pwctest::DeviceStrings d;
    std::unique_ptr<PD_DATA> p;
    auto other = EngineOnArch(GetParam().arch, d, p);
    PC_ENG& e = std::string(GetParam().arch) == dev.arch ? *eng : *other;
    const int driven = AddRow(
        Term(),
        {{"Type", "LVCMOS33-DRIVE:8mA"}, {"# O/P", "1"}, {"Rth (Ohm)", "50"}, {"Vth (V)", "1.65"}});
    EXPECT_NEAR(e.FindSupplyVccioOutput(Term(), driven, 3.3), GetParam().volts, 1e-12);
    // No load, no output, or a differential pair: the VCCIO itself.
    const int unloaded = AddRow(Term(), {{"Type", "LVCMOS33-DRIVE:8mA"}, {"# O/P", "1"}});
    const int input =
        AddRow(Term(), {{"Type", "LVCMOS33-DRIVE:8mA"}, {"# I/P", "1"}, {"Rth (Ohm)", "50"}});
    const int lvds = AddRow(Term(), {{"Type", "LVDS25"}, {"# O/P", "1"}, {"Rth (Ohm)", "100"}});
    for (int row : {unloaded, input, lvds})
        EXPECT_DOUBLE_EQ(e.FindSupplyVccioOutput(Term(), row, 3.3), 3.3) << row;
}

// "LVCMOS33_8" is VCCIO-0.8.
INSTANTIATE_TEST_SUITE_P(Archs, PadVoltage,
                         ::testing::Values(PadCase{"gy7s00", 2.5}, PadCase{"kt7c00", 2.5},
                                           PadCase{"zn2c00", 3.3}, PadCase{"hq7g00", 3.3}),
                         [](const auto& info) { return std::string(info.param.arch); });

// ---- The device's lists ---------------------------------------------------------------

TEST_F(IoDesign, TypeListsSpellAttributesAsTokens) {
    EXPECT_TRUE(eng->IsOnTheListCompare("Output", "LVCMOS33-DRIVE:8mA"));
    EXPECT_TRUE(eng->IsOnTheListCompare("Output", "LVDS25-DIFFDRIVE:3.5"));
    EXPECT_TRUE(eng->IsOnTheListCompare("Output", "SSTL25_I-TERM:50"));
    EXPECT_TRUE(eng->IsOnTheListCompare("Input", "LVCMOS33"));
    EXPECT_FALSE(eng->IsOnTheListCompare("Input", "LVCMOS33-DRIVE:8mA"));
    EXPECT_FALSE(eng->IsOnTheListCompare("Sideways", "LVCMOS33"));

    const auto& details = eng->GetIotypeDetails();
    ASSERT_EQ(details.count("LVCMOS33-DRIVE:8mA"), 1u);
    EXPECT_EQ(details.at("LVCMOS33-DRIVE:8mA"), (std::vector<std::pair<std::string, std::string>>{
                                                    {"IO TYPE:", "LVCMOS33"}, {"DRIVE:", "8"}}));
    EXPECT_EQ(eng->DetermindPIOType("Output", "LVCMOS33-DRIVE:8mA"), "LVCMOS33-8-OFF-OFF");

    // A count a type cannot have is not to be edited.
    const int row = AddRow(Io(), {{"Type", "LVCMOS33-DRIVE:8mA"}});
    EXPECT_EQ(
        eng->DoesCellBecomeUneditable("Input Output", Io(), row, Io()->GetColumnIndex("# I/P")), 1);
    EXPECT_EQ(
        eng->DoesCellBecomeUneditable("Input Output", Io(), row, Io()->GetColumnIndex("# O/P")), 0);
}

struct AllowedCase {
    const char* type;
    const char* kind;
    const char* text;
};

class AllowedText : public IoDesign, public ::testing::WithParamInterface<AllowedCase> {};

TEST_P(AllowedText, IsTheBankCellOfTheMatchingRow) {
    EXPECT_EQ(eng->GetOutBidInpVec(GetParam().type, GetParam().kind), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Types, AllowedText,
                         ::testing::Values(AllowedCase{"LVCMOS33-DRIVE:8mA", "Output", "(3.3)"},
                                           AllowedCase{"LVCMOS33", "Input", "2.5_(3.3)"},
                                           AllowedCase{"LVCMOS18", "Input", "1.2_1.5_(1.8)"},
                                           AllowedCase{"LVCMOS12", "Input", "ALL_1.2"},
                                           AllowedCase{"SSTL25_I-TERM:50", "Output", "(2.5)"},
                                           AllowedCase{"MLVDS25", "Bidir", "(2.5)"},
                                           AllowedCase{"NOSUCH", "Output", ""},
                                           // A drive in "mA" is a drive, spelt either way.
                                           AllowedCase{"LVCMOS25-8mA", "Output", "(2.5)"},
                                           AllowedCase{"LVCMOS25-DRIVE:8", "Output", "(2.5)"},
                                           AllowedCase{"LVDS25-DIFFDRIVE:3.5", "Output", "(2.5)"},
                                           // What the list lacks constrains nothing.
                                           AllowedCase{"LVCMOS18-DRIVE:5mA", "Output", ""},
                                           AllowedCase{"LVCMOS18-6mA", "Output", ""},
                                           AllowedCase{"LVDS25-DIFFDRIVE:2", "Output", ""},
                                           AllowedCase{"SSTL25_I-TERM:75", "Output", ""},
                                           AllowedCase{"LVCMOS33-DRIVE:8mA", "Input", ""},
                                           AllowedCase{"LVCMOS33", "Sideways", ""}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST_F(IoDesign, StandbyAndTerminationAttributes) {
    // Standards with a "-standby" member in the power data.
    EXPECT_TRUE(eng->IsStandbyIoType("LVCMOS33"));
    EXPECT_TRUE(eng->IsStandbyIoType("LVDS25-DIFFDRIVE:3.5"));
    EXPECT_FALSE(eng->IsStandbyIoType("LVCMOS15"));
    EXPECT_TRUE(PC_ENG::HasOnChipTermination("SSTL25_I-TERM:50"));
    EXPECT_FALSE(PC_ENG::HasOnChipTermination("SSTL25_I-TERM:OFF"));
    EXPECT_FALSE(PC_ENG::HasOnChipTermination("SSTL25_I"));
    EXPECT_EQ(PC_ENG::GetSetintersection({"a", "b", "c"}, {"b", "c", "d"}),
              (std::set<std::string>{"b", "c"}));
    EXPECT_TRUE(PC_ENG::GetSetintersection({"a"}, {}).empty());
}

}  // namespace
