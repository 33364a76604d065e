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
