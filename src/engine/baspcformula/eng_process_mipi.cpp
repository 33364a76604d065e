// Block and supply members of the MIPI D-PHY: each row mixes its high-speed
// and low-power modes by the share of time spent in high speed.
#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

const char* const kSection = "MIPIDPHY";
// The low-power mode toggles at a fixed 10 MHz, whatever the data rate.
constexpr double kLpFrequency = 1e7;

// The row's two mode items and its share of time in high speed (0..1).
struct ModeMix {
    std::string hs, lp;
    double hsShare = 0.0;
};

ModeMix MixOf(const PC_ENG::Row& names, const PC_ENG::Row& values) {
    ModeMix m;
    const std::string& mode = RowValue("Mode", names, values);
    if (mode == "Tx") {
        m.hs = "HS_MODE_TX";
        m.lp = "LP_MODE_TX";
    } else if (mode == "Rx") {
        m.hs = "HS_MODE_RX";
        m.lp = "LP_MODE_RX";
    }
    if (RowValue("Allow Standby", names, values) == "Enable" && !m.hs.empty()) {
        m.hs += "_standby";
        m.lp += "_standby";
    }
    m.hsShare = ToNumber(RowValue("Percent of time in HS Mode (%)", names, values)) / 100.0;
    return m;
}

void LogMix(const char* name, const char* terms, double mixed, double dfb) {
    if (!PD_UTIL::IsCalcLogOpen()) return;
    PD_UTIL::FCprintln(std::string(name) + " " + terms + " = " + Print("%g", mixed) + " + " +
                       Print("%g", dfb) + " = " + Print("%g", mixed + dfb));
}

}  // namespace

double PC_ENG::ProcessMIPIdyn(const std::string& supply, const Row& names, const Row& values) {
    const ModeMix m = MixOf(names, values);
    const double freq = 1e6 * ToNumber(RowValue("Data Rate (Mbps)", names, values));
    const double cHS =
        ToNumber(FindABCDusedvalueFromPwrSupply(supply, kSection, m.hs, "", "C")) * 1e-12;
    const double cLP =
        ToNumber(FindABCDusedvalueFromPwrSupply(supply, kSection, m.lp, "", "C")) * 1e-12;
    const double iHS = GetIccDyn(kSection, m.hs, 1.0, m.hs, supply, freq, 1.0, cHS, names, values);
    const double iLP =
        GetIccDyn(kSection, m.lp, 1.0, m.lp, supply, kLpFrequency, 1.0, cLP, names, values);
    return iHS * m.hsShare + (1.0 - m.hsShare) * iLP;
}

double PC_ENG::ProcessMIPIDPHYdyn(const std::string&, const Row& names, const Row& values,
                                  const std::string& supply) {
    const double i = ProcessMIPIdyn(supply, names, values);
    if (PD_UTIL::IsCalcLogOpen()) PD_UTIL::FCprintln("IccDynMIPI = IccMIPI = " + Print("%g", i));
    return i;
}

double PC_ENG::MipiStaticMix(bool leak, const std::string& supply, const Row& names,
                             const Row& values) {
    const ModeMix m = MixOf(names, values);
    auto element = [&](const std::string& item) {
        return leak ? GetIccLeak(kSection, kSection, item, 1.0, item, supply, names, values)
                    : GetIccBias(kSection, kSection, item, 1.0, item, supply, names, values);
    };
    const double mixed = element(m.hs) * m.hsShare + (1.0 - m.hsShare) * element(m.lp);
    const double dfb = leak ? GetIccLeakDFB(kSection, kSection, "DCforBLOCK_used", 1.0, kSection,
                                            supply, names, values)
                            : GetIccBiasDFB(kSection, kSection, "DCforBLOCK_used", 1.0, kSection,
                                            supply, names, values);
    if (leak)
        LogMix("IccLeakMIPIused", "= IccMIPILeakage + IccMIPILeakageDFB", mixed, dfb);
    else
        LogMix("IccBiasMIPIused", "= IccMIPIBias + IccMIPIBiasDFB", mixed, dfb);
    return mixed + dfb;
}

double PC_ENG::ProcessMIPIDPHYleakused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return MipiStaticMix(true, supply, names, values);
}

double PC_ENG::ProcessMIPIDPHYbiasused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return MipiStaticMix(false, supply, names, values);
}

double PC_ENG::ProcessMIPIleakUnused(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return GetIccLeakDFBUnused(kSection, kSection, "DCforBLOCK_unused", "MIPIDPHY_unused",
                               "MIPIDPHY_unused", supply, names, values);
}

double PC_ENG::ProcessMIPIbiasUnused(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return GetIccBiasDFBUnused(kSection, kSection, "DCforBLOCK_unused", "MIPIDPHY_unused",
                               "MIPIDPHY_unused", supply, names, values);
}
