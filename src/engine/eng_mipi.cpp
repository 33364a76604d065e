// The "MIPIDPHY" tab: hard D-PHY blocks on three supplies, which come in one
// copy or two by package; a row's "MIPIDPHY Id." chooses its copy.
#include <cstdio>
#include <deque>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "eng_text.h"
#include "pc_families.h"

using namespace pwc;

namespace {

const char* const kPanel = "MIPIDPHY";

// One supply group: its `.pwr` name, its summary row without a copy digit,
// and the log texts of its three row powers and its unused powers.
struct MipiGroup {
    const char* supply;
    const char* row;
    const char* dynHead;
    const char* dynMiddle;
    const char* leakMiddle;
    const char* biasMiddle;
    const char* unusedLeakLog;
    const char* unusedBiasLog;
};

const MipiGroup kGroups[] = {
    {"VCC_DPHY", "Vcc_dphy", "PowerDynMIPIvdd row(",
     ") = IccDynMIPIvccdphy * vccdphy = ", ") = IccLeakMIPIused * vccdphy = ",
     ") = IccBiasMIPIused * vccdphy = ", "PowerLeakMIPIunusedVdd = IccLeakMIPIunused * vccdphy = ",
     "PowerBiasMIPIunusedVdddphy = IccBiaaMIPIunused * vdddphy = "},
    {"VCCA_DPHY", "Vcca_dphy", "PowerDynMIPIvccadphy row(", ") = IccDynMIPIvccadphy * vccadphy = ",
     ") = IccLeakMIPIused * vccadphy = ", ") = IccBiasMIPIused * vccadphy = ",
     "PowerLeakMIPIunusedVccadphy = IccLeakMIPIunused * vccadphy = ",
     "PowerBiasMIPIunusedVccadphy = IccBiaaMIPIunused * vccadphy = "},
    {"VCCPLL_DPHY", "Vccpll_dphy", "PowerDynMIPIvccplldphy row(",
     ") = IccDynMIPIvccplldphy * vccplldphy = ", ") = IccLeakMIPIused * vccplldphy = ",
     ") = IccBiasMIPIused * vccplldphy = ",
     "PowerLeakMIPIunusedVccplldphy = IccLeakMIPIunused * vccplldphy = ",
     "PowerBiasMIPIunusedVccplldphy = IccBiaaMIPIunused * vccplldphy = "},
};

// The two copies' digits, then the bare names of a single-copy package.
const char* const kCopies[] = {"0", "1", ""};
constexpr int kSingle = 2;

// The passes of each copy form; a package runs the single form or both digit
// forms. Column and row names live as long as the passes.
struct MipiPasses {
    std::deque<std::string> texts;
    std::vector<PC_ENG::SupplyPass> rows[3];
    std::vector<PC_ENG::UnusedPass> unused[3];

    const char* Keep(std::string text) {
        texts.push_back(std::move(text));
        return texts.back().c_str();
    }

    MipiPasses() {
        for (int copy = 0; copy < 3; ++copy) {
            for (const MipiGroup& g : kGroups) {
                const std::string tag = std::string(g.supply) + kCopies[copy];
                const char* voltage = Keep(std::string(g.row) + kCopies[copy]);
                PC_ENG::SupplyPass p{g.supply,
                                     kPanel,
                                     voltage,
                                     PC_ENG::PassIf::HasSupply,
                                     false,
                                     &PC_ENG::ProcessMIPIDPHYdyn,
                                     &PC_ENG::ProcessMIPIDPHYleakused,
                                     &PC_ENG::ProcessMIPIDPHYbiasused,
                                     Keep("Dyn. " + tag + " Pwr (W)"),
                                     Keep("Leakage " + tag + " Pwr (W)"),
                                     Keep("DCbias " + tag + " Pwr (W)"),
                                     {g.dynHead, g.dynMiddle},
                                     {"PowerLeakMIPIused row(", g.leakMiddle},
                                     {"PowerBiasMIPIused row(", g.biasMiddle}};
                p.rowIf = &PC_ENG::MipiRowOnCopy;
                p.rowIfArg = kCopies[copy];
                rows[copy].push_back(p);
                unused[copy].push_back(
                    {g.supply, kPanel, voltage, PC_ENG::PassIf::HasSupply,
                     &PC_ENG::ProcessMIPIleakUnused, &PC_ENG::ProcessMIPIbiasUnused,
                     Keep("Unused Leakage " + tag + " Pwr (W)"),
                     Keep("Unused DCbias " + tag + " Pwr (W)"), g.unusedLeakLog, g.unusedBiasLog});
            }
        }
    }
};

const MipiPasses& Passes() {
    static const MipiPasses passes;
    return passes;
}

// The copy a row belongs to: "1" when the id's last digit is 1, else "0".
char CopyOfId(const std::string& id) {
    for (auto it = id.rbegin(); it != id.rend(); ++it)
        if (*it >= '0' && *it <= '9') return *it == '1' ? '1' : '0';
    return '0';
}

}  // namespace

bool PC_ENG::MipiRowOnCopy(const char* copy, const Row& names, const Row& values) {
    if (IsSingleDphyPackage(PackageName())) return true;
    return CopyOfId(pwcformula::RowValue("MIPIDPHY Id.", names, values)) == copy[0];
}

void PC_ENG::MIPIDPHYCalculation() {
    PC_PANEL* panel = GetPanel(GetPanelIndex(kPanel));
    if (!panel || panel->GetNumOfTables() < 2) return;
    PD_TABLE* items = panel->GetTable(0);
    PD_TABLE* total = panel->GetTable(panel->GetNumOfTables() - 1);
    ModelCacheScope cacheScope(caches);
    const MipiPasses& p = Passes();
    if (IsSingleDphyPackage(PackageName())) {
        RunFrameRows(kPanel, items, p.rows[kSingle], PlainDyn::SumPasses);
        RunFrameUnused(kPanel, total, &PC_ENG::GetArrayOfColumnUnusedNamesMIPI,
                       &PC_ENG::GetArrayOfColumnUnusedValuesMIPI, p.unused[kSingle]);
        FrameTotals({{items, &p.rows[kSingle]}}, total);
        return;
    }
    std::vector<SupplyPass> rowPasses = p.rows[0];
    rowPasses.insert(rowPasses.end(), p.rows[1].begin(), p.rows[1].end());
    RunFrameRows(kPanel, items, rowPasses, PlainDyn::SumPasses);
    RunFrameUnused(kPanel, total, &PC_ENG::GetArrayOfColumnUnusedNamesMIPI,
                   &PC_ENG::GetArrayOfColumnUnusedValuesMIPI, p.unused[0]);
    RunFrameUnused(kPanel, total, &PC_ENG::GetArrayOfColumnUnusedNamesMIPI,
                   &PC_ENG::GetArrayOfColumnUnusedValuesMIPI1, p.unused[1]);
    FrameTotals({{items, &rowPasses}}, total);
}

void PC_ENG::GetArrayOfColumnUnusedNamesMIPI(PD_TABLE*, std::vector<std::string>& names) {
    names.clear();
    names.push_back("MIPIDPHY_unused");
    names.push_back("MIPIDPHY_standby");
    for (const MipiGroup& g : kGroups) names.push_back(g.supply);
    AppendRowContextNames(names);
}

void PC_ENG::GetArrayOfColumnUnusedValuesMIPI(PD_TABLE*, std::vector<std::string>& values) {
    MipiUnusedValues('0', values);
}

void PC_ENG::GetArrayOfColumnUnusedValuesMIPI1(PD_TABLE*, std::vector<std::string>& values) {
    MipiUnusedValues('1', values);
}

void PC_ENG::MipiUnusedValues(char copy, std::vector<std::string>& values) {
    values.clear();
    const bool single = IsSingleDphyPackage(PackageName());
    PC_PANEL* panel = GetPanel(GetPanelIndex(kPanel));
    PD_TABLE* items = panel ? panel->GetTable(0) : nullptr;
    double used = 0.0, standby = 0.0;
    const int idCol = items ? items->GetColumnIndex("MIPIDPHY Id.") : -1;
    const int standbyCol = items ? items->GetColumnIndex("Allow Standby") : -1;
    for (int r = 0; items && r < items->GetNumOfRows(); ++r) {
        if (!single && CopyOfId(items->GetValueAt(r, idCol)) != copy) continue;
        used += 1.0;
        if (std::string(items->GetValueAt(r, standbyCol)) == "Enable") standby += 1.0;
    }
    // Two copies share the device's count of blocks.
    const double blocks = DeviceHas(kPanel) / (single ? 1.0 : 2.0);
    values.push_back(PrintFixed(blocks - used, 1));
    values.push_back(PrintFixed(standby, 1));
    const std::string suffix = single ? std::string() : std::string(1, copy);
    for (const MipiGroup& g : kGroups) values.push_back(GetVDPM(g.row + suffix, "Voltage"));
    ForRowContextValues([&values](const char* v) { values.emplace_back(v); });
}
