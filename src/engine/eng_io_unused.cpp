// The pins a design leaves unused, bank by bank (or over the whole device),
// on the four supplies of the I/O.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

int PC_ENG::GetBankUsedIO(const std::string& bank, const std::string& kind) const {
    const bool all = kind == "all" || kind == "All";
    int used = 0;
    for (const char* name : {"Input Output", "Bidi"}) {
        PD_TABLE* t = GetIoTable(name);
        if (!t) continue;
        const int bankCol = t->GetColumnIndex("Bank");
        std::vector<int> columns;
        if (all) {
            for (const char* c : {"# I/P", "# O/P", "# Bidi"})
                columns.push_back(t->GetColumnIndex(c));
        } else {
            columns.push_back(t->GetColumnIndex(kind.c_str()));
        }
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            if (bank != t->GetValueAt(r, bankCol)) continue;
            for (int c : columns)
                used += static_cast<int>(std::strtol(t->GetValueAt(r, c), nullptr, 10));
        }
    }
    return used;
}

int PC_ENG::GetBankUnusedIO(const std::string& bank) const {
    const BANKIO* record = BankRecord(bank);
    return (record ? record->ioCount : 0) - GetBankUsedIO(bank, "All");
}

PC_ENG::UnusedIoBank PC_ENG::UnusedIoBankOf(int bank) {
    UnusedIoBank u;
    if (bank >= 0 && bank < static_cast<int>(banks.size())) {
        const BANKIO& b = banks[bank];
        u.name = b.name;
        u.bankRow = BankRowOf(b.name);
        u.total = b.ioCount;
        u.unused = GetBankUnusedIO(b.name);
        u.vccio = GetVccioFromBank(u.bankRow);
        u.code = BankVccioCode(b.name);
        return u;
    }
    // The whole device at the voltage its banks default to.
    u.name = "-1";
    for (const BANKIO& b : banks)
        if (b.user) u.total += b.ioCount;
    u.unused = u.total - GetTotalUsedIO();
    auto* keys = dynamic_cast<PD_KEYSECT*>(pwrData->GetSection("IO BANK VCCIO"));
    const std::string volts =
        keys ? keys->GetValue(GetTotalUsedIO() < 1 ? "HW_DEFAULT" : "BFD_DEFAULT") : "";
    u.vccio = GetVccio(volts);
    u.code = std::to_string(static_cast<int>(Num(volts) * 10 + 0.5));
    return u;
}

void PC_ENG::GetArrayOfColumnUnusedNamesIO(int, std::vector<std::string>& names) {
    names = {"IO_unused", "IO_total", "Bank", "Type", "VCCIO"};
    if (HasSupply("Vtt")) names.push_back("VTT");
    AppendRowContextNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesIO(int bank, std::vector<std::string>& values) {
    const UnusedIoBank u = UnusedIoBankOf(bank);
    values = {PrintFixed(u.unused, 1), PrintFixed(u.total, 1), u.name, UnusedIoType(), u.vccio};
    if (HasSupply("Vtt")) values.push_back(VttVoltageOfCode(u.code));
    ForRowContextValues([&values](const char* v) { values.push_back(v); });
}

namespace {

// The unused columns, in the order of their calculation, with the supply
// each one's power is taken at.
enum class UnusedSupply { Vcc, Vccio, Vccaux, Vtt };
struct UnusedColumn {
    const char* column;
    UnusedSupply supply;
    bool leak;
    const char* log;
};
const UnusedColumn kUnusedColumns[] = {
    {"Unused Leakage VCC Pwr (W)", UnusedSupply::Vcc, true, "PowerLeakIOvccUnused"},
    {"Unused Leakage VCCIO Pwr (W)", UnusedSupply::Vccio, true, "PowerLeakIOvccioUnused"},
    {"Unused Leakage VCCAUX Pwr (W)", UnusedSupply::Vccaux, true, "PowerLeakIOvccauxUnused"},
    {"Unused Leakage VTT Pwr (W)", UnusedSupply::Vtt, true, "PowerLeakIOvttUnused"},
    {"Unused DCbias VCC Pwr (W)", UnusedSupply::Vcc, false, "PowerBiasIOvccUnused"},
    {"Unused DCbias VCCIO Pwr (W)", UnusedSupply::Vccio, false, "PowerBiasIOvccioUnused"},
    {"Unused DCbias VCCAUX Pwr (W)", UnusedSupply::Vccaux, false, "PowerBiasIOvccauxUnused"},
    {"Unused DCbias VTT Pwr (W)", UnusedSupply::Vtt, false, "PowerBiasIOvttUnused"},
};

}  // namespace

void PC_ENG::CalculaUnusedIOByBank() {
    PC_PANEL* io = GetPanel(GetPanelIndex("I/O"));
    if (!io || io->GetNumOfTables() < 2) return;
    PD_TABLE* total = io->GetTable(io->GetNumOfTables() - 1);
    PD_TABLE* bankTable = GetIoTable("Bank Voltage");
    const double vcc = Num(GetVDPMCategory("Vcc", "Voltage", "-1"));
    const double vccaux = Num(GetVDPMCategory("Vccaux", "Voltage", "-1"));
    const bool vtt = HasSupply("Vtt");
    const bool log = PD_UTIL::IsCalcLogOpen();

    // The banks' shares add up in the panel's total row.
    for (const UnusedColumn& u : kUnusedColumns)
        total->SetValueAt("0", 0, total->GetColumnIndex(u.column));
    if (bankTable)
        for (int r = 0; r < bankTable->GetNumOfRows(); ++r)
            for (const char* c : {"Unused Leakage VCCIO Pwr (W)", "Unused DCbias VCCIO Pwr (W)"})
                bankTable->SetValueAt("0", r, bankTable->GetColumnIndex(c));

    if (log) PD_UTIL::FCprintln("Calculting Unused IOs power per Bank....");
    std::vector<int> targets;
    if (EnvIs("PWC_UNUSED_IO_DEVICE", "1")) {
        targets.push_back(-1);
    } else {
        const bool unreachable = ListsUnreachableBanks(ArchName(), PackageName());
        for (size_t b = 0; b < banks.size(); ++b)
            if (banks[b].user || unreachable) targets.push_back(static_cast<int>(b));
    }

    std::vector<std::string> names, values;
    for (int target : targets) {
        const UnusedIoBank u = UnusedIoBankOf(target);
        GetArrayOfColumnUnusedNamesIO(target, names);
        GetArrayOfColumnUnusedValuesIO(target, values);
        InitConstants(names, values);
        if (log) {
            char label[128];
            std::snprintf(label, sizeof label, "%s%d\n",
                          "Calculting Unused IOs power for bank :", std::atoi(u.name.c_str()));
            PD_UTIL::FCprintln(label);
        }
        const double vccio = Num(u.vccio);
        for (const UnusedColumn& c : kUnusedColumns) {
            double power = 0.0;
            switch (c.supply) {
                case UnusedSupply::Vcc:
                    power =
                        vcc * (c.leak ? ProcessFormulaLeakUnusedVcc("Input Output", names, values)
                                      : ProcessFormulaBiasUnusedVcc("Input Output", names, values));
                    break;
                case UnusedSupply::Vccio:
                    power =
                        vccio *
                        (c.leak ? ProcessIOleakVccioUnused("Input Output", names, values, "VCCIO")
                                : ProcessIObiasVccioUnused("Input Output", names, values, "VCCIO"));
                    break;
                case UnusedSupply::Vccaux:
                    power =
                        vccaux *
                        (c.leak
                             ? ProcessIOleakVccauxUnused("Input Output", names, values, "VCCAUX")
                             : ProcessIObiasVccauxUnused("Input Output", names, values, "VCCAUX"));
                    break;
                case UnusedSupply::Vtt:
                    if (vtt)
                        power = HelperVttVccauxCalc(nullptr, u.code, -1, c.column,
                                                    c.leak ? "leak_unused_vtt" : "bias_unused_vtt",
                                                    names, values);
                    break;
            }
            if (log) PD_UTIL::FCprintln(std::string(c.log) + " * " + PrintFixed(power, 20));
            const int col = total->GetColumnIndex(c.column);
            total->SetValueAt(PrintFixed(Num(total->GetValueAt(0, col)) + power, 20).c_str(), 0,
                              col);
            if (c.supply == UnusedSupply::Vccio && bankTable && u.bankRow >= 0)
                bankTable->SetValueAt(PrintFixed(power, 20).c_str(), u.bankRow,
                                      bankTable->GetColumnIndex(c.column));
        }
    }
}
