#include "pc_panel.h"

#include "pd_util.h"

PC_PANEL::PC_PANEL(const char* name) : name_(name ? name : "") {
    if (PD_UTIL::IsCalcLogOpen()) PD_UTIL::FCprintln("PC_PANEL " + name_);
}

PC_PANEL::~PC_PANEL() {
    if (PD_UTIL::IsCalcLogOpen()) PD_UTIL::FCprintln("~PC_PANEL " + name_);
    for (PD_TABLE* table : tables) delete table;
}

void PC_PANEL::SetName(const char* name) {
    name_ = name ? name : "";
}

void PC_PANEL::AddTable(PD_TABLE* table) {
    tables.push_back(table);
}

PD_TABLE* PC_PANEL::GetTable(int index) const {
    if (index < 0 || index >= GetNumOfTables()) return nullptr;
    return tables[index];
}

int PC_PANEL::GetTableIndex(const char* name) const {
    if (name == nullptr) return -1;
    for (int i = 0; i < GetNumOfTables(); ++i)
        if (tables[i] != nullptr && tables[i]->name == name) return i;
    return -1;
}

void PC_PANEL::Dump() const {
    for (const PD_TABLE* table : tables)
        if (table != nullptr) table->Dump();
}
