// DSP members: the slices of the "DSP" tab, per row of a kind's table, and the
// block term of the slices the design leaves free.
#include <string>
#include <vector>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pc_families.h"

using namespace pwcformula;

// ---- Two tables: one row per group of slices of a type ------------------------

double PC_ENG::ProcessDSPdynVcc(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply) {
    const std::string& type = RowValue("Type", names, values);
    std::vector<IccTerm> terms = {{IccModel::Dyn, panel, "DSP", type, "DSP", "DSP"}};
    if (pwc::HasDspMiscTerm(ArchName()))
        terms.push_back({IccModel::Dyn, panel, "DSP", "MISC", "DSP", "MISC"});
    const double slices = SumIccTerms("IccDynDSPslices", terms, supply, names, values);
    const double routing = GetRoutingISBdyn(panel, names, values, supply);
    LogTermSum("IccDynDSP", {"IccDynDSPslices", "IccDynRoutingISB"}, {slices, routing});
    return slices + routing;
}

namespace {

double DspStatic(PC_ENG& eng, bool leak, const std::string& panel, const PC_ENG::Row& names,
                 const PC_ENG::Row& values, const std::string& supply) {
    const std::string& type = RowValue("Type", names, values);
    const char* kind = leak ? "IccLeak" : "IccBias";
    std::vector<double> numbers;
    numbers.push_back(
        leak ? eng.GetIccLeak(panel, "DSP", type, "DSP", "DSP", supply, names, values)
             : eng.GetIccBias(panel, "DSP", type, "DSP", "DSP", supply, names, values));
    numbers.push_back(
        leak ? eng.GetIccLeak(panel, "DSP", "MISC", "DSP", "MISC", supply, names, values)
             : eng.GetIccBias(panel, "DSP", "MISC", "DSP", "MISC", supply, names, values));
    numbers.push_back(leak ? eng.GetIccLeakDFB(panel, "DSP", "DCforBLOCK_used", "DSP", "DSP Used",
                                               supply, names, values)
                           : eng.GetIccBiasDFB(panel, "DSP", "DCforBLOCK_used", "DSP", "DSP Used",
                                               supply, names, values));
    numbers.push_back(leak ? eng.GetRoutingISBleakUsed(panel, names, values, supply)
                           : eng.GetRoutingISBbiasUsed(panel, names, values, supply));
    const std::string k = kind;
    LogTermSum(
        k + "DSPused",
        {k + "DSP", k + "MISC", std::string("IccDFB") + (leak ? "leak" : "bias"), k + "RoutingISB"},
        numbers);
    return Sum(numbers);
}

}  // namespace

double PC_ENG::ProcessDSPLeakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply) {
    return DspStatic(*this, true, panel, names, values, supply);
}
double PC_ENG::ProcessDSPbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply) {
    return DspStatic(*this, false, panel, names, values, supply);
}

double PC_ENG::ProcessDSPleakUnused(const std::string&, const Row& names, const Row& values,
                                    const std::string&) {
    return SumIccTerms(
        "IccLeakDSPunused",
        {{IccModel::LeakDFBUnused, "DSP", "DSP", "DCforBLOCK_unused", "DSP_unused", "DSP_unused"}},
        "VCC", names, values);
}
double PC_ENG::ProcessDSPbiasUnused(const std::string&, const Row& names, const Row& values,
                                    const std::string&) {
    return SumIccTerms(
        "IccBiasDSPunused",
        {{IccModel::BiasDFBUnused, "DSP", "DSP", "DCforBLOCK_unused", "DSP_unused", "DSP_unused"}},
        "VCC", names, values);
}

// ---- Many tables: the table is the kind, its name the section and count ---------

double PC_ENG::ProcessDSPOrvan3dynVcc(const std::string& table, const Row& names, const Row& values,
                                      const std::string& supply) {
    const std::string& type = RowValue("Actual Type", names, values);
    std::vector<IccTerm> terms = {{IccModel::Dyn, table, "DSP", type, table, table}};
    // A slice pipelined for speed switches its extra registers too.
    if (RowValue("Speed Mode", names, values) == "High")
        terms.push_back({IccModel::Dyn, table, "DSP", type + "_HS", table, table + "_HS"});
    return SumIccTerms("IccDyn" + table, terms, supply, names, values);
}

double PC_ENG::ProcessDSPOrvan3LeakVccUsed(const std::string& table, const Row& names,
                                           const Row& values, const std::string& supply) {
    const std::string& type = RowValue("Actual Type", names, values);
    return SumIccTerms("IccLeak" + table + "used",
                       {{IccModel::Leak, table, "DSP", type, table, table},
                        {IccModel::LeakDFB, table, "DSP", "DCforBLOCK_used", table, "DSP Used"}},
                       supply, names, values);
}

double PC_ENG::ProcessDSPOrvan3biasVccUsed(const std::string& table, const Row& names,
                                           const Row& values, const std::string& supply) {
    const std::string& type = RowValue("Actual Type", names, values);
    return SumIccTerms("IccBias" + table + "used",
                       {{IccModel::Bias, table, "DSP", type, table, table},
                        {IccModel::BiasDFB, table, "DSP", "DCforBLOCK_used", table, "DSP Used"}},
                       supply, names, values);
}

// The block term of the free slices of one kind: the made-up row counts them
// as "<kind>_unused".
double PC_ENG::ProcessDSPOrvan3leakUnused(const std::string& kind, const Row& names,
                                          const Row& values, const std::string&) {
    return SumIccTerms("IccLeak" + kind + "unused",
                       {{IccModel::LeakDFBUnused, "DSP", "DSP", "DCforBLOCK_unused",
                         kind + "_unused", kind + "_unused"}},
                       "VCC", names, values);
}
double PC_ENG::ProcessDSPOrvan3biasUnused(const std::string& kind, const Row& names,
                                          const Row& values, const std::string&) {
    return SumIccTerms("IccBias" + kind + "unused",
                       {{IccModel::BiasDFBUnused, "DSP", "DSP", "DCforBLOCK_unused",
                         kind + "_unused", kind + "_unused"}},
                       "VCC", names, values);
}
