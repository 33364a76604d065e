// The totals of the part with supply categories: every block's supply goes
// through the category map, and the firmware-resilience block adds its
// core, auxiliary and per-bank shares.
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

namespace {

double Cell0(PD_TABLE* t, const std::string& column) {
    return t ? Num(t->GetValueAt(0, t->GetColumnIndex(column.c_str()))) : 0.0;
}

// Sum of a column over all rows of the tables; an absent column adds 0.
double Sum(const std::vector<PD_TABLE*>& tables, const std::string& column) {
    double sum = 0.0;
    for (PD_TABLE* t : tables) {
        const int c = t->GetColumnIndex(column.c_str());
        for (int r = 0; c >= 0 && r < t->GetNumOfRows(); ++r) sum += Num(t->GetValueAt(r, c));
    }
    return sum;
}

}  // namespace

void PC_ENG::CalculateTotalPowerCategory() {
    FoldTotals(true);
}

std::vector<PC_ENG::CategoryTerm> PC_ENG::PfrSupplyTerms() {
    std::vector<CategoryTerm> terms;
    PC_PANEL* panel = GetPanel(GetPanelIndex("PFR"));
    if (!panel || panel->GetNumOfTables() < 2) return terms;
    std::vector<PD_TABLE*> items(panel->tables.begin(), panel->tables.end() - 1);
    PD_TABLE* total = panel->tables.back();
    // A column set's static and dynamic watts on one supply row.
    auto add = [&](const std::string& supply, const std::string& tag) {
        CategoryTerm t;
        t.supply = supply;
        for (const char* kind : {"Leakage ", "DCbias "}) {
            t.sta += Sum(items, kind + tag + " Pwr (W)");
            t.sta += Cell0(total, std::string("Unused ") + kind + tag + " Pwr (W)");
        }
        t.dyn = Sum(items, "Dyn. " + tag + " Pwr (W)");
        terms.push_back(t);
    };
    add(FindSupplyCategory("Vcc", "-1"), "VCC");
    add(FindSupplyCategory("Vccaux", "-1"), "VCCAUX");
    add(FindSupplyCategory("Vccio", "-1"), "VCCIO");
    // The banks' interface shares, both rails of a bank, go in turn to the
    // VCCIO supplies of the groups 13, 15, 16 and 17.
    static const char* const kBankGroups[] = {"13", "15", "16", "17"};
    std::vector<std::string> banks;
    for (PD_TABLE* t : panel->tables)
        for (const std::string& column : t->columns) {
            const size_t at = column.find("Bank");
            if (at == std::string::npos || column.find(" VCCIO Pwr (W)") == std::string::npos)
                continue;
            const size_t blank = column.find(' ', at);
            const std::string bank = column.substr(at + 4, blank - at - 4);
            bool seen = false;
            for (const std::string& b : banks) seen |= b == bank;
            if (!seen) banks.push_back(bank);
        }
    for (size_t i = 0; i < banks.size() && i < std::size(kBankGroups); ++i) {
        const std::string supply = FindSupplyCategory("Vccio", kBankGroups[i]);
        add(supply, "Bank" + banks[i] + " VCCIO");
        add(supply, "Bank" + banks[i] + " VCCAUX");
    }
    return terms;
}

std::vector<PC_ENG::CategoryTerm> PC_ENG::IoCategorySpill() {
    std::vector<CategoryTerm> terms;
    PD_TABLE* banks = IoTable("I/O", 2);
    if (!banks) return terms;
    const int bankCol = banks->GetColumnIndex("Bank");
    const int voltCol = banks->GetColumnIndex("Voltage");
    std::set<std::pair<std::string, std::string>> seen;
    for (int r = 0; r < banks->GetNumOfRows(); ++r) {
        const std::string voltage = banks->GetValueAt(r, voltCol);
        const std::string supply = FindSupplyCategory(voltage, banks->GetValueAt(r, bankCol));
        if (voltage.size() < 6 || supply == voltage) continue;
        // The voltage code of the bank, as the I/O supply rows count it.
        const std::string volts = voltage.substr(6);
        const double v = Num(volts.c_str());
        const std::string code = volts == "1.35" ? std::to_string(static_cast<int>(v * 100))
                                                 : std::to_string(static_cast<int>(v * 10));
        if (!seen.insert({supply, code}).second) continue;
        CategoryTerm t;
        t.supply = supply;
        t.sta = HelperIOaddingStaCategory("VCCIO", code, supply);
        t.dyn = HelperIOaddingDynCategory("VCCIO", code, supply);
        terms.push_back(t);
    }
    return terms;
}
