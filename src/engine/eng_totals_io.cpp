// The I/O supplies of the summary: each "Vccio" and "Vtt" row sums the I/O
// columns of the rows whose bank or type runs at its voltage.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pc_families.h"

using namespace pwc;

namespace {

struct IoSupplyRow {
    const char* row;
    const char* code;
    const char* kind;
    bool onlyIfRowExists;
};

// "Vtt" rows stand for the termination voltage, half the VCCIO of the code.
const IoSupplyRow kIoSupplyRows[] = {
    {"Vccio 3.3", "33", "VCCIO", false}, {"Vccio 2.5", "25", "VCCIO", false},
    {"Vccio 1.8", "18", "VCCIO", false}, {"Vccio 1.5", "15", "VCCIO", false},
    {"Vccio 1.2", "12", "VCCIO", false}, {"Vccio 1.35", "135", "VCCIO", true},
    {"Vtt 1.65", "33", "VTT", false},    {"Vtt 1.25", "25", "VTT", false},
    {"Vtt 0.9", "18", "VTT", false},     {"Vtt 0.75", "15", "VTT", false},
    {"Vtt 0.6", "12", "VTT", false},
};

}  // namespace

PD_TABLE* PC_ENG::IoTable(const char* panelName, int index) const {
    PC_PANEL* panel = GetPanel(GetPanelIndex(panelName));
    return panel ? panel->GetTable(index) : nullptr;
}

double PC_ENG::GetTotalColumnIfIOtype(PD_TABLE* table, const std::string& column,
                                      const std::string& kind, const std::string& code) {
    return GetTotalColumnIfIOtypeCategory(table, column, kind, code, "");
}

double PC_ENG::GetTotalColumnIfIOtypeCategory(PD_TABLE* table, const std::string& column,
                                              const std::string& kind, const std::string& code,
                                              const std::string& category) {
    if (!table) return 0.0;
    const int col = table->GetColumnIndex(column.c_str());
    if (col < 0) return 0.0;
    PD_TABLE* banks = IoTable("I/O", 2);
    const bool bankTable = table->name == "Bank Voltage";
    double sum = 0.0;
    for (int r = 0; r < table->GetNumOfRows(); ++r) {
        std::string text;
        std::string voltage;
        const char* bank = table->GetValueAt(r, table->GetColumnIndex("Bank"));
        if (bankTable) {
            voltage = table->GetValueAt(r, table->GetColumnIndex("Voltage"));
        } else if (banks && (kind == "VCCIO" || !category.empty())) {
            voltage = banks->GetValueAt(banks->GetRowNumber(std::string(bank)),
                                        banks->GetColumnIndex("Voltage"));
        }
        if (!category.empty() && FindSupplyCategory(voltage, bank) != category) continue;
        if (bankTable || kind == "VCCIO") {
            // "Vccio 3.3" -> 33; "Vccio 1.35" -> 135. A row whose bank has no
            // voltage text belongs to no code.
            if (voltage.size() < 6) continue;
            const std::string volts = voltage.substr(6);
            const double v = Num(volts.c_str());
            text = volts == "1.35" ? std::to_string(static_cast<int>(v * 100))
                                   : std::to_string(static_cast<int>(v * 10));
        } else {
            text = table->GetValueAt(r, table->GetColumnIndex("Type"));
        }
        if (GetStringFirstNumberStr(text) == code)
            sum += Num(table->GetNoRoundValueAt(r, col).c_str());
    }
    return sum;
}

double PC_ENG::HelperIOaddingDyn(const std::string& kind, const std::string& code) {
    return HelperIOaddingDynCategory(kind, code, "");
}

double PC_ENG::HelperIOaddingDynCategory(const std::string& kind, const std::string& code,
                                         const std::string& category) {
    const std::string column = "Dyn. " + kind + " Pwr (W)";
    double sum = 0.0;
    for (PD_TABLE* t : {IoTable("I/O", 0), IoTable("I/O", 1), IoTable("I/O Term", 0)})
        sum += GetTotalColumnIfIOtypeCategory(t, column, kind, code, category);
    return sum;
}

int PC_ENG::GetTotalUsedIO() const {
    int used = 0;
    for (PD_TABLE* t : {IoTable("I/O", 0), IoTable("I/O", 1)})
        for (const char* c : {"# I/P", "# O/P", "# Bidi"})
            if (t && t->GetColumnIndex(c) >= 0)
                used += GetTotalSumRowData(t, t->GetColumnIndex(c), t->GetNumOfRows());
    return used;
}

double PC_ENG::HelperIOaddingSta(const std::string& kind, const std::string& code) {
    return HelperIOaddingStaCategory(kind, code, "");
}

double PC_ENG::HelperIOaddingStaCategory(const std::string& kind, const std::string& code,
                                         const std::string& category) {
    double sum = 0.0;
    std::vector<PD_TABLE*> tables{IoTable("I/O", 0), IoTable("I/O", 1), IoTable("I/O Term", 0)};
    if (kind != "VTT") tables.push_back(IoTable("I/O", 2));
    for (PD_TABLE* t : tables)
        for (const char* k : {"Leakage ", "DCbias "})
            sum += GetTotalColumnIfIOtypeCategory(t, k + kind + " Pwr (W)", kind, code, category);

    PD_TABLE* unused = IoTable("I/O", 3);
    auto unusedRow = [&](const std::string& k) {
        return unused ? Num(unused
                                ->GetNoRoundValueAt(
                                    0, unused->GetColumnIndex(
                                           ("Unused Leakage " + k + " Pwr (W)").c_str()))
                                .c_str()) +
                            Num(unused
                                    ->GetNoRoundValueAt(
                                        0, unused->GetColumnIndex(
                                               ("Unused DCbias " + k + " Pwr (W)").c_str()))
                                    .c_str())
                      : 0.0;
    };
    // The pins left free have no bank: a category form takes them only on
    // the supply's own row.
    const bool deviceWide =
        category.empty() || pc_stricmp(category.substr(0, kind.size()).c_str(), kind.c_str()) == 0;
    const double codeVolts = Num(code.c_str()) / 10.0;
    // The unused pins take the engine's base I/O type.
    const double unusedVolts = GetStringFirstNumberforVoltage(baseIOType) / 10.0;
    if (kind == "VTT") {
        if (deviceWide && codeVolts * 0.5 == unusedVolts * 0.5) sum += unusedRow("VTT");
    } else if (kind == "VCCAUX") {
        if (deviceWide && codeVolts == unusedVolts) sum += unusedRow("VCCAUX");
    } else if (kind == "VCCIO") {
        const char* byDevice = std::getenv("PWC_UNUSED_IO_DEVICE");
        if (byDevice && std::strcmp(byDevice, "1") == 0) {
            auto* s = dynamic_cast<PD_KEYSECT*>(pwrData->GetSection("IO BANK VCCIO"));
            const char* v =
                s ? s->GetValue(GetTotalUsedIO() < 1 ? "HW_DEFAULT" : "BFD_DEFAULT") : "";
            if (deviceWide && static_cast<int>(Num(v) * 10) == static_cast<int>(Num(code.c_str())))
                sum += unusedRow("VCCIO");
        } else {
            PD_TABLE* banks = IoTable("I/O", 2);
            for (const char* k : {"Unused Leakage ", "Unused DCbias "})
                sum += GetTotalColumnIfIOtypeCategory(banks, k + kind + " Pwr (W)", kind, code,
                                                      category);
        }
    }
    return sum;
}

void PC_ENG::SetIOstaVccioVttVccauxXX() {
    SetIOVccioVttRows(false, nullptr);
}
void PC_ENG::SetIOdynVccioVttVccauxXX() {
    SetIOVccioVttRows(true, nullptr);
}
// An empty category lets each row take the I/O of the banks whose rail maps
// to the row itself.
void PC_ENG::SetIOstaVccioVttVccauxXXCategory(const std::string& category) {
    SetIOVccioVttRows(false, &category);
}
void PC_ENG::SetIOdynVccioVttVccauxXXCategory(const std::string& category) {
    SetIOVccioVttRows(true, &category);
}

void PC_ENG::SetIOVccioVttRows(bool dynamic, const std::string* byCategory) {
    PD_TABLE* vdpm = GetSupplyTable();
    PD_TABLE* power = GetPowerTable();
    PD_TABLE* current = GetCurrentTable();
    if (!vdpm || !power || !current) return;
    if (dynamic) {
        ioDynamicPower.clear();
    } else {
        ioStaticPower.clear();
    }
    const bool vtt = HasSupply("Vtt");
    // Every dynamic Vtt current is taken at the voltage of "Vtt 1.65".
    const double vtt165 = Num(vdpm->GetValueAt("Vtt 1.65", "Voltage"));
    for (const IoSupplyRow& s : kIoSupplyRows) {
        const int row = vdpm->GetRowNumber(std::string(s.row));
        const bool isVtt = std::strcmp(s.kind, "VTT") == 0;
        if (isVtt && !vtt) continue;
        if (s.onlyIfRowExists && row < 0) continue;
        const std::string category = !byCategory           ? ""
                                     : byCategory->empty() ? std::string(s.row)
                                                           : *byCategory;
        const double watts = dynamic ? HelperIOaddingDynCategory(s.kind, s.code, category)
                                     : HelperIOaddingStaCategory(s.kind, s.code, category);
        if (dynamic) {
            ioDynamicPower[s.row] = watts;
        } else {
            // "Vtt 0.9" is kept under "Vtt 0.0", a row no table has.
            ioStaticPower[std::string(s.row) == "Vtt 0.9" ? "Vtt 0.0" : s.row] = watts;
        }
        if (row < 0) continue;
        const int column = dynamic ? 1 : 0;
        power->SetValueAt(PrintFixed(watts, 20).c_str(), row, column);
        const double volts = dynamic && isVtt ? vtt165 : Num(vdpm->GetValueAt(row, 1));
        if (volts == 0.0) continue;
        if (dynamic)
            ioDynamicCurrent[s.row] = watts / volts;
        else
            ioStaticCurrent[std::string(s.row) == "Vtt 0.9" ? "Vtt 0.0" : s.row] = watts / volts;
        current->SetValueAt(PrintFixed(watts / volts, 20).c_str(), row, column);
    }
}

void PC_ENG::setStaTableForIoVttVccio(const std::map<std::string, double>& sta,
                                      const std::map<std::string, double>& dyn, PD_TABLE* table) {
    if (!table) return;
    const char* format = IsSixDigitMatrixFamily(FamilyName()) ? "%.6lf" : "%.4lf";
    char buf[512];
    for (const auto& kv : sta) {
        auto d = dyn.find(kv.first);
        std::snprintf(buf, sizeof buf, format, kv.second + (d == dyn.end() ? 0.0 : d->second));
        const int row = table->GetRowNumber(kv.first);
        const int col = table->GetColumnIndex("I/O");
        if (row >= 0 && col >= 0) table->SetValueAt(buf, row, col);
    }
}
