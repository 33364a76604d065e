// Statistics, debug panels and the device-wide clock maps.
#include "baspcengin.h"

// The usage statistics and debug pages come with the reports; for now the
// statistic tables are the supply-by-block matrices.
void PC_ENG::CreateStatisticTable() {
    CreatePowerMatrices();
}

namespace {

PD_TABLE* PanelTable(const PC_ENG& eng, const char* panel, const char* table) {
    PC_PANEL* p = eng.GetPanel(eng.GetPanelIndex(panel));
    return p ? p->GetTable(p->GetTableIndex(table)) : nullptr;
}

}  // namespace

// Each clock flag is set exactly when its table exists with the columns it
// needs; a clear flag leaves the clocks' frequency and activity as given.
void PC_ENG::setClockDCCMap() {
    clockDCCMap.clear();
    PD_TABLE* clocks = PanelTable(*this, "Clocks", "Clocks");
    const int name = clocks ? clocks->GetColumnIndex("Clock Name") : -1;
    const int dcc = clocks ? clocks->GetColumnIndex("DCC") : -1;
    clockDCCFlag = name >= 0 && dcc >= 0;
    if (!clockDCCFlag) return;
    for (int r = 0; r < clocks->GetNumOfRows(); ++r)
        clockDCCMap[clocks->GetValueAt(r, name)] = clocks->GetValueAt(r, dcc);
}

void PC_ENG::setClockOscList() {
    clockOscList.clear();
    PD_TABLE* osc = PanelTable(*this, "Misc", "Clock From OSC");
    const int name = osc ? osc->GetColumnIndex("Clock Name") : -1;
    clockOscFlag = name >= 0;
    if (!clockOscFlag) return;
    for (int r = 0; r < osc->GetNumOfRows(); ++r) {
        const char* clock = osc->GetValueAt(r, name);
        if (*clock) clockOscList.insert(clock);
    }
}

void PC_ENG::GenerateDebugPanelHTML(const std::string&) {}
void PC_ENG::GetPower2DebugPanels(std::vector<PC_PANEL*>*) {}
