// The calculation driver and the host's operations on tabs and modes.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// Panel name to its calculator. The order of calculation is that of the tabs.
struct PanelCalculator {
    const char* panel;
    void (PC_ENG::*calculate)();
};

const PanelCalculator kPanelCalculators[] = {
    {"Logic Block", &PC_ENG::LogicBlockCalculation},
    {"Clocks", &PC_ENG::ClockCalculation},
    {"I/O", &PC_ENG::IoCalculation},
    {"I/O Term", &PC_ENG::IoTermCalculation},
    {"Block RAM", &PC_ENG::BlockRamCalculation},
    {"PLL", &PC_ENG::PLLCalculation},
    {"DLL", &PC_ENG::DLLCalculation},
    {"DQSDLL", &PC_ENG::DQSDLLCalculation},
    {"DDRDLL", &PC_ENG::DDRDLLCalculation},
    {"DQS", &PC_ENG::DQSCalculation},
    {"DLLDEL", &PC_ENG::DLLDELCalculation},
    {"ESB", &PC_ENG::ESBCalculation},
    {"SERDES", &PC_ENG::SerdesCalculation},
    {"MIPIDPHY", &PC_ENG::MIPIDPHYCalculation},
    {"Misc", &PC_ENG::MiscCalculation},
    {"FABA", &PC_ENG::FabaCalculation},
    {"DSP", &PC_ENG::DSPCalculation},
    {"EFB", &PC_ENG::EFBCalculation},
    {"ASC", &PC_ENG::ASCCalculation},
    {"PFR", &PC_ENG::PFRCalculation},
};

}  // namespace

int PC_ENG::Calculate() {
    PD_UTIL::DebugMode(3, "0");
    const int result = IotypeDesignRulecheck();
    if (!EnvIs("VRL_PWC_CLOSE_ESTIMATION", "1") && estimationFlag) ProcessEstimationMode();
    setBandgapControllert();
    setClockDCCMap();
    setClockOscList();
    Detect5thpolyEquation();
    iterationCounter = 0;
    CalculateJunctionTemp();
    GenerateDebugPanelHTML(debugLogText);
    PD_UTIL::DebugMode(0, "0");
    return result;
}

void PC_ENG::Calculator() {
    ++iterationCounter;
    if (PD_UTIL::IsCalcLogOpen())
        PD_UTIL::FCprintln("--- Start Calculating Iteration : " + std::to_string(iterationCounter) +
                           "  ----");
    const char* single = std::getenv("SINGLE_PANEL_TEST");
    const bool onlyOne = single && std::strcmp(single, "0") != 0;

    const std::string mode = GetPowerModeType();
    if (mode == "Normal") powerMode = 0;
    if (mode == "Sleep") powerMode = 1;

    ClearPanels(debugPanels);
    for (size_t i = 0; i < panels.size(); ++i) {
        const std::string name = panels[i]->GetName();
        if (name == "Summary" || (onlyOne && name != single)) continue;
        if (PD_UTIL::IsCalcLogOpen()) PD_UTIL::FCprintln("==== " + name + " Calculation ====");
        currentPanelName = name;
        for (const PanelCalculator& pc : kPanelCalculators) {
            if (name == pc.panel) {
                (this->*pc.calculate)();
                break;
            }
        }
    }
    GetPower2DebugPanels(debugPanels);
}

int PC_ENG::ChangeDevice(char** device) {
    if (std::strcmp(device[0], ArchName()) != 0) return 0;
    for (int i = 2; i <= 5; ++i) {
        std::string given = i == 4 ? CutSpeed(device[i]) : std::string(device[i]);
        if (given != devStr[i]) return Calculate();
    }
    return 1;
}

void PC_ENG::ClearPanels(std::vector<PC_PANEL*>* list) {
    if (!debugHtml || !list) return;
    for (PC_PANEL* panel : *list) {
        for (PD_TABLE* table : panel->tables) {
            if (table->GetNumOfColumns() < 2 || table->GetNumOfRows() == 0) continue;
            for (int c = 1; c < table->GetNumOfColumns(); ++c)
                for (int r = 0; r < table->GetNumOfRows(); ++r) table->SetValueAt("0", r, c);
        }
    }
}

PC_PANEL* PC_ENG::GetPanel(int index) const {
    if (index < 0 || index >= static_cast<int>(panels.size())) return nullptr;
    return panels[index];
}

const char* PC_ENG::GetPanelName(int index) const {
    PC_PANEL* p = GetPanel(index);
    return p ? p->GetName() : "";
}

int PC_ENG::GetPanelIndex(const std::string& name) const {
    return GetPanelIndex(name, panels);
}

int PC_ENG::GetPanelIndex(const std::string& name, const std::vector<PC_PANEL*>& list) {
    for (size_t i = 0; i < list.size(); ++i)
        if (name == list[i]->GetName()) return static_cast<int>(i);
    return -1;
}

PC_PANEL* PC_ENG::GetSummaryPanel() const {
    return GetPanel(GetPanelIndex("Summary"));
}

PD_TABLE* PC_ENG::SummaryTable(const char* name) const {
    PC_PANEL* summary = GetSummaryPanel();
    return summary ? summary->GetTable(summary->GetTableIndex(name)) : nullptr;
}

PD_TABLE* PC_ENG::GetSupplyTable() const {
    return SummaryTable("VDPM");
}
PD_TABLE* PC_ENG::GetPGSupplyTable() const {
    return SummaryTable("PGVDPM");
}
PD_TABLE* PC_ENG::GetCurrentTable() const {
    return SummaryTable("Current");
}
PD_TABLE* PC_ENG::GetPowerTable() const {
    return SummaryTable("Power");
}
PD_TABLE* PC_ENG::GetBlockTable() const {
    return SummaryTable("Block");
}
PD_TABLE* PC_ENG::GetPeakStartupTable() const {
    return SummaryTable("Peak Startup");
}

std::string PC_ENG::GetTotalPower() const {
    PD_TABLE* block = GetBlockTable();
    if (!block) return "";
    return block->GetValueAt(block->GetNumOfRows() - 1, 1);
}

void PC_ENG::DumpPanels() const {
    for (PC_PANEL* panel : panels) panel->Dump();
}

std::string PC_ENG::GetPowerModeType() const {
    PD_KEYSECT* settings =
        project ? dynamic_cast<PD_KEYSECT*>(project->GetSection("Settings")) : nullptr;
    if (settings && *settings->GetValue("PowerMode")) return settings->GetValue("PowerMode");
    return "Normal";
}

void PC_ENG::SetPowerModeType(const std::string& mode) {
    PD_SECTION* s = project ? project->GetSection("Settings") : nullptr;
    if (PD_KEYSECT* settings = dynamic_cast<PD_KEYSECT*>(s))
        settings->AddKeyVal("PowerMode", mode.c_str());
}

bool PC_ENG::SetEstimationMode(const std::string& level) {
    for (const char* allowed : {"low", "High", "Medium"}) {
        if (pc_stricmp(level.c_str(), allowed) == 0) {
            estimationLevel = level;
            return true;
        }
    }
    return false;
}

bool PC_ENG::SetThetaOption(const std::string& option, const std::string& value) {
    if (pc_stricmp(option.c_str(), "ThermalModels") != 0 &&
        pc_stricmp(option.c_str(), "UserDefined") != 0)
        return false;
    ThetaOption = option;
    if (option == "UserDefined") ThetaJA = value;
    if (option == "ThermalModels") ThetaUserDefined = "No";
    return true;
}

void PC_ENG::SetASCcalculator(const std::string& text) {
    ascCalculator = false;
    if (!text.empty())
        ascCalculator = true;
    else if (project && project->GetSection("ASC") && project->GetSection("ASC CURRENT"))
        ascCalculator = true;
}

namespace {

// Rewrites every default-marked cell of the columns whose names hold `tag`.
void RewriteDefaults(const std::vector<PC_PANEL*>& panels, const char* tag, double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.4lf^d^", value);
    for (PC_PANEL* panel : panels)
        for (PD_TABLE* table : panel->tables)
            for (int c = 0; c < table->GetNumOfColumns(); ++c) {
                if (table->columns[c].find(tag) == std::string::npos) continue;
                for (int r = 0; r < table->GetNumOfRows(); ++r)
                    if (std::strstr(table->GetValueAt(r, c), "^d^")) table->SetValueAt(text, r, c);
            }
}

}  // namespace

void PC_ENG::SetDefaultFreq(double value) {
    defaultFreq = value;
    RewriteDefaults(panels, "Freq. ", value);
}

void PC_ENG::SetDefaultAF(double value) {
    defaultAF = value;
    RewriteDefaults(panels, "AF ", value);
}

int PC_ENG::UpdateAllFrequencies(const std::string& clock, const std::string& freq) {
    for (PC_PANEL* panel : panels)
        if (std::strcmp(panel->GetName(), "Summary") != 0) SetFrequency(panel, clock, freq);
    return Calculate();
}

void PC_ENG::SetFrequency(PC_PANEL* panel, const std::string& clock, const std::string& freq) {
    if (!panel || panel->GetNumOfTables() < 2) return;
    struct Pair {
        const char* freq;
        const char* name;
    };
    // In the table "PLL" the input frequency pairs with the output clock name.
    static const Pair kPairs[] = {{"RdCLK Freq. (MHz)", "Rd Clock Name"},
                                  {"WrCLK Freq. (MHz)", "Wr Clock Name"},
                                  {"CLK A Freq. (MHz)", "Clock A Name"},
                                  {"CLK B Freq. (MHz)", "Clock B Name"},
                                  {"Freq. (MHz)", "Clock Name"},
                                  {"Input Freq. (MHz)", "Clock Input Name"},
                                  {"Output Freq. (MHz)", "Clock Output Name"}};
    for (int t = 0; t + 1 < panel->GetNumOfTables(); ++t) {
        PD_TABLE* table = panel->GetTable(t);
        for (int r = 0; r < table->GetNumOfRows(); ++r) {
            for (const Pair& p : kPairs) {
                const char* nameColumn = p.name;
                if (std::strcmp(p.freq, "Input Freq. (MHz)") == 0 && table->name == "PLL")
                    nameColumn = "Output Clock Name";
                int fc = table->GetColumnIndex(p.freq);
                int nc = table->GetColumnIndex(nameColumn);
                if (fc < 0 || nc < 0) continue;
                if (clock == table->GetValueAt(r, nc)) table->SetValueAt(freq.c_str(), r, fc);
            }
        }
    }
}
