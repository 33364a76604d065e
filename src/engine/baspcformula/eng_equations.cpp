// Equation look-up, the forms of the equations and the calculator constants.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "baspclator/pc_lator.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

PD_KEYSECT* KeySection(PD_DATA* data, const std::string& name) {
    return data ? dynamic_cast<PD_KEYSECT*>(data->GetSection(name.c_str())) : nullptr;
}

const char kPolyWord[] = "-5thpolynomial";

// Equations a tab asks for again and again: its own kinds, a handful.
constexpr size_t kRecentFormulas = 16;

void SwapPolynomialSections(PD_DATA* data) {
    if (!data) return;
    for (PD_SECTION* poly : data->sections) {
        const size_t at = poly->name.find(kPolyWord);
        if (at == std::string::npos) continue;
        const std::string base = poly->name.substr(0, at);
        if (PD_SECTION* old = data->GetSection(base.c_str()))
            old->SetName((base + "-EXPONENT").c_str());
        poly->SetName(base.c_str());
    }
}

std::string Fixed6(double v) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6lf", v);
    return text;
}

}  // namespace

// ---- Look-up ----------------------------------------------------------------

std::string PC_ENG::GetformulafromPqn(const std::string& section, const std::string& kind,
                                      const Row&, const Row&) {
    PD_KEYSECT* keys = KeySection(pqnData, section);
    if (!keys) return "0";
    const char* key = kind == "Dynamic" ? "_ICCdyn" : kind.c_str();
    std::string v = keys->GetValue(key);
    if (v.empty()) v = "0";
    // The store keeps no formula trees: "0" stays "0" either way.
    if (v == "0") keys->GetFromulaTree(key);
    return v;
}

const std::string& PC_ENG::FormulaFor(const std::string& section, const std::string& kind,
                                      const Row*& variables) {
    static const std::string zero = "0";
    variables = nullptr;
    const std::pair<const std::string, Row>* entry = nullptr;
    bool known = false;
    bool recent = false;
    if (caches.on) {
        for (const ModelCaches::RecentFormula& r : caches.recentFormulas) {
            if (r.section == section && r.kind == kind) {
                known = recent = true;
                entry = r.entry;
                break;
            }
        }
    }
    if (caches.on && !known) {
        JoinKey(caches.key, {&section, &kind});
        const auto it = caches.formulas.find(caches.key);
        known = it != caches.formulas.end();
        if (known) entry = it->second;
    }
    if (!known) {
        PD_KEYSECT* keys = KeySection(pqnData, section);
        const char* key = kind == "leak_unused" ? "_ICCleak_unused" : kind.c_str();
        const char* text = keys ? keys->GetValue(key) : "";
        if (*text && std::strcmp(text, "0") != 0) {
            formulaKey.assign(text);
            VariablesOf(formulaKey);
            entry = &*variableCache.find(formulaKey);
        }
        if (caches.on) caches.formulas.emplace(caches.key, entry);
    }
    if (caches.on && !recent && caches.recentFormulas.size() < kRecentFormulas)
        caches.recentFormulas.push_back({section, kind, entry});
    if (!entry) {
        if (PD_UTIL::IsCalcLogOpen())
            PD_UTIL::FCprintln("Note: There is no " + kind + " equation for " + section + " !");
        return zero;
    }
    variables = &entry->second;
    return entry->first;
}

const PC_ENG::Row& PC_ENG::VariablesOf(const std::string& formula) {
    auto it = variableCache.find(formula);
    if (it != variableCache.end()) return it->second;
    Row list;
    int n = 0;
    char** pieces = PC_LATOR::BreakIntoPieces(formula.c_str(), &n);
    for (int i = 0; i < n; ++i) {
        if (!IsOperand(pieces[i])) list.emplace_back(pieces[i]);
        delete[] pieces[i];
    }
    delete[] pieces;
    return variableCache.emplace(formula, std::move(list)).first->second;
}

std::string PC_ENG::GetCalculationformula(const std::string& section, const std::string& kind,
                                          Row& nameList, const Row&, const Row&) {
    const Row* variables = nullptr;
    const std::string& formula = FormulaFor(section, kind, variables);
    if (variables) nameList.insert(nameList.end(), variables->begin(), variables->end());
    return formula;
}

bool PC_ENG::hardCodeFormula(const std::string& section) {
    if (caches.on) {
        const auto it = caches.hardCoded.find(section);
        if (it != caches.hardCoded.end()) return it->second;
    }
    PD_KEYSECT* keys = KeySection(pqnData, section);
    const bool hard = !keys || keys->GetNumOfKeys() < 2;
    if (caches.on) caches.hardCoded.emplace(section, hard);
    return hard;
}

bool PC_ENG::polynomial_equation_type(const std::string& section) {
    if (caches.on) {
        const auto it = caches.polynomial.find(section);
        if (it != caches.polynomial.end()) return it->second;
    }
    PD_PWRSECT* pwr = PwrSection(section);
    bool polynomial = false;
    if (pwr && pwr->GetNumOfSupplies() > 0 && pwr->GetNumOfMembers() > 0) {
        const char* member = pwr->GetMember(0)->name.c_str();
        const char* supply = pwr->GetSupply(0);
        polynomial = std::strcmp(pwr->GetA(member, supply), "null") == 0 &&
                     std::strcmp(pwr->GetE(member, supply), "null") != 0;
    }
    if (caches.on) caches.polynomial.emplace(section, polynomial);
    return polynomial;
}

PD_PWRSECT* PC_ENG::PwrSection(const std::string& block) {
    return dynamic_cast<PD_PWRSECT*>(pwrData->GetSection(block.c_str()));
}

void PC_ENG::Detect5thpolyEquation() {
    polynomialFlag = false;
    caches.Clear();
    const char* env = std::getenv("VRL_PWC_POLINOMIAL");
    if (!env || std::strcmp(env, "1") != 0) return;
    polynomialFlag = true;
    SwapPolynomialSections(pqnData);
    SwapPolynomialSections(pwrData);
}

// ---- Constants ---------------------------------------------------------------

void PC_ENG::InitConstants(const std::vector<std::string>& names,
                           const std::vector<std::string>& values) {
    const auto& table = KConstants();
    if (kValues.size() != table.size()) kValues.assign(table.size(), "0");
    // The row with the two extra pairs is built only for a constant that is
    // worked out; names and values of unequal length take it at once, so
    // that the pairs stand where they always did.
    const bool extraPairs = pwc::PassesArchAndOverride(ArchName());
    Row n, v;
    bool built = false;
    auto build = [&] {
        if (built) return;
        built = true;
        n = names;
        v = values;
        if (extraPairs) {
            n.emplace_back("archName");
            v.emplace_back(ArchName());
            n.emplace_back("VCC_CORE_DYN_OVERRIDE");
            PD_KEYSECT* reg = KeySection(pwrData, "REGULATOR_MISC");
            v.emplace_back(reg ? reg->GetValue("VCC_CORE_DYN_OVERRIDE") : "");
        }
    };
    if (names.size() != values.size()) build();
    // Looked up only once a constant needs them: on most rows none does.
    bool sectionsFound = false;
    PD_KEYSECT* pllRegulator = nullptr;
    PD_KEYSECT* scale = nullptr;
    for (size_t i = 0; i < table.size(); ++i) {
        std::string& member = kValues[i];
        if (!(member.empty() || member == "0")) continue;
        if (!sectionsFound) {
            pllRegulator = KeySection(pwrData, "REGULATOR PLL");
            scale = KeySection(pwrData, "Scale Factors");
            sectionsFound = true;
        }
        const KConstant& k = table[i];
        std::string voltage = built ? RowValue(k.supply, n, v) : RowValue(k.supply, names, values);
        if (pllRegulator && std::strcmp(k.supply, "VCCPLL") == 0)
            voltage = pllRegulator->GetValue("VCCPLL_CORE_DYN_OVERRIDE");
        // Get_dK gives "0" without a voltage or a formula.
        if (voltage.empty() || !scale || !*scale->GetValue(k.kName)) {
            member = "0";
            continue;
        }
        build();
        member = Get_dK(k.kName, n, v, static_cast<int>(n.size()), voltage);
    }
}

// ---- Display -------------------------------------------------------------------

std::string PC_ENG::Addmore2equation(const std::string& equation, const std::string& termName,
                                     const std::string& termFormula, const std::string&,
                                     double value) {
    if (equation == "0") return termName + "%" + termFormula + " = " + Fixed6(value);
    std::vector<std::string> parts;
    for (size_t start = 0;;) {
        const size_t eq = equation.find('=', start);
        parts.push_back(equation.substr(start, eq == std::string::npos ? eq : eq - start));
        if (eq == std::string::npos) break;
        start = eq + 1;
    }
    if (parts.size() != 2 && parts.size() != 3) return equation;
    const std::string& left = parts[0];
    const double sum = std::strtod(parts.back().c_str(), nullptr) + value;
    bool named = false;
    for (size_t start = 0;;) {
        const size_t plus = left.find('+', start);
        std::string term = left.substr(start, plus == std::string::npos ? plus : plus - start);
        const size_t mark = term.find('%');
        if (mark != std::string::npos) term = term.substr(0, mark);
        TrimBlanks(term);
        if (term == termName) named = true;
        if (plus == std::string::npos) break;
        start = plus + 1;
    }
    std::string out = left;
    if (!named) out += " + " + std::string(" ") + termName + "%" + termFormula;
    if (parts.size() == 3) out += "=" + parts[1];
    return out + " = " + Fixed6(sum);
}

// ---- Caches of the models -----------------------------------------------------

void PC_ENG::ModelCaches::Clear() {
    lastProcessX = LastProcessX();
    recentFormulas.clear();
    coefficients.clear();
    processX.clear();
    formulas.clear();
    hardCoded.clear();
    polynomial.clear();
}

const std::string& PC_ENG::PrintFixed(double value, int precision) {
    unsigned long long bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    static_assert(sizeof printedNumbers / sizeof printedNumbers[0] == 512, "top 9 bits index");
    // The top bits of the product depend on every bit of the number: round
    // numbers, which differ only in their exponent and first mantissa bits,
    // spread over the slots too.
    PrintedNumber& slot =
        printedNumbers[((bits ^ static_cast<unsigned>(precision)) * 0x9E3779B97F4A7C15ULL) >> 55];
    if (slot.bits != bits || slot.precision != precision) {
        PrintFixedTo(slot.text, value, precision);
        slot.bits = bits;
        slot.precision = precision;
    }
    return slot.text;
}
