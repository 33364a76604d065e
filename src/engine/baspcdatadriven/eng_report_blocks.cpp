// What the reports say, computed once here and printed by the text and the
// HTML report: the summaries, and for each panel its counts and power lines.
#include <cstdlib>
#include <set>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// How a panel's counts are found.
enum class CountRule {
    Fixed,     // the listed sums
    Clocks,    // the clock-tree resources of the rows
    ByTable,   // "# <table>" of every table not beginning with "Total "
    Mipidphy,  // the rows of table 0
    Faba,      // the hard cores when the panel has five tables, else ByTable
    Serdes,    // channels and transmit PLLs
    Asc,       // "# HVOUT" of table 0
    Misc,      // as ByTable, less "JTAG", and only columns that exist
};

// A column summed over one table, or (table null) over every table whose
// name doesn't begin with "Total ".
struct Source {
    const char* table;
    const char* column;
};

struct FixedCount {
    const char* label;
    const char* htmlLabel;
    std::vector<Source> sources;
};

struct UtilizationRule {
    const char* panel;
    const char* heading;  // null: the panel's name
    bool openedByTable;   // the heading waits for the first counted table
    const char* anchor;
    const char* subheader;
    CountRule rule;
    std::vector<FixedCount> counts;
    const char* totalTable;      // null: table 1
    const char* htmlTotalTable;  // null: as the text report
    bool totalOnly;
};

// In the order the blocks are printed.
const std::vector<UtilizationRule>& UtilizationRules() {
    static const std::vector<UtilizationRule> rules = {
        {"Logic Block",
         "Logic",
         false,
         "logic",
         "Logic",
         CountRule::Fixed,
         {{"LUTs Used", "LUTs Used", {{"Logic", "# Logic LUTs"}}},
          {"Dist. RAM Slices Used", "Dist. RAM Slices Used", {{"Logic", "# Dist. RAM"}}},
          {"Ripple Slices Used", "Ripple Slices Used", {{"Logic", "# Ripple Slices"}}},
          {"Registers Used", "Registers Used", {{"Logic", "# Registers"}}}},
         "Total Logic Block",
         nullptr,
         false},
        {"Clocks",
         "Clocks",
         false,
         "clocks",
         "Clocks",
         CountRule::Clocks,
         {},
         "Total Clocks",
         nullptr,
         false},
        {"I/O",
         "I/O",
         false,
         "io",
         "I/O",
         CountRule::Fixed,
         {{"I/O Used",
           "I/O Used",
           {{"Input Output", "# I/P"}, {"Input Output", "# O/P"}, {"Bidi", "# Bidi"}}}},
         "Total I/O",
         nullptr,
         false},
        {"Block RAM",
         "Block RAM",
         false,
         "bram",
         "Block RAM",
         CountRule::Fixed,
         {{"EBR Blocks Used", "EBR Blocks Used", {{nullptr, "# EBR Blocks"}}}},
         "Total Block RAM",
         nullptr,
         false},
        {"DSP", nullptr, true, "dsp", "DSP", CountRule::ByTable, {}, "Total DSP", nullptr, false},
        {"PLL", nullptr, true, "pll", "PLL", CountRule::ByTable, {}, "Total PLL", nullptr, false},
        {"DLL", nullptr, true, "dll", "DLL", CountRule::ByTable, {}, "Total DLL", nullptr, false},
        {"DQSDLL",
         nullptr,
         true,
         "dqsdll",
         "DQSDLL",
         CountRule::ByTable,
         {},
         "Total DQSDLL",
         nullptr,
         false},
        {"ESB", nullptr, true, "esb", "ESB", CountRule::ByTable, {}, "Total ESB", nullptr, false},
        {"DDRDLL",
         nullptr,
         true,
         "ddrdll",
         "DDRDLL",
         CountRule::ByTable,
         {},
         "Total DDRDLL",
         nullptr,
         false},
        {"MIPIDPHY",
         nullptr,
         false,
         "mipidphy",
         "MIPIDPHY",
         CountRule::Mipidphy,
         {},
         nullptr,
         "Total MIPIDPHY",
         false},
        {"DQS", nullptr, true, "dqs", "DQS", CountRule::ByTable, {}, "Total DQS", nullptr, false},
        {"DLLDEL",
         nullptr,
         true,
         "dlldel",
         "DLLDEL",
         CountRule::ByTable,
         {},
         "Total DLLDEL",
         nullptr,
         false},
        {"EFB", nullptr, true, "efb", "EFB", CountRule::ByTable, {}, "Total EFB", nullptr, false},
        {"FABA", nullptr, true, "faba", "FABA", CountRule::Faba, {}, "Total FABA", nullptr, false},
        {"SERDES",
         nullptr,
         true,
         "serdes",
         "PCS SERDES",
         CountRule::Serdes,
         {},
         "Total SERDES",
         nullptr,
         false},
        {"ASC", nullptr, false, "asc", "ASC", CountRule::Asc, {}, nullptr, nullptr, true},
        {"PFR",
         "PFR",
         false,
         "pfr",
         "PFR",
         CountRule::Fixed,
         {{"PFR Used", "PFR Used", {{nullptr, "# PFR"}}},
          {"PFR interface logic Used", "ICC Used", {{nullptr, "# PFR interface logic"}}},
          {"PFR programming Used", "ICC1 Used", {{nullptr, "# PFR programming"}}}},
         "Total PFR",
         nullptr,
         false},
        {"Misc",
         "Other",
         true,
         "Other",
         "Other",
         CountRule::Misc,
         {},
         "Total Misc",
         nullptr,
         false},
    };
    return rules;
}

bool IsTotalTable(const PD_TABLE* table) {
    return std::string(table->GetName()).rfind("Total ", 0) == 0;
}

int SumColumn(const PC_ENG& eng, PD_TABLE* table, const std::string& column) {
    return table ? eng.GetTotalSumRowData(table, table->GetColumnIndex(column.c_str()),
                                          table->GetNumOfRows())
                 : 0;
}

int CountOf(const PC_ENG& eng, const PC_PANEL& panel, const FixedCount& count) {
    int sum = 0;
    for (const Source& s : count.sources) {
        if (s.table) {
            sum += SumColumn(eng, panel.GetTable(panel.GetTableIndex(s.table)), s.column);
            continue;
        }
        for (PD_TABLE* t : panel.tables)
            if (!IsTotalTable(t)) sum += SumColumn(eng, t, s.column);
    }
    return sum;
}

// The clock-tree resources counted under each kind's line.
struct ClockColumn {
    const char* column;
    const char* resource;  // DeviceHas key
    bool firstNumber;      // read through its first run of digits
    bool plain;            // a plain number, not a tree cell
};
struct ClockLine {
    const char* label;
    const char* powerItem;  // null: always; else `PwrDataAvailable("Clocks", item)`
    std::vector<ClockColumn> columns;
};
const std::vector<ClockLine>& ClockLines() {
    static const std::vector<ClockLine> lines = {
        {"PCLKs Used",
         nullptr,
         {{"# Ptrunk", "Ptrunk", false, false},
          {"# Pbranch", "Pbranch", false, false},
          {"# Pfeed", "Pfeed", false, false},
          {"# Ptap", "Ptap", false, false},
          {"# Pspine", "Pspine", false, false}}},
        {"SCLKs Used",
         "SCLK",
         {{"# Strunk", "Strunk", false, false},
          {"# Sbranch", "Sbranch", false, false},
          {"# Stap", "Stap", false, false},
          {"# Sspine", "Sspine", false, false}}},
        {"ECLKs Used",
         "ECLK",
         {{"# Eclk", "Eclk", false, true},
          {"# Etb", "Etb", true, true},
          {"# Elr", "Elr", true, true}}},
    };
    return lines;
}

int ClockCellCount(const ClockColumn& c, const std::string& cell) {
    if (!c.plain) return PC_ENG::GetClockCount(cell);
    const std::string text = c.firstNumber ? GetStringFirstNumberStr(cell) : cell;
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

}  // namespace

int PC_ENG::GetClockCount(const std::string& cell) {
    const std::vector<std::string> tokens = GetArrayOfTokensWithTrim(cell, "_", false);
    if (tokens.size() == 1) return static_cast<int>(std::strtol(tokens[0].c_str(), nullptr, 10));
    int count = 0;
    for (size_t i = 1; i < tokens.size(); i += 2)
        count += static_cast<int>(std::strtol(tokens[i].c_str(), nullptr, 10));
    return count;
}

std::string PC_ENG::ReportStaticPower(const std::string& dynamic, const std::string& total) const {
    return pwc::PrintFixed(Num(total) - Num(dynamic), IsSixDigitFamily(FamilyName()) ? 6 : 4);
}

std::vector<PC_ENG::ReportBlock> PC_ENG::GetReportBlocks() {
    // A report changes nothing: the device questions below would otherwise
    // add their complaints about an unlisted device to the host's messages.
    struct KeepDrc {
        PC_ENG& eng;
        std::string message = eng.DrcMessage;
        int count = eng.DrcErrorCount;
        ~KeepDrc() {
            eng.DrcMessage = message;
            eng.DrcErrorCount = count;
        }
    } keep{*this};
    std::vector<ReportBlock> blocks;
    for (const UtilizationRule& rule : UtilizationRules()) {
        PC_PANEL* panel = GetPanel(GetPanelIndex(rule.panel));
        if (!panel) continue;
        ReportBlock block;
        block.panel = rule.panel;
        block.anchor = rule.anchor;
        block.subheader = rule.subheader;
        const std::string heading = rule.heading ? rule.heading : rule.panel;
        if (!rule.openedByTable) block.heading = heading;
        auto open = [&] { block.heading = heading; };
        auto add = [&](const std::string& label, int value) {
            block.counts.push_back({label, label, value});
        };

        switch (rule.rule) {
            case CountRule::Fixed:
                for (const FixedCount& c : rule.counts)
                    block.counts.push_back({c.label, c.htmlLabel, CountOf(*this, *panel, c)});
                break;
            case CountRule::Clocks: {
                PD_TABLE* clocks = panel->GetTable(panel->GetTableIndex("Clocks"));
                for (const ClockLine& line : ClockLines()) {
                    if (line.powerItem && !PwrDataAvailable("Clocks", line.powerItem)) continue;
                    int count = 0;
                    for (const ClockColumn& c : line.columns) {
                        std::string has;
                        const int column = clocks ? clocks->GetColumnIndex(c.column) : -1;
                        if (column < 0 || !DeviceHas(c.resource, has)) continue;
                        for (int r = 0; r < clocks->GetNumOfRows(); ++r)
                            count += ClockCellCount(c, clocks->GetValueAt(r, column));
                    }
                    add(line.label, count);
                }
                break;
            }
            case CountRule::Faba:
                if (panel->GetNumOfTables() == 5) {
                    auto cores = [&](std::initializer_list<const char*> tables, const char* key) {
                        int n = 0;
                        for (const char* t : tables)
                            n += GetTotalOrvan4FabaCore(panel->GetTable(panel->GetTableIndex(t)),
                                                        "Core", key);
                        return n;
                    };
                    open();
                    add("PCIE Used", cores({"PCIE"}, "PCIE"));
                    add("SRIO Used", cores({"SRIO"}, "SRIO"));
                    add("EMAC Used", cores({"SRIO", "MAC2", "MAC3"}, "EMAC"));
                    add("XMAC Used", cores({"SRIO", "MAC2", "MAC3"}, "XMAC"));
                    break;
                }
                [[fallthrough]];
            case CountRule::ByTable: {
                const bool noUfm = block.panel == "EFB" && LeavesUfmOutOfReports(FamilyName());
                for (PD_TABLE* t : panel->tables) {
                    const std::string name = t->GetName();
                    if (IsTotalTable(t) || (noUfm && name == "UFM")) continue;
                    open();
                    add(name + " Used", SumColumn(*this, t, "# " + name));
                }
                break;
            }
            case CountRule::Misc:
                for (PD_TABLE* t : panel->tables) {
                    const std::string name = t->GetName();
                    if (IsTotalTable(t) || name == "JTAG") continue;
                    open();
                    const std::string column =
                        name.rfind("POWER", 0) == 0 ? "# POWER " + name.substr(5) : "# " + name;
                    if (t->GetColumnIndex(column.c_str()) >= 0)
                        add(name + " Used", SumColumn(*this, t, column));
                }
                break;
            case CountRule::Serdes:
                for (PD_TABLE* t : panel->tables) {
                    const std::string name = t->GetName();
                    if (IsTotalTable(t)) continue;
                    open();
                    if (name == "PCS") {
                        int channels = 0;
                        if (t->GetColumnIndex("# Channels") >= 0) {
                            channels = SumColumn(*this, t, "# Channels");
                        } else {
                            const int tx = t->GetColumnIndex("Tx Mode");
                            const int rx = t->GetColumnIndex("Rx Mode");
                            for (int r = 0; r < t->GetNumOfRows(); ++r)
                                if (std::string(t->GetValueAt(r, tx)) != "OFF" ||
                                    std::string(t->GetValueAt(r, rx)) != "OFF")
                                    ++channels;
                        }
                        add("Channels Used", channels);
                    } else if (name == "SERDES AUX") {
                        const int c = t->GetColumnIndex("TXPLL");
                        int plls = 0;
                        for (int r = 0; r < t->GetNumOfRows(); ++r)
                            if (std::string(t->GetValueAt(r, c)) == "ON") ++plls;
                        add("TXPLL Used", plls);
                    }
                }
                break;
            case CountRule::Mipidphy:
                if (PD_TABLE* t = panel->GetTable(0)) {
                    block.counts.push_back(
                        {std::string(t->GetName()) + " Used", "MIPYDPHY Used", t->GetNumOfRows()});
                }
                break;
            case CountRule::Asc:
                add("HVOUT Used", SumColumn(*this, panel->GetTable(0), "# HVOUT"));
                break;
        }

        auto power = [&](const char* tableName) {
            ReportPower p;
            PD_TABLE* total =
                tableName ? panel->GetTable(panel->GetTableIndex(tableName)) : panel->GetTable(1);
            if (!total) return p;
            p.present = true;
            p.totalOnly = rule.totalOnly;
            p.dynamic = total->GetValueAt(0, total->GetColumnIndex("Total Dyn. Pwr (W)"));
            p.total = total->GetValueAt(0, total->GetColumnIndex("Total Pwr (W)"));
            p.statics = ReportStaticPower(p.dynamic, p.total);
            return p;
        };
        block.power = power(rule.totalTable);
        block.htmlPower = rule.htmlTotalTable ? power(rule.htmlTotalTable) : block.power;
        blocks.push_back(std::move(block));
    }
    return blocks;
}

namespace {

// The data sets whose "Info" section gives the revisions, in report order.
const char* InfoValue(PD_DATA* data, const char* key) {
    const auto* info = data ? dynamic_cast<const PD_KEYSECT*>(data->GetSection("Info")) : nullptr;
    return info ? info->GetValue(key) : nullptr;
}

std::string JoinedInfo(const std::vector<PD_DATA*>& sets, const char* key) {
    std::string joined;
    bool first = true;
    for (PD_DATA* data : sets) {
        const char* value = InfoValue(data, key);
        if (!value) continue;
        if (!first) joined += ", ";
        joined += value;
        first = false;
    }
    return joined;
}

}  // namespace

PC_ENG::ReportSummary PC_ENG::GetReportSummary() {
    ReportSummary s;
    const std::vector<PD_DATA*> sets = {pwrData, ptdData, pefData, pwiData};
    s.formatRevision = JoinedInfo(sets, "_FILE_FORMAT");
    s.valuesRevision = JoinedInfo(sets, "_DATA_VALUES");
    s.status = GetPwrStatus();
    const char* pwrValues = InfoValue(pwrData, "_DATA_VALUES");
    s.pwrValues = pwrValues ? pwrValues : "";
    s.details = {{"Power Project Name", ProjectName},
                 {"Design Name", DesignName},
                 {"Family", FamilyName()},
                 {"Device", DeviceName()},
                 {"Package", PackageName()},
                 {"Operating", OperatingName()},
                 {"Part Number", DeviceString(6)},
                 {"Process Type", GetProcessType()}};

    std::vector<std::string> names;  // the supplies in row order, for the summaries
    if (PD_TABLE* vdpm = GetSupplyTable()) {
        const int supply = vdpm->GetColumnIndex("Supply");
        const int voltage = vdpm->GetColumnIndex("Voltage");
        for (int r = 0; r < vdpm->GetNumOfRows(); ++r) {
            names.push_back(vdpm->GetValueAt(r, supply));
            s.supplies.push_back({names.back(), vdpm->GetValueAt(r, voltage)});
        }
    }
    auto name = [&](int row) {
        return row < static_cast<int>(names.size()) ? names[row] : std::string();
    };
    // One line per supply row, the last row being the total.
    auto lines = [&](PD_TABLE* t, const char* column, const std::string& head,
                     std::vector<ReportLine>& out) {
        const int c = t->GetColumnIndex(column);
        const int last = t->GetNumOfRows() - 1;
        for (int r = 0; r <= last; ++r)
            out.push_back(
                {r == last ? "Total " + head + " " : head + " " + name(r), t->GetValueAt(r, c)});
    };
    PD_TABLE* power = GetPowerTable();
    s.hasPower = power && power->GetNumOfRows() > 0;
    if (s.hasPower) {
        lines(power, "Total (W)", "Power Est. Design", s.power);
        const int last = power->GetNumOfRows() - 1;
        s.totalStatic = power->GetValueAt(last, power->GetColumnIndex("Static (W)"));
        s.totalDynamic = power->GetValueAt(last, power->GetColumnIndex("Dynamic (W)"));
    }
    if (PD_TABLE* current = GetCurrentTable()) {
        s.hasCurrent = true;
        lines(current, "Total (A)", "Icc Est. Design", s.current);
    }
    if (PC_PANEL* io = GetPanel(GetPanelIndex("I/O"))) {
        std::set<std::string> banks;
        for (const char* t : {"Input Output", "Bidi"}) {
            PD_TABLE* table = io->GetTable(io->GetTableIndex(t));
            const int bank = table ? table->GetColumnIndex("Bank") : -1;
            for (int r = 0; table && r < table->GetNumOfRows(); ++r)
                banks.insert(table->GetValueAt(r, bank));
        }
        s.hasBanks = true;
        s.banksUsed = static_cast<int>(banks.size());
    }
    if (PD_TABLE* peak = GetPeakStartupTable()) {
        s.hasPeak = true;
        for (int r = 0; r < peak->GetNumOfRows(); ++r) {
            std::vector<std::string> cells;
            for (int c = 0; c < peak->GetNumOfColumns(); ++c)
                cells.push_back(peak->GetValueAt(r, c));
            s.peak.push_back(std::move(cells));
        }
    }

    if (ThetaOption == "UserDefined") {
        s.selections = {{"Board Selection", "N/A"}, {"Heat Sink", "N/A"}, {"Air Flow", "N/A"}};
    } else {
        const bool custom =
            HeatSinkSelection == "Custom Profile Heat Sink" && !ThetaSACustom.empty();
        s.selections = {{"Board Selection", BoardSelection},
                        {"Heat Sink", HeatSinkSelection},
                        {"Air Flow", custom ? std::string("N/A") : AirFlowSelection}};
    }
    s.ambient = AmbientTemperature;
    s.theta = ThetaJA;
    s.junction = JunctionTemperature;
    s.maxSafeAmbient = MaxSafeAmbient;
    return s;
}
