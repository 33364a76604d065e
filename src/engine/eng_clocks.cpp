// The "Clocks" tab: one row per clock net, priced by the tree resources its
// cells name.
#include <iterator>
#include <map>
#include <string>

#include "baspcengin.h"
#include "baspcformula/clock_tree.h"
#include "eng_text.h"

using namespace pwc;

const PC_ENG::PanelFrame& PC_ENG::ClockFrame() {
    static const PanelFrame frame = {
        "Clocks",
        {{nullptr,
          nullptr,
          {{"VCC",
            "Clocks",
            "Vcc",
            PassIf::Always,
            false,
            &PC_ENG::ProcessClocksDyn,
            &PC_ENG::ProcessClocksLeakUsed,
            &PC_ENG::ProcessClocksBiasUsed,
            "Dyn. Pwr (W)",
            "Leakage VCC Pwr (W)",
            "DCbias VCC Pwr (W)",
            {"PowerDynClocks row(", ") = IccDynClocks * vcc = "},
            {"PowerLeakClocksUsed row(", ") = IccLeakClocksUsed * vcc = "},
            {"PowerBiasClocksUsed row(", ") = IccBiasClocksUsed * vcc = "}},
           // The tree's share of the plain VCCIO rail, where the data give one.
           {"VCCIO",
            "Clocks",
            "Vccio",
            PassIf::SectionHasSupply,
            false,
            &PC_ENG::ProcessClocksDyn,
            &PC_ENG::ProcessClocksLeakUsed,
            &PC_ENG::ProcessClocksBiasUsed,
            "Dyn. VCCIO Pwr (W)",
            "Leakage VCCIO Pwr (W)",
            "DCbias VCCIO Pwr (W)",
            {"PowerDynClocksVccio row(", ") = IccDynClocks * vccio = "},
            {"PowerLeakClocksUsedVccio row(", ") = IccLeakClocksUsed * vccio = "},
            {"PowerBiasClocksUsedVccio row(", ") = IccBiasClocksUsed * vccio = "}}}}},
        &PC_ENG::GetArrayOfColumnUnusedNamesClock,
        &PC_ENG::GetArrayOfColumnUnusedValuesClock,
        {{"VCC", "Clocks", "Vcc", PassIf::Always, &PC_ENG::ProcessClocksLeakUnused,
          &PC_ENG::ProcessClocksBiasUnused, "Unused Leakage VCC Pwr (W)",
          "Unused DCbias VCC Pwr (W)", "PowerLeakClocksUnused = IccLeakClocksUnused * vcc = ",
          "PowerBiasClocksUnused = IccBiasClocksUnused * vcc = "},
         {"VCCIO", "Clocks", "Vccio", PassIf::SectionHasSupply, &PC_ENG::ProcessClocksLeakUnused,
          &PC_ENG::ProcessClocksBiasUnused, "Unused Leakage VCCIO Pwr (W)",
          "Unused DCbias VCCIO Pwr (W)",
          "PowerLeakClocksUnusedVccio = IccLeakClocksUnused * vccio = ",
          "PowerBiasClocksUnusedVccio = IccBiasClocksUnused * vccio = "}},
        PlainDyn::None,
    };
    return frame;
}

void PC_ENG::ClockCalculation() {
    RunPanelFrame(ClockFrame());
}

// ---- The made-up row of what the clock rows leave free ------------------------

namespace {

const char* const kTrunkRows[] = {"PCLKTrow1", "PCLKTrow2", "SCLKTrow1", "SCLKTrow2"};

}  // namespace

void PC_ENG::GetArrayOfColumnUnusedNamesClock(PD_TABLE*, std::vector<std::string>& names) {
    names.clear();
    for (const ClockResource& r : ClockResources()) names.push_back(std::string(r.key) + "_unused");
    for (const ClockKind& k : ClockKinds()) names.push_back(std::string(k.kind) + "_unused");
    for (const ClockKind& k : ClockKinds()) names.push_back(k.kind);
    for (const char* t : kTrunkRows) names.push_back(t);
    names.push_back("VCC");
    names.push_back("DPM");
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesClock(PD_TABLE*, std::vector<std::string>& values) {
    values.clear();
    // What the clock rows occupy, by resource, and how many nets use each kind.
    std::map<std::string, double> used;
    std::map<std::string, int> nets;
    PC_PANEL* panel = GetPanel(GetPanelIndex("Clocks"));
    PD_TABLE* rows = panel && panel->GetNumOfTables() > 1 ? panel->GetTable(0) : nullptr;
    if (rows) {
        int n = 0;
        const std::vector<std::string> names = GetArrayOfColumnNames(rows, &n);
        std::vector<std::string> cells;
        for (int r = 0; r < rows->GetNumOfRows(); ++r) {
            FillArrayOfColumnValues(rows, r, cells);
            for (const ClockKind& k : ClockKinds()) {
                bool occupies = false;
                for (const ClockUse& u : GetClockCellResources(k.kind, names, cells, false)) {
                    used[u.key] += u.count;
                    occupies = occupies || u.count != 0.0;
                }
                if (occupies) ++nets[k.kind];
            }
        }
    }
    std::map<std::string, double> free;
    for (const ClockResource& r : ClockResources()) {
        free[r.key] = DeviceHas(r.key) - used[r.key];
        values.push_back(PrintFixed(free[r.key], 1));
    }
    for (const ClockKind& k : ClockKinds())
        values.push_back(PrintFixed(DeviceHas(k.kind) - nets[k.kind], 1));
    // Each free resource under the tag that selects it.
    for (const ClockKind& k : ClockKinds()) {
        std::string cell;
        for (const ClockResource& r : ClockResources()) {
            if (std::string(k.kind) != r.kind) continue;
            if (!cell.empty()) cell += "_";
            cell += std::string(1, r.letter) + "_" + PrintFixed(free[r.key], 1);
        }
        values.push_back(cell);
    }
    for (size_t i = 0; i < std::size(kTrunkRows); ++i) values.push_back("0");
    values.push_back(GetVDPM("Vcc", "Voltage"));
    values.push_back(GetVDPM("Vcc", "DPM"));
    AppendSettingValues(values);
}
