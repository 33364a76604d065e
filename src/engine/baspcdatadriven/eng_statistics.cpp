// Statistics, debug panels and the device-wide clock maps.
#include "baspcengin.h"

// The usage statistics and debug pages come with the reports; for now the
// statistic tables are the supply-by-block matrices.
void PC_ENG::CreateStatisticTable() {
    CreatePowerMatrices();
}
void PC_ENG::setClockDCCMap() {}
void PC_ENG::setClockOscList() {}
void PC_ENG::GenerateDebugPanelHTML(const std::string&) {}
void PC_ENG::GetPower2DebugPanels(std::vector<PC_PANEL*>*) {}
