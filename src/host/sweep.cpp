// `pwc sweep` and the constraints file of `pwc calc`.
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <tuple>

#include "host.h"
#include "svg_chart.h"

namespace pwchost {

namespace {

constexpr int kMaxSweepPoints = 2000;

// The engine reads a limit of exactly 0 as "use the default": a 0 asked for
// is passed on as the nearest number beside it, which prints as 0.
double EngineLimit(double value, bool lower) {
    return value == 0.0 ? std::nextafter(0.0, lower ? -1.0 : 1.0) : value;
}

// The x of a point as a person reads it: without the trace of the repeated
// subtraction or of the nudge above.
double Clean(double x) {
    const double r = std::round(x * 1e9) / 1e9;
    return std::fabs(r) < 1e-12 ? 0.0 : r;
}

const char* KindName(SweepKind kind) {
    switch (kind) {
        case SweepKind::Supply:
            return "supply";
        case SweepKind::Ambient:
            return "ambient";
        case SweepKind::Frequency:
            return "frequency";
    }
    return "";
}

std::string Number(double v, const char* format) {
    char buf[64];
    std::snprintf(buf, sizeof buf, format, v);
    return buf;
}

std::string XTitle(const SweepResult& r) {
    return r.xName + " (" + r.xUnit + ")";
}

const SweepCorner* Corner(const SweepResult& r, const char* name) {
    for (const SweepCorner& c : r.corners)
        if (c.name == name) return &c;
    return nullptr;
}

void WriteTextFile(const std::string& path, const std::string& content) {
    const std::string temporary = path + ".part";
    {
        std::ofstream out(temporary, std::ios::binary);
        out << content;
        out.close();
        if (!out) {
            std::error_code ec;
            std::filesystem::remove(temporary, ec);
            throw UsageError("cannot write '" + path + "'");
        }
    }
    std::error_code ec;
    std::filesystem::rename(temporary, path, ec);
    if (ec) {
        std::filesystem::remove(temporary, ec);
        throw UsageError("cannot write '" + path + "'");
    }
}

std::vector<std::string> ClockNames(PC_ENG& engine) {
    std::vector<std::string> names;
    PC_PANEL* panel = engine.GetPanel(engine.GetPanelIndex("Clocks"));
    PD_TABLE* table = panel && panel->GetNumOfTables() > 0 ? panel->GetTable(0) : nullptr;
    if (table)
        for (int r = 0; r < table->GetNumOfRows(); ++r) names.push_back(table->GetValueAt(r, 0));
    return names;
}

// --from, --to and --step as numbers (0 where not given); a UsageError for
// text that isn't one, a step not above 0 or a reversed range.
std::tuple<double, double, double> SweepRange(const SweepOptions& o) {
    double from = 0, to = 0, step = 0;
    if (!o.from.empty()) from = ParseNumber(o.from, "--from");
    if (!o.to.empty()) to = ParseNumber(o.to, "--to");
    if (!o.step.empty()) {
        step = ParseNumber(o.step, "--step");
        if (step <= 0.0) throw UsageError("--step must be above 0");
    }
    if (!o.from.empty() && !o.to.empty() && from > to)
        throw UsageError("--from must not be above --to");
    return {from, to, step};
}

}  // namespace

void CheckConstraintsFile(const std::string& path) {
    if (path.find(".prf") == std::string::npos && path.find(".lpf") == std::string::npos &&
        path.find(".pad") == std::string::npos)
        throw UsageError("constraints file '" + path +
                         "': unknown kind (the name must hold .lpf, .pad or .prf)");
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec))
        throw UsageError("constraints file '" + path + "' does not exist or is not a file");
    std::ifstream in(path);
    if (!in) throw UsageError("cannot read the constraints file '" + path + "'");
}

std::vector<std::string> ConstraintMessages(const std::string& drcMessage) {
    std::vector<std::string> found;
    std::istringstream in(drcMessage);
    for (std::string line; std::getline(in, line);)
        if (line.find("in constraints file.") != std::string::npos ||
            line.rfind("The bank VCCIO voltage setting for bank ", 0) == 0)
            found.push_back(line);
    return found;
}

SweepResult RunSweep(Session& session, const SweepOptions& o) {
    PC_ENG& e = session.Engine();
    if (!o.plotted.empty() && o.plotted != "Total Power" && e.GetPanelIndex(o.plotted) < 0) {
        std::vector<std::string> tabs{"Total Power"};
        for (int i = 0; i < e.GetNumOfPanels(); ++i)
            if (std::string(e.GetPanelName(i)) != "Summary") tabs.push_back(e.GetPanelName(i));
        throw UsageError("--panel '" + o.plotted + "': no such tab (choices: " + JoinChoices(tabs) +
                         ")");
    }
    auto [from, to, step] = SweepRange(o);

    // The limits the user gave; the others stay as the project has them.
    // The engine's defaults first, so that the step below is the one used.
    e.SetGraphDefaults();
    auto limits = [&](double& lower, double& upper, double& resolution) {
        if (!o.step.empty()) resolution = step;
        // The engine truncates the count: a range the step divides is
        // widened by a hair, so that rounding can't lose its lower end.
        if (!o.from.empty()) from -= std::fabs(resolution) * 1e-9;
        if (!o.from.empty()) lower = EngineLimit(from, true);
        if (!o.to.empty()) upper = EngineLimit(to, false);
    };
    // The engine's three sweeps, in the order of SweepKind.
    struct Sweep {
        double *lower, *upper, *resolution;
        const std::vector<grpdata>*typical, *worst;
    };
    const Sweep sweeps[] = {
        {&e.SectionLowerLimit, &e.SectionUpperLimit, &e.SectionResolution, &e.SectionTypical,
         &e.SectionWorst},
        {&e.TempAmbLowerLimit, &e.TempAmbUpperLimit, &e.TempAmbResolution, &e.TempAmbTypical,
         &e.TempAmbWorst},
        {&e.FreqLowerLimit, &e.FreqUpperLimit, &e.FreqAmbResolution, &e.FreqTypical, &e.FreqWorst}};
    const Sweep& chosen = sweeps[static_cast<int>(o.kind)];
    for (const Sweep& other : sweeps) {
        if (&other == &chosen) continue;
        // Lower above upper by more than a step: the engine skips the sweep.
        // A positive step of its own, whatever the project holds, keeps it so.
        *other.lower = 1e6;
        *other.upper = -1e6;
        *other.resolution = 1.0;
    }
    limits(*chosen.lower, *chosen.upper, *chosen.resolution);

    SweepResult r;
    r.kind = o.kind;
    switch (o.kind) {
        case SweepKind::Supply: {
            std::string rail = o.rail.empty() ? e.SectionX : o.rail;
            if (rail.empty()) rail = "Vcc";
            if (e.GetVDPM(rail, "Voltage").empty()) {
                std::vector<std::string> supplies;
                PD_TABLE* vdpm = e.GetSupplyTable();
                for (int i = 0; vdpm && i < vdpm->GetNumOfRows(); ++i)
                    supplies.push_back(vdpm->GetValueAt(i, 0));
                throw UsageError("--rail '" + rail +
                                 "': no such supply (choices: " + JoinChoices(supplies) + ")");
            }
            e.SectionX = rail;
            if (!o.plotted.empty()) e.SectionY = o.plotted;
            r.xName = rail;
            r.xUnit = "V";
            break;
        }
        case SweepKind::Ambient:
            // A project without "TempAmbX" names "Ambient Temperature" as
            // the plotted tab; the total is meant.
            if (!o.plotted.empty())
                e.TempAmbY = o.plotted;
            else if (e.TempAmbY != "Total Power" && e.GetPanelIndex(e.TempAmbY) < 0)
                e.TempAmbY = "Total Power";
            r.xName = "Ambient";
            r.xUnit = "C";
            break;
        case SweepKind::Frequency: {
            const std::vector<std::string> clocks = ClockNames(e);
            if (clocks.empty()) throw UsageError("the project has no clocks to sweep");
            std::string clock = o.clock;
            if (clock.empty())
                clock = std::find(clocks.begin(), clocks.end(), e.FreqX) != clocks.end()
                            ? e.FreqX
                            : clocks.front();
            if (std::find(clocks.begin(), clocks.end(), clock) == clocks.end())
                throw UsageError("--clock '" + clock +
                                 "': no such clock (choices: " + JoinChoices(clocks) + ")");
            e.FreqX = clock;
            if (!o.plotted.empty()) e.FreqY = o.plotted;
            r.xName = clock;
            r.xUnit = "MHz";
            break;
        }
    }
    r.plotted = o.kind == SweepKind::Supply    ? e.SectionY
                : o.kind == SweepKind::Ambient ? e.TempAmbY
                                               : e.FreqY;
    if (r.plotted.empty()) r.plotted = "Total Power";

    const int points = PC_ENG::GraphPointCount(*chosen.lower, *chosen.upper, *chosen.resolution);
    // Each point is a whole calculation per corner.
    if (points > kMaxSweepPoints)
        throw UsageError("the range gives " + std::to_string(points) + " points; at most " +
                         std::to_string(kMaxSweepPoints) + " (use a larger --step)");
    e.CollectDataForGraph();

    for (const auto& [name, points] :
         {std::pair<const char*, const std::vector<grpdata>*>{"Typical", chosen.typical},
          {"Worst", chosen.worst}}) {
        if (points->empty()) continue;
        SweepCorner c;
        c.name = name;
        for (const grpdata& p : *points) c.points.emplace_back(Clean(p.x), p.y);
        r.corners.push_back(c);
    }
    if (r.corners.empty()) throw UsageError("the range gives no points to calculate");
    return r;
}

std::string SweepCsv(const SweepResult& r) {
    std::string text = XTitle(r);
    for (const SweepCorner& c : r.corners) text += "," + c.name + " (W)";
    text += '\n';
    const std::size_t n = r.corners.front().points.size();
    for (std::size_t i = 0; i < n; ++i) {
        text += Number(r.corners.front().points[i].first, "%.10g");
        for (const SweepCorner& c : r.corners)
            text += "," + (i < c.points.size() ? Number(c.points[i].second, "%.6f") : "");
        text += '\n';
    }
    return text;
}

std::string SweepJson(const SweepResult& r) {
    nlohmann::ordered_json j;
    j["sweep"] = KindName(r.kind);
    j["x"] = {{"name", r.xName}, {"unit", r.xUnit}};
    j["y"] = {{"name", r.plotted}, {"unit", "W"}};
    j["corners"] = nlohmann::ordered_json::array();
    for (const SweepCorner& c : r.corners) {
        nlohmann::ordered_json points = nlohmann::ordered_json::array();
        for (const auto& [x, y] : c.points) points.push_back({{"x", x}, {"y", y}});
        j["corners"].push_back({{"name", c.name}, {"points", points}});
    }
    return j.dump(2);
}

std::string SweepSvg(const SweepResult& r) {
    LineChart chart;
    chart.title = r.plotted + " against " + r.xName;
    chart.xLabel = XTitle(r);
    chart.yLabel = r.plotted + " (W)";
    for (const SweepCorner& c : r.corners)
        chart.series.push_back({c.name, c.name == "Worst" ? "#c0392b" : "#1f6fb2", c.points});
    return RenderSvg(chart);
}

int Sweep(const SweepOptions& o, std::ostream& out) {
    SweepRange(o);
    Session session(o.project);
    if (o.progress)
        session.Engine().graphProgress = [](int done, int total) {
            std::cerr << "\rsweep: " << done << " of " << total << " points" << std::flush;
            if (done == total) std::cerr << "\r\033[K" << std::flush;
        };
    const SweepResult r = RunSweep(session, o);
    session.Engine().graphProgress = nullptr;
    if (!o.svg.empty()) WriteTextFile(o.svg, SweepSvg(r));
    if (o.csv == "-")
        out << SweepCsv(r);
    else if (!o.csv.empty())
        WriteTextFile(o.csv, SweepCsv(r));
    if (o.json) {
        out << SweepJson(r) << '\n';
    } else if (o.svg.empty() && o.csv.empty()) {
        const SweepCorner* typ = Corner(r, "Typical");
        const SweepCorner* wst = Corner(r, "Worst");
        out << std::left << std::setw(16) << XTitle(r) << std::right << std::setw(14)
            << "Typical (W)";
        if (wst) out << std::setw(14) << "Worst (W)";
        out << '\n';
        for (std::size_t i = 0; typ && i < typ->points.size(); ++i) {
            out << std::left << std::setw(16) << Number(typ->points[i].first, "%.10g") << std::right
                << std::setw(14) << Number(typ->points[i].second, "%.6f");
            if (wst && i < wst->points.size())
                out << std::setw(14) << Number(wst->points[i].second, "%.6f");
            out << '\n';
        }
    }
    return kExitOk;
}

}  // namespace pwchost
