// The bank model: the device's I/O banks, the voltage of each and the
// "Bank Voltage" table of the "I/O" tab.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

bool bankidsort(const BANKIO& a, const BANKIO& b) {
    return a.id < b.id;
}

namespace {

// A VCCIO code with the supply rows it stands for.
struct VoltageCode {
    const char* code;
    double volts;
    const char* vccio;
    const char* vtt;  // null: no termination supply
    const char* vccaux;
};
const VoltageCode kVoltageCodes[] = {
    {"33", 3.3, "Vccio 3.3", "Vtt 1.65", "Vccaux 3.3"},
    {"25", 2.5, "Vccio 2.5", "Vtt 1.25", "Vccaux 2.5"},
    {"18", 1.8, "Vccio 1.8", "Vtt 0.9", "Vccaux 1.8"},
    {"15", 1.5, "Vccio 1.5", "Vtt 0.75", "Vccaux 1.5"},
    {"12", 1.2, "Vccio 1.2", "Vtt 0.6", "Vccaux 1.2"},
    {"135", 1.35, "Vccio 1.35", nullptr, nullptr},
};

// A code written as a code ("33", "135") or in volts ("3.3", "33.0").
const VoltageCode* CodeOf(const std::string& text) {
    if (text.empty()) return nullptr;
    const double v = Num(text);
    for (const VoltageCode& c : kVoltageCodes)
        if (std::fabs(v - c.volts) < 1e-9 || std::fabs(v - Num(c.code)) < 1e-9) return &c;
    return nullptr;
}

// The termination supplies, by their code in hundredths of a volt.
struct VttCode {
    double code;
    double volts;
    const char* row;
};
const VttCode kVttCodes[] = {{165, 1.65, "Vtt 1.65"},
                             {125, 1.25, "Vtt 1.25"},
                             {9, 0.9, "Vtt 0.9"},
                             {75, 0.75, "Vtt 0.75"},
                             {6, 0.6, "Vtt 0.6"}};

// The columns of "Bank Voltage" that a project fills, with the project's
// column and the default.
struct BankColumn {
    const char* column;
    const char* projectColumn;
    const char* fallback;
};
const BankColumn kBankColumns[] = {
    {"Voltage", "Voltage", "Vccio 1.2"},   {"PG", "PG", "N/A"},
    {"Allow InRD Shut-off", "InRD", "No"}, {"Allow LVDSO Shut-off", "LVDSO", "N/A"},
    {"Allow PUSL Shut-off", "PUSL", "No"}, {"Slewrate", "SLEWRATE", "No"},
};

const char* const kVccioStart[] = {"Vccio 1.2", "Vccio 1.35", "Vccio 1.5",
                                   "Vccio 1.8", "Vccio 2.5",  "Vccio 3.3"};

// The voltages a device bank can take by the rule of the architecture.
std::set<std::string> DeviceVcciosOfBank(const std::string& arch, int id) {
    if (IsPfrArch(arch)) {
        if (id == 0 || id == 4 || id == 5) return {"Vccio 2.5", "Vccio 3.3"};
        if (id == 3) return {"Vccio 1.8"};
    }
    std::set<std::string> all{"Vccio 1.2", "Vccio 1.5", "Vccio 1.8", "Vccio 2.5", "Vccio 3.3"};
    if (IsBf7p00Arch(arch)) all.insert("Vccio 1.35");
    return all;
}

int Integer(const std::string& text, bool* ok) {
    char* end = nullptr;
    const long v = std::strtol(text.c_str(), &end, 10);
    *ok = end != text.c_str();
    return static_cast<int>(v);
}

PD_TBLSECT* BankSection(PD_DATA* data) {
    return data ? dynamic_cast<PD_TBLSECT*>(data->GetSection("Bank Voltage")) : nullptr;
}

// The bank's standby key: "DisableLVDS" stands for bank 0 of the LVDS map.
std::string ShutOffKey(const char* key, const std::string& bank) {
    if (std::strcmp(key, "DisableLVDS") == 0 && bank == "0") return key;
    return key + bank;
}

}  // namespace

// ---- Records ----------------------------------------------------------------

void PC_ENG::SetBankPIOInformation(const std::string& column) {
    auto* format = dynamic_cast<PD_TBLSECT*>(pwdData->GetSection("Format"));
    if (!format) return;
    const int col = format->GetColumnIndex(column.c_str());
    const int keyCol = format->GetColumnIndex("Device_Package");
    if (col < 0 || keyCol < 0) return;
    const std::string key = DevicePackageKey();
    int row = -1;
    for (int r = 0; r < format->GetNumOfRows() && row < 0; ++r)
        if (key == format->GetValueAt(r, keyCol)) row = r;
    if (row < 0) return;
    const std::string cell = format->GetValueAt(row, col);
    const size_t open = cell.find('(');
    if (open == std::string::npos) return;
    bool ok = false;
    const int count = Integer(cell.substr(0, open), &ok);
    if (ok && (column == "Bank" || count > numberOfBanks)) numberOfBanks = count;
    const size_t close = cell.find(')', open);
    const std::string inner =
        cell.substr(open + 1, close == std::string::npos ? std::string::npos : close - open - 1);
    for (const std::string& group : GetArrayOfTokensWithTrim(inner, "_", false)) {
        const size_t dash = group.find('-');
        if (dash == std::string::npos) continue;
        bool idOk = false, valueOk = false;
        const std::string name = group.substr(0, dash);
        const int id = Integer(name, &idOk);
        const int value = Integer(group.substr(dash + 1), &valueOk);
        if (!idOk || !valueOk) continue;
        auto existing =
            std::find_if(banks.begin(), banks.end(), [id](const BANKIO& b) { return b.id == id; });
        if (column == "Bank") {
            if (existing != banks.end()) continue;
            BANKIO b;
            b.user = true;
            b.id = id;
            b.name = name;
            b.ioCount = value;
            banks.push_back(b);
        } else if (existing != banks.end()) {
            existing->pioCount = value;
        } else {
            // PIO cells that no package pin reaches.
            BANKIO b;
            b.id = id;
            b.name = name;
            b.pioCount = value;
            banks.push_back(b);
        }
    }
}

void PC_ENG::SetBankInformation() {
    banks.clear();
    numberOfBanks = 0;
    SetBankPIOInformation("Bank");
    SetBankPIOInformation("Bank PIO Cells");
    for (BANKIO& b : banks) {
        b.vccioTypes.clear();
        b.vccios = DeviceVcciosOfBank(ArchName(), b.id);
        if (b.pioCount < 0) b.pioCount = b.ioCount;
    }
    std::sort(banks.begin(), banks.end(), bankidsort);
}

const BANKIO* PC_ENG::BankRecord(const std::string& name) const {
    for (const BANKIO& b : banks)
        if (b.name == name) return &b;
    return nullptr;
}

int PC_ENG::BankExistingCheck(int id) const {
    for (const BANKIO& b : banks)
        if (b.id == id && b.user) return 1;
    return 0;
}

int PC_ENG::BankIsUserAvailable(const std::string& text) const {
    bool ok = false;
    const int id = Integer(text, &ok);
    if (!ok) return 0;
    for (const BANKIO& b : banks)
        if (b.id == id) return b.user ? 1 : 0;
    return 0;
}

std::set<std::string> PC_ENG::GetBankAllVccios(int bank) const {
    const std::set<std::string> pfr = PfrBankVccios(bank);
    if (!pfr.empty()) return pfr;
    for (const BANKIO& b : banks)
        if (b.id == bank) return b.vccios;
    return {};
}

std::set<std::string> PC_ENG::PfrBankVccios(int bank) const {
    if (IsPfrArch(ArchName())) {
        // The port's interface logic fixes the voltage of its banks.
        PC_PANEL* pfr = GetPanel(GetPanelIndex("PFR"));
        PD_TABLE* logic = pfr ? pfr->GetTable(pfr->GetTableIndex("PFR interface logic")) : nullptr;
        auto* values = dynamic_cast<PD_TBLSECT*>(pwrData->GetSection("PFR VCCIO VALUE"));
        if (logic && logic->GetNumOfRows() > 0 && values) {
            const std::string key =
                std::string(logic->GetValueAt(0, logic->GetColumnIndex("Mode"))) + "_BANK" +
                std::to_string(bank);
            const int r = values->GetKeyTableRowIndex(key.c_str());
            const char* v = values->GetValueAt(r, values->GetColumnIndex("Value"));
            if (r >= 0 && *v) return {std::string("Vccio ") + v};
        }
    }
    return {};
}

std::string PC_ENG::GetBankDefaultVccio(int, int bank) const {
    if (IsPfrArch(ArchName())) {
        const std::set<std::string> all = GetBankAllVccios(bank);
        return all.empty() ? std::string() : *all.begin();
    }
    PD_TBLSECT* table = BankSection(pwrData);
    if (!table) return "";
    const int r = table->GetKeyTableRowIndex(std::to_string(bank).c_str());
    return r < 0 ? "" : table->GetValueAt(r, table->GetColumnIndex("Voltage"));
}

void PC_ENG::SetBankAvailableVccio(int bank) {
    auto record =
        std::find_if(banks.begin(), banks.end(), [bank](const BANKIO& b) { return b.id == bank; });
    if (record == banks.end()) return;
    struct Kind {
        const char* list;
        std::set<std::string> types;
    } kinds[] = {{"Input", {}}, {"Output", {}}, {"Bidir", {}}};
    bool used = false;
    for (const char* name : {"Input Output", "Bidi"}) {
        PD_TABLE* t = GetIoTable(name);
        if (!t) continue;
        const int bankCol = t->GetColumnIndex("Bank");
        const int typeCol = t->GetColumnIndex("Type");
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            if (record->name != t->GetValueAt(r, bankCol)) continue;
            for (const char* c : {"# I/P", "# O/P", "# Bidi"})
                used |= std::strtol(t->GetValueAt(r, t->GetColumnIndex(c)), nullptr, 10) > 0;
            const std::string type = t->GetValueAt(r, typeCol);
            for (Kind& k : kinds)
                if (IsOnTheListCompare(k.list, type)) k.types.insert(type);
        }
    }
    for (const Kind& k : kinds) used |= !k.types.empty();
    std::set<std::string> set;
    if (IsPfrArch(ArchName())) {
        // From the device's rule, not from the record this call narrows.
        set = PfrBankVccios(bank);
        if (set.empty()) set = DeviceVcciosOfBank(ArchName(), bank);
    } else {
        for (const char* v : kVccioStart)
            if (std::strcmp(v, "Vccio 1.35") != 0 || HasSupply(v)) set.insert(v);
    }
    if (used) {
        for (const Kind& k : kinds) {
            for (const std::string& type : k.types) {
                const std::string text = GetOutBidInpVec(type, k.list);
                if (text.empty() || text.find("ALL") != std::string::npos) continue;
                std::set<std::string> allowed;
                for (std::string v : GetArrayOfTokensWithTrim(text, "_", false)) {
                    v.erase(std::remove(v.begin(), v.end(), '('), v.end());
                    v.erase(std::remove(v.begin(), v.end(), ')'), v.end());
                    if (!v.empty()) allowed.insert("Vccio " + v);
                }
                set = GetSetintersection(set, allowed);
            }
        }
    }
    record->vccios = set;
}

void PC_ENG::SetBanksAvailableVccio() {
    bool first = true;
    for (BANKIO& b : banks) {
        if (!b.user) continue;
        if (first && IsPfrArch(ArchName()))
            for (BANKIO& other : banks) other.vccioTypes.clear();
        first = false;
        SetBankAvailableVccio(b.id);
    }
}

// ---- Voltages of codes, banks and rows ----------------------------------------

std::string PC_ENG::GetVccio(const std::string& code) const {
    const VoltageCode* c = CodeOf(code);
    return c ? GetVDPMCategory(c->vccio, "Voltage", "-1") : "";
}

std::string PC_ENG::GetVccioFromBank(int row) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    const std::string text =
        table ? table->GetValueAt(row, table->GetColumnIndex("Voltage")) : std::string();
    if (text.compare(0, 6, "Vccio ") != 0) return "1.2";
    return GetVccio(text.substr(6));
}

std::string PC_ENG::CodeOfBankRow(int row) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    const std::string text =
        table ? table->GetValueAt(row, table->GetColumnIndex("Voltage")) : std::string();
    // A row that names no VCCIO runs at 1.2 V, as GetVccioFromBank has it.
    if (text.compare(0, 6, "Vccio ") != 0) return "12";
    const VoltageCode* c = CodeOf(text.substr(6));
    return c ? c->code : "";
}

std::string PC_ENG::BankVccioCode(const std::string& bank) const {
    return CodeOfBankRow(BankRowOf(bank));
}

std::string PC_ENG::GetVtt(const std::string& code) const {
    if (code.empty()) return "";
    const double v = Num(code);
    for (const VttCode& c : kVttCodes)
        if (std::fabs(v - c.code) < 1e-9 || std::fabs(v - c.volts) < 1e-9)
            return GetVDPMCategory(c.row, "Voltage", "-1");
    return "";
}

std::string PC_ENG::GetVttFromVccio(const std::string& code) const {
    return pwc::PrintFixed(Num(code) / 10 * 0.5, 2);
}

std::string PC_ENG::GetVccaux(const std::string& code) const {
    const VoltageCode* c = CodeOf(code);
    if (!c || !c->vccaux) return "";
    if (std::strcmp(c->code, "12") == 0 && !HasSupply(c->vccaux)) return "Vcc";
    return c->vccaux;
}

std::string PC_ENG::GetVccauxFromVccio(const std::string& code) const {
    return GetVccaux(pwc::PrintFixed(Num(code) / 10.0, 1));
}

std::string PC_ENG::VttCategoryOfCode(const std::string& code) {
    const VoltageCode* c = CodeOf(code);
    return c && c->vtt ? c->vtt : "";
}

std::string PC_ENG::VccauxCategoryOfCode(const std::string& code) {
    const VoltageCode* c = CodeOf(code);
    return c && c->vccaux ? c->vccaux : "";
}

std::string PC_ENG::VttVoltageOfCode(const std::string& code) const {
    const std::string category = VttCategoryOfCode(code);
    if (category.empty()) return "0";
    const std::string v = GetVDPMCategory(category, "Voltage", "-1");
    return v.empty() ? "-1" : v;
}

PD_TABLE* PC_ENG::GetIoTable(const char* name) const {
    PC_PANEL* io = GetPanel(GetPanelIndex("I/O"));
    return io ? io->GetTable(io->GetTableIndex(name)) : nullptr;
}

int PC_ENG::BankRowOf(const std::string& bank) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    return table ? table->GetRowNumber(bank) : -1;
}

namespace {

const char* const kIoRowSupplies[] = {"VCCIO", "VTT"};

bool IsIoRowTable(const PD_TABLE* table) {
    if (!table) return false;
    for (const char* n : {"Input Output", "Bidi", "Termination", "Bank Voltage"})
        if (table->name == n) return true;
    return false;
}

}  // namespace

int PC_ENG::IoRowSupplyCount(PD_TABLE* table) const {
    if (!IsIoRowTable(table)) return 0;
    return HasSupply("Vtt") ? 2 : 1;
}

std::vector<std::string> PC_ENG::IoRowSupplyNames(PD_TABLE* table) const {
    const int n = IoRowSupplyCount(table);
    return std::vector<std::string>(kIoRowSupplies, kIoRowSupplies + n);
}

void PC_ENG::IoRowSupplyValues(PD_TABLE* table, int row, std::string& vccio,
                               std::string& vtt) const {
    int bankRow = row;
    if (table->name != "Bank Voltage")
        bankRow = BankRowOf(table->GetValueAt(row, table->GetColumnIndex("Bank")));
    vccio = GetVccioFromBank(bankRow);
    vtt = VttVoltageOfCode(CodeOfBankRow(bankRow));
}

// ---- The "Bank Voltage" table -----------------------------------------------

int PC_ENG::GetAvailableBankid(PD_TABLE* table) const {
    for (int id = 0;; ++id)
        if (table->GetRowNumber(std::to_string(id)) < 0) return id;
}

void PC_ENG::FillBankTable(PD_TABLE* table) {
    PD_TBLSECT* sources[] = {project ? BankSection(project) : nullptr, BankSection(pcfData)};
    PD_TBLSECT* pwr = BankSection(pwrData);
    const bool unreachable = ListsUnreachableBanks(ArchName(), PackageName());
    const int bankCol = table->GetColumnIndex("Bank");
    for (const BANKIO& b : banks) {
        if (!b.user && !unreachable) continue;
        std::vector<std::string> cells(table->GetNumOfColumns(), "0.0");
        cells[bankCol < 0 ? 0 : bankCol] =
            table->GetRowNumber(b.name) < 0 ? b.name : std::to_string(GetAvailableBankid(table));
        for (const BankColumn& bc : kBankColumns) {
            const int col = table->GetColumnIndex(bc.column);
            if (col < 0) continue;
            std::string value;
            for (PD_TBLSECT* s : sources) {
                if (!s || !value.empty()) continue;
                value = s->GetValueAt(s->GetKeyTableRowIndex(b.name.c_str()),
                                      s->GetColumnIndex(bc.projectColumn));
            }
            if (value.empty() && pwr && std::strcmp(bc.column, "Voltage") == 0)
                value = pwr->GetValueAt(pwr->GetKeyTableRowIndex(b.name.c_str()),
                                        pwr->GetColumnIndex("Voltage"));
            cells[col] = value.empty() ? bc.fallback : value;
        }
        table->AddRow(cells);
    }
}

// The type whose allowed voltages decide: an output first, as it allows
// the fewest, then a bidirectional pin, then an input.
std::string PC_ENG::GetRememberType(const std::vector<bankdata>& rows, std::string& kind) const {
    struct {
        bool bankdata::*flag;
        const char* kind;
    } const order[] = {{&bankdata::hasOutput, "Output"},
                       {&bankdata::hasBidi, "Bidir"},
                       {&bankdata::hasInput, "Input"}};
    for (const auto& o : order)
        for (const bankdata& d : rows)
            if (d.*o.flag) {
                kind = o.kind;
                return d.type;
            }
    kind.clear();
    return "";
}

bool PC_ENG::BankTakesVoltage(const std::string& bank, const std::string& voltage,
                              const std::map<std::string, std::set<std::string>>& allowed) const {
    auto it = allowed.find(bank);
    return it == allowed.end() || it->second.count(voltage) > 0;
}

void PC_ENG::BankDo() {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    if (!table) return;
    SetBanksAvailableVccio();
    if (table->GetNumOfRows() == 0) FillBankTable(table);
    table->SortRowData("Bank");

    const std::map<std::string, std::set<std::string>> allowed = BankAllowedVccios();
    const int voltCol = table->GetColumnIndex("Voltage");
    // Try the voltage; keep it only when the bank's rows can all take it.
    auto trySet = [&](int row, const std::string& bank, const std::string& voltage) {
        if (!BankTakesVoltage(bank, voltage, allowed)) return false;
        table->SetValueAt(voltage.c_str(), row, voltCol);
        return true;
    };
    auto* keys = dynamic_cast<PD_KEYSECT*>(pwrData->GetSection("IO BANK VCCIO"));
    const std::string defaultVoltage =
        std::string("Vccio ") +
        (keys ? keys->GetValue(GetTotalUsedIO() > 0 ? "BFD_DEFAULT" : "HW_DEFAULT") : "");

    for (int r = 0; r < table->GetNumOfRows(); ++r) {
        const std::string bank = table->GetValueAt(r, 0);
        const BANKIO* record = BankRecord(bank);
        if (!record) continue;
        if (!record->user) {
            table->SetValueAt("Vccio 1.2", r, voltCol);
            continue;
        }
        if (bankConstraintsInForce) {
            auto fixed = bankVoltageConstraints.find(bank);
            if (fixed != bankVoltageConstraints.end()) {
                table->SetValueAt(("Vccio " + fixed->second).c_str(), r, voltCol);
                continue;
            }
        }
        const std::string current = table->GetValueAt(r, voltCol);
        const std::vector<bankdata>& rows = BankUseOf(bank).rows;
        if (rows.empty()) {
            if (record->vccios.count(current)) continue;
            if (record->vccios.count(defaultVoltage) && trySet(r, bank, defaultVoltage)) continue;
            trySet(r, bank, GetBankDefaultVccio(r, record->id));
            continue;
        }
        std::string kind;
        const std::string type = GetRememberType(rows, kind);
        std::string text = GetOutBidInpVec(type, kind);
        if (text.empty()) text = "ALL_1.2";
        std::vector<std::string> candidates;
        std::string preferred;
        if (text.find("ALL") != std::string::npos) {
            const std::set<std::string> all = GetBankAllVccios(record->id);
            candidates.assign(all.begin(), all.end());
            if (text.size() > 4) preferred = "Vccio " + text.substr(4);
        } else {
            for (std::string v : GetArrayOfTokensWithTrim(text, "_", false)) {
                const bool inParentheses = v.size() > 1 && v.front() == '(' && v.back() == ')';
                if (inParentheses) v = v.substr(1, v.size() - 2);
                if (v.empty()) continue;
                candidates.push_back("Vccio " + v);
                if (inParentheses) preferred = candidates.back();
            }
        }
        if (std::find(candidates.begin(), candidates.end(), current) != candidates.end()) continue;
        if (!preferred.empty() && trySet(r, bank, preferred)) continue;
        for (const std::string& v : candidates)
            if (trySet(r, bank, v)) break;
    }

    if (HasPowerGuardColumn(FamilyName())) {
        const int pgCol = table->GetColumnIndex("PG");
        for (int r = 0; r < table->GetNumOfRows(); ++r) {
            const std::string bank = table->GetValueAt(r, 0);
            const char* pg = "N/A";
            if (GetBankUsedIO(bank, "all") > 0)
                pg = hasPowerGuardOn("Input Output", bank) || hasPowerGuardOn("Bidi", bank) ? "ON"
                                                                                            : "OFF";
            table->SetValueAt(pg, r, pgCol);
        }
    }

    if (!bankConstraintsInForce) return;
    for (const auto& [bank, volts] : bankVoltageConstraints) {
        bool ok = false;
        const int id = Integer(bank, &ok);
        const BANKIO* record = BankRecord(bank);
        if (!ok || !BankExistingCheck(id) || !record) {
            DrcMessage += "Invalid bank id " + bank + " in constraints file.\n";
            ++DrcErrorCount;
        } else if (!record->vccios.count("Vccio " + volts)) {
            DrcMessage += "The bank VCCIO voltage setting for bank " + bank + " is wrong.\n";
            ++DrcErrorCount;
        }
    }
}

// ---- Power guard and the standby answers ----------------------------------

bool PC_ENG::hasPowerGuardOn(const std::string& tableName, const std::string& bank) const {
    PD_TABLE* table = GetIoTable(tableName.c_str());
    if (!table) return false;
    const int bankCol = table->GetColumnIndex("Bank");
    const int pgCol = table->GetColumnIndex("PG");
    if (pgCol < 0) return false;
    for (int r = 0; r < table->GetNumOfRows(); ++r)
        if (bank == table->GetValueAt(r, bankCol) &&
            std::strcmp(table->GetValueAt(r, pgCol), "ON") == 0)
            return true;
    return false;
}

void PC_ENG::SetBankPowerGuard(const std::string& tableName, const std::string& value, int row,
                               int column) {
    PD_TABLE* table = GetIoTable(tableName.c_str());
    PD_TABLE* banksTable = GetIoTable("Bank Voltage");
    if (!table) return;
    table->SetValueAt(value.c_str(), row, column);
    if (!banksTable || !HasPowerGuardColumn(FamilyName())) return;
    // The bank's guard follows its rows.
    const std::string bank = table->GetValueAt(row, table->GetColumnIndex("Bank"));
    const bool on = hasPowerGuardOn("Input Output", bank) || hasPowerGuardOn("Bidi", bank);
    banksTable->SetValueAt(on ? "ON" : "OFF", BankRowOf(bank), banksTable->GetColumnIndex("PG"));
}

bool PC_ENG::BankAllows(int row, const char* column) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    if (!table || row < 0) return false;
    return std::strcmp(table->GetValueAt(row, table->GetColumnIndex(column)), "Yes") == 0;
}

bool PC_ENG::BankOffersShutOff(int row, const char* column, const char* key) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    if (!table || row < 0) return false;
    return BankAllows(row, column) || GetStandbyFlag(ShutOffKey(key, table->GetValueAt(row, 0)));
}

namespace {

struct BankAnswer {
    const char* column;
    const char* key;
    bool naMeansYes;
};
const BankAnswer kSlewrate{"Slewrate", "DisableSlewrate", false};
const BankAnswer kPusl{"Allow PUSL Shut-off", "DisablePUSL", false};
const BankAnswer kInrd{"Allow InRD Shut-off", "DisableInRd", true};
const BankAnswer kLvdso{"Allow LVDSO Shut-off", "DisableLVDS", true};

}  // namespace

std::string PC_ENG::GetBankSlewrate(int row) const {
    return BankOffersShutOff(row, kSlewrate.column, kSlewrate.key) ? "Yes" : "No";
}
std::string PC_ENG::GetBankPusl(int row) const {
    return BankOffersShutOff(row, kPusl.column, kPusl.key) ? "Yes" : "No";
}
std::string PC_ENG::GetBankInrd(int row) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    if (table &&
        std::strcmp(table->GetValueAt(row, table->GetColumnIndex(kInrd.column)), "N/A") == 0)
        return "Yes";
    return BankOffersShutOff(row, kInrd.column, kInrd.key) ? "Yes" : "No";
}
std::string PC_ENG::GetBankLvdso(int row) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    if (table &&
        std::strcmp(table->GetValueAt(row, table->GetColumnIndex(kLvdso.column)), "N/A") == 0)
        return "Yes";
    return BankOffersShutOff(row, kLvdso.column, kLvdso.key) ? "Yes" : "No";
}
std::string PC_ENG::GetBankPG(int row) const {
    PD_TABLE* table = GetIoTable("Bank Voltage");
    if (!table || row < 0) return "OFF";
    if (std::strcmp(table->GetValueAt(row, table->GetColumnIndex("PG")), "ON") == 0) return "ON";
    return GetStandbyFlag(std::string("EnablePg") + table->GetValueAt(row, 0)) ? "ON" : "OFF";
}

namespace {

// The always-on blocks whose "Allow Standby" follows a device-wide flag.
struct DeviceStandby {
    const char* table;
    bool PC_ENG::*flag;
};
const DeviceStandby kDeviceStandby[] = {{"BANDGAP", &PC_ENG::DisableBandgap},
                                        {"POR", &PC_ENG::DisablePor},
                                        {"MCLK", &PC_ENG::DisableOsc}};

}  // namespace

std::string PC_ENG::GetStandbyControl(const std::string& tableName, int row,
                                      const std::string& column) const {
    PD_TABLE* table = nullptr;
    for (PC_PANEL* panel : panels)
        if (!table) table = panel->GetTable(panel->GetTableIndex(tableName.c_str()));
    const std::string cell =
        table ? table->GetValueAt(row, table->GetColumnIndex(column.c_str())) : std::string();
    if (cell == "No") return "No";
    for (const DeviceStandby& d : kDeviceStandby)
        if (tableName == d.table) return this->*d.flag ? "Enable" : "Disable";
    if (tableName == "Bank Voltage") {
        if (column == kSlewrate.column) return GetBankSlewrate(row);
        if (column == kPusl.column) return GetBankPusl(row);
        if (column == kInrd.column) return GetBankInrd(row);
        if (column == kLvdso.column) return GetBankLvdso(row);
        if (column == "PG") return GetBankPG(row);
    }
    return cell;
}

std::vector<std::string> PC_ENG::GetStandbyOption(const std::string& table,
                                                  const std::string& column) const {
    if (table == "Bank Voltage") {
        if (column == "PG") return {"ON", "OFF", "N/A"};
        if (column == kInrd.column || column == kLvdso.column) return {"Yes", "No", "N/A"};
        return {"Yes", "No"};
    }
    for (const DeviceStandby& d : kDeviceStandby)
        if (table == d.table) return {"Yes", "No"};
    return {"Enable", "Disable"};
}

// ---- The rows in use of each bank ------------------------------------------

void PC_ENG::BuildBankUse() {
    bankUseCache.clear();
    for (const char* name : {"Input Output", "Bidi"}) {
        PD_TABLE* t = GetIoTable(name);
        if (!t) continue;
        const int bankCol = t->GetColumnIndex("Bank");
        const int typeCol = t->GetColumnIndex("Type");
        const int cols[] = {t->GetColumnIndex("# I/P"), t->GetColumnIndex("# O/P"),
                            t->GetColumnIndex("# Bidi")};
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            bool flags[3];
            for (int k = 0; k < 3; ++k)
                flags[k] = std::strtol(t->GetValueAt(r, cols[k]), nullptr, 10) > 0;
            if (!flags[0] && !flags[1] && !flags[2]) continue;
            bankdata d;
            d.type = t->GetValueAt(r, typeCol);
            d.hasInput = flags[0];
            d.hasOutput = flags[1];
            d.hasBidi = flags[2];
            bankUseCache[t->GetValueAt(r, bankCol)].rows.push_back(d);
        }
    }
}

const PC_ENG::BankUse& PC_ENG::BankUseOf(const std::string& bank) {
    static const BankUse none;
    // Outside the I/O tab the rows may have changed since the last look.
    if (!bankUseCached) BuildBankUse();
    auto it = bankUseCache.find(bank);
    return it == bankUseCache.end() ? none : it->second;
}
