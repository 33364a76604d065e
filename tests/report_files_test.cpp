// Report files land whole or not at all, and the engine remembers which.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "engine_fixture.h"

using namespace pwctest;
namespace fs = std::filesystem;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

class ReportFiles : public ::testing::Test {
  protected:
    ReportFiles() : dir("pwc_report_files"), project(DefaultProject()) {
        eng = MakeEngine(dev, project.get());
    }
    ScratchDir dir;
    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

TEST_F(ReportFiles, WritesTheWholeTextAndReplacesAnOldFile) {
    const std::string path = dir.File("design.txt");
    ASSERT_TRUE(eng->WriteReportFile(path, "old, longer text\n"));
    std::string text(10000, 'x');
    text += "\nend\n";
    ASSERT_TRUE(eng->WriteReportFile(path, text));
    EXPECT_EQ(Slurp(path), text);
    // Nothing but the target is left in the folder.
    int files = 0;
    for (const auto& entry : fs::directory_iterator(dir.path())) {
        (void)entry;
        ++files;
    }
    EXPECT_EQ(files, 1);
    ASSERT_EQ(eng->ReportFiles().size(), 2u);
    EXPECT_EQ(eng->ReportFiles()[1].path, path);
    EXPECT_TRUE(eng->ReportFiles()[1].written);
}

TEST_F(ReportFiles, AnUnwritablePlaceLeavesNothingAndIsRecorded) {
    const std::string path = dir.File("no-such-folder/design.txt");
    EXPECT_FALSE(eng->WriteReportFile(path, "text"));
    EXPECT_FALSE(fs::exists(dir.path() / "no-such-folder"));
    ASSERT_EQ(eng->ReportFiles().size(), 1u);
    EXPECT_FALSE(eng->ReportFiles()[0].written);

    // A folder standing where the file should go: the folder stays as it was.
    fs::create_directory(dir.path() / "taken");
    EXPECT_FALSE(eng->WriteReportFile(dir.File("taken"), "text"));
    EXPECT_TRUE(fs::is_directory(dir.path() / "taken"));
    EXPECT_FALSE(fs::exists(dir.File("taken.pwc-partial")));

    eng->ClearReportFiles();
    EXPECT_TRUE(eng->ReportFiles().empty());
}

}  // namespace
