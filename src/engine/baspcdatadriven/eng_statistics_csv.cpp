// The comma-separated statistics files and power matrices. Each file's text
// is built whole and written once.
#include <cstdio>
#include <cstdlib>

#include "baspcengin.h"

namespace {

std::string Printed(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string JoinedColumns(const PD_TABLE& table) {
    std::string line;
    for (int c = 0; c < table.GetNumOfColumns(); ++c) {
        if (c) line += ",";
        line += table.columns[c];
    }
    return line + "\n";
}

}  // namespace

void PC_ENG::GenerateResourecUsageCSV(std::string path) {
    std::string text = "\n\n\nThis table shows how much HW component used in the design\n\n\n";
    text += "Resource name,Resource Used, Device total Resources,Resources used percentage\n";
    for (const ResourceGroup& group : resourceGroups) {
        for (const auto& [name, values] : group.resources) {
            if (values.size() < 3) {
                text += name + ", Data Missing\n";
            } else {
                text += name + "," + Printed("%.2lf", values[0]) + "," +
                        Printed("%.2lf", values[2]) + "," + Printed("%.2lf", 100.0 * values[1]) +
                        "%\n";
            }
            if (name != "PIO Pins Max") continue;
            for (const auto& [type, count] : group.ioTypes)
                text += "   IO TYPE: " + type + "," + Printed("%.2lf", count) + "\n";
        }
    }
    WriteReportFile(path, text);
}

void PC_ENG::GenerateClockUsageCSV(std::string path) {
    std::string text = "\n\n\nThis table shows how much load for each clock in the design\n\n\n";
    text += JoinedColumns(clockUsageTable);
    for (int r = 0; r < clockUsageTable.GetNumOfRows(); ++r) {
        text += clockUsageTable.GetValueAt(r, 0);
        for (int c = 1; c < clockUsageTable.GetNumOfColumns(); ++c)
            text += "," + Printed("%.2lf", std::strtod(clockUsageTable.GetValueAt(r, c), nullptr));
        text += "\n";
    }
    WriteReportFile(path, text);
}

void PC_ENG::GenerateClockTreeUsageCSV(std::string path) {
    std::string text = "\nThis table shows Clock tree components usage\n";
    text += "\n\n";
    text += JoinedColumns(clockTreeTable);
    for (int r = 0; r < clockTreeTable.GetNumOfRows(); ++r) {
        for (int c = 0; c < clockTreeTable.GetNumOfColumns(); ++c) {
            const std::string cell = clockTreeTable.GetValueAt(r, c);
            if (c) text += ",";
            text += cell == "-" ? " " : cell;
        }
        text += "\n";
    }
    WriteReportFile(path, text);
}

// ---- Power matrices ---------------------------------------------------------------

std::string PC_ENG::PowerMatrixTableCSVText(const PD_TABLE* table) {
    if (!table) return "";
    std::string text = "Power Calculator Matrix Debug Table : " + table->name + "\n\n";
    for (const std::string& column : table->columns) text += column + ",";
    text += "\n";
    for (int r = 0; r < table->GetNumOfRows(); ++r) {
        for (int c = 0; c < table->GetNumOfColumns(); ++c)
            text += std::string(table->GetValueAt(r, c)) + ",";
        text += "\n";
    }
    return text;
}

void PC_ENG::GenPowerMatrixTableCSV(FILE* file, PD_TABLE* table) {
    if (!file) return;
    const std::string text = PowerMatrixTableCSVText(table);
    std::fwrite(text.data(), 1, text.size(), file);
}

int PC_ENG::GeneratePowerMatrixTableCSV(std::string path) {
    std::string text = "\n\n\nThis matrix shows how much power is pulled by each component\n";
    text += "from different power supply.\n";
    text += "Unit: (W)\n";
    text += PowerMatrixTableCSVText(powerMatrix);
    text += "\n\n";
    text += "This matrix shows how much current is pulled by each component\n";
    text += "from different power supply.\n";
    text += "Unit : A\n";
    text += PowerMatrixTableCSVText(currentMatrix);
    return WriteReportFile(path, text) ? 1 : 0;
}
