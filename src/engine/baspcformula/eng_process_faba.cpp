// FABA members: the hard cores of the "FABA" tab, by the row's type or core,
// and the block terms of the cores the design leaves free.
#include <string>
#include <vector>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

const char* const kFabaCores[] = {"PCIE", "SRIO", "EMAC", "XMAC", "MCM"};

bool Standby(const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return RowValue("Allow Standby", names, values) == "Enable";
}

}  // namespace

// ---- Two tables: one row per group of cores of a type ----------------------------------

double PC_ENG::ProcessFABAdynVcc(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply) {
    const std::string& type = RowValue("Type", names, values);
    if (type.empty()) return 0.0;
    const double core =
        SumIccTerms("IccDynFABAcore", {{IccModel::Dyn, panel, "FABA", type, "FABA", "FABA"}},
                    supply, names, values);
    const double routing = GetRoutingISBdyn(panel, names, values, supply);
    LogTermSum("IccDynFABA", {"IccDynFABAcore", "IccDynRoutingISB"}, {core, routing});
    return core + routing;
}

namespace {

double FabaStatic(PC_ENG& eng, bool leak, const std::string& panel, const PC_ENG::Row& names,
                  const PC_ENG::Row& values, const std::string& supply) {
    using M = PC_ENG::IccModel;
    const std::string& type = RowValue("Type", names, values);
    if (type.empty()) return 0.0;
    const double core = eng.SumNamedIccTerms(
        leak ? "IccLeakFABAcore" : "IccBiasFABAcore",
        {{"IccFABA", {leak ? M::Leak : M::Bias, panel, "FABA", type, "FABA", "FABA"}},
         {"IccFABAdfb",
          {leak ? M::LeakDFB : M::BiasDFB, panel, "FABA", "DCforBLOCK_used", "FABA", "FABA Used"}}},
        supply, names, values);
    const double routing = leak ? eng.GetRoutingISBleakUsed(panel, names, values, supply)
                                : eng.GetRoutingISBbiasUsed(panel, names, values, supply);
    LogTermSum(leak ? "IccLeakFABAused" : "IccBiasFABAused", {"IccFABAcore", "IccRoutingISB"},
               {core, routing});
    return core + routing;
}

}  // namespace

double PC_ENG::ProcessFABALeakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply) {
    return FabaStatic(*this, true, panel, names, values, supply);
}
double PC_ENG::ProcessFABAbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply) {
    return FabaStatic(*this, false, panel, names, values, supply);
}

double PC_ENG::ProcessFABAleakUnused(const std::string&, const Row& names, const Row& values,
                                     const std::string&) {
    return SumIccTerms("IccLeakFABAunused",
                       {{IccModel::LeakDFBUnused, "FABA", "FABA", "DCforBLOCK_unused",
                         "FABA_unused", "FABA_unused"}},
                       "VCC", names, values);
}
double PC_ENG::ProcessFABAbiasUnused(const std::string&, const Row& names, const Row& values,
                                     const std::string&) {
    return SumIccTerms("IccBiasFABAunused",
                       {{IccModel::BiasDFBUnused, "FABA", "FABA", "DCforBLOCK_unused",
                         "FABA_unused", "FABA_unused"}},
                       "VCC", names, values);
}

// ---- Many tables: a row is one core, named by "Core" ---------------------------------------

double PC_ENG::ProcessFABAOrvan4dynVcc(const std::string& table, const Row& names,
                                       const Row& values, const std::string& supply) {
    const std::string core = FabaCoreName(RowValue("Core", names, values));
    if (core.empty()) return 0.0;
    const std::string item = Standby(names, values) ? core + "_standby" : core;
    std::vector<double> numbers = {
        CallIccModel(IccModel::Dyn, table, "FABA", item, 1.0, core, supply, names, values)};
    // The memory controller also drives its memory interface.
    if (core == "MCM")
        numbers.push_back(CallIccModel(IccModel::Dyn, table, "FABA", "MEMORY",
                                       ToNumber(RowValue("MEMORY", names, values)), "MEMORY",
                                       supply, names, values));
    numbers.push_back(GetRoutingISBdyn(table, names, values, supply));
    if (PD_UTIL::IsCalcLogOpen()) {
        std::vector<std::string> terms = {"IccDynCore"};
        if (core == "MCM") terms.push_back("IccDynMEMORY");
        terms.push_back("IccDynRoutingISB");
        LogTermSum("IccDyn" + table, terms, numbers);
    }
    return Sum(numbers);
}

namespace {

double FabaCoreStatic(PC_ENG& eng, bool leak, const std::string& table, const PC_ENG::Row& names,
                      const PC_ENG::Row& values, const std::string& supply) {
    using M = PC_ENG::IccModel;
    const std::string core = PC_ENG::FabaCoreName(RowValue("Core", names, values));
    if (core.empty()) return 0.0;
    const bool standby = Standby(names, values);
    std::vector<std::pair<const char*, PC_ENG::IccTerm>> terms = {
        {"IccCore",
         {leak ? M::Leak : M::Bias, table, "FABA", standby ? core + "_standby" : core, "", core}},
        {"IccCoreDfb",
         {leak ? M::LeakDFB : M::BiasDFB, table, "FABA",
          standby ? "DCforBLOCK_standby" : "DCforBLOCK_used", "", "FABA Used"}}};
    if (core == "MCM")
        terms.push_back(
            {"IccMEMORY", {leak ? M::Leak : M::Bias, table, "FABA", "MEMORY", "MEMORY", "MEMORY"}});
    // A row is one core: its count is 1 wherever the term has no column.
    std::vector<std::string> ones(names), oneValues(values);
    ones.push_back("");
    oneValues.push_back("1");
    const double cores = eng.SumNamedIccTerms(
        std::string(leak ? "IccLeak" : "IccBias") + table + "core", terms, supply, ones, oneValues);
    const double routing = leak ? eng.GetRoutingISBleakUsed(table, names, values, supply)
                                : eng.GetRoutingISBbiasUsed(table, names, values, supply);
    LogTermSum(std::string(leak ? "IccLeak" : "IccBias") + table + "used",
               {"IccCores", "IccRoutingISB"}, {cores, routing});
    return cores + routing;
}

}  // namespace

double PC_ENG::ProcessFABAOrvan4LeakVccUsed(const std::string& table, const Row& names,
                                            const Row& values, const std::string& supply) {
    return FabaCoreStatic(*this, true, table, names, values, supply);
}
double PC_ENG::ProcessFABAOrvan4biasVccUsed(const std::string& table, const Row& names,
                                            const Row& values, const std::string& supply) {
    return FabaCoreStatic(*this, false, table, names, values, supply);
}

namespace {

std::vector<std::pair<const char*, PC_ENG::IccTerm>> FreeCoreTerms(bool leak) {
    std::vector<std::pair<const char*, PC_ENG::IccTerm>> terms;
    for (const char* core : kFabaCores) {
        const std::string count = std::string(core) + "_unused";
        terms.push_back({core,
                         {leak ? PC_ENG::IccModel::LeakDFBUnused : PC_ENG::IccModel::BiasDFBUnused,
                          "FABA", "FABA", "DCforBLOCK_unused", count, count}});
    }
    return terms;
}

}  // namespace

double PC_ENG::ProcessFABAOrvan4leakUnused(const std::string&, const Row& names, const Row& values,
                                           const std::string&) {
    return SumNamedIccTerms("IccLeakFABAunused", FreeCoreTerms(true), "VCC", names, values);
}
double PC_ENG::ProcessFABAOrvan4biasUnused(const std::string&, const Row& names, const Row& values,
                                           const std::string&) {
    return SumNamedIccTerms("IccBiasFABAunused", FreeCoreTerms(false), "VCC", names, values);
}
