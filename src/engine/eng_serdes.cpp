// The "SERDES" tab: channels of table "PCS" and transmit PLLs of table
// "SERDES AUX", each over the SERDES supplies the summary has; and the Tx
// driver's emphasis current of a channel row.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>

#include "baspcengin.h"
#include "dcu_calc.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// A supply of the tab: its `.pwr` name (the column tag), its summary row,
// its name in the log, and whether the transmit PLLs draw from it.
struct SerdesSupply {
    const char* supply;
    const char* category;
    const char* tag;
    bool txpll;
};

const SerdesSupply kSerdesSupplies[] = {
    {"VCC", "Vcc", "vcc", true},
    {"VCCB", "Vccb", "vccb", false},
    {"VCCXP", "Vccxp", "vccxp", false},
    {"VCCIB", "Vccib", "vccib", false},
    {"VCCOB", "Vccob", "vccob", false},
    {"VCCA", "Vcca", "vcca", true},
    {"VCCAUXA", "Vccauxa", "vccauxa", true},
    {"VCC12", "Vcc1.2", "vcc12", false},
    {"VCCHTX", "Vcchtx", "vcchtx", false},
    {"VCCHRX", "Vcchrx", "vcchrx", false},
};

// The frame and the texts its passes point into, made once.
struct SerdesFrameData {
    std::deque<std::string> texts;
    PC_ENG::PanelFrame frame;
    const char* Keep(std::string text) {
        texts.push_back(std::move(text));
        return texts.back().c_str();
    }
};

std::string Capital(const char* tag) {
    std::string s = tag;
    if (!s.empty()) s[0] = static_cast<char>(s[0] - 32);
    return s;
}

SerdesFrameData MakeSerdesFrame() {
    using P = PC_ENG::PassIf;
    SerdesFrameData d;
    PC_ENG::TableFrame pcs{"PCS", "PCS", {}};
    PC_ENG::TableFrame aux{"SERDES AUX", "SERDES AUX", {}};
    for (const SerdesSupply& s : kSerdesSupplies) {
        const std::string S = s.supply, tag = s.tag, cap = Capital(s.tag);
        const P runIf = S == "VCC" ? P::Always : P::HasSupply;
        const char* dyn = d.Keep("Dyn. " + S + " Pwr (W)");
        const char* leak = d.Keep("Leakage " + S + " Pwr (W)");
        const char* bias = d.Keep("DCbias " + S + " Pwr (W)");
        // The log words name the block ("PCS", "SERDESAUX") and the supply.
        auto pass = [&](const char* section, const std::string& word, PC_ENG::ProcessMember dynM,
                        PC_ENG::ProcessMember leakM, PC_ENG::ProcessMember biasM) {
            return PC_ENG::SupplyPass{
                s.supply,
                section,
                s.category,
                runIf,
                false,
                dynM,
                leakM,
                biasM,
                dyn,
                leak,
                bias,
                {d.Keep("PowerDyn" + word + tag + " row("),
                 d.Keep(") = IccDyn" + word + tag + " * " + tag + " = ")},
                {d.Keep("PowerLeak" + word + "used" + cap + " row("),
                 d.Keep(") = IccLeak" + word + "used" + cap + " * " + tag + " = ")},
                {d.Keep("PowerBias" + word + "used" + cap + " row("),
                 d.Keep(") = IccBias" + word + "used" + cap + " * " + tag + " = ")}};
        };
        pcs.passes.push_back(pass("PCS", "PCS", &PC_ENG::ProcessPCSSERDESdyn,
                                  &PC_ENG::ProcessPCSSERDESleakUsed,
                                  &PC_ENG::ProcessPCSSERDESbiasUsed));
        if (s.txpll)
            aux.passes.push_back(pass("SERDES AUX", "SERDESAUX", &PC_ENG::ProcessSERDESAUXdyn,
                                      &PC_ENG::ProcessSERDESAUXleakUsed,
                                      &PC_ENG::ProcessSERDESAUXbiasUsed));
        d.frame.unused.push_back(
            {s.supply, "PCS", s.category, runIf, &PC_ENG::ProcessPCSSERDESleakUnused,
             &PC_ENG::ProcessPCSSERDESbiasUnused, d.Keep("Unused Leakage " + S + " Pwr (W)"),
             d.Keep("Unused DCbias " + S + " Pwr (W)"),
             d.Keep("PowerLeakPCSunused" + cap + " = IccLeakPCSunused" + cap + " * " + tag + " = "),
             d.Keep("PowerBiasPCSunused" + cap + " = IccBiasPCSunused" + cap + " * " + tag +
                    " = ")});
    }
    d.frame.panel = "SERDES";
    d.frame.tables = {pcs, aux};
    d.frame.unusedNames = &PC_ENG::GetArrayOfColumnUnusedNamesPCS;
    d.frame.unusedValues = &PC_ENG::GetArrayOfColumnUnusedValuesPCS;
    d.frame.plainDyn = PC_ENG::PlainDyn::SumPasses;
    return d;
}

}  // namespace

const PC_ENG::PanelFrame& PC_ENG::SerdesFrame() {
    static const SerdesFrameData data = MakeSerdesFrame();
    return data.frame;
}

void PC_ENG::SerdesCalculation() {
    RunPanelFrame(SerdesFrame());
}

// ---- The made-up row of the free channels -----------------------------------------

void PC_ENG::GetArrayOfColumnUnusedNamesPCS(PD_TABLE*, std::vector<std::string>& names) {
    names = {"Channels_used", "DUAL_used", "DUAL_unused", "SERDESio_unused",
             "PCS_unused",    "TX_unused", "RX_unused"};
    for (const SerdesSupply& s : kSerdesSupplies) names.push_back(s.supply);
    AppendSettingNames(names);
}

// Channels come in groups ("DUAL": a dual or quad) that share their block
// term; a group is in use when any of its channels is.
void PC_ENG::GetArrayOfColumnUnusedValuesPCS(PD_TABLE*, std::vector<std::string>& values) {
    PC_PANEL* panel = GetPanel(GetPanelIndex("SERDES"));
    PD_TABLE* pcs = panel ? panel->GetTable(panel->GetTableIndex("PCS")) : nullptr;
    const char* column = CountsPcsBlocks(ArchName()) ? "# PCS" : "# Channels";
    const int used = pcs ? GetTotalSumRowData(pcs, pcs->GetColumnIndex(column), 0) : 0;
    const int channels = static_cast<int>(DeviceHas("PCS"));
    // A device without groups has no group term to count.
    const int groups = static_cast<int>(DeviceHas("DUAL"));
    const int perGroup = groups > 0 ? (channels + groups - 1) / groups : 0;
    const int groupsUsed = perGroup > 0 ? (used + perGroup - 1) / perGroup : 0;
    const std::string freeChannels = std::to_string(FreeCount(channels, used));
    values = {std::to_string(used),
              std::to_string(groupsUsed),
              std::to_string(FreeCount(groups, groupsUsed)),
              freeChannels,
              freeChannels,
              freeChannels,
              freeChannels};
    for (const SerdesSupply& s : kSerdesSupplies) {
        const std::string v = HasSupply(s.category) ? GetVDPM(s.category, "Voltage") : "";
        values.push_back(v.empty() ? "0" : v);
    }
    AppendSettingValues(values);
}

// ---- The Tx driver's emphasis current ------------------------------------------------

namespace {

const char* const kLpreError = "Wrong combination for Tx driver pre/post emphasis calculator!";

// Microamperes of a slice code, by its bits ("101"); fine slices 0 and 1
// have three bits, coarse slices two.
int SliceMicroamps(int slice, const std::string& bits) {
    int code = 0;
    for (char b : bits) code = code * 2 + (b == '1' ? 1 : 0);
    return slice < 2 ? DCU_CALC::kFineStep * (code + 1) : DCU_CALC::kCoarseStep * (code + 1);
}

// The number a cell begins with ("800 mV", "2.0"), as whole-number text;
// any other cell as it stands, for the driver's routine to refuse.
std::string LeadingWholeNumber(const std::string& cell) {
    char* end = nullptr;
    const double n = std::strtod(cell.c_str(), &end);
    if (end == cell.c_str() || !std::isfinite(n) || n != std::floor(n) || std::fabs(n) > 1e6)
        return cell;
    return std::to_string(static_cast<long>(n));
}

}  // namespace

std::string PC_ENG::GetSerdesLpretotal(PD_TABLE* table, int row, int column) {
    static const char* const kColumns[] = {"Mode", "Differential Amplitude", "Output Termination",
                                           "De-emphasis Pre-cursor Select",
                                           "De-emphasis Post-cursor Select"};
    std::string cell[5];
    for (int i = 0; i < 5; ++i) {
        const int c = table->GetColumnIndex(kColumns[i]);
        if (c < 0) return "";
        cell[i] = table->GetValueAt(row, c);
    }
    std::map<std::string, std::string> map = {{"CH_MODE", cell[0]},
                                              {"TXAMPLITUDE", ""},
                                              {"TXDIFFTERM", ""},
                                              {"TXDEPRE", "0"},
                                              {"TXDEPOST", "0"}};
    // An amplitude counts as a preset code 0 to 9 or as millivolts from 100
    // to 1300 in the driver's 10 mV steps; any other leaves the map's
    // amplitude unset.
    const std::string amplitudeText = LeadingWholeNumber(cell[1]);
    char* end = nullptr;
    const long amplitude = std::strtol(amplitudeText.c_str(), &end, 10);
    if (!amplitudeText.empty() && *end == '\0' &&
        ((amplitude >= 0 && amplitude <= 9) ||
         (amplitude >= 100 && amplitude <= 1300 && amplitude % 10 == 0)))
        map["TXAMPLITUDE"] = amplitudeText;
    int ohms = 0;
    if (std::sscanf(cell[2].c_str(), "%d %*s", &ohms) == 1)
        map["TXDIFFTERM"] = std::to_string(ohms);
    map["TXDEPRE"] = cell[3] == "Disabled" ? "0" : LeadingWholeNumber(cell[3]);
    map["TXDEPOST"] = cell[4] == "Disabled" ? "0" : LeadingWholeNumber(cell[4]);

    if (DCU_CALC::calc_tdrv_slice_vals(map) != 0 &&
        DrcMessage.find(kLpreError) == std::string::npos) {
        DrcMessage += std::string(kLpreError) + "\n";
        ++DrcErrorCount;
    }
    std::string slices[6];
    bool complete = true;
    for (int s = 0; s < 6; ++s) {
        slices[s] = map["TDRV_SLICE" + std::to_string(s) + "_CUR"];
        complete = complete && !slices[s].empty();
    }
    int microamps = 0;
    for (int s = 0; s < 6; ++s) {
        const std::string code = complete ? slices[s] : "0b000";
        microamps += SliceMicroamps(s, code.size() > 2 ? code.substr(2) : "");
    }
    std::string text = PrintFixed(microamps / 1e6, 6);
    if (EnvIs("PWC_RESET_LPRE_TOTAL", "1")) text = "0.000000";
    table->SetValueAt(text.c_str(), row, column);
    return text;
}
