// The "PLL" tab and the DLL family's tabs: the frame of each, and the
// device-wide row of what they leave free.
#include <cstdio>
#include <cstring>

#include "baspcengin.h"
#include "eng_text.h"
#include "pc_families.h"

using namespace pwc;

namespace {

using E = PC_ENG;

const char* const kVccColumns[] = {"Dyn. VCC Pwr (W)", "Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)"};

}  // namespace

// VCC always; VCCPLL and VCC12 where the summary has them. "Dyn. Pwr (W)" of
// a row is the sum of its three dynamic columns.
static const E::PanelFrame& PLLFrame() {
    static const E::PanelFrame frame = {
        "PLL",
        {{nullptr,
          nullptr,
          {{"VCC",
            "PLL",
            "Vcc",
            E::PassIf::Always,
            false,
            &E::ProcessPLLdynVcc,
            &E::ProcessPLLleakVccUsed,
            &E::ProcessPLLbiasVccUsed,
            kVccColumns[0],
            kVccColumns[1],
            kVccColumns[2],
            {"PowerDynPLL row(", ") = IccDynPLL * vcc = "},
            {"PowerLeakPLLused row(", ") = IccLeakPLLused * vcc = "},
            {"PowerBiasPLLused row(", ") = IccBiasPLLused * vcc = "}},
           {"VCCPLL",
            "PLL",
            "Vccpll",
            E::PassIf::HasSupply,
            true,
            &E::ProcessPLLdynVccpll,
            &E::ProcessPLLleakVccpllUsed,
            &E::ProcessPLLbiasVccpllUsed,
            "Dyn. VCCPLL Pwr (W)",
            "Leakage VCCPLL Pwr (W)",
            "DCbias VCCPLL Pwr (W)",
            {"PowerDynPLLvccpll row(", ") = IccDynPLL * vccpll = "},
            {"PowerLeakPLLusedVccpll row(", ") = IccLeakPLLused * vccpll = "},
            {"PowerBiasPLLusedVccpll row(", ") = IccBiasPLLused * vccpll = "}},
           {"VCC12",
            "PLL",
            "Vcc1.2",
            E::PassIf::HasSupply,
            false,
            &E::ProcessPLLdynVcc12,
            &E::ProcessPLLleakVcc12Used,
            &E::ProcessPLLbiasVcc12Used,
            "Dyn. VCC12 Pwr (W)",
            "Leakage VCC12 Pwr (W)",
            "DCbias VCC12 Pwr (W)",
            {"PowerDynPLLvcc12 row(", ") = idxDynPLLvcc12 * vcc12 = "},
            {"PowerLeakPLLusedVcc12 row(", ") = IccLeakPLLused * vcc12 = "},
            {"PowerBiasPLLusedVcc12 row(", ") = IccBiasPLLused * vcc12 = "}}}}},
        &E::GetArrayOfColumnUnusedNamesPLLDLLDQS,
        &E::GetArrayOfColumnUnusedValuesPLLDLLDQS,
        {{"VCC", "PLL", "Vcc", E::PassIf::Always, &E::ProcessPLLleakVccUnused,
          &E::ProcessPLLbiasVccUnused, "Unused Leakage VCC Pwr (W)", "Unused DCbias VCC Pwr (W)",
          "PowerLeakPLLunused = IccLeakPLLunused * vcc = ",
          "PowerBiasPLLunused = IccBiasPLLunused * vcc = "},
         {"VCCPLL", "PLL", "Vccpll", E::PassIf::HasSupply, &E::ProcessPLLleakVccpllUnused,
          &E::ProcessPLLbiasVccpllUnused, "Unused Leakage VCCPLL Pwr (W)",
          "Unused DCbias VCCPLL Pwr (W)", "PowerLeakPLLunusedVccpll = IccLeakPLLunused * vccpll = ",
          "PowerBiasPLLunusedVccpll = IccBiasPLLunused * vccpll = "},
         {"VCC12", "PLL", "Vcc1.2", E::PassIf::HasSupply, &E::ProcessPLLleakVcc12Unused,
          &E::ProcessPLLbiasVcc12Unused, "Unused Leakage VCC12 Pwr (W)",
          "Unused DCbias VCC12 Pwr (W)", "PowerLeakPLLunusedVcc12 = IccLeakPLLunused * vcc12 = ",
          "PowerBiasPLLunusedVcc12 = IccBiasPLLunused * vcc12 = "}},
        E::PlainDyn::SumPasses,
    };
    return frame;
}

void PC_ENG::PLLCalculation() {
    RunPanelFrame(PLLFrame());
}

// ---- The DLL family ---------------------------------------------------------------

namespace {

// One tab of the family: its members and its log words. The words follow
// one pattern with the departures that stand as they always have: "DLL"
// logs its used leakage as "PowerLeakDLLused", "ESB" its used leakage under
// the DQSDLL words, "DQS" and "DLLDEL" their bias under the leakage words.
struct ClockBlockTab {
    const char* panel;
    bool coreAndGated;  // VCC and VCCPG of the section's list; else VCC alone
    E::ProcessMember dyn, leak, bias, leakUnused, biasUnused;
    E::RowLog dynLog, leakLog, biasLog;
    const char* leakUnusedLog;
    const char* biasUnusedLog;
};

const ClockBlockTab kClockBlockTabs[] = {
    {"DLL",
     false,
     &E::ProcessDLLdynVcc,
     &E::ProcessDLLleakVccUsed,
     &E::ProcessDLLbiasVccUsed,
     &E::ProcessDLLleakUnused,
     &E::ProcessDLLbiasUnused,
     {"PowerDynDLL row(", ") = IccDynDLLvcc * vcc = "},
     {"PowerLeakDLLused row(", ") = PowerLeakDLLused * vcc = "},
     {"PowerBiasDLLused row(", ") = IccBiasDLLused * vcc = "},
     "PowerLeakDLLunused = IccLeakDLLunused * vcc = ",
     "PowerBiasDLLunused = IccBiasDLLunused * vcc = "},
    {"DDRDLL",
     true,
     &E::ProcessDDRDLLdynVcc,
     &E::ProcessDDRDLLleakVccUsed,
     &E::ProcessDDRDLLbiasVccUsed,
     &E::ProcessDDRDLLleakUnused,
     &E::ProcessDDRDLLbiasUnused,
     {"PowerDynDDRDLL row(", ") = IccDynDDRDLLvcc * vcc = "},
     {"PowerLeakDDRDLLused row(", ") = IccLeakDDRDLLused * vcc = "},
     {"PowerBiasDDRDLLused row(", ") = IccBiasDDRDLLused * vcc = "},
     "PowerLeakDDRDLLunused = IccLeakDDRDLLunused * vcc = ",
     "PowerBiasDDRDLLunused = IccBiasDDRDLLunused * vcc = "},
    {"DQSDLL",
     false,
     &E::ProcessDQSDLLdynVcc,
     &E::ProcessDQSDLLleakVccUsed,
     &E::ProcessDQSDLLbiasVccUsed,
     &E::ProcessDQSDLLleakUnused,
     &E::ProcessDQSDLLbiasUnused,
     {"PowerDynDQSDLL row(", ") = IccDynDQSDLLvcc * vcc = "},
     {"PowerLeakDQSDLLused row(", ") = IccLeakDQSDLLused * vcc = "},
     {"PowerBiasDQSDLLused row(", ") = IccBiasDQSDLLused * vcc = "},
     "PowerLeakDQSDLLunused = IccLeakDQSDLLunused * vcc = ",
     "PowerBiasDQSDLLunused = IccBiasDQSDLLunused * vcc = "},
    {"DQS",
     false,
     &E::ProcessDQSdynVcc,
     &E::ProcessDQSleakVccUsed,
     &E::ProcessDQSbiasVccUsed,
     &E::ProcessDQSleakUnused,
     &E::ProcessDQSbiasUnused,
     {"PowerDynDQS row(", ") = IccDynDQSvcc * vcc = "},
     {"PowerLeakDQSused row(", ") = IccLeakDQSused * vcc = "},
     {"PowerBiasDQSused row(", ") = IccLeakDQSused * vcc = "},
     "PowerLeakDQSunused = IccLeakDQSunused * vcc = ",
     "PowerBiasDQSunused = IccBiasDQSunused * vcc = "},
    {"DLLDEL",
     true,
     &E::ProcessDLLDELdynVcc,
     &E::ProcessDLLDELleakVccUsed,
     &E::ProcessDLLDELbiasVccUsed,
     &E::ProcessDLLDELleakUnused,
     &E::ProcessDLLDELbiasUnused,
     {"PowerDynDLLDEL row(", ") = IccDynDLLDELvcc * vcc = "},
     {"PowerLeakDLLDELused row(", ") = IccLeakDLLDELused * vcc = "},
     {"PowerBiasDLLDELused row(", ") = IccLeakDLLDELused * vcc = "},
     "PowerLeakDLLDELunused = IccLeakDLLDELunused * vcc = ",
     "PowerBiasDLLDELunused = IccBiasDLLDELunused * vcc = "},
    {"ESB",
     false,
     &E::ProcessESBdynVcc,
     &E::ProcessESBleakVccUsed,
     &E::ProcessESBbiasVccUsed,
     &E::ProcessESBleakUnused,
     &E::ProcessESBbiasUnused,
     {"PowerDynESB row(", ") = IccDynESBvcc * vcc = "},
     {"PowerLeakDQSDLLused row(", ") = IccLeakDQSDLLused * vcc = "},
     {"PowerBiasESBused row(", ") = IccBiasESBused * vcc = "},
     "PowerLeakESBunused = IccLeakESBunused * vcc = ",
     "PowerBiasESBunused = IccBiasESBunused * vcc = "},
};

E::PanelFrame FrameOf(const ClockBlockTab& t) {
    const char* supply = t.coreAndGated ? nullptr : "VCC";
    return {t.panel,
            {{nullptr,
              nullptr,
              {{supply, t.panel, "Vcc", E::PassIf::Always, false, t.dyn, t.leak, t.bias,
                "Dyn. Pwr (W)", kVccColumns[1], kVccColumns[2], t.dynLog, t.leakLog, t.biasLog}}}},
            &E::GetArrayOfColumnUnusedNamesPLLDLLDQS,
            &E::GetArrayOfColumnUnusedValuesPLLDLLDQS,
            {{supply, t.panel, "Vcc", E::PassIf::Always, t.leakUnused, t.biasUnused,
              "Unused Leakage VCC Pwr (W)", "Unused DCbias VCC Pwr (W)", t.leakUnusedLog,
              t.biasUnusedLog}},
            E::PlainDyn::None};
}

}  // namespace

const PC_ENG::PanelFrame* PC_ENG::ClockBlockFrame(const std::string& panel) {
    static const std::vector<PanelFrame> frames = [] {
        std::vector<PanelFrame> all;
        for (const ClockBlockTab& t : kClockBlockTabs) all.push_back(FrameOf(t));
        return all;
    }();
    for (const PanelFrame& f : frames)
        if (panel == f.panel) return &f;
    return panel == "PLL" ? &PLLFrame() : nullptr;
}

namespace {

void RunClockBlock(PC_ENG& eng, const char* panel) {
    if (const PC_ENG::PanelFrame* f = PC_ENG::ClockBlockFrame(panel)) eng.RunPanelFrame(*f);
}

}  // namespace

void PC_ENG::DLLCalculation() {
    RunClockBlock(*this, "DLL");
}
void PC_ENG::DQSDLLCalculation() {
    RunClockBlock(*this, "DQSDLL");
}
void PC_ENG::DDRDLLCalculation() {
    RunClockBlock(*this, "DDRDLL");
}
void PC_ENG::DQSCalculation() {
    RunClockBlock(*this, "DQS");
}
void PC_ENG::DLLDELCalculation() {
    RunClockBlock(*this, "DLLDEL");
}
void PC_ENG::ESBCalculation() {
    RunClockBlock(*this, "ESB");
}

// ---- The device-wide row ----------------------------------------------------------

namespace {

std::string PanelOfTotal(const PD_TABLE* total) {
    const std::string name = total ? total->name : "";
    return name.compare(0, 6, "Total ") == 0 ? name.substr(6) : name;
}

// Voltage names of the row, in order: the summary supply and its formula name.
struct RowSupply {
    const char* summary;
    const char* name;
};
const RowSupply kFamilySupplies[] = {
    {"Vcc", "VCC"}, {"Vccpll", "VCCPLL"}, {"Vcc1.2", "VCC12"}, {"Vccpg", "VCCPG"}};

}  // namespace

void PC_ENG::GetArrayOfColumnUnusedNamesPLLDLLDQS(PD_TABLE* total,
                                                  std::vector<std::string>& names) {
    const std::string n = PanelOfTotal(total);
    names = {n + "_unused", n + "_total", n + "_used", "Type"};
    for (const RowSupply& s : kFamilySupplies)
        if (std::strcmp(s.name, "VCC") == 0 || HasSupply(s.summary)) names.push_back(s.name);
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesPLLDLLDQS(PD_TABLE* total,
                                                   std::vector<std::string>& values) {
    const std::string n = PanelOfTotal(total);
    PC_PANEL* panel = GetPanel(GetPanelIndex(n));
    PD_TABLE* items = panel && panel->GetNumOfTables() > 1 ? panel->GetTable(0) : nullptr;
    const double used =
        items ? GetTotalSumRowDData(items, items->GetColumnIndex(("# " + n).c_str()), 0) : 0.0;
    const double has = DeviceHas(n);
    char text[64];
    std::snprintf(text, sizeof text, "%d", static_cast<int>(has - used));
    values = {text, PrintFixed(has, 0), PrintFixed(used, 0)};
    values.push_back(n != "DLL" ? "" : UsesSdcDllType(FamilyName()) ? "SDCDLLA" : "DLL");
    for (const RowSupply& s : kFamilySupplies)
        if (std::strcmp(s.name, "VCC") == 0 || HasSupply(s.summary))
            values.push_back(GetVDPMCategory(s.summary, "Voltage", "-1"));
    AppendSettingValues(values);
}
