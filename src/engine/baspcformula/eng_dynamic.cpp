// Dynamic current: C (pF) x V x F (Hz) x AF (fraction) x count, as the
// block's "_ICCdyn" equation states it; and the coefficient look-up that the
// leakage and bias models share.
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "baspclator/pc_lator.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

constexpr double kPico = 1e-12;
constexpr double kMega = 1e6;

struct DynNumbers {
    const std::string* dpm;
    double c, voltage, freq, af, count;
};

// Values of a dynamic equation's variables; an unknown name stands for itself.
// fixed(value, precision) gives the "%.<precision>lf" text.
template <typename Fixed>
void BindDynamic(const PC_ENG::Row& variables, const DynNumbers& n, PC_ENG::Row& out,
                 Fixed&& fixed) {
    out.resize(variables.size());
    for (size_t i = 0; i < variables.size(); ++i) {
        const std::string& v = variables[i];
        if (Is(v, "_DPM"))
            out[i] = *n.dpm;
        else if (Is(v, "_C_COMP_used"))
            out[i] = fixed(n.c, 20);
        else if (Is(v, "_SUPPLY"))
            out[i] = fixed(n.voltage, 2);
        else if (Is(v, "F"))
            out[i] = fixed(n.freq, 20);
        else if (Is(v, "AF"))
            out[i] = fixed(n.af, 20);
        else if (Is(v, "_COMP"))
            out[i] = fixed(n.count, 2);
        else
            out[i] = v;
    }
}

double Column(const char* name, const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return ToNumber(RowValue(name, names, values));
}

bool Holds(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

// The shown equation of a halved frequency. Without "* F *" the search gives
// npos and the tail starts at its fifth character, as it always has.
std::string HalvedDisplay(const std::string& equation) {
    const size_t pos = equation.find("* F *");
    const size_t tail = pos + 5;
    return equation.substr(0, pos) + "* (F / 2 ) *" +
           (tail <= equation.size() ? equation.substr(tail) : std::string());
}

}  // namespace

// ---- Evaluation shared by every model ------------------------------------------

double PC_ENG::EvaluateAndLog(const std::string& formula, const Row* variables,
                              const std::string* display, const char* format,
                              const std::string& first, const std::string& second,
                              const std::string& third, const std::string& item,
                              const std::string& supply, const char* tableName) {
    static const Row none;
    traceText.clear();
    const Row& vars = variables ? *variables : none;
    if (!variables) boundValues.clear();
    const bool shown = PD_UTIL::IsCalcLogOpen() || debugHtml;
    const int count = static_cast<int>(vars.size());
    const double result =
        shown ? PC_LATOR::ProcessCalculator(formula, traceText, vars, boundValues, count)
              : PC_LATOR::EvaluateFormula(formula, vars, boundValues, count);
    if (shown) {
        const std::string line =
            LogLine(format, first, second, third, display ? *display : formula);
        PD_UTIL::FCprintln(line);
        PD_UTIL::FCprintln(traceText);
        SaveToDebugPanel(currentPanelName, line, traceText, result, item, supply, tableName);
    }
    return result;
}

// ---- The workers --------------------------------------------------------------------

double PC_ENG::GetIccDyn(const std::string& equationSection, const std::string& block,
                         const std::string& item, double count, std::string label,
                         const std::string& supply, double freq, double af, const Row& names,
                         const Row& values, bool fPer2) {
    if (label.find('@') != std::string::npos) label += RowValue("Device", names, values);
    const Row* variables = nullptr;
    const std::string& equation = FormulaFor(equationSection, "_ICCdyn", variables);
    auto fixed = [this](double v, int p) -> const std::string& { return PrintFixed(v, p); };
    DynNumbers n;
    n.dpm = &RowValue("DPM", names, values);
    n.voltage = FindCorrectSupply(supply, names, values);
    n.c = FindCoefficient(supply, block, item, "", "C").number * kPico;
    const std::string clock = FindCorrectClockName(equationSection, block, names, values);
    n.af = getAFfromClockDCCMap(clock, af);
    n.freq = getFreqfromClockOscStatue(clock, freq);
    n.count = count;
    if (variables) BindDynamic(*variables, n, boundValues, fixed);
    std::string display;
    if (fPer2 && (PD_UTIL::IsCalcLogOpen() || debugHtml)) display = HalvedDisplay(equation);
    return EvaluateAndLog(equation, variables, fPer2 ? &display : nullptr,
                          "ICCdyn%s_%s_%s = %s = ", block, label, supply, item, supply,
                          "DynamicIcc");
}

double PC_ENG::GetIccDyn(const std::string& equationSection, const std::string& item, double count,
                         std::string label, const std::string& supply, double freq, double af,
                         double c, const Row& names, const Row& values) {
    if (label.find('@') != std::string::npos) label += RowValue("Device", names, values);
    const Row* variables = nullptr;
    const std::string& equation = FormulaFor(equationSection, "_ICCdyn", variables);
    auto fixed = [this](double v, int p) -> const std::string& { return PrintFixed(v, p); };
    DynNumbers n;
    n.dpm = &RowValue("DPM", names, values);
    n.voltage = FindCorrectSupply(supply, names, values);
    n.c = c;
    const std::string clock = FindCorrectClockName(equationSection, "", names, values);
    n.af = getAFfromClockDCCMap(clock, af);
    n.freq = getFreqfromClockOscStatue(clock, freq);
    n.count = count;
    if (variables) BindDynamic(*variables, n, boundValues, fixed);
    return EvaluateAndLog(equation, variables, nullptr, "IccDyn_%s_%s_%s = %s = ", equationSection,
                          label, supply, item, supply, "DynamicIcc");
}

double PC_ENG::ProcessIccDyn(const std::string& equationSection, double freq, double af,
                             double count, double c, double voltage, const std::string& rowName,
                             const std::string& columnName, const Row& names, const Row& values,
                             const std::string& tableName) {
    const Row* variables = nullptr;
    const std::string& equation = FormulaFor(equationSection, "_ICCdyn", variables);
    auto fixed = [this](double v, int p) -> const std::string& { return PrintFixed(v, p); };
    DynNumbers n;
    n.dpm = &RowValue("DPM", names, values);
    n.voltage = voltage;
    n.c = c;
    const std::string clock = FindCorrectClockName(equationSection, "", names, values);
    n.af = getAFfromClockDCCMap(clock, af);
    n.freq = getFreqfromClockOscStatue(clock, freq);
    n.count = count;
    if (variables) BindDynamic(*variables, n, boundValues, fixed);
    return EvaluateAndLog(equation, variables, nullptr, "IccDyn_%s_%s_%s= %s = ", rowName,
                          columnName, "VCC", columnName, "VCC", tableName.c_str());
}

// ---- The overloads ------------------------------------------------------------------

double PC_ENG::GetIccDyn(const std::string& equationSection, const std::string& block,
                         const std::string& item, const std::string& column,
                         const std::string& label, const std::string& supply, double freq,
                         double af, const Row& names, const Row& values) {
    const double count = Column(column.c_str(), names, values);
    return GetIccDyn(equationSection, block, item, count, label, supply, freq, af, names, values,
                     false);
}

double PC_ENG::GetIccDyn(const std::string& equationSection, const std::string& block,
                         const std::string& item, double count, const std::string& label,
                         const std::string& supply, const Row& names, const Row& values) {
    const std::string freqName = FindFreqName(block, label, names, values);
    const std::string afName = FindAFname(block, label, names, values);
    const double freq = Column(freqName.c_str(), names, values) * kMega;
    double af;
    if (label == "ISBCLK_used") {
        PD_UTIL::FCprintln("AF = 100%, only for ISBCLK_used\n");
        af = 1.0;
    } else {
        af = Column(afName.c_str(), names, values) / 100.0;
    }
    return GetIccDyn(equationSection, block, item, count, label, supply, freq, af, names, values,
                     false);
}

double PC_ENG::GetIccDyn(const std::string& equationSection, const std::string& block,
                         const std::string& item, const std::string& column,
                         const std::string& label, const std::string& supply, const Row& names,
                         const Row& values) {
    const double count = Column(column.c_str(), names, values);
    return GetIccDyn(equationSection, block, item, count, label, supply, names, values);
}

double PC_ENG::GetIccDynFper2(const std::string& equationSection, const std::string& block,
                              const std::string& item, double count, const std::string& label,
                              const std::string& supply, const Row& names, const Row& values) {
    const std::string freqName = FindFreqName(block, label, names, values);
    const std::string afName = FindAFname(block, label, names, values);
    const double freq = Column(freqName.c_str(), names, values) * kMega * 0.5;
    const double af = Column(afName.c_str(), names, values) / 100.0;
    return GetIccDyn(equationSection, block, item, count, label, supply, freq, af, names, values,
                     true);
}

double PC_ENG::GetIccDynFper2(const std::string& equationSection, const std::string& block,
                              const std::string& item, const std::string& column,
                              const std::string& label, const std::string& supply, const Row& names,
                              const Row& values) {
    const double count = Column(column.c_str(), names, values);
    return GetIccDynFper2(equationSection, block, item, count, label, supply, names, values);
}

double PC_ENG::GetIccDynAF100(const std::string& equationSection, const std::string& block,
                              const std::string& item, double count, const std::string& label,
                              const std::string& supply, double freq, const Row& names,
                              const Row& values) {
    const double af = std::strtod("100", nullptr) / 100.0;
    if (Holds(block, "PLL")) freq = GetFreqForPLL(freq, names, values);
    return GetIccDyn(equationSection, block, item, count, label, supply, freq, af, names, values,
                     false);
}

double PC_ENG::GetIccDynAF100(const std::string& equationSection, const std::string& block,
                              const std::string& item, double count, const std::string& label,
                              const std::string& supply, const Row& names, const Row& values) {
    const std::string freqName = FindFreqName(block, label, names, values);
    const double freq = Column(freqName.c_str(), names, values) * kMega;
    return GetIccDynAF100(equationSection, block, item, count, label, supply, freq, names, values);
}

double PC_ENG::GetIccDynAF100(const std::string& equationSection, const std::string& block,
                              const std::string& item, const std::string& column,
                              const std::string& label, const std::string& supply, const Row& names,
                              const Row& values) {
    const double count = Column(column.c_str(), names, values);
    return GetIccDynAF100(equationSection, block, item, count, label, supply, names, values);
}

double PC_ENG::GetIccDynAF100_1SS(const std::string& block, const std::string& item, double count,
                                  const std::string&, const std::string& supply, double freq,
                                  const Row& names, const Row& values) {
    const double c = FindCoefficient(supply, block, item, "", "C").number * kPico;
    if (Holds(block, "PLL")) freq = GetFreqForPLL(freq, names, values);
    return GetIccDyn("PCS", item, count, "Output", supply, freq, 1.0, c, names, values);
}

// ---- Column names, clocks and the PLL ------------------------------------------------

namespace {

int FirstNameHolding(const PC_ENG::Row& names, const char* part) {
    for (size_t i = 0; i < names.size(); ++i)
        if (names[i].find(part) != std::string::npos) return static_cast<int>(i);
    return -1;
}

}  // namespace

std::string PC_ENG::FindFreqName(const std::string& block, const std::string& label,
                                 const Row& names, const Row& values) {
    if (Is(block, "IO")) return "Input Freq. (MHz)";
    if (Is(block, "ROUTING")) {
        const int at = RowNamePosition(rowNames.freqHolder, names,
                                       [&] { return FirstNameHolding(names, "Freq."); });
        return at < 0 ? "Freq. (MHz)" : names[at];
    }
    if (Is(block, "MCLK")) {
        const std::string token = label.substr(0, label.find('@'));
        if (token != "DEFAULT") {
            const std::string name = token + " Freq. (MHz)";
            if (!RowValue(name, names, values).empty()) return name;
        }
    }
    return "Freq. (MHz)";
}

std::string PC_ENG::FindAFname(const std::string& block, const std::string&, const Row& names,
                               const Row&) {
    if (Is(block, "IO")) return "Input AF (%)";
    if (Is(block, "ROUTING")) {
        const int at = RowNamePosition(rowNames.afHolder, names,
                                       [&] { return FirstNameHolding(names, "AF (%)"); });
        return at < 0 ? "AF (%)" : names[at];
    }
    return "AF (%)";
}

std::string PC_ENG::FindCorrectClockName(const std::string&, const std::string&, const Row& names,
                                         const Row& values) {
    const std::string& clock = RowValue("Clock Name", names, values);
    if (!clock.empty()) return clock;
    if (defaultClockName.empty()) defaultClockName = "Default_Clock_Name";
    return defaultClockName;
}

double PC_ENG::getFreqfromClockOscStatue(const std::string& clock, double freq) const {
    if (clockOscFlag && !clockOscList.empty() && clockOscList.count(clock)) return 0.0;
    return freq;
}

double PC_ENG::getAFfromClockDCCMap(const std::string& clock, double af) const {
    if (!clockDCCFlag) return af;
    auto it = clockDCCMap.find(clock);
    if (it == clockDCCMap.end()) return af;
    return it->second == "Disabled" ? 0.0 : af;
}

double PC_ENG::GetFreqForPLL(double freq, const Row& names, const Row& values) {
    const double n = Column("N", names, values);
    const double v = Column("V", names, values);
    double m = Column("M", names, values);
    if (m == 0.0) {
        PD_UTIL::FCprintln("Error! M = 0, setting M = 1.");
        m = 1.0;
    }
    if (pwc::IsBf7p00Arch(ArchName())) {
        const double result = (freq + freq * n * v / m + freq * n / m) / 3.0;
        if (PD_UTIL::IsCalcLogOpen())
            PD_UTIL::FCprintln("PLL uses Fvco=(Freq + (Freq * N * V / M) + (Freq * N / M)) / 3 = " +
                               Print("%g", result));
        return result;
    }
    const double result = freq * n * v / m;
    if (PD_UTIL::IsCalcLogOpen()) {
        char text[256];
        std::snprintf(text, sizeof text, "%g*%g*%g/%g=%g", freq, n, v, m, result);
        PD_UTIL::FCprintln(std::string("PLL uses Fvco=Freq*N*V/M=") + text);
    }
    return result;
}

// ---- Coefficients ------------------------------------------------------------------------

namespace {

bool HasMember(const PD_PWRSECT* pwr, const std::string& item) {
    if (item.empty()) return true;
    if (!pwr) return false;
    for (const PD_MEMBER& m : pwr->members)
        if (PD_UTIL::SpecialCompare(m.name, item) == 0) return true;
    return false;
}

}  // namespace

bool PC_ENG::PwrDataAvailable(const std::string& block, const std::string& item) {
    return HasMember(item.empty() ? nullptr : PwrSection(block), item);
}

namespace {

// "_<L>_DCforBLOCK_used" or "_unused" with L one of the record's letters.
bool IsDCLetterKey(const std::string& key) {
    if (key.size() < 3 || key[0] != '_' || key[2] != '_') return false;
    const char l = key[1];
    if (l < 'A' || l > 'J' || l == 'C') return false;
    return key.compare(3, std::string::npos, "DCforBLOCK_used") == 0 ||
           key.compare(3, std::string::npos, "DCforBLOCK_unused") == 0;
}

std::string Field(const PD_DCBLOCK* record, char letter) {
    const std::string* text = record ? record->Letter(letter) : nullptr;
    return text ? *text : "0";
}

}  // namespace

std::string PC_ENG::FindABCDusedvalueFromPwrSupply(const std::string& supply,
                                                   const std::string& block,
                                                   const std::string& item, const std::string& sub,
                                                   const std::string& letter) {
    return FindCoefficient(supply, block, item, sub, letter).text;
}

const PC_ENG::Coefficient& PC_ENG::FindCoefficient(const std::string& supply,
                                                   const std::string& block,
                                                   const std::string& item, const std::string& sub,
                                                   const std::string& letter) {
    const Coefficient* found = nullptr;
    if (caches.on) {
        const std::uint64_t hash = HashTexts({&block, &item, &sub, &supply, &letter});
        const auto range = caches.coefficients.equal_range(hash);
        for (auto it = range.first; it != range.second && !found; ++it) {
            const ModelCaches::KeyedCoefficient& e = it->second;
            if (e.block == block && e.item == item && e.sub == sub && e.supply == supply &&
                e.letter == letter)
                found = &e.value;
        }
        if (!found)
            found = &caches.coefficients
                         .emplace(hash,
                                  ModelCaches::KeyedCoefficient{
                                      block, item, sub, supply, letter,
                                      LookUpCoefficient(supply, block, item, sub, letter)})
                         ->second.value;
    } else {
        coefficientScratch = LookUpCoefficient(supply, block, item, sub, letter);
        found = &coefficientScratch;
    }
    if (found->note != CoefficientNote::None && PD_UTIL::IsCalcLogOpen()) {
        if (found->note == CoefficientNote::NoSection)
            PD_UTIL::FCprintln("Note: Could'nt find data section :" + block);
        else
            PD_UTIL::FCprintln("Note: There is no supply " + supply + " in data section " + block);
    }
    return *found;
}

PC_ENG::Coefficient PC_ENG::LookUpCoefficient(const std::string& supply, const std::string& block,
                                              const std::string& item, const std::string& sub,
                                              const std::string& letter) {
    Coefficient result;
    result.text = LookUpCoefficientText(supply, block, item, sub, letter, result.note);
    result.number = ToNumber(result.text);
    return result;
}

std::string PC_ENG::LookUpCoefficientText(const std::string& supply, const std::string& block,
                                          const std::string& item, const std::string& sub,
                                          const std::string& letter, CoefficientNote& note) {
    PD_PWRSECT* pwr = PwrSection(block);
    if (!pwr) {
        note = CoefficientNote::NoSection;
        return "0";
    }
    std::string name = item;
    if (!Holds(name, "DCforBLOCK_used") && !Holds(name, "DCforBLOCK_unused") &&
        !Holds(name, "DCforBLOCK_sleep") && !HasMember(pwr, name)) {
        if (Holds(name, "@")) {
            // A name with its device already given goes on to the member walk.
        } else {
            name += std::string("@") + DeviceName();
            if (!HasMember(pwr, name) && !HasMember(pwr, name + "_" + PackageName())) return "0";
        }
    }
    const char l = letter.empty() ? '\0' : letter[0];
    std::string key = name + sub;
    if (name == "DCforBLOCK_used" || name == "DCforBLOCK_unused") key = "_" + letter + "_" + name;

    if (pwr->GetSupplyIndex(supply.c_str()) < 0) {
        note = CoefficientNote::NoSupply;
        return "0";
    }
    if (IsDCLetterKey(key))
        return Field(Holds(key, "_used") ? pwr->GetDCblockUsed(supply.c_str())
                                         : pwr->GetDCblockUnused(supply.c_str()),
                     l);
    if (key == "DCforBLOCK_standby" || key == "_DCforBLOCK_standby")
        return Field(pwr->GetDCblockStandby(supply.c_str()), l);
    if (key == "DCforBLOCK_sleep") return Field(pwr->GetDCblockSleep(supply.c_str()), l);
    if (l < 'A' || l > 'J') return "0";
    if (!Holds(key, "@")) return pwr->GetLetter(l, key.c_str(), supply.c_str());
    const std::string withPackage = key + "_" + PackageName();
    for (const PD_MEMBER& m : pwr->members) {
        const size_t at = m.name.find('@');
        const bool devicePackage =
            at != std::string::npos && at > 0 && m.name.find('_', at) != std::string::npos;
        const std::string& target = devicePackage ? withPackage : key;
        if (PD_UTIL::SpecialCompare(m.name, target) == 0)
            return pwr->GetLetter(l, m.name.c_str(), supply.c_str());
    }
    return "0";
}
