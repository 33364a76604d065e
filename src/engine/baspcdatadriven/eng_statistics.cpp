// Statistics, debug panels and the device-wide clock maps.
#include "baspcengin.h"

// Statistic tables and debug pages come with the reports; the clock maps
// with the clock-aware current models.
void PC_ENG::CreateStatisticTable() {}
void PC_ENG::setClockDCCMap() {}
void PC_ENG::setClockOscList() {}
void PC_ENG::GenerateDebugPanelHTML(const std::string&) {}
void PC_ENG::GetPower2DebugPanels(std::vector<PC_PANEL*>*) {}
