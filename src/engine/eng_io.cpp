// The "I/O" and "I/O Term" tabs: the pins of each row on VCC, VCCIO, VCCAUX
// and VTT at their bank's voltage, the banks' own currents, the unused pins,
// and the outputs' external terminations.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

std::string PC_ENG::IoRowVccio(const Row& names, const Row& values) {
    return pwcformula::RowValue("VCCIO", names, values);
}

std::string PC_ENG::IoRowVtt(const Row& names, const Row& values) {
    return pwcformula::RowValue("VTT", names, values);
}

const std::vector<PC_ENG::SupplyPass>& PC_ENG::IoRowPasses() {
    static const std::vector<SupplyPass> passes = {
        {"VCC",
         "IO",
         "Vcc",
         PassIf::Always,
         false,
         &PC_ENG::SelectIOdynVcc,
         &PC_ENG::ProcessIOleakVccUsed,
         &PC_ENG::SelectIObiasVccUsed,
         "Dyn. VCC Pwr (W)",
         "Leakage VCC Pwr (W)",
         "DCbias VCC Pwr (W)",
         {"PowerDynIOvcc row(", ") = IccDynIOvcc * vcc = "},
         {"PowerLeakIOvccUsed row(", ") = IccLeakIOvccUsed * vcc = "},
         {"PowerBiasIOvccUsed row(", ") = IccBiasIOvccUsed * vcc = "}},
        {"VCCIO",
         "IO",
         "Vccio",
         PassIf::Always,
         false,
         &PC_ENG::ProcessIOdynVccio,
         &PC_ENG::ProcessIOleakVccioUsed,
         &PC_ENG::ProcessIObiasVccioUsed,
         "Dyn. VCCIO Pwr (W)",
         "Leakage VCCIO Pwr (W)",
         "DCbias VCCIO Pwr (W)",
         {"PowerDynIOvccio row(", ") = IccDynIOvccio * vccio = "},
         {"PowerLeakIOvccioUsed row(", ") = IccLeakIOvccioUsed * vccio = "},
         {"PowerBiasIOvccioUsed row(", ") = IccBiasIOvccioUsed * vccio = "},
         &PC_ENG::IoRowVccio},
        {"VCCAUX",
         "IO",
         "Vccaux",
         PassIf::Always,
         false,
         &PC_ENG::SelectIOdynVccaux,
         &PC_ENG::ProcessIOleakVccauxUsed,
         &PC_ENG::ProcessIObiasVccauxUsed,
         "Dyn. VCCAUX Pwr (W)",
         "Leakage VCCAUX Pwr (W)",
         "DCbias VCCAUX Pwr (W)",
         {"PowerDynIOvccaux row(", ") = IccDynIOvccaux * vccaux = "},
         {"PowerLeakIOvccauxUsed row(", ") = IccLeakIOvccauxUsed * vccaux = "},
         {"PowerBiasIOvccauxUsed row(", ") = IccBiasIOvccauxUsed * vccaux = "}},
        // Only a device with termination supplies has the VTT currents, each
        // at the VTT of the row's VCCIO code.
        {"VTT",
         "IO",
         "Vtt",
         PassIf::HasSupply,
         false,
         nullptr,
         nullptr,
         nullptr,
         "Dyn. VTT Pwr (W)",
         "Leakage VTT Pwr (W)",
         "DCbias VTT Pwr (W)",
         {nullptr, nullptr},
         {nullptr, nullptr},
         {nullptr, nullptr},
         nullptr,
         &PC_ENG::PriceIoRowVtt},
    };
    return passes;
}

void PC_ENG::PriceIoRowVtt(PD_TABLE* table, int row, const Row& names, const Row& values) {
    const std::string code = BankVccioCode(pwcformula::RowValue("Bank", names, values));
    static const std::pair<const char*, const char*> kTags[] = {
        {"dynamic_vtt", "Dyn. VTT Pwr (W)"},
        {"leak_used_vtt", "Leakage VTT Pwr (W)"},
        {"bias_used_vtt", "DCbias VTT Pwr (W)"}};
    for (const auto& [tag, column] : kTags)
        HelperVttVccauxCalc(table, code, row, column, tag, names, values);
}

namespace {

// A bank pass of one member: its leakage or its bias on one supply.
PC_ENG::SupplyPass BankPass(const char* supply, const char* voltage, bool leak,
                            PC_ENG::ProcessMember member, const char* column, PC_ENG::RowLog log,
                            PC_ENG::RowVoltage rowVoltage) {
    return {supply,
            "IO BANK REFS",
            voltage,
            PC_ENG::PassIf::Always,
            false,
            nullptr,
            leak ? member : nullptr,
            leak ? nullptr : member,
            nullptr,
            leak ? column : nullptr,
            leak ? nullptr : column,
            {nullptr, nullptr},
            leak ? log : PC_ENG::RowLog{nullptr, nullptr},
            leak ? PC_ENG::RowLog{nullptr, nullptr} : log,
            rowVoltage};
}

}  // namespace

// All leakage terms of a bank before all its bias terms.
const std::vector<PC_ENG::SupplyPass>& PC_ENG::BankRowPasses() {
    static const std::vector<SupplyPass> passes = {
        BankPass("VCC", "Vcc", true, &PC_ENG::ProcessBankLeakVcc, "Leakage VCC Pwr (W)",
                 {"PowerLeakBankvcc row(", ") = IccLeakBankvcc * vcc = "}, nullptr),
        BankPass("VCCIO", "Vccio", true, &PC_ENG::ProcessBankLeakVccio, "Leakage VCCIO Pwr (W)",
                 {"PowerLeakBankvccio row(", ") = IccLeakBankvccio * vccio = "},
                 &PC_ENG::IoRowVccio),
        BankPass("VCCAUX", "Vccaux", true, &PC_ENG::ProcessBankLeakVccaux, "Leakage VCCAUX Pwr (W)",
                 {"PowerLeakBankvccaux row(", ") = IccLeakBankvccaux * vccaux = "}, nullptr),
        BankPass("VCC", "Vcc", false, &PC_ENG::ProcessBankBiasVcc, "DCbias VCC Pwr (W)",
                 {"PowerBiasBankvcc row(", ") = IccBiasBankvcc * vcc = "}, nullptr),
        BankPass("VCCIO", "Vccio", false, &PC_ENG::ProcessBankBiasVccio, "DCbias VCCIO Pwr (W)",
                 {"PowerBiasBankvccio row(", ") = IccBiasBankvccio * vccio = "},
                 &PC_ENG::IoRowVccio),
        BankPass("VCCAUX", "Vccaux", false, &PC_ENG::ProcessBankBiasVccaux, "DCbias VCCAUX Pwr (W)",
                 {"PowerBiasBankvccaux row(", ") = IccBiasBankvccaux * vccaux = "}, nullptr),
    };
    return passes;
}

const std::vector<PC_ENG::SupplyPass>& PC_ENG::TermRowPasses() {
    static const std::vector<SupplyPass> passes = {
        {"VCCIO",
         "O/P TERMINATION",
         "Vccio",
         PassIf::Always,
         false,
         nullptr,
         nullptr,
         &PC_ENG::ProcessIObiasVccioUsed,
         nullptr,
         nullptr,
         "DCbias VCCIO Pwr (W)",
         {nullptr, nullptr},
         {nullptr, nullptr},
         {"PowerBiasIOvccioUsed row(", ") = IccBiasIOvccioUsed * vcc = "},
         &PC_ENG::IoRowVccio},
        {"VTT",
         "O/P TERMINATION",
         "Vtt",
         PassIf::HasSupply,
         false,
         nullptr,
         nullptr,
         &PC_ENG::ProcessIObiasVttUsed,
         nullptr,
         nullptr,
         "DCbias VTT Pwr (W)",
         {nullptr, nullptr},
         {nullptr, nullptr},
         {"PowerBiasIOvttUsed row(", ") = IccBiasIOvttUsed * vtt = "},
         &PC_ENG::IoRowVtt},
    };
    return passes;
}

namespace {

// Marks the rows in use of each bank as known for the length of a tab.
struct BankUseScope {
    bool& cached;
    explicit BankUseScope(bool& c) : cached(c) { cached = true; }
    ~BankUseScope() { cached = false; }
    BankUseScope(const BankUseScope&) = delete;
    BankUseScope& operator=(const BankUseScope&) = delete;
};

double Cell(PD_TABLE* t, int row, const char* column) {
    return Num(t->GetValueAt(row, t->GetColumnIndex(column)));
}

void AddToCell(PD_TABLE* t, int row, const std::string& column, double watts) {
    const int col = t->GetColumnIndex(column.c_str());
    t->SetValueAt(PrintFixed(Num(t->GetValueAt(row, col)) + watts, 20).c_str(), row, col);
}

}  // namespace

void PC_ENG::IoCalculation() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("I/O"));
    if (!panel || panel->GetNumOfTables() < 2) return;
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    ModelCacheScope cacheScope(caches);
    BuildBankUse();
    BankUseScope bankScope(bankUseCached);

    std::vector<std::pair<PD_TABLE*, const std::vector<SupplyPass>*>> items;
    for (const char* name : {"Input Output", "Bidi"}) {
        PD_TABLE* t = panel->GetTable(panel->GetTableIndex(name));
        if (!t || t == total) continue;
        RunFrameRows(name, t, IoRowPasses(), PlainDyn::SumPasses);
        items.push_back({t, &IoRowPasses()});
    }
    PD_TABLE* bankTable = panel->GetTable(panel->GetTableIndex("Bank Voltage"));
    if (bankTable && bankTable != total) {
        RunFrameRows("Bank Voltage", bankTable, BankRowPasses(), PlainDyn::None);
        AddDeviceBlocksToBank(bankTable);
        items.push_back({bankTable, &BankRowPasses()});
    }
    CalculaUnusedIOByBank();
    FrameTotals(items, total);
}

// The test block of the device and its JTAG pins are always powered; their
// share is priced once, on the first bank the user reaches, where the
// configuration pins are.
void PC_ENG::AddDeviceBlocksToBank(PD_TABLE* bankTable) {
    int row = -1;
    for (const BANKIO& b : banks)
        if (row < 0 && b.user) row = BankRowOf(b.name);
    if (row < 0) return;
    int n = 0;
    std::vector<std::string> names = GetArrayOfColumnNames(bankTable, &n);
    std::vector<std::string> values = GetArrayOfColumnValues(bankTable, row, &n);
    // The JTAG pins the design drives, from the Misc tab's JTAG rows.
    double jtagIn = 0.0, jtagOut = 0.0;
    if (PC_PANEL* misc = GetPanel(GetPanelIndex("Misc")))
        if (PD_TABLE* jtag = misc->GetTable(misc->GetTableIndex("JTAG"))) {
            jtagIn = GetTotalSumRowDData(jtag, jtag->GetColumnIndex("# Input"), 0);
            jtagOut = GetTotalSumRowDData(jtag, jtag->GetColumnIndex("# Output"), 0);
        }
    names.push_back("Input");
    values.push_back(PrintFixed(jtagIn, 1));
    names.push_back("Output");
    values.push_back(PrintFixed(jtagOut, 1));
    InitConstants(names, values);

    const double vccio = Num(IoRowVccio(names, values));
    struct {
        const char* supply;
        const char* tag;
        double volts;
        const char* leakLog;
        const char* biasLog;
    } const supplies[] = {
        {"VCC", "VCC", Num(GetVDPMCategory("Vcc", "Voltage", "-1")), "PowerLeakMFG_BLKvcc row(",
         "PowerBiasMFG_BLKvcc row("},
        {"VCCIO", "VCCIO", vccio, "PowerLeakMFG_BLKvccio row(", "PowerBiasMFG_BLKvccio row("},
        {"VCCAUX", "VCCAUX", Num(GetVDPMCategory("Vccaux", "Voltage", "-1")),
         "PowerLeakMFG_BLKvccaux row(", "PowerBiasMFG_BLKvccaux row("},
    };
    for (const auto& s : supplies) {
        const double leak =
            GetIccLeakAt("MISC", "MISC", "MFG_BLK", 1.0, "MFG_BLK", s.supply, names, values);
        const double bias = GetDbiasAt("MISC", "MISC", "MFG_BLK", s.supply, names, values);
        LogRowPower({s.leakLog, ") = IccLeakMFG_BLK * v = "}, row, leak, s.volts);
        LogRowPower({s.biasLog, ") = IccBiasMFG_BLK * v = "}, row, bias, s.volts);
        AddToCell(bankTable, row, std::string("Leakage ") + s.tag + " Pwr (W)", leak * s.volts);
        AddToCell(bankTable, row, std::string("DCbias ") + s.tag + " Pwr (W)", bias * s.volts);
    }
    if (!PwrDataAvailable("JTAG", "Input")) return;
    const double leak = ProcessJtagLeakVccioUsed("JTAG", names, values, "VCCIO");
    const double bias = ProcessJtagBiasVccioUsed("JTAG", names, values, "VCCIO");
    LogRowPower({"PowerLeakJTAGvccio row(", ") = IccLeakJTAGvccio * vccio = "}, row, leak, vccio);
    LogRowPower({"PowerBiasJTAGvccio row(", ") = IccBiasJTAGvccio * vccio = "}, row, bias, vccio);
    AddToCell(bankTable, row, "Leakage VCCIO Pwr (W)", leak * vccio);
    AddToCell(bankTable, row, "DCbias VCCIO Pwr (W)", bias * vccio);
}

double PC_ENG::HelperVttVccauxCalc(PD_TABLE* table, const std::string& code, int row,
                                   const std::string& column, const std::string& tag,
                                   const Row& names, const Row& values) {
    const bool vtt = tag.find("vtt") != std::string::npos;
    const std::string category = vtt ? VttCategoryOfCode(code) : VccauxCategoryOfCode(code);
    const std::string panel = table ? table->name : std::string("Input Output");
    double current = 0.0;
    if (tag == "dynamic_vtt")
        current = ProcessIOdynVtt(panel, names, values, "VTT");
    else if (tag == "leak_used_vtt")
        current = ProcessIOleakVttUsed(panel, names, values, "VTT");
    else if (tag == "bias_used_vtt")
        current = ProcessIObiasVttUsed(panel, names, values, "VTT");
    else if (tag == "leak_unused_vtt")
        current = ProcessIOleakVttUnused(panel, names, values, "VTT");
    else if (tag == "bias_unused_vtt")
        current = ProcessIObiasVttUnused(panel, names, values, "VTT");
    // A code without the supply draws nothing; a row the device lacks reads -1.
    std::string volts = "0";
    if (!category.empty()) {
        volts = GetVDPMCategory(category, "Voltage", "-1");
        if (volts.empty()) volts = "-1";
    }
    double power = current * Num(volts);
    if (power == 0.0) power = 0.0;  // a cell never reads "-0.000..."
    const int col = table ? table->GetColumnIndex(column.c_str()) : -1;
    if (row >= 0 && col >= 0) table->SetValueAt(PrintFixed(power, 20).c_str(), row, col);
    if (PD_UTIL::IsCalcLogOpen()) {
        const char* kind = tag.find("dynamic") != std::string::npos ? "Dyn"
                           : tag.find("leak") != std::string::npos  ? "Leak"
                                                                    : "Bias";
        const char* use = tag.find("unused") != std::string::npos ? "Unused"
                          : tag.find("used") != std::string::npos ? "Used"
                                                                  : "";
        const char* supply = vtt ? "Vtt" : "Vccaux";
        char buf[512];
        std::snprintf(buf, sizeof buf, "Power%s%s%s row(%d) = Icc%s%s%s * v = %.4e * %s = %.4e",
                      kind, use, supply, row, kind, use, supply, current, volts.c_str(), power);
        PD_UTIL::FCprintln(buf);
    }
    return power;
}

void PC_ENG::IoTermCalculation() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("I/O Term"));
    if (!panel || panel->GetNumOfTables() < 2) return;
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    PD_TABLE* rows = panel->GetTable(panel->GetTableIndex("Termination"));
    if (!rows) rows = panel->GetTable(0);
    if (rows == total) return;
    IOtermDo();
    ModelCacheScope cacheScope(caches);
    RunFrameRows("I/O Term", rows, TermRowPasses(), PlainDyn::None);
    const int term = rows->GetColumnIndex("Termination Pwr (W)");
    for (int r = 0; r < rows->GetNumOfRows(); ++r)
        rows->SetValueAt(
            PrintFixed(Cell(rows, r, "DCbias VCCIO Pwr (W)") + Cell(rows, r, "DCbias VTT Pwr (W)"),
                       20)
                .c_str(),
            r, term);
    // The termination is the tab's power: its total counts the two columns.
    FrameTotals({{rows, &TermRowPasses()}}, total);
    total->SetValueAt(PrintFixed(GetTotalSumRowDData(rows, term, rows->GetNumOfRows()), 20).c_str(),
                      0, total->GetColumnIndex("Total Termination Pwr (W)"));
}

void PC_ENG::IOtermDo() {
    ioTermList.clear();
    PC_PANEL* panel = GetPanel(GetPanelIndex("I/O Term"));
    PD_TABLE* rows = panel ? panel->GetTable(panel->GetTableIndex("Termination")) : nullptr;
    if (!rows) return;
    auto whole = [rows](int r, const char* column) {
        return static_cast<int>(
            std::strtol(rows->GetValueAt(r, rows->GetColumnIndex(column)), nullptr, 10));
    };
    for (int r = 0; r < rows->GetNumOfRows(); ++r)
        ioTermList.push_back({rows->GetValueAt(r, rows->GetColumnIndex("Signal Name")),
                              whole(r, "# I/P"), whole(r, "# O/P"), whole(r, "# Bidi"),
                              whole(r, "Bank"), Cell(rows, r, "Freq. (MHz)")});
}
