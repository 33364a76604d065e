// The "ASC" tab: analog sense and control rails whose current comes from the
// project's own "ASC CURRENT" equation, on the core supply ("INT") or on a
// rail of their own ("EXT").
#include <algorithm>
#include <cctype>
#include <cstdio>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "baspclator/pc_lator.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

namespace {

const char* const kPanel = "ASC";
const char* const kPowerColumn = "VCC Pwr (W)";

// Only "INT" runs at the core voltage; a row of any other type at its own.
bool UsesOwnVoltage(const std::string& type) {
    return type != "INT";
}

// Only "EXT" rows make rails of their own.
bool IsExternalRail(const std::string& type) {
    return type == "EXT";
}

// "ASCVCC 3.300": the summary row of an external rail.
std::string RailName(const std::string& voltage) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "ASCVCC %.3lf", Num(voltage));
    return buf;
}

}  // namespace

PC_PANEL* PC_ENG::AscPanel() const {
    if (!ascCalculator) return nullptr;
    PC_PANEL* panel = GetPanel(GetPanelIndex(kPanel));
    return panel && panel->GetNumOfTables() >= 2 ? panel : nullptr;
}

std::vector<std::string> PC_ENG::GetArrayOfColumnNamesASC(PD_TABLE* table) const {
    std::vector<std::string> names;
    for (int c = 0; c < getColumnCountMinusPwrColumn(table); ++c)
        names.push_back(table->columns[c]);
    return names;
}

std::vector<std::string> PC_ENG::GetArrayOfColumnValuesASC(PD_TABLE* table, int row) const {
    std::vector<std::string> values;
    for (int c = 0; c < getColumnCountMinusPwrColumn(table); ++c)
        values.push_back(table->GetValueAt(row, c));
    return values;
}

std::string PC_ENG::GetASCCurrentformula() const {
    auto* section =
        project ? dynamic_cast<PD_KEYSECT*>(project->GetSection("ASC CURRENT")) : nullptr;
    return section ? section->GetValue("CURRENT") : "";
}

double PC_ENG::ProcessAscVcc(const Row& names, const Row& values) {
    const std::string formula = GetASCCurrentformula();
    if (formula.empty()) return 0.0;
    Row bound, boundValues;
    for (const std::string& word : PC_LATOR::BreakIntoComponets(formula)) {
        // Digits of a number come out as words of their own; only names bind.
        if (word.empty() || !(std::isalpha(static_cast<unsigned char>(word[0])) || word[0] == '_'))
            continue;
        if (std::find(bound.begin(), bound.end(), word) != bound.end()) continue;
        const auto at = std::find(names.begin(), names.end(), word);
        std::string value = "0";
        if (at != names.end() && !values[at - names.begin()].empty())
            value = values[at - names.begin()];
        bound.push_back(word);
        boundValues.push_back(value);
    }
    std::string trace;
    PC_LATOR calculator("CALULATION");
    const double current = calculator.ProcessCalculator(formula, trace, bound, boundValues);
    if (PD_UTIL::IsCalcLogOpen()) PD_UTIL::FCprintln("IccASC = " + formula + " = " + trace);
    return current;
}

void PC_ENG::ASCCalculation() {
    PC_PANEL* panel = AscPanel();
    if (!panel) return;
    PD_TABLE* items = panel->GetTable(0);
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    const double vcc = Num(GetVDPMCategory("Vcc", "Voltage", "-1"));
    const int powerCol = items->GetColumnIndex(kPowerColumn);
    const int typeCol = items->GetColumnIndex("VCCTYPE");
    const int voltCol = items->GetColumnIndex("VCC");
    const Row names = GetArrayOfColumnNamesASC(items);
    double sum = 0.0;
    for (int row = 0; row < items->GetNumOfRows(); ++row) {
        const Row values = GetArrayOfColumnValuesASC(items, row);
        const double volts = UsesOwnVoltage(items->GetValueAt(row, typeCol))
                                 ? Num(items->GetValueAt(row, voltCol))
                                 : vcc;
        const double current = ProcessAscVcc(names, values);
        LogRowPower({"PowerASC row(", ") = IccASC * vcc = "}, row, current, volts);
        const double power = current * volts;
        items->SetValueAt(PrintFixed(power, 20).c_str(), row, powerCol);
        sum += power;
    }
    total->SetValueAt(PrintFixed(sum, 20).c_str(), 0, total->GetColumnIndex("Total Pwr (W)"));
}

void PC_ENG::setupASCsupply() {
    PD_TABLE* vdpm = GetSupplyTable();
    PD_TABLE* current = GetCurrentTable();
    PD_TABLE* power = GetPowerTable();
    // At set-up the tab has its rows but not yet its total table.
    PC_PANEL* panel = ascCalculator ? GetPanel(GetPanelIndex(kPanel)) : nullptr;
    PD_TABLE* items = panel ? panel->GetTable(0) : nullptr;
    if (!vdpm || !current || !power || !items) return;
    const int typeCol = items->GetColumnIndex("VCCTYPE");
    const int voltCol = items->GetColumnIndex("VCC");
    for (int r = 0; r < items->GetNumOfRows(); ++r) {
        if (!IsExternalRail(items->GetValueAt(r, typeCol))) continue;
        const std::string rail = RailName(items->GetValueAt(r, voltCol));
        if (!ascRails.insert(rail).second) continue;
        vdpm->AddRow({rail, rail.substr(7), "1.00"});
        // Supply rows stand before the tables' total row.
        for (PD_TABLE* t : {current, power}) {
            PD_TABLE::Row cells(t->GetNumOfColumns(), PD_TABLE::Cell{"0.0000", ""});
            t->rows.insert(t->rows.empty() ? t->rows.end() : t->rows.end() - 1, cells);
        }
    }
}

double PC_ENG::GetASCcurrentAndPower(std::map<std::string, double>& rails) {
    rails.clear();
    PC_PANEL* panel = AscPanel();
    if (!panel) return 0.0;
    PD_TABLE* items = panel->GetTable(0);
    const int powerCol = items->GetColumnIndex(kPowerColumn);
    const int typeCol = items->GetColumnIndex("VCCTYPE");
    const int voltCol = items->GetColumnIndex("VCC");
    // An external rail goes on the summary row the set-up made for it; on the
    // part with categories too, where HasSupply knows only the categories and
    // the category map has no entry for the rail. A row without such a row
    // (not "EXT", or made "EXT" after set-up) is counted on the core supply
    // rather than lost.
    PD_TABLE* vdpm = GetSupplyTable();
    double onVcc = 0.0;
    for (int r = 0; r < items->GetNumOfRows(); ++r) {
        const double watts = Num(items->GetValueAt(r, powerCol));
        const std::string rail = RailName(items->GetValueAt(r, voltCol));
        const bool ownRow = HasSupply(rail) || (vdpm && vdpm->GetRowNumber(rail) >= 0);
        if (IsExternalRail(items->GetValueAt(r, typeCol)) && ownRow)
            rails[rail] += watts;
        else
            onVcc += watts;
    }
    return onVcc;
}
