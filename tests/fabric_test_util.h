// Rows and cells of the fabric tabs' tests.
#ifndef PWC_TESTS_FABRIC_TEST_UTIL_H
#define PWC_TESTS_FABRIC_TEST_UTIL_H

#include <cmath>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "engine_fixture.h"

namespace pwctest {

inline double Num(const std::string& s) {
    return std::strtod(s.c_str(), nullptr);
}

inline PD_TABLE* TabTable(PC_ENG& eng, const char* panel, const char* table) {
    PC_PANEL* p = eng.GetPanel(eng.GetPanelIndex(panel));
    if (!p) return nullptr;
    return table ? p->GetTable(p->GetTableIndex(table)) : p->GetTable(0);
}

inline PD_TABLE* TotalTable(PC_ENG& eng, const char* panel) {
    PC_PANEL* p = eng.GetPanel(eng.GetPanelIndex(panel));
    return p ? p->GetTable(p->GetNumOfTables() - 1) : nullptr;
}

// Appends a row of "0" cells with the given ones set; its index.
inline int AddRow(PD_TABLE* t, const std::map<std::string, std::string>& cells) {
    std::vector<std::string> row(t->GetNumOfColumns(), "0");
    for (const auto& [column, value] : cells) {
        const int c = t->GetColumnIndex(column.c_str());
        EXPECT_GE(c, 0) << column;
        if (c >= 0) row[c] = value;
    }
    t->AddRow(row);
    return t->GetNumOfRows() - 1;
}

// The full value behind a (possibly rounded) cell; 0 for an absent column.
inline double Cell(PD_TABLE* t, int row, const char* column) {
    return Num(t->GetNoRoundValueAt(row, t->GetColumnIndex(column)));
}

// A row as the formulas see it, at a junction temperature of our choosing.
struct RowView {
    std::vector<std::string> names, values;
    std::string& operator[](const std::string& name) {
        for (size_t i = 0; i < names.size(); ++i)
            if (names[i] == name) return values[i];
        names.push_back(name);
        values.emplace_back();
        return values.back();
    }
};

inline RowView ViewRow(PC_ENG& eng, PD_TABLE* t, int row, const char* tj) {
    RowView v;
    int n = 0;
    v.names = eng.GetArrayOfColumnNames(t, &n);
    v.values = eng.GetArrayOfColumnValues(t, row, &n);
    v["TJ"] = tj;
    eng.InitConstants(v.names, v.values);
    return v;
}

// The equations' e.
inline double ExpEq(double x) {
    return std::pow(2.718282, x);
}

// The evaluator carries each step as "%g" text, six significant digits: a
// hand computation of a leakage equation agrees to a few parts in a million.
constexpr double kEquationDigits = 5e-6;

}  // namespace pwctest

#endif
