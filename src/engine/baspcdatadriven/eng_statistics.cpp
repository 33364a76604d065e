// Statistics, debug panels and the device-wide clock maps.
#include <cstdio>
#include <cstring>
#include <set>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

// The matrices are filled by the totals; the debug panels only when the
// debug pages are on.
void PC_ENG::CreateStatisticTable() {
    CreatePowerMatrices();
    CreateDebugPanels();
}

namespace {

PD_TABLE* PanelTable(const PC_ENG& eng, const char* panel, const char* table) {
    PC_PANEL* p = eng.GetPanel(eng.GetPanelIndex(panel));
    return p ? p->GetTable(p->GetTableIndex(table)) : nullptr;
}

// Panels that hold no resource of their own.
bool SkippedByStatistics(const std::string& panel) {
    return panel == "Summary" || panel == "I/O Term" || panel == "Misc";
}

// A panel column to the resource name of the device's "Format" table.
struct ResourceName {
    const char* column;
    const char* resource;
};
const ResourceName kResourceNames[] = {
    {"Dist. RAM", "Allowed RAM"},
    {"Logic LUTs", "Allowed LUT"},
    {"Registers", "Allowed REG"},
    {"Ripple Slices", "Allowed RIPPLE"},
    {"X0", "X0"},
    {"X1", "X1"},
    {"X1d", "X1d"},
    {"X1f", "X1f"},
    {"X2", "X2"},
    {"X6", "X6"},
    {"Elr", "Elr"},
    {"Etb", "Etb"},
    {"Pbranch", "Pbranch"},
    {"Pfeed", "Pfeed"},
    {"Pspine", "Pspine"},
    {"Ptap", "Ptap"},
    {"Ptrunk", "Ptrunk"},
    {"Ebg", "Eclk Bridge"},
    {"PIO Pins Max", "PIO Pins Max"},
    {"ALU24", "ALU24"},
    {"ALU54", "ALU54"},
    {"M18X18", "M18X18"},
    {"M9X9", "M9X9"},
    {"PRADD18", "PRADD18"},
    {"PRADD9", "PRADD9"},
    {"PLL", "PLL"},
    {"EBR Blocks", "EBR"},
    {"DDRDLL", "DDRDLL"},
    {"DQS", "DQS"},
    {"DLLDEL", "DLLDEL"},
    {"I2C2", "I2C2"},
    {"I2C1", "I2C1"},
    {"SPI", "SPI"},
    {"TC", "TC"},
    {"WISHBONE", "WISHBONE"},
    {"FABA", "FABA"},
    {"Quad_Channel", "Allowed PCS"},
    {"Channels", "Allowed PCS"},
};

// The pins of the I/O group that merge into "PIO Pins Max".
const char* const kPinResources[] = {"I/P", "O/P", "Bidi"};

// Clock name columns and the frequency column each pairs with; the two with
// a trailing blank are spelt so by the panels.
struct ClockPair {
    const char* name;
    const char* freq;  // null: the clock's frequency is looked up by name
};
const ClockPair kClockPairs[] = {
    {"Clock Name", "Freq. (MHz)"},
    {"Clock Input Name", "Input Freq. (MHz)"},
    {"Clock Output Name", "Output Freq. (MHz)"},
    {"Rd Clock Name", "RdCLK Freq. (MHz)"},
    {"Wr Clock Name", "WrCLK Freq. (MHz) "},
    {"Clock A Name", "CLK A Freq. (MHz) "},
    {"Clock B Name", "CLK B Freq. (MHz)"},
    {"Output Clock Name", nullptr},
};

// The pin component a clock column of an I/O table loads, and its count.
struct PinLoad {
    const char* clockColumn;
    const char* component;
    const char* countColumn;
};
const PinLoad kPinLoads[] = {
    {"Clock Input Name", "I/P", "# I/P"},
    {"Clock Output Name", "O/P", "# O/P"},
    {"Clock Name", "Bidi", "# Bidi"},
};

std::string Printed(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// Adds `count` under a component and a clock label of the usage table.
void AddClockLoad(PD_TABLE& table, const std::string& component, const std::string& label,
                  double count) {
    int column = table.GetColumnIndex(label.c_str());
    if (column < 0) {
        table.AddColumn(label.c_str(), table.GetNumOfColumns());
        column = table.GetNumOfColumns() - 1;
        for (int r = 0; r < table.GetNumOfRows(); ++r) table.SetValueAt("0", r, column);
    }
    int row = -1;
    for (int r = 0; r < table.GetNumOfRows() && row < 0; ++r)
        if (component == table.GetValueAt(r, 0)) row = r;
    if (row < 0) {
        std::vector<std::string> cells(table.GetNumOfColumns(), "0");
        cells[0] = component;
        table.AddRow(cells);
        row = table.GetNumOfRows() - 1;
    }
    table.SetValueAt(Printed("%.2lf", Num(table.GetValueAt(row, column)) + count).c_str(), row,
                     column);
}

}  // namespace

// Each clock flag is set exactly when its table exists with the columns it
// needs; a clear flag leaves the clocks' frequency and activity as given.
void PC_ENG::setClockDCCMap() {
    clockDCCMap.clear();
    PD_TABLE* clocks = PanelTable(*this, "Clocks", "Clocks");
    const int name = clocks ? clocks->GetColumnIndex("Clock Name") : -1;
    const int dcc = clocks ? clocks->GetColumnIndex("DCC") : -1;
    clockDCCFlag = name >= 0 && dcc >= 0;
    if (!clockDCCFlag) return;
    for (int r = 0; r < clocks->GetNumOfRows(); ++r)
        clockDCCMap[clocks->GetValueAt(r, name)] = clocks->GetValueAt(r, dcc);
}

void PC_ENG::setClockOscList() {
    clockOscList.clear();
    PD_TABLE* osc = PanelTable(*this, "Misc", "Clock From OSC");
    const int name = osc ? osc->GetColumnIndex("Clock Name") : -1;
    clockOscFlag = name >= 0;
    if (!clockOscFlag) return;
    for (int r = 0; r < osc->GetNumOfRows(); ++r) {
        const char* clock = osc->GetValueAt(r, name);
        if (*clock) clockOscList.insert(clock);
    }
}

// ---- Resource usage ---------------------------------------------------------

void PC_ENG::DetailedResourcestatistic(std::string stem) {
    GetResourcesUsage();
    GetClockUsage();
    GetClockTreeUsage();
    GenerateResourecUsageCSV(stem + "_ResourceUsage.csv");
    GenerateClockUsageCSV(stem + "_ClockUsage.csv");
    GenerateClockTreeUsageCSV(stem + "_ClockTreeUsage.csv");
}

void PC_ENG::setTableResName2PwdResNameMap() {
    tableResName2PwdResName.clear();
    for (const ResourceName& r : kResourceNames) tableResName2PwdResName[r.column] = r.resource;
}

void PC_ENG::GetCompNameMap(PC_PANEL* panel, PD_TABLE* table, std::map<std::string, int>& columns) {
    columns.clear();
    const std::string panelName = panel->GetName();
    const bool clocks = panelName == "Clocks";
    const bool hardBlock = panelName == "SERDES" || panelName == "FABA";
    for (int c = 0; c < table->GetNumOfColumns(); ++c) {
        const std::string& name = table->columns[c];
        if (name.compare(0, 2, "# ") == 0)
            columns[name.substr(2)] = c;
        else if (name == "Quad_Channel" || (hardBlock && name == "Core"))
            columns[name] = c;
        else if (clocks && tableResName2PwdResName.count(name))
            columns[name] = c;
    }
}

void PC_ENG::GetCompUsedNumber(PC_PANEL* panel, std::map<std::string, int>& columns,
                               PD_TABLE* table, int row, ResourceGroup& group) {
    const std::string panelName = panel->GetName();
    const bool hardBlock = panelName == "SERDES" || panelName == "FABA";
    const bool io = panelName == "I/O";
    std::string type;
    if (io) {
        type = table->GetValueAt(row, table->GetColumnIndex("Type"));
        type = type.substr(0, type.find('-'));
    }
    for (const auto& [name, column] : columns) {
        const std::string cell = table->GetValueAt(row, column);
        if (hardBlock && (name == "Core" || name == "Quad_Channel")) {
            // A hard block's row is one instance of the core it names.
            if (cell.empty() || cell == "0") continue;
            std::vector<double>& instances = group.resources[name == "Core" ? cell : name];
            instances.resize(1);
            instances[0] += 1.0;
            continue;
        }
        const double count = panelName == "Clocks" ? GetClockCount(cell) : Num(cell);
        std::vector<double>& used = group.resources[name];
        used.resize(1);
        used[0] += count;
        if (!io) continue;
        for (const char* pin : kPinResources)
            if (name == pin && !type.empty()) group.ioTypes[type] += count;
    }
}

void PC_ENG::GetResourcesUsage() {
    resourceGroups.clear();
    setTableResName2PwdResNameMap();
    for (PC_PANEL* panel : panels) {
        const std::string panelName = panel->GetName();
        if (SkippedByStatistics(panelName) || panel->GetNumOfTables() == 0) continue;
        PD_TABLE* last = panel->GetTable(panel->GetNumOfTables() - 1);
        if (last->name == "Bank Voltage") continue;
        const size_t total = last->name.find("Total ");
        if (total == std::string::npos) continue;
        ResourceGroup group;
        group.name = last->name.substr(total + 6);
        std::map<std::string, int> columns;
        for (int t = 0; t + 1 < panel->GetNumOfTables(); ++t) {
            PD_TABLE* table = panel->GetTable(t);
            GetCompNameMap(panel, table, columns);
            for (int r = 0; r < table->GetNumOfRows(); ++r)
                GetCompUsedNumber(panel, columns, table, r, group);
        }
        if (panelName == "I/O") {
            double pins = 0.0;
            bool any = false;
            for (const char* pin : kPinResources) {
                auto it = group.resources.find(pin);
                if (it == group.resources.end()) continue;
                pins += it->second[0];
                any = true;
                group.resources.erase(it);
            }
            if (any) group.resources["PIO Pins Max"] = {pins};
        }
        // Renamed to the device's resource names; two columns of one
        // resource ("Quad_Channel", "Channels") add up.
        std::map<std::string, std::vector<double>> renamed;
        for (const auto& [name, used] : group.resources) {
            auto it = tableResName2PwdResName.find(name);
            std::vector<double>& slot =
                renamed[it == tableResName2PwdResName.end() ? name : it->second];
            slot.resize(1);
            slot[0] += used[0];
        }
        for (auto& [name, values] : renamed) {
            std::string text;
            if (!DeviceHas(name, text)) continue;
            const double deviceTotal = Num(text);
            if (deviceTotal <= 0.0) continue;  // shown as missing, not divided by
            const double capacity = name == "Allowed PCS" ? deviceTotal * 4.0 : deviceTotal;
            values.push_back(values[0] / capacity);
            values.push_back(deviceTotal);
        }
        group.resources = std::move(renamed);
        resourceGroups.push_back(std::move(group));
    }
}

// ---- Clock usage --------------------------------------------------------------

std::vector<std::pair<int, int>> PC_ENG::SetupClockUsageTable(PD_TABLE* table) {
    std::vector<std::pair<int, int>> pairs;
    for (const ClockPair& p : kClockPairs) {
        const int name = table->GetColumnIndex(p.name);
        if (name < 0) continue;
        int freq = p.freq ? table->GetColumnIndex(p.freq) : -1;
        // A template may spell the frequency without the trailing blank.
        if (freq < 0 && p.freq) {
            std::string trimmed = p.freq;
            while (!trimmed.empty() && trimmed.back() == ' ') trimmed.pop_back();
            freq = table->GetColumnIndex(trimmed.c_str());
        }
        pairs.emplace_back(name, freq);
    }
    return pairs;
}

void PC_ENG::GetClockUsage() {
    clockUsageTable.RemoveAllRows();
    clockUsageTable.SetColumns({"Component\\Clk Name(Frequency)"});
    // A clock named without its frequency in the row takes the clock tab's.
    std::map<std::string, double> clockFrequency;
    if (PD_TABLE* clocks = PanelTable(*this, "Clocks", "Clocks")) {
        const int name = clocks->GetColumnIndex("Clock Name");
        const int freq = clocks->GetColumnIndex("Freq. (MHz)");
        for (int r = 0; r < clocks->GetNumOfRows(); ++r)
            clockFrequency[clocks->GetValueAt(r, name)] = Num(clocks->GetValueAt(r, freq));
    }
    for (PC_PANEL* panel : panels) {
        const std::string panelName = panel->GetName();
        if (SkippedByStatistics(panelName)) continue;
        const bool io = panelName == "I/O";
        const bool hardBlock = panelName == "SERDES" || panelName == "FABA";
        for (PD_TABLE* table : panel->tables) {
            if (table->name == "Bank Voltage") continue;
            const auto pairs = SetupClockUsageTable(table);
            const int core = hardBlock ? table->GetColumnIndex("Core") : -1;
            for (int r = 0; r < table->GetNumOfRows(); ++r) {
                for (const auto& [nameColumn, freqColumn] : pairs) {
                    const std::string clock = table->GetValueAt(r, nameColumn);
                    if (clock.empty() || clock == "0") continue;
                    const double freq = freqColumn >= 0 ? Num(table->GetValueAt(r, freqColumn))
                                                        : clockFrequency[clock];
                    const std::string label = clock + "(" + Printed("%.1lf", freq) + ")";
                    if (!io) {
                        const std::string component = core >= 0 && *table->GetValueAt(r, core)
                                                          ? table->GetValueAt(r, core)
                                                          : panelName;
                        AddClockLoad(clockUsageTable, component, label, 1.0);
                        continue;
                    }
                    const std::string columnName = table->columns[nameColumn];
                    for (const PinLoad& pin : kPinLoads) {
                        if (columnName != pin.clockColumn) continue;
                        const double pins =
                            Num(table->GetValueAt(r, table->GetColumnIndex(pin.countColumn)));
                        if (pins == 0.0) continue;
                        AddClockLoad(clockUsageTable, pin.component, label, pins);
                        AddClockLoad(clockUsageTable, "IO-Pins", label, pins);
                    }
                }
            }
        }
    }
}

// ---- Clock tree usage -----------------------------------------------------------

void PC_ENG::GetClockTreeUsage() {
    clockTreeTable.RemoveAllRows();
    std::vector<std::string> header{"Clock Name", "Freq. (MHz)", "CLKEN Duty Cycle (%)"};
    PD_TABLE* clocks = PanelTable(*this, "Clocks", "Clocks");
    std::vector<int> treeColumns;
    if (clocks)
        for (int c = 0; c < clocks->GetNumOfColumns(); ++c)
            if (clocks->columns[c].compare(0, 2, "# ") == 0) {
                treeColumns.push_back(c);
                header.push_back(clocks->columns[c].substr(2));
            }
    clockTreeTable.SetColumns(header);
    if (!clocks || clocks->GetNumOfRows() == 0) return;

    const int name = clocks->GetColumnIndex("Clock Name");
    const int freq = clocks->GetColumnIndex("Freq. (MHz)");
    const int duty = clocks->GetColumnIndex("CLKEN Duty Cycle (%)");
    const size_t n = treeColumns.size();
    std::vector<double> used(n, 0.0), freqTotal(n, 0.0);
    for (int r = 0; r < clocks->GetNumOfRows(); ++r) {
        std::string clock = clocks->GetValueAt(r, name);
        const double f = Num(clocks->GetValueAt(r, freq));
        // The row's own texts; only the footers are worked out.
        std::vector<std::string> cells{clock.empty() ? "-" : clock,
                                       freq < 0 ? "" : clocks->GetValueAt(r, freq),
                                       duty < 0 ? "" : clocks->GetValueAt(r, duty)};
        for (size_t i = 0; i < n; ++i) {
            const double count = GetClockCount(clocks->GetValueAt(r, treeColumns[i]));
            used[i] += count;
            freqTotal[i] += f * count;  // "_freq_total"
            cells.push_back(Printed("%.0lf", count));
        }
        clockTreeTable.AddRow(cells);
    }

    auto footer = [&](const std::string& label, const std::function<std::string(size_t)>& cell) {
        std::vector<std::string> cells{label, "-", "-"};
        for (size_t i = 0; i < n; ++i) cells.push_back(cell(i));
        clockTreeTable.AddRow(cells);
    };
    std::vector<double> deviceTotal(n, 0.0);
    std::vector<bool> listed(n, false);
    for (size_t i = 0; i < n; ++i) {
        std::string text;
        // A total of nothing is no total: it would only divide by zero.
        deviceTotal[i] = DeviceHas(header[3 + i], text) ? Num(text) : 0.0;
        listed[i] = deviceTotal[i] > 0.0;
    }
    footer("Statistic Report :", [](size_t) { return std::string("-"); });
    footer("Total Resources", [&](size_t i) {
        return listed[i] ? std::to_string(static_cast<long>(deviceTotal[i])) : std::string("-");
    });
    footer("Total Used", [&](size_t i) { return Printed("%.0lf", used[i]); });
    footer("Used Percentage", [&](size_t i) {
        return listed[i] ? Printed("%.2lf", 100.0 * used[i] / deviceTotal[i]) : std::string("-");
    });
    footer("Average Frequency", [&](size_t i) {
        return used[i] > 0.0 ? Printed("%.2lf", freqTotal[i] / used[i]) : std::string("-");
    });
}
