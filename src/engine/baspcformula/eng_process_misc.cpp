// Block and supply members of the "Misc" tab: the always-on parts that no
// row stands for (regulator, flash, configuration, shift registers, global
// buffers, references, power switch, power manager), the JTAG pins on VCCJ,
// and the small blocks of its row tables.
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <iterator>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "baspclator/pc_lator.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

using M = PC_ENG::IccModel;
using Part = PC_ENG::AlwaysOnPart;

// The `.pwr` section and the equation section of each part.
struct PartRule {
    Part part;
    const char* block;
    const char* equationSection;
    const char* name;  // in the summary lines
};

const PartRule kParts[] = {
    {Part::Regulator, "REGULATOR", "REGULATOR_MISC", "Regulator"},
    {Part::Flash, "FLASH", "MISC", "Flash"},
    {Part::Config, "CONFIG", "MISC", "Config"},
    {Part::Shiftregs, "SHIFTREGS", "MISC", "Shiftregs"},
    {Part::Gbuf, "GBUF", "MISC", "Gbuf"},
    {Part::Refs, "REFS", "MISC", "Refs"},
    {Part::Iref, "IREF", "MISC", "Iref"},
    {Part::Misc, "MISC", "MISC", "Misc"},
    {Part::PwrSwitch, "PWRSWITCH", "MISC", "Pwrswitch"},
};

// Per-element items of the "MISC" part after its power-on reset.
const char* const kMiscItems[] = {"Bandgaps",     "Config_Bits@", "CONFIG",      "MIB@",
                                  "EFUSE",        "VCCMREG@",     "CHIP_PVTCAL", "por_b",
                                  "enable_vccpg", "enable_vccm",  "nvcm",        "mib_b",
                                  "mib_b_tap",    "mib_ebr",      "mib_ebr_tap"};

const PartRule& RuleOf(Part part) {
    for (const PartRule& r : kParts)
        if (r.part == part) return r;
    return kParts[0];
}

// A member's summary name, made only while the calculation log is open.
std::string LogName(std::initializer_list<std::string> parts) {
    std::string name;
    if (PD_UTIL::IsCalcLogOpen())
        for (const std::string& p : parts) name += p;
    return name;
}

bool Enabled(const char* column, const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return RowValue(column, names, values) == "Enable";
}

}  // namespace

// ---- The member pairs --------------------------------------------------------------------

double PC_ENG::MiscPartCurrent(AlwaysOnPart part, bool leak, const std::string& supply,
                               const Row& names, const Row& values) {
    const PartRule& rule = RuleOf(part);
    // A part the device's data lack is left out without a word.
    if (!PwrSectionHasSupply(rule.block, supply)) return 0.0;
    const std::string arch = ArchName();
    std::vector<std::string> items;
    if (part == Part::Regulator) {
        if (!PC_LATOR::IsRegulatorBeingUsed(names, values)) return 0.0;
        items.push_back("DCforBLOCK_used@");
    } else {
        const bool standbyRefs = part == Part::Refs && pwc::HasStandbyReferences(arch) &&
                                 Enabled("StandbyBandgap", names, values);
        items.push_back(standbyRefs ? "DCforBLOCK_standby" : "DCforBLOCK_used");
        switch (part) {
            case Part::Flash:
                items.push_back("Flash@");
                if (*pwc::SecondFlashItem(DeviceName()))
                    items.push_back(pwc::SecondFlashItem(DeviceName()));
                break;
            case Part::Config:
                items.push_back("Config@");
                break;
            case Part::Shiftregs:
                items.push_back("ASR");
                items.push_back("DSR");
                break;
            case Part::Gbuf:
                items.push_back(
                    PwrDataAvailable(rule.block, std::string("gbuffers@") + DeviceName())
                        ? "gbuffers@"
                        : "gbuffers");
                break;
            case Part::Refs:
                items.push_back("Bandgap@");
                items.push_back(standbyRefs ? "DEFAULT_standby" : "DEFAULT");
                break;
            case Part::Iref:
                items.push_back("IREF");
                break;
            case Part::Misc:
                if (pwc::LeavesGlobalBuffersToVccpg(arch))
                    items.push_back(Enabled("StandbyPor", names, values) ? "POR_standby" : "POR");
                items.insert(items.end(), std::begin(kMiscItems), std::end(kMiscItems));
                break;
            case Part::PwrSwitch:
                items.push_back(powerMode == 1 ? "PWRSWITCH_SLEEP" : "PWRSWITCH_LOGIC");
                break;
            case Part::Regulator:
                break;
        }
    }
    double sum = 0.0;
    std::vector<double> numbers;
    for (const std::string& item : items) {
        const double i =
            leak ? GetIccLeakAt(rule.equationSection, rule.block, item, 1.0, item, supply, names,
                                values)
                 : GetDbiasAt(rule.equationSection, rule.block, item, supply, names, values);
        numbers.push_back(i);
        sum += i;
    }
    if (PD_UTIL::IsCalcLogOpen())
        LogTermSum(std::string(leak ? "IccLeakMisc" : "IccBiasMisc") + rule.name + supply + "Used",
                   items, numbers, sum);
    return sum;
}

#define PWC_MISC_PART_MEMBER(NAME, PART, LEAK)                                            \
    double PC_ENG::NAME(const Row& names, const Row& values, const std::string& supply) { \
        return MiscPartCurrent(AlwaysOnPart::PART, LEAK, supply, names, values);          \
    }
PWC_MISC_PART_MEMBER(ProcessMiscRegulatorLeakUsed, Regulator, true)
PWC_MISC_PART_MEMBER(ProcessMiscRegulatorBiasUsed, Regulator, false)
PWC_MISC_PART_MEMBER(ProcessMiscFlashLeakUsed, Flash, true)
PWC_MISC_PART_MEMBER(ProcessMiscFlashBiasUsed, Flash, false)
PWC_MISC_PART_MEMBER(ProcessMiscConfigLeakUsed, Config, true)
PWC_MISC_PART_MEMBER(ProcessMiscConfigBiasUsed, Config, false)
PWC_MISC_PART_MEMBER(ProcessMiscShiftregsUsed, Shiftregs, true)
PWC_MISC_PART_MEMBER(ProcessMiscShiftregsBiasUsed, Shiftregs, false)
PWC_MISC_PART_MEMBER(ProcessMiscGbufLeakUsed, Gbuf, true)
PWC_MISC_PART_MEMBER(ProcessMiscGbufBiasUsed, Gbuf, false)
PWC_MISC_PART_MEMBER(ProcessMiscRefsLeakUsed, Refs, true)
PWC_MISC_PART_MEMBER(ProcessMiscRefsBiasUsed, Refs, false)
PWC_MISC_PART_MEMBER(ProcessMiscIrefLeakUsed, Iref, true)
PWC_MISC_PART_MEMBER(ProcessMiscIrefBiasUsed, Iref, false)
PWC_MISC_PART_MEMBER(ProcessMiscMiscLeakUsed, Misc, true)
PWC_MISC_PART_MEMBER(ProcessMiscMiscBiasUsed, Misc, false)
PWC_MISC_PART_MEMBER(ProcessMiscPwrSwitchLeakUsed, PwrSwitch, true)
PWC_MISC_PART_MEMBER(ProcessMiscPwrSwitchBiasUsed, PwrSwitch, false)
#undef PWC_MISC_PART_MEMBER

// ---- The always-on sums ------------------------------------------------------------------

namespace {

// The summary line of the VCC sum, and the order of its numbers.
const char* const kVccSumTerms[] = {
    "IccRegulator",         "IccLeakMiscFlash",  "IccLeakMiscConfig",   "IccLeakMiscShiftregs",
    "IccLeakMiscRefs",      "IccLeakMiscIref",   "IccLeakMiscMisc",     "IccLeakDFBadditional",
    "IccPowerSerdesUnused", "IccPowerDQSunused", "IccLeakMiscPwrswitch"};

}  // namespace

// On VCC, in this order: the power manager's block, the DQS and SERDES left
// free, the member pairs, the FABA and DSP left free, and the global buffers
// except where they hang on VCCPG.
static double AlwaysOnVcc(PC_ENG& eng, bool leak, const PC_ENG::Row& names,
                          const PC_ENG::Row& values) {
    const std::string vcc = "VCC";
    const bool log = PD_UTIL::IsCalcLogOpen();
    double manager = 0.0;
    if (eng.GetPwrData()->GetSection("POWER_MANAGER"))
        manager =
            leak ? eng.GetIccLeakAt("MISC", "POWER_MANAGER", "DCforBLOCK_used@", 1.0,
                                    "POWER_MANAGER", vcc, names, values)
                 : eng.GetDbiasAt("MISC", "POWER_MANAGER", "DCforBLOCK_used@", vcc, names, values);
    double dqs = 0.0, serdes = 0.0;
    if (eng.DeviceHas("DQS") != 0.0)
        dqs = leak ? eng.GetIccLeakDFBUnused("MCLK", "DQS", "DCforBLOCK_unused", 2.0, "DQS_unused",
                                             vcc, names, values)
                   : eng.GetIccBiasDFBUnused("MCLK", "DQS", "DCforBLOCK_unused", 2.0, "DQS_unused",
                                             vcc, names, values);
    if (eng.DeviceHas("PCS") != 0.0)
        serdes = leak ? eng.GetIccLeakAt("MISC", "MISC", "SERDES_unused@", 1.0, "SERDES_unused@",
                                         vcc, names, values)
                      : eng.GetDbiasAt("MISC", "MISC", "SERDES_unused@", vcc, names, values);
    using Part = PC_ENG::AlwaysOnPart;
    auto part = [&](Part p) { return eng.MiscPartCurrent(p, leak, vcc, names, values); };
    const double regulator = part(Part::Regulator);
    const double flash = part(Part::Flash);
    const double config = part(Part::Config);
    const double shiftregs = part(Part::Shiftregs);
    const double refs = part(Part::Refs);
    const double iref = part(Part::Iref);
    const double misc = part(Part::Misc);
    const double pwrswitch = part(Part::PwrSwitch);
    double additional = 0.0;
    struct Unused {
        const char* deviceKey;
        const char* block;
        const char* count;
        const char* note;
    };
    const Unused kUnusedBlocks[] = {
        {"POWERFABA", "FABA", "FABA_unused", "Calculation for FABA - DFB_unused"},
        {"POWERDSP", "DSP", "DSP_unused", "Calculation for DSP - DFB_unused"}};
    for (const Unused& u : kUnusedBlocks) {
        if (eng.DeviceHas(u.deviceKey) == 0.0) continue;
        if (log) PD_UTIL::FCprintln(u.note);
        additional += leak ? eng.GetIccLeakDFBUnused(u.block, u.block, "DCforBLOCK_unused", u.count,
                                                     u.count, vcc, names, values)
                           : eng.GetIccBiasDFBUnused(u.block, u.block, "DCforBLOCK_unused", u.count,
                                                     u.count, vcc, names, values);
    }
    const double gbuf = pwc::LeavesGlobalBuffersToVccpg(eng.ArchName()) ? 0.0 : part(Part::Gbuf);
    const double numbers[] = {regulator, flash,      config, shiftregs, refs,     iref,
                              misc,      additional, serdes, dqs,       pwrswitch};
    // Summed in the order of the steps: the manager, the DQS and SERDES left
    // free, the member pairs, the FABA and DSP left free, the global buffers.
    const double ordered[] = {manager, dqs,  serdes, regulator, flash,      config, shiftregs,
                              refs,    iref, misc,   pwrswitch, additional, gbuf};
    double sum = 0.0;
    for (double n : ordered) sum += n;
    if (log) {
        std::string kind = leak ? "Leak" : "Bias";
        std::string line = "Icc" + kind + "TotalMiscUsed = ";
        for (size_t i = 0; i < std::size(kVccSumTerms); ++i) {
            std::string term = kVccSumTerms[i];
            if (!leak && term.compare(0, 7, "IccLeak") == 0) term = "IccBias" + term.substr(7);
            line += (i ? (i == 9 ? " +" : " + ") : "") + term;
        }
        PD_UTIL::FCprintln(line + ";");
        std::string text;
        for (size_t i = 0; i < std::size(numbers); ++i)
            text += (i ? " + " : "") + Print("%g", numbers[i]);
        PD_UTIL::FCprintln(text + " = " + Print("%g", sum - manager - gbuf));
        PD_UTIL::FCprintln("Icc" + kind + "PowerManager = " + Print("%g", manager) + ", Icc" +
                           kind + "MiscGbuf = " + Print("%g", gbuf) + ", Icc" + kind +
                           "TotalMiscUsed = " + Print("%g", sum));
    }
    return sum;
}

// On any other supply: the parts whose section lists it, in the VCC order,
// the global buffers last.
static double AlwaysOnOther(PC_ENG& eng, bool leak, const std::string& supply,
                            const PC_ENG::Row& names, const PC_ENG::Row& values) {
    using Part = PC_ENG::AlwaysOnPart;
    double sum = 0.0;
    for (Part p : {Part::Regulator, Part::Flash, Part::Config, Part::Shiftregs, Part::Refs,
                   Part::Iref, Part::Misc, Part::PwrSwitch, Part::Gbuf})
        sum += eng.MiscPartCurrent(p, leak, supply, names, values);
    if (PD_UTIL::IsCalcLogOpen())
        PD_UTIL::FCprintln(std::string(leak ? "IccLeak" : "IccBias") + "TotalMisc" + supply +
                           "Used = " + Print("%g", sum));
    return sum;
}

double PC_ENG::ProcessMiscLeakVccUsed(const std::string&, const Row& names, const Row& values,
                                      const std::string&) {
    return AlwaysOnVcc(*this, true, names, values);
}

double PC_ENG::ProcessMiscBiasVccUsed(const std::string&, const Row& names, const Row& values,
                                      const std::string&) {
    return AlwaysOnVcc(*this, false, names, values);
}

double PC_ENG::ProcessMiscLeakVccpgUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string&) {
    return AlwaysOnOther(*this, true, "VCCPG", names, values);
}

double PC_ENG::ProcessMiscLeakTotalAllUsed(const std::string& panel, const Row& names,
                                           const Row& values, const std::string& supply) {
    double sum = ProcessMiscLeakVccUsed(panel, names, values, supply);
    if (HasSupply("Vccpg")) sum += ProcessMiscLeakVccpgUsed(panel, names, values, "VCCPG");
    return sum;
}

double PC_ENG::ProcessMiscLeakOtherUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string& supply) {
    return AlwaysOnOther(*this, true, supply, names, values);
}

double PC_ENG::ProcessMiscBiasOtherUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string& supply) {
    return AlwaysOnOther(*this, false, supply, names, values);
}

double PC_ENG::ProcessMiscLeakPowerManagerUsed(const std::string&, const Row& names,
                                               const Row& values, const std::string& supply) {
    if (!PwrSectionHasSupply("POWER_MANAGER", supply)) return 0.0;
    return GetIccLeakDFB("POWER_MANAGER", "POWER_MANAGER", "DCforBLOCK_used", 1.0, "DCBlock",
                         supply, names, values);
}

double PC_ENG::ProcessMiscBiasPowerManagerUsed(const std::string&, const Row& names,
                                               const Row& values, const std::string& supply) {
    if (!PwrSectionHasSupply("POWER_MANAGER", supply)) return 0.0;
    return GetIccBiasDFB("POWER_MANAGER", "POWER_MANAGER", "DCforBLOCK_used", 1.0, "DCBlock",
                         supply, names, values);
}

// ---- Dynamic current of the device as a whole -----------------------------------------

double PC_ENG::ProcessMiscDynVcc(const std::string&, const Row&, const Row&, const std::string&) {
    if (!pwc::IsBf7p00Arch(ArchName())) return 0.0;
    PC_PANEL* misc = GetPanel(GetPanelIndex("Misc"));
    PD_TABLE* sed = misc ? misc->GetTable(misc->GetTableIndex("SED")) : nullptr;
    if (!sed || sed->GetNumOfRows() == 0 || !PwrDataAvailable("MISC", "CONFIG")) return 0.0;
    int n = 0;
    const Row names = GetArrayOfColumnNames(sed, &n);
    const Row values = GetArrayOfColumnValues(sed, 0, &n);
    if (RowValue("SED status", names, values) == "Disabled") return 0.0;
    if (PD_UTIL::IsCalcLogOpen())
        PD_UTIL::FCprintln("CONFIG, always have - AF: 100 & Freq: From SED frequency");
    const double freq = ToNumber(RowValue("SED Freq. (MHz)", names, values)) * 1e6;
    return GetIccDynAF100("MISC", "MISC", "CONFIG", 1.0, "CONFIG", "VCC", freq, names, values);
}

double PC_ENG::ProcessMiscPOWERSWITCHDynVcc(const std::string&, const Row& names, const Row& values,
                                            const std::string&) {
    const std::string item = powerMode == 1 ? "PWRSWITCH_SLEEP" : "PWRSWITCH_LOGIC";
    if (!PwrDataAvailable("PWRSWITCH", item)) return 0.0;
    return GetIccDyn("PWRSWITCH", "PWRSWITCH", item, 1.0, item, "VCC", 0.0, 1.0, names, values,
                     false);
}

double PC_ENG::ProcessMiscDynTotalVcc(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply) {
    return ProcessMiscDynVcc(panel, names, values, supply) +
           ProcessMiscPOWERSWITCHDynVcc(panel, names, values, supply);
}

// ---- JTAG on VCCJ ----------------------------------------------------------------------------

double PC_ENG::ProcessMiscDynVccj(const std::string&, const Row& names, const Row& values,
                                  const std::string&) {
    return SumIccTerms("IccDynMiscVccj",
                       {{M::DynAF100, "JTAG", "JTAG", "Input", "Input", "JTAG_input"},
                        {M::DynAF100, "JTAG", "JTAG", "Output", "Output", "JTAG_output"}},
                       "VCCJ", names, values);
}

double PC_ENG::ProcessMiscLeakVccjUsed(const std::string&, const Row& names, const Row& values,
                                       const std::string&) {
    return ProcessJtagPins(true, "VCCJ", "IccLeakMiscVccjUsed", names, values);
}

double PC_ENG::ProcessMiscBiasVccjUsed(const std::string&, const Row& names, const Row& values,
                                       const std::string&) {
    return ProcessJtagPins(false, "VCCJ", "IccBiasMiscVccjUsed", names, values);
}

// ---- The row tables -------------------------------------------------------------------------

double PC_ENG::ProcessCLKDIVdynVcc(const std::string&, const Row& names, const Row& values,
                                   const std::string& supply) {
    return ProcessBlockDyn("CLKDIV", supply, false, names, values);
}
double PC_ENG::ProcessCLKDIVleakVccUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string& supply) {
    return ProcessBlockLeakUsed("CLKDIV", supply, false, names, values);
}
double PC_ENG::ProcessCLKDIVbiasVccUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string& supply) {
    return ProcessBlockBiasUsed("CLKDIV", supply, false, names, values);
}
double PC_ENG::ProcessCLKDIVleakUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return ProcessBlockLeakUnused("CLKDIV", supply, names, values);
}
double PC_ENG::ProcessCLKDIVbiasUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return ProcessBlockBiasUnused("CLKDIV", supply, names, values);
}

// The oscillator and the soft-error check it clocks, each at its own
// frequency column ("MCLK Freq. (MHz)", "SED Freq. (MHz)").
double PC_ENG::ProcessMCLKdynVcc(const std::string&, const Row& names, const Row& values,
                                 const std::string& supply) {
    return SumIccTerms(LogName({"IccDynMCLK", supply}),
                       {{M::Dyn, "MCLK", "MCLK", "MCLK", "MCLK", "MCLK"},
                        {M::Dyn, "MCLK", "MCLK", "SED", "MCLK", "SED"}},
                       supply, names, values);
}

namespace {

std::vector<PC_ENG::IccTerm> MclkUsedTerms(bool leak, bool standby) {
    return {{leak ? M::LeakDFB : M::BiasDFB, "MCLK", "MCLK",
             standby ? "DCforBLOCK_standby" : "DCforBLOCK_used", "MCLK", "MCLK"},
            {leak ? M::Leak : M::Bias, "MCLK", "MCLK", "MCLK", "MCLK", "MCLK"}};
}

}  // namespace

double PC_ENG::ProcessMCLKleakVccUsed(const std::string&, const Row& names, const Row& values,
                                      const std::string& supply) {
    return SumIccTerms(LogName({"IccLeakMCLK", supply, "Used"}),
                       MclkUsedTerms(true, Enabled("Allow Standby", names, values)), supply, names,
                       values);
}
double PC_ENG::ProcessMCLKbiasVccUsed(const std::string&, const Row& names, const Row& values,
                                      const std::string& supply) {
    return SumIccTerms(LogName({"IccBiasMCLK", supply, "Used"}),
                       MclkUsedTerms(false, Enabled("Allow Standby", names, values)), supply, names,
                       values);
}
double PC_ENG::ProcessMCLKleakUnused(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return ProcessBlockLeakUnused("MCLK", supply, names, values);
}
double PC_ENG::ProcessMCLKbiasUnused(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return ProcessBlockBiasUnused("MCLK", supply, names, values);
}

namespace {

// The low-frequency oscillator's three outputs, one each.
const char* const kLfOscItems[] = {"lf_clk_out", "lf_clk_plc", "dtr_clk_out"};

}  // namespace

double PC_ENG::ProcessLFOSCdynVcc(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply) {
    double sum = 0.0;
    for (const char* item : kLfOscItems)
        sum += GetIccDyn(panel, "LFOSC", item, 1.0, item, supply, names, values);
    return sum;
}
double PC_ENG::ProcessLFOSCleakVccUsed(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply) {
    double sum =
        GetIccLeakDFB(panel, "LFOSC", "DCforBLOCK_used", 1.0, "LFOSC", supply, names, values);
    for (const char* item : kLfOscItems)
        sum += GetIccLeak(panel, "LFOSC", item, 1.0, item, supply, names, values);
    return sum;
}
double PC_ENG::ProcessLFOSCbiasVccUsed(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply) {
    double sum =
        GetIccBiasDFB(panel, "LFOSC", "DCforBLOCK_used", 1.0, "LFOSC", supply, names, values);
    for (const char* item : kLfOscItems)
        sum += GetIccBias(panel, "LFOSC", item, 1.0, item, supply, names, values);
    return sum;
}
double PC_ENG::ProcessLFOSCleakUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply) {
    return GetIccLeakDFBUnused(panel, "LFOSC", "DCforBLOCK_unused", "LF OSC_unused",
                               "LF OSC_unused", supply, names, values);
}
double PC_ENG::ProcessLFOSCbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply) {
    return GetIccBiasDFBUnused(panel, "LFOSC", "DCforBLOCK_unused", "LF OSC_unused",
                               "LF OSC_unused", supply, names, values);
}

// Used: the block term and the per-element term over the row's count; unused:
// the block term over what is left free.
double PC_ENG::SmallMiscBlockCurrent(const char* block, const char* equationSection, bool leak,
                                     bool unused, const std::string& supply, const Row& names,
                                     const Row& values) {
    const std::string x = block;
    const std::string kind = leak ? "Leak" : "Bias";
    if (unused)
        return SumIccTerms(LogName({"Icc", kind, x, supply, "Unused"}),
                           {{leak ? M::LeakDFBUnused : M::BiasDFBUnused, equationSection, x,
                             "DCforBLOCK_unused", x + "_unused", x + "_unused"}},
                           supply, names, values);
    return SumIccTerms(
        LogName({"Icc", kind, x, supply, "Used"}),
        {{leak ? M::LeakDFB : M::BiasDFB, equationSection, x, "DCforBLOCK_used", x, x},
         {leak ? M::Leak : M::Bias, equationSection, x, x, x, x + "_used"}},
        supply, names, values);
}

#define PWC_SMALL_MISC_MEMBERS(B, EQ)                                                              \
    double PC_ENG::Process##B##leakVccUsed(const std::string&, const Row& names,                   \
                                           const Row& values, const std::string& supply) {         \
        return SmallMiscBlockCurrent(#B, EQ, true, false, supply, names, values);                  \
    }                                                                                              \
    double PC_ENG::Process##B##biasVccUsed(const std::string&, const Row& names,                   \
                                           const Row& values, const std::string& supply) {         \
        return SmallMiscBlockCurrent(#B, EQ, false, false, supply, names, values);                 \
    }                                                                                              \
    double PC_ENG::Process##B##leakUnused(const std::string&, const Row& names, const Row& values, \
                                          const std::string& supply) {                             \
        return SmallMiscBlockCurrent(#B, EQ, true, true, supply, names, values);                   \
    }                                                                                              \
    double PC_ENG::Process##B##biasUnused(const std::string&, const Row& names, const Row& values, \
                                          const std::string& supply) {                             \
        return SmallMiscBlockCurrent(#B, EQ, false, true, supply, names, values);                  \
    }
PWC_SMALL_MISC_MEMBERS(CIBTEST, "CIBTEST")
PWC_SMALL_MISC_MEMBERS(DTR, "MISC")
PWC_SMALL_MISC_MEMBERS(I2C, "I2C")
PWC_SMALL_MISC_MEMBERS(UFM, "UFM")
#undef PWC_SMALL_MISC_MEMBERS

double PC_ENG::ProcessCIBTESTdynVcc(const std::string&, const Row&, const Row&,
                                    const std::string&) {
    return 0.0;
}
double PC_ENG::ProcessI2CdynVcc(const std::string&, const Row& names, const Row& values,
                                const std::string& supply) {
    return ProcessBlockDyn("I2C", supply, false, names, values);
}
double PC_ENG::ProcessUFMdynVcc(const std::string&, const Row& names, const Row& values,
                                const std::string& supply) {
    return ProcessBlockDyn("UFM", supply, false, names, values);
}
double PC_ENG::ProcessDTRdynVcc(const std::string&, const Row& names, const Row& values,
                                const std::string&) {
    return SumIccTerms("IccDynDTRvcc", {{M::Dyn, "MISC", "DTR", "DTR", "DTR", "DTR"}}, "VCC", names,
                       values);
}
double PC_ENG::ProcessDTRdynVccaux(const std::string&, const Row& names, const Row& values,
                                   const std::string&) {
    return SumIccTerms("IccDynDTRvccaux", {{M::Dyn, "MISC", "DTR", "DTR", "DTR", "DTR"}}, "VCCAUX",
                       names, values);
}
double PC_ENG::ProcessDTRleakVccauxUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string&) {
    return SmallMiscBlockCurrent("DTR", "MISC", true, false, "VCCAUX", names, values);
}
double PC_ENG::ProcessDTRbiasVccauxUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string&) {
    return SmallMiscBlockCurrent("DTR", "MISC", false, false, "VCCAUX", names, values);
}
