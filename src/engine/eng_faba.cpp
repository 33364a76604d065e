// The "FABA" tab of hard cores. With two tables it is the frame itself; with
// more, one table per kind of core ("PCIE", "SRIO", "MAC2", "MAC3") and the
// total, where a row is one core named by its "Core" cell.
#include <cctype>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

namespace {

struct FabaTable {
    const char* table;
    PC_ENG::RowLog rows[3];  // dynamic, leakage, bias; the borrowed words kept
};

const FabaTable kFabaTables[] = {
    {"PCIE",
     {{"PowerDynPCIE row(", ") = IccDynPCIE * vcc = "},
      {"PowerLeakUsedPCIEused row(", ") = IccLeakPCIEused * vcc = "},
      {"PowerBiasUsedPCIEused row(", ") = IccBiasPCIEused * vcc = "}}},
    {"SRIO",
     {{"PowerDynSRIO row(", ") = IccDynSRIO * vcc = "},
      {"PowerLeakUsedSRIOused row(", ") = IccLeakSRIOused * vcc = "},
      {"PowerBiasUsedSRIOused row(", ") = IccBiasSRIOused * vcc = "}}},
    {"MAC2",
     {{"PowerDynMAC row(", ") = IccDynMAC * vcc = "},
      {"PowerLeakUsedMAC2used row(", ") = IccLeakMAC2used * vcc = "},
      {"PowerBiasUsedMACused row(", ") = IccBiasMACused * vcc = "}}},
    {"MAC3",
     {{"PowerDynMAC3 row(", ") = IccDynMAC3 * vcc = "},
      {"PowerLeakUsedMCMused row(", ") = IccLeakMCMused * vcc = "},
      {"PowerBiasUsedMAC3used row(", ") = IccBiasMAC3used * vcc = "}}},
};

// The cores counted free, and the tables where each is found.
struct FreeCore {
    const char* core;
    std::vector<const char*> tables;
};
const FreeCore kFreeCores[] = {{"PCIE", {"PCIE"}},
                               {"SRIO", {"SRIO"}},
                               {"EMAC", {"SRIO", "MAC2", "MAC3"}},
                               {"XMAC", {"SRIO", "MAC2", "MAC3"}}};

constexpr const char* kDyn = "Dyn. Pwr (W)";
constexpr const char* kLeak = "Leakage VCC Pwr (W)";
constexpr const char* kBias = "DCbias VCC Pwr (W)";
constexpr const char* kUnusedLeak = "Unused Leakage VCC Pwr (W)";
constexpr const char* kUnusedBias = "Unused DCbias VCC Pwr (W)";
constexpr const char* kLeakUnusedLog = "PowerLeakFABAunused = IccLeakFABAunused * vcc = ";
constexpr const char* kBiasUnusedLog = "PowerBiasFABAunused = IccBiasFABAunused * vcc = ";

}  // namespace

const PC_ENG::PanelFrame& PC_ENG::FabaTwoTableFrame() {
    static const PanelFrame frame = {
        "FABA",
        {{nullptr,
          nullptr,
          {{"VCC",
            "FABA",
            "Vcc",
            PassIf::Always,
            false,
            &PC_ENG::ProcessFABAdynVcc,
            &PC_ENG::ProcessFABALeakVccUsed,
            &PC_ENG::ProcessFABAbiasVccUsed,
            kDyn,
            kLeak,
            kBias,
            {"PowerDynFABA row(", ") = IccDynFABA * vcc = "},
            {"PowerLeakFABAused row(", ") = IccLeakFABAused * vcc = "},
            {"PowerBiasFABAused row(", ") = IccBiasFABAused * vcc = "}}}}},
        &PC_ENG::GetArrayOfColumnUnusedNamesFABA,
        &PC_ENG::GetArrayOfColumnUnusedValuesFABA,
        {{"VCC", "FABA", "Vcc", PassIf::Always, &PC_ENG::ProcessFABAleakUnused,
          &PC_ENG::ProcessFABAbiasUnused, kUnusedLeak, kUnusedBias, kLeakUnusedLog,
          kBiasUnusedLog}},
        PlainDyn::None,
    };
    return frame;
}

namespace {

PC_ENG::PanelFrame MakeFabaCoreFrame() {
    PC_ENG::PanelFrame f;
    f.panel = "FABA";
    for (const FabaTable& t : kFabaTables)
        f.tables.push_back(
            {t.table,
             t.table,
             {{"VCC", "FABA", "Vcc", PC_ENG::PassIf::Always, false,
               &PC_ENG::ProcessFABAOrvan4dynVcc, &PC_ENG::ProcessFABAOrvan4LeakVccUsed,
               &PC_ENG::ProcessFABAOrvan4biasVccUsed, kDyn, kLeak, kBias, t.rows[0], t.rows[1],
               t.rows[2]}}});
    f.unusedNames = &PC_ENG::GetArrayOfColumnUnusedNamesFABA4;
    f.unusedValues = &PC_ENG::GetArrayOfColumnUnusedValuesFABA4;
    f.unused = {{"VCC", "FABA", "Vcc", PC_ENG::PassIf::Always, &PC_ENG::ProcessFABAOrvan4leakUnused,
                 &PC_ENG::ProcessFABAOrvan4biasUnused, kUnusedLeak, kUnusedBias, kLeakUnusedLog,
                 kBiasUnusedLog}};
    f.plainDyn = PC_ENG::PlainDyn::None;
    return f;
}

}  // namespace

void PC_ENG::FabaCalculation() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("FABA"));
    if (!panel || panel->GetNumOfTables() < 2) return;
    if (panel->GetNumOfTables() == 2) {
        RunPanelFrame(FabaTwoTableFrame());
        return;
    }
    static const PanelFrame cores = MakeFabaCoreFrame();
    RunPanelFrame(cores);
}

// ---- The made-up rows of the free cores -------------------------------------------------

void PC_ENG::GetArrayOfColumnUnusedNamesFABA(PD_TABLE*, std::vector<std::string>& names) {
    names = {"FABA_unused", "FABA_used", "FABA_total", "VCC"};
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesFABA(PD_TABLE*, std::vector<std::string>& values) {
    PC_PANEL* panel = GetPanel(GetPanelIndex("FABA"));
    PD_TABLE* items = panel ? panel->GetTable(0) : nullptr;
    const int used = items ? GetTotalSumRowData(items, items->GetColumnIndex("# FABA"), 0) : 0;
    const int has = static_cast<int>(DeviceHas("FABA"));
    values = {std::to_string(FreeCount(has, used)), std::to_string(used), std::to_string(has),
              GetVDPM("Vcc", "Voltage")};
    AppendSettingValues(values);
}

std::string PC_ENG::FabaCoreName(const std::string& cell) {
    const size_t first = cell.find_first_not_of(" \t");
    if (first == std::string::npos) return "";
    const size_t last = cell.find_first_of(" \t", first);
    return cell.substr(first, last == std::string::npos ? std::string::npos : last - first);
}

bool PC_ENG::IsFabaCore(const std::string& name, const std::string& core) {
    if (core.empty() || name.compare(0, core.size(), core) != 0) return false;
    for (size_t i = core.size(); i < name.size(); ++i)
        if (!std::isdigit(static_cast<unsigned char>(name[i]))) return false;
    return true;
}

int PC_ENG::GetTotalOrvan4FabaCore(PD_TABLE* table, const std::string& column,
                                   const std::string& core) const {
    if (!table) return 0;
    const int c = table->GetColumnIndex(column.c_str());
    if (c < 0) return 0;
    int count = 0;
    for (int r = 0; r < table->GetNumOfRows(); ++r)
        if (IsFabaCore(FabaCoreName(table->GetValueAt(r, c)), core)) ++count;
    return count;
}

void PC_ENG::GetArrayOfColumnUnusedNamesFABA4(PD_TABLE*, std::vector<std::string>& names) {
    names.clear();
    for (const FreeCore& f : kFreeCores) {
        names.push_back(std::string(f.core) + "_used");
        names.push_back(std::string(f.core) + "_unused");
    }
    names.push_back("MCM_used");
    names.push_back("MCM_unused");
    names.push_back("VCC");
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesFABA4(PD_TABLE*, std::vector<std::string>& values) {
    values.clear();
    PC_PANEL* panel = GetPanel(GetPanelIndex("FABA"));
    auto table = [panel](const char* name) {
        return panel ? panel->GetTable(panel->GetTableIndex(name)) : nullptr;
    };
    for (const FreeCore& f : kFreeCores) {
        int used = 0;
        for (const char* t : f.tables) used += GetTotalOrvan4FabaCore(table(t), "Core", f.core);
        values.push_back(std::to_string(used));
        values.push_back(std::to_string(FreeCount(static_cast<int>(DeviceHas(f.core)), used)));
    }
    int memories = 0;
    for (const FabaTable& t : kFabaTables)
        if (PD_TABLE* tt = table(t.table))
            memories += GetTotalSumRowData(tt, tt->GetColumnIndex("# MEMORY"), 0);
    values.push_back(std::to_string(memories));
    values.push_back(std::to_string(FreeCount(static_cast<int>(DeviceHas("MCM")), memories)));
    values.push_back(GetVDPM("Vcc", "Voltage"));
    AppendSettingValues(values);
}
