// The demo project on its device, and panels built by hand for the report
// tests.
#ifndef PWC_TESTS_REPORT_FIXTURE_H
#define PWC_TESTS_REPORT_FIXTURE_H

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "engine_fixture.h"

namespace pwctest {

const char* const kProgram = "pwc 0.1.0";
const char* const kTool = "Power Calculator";
const char* const kDate = "Date: Sun Nov 22 10:00:00 2026";

inline std::string DemoPath() {
    return std::string(PWC_TEST_DATA_DIR) + "/projects/demo.pcf";
}

inline std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline int Occurrences(const std::string& text, const std::string& part) {
    int n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

// An engine on the demo project, as `pwc report` leaves it.
struct DemoEngine {
    explicit DemoEngine(const std::string& family = "Quenra2") {
        dev.family = family;
        dev.part = "KZQ2-1200HC";
        project = LoadProject(DemoPath());
        eng = MakeEngine(dev, project.get());
        eng->Calculate();
        eng->ProjectName = "demo.pcf";
        eng->ReportProgramName = kProgram;
    }
    std::string Text() { return eng->GenerateTxtReport(kProgram, kTool, kDate); }

    DeviceStrings dev;
    std::unique_ptr<PD_DATA> project;
    std::unique_ptr<PC_ENG> eng;
};

inline PD_TABLE* MakeTable(const std::string& name, const std::vector<std::string>& columns,
                           const std::vector<std::vector<std::string>>& rows) {
    auto* t = new PD_TABLE(name.c_str());
    t->SetColumns(columns);
    for (const auto& row : rows) t->AddRow(row);
    return t;
}

// A total table whose row 0 holds the dynamic and the total power.
inline PD_TABLE* MakeTotal(const std::string& name, const std::string& dyn,
                           const std::string& total) {
    return MakeTable(name, {"Total Dyn. Pwr (W)", "Total Pwr (W)"}, {{dyn, total}});
}

// Turns a panel that the reports don't read ("I/O Term") or any other into
// the panel `name` with the tables given (owned by the panel).
inline PC_PANEL* RebuildPanel(PC_ENG& eng, const std::string& from, const std::string& name,
                              const std::vector<PD_TABLE*>& tables) {
    PC_PANEL* p = eng.GetPanel(eng.GetPanelIndex(from));
    EXPECT_NE(p, nullptr) << from;
    if (!p) {
        for (PD_TABLE* t : tables) delete t;
        return nullptr;
    }
    for (PD_TABLE* t : p->tables) delete t;
    p->tables.clear();
    p->SetName(name.c_str());
    for (PD_TABLE* t : tables) p->AddTable(t);
    return p;
}

// The lines of the text report's block that begins with "\n\n<heading>\n",
// up to the next block.
inline std::string TextBlock(const std::string& report, const std::string& heading) {
    const std::string open = "\n\n" + heading + "\n";
    const size_t at = report.find(open);
    if (at == std::string::npos) return "";
    const size_t end = report.find("\n\n", at + open.size());
    return report.substr(at + 2, end == std::string::npos ? std::string::npos : end - at - 2);
}

}  // namespace pwctest

#endif
