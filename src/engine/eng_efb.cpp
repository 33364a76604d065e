// The "EFB" tab: the embedded function block's parts, one row each, all on
// VCC, and the block's static current on its device-wide row.
#include <cstdio>

#include "baspcengin.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

namespace {

using E = PC_ENG;
using EfbMember = double (PC_ENG::*)(const E::Row& names, const E::Row& values);

// A part's table, its members (the flash arrays add their leakage to the
// row's power), and its log words.
struct EfbPart {
    const char* table;
    EfbMember dyn;
    EfbMember leak;
    const char* head;
    const char* middle;
};

// In the order of calculation; the configuration clock comes between "UFM"
// and "CFG", the Wishbone bridge last.
const EfbPart kEfbParts[] = {
    {"I2C1", &E::ProcessI2C1efbdynVcc, nullptr, "PowerDynI2C1 row(", ") = IccDynEfbI2C1 * vcc = "},
    {"I2C2", &E::ProcessI2C2efbdynVcc, nullptr, "PowerDynI2C2 row(", ") = IccDynEfbI2C2 * vcc = "},
    {"TC", &E::ProcessTCefbdynVcc, nullptr, "PowerDynTC row(", ") = IccDynEfbTC * vcc = "},
    {"SPI", &E::ProcessSPIefbdynVcc, nullptr, "PowerDynSPI row(", ") = IccDynEfbSPI * vcc = "},
    {"UFM", &E::ProcessUFMefbdynVcc, &E::ProcessUFMefbLeakVcc, "PowerDynUFM row(",
     ") = IccDynEfbUFM * vcc = "},
    {"CFG", &E::ProcessCFGefbdynVcc, &E::ProcessCFGefbLeakVcc, "PowerDynCFG row(",
     ") = IccDynEfbCFG * vcc = "},
    {"WISHBONE", &E::ProcessWISHBONEefbdynVcc, nullptr, "PowerDynWISHBONE row(",
     ") = IccDynEfbWISHBONE * vcc = "},
};

const char* const kCountedParts[] = {"I2C1", "I2C2", "SPI", "TC", "UFM", "WISHBONE"};

PD_TABLE* TableOf(PC_PANEL* panel, const char* name) {
    return panel ? panel->GetTable(panel->GetTableIndex(name)) : nullptr;
}

// Row 0's count "# <part>", 0 without a row.
double PartCount(PC_PANEL* panel, const char* part) {
    PD_TABLE* t = TableOf(panel, part);
    if (!t || t->GetNumOfRows() == 0) return 0.0;
    return Num(t->GetValueAt(0, t->GetColumnIndex((std::string("# ") + part).c_str())));
}

}  // namespace

bool PC_ENG::detectWBused() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("EFB"));
    double sum = 0.0;
    for (const char* part : {"I2C1", "I2C2", "SPI", "UFM"}) sum += PartCount(panel, part);
    if (sum > 0.0) return true;
    PD_TABLE* tc = TableOf(panel, "TC");
    if (!tc || tc->GetNumOfRows() == 0) return false;
    return std::string(tc->GetValueAt(0, tc->GetColumnIndex("WB Used"))) == "Yes";
}

void PC_ENG::EFBCalculation() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("EFB"));
    if (!panel || panel->GetNumOfTables() < 2) return;
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    ModelCacheScope cacheScope(caches);
    const double vcc = Num(GetVDPMCategory("Vcc", "Voltage", "-1"));
    const bool wishbone = detectWBused();
    const bool log = PD_UTIL::IsCalcLogOpen();

    double dyn = 0.0;
    int count = 0;
    for (const EfbPart& part : kEfbParts) {
        const bool isWishbone = std::string(part.table) == "WISHBONE";
        PD_TABLE* table = TableOf(panel, part.table);
        if (isWishbone && !wishbone) {
            // Nothing talks to the bridge: it draws nothing.
            LogRowPower({part.head, part.middle}, 0, 0.0, vcc);
            if (table && table->GetNumOfRows() > 0)
                table->SetValueAt(PrintFixed(0.0, 20).c_str(), 0,
                                  table->GetColumnIndex("Dyn. Pwr (W)"));
            continue;
        }
        if (table && table->GetNumOfRows() > 0) {
            const std::vector<std::string> names = GetArrayOfColumnNames(table, &count);
            const std::vector<std::string> values = GetArrayOfColumnValues(table, 0, &count);
            InitConstants(names, values);
            double i = (this->*part.dyn)(names, values);
            if (part.leak) i += (this->*part.leak)(names, values);
            LogRowPower({part.head, part.middle}, 0, i, vcc);
            table->SetValueAt(PrintFixed(i * vcc, 20).c_str(), 0,
                              table->GetColumnIndex("Dyn. Pwr (W)"));
            dyn += i * vcc;
        }
        if (std::string(part.table) != "UFM") continue;
        // The configuration logic's clock, while the device has its oscillator
        // table: 66 MHz, every cycle.
        PD_TABLE* mclk = TableOf(GetPanel(GetPanelIndex("Misc")), "MCLK");
        if (!mclk || mclk->GetNumOfRows() == 0 ||
            !*mclk->GetValueAt(0, mclk->GetColumnIndex("# MCLK")))
            continue;
        const std::vector<std::string> names = {"Freq. (MHz)", "AF (%)",    "CONFIG", "Device",
                                                "Package",     "Operating", "Speed",  "TJ",
                                                "Process",     "VCC",       "DPM",    "archName"};
        const std::vector<std::string> values = {"66",
                                                 "100",
                                                 "1",
                                                 DeviceName(),
                                                 PackageName(),
                                                 OperatingName(),
                                                 SpeedGrade(),
                                                 CurrentTJ(),
                                                 GetProcessType(),
                                                 GetVDPM("Vcc", "Voltage"),
                                                 GetVDPM("Vcc", "DPM"),
                                                 ArchName()};
        const double i = GetIccDyn("CONFIG", "EFB", "CONFIG", 1.0, "CONFIG", "VCC", names, values);
        if (log) {
            char buf[512];
            std::snprintf(buf, sizeof buf, "%s%s%g%s%g%s%g\n", "PowerDynCONFIG ",
                          " = IccDynEfbCONFIG * vcc = ", i, " * ", vcc, " = ", i * vcc);
            PD_UTIL::FCprintln(buf);
        }
        dyn += i * vcc;
    }

    RunFrameUnused(
        "EFB", total, &PC_ENG::GetArrayOfColumnUnusedNamesEFB,
        &PC_ENG::GetArrayOfColumnUnusedValuesEFB,
        {{"VCC", "EFB", "Vcc", PassIf::Always, &PC_ENG::ProcessEFBleakVccUsed,
          &PC_ENG::ProcessEFBbiasVccUsed, "Total Leakage VCC Pwr (W)", "Total DCbias VCC Pwr (W)",
          "PowerLeakEFB = IccEfbLeak * vcc = ", "PowerBiasEFB = IccEfbBias * vcc = "},
         {"VCC", "EFB", "Vcc", PassIf::Always, &PC_ENG::ProcessEFBleakUnused,
          &PC_ENG::ProcessEFBbiasUnused, "Unused Leakage VCC Pwr (W)", "Unused DCbias VCC Pwr (W)",
          "PowerUnusedLeakEFB = IccEfbUnusedLeak * vcc = ",
          "PowerUnusedBiasEFB = IccEfbUnusedBias * vcc = "}});

    // The total table holds the two totals, then the static columns.
    total->SetValueAt(PrintFixed(dyn, 20).c_str(), 0, total->GetColumnIndex("Total Dyn. Pwr (W)"));
    total->SetValueAt(PrintFixed(dyn + GetTotalRealRowButFirstSecondCol(total, 0), 20).c_str(), 0,
                      total->GetColumnIndex("Total Pwr (W)"));
    if (log) {
        auto cell = [total](const char* c) {
            return total->GetValueAt(0, total->GetColumnIndex(c));
        };
        PD_UTIL::FCprintln(std::string("TotalPowerDynEFB = ") + cell("Total Dyn. Pwr (W)"));
        PD_UTIL::FCprintln(std::string("TotalPowerUsedLeakEFB = ") +
                           cell("Total Leakage VCC Pwr (W)"));
        PD_UTIL::FCprintln(std::string("TotalPowerUsedBiasEFB = ") +
                           cell("Total DCbias VCC Pwr (W)"));
    }
}

void PC_ENG::GetArrayOfColumnUnusedNamesEFB(PD_TABLE*, std::vector<std::string>& names) {
    names.clear();
    for (const char* tail : {"_used", "_unused"})
        for (const char* part : kCountedParts) names.push_back(std::string(part) + tail);
    names.push_back("EFB_used");
    names.push_back("EFB_unused");
    names.push_back("VCC");
    names.push_back("DPM");
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesEFB(PD_TABLE*, std::vector<std::string>& values) {
    values.clear();
    PC_PANEL* panel = GetPanel(GetPanelIndex("EFB"));
    const bool wishbone = detectWBused();
    std::vector<double> used;
    double any = 0.0;
    for (const char* part : kCountedParts) {
        const bool bridge = std::string(part) == "WISHBONE";
        used.push_back(bridge ? (wishbone ? 1.0 : 0.0) : PartCount(panel, part));
        any += used.back();
    }
    for (double u : used) values.push_back(PrintFixed(u, 0));
    for (size_t i = 0; i < used.size(); ++i)
        values.push_back(PrintFixed(DeviceHas(kCountedParts[i]) - used[i], 0));
    const double efbUsed = any > 0.0 ? 1.0 : 0.0;
    values.push_back(PrintFixed(efbUsed, 0));
    values.push_back(PrintFixed(DeviceHas("EFB") - efbUsed, 0));
    values.push_back(GetVDPM("Vcc", "Voltage"));
    values.push_back(GetVDPM("Vcc", "DPM"));
    AppendSettingValues(values);
}
