// A tab of the calculator: a name and its tables in tab order.
#ifndef PWC_PC_PANEL_H
#define PWC_PC_PANEL_H

#include <string>
#include <vector>

#include "pd_data.h"

class PC_PANEL {
  public:
    explicit PC_PANEL(const char* name);
    // Deletes every table it holds.
    ~PC_PANEL();
    PC_PANEL(const PC_PANEL&) = delete;
    PC_PANEL& operator=(const PC_PANEL&) = delete;

    const char* GetName() const { return name_.c_str(); }
    void SetName(const char* name);

    // Takes ownership of the table.
    void AddTable(PD_TABLE* table);
    int GetNumOfTables() const { return static_cast<int>(tables.size()); }
    // Null when the index is out of range.
    PD_TABLE* GetTable(int index) const;
    // Index of the first table of exactly that name; -1 when none.
    int GetTableIndex(const char* name) const;
    void Dump() const;

    // Owned.
    std::vector<PD_TABLE*> tables;

  private:
    std::string name_;
};

#endif
