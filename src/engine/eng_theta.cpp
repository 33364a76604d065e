// The theta model: effective junction-to-air resistance from the user or from
// the thermal data by board, heat sink and air flow. All values are text.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pc_families.h"

using namespace pwc;

namespace {

const std::vector<std::string> kBoards = {"JEDEC Board (2S2P)", "Small Board", "Medium Board",
                                          "Large Board"};
const std::vector<std::string> kHeatSinks = {"No Heat Sink", "Low Profile Heat Sink",
                                             "Medium Profile Heat Sink", "High Profile Heat Sink",
                                             "Custom Profile Heat Sink"};
const std::vector<std::string> kAirFlows = {"0 LFM", "200 LFM", "500 LFM"};
const char* kCustomSink = "Custom Profile Heat Sink";

bool Contains(const std::vector<std::string>& list, const std::string& s) {
    for (const std::string& x : list)
        if (x == s) return true;
    return false;
}

// A short word the user may type for an entry of a list, case-blind.
std::string Expand(const std::string& word, const std::vector<std::string>& list,
                   std::initializer_list<const char*> shortWords) {
    if (Contains(list, word)) return word;
    size_t i = 0;
    for (const char* s : shortWords) {
        if (pc_stricmp(word.c_str(), s) == 0) return list[i];
        ++i;
    }
    return "";
}

}  // namespace

std::vector<std::string> PC_ENG::GetBoardTypeVector() const {
    return kBoards;
}
std::vector<std::string> PC_ENG::GetHeatSinkTypeVector() const {
    return kHeatSinks;
}
std::vector<std::string> PC_ENG::GetAirFlowTypeVector() const {
    return kAirFlows;
}

std::string PC_ENG::ThetaDeviceKey() const {
    std::string part = DeviceName();
    // These parts share the thermal data of the plain part.
    if (pwc::SharesPlainPartThermalData(FamilyName())) {
        size_t s = part.find_last_of('S');
        if (s != std::string::npos) part = part.substr(0, s) + part.substr(s + 1);
    }
    return part + "_" + PackageName();
}

std::string PC_ENG::GetTheta(const std::string& key, const std::string& column) const {
    PD_TBLSECT* table = dynamic_cast<PD_TBLSECT*>(ptdData->GetSection("Format"));
    if (!table) return "0";
    const int col = table->GetColumnIndex(column.c_str());
    if (col < 0) return "0";
    if (table->GetNumOfRows() == 0) return table->GetValueAt(0, col);
    const int keyCol = table->GetColumnIndex("Device_Package");
    for (int r = 0; r < table->GetNumOfRows(); ++r) {
        const char* pattern = table->GetValueAt(r, keyCol);
        if (std::strlen(pattern) != key.size()) continue;
        bool match = true;
        for (size_t i = 0; i < key.size() && match; ++i)
            match = pattern[i] == '?' || pattern[i] == key[i];
        if (match) return table->GetValueAt(r, col);
    }
    return "0";
}

std::string PC_ENG::GetThetaSelectionString() const {
    auto shortForm = [this](const std::string& s) {
        auto it = thetaShortForm.find(s);
        return it == thetaShortForm.end() ? std::string() : it->second;
    };
    const std::string sink =
        HeatSinkSelection == kCustomSink ? std::string("NA") : shortForm(HeatSinkSelection);
    const std::string text =
        shortForm(BoardSelection) + "_" + shortForm(AirFlowSelection) + "_" + sink;
    // JEDEC without a heat sink keeps the column names of the old format.
    if (text == "JEDEC_0fpm_noHS") return "Theta JA (0lfm)";
    if (text == "JEDEC_200fpm_noHS") return "Theta JA (200lfm)";
    if (text == "JEDEC_500fpm_noHS") return "Theta JA (500lfm)";
    return text;
}

int PC_ENG::GetNewFormatThetaJA() {
    const std::string key = ThetaDeviceKey();
    const std::string text = GetTheta(key, GetThetaSelectionString());
    if (text.empty()) return 0;
    if (HeatSinkSelection != kCustomSink) {
        ThetaJA = text;
        return 1;
    }
    // For a custom sink the column holds a conductance.
    const double jc = Num(GetTheta(key, "Theta JC"));
    ThetaJA = PrintFixed(1.0 / (1.0 / (jc + Num(ThetaSACustom)) + Num(text)), 2);
    return 1;
}

void PC_ENG::ReadThetaColumn(std::string& member, const std::string& userSet,
                             const std::string& column) {
    if (userSet == "Yes") return;
    std::string v = GetTheta(ThetaDeviceKey(), column);
    if (v.empty()) v = "1";
    member = PrintFixed(Num(v), 2);
}

void PC_ENG::ProcessThetaJC() {
    ReadThetaColumn(ThetaJC, ThetaJCUserSet, "Theta JC");
}
void PC_ENG::ProcessThetaJB() {
    ReadThetaColumn(ThetaJB, ThetaJBUserSet, "Theta JB");
}

void PC_ENG::ProcessThetaJA() {
    std::string flow = AirFlowSelection.substr(0, AirFlowSelection.find(" LFM"));
    ReadThetaColumn(ThetaJAModel, ThetaJAUserSet, "Theta JA (" + flow + "lfm)");
}

void PC_ENG::ProcessThetaBA() {
    if (ThetaBAUserSet == "Yes") return;
    std::string column;
    if (BoardSelection == "Small Board") column = "JEDEC (small Board)";
    if (BoardSelection == "Medium Board") column = "Board Medium";
    if (BoardSelection == "Large Board") column = "Board Large";
    std::string v = GetTheta(ThetaDeviceKey(), column);
    if (v == "0") v = GetTheta(ThetaDeviceKey(), "Small PCB");
    if (v.empty()) v = "1";
    ThetaBA = PrintFixed(Num(v), 2);
}

void PC_ENG::ProcessThetaSA() {
    if (ThetaSAUserSet == "Yes" || CustomHeatSink == "Yes") return;
    if (HeatSinkSelection == "No Heat Sink") {
        ThetaSA = "0";
        return;
    }
    std::string sink = HeatSinkSelection.substr(0, HeatSinkSelection.find(" Heat Sink"));
    std::string flow = AirFlowSelection;
    if (flow == "0 LFM" || flow == "NA") flow = "200 LFM";
    flow = flow.substr(0, flow.find(" LFM"));
    ReadThetaColumn(ThetaSA, "No", "HS " + sink + " " + flow);
}

void PC_ENG::ProcessTheta() {
    if (ThetaOption != "ThermalModels") {
        ThetaUserDefined = "Yes";
        CustomHeatSink = "No";
        ThetaJAUserSet = ThetaJBUserSet = ThetaBAUserSet = ThetaJCUserSet = ThetaSAUserSet = "No";
        return;
    }
    const char* old = std::getenv("PWC_OLD_PTD_FORMAT");
    if (!(old && std::strcmp(old, "1") == 0) && GetNewFormatThetaJA() != 0) return;

    const bool jedec = BoardSelection == kBoards[0];
    const bool pcb = Contains({kBoards[1], kBoards[2], kBoards[3]}, BoardSelection);
    const bool noSink = HeatSinkSelection == kHeatSinks[0];
    const bool sink =
        Contains({kHeatSinks[1], kHeatSinks[2], kHeatSinks[3], kHeatSinks[4]}, HeatSinkSelection);
    auto sinkToAir = [this]() {
        return CustomHeatSink == "Yes" ? Num(ThetaSACustom) : Num(ThetaSA);
    };
    if (jedec && noSink) {
        ProcessThetaJA();
        ThetaJA = ThetaJAModel;
    } else if (jedec && sink) {
        ProcessThetaJC();
        ProcessThetaSA();
        ThetaJA = PrintFixed(Num(ThetaJC) + sinkToAir(), 2);
    } else if (pcb && noSink) {
        ProcessThetaJA();
        ProcessThetaJB();
        ProcessThetaBA();
        ThetaJA = PrintFixed(AddInParallel(Num(ThetaJAModel), Num(ThetaJB) + Num(ThetaBA)), 2);
    } else if (pcb && sink) {
        ProcessThetaJC();
        ProcessThetaJB();
        ProcessThetaBA();
        ProcessThetaSA();
        ThetaJA =
            PrintFixed(AddInParallel(Num(ThetaJC) + sinkToAir(), Num(ThetaJB) + Num(ThetaBA)), 2);
    }
    ThetaUserDefined = "No";
}

int PC_ENG::ThetaDRC() const {
    if (CustomHeatSink == "Yes" && HeatSinkSelection == kCustomSink && ThetaOption == "UserDefined")
        return 0;
    if (ThetaUserDefined == "Yes") return 0;
    return 1;
}

int PC_ENG::SetBoardSelection(const std::string& board, std::string& theta) {
    const std::string chosen = Expand(board, kBoards, {"Jedec", "Small", "Medium", "Large"});
    if (chosen.empty()) return 0;
    if (ThetaDRC() == 1) {
        BoardSelection = chosen;
        ProcessTheta();
    }
    theta = ThetaJA;
    return 1;
}

int PC_ENG::SetHeatSinkSelection(const std::string& sink, const std::string& custom,
                                 std::vector<std::string>& flows, std::string& flow,
                                 std::string& theta) {
    const std::string chosen = Expand(sink, kHeatSinks, {"No", "Low", "Medium", "High", "Custom"});
    if (chosen.empty()) return 0;
    HeatSinkSelection = chosen;
    if (chosen == kHeatSinks[0]) {
        flows = kAirFlows;
        CustomHeatSink = "No";
    } else if (chosen == kCustomSink) {
        flows = {"NA"};
        CustomHeatSink = "Yes";
        ThetaSACustom = custom;
    } else {
        flows = {kAirFlows[1], kAirFlows[2]};
        CustomHeatSink = "No";
    }
    if (AirFlowSelection == "NA" && chosen != kCustomSink) AirFlowSelection = "200 LFM";
    if (Contains(flows, AirFlowSelection)) flow = AirFlowSelection;
    if (ThetaDRC() == 1) ProcessTheta();
    theta = ThetaJA;
    return 1;
}

int PC_ENG::SetAirFlowSelection(const std::string& flow, std::string& theta) {
    if (!Contains(kAirFlows, flow) && flow != "NA") return 0;
    if (flow != AirFlowSelection) {
        AirFlowSelection = flow;
        if (ThetaDRC() == 1) ProcessTheta();
    }
    theta = ThetaJA;
    return 1;
}

void PC_ENG::SetBHAGetTheta(const std::string& board, const std::string& sink,
                            const std::string& flow, const std::string& custom,
                            std::string& theta) {
    const std::string board0 = BoardSelection, sink0 = HeatSinkSelection, flow0 = AirFlowSelection;
    const std::string theta0 = ThetaJA, option0 = ThetaOption, custom0 = CustomHeatSink;
    const std::string sa0 = ThetaSACustom;
    ThetaOption = "ThermalModels";
    if (sink.find("Custom") != std::string::npos) {
        ThetaSACustom = custom;
        CustomHeatSink = "Yes";
    } else {
        CustomHeatSink = "";
    }
    BoardSelection = board;
    HeatSinkSelection = sink;
    AirFlowSelection = flow;
    ProcessTheta();
    theta = ThetaJA;
    BoardSelection = board0;
    HeatSinkSelection = sink0;
    AirFlowSelection = flow0;
    ThetaJA = theta0;
    ThetaOption = option0;
    CustomHeatSink = custom0;
    ThetaSACustom = sa0;
    ProcessTheta();
}
