// The "DSP" tab. With two tables it is the frame itself; with more, one table
// per kind of slice, each priced from its own equation section, and the
// device-wide row of every kind's free slices.
#include <cstdio>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

namespace {

// One kind of slice: its table (also its count column and `DeviceHas` key)
// and its log words, dynamic, leakage and bias, then the unused lines. The
// borrowed words are the ones the logs have always shown.
struct DspKind {
    const char* table;
    PC_ENG::RowLog rows[3];
    const char* unused[2];
};

const DspKind kDspKinds[] = {
    {"M9X9",
     {{"PowerDynM9X9 row(", ") = IccDynM9X9 * vcc = "},
      {"PowerLeakUsedM9X9used row(", ") = IccLeakM9X9used * vcc = "},
      {"PowerBiasUsedM9X9used row(", ") = IccBiasM9X9used * vcc = "}},
     {"PowerLeakM9X9unused = IccLeakM9X9unused * vcc = ",
      "PowerBiasM9X9unused = IccBiasM9X9unused * vcc = "}},
    {"M18X18",
     {{"PowerDynM18X18 row(", ") = IccDynM18X18 * vcc = "},
      {"PowerLeakUsedM18X18used row(", ") = IccLeakM18X18used * vcc = "},
      {"PowerBiasUsedM18X18used row(", ") = IccBiasM18X18used * vcc = "}},
     {"PowerLeakM18X18unused = IccLeakM18X18unused * vcc = ",
      "PowerBiasM18X18unused = IccBiasM18X18unused * vcc = "}},
    {"ALU54",
     {{"PowerDynALU54 row(", ") = IccDynALU54 * vcc = "},
      {"PowerLeakUsedALU54used row(", ") = IccLeakALU54used * vcc = "},
      {"PowerBiasUsedALU54used row(", ") = IccBiasALU54used * vcc = "}},
     {"PowerLeakALU54unused = IccLeakALU54unused * vcc = ",
      "PowerBiasALU54unused = IccBiasALU54unused * vcc = "}},
    {"ALU24",
     {{"PowerDynALU54 row(", ") = IccDynALU24 * vcc = "},
      {"PowerLeakUsedALU24used row(", ") = IccLeakALU24used * vcc = "},
      {"PowerBiasUsedALU24used row(", ") = IccBiasALU24used * vcc = "}},
     {"PowerLeakALU24unused = IccLeakALU24unused * vcc = ",
      "PowerBiasALU54unused = IccBiasALU24unused * vcc = "}},
    {"PRADD18",
     {{"PowerDynPRADD18 row(", ") = IccDynALU24 * vcc = "},
      {"PowerLeakUsedPRADD18used row(", ") = IccLeakPRADD18used * vcc = "},
      {"PowerBiasUsedPRADD18used row(", ") = IccBiasPRADD18used * vcc = "}},
     {"PowerLeakPRADD18unused = IccLeakPRADD18unused * vcc = ",
      "PowerBiasPRADD18unused = IccBiasPRADD18unused * vcc = "}},
    {"PRADD9",
     {{"PowerDynALU54 row(", ") = IccDynPRADD9 * vcc = "},
      {"PowerLeakUsedPRADD9used row(", ") = IccLeakPRADD9used * vcc = "},
      {"PowerBiasUsedALU54used row(", ") = IccBiasPRADD9used * vcc = "}},
     {"PowerLeakPRADD9unused = IccLeakPRADD9unused * vcc = ",
      "PowerBiasPRADD9unused = IccBiasPRADD9unused * vcc = "}},
};

constexpr const char* kDyn = "Dyn. Pwr (W)";
constexpr const char* kLeak = "Leakage VCC Pwr (W)";
constexpr const char* kBias = "DCbias VCC Pwr (W)";
constexpr const char* kUnusedLeak = "Unused Leakage VCC Pwr (W)";
constexpr const char* kUnusedBias = "Unused DCbias VCC Pwr (W)";

PC_ENG::SupplyPass KindPass(const DspKind& k) {
    return {"VCC",
            "DSP",
            "Vcc",
            PC_ENG::PassIf::Always,
            false,
            &PC_ENG::ProcessDSPOrvan3dynVcc,
            &PC_ENG::ProcessDSPOrvan3LeakVccUsed,
            &PC_ENG::ProcessDSPOrvan3biasVccUsed,
            kDyn,
            kLeak,
            kBias,
            k.rows[0],
            k.rows[1],
            k.rows[2]};
}

// The passes of each kind, in the order of kDspKinds.
const std::vector<std::vector<PC_ENG::SupplyPass>>& KindPasses() {
    static const std::vector<std::vector<PC_ENG::SupplyPass>> passes = [] {
        std::vector<std::vector<PC_ENG::SupplyPass>> all;
        for (const DspKind& k : kDspKinds) all.push_back({KindPass(k)});
        return all;
    }();
    return passes;
}

}  // namespace

const PC_ENG::PanelFrame& PC_ENG::DspTwoTableFrame() {
    static const PanelFrame frame = {
        "DSP",
        {{nullptr,
          nullptr,
          {{"VCC",
            "DSP",
            "Vcc",
            PassIf::Always,
            false,
            &PC_ENG::ProcessDSPdynVcc,
            &PC_ENG::ProcessDSPLeakVccUsed,
            &PC_ENG::ProcessDSPbiasVccUsed,
            kDyn,
            kLeak,
            kBias,
            {"PowerDynDSP row(", ") = IccDynDSP * vcc = "},
            {"PowerLeakDSPused row(", ") = IccLeakDSPused * vcc = "},
            {"PowerBiasDSPused row(", ") = IccBiasDSPused * vcc = "}}}}},
        &PC_ENG::GetArrayOfColumnUnusedNamesDSP,
        &PC_ENG::GetArrayOfColumnUnusedValuesDSP,
        {{"VCC", "DSP", "Vcc", PassIf::Always, &PC_ENG::ProcessDSPleakUnused,
          &PC_ENG::ProcessDSPbiasUnused, kUnusedLeak, kUnusedBias,
          "PowerLeakDSPunused = IccLeakDSPunused * vcc = ",
          "PowerBiasDSPunused = IccBiasDSPunused * vcc = "}},
        PlainDyn::None,
    };
    return frame;
}

void PC_ENG::DSPCalculation() {
    PC_PANEL* panel = GetPanel(GetPanelIndex("DSP"));
    if (!panel || panel->GetNumOfTables() < 2) return;
    // The table count alone tells the forms apart, whatever the family.
    if (panel->GetNumOfTables() == 2) {
        RunPanelFrame(DspTwoTableFrame());
        return;
    }
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    ModelCacheScope cacheScope(caches);
    std::vector<std::pair<PD_TABLE*, const std::vector<SupplyPass>*>> items;
    const auto& passes = KindPasses();
    for (size_t k = 0; k < passes.size(); ++k) {
        PD_TABLE* table = panel->GetTable(panel->GetTableIndex(kDspKinds[k].table));
        if (!table || table == total) continue;
        RunFrameRows(kDspKinds[k].table, table, passes[k], PlainDyn::None);
        items.push_back({table, &passes[k]});
    }
    // Each kind's free slices in turn, added up in the total's two cells.
    for (size_t k = 0; k < passes.size(); ++k) {
        const DspKind& kind = kDspKinds[k];
        RunFrameUnused(kind.table, total, &PC_ENG::GetArrayOfColumnUnusedNamesDSP3,
                       &PC_ENG::GetArrayOfColumnUnusedValuesDSP3,
                       {{"VCC", "DSP", "Vcc", PassIf::Always, &PC_ENG::ProcessDSPOrvan3leakUnused,
                         &PC_ENG::ProcessDSPOrvan3biasUnused, kUnusedLeak, kUnusedBias,
                         kind.unused[0], kind.unused[1]}},
                       nullptr, k > 0);
    }
    FrameTotals(items, total);
}

// ---- The made-up rows of the free slices -----------------------------------------

void PC_ENG::GetArrayOfColumnUnusedNamesDSP(PD_TABLE*, std::vector<std::string>& names) {
    names = {"DSP_unused", "DSP_used", "DSP_total", "VCC"};
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesDSP(PD_TABLE*, std::vector<std::string>& values) {
    PC_PANEL* panel = GetPanel(GetPanelIndex("DSP"));
    PD_TABLE* items = panel ? panel->GetTable(0) : nullptr;
    const int used = items ? GetTotalSumRowData(items, items->GetColumnIndex("# DSP"), 0) : 0;
    const int has = static_cast<int>(DeviceHas("DSP"));
    values = {std::to_string(FreeCount(has, used)), std::to_string(used), std::to_string(has),
              GetVDPM("Vcc", "Voltage")};
    AppendSettingValues(values);
}

void PC_ENG::GetArrayOfColumnUnusedNamesDSP3(PD_TABLE*, std::vector<std::string>& names) {
    names.clear();
    for (const DspKind& k : kDspKinds) {
        names.push_back(std::string(k.table) + "_used");
        names.push_back(std::string(k.table) + "_unused");
    }
    names.push_back("VCC");
    AppendSettingNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesDSP3(PD_TABLE*, std::vector<std::string>& values) {
    values.clear();
    PC_PANEL* panel = GetPanel(GetPanelIndex("DSP"));
    for (const DspKind& k : kDspKinds) {
        PD_TABLE* t = panel ? panel->GetTable(panel->GetTableIndex(k.table)) : nullptr;
        const std::string column = std::string("# ") + k.table;
        const int used = t ? GetTotalSumRowData(t, t->GetColumnIndex(column.c_str()), 0) : 0;
        values.push_back(std::to_string(used));
        values.push_back(std::to_string(FreeCount(static_cast<int>(DeviceHas(k.table)), used)));
    }
    values.push_back(GetVDPM("Vcc", "Voltage"));
    AppendSettingValues(values);
}
