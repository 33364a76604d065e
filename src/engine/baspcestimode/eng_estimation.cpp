// Estimation mode: the driver, the hidden columns of each row and their save
// and restore, and the repair of an imported I/O table.
#include <cctype>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "pd_util.h"

namespace {

const char* const kSummaryPanel = "Summary";

// Saved and zeroed before a row is estimated. "# X1d" and "# X1f" are not
// among them: an earlier estimate of those stays when the new one fails.
const char* const kRowHiddenColumns[] = {"# X0",    "# X1",     "# X2",   "# X6",     "# ISBCLK",
                                         "# ISBCE", "# ISBLSR", "# ISBM", "# ISBLUT", "# PCLK",
                                         "# SCLK",  "# ECLK",   "# ISB"};

// What a bulk reset writes, by table.
struct TableReset {
    const char* table;
    std::initializer_list<const char*> columns;
    const char* value;
};
const TableReset kTableResets[] = {
    {"Logic", {"# ISBLUT", "# ISBCE", "# ISBLSR", "# ISBM"}, "0"},
    {"Clocks", {"PCLK", "SCLK", "ECLK"}, "0"},
    {"Input Output", {"AIL"}, "Disable"},
    {"Bidi", {"AIL"}, "Disable"},
    {"Termination", {"AIL"}, "Disable"},
    {"DCS", {"DCS"}, "0"},
    {"DQSCNTL", {"DQSCNTL"}, "0"},
};
const char* const kRoutingResetTables[] = {"Logic", "Input Output", "Bidi", "Termination", "PCS"};
const char* const kRoutingResetColumns[] = {"# X0",     "# X1", "# X2", "# X6", "# ISB",
                                            "# ISBCLK", "PCLK", "SCLK", "ECLK"};

// The clock tree of "Clocks" that is rebuilt by the rows; "# Eclk" stays.
const char* const kClockTreeColumns[] = {
    "PCLK",      "SCLK",     "ECLK",     "# Pfeed", "# Ptrunk",  "# Pspine", "# Ptap",
    "# Pbranch", "# Strunk", "# Sspine", "# Stap",  "# Sbranch", "# Etb",    "# Elr"};

void SetIfPresent(PD_TABLE* table, int row, const char* column, const char* value) {
    const int c = table->GetColumnIndex(column);
    if (c >= 0) table->SetValueAt(value, row, c);
}

bool StartsWith(const std::string& text, const char* prefix) {
    return text.compare(0, std::strlen(prefix), prefix) == 0;
}

// Tokens at any of the delimiters, empty ones dropped.
std::vector<std::string> Split(const std::string& text, const char* delimiters) {
    std::vector<std::string> out;
    std::string token;
    for (char ch : text) {
        if (std::strchr(delimiters, ch)) {
            if (!token.empty()) out.push_back(token);
            token.clear();
        } else {
            token += ch;
        }
    }
    if (!token.empty()) out.push_back(token);
    return out;
}

// The drive strength of a type in mA ("8" of "8mA" or "DRIVE:8mA"); "" when
// it names none.
std::string DriveOf(const std::vector<std::string>& tokens) {
    for (size_t i = 1; i < tokens.size(); ++i) {
        const size_t ma = tokens[i].find("mA");
        if (ma == std::string::npos) continue;
        size_t start = ma;
        while (start > 0 && std::isdigit(static_cast<unsigned char>(tokens[i][start - 1]))) --start;
        return tokens[i].substr(start, ma - start);
    }
    return "";
}

// "SSTL18_II" -> "SSTL18": the standard without its "_" suffix.
std::string WithoutSuffix(const std::string& standard) {
    return standard.substr(0, standard.find('_'));
}

// HSTL and SSTL go by class: the letters of the name.
std::string StandardClass(const std::string& standard) {
    for (const char* c : {"HSTL", "SSTL"})
        if (StartsWith(standard, c)) return c;
    return "";
}

}  // namespace

void PC_ENG::ProcessEstimationMode() {
    if (!pefData->DoesSectionExist("Table Clocks")) ResetHidenDataClocktable();
    if (estimationRunningSums) StartRoutingSums();
    for (PC_PANEL* panel : panels) {
        if (std::strcmp(panel->GetName(), kSummaryPanel) == 0) continue;
        // The last table of a panel is its total table.
        for (int t = 0; t + 1 < panel->GetNumOfTables(); ++t) {
            PD_TABLE* table = panel->GetTable(t);
            if (!table) continue;
            for (int row = 0; row < table->GetNumOfRows(); ++row) {
                ResetHidenDataOnRow(table, row);
                ProcessEstimationModeOnRow(table, row);
            }
        }
    }
    routingSums.active = false;
    routingSums.tables.clear();
}

double PC_ENG::GetEstimation(const std::string& table, const std::string& row,
                             const std::string& column) {
    auto* section = dynamic_cast<PD_TBLSECT*>(pefData->GetSection(table.c_str()));
    if (!section) return 0.0;
    const int r = section->GetRowNumber(row);
    if (r < 0) return 0.0;
    return std::strtod(section->GetValueAt(r, section->GetColumnIndex(column.c_str())), nullptr);
}

void PC_ENG::ResetHidenDataOnRow(PD_TABLE* table, int row) {
    estimateSave.clear();
    for (const char* column : kRowHiddenColumns) {
        const int c = table->GetColumnIndex(column);
        if (c < 0) continue;
        estimateSave[c] = table->GetValueAt(row, c);
        SetHiddenCell(table, row, c, "0");
    }
}

void PC_ENG::RestoreHiddendata(PD_TABLE* table, int row) {
    if (estimateSave.empty()) return;
    for (const auto& [column, text] : estimateSave) SetHiddenCell(table, row, column, text);
    estimateSave.clear();
}

void PC_ENG::ResetHidenData(PC_PANEL* panel) {
    if (!panel) return;
    for (int t = 0; t + 1 < panel->GetNumOfTables(); ++t) {
        PD_TABLE* table = panel->GetTable(t);
        if (!table) continue;
        const std::string name = table->GetName();
        for (int row = 0; row < table->GetNumOfRows(); ++row) {
            for (const TableReset& reset : kTableResets) {
                if (name != reset.table) continue;
                for (const char* column : reset.columns)
                    SetIfPresent(table, row, column, reset.value);
            }
            for (const char* routing : kRoutingResetTables) {
                if (name != routing) continue;
                for (const char* column : kRoutingResetColumns)
                    SetIfPresent(table, row, column, "0");
            }
        }
    }
}

void PC_ENG::ResetHidenDataAll() {
    for (PC_PANEL* panel : panels)
        if (std::strcmp(panel->GetName(), kSummaryPanel) != 0) ResetHidenData(panel);
}

void PC_ENG::ResetHidenDataClocktable() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("Clocks"));
    PD_TABLE* table = panel ? panel->GetTable(0) : nullptr;
    if (!table) return;
    for (int row = 0; row < table->GetNumOfRows(); ++row)
        for (const char* column : kClockTreeColumns) SetIfPresent(table, row, column, "0");
}

void PC_ENG::EstimationModeCheck() {
    EstimationModeIOCheck();
}

void PC_ENG::EstimationModeIOCheck() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("I/O"));
    if (!panel) return;
    for (int t = 0; t < 2 && t < panel->GetNumOfTables(); ++t)
        if (PD_TABLE* table = panel->GetTable(t)) EstimationIOTablecheck(table);
}

void PC_ENG::EstimationIOTablecheck(PD_TABLE* table) {
    int firstBank = 0;
    for (const BANKIO& b : banks) {  // sorted by number
        if (b.user) {
            firstBank = b.id;
            break;
        }
    }
    const int bankCol = table->GetColumnIndex("Bank");
    const int typeCol = table->GetColumnIndex("Type");
    for (int row = 0; row < table->GetNumOfRows(); ++row) {
        if (bankCol >= 0) {
            const int bank =
                static_cast<int>(std::strtol(table->GetValueAt(row, bankCol), nullptr, 10));
            if (!BankExistingCheck(bank))
                table->SetValueAt(std::to_string(firstBank).c_str(), row, bankCol);
        }
        if (typeCol < 0) continue;
        std::string type = HlpTransformationIOtype(table->GetValueAt(row, typeCol));
        if (!IsOnTheListCompare("Input", type) && !IsOnTheListCompare("Output", type) &&
            !IsOnTheListCompare("Bidir", type)) {
            auto* tmpl = dynamic_cast<PD_TBLSECT*>(pgtData->GetSection(table->GetName()));
            if (tmpl)
                type = tmpl->GetValueAt(tmpl->GetRowNumber(std::string("_DEFAULT")),
                                        tmpl->GetColumnIndex("Type"));
        }
        table->SetValueAt(type.c_str(), row, typeCol);
    }
}

std::string PC_ENG::HlpTransformationIOtype(std::string type) {
    if (!familySwitching || runningMode == "Calculation") return type;
    if (IsOnTheListCompare("Input", type) || IsOnTheListCompare("Output", type) ||
        IsOnTheListCompare("Bidir", type))
        return type;
    return HlpConvertIOtype(type);
}

std::string PC_ENG::HlpConvertIOtype(const std::string& type) {
    const std::vector<std::string> pieces = Split(type, ",");
    if (pieces.empty()) return type;
    const std::vector<std::string> tokens = Split(pieces[0], "-\t\n ");
    if (tokens.empty()) return type;
    const std::string standard = tokens[0];
    const std::string drive = DriveOf(tokens);

    std::vector<const std::string*> offered;
    for (const std::vector<std::string>* list : {&inputTypes, &outputTypes, &bidiTypes})
        for (const std::string& t : *list) offered.push_back(&t);

    // From the closest match to the loosest: same standard and drive, same
    // standard, same standard but its "_" suffix, same HSTL/SSTL class.
    using Match =
        bool (*)(const std::string&, const std::string&, const std::string&, const std::string&);
    const Match matches[] = {
        [](const std::string& s, const std::string& d, const std::string& cs,
           const std::string& cd) { return cs == s && cd == d; },
        [](const std::string& s, const std::string&, const std::string& cs, const std::string&) {
            return cs == s;
        },
        [](const std::string& s, const std::string&, const std::string& cs, const std::string&) {
            return WithoutSuffix(cs) == WithoutSuffix(s);
        },
        [](const std::string& s, const std::string&, const std::string& cs, const std::string&) {
            return !StandardClass(s).empty() && StandardClass(cs) == StandardClass(s);
        },
    };
    for (Match match : matches) {
        for (const std::string* candidate : offered) {
            const std::vector<std::string> ct = Split(*candidate, "-\t\n ");
            if (!ct.empty() && match(standard, drive, ct[0], DriveOf(ct))) return *candidate;
        }
    }
    return type;
}
