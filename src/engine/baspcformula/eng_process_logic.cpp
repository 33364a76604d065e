// Block and supply members: the shared pattern of a block's currents, and the
// logic block's and routing's members.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

const char* ModelName(PC_ENG::IccModel model) {
    static const char* const names[] = {"IccDyn",           "IccDyn",          "IccDyn",
                                        "IccLeak",          "IccLeakUnused",   "IccLeakDFB",
                                        "IccLeakDFBUnused", "IccBias",         "IccBiasUnused",
                                        "IccBiasDFB",       "IccBiasDFBUnused"};
    return names[static_cast<int>(model)];
}

double Count(const char* column, const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return ToNumber(RowValue(column, names, values));
}

}  // namespace

// ---- The shared pattern --------------------------------------------------------------

double PC_ENG::CallIccModel(IccModel model, const std::string& e, const std::string& block,
                            const std::string& item, double count, const std::string& label,
                            const std::string& supply, const Row& names, const Row& values) {
    switch (model) {
        case IccModel::Dyn:
            return GetIccDyn(e, block, item, count, label, supply, names, values);
        case IccModel::DynAF100:
            return GetIccDynAF100(e, block, item, count, label, supply, names, values);
        case IccModel::DynFper2:
            return GetIccDynFper2(e, block, item, count, label, supply, names, values);
        case IccModel::Leak:
            return GetIccLeak(e, block, item, count, label, supply, names, values);
        case IccModel::LeakUnused:
            return GetIccLeakUnused(e, block, item, count, label, supply, names, values);
        case IccModel::LeakDFB:
            return GetIccLeakDFB(e, block, item, count, label, supply, names, values);
        case IccModel::LeakDFBUnused:
            return GetIccLeakDFBUnused(e, block, item, count, label, supply, names, values);
        case IccModel::Bias:
            return GetIccBias(e, block, item, count, label, supply, names, values);
        case IccModel::BiasUnused:
            return GetIccBiasUnused(e, block, item, count, label, supply, names, values);
        case IccModel::BiasDFB:
            return GetIccBiasDFB(e, block, item, count, label, supply, names, values);
        case IccModel::BiasDFBUnused:
            return GetIccBiasDFBUnused(e, block, item, count, label, supply, names, values);
    }
    return 0.0;
}

double PC_ENG::SumIccTerms(const std::string& logName, const std::vector<IccTerm>& terms,
                           const std::string& supply, const Row& names, const Row& values) {
    double sum = 0.0;
    std::vector<double> numbers;
    numbers.reserve(terms.size());
    for (const IccTerm& t : terms) {
        const double i =
            CallIccModel(t.model, t.equationSection, t.block, t.item,
                         Count(t.count.c_str(), names, values), t.label, supply, names, values);
        numbers.push_back(i);
        sum += i;
    }
    if (PD_UTIL::IsCalcLogOpen()) {
        std::vector<std::string> termNames;
        for (const IccTerm& t : terms) termNames.push_back(ModelName(t.model) + t.block + t.item);
        LogTermSum(logName, termNames, numbers, sum);
    }
    return sum;
}

double PC_ENG::ProcessBlockDyn(const std::string& x, const std::string& supply, bool af100,
                               const Row& names, const Row& values) {
    const IccModel model = af100 ? IccModel::DynAF100 : IccModel::Dyn;
    return SumIccTerms("IccDyn" + x + supply, {{model, x, x, x, x, x}}, supply, names, values);
}

double PC_ENG::ProcessBlockLeakUsed(const std::string& x, const std::string& supply,
                                    bool perElement, const Row& names, const Row& values) {
    std::vector<IccTerm> terms = {{IccModel::LeakDFB, x, x, "DCforBLOCK_used", x, x}};
    if (perElement) terms.push_back({IccModel::Leak, x, x, x, x, x});
    return SumIccTerms("IccLeak" + x + supply + "Used", terms, supply, names, values);
}

double PC_ENG::ProcessBlockBiasUsed(const std::string& x, const std::string& supply,
                                    bool perElement, const Row& names, const Row& values) {
    std::vector<IccTerm> terms = {{IccModel::BiasDFB, x, x, "DCforBLOCK_used", x, x}};
    if (perElement) terms.push_back({IccModel::Bias, x, x, x, x, x});
    return SumIccTerms("IccBias" + x + supply + "Used", terms, supply, names, values);
}

// The per-element term runs over all elements of the device and the block
// term over the free ones, by decision.
double PC_ENG::ProcessBlockLeakUnused(const std::string& x, const std::string& supply,
                                      const Row& names, const Row& values) {
    return SumIccTerms(
        "IccLeak" + x + supply + "Unused",
        {{IccModel::LeakUnused, x, x, x, x + "_total", x + "_total"},
         {IccModel::LeakDFBUnused, x, x, "DCforBLOCK_unused", x + "_unused", x + "_unused"}},
        supply, names, values);
}

double PC_ENG::ProcessBlockBiasUnused(const std::string& x, const std::string& supply,
                                      const Row& names, const Row& values) {
    return SumIccTerms(
        "IccBias" + x + supply + "Unused",
        {{IccModel::BiasUnused, x, x, x, x + "_total", x + "_total"},
         {IccModel::BiasDFBUnused, x, x, "DCforBLOCK_unused", x + "_unused", x + "_unused"}},
        supply, names, values);
}

// ---- Routing -------------------------------------------------------------------------------

double PC_ENG::RoutingTerms(IccModel model, const std::string& supply, const Row& names,
                            const Row& values) {
    static const char* const kShortList[] = {"ISB", "ISBCLK"};
    static const char* const kLongList[] = {"ISBLUT", "ISBCE", "ISBLSR", "ISBM", "ISBCLK"};
    const std::string arch = ArchName();
    const bool splitX1 = arch == "rv7d00";
    const bool shortList = pwc::HasShortSwitchBoxList(arch);

    std::vector<const char*> wires = {"X0"};
    if (splitX1) {
        wires.push_back("X1d");
        wires.push_back("X1f");
    } else {
        wires.push_back("X1");
    }
    wires.push_back("X2");
    wires.push_back("X6");
    if (shortList)
        wires.insert(wires.end(), std::begin(kShortList), std::end(kShortList));
    else
        wires.insert(wires.end(), std::begin(kLongList), std::end(kLongList));

    const bool unused = model == IccModel::LeakUnused || model == IccModel::BiasUnused;
    const std::string eq = "Logic", block = "ROUTING";
    std::string item, column;
    double sum = 0.0, x1d = 0.0, x1f = 0.0;
    std::vector<double> numbers;
    numbers.reserve(wires.size());
    for (const char* wire : wires) {
        item = wire;
        item += unused ? "_unused" : "_used";
        column = unused ? item : wire;
        double i = 0.0;
        switch (model) {
            case IccModel::Dyn:
                // The clock switch box toggles at every edge: full rate, AF 100 %.
                if (std::strcmp(wire, "ISBCLK") == 0)
                    i = GetIccDyn(eq, block, item, column, item, supply, names, values);
                else
                    i = GetIccDynFper2(eq, block, item, column, item, supply, names, values);
                break;
            case IccModel::Leak:
                i = GetIccLeak(eq, block, item, column, item, supply, names, values);
                break;
            case IccModel::Bias:
                i = GetIccBias(eq, block, item, column, item, supply, names, values);
                break;
            case IccModel::LeakUnused:
                i = GetIccLeakUnused(eq, block, item, column, item, supply, names, values);
                break;
            case IccModel::BiasUnused:
                i = GetIccBiasUnused(eq, block, item, column, item, supply, names, values);
                break;
            default:
                break;
        }
        if (std::strcmp(wire, "X1d") == 0) x1d = i;
        if (std::strcmp(wire, "X1f") == 0) x1f = i;
        numbers.push_back(i);
        sum += i;
    }
    if (PD_UTIL::IsCalcLogOpen()) {
        const std::string kind = std::string(ModelName(model)).substr(3);
        if (splitX1)
            PD_UTIL::FCprintln("Icc" + kind + "X1 = Icc" + kind + "X1d + Icc" + kind +
                               "X1f = " + Print("%g", x1d) + " + " + Print("%g", x1f) + " = " +
                               Print("%g", x1d + x1f));
        std::vector<std::string> terms;
        for (const char* wire : wires) terms.push_back("Icc" + kind + wire);
        LogTermSum("Icc" + kind + "RoutingISB", terms, numbers, sum);
    }
    return sum;
}

double PC_ENG::GetRoutingISBdyn(const std::string&, const Row& names, const Row& values,
                                const std::string& supply) {
    return RoutingTerms(IccModel::Dyn, supply, names, values);
}
double PC_ENG::GetRoutingISBleakUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return RoutingTerms(IccModel::Leak, supply, names, values);
}
double PC_ENG::GetRoutingISBbiasUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return RoutingTerms(IccModel::Bias, supply, names, values);
}
double PC_ENG::GetRoutingISBleakUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return RoutingTerms(IccModel::LeakUnused, supply, names, values);
}
double PC_ENG::GetRoutingISBbiasUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return RoutingTerms(IccModel::BiasUnused, supply, names, values);
}

// ---- Logic block -----------------------------------------------------------------------------

double PC_ENG::ProcessLogicDynVcc(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply) {
    const double lut =
        GetIccDynFper2(panel, "SLICE", "LUT_used", "LUT", "LUT_used", supply, names, values);
    const double ram = GetIccDynFper2(panel, "SLICE", "RAM", "RAM", "RAM", supply, names, values);
    const double rip =
        GetIccDynFper2(panel, "SLICE", "RIPPLE", "RIPPLE", "RIPPLE", supply, names, values);
    const double reg =
        GetIccDyn(panel, "SLICE", "REG_used", "REG", "REG_used", supply, names, values);
    const double routing = GetRoutingISBdyn(panel, names, values, supply);
    const double sum = lut + ram + rip + reg + routing;
    if (PD_UTIL::IsCalcLogOpen()) {
        char text[256];
        std::snprintf(text, sizeof text, "%g + %g + %g + %g + %g = %g", lut, ram, rip, reg, routing,
                      sum);
        PD_UTIL::FCprintln(std::string("IccDynLogicRouting = IccDynLUT + IccDynRAM + IccDynRIP + "
                                       "IccDynREG + IccDynRoutingISB=") +
                           text);
    }
    return sum;
}

namespace {

// The four per-element items of a slice, with their count columns.
struct SliceItem {
    const char* item;
    const char* column;
    const char* term;
};
const SliceItem kSliceItems[] = {{"LUT_used", "LUT", "LUT"},
                                 {"RAM", "RAM", "RAM"},
                                 {"RIPPLE", "RIPPLE", "RIP"},
                                 {"REG_used", "REG", "REG"}};
const SliceItem kSliceUnusedItems[] = {{"LUT_unused", "LUT_unused", "LUTunused"},
                                       {"REG_unused", "REG_unused", "REGunused"}};

}  // namespace

double PC_ENG::LogicStaticTerms(IccModel perElement, const std::string& panel, const Row& names,
                                const Row& values, const std::string& supply) {
    const bool unused = perElement == IccModel::LeakUnused || perElement == IccModel::BiasUnused;
    const bool leak = perElement == IccModel::Leak || perElement == IccModel::LeakUnused;
    const IccModel dfb = leak ? (unused ? IccModel::LeakDFBUnused : IccModel::LeakDFB)
                              : (unused ? IccModel::BiasDFBUnused : IccModel::BiasDFB);
    const SliceItem* items = unused ? kSliceUnusedItems : kSliceItems;
    const size_t itemCount = unused ? std::size(kSliceUnusedItems) : std::size(kSliceItems);

    double count = 0.0;
    std::vector<double> numbers;
    numbers.reserve(itemCount + 2);
    for (size_t k = 0; k < itemCount; ++k) {
        const double n = Count(items[k].column, names, values);
        count += n;
        numbers.push_back(CallIccModel(perElement, panel, "SLICE", items[k].item, n, items[k].item,
                                       supply, names, values));
    }
    numbers.push_back(CallIccModel(
        dfb, panel, "SLICE", unused ? "DCforBLOCK_unused" : "DCforBLOCK_used", count,
        unused ? "(lutUnused+regUnused)" : "(lut+ram+rip+reg)", supply, names, values));
    numbers.push_back(RoutingTerms(perElement, supply, names, values));
    double sum = 0.0;
    for (double n : numbers) sum += n;
    if (PD_UTIL::IsCalcLogOpen()) {
        const std::string kind = leak ? "IccLeak" : "IccBias";
        const std::string tail = unused ? "Unused" : "";
        std::vector<std::string> terms;
        for (size_t k = 0; k < itemCount; ++k) terms.push_back(kind + items[k].term);
        terms.push_back(kind + "DFBlogic" + tail);
        terms.push_back(kind + "ISBroutCIB" + tail);
        LogTermSum(kind + "LogicRouting" + (unused ? "Unused" : "Used"), terms, numbers, sum);
    }
    return sum;
}

double PC_ENG::ProcessLogicLeakUsedVcc(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply) {
    return LogicStaticTerms(IccModel::Leak, panel, names, values, supply);
}

double PC_ENG::ProcessLogicBiasUsedVcc(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply) {
    return LogicStaticTerms(IccModel::Bias, panel, names, values, supply);
}

double PC_ENG::ProcessLogicLeakUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply) {
    return LogicStaticTerms(IccModel::LeakUnused, panel, names, values, supply);
}

double PC_ENG::ProcessLogicBiasUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply) {
    return LogicStaticTerms(IccModel::BiasUnused, panel, names, values, supply);
}

// ---- Selectors by panel name ---------------------------------------------------------

namespace {

enum class Selector { DynVcc, DynVccaux, LeakUnusedVcc, BiasUnusedVcc, BiasUsedVcc };

struct SelectorRow {
    Selector selector;
    const char* panel;
    PC_ENG::ProcessMember member;
};

// Each tab whose process members exist adds its rows here.
const SelectorRow kSelectors[] = {
    {Selector::DynVcc, "Logic Block", &PC_ENG::ProcessLogicDynVcc},
    {Selector::LeakUnusedVcc, "Logic Block", &PC_ENG::ProcessLogicLeakUnused},
    {Selector::BiasUnusedVcc, "Logic Block", &PC_ENG::ProcessLogicBiasUnused},
    {Selector::BiasUsedVcc, "Logic Block", &PC_ENG::ProcessLogicBiasUsedVcc},
    {Selector::DynVcc, "SP RAM", &PC_ENG::ProcessSPRAMdynVcc},
    {Selector::BiasUnusedVcc, "SP RAM", &PC_ENG::ProcessBlockRAMbiasUnused},
    {Selector::BiasUnusedVcc, "Clocks", &PC_ENG::ProcessClocksBiasUnused},
    {Selector::DynVcc, "PLL", &PC_ENG::ProcessPLLdynVcc},
    {Selector::DynVcc, "Total Power Misc", &PC_ENG::ProcessMiscDynVcc},
    {Selector::BiasUsedVcc, "PLL", &PC_ENG::ProcessPLLbiasVccUsed},
    {Selector::DynVccaux, "DQS", &PC_ENG::ProcessDQSdynVccaux},
    {Selector::LeakUnusedVcc, "DQSCNTL", &PC_ENG::ProcessDQSCNTLleakUnused},
    {Selector::BiasUnusedVcc, "DQSCNTL", &PC_ENG::ProcessDQSCNTLbiasUnused},
    {Selector::BiasUsedVcc, "DQSCNTL", &PC_ENG::ProcessDQSCNTLbiasVccUsed},
    {Selector::DynVcc, "Input Output", &PC_ENG::ProcessIOdynVcc},
    {Selector::DynVcc, "Bidi", &PC_ENG::ProcessIOdynVcc},
    {Selector::DynVccaux, "Input Output", &PC_ENG::ProcessIOdynVccaux},
    {Selector::LeakUnusedVcc, "Input Output", &PC_ENG::ProcessIOleakVccUnused},
    {Selector::BiasUnusedVcc, "Input Output", &PC_ENG::ProcessIObiasVccUnused},
    {Selector::BiasUsedVcc, "Input Output", &PC_ENG::ProcessIObiasVccUsed},
};

double Select(PC_ENG& eng, Selector selector, const std::string& panel, const PC_ENG::Row& names,
              const PC_ENG::Row& values) {
    for (const SelectorRow& row : kSelectors)
        if (row.selector == selector && panel == row.panel)
            return (eng.*row.member)(panel, names, values, "VCC");
    return 0.0;
}

}  // namespace

double PC_ENG::ProcessFormulaDynVcc(const std::string& panel, const Row& names, const Row& values) {
    return Select(*this, Selector::DynVcc, panel, names, values);
}
double PC_ENG::ProcessFormulaDynVccaux(const std::string& panel, const Row& names,
                                       const Row& values) {
    return Select(*this, Selector::DynVccaux, panel, names, values);
}
double PC_ENG::ProcessFormulaLeakUnusedVcc(const std::string& panel, const Row& names,
                                           const Row& values) {
    return Select(*this, Selector::LeakUnusedVcc, panel, names, values);
}
double PC_ENG::ProcessFormulaBiasUnusedVcc(const std::string& panel, const Row& names,
                                           const Row& values) {
    return Select(*this, Selector::BiasUnusedVcc, panel, names, values);
}
double PC_ENG::ProcessFormulaBiasUsedVcc(const std::string& panel, const Row& names,
                                         const Row& values) {
    return Select(*this, Selector::BiasUsedVcc, panel, names, values);
}
