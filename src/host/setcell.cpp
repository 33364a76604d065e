// --set, --process and numbers given on the command line.
#include <cerrno>
#include <cmath>
#include <cstdlib>

#include "host.h"

namespace pwchost {

namespace {

const char* const kSummary = "Summary";
const char* const kSupplyTable = "VDPM";
// Listing every row of a large table helps nobody.
constexpr size_t kMaxChoices = 20;

std::string Quote(const std::string& text) {
    return "'" + text + "'";
}

bool StartsWith(const std::string& text, const std::string& head) {
    return text.compare(0, head.size(), head) == 0;
}

bool EndsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

std::string Choices(std::vector<std::string> items) {
    if (items.size() > kMaxChoices) {
        const size_t more = items.size() - kMaxChoices;
        items.resize(kMaxChoices);
        items.push_back("... " + std::to_string(more) + " more");
    }
    return JoinChoices(items);
}

// The longest name that `path` starts with, followed by "/"; -1 when none.
int LongestPrefix(const std::string& path, const std::vector<std::string>& names) {
    int best = -1;
    for (size_t i = 0; i < names.size(); ++i)
        if (StartsWith(path, names[i] + "/") &&
            (best < 0 || names[i].size() > names[static_cast<size_t>(best)].size()))
            best = static_cast<int>(i);
    return best;
}

std::string FirstSegment(const std::string& path) {
    return path.substr(0, path.find('/'));
}

int FindRow(const PD_TABLE& table, const std::string& row) {
    for (int r = 0; r < table.GetNumOfRows(); ++r)
        if (row == table.GetValueAt(r, 0)) return r;
    // "#N", or a plain index when no first cell reads so.
    const std::string digits = StartsWith(row, "#") ? row.substr(1) : row;
    if (digits.empty() || digits.size() > 9 ||
        digits.find_first_not_of("0123456789") != std::string::npos)
        return -1;
    const int index = std::atoi(digits.c_str());
    return index < table.GetNumOfRows() ? index : -1;
}

void SetSupplyCell(PC_ENG& engine, const std::string& supply, const std::string& column,
                   const std::string& value) {
    if (column == "Voltage") {
        ParseNumber(value, "voltage of " + supply);
        if (!engine.IsSupplyValid(supply.c_str(), value.c_str())) {
            std::string pwrName;
            engine.TranslateSupplyPCFtoPWR(supply, pwrName);
            const std::string lo = engine.GetSuupliesValueFromPwr(pwrName, "Min");
            const std::string hi = engine.GetSuupliesValueFromPwr(pwrName, "Max");
            throw UsageError("voltage " + value + " is not valid for supply " + supply +
                             (lo.empty() || hi.empty()
                                  ? std::string(" (the device data give no range for it)")
                                  : " (allowed " + lo + " to " + hi + " V)"));
        }
        engine.SetSupply(supply.c_str(), value.c_str());
    } else if (column == "DPM") {
        if (ParseNumber(value, "DPM of " + supply) < 0.0)
            throw UsageError("the DPM of " + supply + " must not be negative");
        if (!engine.IsMultValid(supply.c_str()))
            throw UsageError("supply " + supply + " takes no DPM on this device");
        engine.SetMult(supply.c_str(), value.c_str());
    } else {
        throw UsageError("column " + Quote(column) + " of VDPM cannot be set (use Voltage or DPM)");
    }
}

}  // namespace

double ParseNumber(const std::string& text, const std::string& what) {
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(begin, &end);
    while (end && (*end == ' ' || *end == '\t')) ++end;
    if (text.empty() || end == begin || *end != '\0' || errno == ERANGE || !std::isfinite(value))
        throw UsageError(what + " must be a number, not " + Quote(text));
    return value;
}

CellEdit ParseCellEdit(const std::string& text) {
    const size_t eq = text.find('=');
    if (eq == std::string::npos || text.find('/') > eq)
        throw UsageError("--set " + Quote(text) + ": expected TAB/TABLE/ROW/COLUMN=VALUE");
    return CellEdit{text, text.substr(0, eq), text.substr(eq + 1)};
}

void ApplyCellEdit(PC_ENG& engine, const CellEdit& edit) {
    const std::string where = "--set " + Quote(edit.text) + ": ";

    std::vector<std::string> tabs;
    for (int i = 0; i < engine.GetNumOfPanels(); ++i) tabs.push_back(engine.GetPanelName(i));
    const int tab = LongestPrefix(edit.path, tabs);
    if (tab < 0)
        throw UsageError(where + "no tab " + Quote(FirstSegment(edit.path)) +
                         " (tabs: " + Choices(tabs) + ")");
    PC_PANEL* panel = engine.GetPanel(tab);
    const std::string tabName = tabs[static_cast<size_t>(tab)];
    std::string rest = edit.path.substr(tabName.size() + 1);

    std::vector<std::string> tables;
    for (PD_TABLE* t : panel->tables) tables.push_back(t->GetName());
    const int tableIndex = LongestPrefix(rest, tables);
    if (tableIndex < 0)
        throw UsageError(where + "tab " + Quote(tabName) + " has no table " +
                         Quote(FirstSegment(rest)) + " (tables: " + Choices(tables) + ")");
    PD_TABLE& table = *panel->tables[static_cast<size_t>(tableIndex)];
    const std::string tableName = table.GetName();
    rest = rest.substr(tableName.size() + 1);
    if (tabName == kSummary && tableName != kSupplyTable)
        throw UsageError(where + "table " + Quote(tableName) +
                         " holds results of the calculation and cannot be set");

    // ROW/COLUMN: the column is the longest column name that ends the path,
    // or else the last segment read as a project-file key.
    int column = -1;
    for (int c = 0; c < table.GetNumOfColumns(); ++c) {
        const std::string name = table.GetColumnName(c);
        if (EndsWith(rest, "/" + name) && rest.size() > name.size() + 1 &&
            (column < 0 || name.size() > std::string(table.GetColumnName(column)).size()))
            column = c;
    }
    const size_t slash = rest.rfind('/');
    if (slash == std::string::npos) throw UsageError(where + "expected TAB/TABLE/ROW/COLUMN=VALUE");
    if (column < 0) {
        const std::string key = rest.substr(slash + 1);
        const std::string byKey = engine.GetColumnNamefromKey(key, tableName);
        if (!byKey.empty()) column = table.GetColumnIndex(byKey.c_str());
        if (column < 0)
            throw UsageError(where + "table " + Quote(tableName) + " has no column " + Quote(key) +
                             " (columns: " + Choices(table.columns) + ")");
    }
    const std::string columnName = table.GetColumnName(column);
    const std::string rowText = EndsWith(rest, "/" + columnName)
                                    ? rest.substr(0, rest.size() - columnName.size() - 1)
                                    : rest.substr(0, slash);

    const int row = FindRow(table, rowText);
    if (row < 0) {
        std::vector<std::string> rows;
        for (int r = 0; r < table.GetNumOfRows(); ++r) rows.push_back(table.GetValueAt(r, 0));
        throw UsageError(where + "table " + Quote(tableName) + " has no row " + Quote(rowText) +
                         (rows.empty() ? std::string(" (the table has no rows)")
                                       : " (rows: " + Choices(rows) + ", or an index 0 to " +
                                             std::to_string(rows.size() - 1) + ")"));
    }
    if (tabName == kSummary) {
        try {
            SetSupplyCell(engine, table.GetValueAt(row, 0), columnName, edit.value);
        } catch (const UsageError& e) {
            throw UsageError(where + e.what());
        }
        return;
    }
    table.SetValueAt(edit.value.c_str(), row, column);
}

void ApplyProcess(PC_ENG& engine, const std::string& process) {
    const bool available = process == "Worst"
                               ? engine.IsWorstTypeAvailable()
                               : process.size() < 16 && engine.IsProcessTypeAvailable(process);
    if (!available)
        throw UsageError("process " + Quote(process) + " is not available for " +
                         engine.DeviceName() +
                         " (choices: " + JoinChoices(engine.GetAvailableProcessType()) + ")");
    if (process == "Worst")
        engine.SetWorstType();
    else if (process == "Typical")
        engine.SetTypicalType();
    else
        engine.SetProcessType(process.c_str());
}

}  // namespace pwchost
