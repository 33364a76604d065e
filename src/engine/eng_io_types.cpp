// I/O standards: the type lists, their classes and the bank voltage rule.
#include <cstring>

#include "baspcengin.h"

void PC_ENG::SetInOutBidiVector() {
    struct {
        const char* section;
        const char* bareColumn;
        std::vector<std::string>* list;
    } const kinds[] = {{"Input", "PWRSAVE", &inputTypes},
                       {"Output", "PWRSAVE", &outputTypes},
                       {"Bidir", "BIDIR", &bidiTypes}};
    for (const auto& kind : kinds) {
        kind.list->clear();
        auto* t = dynamic_cast<PD_TBLSECT*>(pwdData->GetSection(kind.section));
        if (!t) continue;
        const int typeCol = t->GetColumnIndex("IO_TYPE");
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            std::string text = t->GetValueAt(r, typeCol);
            for (int c = 0; c < t->GetNumOfColumns(); ++c) {
                const std::string& column = t->columns[c];
                const char* value = t->GetValueAt(r, c);
                // The bank column lists voltages, it is no attribute.
                if (c == typeCol || column == "Bank" || std::strcmp(value, "OFF") == 0) continue;
                if (column == "PWRSAVE" || column == kind.bareColumn)
                    text += "-" + column;
                else
                    text += "-" + column + ":" + value + (column == "DRIVE" ? "mA" : "");
            }
            kind.list->push_back(text);
        }
    }
}

int PC_ENG::IsOnTheListCompare(const std::string& kind, const std::string& type) const {
    const std::vector<std::string>* list = kind == "Input"    ? &inputTypes
                                           : kind == "Output" ? &outputTypes
                                           : kind == "Bidir"  ? &bidiTypes
                                                              : nullptr;
    if (!list) return 0;
    for (const std::string& t : *list)
        if (t == type) return 1;
    return 0;
}

// The bank rule arrives with the bank model; until then it passes.
int PC_ENG::IotypeDesignRulecheck() {
    return 1;
}
