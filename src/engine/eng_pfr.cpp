// Port files and the ASC rails.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>

#include "baspcengin.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// The six columns of a port file, by their header names.
struct PortColumns {
    int name = -1, dir = -1, type = -1, drive = -1, diffDrive = -1, slew = -1;
};

std::vector<std::string> SplitAtBlanks(const std::string& line) {
    std::vector<std::string> cells;
    std::istringstream in(line);
    std::string cell;
    while (in >> cell) cells.push_back(cell);
    return cells;
}

PortColumns ColumnsOf(const std::vector<std::string>& header, const char* nameColumn) {
    PortColumns c;
    for (int i = 0; i < static_cast<int>(header.size()); ++i) {
        const std::string& h = header[i];
        if (h == nameColumn) c.name = i;
        if (h == "DIR") c.dir = i;
        if (h == "IO_TYPE") c.type = i;
        if (h == "DRIVE") c.drive = i;
        if (h == "DIFFDRIVE") c.diffDrive = i;
        if (h == "SLEWRATE") c.slew = i;
    }
    return c;
}

// A cell by column number; a column the header lacked, or a short line,
// gives "NA".
const std::string& CellAt(const std::vector<std::string>& cells, int column) {
    static const std::string na = "NA";
    return column >= 0 && column < static_cast<int>(cells.size()) ? cells[column] : na;
}

std::string PortType(const std::vector<std::string>& cells, const PortColumns& c) {
    std::string type = CellAt(cells, c.type);
    const std::string& drive = CellAt(cells, c.drive);
    const std::string& diff = CellAt(cells, c.diffDrive);
    const std::string& slew = CellAt(cells, c.slew);
    if (drive != "NA") type += "-" + drive + "mA";
    if (diff != "NA") type += "-DIFFDRIVE:" + diff;
    if (slew != "NA") type += "-SLEW:" + slew;
    return type;
}

// Calls f(cells, header) for each non-empty line, `isHeader` telling
// the header lines; lines are cut at 2047 characters.
template <class IsHeader, class F>
bool ForEachPortLine(const std::string& file, IsHeader isHeader, F f) {
    std::ifstream in(file);
    if (!in) return false;
    std::string line;
    char buf[2048];
    std::vector<std::string> header;
    while (std::getline(in, line)) {
        std::snprintf(buf, sizeof buf, "%s", line.c_str());
        PD_UTIL::CleanEntry(buf);
        if (!*buf) continue;
        const std::string text = buf;
        if (isHeader(text)) {
            header = SplitAtBlanks(text);
            continue;
        }
        f(SplitAtBlanks(text), header);
    }
    return true;
}

std::string DirectoryOf(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

}  // namespace

bool PC_ENG::ReadPortFile(const std::string& file, bool icc1, std::vector<_ICCPORT>& ports) {
    const char* nameColumn = icc1 ? "Port_Name" : "ICC_Port_Name";
    auto isHeader = [icc1](const std::string& line) {
        return icc1 ? line.find("IO_TYPE") != std::string::npos : line.compare(0, 6, "ICC_ID") == 0;
    };
    return ForEachPortLine(
        file, isHeader,
        [&](const std::vector<std::string>& cells, const std::vector<std::string>& header) {
            const PortColumns c = ColumnsOf(header, nameColumn);
            ports.push_back({CellAt(cells, c.name), PortType(cells, c), CellAt(cells, c.dir)});
        });
}

void PC_ENG::ApplyPortOverrides(const std::string& file, std::vector<_ICCPORT>& ports) {
    auto isHeader = [](const std::string& line) {
        return line.find("IO_TYPE") != std::string::npos;
    };
    ForEachPortLine(
        file, isHeader,
        [&](const std::vector<std::string>& cells, const std::vector<std::string>& header) {
            const PortColumns c = ColumnsOf(header, "ICC_Port_Name");
            const std::string& name = CellAt(cells, c.name);
            for (_ICCPORT& port : ports) {
                if (port.name != name) continue;
                port.iotype = PortType(cells, c);
                port.direction = CellAt(cells, c.dir);
            }
        });
}

bool PC_ENG::ReadPFRFile(const std::string& path, const std::string& overrideA,
                         const std::string& stem, const std::string& overrideB,
                         const std::string& powerFile) {
    if (path.empty()) {
        std::cerr << path << " pio file cannot be processed!" << std::endl;
        return false;
    }
    // A path without a separator is taken as it stands, as the directory.
    std::string dir = DirectoryOf(path);
    if (dir.empty()) dir = path.size() == 1 ? path : std::string();
    bool result = true;
    iccPorts.clear();
    icc1Ports.clear();
    // Without port files the lists stay empty, but the block's data merge.
    const std::string icc = dir + stem + "_icc.pio";
    if (PD_UTIL::FileExists(icc.c_str())) ReadPortFile(icc, false, iccPorts);
    const std::string icc1 = dir + stem + "_icc1.pio";
    if (PD_UTIL::FileExists(icc1.c_str())) ReadPortFile(icc1, true, icc1Ports);
    for (const std::string* file : {&overrideA, &overrideB})
        if (!file->empty() && PD_UTIL::FileExists(file->c_str()))
            ApplyPortOverrides(*file, iccPorts);
    if (!powerFile.empty()) result = MergePFRPwr("", powerFile) != 0;
    return result;
}

// Bank 0 follows the voltage that the block's ports want, when they want
// exactly one and the design's I/O can take it.
void PC_ENG::PFRTabUpdated() {
    if (!IsPfrArch(ArchName())) return;
    const std::set<std::string> wanted = GetBankAllVccios(0);
    if (wanted.size() != 1) return;
    PC_PANEL* io = GetPanel(GetPanelIndex("I/O"));
    PD_TABLE* banksTable = io ? io->GetTable(2) : nullptr;
    if (!banksTable) return;
    const int bankCol = banksTable->GetColumnIndex("Bank");
    const int voltCol = banksTable->GetColumnIndex("Voltage");
    if (bankCol < 0 || voltCol < 0) return;
    for (int r = 0; r < banksTable->GetNumOfRows(); ++r) {
        if (std::strcmp(banksTable->GetValueAt(r, bankCol), "0") != 0) continue;
        const std::string saved = banksTable->GetValueAt(r, voltCol);
        banksTable->SetValueAt(wanted.begin()->c_str(), r, voltCol);
        if (!IotypeDesignRulecheck()) banksTable->SetValueAt(saved.c_str(), r, voltCol);
    }
}
