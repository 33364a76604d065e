// Device-change checks: can another device hold what the tabs use?
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "eng_text.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// The walk stops once more complaints than this have been made.
constexpr int kMaxComplaints = 10;

struct PanelCheck {
    const char* panel;
    int (PC_ENG::*check)();
};
const PanelCheck kPanelChecks[] = {
    {"Logic Block", &PC_ENG::LogicPanDrcCheck},
    {"Clocks", &PC_ENG::ClockPanDrcCheck},
    {"I/O", &PC_ENG::IoPanDrcCheck},
    {"Block RAM", &PC_ENG::BlockRamPanDrcCheck},
    {"PLL", &PC_ENG::PLLPanDrcCheck},
    {"DLL", &PC_ENG::DLLPanDrcCheck},
    {"DQSDLL", &PC_ENG::DQSDLLPanDrcCheck},
    {"SERDES", &PC_ENG::SerdesPanDrcCheck},
    {"Misc", &PC_ENG::MiscPanDrcCheck},
    {"FABA", &PC_ENG::FabaPanDrcCheck},
    {"DSP", &PC_ENG::DSPPanDrcCheck},
};

// One count of the logic table against its allowance.
struct LogicRule {
    const char* column;
    const char* key;
    const char* message;
    bool stops;  // a complaint past the limit ends the check
};
const LogicRule kLogicRules[] = {
    {"# Logic LUTs", "Allowed LUT", "The number of used LUT exceed new device allowed.\n", true},
    {"# Dist. RAM", "Allowed RAM", "The number of used RAM exceed new device allowed.\n", true},
    {"# Ripple Slice", "Allowed RIPPLE", "The number of used Slices exceed new device allowed.\n",
     true},
    // The slices' message stands for the registers too.
    {"# Registers", "Allowed REG", "The number of used Slices exceed new device allowed.\n", false},
};

// The three kinds of a DSP panel that has one table per kind.
struct DspKind {
    int table;
    const char* column;
    const char* key;
    const char* message;
    bool stops;
};
const DspKind kDspKinds[] = {
    {0, "# M9X9", "Allowed M9X9", "The new device has no M9X9.\n", true},
    {1, "# M18X18", "Allowed M18X18", "The new device has no M18X18.\n", true},
    {2, "# ALU54", "Allowed ALU54", "The new device has no ALU54.\n", false},
};

const char* const kMemoryTables[] = {"SP RAM", "DP RAM", "DP RAM True", "FIFO DC"};

int Whole(const std::string& text) {
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

// Words of a list cell, at blanks, "," or ";".
std::set<std::string> ListOf(const std::string& text) {
    std::set<std::string> out;
    int n = 0;
    char** tokens = PD_UTIL::GetArrayOfTokens(text.c_str(), " \t,;", &n);
    for (int i = 0; i < n; ++i)
        if (*tokens[i]) out.insert(tokens[i]);
    PD_UTIL::DeleteArray(tokens, n);
    return out;
}

}  // namespace

int PC_ENG::ResourcesDrcCheck(char** device) {
    // A load failure leaves both in place until the next check or the end
    // of the engine.
    delete NewDeviceData;
    delete NewDevicePgt;
    NewDeviceData = new PD_DATA;
    NewDevicePgt = new PD_DATA;
    DrcMessage.clear();
    DrcErrorCount = 0;
    for (int i = 0; i < 7; ++i) NewDeviceInfo[i] = device && device[i] ? device[i] : "";
    NewDeviceInfo[4] = CutSpeed(NewDeviceInfo[4].c_str());

    char name[PD_UTIL::kFilenameSize];
    std::snprintf(name, sizeof name, "%s.pwd", NewDeviceInfo[0].c_str());
    if (!HelperSetupPowerData(NewDeviceData, name)) {
        DrcMessage = "Read PWD fail! ";
        return 0;
    }
    std::snprintf(name, sizeof name, "%s.pgt", NewDeviceInfo[0].c_str());
    if (!HelperSetupPowerData(NewDevicePgt, name)) {
        DrcMessage = "Read PGT fail! ";
        return 0;
    }

    int answer = 1;
    for (PC_PANEL* panel : panels) {
        const std::string panelName = panel->GetName();
        if (panelName == "Summary") continue;
        for (const PanelCheck& pc : kPanelChecks) {
            if (panelName != pc.panel) continue;
            answer &= (this->*pc.check)();
            break;
        }
        if (DrcErrorCount > kMaxComplaints) break;
    }
    delete NewDeviceData;
    delete NewDevicePgt;
    NewDeviceData = nullptr;
    NewDevicePgt = nullptr;
    return answer;
}

int PC_ENG::LogicPanDrcCheck() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("Logic Block"));
    PD_TABLE* table = panel ? panel->GetTable(0) : nullptr;
    if (!table || panel->GetNumOfTables() == 1 || table->GetNumOfRows() == 0) return 1;
    int result = 1;
    for (const LogicRule& rule : kLogicRules) {
        std::string allowed = "0";
        NewDeviceHas(rule.key, allowed);
        const int used = GetTotalSumRowData(table, table->GetColumnIndex(rule.column), 0);
        if (used <= Whole(allowed)) continue;
        DrcMessage += rule.message;
        ++DrcErrorCount;
        result = 0;
        if (rule.stops && DrcErrorCount > kMaxComplaints) return 0;
    }
    return result;
}

int PC_ENG::ClockPanDrcCheck() {
    return 1;
}
int PC_ENG::DLLPanDrcCheck() {
    return 1;
}
int PC_ENG::DQSDLLPanDrcCheck() {
    return 1;
}
int PC_ENG::MiscPanDrcCheck() {
    return 1;
}

int PC_ENG::IoPanDrcCheck() {
    std::string allowed = "0";
    NewDeviceHas("PIO Pins Max", allowed);
    if (GetTotalUsedIO() <= Whole(allowed)) return 1;
    DrcMessage += "The number of used IO exceed new device allowed.\n";
    ++DrcErrorCount;
    return 0;
}

int PC_ENG::BlockRamPanDrcCheck() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("Block RAM"));
    if (!panel) return 1;
    int used = 0;
    for (const char* name : kMemoryTables) {
        PD_TABLE* t = panel->GetTable(panel->GetTableIndex(name));
        if (t) used += GetTotalSumRowData(t, t->GetColumnIndex("# EBR Blocks"), 0);
    }
    std::string allowed = "0";
    NewDeviceHas("Allowed EBR", allowed);
    if (used <= Whole(allowed)) return 1;
    DrcMessage += "The number of used EBR exceed new device allowed.\n";
    ++DrcErrorCount;
    return 0;
}

int PC_ENG::PLLPanDrcCheck() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("PLL"));
    PD_TABLE* table = panel ? panel->GetTable(0) : nullptr;
    const int used = table ? GetTotalSumRowData(table, table->GetColumnIndex("# PLL"), 0) : 0;
    std::string value = "0";
    NewDeviceHas("Allowed PLL", value);
    const int allowed = Whole(value);
    if (used > 0 && allowed == 0) {
        DrcMessage += "The new device has no PLL.\n";
    } else if (used > allowed) {
        DrcMessage += "The number of used PLL exceed new device allowed.\n";
    } else {
        return 1;
    }
    ++DrcErrorCount;
    return 0;
}

int PC_ENG::DSPPanDrcCheck() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("DSP"));
    if (!panel) return 1;
    if (panel->GetNumOfTables() == 2) {
        std::string value;
        const int has = NewDeviceHas("Allowed DSP", value) || NewDeviceHas("DSP", value);
        PD_TABLE* table = panel->GetTable(0);
        const int used = GetTotalSumRowData(table, table->GetColumnIndex("# DSP"), 0);
        if (used < 1 || has) return 1;
        DrcMessage += "The new device has no DSP.\n";
        ++DrcErrorCount;
        return 0;
    }
    int result = 1;
    for (const DspKind& kind : kDspKinds) {
        PD_TABLE* table = panel->GetTable(kind.table);
        if (!table) continue;
        std::string value;
        const int has = NewDeviceHas(kind.key, value);
        const int used = GetTotalSumRowData(table, table->GetColumnIndex(kind.column), 0);
        if (used < 1 || has == 1) continue;
        DrcMessage += kind.message;
        ++DrcErrorCount;
        result = 0;
        if (kind.stops && DrcErrorCount > kMaxComplaints) return 0;
    }
    return result;
}

int PC_ENG::SerdesPanDrcCheck() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("SERDES"));
    PD_TABLE* table = panel ? panel->GetTable(0) : nullptr;
    if (!table) return 1;
    int result = 1;
    auto complain = [this, &result](const char* message) {
        DrcMessage += message;
        ++DrcErrorCount;
        result = 0;
    };

    std::string value = "0";
    const int has = NewDeviceHas("PCS", value);
    int used = GetTotalSumRowData(table, table->GetColumnIndex("# PCS"), 0);
    if (used == 0) used = table->GetNumOfRows();
    if (used >= 1 && !has) {
        complain("The new device has no SERDES.\n");
        if (DrcErrorCount > kMaxComplaints) return 0;
    }
    if (used > Whole(value)) {
        complain("The number of used SERDES exceed new device allowed.\n");
        if (DrcErrorCount > kMaxComplaints) return 0;
    }

    const char* typeColumn = table->GetColumnIndex("Mode") >= 0            ? "Mode"
                             : table->GetColumnIndex("Gearing Ratio") >= 0 ? "Gearing Ratio"
                                                                           : nullptr;
    auto* pcs = dynamic_cast<PD_TBLSECT*>(NewDevicePgt->GetSection("PCS"));
    if (typeColumn && pcs && pcs->GetColumnIndex(typeColumn) < 0 && table->GetNumOfRows() > 0) {
        complain("The new device has different SERDES type.\n");
        if (DrcErrorCount > kMaxComplaints) return 0;
    }

    const int quad = table->GetColumnIndex("Quad_Channel");
    if (quad >= 0 && table->GetNumOfRows() > 0) {
        const std::set<std::string> channels = GetQuadChannelSet();
        for (int r = 0; r < table->GetNumOfRows(); ++r) {
            const std::string channel = table->GetValueAt(r, quad);
            if (channels.count(channel)) continue;
            complain(("The new device has no Quad Channel " + channel + ".\n").c_str());
            break;
        }
    }
    return result;
}

int PC_ENG::FabaPanDrcCheck() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("FABA"));
    PD_TABLE* table = panel ? panel->GetTable(0) : nullptr;
    if (!table) return 1;
    int result = 1;
    auto complain = [this, &result](const std::string& message) {
        DrcMessage += message;
        ++DrcErrorCount;
        result = 0;
    };
    std::string value = "0";
    const int has = NewDeviceHas("FABA", value);
    const int used = GetTotalSumRowData(table, table->GetColumnIndex("# FABA"), 0);
    if (used >= 1 && !has) {
        complain("The new device has no FABA.\n");
        if (DrcErrorCount > kMaxComplaints) return 0;
    }
    if (used > Whole(value)) {
        complain("The number of used FABA exceed new device allowed.\n");
        if (DrcErrorCount > kMaxComplaints) return 0;
    }
    if (panel->GetNumOfTables() < 3) return result;
    const std::set<std::string> ids = GetFabaIDset();
    for (int t = 0; t + 1 < panel->GetNumOfTables(); ++t) {
        PD_TABLE* kind = panel->GetTable(t);
        const int idColumn = kind ? kind->GetColumnIndex("FABA Id.") : -1;
        if (idColumn < 0 || kind->GetNumOfRows() < 1) continue;
        const std::string id = kind->GetValueAt(0, idColumn);
        if (ids.count(id)) continue;
        complain("The new device has no FABA ID " + id + ".\n");
        break;
    }
    return result;
}

// The candidate's "Format" cells "Quad_Channel" and "FABA Id." list what it
// offers, separated by blanks, "," or ";".
std::set<std::string> PC_ENG::GetQuadChannelSet() {
    std::string value;
    return NewDeviceHas("Quad_Channel", value) ? ListOf(value) : std::set<std::string>{};
}

std::set<std::string> PC_ENG::GetFabaIDset() {
    std::string value;
    return NewDeviceHas("FABA Id.", value) ? ListOf(value) : std::set<std::string>{};
}
