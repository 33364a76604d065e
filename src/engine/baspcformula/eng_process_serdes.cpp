// SERDES and PCS members: a channel's digital part (block "PCS", item its
// mode) and its analogue part (block "SERDES IO": "APIO", "TX", "RX"), per
// supply; the Orvan4 forms by "Mode"; the transmit PLLs of "SERDES AUX".
#include <string>
#include <vector>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

constexpr double kMega = 1e6;
constexpr double kGiga = 1e9;

bool Standby(const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return RowValue("Allow Standby", names, values) == "Enable";
}

std::string WithStandby(std::string item, bool standby) {
    if (standby) item += "_standby";
    return item;
}

const char* BlockRecord(bool standby) {
    return standby ? "DCforBLOCK_standby" : "DCforBLOCK_used";
}

// Which halves of an Orvan4 channel run, by its "Mode".
struct Halves {
    bool tx = false, rx = false, los = false;
};

// Any mode but the three named ones runs both halves; the loss-of-signal
// port is priced whenever it is enabled on a channel that runs.
Halves HalvesOf(const PC_ENG::Row& names, const PC_ENG::Row& values) {
    Halves h;
    const std::string& mode = RowValue("Mode", names, values);
    if (mode == "Disabled") return h;
    h.tx = mode != "Rx Only";
    h.rx = mode != "Tx Only";
    h.los = RowValue("Receive Loss-of-Signal Port", names, values) == "Enabled";
    return h;
}

}  // namespace

double PC_ENG::SumNamedIccTerms(const std::string& logName,
                                const std::vector<std::pair<const char*, IccTerm>>& terms,
                                const std::string& supply, const Row& names, const Row& values) {
    std::vector<double> numbers;
    numbers.reserve(terms.size());
    for (const auto& [name, t] : terms)
        numbers.push_back(CallIccModel(t.model, t.equationSection, t.block, t.item,
                                       ToNumber(RowValue(t.count, names, values)), t.label, supply,
                                       names, values));
    if (PD_UTIL::IsCalcLogOpen()) {
        std::vector<std::string> termNames;
        for (const auto& term : terms) termNames.push_back(term.first);
        LogTermSum(logName, termNames, numbers);
    }
    return Sum(numbers);
}

std::string PC_ENG::GetPCSmode(const Row& names, const Row& values) {
    std::string mode;
    if (pwc::BuildsPcsModeFromSettings(ArchName())) {
        mode = RowValue("TX Pre-emphasis", names, values) == "Enabled" ? "AMP_BOOST_ENABLED"
                                                                       : "AMP_BOOST_DISABLED";
        mode += RowValue("Gearing Ratio", names, values) == "Gear_On" ? "_CGA_ENABLED"
                                                                      : "_CGA_DISABLED";
    } else {
        mode = RowValue("Mode", names, values);
    }
    if (mode.empty() && PD_UTIL::IsCalcLogOpen())
        PD_UTIL::FCprintln("Error: PCS mode not specified!");
    return mode;
}

// ---- The plain forms: one mode per row, at the row's "Freq. (MHz)" ------------------

double PC_ENG::ProcessPCSdyn(const std::string& supply, const Row& names, const Row& values) {
    const std::string mode = GetPCSmode(names, values);
    const std::string item = WithStandby(mode, Standby(names, values));
    const char* count = pwc::CountsPcsBlocks(ArchName()) ? "PCS" : "Channels";
    return GetIccDynAF100("PCS", "PCS", item, count, count, supply, names, values);
}

namespace {

// The transmitter's and receiver's items of a plain row.
std::pair<std::string, std::string> TxRxItems(const std::string& arch, const PC_ENG::Row& names,
                                              const PC_ENG::Row& values) {
    std::string tx = "TX";
    if (pwc::HasTxDisabledEntry(arch) && RowValue("TX Pre-emphasis", names, values) == "Disabled")
        tx = "TX_DISABLED";
    const bool standby = Standby(names, values);
    return {WithStandby(tx, standby), WithStandby("RX", standby)};
}

}  // namespace

double PC_ENG::ProcessSERDESdyn(const std::string& supply, const Row& names, const Row& values) {
    const double freq = ToNumber(RowValue("Freq. (MHz)", names, values)) * kMega;
    const double count = ToNumber(RowValue("Channels", names, values));
    const auto [tx, rx] = TxRxItems(ArchName(), names, values);
    const double itx = GetIccDynAF100_1SS("SERDES IO", tx, count, tx, supply, freq, names, values);
    const double irx = GetIccDynAF100_1SS("SERDES IO", rx, count, rx, supply, freq, names, values);
    LogTermSum("IccDynSERDES", {"IccAPIOtx", "IccAPIOrx"}, {itx, irx});
    return itx + irx;
}

double PC_ENG::ProcessPCSleakUsed(const std::string& supply, const Row& names, const Row& values) {
    const std::string mode = GetPCSmode(names, values);
    const bool standby = Standby(names, values);
    return SumNamedIccTerms(
        "IccLeakPCS",
        {{"IccLeakPCSmode",
          {IccModel::Leak, "PCS", "PCS", WithStandby(mode, standby), "Channels", "PCS"}},
         {"IccLeakPCSdfb",
          {IccModel::LeakDFB, "PCS", "PCS", BlockRecord(standby), "Channels", "PCS Used"}}},
        supply, names, values);
}

double PC_ENG::ProcessPCSbiasUsed(const std::string& supply, const Row& names, const Row& values) {
    const std::string mode = GetPCSmode(names, values);
    const bool standby = Standby(names, values);
    return SumNamedIccTerms(
        "IccBiasPCS",
        {{"IccBiasPCSmode",
          {IccModel::Bias, "PCS", "PCS", WithStandby(mode, standby), "Channels", "PCS"}},
         {"IccBiasPCSdfb",
          {IccModel::BiasDFB, "PCS", "PCS", BlockRecord(standby), "Channels", "PCS Used"}}},
        supply, names, values);
}

double PC_ENG::ProcessSERDESleakUsed(const std::string& supply, const Row& names,
                                     const Row& values) {
    const auto [tx, rx] = TxRxItems(ArchName(), names, values);
    return SumNamedIccTerms(
        "IccLeakSERDES",
        {{"IccAPIOdfb",
          {IccModel::LeakDFB, "PCS", "SERDES IO", BlockRecord(Standby(names, values)), "Channels",
           "APIO"}},
         {"IccAPIOtx", {IccModel::Leak, "PCS", "SERDES IO", tx, "Channels", "TX"}},
         {"IccAPIOrx", {IccModel::Leak, "PCS", "SERDES IO", rx, "Channels", "RX"}}},
        supply, names, values);
}

double PC_ENG::ProcessSERDESbiasUsed(const std::string& supply, const Row& names,
                                     const Row& values) {
    const auto [tx, rx] = TxRxItems(ArchName(), names, values);
    return SumNamedIccTerms(
        "IccBiasSERDES",
        {{"IccAPIOdfb",
          {IccModel::BiasDFB, "PCS", "SERDES IO", BlockRecord(Standby(names, values)), "Channels",
           "APIO"}},
         {"IccAPIOtx", {IccModel::Bias, "PCS", "SERDES IO", tx, "Channels", "TX"}},
         {"IccAPIOrx", {IccModel::Bias, "PCS", "SERDES IO", rx, "Channels", "RX"}}},
        supply, names, values);
}

// ---- What the design leaves free ------------------------------------------------------

double PC_ENG::ProcessSERDESleakUnused(const std::string& supply, const Row& names,
                                       const Row& values) {
    return SumNamedIccTerms(
        "IccLeakSERDESunused",
        {{"IccLeakDUALunused",
          {IccModel::LeakDFBUnused, "PCS", "PCS", "DCforBLOCK_unused", "DUAL_unused",
           "DUAL_unused"}},
         {"IccLeakAPIOunused",
          {IccModel::LeakDFBUnused, "PCS", "SERDES IO", "DCforBLOCK_unused", "SERDESio_unused",
           "APIOunused"}},
         {"IccLeakPCSunused",
          {IccModel::LeakDFBUnused, "PCS", "SERDES IO", "DCforBLOCK_unused", "PCS_unused",
           "PCS unused"}},
         {"IccLeakTXunused",
          {IccModel::LeakUnused, "PCS", "SERDES IO", "TX_unused", "SERDESio_unused", "TX_unused"}},
         {"IccLeakRXunused",
          {IccModel::LeakUnused, "PCS", "SERDES IO", "RX_unused", "SERDESio_unused", "RX_unused"}}},
        supply, names, values);
}

double PC_ENG::ProcessSERDESbiasUnused(const std::string& supply, const Row& names,
                                       const Row& values) {
    return SumNamedIccTerms(
        "IccBiasSERDESunused",
        {{"IccBiasDUALunused",
          {IccModel::BiasDFBUnused, "PCS", "PCS", "DCforBLOCK_unused", "DUAL_unused",
           "DUAL_unused"}},
         {"IccBiasAPIOunused",
          {IccModel::BiasDFBUnused, "PCS", "SERDES IO", "DCforBLOCK_unused", "SERDESio_unused",
           "APIO Unused"}},
         {"IccBiasPCSunused",
          {IccModel::BiasDFBUnused, "PCS", "SERDES IO", "DCforBLOCK_unused", "PCS_unused",
           "PCS Unused"}},
         {"IccBiasTXunused",
          {IccModel::BiasUnused, "PCS", "SERDES IO", "TX_unused", "SERDESio_unused", "TX_unused"}},
         {"IccBiasRXunused",
          {IccModel::BiasUnused, "PCS", "SERDES IO", "RX_unused", "SERDESio_unused", "RX_unused"}}},
        supply, names, values);
}

namespace {

std::vector<std::pair<const char*, PC_ENG::IccTerm>> PcsVccUnusedTerms(bool leak,
                                                                       const std::string& arch) {
    using M = PC_ENG::IccModel;
    std::vector<std::pair<const char*, PC_ENG::IccTerm>> terms = {
        {leak ? "IccLeakPCSunused" : "IccBiasPCSunused",
         {leak ? M::LeakDFBUnused : M::BiasDFBUnused, "PCS", "PCS", "DCforBLOCK_unused",
          "PCS_unused", "PCS_unused"}}};
    if (pwc::HasPcsHalvesUnused(arch)) {
        const M m = leak ? M::LeakUnused : M::BiasUnused;
        terms.push_back(
            {"IccPCSTXunused", {m, "PCS", "PCS", "PCS_TX_unused", "TX_unused", "PCS_TX_unused"}});
        terms.push_back(
            {"IccPCSRXunused", {m, "PCS", "PCS", "PCS_RX_unused", "RX_unused", "PCS_RX_unused"}});
    }
    return terms;
}

}  // namespace

double PC_ENG::ProcessPCSSERDESleakVccUnused(const Row& names, const Row& values) {
    return SumNamedIccTerms("IccLeakPCSVccUnused", PcsVccUnusedTerms(true, ArchName()), "VCC",
                            names, values);
}
double PC_ENG::ProcessPCSSERDESbiasVccUnused(const Row& names, const Row& values) {
    return SumNamedIccTerms("IccBiasPCSVccUnused", PcsVccUnusedTerms(false, ArchName()), "VCC",
                            names, values);
}

// ---- The Orvan4 forms: halves by "Mode", each at its own data rate ------------------

double PC_ENG::ProcessOrvan4PCSdyn(const std::string& supply, const Row& names, const Row& values) {
    const Halves h = HalvesOf(names, values);
    const double count = ToNumber(RowValue("Channels", names, values));
    const double txf = ToNumber(RowValue("Tx Data Rate (MHz)", names, values)) * kMega;
    const double rxf = ToNumber(RowValue("Rx Data Rate (MHz)", names, values)) * kMega;
    const bool standby = Standby(names, values);
    double tx = 0.0, rx = 0.0, los = 0.0;
    if (h.tx)
        tx = GetIccDynAF100("PCS", "PCS", WithStandby("PCS_TX", standby), count, "PCS_TX", supply,
                            txf, names, values);
    if (h.rx)
        rx = GetIccDynAF100("PCS", "PCS", WithStandby("PCS_RX", standby), count, "PCS_RX", supply,
                            rxf, names, values);
    if (h.los) los = GetIccDynAF100("PCS", "PCS", "LOS", count, "LOS", supply, rxf, names, values);
    LogTermSum("IccDynPCS", {"IccPCStx", "IccPCSrx", "IccPCSlos"}, {tx, rx, los});
    return tx + rx + los;
}

double PC_ENG::ProcessOrvan4SERDESdyn(const std::string& supply, const Row& names,
                                      const Row& values) {
    const Halves h = HalvesOf(names, values);
    const double count = ToNumber(RowValue("Channels", names, values));
    const double txf = ToNumber(RowValue("Tx Data Rate (MHz)", names, values)) * kMega;
    const double rxf = ToNumber(RowValue("Rx Data Rate (MHz)", names, values)) * kMega;
    const bool standby = Standby(names, values);
    double tx = 0.0, rx = 0.0, los = 0.0;
    if (h.tx) {
        const std::string item = WithStandby("TX", standby);
        tx = GetIccDynAF100_1SS("SERDES IO", item, count, item, supply, txf, names, values);
    }
    if (h.rx) {
        const std::string item = WithStandby("RX", standby);
        rx = GetIccDynAF100_1SS("SERDES IO", item, count, item, supply, rxf, names, values);
    }
    if (h.los)
        los = GetIccDynAF100_1SS("SERDES IO", "LOS", count, "LOS", supply, rxf, names, values);
    LogTermSum("IccDynSERDES", {"IccAPIOtx", "IccAPIOrx", "IccAPIOlos"}, {tx, rx, los});
    return tx + rx + los;
}

namespace {

// The static terms of an Orvan4 channel: the block record while any half
// runs, then each running half.
std::vector<std::pair<const char*, PC_ENG::IccTerm>> Orvan4StaticTerms(bool leak, bool pcs,
                                                                       const PC_ENG::Row& names,
                                                                       const PC_ENG::Row& values) {
    using M = PC_ENG::IccModel;
    const Halves h = HalvesOf(names, values);
    std::vector<std::pair<const char*, PC_ENG::IccTerm>> terms;
    if (!h.tx && !h.rx) return terms;
    const bool standby = Standby(names, values);
    const M element = leak ? M::Leak : M::Bias;
    const std::string block = pcs ? "PCS" : "SERDES IO";
    const std::string prefix = pcs ? "PCS_" : "";
    terms.push_back({"IccDFB",
                     {leak ? M::LeakDFB : M::BiasDFB, "PCS", block, BlockRecord(standby),
                      "Channels", pcs ? "PCS Used" : "APIO"}});
    if (h.tx)
        terms.push_back({"IccTX",
                         {element, "PCS", block, WithStandby(prefix + "TX", standby), "Channels",
                          prefix + "TX"}});
    if (h.rx)
        terms.push_back({"IccRX",
                         {element, "PCS", block, WithStandby(prefix + "RX", standby), "Channels",
                          prefix + "RX"}});
    if (h.los) terms.push_back({"IccLOS", {element, "PCS", block, "LOS", "Channels", "LOS"}});
    return terms;
}

}  // namespace

double PC_ENG::ProcessOrvan4PCSleakUsed(const std::string& supply, const Row& names,
                                        const Row& values) {
    return SumNamedIccTerms("IccLeakPCS", Orvan4StaticTerms(true, true, names, values), supply,
                            names, values);
}
double PC_ENG::ProcessOrvan4PCSbiasUsed(const std::string& supply, const Row& names,
                                        const Row& values) {
    return SumNamedIccTerms("IccBiasPCS", Orvan4StaticTerms(false, true, names, values), supply,
                            names, values);
}
double PC_ENG::ProcessOrvan4SERDESleakUsed(const std::string& supply, const Row& names,
                                           const Row& values) {
    return SumNamedIccTerms("IccLeakSERDES", Orvan4StaticTerms(true, false, names, values), supply,
                            names, values);
}
double PC_ENG::ProcessOrvan4SERDESbiasUsed(const std::string& supply, const Row& names,
                                           const Row& values) {
    return SumNamedIccTerms("IccBiasSERDES", Orvan4StaticTerms(false, false, names, values), supply,
                            names, values);
}

// ---- The wrappers: the forms by family, and the routing on VCC ----------------------

double PC_ENG::ProcessPCSSERDESdyn(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply) {
    const bool orvan4 = pwc::UsesOrvan4SerdesForms(FamilyName());
    const double pcs =
        orvan4 ? ProcessOrvan4PCSdyn(supply, names, values) : ProcessPCSdyn(supply, names, values);
    const double serdes = orvan4 ? ProcessOrvan4SERDESdyn(supply, names, values)
                                 : ProcessSERDESdyn(supply, names, values);
    const double routing = supply == "VCC" ? GetRoutingISBdyn(panel, names, values, supply) : 0.0;
    LogTermSum("IccDynPCSSERDES" + supply, {"IccDynPCS", "IccDynSERDES", "IccDynRoutingISB"},
               {pcs, serdes, routing});
    return pcs + serdes + routing;
}

double PC_ENG::ProcessPCSSERDESleakUsed(const std::string& panel, const Row& names,
                                        const Row& values, const std::string& supply) {
    const bool orvan4 = pwc::UsesOrvan4SerdesForms(FamilyName());
    const double pcs = orvan4 ? ProcessOrvan4PCSleakUsed(supply, names, values)
                              : ProcessPCSleakUsed(supply, names, values);
    const double serdes = orvan4 ? ProcessOrvan4SERDESleakUsed(supply, names, values)
                                 : ProcessSERDESleakUsed(supply, names, values);
    const double routing =
        supply == "VCC" ? GetRoutingISBleakUsed(panel, names, values, supply) : 0.0;
    LogTermSum("IccLeakPCSSERDES" + supply + "Used",
               {"IccLeakPCS", "IccLeakSERDES", "IccLeakRoutingISB"}, {pcs, serdes, routing});
    return pcs + serdes + routing;
}

double PC_ENG::ProcessPCSSERDESbiasUsed(const std::string& panel, const Row& names,
                                        const Row& values, const std::string& supply) {
    const bool orvan4 = pwc::UsesOrvan4SerdesForms(FamilyName());
    const double pcs = orvan4 ? ProcessOrvan4PCSbiasUsed(supply, names, values)
                              : ProcessPCSbiasUsed(supply, names, values);
    const double serdes = orvan4 ? ProcessOrvan4SERDESbiasUsed(supply, names, values)
                                 : ProcessSERDESbiasUsed(supply, names, values);
    const double routing =
        supply == "VCC" ? GetRoutingISBbiasUsed(panel, names, values, supply) : 0.0;
    LogTermSum("IccBiasPCSSERDES" + supply + "Used",
               {"IccBiasPCS", "IccBiasSERDES", "IccBiasRoutingISB"}, {pcs, serdes, routing});
    return pcs + serdes + routing;
}

double PC_ENG::ProcessPCSSERDESleakUnused(const std::string&, const Row& names, const Row& values,
                                          const std::string& supply) {
    const double serdes = ProcessSERDESleakUnused(supply, names, values);
    return serdes + (supply == "VCC" ? ProcessPCSSERDESleakVccUnused(names, values) : 0.0);
}

double PC_ENG::ProcessPCSSERDESbiasUnused(const std::string&, const Row& names, const Row& values,
                                          const std::string& supply) {
    const double serdes = ProcessSERDESbiasUnused(supply, names, values);
    return serdes + (supply == "VCC" ? ProcessPCSSERDESbiasVccUnused(names, values) : 0.0);
}

// ---- SERDES AUX: a transmit PLL per row that is "ON" ------------------------------------

namespace {

bool TxPllOn(const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return RowValue("TXPLL", names, values) == "ON";
}

}  // namespace

// The frequency is the line rate; the data's equation says at what fraction
// of it the PLL's VCO runs.
double PC_ENG::ProcessSERDESAUXdyn(const std::string&, const Row& names, const Row& values,
                                   const std::string& supply) {
    if (!TxPllOn(names, values)) return 0.0;
    const double freq = ToNumber(RowValue("Tx Max Data Rate (Gbps)", names, values)) * kGiga;
    return GetIccDynAF100("SERDES AUX", "SERDES AUX", "TXPLL", 1.0, "TXPLL", supply, freq, names,
                          values);
}

double PC_ENG::ProcessSERDESAUXleakUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string& supply) {
    if (!TxPllOn(names, values)) return 0.0;
    const bool standby = Standby(names, values);
    const double element =
        CallIccModel(IccModel::Leak, "SERDES AUX", "SERDES AUX", WithStandby("TXPLL", standby), 1.0,
                     "TXPLL", supply, names, values);
    const double block =
        CallIccModel(IccModel::LeakDFB, "SERDES AUX", "SERDES AUX", BlockRecord(standby), 1.0,
                     "TXPLL Used", supply, names, values);
    LogTermSum("IccLeakSERDESAUX" + supply + "Used", {"IccLeakTXPLL", "IccLeakTXPLLdfb"},
               {element, block});
    return element + block;
}

double PC_ENG::ProcessSERDESAUXbiasUsed(const std::string&, const Row& names, const Row& values,
                                        const std::string& supply) {
    if (!TxPllOn(names, values)) return 0.0;
    const bool standby = Standby(names, values);
    const double element =
        CallIccModel(IccModel::Bias, "SERDES AUX", "SERDES AUX", WithStandby("TXPLL", standby), 1.0,
                     "TXPLL", supply, names, values);
    const double block =
        CallIccModel(IccModel::BiasDFB, "SERDES AUX", "SERDES AUX", BlockRecord(standby), 1.0,
                     "TXPLL Used", supply, names, values);
    LogTermSum("IccBiasSERDESAUX" + supply + "Used", {"IccBiasTXPLL", "IccBiasTXPLLdfb"},
               {element, block});
    return element + block;
}
