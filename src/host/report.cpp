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
    explicit TextTable(std::vector<std::string> head, bool numbers = true) : numbers_(numbers) {
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
                line += c == 0 || !numbers_ ? row[c] + pad : pad + row[c];
            }
            out << line.erase(line.find_last_not_of(' ') + 1) << '\n';
        }
    }

  private:
    std::vector<std::vector<std::string>> rows_;
    bool numbers_;
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
}

std::string ReportJson(const Report& r) {
    Json j;
    const DeviceInfo& d = r.device;
    j["device"] = {{"family", d.family},       {"device", d.device},
                   {"package", d.package},     {"speed", d.speed},
                   {"operating", d.operating}, {"arch", d.arch},
                   {"part_name", d.partName},  {"design_name", d.designName},
                   {"process", r.process},     {"ambient_c", Number(r.ambient)}};
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
    return j.dump(2);
}

}  // namespace pwchost
