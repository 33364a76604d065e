// Block and supply members of the I/O: the pins of a row (PIO), their
// registers (IOLOGIC), the external termination, the unused pins, the banks'
// own terms and the JTAG pins.
#include <cmath>
#include <cstdio>
#include <cstring>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;
using namespace pwcformula;

namespace {

double Count(const char* column, const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return ToNumber(RowValue(column, names, values));
}

bool IsIoPanel(const std::string& panel) {
    return panel == "Input Output" || panel == "Bidi";
}

void Log(const char* line) {
    if (PD_UTIL::IsCalcLogOpen()) PD_UTIL::FCprintln(line);
}

// printf to the log; nothing is formatted while it is closed.
template <class... Args>
void Logf(const char* format, Args... args) {
    if (!PD_UTIL::IsCalcLogOpen()) return;
    char text[512];
    std::snprintf(text, sizeof text, format, args...);
    PD_UTIL::FCprintln(text);
}

// The summary line, each term's name behind the prefix.
void LogTerms(const std::string& name, const char* prefix, const std::vector<const char*>& terms,
              const std::vector<double>& numbers) {
    std::vector<std::string> named;
    for (const char* t : terms) named.push_back(prefix + std::string(t));
    LogTermSum(name, named, numbers);
}

}  // namespace

// ---- The pins of a row ---------------------------------------------------------------

double PC_ENG::ProcessPIOdyn(const std::string& panel, const std::string& supply, const Row& names,
                             const Row& values) {
    if (!IsIoPanel(panel)) {
        Log("ERROR: Only I/O InOut & I/O Bidi can be processed.");
        return 0.0;
    }
    const bool bidiPanel = panel == "Bidi";
    const std::string arch = ArchName();
    // Plain pins of each side, and the bidirectional pins. Those of the
    // "Bidi" table share their time between the sides by the duty cycle (the
    // input's share); those of "Input Output" count on both sides.
    double inFreq, inAf, outFreq, outAf, inCount, outCount;
    const double bidi = Count("Bidi", names, values);
    const double duty = Count("Duty Cycle (%)", names, values) / 100.0;
    if (bidiPanel) {
        inFreq = outFreq = Count("Freq. (MHz)", names, values) * 1e6;
        inAf = outAf = Count("AF (%)", names, values) / 100.0;
        inCount = outCount = 0.0;
    } else {
        inFreq = Count("Input Freq. (MHz)", names, values) * 1e6;
        inAf = Count("Input AF (%)", names, values) / 100.0;
        outFreq = Count("Output Freq. (MHz)", names, values) * 1e6;
        outAf = Count("Output AF (%)", names, values) / 100.0;
        inCount = Count("I/P", names, values);
        outCount = Count("O/P", names, values);
    }

    const std::string& type = RowValue("Type", names, values);
    std::string inType = DetermineInputPIOtype(type);
    std::string outType = DetermineOutputPIOtype(type);
    const bool singleEndOut = IsSingleEndedOutputType(outType);
    if (powerMode == 1 && !KeepsIoTypeNamesInSleep(arch)) {
        inType += "-sleep";
        outType += "-sleep";
    }
    double inBidi = bidi;
    if (IsDifferentialTrueDividedBy2(type)) {
        inCount /= 2.0;
        inBidi /= 2.0;
        Log("Input is a True Differential, so it's divided by 2.");
    }

    const double cInp =
        ToNumber(FindABCDusedvalueFromPwrSupply(supply, "IO", inType, "", "C")) * 1e-12;
    const double cOut =
        ToNumber(FindABCDusedvalueFromPwrSupply(supply, "IO", outType, "", "C")) * 1e-12;
    double cLoad = 0.0;
    if (supply == "VCCIO" && singleEndOut)
        cLoad = Count("Cload (pF)", names, values) * 1e-12;
    else
        Log("!(supply == VCCIO && typeOutput == SingleEndOut), hence cLoad = 0.\n");

    const std::string& mode = RowValue("Actual Register Mode", names, values);
    if (mode == "none" || mode == "COMBINATORIAL" || mode.find("ODDR") != std::string::npos) {
        Log("(mode == none && COMBINATORIAL) || mode == ODDR, hence CVF");
    } else {
        Log("!((mode == none && COMBINATORIAL) || mode == ODDR), hence CVF/2");
        outFreq *= 0.5;
    }
    if (mode.find("DDR") != std::string::npos) inFreq *= 0.5;

    const bool bidiRow = bidiPanel || bidi > 0.0;
    double c = cOut + cLoad;
    if (bidiPanel && CountsBidiInputCapacitance(arch)) {
        c = cInp + cOut + cLoad;
        Logf("c%s = cInp + cOut + cLoad", supply.c_str());
    } else {
        Logf("c%s = cOut + cLoad", supply.c_str());
    }
    if (!bidiRow) Log("Not bidi, hence cInp = 0.\n");

    auto side = [&](const std::string& item, double count, const char* label, double freq,
                    double af, double cap) {
        return count == 0.0
                   ? 0.0
                   : GetIccDyn(panel, item, count, label, supply, freq, af, cap, names, values);
    };
    const double inShare = bidiPanel ? duty : 1.0;
    const double outShare = bidiPanel ? 1.0 - duty : 1.0;
    const double inp = side(inType, inCount, "Input", inFreq, inAf, cInp) +
                       side(inType, inBidi, "Input", inFreq, inAf, cInp) * inShare;
    const double out = side(outType, outCount, "Output", outFreq, outAf, c) +
                       side(outType, bidi, "Output", outFreq, outAf, c) * outShare;

    std::vector<const char*> terms{"Inp", "Out"};
    std::vector<double> numbers{inp, out};
    if (HasIologicDynTerm(arch)) {
        terms.push_back("IOLOGIC");
        numbers.push_back(ProcessIOLOGICdyn(panel, supply, names, values));
    }
    if (HasAilDynTerm(arch) && RowValue("AIL", names, values) == "Enable") {
        const double count = bidiPanel ? bidi : inCount + outCount;
        terms.push_back("AIL");
        numbers.push_back(GetIccDyn(panel, "IOLOGIC", "AIL", count, "AIL", supply, outFreq, outAf,
                                    names, values, false));
    }
    if (PD_UTIL::IsCalcLogOpen()) LogTerms("IccDynPIO", "IccDyn", terms, numbers);
    return Sum(numbers);
}

// The static terms of a row's pins on one supply: per pin of each side, then
// the block. A bank that lets its inputs or LVDS drivers shut off takes the
// "_standby" types where the data have them.
double PC_ENG::PioStaticTerms(bool leak, const std::string& panel, const std::string& supply,
                              const Row& names, const Row& values) {
    const std::string arch = ArchName();
    const int bankRow = BankRowOf(RowValue("Bank", names, values));
    const std::string& type = RowValue("Type", names, values);
    auto variant = [&](std::string item, bool shutOff) {
        if (shutOff && IsStandbyIoType(type) && PwrDataAvailable("IO", item + "_standby"))
            return item + "_standby";
        return item;
    };
    const std::string inType =
        variant(DetermineInputPIOtype(type), BankAllows(bankRow, "Allow InRD Shut-off"));
    const std::string outPio = DetermineOutputPIOtype(type);
    const std::string outType =
        variant(outPio, outPio == "Diffout" && BankAllows(bankRow, "Allow LVDSO Shut-off"));
    const IccModel perElement = leak ? IccModel::Leak : IccModel::Bias;
    const IccModel block = leak ? IccModel::LeakDFB : IccModel::BiasDFB;
    const char* kind = leak ? "IccLeak" : "IccBias";
    const double in = Count("I/P", names, values);
    const double out = Count("O/P", names, values);
    const double bidi = Count("Bidi", names, values);
    auto pins = [&](const std::string& item, double count, const char* label) {
        return count == 0.0 ? 0.0
                            : CallIccModel(perElement, panel, "IO", item, count, label, supply,
                                           names, values);
    };
    // A bidirectional buffer is priced by its driver.
    std::vector<double> numbers{pins(inType, in, "input"), pins(outType, out, "output"),
                                pins(outType, bidi, "bidi"),
                                CallIccModel(block, panel, "IO", "DCforBLOCK_used", in + out + bidi,
                                             "(input+output+bidi)", supply, names, values)};
    std::vector<const char*> terms{"Input", "Output", "Bidi", "DFB"};
    if (HasAilStaticTerm(arch) && RowValue("AIL", names, values) == "Enable") {
        numbers.push_back(CallIccModel(perElement, panel, "IOLOGIC", "AIL", in + out + bidi, "AIL",
                                       supply, names, values));
        terms.push_back("AIL");
    }
    if (PD_UTIL::IsCalcLogOpen()) LogTerms(kind + ("PIO" + supply) + "Used", kind, terms, numbers);
    return Sum(numbers);
}

double PC_ENG::ProcessPIOleakUsed(const std::string& panel, const std::string& supply,
                                  const Row& names, const Row& values) {
    return PioStaticTerms(true, panel, supply, names, values);
}

double PC_ENG::ProcessPIObiasUsed(const std::string& panel, const std::string& supply,
                                  const Row& names, const Row& values) {
    return PioStaticTerms(false, panel, supply, names, values);
}

// ---- Registers of the pins -------------------------------------------------------------

namespace {

// Pins of a row that pass through its registers.
double RegisteredPins(const std::string& panel, const PC_ENG::Row& names,
                      const PC_ENG::Row& values) {
    if (panel == "Bidi") return Count("Bidi", names, values);
    return Count("I/P", names, values) + Count("O/P", names, values);
}

}  // namespace

double PC_ENG::ProcessIOLOGICdyn(const std::string& panel, const std::string& supply,
                                 const Row& names, const Row& values) {
    const std::string& mode = RowValue("Actual Register Mode", names, values);
    if (mode.empty() || mode == "none") return 0.0;
    const bool bidi = panel == "Bidi";
    const double freq = Count(bidi ? "Freq. (MHz)" : "Output Freq. (MHz)", names, values) * 1e6;
    const double af = Count(bidi ? "AF (%)" : "Output AF (%)", names, values) / 100.0;
    return GetIccDyn(panel, "IOLOGIC", mode, RegisteredPins(panel, names, values), "IOLOGIC",
                     supply, freq, af, names, values, false);
}

double PC_ENG::ProcessIOLOGICleakUsed(const std::string& panel, const std::string& supply,
                                      const Row& names, const Row& values) {
    const std::string& mode = RowValue("Actual Register Mode", names, values);
    if (mode.empty() || mode == "none") return 0.0;
    return GetIccLeak(panel, "IOLOGIC", mode, RegisteredPins(panel, names, values), "IOLOGIC",
                      supply, names, values);
}

double PC_ENG::ProcessIOLOGICbiasUsed(const std::string& panel, const std::string& supply,
                                      const Row& names, const Row& values) {
    const std::string& mode = RowValue("Actual Register Mode", names, values);
    if (mode.empty() || mode == "none") return 0.0;
    return GetIccBias(panel, "IOLOGIC", mode, RegisteredPins(panel, names, values), "IOLOGIC",
                      supply, names, values);
}

// ---- External termination ----------------------------------------------------------

PC_ENG::Termination PC_ENG::TerminationOf(const std::string& panel, const Row& names,
                                          const Row& values, const std::string& supply, bool log) {
    Termination t;
    auto say = [log](const char* line) {
        if (log) Log(line);
    };
    // printf to the log when this call logs.
    auto sayf = [log](const char* format, auto... args) {
        if (log) Logf(format, args...);
    };
    const double input = Count("I/P", names, values);
    const double output = Count("O/P", names, values);
    const double bidi = Count("Bidi", names, values);
    const std::string& type = RowValue("Type", names, values);
    t.supply = Count("VCCIO", names, values);
    t.rthLoad = Count("Rth (Ohm)", names, values);
    t.vthLoad = Count("Vth (V)", names, values);
    say("Termination Calculation iff vthLoad > 0 && IsDifferentialTrue(c_type) == 0 && (input > 0 "
        "|| output > 0 || bidi > 0)");
    const bool differential = IsDifferentialTrue(type);
    sayf("IsDifferentialTrue(c_type) = %s", differential ? "True" : "False");
    if (!(t.vthLoad > 0.0) || differential || !(input > 0 || output > 0 || bidi > 0) ||
        panel != "I/O Term")
        return t;
    say("Termination Calculation activated");
    t.active = true;

    // The driver's pull-up and pull-down of the standard.
    const std::string readOn = pwc::ReadsTerminationOnVccio(ArchName()) ? "VCCIO" : supply;
    const std::string item = type.substr(0, type.find('-'));
    auto coef = [&](const char* letter) {
        return FindABCDusedvalueFromPwrSupply(readOn, "O/P TERMINATION", item, "", letter);
    };
    const std::string a = coef("A");
    if (a == "VCCIO") {
        t.vthPullup = t.supply;
        sayf("vthPullup (VCCIO) from GUI is: %g\n", t.vthPullup);
    } else if (a == "VCCAUX") {
        const std::string& vccaux = RowValue("VCCAUX", names, values);
        t.vthPullup = ToNumber(vccaux);
        sayf("vthPullup (VCCAUX) from GUI is: %s\n", vccaux.c_str());
    } else {
        t.vthPullup = ToNumber(a);
    }
    t.rthPullup = ToNumber(coef("B"));
    t.vthPulldown = ToNumber(coef("C"));
    t.rthPulldown = ToNumber(coef("D"));

    // A network without resistance or supply carries no modelled current.
    const double up = t.rthPullup + t.rthLoad;
    const double down = t.rthPulldown + t.rthLoad;
    t.ioh = up > 0.0 ? std::fabs(t.vthPullup - t.vthLoad) / up : 0.0;
    sayf(
        "IOH = |vthPullup - vthLoad| / (rthPullup + rthLoad) = |%g - %g| / (%g + %g) = "
        "%g\n",
        t.vthPullup, t.vthLoad, t.rthPullup, t.rthLoad, t.ioh);
    t.voh = t.vthPullup - t.rthPullup * t.ioh;
    sayf("VOH = vthPullup - rthPullup * IOH = %g - %g * %g = %g\n", t.vthPullup, t.rthPullup, t.ioh,
         t.voh);
    t.iol = down > 0.0 ? (t.vthLoad - t.vthPulldown) / down : 0.0;
    sayf(
        "IOL = (vthLoad - vthPulldown) / (rthPulldown + rthLoad) = (%g - %g) / (%g + %g) "
        "= %g\n",
        t.vthLoad, t.vthPulldown, t.rthPulldown, t.rthLoad, t.iol);
    t.vol = t.vthLoad - t.iol * t.rthLoad;
    sayf("VOL = vthLoad - IOL * rthLoad = %g - %g * %g = %g\n", t.vthLoad, t.iol, t.rthLoad, t.vol);
    t.current =
        t.supply != 0.0 ? (((t.supply - t.voh) * t.ioh + t.vol * t.iol) / 2) / t.supply : 0.0;
    sayf("%s = (((%g - %g) * %g + %g * %g) / 2) / %g = %g\n", "iccTermination", t.supply, t.voh,
         t.ioh, t.vol, t.iol, t.supply, t.current);
    return t;
}

double PC_ENG::ProcessExtOutTerm(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply) {
    return TerminationOf(panel, names, values, supply, PD_UTIL::IsCalcLogOpen()).current;
}

// ---- Members of the I/O rows by supply ---------------------------------------------

double PC_ENG::ProcessIOdynVcc(const std::string& panel, const Row& names, const Row& values,
                               const std::string&) {
    return ProcessPIOdyn(panel, "VCC", names, values);
}
double PC_ENG::ProcessIOdynVccio(const std::string& panel, const Row& names, const Row& values,
                                 const std::string&) {
    return ProcessPIOdyn(panel, "VCCIO", names, values);
}
double PC_ENG::ProcessIOdynVccaux(const std::string& panel, const Row& names, const Row& values,
                                  const std::string&) {
    return ProcessPIOdyn(panel, "VCCAUX", names, values);
}
double PC_ENG::ProcessIOdynVtt(const std::string& panel, const Row& names, const Row& values,
                               const std::string&) {
    return ProcessPIOdyn(panel, "VTT", names, values);
}

// The registers' static share belongs to the core supply.
double PC_ENG::ProcessIOleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string&) {
    double i = ProcessPIOleakUsed(panel, "VCC", names, values);
    if (HasIologicDynTerm(ArchName())) i += ProcessIOLOGICleakUsed(panel, "VCC", names, values);
    return i;
}
double PC_ENG::ProcessIOleakVccioUsed(const std::string& panel, const Row& names, const Row& values,
                                      const std::string&) {
    return ProcessPIOleakUsed(panel, "VCCIO", names, values);
}
double PC_ENG::ProcessIOleakVccauxUsed(const std::string& panel, const Row& names,
                                       const Row& values, const std::string&) {
    return ProcessPIOleakUsed(panel, "VCCAUX", names, values);
}
double PC_ENG::ProcessIOleakVttUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string&) {
    return ProcessPIOleakUsed(panel, "VTT", names, values);
}

double PC_ENG::ProcessIObiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string&) {
    double i = ProcessPIObiasUsed(panel, "VCC", names, values);
    if (HasIologicDynTerm(ArchName())) i += ProcessIOLOGICbiasUsed(panel, "VCC", names, values);
    return i;
}

// On the termination tab the VCCIO current is that of the drivers into their
// termination: the model gives one driver's current, and each output or
// bidirectional pin of the row drives its own network.
double PC_ENG::ProcessIObiasVccioUsed(const std::string& panel, const Row& names, const Row& values,
                                      const std::string&) {
    if (panel != "I/O Term") return ProcessPIObiasUsed(panel, "VCCIO", names, values);
    const double drivers = Count("O/P", names, values) + Count("Bidi", names, values);
    const double i = ProcessExtOutTerm(panel, names, values) * drivers;
    if (PD_UTIL::IsCalcLogOpen())
        LogTerms("IccBiasIOvccioUsed", "", {"iccTermination * (output + bidi)"}, {i});
    return i;
}
double PC_ENG::ProcessIObiasVccauxUsed(const std::string& panel, const Row& names,
                                       const Row& values, const std::string&) {
    return ProcessPIObiasUsed(panel, "VCCAUX", names, values);
}

double PC_ENG::ProcessIObiasVttUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string&) {
    return ProcessPIObiasUsed(panel, "VTT", names, values);
}

// ---- The rows' members chosen by the selectors ---------------------------------------

double PC_ENG::SelectIOdynVcc(const std::string& panel, const Row& names, const Row& values,
                              const std::string&) {
    return ProcessFormulaDynVcc(panel, names, values);
}
double PC_ENG::SelectIOdynVccaux(const std::string& panel, const Row& names, const Row& values,
                                 const std::string&) {
    return ProcessFormulaDynVccaux(panel, names, values);
}
double PC_ENG::SelectIObiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string&) {
    return ProcessFormulaBiasUsedVcc(panel, names, values);
}

// ---- Unused pins ----------------------------------------------------------------------

// The per-pin term of the unused type over all pins of the bank, the block
// term over its free pins.
double PC_ENG::ProcessIOunused(bool leak, const std::string& panel, const Row& names,
                               const Row& values, const std::string& supply) {
    const std::string item = DetermineInputPIOtype(UnusedIoType());
    return SumIccTerms(std::string(leak ? "IccLeakIO" : "IccBiasIO") + supply + "Unused",
                       {{leak ? IccModel::LeakUnused : IccModel::BiasUnused, panel, "IO", item,
                         "IO_total", "IO_total"},
                        {leak ? IccModel::LeakDFBUnused : IccModel::BiasDFBUnused, panel, "IO",
                         "DCforBLOCK_unused", "IO_unused", "IO_unused"}},
                       supply, names, values);
}

double PC_ENG::ProcessIOleakVccUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string&) {
    return ProcessIOunused(true, panel, names, values, "VCC");
}
double PC_ENG::ProcessIOleakVccioUnused(const std::string& panel, const Row& names,
                                        const Row& values, const std::string&) {
    return ProcessIOunused(true, panel, names, values, "VCCIO");
}
double PC_ENG::ProcessIOleakVccauxUnused(const std::string& panel, const Row& names,
                                         const Row& values, const std::string&) {
    return ProcessIOunused(true, panel, names, values, "VCCAUX");
}
double PC_ENG::ProcessIOleakVttUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string&) {
    return ProcessIOunused(true, panel, names, values, "VTT");
}
double PC_ENG::ProcessIObiasVccUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string&) {
    return ProcessIOunused(false, panel, names, values, "VCC");
}
double PC_ENG::ProcessIObiasVccioUnused(const std::string& panel, const Row& names,
                                        const Row& values, const std::string&) {
    return ProcessIOunused(false, panel, names, values, "VCCIO");
}
double PC_ENG::ProcessIObiasVccauxUnused(const std::string& panel, const Row& names,
                                         const Row& values, const std::string&) {
    return ProcessIOunused(false, panel, names, values, "VCCAUX");
}
double PC_ENG::ProcessIObiasVttUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string&) {
    return ProcessIOunused(false, panel, names, values, "VTT");
}

// ---- A bank's own terms ---------------------------------------------------------------

double PC_ENG::BankTerms(bool leak, const std::string& table, const Row& names, const Row& values,
                         const std::string& supply) {
    const std::string& bank = RowValue("Bank", names, values);
    const int bankRow = BankRowOf(bank);
    const std::string arch = ArchName();
    const bool log = PD_UTIL::IsCalcLogOpen();
    std::vector<const char*> terms;
    std::vector<double> numbers;
    auto term = [&](const char* suffix) {
        const std::string item = std::string("BANK") + suffix;
        if (log) terms.push_back(suffix);
        numbers.push_back(
            leak ? GetIccLeak(table, "IO BANK REFS", item, 1.0, item, supply, names, values)
                 : GetIccBias(table, "IO BANK REFS", item, 1.0, item, supply, names, values));
    };
    // An unpowered bank draws its blank term alone.
    if (RowValue("Blank", names, values) == "Yes") {
        term("_BLANK");
        if (log) LogTerms((leak ? "IccLeakBank" : "IccBiasBank") + supply, "BANK", terms, numbers);
        return Sum(numbers);
    }
    const std::vector<bankdata>& rows = BankUseOf(bank).rows;
    auto any = [&rows](bool output, auto test) {
        for (const bankdata& d : rows) {
            const bool side = output ? d.hasOutput || d.hasBidi : d.hasInput || d.hasBidi;
            if (side && test(d.type)) return true;
        }
        return false;
    };
    const bool inRd = BankAllows(bankRow, "Allow InRD Shut-off");
    const bool lvdso = BankAllows(bankRow, "Allow LVDSO Shut-off");
    auto standby = [this](bool allowed, const std::string& type) {
        return allowed && IsStandbyIoType(type);
    };

    if (powerMode == 1) term("_SLEEP");
    term("_BASELINE");
    if (RowValue("Pullmode", names, values) != "none") {
        Log("There is Bank Pull.");
        term(BankAllows(bankRow, "Allow PUSL Shut-off") ? "_PU_PD_KPR_standby" : "_PU_PD_KPR");
    } else {
        Log("There is No Bank Pull.");
    }
    bool terminated = false;
    for (const bankdata& d : rows) terminated |= HasOnChipTermination(d.type);
    if (terminated) {
        Log("On chip termination is on.");
        term("_TERMINATION");
    } else {
        Log("There is NO Bank Termination.");
    }
    if (any(false, [](const std::string& t) { return t.find("LVCMOS") != std::string::npos; }))
        term("_LVCMOS_INP");
    if (any(false, [this](const std::string& t) { return IsDifferentialTrue(t); })) {
        const bool sb = HasBankDiffInputStandby(arch) && any(false, [&](const std::string& t) {
                            return IsDifferentialTrue(t) && standby(inRd, t);
                        });
        term(sb ? "_DIFF_INP_standby" : "_DIFF_INP");
    }
    if (any(true, [this](const std::string& t) { return IsSingleEnd(t); })) term("_SE_OUT");
    auto trueDiffOut = [this](const std::string& t) {
        return IsDifferentialTrue(t) && isLVDStype(t);
    };
    if (any(true, trueDiffOut)) {
        const bool sb =
            any(true, [&](const std::string& t) { return trueDiffOut(t) && standby(lvdso, t); });
        term(sb ? "_TRUEDIFF_OUT_standby" : "_TRUEDIFF_OUT");
    }
    if (HasBidiDiffBankTerm(arch)) {
        bool bidiDiff = false, sb = false;
        for (const bankdata& d : rows) {
            if (!d.hasBidi || !IsDifferentialTrue(d.type)) continue;
            bidiDiff = true;
            sb |= standby(inRd, d.type);
        }
        if (bidiDiff) term(sb ? "_DIFF_INP_TRUEDIFF_OUT_standby" : "_DIFF_INP_TRUEDIFF_OUT");
    }
    auto referenced = [](const std::string& t) {
        return t.find("SSTL") != std::string::npos || t.find("HSTL") != std::string::npos;
    };
    if (any(false, referenced))
        term(any(false, [&](const std::string& t) { return referenced(t) && standby(inRd, t); })
                 ? "_INTERNAL_VREF_standby"
                 : "_INTERNAL_VREF");
    if (!leak) term("_SLBIAS");
    if (log) LogTerms((leak ? "IccLeakBank" : "IccBiasBank") + supply, "BANK", terms, numbers);
    return Sum(numbers);
}

double PC_ENG::ProcessBankLeak(const std::string& table, const Row& names, const Row& values,
                               const std::string& supply) {
    return BankTerms(true, table, names, values, supply);
}
double PC_ENG::ProcessBankBias(const std::string& table, const Row& names, const Row& values,
                               const std::string& supply) {
    return BankTerms(false, table, names, values, supply);
}

double PC_ENG::ProcessBankLeakVcc(const std::string& panel, const Row& names, const Row& values,
                                  const std::string&) {
    return ProcessBankLeak(panel, names, values, "VCC");
}
double PC_ENG::ProcessBankLeakVccio(const std::string& panel, const Row& names, const Row& values,
                                    const std::string&) {
    return ProcessBankLeak(panel, names, values, "VCCIO");
}
double PC_ENG::ProcessBankLeakVccaux(const std::string& panel, const Row& names, const Row& values,
                                     const std::string&) {
    return ProcessBankLeak(panel, names, values, "VCCAUX");
}
double PC_ENG::ProcessBankBiasVcc(const std::string& panel, const Row& names, const Row& values,
                                  const std::string&) {
    return ProcessBankBias(panel, names, values, "VCC");
}
double PC_ENG::ProcessBankBiasVccio(const std::string& panel, const Row& names, const Row& values,
                                    const std::string&) {
    return ProcessBankBias(panel, names, values, "VCCIO");
}
double PC_ENG::ProcessBankBiasVccaux(const std::string& panel, const Row& names, const Row& values,
                                     const std::string&) {
    return ProcessBankBias(panel, names, values, "VCCAUX");
}

// ---- The JTAG pins on VCCIO ------------------------------------------------------------

double PC_ENG::ProcessJtagPins(bool leak, const std::string& supply, const std::string& logName,
                               const Row& names, const Row& values) {
    const double in = Count("Input", names, values);
    const double out = Count("Output", names, values);
    std::vector<double> numbers;
    if (leak) {
        numbers = {
            GetIccLeakDFB("JTAG", "JTAG", "DCforBLOCK_used", 1.0, "JTAG", supply, names, values),
            GetIccLeak("JTAG", "JTAG", "Input", in, "JTAG_input", supply, names, values),
            GetIccLeak("JTAG", "JTAG", "Output", out, "JTAG_output", supply, names, values)};
    } else {
        // D in mA per pin.
        for (const auto& [pin, count] :
             {std::pair<const char*, double>{"Input", in}, {"Output", out}})
            numbers.push_back(
                0.001 * ToNumber(FindABCDusedvalueFromPwrSupply(supply, "JTAG", pin, "", "D")) *
                count);
    }
    if (PD_UTIL::IsCalcLogOpen())
        LogTerms(logName, leak ? "IccLeakJtag" : "IccBiasJtag",
                 leak ? std::vector<const char*>{"DFB", "Input", "Output"}
                      : std::vector<const char*>{"Input", "Output"},
                 numbers);
    return Sum(numbers);
}

double PC_ENG::ProcessJtagLeakVccioUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string&) {
    return ProcessJtagPins(true, "VCCIO", "IccLeakJtagVccioUsed", names, values);
}

double PC_ENG::ProcessJtagBiasVccioUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string&) {
    return ProcessJtagPins(false, "VCCIO", "IccBiasJtagVccioUsed", names, values);
}
