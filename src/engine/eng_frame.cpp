// The calculator frame every tab shares: the rows by supply passes, the
// device-wide row of what the design leaves free, and the tab's totals.
#include <cstdio>
#include <cstdlib>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// The power-gated supply is off in sleep; its currents are still worked out.
double Gate(const std::string& supply, int powerMode) {
    return supply == "VCCPG" && powerMode == 1 ? 0.0 : 1.0;
}

int ColumnOf(PD_TABLE* table, const char* column) {
    return column ? table->GetColumnIndex(column) : -1;
}

void AddOnce(std::vector<int>& columns, int column) {
    if (column < 0) return;
    for (int c : columns)
        if (c == column) return;
    columns.push_back(column);
}

}  // namespace

// "<head><row><middle><current> * <volts> = <power>"; a voltage read per row
// is shown as its text. Without a middle the line names no row, as for a
// block the device has once.
void PC_ENG::LogRowPower(const RowLog& log, int row, double current, double volts,
                         const std::string* voltsText) {
    if (!PD_UTIL::IsCalcLogOpen() || !log.head) return;
    char buf[512];
    if (!log.middle)
        std::snprintf(buf, sizeof buf, "%s%g%s%g%s%g\n", log.head, current, " * ", volts, " = ",
                      current * volts);
    else if (voltsText)
        std::snprintf(buf, sizeof buf, "%s%d%s%g%s%s%s%g\n", log.head, row, log.middle, current,
                      " * ", voltsText->c_str(), " = ", current * volts);
    else
        std::snprintf(buf, sizeof buf, "%s%d%s%g%s%g%s%g\n", log.head, row, log.middle, current,
                      " * ", volts, " = ", current * volts);
    PD_UTIL::FCprintln(buf);
}

void PC_ENG::AppendSettingNames(std::vector<std::string>& names) {
    for (const char* n : {"Device", "Package", "Operating", "Speed", "TJ", "Process", "archName"})
        names.push_back(n);
}

void PC_ENG::AppendSettingValues(std::vector<std::string>& values) const {
    for (std::string v : {std::string(DeviceName()), std::string(PackageName()),
                          std::string(OperatingName()), std::string(SpeedGrade()), CurrentTJ(),
                          std::string(GetProcessType()), std::string(ArchName())})
        values.push_back(std::move(v));
}

std::vector<std::string> PC_ENG::PwrSectionHasVccVccpg(const std::string& section) const {
    std::vector<std::string> list;
    auto* pwr = dynamic_cast<PD_PWRSECT*>(pwrData->GetSection(section.c_str()));
    if (!pwr) return list;
    for (const std::string& s : pwr->supplies)
        if (s == "VCC" || s == "VCCPG") list.push_back(s);
    return list;
}

bool PC_ENG::PwrSectionHasSupply(const std::string& section, const std::string& supply) const {
    auto* pwr = dynamic_cast<PD_PWRSECT*>(pwrData->GetSection(section.c_str()));
    if (!pwr) return false;
    for (const std::string& s : pwr->supplies)
        if (s == supply) return true;
    return false;
}

namespace {

// The member supplies of a pass, and the voltage that turns them into watts.
struct PassSetup {
    bool runs = false;
    std::vector<std::string> supplies;
    double volts = 0.0;
};

// Whether a pass runs, on which supplies, at which voltage.
PassSetup SetUpPass(const PC_ENG& eng, const char* supply, const char* section, const char* voltage,
                    PC_ENG::PassIf runIf) {
    PassSetup s;
    switch (runIf) {
        case PC_ENG::PassIf::Always:
            s.runs = true;
            break;
        case PC_ENG::PassIf::HasSupply:
            s.runs = eng.HasSupply(voltage);
            break;
        case PC_ENG::PassIf::SectionHasSupply:
            s.runs = eng.PwrSectionHasSupply(section, supply ? supply : "");
            break;
    }
    if (!s.runs) return s;
    if (supply)
        s.supplies.push_back(supply);
    else
        s.supplies = eng.PwrSectionHasVccVccpg(section);
    s.volts = Num(eng.GetVDPMCategory(voltage, "Voltage", "-1"));
    return s;
}

}  // namespace

void PC_ENG::RunFrameRows(const char* panel, PD_TABLE* items, const std::vector<SupplyPass>& passes,
                          PlainDyn plainDyn) {
    if (!items) return;
    struct Active {
        const SupplyPass* pass;
        PassSetup setup;
        int dynCol, leakCol, biasCol;
    };
    std::vector<Active> active;
    for (const SupplyPass& p : passes) {
        PassSetup setup = SetUpPass(*this, p.supply, p.section, p.voltage, p.runIf);
        if (!setup.runs) continue;
        if (p.updateDpm) {
            // The voltage as the DPM refresh reads it, for the device-wide bank.
            std::vector<std::string> voltages;
            std::string dpm;
            UpdateDPM(p.voltage, {"-1"}, voltages, &dpm);
            setup.volts = Num(voltages.front());
        }
        active.push_back({&p, std::move(setup), ColumnOf(items, p.dynColumn),
                          ColumnOf(items, p.leakColumn), ColumnOf(items, p.biasColumn)});
    }
    const int plainCol = items->GetColumnIndex("Dyn. Pwr (W)");
    // "Dyn. Pwr (W)" sums the passes' columns whether or not they ran.
    std::vector<int> dynColumns;
    for (const SupplyPass& p : passes) AddOnce(dynColumns, ColumnOf(items, p.dynColumn));
    int count = 0;
    const std::vector<std::string> names = GetArrayOfColumnNames(items, &count);
    RowNamesScope namesScope(rowNames, names);
    std::vector<std::string> values;
    std::string cell, rowVolts;
    for (int row = 0; row < items->GetNumOfRows(); ++row) {
        FillArrayOfColumnValues(items, row, values);
        InitConstants(names, values);
        for (size_t k = 0; k < active.size(); ++k) {
            const SupplyPass& p = *active[k].pass;
            if (p.rowIf && !(this->*p.rowIf)(p.rowIfArg, names, values)) {
                const ProcessMember members[3] = {p.dyn, p.leak, p.bias};
                const int columns[3] = {active[k].dynCol, active[k].leakCol, active[k].biasCol};
                for (int m = 0; m < 3; ++m)
                    if (members[m]) items->SetValueAt("0.000000", row, columns[m]);
                continue;
            }
            if (p.rowPricer) {
                (this->*p.rowPricer)(items, row, names, values);
                continue;
            }
            double volts = active[k].setup.volts;
            const std::string* voltsText = nullptr;
            if (p.rowVoltage) {
                rowVolts = (this->*p.rowVoltage)(names, values);
                volts = Num(rowVolts);
                voltsText = &rowVolts;
            }
            double sums[3] = {0.0, 0.0, 0.0};
            const ProcessMember members[3] = {p.dyn, p.leak, p.bias};
            const RowLog* logs[3] = {&p.dynLog, &p.leakLog, &p.biasLog};
            const int columns[3] = {active[k].dynCol, active[k].leakCol, active[k].biasCol};
            for (const std::string& supply : active[k].setup.supplies) {
                const double g = Gate(supply, powerMode);
                for (int m = 0; m < 3; ++m) {
                    if (!members[m]) continue;
                    const double i = (this->*members[m])(panel, names, values, supply);
                    sums[m] += volts * i * g;
                    LogRowPower(*logs[m], row, i, volts, voltsText);
                }
                for (int m = 0; m < 3; ++m) {
                    if (!members[m]) continue;
                    pwcformula::PrintFixedTo(cell, sums[m], 20);
                    items->SetValueAt(cell.c_str(), row, columns[m]);
                }
                if (plainDyn == PlainDyn::CopyFirst && k == 0) {
                    items->SetValueAt(items->GetValueAt(row, columns[0]), row, plainCol);
                    if (PD_UTIL::IsCalcLogOpen()) {
                        char buf[512];
                        std::snprintf(buf, sizeof buf, "%s%d%s%s\n", "PowerTotalDynamic row(", row,
                                      ") = ", items->GetValueAt(row, plainCol));
                        PD_UTIL::FCprintln(buf);
                    }
                }
            }
        }
        if (plainDyn == PlainDyn::SumPasses) {
            double sum = 0.0;
            for (int c : dynColumns) sum += items->GetDoubleValueAt(row, c);
            pwcformula::PrintFixedTo(cell, sum, 20);
            items->SetValueAt(cell.c_str(), row, plainCol);
        }
    }
}

void PC_ENG::RunFrameUnused(const char* panel, PD_TABLE* total, UnusedBuilder namesOf,
                            UnusedBuilder valuesOf, const std::vector<UnusedPass>& passes,
                            PD_TABLE* source, bool accumulate) {
    if (!total || !namesOf || !valuesOf) return;
    std::vector<std::string> names, values;
    (this->*namesOf)(source ? source : total, names);
    (this->*valuesOf)(source ? source : total, values);
    InitConstants(names, values);
    for (const UnusedPass& p : passes) {
        const PassSetup setup = SetUpPass(*this, p.supply, p.section, p.voltage, p.runIf);
        if (!setup.runs) continue;
        const int leakCol = ColumnOf(total, p.leakColumn);
        const int biasCol = ColumnOf(total, p.biasColumn);
        const double leakBefore = accumulate ? Num(total->GetValueAt(0, leakCol)) : 0.0;
        const double biasBefore = accumulate ? Num(total->GetValueAt(0, biasCol)) : 0.0;
        double pLeak = 0.0, pBias = 0.0;
        for (const std::string& supply : setup.supplies) {
            const double g = Gate(supply, powerMode);
            if (p.leak) {
                const double i = (this->*p.leak)(panel, names, values, supply);
                pLeak += setup.volts * i * g;
                LogRowPower({p.leakLog, nullptr}, 0, i, setup.volts);
            }
            if (p.bias) {
                const double i = (this->*p.bias)(panel, names, values, supply);
                pBias += setup.volts * i * g;
                LogRowPower({p.biasLog, nullptr}, 0, i, setup.volts);
            }
            if (p.leak) total->SetValueAt(PrintFixed(leakBefore + pLeak, 20).c_str(), 0, leakCol);
            if (p.bias) total->SetValueAt(PrintFixed(biasBefore + pBias, 20).c_str(), 0, biasCol);
        }
    }
}

double PC_ENG::FrameTotals(
    const std::vector<std::pair<PD_TABLE*, const std::vector<SupplyPass>*>>& items,
    PD_TABLE* total) {
    double sDyn = 0.0, sLeak = 0.0, sBias = 0.0;
    for (const auto& [table, passes] : items) {
        std::vector<int> columns[3];
        for (const SupplyPass& p : *passes) {
            AddOnce(columns[0], ColumnOf(table, p.dynColumn));
            AddOnce(columns[1], ColumnOf(table, p.leakColumn));
            AddOnce(columns[2], ColumnOf(table, p.biasColumn));
        }
        const int rows = table->GetNumOfRows();
        for (int c : columns[0]) sDyn += GetTotalSumRowDData(table, c, rows);
        for (int c : columns[1]) sLeak += GetTotalSumRowDData(table, c, rows);
        for (int c : columns[2]) sBias += GetTotalSumRowDData(table, c, rows);
    }
    if (!total) return sDyn;
    // From the third column on: the unused columns, past the two totals.
    const double sUnused = GetTotalRealRowButFirstSecondCol(total, 0);
    total->SetValueAt(PrintFixed(sUnused + sDyn + sLeak + sBias, 20).c_str(), 0,
                      total->GetColumnIndex("Total Pwr (W)"));
    total->SetValueAt(PrintFixed(sDyn, 20).c_str(), 0, total->GetColumnIndex("Total Dyn. Pwr (W)"));
    return sDyn;
}

void PC_ENG::RunPanelFrame(const PanelFrame& f) {
    PC_PANEL* panel = GetPanel(GetPanelIndex(f.panel));
    if (!panel || panel->GetNumOfTables() < 2) return;
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    ModelCacheScope cacheScope(caches);
    std::vector<std::pair<PD_TABLE*, const std::vector<SupplyPass>*>> items;
    for (const TableFrame& t : f.tables) {
        PD_TABLE* table =
            t.table ? panel->GetTable(panel->GetTableIndex(t.table)) : panel->GetTable(0);
        if (!table || table == total) continue;
        RunFrameRows(t.memberPanel ? t.memberPanel : f.panel, table, t.passes, f.plainDyn);
        items.push_back({table, &t.passes});
    }
    RunFrameUnused(f.panel, total, f.unusedNames, f.unusedValues, f.unused);
    FrameTotals(items, total);
}
