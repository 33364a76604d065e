// Supplies, multipliers, categories and the per-supply calculator constants.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "baspcengin.h"
#include "baspclator/pc_lator.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

bool EndsWith(const std::string& text, char c) {
    return !text.empty() && text.back() == c;
}

struct NamePair {
    const char* from;
    const char* to;
};

const NamePair kPcfDphyNames[] = {
    {"Vcc_dphy", "VCC_DPHY"},        {"Vcc_dphy0", "VCC_DPHY"},
    {"Vcc_dphy1", "VCC_DPHY"},       {"Vcca_dphy", "VCCA_DPHY"},
    {"Vcca_dphy0", "VCCA_DPHY"},     {"Vcca_dphy1", "VCCA_DPHY"},
    {"Vccpll_dphy", "VCCPLL_DPHY"},  {"Vccpll_dphy0", "VCCPLL_DPHY"},
    {"Vccpll_dphy1", "VCCPLL_DPHY"},
};

const NamePair kPwrSpecialNames[] = {{"VPP2V5", "Vpp2v5"},
                                     {"VCC_DPHY", "Vcc_dphy"},
                                     {"VCCA_DPHY", "Vcca_dphy"},
                                     {"VCCPLL_DPHY", "Vccpll_dphy"}};

// Entries of the supply categories of a device with a "POWER CATEGORY" table.
struct CategoryEntry {
    const char* category;
    const char* number;
    const char* supply;
};
const CategoryEntry kCategoryEntries[] = {
    {"Vcc", "3", "Vccio 1.8"},    {"Vcc", "14", "Vccio 1.8"},   {"Vcc", "14", "Vccio"},
    {"Vcc", "14", "Vccaux"},      {"Vccb", "10", "Vccaux"},     {"Vccb", "11", "Vccaux"},
    {"Vccb", "12", "Vccaux"},     {"Vccb", "13", "Vccaux"},     {"Vccb", "15", "Vccaux"},
    {"Vccb", "16", "Vccaux"},     {"Vccb", "17", "Vccaux"},     {"Vccaux", "-1", "Vcc"},
    {"Vccaux", "0", "Vcc"},       {"Vccaux", "1", "Vcc"},       {"Vccaux", "2", "Vcc"},
    {"Vccaux", "3", "Vcc"},       {"Vccaux", "4", "Vcc"},       {"Vccaux", "5", "Vcc"},
    {"Vccaux", "0", "Vccio 2.5"}, {"Vccaux", "4", "Vccio 2.5"}, {"Vccaux", "5", "Vccio 2.5"},
    {"Vccaux", "0", "Vccio 3.3"}, {"Vccaux", "4", "Vccio 3.3"}, {"Vccaux", "5", "Vccio 3.3"},
};
const char* kVccioCategories[] = {"Vccio 1.0", "Vccio 1.2", "Vccio 1.35", "Vccio 1.5",
                                  "Vccio 1.8", "Vccio 2.5", "Vccio 3.3"};

}  // namespace

// ---- Look-ups and setters -----------------------------------------------

bool PC_ENG::HasVccpg() const {
    PD_TABLE* pg = GetPGSupplyTable();
    return pg && pg->GetRowNumber(std::string("Vccpg")) >= 0;
}

bool PC_ENG::HasSupply(const std::string& name) const {
    if (!supplyCategory.empty()) return supplyCategoryNames.count(name) > 0;
    if (PD_TABLE* vdpm = GetSupplyTable()) {
        for (int r = 0; r < vdpm->GetNumOfRows(); ++r) {
            const char* row = vdpm->GetValueAt(r, 0);
            if (pc_stricmp(row, name.c_str()) == 0) return true;
            if (name == "Vtt" && std::strstr(row, "Vtt")) return true;
        }
    }
    if (PD_TABLE* pg = GetPGSupplyTable())
        for (int r = 0; r < pg->GetNumOfRows(); ++r)
            if (pc_stricmp(pg->GetValueAt(r, 0), name.c_str()) == 0) return true;
    return false;
}

double PC_ENG::GetSupply(const char* name) const {
    PD_TABLE* vdpm = GetSupplyTable();
    if (!vdpm) return 0.0;
    const char* v = vdpm->GetValueAt(name, "Voltage");
    if (!*v && HasVccpg()) v = GetPGSupplyTable()->GetValueAt(name, "Voltage");
    return std::strtod(v, nullptr);
}

double PC_ENG::GetMult(const char* name) const {
    PD_TABLE* vdpm = GetSupplyTable();
    if (!vdpm) return 0.0;
    const char* v = vdpm->GetValueAt(name, "DPM");
    if (!*v && HasVccpg()) v = GetPGSupplyTable()->GetValueAt(name, "DPM");
    return std::strtod(v, nullptr);
}

namespace {

void SetCell(PD_TABLE* table, const char* row, const char* column, const char* value) {
    if (!table) return;
    table->SetValueAt(value, table->GetRowNumber(std::string(row)), table->GetColumnIndex(column));
}

}  // namespace

void PC_ENG::SetSupply(const char* name, const char* value) {
    SetCell(GetSupplyTable(), name, "Voltage", value);
    // The power-gated supply follows the core supply.
    if (std::strcmp(name, "Vcc") == 0 && HasVccpg())
        SetCell(GetPGSupplyTable(), "Vccpg", "Voltage", value);
    ResetConstants();
}

void PC_ENG::SetMult(const char* name, const char* value) {
    SetCell(GetSupplyTable(), name, "DPM", value);
    if (std::strcmp(name, "Vcc") == 0 && HasVccpg())
        SetCell(GetPGSupplyTable(), "Vccpg", "DPM", value);
}

std::string PC_ENG::GetVDPM(const std::string& supply, const std::string& column) const {
    for (PD_TABLE* t : {GetSupplyTable(), GetPGSupplyTable()}) {
        if (!t) continue;
        int c = t->GetColumnIndex(column.c_str());
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            if (pc_stricmp(t->GetValueAt(r, 0), supply.c_str()) != 0) continue;
            const char* v = t->GetValueAt(r, c);
            if (*v) return v;
        }
    }
    return "";
}

std::string PC_ENG::GetVDPMCategory(const std::string& supply, const std::string& column,
                                    const std::string& number) const {
    return GetVDPM(FindSupplyCategory(supply, number), column);
}

std::string PC_ENG::FindSupplyCategory(const std::string& name, const std::string& number) const {
    for (const auto& category : supplyCategory)
        for (const _SUPPLY& entry : category.second)
            if (entry.supply == name && entry.number == number) return category.first;
    return name;
}

void PC_ENG::SetupSupplyCategory() {
    supplyCategory.clear();
    supplyCategoryNames.clear();
    if (!pwrData->GetSection("POWER CATEGORY")) return;
    for (const CategoryEntry& e : kCategoryEntries) {
        supplyCategory[e.category].push_back({e.number, e.supply});
        supplyCategoryNames.insert(e.category);
    }
    for (int bank = 0; bank <= 6; ++bank) {
        std::string category = "Vccio" + std::to_string(bank);
        supplyCategory[category].push_back({std::to_string(bank), "Vccio"});
        supplyCategoryNames.insert(category);
    }
    for (const char* category : kVccioCategories) {
        supplyCategory[category].push_back({"-1", category});
        supplyCategoryNames.insert(category);
    }
    // The device's own further entries: category, group number, supply.
    if (auto* map = dynamic_cast<PD_TBLSECT*>(pwrData->GetSection("POWER CATEGORY MAP"))) {
        const int c = map->GetColumnIndex("Category");
        const int n = map->GetColumnIndex("Number");
        const int s = map->GetColumnIndex("Supply");
        for (int r = 0; c >= 0 && n >= 0 && s >= 0 && r < map->GetNumOfRows(); ++r) {
            supplyCategory[map->GetValueAt(r, c)].push_back(
                {map->GetValueAt(r, n), map->GetValueAt(r, s)});
            supplyCategoryNames.insert(map->GetValueAt(r, c));
        }
    }
}

void PC_ENG::UpdateVDPMVoltage(const std::string& supply, const std::string& number) {
    const std::string row = FindSupplyCategory(supply, number);
    PD_TABLE* vdpm = GetSupplyTable();
    if (!vdpm) return;
    int r = vdpm->GetRowNumber(row);
    if (r < 0 || *vdpm->GetValueAt(r, 1)) return;
    std::string pwrName;
    TranslateSupplyPCFtoPWR(row, pwrName);
    vdpm->SetValueAt(GetSuupliesValueFromPwr(pwrName, "Default").c_str(), r, 1);
    vdpm->SetValueAt("1.00", r, 2);
}

void PC_ENG::updataVDPM(double value, const std::string& supply) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", value);
    for (PD_TABLE* t : {GetSupplyTable(), GetPGSupplyTable()}) {
        if (!t) continue;
        for (int r = 0; r < t->GetNumOfRows(); ++r)
            if (pc_stricmp(t->GetValueAt(r, 0), supply.c_str()) == 0) t->SetValueAt(text, r, 1);
    }
}

void PC_ENG::UpdateDPM(const std::string& supply, const std::vector<std::string>& banks,
                       std::vector<std::string>& voltages, std::string* dpm) {
    voltages.clear();
    for (size_t i = 0; i < banks.size(); ++i) {
        const std::string bank = banks[i].empty() ? "-1" : banks[i];
        voltages.push_back(GetVDPMCategory(supply, "Voltage", bank));
        if (dpm) {
            dpm[i] = GetVDPMCategory(supply, "DPM", bank);
            if (dpm[i].empty()) dpm[i] = "1.00";
        }
    }
}

namespace {

PD_TBLSECT* SuppliesTable(PD_DATA* pwr) {
    PD_SECTION* s = pwr->GetSection("SUPPLIES");
    PD_TBLSECT* t = dynamic_cast<PD_TBLSECT*>(s);
    if (s && !t) std::cerr << "PWR SUPPLIES table must have _TBLSECT format" << std::endl;
    return t;
}

// Row of SUPPLIES for a `.pwr` name; a row whose name carries "@" and a
// device pattern applies only to matching devices.
int SupplyRow(const PD_TBLSECT* table, const std::string& pwrName, const char* device) {
    const int col = table->GetColumnIndex("SupplyName");
    for (int r = 0; r < table->GetNumOfRows(); ++r) {
        std::string cell = table->GetValueAt(r, col);
        size_t at = cell.find('@');
        if (at == std::string::npos) {
            if (cell == pwrName) return r;
        } else if (cell.substr(0, at) == pwrName &&
                   PD_UTIL::SpecialCompare(cell.substr(at + 1), device) == 0) {
            return r;
        }
    }
    return -1;
}

}  // namespace

char* PC_ENG::ListOfSupplies() const {
    std::string list;
    std::vector<std::string> seen;
    if (PD_TBLSECT* t = dynamic_cast<PD_TBLSECT*>(pwrData->GetSection("SUPPLIES"))) {
        const int col = t->GetColumnIndex("SupplyName");
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            std::string pwrName = t->GetValueAt(r, col);
            // A row for other devices only is no supply of this one.
            const size_t at = pwrName.find('@');
            if (at != std::string::npos) {
                if (PD_UTIL::SpecialCompare(pwrName.substr(at + 1), DeviceName()) != 0) continue;
                pwrName = pwrName.substr(0, at);
            }
            std::string pcf;
            TranslateSupplyPWRtoPCF(pwrName, pcf);
            if (pcf == "Vcc" && std::find(seen.begin(), seen.end(), pcf) != seen.end()) continue;
            seen.push_back(pcf);
            list += pcf + ",";
        }
    }
    char* out = new char[list.size() + 1];
    std::memcpy(out, list.c_str(), list.size() + 1);
    return out;
}

bool PC_ENG::IsSupplyValid(const char* name, const char* value) const {
    PD_TBLSECT* t = SuppliesTable(pwrData);
    if (!t) return false;
    std::string pwrName;
    TranslateSupplyPCFtoPWR(name, pwrName);
    int r = SupplyRow(t, pwrName, DeviceName());
    if (r < 0) return false;
    double v = std::strtod(value, nullptr);
    double lo = std::strtod(t->GetValueAt(r, t->GetColumnIndex("Min")), nullptr);
    double hi = std::strtod(t->GetValueAt(r, t->GetColumnIndex("Max")), nullptr);
    return v >= lo && v <= hi;
}

bool PC_ENG::IsMultValid(const char* name) const {
    PD_TBLSECT* t = SuppliesTable(pwrData);
    if (!t) return false;
    std::string pwrName;
    TranslateSupplyPCFtoPWR(name, pwrName);
    return SupplyRow(t, pwrName, DeviceName()) >= 0;
}

std::string PC_ENG::GetSuupliesValueFromPwr(const std::string& supply,
                                            const std::string& column) const {
    PD_TBLSECT* t = dynamic_cast<PD_TBLSECT*>(pwrData->GetSection("SUPPLIES"));
    if (!t) return "";
    int r = SupplyRow(t, supply, DeviceName());
    return r < 0 ? "" : t->GetValueAt(r, t->GetColumnIndex(column.c_str()));
}

std::string PC_ENG::GetPwrSupplyValue(const std::string& supply, const std::string& column) const {
    std::string name = supply;
    if (!supplyCategory.empty() && supply.compare(0, 5, "Vccio") == 0)
        name = FindSupplyCategory(supply, "-1");
    std::string pwrName;
    TranslateSupplyPCFtoPWR(name, pwrName);
    return GetSuupliesValueFromPwr(pwrName, column);
}

// ---- Name translations --------------------------------------------------

void PC_ENG::TranslateSupplyPCFtoPWR(const std::string& name, std::string& out) const {
    for (const NamePair& p : kPcfDphyNames)
        if (name == p.from) {
            out = p.to;
            return;
        }
    std::string text = name;
    if ((text == "Vcc" || text == "Vccpll") && HasCoreSupplyDeviceTail(FamilyName()))
        text += EndsWith(DeviceName(), 'C') ? " c" : " e";
    out.clear();
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (i == 0)
            out += c;
        else if (c == ' ')
            out += '_';
        else if (c >= '0' && c <= '9')
            out += c;
        else if (c != '.')
            out += static_cast<char>(c - 32);
    }
}

void PC_ENG::TranslateSupplyPWRtoPCF(const std::string& name, std::string& out) const {
    for (const NamePair& p : kPwrSpecialNames)
        if (name == p.from) {
            out = p.to;
            return;
        }
    if (name.find("VCC_") != std::string::npos) {
        out = "Vcc";
        return;
    }
    if (name.find("VCCPLL_") != std::string::npos) {
        out = "Vccpll";
        return;
    }
    std::string text = name;
    size_t at = name.find("VCC@");
    if (at != std::string::npos) {
        size_t sign = name.find('@');
        if (PD_UTIL::SpecialCompare(name.substr(sign + 1), DeviceName()) != 0) {
            out.clear();
            return;
        }
        text = name.substr(0, sign);
    }
    out.clear();
    bool digitSeen = false;
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (i == 0) {
            out += c;
        } else if (c == '_') {
            out += ' ';
        } else if (c >= '0' && c <= '9') {
            out += c;
            if (!digitSeen) out += '.';
            digitSeen = true;
        } else {
            out += static_cast<char>(c + 32);
        }
    }
}

// ---- Calculator constants and the voltage formulas see ------------------

const std::vector<PC_ENG::KConstant>& PC_ENG::KConstants() {
    static const std::vector<KConstant> table = {
        {"Kvcc", "VCC"},
        {"Kvccaux", "VCCAUX"},
        {"Kvccio", "VCCIO"},
        {"Kvccpll", "VCCPLL"},
        {"Kvccj", "VCCJ"},
        {"Kvcc12", "VCC12"},
        {"Kvtt", "VTT"},
        {"Kvccr", "VCCR"},
        {"Kvccm", "VCCM"},
        {"Kvccpg", "VCCPG"},
        {"Kvcc_dphy", "VCC_DPHY"},
        {"Kvccpll_dphy", "VCCPLL_DPHY"},
        {"Kvcca_dphy", "VCCA_DPHY"},
        {"Kvpp2v5", "VPP2V5"},
        {"Kvcca12", "VCCA12"},
        {"Kvccauxa", "VCCAUXA"},
        {"Kvccb", "VCCB"},
        {"Kvccxp", "VCCXP"},
        {"Kvccib", "VCCIB"},
        {"Kvccob", "VCCOB"},
        {"Kvcca", "VCCA"},
        {"Kvcchtx", "VCCHTX"},
        {"Kvcchrx", "VCCHRX"},
        {"Kvccp", "VCCP"},
        {"PFR_Kvcc", "PFR_VCC"},
        {"PFR_Kvccaux", "PFR_VCCAUX"},
        {"PFR_Kvccio", "PFR_VCCIO"},
    };
    return table;
}

std::string* PC_ENG::KValue(const std::string& kName) {
    const auto& table = KConstants();
    if (kValues.size() != table.size()) kValues.assign(table.size(), "0");
    for (size_t i = 0; i < table.size(); ++i)
        if (kName == table[i].kName) return &kValues[i];
    return nullptr;
}

void PC_ENG::ResetConstants() {
    kValues.assign(KConstants().size(), "0");
}

std::string PC_ENG::GetKsupply(const std::string& supply) const {
    const auto& table = KConstants();
    for (size_t i = 0; i < table.size(); ++i)
        if (supply == table[i].supply) return i < kValues.size() ? kValues[i] : "";
    return "";
}

double PC_ENG::FindCorrectSupply(const std::string& supply, const std::vector<std::string>& names,
                                 const std::vector<std::string>& values) const {
    if (supply == "VCC" && const_cast<PC_ENG*>(this)->RowRegulated(names, values))
        return Num(regulatedVcc);
    if (supply == "VCCPLL" && !regulatedVccpll.empty()) return Num(regulatedVccpll);
    // With categories a row sees only the rails' own names ("VCCIO_18"); the
    // plain name of a supply is its category's rail.
    if (!supplyCategory.empty() && std::find(names.begin(), names.end(), supply) == names.end()) {
        std::string pcfName;
        TranslateSupplyPWRtoPCF(supply, pcfName);
        return Num(GetVDPMCategory(pcfName, "Voltage", "-1"));
    }
    return Num(pwcformula::RowValue(supply, names, values));
}

bool PC_ENG::RowRegulated(const Row& names, const Row& values) {
    if (&names != rowNames.names) return PC_LATOR::IsRegulatorBeingUsed(names, values);
    auto find = [&](const char* name) {
        const size_t n = std::min(names.size(), values.size());
        for (size_t i = 0; i < n; ++i)
            if (names[i] == name) return static_cast<int>(i);
        return -1;
    };
    const int arch = RowNamePosition(rowNames.archName, names, [&] { return find("archName"); });
    const int device = RowNamePosition(rowNames.device, names, [&] { return find("Device"); });
    // As the evaluator's look-up reads a value: at most its buffer's length.
    auto value = [&](int at) {
        if (at < 0) return std::string_view();
        const std::string& v = values[static_cast<size_t>(at)];
        return std::string_view(v.data(), std::min(v.size(), PC_LATOR::kValueBufferSize - 1));
    };
    return RegulatorInUse(value(arch), value(device));
}
