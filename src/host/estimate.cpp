// `pwc calc --estimate`: estimation mode on, and what it filled in.
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "host.h"

namespace pwchost {

namespace {

// Routing classes: the device's "Format" column and the rows' "# " column.
const char* const kRoutingClasses[] = {"X0", "X1", "X1d", "X1f", "X2", "X6", "ISB"};
// The switch boxes of the device: all their parts.
const char* const kSwitchBoxParts[] = {"ISB", "ISBLUT", "ISBCE", "ISBLSR", "ISBM"};
const char* const kClockTree[] = {"Ptrunk",  "Pbranch", "Pspine", "Ptap", "Pfeed", "Strunk",
                                  "Sbranch", "Sspine",  "Stap",   "Eclk", "Etb",   "Elr"};

std::string Fixed(double v, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, v);
    return text;
}

}  // namespace

void EnableEstimation(Session& session, const std::string& level) {
    PC_ENG& engine = session.Engine();
    if (!engine.SetEstimationMode(level))
        throw UsageError("unknown estimation level '" + level + "' (choices: low, Medium, High)");
    const DeviceInfo& d = session.Device();
    std::string strings[7] = {d.arch,  d.family,    d.device,  d.package,
                              d.speed, d.operating, d.partName};
    char* array[7];
    for (int i = 0; i < 7; ++i) array[i] = &strings[i][0];
    // No family change: only the estimation flag is taken.
    engine.SetFamilySwitching(array, engine.GetProject(), "Calculation", "", "", "", "", nullptr,
                              nullptr, nullptr, true);
}

EstimateResult CollectEstimate(PC_ENG& engine) {
    EstimateResult result;
    result.level = engine.GetEstimationMode();
    for (const char* cls : kRoutingClasses) {
        EstimateResult::Routing r;
        r.name = cls;
        const std::string column = std::string("# ") + cls;
        for (int p = 0; p < engine.GetNumOfPanels(); ++p) {
            PC_PANEL* panel = engine.GetPanel(p);
            if (std::string(panel->GetName()) == "Summary") continue;
            for (int t = 0; t + 1 < panel->GetNumOfTables(); ++t) {
                PD_TABLE* table = panel->GetTable(t);
                const int c = table ? table->GetColumnIndex(column.c_str()) : -1;
                for (int row = 0; c >= 0 && row < table->GetNumOfRows(); ++row)
                    r.used += std::strtod(table->GetValueAt(row, c), nullptr);
            }
        }
        if (r.name == "ISB") {
            for (const char* part : kSwitchBoxParts) r.device += engine.DeviceHas(part);
        } else {
            r.device = engine.DeviceHas(cls);
        }
        result.routing.push_back(r);
    }
    PC_PANEL* clocks = engine.GetPanel(engine.GetPanelIndex("Clocks"));
    PD_TABLE* table = clocks ? clocks->GetTable(0) : nullptr;
    for (const char* resource : kClockTree) {
        int elements = 0;
        for (int row = 0; table && row < table->GetNumOfRows(); ++row)
            elements +=
                engine.GetClockComponentUsagefromRow(table, row, std::string("# ") + resource);
        result.clockTree.emplace_back(resource, elements);
    }
    return result;
}

void PrintEstimate(const EstimateResult& r, std::ostream& out) {
    out << "\nEstimated routing (" << r.level << ")\n";
    out << "  Class        Used    Device\n";
    for (const EstimateResult::Routing& x : r.routing) {
        char line[128];
        std::snprintf(line, sizeof line, "  %-5s %11s %9s\n", x.name.c_str(),
                      Fixed(x.used, 1).c_str(), Fixed(x.device, 0).c_str());
        out << line;
    }
    out << "Estimated clock tree\n";
    for (const auto& [resource, elements] : r.clockTree) {
        char line[64];
        std::snprintf(line, sizeof line, "  %-8s %8d\n", resource.c_str(), elements);
        out << line;
    }
}

std::string WithEstimateJson(const std::string& reportJson, const EstimateResult& r) {
    nlohmann::ordered_json j = nlohmann::ordered_json::parse(reportJson);
    nlohmann::ordered_json routing = nlohmann::ordered_json::array();
    for (const EstimateResult::Routing& x : r.routing)
        routing.push_back({{"class", x.name}, {"used", x.used}, {"device", x.device}});
    nlohmann::ordered_json tree = nlohmann::ordered_json::object();
    for (const auto& [resource, elements] : r.clockTree) tree[resource] = elements;
    j["estimation"] = {{"level", r.level}, {"routing", routing}, {"clock_tree", tree}};
    return j.dump(2);
}

}  // namespace pwchost
