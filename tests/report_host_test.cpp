// `pwc report`: the files it writes and lists, reproducible dates, formats,
// and what it says when it can't write.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "host_fixture.h"

namespace {

namespace fs = std::filesystem;

const std::string kData = PWC_TEST_DATA_DIR;
const std::string kDemo = kData + "/projects/demo.pcf";

class HostEnvironment : public ::testing::Environment {
  public:
    void SetUp() override {
        setenv("PWC_DATA_DIR", (kData + "/devices").c_str(), 1);
        setenv("SOURCE_DATE_EPOCH", "1795341600", 1);
    }
};
const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new HostEnvironment);

using Result = pwctest::PwcRun;
using pwctest::Pwc;

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

class PwcReport : public ::testing::Test {
  protected:
    PwcReport()
        : dir(fs::path(::testing::TempDir()) / ("pwc_report_host_" + std::to_string(getpid()))) {
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    ~PwcReport() override {
        std::error_code ec;
        fs::remove_all(dir, ec);
    }
    fs::path dir;
};

const char* const kHtmlPages[] = {"demo.html",
                                  "demo_power_toc.html",
                                  "demo_power_top.html",
                                  "demo_power_summary.html",
                                  "demo_power_thermal.html",
                                  "demo_power_detail.html",
                                  "demo_power_charts.html"};
const char* const kStatistics[] = {"demo_ResourceUsage.csv", "demo_ClockUsage.csv",
                                   "demo_ClockTreeUsage.csv"};

TEST_F(PwcReport, WritesTextHtmlAndStatisticsAndListsEveryFile) {
    const fs::path out = dir / "out";
    const Result r = Pwc({"report", kDemo, "-o", out.string()});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.err, "");
    std::vector<std::string> expected{(out / "demo.txt").string()};
    for (const char* page : kHtmlPages) expected.push_back((out / page).string());
    for (const char* csv : kStatistics) expected.push_back((out / csv).string());
    EXPECT_EQ(Lines(r.out), expected);
    for (const std::string& path : expected) EXPECT_GT(fs::file_size(path), 0u) << path;
    const std::string text = ReadFile(out / "demo.txt");
    EXPECT_EQ(text.rfind("Power Calculator - Report\npwc ", 0), 0u);
    EXPECT_NE(text.find("\nDate: Sun Nov 22 10:00:00 2026\n"), std::string::npos);
    EXPECT_NE(text.find("\nPower Project Name : demo.pcf - "), std::string::npos);
    EXPECT_NE(text.find("\nDesign Name : sensor_hub - "), std::string::npos);
}

TEST_F(PwcReport, TheSameEpochGivesTheSameBytes) {
    ASSERT_EQ(Pwc({"report", kDemo, "-o", (dir / "a").string()}).code, 0);
    ASSERT_EQ(Pwc({"report", kDemo, "-o", (dir / "b").string()}).code, 0);
    int compared = 0;
    for (const auto& entry : fs::directory_iterator(dir / "a")) {
        EXPECT_EQ(ReadFile(entry.path()), ReadFile(dir / "b" / entry.path().filename()))
            << entry.path();
        ++compared;
    }
    EXPECT_EQ(compared, 11);
}

TEST_F(PwcReport, TheDefaultFolderStandsBesideTheProject) {
    fs::copy_file(kDemo, dir / "demo.pcf");
    const Result r = Pwc({"report", (dir / "demo.pcf").string(), "--format", "text"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(Lines(r.out), std::vector<std::string>{(dir / "demo_report" / "demo.txt").string()});
    EXPECT_TRUE(fs::is_regular_file(dir / "demo_report" / "demo.txt"));
    EXPECT_FALSE(fs::exists(dir / "demo_report" / "demo.html"));
}

TEST_F(PwcReport, FormatsAreChosenByNameAndUnknownOnesRefused) {
    Result r = Pwc({"report", kDemo, "-o", dir.string(), "--format", "html"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(Lines(r.out).size(), std::size(kHtmlPages));
    EXPECT_FALSE(fs::exists(dir / "demo.txt"));

    EXPECT_EQ(Pwc({"report", kDemo, "-o", dir.string(), "--format", ","}).code,
              pwchost::kExitUsage);
    r = Pwc({"report", kDemo, "-o", dir.string(), "--format", "text,pdf"});
    EXPECT_EQ(r.code, pwchost::kExitUsage);
    EXPECT_NE(r.err.find("unknown report format 'pdf' (formats: text, html, csv, matrix, debug)"),
              std::string::npos)
        << r.err;
}

TEST_F(PwcReport, AnUnwritableFolderIsSaidAndFails) {
    std::ofstream(dir / "plain-file") << "x";
    const Result r = Pwc({"report", kDemo, "-o", (dir / "plain-file" / "sub").string()});
    EXPECT_NE(r.code, 0);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find("cannot make the report folder"), std::string::npos) << r.err;
}

TEST_F(PwcReport, AFileThatCannotBeWrittenIsNamedAndTheRestAreWritten) {
    // A folder where the text report should go.
    fs::create_directories(dir / "demo.txt");
    const Result r = Pwc({"report", kDemo, "-o", dir.string()});
    EXPECT_EQ(r.code, pwchost::kExitNotWritten);
    EXPECT_NE(r.err.find("cannot write '" + (dir / "demo.txt").string() + "'"), std::string::npos)
        << r.err;
    EXPECT_EQ(Lines(r.out).size(), std::size(kHtmlPages) + std::size(kStatistics));
    EXPECT_TRUE(fs::is_regular_file(dir / "demo_power_detail.html"));
}

TEST_F(PwcReport, MatricesAndEquationPagesOnlyWhenAskedFor) {
    Result r = Pwc({"report", kDemo, "-o", dir.string(), "--format", "matrix"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(Lines(r.out),
              (std::vector<std::string>{(dir / "demo_PowerMatrix.csv").string(),
                                        (dir / "demo_PowerMatrix.html").string(),
                                        (dir / "demo_PowerMatrix_power_detail.html").string()}));
    EXPECT_FALSE(fs::exists(dir / "HtmlDebugDir"));
    const std::string matrix = ReadFile(dir / "demo_PowerMatrix.csv");
    EXPECT_NE(matrix.find("Supply\\Blocks,Logic Block,"), std::string::npos);

    // The equation pages and the calculation log go into the report folder,
    // nowhere else.
    const fs::path out = dir / "debug";
    r = Pwc({"report", kDemo, "-o", out.string(), "--format", "debug"});
    unsetenv("VRL_PWC_HTML_DEBUG");
    ASSERT_EQ(r.code, 0) << r.err;
    const std::vector<std::string> listed = Lines(r.out);
    ASSERT_FALSE(listed.empty());
    EXPECT_EQ(listed.back(), (out / "demo_calc.log").string());
    EXPECT_TRUE(fs::is_regular_file(out / "HtmlDebugDir" / "debug_power_detaile.html"));
    EXPECT_TRUE(fs::is_regular_file(out / "HtmlDebugDir" /
                                    "debug_power_detaile_power_LogicBlock_DynamicIcc.html"));
    for (const std::string& path : listed) EXPECT_EQ(path.rfind(out.string(), 0), 0u) << path;
    EXPECT_FALSE(fs::exists("HtmlDebugDir"));
}

TEST_F(PwcReport, OpenPrintsTheFrameSetsUrl) {
    const char* path = std::getenv("PATH");
    const std::string saved = path ? path : "";
    setenv("PATH", dir.string().c_str(), 1);  // no opener to start
    const Result r = Pwc({"report", kDemo, "-o", dir.string(), "--open"});
    setenv("PATH", saved.c_str(), 1);
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(Lines(r.out).back(), "file://" + fs::absolute(dir / "demo.html").string());
    EXPECT_NE(r.err.find("no xdg-open"), std::string::npos);

    const Result textOnly =
        Pwc({"report", kDemo, "-o", dir.string(), "--format", "text", "--open"});
    EXPECT_EQ(textOnly.code, pwchost::kExitUsage);
}

TEST(ReportDateLine, ReadsTheEpochInUtc) {
    EXPECT_EQ(pwchost::ReportDateLine(), "Date: Sun Nov 22 10:00:00 2026");
    setenv("SOURCE_DATE_EPOCH", "0", 1);
    EXPECT_EQ(pwchost::ReportDateLine(), "Date: Thu Jan  1 00:00:00 1970");
    setenv("SOURCE_DATE_EPOCH", "soon", 1);
    EXPECT_THROW(pwchost::ReportDateLine(), pwchost::UsageError);
    setenv("SOURCE_DATE_EPOCH", "1795341600", 1);
}

}  // namespace
