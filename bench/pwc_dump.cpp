// pwc_dump OUTDIR [SCENARIO...]: writes OUTDIR/<scenario>.txt for each
// scenario (all when none is named): every cell of every table of every tab,
// the summary and thermal results, the supply-by-block matrices, the graph
// points of a sweep and the whole calculation log. Two builds of the engine
// that compute the same give byte-identical files. `pwc_dump --list` names
// the scenarios.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "designs.h"

namespace {

using pwcbench::Engine;

// The text with every occurrence of `from` replaced: paths differ between
// the two source trees compared.
std::string Replace(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

void Table(std::ostream& out, const char* title, const PD_TABLE* table) {
    if (!table) {
        out << "-- table " << title << ": none\n";
        return;
    }
    out << "-- table " << title << " \"" << table->name << "\" " << table->GetNumOfRows() << " x "
        << table->GetNumOfColumns() << "\n";
    for (int c = 0; c < table->GetNumOfColumns(); ++c)
        out << (c ? " | " : "") << table->GetColumnName(c);
    out << "\n";
    for (int r = 0; r < table->GetNumOfRows(); ++r) {
        out << r << ":";
        for (int c = 0; c < table->GetNumOfColumns(); ++c) {
            const std::string shown = table->GetValueAt(r, c);
            const std::string full = table->GetNoRoundValueAt(r, c);
            out << (c ? " | " : " ") << shown;
            if (full != shown) out << " {" << full << "}";
        }
        out << "\n";
    }
}

void Points(std::ostream& out, const char* name, const std::vector<grpdata>& points) {
    out << "-- graph " << name << " " << points.size() << " points\n";
    char line[96];
    for (const grpdata& p : points) {
        std::snprintf(line, sizeof line, "%.17g %.17g\n", p.x, p.y);
        out << line;
    }
}

void Results(std::ostream& out, PC_ENG& eng) {
    out << "== results\n"
        << "passes: " << eng.GetIterationCount() << "\n"
        << "total power: " << eng.GetTotalPower() << "\n"
        << "process: " << eng.GetProcessType() << "\n"
        << "ambient: " << eng.AmbientTemperature << "\n"
        << "junction: " << eng.JunctionTemperature << "\n"
        << "max safe ambient: " << eng.MaxSafeAmbient << "\n"
        << "theta JA: " << eng.ThetaJA << "\n"
        << "estimation: " << eng.GetEstimationMode() << "\n"
        << "design rule errors: " << eng.DrcErrorCount << "\n"
        << "design rule message:\n"
        << eng.DrcMessage << "\n";
    for (int p = 0; p < eng.GetNumOfPanels(); ++p) {
        PC_PANEL* panel = eng.GetPanel(p);
        out << "== panel \"" << panel->GetName() << "\" " << panel->GetNumOfTables() << " tables\n";
        for (int t = 0; t < panel->GetNumOfTables(); ++t)
            Table(out, std::to_string(t).c_str(), panel->GetTable(t));
    }
    out << "== summary\n";
    Table(out, "supply", eng.GetSupplyTable());
    Table(out, "pg supply", eng.GetPGSupplyTable());
    Table(out, "current", eng.GetCurrentTable());
    Table(out, "power", eng.GetPowerTable());
    Table(out, "block", eng.GetBlockTable());
    Table(out, "peak startup", eng.GetPeakStartupTable());
    Table(out, "power matrix", eng.GetPowerMatrix());
    Table(out, "current matrix", eng.GetCurrentMatrix());
    Table(out, "clock usage", &eng.GetClockUsageTable());
    Table(out, "clock tree", &eng.GetClockTreeTable());
    out << "== graph\n";
    Points(out, "SectionTypical", eng.SectionTypical);
    Points(out, "SectionWorst", eng.SectionWorst);
    Points(out, "TempAmbTypical", eng.TempAmbTypical);
    Points(out, "TempAmbWorst", eng.TempAmbWorst);
    Points(out, "FreqTypical", eng.FreqTypical);
    Points(out, "FreqWorst", eng.FreqWorst);
}

// A reversed range: that sweep gives no point.
void NoSweep(double& lower, double& upper) {
    lower = 1e6;
    upper = -1e6;
}

struct Scenario {
    std::string name;
    // Builds the engine with the calculation log going to the path given,
    // and does the work whose results are dumped.
    std::function<Engine(const std::string&)> run;
};

Engine Generated(const char* design, int rows, const std::string& log, const char* level = "") {
    const pwcbench::DesignKind* kind = pwcbench::FindDesign(design);
    Engine e = Engine::OnDemo([&](PD_DATA& p) { kind->fill(p, rows); }, log);
    if (*level && !pwcbench::EstimationOn(e, level))
        throw std::runtime_error(std::string("no estimation level ") + level);
    e.eng->Calculate();
    return e;
}

Engine Project(const std::string& file, const std::string& log) {
    Engine e = Engine::OnProject(pwcbench::DataDir() + "/projects/" + file, log);
    e.eng->Calculate();
    return e;
}

// The demo with one of its sweeps (the project's own settings), the
// others given no range.
Engine Sweep(bool supply, const std::string& log) {
    Engine e = Engine::OnProject(pwcbench::DataDir() + "/projects/demo.pcf", log);
    PC_ENG& eng = *e.eng;
    if (!supply) NoSweep(eng.SectionLowerLimit, eng.SectionUpperLimit);
    if (supply) NoSweep(eng.TempAmbLowerLimit, eng.TempAmbUpperLimit);
    NoSweep(eng.FreqLowerLimit, eng.FreqUpperLimit);
    eng.CollectDataForGraph();
    return e;
}

std::vector<Scenario> Scenarios() {
    std::vector<Scenario> all = {
        {"logic-1k", [](const std::string& log) { return Generated("logic", 1000, log); }},
        {"io-1k", [](const std::string& log) { return Generated("io", 1000, log); }},
        {"mixed-1k", [](const std::string& log) { return Generated("mixed", 1000, log); }},
        {"logic-200-estimate-medium",
         [](const std::string& log) { return Generated("logic", 200, log, "Medium"); }},
        {"demo-sweep-supply", [](const std::string& log) { return Sweep(true, log); }},
        {"demo-sweep-ambient", [](const std::string& log) { return Sweep(false, log); }},
    };
    for (const char* project :
         {"demo", "rv7c00-demo", "rv7u00-demo", "jv7n00-demo", "wd7r00-demo"}) {
        const std::string file = std::string(project) + ".pcf";
        all.push_back({project, [file](const std::string& log) { return Project(file, log); }});
    }
    // Each again with the log closed: the engine takes other paths then.
    const size_t open = all.size();
    for (size_t i = 0; i < open; ++i) {
        auto run = all[i].run;
        all.push_back({all[i].name + "-log-closed", [run](const std::string&) { return run(""); }});
    }
    return all;
}

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

bool Dump(const Scenario& s, const std::filesystem::path& dir) {
    const std::string log = (dir / (s.name + ".calclog")).string();
    std::ostringstream out;
    out << "== scenario " << s.name << "\n";
    try {
        Engine e = s.run(log);
        PD_UTIL::DebugMode(0, "0");
        Results(out, *e.eng);
    } catch (const std::exception& ex) {
        out << "== failed: " << ex.what() << "\n";
    }
    out << "== calculation log\n" << ReadAll(log);
    std::filesystem::remove(log);
    std::ofstream file(dir / (s.name + ".txt"), std::ios::binary);
    file << Replace(Replace(out.str(), pwcbench::DataDir(), "<data>"), dir.string(), "<out>");
    return static_cast<bool>(file);
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<Scenario> scenarios = Scenarios();
    if (argc == 2 && std::string(argv[1]) == "--list") {
        for (const Scenario& s : scenarios) std::cout << s.name << "\n";
        return 0;
    }
    if (argc < 2) {
        std::cerr << "usage: pwc_dump OUTDIR [SCENARIO...] | pwc_dump --list\n";
        return 2;
    }
    const std::filesystem::path dir = argv[1];
    std::filesystem::create_directories(dir);
    std::vector<std::string> wanted(argv + 2, argv + argc);
    int status = 0;
    for (const std::string& name : wanted) {
        bool known = false;
        for (const Scenario& s : scenarios) known = known || s.name == name;
        if (!known) {
            std::cerr << "pwc_dump: no scenario " << name << "\n";
            status = 2;
        }
    }
    for (const Scenario& s : scenarios) {
        bool chosen = wanted.empty();
        for (const std::string& name : wanted) chosen = chosen || s.name == name;
        if (chosen && !Dump(s, dir)) {
            std::cerr << "pwc_dump: cannot write " << s.name << ".txt in " << dir << "\n";
            status = 1;
        }
    }
    return status;
}
