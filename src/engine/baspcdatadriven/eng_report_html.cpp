// The HTML report: the text report's content as a frame set with a table of
// contents, a page per section and one detailed page. Pages refer to each
// other by relative name, so the set can be moved as a whole.
#include <string>
#include <vector>

#include "baspcengin.h"

namespace {

// The style of the pages; the blank before the second font name of ".title"
// is kept as it always was.
const char* const kPageStyle =
    "<style type=\"text/css\">\n<!--\n"
    ".table {font-family: \"Courier New\", \"Monospace\"; font-size: 10pt}\n"
    ".title {font-family: \"Courier New\", \" Monospace\"; font-size: 11pt; color: black; "
    "font-weight: bold}\n"
    ".header {font-family: \"Courier New\", \"Monospace\"; font-size: 11pt; color: #800000; "
    "font-weight: bold}\n"
    ".subheader {font-family: \"Courier New\", \"Monospace\"; font-size: 10pt; color: black; "
    "font-weight: bold}\n"
    "-->\n</style>";
const char* const kContentsStyle =
    "<style type=\"text/css\">\n<!--\n"
    ".pc2 {font-family: \"Courier New\", \"Monospace\"; font-size: 10pt}\n"
    "-->\n</style>";

std::string Header(const std::string& title) {
    return PC_ENG::ReportPageHeader(title);
}

// An entry of the contents: the link's opening, its page and anchor, its text.
enum class EntryKind { First, Break, BlankLine, Section, Block };
enum class EntryIf { Always, Panel };

struct ContentsEntry {
    EntryKind kind;
    const char* target;  // behind the base name
    const char* text;
    EntryIf when;
    const char* panel;  // the panel whose presence the entry needs
};

// "#utlization" misses the page's "utilization", "DQS" also brings a
// "MIPIDPHY" entry and "PFR" leads to the Block RAM's anchor: all three are
// what the set has always had.
const std::vector<ContentsEntry>& ContentsEntries() {
    using K = EntryKind;
    static const std::vector<ContentsEntry> entries = {
        {K::First, "_power_top.html", "Power Model Information", EntryIf::Always, nullptr},
        {K::Break, "_power_top.html#design", "Design and Device Details", EntryIf::Always, nullptr},
        {K::Break, "_power_top.html#supplies", "Power Supplies", EntryIf::Always, nullptr},
        {K::BlankLine, "_power_summary.html#power", "Power Summary", EntryIf::Always, nullptr},
        {K::Break, "_power_summary.html#icc", "ICC Summary", EntryIf::Always, nullptr},
        {K::Break, "_power_summary.html#iobank", "IO Bank Summary", EntryIf::Always, nullptr},
        {K::Break, "_power_summary.html#in-rush", "Peak Startup", EntryIf::Always, nullptr},
        {K::BlankLine, "_power_thermal.html", "Thermal Summary", EntryIf::Always, nullptr},
        {K::BlankLine, "_power_detail.html", "Detailed Power Report", EntryIf::Always, nullptr},
        {K::Section, "_power_detail.html#powermodel", "Power Model Information", EntryIf::Always,
         nullptr},
        {K::Section, "_power_detail.html#design", "Design and Device Details", EntryIf::Always,
         nullptr},
        {K::Section, "_power_detail.html#supplies", "Power Supplies", EntryIf::Always, nullptr},
        {K::Section, "_power_detail.html#power", "Power Summary", EntryIf::Always, nullptr},
        {K::Section, "_power_detail.html#icc", "ICC Summary", EntryIf::Always, nullptr},
        {K::Section, "_power_detail.html#thermal", "Thermal Summary", EntryIf::Always, nullptr},
        {K::Section, "_power_detail.html#utlization", "Utilization Details", EntryIf::Always,
         nullptr},
        {K::Block, "_power_detail.html#logic", "Logic", EntryIf::Panel, "Logic Block"},
        {K::Block, "_power_detail.html#clocks", "Clocks", EntryIf::Panel, "Clocks"},
        {K::Block, "_power_detail.html#io", "I/O", EntryIf::Panel, "I/O"},
        {K::Block, "_power_detail.html#bram", "Block RAM", EntryIf::Panel, "Block RAM"},
        {K::Block, "_power_detail.html#dsp", "DSP", EntryIf::Panel, "DSP"},
        {K::Block, "_power_detail.html#pll", "PLL", EntryIf::Panel, "PLL"},
        {K::Block, "_power_detail.html#dll", "DLL", EntryIf::Panel, "DLL"},
        {K::Block, "_power_detail.html#mipidphy", "MIPIDPHY", EntryIf::Panel, "MIPIDPHY"},
        {K::Block, "_power_detail.html#dqsdll", "DQSDLL", EntryIf::Panel, "DQSDLL"},
        {K::Block, "_power_detail.html#ddrdll", "DDRDLL", EntryIf::Panel, "DDRDLL"},
        {K::Block, "_power_detail.html#efb", "EFB", EntryIf::Panel, "EFB"},
        {K::Block, "_power_detail.html#dqs", "MIPIDPHY", EntryIf::Panel, "DQS"},
        {K::Block, "_power_detail.html#dqs", "DQS", EntryIf::Panel, "DQS"},
        {K::Block, "_power_detail.html#esb", "ESB", EntryIf::Panel, "ESB"},
        {K::Block, "_power_detail.html#dlldel", "DLLDEL", EntryIf::Panel, "DLLDEL"},
        {K::Block, "_power_detail.html#faba", "FABA", EntryIf::Panel, "FABA"},
        {K::Block, "_power_detail.html#serdes", "PCS SERDES", EntryIf::Panel, "SERDES"},
        {K::Block, "_power_detail.html#asc", "ASC", EntryIf::Panel, "ASC"},
        {K::Block, "_power_detail.html#bram", "PFR", EntryIf::Panel, "PFR"},
        {K::Block, "_power_detail.html#other", "Other", EntryIf::Always, nullptr},
    };
    return entries;
}

std::string EntryOpening(EntryKind kind) {
    switch (kind) {
        case EntryKind::First:
            return "\n<a target=\"main\" href=\"";
        case EntryKind::Break:
            return "\n<br><a target=\"main\" href=\"";
        case EntryKind::BlankLine:
            return "\n<br><br><a target=\"main\" href=\"";
        case EntryKind::Section:
            return "\n<br>&nbsp; -&nbsp; <a target=\"main\" href=\"";
        case EntryKind::Block:
            break;
    }
    return "\n&nbsp;&nbsp;&nbsp;&nbsp; *&nbsp; <a target=\"main\" href=\"";
}

// Rows of a label and a value, the second column 190 wide.
std::string LabelValueRows(const std::vector<PC_ENG::ReportLine>& lines, const std::string& unit) {
    std::string rows;
    for (const PC_ENG::ReportLine& l : lines)
        rows += PC_ENG::PrintBeginRow() + PC_ENG::PrintColumn(l.label, 250, "") +
                PC_ENG::PrintColumn(l.value + unit, 190, "") + PC_ENG::PrintEndRow();
    return rows;
}

std::string ProvidedRows(const std::vector<PC_ENG::ReportLine>& lines, const std::string& unit) {
    std::string rows;
    for (const PC_ENG::ReportLine& l : lines)
        rows += PC_ENG::PrintBeginRow() + PC_ENG::PrintColumn(l.label, 250, "") +
                PC_ENG::PrintColumn(l.value + unit, 190, "") +
                PC_ENG::PrintColumn("User/Default/NCD Provided", 200, "") + PC_ENG::PrintEndRow();
    return rows;
}

std::string Table(const std::string& rows) {
    return PC_ENG::PrintBeginTable(1) + rows + PC_ENG::PrintEndTable();
}

}  // namespace

std::string PC_ENG::PrintBeginTable(int border) {
    return "\n<table border=" + std::to_string(border) +
           " cellspacing=0 cellpadding=1 width=\"100%\">\n";
}
std::string PC_ENG::PrintEndTable() {
    return "</table>\n";
}
std::string PC_ENG::PrintBeginRow() {
    return "<tr>\n";
}
std::string PC_ENG::PrintEndRow() {
    return "</tr>\n";
}
std::string PC_ENG::PrintBR() {
    return "<br>\n";
}

namespace {

std::string Styled(const std::string& text, const std::string& style) {
    return style.empty() ? text : "<div class=\"" + style + "2\">" + text + "</div>";
}

}  // namespace

std::string PC_ENG::PrintColumn(std::string text, int width, std::string style) {
    return "<td width=" + std::to_string(width) + "><font class=\"table\">" + Styled(text, style) +
           "</font></td>\n";
}

std::string PC_ENG::PrintColumnCenter(std::string text, int, std::string style) {
    return "<td><center><font class=\"table\">" + Styled(text, style) + "</font></center></td>\n";
}

std::string PC_ENG::ReportPageHead(const std::string& toolName, const std::string& dateLine) const {
    return "<html>\n\t<head>\n\t\t<title>" + toolName + " Report</title>\n\t" + kPageStyle +
           "\n\t</head>\n\t<body>" + "\n<p align=\"left\"><font class=\"title\">" + toolName +
           " - Report <br> " + ReportProgramName + " - " + toolName + "<br>" + "\n" + dateLine +
           "</font><br>";
}

std::string PC_ENG::ReportPageTail() {
    return "\n\t</body>\n</html>";
}

std::string PC_ENG::ReportContentsHead(const std::string& toolName) {
    return "<html>\n\t<head>\n\t\t<title>" + toolName + " Report</title>\n\t" + kContentsStyle +
           "\n\t</head>\n\t<body>";
}

std::string PC_ENG::ReportPageHeader(const std::string& title) {
    return "\n<br>\n<br>\n<font class=\"header\">" + title + "</font><br>\n";
}

std::string PC_ENG::ReportFrameSet(const std::string& title, const std::string& contents,
                                   const std::string& main) {
    std::string text = "<html>\n<head>\n<title>" + title + "</title>\n</head>\n";
    // Without contents the main page fills the window alone.
    text += contents.empty() ? "\n<frameset rows=\"*\">"
                             : "\n<frameset cols=\"290,*\">\n<frame name=\"contents\" "
                               "target=\"main\" src=\"" +
                                   contents + "\">";
    text += "\n<frame name=\"main\" src=\"" + main + "\" scrolling=\"auto\">";
    text +=
        "\n<noframes>\n<body>\n<p>This page uses frames, but your browser doesn't support "
        "them.</p>";
    text += "\n</body>\n</noframes>\n</frameset>\n</html>";
    return text;
}

void PC_ENG::GenerateHtmlReport(std::string path, std::string content) {
    WriteReportFile(path, content);
}

void PC_ENG::GenerateHtmlReport(std::string basePath, std::string baseName, std::string toolName,
                                std::string dateLine) {
    const ReportSummary s = GetReportSummary();
    const std::vector<ReportBlock> blocks = GetReportBlocks();
    auto has = [this](const char* panel) { return GetPanel(GetPanelIndex(panel)) != nullptr; };

    const std::string head = ReportPageHead(toolName, dateLine);

    // The frame set.
    GenerateHtmlReport(basePath + ".html",
                       ReportFrameSet(toolName + " Report : " + ProjectName,
                                      baseName + "_power_toc.html", baseName + "_power_top.html"));

    // The contents, with the chart page as its last entry.
    std::string toc = ReportContentsHead(toolName);
    toc += "\n<p align=\"center\"><b>";
    toc += "\n<font class=\"pc2\">" + toolName + " - Report</font></b></p>";
    toc += "\n<p align=\"center\"><b>";
    toc += "\n<font class=\"pc2\">Table of Contents</font></b></p>";
    toc += "\n<p>";
    for (const ContentsEntry& e : ContentsEntries()) {
        if (e.when == EntryIf::Panel && !has(e.panel)) continue;
        toc += EntryOpening(e.kind) + baseName + e.target + "\">" + e.text + "</a>";
        if (e.kind == EntryKind::Block) toc += " <br>";
    }
    toc += EntryOpening(EntryKind::BlankLine) + baseName + "_power_charts.html\">Power Charts</a>";
    toc += "\n</p>";
    toc += ReportPageTail();
    GenerateHtmlReport(basePath + "_power_toc.html", toc);

    // Power model, design and supplies.
    std::string top = "\n<a name=\"powermodel\"></a>" + Header("Power Model Information");
    top += Table(LabelValueRows({{"Power Model Status", s.status}, {"Version", s.pwrValues}}, ""));
    top += "\n<a name=\"design\"></a>" + Header("Design and Device Details");
    top += Table(ProvidedRows(s.details, ""));
    top += "\n<a name=\"supplies\"></a>" + Header("Power Supplies");
    top += Table(ProvidedRows(s.supplies, " V"));
    GenerateHtmlReport(basePath + "_power_top.html", head + top + ReportPageTail());

    // Summaries.
    std::string summary;
    if (s.hasPower) {
        summary += "\n<a name=\"power\"></a>" + Header("Power Summary");
        summary += Table(LabelValueRows(s.power, " W"));
    }
    if (s.hasCurrent) {
        summary += "\n<a name=\"icc\"></a>" + Header("Icc Summary");
        summary += Table(LabelValueRows(s.current, " A"));
    }
    if (s.hasBanks) {
        summary += "\n<a name=\"iobank\"></a>" + Header("IO Bank Summary");
        summary += Table(LabelValueRows({{"IO Banks Used", std::to_string(s.banksUsed)}}, ""));
    }
    if (s.hasPeak) {
        summary += "\n<a name=\"in-rush\"></a>" + Header("Peak Startup");
        std::string rows;
        for (const std::vector<std::string>& row : s.peak) {
            rows += PrintBeginRow();
            for (size_t c = 0; c < row.size(); ++c)
                rows += PrintColumn(row[c] + (c == 2 ? " m sec" : ""), c == 0 ? 250 : 190, "");
            rows += PrintEndRow();
        }
        summary += Table(rows);
    }
    GenerateHtmlReport(basePath + "_power_summary.html", head + summary + ReportPageTail());

    // Thermal.
    std::vector<ReportLine> thermalLines = s.selections;
    thermalLines.push_back({"Ambient Temperature", s.ambient + "&#176;C"});
    thermalLines.push_back({"Effective Theta-JA", s.theta});
    thermalLines.push_back({"Junction Temperature", s.junction + "&#176;C"});
    thermalLines.push_back({"Maximum Safe Ambient", s.maxSafeAmbient + "&#176;C"});
    const std::string thermal = "\n<a name=\"thermal\"></a>" + Header("Thermal Summary") +
                                Table(LabelValueRows(thermalLines, ""));
    GenerateHtmlReport(basePath + "_power_thermal.html", head + thermal + ReportPageTail());

    // Utilization: per block a row of labels over a row of values.
    std::string utilization =
        "\n<a name=\"utilization\"></a>\n<br><br>\n<font class=\"header\">Utilization "
        "Details</font><br>";
    for (const ReportBlock& block : blocks) {
        std::string labels, values;
        for (const ReportCount& c : block.counts) {
            labels += PrintColumnCenter(c.htmlLabel, 190, "");
            values += PrintColumnCenter(std::to_string(c.value), 190, "");
        }
        const ReportPower& p = block.htmlPower;
        if (p.present) {
            if (!p.totalOnly) {
                labels += PrintColumnCenter("Dynamic Power (W)", 190, "") +
                          PrintColumnCenter("Static Power (W)", 190, "");
                values +=
                    PrintColumnCenter(p.dynamic, 190, "") + PrintColumnCenter(p.statics, 190, "");
            }
            labels += PrintColumnCenter("Total Power (W)", 190, "");
            values += PrintColumnCenter(p.total, 190, "");
        }
        utilization += "\n<a name=\"" + block.anchor + "\"></a>";
        utilization += "\n<font class=\"subheader\">" + block.subheader + "</font><br>";
        utilization += Table(PrintBeginRow() + labels + PrintEndRow() + PrintBeginRow() + values +
                             PrintEndRow());
        utilization += PrintBR();
    }
    GenerateHtmlReport(basePath + "_power_detail.html",
                       head + top + summary + thermal + utilization + ReportPageTail());

    GenerateHtmlReport(basePath + "_power_charts.html",
                       GeneratePowerChartsPage(toolName, dateLine));
}
