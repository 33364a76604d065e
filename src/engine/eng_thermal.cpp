// Junction temperature and the theta model.
#include <cstring>

#include "baspcengin.h"

// Until the thermal iteration lands, one pass over the tabs at the ambient.
void PC_ENG::CalculateJunctionTemp() {
    JunctionDone = 0;
    Calculator();
    JunctionDone = 1;
}

std::string PC_ENG::GetTheta(const std::string& key, const std::string& column) const {
    PD_TBLSECT* table = dynamic_cast<PD_TBLSECT*>(ptdData->GetSection("Format"));
    if (!table) return "0";
    const int col = table->GetColumnIndex(column.c_str());
    if (col < 0) return "0";
    if (table->GetNumOfRows() == 0) return table->GetValueAt(0, col);
    const int keyCol = table->GetColumnIndex("Device_Package");
    for (int r = 0; r < table->GetNumOfRows(); ++r) {
        const char* pattern = table->GetValueAt(r, keyCol);
        if (std::strlen(pattern) != key.size()) continue;
        bool match = true;
        for (size_t i = 0; i < key.size() && match; ++i)
            match = pattern[i] == '?' || pattern[i] == key[i];
        if (match) return table->GetValueAt(r, col);
    }
    return "0";
}
