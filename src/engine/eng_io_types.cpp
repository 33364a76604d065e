// I/O standards: the device's type lists, the classes of a type, the PIO type
// under which the power data hold it, the output voltage of a standard and
// the rule that all types of a bank share one VCCIO.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pc_families.h"

using namespace pwc;

namespace {

// An I/O type text: the standard, then attributes joined by "-".
std::vector<std::string> Tokens(const std::string& type) {
    std::vector<std::string> tokens;
    size_t start = 0;
    for (;;) {
        const size_t dash = type.find('-', start);
        tokens.push_back(type.substr(start, dash == std::string::npos ? dash : dash - start));
        if (dash == std::string::npos) return tokens;
        start = dash + 1;
    }
}

std::string Standard(const std::string& type) {
    return type.substr(0, type.find('-'));
}

bool Holds(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

bool HoldsAny(const std::string& text, std::initializer_list<const char*> parts) {
    for (const char* p : parts)
        if (Holds(text, p)) return true;
    return false;
}

bool IsOneOf(const std::string& text, std::initializer_list<const char*> list) {
    for (const char* n : list)
        if (text == n) return true;
    return false;
}

// The output voltage of a standard (with its drive), as a fixed voltage,
// VCCIO-x or k*VCCIO. Only the first 94 rows are searched, so the last two
// are never found: the bound of the search is part of the table.
const char* const kIoTypeVccio[] = {
    "LVTTL33_24,VCCIO-0.8",
    "LVTTL33_16,VCCIO-0.8",
    "LVTTL33_12,VCCIO-0.8",
    "LVTTL33_8,VCCIO-0.8",
    "LVTTL33_5,VCCIO-0.8",
    "LVTTL33_33,VCCIO-0.8",
    "LVTTL33_4,VCCIO-0.8",
    "LVCMOS33_24,VCCIO-0.8",
    "LVCMOS33_16,VCCIO-0.8",
    "LVCMOS33_12,VCCIO-0.8",
    "LVCMOS33_8,VCCIO-0.8",
    "LVCMOS33_5,VCCIO-0.8",
    "LVCMOS33_33,VCCIO-0.8",
    "LVCMOS33_4,VCCIO-0.8",
    "LVCMOS25_24,VCCIO-0.8",
    "LVCMOS25_16,VCCIO-0.8",
    "LVCMOS25_12,VCCIO-0.8",
    "LVCMOS25_8,VCCIO-0.8",
    "LVCMOS25_5,VCCIO-0.8",
    "LVCMOS25_33,VCCIO-0.8",
    "LVCMOS25_4,VCCIO-0.8",
    "LVCMOS18_24,VCCIO-0.8",
    "LVCMOS18_16,VCCIO-0.8",
    "LVCMOS18_12,VCCIO-0.8",
    "LVCMOS18_8,VCCIO-0.8",
    "LVCMOS18_5,VCCIO-0.8",
    "LVCMOS18_33,VCCIO-0.8",
    "LVCMOS18_4,VCCIO-0.8",
    "LVCMOS15_16,VCCIO-0.8",
    "LVCMOS15_12,VCCIO-0.8",
    "LVCMOS15_8,VCCIO-0.8",
    "LVCMOS15_5,VCCIO-0.8",
    "LVCMOS15_33,VCCIO-0.8",
    "LVCMOS15_4,VCCIO-0.8",
    "SSTL18_I,VCCIO-0.8",
    "SSTL18D_I,VCCIO-0.8",
    "HSTL18_I,VCCIO-0.8",
    "HSTL18D_I,VCCIO-0.8",
    "HSTL18_II,VCCIO-0.8",
    "HSTL18D_II,VCCIO-0.8",
    "HSTL18_III,VCCIO-0.8",
    "HSTL18_IV,VCCIO-0.8",
    "HSTL15_I,VCCIO-0.8",
    "HSTL15D_I,VCCIO-0.8",
    "HSTL15_II,VCCIO-0.8",
    "HSTL15D_II,VCCIO-0.8",
    "HSTL15_III,VCCIO-0.8",
    "HSTL15_IV,VCCIO-0.8",
    "LVCMOS33D_12,VCCIO-0.8",
    "LVCMOS33D_8,VCCIO-0.8",
    "LVCMOS33D_4,VCCIO-0.8",
    "LVTTL33_2,VCCIO-1.0",
    "LVCMOS33_2,VCCIO-1.0",
    "LVTTL33_0.1,VCCIO-0.4",
    "LVCMOS33_0.1,VCCIO-0.4",
    "LVCMOS25_0.1,VCCIO-0.4",
    "LVCMOS18_0.1,VCCIO-0.4",
    "LVCMOS15_0.1,VCCIO-0.4",
    "LVCMOS12_0.1,VCCIO-0.4",
    "LVCMOS25_2,VCCIO-1.3",
    "LVCMOS18_2,VCCIO-0.9",
    "LVCMOS15_2,0.5*VCCIO",
    "LVCMOS12_2,0.5*VCCIO",
    "LVCMOS12_16,VCCIO-0.6",
    "LVCMOS12_12,VCCIO-0.6",
    "LVCMOS12_8,VCCIO-0.6",
    "LVCMOS12_5,VCCIO-0.6",
    "LVCMOS12_33,VCCIO-0.6",
    "LVCMOS12_4,VCCIO-0.6",
    "PCI33,0.8*VCCIO",
    "PCIX33,0.8*VCCIO",
    "PCIX15,0.8*VCCIO",
    "AGP1X33,0.8*VCCIO",
    "AGP2X33,0.8*VCCIO",
    "SSTL33_I,VCCIO-1.8",
    "SSTL33D_I,VCCIO-1.8",
    "SSTL33_II,VCCIO-1.4",
    "SSTL33D_II,VCCIO-1.4",
    "SSTL25_I,VCCIO-1.16",
    "SSTL25D_I,VCCIO-1.16",
    "SSTL25_II,VCCIO-0.78",
    "SSTL25D_II,VCCIO-0.78",
    "SSTL18_II,VCCIO-0.56",
    "SSTL18D_II,VCCIO-0.56",
    "LVDS25,0.35",
    "LVDS25E,0.35",
    "BLVDS25,0.35",
    "MLVDS,0.565",
    "MLVDS25,0.565",
    "RSDS,0.2",
    "LVPECL33,0.8",
    "HYPT_6,0.6",
    "HYPT_3.5,0.6",
    "HYPT_4,0.6",
    "LVCMOS33D_16,VCCIO-0.8",
    "LVCMOS33D_20,VCCIO-0.8",
};
constexpr int kIoTypeVccioSearched = 94;

// True differential standards of every architecture that knows them.
const std::initializer_list<const char*> kTrueDifferential = {
    "LVDS",    "LVDS25",   "RSDS",     "HYPT",      "MLVDS",    "PPDS",
    "MLVDS25", "MLVDS25E", "BLVDS25",  "BLVDS25E",  "SLVS",     "LVPECL33",
    "MIPI",    "HSUL12",   "LVTTL33D", "LVCMOS33D", "LVCMOS25D"};
// The long list adds the SSTL family, the plain names included.
const std::initializer_list<const char*> kTrueDifferentialSstl = {
    "SSTL18_I",  "SSTL18_II",  "SSTL18D_I", "SSTL18D_II", "SSTL15_I",   "SSTL15_II",
    "SSTL15D_I", "SSTL15D_II", "SSTL135_I", "SSTL135_II", "SSTL135D_I", "SSTL135D_II"};

const std::initializer_list<const char*> kHalvedDifferential = {
    "LVDS",     "BLVDS25", "BLVDS25E", "MLVDS25",   "MLVDS25E", "SLVS",
    "LVPECL33", "MIPI",    "LVTTL33D", "LVCMOS33D", "LVCMOS25D"};

const std::initializer_list<const char*> kSingleEndFamilies = {"LVCMOS", "PCI", "LVTTL", "VORELLE"};
const std::initializer_list<const char*> kDifferentialFamilies = {"LVDS", "LVPECL", "BLVDS",
                                                                  "MLVDS", "RSDS"};

// Single-ended by its standard: the CMOS families, and SSTL and HSTL
// without a "D".
bool SingleEndedStandard(const std::string& standard) {
    if (HoldsAny(standard, kSingleEndFamilies)) return true;
    return HoldsAny(standard, {"SSTL", "HSTL"}) && !Holds(standard, "D");
}

bool DifferentialStandard(const std::string& standard) {
    if (HoldsAny(standard, kDifferentialFamilies)) return true;
    return HoldsAny(standard, {"SSTL", "HSTL"}) && Holds(standard, "D");
}

// The standard of a type, without a prefix that ends in ":".
std::string PioStandard(const std::string& type) {
    std::string standard = Standard(type);
    const size_t colon = standard.find(':');
    return colon == std::string::npos ? standard : standard.substr(colon + 1);
}

// "LVCMOS33" with "DRIVE:8mA" gives "LVCMOS33_8".
std::string StandardWithDrive(const std::string& type) {
    const std::vector<std::string> tokens = Tokens(type);
    for (size_t i = 1; i < tokens.size(); ++i) {
        if (tokens[i].compare(0, 6, "DRIVE:") != 0) continue;
        std::string drive = tokens[i].substr(6);
        if (drive.size() > 2 && drive.compare(drive.size() - 2, 2, "mA") == 0)
            drive.resize(drive.size() - 2);
        return tokens[0] + "_" + drive;
    }
    return tokens[0];
}

// The value a type asks of each attribute column: "NAME:value", or a bare
// name for a column that is on.
struct Wanted {
    std::string name, value;
    bool bare;
};
std::string WithoutMilliamps(std::string value) {
    if (value.size() >= 2 && value.compare(value.size() - 2, 2, "mA") == 0)
        value.resize(value.size() - 2);
    return value;
}

// A drive is compared in its own column whether spelt "DRIVE:8mA" or "8mA".
std::vector<Wanted> WantedAttributes(const std::string& type) {
    std::vector<Wanted> wanted;
    const std::vector<std::string> tokens = Tokens(type);
    for (size_t i = 1; i < tokens.size(); ++i) {
        const std::string& t = tokens[i];
        const size_t colon = t.find(':');
        if (t.compare(0, 10, "DIFFDRIVE:") == 0) {
            wanted.push_back({"DIFFDRIVE", WithoutMilliamps(t.substr(10)), false});
        } else if (Holds(t, "DRIVE:") || Holds(t, "mA")) {
            const size_t drive = t.find("DRIVE:");
            wanted.push_back(
                {"DRIVE", WithoutMilliamps(drive == std::string::npos ? t : t.substr(drive + 6)),
                 false});
        } else if (colon == std::string::npos) {
            wanted.push_back({t, "", true});
        } else {
            wanted.push_back({t.substr(0, colon), t.substr(colon + 1), false});
        }
    }
    return wanted;
}

const Wanted* FindWanted(const std::vector<Wanted>& wanted, const std::string& name) {
    for (const Wanted& w : wanted)
        if (w.name == name) return &w;
    return nullptr;
}

// The allowed voltages of a "Bank" text as "Vccio x" rows.
std::set<std::string> VoltagesOfText(const std::string& text) {
    std::set<std::string> set;
    for (std::string v : GetArrayOfTokensWithTrim(text, "_", false)) {
        v.erase(std::remove(v.begin(), v.end(), '('), v.end());
        v.erase(std::remove(v.begin(), v.end(), ')'), v.end());
        if (!v.empty()) set.insert("Vccio " + v);
    }
    return set;
}

int Count(PD_TABLE* t, int row, const char* column) {
    return static_cast<int>(
        std::strtol(t->GetValueAt(row, t->GetColumnIndex(column)), nullptr, 10));
}

// Banks in numeric order.
std::vector<std::string> BankOrder(const std::map<std::string, std::set<std::string>>& sets) {
    std::vector<std::string> order;
    for (const auto& kv : sets) order.push_back(kv.first);
    std::stable_sort(order.begin(), order.end(), [](const std::string& a, const std::string& b) {
        return std::strtol(a.c_str(), nullptr, 10) < std::strtol(b.c_str(), nullptr, 10);
    });
    return order;
}

const char* const kConflictHead = "There is VCCIO voltage conflict in bank ";

}  // namespace

// ---- Type lists -----------------------------------------------------------

void PC_ENG::SetInOutBidiVector() {
    struct {
        const char* section;
        const char* bareColumn;
        std::vector<std::string>* list;
    } const kinds[] = {{"Input", "PWRSAVE", &inputTypes},
                       {"Output", "PWRSAVE", &outputTypes},
                       {"Bidir", "BIDIR", &bidiTypes}};
    for (const auto& kind : kinds) {
        kind.list->clear();
        auto* t = dynamic_cast<PD_TBLSECT*>(pwdData->GetSection(kind.section));
        if (!t) continue;
        const int typeCol = t->GetColumnIndex("IO_TYPE");
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            std::string text = t->GetValueAt(r, typeCol);
            for (int c = 0; c < t->GetNumOfColumns(); ++c) {
                const std::string& column = t->columns[c];
                const char* value = t->GetValueAt(r, c);
                // The bank column lists voltages, it is no attribute.
                if (c == typeCol || column == "Bank" || std::strcmp(value, "OFF") == 0) continue;
                if (column == "PWRSAVE" || column == kind.bareColumn)
                    text += "-" + column;
                else
                    text += "-" + column + ":" + value + (column == "DRIVE" ? "mA" : "");
            }
            kind.list->push_back(text);
        }
    }
    iotypeDetails.clear();
    GetIotypeDetailMapList("Inout");
    GetIotypeDetailMapList("Bidi");
}

void PC_ENG::GetIotypeDetailMapList(const std::string& kind) {
    std::vector<const std::vector<std::string>*> lists;
    if (kind == "Inout") lists = {&inputTypes, &outputTypes};
    if (kind == "Bidi") lists = {&bidiTypes};
    for (const std::vector<std::string>* list : lists) {
        for (const std::string& text : *list) {
            std::vector<std::pair<std::string, std::string>> pairs{{"IO TYPE:", Standard(text)}};
            for (const Wanted& w : WantedAttributes(text))
                pairs.push_back({w.name + ":", w.bare ? "ON" : w.value});
            iotypeDetails[text] = pairs;
        }
    }
}

int PC_ENG::IsOnTheListCompare(const std::string& kind, const std::string& type) const {
    const std::vector<std::string>* list = kind == "Input"    ? &inputTypes
                                           : kind == "Output" ? &outputTypes
                                           : kind == "Bidir"  ? &bidiTypes
                                                              : nullptr;
    if (!list) return 0;
    for (const std::string& t : *list)
        if (t == type) return 1;
    return 0;
}

std::string PC_ENG::GetOutBidInpVec(const std::string& type, const std::string& kind) const {
    auto* t = dynamic_cast<PD_TBLSECT*>(pwdData->GetSection(kind.c_str()));
    if (!t || type.empty()) return "";
    const int typeCol = t->GetColumnIndex("IO_TYPE");
    const int bankCol = t->GetColumnIndex("Bank");
    const std::string standard = Standard(type);
    const std::vector<Wanted> wanted = WantedAttributes(type);
    for (int r = 0; r < t->GetNumOfRows(); ++r) {
        if (standard != t->GetValueAt(r, typeCol)) continue;
        bool match = true;
        for (int c = 0; c < t->GetNumOfColumns() && match; ++c) {
            if (c == typeCol || c == bankCol) continue;
            const std::string cell = t->GetValueAt(r, c);
            const Wanted* w = FindWanted(wanted, t->columns[c]);
            if (!w)
                match = cell == "OFF";
            else if (w->bare)
                match = cell != "OFF";
            else
                match = cell == w->value;
        }
        if (match) return t->GetValueAt(r, bankCol);
    }
    return "";
}

std::set<std::string> PC_ENG::GetSetintersection(const std::set<std::string>& a,
                                                 const std::set<std::string>& b) {
    std::set<std::string> out;
    for (const std::string& s : a)
        if (b.count(s)) out.insert(s);
    return out;
}

// ---- Classes of a type ------------------------------------------------------

bool PC_ENG::isLVDStype(const std::string& type) {
    const std::string s = Standard(type);
    return s == "LVDS" || s == "LVDS25";
}

bool PC_ENG::IsDifferentialTrueDividedBy2(const std::string& type) const {
    return HalvesTrueDifferentialInputs(ArchName()) && IsOneOf(Standard(type), kHalvedDifferential);
}

bool PC_ENG::IsDifferentialTrue(const std::string& type) const {
    const std::string s = Standard(type);
    if (IsOneOf(s, kTrueDifferential)) return true;
    if (HasTrueDifferentialList(ArchName())) return IsOneOf(s, kTrueDifferentialSstl);
    return Holds(s, "SSTL") && Holds(s, "D");
}

bool PC_ENG::IsSingleEnd(const std::string& type) const {
    if (IsDifferentialTrue(type)) return false;
    const std::string text = ClassifiesIoByStandard(ArchName()) ? Standard(type) : type;
    if (HoldsAny(text, kSingleEndFamilies)) return true;
    if (HoldsAny(text, {"SSTL", "HSTL"})) return !Holds(text, "D");
    if (HoldsAny(text, {"LVDS", "LVPECL", "BLVDS", "MLVDS", "RSDS", "Diffin", "Diffout"}))
        return false;
    return true;
}

bool PC_ENG::IsStandbyIoType(const std::string& type) const {
    return ioTypesWithStandby.count(Standard(type)) > 0;
}

// On-chip termination is the attribute "TERM" with a value other than "OFF".
bool PC_ENG::HasOnChipTermination(const std::string& type) {
    for (const Wanted& w : WantedAttributes(type))
        if (w.name == "TERM" && !w.bare && w.value != "OFF" && w.value != "NONE" &&
            !w.value.empty())
            return true;
    return false;
}

bool PC_ENG::IsSingleEndedOutputType(const std::string& outType) {
    return outType == "SingleEndOut" || SingleEndedStandard(PioStandard(outType));
}

// ---- PIO types ------------------------------------------------------------------

std::string PC_ENG::DetermineInputPIOtype(const std::string& type) const {
    if (!HasPioTypeNames(ArchName())) return HlpConvertIOtypeBackForSC(type, "Input");
    const std::string standard = PioStandard(type);
    if (SingleEndedStandard(standard)) {
        const std::string code = GetStringFirstNumberStr(standard);
        if (IsOneOf(code, {"33", "25", "18", "15", "12"})) return "SingleEndIn_" + code;
        return "SingleEndIn";
    }
    if (DifferentialStandard(standard)) return "Diffin";
    return "DEFAULT";
}

std::string PC_ENG::DetermineOutputPIOtype(const std::string& type) const {
    if (!HasPioTypeNames(ArchName())) return HlpConvertIOtypeBackForSC(type, "Output");
    const std::string standard = PioStandard(type);
    if (SingleEndedStandard(standard)) return "SingleEndOut";
    if (DifferentialStandard(standard)) return "Diffout";
    return "DEFAULT";
}

std::string PC_ENG::DeterminePureInputPIOtype(const std::string& type) const {
    if (!MergesPureInputTypes(ArchName()) || !familySwitching) return type;
    // Position by position, the type's tokens and the family's default.
    const std::vector<std::string> own = Tokens(type);
    const std::vector<std::string> def = Tokens(fallbackInput);
    std::string out;
    for (size_t i = 0; i < std::max(own.size(), def.size()); ++i) {
        const std::string& t = i < own.size() && !own[i].empty() ? own[i] : def[i];
        out += (i ? "-" : "") + t;
    }
    return out;
}

std::string PC_ENG::HlpConvertIOtypeBackForSC(const std::string& type, const std::string&) const {
    if (!ConvertsIoTypesBack(ArchName())) return type;
    const std::vector<std::string> tokens = Tokens(type);
    std::string out = tokens[0];
    for (size_t i = 1; i < tokens.size(); ++i) {
        const std::string& t = tokens[i];
        const size_t colon = t.find(':');
        const std::string value = colon == std::string::npos ? "" : t.substr(colon + 1);
        if (t.compare(0, 7, "PWRSAVE") == 0)
            out += value == "OFF" ? "-OFF" : "-ON";
        else if (Holds(t, "mA"))
            out += "-" + (value.empty() ? t : value);
        else
            out += "-" + t;
    }
    return out;
}

std::string PC_ENG::DetermindPIOType(const std::string& kind, const std::string& text) const {
    auto* t = dynamic_cast<PD_TBLSECT*>(pwdData->GetSection(kind.c_str()));
    std::string out = Standard(text);
    if (!t) return out;
    const std::vector<Wanted> wanted = WantedAttributes(text);
    for (const std::string& column : t->columns) {
        if (column == "IO_TYPE" || column == "Bank") continue;
        const Wanted* w = FindWanted(wanted, column);
        out += "-" + (w ? (w->bare ? std::string("ON") : w->value) : std::string("OFF"));
    }
    return out;
}

// ---- Output voltage ------------------------------------------------------------

double PC_ENG::IoTypeOutputVoltage(const std::string& standard, double vccio, bool* found) {
    if (found) *found = false;
    for (int i = 0; i < kIoTypeVccioSearched; ++i) {
        const char* entry = kIoTypeVccio[i];
        const char* comma = std::strchr(entry, ',');
        if (standard.size() != static_cast<size_t>(comma - entry) ||
            standard.compare(0, standard.size(), entry, comma - entry) != 0)
            continue;
        if (found) *found = true;
        const std::string expr = comma + 1;
        const size_t minus = expr.find('-');
        if (minus != std::string::npos) return vccio - Num(expr.substr(minus + 1));
        const size_t times = expr.find('*');
        if (times != std::string::npos) return Num(expr.substr(0, times)) * vccio;
        return Num(expr);
    }
    return vccio;
}

// The table holds standards with their drive: the architectures that
// classify by the standard look that up, the others their output PIO type.
double PC_ENG::FindSupplyVccioOutput(PD_TABLE* table, int row, double vccio) {
    if (!table) return vccio;
    const std::string type = table->GetValueAt(row, table->GetColumnIndex("Type"));
    const double rth = Num(table->GetValueAt(row, table->GetColumnIndex("Rth (Ohm)")));
    const int outputs = Count(table, row, "# O/P") + Count(table, row, "# Bidi");
    if (!(rth > 0.0) || IsDifferentialTrue(type) || outputs <= 0) return vccio;
    const std::string output =
        ClassifiesIoByStandard(ArchName()) ? StandardWithDrive(type) : DetermineOutputPIOtype(type);
    return IoTypeOutputVoltage(output, vccio, nullptr);
}

// ---- The bank voltage rule ------------------------------------------------------

std::map<std::string, std::set<std::string>> PC_ENG::BankAllowedVccios() const {
    std::map<std::string, std::set<std::string>> sets;
    for (const char* name : {"Input Output", "Bidi"}) {
        PD_TABLE* t = GetIoTable(name);
        if (!t) continue;
        const bool bidiTable = std::strcmp(name, "Bidi") == 0;
        const int typeCol = t->GetColumnIndex("Type");
        const int bankCol = t->GetColumnIndex("Bank");
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            const std::string type = t->GetValueAt(r, typeCol);
            const std::string bank = t->GetValueAt(r, bankCol);
            // One text a row: the input's replaces the output's.
            std::string text;
            if (bidiTable) {
                if (Count(t, r, "# Bidi") <= 0) continue;
                text = GetOutBidInpVec(type, "Bidir");
            } else {
                const int in = Count(t, r, "# I/P");
                const int out = Count(t, r, "# O/P");
                if (in <= 0 && out <= 0) continue;
                if (out > 0) text = GetOutBidInpVec(type, "Output");
                if (in > 0) text = GetOutBidInpVec(type, "Input");
            }
            // An unknown type sets no bound.
            if (text.empty()) continue;
            const std::set<std::string> allowed =
                Holds(text, "ALL")
                    ? GetBankAllVccios(static_cast<int>(std::strtol(bank.c_str(), nullptr, 10)))
                    : VoltagesOfText(text);
            auto it = sets.find(bank);
            if (it == sets.end())
                sets[bank] = allowed;
            else
                it->second = GetSetintersection(it->second, allowed);
        }
    }
    return sets;
}

int PC_ENG::IotypeDesignRulecheck() {
    if (DrcErrorCount == 0) DrcMessage.clear();
    // The conflicts of an earlier check give way to the present ones.
    std::string kept;
    for (size_t pos = 0; pos < DrcMessage.size();) {
        size_t end = DrcMessage.find('\n', pos);
        end = end == std::string::npos ? DrcMessage.size() : end + 1;
        const std::string line = DrcMessage.substr(pos, end - pos);
        if (line.compare(0, std::strlen(kConflictHead), kConflictHead) == 0) {
            if (DrcErrorCount > 0) --DrcErrorCount;
        } else {
            kept += line;
        }
        pos = end;
    }
    DrcMessage = kept;

    const std::map<std::string, std::set<std::string>> sets = BankAllowedVccios();
    PD_TABLE* banksTable = GetIoTable("Bank Voltage");
    int result = 1;
    for (const std::string& bank : BankOrder(sets)) {
        const std::set<std::string>& allowed = sets.at(bank);
        const std::string voltage =
            banksTable
                ? banksTable->GetValueAt(BankRowOf(bank), banksTable->GetColumnIndex("Voltage"))
                : std::string();
        if (!allowed.empty() && allowed.count(voltage)) continue;
        DrcMessage += kConflictHead + bank + ".\n";
        ++DrcErrorCount;
        result = 0;
    }
    return result;
}
