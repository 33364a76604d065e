#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "engine/baspcpanel/pc_panel.h"
#include "pd_util.h"

namespace {

// Counts its own destructions, to see that the panel deletes its tables
// through the virtual destructor.
class CountedTable : public PD_TABLE {
  public:
    CountedTable(const char* name, int* deaths) : PD_TABLE(name), deaths_(deaths) {}
    ~CountedTable() override { ++*deaths_; }

  private:
    int* deaths_;
};

TEST(PanelTest, DeletesItsTablesWithItself) {
    int deaths = 0;
    {
        PC_PANEL panel("Logic Block");
        panel.AddTable(new CountedTable("Logic Block", &deaths));
        panel.AddTable(new CountedTable("Logic", &deaths));
        PD_TABLE* base = new CountedTable("Routing", &deaths);
        panel.AddTable(base);
        EXPECT_EQ(panel.GetNumOfTables(), 3);
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 3);
}

TEST(PanelTest, LookUpByIndexAndName) {
    PC_PANEL panel("I/O");
    EXPECT_EQ(panel.GetTable(0), nullptr);
    EXPECT_EQ(panel.GetTableIndex("Input"), -1);

    PD_TABLE* input = new PD_TABLE("Input");
    PD_TABLE* output = new PD_TABLE("Output");
    PD_TABLE* input2 = new PD_TABLE("Input");
    panel.AddTable(input);
    panel.AddTable(output);
    panel.AddTable(input2);

    EXPECT_EQ(panel.GetTable(-1), nullptr);
    EXPECT_EQ(panel.GetTable(0), input);
    EXPECT_EQ(panel.GetTable(2), input2);
    EXPECT_EQ(panel.GetTable(3), nullptr);
    EXPECT_EQ(panel.tables[1], output);

    EXPECT_EQ(panel.GetTableIndex("Input"), 0);  // the first of that name
    EXPECT_EQ(panel.GetTableIndex("Output"), 1);
    EXPECT_EQ(panel.GetTableIndex("output"), -1);  // exact text
    EXPECT_EQ(panel.GetTableIndex("Out"), -1);
}

TEST(PanelTest, OwnsACopyOfItsName) {
    std::string name = "Clocks";
    PC_PANEL panel(name.c_str());
    name = "changed";
    EXPECT_STREQ(panel.GetName(), "Clocks");
    std::string other = "Clock Tree";
    panel.SetName(other.c_str());
    other.clear();
    EXPECT_STREQ(panel.GetName(), "Clock Tree");
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST(PanelTest, WritesLifeLinesToOpenCalcLogOnly) {
    const std::string path = testing::TempDir() + "panel_calc_" + std::to_string(getpid()) + ".log";
    std::remove(path.c_str());
    PD_UTIL::DebugMode(3, path);
    ASSERT_TRUE(PD_UTIL::IsCalcLogOpen());
    {
        PC_PANEL panel("Logic Block");
        panel.SetName("Logic");
    }
    PD_UTIL::DebugMode(0, "0");
    ASSERT_FALSE(PD_UTIL::IsCalcLogOpen());
    { PC_PANEL closed("Unseen"); }

    EXPECT_EQ(ReadFile(path), "PC_PANEL Logic Block\n~PC_PANEL Logic\n");
    std::remove(path.c_str());
}

TEST(PanelTest, DumpsEachTableInOrder) {
    PC_PANEL panel("Misc");
    panel.AddTable(new PD_TABLE("BANDGAP"));
    panel.AddTable(new PD_TABLE("POR"));
    std::FILE* log = std::tmpfile();
    ASSERT_NE(log, nullptr);
    PD_UTIL::SetRunLog(log);
    panel.Dump();
    PD_UTIL::SetRunLog(nullptr);
    std::rewind(log);
    std::string text;
    for (int c; (c = std::fgetc(log)) != EOF;) text += static_cast<char>(c);
    std::fclose(log);
    const std::size_t first = text.find("BANDGAP");
    const std::size_t second = text.find("POR");
    EXPECT_NE(first, std::string::npos);
    EXPECT_NE(second, std::string::npos);
    EXPECT_LT(first, second);
}

}  // namespace
