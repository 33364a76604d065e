// A line chart as a standalone SVG document: axes with ticks, unit labels and
// a legend; one polyline per series.
#ifndef PWC_HOST_SVG_CHART_H
#define PWC_HOST_SVG_CHART_H

#include <string>
#include <utility>
#include <vector>

namespace pwchost {

struct ChartSeries {
    std::string name;   // legend text
    std::string color;  // SVG colour
    std::vector<std::pair<double, double>> points;
};

struct LineChart {
    std::string title;
    std::string xLabel, yLabel;  // with their units: "Ambient (C)"
    std::vector<ChartSeries> series;
};

std::string RenderSvg(const LineChart& chart);
// Round tick values (1, 2 or 5 times a power of ten) covering [low, high].
std::vector<double> NiceTicks(double low, double high, int wanted);
// Text with the XML specials escaped.
std::string XmlEscape(const std::string& text);

}  // namespace pwchost

#endif
