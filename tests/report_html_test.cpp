// The HTML report set: its files, its contents frame and the pages' anchors,
// the pieces' exact texts, and the chart page.
#include <regex>

#include "report_fixture.h"

using namespace pwctest;
namespace fs = std::filesystem;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

const char* const kSuffixes[] = {".html",
                                 "_power_toc.html",
                                 "_power_top.html",
                                 "_power_summary.html",
                                 "_power_thermal.html",
                                 "_power_detail.html",
                                 "_power_charts.html"};

class HtmlReport : public ::testing::Test {
  protected:
    HtmlReport() : dir("pwc_report_html") {}
    void Generate() {
        demo.eng->ClearReportFiles();
        demo.eng->GenerateHtmlReport(dir.File("demo"), "demo", kTool, kDate);
    }
    std::string Page(const std::string& suffix) { return ReadAll(dir.File("demo" + suffix)); }
    std::string Entry(const std::string& target, const std::string& text) {
        return "*&nbsp; <a target=\"main\" href=\"demo_power_detail.html#" + target + "\">" + text +
               "</a> <br>";
    }

    ScratchDir dir;
    DemoEngine demo;
};

TEST_F(HtmlReport, WritesTheWholeSetAndRecordsEachFile) {
    Generate();
    const auto& files = demo.eng->ReportFiles();
    ASSERT_EQ(files.size(), std::size(kSuffixes));
    for (size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(files[i].path, dir.File(std::string("demo") + kSuffixes[i]));
        EXPECT_TRUE(files[i].written);
        EXPECT_TRUE(fs::is_regular_file(files[i].path)) << files[i].path;
    }
    const std::string frames = Page(".html");
    EXPECT_EQ(frames.rfind("<html>\n<head>\n<title>Power Calculator Report : demo.pcf</title>", 0),
              0u);
    EXPECT_NE(frames.find("<frame name=\"contents\" target=\"main\" src=\"demo_power_toc.html\">"),
              std::string::npos);
    EXPECT_NE(frames.find("<frame name=\"main\" src=\"demo_power_top.html\" scrolling=\"auto\">"),
              std::string::npos);
    // Every page but the two frames opens with the common head.
    const std::string head =
        "<p align=\"left\"><font class=\"title\">Power Calculator - Report "
        "<br> pwc 0.1.0 - Power Calculator<br>\n" +
        std::string(kDate) + "</font><br>";
    for (const char* page :
         {"_power_top.html", "_power_summary.html", "_power_thermal.html", "_power_detail.html"}) {
        const std::string text = Page(page);
        EXPECT_NE(text.find(head), std::string::npos) << page;
        EXPECT_NE(text.find(".title {font-family: \"Courier New\", \" Monospace\""),
                  std::string::npos);
        EXPECT_EQ(text.substr(text.size() - 17), "\n\t</body>\n</html>") << page;
    }
}

TEST_F(HtmlReport, AnUnwritableFolderPassesEveryPageOverQuietly) {
    demo.eng->GenerateHtmlReport(dir.File("missing/demo"), "demo", kTool, kDate);
    ASSERT_EQ(demo.eng->ReportFiles().size(), std::size(kSuffixes));
    for (const ReportFileResult& f : demo.eng->ReportFiles()) EXPECT_FALSE(f.written) << f.path;
    EXPECT_FALSE(fs::exists(dir.path() / "missing"));
}

TEST_F(HtmlReport, ContentsEntriesFollowThePanels) {
    Generate();
    std::string toc = Page("_power_toc.html");
    for (const auto& [target, text] :
         std::vector<std::pair<std::string, std::string>>{{"logic", "Logic"},
                                                          {"clocks", "Clocks"},
                                                          {"io", "I/O"},
                                                          {"bram", "Block RAM"},
                                                          {"pll", "PLL"},
                                                          {"efb", "EFB"},
                                                          {"asc", "ASC"},
                                                          {"other", "Other"}})
        EXPECT_NE(toc.find(Entry(target, text)), std::string::npos) << text;
    EXPECT_EQ(toc.find("#dqs"), std::string::npos);
    EXPECT_EQ(toc.find("#dsp"), std::string::npos);
    // The chart page is the last entry.
    EXPECT_LT(toc.find(Entry("other", "Other")), toc.find("demo_power_charts.html"));

    // A "DQS" panel brings two entries to its anchor; a panel gone loses its
    // entry and its block.
    RebuildPanel(*demo.eng, "I/O Term", "DQS",
                 {MakeTable("DQS", {"# DQS"}, {{"2"}}), MakeTotal("Total DQS", "0.1", "0.1")});
    RebuildPanel(*demo.eng, "PLL", "Gone", {});
    Generate();
    toc = Page("_power_toc.html");
    EXPECT_NE(toc.find(Entry("dqs", "MIPIDPHY") + "\n" + "&nbsp;&nbsp;&nbsp;&nbsp; " +
                       Entry("dqs", "DQS")),
              std::string::npos);
    EXPECT_EQ(toc.find("#pll"), std::string::npos);
    const std::string detail = Page("_power_detail.html");
    EXPECT_EQ(detail.find("<a name=\"pll\">"), std::string::npos);
    EXPECT_NE(detail.find("\n<a name=\"dqs\"></a>\n<font class=\"subheader\">DQS</font><br>"),
              std::string::npos);
}

TEST_F(HtmlReport, KeepsItsThreeOldMisdirections) {
    RebuildPanel(*demo.eng, "I/O Term", "PFR",
                 {MakeTable("PFR", {"# PFR"}, {{"1"}}), MakeTotal("Total PFR", "0.1", "0.2")});
    Generate();
    const std::string toc = Page("_power_toc.html");
    const std::string detail = Page("_power_detail.html");
    EXPECT_NE(toc.find("href=\"demo_power_detail.html#utlization\">Utilization Details</a>"),
              std::string::npos);
    EXPECT_NE(detail.find("<a name=\"utilization\"></a>"), std::string::npos);
    EXPECT_EQ(detail.find("name=\"utlization\""), std::string::npos);
    EXPECT_NE(toc.find(Entry("bram", "PFR")), std::string::npos);
    EXPECT_NE(detail.find("<a name=\"pfr\"></a>"), std::string::npos);
    // "Other" in the contents, "Other" as the page's anchor.
    EXPECT_NE(toc.find(Entry("other", "Other")), std::string::npos);
    EXPECT_NE(detail.find("<a name=\"Other\"></a>"), std::string::npos);
}

TEST_F(HtmlReport, DetailPageRepeatsTheSectionAnchors) {
    Generate();
    const std::string detail = Page("_power_detail.html");
    const std::pair<const char*, const char*> anchors[] = {{"design", "_power_top.html"},
                                                           {"supplies", "_power_top.html"},
                                                           {"power", "_power_summary.html"},
                                                           {"icc", "_power_summary.html"},
                                                           {"thermal", "_power_thermal.html"}};
    for (const auto& [name, page] : anchors) {
        const std::string anchor = "<a name=\"" + std::string(name) + "\"></a>";
        EXPECT_EQ(Occurrences(detail, anchor), 1) << name;
        EXPECT_EQ(Occurrences(Page(page), anchor), 1) << name;
    }
    // The detail page is the other pages' bodies in order.
    EXPECT_LT(detail.find("name=\"powermodel\""), detail.find("name=\"power\""));
    EXPECT_LT(detail.find("name=\"in-rush\""), detail.find("name=\"thermal\""));
    EXPECT_LT(detail.find("name=\"thermal\""), detail.find("name=\"utilization\""));
}

TEST_F(HtmlReport, UtilizationTablesHoldTheTextReportsCounts) {
    Generate();
    const std::string detail = Page("_power_detail.html");
    auto cell = [](const std::string& text) {
        return "<td><center><font class=\"table\">" + text + "</font></center></td>\n";
    };
    const std::string text = demo.Text();
    const std::string logic = TextBlock(text, "Logic");
    const std::string luts =
        logic.substr(logic.find("LUTs Used : ") + 12,
                     logic.find('\n', logic.find("LUTs Used")) - logic.find("LUTs Used : ") - 12);
    EXPECT_NE(
        detail.find(cell("LUTs Used") + cell("Dist. RAM Slices Used") + cell("Ripple Slices Used") +
                    cell("Registers Used") + cell("Dynamic Power (W)") + cell("Static Power (W)") +
                    cell("Total Power (W)") + "</tr>\n<tr>\n" + cell(luts)),
        std::string::npos);
    // ASC shows its total alone.
    EXPECT_NE(detail.find(cell("HVOUT Used") + cell("Total Power (W)") + "</tr>"),
              std::string::npos);
    EXPECT_NE(detail.find("Ambient Temperature</font></td>\n<td width=190><font "
                          "class=\"table\">" +
                          demo.eng->AmbientTemperature + "&#176;C</font>"),
              std::string::npos);
}

TEST_F(HtmlReport, MipidphyAndPfrUseTheirOwnLabels) {
    RebuildPanel(*demo.eng, "I/O Term", "MIPIDPHY",
                 {MakeTable("DPHY", {"Mode"}, {{"TX"}}), MakeTotal("Other table", "9", "9"),
                  MakeTotal("Total MIPIDPHY", "0.01", "0.03")});
    RebuildPanel(*demo.eng, "Block RAM", "PFR",
                 {MakeTable("PFR", {"# PFR", "# PFR interface logic", "# PFR programming"},
                            {{"1", "2", "3"}}),
                  MakeTotal("Total PFR", "0.5", "0.75")});
    Generate();
    const std::string detail = Page("_power_detail.html");
    EXPECT_NE(detail.find("MIPYDPHY Used"), std::string::npos);
    EXPECT_NE(detail.find("<font class=\"table\">0.03</font>"), std::string::npos);
    EXPECT_NE(detail.find("<font class=\"table\">ICC Used</font></center></td>\n<td><center><font "
                          "class=\"table\">ICC1 Used</font>"),
              std::string::npos);
    // The text report reads the MIPIDPHY total from its table 1.
    EXPECT_NE(demo.Text().find("\n\nMIPIDPHY\nDPHY Used : 1\nDynamic Power (W) : 9\n"),
              std::string::npos);
}

TEST(HtmlPieces, PrintTheirExactTexts) {
    EXPECT_EQ(PC_ENG::PrintBeginTable(1),
              "\n<table border=1 cellspacing=0 cellpadding=1 width=\"100%\">\n");
    EXPECT_EQ(PC_ENG::PrintEndTable(), "</table>\n");
    EXPECT_EQ(PC_ENG::PrintBeginRow(), "<tr>\n");
    EXPECT_EQ(PC_ENG::PrintEndRow(), "</tr>\n");
    EXPECT_EQ(PC_ENG::PrintBR(), "<br>\n");
    EXPECT_EQ(PC_ENG::PrintColumn("Vcc", 250, ""),
              "<td width=250><font class=\"table\">Vcc</font></td>\n");
    EXPECT_EQ(PC_ENG::PrintColumn("Vcc", 250, "pc"),
              "<td width=250><font class=\"table\"><div class=\"pc2\">Vcc</div></font></td>\n");
    EXPECT_EQ(PC_ENG::PrintColumnCenter("", 190, ""),
              "<td><center><font class=\"table\"></font></center></td>\n");
    EXPECT_EQ(
        PC_ENG::PrintColumnCenter("x", 190, "pc"),
        "<td><center><font class=\"table\"><div class=\"pc2\">x</div></font></center></td>\n");
}

// The watts of the bars of one chart, and the total its caption names.
struct Chart {
    std::vector<double> watts, shares;
    double total = -1.0;
};
Chart ReadChart(const std::string& page, const std::string& id) {
    Chart chart;
    const size_t from = page.find("<svg id=\"" + id + "\"");
    const size_t to = page.find("</svg>", from);
    if (from == std::string::npos || to == std::string::npos) return chart;
    const std::string svg = page.substr(from, to - from);
    const std::regex value("class=\"value\">([0-9.]+) W \\(([0-9.]+)%\\)</text>");
    for (auto it = std::sregex_iterator(svg.begin(), svg.end(), value);
         it != std::sregex_iterator(); ++it) {
        chart.watts.push_back(Num((*it)[1].str()));
        chart.shares.push_back(Num((*it)[2].str()));
    }
    std::smatch total;
    if (std::regex_search(svg, total, std::regex("\\(total ([0-9.]+) W\\)")))
        chart.total = Num(total[1].str());
    return chart;
}

TEST_F(HtmlReport, ChartBarsAddUpToTheTotals) {
    Generate();
    const std::string page = Page("_power_charts.html");
    PD_TABLE* block = demo.eng->GetBlockTable();
    PD_TABLE* power = demo.eng->GetPowerTable();
    const std::pair<const char*, size_t> charts[] = {
        {"blocks", static_cast<size_t>(block->GetNumOfRows() - 1)},
        {"supplies", static_cast<size_t>(power->GetNumOfRows() - 1)}};
    for (const auto& [id, bars] : charts) {
        const Chart chart = ReadChart(page, id);
        ASSERT_EQ(chart.watts.size(), bars) << id;
        double watts = 0.0, shares = 0.0;
        for (double w : chart.watts) watts += w;
        for (double s : chart.shares) shares += s;
        EXPECT_NEAR(watts, Num(demo.eng->GetTotalPower()), 1e-5) << id;
        EXPECT_NEAR(chart.total, Num(demo.eng->GetTotalPower()), 1e-9) << id;
        EXPECT_NEAR(shares, 100.0, 0.1 * static_cast<double>(bars)) << id;
    }
}

TEST_F(HtmlReport, ProjectTextIsEscapedOnTheChartPage) {
    demo.eng->DesignName = "<script>alert('x')</script>";
    demo.eng->ProjectName = "a&b.pcf";
    demo.eng->GetSupplyTable()->SetValueAt("Vcc<b>", 0, 0);
    Generate();
    const std::string page = Page("_power_charts.html");
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_NE(page.find("&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;"), std::string::npos);
    EXPECT_NE(page.find("a&amp;b.pcf"), std::string::npos);
    EXPECT_NE(page.find(">Vcc&lt;b&gt;</text>"), std::string::npos);
    // The pages of the set keep their bytes: the name stands as given.
    EXPECT_NE(Page("_power_top.html").find("<script>alert('x')</script>"), std::string::npos);
}

}  // namespace
