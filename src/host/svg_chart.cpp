// The SVG line chart of `pwc sweep`.
#include "svg_chart.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "eng_text.h"

namespace pwchost {

namespace {

// Plot area within the 720 x 440 canvas.
constexpr double kWidth = 720, kHeight = 440;
constexpr double kLeft = 90, kRight = 560, kTop = 50, kBottom = 380;

std::string Fmt(double v, const char* format = "%.2f") {
    char buf[64];
    std::snprintf(buf, sizeof buf, format, v);
    return buf;
}

// A tick's label: as few digits as the tick spacing needs.
std::string TickLabel(double v, double spacing) {
    if (std::fabs(v) < spacing * 1e-6) v = 0.0;
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(spacing) + 1e-9)));
    char format[16];
    std::snprintf(format, sizeof format, "%%.%df", std::min(decimals, 9));
    return Fmt(v, format);
}

}  // namespace

std::string XmlEscape(const std::string& text) {
    return pwc::HtmlEscaped(text);  // the same five characters, valid in XML too
}

std::vector<double> NiceTicks(double low, double high, int wanted) {
    if (!std::isfinite(low) || !std::isfinite(high)) {
        low = 0.0;
        high = 1.0;
    }
    // A spread too narrow to step through is widened, so that every tick
    // stands apart from the last.
    const double least = (std::fabs(low) + std::fabs(high)) * 1e-9;
    if (!(high - low > least)) {
        const double pad = std::max(low == 0.0 ? 1.0 : std::fabs(low) * 0.1, least);
        low -= pad;
        high += pad;
    }
    const double raw = (high - low) / std::max(1, wanted);
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    double step = magnitude;
    for (double m : {1.0, 2.0, 5.0, 10.0})
        if (m * magnitude >= raw) {
            step = m * magnitude;
            break;
        }
    std::vector<double> ticks;
    const double first = std::floor(low / step) * step;
    for (int k = 0; k < 64; ++k) {
        const double t = first + k * step;
        ticks.push_back(t);
        if (t >= high) break;  // the last tick reaches past the data
    }
    return ticks;
}

std::string RenderSvg(const LineChart& chart) {
    double xMin = INFINITY, xMax = -INFINITY, yMin = INFINITY, yMax = -INFINITY;
    for (const ChartSeries& s : chart.series)
        for (const auto& [x, y] : s.points) {
            if (!std::isfinite(x) || !std::isfinite(y)) continue;
            xMin = std::min(xMin, x);
            xMax = std::max(xMax, x);
            yMin = std::min(yMin, y);
            yMax = std::max(yMax, y);
        }
    if (xMin > xMax) xMin = xMax = yMin = yMax = 0.0;
    const std::vector<double> xt = NiceTicks(xMin, xMax, 6), yt = NiceTicks(yMin, yMax, 6);
    const double x0 = xt.front(), x1 = xt.back(), y0 = yt.front(), y1 = yt.back();
    auto px = [&](double x) { return kLeft + (x - x0) / (x1 - x0) * (kRight - kLeft); };
    auto py = [&](double y) { return kBottom - (y - y0) / (y1 - y0) * (kBottom - kTop); };

    std::ostringstream svg;
    svg << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kWidth << "\" height=\""
        << kHeight << "\" viewBox=\"0 0 " << kWidth << ' ' << kHeight
        << "\" font-family=\"sans-serif\" font-size=\"12\">\n"
        << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
        << "<text x=\"" << kWidth / 2 << "\" y=\"28\" text-anchor=\"middle\" font-size=\"16\">"
        << XmlEscape(chart.title) << "</text>\n";

    svg << "<g class=\"grid\" stroke=\"#dddddd\">\n";
    for (double t : xt)
        svg << "<line x1=\"" << Fmt(px(t)) << "\" y1=\"" << kTop << "\" x2=\"" << Fmt(px(t))
            << "\" y2=\"" << kBottom << "\"/>\n";
    for (double t : yt)
        svg << "<line x1=\"" << kLeft << "\" y1=\"" << Fmt(py(t)) << "\" x2=\"" << kRight
            << "\" y2=\"" << Fmt(py(t)) << "\"/>\n";
    svg << "</g>\n";

    svg << "<g class=\"axes\" stroke=\"black\">\n"
        << "<line x1=\"" << kLeft << "\" y1=\"" << kBottom << "\" x2=\"" << kRight << "\" y2=\""
        << kBottom << "\"/>\n"
        << "<line x1=\"" << kLeft << "\" y1=\"" << kTop << "\" x2=\"" << kLeft << "\" y2=\""
        << kBottom << "\"/>\n";
    for (double t : xt)
        svg << "<line x1=\"" << Fmt(px(t)) << "\" y1=\"" << kBottom << "\" x2=\"" << Fmt(px(t))
            << "\" y2=\"" << kBottom + 5 << "\"/>\n";
    for (double t : yt)
        svg << "<line x1=\"" << kLeft - 5 << "\" y1=\"" << Fmt(py(t)) << "\" x2=\"" << kLeft
            << "\" y2=\"" << Fmt(py(t)) << "\"/>\n";
    svg << "</g>\n<g class=\"ticks\">\n";
    for (double t : xt)
        svg << "<text x=\"" << Fmt(px(t)) << "\" y=\"" << kBottom + 20
            << "\" text-anchor=\"middle\">" << TickLabel(t, xt[1] - xt[0]) << "</text>\n";
    for (double t : yt)
        svg << "<text x=\"" << kLeft - 8 << "\" y=\"" << Fmt(py(t) + 4) << "\" text-anchor=\"end\">"
            << TickLabel(t, yt[1] - yt[0]) << "</text>\n";
    svg << "</g>\n"
        << "<text x=\"" << (kLeft + kRight) / 2 << "\" y=\"" << kBottom + 45
        << "\" text-anchor=\"middle\">" << XmlEscape(chart.xLabel) << "</text>\n"
        << "<text x=\"20\" y=\"" << (kTop + kBottom) / 2 << "\" text-anchor=\"middle\" "
        << "transform=\"rotate(-90 20 " << (kTop + kBottom) / 2 << ")\">" << XmlEscape(chart.yLabel)
        << "</text>\n";

    for (const ChartSeries& s : chart.series) {
        svg << "<polyline class=\"series\" data-name=\"" << XmlEscape(s.name)
            << "\" fill=\"none\" stroke=\"" << XmlEscape(s.color)
            << "\" stroke-width=\"2\" points=\"";
        for (std::size_t i = 0; i < s.points.size(); ++i)
            svg << (i ? " " : "") << Fmt(px(s.points[i].first)) << ','
                << Fmt(py(s.points[i].second));
        svg << "\"/>\n";
    }

    svg << "<g class=\"legend\">\n";
    double ly = kTop + 10;
    for (const ChartSeries& s : chart.series) {
        svg << "<line x1=\"" << kRight + 20 << "\" y1=\"" << ly << "\" x2=\"" << kRight + 45
            << "\" y2=\"" << ly << "\" stroke=\"" << XmlEscape(s.color)
            << "\" stroke-width=\"2\"/>\n"
            << "<text x=\"" << kRight + 52 << "\" y=\"" << ly + 4 << "\">" << XmlEscape(s.name)
            << "</text>\n";
        ly += 22;
    }
    svg << "</g>\n</svg>\n";
    return svg.str();
}

}  // namespace pwchost
