// Block and supply members of the PLL and of the DLL family (DLL, DDRDLL,
// DQSDLL, DQS, DLLDEL, ESB) and the DQS control block.
#include <cstring>
#include <initializer_list>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

// A member's summary name, made only while the calculation log is open.
std::string LogName(std::initializer_list<std::string> parts) {
    std::string name;
    if (PD_UTIL::IsCalcLogOpen())
        for (const std::string& p : parts) name += p;
    return name;
}

bool Standby(const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return RowValue("Allow Standby", names, values) == "Enable";
}

using M = PC_ENG::IccModel;

}  // namespace

// ---- PLL -----------------------------------------------------------------------------------

double PC_ENG::ProcessPLLdynVcc(const std::string&, const Row& names, const Row& values,
                                const std::string&) {
    const char* item = Standby(names, values) ? "PLL_standby"
                       : powerMode == 1       ? "PLL_sleep"
                                              : "PLL";
    return SumIccTerms("IccDynPLLvcc", {{M::DynAF100, "PLL", "PLL", item, "PLL", "PLL"}}, "VCC",
                       names, values);
}

double PC_ENG::ProcessPLLdynVccpll(const std::string&, const Row& names, const Row& values,
                                   const std::string&) {
    const char* item = Standby(names, values) ? "PLL_standby" : "PLL";
    return SumIccTerms("IccDynPLLvccpll", {{M::DynAF100, "PLL", "PLL", item, "PLL", "PLL"}},
                       "VCCPLL", names, values);
}

double PC_ENG::ProcessPLLdynVcc12(const std::string&, const Row& names, const Row& values,
                                  const std::string&) {
    return SumIccTerms("IccDynPLLvcc12", {{M::DynAF100, "PLL", "PLL", "PLL", "PLL", "PLL"}},
                       "VCC12", names, values);
}

namespace {

// The VCC block and element terms of a used PLL.
std::vector<PC_ENG::IccTerm> PllVccUsedTerms(bool leak, bool standby, bool sleep) {
    return {{leak ? M::LeakDFB : M::BiasDFB, "PLL", "PLL",
             standby ? "DCforBLOCK_standby" : "DCforBLOCK_used", "PLL", "PLL"},
            {leak ? M::Leak : M::Bias, "PLL", "PLL", sleep ? "PLL_sleep" : "PLL", "PLL", "PLL"}};
}

// What the device leaves free: the per-element term over all elements, the
// block term over the free ones.
std::vector<PC_ENG::IccTerm> PllUnusedTerms(bool leak, const char* item, const char* count,
                                            const char* label, const char* block) {
    return {{leak ? M::LeakUnused : M::BiasUnused, "PLL", "PLL", item, count, label},
            {leak ? M::LeakDFBUnused : M::BiasDFBUnused, "PLL", "PLL", block, "PLL_unused",
             "PLL_unused"}};
}

}  // namespace

double PC_ENG::ProcessPLLleakVccUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string&) {
    return SumIccTerms("IccLeakPLLvccUsed",
                       PllVccUsedTerms(true, Standby(names, values), powerMode == 1), "VCC", names,
                       values);
}

double PC_ENG::ProcessPLLbiasVccUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string&) {
    return SumIccTerms("IccBiasPLLvccUsed",
                       PllVccUsedTerms(false, Standby(names, values), powerMode == 1), "VCC", names,
                       values);
}

// A PLL that may stand by keeps its loop on the core supply: the block's
// standby record is that of VCC.
double PC_ENG::ProcessPLLleakVccpllUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string&) {
    const bool standby = Standby(names, values);
    return SumIccTerms("IccLeakPLLvccpllUsed",
                       {{M::LeakDFB, "PLL", "PLL",
                         standby ? "DCforBLOCK_standby" : "DCforBLOCK_used", "PLL", "PLL"}},
                       standby ? "VCC" : "VCCPLL", names, values);
}

double PC_ENG::ProcessPLLbiasVccpllUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string&) {
    const bool standby = Standby(names, values);
    return SumIccTerms("IccBiasPLLvccpllUsed",
                       {{M::BiasDFB, "PLL", "PLL",
                         standby ? "DCforBLOCK_standby" : "DCforBLOCK_used", "PLL", "PLL"}},
                       standby ? "VCC" : "VCCPLL", names, values);
}

double PC_ENG::ProcessPLLleakVcc12Used(const std::string&, const Row& names, const Row& values,
                                       const std::string&) {
    return SumIccTerms("IccLeakPLLvcc12Used",
                       {{M::LeakDFB, "PLL", "PLL", "DCforBLOCK_used", "PLL", "PLL"}}, "VCC12",
                       names, values);
}

double PC_ENG::ProcessPLLbiasVcc12Used(const std::string&, const Row& names, const Row& values,
                                       const std::string&) {
    return SumIccTerms("IccBiasPLLvcc12Used",
                       {{M::BiasDFB, "PLL", "PLL", "DCforBLOCK_used", "PLL", "PLL"}}, "VCC12",
                       names, values);
}

namespace {

std::vector<PC_ENG::IccTerm> PllVccUnusedTerms(bool leak, bool standby, bool sleep) {
    if (standby)
        return PllUnusedTerms(leak, "PLL_standby", "PLL_unused", "PLL_unused",
                              "DCforBLOCK_standby");
    return PllUnusedTerms(leak, sleep ? "PLL_sleep" : "PLL", "PLL_total", "PLL_total",
                          "DCforBLOCK_unused");
}

}  // namespace

double PC_ENG::ProcessPLLleakVccUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string&) {
    return SumIccTerms("IccLeakPLLvccUnused",
                       PllVccUnusedTerms(true, Standby(names, values), powerMode == 1), "VCC",
                       names, values);
}

double PC_ENG::ProcessPLLbiasVccUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string&) {
    return SumIccTerms("IccBiasPLLvccUnused",
                       PllVccUnusedTerms(false, Standby(names, values), powerMode == 1), "VCC",
                       names, values);
}

// The label "PLLPLL_total" stands as it always has.
double PC_ENG::ProcessPLLleakVccpllUnused(const std::string&, const Row& names, const Row& values,
                                          const std::string&) {
    const bool standby = Standby(names, values);
    return SumIccTerms(
        "IccLeakPLLvccpllUnused",
        PllUnusedTerms(true, standby ? "PLL_standby" : "PLL", "PLL_total", "PLLPLL_total",
                       standby ? "DCforBLOCK_standby" : "DCforBLOCK_unused"),
        "VCCPLL", names, values);
}

double PC_ENG::ProcessPLLbiasVccpllUnused(const std::string&, const Row& names, const Row& values,
                                          const std::string&) {
    const bool standby = Standby(names, values);
    return SumIccTerms(
        "IccBiasPLLvccpllUnused",
        PllUnusedTerms(false, standby ? "PLL_standby" : "PLL", "PLL_total", "PLL_total",
                       standby ? "DCforBLOCK_standby" : "DCforBLOCK_unused"),
        "VCCPLL", names, values);
}

double PC_ENG::ProcessPLLleakVcc12Unused(const std::string&, const Row& names, const Row& values,
                                         const std::string&) {
    return SumIccTerms("IccLeakPLLvcc12Unused",
                       PllUnusedTerms(true, "PLL", "PLL_total", "PLL_total", "DCforBLOCK_unused"),
                       "VCC12", names, values);
}

double PC_ENG::ProcessPLLbiasVcc12Unused(const std::string&, const Row& names, const Row& values,
                                         const std::string&) {
    return SumIccTerms("IccBiasPLLvcc12Unused",
                       PllUnusedTerms(false, "PLL", "PLL_total", "PLL_total", "DCforBLOCK_unused"),
                       "VCC12", names, values);
}

// ---- The DLL family -----------------------------------------------------------------------

namespace {

// How a block of the family differs from the common pattern.
struct ClockBlockRule {
    const char* block;
    M dyn;                // Dyn, or DynAF100 for a block that toggles at every clock
    bool itemFromType;    // the row's "Type" is the element item
    M unusedLeak;         // per-element model of the unused leakage
    bool standbyRecords;  // "Allow Standby" "Enable" takes the standby entries
};

// The per-element terms of the unused rows go through the used equations
// with the "_total" count, except the DLL's leakage: kept as they stand.
const ClockBlockRule kClockBlocks[] = {
    {"ESB", M::Dyn, false, M::Leak, false},
    {"DLL", M::DynAF100, true, M::LeakUnused, false},
    {"DQSDLL", M::DynAF100, false, M::Leak, false},
    {"DDRDLL", M::DynAF100, false, M::Leak, true},
    {"DQS", M::DynAF100, false, M::Leak, false},
    {"DLLDEL", M::DynAF100, false, M::Leak, false},
    {"DQSCNTL", M::DynAF100, false, M::LeakUnused, false},
};

const ClockBlockRule* FindClockBlock(const char* block) {
    for (const ClockBlockRule& r : kClockBlocks)
        if (std::strcmp(r.block, block) == 0) return &r;
    return nullptr;
}

}  // namespace

double PC_ENG::ClockBlockCurrent(const char* block, ClockBlockKind kind, const std::string& supply,
                                 const Row& names, const Row& values) {
    const ClockBlockRule* rule = FindClockBlock(block);
    if (!rule) return 0.0;
    const std::string x = block;
    if (x == "DQS" && pwc::HasNoDqsVccCurrent(ArchName())) return 0.0;
    const std::string item = rule->itemFromType ? RowValue("Type", names, values) : x;
    const bool standby = rule->standbyRecords && Standby(names, values);
    const bool leak = kind == ClockBlockKind::LeakUsed || kind == ClockBlockKind::LeakUnused;
    const std::string kindName = kind == ClockBlockKind::Dyn ? "Dyn" : leak ? "Leak" : "Bias";
    switch (kind) {
        case ClockBlockKind::Dyn:
            // A row without a type has nothing that switches.
            if (item.empty()) return 0.0;
            return SumIccTerms(LogName({"IccDyn", x, supply}), {{rule->dyn, x, x, item, x, x}},
                               supply, names, values);
        case ClockBlockKind::LeakUsed:
        case ClockBlockKind::BiasUsed:
            return SumIccTerms(LogName({"Icc", kindName, x, supply, "Used"}),
                               {{leak ? M::LeakDFB : M::BiasDFB, x, x,
                                 standby ? "DCforBLOCK_standby" : "DCforBLOCK_used", x, x}},
                               supply, names, values);
        case ClockBlockKind::LeakUnused:
        case ClockBlockKind::BiasUnused: {
            const M element = leak ? rule->unusedLeak : (x == "DQSCNTL" ? M::BiasUnused : M::Bias);
            const std::string elementItem = standby ? x + "_standby" : item;
            return SumIccTerms(LogName({"Icc", kindName, x, supply, "Unused"}),
                               {{element, x, x, elementItem, x + "_total", x + "_total"},
                                {leak ? M::LeakDFBUnused : M::BiasDFBUnused, x, x,
                                 standby ? "DCforBLOCK_standby" : "DCforBLOCK_unused",
                                 x + "_unused", x + "_unused"}},
                               supply, names, values);
        }
    }
    return 0.0;
}

#define PWC_CLOCK_BLOCK_MEMBER(B, NAME, KIND)                                                \
    double PC_ENG::Process##B##NAME(const std::string&, const Row& names, const Row& values, \
                                    const std::string& supply) {                             \
        return ClockBlockCurrent(#B, ClockBlockKind::KIND, supply, names, values);           \
    }
#define PWC_CLOCK_BLOCK_MEMBERS(B)                    \
    PWC_CLOCK_BLOCK_MEMBER(B, dynVcc, Dyn)            \
    PWC_CLOCK_BLOCK_MEMBER(B, leakVccUsed, LeakUsed)  \
    PWC_CLOCK_BLOCK_MEMBER(B, biasVccUsed, BiasUsed)  \
    PWC_CLOCK_BLOCK_MEMBER(B, leakUnused, LeakUnused) \
    PWC_CLOCK_BLOCK_MEMBER(B, biasUnused, BiasUnused)
PWC_CLOCK_BLOCK_MEMBERS(DLL)
PWC_CLOCK_BLOCK_MEMBERS(DDRDLL)
PWC_CLOCK_BLOCK_MEMBERS(DQSDLL)
PWC_CLOCK_BLOCK_MEMBERS(DQS)
PWC_CLOCK_BLOCK_MEMBERS(DLLDEL)
PWC_CLOCK_BLOCK_MEMBERS(ESB)
PWC_CLOCK_BLOCK_MEMBERS(DQSCNTL)
#undef PWC_CLOCK_BLOCK_MEMBERS
#undef PWC_CLOCK_BLOCK_MEMBER

double PC_ENG::ProcessDQSdynVccaux(const std::string&, const Row& names, const Row& values,
                                   const std::string&) {
    if (!pwc::HasDqsAuxDynamic(ArchName())) return 0.0;
    return SumIccTerms("IccDynDQSvccaux", {{M::Dyn, "DQS", "DQS", "DEFAULT", "DQS", "DQS"}},
                       "VCCAUX", names, values);
}
