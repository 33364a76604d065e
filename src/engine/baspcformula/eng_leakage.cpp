// Leakage current: A (uA) x e^(B x TJ), or the fifth-degree polynomial in TJ,
// scaled by the supply's K factor, the process multiplier and a count.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "baspclator/pc_lator.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

constexpr double kMicro = 1e-6;

// Names and texts of one of the four kinds.
struct LeakForm {
    const char* key;              // equation key of the .pqn section
    const char* coefficientTail;  // "_COMP_used", "_DCforBLOCK_unused", ...
    std::string_view countName;   // "_COMP_used", "_COUNT_unused", ...
    const char* blockItem;        // the DC block item that gives the coefficients; null: any
    bool sleepCounts;             // "DCforBLOCK_sleep" gives the coefficients too
    const char* equationFormat;
    const char* hardFormat;      // exponential form
    const char* hardPolyFormat;  // polynomial form
    const char* hardExpText;
    const char* hardPolyText;
    const char* table;
};

const LeakForm kLeakForms[] = {
    {"_ICCleak_used", "_COMP_used", "_COMP_used", nullptr, false,
     "ICCleakused_%s_%s_%s = %s = ", "ICCleakused_%s_%s_%s= %s = ", "ICCleakused_%s_%s_%s= %s = ",
     "_Ksupply * _ProcessX * _A_COMP_used * e^(_B_COMP_used * T) * _COMP_used",
     "_Ksupply * _ProcessX * (_E_COMP_used * T^5 + _F_COMP_used * T^4 + _G_COMP_used * T^3 + "
     "_H_COMP_used * T^2 +  _I_COMP_used * T + _J_COMP_used) * _COMP_used",
     "UsedLeakIcc"},
    {"_ICCleak_unused", "_COMP_unused", "_COMP_unused", nullptr, false,
     "ICCleakunused_%s_%s_%s= %s = ", nullptr, nullptr, nullptr, nullptr, "UnusedLeakIcc"},
    {"_ICCleakDFB_used", "_DCforBLOCK_used", "_COUNT_used", "DCforBLOCK_used", true,
     "ICCleakDFBused_%s_%s_%s= %s = ", "ICCleakused_%s_%s_%s= %s = ", "ICCleakused_%s_%s_%s= %s = ",
     "_Ksupply * _ProcessX * _A_DCforBLOCK_used * e^(_B_DCforBLOCK_used * T) * _COUNT_used",
     "_Ksupply * _ProcessX * (_E_DCforBLOCK_used * T^5 + _F_DCforBLOCK_used * T^4 + "
     "_G_DCforBLOCK_used * T^3 + _H_DCforBLOCK_used * T^2 +  _I_DCforBLOCK_used * T + "
     "_J_DCforBLOCK_used) * _COUNT_used",
     "UsedLeakIcc"},
    {"_ICCleakDFB_unused", "_DCforBLOCK_unused", "_COUNT_unused", "DCforBLOCK_unused", false,
     "ICCleakDFBunused_%s_%s_%s= %s = ", "ICCleakDFBunused_%s_%s_%s= %s = ",
     "ICCleakused_%s_%s_%s= %s = ",
     "_Ksupply * _ProcessX * _A_DCforBLOCK_unused * e^(_B_DCforBLOCK_unused * T) * "
     "_COUNT_unused",
     "_Ksupply * _ProcessX * (_E_DCforBLOCK_unused * T^5 +  _F_DCforBLOCK_unused * T^4 + "
     "_G_DCforBLOCK_unused * T^3 + _H_DCforBLOCK_unused * T^2 +  _I_DCforBLOCK_unused * T + "
     "_J_DCforBLOCK_unused) * _COUNT_unused",
     "UnusedLeakIcc"},
};

// The letter of a coefficient variable "_<L><tail>", or 0.
// Leakage has no C or D coefficient: those names stay themselves.
char CoefficientLetter(const std::string& name, const char* tail) {
    if (name.size() < 3 || name[0] != '_' || name[2] != '_' || name[1] < 'A' || name[1] > 'J' ||
        name[1] == 'C' || name[1] == 'D')
        return 0;
    return std::strcmp(name.c_str() + 2, tail) == 0 ? name[1] : 0;
}

}  // namespace

// ---- The kinds ------------------------------------------------------------------------------

double PC_ENG::GetIccLeak(const std::string& equationSection, const std::string& block,
                          const std::string& item, double count, std::string label,
                          const std::string& supply, const Row& names, const Row& values) {
    if (label.find('@') != std::string::npos) label += RowValue("Device", names, values);
    if (hardCodeFormula(equationSection))
        return LeakHardCoded(LeakKind::Used, block, item, count, label, supply, names, values);
    return LeakEquation(LeakKind::Used, equationSection, block, item, count, label, supply, names,
                        values);
}

double PC_ENG::GetIccLeakUnused(const std::string& equationSection, const std::string& block,
                                const std::string& item, double count, std::string label,
                                const std::string& supply, const Row& names, const Row& values) {
    return LeakEquation(LeakKind::Unused, equationSection, block, item, count, label, supply, names,
                        values);
}

double PC_ENG::GetIccLeakDFB(const std::string& equationSection, const std::string& block,
                             const std::string& item, double count, const std::string& label,
                             const std::string& supply, const Row& names, const Row& values) {
    if (hardCodeFormula(equationSection))
        return LeakHardCoded(LeakKind::DFBUsed, block, item, count, label, supply, names, values);
    return LeakEquation(LeakKind::DFBUsed, equationSection, block, item, count, label, supply,
                        names, values);
}

double PC_ENG::GetIccLeakDFBUnused(const std::string& equationSection, const std::string& block,
                                   const std::string& item, double count, const std::string& label,
                                   const std::string& supply, const Row& names, const Row& values) {
    if (hardCodeFormula(equationSection))
        return LeakHardCoded(LeakKind::DFBUnused, block, item, count, label, supply, names, values);
    return LeakEquation(LeakKind::DFBUnused, equationSection, block, item, count, label, supply,
                        names, values);
}

double PC_ENG::GetIccLeakAt(const std::string& equationSection, const std::string& block,
                            const std::string& item, double count, const std::string& label,
                            const std::string& supply, const Row& names, const Row& values) {
    std::string at = item;
    if (at.find('@') != std::string::npos) at += RowValue("Device", names, values);
    return GetIccLeak(equationSection, block, at, count, label, supply, names, values);
}

// Count-column overloads of the leakage and bias kinds.
#define PWC_LEAK_COLUMN_OVERLOAD(NAME)                                                         \
    double PC_ENG::NAME(const std::string& equationSection, const std::string& block,          \
                        const std::string& item, const std::string& column,                    \
                        const std::string& label, const std::string& supply, const Row& names, \
                        const Row& values) {                                                   \
        const double count = ToNumber(RowValue(column, names, values));                        \
        return NAME(equationSection, block, item, count, label, supply, names, values);        \
    }
PWC_LEAK_COLUMN_OVERLOAD(GetIccLeak)
PWC_LEAK_COLUMN_OVERLOAD(GetIccLeakUnused)
PWC_LEAK_COLUMN_OVERLOAD(GetIccLeakDFB)
PWC_LEAK_COLUMN_OVERLOAD(GetIccLeakDFBUnused)
PWC_LEAK_COLUMN_OVERLOAD(GetIccLeakAt)
PWC_LEAK_COLUMN_OVERLOAD(GetIccBias)
PWC_LEAK_COLUMN_OVERLOAD(GetIccBiasUnused)
PWC_LEAK_COLUMN_OVERLOAD(GetIccBiasDFB)
PWC_LEAK_COLUMN_OVERLOAD(GetIccBiasDFBUnused)
#undef PWC_LEAK_COLUMN_OVERLOAD

// ---- Equation form ------------------------------------------------------------------------

double PC_ENG::LeakEquation(LeakKind kind, const std::string& equationSection,
                            const std::string& block, const std::string& item, double count,
                            const std::string& label, const std::string& supply, const Row& names,
                            const Row& values) {
    const LeakForm& form = kLeakForms[static_cast<int>(kind)];
    const Row* variables = nullptr;
    const std::string& equation = FormulaFor(equationSection, form.key, variables);
    if (variables) {
        // A DC block coefficient counts only for its own record's items.
        const bool coefficients = !form.blockItem || item == form.blockItem ||
                                  item == "DCforBLOCK_standby" ||
                                  (form.sleepCounts && item == "DCforBLOCK_sleep");
        const std::string& tj = RowValue("TJ", names, values);
        const Row& vars = *variables;
        std::string letter(1, ' ');
        boundValues.resize(vars.size());
        for (size_t i = 0; i < vars.size(); ++i) {
            const std::string& v = vars[i];
            std::string& out = boundValues[i];
            if (Is(v, "_Ksupply")) {
                out = KsupplyText(supply);
            } else if (Is(v, "_ProcessX")) {
                out = ProcessXText(names, values);
            } else if (const char l = CoefficientLetter(v, form.coefficientTail)) {
                const bool own = form.blockItem && item == v;
                if (!coefficients && !own) {
                    out = "0";
                    continue;
                }
                letter[0] = l;
                double number = FindCoefficient(supply, block, item, "", letter).number;
                if (l == 'A') number *= kMicro;
                out = PrintFixed(number, 20);
            } else if (Is(v, "T")) {
                out = PrintFixed(ToNumber(tj), 20);
            } else if (v == form.countName) {
                out = PrintFixed(count, 2);
            } else if (Is(v, "e")) {
                out = "2.718282";
            } else {
                out = v;
            }
        }
    }
    return EvaluateAndLog(equation, variables, nullptr, form.equationFormat, block, label, supply,
                          item, supply, form.table);
}

// ---- Built-in forms -----------------------------------------------------------------------

double PC_ENG::LeakHardCoded(LeakKind kind, const std::string& block, const std::string& item,
                             double count, const std::string& label, const std::string& supply,
                             const Row& names, const Row& values) {
    const LeakForm& form = kLeakForms[static_cast<int>(kind)];
    const double k = ToNumber(GetKsupply(supply));
    const double x = ToNumber(ProcessXText(names, values));
    const double t = ToNumber(RowValue("TJ", names, values));
    auto coefficient = [&](const char* letter) {
        return FindCoefficient(supply, block, item, "", letter).number;
    };
    const bool log = PD_UTIL::IsCalcLogOpen() || debugHtml;
    std::string numbers;
    double result;
    const char* format;
    const char* text;
    if (polynomial_equation_type(block)) {
        const double e = coefficient("E"), f = coefficient("F"), g = coefficient("G"),
                     h = coefficient("H"), i = coefficient("I"), j = coefficient("J");
        result =
            (e * std::pow(t, 5) + f * std::pow(t, 4) + g * std::pow(t, 3) + h * t * t + i * t + j) *
            k * x * count * kMicro;
        format = form.hardPolyFormat;
        text = form.hardPolyText;
        if (log) {
            const std::string ts = Print("%.10lf", t);
            numbers = Print("%.10lf", k) + " * " + Print("%.10lf", x) + " * " + "(" +
                      Print("%.10lf", e) + "*" + ts + "^5" + " + " + Print("%.10lf", f) + "*" + ts +
                      "^4" + " + " + Print("%.10lf", g) + "*" + ts + "^3" + " + " +
                      Print("%.10lf", h) + "*" + ts + "^2" + " + " + Print("%.10lf", i) + "*" + ts +
                      "+" + Print("%.10lf", j) + ")" + "*" + Print("%.10lf", count) + " = " +
                      Print("%.10lf", result);
        }
    } else {
        const double a = coefficient("A") * kMicro, b = coefficient("B");
        result = k * x * a * std::exp(b * t) * count;
        format = form.hardFormat;
        text = form.hardExpText;
        if (log)
            numbers = Print("%.10lf", k) + " * " + Print("%.10lf", x) + " * " + Print("%.10lf", a) +
                      " * " + "2.718282^" + "(" + Print("%.10lf", b) + " * " + Print("%.10lf", t) +
                      ")" + " * " + Print("%.10lf", count) + " = " + Print("%.10lf", result);
    }
    if (log) {
        const std::string line = LogLine(format, block, label, supply, text);
        PD_UTIL::FCprintln(line);
        PD_UTIL::FCprintln(numbers);
        SaveToDebugPanel(currentPanelName, line, numbers, result, item, supply, form.table);
    }
    return result;
}

// ---- Clock helpers' forms -------------------------------------------------------------------

double PC_ENG::ProcessIccLeak(const std::string& mode, double a, double b, double e, double f,
                              double g, double h, double t, double count,
                              const std::string& rowName, const std::string& columnName, const Row&,
                              const Row&, const std::string& tableName) {
    const bool used = mode == "used";
    const Row* variables = nullptr;
    const std::string& equation =
        FormulaFor("Clocks", used ? "_ICCleak_used" : "_ICCleak_unused", variables);
    if (variables) {
        const double letters[] = {a, b, 0, 0, e, f, g, h};
        boundValues.resize(variables->size());
        for (size_t i = 0; i < variables->size(); ++i) {
            const std::string& v = (*variables)[i];
            const char l = CoefficientLetter(v, "_COMP_total");
            if (l && l != 'C' && l != 'D' && l <= 'H')
                PrintTo(boundValues[i], "%.20lf", letters[l - 'A']);
            else if (Is(v, "T"))
                PrintTo(boundValues[i], "%.20lf", t);
            else if (v == "_COMP_total")
                PrintTo(boundValues[i], "%.2lf", count);
            else if (Is(v, "e"))
                boundValues[i] = "2.718282";
            else
                boundValues[i] = v;
        }
    }
    return EvaluateAndLog(equation, variables, nullptr,
                          used ? "ICCleakused_%s_%s_%s = %s = " : "ICCleakunused_%s_%s_%s = %s = ",
                          rowName, columnName, "VCC", columnName, "VCC", tableName.c_str());
}

double PC_ENG::ProcessClockIccLeakDFB(const std::string& mode, double a, double b, double e,
                                      double f, double g, double h, double t, double count,
                                      const std::string& rowName, const std::string& columnName,
                                      const Row&, const Row&, const std::string& tableName) {
    const bool used = mode == "used";
    const Row* variables = nullptr;
    const std::string& equation =
        FormulaFor("Clocks", used ? "_ICCleakDFB_used" : "_ICCleakDFB_unused", variables);
    if (variables) {
        const double letters[] = {a, b, 0, 0, e, f, g, h};
        boundValues.resize(variables->size());
        for (size_t i = 0; i < variables->size(); ++i) {
            const std::string& v = (*variables)[i];
            char l = CoefficientLetter(v, "_DCforBLOCK_used");
            if (!l) l = CoefficientLetter(v, "_DCforBLOCK_unused");
            if (l && l != 'C' && l != 'D' && l <= 'H')
                PrintTo(boundValues[i], "%.20lf", letters[l - 'A']);
            else if (Is(v, "T"))
                PrintTo(boundValues[i], "%.20lf", t);
            else if (v == "_COUNT_used" || v == "_COUNT_unused")
                PrintTo(boundValues[i], "%.2lf", count);
            else if (Is(v, "e"))
                boundValues[i] = "2.718282";
            else
                boundValues[i] = v;
        }
    }
    return EvaluateAndLog(
        equation, variables, nullptr,
        used ? "ICCleakDFBused_%s_%s_%s = %s = " : "ICCleakDFBunused_%s_%s_%s = %s = ", rowName,
        columnName, "VCC", columnName, "VCC", tableName.c_str());
}

// ---- Scale factor and process multiplier
// ---------------------------------------------------------

std::string PC_ENG::Get_dK(const std::string& key, const Row& names, const Row& values, int count,
                           const std::string& voltageText) {
    PD_KEYSECT* scale = dynamic_cast<PD_KEYSECT*>(pwrData->GetSection("Scale Factors"));
    const char* formula = scale ? scale->GetValue(key.c_str()) : "";
    if (voltageText.empty() || !*formula) return "0";
    const size_t n = count < 0 ? names.size() : static_cast<size_t>(count);
    Row keyNames(names.begin(), names.begin() + std::min(n, names.size()));
    Row keyValues(values.begin(), values.begin() + std::min(n, values.size()));
    keyNames.push_back("d" + key);
    keyValues.push_back(voltageText);
    std::string trace;
    const double result = PC_LATOR::ProcessCalculator(formula, trace, keyNames, keyValues,
                                                      static_cast<int>(keyNames.size()));
    if (result == 0) return "0.0";
    return Print("%.20lf", result);
}

std::string PC_ENG::GetProcessX(const Row& names, const Row& values) {
    return ProcessXText(names, values);
}

const std::string& PC_ENG::KsupplyText(const std::string& supply) const {
    static const std::string none;
    const auto& table = KConstants();
    // Most calls ask for the supply the call before asked for.
    size_t found = table.size();
    if (lastKsupply < table.size() && supply == table[lastKsupply].supply) {
        found = lastKsupply;
    } else {
        for (size_t i = 0; i < table.size() && found == table.size(); ++i)
            if (supply == table[i].supply) found = i;
        lastKsupply = found;
    }
    if (found == table.size()) return none;
    return found < kValues.size() ? kValues[found] : none;
}

namespace {

// Where "Process", "Device", "Package", "Speed" and "Operating" stand among
// the first n names, in one walk: the first of each; -1 where absent. The
// names differ in length but for "Process" and "Package".
void FindProcessCells(const PC_ENG::Row& names, size_t n, int (&at)[5]) {
    static constexpr std::string_view kNames[] = {"Process", "Device", "Package", "Speed",
                                                  "Operating"};
    std::fill(std::begin(at), std::end(at), -1);
    for (size_t i = 0, left = 5; i < n && left > 0; ++i) {
        const std::string& name = names[i];
        int k;
        switch (name.size()) {
            case 5:
                k = 3;
                break;
            case 6:
                k = 1;
                break;
            case 7:
                k = name[1] == 'r' ? 0 : 2;
                break;
            case 9:
                k = 4;
                break;
            default:
                continue;
        }
        if (at[k] < 0 && name == kNames[k]) {
            at[k] = static_cast<int>(i);
            --left;
        }
    }
}

}  // namespace

const std::string& PC_ENG::ProcessXText(const Row& names, const Row& values) {
    static const std::string none;
    const size_t n = std::min(names.size(), values.size());
    // The frame's names are walked once per table.
    int found[5];
    const int* at = found;
    if (&names == rowNames.names) {
        if (!rowNames.processCellsKnown) FindProcessCells(names, n, rowNames.processCells);
        rowNames.processCellsKnown = true;
        at = rowNames.processCells;
    } else {
        FindProcessCells(names, n, found);
    }
    const std::string* cell[5];
    for (int k = 0; k < 5; ++k)
        cell[k] = at[k] >= 0 && static_cast<size_t>(at[k]) < n ? &values[static_cast<size_t>(at[k])]
                                                               : &none;
    const std::string &process = *cell[0], &device = *cell[1], &package = *cell[2],
                      &speed = *cell[3], &operating = *cell[4];
    if (!caches.on)
        return processXScratch = LookUpProcessX(process, device, package, speed, operating);
    ModelCaches::LastProcessX& last = caches.lastProcessX;
    if (last.value) {
        int same = 0;
        while (same < 5 && last.parts[same] == *cell[same]) ++same;
        if (same == 5) return *last.value;
    }
    std::string& key = caches.key;
    JoinKey(key, {&process, &device, &package, &speed, &operating});
    auto it = caches.processX.find(key);
    if (it == caches.processX.end())
        it =
            caches.processX.emplace(key, LookUpProcessX(process, device, package, speed, operating))
                .first;
    for (int k = 0; k < 5; ++k) last.parts[k] = *cell[k];
    last.value = &it->second;
    return it->second;
}

std::string PC_ENG::LookUpProcessX(const std::string& process, const std::string& device,
                                   const std::string& package, std::string speed,
                                   const std::string& operating) {
    const size_t dash = speed.find('-');
    if (dash != std::string::npos) speed = speed.substr(dash + 1);
    const std::string key = device + "_" + package + "_" + speed + "_" + operating.substr(0, 1);
    PD_KEYSECT* table = dynamic_cast<PD_KEYSECT*>(
        pwrData->GetSection((process + " Case Process Leakage Multiplier").c_str()));
    if (!table) return "1";
    for (const auto& kv : table->keys) {
        if (PD_UTIL::SpecialCompare(kv.first, key) != 0) continue;
        // The value is "multiplier, revision": the multiplier is the first entry.
        std::string value = kv.second.substr(0, kv.second.find(','));
        TrimBlanks(value);
        return value.empty() ? "1" : value;
    }
    return "1";
}

// ---- Free functions a host may link
// ----------------------------------------------------------------

double LeakageAndDFB(double count, double a, double b, double& leakOut, double dfb, double k) {
    leakOut = k * a * std::exp(b * 100.0) * count;
    return leakOut * dfb;
}

double BiasAndDFB(double count, double d, double& biasOut, double dfb) {
    biasOut = count * d;
    return biasOut * dfb;
}
