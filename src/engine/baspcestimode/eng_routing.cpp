// Routing estimation: a row's routing wires and clock-tree elements from the
// family's rates, bounded by what the device has.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// Routing classes: the `.pef` row key, and the hidden column is "# " + key.
const char* const kRoutingClasses[] = {"X0", "X1", "X1d", "X1f", "X2", "X6", "ISB"};
constexpr int kClassCount = 7;
constexpr int kIsbClass = 6;
// In the logic table the switch-box use counts its parts as well.
const char* const kLogicIsbParts[] = {"# ISBLUT", "# ISBCE", "# ISBLSR", "# ISBM"};
const char* const kIsbCapacityKeys[] = {"ISB", "ISBLUT", "ISBCE", "ISBLSR", "ISBM"};

// Clock-tree resources in the order of "Table Clocks"; `rowKey` false for
// the one that the per-row rates don't carry. A trunk prefix takes the
// device's trunk row figure behind its letter.
struct ClockResource {
    const char* name;
    const char* prefix;
    const char* trunkRowKey;  // null: the prefix is complete
    bool rowKey;
};
const ClockResource kClockResources[] = {
    {"Ptrunk", "t", "PCLKT Row1", true}, {"Pbranch", "c1_", nullptr, true},
    {"Pspine", "s_", nullptr, true},     {"Ptap", "p_", nullptr, true},
    {"Pfeed", "f_", nullptr, true},      {"Strunk", "t", "SCLKT Row1", true},
    {"Sbranch", "b_", nullptr, true},    {"Sspine", "c1_", nullptr, true},
    {"Stap", "r1_", nullptr, true},      {"Eclk", "e_", nullptr, false},
    {"Etb", "t_", nullptr, true},        {"Elr", "l_", nullptr, true},
};
constexpr int kClockResourceCount = sizeof kClockResources / sizeof kClockResources[0];

// How a table's rows are estimated.
enum class CountKind {
    Logic,  // four kinds of block
    Io,     // inputs plus outputs, or bidirectionals
    Pcs,    // channels, or one per active direction
    Cell,   // one count column
};
struct EstimatedTable {
    const char* table;
    const char* block;  // `.pef` table
    CountKind kind;
    const char* countColumn;
    bool clockStep;  // followed by the per-row clock estimate
};
const EstimatedTable kEstimatedTables[] = {
    {"Logic", nullptr, CountKind::Logic, nullptr, true},
    {"Input Output", "IO", CountKind::Io, nullptr, true},
    {"Bidi", "IO", CountKind::Io, "# Bidi", true},
    {"PCS", "PCS", CountKind::Pcs, "# Channels", false},
    {"SP RAM", "EBR", CountKind::Cell, "# EBR Blocks", true},
    {"DP RAM", "EBR", CountKind::Cell, "# EBR Blocks", true},
    {"DP RAM True", "EBR", CountKind::Cell, "# EBR Blocks", true},
    {"FIFO DC", "EBR", CountKind::Cell, "# EBR Blocks", true},
    {"DSP", "DSP", CountKind::Cell, "# DSP", false},
    {"M9X9", "DSP", CountKind::Cell, "# DSP", false},
    {"M18X18", "DSP", CountKind::Cell, "# DSP", false},
    {"ALU54", "DSP", CountKind::Cell, "# DSP", false},
    {"FABA", "FABA", CountKind::Cell, "FABA", false},
};

// The logic row's kinds: `.pef` table and count column.
const struct {
    const char* block;
    const char* column;
} kLogicKinds[] = {{"LUT", "# Logic LUTs"},
                   {"RAM", "# Dist. RAM"},
                   {"REG", "# Registers"},
                   {"RIPPLE", "# Ripple Slices"}};

const char* const kMemoryTables[] = {"SP RAM", "DP RAM", "DP RAM True", "FIFO DC"};

long CountAt(PD_TABLE* table, int row, const char* column) {
    const int c = table->GetColumnIndex(column);
    return c < 0 ? 0 : std::strtol(table->GetNoRoundValueAt(row, c).c_str(), nullptr, 10);
}

// The class a hidden column counts in; -1 for none.
int ClassOfColumn(const char* column, bool logicTable) {
    if (std::strncmp(column, "# ", 2) != 0) return -1;
    for (int i = 0; i < kClassCount; ++i)
        if (std::strcmp(column + 2, kRoutingClasses[i]) == 0) return i;
    if (logicTable)
        for (const char* part : kLogicIsbParts)
            if (std::strcmp(column, part) == 0) return kIsbClass;
    return -1;
}

// A clock-tree cell merged from pairs of tag and count: the counts of one tag
// added up, tags in order of appearance.
std::string GetTotalUsedClocks(const std::vector<std::string>& cells) {
    std::vector<std::pair<std::string, long>> merged;
    for (const std::string& cell : cells) {
        int n = 0;
        char** tokens = PD_UTIL::GetArrayOfTokens(cell.c_str(), "_", &n);
        for (int i = 0; i + 1 < n; i += 2) {
            const long count = std::strtol(tokens[i + 1], nullptr, 10);
            bool found = false;
            for (auto& [tag, total] : merged) {
                if (tag == tokens[i]) {
                    total += count;
                    found = true;
                }
            }
            if (!found) merged.emplace_back(tokens[i], count);
        }
        PD_UTIL::DeleteArray(tokens, n);
    }
    std::string out;
    for (const auto& [tag, total] : merged)
        out += (out.empty() ? "" : "_") + tag + "_" + std::to_string(total);
    return out.empty() ? "0" : out;
}

}  // namespace

// ---- The routing in use and its bound -----------------------------------------

namespace {

// The tables whose routing counts against the device, in the order summed;
// true for the logic table.
std::vector<std::pair<PD_TABLE*, bool>> RoutingTables(const PC_ENG& eng) {
    std::vector<std::pair<PD_TABLE*, bool>> out;
    auto panel = [&eng](const char* name) { return eng.GetPanel(eng.GetPanelIndex(name)); };
    auto add = [&out](PC_PANEL* p, const char* table, bool logic) {
        if (!p) return;
        PD_TABLE* t = table ? p->GetTable(p->GetTableIndex(table)) : p->GetTable(0);
        if (t) out.emplace_back(t, logic);
    };
    add(panel("Logic Block"), nullptr, true);
    for (const char* memory : kMemoryTables) add(panel("Block RAM"), memory, false);
    add(panel("I/O"), "Input Output", false);
    add(panel("I/O"), "Bidi", false);
    if (PC_PANEL* dsp = panel("DSP")) {
        if (dsp->GetNumOfTables() == 2) {
            add(dsp, nullptr, false);
        } else {
            for (const char* kind : {"M9X9", "M18X18", "ALU54"}) add(dsp, kind, false);
        }
    }
    add(panel("SERDES"), nullptr, false);
    add(panel("FABA"), nullptr, false);
    return out;
}

}  // namespace

std::vector<long> PC_ENG::SumRoutingInUse() {
    std::vector<long> use(kClassCount, 0);
    for (const auto& [table, logic] : RoutingTables(*this)) {
        for (int i = 0; i < kClassCount; ++i) {
            const std::string column = std::string("# ") + kRoutingClasses[i];
            use[i] += GetTotalSumRowData(table, table->GetColumnIndex(column.c_str()), 0);
        }
        if (!logic) continue;
        for (const char* part : kLogicIsbParts)
            use[kIsbClass] += GetTotalSumRowData(table, table->GetColumnIndex(part), 0);
    }
    return use;
}

std::vector<long> PC_ENG::RoutingCapacity() {
    std::vector<long> capacity(kClassCount, 0);
    auto has = [this](const char* key) {
        std::string value;
        DeviceHas(key, value);
        return std::strtol(value.c_str(), nullptr, 10);
    };
    for (int i = 0; i < kClassCount; ++i)
        if (i != kIsbClass) capacity[i] = has(kRoutingClasses[i]);
    for (const char* key : kIsbCapacityKeys) capacity[kIsbClass] += has(key);
    return capacity;
}

void PC_ENG::StartRoutingSums() {
    routingSums.use = SumRoutingInUse();
    routingSums.tables.clear();
    for (const auto& [table, logic] : RoutingTables(*this)) routingSums.tables[table] = logic;
    routingSums.active = true;
}

void PC_ENG::SetHiddenCell(PD_TABLE* table, int row, int column, const std::string& text) {
    if (routingSums.active) {
        auto counted = routingSums.tables.find(table);
        if (counted != routingSums.tables.end()) {
            const int cls = ClassOfColumn(table->GetColumnName(column), counted->second);
            if (cls >= 0)
                routingSums.use[cls] += std::strtol(text.c_str(), nullptr, 10) -
                                        std::strtol(table->GetValueAt(row, column), nullptr, 10);
        }
    }
    table->SetValueAt(text.c_str(), row, column);
}

bool PC_ENG::IsOkToAddMoreRoutingEstimation(double x0, double x1, double x1d, double x1f, double x2,
                                            double x6, double isb) {
    const std::vector<long> use = routingSums.active ? routingSums.use : SumRoutingInUse();
    // The device is asked every time, as a check on its own would: a device
    // missing from "Format" then says so once per check.
    const std::vector<long> capacity = RoutingCapacity();
    const double addition[kClassCount] = {x0, x1, x1d, x1f, x2, x6, isb};
    bool fits = true;
    for (int i = 0; i < kClassCount; ++i)
        fits =
            fits &&
            static_cast<double>(capacity[i]) - (static_cast<double>(use[i]) + addition[i]) >= 0.0;
    return fits || HasUnboundedRoutingEstimate(ArchName());
}

// ---- Clock-tree cells -------------------------------------------------------------

std::string PC_ENG::ClocksTimesAndAssignedTrunkNumber(int count, std::string, std::string prefix) {
    return count < 0 ? std::string() : prefix + std::to_string(count);
}

int PC_ENG::GetClockComponentUsagefromRow(PD_TABLE* table, int row, std::string column) {
    if (!table) return 0;
    const std::string cell = table->GetValueAt(row, table->GetColumnIndex(column.c_str()));
    int n = 0;
    char** tokens = PD_UTIL::GetArrayOfTokens(cell.c_str(), "_", &n);
    int sum = 0;
    for (int i = 1; i < n; i += 2) sum += static_cast<int>(std::strtol(tokens[i], nullptr, 10));
    PD_UTIL::DeleteArray(tokens, n);
    return sum;
}

std::set<int> PC_ENG::GetClockTableRowNumber(int row, PD_TABLE* table) {
    std::set<int> rows;
    PC_PANEL* panel = GetPanel(GetPanelIndex("Clocks"));
    PD_TABLE* clocks = panel ? panel->GetTable(0) : nullptr;
    if (!clocks || !table) return rows;

    auto cellOf = [table, row](int column) { return std::string(table->GetValueAt(row, column)); };
    int freqColumn = -1;
    for (int c = 0; c < table->GetNumOfColumns() && freqColumn < 0; ++c)
        if (std::strstr(table->GetColumnName(c), "Freq. (MHz)")) freqColumn = c;
    // Clock name to frequency. A row that names no clock (an input without
    // one, say) adds no nameless clock to the tab.
    std::map<std::string, std::string> named;
    for (int c = 0; c < table->GetNumOfColumns(); ++c) {
        const std::string column = table->GetColumnName(c);
        if (column.find("Freq. (MHz)") != std::string::npos) continue;
        std::string name;
        if (column == "Clock Name" || column == "Clock Input Name") {
            name = cellOf(c);
            if (!name.empty()) named[name] = cellOf(freqColumn);
        } else if (column == "Clock Output Name") {
            name = cellOf(c);
            if (!name.empty()) named[name] = cellOf(table->GetColumnIndex("Output Freq. (MHz)"));
        }
    }

    auto* tmpl = dynamic_cast<PD_TBLSECT*>(pgtData->GetSection("Clocks"));
    const int defaultRow = tmpl ? tmpl->GetRowNumber(std::string("_DEFAULT")) : -1;
    for (const auto& [name, freq] : named) {
        int found = clocks->GetRowNumber(name);
        if (found < 0) {
            // The template's default row (its first cell names the row),
            // zeros for the power columns behind it.
            std::vector<std::string> cells(clocks->GetNumOfColumns(), "0");
            for (int c = 0;
                 tmpl && c + 1 < tmpl->GetNumOfColumns() && c < clocks->GetNumOfColumns(); ++c)
                cells[c] = tmpl->GetValueAt(defaultRow, c + 1);
            const int nameColumn = clocks->GetColumnIndex("Clock Name");
            const int freqCol = clocks->GetColumnIndex("Freq. (MHz)");
            if (nameColumn >= 0) cells[nameColumn] = name;
            if (freqCol >= 0) cells[freqCol] = freq;
            clocks->AddRow(cells);
            found = clocks->GetNumOfRows() - 1;
        }
        rows.insert(found);
    }
    return rows;
}

void PC_ENG::AddRoutingItems() {
    for (PC_PANEL* panel : panels) {
        const std::string name = panel->GetName();
        if (name == "Summary" || name == "Logic Block" || name == "Clocks") continue;
        for (int t = 0; t < panel->GetNumOfTables(); ++t) {
            PD_TABLE* table = panel->GetTable(t);
            if (table && table->GetColumnIndex("# X0") >= 0) return;
        }
    }
}

// ---- One row ----------------------------------------------------------------------

void PC_ENG::ProcessEstimationModeOnRow(PD_TABLE* table, int row) {
    if (!table || row < 0 || row >= table->GetNumOfRows()) return;
    const std::string name = table->GetName();
    const std::string& level = estimationLevel;
    const bool tableClocks = pefData->DoesSectionExist("Table Clocks");

    auto trunkPrefix = [this](const ClockResource& r) {
        if (!r.trunkRowKey) return std::string(r.prefix);
        std::string figure;
        DeviceHas(r.trunkRowKey, figure);
        return std::string(r.prefix) + figure + "_";
    };

    if (name == "Clocks") {
        if (!tableClocks) return;
        for (const ClockResource& r : kClockResources) {
            const int count = static_cast<int>(GetEstimation("Table Clocks", r.name, level));
            const std::string pair =
                ClocksTimesAndAssignedTrunkNumber(count, r.name, trunkPrefix(r));
            const int c = table->GetColumnIndex((std::string("# ") + r.name).c_str());
            if (c >= 0) table->SetValueAt(GetTotalUsedClocks({pair}).c_str(), row, c);
        }
        return;
    }

    const EstimatedTable* kind = nullptr;
    for (const EstimatedTable& e : kEstimatedTables)
        if (name == e.table) kind = &e;
    if (!kind) return;

    // The blocks of the row: `.pef` table and count.
    std::vector<std::pair<const char*, double>> blocks;
    switch (kind->kind) {
        case CountKind::Logic:
            for (const auto& k : kLogicKinds)
                blocks.emplace_back(k.block, static_cast<double>(CountAt(table, row, k.column)));
            break;
        case CountKind::Io: {
            const int pull = table->GetColumnIndex("_Pull");
            if (pull >= 0) table->SetValueAt("none", row, pull);
            const long n = kind->countColumn
                               ? CountAt(table, row, kind->countColumn)
                               : CountAt(table, row, "# I/P") + CountAt(table, row, "# O/P");
            blocks.emplace_back(kind->block, static_cast<double>(n));
            break;
        }
        case CountKind::Pcs: {
            long n = 0;
            if (table->GetColumnIndex(kind->countColumn) >= 0) {
                n = CountAt(table, row, kind->countColumn);
            } else {
                auto on = [&](const char* column) {
                    return std::strcmp(table->GetValueAt(row, table->GetColumnIndex(column)),
                                       "OFF") != 0;
                };
                n = on("Tx Mode") || on("Rx Mode") ? 1 : 0;
            }
            blocks.emplace_back(kind->block, static_cast<double>(n));
            break;
        }
        case CountKind::Cell:
            blocks.emplace_back(kind->block,
                                static_cast<double>(CountAt(table, row, kind->countColumn)));
            break;
    }
    auto estimate = [&](const char* key) {
        double sum = 0.0;
        for (const auto& [block, count] : blocks) sum += GetEstimation(block, key, level) * count;
        return sum;
    };

    double routing[kClassCount];
    for (int i = 0; i < kClassCount; ++i) routing[i] = estimate(kRoutingClasses[i]);
    if (!IsOkToAddMoreRoutingEstimation(routing[0], routing[1], routing[2], routing[3], routing[4],
                                        routing[5], routing[6])) {
        RestoreHiddendata(table, row);
    } else {
        for (int i = 0; i < kClassCount; ++i) {
            const int c = table->GetColumnIndex((std::string("# ") + kRoutingClasses[i]).c_str());
            if (c < 0) continue;
            char text[64];
            std::snprintf(text, sizeof text, "%.4e", routing[i]);
            SetHiddenCell(table, row, c, text);
        }
        if (kind->kind == CountKind::Logic) {
            const int isb = table->GetColumnIndex("# ISB");
            const std::string isbText = table->GetValueAt(row, isb);
            auto set = [&](const char* column, const std::string& text) {
                const int c = table->GetColumnIndex(column);
                if (c >= 0) SetHiddenCell(table, row, c, text);
            };
            set("# ISBLUT", EstimatesIsbOnLuts(ArchName()) ? isbText : "0");
            for (const char* column : {"# ISBCLK", "# ISBCE", "# ISBLSR", "# ISBM"})
                set(column, "0");
        }
    }

    if (!kind->clockStep || tableClocks) return;
    const std::set<int> clockRows = GetClockTableRowNumber(row, table);
    if (clockRows.empty()) return;
    PD_TABLE* clocks = GetPanel(GetPanelIndex("Clocks"))->GetTable(0);
    for (const ClockResource& r : kClockResources) {
        if (!r.rowKey) continue;
        const double added = estimate(r.name);
        const std::string column = std::string("# ") + r.name;
        const int c = clocks->GetColumnIndex(column.c_str());
        if (c < 0) continue;
        const std::string prefix = trunkPrefix(r);
        for (int clockRow : clockRows) {
            // Nearest whole number: add one half, then truncate.
            char text[64];
            std::snprintf(text, sizeof text, "%.4f",
                          GetClockComponentUsagefromRow(clocks, clockRow, column) + added + 0.5);
            const int count = static_cast<int>(std::strtol(text, nullptr, 10));
            clocks->SetValueAt(ClocksTimesAndAssignedTrunkNumber(count, r.name, prefix).c_str(),
                               clockRow, c);
        }
    }
}
