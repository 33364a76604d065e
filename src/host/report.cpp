// What `pwc calc` reports: collected once from the engine, printed as aligned
// text or as one JSON object.
#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "host.h"

namespace pwchost {

namespace {

using Json = nlohmann::ordered_json;

const char* const kUnitHeads[3] = {"Static", "Dynamic", "Total"};

// Rows of cells printed in columns; column 0 left-aligned, the others right
// (numbers) or left.
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> head, bool numbers = true, bool label = true)
        : numbers_(numbers), label_(label) {
        rows_.push_back(std::move(head));
    }
    void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
    void Print(std::ostream& out, size_t indent = 3) const {
        std::vector<size_t> width;
        for (const auto& row : rows_)
            for (size_t c = 0; c < row.size(); ++c) {
                if (width.size() <= c) width.push_back(0);
                width[c] = std::max(width[c], row[c].size());
            }
        for (const auto& row : rows_) {
            std::string line(indent, ' ');
            for (size_t c = 0; c < row.size(); ++c) {
                const std::string pad(width[c] - row[c].size(), ' ');
                if (c > 0) line += "  ";
                line += (c == 0 && label_) || !numbers_ ? row[c] + pad : pad + row[c];
            }
            out << line.erase(line.find_last_not_of(' ') + 1) << '\n';
        }
    }

  private:
    std::vector<std::vector<std::string>> rows_;
    bool numbers_, label_;
};

std::string Shown(const std::string& text) {
    return text.empty() ? "-" : text;
}

// A number when the whole text reads as one, else null.
Json Number(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0') return nullptr;
    return value;
}

// Temperatures may be the capped texts "125+" and "125++".
Json NumberOrText(const std::string& text) {
    Json number = Number(text);
    if (!number.is_null() || text.empty()) return number;
    return text;
}

// "Vccio 3.3" -> "3.3"; another text as it is.
std::string BankVolts(const std::string& vccio) {
    const std::string head = "Vccio ";
    return vccio.compare(0, head.size(), head) == 0 ? vccio.substr(head.size()) : vccio;
}

std::vector<std::string> SupplyCells(const SupplyResult& s) {
    return {s.name, s.voltage, s.w[0], s.w[1], s.w[2], s.a[0], s.a[1], s.a[2]};
}

Json SupplyJson(const SupplyResult& s) {
    Json j;
    j["name"] = s.name;
    j["voltage"] = Number(s.voltage);
    const char* const keys[3] = {"static", "dynamic", "total"};
    for (int k = 0; k < 3; ++k) j[std::string(keys[k]) + "_w"] = Number(s.w[k]);
    for (int k = 0; k < 3; ++k) j[std::string(keys[k]) + "_a"] = Number(s.a[k]);
    return j;
}

}  // namespace

Report CollectReport(PC_ENG& engine, const DeviceInfo& device) {
    Report report;
    report.device = device;
    report.process = engine.GetProcessType();
    report.ambient = engine.AmbientTemperature;

    if (PD_TABLE* banks = engine.GetIoTable("Bank Voltage")) {
        const int bankCol = banks->GetColumnIndex("Bank");
        const int voltCol = banks->GetColumnIndex("Voltage");
        for (int r = 0; r < banks->GetNumOfRows(); ++r) {
            BankResult b;
            b.bank = banks->GetValueAt(r, bankCol);
            b.vccio = banks->GetValueAt(r, voltCol);
            b.used = engine.GetBankUsedIO(b.bank, "all");
            for (const BANKIO& record : engine.GetBanks())
                if (record.name == b.bank) b.bonded = record.ioCount;
            report.banks.push_back(b);
        }
    }

    const PD_TABLE* vdpm = engine.GetSupplyTable();
    const PD_TABLE* power = engine.GetPowerTable();
    const PD_TABLE* current = engine.GetCurrentTable();
    auto fill = [&](SupplyResult& s, int row) {
        for (int k = 0; k < 3; ++k) {
            s.w[k] = power ? power->GetValueAt(row, k) : "";
            s.a[k] = current ? current->GetValueAt(row, k) : "";
        }
    };
    const int supplies = vdpm ? vdpm->GetNumOfRows() : 0;
    for (int r = 0; r < supplies; ++r) {
        SupplyResult s;
        s.name = vdpm->GetValueAt(r, 0);
        s.voltage = vdpm->GetValueAt(s.name.c_str(), "Voltage");
        fill(s, r);
        report.supplies.push_back(s);
    }
    // "Power" and "Current" end in their total row, after one row per supply.
    report.supplyTotal.name = "Total";
    if (power && power->GetNumOfRows() > supplies) fill(report.supplyTotal, supplies);

    if (const PD_TABLE* block = engine.GetBlockTable()) {
        int rows = block->GetNumOfRows();
        if (rows > 0 && std::string(block->GetValueAt(rows - 1, 0)) == "Total") --rows;
        for (int r = 0; r < rows; ++r)
            report.blocks.emplace_back(block->GetValueAt(r, 0), block->GetValueAt(r, 1));
    }
    report.totalPower = engine.GetTotalPower();
    report.junction = engine.JunctionTemperature;
    report.maxSafeAmbient = engine.MaxSafeAmbient;
    report.thetaJA = engine.ThetaJA;

    const std::string& drc = engine.DrcMessage;
    for (size_t begin = 0; begin < drc.size();) {
        size_t end = drc.find('\n', begin);
        if (end == std::string::npos) end = drc.size();
        if (end > begin) report.messages.push_back(drc.substr(begin, end - begin));
        begin = end + 1;
    }
    return report;
}

namespace {

bool IsQuantity(const std::string& column) {
    return column.find("(W)") != std::string::npos || column.find("(A)") != std::string::npos;
}

std::vector<std::string> PanelNames(PC_ENG& engine) {
    std::vector<std::string> names;
    for (int i = 0; i < engine.GetNumOfPanels(); ++i) names.push_back(engine.GetPanelName(i));
    return names;
}

}  // namespace

TabResult CollectTab(PC_ENG& engine, const std::string& name) {
    PC_PANEL* panel = engine.GetPanel(engine.GetPanelIndex(name));
    if (!panel)
        throw UsageError("--tab: no tab '" + name + "' (tabs: " + JoinChoices(PanelNames(engine)) +
                         ")");
    TabResult tab;
    tab.name = name;
    for (PD_TABLE* table : panel->tables) {
        TabTable t;
        t.name = table->name;
        std::vector<int> columns;
        for (int c = 0; c < table->GetNumOfColumns(); ++c) {
            const bool label = c == 0 && !IsQuantity(table->columns[c]);
            if (label || IsQuantity(table->columns[c])) {
                columns.push_back(c);
                t.head.push_back(table->columns[c]);
                t.labelled = t.labelled || label;
            }
        }
        for (int r = 0; r < table->GetNumOfRows(); ++r) {
            std::vector<std::string> row;
            for (int c : columns) row.push_back(table->GetValueAt(r, c));
            t.rows.push_back(std::move(row));
        }
        tab.tables.push_back(std::move(t));
    }
    return tab;
}

void PrintReport(const Report& r, std::ostream& out) {
    const DeviceInfo& d = r.device;
    out << "Device\n";
    TextTable device({"Family", d.family}, false);
    for (const auto& [key, value] :
         std::vector<std::pair<std::string, std::string>>{{"Device", d.device},
                                                          {"Package", d.package},
                                                          {"Speed", d.speed},
                                                          {"Operating", d.operating},
                                                          {"Architecture", d.arch},
                                                          {"Part", d.partName},
                                                          {"Design", d.designName},
                                                          {"Process", r.process},
                                                          {"Ambient (C)", r.ambient}})
        device.Add({key, Shown(value)});
    device.Print(out);

    if (!r.banks.empty()) {
        out << "\nBanks\n";
        TextTable banks({"Bank", "VCCIO (V)", "I/O used", "Bonded"});
        for (const BankResult& b : r.banks)
            banks.Add({b.bank, Shown(BankVolts(b.vccio)), std::to_string(b.used),
                       std::to_string(b.bonded)});
        banks.Print(out);
    }

    out << "\nSupplies\n";
    std::vector<std::string> head{"Supply", "Voltage (V)"};
    for (const char* unit : {"W", "A"})
        for (const char* kind : kUnitHeads) head.push_back(std::string(kind) + " (" + unit + ")");
    TextTable supplies(head);
    for (const SupplyResult& s : r.supplies) {
        std::vector<std::string> cells = SupplyCells(s);
        for (std::string& c : cells) c = Shown(c);
        supplies.Add(cells);
    }
    std::vector<std::string> total = SupplyCells(r.supplyTotal);
    for (size_t c = 2; c < total.size(); ++c) total[c] = Shown(total[c]);
    supplies.Add(total);
    supplies.Print(out);

    out << "\nBlocks\n";
    TextTable blocks({"Block", "Total (W)"});
    for (const auto& [name, watts] : r.blocks) blocks.Add({name, Shown(watts)});
    blocks.Print(out);

    out << '\n';
    TextTable totals({"Total power (W)", Shown(r.totalPower)});
    totals.Add({"Junction temperature (C)", Shown(r.junction)});
    totals.Add({"Maximum safe ambient (C)", Shown(r.maxSafeAmbient)});
    totals.Add({"Effective theta-JA (C/W)", Shown(r.thetaJA)});
    totals.Print(out, 0);

    if (!r.messages.empty()) {
        out << "\nMessages\n";
        for (const std::string& m : r.messages) out << "   " << m << '\n';
    }

    for (const TabResult& tab : r.tabs) {
        out << "\nTab " << tab.name << '\n';
        for (const TabTable& t : tab.tables) {
            out << "   " << t.name << (t.rows.empty() ? " (no rows)" : "") << '\n';
            if (t.rows.empty()) continue;
            if (!t.labelled && t.rows.size() == 1) {
                // A total table: one row of many columns reads better as a list.
                TextTable list({t.head[0], Shown(t.rows[0][0])});
                for (size_t c = 1; c < t.head.size(); ++c)
                    list.Add({t.head[c], Shown(t.rows[0][c])});
                list.Print(out, 6);
                continue;
            }
            TextTable table(t.head, true, t.labelled);
            for (const std::vector<std::string>& row : t.rows) {
                std::vector<std::string> cells = row;
                for (std::string& c : cells) c = Shown(c);
                table.Add(cells);
            }
            table.Print(out, 6);
        }
    }
}

std::string ReportJson(const Report& r) {
    Json j;
    const DeviceInfo& d = r.device;
    j["device"] = {{"family", d.family},       {"device", d.device},
                   {"package", d.package},     {"speed", d.speed},
                   {"operating", d.operating}, {"arch", d.arch},
                   {"part_name", d.partName},  {"design_name", d.designName},
                   {"process", r.process},     {"ambient_c", Number(r.ambient)}};
    j["banks"] = Json::array();
    for (const BankResult& b : r.banks) {
        const bool whole =
            !b.bank.empty() && b.bank.find_first_not_of("0123456789") == std::string::npos;
        j["banks"].push_back({{"bank", whole ? Json(std::stoi(b.bank)) : Json(b.bank)},
                              {"vccio", b.vccio},
                              {"voltage", Number(BankVolts(b.vccio))},
                              {"used_io", b.used},
                              {"bonded_io", b.bonded}});
    }
    j["supplies"] = Json::array();
    for (const SupplyResult& s : r.supplies) j["supplies"].push_back(SupplyJson(s));
    Json total = SupplyJson(r.supplyTotal);
    total.erase("name");
    total.erase("voltage");
    j["supply_total"] = total;
    j["blocks"] = Json::array();
    for (const auto& [name, watts] : r.blocks)
        j["blocks"].push_back({{"name", name}, {"total_w", Number(watts)}});
    j["total_power_w"] = Number(r.totalPower);
    j["junction_temperature_c"] = NumberOrText(r.junction);
    j["max_safe_ambient_c"] = Number(r.maxSafeAmbient);
    j["theta_ja"] = Number(r.thetaJA);
    j["messages"] = r.messages;
    if (!r.tabs.empty()) {
        j["tabs"] = Json::array();
        for (const TabResult& tab : r.tabs) {
            Json tables = Json::array();
            for (const TabTable& t : tab.tables) {
                Json rows = Json::array();
                for (const std::vector<std::string>& row : t.rows) {
                    Json cells;
                    for (size_t c = 0; c < row.size(); ++c)
                        cells[t.head[c]] = c == 0 && t.labelled ? Json(row[c]) : Number(row[c]);
                    rows.push_back(cells);
                }
                tables.push_back({{"name", t.name}, {"rows", rows}});
            }
            j["tabs"].push_back({{"name", tab.name}, {"tables", tables}});
        }
    }
    return j.dump(2);
}

}  // namespace pwchost
