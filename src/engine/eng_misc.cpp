// The "Misc" tab: its small row tables, the JTAG pins on VCCJ, and the
// always-on parts of the device, summed on one device-wide row.
#include <cstdio>
#include <cstring>

#include "baspcengin.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

using E = PC_ENG;

// One row table of the tab: its passes over the rows and over its made-up
// row. Dynamic power goes to the supply's column; "Dyn. Pwr (W)" is their sum.
struct MiscTable {
    const char* table;
    std::vector<E::SupplyPass> passes;
    std::vector<E::UnusedPass> unused;
};

// The log words: "PowerDyn<T> row(", ") = IccDyn<T> * vcc = " and the like,
// kept in one place with the departures that stand: "LF OSC" logs its unused
// leakage with the MCLK words, "I2C" and "UFM" their used currents under the
// DTR heads, and "UFM" its unused bias under "PowerBiasDTRunused".
const std::vector<MiscTable>& MiscTables() {
    static const std::vector<MiscTable> tables = [] {
        struct Words {
            const char* table;
            const char* section;
            bool coreAndGated;
            E::ProcessMember dyn, leak, bias, leakUnused, biasUnused;
            E::RowLog dynLog, leakLog, biasLog;
            const char* leakUnusedLog;
            const char* biasUnusedLog;
        };
        static const Words words[] = {
            {"CLKDIV",
             "CLKDIV",
             true,
             &E::ProcessCLKDIVdynVcc,
             &E::ProcessCLKDIVleakVccUsed,
             &E::ProcessCLKDIVbiasVccUsed,
             &E::ProcessCLKDIVleakUnused,
             &E::ProcessCLKDIVbiasUnused,
             {"PowerDynCLKDIV row(", ") = IccDynCLKDIV * vcc = "},
             {"PowerLeakCLKDIVused row(", ") = IccLeakCLKDIVused * vcc = "},
             {"PowerBiasCLKDIVused row(", ") = IccBiasCLKDIVused * vcc = "},
             "PowerLeakCLKDIVunused = IccLeakUnusedCLKDIV * vcc = ",
             "PowerBiasCLKDIVunused = IccBiasUnusedCLKDIV * vcc = "},
            {"MCLK",
             "MCLK",
             false,
             &E::ProcessMCLKdynVcc,
             &E::ProcessMCLKleakVccUsed,
             &E::ProcessMCLKbiasVccUsed,
             &E::ProcessMCLKleakUnused,
             &E::ProcessMCLKbiasUnused,
             {"PowerDynMCLK row(", ") = IccDynMCLK * vcc = "},
             {"PowerLeakMCLKused row(", ") = IccLeakMCLKused * vcc = "},
             {"PowerBiasMCLKused row(", ") = IccBiasMCLKused * vcc = "},
             "PowerLeakMCLKunused = IccLeakUnusedMCLK * vcc = ",
             "PowerBiasMCLKunused = IccBiasUnusedMCLK * vcc = "},
            {"LF OSC",
             "LFOSC",
             false,
             &E::ProcessLFOSCdynVcc,
             &E::ProcessLFOSCleakVccUsed,
             &E::ProcessLFOSCbiasVccUsed,
             &E::ProcessLFOSCleakUnused,
             &E::ProcessLFOSCbiasUnused,
             {"PowerDynLFOSC row(", ") = IccDynLFOSC * vcc = "},
             {"PowerLeakLFOSCused row(", ") = IccLeakLFOSCused * vcc = "},
             {"PowerBiasLFOSCused row(", ") = IccBiasLFOSCused * vcc = "},
             "PowerLeakMCLKunused = IccLeakUnusedMCLK * vcc = ",
             "PowerBiasLFOSCunused = IccBiasUnusedLFOSC * vcc = "},
            {"CIBTEST",
             "CIBTEST",
             true,
             &E::ProcessCIBTESTdynVcc,
             &E::ProcessCIBTESTleakVccUsed,
             &E::ProcessCIBTESTbiasVccUsed,
             &E::ProcessCIBTESTleakUnused,
             &E::ProcessCIBTESTbiasUnused,
             {"PowerDynVccCIBTEST row(", ") = IccDynVccCIBTEST * vcc = "},
             {"PowerLeakVccCIBTESTused row(", ") = IccLeakVccCIBTESTused * vcc = "},
             {"PowerBiasVccCIBTESTused row(", ") = IccBiasVccCIBTESTused * vcc = "},
             "PowerLeakCIBTESTunused = IccLeakTotalCIBTEST * vcc = ",
             "PowerBiasCIBTESTunused = IccBiasTotalCIBTEST * vcc = "},
            {"DTR",
             "DTR",
             false,
             &E::ProcessDTRdynVcc,
             &E::ProcessDTRleakVccUsed,
             &E::ProcessDTRbiasVccUsed,
             &E::ProcessDTRleakUnused,
             &E::ProcessDTRbiasUnused,
             {"PowerDynVccDTR row(", ") = IccDynVccDTR * vcc = "},
             {"PowerLeakVccDTRused row(", ") = IccLeakVccDTRused * vcc = "},
             {"PowerBiasVccDTRused row(", ") = IccBiasVccDTRused * vcc = "},
             "PowerLeakDTRunused = IccLeakTotalDTR * vcc = ",
             "PowerBiasDTRunused = IccBiasTotalDTR * vcc = "},
            {"I2C",
             "I2C",
             false,
             &E::ProcessI2CdynVcc,
             &E::ProcessI2CleakVccUsed,
             &E::ProcessI2CbiasVccUsed,
             &E::ProcessI2CleakUnused,
             &E::ProcessI2CbiasUnused,
             {"PowerDynVccI2C row(", ") = IccDynVccI2C * vcc = "},
             {"PowerLeakVccDTRused row(", ") = IccLeakVccI2Cused * vcc = "},
             {"PowerBiasVccDTRused row(", ") = IccBiasVccI2Cused * vcc = "},
             "PowerLeakI2Cunused = IccLeakTotalI2C * vcc = ",
             "PowerBiasI2Cunused = IccBiasTotalI2C * vcc = "},
            {"UFM",
             "UFM",
             false,
             &E::ProcessUFMdynVcc,
             &E::ProcessUFMleakVccUsed,
             &E::ProcessUFMbiasVccUsed,
             &E::ProcessUFMleakUnused,
             &E::ProcessUFMbiasUnused,
             {"PowerDynVccUFM row(", ") = IccDynVccUFM * vcc = "},
             {"PowerLeakVccDTRused row(", ") = IccLeakVccUFMused * vcc = "},
             {"PowerBiasVccDTRused row(", ") = IccBiasVccUFMused * vcc = "},
             "PowerLeakUFMunused = IccLeakTotalUFM * vcc = ",
             "PowerBiasDTRunused = IccBiasTotalCIBTEST * vcc = "},
        };
        std::vector<MiscTable> all;
        for (const Words& w : words) {
            const char* supply = w.coreAndGated ? nullptr : "VCC";
            MiscTable t{w.table,
                        {{supply, w.section, "Vcc", E::PassIf::Always, false, w.dyn, w.leak, w.bias,
                          "Dyn. VCC Pwr (W)", "Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)", w.dynLog,
                          w.leakLog, w.biasLog}},
                        {{supply, w.section, "Vcc", E::PassIf::Always, w.leakUnused, w.biasUnused,
                          "Unused Leakage VCC Pwr (W)", "Unused DCbias VCC Pwr (W)",
                          w.leakUnusedLog, w.biasUnusedLog}}};
            if (std::strcmp(w.table, "DTR") == 0)
                t.passes.push_back(
                    {"VCCAUX",
                     "DTR",
                     "Vccaux",
                     E::PassIf::HasSupply,
                     false,
                     &E::ProcessDTRdynVccaux,
                     &E::ProcessDTRleakVccauxUsed,
                     &E::ProcessDTRbiasVccauxUsed,
                     "Dyn. VCCAUX Pwr (W)",
                     "Leakage VCCAUX Pwr (W)",
                     "DCbias VCCAUX Pwr (W)",
                     {"PowerDynVccauxDTR row(", ") = IccDynVccauxDTR * vccaux = "},
                     {"PowerLeakVccauxDTRused row(", ") = IccLeakVccauxDTRused * vccaux = "},
                     {"PowerBiasVccauxDTRused row(", ") = IccBiasVccauxDTRused * vccaux = "}});
            all.push_back(std::move(t));
        }
        return all;
    }();
    return tables;
}

// The JTAG pins on their own supply, where the device has one.
const std::vector<E::SupplyPass>& JtagPasses() {
    static const std::vector<E::SupplyPass> passes = {
        {"VCCJ",
         "JTAG",
         "Vccj",
         E::PassIf::HasSupply,
         false,
         &E::ProcessMiscDynVccj,
         &E::ProcessMiscLeakVccjUsed,
         &E::ProcessMiscBiasVccjUsed,
         "Dyn. VCCJ Pwr (W)",
         "Leakage VCCJ Pwr (W)",
         "DCbias VCCJ Pwr (W)",
         // The port's lines name no row: it is the device's one JTAG port.
         {"PowerDynVccj = IccDynMiscVccj * vccj = ", nullptr},
         {"PowerLeakVccj = IccLeakMiscVccjUsed * vccj = ", nullptr},
         {"PowerBiasVccj = IccBiasMiscVccjUsed * vccj = ", nullptr}}};
    return passes;
}

// The always-on parts on the device-wide row, one pass per column group of
// "Total Misc". VCCIO goes at the voltage of "Vccio 1.2".
std::vector<E::UnusedPass> DeviceWidePasses(const char* vccio) {
    using I = E::PassIf;
    return {
        {"VCC", "MISC", "Vcc", I::Always, &E::ProcessMiscDynTotalVcc, nullptr,
         "Total Dyn. VCC Pwr (W)", nullptr, "PowerDynMiscVcc = IccDynMiscVcc * vcc = ", nullptr},
        {"VCC", "MISC", "Vcc", I::Always, &E::ProcessMiscLeakTotalAllUsed,
         &E::ProcessMiscBiasVccUsed, "Total Leakage VCC Pwr (W)", "Total DCbias VCC Pwr (W)",
         "PowerLeakMiscVccUsed = IccLeakTotalAllMiscUsed * vcc = ",
         "PowerBiasMiscVccUsed = IccBiasMiscVccUsed * vcc = "},
        {"VCCIO", "MISC", vccio, I::Always, &E::ProcessMiscLeakOtherUsed,
         &E::ProcessMiscBiasOtherUsed, "Total Leakage VCCIO Pwr (W)", "Total DCbias VCCIO Pwr (W)",
         "PowerLeakMiscVccioUsed = IccLeakMiscVccioUsed * vccio = ",
         "PowerBiasMiscVccioUsed = IccBiasMiscVccioUsed * vccio = "},
        {"VCCAUX", "MISC", "Vccaux", I::HasSupply, &E::ProcessMiscLeakOtherUsed,
         &E::ProcessMiscBiasOtherUsed, "Total Leakage VCCAUX Pwr (W)",
         "Total DCbias VCCAUX Pwr (W)", "PowerLeakVccaux = IccLeakTotalMiscVccauxUsed * vccaux = ",
         "PowerBiasVccaux = IccBiasMiscVccauxUsed * vccaux = "},
        {"VCC12", "MISC", "Vcc1.2", I::HasSupply, &E::ProcessMiscLeakOtherUsed,
         &E::ProcessMiscBiasOtherUsed, "Total Leakage VCC12 Pwr (W)", "Total DCbias VCC12 Pwr (W)",
         nullptr, nullptr},
        {"VPP2V5", "MISC", "Vpp2v5", I::HasSupply, &E::ProcessMiscLeakOtherUsed,
         &E::ProcessMiscBiasOtherUsed, "Total Leakage VPP2V5 Pwr (W)",
         "Total DCbias VPP2V5 Pwr (W)", nullptr, nullptr},
        {"VCCPM", "POWER_MANAGER", "Vccpm", I::HasSupply, &E::ProcessMiscLeakPowerManagerUsed,
         &E::ProcessMiscBiasPowerManagerUsed, "Total Leakage VCCPM Pwr (W)",
         "Total DCbias VCCPM Pwr (W)", nullptr, nullptr},
        {"VCCJP", "POWER_MANAGER", "Vccjp", I::HasSupply, &E::ProcessMiscLeakPowerManagerUsed,
         &E::ProcessMiscBiasPowerManagerUsed, "Total Leakage VCCJP Pwr (W)",
         "Total DCbias VCCJP Pwr (W)", nullptr, nullptr},
        {"VCCPROG", "POWER_MANAGER", "Vccprog", I::HasSupply, &E::ProcessMiscLeakPowerManagerUsed,
         &E::ProcessMiscBiasPowerManagerUsed, "Total Leakage VCCPROG Pwr (W)",
         "Total DCbias VCCPROG Pwr (W)", nullptr, nullptr},
        {"VCCINP_33", "POWER_MANAGER", "Vccinp 3.3", I::HasSupply,
         &E::ProcessMiscLeakPowerManagerUsed, &E::ProcessMiscBiasPowerManagerUsed,
         "Total Leakage VCCINP33 Pwr (W)", "Total DCbias VCCINP33 Pwr (W)", nullptr, nullptr},
        {"VCCINP_50", "POWER_MANAGER", "Vccinp 5.0", I::HasSupply,
         &E::ProcessMiscLeakPowerManagerUsed, &E::ProcessMiscBiasPowerManagerUsed,
         "Total Leakage VCCINP50 Pwr (W)", "Total DCbias VCCINP50 Pwr (W)", nullptr, nullptr},
        {"VCCP", "MISC", "Vccp", I::HasSupply, &E::ProcessMiscLeakOtherUsed,
         &E::ProcessMiscBiasOtherUsed, "Total Leakage VCCP Pwr (W)", "Total DCbias VCCP Pwr (W)",
         "PowerLeakVccp = IccLeakMiscVccpUsed * vccp = ",
         "PowerBiasVccp = IccBiasMiscVccpUsed * vccp = "},
    };
}

PD_TABLE* TableOf(PC_PANEL* panel, const char* name) {
    return panel ? panel->GetTable(panel->GetTableIndex(name)) : nullptr;
}

}  // namespace

void PC_ENG::MiscCalculation() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("Misc"));
    if (!panel || panel->GetNumOfTables() < 2) return;
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    ModelCacheScope cacheScope(caches);

    // The row tables' made-up rows add up in the one total table.
    for (const MiscTable& t : MiscTables())
        for (const UnusedPass& u : t.unused)
            for (const char* c : {u.leakColumn, u.biasColumn})
                total->SetValueAt("0", 0, total->GetColumnIndex(c));
    std::vector<std::pair<PD_TABLE*, const std::vector<SupplyPass>*>> items;
    for (const MiscTable& t : MiscTables()) {
        PD_TABLE* table = TableOf(panel, t.table);
        if (!table || table == total) continue;
        RunFrameRows(t.table, table, t.passes, PlainDyn::SumPasses);
        RunFrameUnused(t.table, total, &PC_ENG::GetArrayOfColumnUnusedNamesMisc,
                       &PC_ENG::GetArrayOfColumnUnusedValuesMisc, t.unused, table, true);
        items.push_back({table, &t.passes});
    }
    PD_TABLE* jtag = TableOf(panel, "JTAG");
    if (jtag && HasSupply("Vccj")) {
        RunFrameRows("JTAG", jtag, JtagPasses(), PlainDyn::SumPasses);
        items.push_back({jtag, &JtagPasses()});
    }

    const char* vccio = "Vccio 1.2";
    RunFrameUnused("Misc", total, &PC_ENG::GetArrayOfColumnUnusedNamesMiscTotal,
                   &PC_ENG::GetArrayOfColumnUnusedValuesMiscTotal, DeviceWidePasses(vccio));

    // "Total Pwr (W)": the total table's columns from the third on and the
    // row tables' sums; the always-on switching joins the dynamic total.
    const double rowsDyn = FrameTotals(items, total);
    const int totalDyn = total->GetColumnIndex("Total Dyn. Pwr (W)");
    const double alwaysOnDyn =
        Num(total->GetValueAt(0, total->GetColumnIndex("Total Dyn. VCC Pwr (W)")));
    total->SetValueAt(PrintFixed(rowsDyn + alwaysOnDyn, 20).c_str(), 0, totalDyn);
}

void PC_ENG::setBandgapControllert() {
    bandgapController = false;
    if (HasBandgapController(FamilyName(), DeviceName()) && DisableBandgap)
        bandgapController = true;
}

// ---- The made-up rows ------------------------------------------------------------------

namespace {

// "Enable" when the table's first row allows standby.
std::string StandbyOf(PC_PANEL* misc, const char* table) {
    PD_TABLE* t = TableOf(misc, table);
    if (!t || t->GetNumOfRows() == 0) return "Disable";
    const std::string v = t->GetValueAt(0, t->GetColumnIndex("Allow Standby"));
    return v == "Yes" || v == "Enable" ? "Enable" : "Disable";
}

std::string Count(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%d", static_cast<int>(value));
    return text;
}

}  // namespace

void PC_ENG::GetArrayOfColumnUnusedNamesMisc(PD_TABLE* table, std::vector<std::string>& names) {
    const std::string n = table ? table->name : "";
    names = {n + "_total", n + "_unused"};
    for (const char* s : {"VCC", "VCCAUX", "VCCJ", "VCC12", "VCCPG", "Device", "Package",
                          "Operating", "Speed", "TJ", "DPM", "Process", "archName"})
        names.push_back(s);
}

void PC_ENG::GetArrayOfColumnUnusedValuesMisc(PD_TABLE* table, std::vector<std::string>& values) {
    const std::string n = table ? table->name : "";
    const double has = DeviceHas(n);
    const double used =
        table ? GetTotalSumRowDData(table, table->GetColumnIndex(("# " + n).c_str()), 0) : 0.0;
    values = {Count(has), Count(has - used)};
    for (const char* s : {"Vcc", "Vccaux", "Vccj", "Vcc1.2", "Vccpg"})
        values.push_back(GetVDPMCategory(s, "Voltage", "-1"));
    values.push_back(DeviceName());
    values.push_back(PackageName());
    values.push_back(OperatingName());
    values.push_back(SpeedGrade());
    values.push_back(CurrentTJ());
    values.push_back(GetVDPM("Vcc", "DPM"));
    values.push_back(GetProcessType());
    values.push_back(ArchName());
}

namespace {

// Blocks whose free count the device-wide row carries: the count key, its
// tab and table, and whether the total is given too.
struct FreeBlock {
    const char* name;
    const char* panel;
    const char* table;
    bool withTotal;
};
const FreeBlock kFreeBlocks[] = {
    {"CLKDIV", "Misc", "CLKDIV", true}, {"MCLK", "Misc", "MCLK", true},
    {"DCS", "Misc", "DCS", true},       {"DQSCNTL", "Misc", "DQSCNTL", true},
    {"FABA", "FABA", nullptr, false},   {"DSP", "DSP", nullptr, false},
};

// Supplies of the device-wide row: its name and the summary's.
struct WideSupply {
    const char* name;
    const char* summary;
};
const WideSupply kWideSupplies[] = {{"VCCAUX", "Vccaux"},
                                    {"VCC12", "Vcc1.2"},
                                    {"VCCM", "Vccm"},
                                    {"VCCP", "Vccp"},
                                    {"VCC", "Vcc"},
                                    {"VCCJ", "Vccj"},
                                    {"VCCIO", nullptr},
                                    {"VPP2V5", "Vpp2v5"},
                                    {"VCCPG", "Vccpg"},
                                    {"VCCPM", "Vccpm"},
                                    {"VCCJP", "Vccjp"},
                                    {"VCCPROG", "Vccprog"},
                                    {"VCCINP_33", "Vccinp 3.3"},
                                    {"VCCINP_50", "Vccinp 5.0"}};

}  // namespace

void PC_ENG::GetArrayOfColumnUnusedNamesMiscTotal(PD_TABLE*, std::vector<std::string>& names) {
    names.clear();
    for (const FreeBlock& b : kFreeBlocks) {
        if (b.withTotal) names.push_back(std::string(b.name) + "_total");
        names.push_back(std::string(b.name) + "_unused");
    }
    names.push_back("StandbyPor");
    names.push_back("StandbyBandgap");
    for (const WideSupply& s : kWideSupplies) {
        names.push_back(s.name);
        if (std::strcmp(s.name, "VPP2V5") == 0) names.push_back("DPM");
    }
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesMiscTotal(PD_TABLE*, std::vector<std::string>& values) {
    values.clear();
    PC_PANEL* misc = GetPanel(GetPanelIndex("Misc"));
    for (const FreeBlock& b : kFreeBlocks) {
        PC_PANEL* panel = GetPanel(GetPanelIndex(b.panel));
        PD_TABLE* table =
            b.table ? TableOf(panel, b.table)
                    : (panel && panel->GetNumOfTables() > 1 ? panel->GetTable(0) : nullptr);
        const double used =
            table ? GetTotalSumRowDData(
                        table, table->GetColumnIndex((std::string("# ") + b.name).c_str()), 0)
                  : 0.0;
        const double has = DeviceHas(b.name);
        if (b.withTotal) values.push_back(Count(has));
        values.push_back(Count(has - used));
    }
    values.push_back(StandbyOf(misc, "POR"));
    values.push_back(StandbyOf(misc, "BANDGAP"));
    const std::string vccio = "Vccio 1.2";
    for (const WideSupply& s : kWideSupplies) {
        values.push_back(GetVDPMCategory(s.summary ? s.summary : vccio, "Voltage", "-1"));
        if (std::strcmp(s.name, "VPP2V5") == 0) values.push_back(GetVDPM("Vcc", "DPM"));
    }
    AppendSettingValues(values);
}
