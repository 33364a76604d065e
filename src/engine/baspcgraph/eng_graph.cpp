// Graph sweeps: power against a supply's voltage, the ambient temperature and
// one clock's frequency, for the typical and, where the device has it, the
// worst process corner.
#include <climits>
#include <cmath>
#include <cstdio>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

namespace {

const char* const kNoClocks = "No Clocks Found!";

void DefaultIfZero(double& value, double fallback) {
    if (value == 0.0) value = fallback;
}

void DefaultIfEmpty(std::string& value, const char* fallback) {
    if (value.empty()) value = fallback;
}

}  // namespace

void PC_ENG::addGraphdata(std::vector<grpdata>& points, double x, double y) {
    points.push_back({x, y});
}

// The count truncates, so a step that doesn't divide the range stops above
// `lower`.
int PC_ENG::GraphPointCount(double lower, double upper, double step) {
    const double count = std::trunc((upper - lower) / step);
    if (!(count >= 0.0)) return 0;
    return count >= INT_MAX ? INT_MAX : static_cast<int>(count) + 1;
}

void PC_ENG::SetGraphDefaults() {
    DefaultIfEmpty(SectionX, "Vcc");
    DefaultIfEmpty(SectionY, "Total Power");
    DefaultIfZero(SectionLowerLimit, 1.14);
    DefaultIfZero(SectionUpperLimit, 1.26);
    DefaultIfZero(SectionResolution, 0.024);
    DefaultIfEmpty(TempAmbY, "Total Power");
    DefaultIfEmpty(TempAmbX, "Ambient Temperature");
    DefaultIfZero(TempAmbLowerLimit, -30.0);
    DefaultIfZero(TempAmbUpperLimit, 115.0);
    DefaultIfZero(TempAmbResolution, 20.0);
    // The frequency step is "FreqAmbResolution" of "Settings", in MHz.
    DefaultIfEmpty(FreqY, "Total Power");
    DefaultIfZero(FreqLowerLimit, 10.0);
    DefaultIfZero(FreqUpperLimit, 100.0);
    DefaultIfZero(FreqAmbResolution, 20.0);
}

void PC_ENG::CollectDataForGraph() {
    graphProcessing = true;
    for (std::vector<grpdata>* v :
         {&SectionTypical, &SectionWorst, &TempAmbTypical, &TempAmbWorst, &FreqTypical, &FreqWorst})
        v->clear();
    SetGraphDefaults();

    const double voltage = Num(GetVDPM(SectionX, "Voltage"));
    const double ambient = Num(AmbientTemperature);
    const std::string process = GetProcessType();

    // The swept clock's row of the clock table; its frequency text is put
    // back as it stood.
    std::string clock = kNoClocks, clockFrequency;
    PC_PANEL* clocks = GetPanel(GetPanelIndex("Clocks"));
    PD_TABLE* clockTable = clocks && clocks->GetNumOfTables() > 0 ? clocks->GetTable(0) : nullptr;
    if (clockTable && clockTable->GetNumOfRows() > 0 && clockTable->GetNumOfColumns() > 1) {
        int row = 0;
        if (FreqX != kNoClocks)
            for (int r = 0; r < clockTable->GetNumOfRows(); ++r)
                if (FreqX == clockTable->GetValueAt(r, 0)) {
                    row = r;
                    break;
                }
        clock = clockTable->GetValueAt(row, 0);
        clockFrequency = clockTable->GetValueAt(row, 1);
    }
    const bool sweepFrequency = clock != kNoClocks;

    const int supplyPoints =
        GraphPointCount(SectionLowerLimit, SectionUpperLimit, SectionResolution);
    const int ambientPoints =
        GraphPointCount(TempAmbLowerLimit, TempAmbUpperLimit, TempAmbResolution);
    const int frequencyPoints =
        sweepFrequency ? GraphPointCount(FreqLowerLimit, FreqUpperLimit, FreqAmbResolution) : 0;
    const int total = supplyPoints + ambientPoints + frequencyPoints;
    int done = 0;
    const bool worst = IsWorstTypeAvailable();

    // One point for both corners, worst first.
    auto point = [&](double x, double atAmbient, double atVoltage, const std::string& plotted,
                     std::vector<grpdata>& typical, std::vector<grpdata>& worstPoints) {
        if (worst) {
            CalculateJunctionByGivenAmbProcSupply("Worst", atAmbient, SectionX, atVoltage);
            addGraphdata(worstPoints, x, GetTotalPowerEachPanel(plotted));
        }
        CalculateJunctionByGivenAmbProcSupply("Typical", atAmbient, SectionX, atVoltage);
        addGraphdata(typical, x, GetTotalPowerEachPanel(plotted));
        if (graphProgress) graphProgress(++done, total);
    };

    for (int i = 0; i < supplyPoints; ++i) {
        const double x = SectionUpperLimit - i * SectionResolution;
        point(x, ambient, x, SectionY, SectionTypical, SectionWorst);
    }
    for (int i = 0; i < ambientPoints; ++i) {
        const double x = TempAmbUpperLimit - i * TempAmbResolution;
        point(x, x, voltage, TempAmbY, TempAmbTypical, TempAmbWorst);
    }
    if (sweepFrequency) {
        // Rows that name the clock but run at another frequency (an output
        // at 0 MHz, ...) are set by the sweep too: their cells are put back
        // as they stood.
        std::vector<std::pair<PD_TABLE*, std::vector<std::vector<std::string>>>> design;
        for (PC_PANEL* panel : panels) {
            if (std::string(panel->GetName()) == "Summary") continue;
            for (int t = 0; t < panel->GetNumOfTables(); ++t) {
                PD_TABLE* table = panel->GetTable(t);
                std::vector<std::vector<std::string>> cells(table->GetNumOfRows());
                for (int r = 0; r < table->GetNumOfRows(); ++r)
                    for (int c = 0; c < table->GetNumOfColumns(); ++c)
                        cells[r].push_back(table->GetValueAt(r, c));
                design.emplace_back(table, std::move(cells));
            }
        }
        char text[512];
        for (int i = 0; i < frequencyPoints; ++i) {
            const double x = FreqUpperLimit - i * FreqAmbResolution;
            std::snprintf(text, sizeof text, "%.20f", x);
            UpdateAllFrequencies(clock, text);
            point(x, ambient, voltage, FreqY, FreqTypical, FreqWorst);
        }
        UpdateAllFrequencies(clock, clockFrequency);
        for (const auto& [table, cells] : design) {
            if (table->GetNumOfRows() != static_cast<int>(cells.size())) continue;
            for (int r = 0; r < table->GetNumOfRows(); ++r)
                for (int c = 0;
                     c < table->GetNumOfColumns() && c < static_cast<int>(cells[r].size()); ++c)
                    if (cells[r][c] != table->GetValueAt(r, c))
                        table->SetValueAt(cells[r][c].c_str(), r, c);
        }
    }

    SetProcessType(process.c_str());
    CalculateJunctionByGivenAmbProcSupply(process, ambient, SectionX, voltage);
    Calculate();
    graphDirty = false;
    graphProcessing = false;
}
