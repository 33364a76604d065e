// The calculator frame every tab shares, and the "Logic Block" tab.
#include <cstdio>
#include <cstdlib>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// "<head><row><middle><current> * <vcc> = <power>"
void LogRowPower(const char* head, int row, const char* middle, double current, double vcc) {
    if (!PD_UTIL::IsCalcLogOpen()) return;
    char buf[512];
    std::snprintf(buf, sizeof buf, "%s%d%s%g%s%g%s%g\n", head, row, middle, current, " * ", vcc,
                  " = ", current * vcc);
    PD_UTIL::FCprintln(buf);
}

void LogUnusedPower(const char* head, double current, double vcc) {
    if (!PD_UTIL::IsCalcLogOpen()) return;
    char buf[512];
    std::snprintf(buf, sizeof buf, "%s%g%s%g%s%g\n", head, current, " * ", vcc, " = ",
                  current * vcc);
    PD_UTIL::FCprintln(buf);
}

}  // namespace

const PC_ENG::PanelFrame& PC_ENG::LogicFrame() {
    static const PanelFrame frame = {
        "Logic Block",
        "SLICE",
        &PC_ENG::ProcessLogicDynVcc,
        &PC_ENG::ProcessLogicLeakUsedVcc,
        &PC_ENG::ProcessLogicBiasUsedVcc,
        &PC_ENG::ProcessLogicLeakUnused,
        &PC_ENG::ProcessLogicBiasUnused,
        &PC_ENG::GetArrayOfColumnUnusedNamesLogic,
        &PC_ENG::GetArrayOfColumnUnusedValuesLogic,
        {"PowerDynLogicRouting row(", ") = IccDynLogicRouting * vcc = "},
        {"PowerLeakLogicRoutingUsed row(", ") = IccLeakLogicRoutingUsed * vcc = "},
        {"PowerBiasLogicRoutingUsed row(", ") = IccBiasLogicRoutingUsed * vcc = "},
        "PowerLeakLogicRoutingUnused = IccLeakLogicRoutingUnused * vcc = ",
        "PowerBiasLogicRoutingUnused = IccBiasLogicRoutingUnused * vcc = ",
        true,
    };
    return frame;
}

void PC_ENG::LogicBlockCalculation() {
    RunPanelFrame(LogicFrame());
}

std::vector<std::string> PC_ENG::PwrSectionHasVccVccpg(const std::string& section) const {
    std::vector<std::string> list;
    auto* pwr = dynamic_cast<PD_PWRSECT*>(pwrData->GetSection(section.c_str()));
    if (!pwr) return list;
    for (const std::string& s : pwr->supplies)
        if (s == "VCC" || s == "VCCPG") list.push_back(s);
    return list;
}

void PC_ENG::RunPanelFrame(const PanelFrame& f) {
    const double vcc = std::strtod(GetVDPMCategory("Vcc", "Voltage", "-1").c_str(), nullptr);
    PC_PANEL* panel = GetPanel(GetPanelIndex(f.panel));
    if (!panel) return;
    PD_TABLE* items = panel->GetTable(0);
    PD_TABLE* total = panel->GetTable(1);
    if (!items || !total) return;
    const int dynCol = items->GetColumnIndex("Dyn. VCC Pwr (W)");
    const int leakCol = items->GetColumnIndex("Leakage VCC Pwr (W)");
    const int biasCol = items->GetColumnIndex("DCbias VCC Pwr (W)");
    const int plainDynCol = items->GetColumnIndex("Dyn. Pwr (W)");
    const std::vector<std::string> supplies = PwrSectionHasVccVccpg(f.section);
    // The power-gated supply is off in sleep; its currents are still worked out.
    auto gate = [this](const std::string& supply) {
        return supply == "VCCPG" && powerMode == 1 ? 0.0 : 1.0;
    };

    // The models keep their look-ups in the data files for this tab only.
    struct CacheScope {
        ModelCaches& caches;
        explicit CacheScope(ModelCaches& c) : caches(c) {
            caches.Clear();
            caches.on = true;
        }
        ~CacheScope() {
            caches.on = false;
            caches.Clear();
        }
    } cacheScope(caches);

    int count = 0;
    const std::vector<std::string> names = GetArrayOfColumnNames(items, &count);
    std::vector<std::string> values;
    std::string cell;
    for (int row = 0; row < items->GetNumOfRows(); ++row) {
        FillArrayOfColumnValues(items, row, values);
        InitConstants(names, values);
        double pDyn = 0.0, pLeak = 0.0, pBias = 0.0;
        for (const std::string& supply : supplies) {
            const double g = gate(supply);
            const double iDyn = (this->*f.dyn)(f.panel, names, values, supply);
            pDyn += vcc * iDyn * g;
            LogRowPower(f.dynLog.head, row, f.dynLog.middle, iDyn, vcc);
            const double iLeak = (this->*f.leakUsed)(f.panel, names, values, supply);
            pLeak += vcc * iLeak * g;
            LogRowPower(f.leakLog.head, row, f.leakLog.middle, iLeak, vcc);
            const double iBias = (this->*f.biasUsed)(f.panel, names, values, supply);
            pBias += vcc * iBias * g;
            LogRowPower(f.biasLog.head, row, f.biasLog.middle, iBias, vcc);
            const std::pair<double, int> powers[] = {
                {pDyn, dynCol}, {pLeak, leakCol}, {pBias, biasCol}};
            for (const auto& [power, column] : powers) {
                pwcformula::PrintFixedTo(cell, power, 20);
                items->SetValueAt(cell.c_str(), row, column);
            }
            if (f.copyDynamic) {
                items->SetValueAt(items->GetValueAt(row, dynCol), row, plainDynCol);
                if (PD_UTIL::IsCalcLogOpen()) {
                    char buf[512];
                    std::snprintf(buf, sizeof buf, "%s%d%s%s\n", "PowerTotalDynamic row(", row,
                                  ") = ", items->GetValueAt(row, plainDynCol));
                    PD_UTIL::FCprintln(buf);
                }
            }
        }
    }

    // What the design leaves free, as one made-up row for the whole device.
    std::vector<std::string> unusedNames, unusedValues;
    (this->*f.unusedNames)(total, unusedNames);
    (this->*f.unusedValues)(total, unusedValues);
    InitConstants(unusedNames, unusedValues);
    double pLeak = 0.0, pBias = 0.0;
    const int unusedLeakCol = total->GetColumnIndex("Unused Leakage VCC Pwr (W)");
    const int unusedBiasCol = total->GetColumnIndex("Unused DCbias VCC Pwr (W)");
    for (const std::string& supply : supplies) {
        const double g = gate(supply);
        const double iLeak = (this->*f.leakUnused)(f.panel, unusedNames, unusedValues, supply);
        pLeak += vcc * iLeak * g;
        LogUnusedPower(f.leakUnusedLog, iLeak, vcc);
        const double iBias = (this->*f.biasUnused)(f.panel, unusedNames, unusedValues, supply);
        pBias += vcc * iBias * g;
        LogUnusedPower(f.biasUnusedLog, iBias, vcc);
        total->SetValueAt(PrintFixed(pLeak, 20).c_str(), 0, unusedLeakCol);
        total->SetValueAt(PrintFixed(pBias, 20).c_str(), 0, unusedBiasCol);
    }

    const int rows = items->GetNumOfRows();
    const double sDyn = GetTotalSumRowDData(items, dynCol, rows);
    const double sLeak = GetTotalSumRowDData(items, leakCol, rows);
    const double sBias = GetTotalSumRowDData(items, biasCol, rows);
    const double sUnused = GetTotalRealRowButFirstSecondCol(total, 0);
    total->SetValueAt(PrintFixed(sUnused + sDyn + sLeak + sBias, 20).c_str(), 0,
                      total->GetColumnIndex("Total Pwr (W)"));
    total->SetValueAt(PrintFixed(sDyn, 20).c_str(), 0, total->GetColumnIndex("Total Dyn. Pwr (W)"));
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
    for (const char* n :
         {"VCC", "VCCPG", "Device", "Package", "Operating", "Speed", "TJ", "Process", "archName"})
        names.push_back(n);
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
    values.push_back(DeviceName());
    values.push_back(PackageName());
    values.push_back(OperatingName());
    values.push_back(SpeedGrade());
    values.push_back(CurrentTJ());
    values.push_back(GetProcessType());
    values.push_back(ArchName());
}
