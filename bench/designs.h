// Designs the benchmarks, bench_rss and pwc_dump share: generated designs on
// the demo project, and the sample projects on their own devices.
#ifndef PWC_BENCH_DESIGNS_H
#define PWC_BENCH_DESIGNS_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "pwc.h"

namespace pwcbench {

// The data folder of the source tree being measured (devices/, projects/).
std::string DataDir();

// Replace the demo's rows of the tables concerned with `rows` generated ones.
// Logic: rows cycling through plausible modules.
void LogicRows(PD_DATA& project, int rows);
// I/O: eight kinds of row over the demo's four banks, beside its logic.
void IoRows(PD_DATA& project, int rows);
// Mixed: rows spread over every tab the device shows, each table repeating
// the demo's own rows.
void SpreadRows(PD_DATA& project, int rows);

struct DesignKind {
    const char* name;
    void (*fill)(PD_DATA&, int);
};
// "logic", "io", "mixed".
const std::vector<DesignKind>& DesignKinds();
// Null for an unknown name.
const DesignKind* FindDesign(const std::string& name);

// A project and the engine built on it (which has run its first Calculate).
// An empty calcLog keeps the calculation log closed; a path makes every
// Calculate of the engine log there.
struct Engine {
    // The demo project, edited, on its own device (zn2c00, KZQ2-1200HC).
    static Engine OnDemo(const std::function<void(PD_DATA&)>& edit,
                         const std::string& calcLog = "");
    // A project file on the device its "Project" section names, the
    // architecture taken from the data folder's catalog.
    static Engine OnProject(const std::string& path, const std::string& calcLog = "");

    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

// Estimation mode on for an engine of OnDemo, at `level` ("low", "Medium",
// "High"; empty: the project's own). False for an unknown level.
bool EstimationOn(Engine& e, const std::string& level = "");

// Peak resident memory of this process so far, in MB.
double PeakRssMB();

}  // namespace pwcbench

#endif
