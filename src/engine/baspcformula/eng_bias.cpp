// DC bias current: coefficient D (mA) x 0.001 x count, without temperature or
// process dependence.
#include <cstdlib>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "baspclator/pc_lator.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

constexpr double kMilli = 0.001;

struct BiasForm {
    const char* key;
    const char* coefficientName;
    const char* countName;
    // Items that give the DC block coefficient its number; null: every item.
    const char* const* items;
    const char* format;
    const char* table;
};

const char* const kDFBUsedItems[] = {"DCforBLOCK_used", "_D_DCforBLOCK_used", "DCforBLOCK_standby",
                                     "DCforBLOCK_sleep", nullptr};
const char* const kDFBUnusedItems[] = {"_D_DCforBLOCK_unused", "DCforBLOCK_unused",
                                       "DCforBLOCK_standby", nullptr};

const BiasForm kBiasForms[] = {
    {"_ICCbias_used", "_D_COMP_used", "_COMP_used", nullptr,
     "ICCbiasused_%s_%s_%s= %s = ", "UsedBiasIcc"},
    {"_ICCbias_unused", "_D_COMP_unused", "_COMP_unused", nullptr,
     "ICCbiasunused_%s_%s_%s = %s = ", "UnusedBiasIcc"},
    {"_ICCbiasDFB_used", "_D_DCforBLOCK_used", "_COMP_used", kDFBUsedItems,
     "ICCbiasDFBused_%s_%s_%s = %s = ", "UsedBiasIcc"},
    {"_ICCbiasDFB_unused", "_D_DCforBLOCK_unused", "_COMP_unused", kDFBUnusedItems,
     "ICCbiasDFBunused_%s_%s_%s= %s = ", "UnusedBiasIcc"},
};

bool Listed(const char* const* items, const std::string& item) {
    if (!items) return true;
    for (; *items; ++items)
        if (item[0] == (*items)[0] && item == *items) return true;
    return false;
}

// fixed(value, precision) gives the "%.<precision>lf" text.
template <typename Fixed>
// An item that gives no block coefficient binds the text "0".
void BindBias(const PC_ENG::Row& variables, const BiasForm& form, double d, bool listed,
              double count, PC_ENG::Row& out, Fixed&& fixed) {
    out.resize(variables.size());
    for (size_t i = 0; i < variables.size(); ++i) {
        const std::string& v = variables[i];
        if (v == form.coefficientName)
            out[i] = listed ? fixed(d, 20) : "0";
        else if (v == form.countName)
            out[i] = fixed(count, 2);
        else
            out[i] = v;
    }
}

}  // namespace

double PC_ENG::BiasEquation(BiasKind kind, const std::string& equationSection,
                            const std::string& block, const std::string& item, double count,
                            const std::string& label, const std::string& supply, const Row& names,
                            const Row& values) {
    const BiasForm& form = kBiasForms[static_cast<int>(kind)];
    const Row* variables = nullptr;
    const std::string& equation = FormulaFor(equationSection, form.key, variables);
    if (variables) {
        double d = 0.0;
        const bool listed = Listed(form.items, item);
        if (listed) d = kMilli * FindCoefficient(supply, block, item, "", "D").number;
        // Pre- and post-emphasis of the SERDES driver, already in amperes.
        if (kind == BiasKind::Used && Is(supply, "VCCHTX") && Is(block, "SERDES IO") &&
            Is(item, "TX")) {
            const std::string& lpre = RowValue("LPRE_TOTAL", names, values);
            if (!lpre.empty()) d += ToNumber(lpre);
        }
        BindBias(*variables, form, d, listed, count, boundValues,
                 [this](double v, int p) -> const std::string& { return PrintFixed(v, p); });
    }
    return EvaluateAndLog(equation, variables, nullptr, form.format, block, label, supply, item,
                          supply, form.table);
}

double PC_ENG::GetIccBias(const std::string& equationSection, const std::string& block,
                          const std::string& item, double count, std::string label,
                          const std::string& supply, const Row& names, const Row& values) {
    if (label.find('@') != std::string::npos && equationSection != "Clocks")
        label += RowValue("Device", names, values);
    if (equationSection != "Bank Voltage" && equationSection != "I/O Term" &&
        !hardCodeFormula(equationSection))
        return BiasEquation(BiasKind::Used, equationSection, block, item, count, label, supply,
                            names, values);
    const double d = kMilli * FindCoefficient(supply, block, item, "", "D").number;
    const double result = d * count;
    if (PD_UTIL::IsCalcLogOpen() || debugHtml) {
        const std::string line =
            LogLine(kBiasForms[0].format, block, label, supply, "_D_COMP_used * _COMP_used");
        const std::string numbers =
            Print("%.20lf", d) + " * " + Print("%.10lf", count) + " = " + Print("%.10lf", result);
        PD_UTIL::FCprintln(line);
        PD_UTIL::FCprintln(numbers);
        SaveToDebugPanel(currentPanelName, line, numbers, result, item, supply, "UsedBiasIcc");
    }
    return result;
}

double PC_ENG::GetIccBiasUnused(const std::string& equationSection, const std::string& block,
                                const std::string& item, double count, std::string label,
                                const std::string& supply, const Row& names, const Row& values) {
    if (label.find('@') != std::string::npos) label += RowValue("Device", names, values);
    return BiasEquation(BiasKind::Unused, equationSection, block, item, count, label, supply, names,
                        values);
}

double PC_ENG::GetIccBiasDFB(const std::string& equationSection, const std::string& block,
                             const std::string& item, double count, std::string label,
                             const std::string& supply, const Row& names, const Row& values) {
    if (label.find('@') != std::string::npos) label += RowValue("Device", names, values);
    return BiasEquation(BiasKind::DFBUsed, equationSection, block, item, count, label, supply,
                        names, values);
}

double PC_ENG::GetIccBiasDFBUnused(const std::string& equationSection, const std::string& block,
                                   const std::string& item, double count, std::string label,
                                   const std::string& supply, const Row& names, const Row& values) {
    if (label.find('@') != std::string::npos) label += RowValue("Device", names, values);
    return BiasEquation(BiasKind::DFBUnused, equationSection, block, item, count, label, supply,
                        names, values);
}

namespace {

// The debug-panel numbers of the one-element forms: "%g%s%g%s%g".
std::string OneElementNumbers(double d) {
    char text[128];
    std::snprintf(text, sizeof text, "%g%s%g%s%g", d, " * ", 1.0, "=", d);
    return text;
}

}  // namespace

double PC_ENG::GetDbiasAt(const std::string&, const std::string& block, std::string item,
                          const std::string& supply, const Row& names, const Row& values) {
    if (item.find('@') != std::string::npos) item += RowValue("Device", names, values);
    const double d = kMilli * FindCoefficient(supply, block, item, "", "D").number;
    if (debugHtml) {
        const std::string line = LogLine("ICCBiasused_%s_%s_%s = %s = ", block, item, supply,
                                         " _D_COMP_used * _COMP_used");
        SaveToDebugPanel(currentPanelName, line, OneElementNumbers(d), d, item, supply,
                         "UsedBiasIcc");
    }
    return d;
}

double PC_ENG::GetDbiasDFB(const std::string&, const std::string& block, const std::string& item,
                           const std::string& supply, const Row&, const Row&) {
    const double d = kMilli * FindCoefficient(supply, block, item, "", "D").number;
    // Unused blocks come here too and are shown as used, by decision.
    if (debugHtml) {
        const std::string line = LogLine("ICCBiasDFBused_%s_%s_%s = %s = ", block, item, supply,
                                         "_D_DCforBLOCK_used * _COMP_used ");
        SaveToDebugPanel(currentPanelName, line, OneElementNumbers(d), d, item, supply,
                         "UsedBiasIcc");
    }
    return d;
}

double PC_ENG::ProcessIccDcBias(const std::string& mode, double d, double count,
                                const std::string& rowName, const std::string& columnName,
                                const std::string& tableName) {
    const bool used = mode == "used";
    const Row* variables = nullptr;
    const std::string& equation =
        FormulaFor("Clocks", used ? "_ICCbias_used" : "_ICCbias_unused", variables);
    if (variables) {
        const BiasForm total = {nullptr, "_D_COMP_total", "_COMP_total", nullptr, nullptr, nullptr};
        BindBias(*variables, total, d, true, count, boundValues,
                 [this](double v, int p) -> const std::string& { return PrintFixed(v, p); });
    }
    return EvaluateAndLog(equation, variables, nullptr,
                          used ? "ICCbiasused_%s_%s_%s = %s = " : "ICCbiasunused_%s_%s_%s = %s = ",
                          "Clocks", rowName, "VCC", columnName, "VCC", tableName.c_str());
}
