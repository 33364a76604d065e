// The "Logic Block" tab.
#include <cstdio>
#include <cstdlib>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

const PC_ENG::PanelFrame& PC_ENG::LogicFrame() {
    static const PanelFrame frame = {
        "Logic Block",
        {{nullptr,
          nullptr,
          {{nullptr,
            "SLICE",
            "Vcc",
            PassIf::Always,
            false,
            &PC_ENG::ProcessLogicDynVcc,
            &PC_ENG::ProcessLogicLeakUsedVcc,
            &PC_ENG::ProcessLogicBiasUsedVcc,
            "Dyn. VCC Pwr (W)",
            "Leakage VCC Pwr (W)",
            "DCbias VCC Pwr (W)",
            {"PowerDynLogicRouting row(", ") = IccDynLogicRouting * vcc = "},
            {"PowerLeakLogicRoutingUsed row(", ") = IccLeakLogicRoutingUsed * vcc = "},
            {"PowerBiasLogicRoutingUsed row(", ") = IccBiasLogicRoutingUsed * vcc = "}},
           // The share of the plain VCCIO rail, where the data give the
           // slices one.
           {"VCCIO",
            "SLICE",
            "Vccio",
            PassIf::SectionHasSupply,
            false,
            &PC_ENG::ProcessLogicDynVcc,
            &PC_ENG::ProcessLogicLeakUsedVcc,
            &PC_ENG::ProcessLogicBiasUsedVcc,
            "Dyn. VCCIO Pwr (W)",
            "Leakage VCCIO Pwr (W)",
            "DCbias VCCIO Pwr (W)",
            {"PowerDynLogicRoutingVccio row(", ") = IccDynLogicRouting * vccio = "},
            {"PowerLeakLogicRoutingUsedVccio row(", ") = IccLeakLogicRoutingUsed * vccio = "},
            {"PowerBiasLogicRoutingUsedVccio row(", ") = IccBiasLogicRoutingUsed * vccio = "}}}}},
        &PC_ENG::GetArrayOfColumnUnusedNamesLogic,
        &PC_ENG::GetArrayOfColumnUnusedValuesLogic,
        {{nullptr, "SLICE", "Vcc", PassIf::Always, &PC_ENG::ProcessLogicLeakUnused,
          &PC_ENG::ProcessLogicBiasUnused, "Unused Leakage VCC Pwr (W)",
          "Unused DCbias VCC Pwr (W)",
          "PowerLeakLogicRoutingUnused = IccLeakLogicRoutingUnused * vcc = ",
          "PowerBiasLogicRoutingUnused = IccBiasLogicRoutingUnused * vcc = "},
         {"VCCIO", "SLICE", "Vccio", PassIf::SectionHasSupply, &PC_ENG::ProcessLogicLeakUnused,
          &PC_ENG::ProcessLogicBiasUnused, "Unused Leakage VCCIO Pwr (W)",
          "Unused DCbias VCCIO Pwr (W)",
          "PowerLeakLogicRoutingUnusedVccio = IccLeakLogicRoutingUnused * vccio = ",
          "PowerBiasLogicRoutingUnusedVccio = IccBiasLogicRoutingUnused * vccio = "}},
        PlainDyn::CopyFirst,
    };
    return frame;
}

void PC_ENG::LogicBlockCalculation() {
    RunPanelFrame(LogicFrame());
}

// ---- The made-up row of what the logic leaves free ----------------------

namespace {

struct UnusedCount {
    const char* name;       // formula name
    const char* deviceKey;  // DeviceHas key
    const char* column;     // used-count column of the logic tab
};

const UnusedCount kLogicUnused[] = {
    {"LUT_unused", "LUT", "# Logic LUTs"},
    {"RAM_unused", "RAM", "# Dist. RAM"},
    {"RIP_unused", "RIPPLE", "# Ripple Slices"},
    {"REG_unused", "REG", "# Registers"},
};

const char* const kRoutingUnused[] = {"X0",     "X1",    "X2",     "X6",   "ISB",
                                      "ISBLUT", "ISBCE", "ISBLSR", "ISBM", "ISBCLK"};

}  // namespace

void PC_ENG::GetArrayOfColumnUnusedNamesLogic(PD_TABLE*, std::vector<std::string>& names) {
    names.clear();
    for (const UnusedCount& u : kLogicUnused) names.push_back(u.name);
    names.push_back("Logic_unused");
    for (const char* r : kRoutingUnused) names.push_back(std::string(r) + "_unused");
    names.push_back("X1d_unused");
    names.push_back("X1f_unused");
    names.push_back("VCC");
    names.push_back("VCCPG");
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesLogic(PD_TABLE*, std::vector<std::string>& values) {
    values.clear();
    PC_PANEL* panel = GetPanel(GetPanelIndex("Logic Block"));
    PD_TABLE* items = panel ? panel->GetTable(0) : nullptr;
    auto used = [items, this](const char* column) {
        return items ? GetTotalSumRowDData(items, items->GetColumnIndex(column), 0) : 0.0;
    };
    for (const UnusedCount& u : kLogicUnused)
        values.push_back(PrintFixed(DeviceHas(u.deviceKey) - used(u.column), 1));
    values.push_back(PrintFixed(DeviceHas("LUT") - used("# Logic LUTs") - 2 * used("# Dist. RAM") -
                                    2 * used("# Ripple Slices"),
                                1));
    for (const char* r : kRoutingUnused)
        values.push_back(PrintFixed(DeviceHas(r) - used((std::string("# ") + r).c_str()), 1));
    for (const char* r : {"X1d", "X1f"}) {
        std::string has;
        const bool present = DeviceHas(r, has) != 0;
        values.push_back(present ? PrintFixed(std::strtod(has.c_str(), nullptr) -
                                                  used((std::string("# ") + r).c_str()),
                                              1)
                                 : "0");
    }
    values.push_back(GetVDPM("Vcc", "Voltage"));
    values.push_back(GetVDPM("Vccpg", "Voltage"));
    AppendSettingValues(values);
}
