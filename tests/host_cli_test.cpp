// The pwc command: its error paths, its report of the demo project, cell
// edits moving the result, saving and reopening, new projects and convert.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "engine_fixture.h"
#include "host_fixture.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

const std::string kData = PWC_TEST_DATA_DIR;
const std::string kDemo = kData + "/projects/demo.pcf";

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

using Result = pwctest::PwcRun;
using pwctest::Pwc;

// The --json report of a project, with extra arguments.
Json Calc(const std::string& project, std::vector<std::string> extra = {}) {
    std::vector<std::string> args{"calc", project, "--json"};
    args.insert(args.end(), extra.begin(), extra.end());
    const Result r = Pwc(args);
    EXPECT_EQ(r.code, 0) << r.err;
    return r.code == 0 ? Json::parse(r.out) : Json::object();
}

const Json& Supply(const Json& report, const std::string& name) {
    for (const Json& s : report["supplies"])
        if (s["name"] == name) return s;
    static const Json none = Json::object();
    ADD_FAILURE() << "no supply " << name;
    return none;
}

double Block(const Json& report, const std::string& name) {
    for (const Json& b : report["blocks"])
        if (b["name"] == name) return b["total_w"].get<double>();
    ADD_FAILURE() << "no block " << name;
    return 0.0;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

class HostTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("pwc_host_test_" + std::to_string(getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    std::string Path(const std::string& name) const { return (dir / name).string(); }
    // The demo project with one line replaced.
    std::string DemoWith(const std::string& from, const std::string& to) {
        std::string text = ReadFile(kDemo);
        const size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos) text.replace(at, from.size(), to);
        const std::string path = Path("edited.pcf");
        WriteFile(path, text);
        return path;
    }
    fs::path dir;
};

// ---- Bad input: one line on stderr, nothing on stdout, the exit code -------

struct BadCase {
    const char* label;
    std::vector<std::string> args;  // "@demo" and "@dir/" are substituted
    int code;
    const char* message;  // a piece of the one-line message
};

class HostErrorTest : public HostTest, public ::testing::WithParamInterface<BadCase> {};

TEST_P(HostErrorTest, GivesOneClearLineAndTheExitCode) {
    const BadCase& c = GetParam();
    WriteFile(Path("garbage.pcf"), "this is no project\n");
    WriteFile(Path("exists.pcf"), ReadFile(kDemo));
    std::vector<std::string> args;
    for (std::string a : c.args) {
        if (a == "@demo") a = kDemo;
        if (a.rfind("@dir/", 0) == 0) a = Path(a.substr(5));
        args.push_back(a);
    }
    const Result r = Pwc(args);
    EXPECT_EQ(r.code, c.code);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
    EXPECT_EQ(r.err.rfind("pwc: ", 0), 0u) << r.err;
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
}

const std::string kSetAt = "Logic Block/Logic/cpu_core/";

INSTANTIATE_TEST_SUITE_P(
    Cases, HostErrorTest,
    ::testing::Values(
        BadCase{"NoCommand", {}, 2, "subcommand"},
        BadCase{"UnknownCommand", {"bogus"}, 2, "unknown command 'bogus'"},
        BadCase{"CalcWithoutProject", {"calc"}, 2, "project is required"},
        BadCase{"MissingProject", {"calc", "@dir/none.pcf"}, 2, "does not exist"},
        BadCase{"UnreadableProject", {"calc", "@dir/garbage.pcf"}, 2, "not a valid data file"},
        BadCase{"ProjectIsADirectory", {"calc", "@dir/"}, 2, "is a directory"},
        BadCase{"NotAProject",
                {"calc", PWC_TEST_DATA_DIR "/devices/zn2c00.pwr"},
                2,
                "no \"Project\" key section"},
        BadCase{"MissingTab", {"calc", "@demo", "--set", "Nope/Logic/0/LUT=1"}, 2, "no tab 'Nope'"},
        BadCase{"MissingTable",
                {"calc", "@demo", "--set", "Logic Block/Nope/0/LUT=1"},
                2,
                "has no table 'Nope' (tables: Logic"},
        BadCase{"MissingRow",
                {"calc", "@demo", "--set", "Logic Block/Logic/gpu/Freq. (MHz)=1"},
                2,
                "has no row 'gpu' (rows: cpu_core"},
        BadCase{"RowIndexPastTheEnd",
                {"calc", "@demo", "--set", "Logic Block/Logic/#5/Freq. (MHz)=1"},
                2,
                "or an index 0 to 4"},
        BadCase{"MissingColumn",
                {"calc", "@demo", "--set", kSetAt + "Speed=1"},
                2,
                "has no column 'Speed' (columns: Module Name"},
        BadCase{"SetWithoutValue", {"calc", "@demo", "--set", kSetAt + "LUT"}, 2, "expected TAB"},
        BadCase{"NonNumericVoltage",
                {"calc", "@demo", "--set", "Summary/VDPM/Vcc/Voltage=high"},
                2,
                "must be a number, not 'high'"},
        BadCase{"VoltageOutOfRange",
                {"calc", "@demo", "--set", "Summary/VDPM/Vcc/Voltage=1.5"},
                2,
                "is not valid for supply Vcc"},
        BadCase{
            "NegativeDpm", {"calc", "@demo", "--set", "Summary/VDPM/Vcc/DPM=-1"}, 2, "negative"},
        BadCase{"ResultTable",
                {"calc", "@demo", "--set", "Summary/Power/Vcc/Static (W)=1"},
                2,
                "holds results"},
        BadCase{"UnknownProcess",
                {"calc", "@demo", "--process", "Best"},
                2,
                "process 'Best' is not available"},
        BadCase{"NonNumericAmbient", {"calc", "@demo", "--ambient", "warm"}, 2, "--ambient"},
        BadCase{"UnknownTab", {"calc", "@demo", "--tab", "Nope"}, 2, "no tab 'Nope'"},
        BadCase{"SaveOverInput",
                {"calc", "@dir/exists.pcf", "--save", "@dir/exists.pcf"},
                2,
                "refusing to overwrite the input project"},
        BadCase{"SaveIntoMissingDirectory",
                {"calc", "@demo", "--save", "@dir/no/such/dir.pcf"},
                2,
                "cannot write"},
        BadCase{
            "NewUnknownFamily",
            {"new", "--family", "Quenra9", "--device", "X", "--package", "Y", "-o", "@dir/n.pcf"},
            2,
            "unknown family 'Quenra9'"},
        BadCase{"NewUnknownDevice",
                {"new", "--family", "Quenra2", "--device", "KZQ2-9999", "--package", "TG144", "-o",
                 "@dir/n.pcf"},
                2,
                "unknown device 'KZQ2-9999' for family Quenra2 (choices: KZQ2-256HC"},
        BadCase{"NewUnknownPackage",
                {"new", "--family", "Quenra2", "--device", "KZQ2-640ZE", "--package", "CABGA256",
                 "-o", "@dir/n.pcf"},
                2,
                "unknown package 'CABGA256' for KZQ2-640ZE"},
        BadCase{"NewUnknownSpeed",
                {"new", "--family", "Quenra2", "--device", "KZQ2-640ZE", "--package", "TG144",
                 "--speed", "3", "-o", "@dir/n.pcf"},
                2,
                "unknown speed grade '3'"},
        BadCase{"NewOverExistingFile",
                {"new", "--family", "Quenra2", "--device", "KZQ2-640ZE", "--package", "TG144", "-o",
                 "@dir/exists.pcf"},
                2,
                "use --force"},
        BadCase{"ConvertMissingInput", {"convert", "@dir/none", "@dir/out"}, 2, "does not exist"},
        BadCase{
            "ConvertOverExistingFile", {"convert", "@demo", "@dir/exists.pcf"}, 2, "use --force"},
        BadCase{"ConvertBothForms",
                {"convert", "@demo", "@dir/x", "--text", "--binary"},
                2,
                "excludes"}),
    [](const ::testing::TestParamInfo<BadCase>& info) { return info.param.label; });

TEST_F(HostTest, RefusesProjectsOfDevicesTheDataLack) {
    for (const auto& [from, to, message] :
         std::vector<std::tuple<std::string, std::string, std::string>>{
             {"Device     = KZQ2-1200HC", "Device     = KZQ2-9999", "unknown device 'KZQ2-9999'"},
             {"Family     = Quenra2", "Family     = Orvan9", "unknown family 'Orvan9'"},
             {"Package    = CABGA256", "Package    = QFN9", "unknown package 'QFN9'"},
             {"Device     = KZQ2-1200HC", "Device     =", "the project names no Device"}}) {
        const Result r = Pwc({"calc", DemoWith(from, to)});
        EXPECT_EQ(r.code, 2) << to;
        EXPECT_NE(r.err.find(message), std::string::npos) << r.err;
    }
}

TEST_F(HostTest, ProtectsTheInputUnlessForced) {
    const std::string project = Path("mine.pcf");
    fs::copy_file(kDemo, project);
    const std::string before = ReadFile(project);
    // Another spelling of the same file is still the input.
    const std::string other = (dir / "." / "mine.pcf").string();
    EXPECT_EQ(Pwc({"calc", project, "--save", other}).code, 2);
    EXPECT_EQ(ReadFile(project), before);

    const Result forced =
        Pwc({"calc", project, "--set", kSetAt + "Freq. (MHz)=96", "--save", project, "--force"});
    EXPECT_EQ(forced.code, 0) << forced.err;
    EXPECT_NE(ReadFile(project), before);
    EXPECT_EQ(Calc(project)["total_power_w"],
              Calc(kDemo, {"--set", kSetAt + "Freq. (MHz)=96"})["total_power_w"]);
    // No temporary file of the save is left behind.
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);
}

// ---- The report --------------------------------------------------------------

TEST_F(HostTest, TextReportHasEverySection) {
    const Result r = Pwc({"calc", kDemo});
    ASSERT_EQ(r.code, 0) << r.err;
    for (const char* piece :
         {"Device\n", "KZQ2-1200HC", "CABGA256", "Commercial", "zn2c00", "sensor_hub",
          "\nSupplies\n", "Voltage (V)", "Static (W)", "Dynamic (A)", "Vccio 3.3", "Vccaux",
          "\nBlocks\n", "Logic Block", "Total power (W)", "Junction temperature (C)",
          "Maximum safe ambient (C)", "Effective theta-JA (C/W)"})
        EXPECT_NE(r.out.find(piece), std::string::npos) << piece;
    // The columns line up: every row of the supply table has the same length.
    std::istringstream lines(r.out.substr(r.out.find("Supplies\n") + 9));
    std::string head, row;
    std::getline(lines, head);
    while (std::getline(lines, row) && !row.empty()) EXPECT_EQ(row.size(), head.size()) << row;
}

TEST_F(HostTest, JsonReportHasTheKeysAndConsistentNumbers) {
    const Json j = Calc(kDemo);
    for (const char* key : {"device", "supplies", "blocks", "total_power_w",
                            "junction_temperature_c", "max_safe_ambient_c", "theta_ja", "messages"})
        EXPECT_TRUE(j.contains(key)) << key;
    EXPECT_EQ(j["device"]["device"], "KZQ2-1200HC");
    EXPECT_EQ(j["device"]["arch"], "zn2c00");
    EXPECT_EQ(j["device"]["ambient_c"], 35.0);
    // The demo's external ASC rail has a supply of its own, last.
    ASSERT_EQ(j["supplies"].size(), 9u);
    EXPECT_EQ(j["supplies"][0]["name"], "Vcc");
    EXPECT_EQ(j["supplies"][6]["name"], "Vccaux");
    EXPECT_EQ(j["supplies"][7]["name"], "Vccm");
    EXPECT_EQ(j["supplies"][8]["name"], "ASCVCC 3.300");

    // Totals are static plus dynamic and currents are power over voltage,
    // within the rounding of each cell to six places.
    double supplySum = 0.0;
    for (const Json& s : j["supplies"]) {
        for (const char* key :
             {"voltage", "static_w", "dynamic_w", "total_w", "static_a", "dynamic_a", "total_a"})
            ASSERT_TRUE(s[key].is_number()) << s["name"] << " " << key;
        EXPECT_NEAR(s["total_w"].get<double>(),
                    s["static_w"].get<double>() + s["dynamic_w"].get<double>(), 2e-6);
        EXPECT_NEAR(s["total_a"].get<double>() * s["voltage"].get<double>(),
                    s["total_w"].get<double>(), 1e-5);
        supplySum += s["total_w"].get<double>();
    }
    EXPECT_NEAR(j["supply_total"]["total_w"].get<double>(), supplySum, 1e-5);
    double blockSum = 0.0;
    for (const Json& b : j["blocks"]) blockSum += b["total_w"].get<double>();
    const double power = j["total_power_w"].get<double>();
    EXPECT_NEAR(power, blockSum, 1e-5);
    EXPECT_GT(power, 0.0);

    // The junction settles at ambient plus theta times power, below the
    // commercial limit of 85 C, from which the safe ambient is taken.
    ASSERT_TRUE(j["junction_temperature_c"].is_number());
    const double tj = j["junction_temperature_c"].get<double>();
    const double theta = j["theta_ja"].get<double>();
    EXPECT_GT(theta, 0.0);
    EXPECT_NEAR(tj, 35.0 + theta * power, 0.02);
    const double safe = j["max_safe_ambient_c"].get<double>();
    EXPECT_LT(safe, 85.0);
    EXPECT_NEAR(safe, 85.0 - theta * power, 0.05 + theta * power);
    EXPECT_TRUE(j["messages"].is_array());
}

// A tab's rows with their power: every row of its item tables, and a total
// table whose dynamic total is the sum of the rows' dynamic power.
TEST_F(HostTest, TabShowsEachRowsPowerAndItsTotal) {
    const Json j = Calc(kDemo, {"--tab", "Logic Block"});
    ASSERT_EQ(j["tabs"].size(), 1u);
    const Json& tab = j["tabs"][0];
    EXPECT_EQ(tab["name"], "Logic Block");
    ASSERT_EQ(tab["tables"].size(), 2u);
    const Json& rows = tab["tables"][0]["rows"];
    ASSERT_FALSE(rows.empty());
    double dynamic = 0.0;
    for (const Json& row : rows) {
        EXPECT_TRUE(row["Module Name"].is_string());
        dynamic += row["Dyn. Pwr (W)"].get<double>();
    }
    const Json& total = tab["tables"][1]["rows"][0];
    EXPECT_NEAR(total["Total Dyn. Pwr (W)"].get<double>(), dynamic, 1e-6 * rows.size());
    EXPECT_NEAR(total["Total Pwr (W)"].get<double>(), Block(j, "Logic Block"), 1e-6);

    const Result text = Pwc({"calc", kDemo, "--tab", "Logic Block"});
    ASSERT_EQ(text.code, 0) << text.err;
    for (const char* piece : {"\nTab Logic Block\n", "   Logic\n", "Module Name", "cpu_core",
                              "   Total Logic Block\n", "Total Pwr (W)"})
        EXPECT_NE(text.out.find(piece), std::string::npos) << piece;
}

// ---- Edits move the result -----------------------------------------------------

TEST_F(HostTest, EditsMoveTheResult) {
    const Json base = Calc(kDemo);
    const double vccDyn = Supply(base, "Vcc")["dynamic_w"].get<double>();

    // Dynamic power is linear in frequency: doubling one row's clock adds
    // that row's dynamic power once more, which is less than the whole.
    const Json faster = Calc(kDemo, {"--set", kSetAt + "Freq. (MHz)=96"});
    const double added = Supply(faster, "Vcc")["dynamic_w"].get<double>() - vccDyn;
    EXPECT_GT(added, 0.0);
    EXPECT_LT(added, vccDyn);
    EXPECT_GT(faster["total_power_w"].get<double>(), base["total_power_w"].get<double>());
    EXPECT_GT(Block(faster, "Logic Block"), Block(base, "Logic Block"));

    // Row by index, by "#index", and the column by its project-file key.
    for (const char* text :
         {"Logic Block/Logic/0/Freq. (MHz)=96", "Logic Block/Logic/#0/Freq. (MHz)=96",
          "Logic Block/Logic/cpu_core/Freq=96"})
        EXPECT_EQ(Calc(kDemo, {"--set", text})["total_power_w"], faster["total_power_w"]) << text;

    // A tab whose name holds "/" is found all the same.
    EXPECT_EQ(Pwc({"calc", kDemo, "--set", "I/O/Input Output/uart/Input Freq. (MHz)=24"}).code, 0);

    // No activity, no dynamic power from logic.
    std::vector<std::string> idle;
    for (const char* row : {"cpu_core", "sensor_filter", "uart_x2", "spi_master", "housekeeping"}) {
        idle.push_back("--set");
        idle.push_back(std::string("Logic Block/Logic/") + row + "/AF (%)=0");
    }
    EXPECT_LT(Supply(Calc(kDemo, idle), "Vcc")["dynamic_w"].get<double>(), vccDyn);

    // Supplies: the voltage is stored, a DPM scales the supply's power up.
    const Json volts = Calc(kDemo, {"--set", "Summary/VDPM/Vcc/Voltage=1.25"});
    EXPECT_EQ(Supply(volts, "Vcc")["voltage"], 1.25);
    const Json dpm = Calc(kDemo, {"--set", "Summary/VDPM/Vcc/DPM=2"});
    EXPECT_GT(Supply(dpm, "Vcc")["total_w"].get<double>(),
              Supply(base, "Vcc")["total_w"].get<double>());

    // Leakage rises with temperature and with the worst process corner.
    const Json hot = Calc(kDemo, {"--ambient", "70"});
    EXPECT_EQ(hot["device"]["ambient_c"], 70.0);
    EXPECT_GT(Supply(hot, "Vcc")["static_w"].get<double>(),
              Supply(base, "Vcc")["static_w"].get<double>());
    EXPECT_GT(hot["junction_temperature_c"].get<double>(), 70.0);
    // Above 125 C the junction is reported capped, as text.
    const Json oven = Calc(kDemo, {"--ambient", "130"});
    EXPECT_EQ(oven["junction_temperature_c"], "125+");
    EXPECT_NE(Pwc({"calc", kDemo, "--ambient", "130"}).out.find("125+"), std::string::npos);
    const Json worst = Calc(kDemo, {"--process", "Worst"});
    EXPECT_EQ(worst["device"]["process"], "Worst");
    EXPECT_GT(Supply(worst, "Vcc")["static_w"].get<double>(),
              Supply(base, "Vcc")["static_w"].get<double>());
}

// An edit of one tab's row moves that tab's block; the others move only by
// the leakage of a junction a little warmer.
TEST_F(HostTest, EachTabsEditMovesItsOwnBlock) {
    const Json base = Calc(kDemo);
    const struct {
        const char* set;
        const char* block;
    } cases[] = {
        {"Clocks/Clocks/clk_sys/Freq. (MHz)=96", "Clocks"},
        {"Block RAM/SP RAM/coef_rom/Freq. (MHz)=96", "Block RAM"},
        {"PLL/PLL/pll_sys/Freq. (MHz)=24", "PLL"},
        {"Misc/CLKDIV/clk_sys/Freq. (MHz)=96", "Other"},
        {"EFB/TC/0/Freq. (MHz)=48", "EFB"},
        {"I/O Term/Termination/sdram_clk/Rth (Ohm)=25", "I/O"},
        {"I/O/Bidi/i2c_sensor/Freq. (MHz)=1", "I/O"},
    };
    for (const auto& c : cases) {
        const Json edited = Calc(kDemo, {"--set", c.set});
        for (const Json& b : base["blocks"]) {
            const std::string name = b["name"];
            if (name == c.block)
                EXPECT_GT(Block(edited, name), b["total_w"].get<double>()) << c.set;
            else
                EXPECT_NEAR(Block(edited, name), b["total_w"].get<double>(),
                            2e-6 + 0.01 * b["total_w"].get<double>())
                    << c.set << " " << name;
        }
    }
}

// ---- Banks and the I/O ---------------------------------------------------------

const Json& BankOf(const Json& report, int bank) {
    for (const Json& b : report["banks"])
        if (b["bank"] == bank) return b;
    static const Json none = Json::object();
    ADD_FAILURE() << "no bank " << bank;
    return none;
}

// The banks as the design places its I/O: each bank's voltage is one that
// all its rows allow, its used count the sum of its rows' pins.
TEST_F(HostTest, BanksShowTheirVoltageAndUse) {
    const Json j = Calc(kDemo);
    ASSERT_GE(j["banks"].size(), 3u);
    int used = 0;
    for (const Json& b : j["banks"]) {
        const std::string vccio = b["vccio"].get<std::string>();
        ASSERT_EQ(vccio.rfind("Vccio ", 0), 0u) << vccio;
        EXPECT_EQ(b["voltage"].get<double>(), std::strtod(vccio.c_str() + 6, nullptr));
        EXPECT_LE(b["used_io"].get<int>(), b["bonded_io"].get<int>());
        used += b["used_io"].get<int>();
        // Every bank's supply is a rail of the summary.
        EXPECT_TRUE(Supply(j, vccio).is_object());
    }
    EXPECT_GT(used, 0);
    // The UART and SPI pins (bank 0) run at 3.3 V, the LCD bus (bank 2) at 1.8 V.
    EXPECT_EQ(BankOf(j, 0)["vccio"], "Vccio 3.3");
    EXPECT_EQ(BankOf(j, 2)["vccio"], "Vccio 1.8");
    EXPECT_GT(Supply(j, "Vccio 3.3")["total_w"].get<double>(), 0.0);
    EXPECT_GT(Supply(j, "Vccio 1.8")["total_w"].get<double>(), 0.0);
    EXPECT_GT(Block(j, "I/O"), 0.0);

    const Result text = Pwc({"calc", kDemo});
    ASSERT_EQ(text.code, 0) << text.err;
    EXPECT_NE(text.out.find("\nBanks\n   Bank  VCCIO (V)  I/O used  Bonded\n"), std::string::npos)
        << text.out;

    // Moving an output's frequency moves its bank's rail, not another's.
    const Json faster = Calc(kDemo, {"--set", "I/O/Input Output/uart/Output Freq. (MHz)=96"});
    EXPECT_GT(Supply(faster, "Vccio 3.3")["dynamic_w"].get<double>(),
              Supply(j, "Vccio 3.3")["dynamic_w"].get<double>());
    EXPECT_EQ(Supply(faster, "Vccio 1.8")["dynamic_w"], Supply(j, "Vccio 1.8")["dynamic_w"]);
}

// A bank whose rows allow no common voltage, or whose voltage its rows do
// not allow, is a design-rule failure: exit 3, one message for the bank, and
// the numbers all the same.
TEST_F(HostTest, ABankConflictIsReportedWithItsOwnExitCode) {
    const struct {
        const char* set;
        const char* message;
    } cases[] = {
        {"I/O/Input Output/spi_miso/Type=LVCMOS18", "There is VCCIO voltage conflict in bank 0."},
        {"I/O/Bank Voltage/2/Voltage=Vccio 3.3", "There is VCCIO voltage conflict in bank 2."},
    };
    for (const auto& c : cases) {
        const Result r = Pwc({"calc", kDemo, "--json", "--set", c.set});
        EXPECT_EQ(r.code, pwchost::kExitDesignRule) << c.set << r.err;
        EXPECT_EQ(r.err, "");
        const Json j = Json::parse(r.out);
        EXPECT_EQ(j["messages"], Json::array({c.message})) << c.set;
        EXPECT_GT(j["total_power_w"].get<double>(), 0.0);

        const Result text = Pwc({"calc", kDemo, "--set", c.set});
        EXPECT_EQ(text.code, pwchost::kExitDesignRule);
        EXPECT_NE(text.out.find(std::string("\nMessages\n   ") + c.message + "\n"),
                  std::string::npos)
            << text.out;
    }
    EXPECT_EQ(Calc(kDemo)["messages"], Json::array());
}

// ---- Saving, new projects, conversion ------------------------------------------

TEST_F(HostTest, SavedProjectsGiveTheSameResult) {
    // Not Vcc's voltage: on this part it also sets Vccpg, whose table is not
    // saved.
    const std::vector<std::string> edits{"--set",     kSetAt + "Freq. (MHz)=72",
                                         "--set",     "Summary/VDPM/Vccaux/Voltage=3.135",
                                         "--ambient", "40"};
    for (const char* name : {"saved.pcf", "saved.pcfb"}) {
        const std::string saved = Path(name);
        std::vector<std::string> args = edits;
        args.push_back("--save");
        args.push_back(saved);
        Json edited = Calc(kDemo, args);
        ASSERT_TRUE(fs::exists(saved));
        EXPECT_EQ(PD_UTIL::IsBinaryFile(saved.c_str()), std::string(name).back() == 'b');
        Json reopened = Calc(saved);
        // Saving writes the performance grade; the device is the same.
        EXPECT_EQ(reopened["device"]["speed"], edited["device"]["speed"]);
        for (const char* key :
             {"supplies", "supply_total", "blocks", "total_power_w", "junction_temperature_c",
              "max_safe_ambient_c", "theta_ja", "messages"})
            EXPECT_EQ(reopened[key], edited[key]) << name << " " << key;
        EXPECT_EQ(reopened["device"]["ambient_c"], 40.0);
        EXPECT_EQ(Supply(reopened, "Vccaux")["voltage"], 3.135);
    }
}

TEST_F(HostTest, NewProjectsCalculate) {
    const std::string project = Path("fresh.pcf");
    const Result made = Pwc({"new", "--family", "Quenra2", "--device", "KZQ2-640ZE", "--package",
                             "TG144", "-o", project});
    ASSERT_EQ(made.code, 0) << made.err;
    const Json j = Calc(project);
    EXPECT_EQ(j["device"]["device"], "KZQ2-640ZE");
    EXPECT_EQ(j["device"]["package"], "TG144");
    EXPECT_EQ(j["device"]["speed"], "1");  // the first the catalog lists
    EXPECT_EQ(j["device"]["operating"], "Commercial");
    EXPECT_EQ(j["device"]["design_name"], "fresh");
    EXPECT_TRUE(j["total_power_w"].is_number());

    const Result again =
        Pwc({"new", "--family", "Quenra2", "--device", "KZQ2-1200UHC", "--package", "CABGA256",
             "--speed", "3", "--operating", "Industrial", "-o", project, "--force"});
    ASSERT_EQ(again.code, 0) << again.err;
    const Json k = Calc(project);
    EXPECT_EQ(k["device"]["device"], "KZQ2-1200UHC");
    EXPECT_EQ(k["device"]["speed"], "3");
    EXPECT_EQ(k["device"]["operating"], "Industrial");
}

TEST_F(HostTest, DevicesListsTheCatalog) {
    const Result text = Pwc({"devices"});
    ASSERT_EQ(text.code, 0) << text.err;
    for (const char* piece :
         {"KZQ2-256HC", "KZQ2-640ZE", "KZQ2-1200HC", "KZQ2-1200UHC", "CABGA256"})
        EXPECT_NE(text.out.find(piece), std::string::npos) << piece;
    const Result json = Pwc({"devices", "--json"});
    ASSERT_EQ(json.code, 0) << json.err;
    const Json list = Json::parse(json.out);
    // The four Quenra2 devices first; other families follow.
    ASSERT_GE(list.size(), 4u);
    EXPECT_EQ(list[1]["device"], "KZQ2-640ZE");
    EXPECT_EQ(list[1]["arch"], "zn2c00");
    EXPECT_EQ(list[1]["packages"], Json({"SG48", "TG100", "TG144"}));
}

TEST_F(HostTest, ADataDirectoryWithoutCatalogOrDataIsNamed) {
    setenv("PWC_DATA_DIR", dir.c_str(), 1);
    const Result devices = Pwc({"devices"});
    const Result calc = Pwc({"calc", kDemo});
    setenv("PWC_DATA_DIR", (kData + "/devices").c_str(), 1);
    EXPECT_EQ(devices.code, 2);
    EXPECT_NE(devices.err.find("has no catalog"), std::string::npos) << devices.err;
    // Without a catalog the family names the files, and there are none.
    EXPECT_EQ(calc.code, 2);
    EXPECT_NE(calc.err.find("no data for family 'Quenra2'"), std::string::npos) << calc.err;
}

TEST_F(HostTest, ConvertRoundTripsBothForms) {
    const std::string text1 = Path("a.pcf"), binary = Path("a.pcfb"), text2 = Path("b.pcf");
    ASSERT_EQ(Pwc({"convert", kDemo, text1}).code, 0);
    ASSERT_EQ(Pwc({"convert", text1, binary}).code, 0);
    ASSERT_EQ(Pwc({"convert", binary, text2}).code, 0);
    EXPECT_FALSE(PD_UTIL::IsBinaryFile(text1.c_str()));
    EXPECT_TRUE(PD_UTIL::IsBinaryFile(binary.c_str()));
    EXPECT_EQ(ReadFile(text1), ReadFile(text2));
    // Flags win over the name.
    ASSERT_EQ(Pwc({"convert", text1, text2, "--binary", "--force"}).code, 0);
    EXPECT_TRUE(PD_UTIL::IsBinaryFile(text2.c_str()));
    EXPECT_EQ(Calc(binary)["total_power_w"], Calc(kDemo)["total_power_w"]);
}

// The installed command itself: exit status and streams of the process.
TEST_F(HostTest, TheBinaryExitsWithTheCodes) {
    auto run = [&](const std::string& args) {
        const std::string cmd =
            std::string(PWC_CLI_BINARY) + " " + args + " 2>" + Path("err") + " >" + Path("out");
        const int status = std::system(cmd.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    };
    EXPECT_EQ(run("calc '" + kDemo + "' --json"), 0);
    EXPECT_NO_THROW(Json::parse(ReadFile(Path("out"))));
    EXPECT_EQ(ReadFile(Path("err")), "");
    EXPECT_EQ(run("calc '" + Path("none.pcf") + "'"), 2);
    EXPECT_EQ(ReadFile(Path("out")), "");
    EXPECT_EQ(ReadFile(Path("err")).find("pwc: project"), 0u);
    EXPECT_EQ(run("--help"), 0);
    EXPECT_NE(ReadFile(Path("out")).find("calc"), std::string::npos);
}

}  // namespace
