// What a device holds, the limits of the "DRC" section, the release status
// and the I/O cells that lose their meaning.
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"

namespace {

PD_TBLSECT* FormatTable(PD_DATA* pwd) {
    return pwd ? dynamic_cast<PD_TBLSECT*>(pwd->GetSection("Format")) : nullptr;
}

int DeviceRow(const PD_TBLSECT* format, const std::string& key) {
    const int col = format->GetColumnIndex("Device_Package");
    for (int r = 0; r < format->GetNumOfRows(); ++r)
        if (key == format->GetValueAt(r, col)) return r;
    return -1;
}

}  // namespace

int PC_ENG::NewDeviceHas(const std::string& key, std::string& value) {
    PD_TBLSECT* format = FormatTable(NewDeviceData);
    const int col = format ? format->GetColumnIndex(key.c_str()) : -1;
    if (col < 0) {
        value = "0";
        return 0;
    }
    const int row = DeviceRow(format, NewDeviceInfo[2] + "_" + NewDeviceInfo[3]);
    if (row < 0 || !*format->GetValueAt(row, col)) return 0;
    value = format->GetValueAt(row, col);
    return 1;
}

int PC_ENG::DeviceHas(const std::string& key, std::string& value) {
    PD_TBLSECT* format = FormatTable(pwdData);
    const int col = format ? format->GetColumnIndex(key.c_str()) : -1;
    if (col < 0) {
        value = "0";
        return 0;
    }
    const std::string device = DevicePackageKey();
    const int row = DeviceRow(format, device);
    if (row >= 0 && *format->GetValueAt(row, col)) value = format->GetValueAt(row, col);
    if (value.empty()) value = "0";
    if (row >= 0) return value != "0";
    DrcMessage += "The device " + device + " is not supported currently." + ".\n";
    ++DrcErrorCount;
    return 0;
}

double PC_ENG::DeviceHas(const std::string& key) {
    std::string value;
    DeviceHas(key, value);
    return std::strtod(value.c_str(), nullptr);
}

int PC_ENG::LimitationDrcCheck(const std::string& panel, const std::string& quantity,
                               double value) {
    auto* drc = dynamic_cast<PD_KEYSECT*>(pwrData->GetSection("DRC"));
    if (!drc) return 1;
    const double limit = std::strtod(drc->GetValue((panel + "_" + quantity).c_str()), nullptr);
    return value > limit || value < 0.0 ? 0 : 1;
}

int PC_ENG::GetLimitationDrc(const std::string& panel, const std::string& quantity, double* limit) {
    auto* drc = dynamic_cast<PD_KEYSECT*>(pwrData->GetSection("DRC"));
    if (!drc) return 0;
    const char* text = drc->GetValue((panel + "_" + quantity).c_str());
    if (!*text) return 0;
    if (limit) *limit = std::strtod(text, nullptr);
    return 1;
}

int PC_ENG::DoesCellBecomeUneditable(const std::string& tableName, PD_TABLE* table, int row,
                                     int column) {
    static const char* const kIoTables[] = {"I/O InOut", "I/O Bidi",    "Input Output",
                                            "Bidi",      "Termination", "I/O Term"};
    bool ioTable = false;
    for (const char* t : kIoTables) ioTable = ioTable || tableName == t;
    if (!ioTable || !table) return 0;
    const std::string type = table->GetValueAt(row, table->GetColumnIndex("Type"));
    const std::string name = table->GetColumnName(column);
    struct {
        const char* column;
        const char* list;
    } const kCounts[] = {{"# I/P", "Input"}, {"# O/P", "Output"}, {"# Bidi", "Bidir"}};
    for (const auto& c : kCounts)
        if (name == c.column) return IsOnTheListCompare(c.list, type) ? 0 : 1;
    return 0;
}
