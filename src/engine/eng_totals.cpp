// Folding the tabs into the summary tables.
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "baspcengin.h"
#include "pd_util.h"

int PC_ENG::UpdatePeakStartupTable() {
    PD_TABLE* peak = GetPeakStartupTable();
    PD_SECTION* s = pwrData->GetSection("Peak Startup");
    if (!s || !peak) return 0;
    PD_TBLSECT* data = dynamic_cast<PD_TBLSECT*>(s);
    if (!data) {
        std::cerr << "PWR Peak Startup table must have _TBLSECT format" << std::endl;
        return 0;
    }
    int keyCol = data->GetColumnIndex("Devices");
    std::string key = DevicePackageKey();
    if (keyCol < 0) {
        keyCol = data->GetColumnIndex("Devices_Process_Operation");
        key += std::string("_") + GetProcessType() + "_" + OperatingName();
    }
    bool widths = false;
    for (const std::string& c : data->columns) widths |= c.find("_WIDTH") != std::string::npos;
    peak->SetTableHeader(widths ? "Supply, Peak Startup (A), Width of the Peak (m sec)"
                                : "Supply, Peak Startup (A)");
    peak->RemoveAllRows();
    if (keyCol < 0) return 0;
    for (int r = 0; r < data->GetNumOfRows(); ++r) {
        if (PD_UTIL::SpecialCompare(data->GetValueAt(r, keyCol), key.c_str()) != 0) continue;
        for (int c = 0; c < data->GetNumOfColumns(); ++c) {
            const std::string& column = data->columns[c];
            if (c == keyCol || column.find("_WIDTH") != std::string::npos) continue;
            std::string supply;
            TranslateSupplyPWRtoPCF(column, supply);
            const char* cell = data->GetValueAt(r, c);
            char amps[64] = "N/A";
            double ma = std::strtod(cell, nullptr);
            if (*cell && ma != 0.0) std::snprintf(amps, sizeof amps, "%.4f", ma / 1000.0);
            std::vector<std::string> row{supply, amps};
            if (widths) {
                const char* w =
                    data->GetValueAt(r, data->GetColumnIndex((column + "_WIDTH").c_str()));
                row.push_back(*w ? w : "N/A");
            }
            peak->AddRow(row);
        }
        return 1;
    }
    return 0;
}

int PC_ENG::MergePFRPwr(const std::string& path, const std::string& name) {
    std::string file = name;
    if (!path.empty()) {
        size_t slash = path.find_last_of("/\\");
        file = (slash == std::string::npos ? std::string() : path.substr(0, slash + 1)) + name;
    }
    PD_DATA merged;
    bool ok = PD_UTIL::IsBinaryFile(file.c_str()) ? merged.LoadBinFile(file.c_str())
                                                  : merged.LoadTxtFile(file.c_str());
    if (!ok) {
        std::cerr << file << " cannot be processed!" << std::endl;
        return 0;
    }
    for (PD_SECTION* section : merged.sections) {
        const std::string& n = section->name;
        if (n == "Info" || n == "Worst Case Process Leakage Multiplier" || n == "SUPPLIES" ||
            n == "Scale Factors")
            continue;
        PD_SECTION* copy = section->Clone();
        if (pwrData->GetSection(n.c_str()))
            pwrData->MergeSection(copy);
        else
            pwrData->AddSection(copy);
    }
    return 1;
}
