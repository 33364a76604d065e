// The firmware-resilience tab: its ports become I/O rows priced like those
// of the I/O tab, beside the block's own terms and those of its banks.
#include <cstdio>
#include <iostream>
#include <map>
#include <set>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// One port group: its list, the count that switches it on, its bank, its
// clocks and the project keys of its frequency and activity.
struct PortGroup {
    const char* countColumn;
    const char* countTable;
    const char* bank;
    const char* inClock;
    const char* outClock;
    const char* frequencyKey;
    const char* activityKey;
};
const PortGroup kGroups[] = {
    {"# PFR interface logic", "PFR interface logic", "3", "PWC_ICC_IN_CLK", "PWC_ICC_OUT_CLK",
     "PFR ICC FREQUENCY", "PFR ICC ACTIVITY"},
    {"# PFR programming", "PFR programming", "4", "PWC_ICC1_IN_CLK", "PWC_ICC1_OUT_CLK",
     "PFR ICC1 FREQUENCY", "PFR ICC1 ACTIVITY"},
};

// The I/O columns that the port rows' sums go to, by supply tag.
const char* const kTags[] = {"VCC", "VCCIO", "VCCAUX", "VTT"};
const char* const kKinds[] = {"Dyn. ", "Leakage ", "DCbias "};

std::string BankColumn(const char* prefix, const std::string& bank, const char* tag) {
    return std::string(prefix) + "Bank" + bank + " " + tag + " Pwr (W)";
}

double SumColumn(PD_TABLE* t, const std::string& column) {
    const int c = t ? t->GetColumnIndex(column.c_str()) : -1;
    double sum = 0.0;
    for (int r = 0; c >= 0 && r < t->GetNumOfRows(); ++r) sum += Num(t->GetValueAt(r, c));
    return sum;
}

// The column of a result; a device table without it loses the term, which
// is said on the error stream rather than dropped unseen.
int ResultColumn(PD_TABLE* t, const std::string& column) {
    const int c = t->GetColumnIndex(column.c_str());
    if (c < 0) std::cerr << "Table " << t->name << " has no column " << column << std::endl;
    return c;
}

void Put(PD_TABLE* t, int row, const std::string& column, double watts) {
    const int c = ResultColumn(t, column);
    if (c >= 0 && row < t->GetNumOfRows()) t->SetValueAt(PrintFixed(watts, 20).c_str(), row, c);
}

void Add(PD_TABLE* t, int row, const std::string& column, double watts) {
    const int c = ResultColumn(t, column);
    if (c >= 0 && row < t->GetNumOfRows())
        t->SetValueAt(PrintFixed(Num(t->GetValueAt(row, c)) + watts, 20).c_str(), row, c);
}

std::string ProjectKey(PD_DATA* project, const char* section, const char* key) {
    auto* keys = project ? dynamic_cast<PD_KEYSECT*>(project->GetSection(section)) : nullptr;
    const char* v = keys ? keys->GetValue(key) : "";
    return v && *v ? v : "0";
}

}  // namespace

// ---- The block's members: the common pattern on the block "PFR" -------------

double PC_ENG::ProcessPFRLeakVccUsed(const Row& names, const Row& values) {
    return GetIccLeakDFB("PFR", "PFR", "DCforBLOCK_used", "PFR_used", "PFR", "PFR_VCC", names,
                         values) +
           GetIccLeak("PFR", "PFR", "PFR", "PFR_used", "PFR", "PFR_VCC", names, values);
}
double PC_ENG::ProcessPFRBiasVccUsed(const Row& names, const Row& values) {
    return GetIccBiasDFB("PFR", "PFR", "DCforBLOCK_used", "PFR_used", "PFR", "PFR_VCC", names,
                         values) +
           GetIccBias("PFR", "PFR", "PFR", "PFR_used", "PFR", "PFR_VCC", names, values);
}
double PC_ENG::ProcessPFRLeakVccauxUsed(const Row& names, const Row& values) {
    return GetIccLeakDFB("PFR", "PFR", "DCforBLOCK_used", "PFR_used", "PFR", "PFR_VCCAUX", names,
                         values) +
           GetIccLeak("PFR", "PFR", "PFR", "PFR_used", "PFR", "PFR_VCCAUX", names, values);
}
double PC_ENG::ProcessPFRBiasVccauxUsed(const Row& names, const Row& values) {
    return GetIccBiasDFB("PFR", "PFR", "DCforBLOCK_used", "PFR_used", "PFR", "PFR_VCCAUX", names,
                         values) +
           GetIccBias("PFR", "PFR", "PFR", "PFR_used", "PFR", "PFR_VCCAUX", names, values);
}
double PC_ENG::ProcessPFRLeakVccUnused(const Row& names, const Row& values) {
    return GetIccLeakDFBUnused("PFR", "PFR", "DCforBLOCK_unused", "PFR_unused", "PFR_unused",
                               "PFR_VCC", names, values);
}
double PC_ENG::ProcessPFRLeakVccauxUnused(const Row& names, const Row& values) {
    return GetIccLeakDFBUnused("PFR", "PFR", "DCforBLOCK_unused", "PFR_unused", "PFR_unused",
                               "PFR_VCCAUX", names, values);
}

// A bank's interface: the element "PFR_BANK", once per bank.
double PC_ENG::ProcessPFRBankLeakVccioUsed(const Row& names, const Row& values) {
    return GetIccLeak("PFR", "PFR BANK", "PFR_BANK", "BANK_used", "PFR_BANK", "PFR_VCCIO", names,
                      values);
}
double PC_ENG::ProcessPFRBankBiasVccioUsed(const Row& names, const Row& values) {
    return GetIccBias("PFR", "PFR BANK", "PFR_BANK", "BANK_used", "PFR_BANK", "PFR_VCCIO", names,
                      values);
}
double PC_ENG::ProcessPFRBankLeakVccauxUsed(const Row& names, const Row& values) {
    return GetIccLeak("PFR", "PFR BANK", "PFR_BANK", "BANK_used", "PFR_BANK", "PFR_VCCAUX", names,
                      values);
}
double PC_ENG::ProcessPFRBankBiasVccauxUsed(const Row& names, const Row& values) {
    return GetIccBias("PFR", "PFR BANK", "PFR_BANK", "BANK_used", "PFR_BANK", "PFR_VCCAUX", names,
                      values);
}
double PC_ENG::ProcessPFRBankLeakVccioUnused(const Row& names, const Row& values) {
    return GetIccLeakUnused("PFR", "PFR BANK", "PFR_BANK", "BANK_unused", "PFR_BANK", "PFR_VCCIO",
                            names, values);
}
double PC_ENG::ProcessPFRBankBiasVccioUnused(const Row& names, const Row& values) {
    return GetIccBiasUnused("PFR", "PFR BANK", "PFR_BANK", "BANK_unused", "PFR_BANK", "PFR_VCCIO",
                            names, values);
}
double PC_ENG::ProcessPFRBankLeakVccauxUnused(const Row& names, const Row& values) {
    return GetIccLeakUnused("PFR", "PFR BANK", "PFR_BANK", "BANK_unused", "PFR_BANK", "PFR_VCCAUX",
                            names, values);
}
double PC_ENG::ProcessPFRBankBiasVccauxUnused(const Row& names, const Row& values) {
    return GetIccBiasUnused("PFR", "PFR BANK", "PFR_BANK", "BANK_unused", "PFR_BANK", "PFR_VCCAUX",
                            names, values);
}

// ---- The tab ----------------------------------------------------------------

void PC_ENG::PFRCalculation() {
    if (!IsPfrArch(ArchName())) return;
    PC_PANEL* panel = GetPanel(GetPanelIndex("PFR"));
    if (!panel || panel->GetNumOfTables() < 2) return;
    PD_TABLE* block = panel->GetTable(panel->GetTableIndex("PFR"));
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    if (!block || block == total || block->GetNumOfRows() == 0) return;
    ModelCacheScope cacheScope(caches);
    for (PD_TABLE* t : {block, total})
        for (int c : GetPowerColumnIndexVector(t)) t->SetValueAt("0", 0, c);

    // The ports, each a row of the I/O tab's tables, priced by their passes.
    PC_PANEL* io = GetPanel(GetPanelIndex("I/O"));
    PD_TABLE* ioTables[2] = {io ? io->GetTable(io->GetTableIndex("Input Output")) : nullptr,
                             io ? io->GetTable(io->GetTableIndex("Bidi")) : nullptr};
    const std::vector<_ICCPORT>* lists[2] = {&iccPorts, &icc1Ports};
    std::set<std::string> portBanks;
    for (int g = 0; g < 2; ++g) {
        const PortGroup& group = kGroups[g];
        PD_TABLE* counts = panel->GetTable(panel->GetTableIndex(group.countTable));
        const double count =
            counts ? GetTotalSumRowDData(counts, counts->GetColumnIndex(group.countColumn), 0)
                   : 0.0;
        if (count <= 0.0 || lists[g]->empty()) continue;
        const std::string freq = ProjectKey(project, "PFR ICC FREQUENCY", group.frequencyKey);
        const std::string af = ProjectKey(project, "PFR ICC ACTIVITY", group.activityKey);
        PD_TABLE rows[2] = {PD_TABLE("Input Output"), PD_TABLE("Bidi")};
        for (int k = 0; k < 2; ++k)
            if (ioTables[k]) rows[k].SetColumns(ioTables[k]->columns);
        for (const _ICCPORT& port : *lists[g]) {
            const bool bidi = port.direction == "Bidi";
            const bool output = port.direction == "Output";
            PD_TABLE& t = rows[bidi ? 1 : 0];
            if (t.GetNumOfColumns() == 0) continue;
            std::vector<std::string> cells(t.GetNumOfColumns(), "0");
            const std::pair<const char*, std::string> set[] = {
                {"Signal Name", port.name},
                {"Type", port.iotype},
                {"Bank", group.bank},
                {"# I/P", bidi || output ? "0" : "1"},
                {"# O/P", output ? "1" : "0"},
                {"# Bidi", bidi ? "1" : "0"},
                {"Actual Register Mode", "none"},
                {"Input Freq. (MHz)", freq},
                {"Input AF (%)", af},
                {"Output Freq. (MHz)", freq},
                {"Output AF (%)", af},
                {"Freq. (MHz)", freq},
                {"AF (%)", af},
                {"Cload (pF)", "5.0000"},
                {"Duty Cycle (%)", "50"},
                {"Clock Input Name", group.inClock},
                {"Clock Output Name", group.outClock},
                {"Clock Name", group.outClock},
                {"PG", "OFF"},
            };
            for (const auto& [column, value] : set) {
                const int c = t.GetColumnIndex(column);
                if (c >= 0) cells[c] = value;
            }
            t.AddRow(cells);
        }
        for (PD_TABLE& t : rows) {
            if (t.GetNumOfRows() == 0) continue;
            RunFrameRows(t.name.c_str(), &t, IoRowPasses(), PlainDyn::SumPasses);
            for (const char* tag : kTags)
                for (const char* kind : kKinds) {
                    const std::string column = std::string(kind) + tag + " Pwr (W)";
                    Add(block, 0, column, SumColumn(&t, column));
                }
        }
        portBanks.insert(group.bank);
    }

    // The block itself and the interface of each of its banks.
    int n = 0;
    std::vector<std::string> names = GetArrayOfColumnNames(block, &n);
    std::vector<std::string> values = GetArrayOfColumnValues(block, 0, &n);
    const double blocks = GetTotalSumRowDData(block, block->GetColumnIndex("# PFR"), 0);
    for (auto [name, value] : {std::pair<const char*, double>{"PFR_used", blocks},
                               {"PFR_unused", blocks > 0.0 ? 0.0 : 1.0}}) {
        names.push_back(name);
        values.push_back(PrintFixed(value, 1));
    }
    // Set per bank below: each bank's interface is either used or free.
    names.push_back("BANK_used");
    values.push_back("0.0");
    const size_t bankUsedAt = values.size() - 1;
    names.push_back("BANK_unused");
    values.push_back("0.0");
    const std::string vccText = GetVDPMCategory("Vcc", "Voltage", "-1");
    const std::string vccauxText = GetVDPMCategory("Vccaux", "Voltage", "-1");
    const double vcc = Num(vccText);
    const double vccaux = Num(vccauxText);
    // The block's own supplies, by which its scale factors are worked out.
    for (auto [name, value] : {std::pair<const char*, const std::string*>{"PFR_VCC", &vccText},
                               {"PFR_VCCAUX", &vccauxText}}) {
        names.push_back(name);
        values.push_back(*value);
    }
    names.push_back("PFR_VCCIO");
    values.push_back(GetVDPMCategory("Vccio", "Voltage", "13"));
    InitConstants(names, values);
    if (blocks > 0.0) {
        struct Term {
            double (PC_ENG::*member)(const Row&, const Row&);
            const char* column;
            double volts;
            RowLog log;
        } const terms[] = {
            {&PC_ENG::ProcessPFRLeakVccUsed,
             "Leakage VCC Pwr (W)",
             vcc,
             {"PowerLeakVccPFRUsed row(", ") = IccLeakVccPFRUsed * vcc = "}},
            {&PC_ENG::ProcessPFRBiasVccUsed,
             "DCbias VCC Pwr (W)",
             vcc,
             {"PowerBiasVccPFRUsed row(", ") = IccBiasVccPFRUsed * vcc = "}},
            {&PC_ENG::ProcessPFRLeakVccauxUsed,
             "Leakage VCCAUX Pwr (W)",
             vccaux,
             {"PowerLeakVccauxPFRUsed row(", ") = IccLeakVccauxPFRUsed * vccaux = "}},
            {&PC_ENG::ProcessPFRBiasVccauxUsed,
             "DCbias VCCAUX Pwr (W)",
             vccaux,
             {"PowerBiasVccauxPFRUsed row(", ") = IccBiasVccauxPFRUsed * vccaux = "}},
        };
        for (const Term& t : terms) {
            const double i = (this->*t.member)(names, values);
            LogRowPower(t.log, 0, i, t.volts);
            Add(block, 0, t.column, i * t.volts);
        }
    } else {
        const double leak = ProcessPFRLeakVccUnused(names, values);
        const double leakAux = ProcessPFRLeakVccauxUnused(names, values);
        LogRowPower({"powerLeakVccPFRunused = IccLeakVccPFRUnused * vcc = ", nullptr}, 0, leak,
                    vcc);
        LogRowPower({"powerLeakVccauxPFRunused = IccLeakVccauxPFRUnused * vcc = ", nullptr}, 0,
                    leakAux, vccaux);
        Put(total, 0, "Unused Leakage VCC Pwr (W)", leak * vcc);
        Put(total, 0, "Unused Leakage VCCAUX Pwr (W)", leakAux * vccaux);
    }
    // Each group's bank: used with ports, left free without; its VCCIO at the
    // bank's voltage (1.8 V for a bank without one), its VCCAUX at VCCAUX.
    for (const PortGroup& group : kGroups) {
        const std::string bank = group.bank;
        const bool used = portBanks.count(bank) > 0;
        const int bankRow = BankRowOf(bank);
        std::string vccioText = bankRow >= 0 ? GetVccioFromBank(bankRow) : std::string();
        if (vccioText.empty() || Num(vccioText) == 0.0) vccioText = "1.8";
        const double vccio = Num(vccioText);
        values[bankUsedAt] = used ? "1.0" : "0.0";
        values[bankUsedAt + 1] = used ? "0.0" : "1.0";
        struct BankTerm {
            double (PC_ENG::*member)(const Row&, const Row&);
            const char* prefix;
            const char* tag;
            double volts;
            const char* head;
            const char* middle;
        } const usedTerms[] =
            {
                {&PC_ENG::ProcessPFRBankLeakVccioUsed, "Leakage ", "VCCIO", vccio,
                 "PowerLeakVccioPFRBank(", ") = IccLeakVccioPFRBankUsed * vccio = "},
                {&PC_ENG::ProcessPFRBankBiasVccioUsed, "DCbias ", "VCCIO", vccio,
                 "PowerBiasVccioPFRBank(", ") = IccBiasVccioPFRBankUsed * vccio = "},
                {&PC_ENG::ProcessPFRBankLeakVccauxUsed, "Leakage ", "VCCAUX", vccaux,
                 "PowerLeakVccauxPFRBank(", ") = IccLeakVccauxPFRBankUsed * vccaux = "},
                {&PC_ENG::ProcessPFRBankBiasVccauxUsed, "DCbias ", "VCCAUX", vccaux,
                 "PowerBiasVccauxPFRBank(", ") = IccBiasVccauxPFRBankUsed * vccaux = "},
            },
                unusedTerms[] = {
                    {&PC_ENG::ProcessPFRBankLeakVccioUnused, "Unused Leakage ", "VCCIO", vccio,
                     "PowerLeakVccioPFRBank", "Unused = IccLeakVccioPFRBankUnused * vccio = "},
                    {&PC_ENG::ProcessPFRBankBiasVccioUnused, "Unused DCbias ", "VCCIO", vccio,
                     "PowerBiasVccioPFRBank", "Unused = IccBiasVccioPFRBankUnused * vccio = "},
                    {&PC_ENG::ProcessPFRBankLeakVccauxUnused, "Unused Leakage ", "VCCAUX", vccaux,
                     "PowerLeakVccauxPFRBank", "Unused = IccLeakVccauxPFRBankUnused * vccaux = "},
                    {&PC_ENG::ProcessPFRBankBiasVccauxUnused, "Unused DCbias ", "VCCAUX", vccaux,
                     "PowerBiasVccauxPFRBank", "Unused = IccBiasVccauxPFRBankUnused * vccaux = "},
                };
        for (const BankTerm& t : used ? usedTerms : unusedTerms) {
            const double i = (this->*t.member)(names, values);
            const std::string number = bank;
            LogRowPower({t.head, t.middle}, std::atoi(number.c_str()), i, t.volts,
                        t.tag[4] == 'I' ? &vccioText : nullptr);
            Add(used ? block : total, 0, BankColumn(t.prefix, bank, t.tag), i * t.volts);
        }
    }

    // "Dyn. Pwr (W)" and the totals.
    double dyn = 0.0, sum = 0.0;
    for (PD_TABLE* t : {block, total}) {
        for (int c : GetPowerColumnIndexVector(t)) {
            const std::string& column = t->columns[c];
            if (column == "Dyn. Pwr (W)" || column.compare(0, 6, "Total ") == 0) continue;
            const double w = Num(t->GetValueAt(0, c));
            sum += w;
            if (column.compare(0, 5, "Dyn. ") == 0) dyn += w;
        }
    }
    Put(block, 0, "Dyn. Pwr (W)", dyn);
    Put(total, 0, "Total Dyn. Pwr (W)", dyn);
    Put(total, 0, "Total Pwr (W)", sum);
}
