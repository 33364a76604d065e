// The chart page of the HTML report: power per block and per supply as SVG
// bars, drawn here without scripts or outside files. Text from the project
// is escaped wherever this page shows it.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

namespace {

struct Bar {
    std::string name, watts;  // watts as the table holds them
};

// Rows but the last (the total) of a table: the name column and the watts.
std::vector<Bar> BlockBars(PD_TABLE* block) {
    std::vector<Bar> bars;
    if (!block) return bars;
    const int name = block->GetColumnIndex("Block");
    const int watts = block->GetColumnIndex("Total (W)");
    for (int r = 0; r + 1 < block->GetNumOfRows(); ++r)
        bars.push_back({block->GetValueAt(r, name), block->GetValueAt(r, watts)});
    return bars;
}

std::vector<Bar> SupplyBars(PD_TABLE* supplies, PD_TABLE* power) {
    std::vector<Bar> bars;
    if (!supplies || !power) return bars;
    const int name = supplies->GetColumnIndex("Supply");
    const int watts = power->GetColumnIndex("Total (W)");
    for (int r = 0; r + 1 < power->GetNumOfRows(); ++r)
        bars.push_back({supplies->GetValueAt(r, name), power->GetValueAt(r, watts)});
    return bars;
}

std::string Fixed(double value, int precision) {
    return PrintFixed(value, precision);
}

// Horizontal bars, longest for the largest value; each labelled with its
// watts and its share of the total.
std::string BarChart(const std::string& id, const std::string& title, const std::vector<Bar>& bars,
                     const std::string& totalWatts) {
    const double total = Num(totalWatts);
    double largest = 0.0;
    for (const Bar& b : bars) largest = std::max(largest, Num(b.watts));
    const int labelWidth = 160, barWidth = 360, valueWidth = 200, rowHeight = 26, top = 34;
    const int width = labelWidth + barWidth + valueWidth;
    const int height = top + rowHeight * static_cast<int>(bars.size()) + 10;
    std::string svg = "<svg id=\"" + id + "\" xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                      std::to_string(width) + "\" height=\"" + std::to_string(height) +
                      "\" role=\"img\" aria-label=\"" + pwc::HtmlEscaped(title) + "\">\n";
    svg += "<title>" + pwc::HtmlEscaped(title) + "</title>\n";
    svg += "<text x=\"0\" y=\"20\" class=\"caption\">" + pwc::HtmlEscaped(title) + " (total " +
           pwc::HtmlEscaped(totalWatts) + " W)</text>\n";
    for (size_t i = 0; i < bars.size(); ++i) {
        const double watts = std::max(0.0, Num(bars[i].watts));
        const double share = total > 0.0 ? 100.0 * watts / total : 0.0;
        const double length = largest > 0.0 ? barWidth * watts / largest : 0.0;
        const int y = top + rowHeight * static_cast<int>(i);
        svg += "<g class=\"bar\">\n";
        svg += "<text x=\"" + std::to_string(labelWidth - 8) + "\" y=\"" + std::to_string(y + 17) +
               "\" text-anchor=\"end\" class=\"name\">" + pwc::HtmlEscaped(bars[i].name) +
               "</text>\n";
        svg += "<rect x=\"" + std::to_string(labelWidth) + "\" y=\"" + std::to_string(y + 4) +
               "\" width=\"" + Fixed(length, 1) + "\" height=\"" + std::to_string(rowHeight - 8) +
               "\"/>\n";
        svg += "<text x=\"" + Fixed(labelWidth + length + 6, 1) + "\" y=\"" +
               std::to_string(y + 17) + "\" class=\"value\">" + pwc::HtmlEscaped(bars[i].watts) +
               " W (" + Fixed(share, 1) + "%)</text>\n";
        svg += "</g>\n";
    }
    return svg + "</svg>\n";
}

}  // namespace

std::string PC_ENG::GeneratePowerChartsPage(const std::string& toolName,
                                            const std::string& dateLine) {
    PD_TABLE* power = GetPowerTable();
    const int totalColumn = power ? power->GetColumnIndex("Total (W)") : -1;
    const std::string total = power && power->GetNumOfRows() > 0
                                  ? power->GetValueAt(power->GetNumOfRows() - 1, totalColumn)
                                  : std::string("0");
    PD_TABLE* block = GetBlockTable();
    const std::string blockTotal =
        block && block->GetNumOfRows() > 0
            ? block->GetValueAt(block->GetNumOfRows() - 1, block->GetColumnIndex("Total (W)"))
            : total;

    std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
    page += "<title>" + pwc::HtmlEscaped(toolName) + " - Power Charts</title>\n";
    page +=
        "<style>\n"
        "body {font-family: \"Courier New\", monospace; font-size: 10pt; margin: 12px}\n"
        "h1 {font-size: 13pt; color: #800000}\n"
        "h2 {font-size: 11pt; color: #800000; margin-top: 24px}\n"
        "svg text {font-family: \"Courier New\", monospace; font-size: 12px}\n"
        "svg .caption {font-weight: bold}\n"
        "#blocks rect {fill: #4a7ab5}\n"
        "#supplies rect {fill: #c0803a}\n"
        "</style>\n</head>\n<body>\n";
    page += "<h1>Power Charts</h1>\n";
    page += "<p>Project: " + pwc::HtmlEscaped(ProjectName) +
            "<br>\nDesign: " + pwc::HtmlEscaped(DesignName) + "<br>\nDevice: " +
            pwc::HtmlEscaped(std::string(FamilyName()) + " " + DeviceName() + " " + PackageName()) +
            "<br>\n" + pwc::HtmlEscaped(dateLine) + "</p>\n";
    page += "<h2>Power per Block</h2>\n";
    page += BarChart("blocks", "Power per block (W)", BlockBars(block), blockTotal);
    page += "<h2>Power per Supply</h2>\n";
    page +=
        BarChart("supplies", "Power per supply (W)", SupplyBars(GetSupplyTable(), power), total);
    page += "</body>\n</html>\n";
    return page;
}
