#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "pd_util.h"

namespace {

std::vector<std::string> Tokens(const char* text, const char* delimiters) {
    int count = -1;
    char** array = PD_UTIL::GetArrayOfTokens(text, delimiters, &count);
    std::vector<std::string> out(array, array + count);
    PD_UTIL::DeleteArray(array, count);
    return out;
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

}  // namespace

TEST(DataUtil, SpecialCompareTreatsQuestionMarkInThePatternOnly) {
    EXPECT_EQ(PD_UTIL::SpecialCompare("G?D5U-25?", "GVD5U-25F"), 0);
    EXPECT_EQ(PD_UTIL::SpecialCompare(std::string("ABC"), std::string("ABC")), 0);
    EXPECT_NE(PD_UTIL::SpecialCompare("G?D5U-25?", "GVD5U-25"), 0);
    EXPECT_NE(PD_UTIL::SpecialCompare("GVD5U", "G?D5U"), 0);
    EXPECT_EQ(PD_UTIL::SpecialCompare("G?D5U", "G?D5U"), 0);
    EXPECT_NE(PD_UTIL::SpecialCompare("abc", "abd"), 0);
    EXPECT_EQ(PD_UTIL::SpecialCompare("", ""), 0);
}

TEST(DataUtil, TokensDropEmptyPieces) {
    EXPECT_EQ(Tokens("1.0, 2.0", ", "), (std::vector<std::string>{"1.0", "2.0"}));
    EXPECT_EQ(Tokens("1.0, 2.0\n3", ", "), (std::vector<std::string>{"1.0", "2.0\n3"}));
    EXPECT_EQ(Tokens("1.0, 2.0\n3", ", \n"), (std::vector<std::string>{"1.0", "2.0", "3"}));
    EXPECT_EQ(Tokens(",,a,,", ","), (std::vector<std::string>{"a"}));
    EXPECT_TRUE(Tokens("", ",").empty());
    EXPECT_TRUE(Tokens(" , ", ", ").empty());
}

TEST(DataUtil, BlanksAreCleanedAndFiltered) {
    char text[] = " \t a b \r\n";
    PD_UTIL::CleanEntry(text);
    EXPECT_STREQ(text, "a b");
    char blank[] = "   ";
    PD_UTIL::CleanEntry(blank);
    EXPECT_STREQ(blank, "");
    std::string s = " LVCMOS 33 \t";
    PD_UTIL::FilterBlank(s);
    EXPECT_EQ(s, "LVCMOS33");
}

TEST(DataUtil, DataFilesAreFoundInTheDataDirectory) {
    unsetenv("PWC_DATA_DIR");
    PD_UTIL::SetDataDir("/opt/devices");
    char name[PD_UTIL::kFilenameSize] = "zn2c00.pwr";
    PD_UTIL::GetFilenameRTF(name);
    EXPECT_STREQ(name, "/opt/devices/zn2c00.pwr");
    PD_UTIL::GetFilenameRTF(name);  // already a path
    EXPECT_STREQ(name, "/opt/devices/zn2c00.pwr");

    setenv("PWC_DATA_DIR", "/env/dir", 1);
    char other[PD_UTIL::kFilenameSize] = "zn2c00.pqn";
    PD_UTIL::GetFilenameRTF(other);
    EXPECT_STREQ(other, "/env/dir/zn2c00.pqn");
    setenv("PWC_DATA_DIR", std::string(PD_UTIL::kFilenameSize, 'd').c_str(), 1);
    char tooLong[PD_UTIL::kFilenameSize] = "x.pwr";
    PD_UTIL::GetFilenameRTF(tooLong);
    EXPECT_STREQ(tooLong, "x.pwr");

    unsetenv("PWC_DATA_DIR");
    PD_UTIL::SetDataDir("");
    EXPECT_FALSE(PD_UTIL::GetDataDir().empty());
    EXPECT_FALSE(PD_UTIL::FileExists("/nonexistent/file"));
    EXPECT_FALSE(PD_UTIL::FileExists("/"));
}

TEST(DataUtil, CalcLogOpensKeepsTargetAndCloses) {
    const std::string path = testing::TempDir() + "pwc_calc_" + std::to_string(getpid()) + ".log";
    PD_UTIL::FCprintln("nowhere");
    EXPECT_FALSE(PD_UTIL::IsCalcLogOpen());
    PD_UTIL::DebugMode(3, path);
    EXPECT_TRUE(PD_UTIL::IsCalcLogOpen());
    PD_UTIL::FCprintln("one");
    PD_UTIL::DebugMode(0, "");
    EXPECT_FALSE(PD_UTIL::IsCalcLogOpen());
    PD_UTIL::FCprintln(std::string("dropped"));
    PD_UTIL::DebugMode(3, "0");  // same target again: appends
    EXPECT_TRUE(PD_UTIL::IsCalcLogOpen());
    PD_UTIL::FCprintln(std::string("two"));
    PD_UTIL::DebugMode(7, "ignored");
    EXPECT_TRUE(PD_UTIL::IsCalcLogOpen());
    PD_UTIL::DebugMode(0, "0");
    EXPECT_EQ(Slurp(path), "one\ntwo\n");
    EXPECT_TRUE(PD_UTIL::FileExists(path.c_str()));
    EXPECT_FALSE(PD_UTIL::IsBinaryFile(path.c_str()));
    PD_UTIL::DebugMode(3, "");
    EXPECT_FALSE(PD_UTIL::IsCalcLogOpen());
    std::remove(path.c_str());
}

TEST(DataUtil, RunLogGoesToStderrUnlessRedirected) {
    testing::internal::CaptureStderr();
    PD_UTIL::Fprint("a");
    PD_UTIL::Fprintln(std::string("b"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ab\n");
    std::FILE* f = std::tmpfile();
    PD_UTIL::SetRunLog(f);
    PD_UTIL::Fprintln("c");
    PD_UTIL::SetRunLog(nullptr);
    std::rewind(f);
    char buffer[8] = {};
    EXPECT_EQ(std::fread(buffer, 1, sizeof buffer, f), 2u);
    EXPECT_STREQ(buffer, "c\n");
    std::fclose(f);
}
