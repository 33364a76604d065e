// Memory members: an embedded block RAM per table of the "Block RAM" tab.
// The row's type is the member of "EBR"; dual-port forms have one per side,
// each at its own clock.
#include <string>
#include <vector>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

constexpr double kMega = 1e6;

struct MemorySide {
    const char* type;
    const char* freq;  // null: the row's own frequency and activity columns
    const char* af;
    const char* clock;
};

struct Memory {
    const char* section;  // equation section: the table
    const char* name;     // in labels and log lines
    const char* error;    // logged for an empty type
    std::vector<MemorySide> sides;
};

const Memory kSinglePort = {
    "SP RAM", "SPRAM", "Error: SPRAM Type Not Specified", {{"Type", nullptr, nullptr, nullptr}}};
const Memory kDualPort = {"DP RAM",
                          "DPRAM",
                          "Error: DPRAM Type Not Specified",
                          {{"TypeA", "RdCLK Freq. (MHz)", "Rd AF (%)", "Rd Clock Name"},
                           {"TypeB", "WrCLK Freq. (MHz)", "Wr AF (%)", "Wr Clock Name"}}};
const Memory kTrueDualPort = {"DP RAM True",
                              "DPRAMTrue",
                              "Error: DPRAM True Type Not Specified",
                              {{"TypeA", "CLK A Freq. (MHz)", "CLK A AF (%)", "Clock A Name"},
                               {"TypeB", "CLK B Freq. (MHz)", "CLK B AF (%)", "Clock B Name"}}};
const Memory kFifo = {"FIFO DC",
                      "FIFO",
                      "Error: FIFO Type Not Specified",
                      {{"TypeA", "RdCLK Freq. (MHz)", "Rd AF (%)", "Rd Clock Name"},
                       {"TypeB", "WrCLK Freq. (MHz)", "Wr AF (%)", "Wr Clock Name"}}};

const char* const kSideNames[] = {"A", "B"};

// The row's types, side by side; empty when one is missing (then logged).
std::vector<std::string> Types(const Memory& m, const PC_ENG::Row& names,
                               const PC_ENG::Row& values) {
    std::vector<std::string> types;
    for (const MemorySide& s : m.sides) {
        const std::string& type = RowValue(s.type, names, values);
        if (type.empty()) {
            if (PD_UTIL::IsCalcLogOpen()) PD_UTIL::FCprintln(m.error);
            return {};
        }
        types.push_back(type);
    }
    return types;
}

std::string Label(const Memory& m, size_t side) {
    return m.sides.size() == 1 ? std::string(m.name) : std::string(m.name) + kSideNames[side];
}

double MemoryDyn(PC_ENG& eng, const Memory& m, const PC_ENG::Row& names, const PC_ENG::Row& values,
                 const std::string& supply) {
    const std::vector<std::string> types = Types(m, names, values);
    if (types.empty()) return 0.0;
    // The log's names of the terms, made only while it is open.
    const bool log = PD_UTIL::IsCalcLogOpen();
    std::vector<std::string> terms;
    std::vector<double> numbers;
    for (size_t i = 0; i < types.size(); ++i) {
        const MemorySide& s = m.sides[i];
        if (log) terms.push_back("IccDyn" + Label(m, i));
        if (!s.freq) {
            numbers.push_back(eng.GetIccDyn(m.section, "EBR", types[i], "EBR Blocks", m.name,
                                            supply, names, values));
            continue;
        }
        // The side's own clock decides its duty-cycle and oscillator rules.
        const std::string& clock = RowValue(s.clock, names, values);
        const double freq =
            eng.getFreqfromClockOscStatue(clock, ToNumber(RowValue(s.freq, names, values)) * kMega);
        const double af =
            eng.getAFfromClockDCCMap(clock, ToNumber(RowValue(s.af, names, values)) / 100.0);
        numbers.push_back(eng.GetIccDyn(m.section, "EBR", types[i], "EBR Blocks", Label(m, i),
                                        supply, freq, af, names, values));
    }
    if (log) terms.push_back("IccDynRoutingISB");
    numbers.push_back(eng.GetRoutingISBdyn(m.section, names, values, supply));
    if (log) LogTermSum("IccDyn" + std::string(m.name), terms, numbers);
    return Sum(numbers);
}

// Used leakage or bias: each side's type, the block term, the routing.
double MemoryStatic(PC_ENG& eng, const Memory& m, bool leak, const PC_ENG::Row& names,
                    const PC_ENG::Row& values, const std::string& supply) {
    const std::vector<std::string> types = Types(m, names, values);
    if (types.empty()) return 0.0;
    const bool log = PD_UTIL::IsCalcLogOpen();
    const char* kind = leak ? "IccLeak" : "IccBias";
    std::vector<std::string> terms;
    std::vector<double> numbers;
    for (size_t i = 0; i < types.size(); ++i) {
        if (log) terms.push_back(kind + Label(m, i));
        numbers.push_back(leak ? eng.GetIccLeak(m.section, "EBR", types[i], "EBR Blocks", "EBR",
                                                supply, names, values)
                               : eng.GetIccBias(m.section, "EBR", types[i], "EBR Blocks", "EBR",
                                                supply, names, values));
    }
    if (log) terms.push_back(kind + std::string("DFB"));
    numbers.push_back(leak ? eng.GetIccLeakDFB(m.section, "EBR", "DCforBLOCK_used", "EBR Blocks",
                                               "EBR Used", supply, names, values)
                           : eng.GetIccBiasDFB(m.section, "EBR", "DCforBLOCK_used", "EBR Blocks",
                                               "EBR Used", supply, names, values));
    if (log) terms.push_back(kind + std::string("RoutingISB"));
    numbers.push_back(leak ? eng.GetRoutingISBleakUsed(m.section, names, values, supply)
                           : eng.GetRoutingISBbiasUsed(m.section, names, values, supply));
    if (log) LogTermSum(kind + std::string(m.name) + "Used", terms, numbers);
    return Sum(numbers);
}

}  // namespace

double PC_ENG::ProcessSPRAMdynVcc(const std::string&, const Row& names, const Row& values,
                                  const std::string& supply) {
    return MemoryDyn(*this, kSinglePort, names, values, supply);
}
double PC_ENG::ProcessSPRAMLeakVccUsed(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return MemoryStatic(*this, kSinglePort, true, names, values, supply);
}
double PC_ENG::ProcessSPRAMbiasVccUsed(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return MemoryStatic(*this, kSinglePort, false, names, values, supply);
}

double PC_ENG::ProcessDPRAMdynVcc(const std::string&, const Row& names, const Row& values,
                                  const std::string& supply) {
    return MemoryDyn(*this, kDualPort, names, values, supply);
}
double PC_ENG::ProcessDPRAMleakVccUsed(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return MemoryStatic(*this, kDualPort, true, names, values, supply);
}
double PC_ENG::ProcessDPRAMBiasVccUsed(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return MemoryStatic(*this, kDualPort, false, names, values, supply);
}

double PC_ENG::ProcessDPRAMTrueDynVcc(const std::string&, const Row& names, const Row& values,
                                      const std::string& supply) {
    return MemoryDyn(*this, kTrueDualPort, names, values, supply);
}
double PC_ENG::ProcessDPRAMTrueLeakVccUsed(const std::string&, const Row& names, const Row& values,
                                           const std::string& supply) {
    return MemoryStatic(*this, kTrueDualPort, true, names, values, supply);
}
double PC_ENG::ProcessDPRAMTrueBiasVccUsed(const std::string&, const Row& names, const Row& values,
                                           const std::string& supply) {
    return MemoryStatic(*this, kTrueDualPort, false, names, values, supply);
}

double PC_ENG::ProcessFIFODynVcc(const std::string&, const Row& names, const Row& values,
                                 const std::string& supply) {
    return MemoryDyn(*this, kFifo, names, values, supply);
}
double PC_ENG::ProcessFIFOLeakVccUsed(const std::string&, const Row& names, const Row& values,
                                      const std::string& supply) {
    return MemoryStatic(*this, kFifo, true, names, values, supply);
}
double PC_ENG::ProcessFIFOBiasVccUsed(const std::string&, const Row& names, const Row& values,
                                      const std::string& supply) {
    return MemoryStatic(*this, kFifo, false, names, values, supply);
}

// Only the block term, over the blocks the design leaves free.
double PC_ENG::ProcessBlockRAMleakUnused(const std::string&, const Row& names, const Row& values,
                                         const std::string& supply) {
    return SumIccTerms("IccLeakSPRAMunused",
                       {{IccModel::LeakDFBUnused, "SP RAM", "EBR", "DCforBLOCK_unused",
                         "BRAM_unused", "BRAM_unused"}},
                       supply, names, values);
}
double PC_ENG::ProcessBlockRAMbiasUnused(const std::string&, const Row& names, const Row& values,
                                         const std::string& supply) {
    return SumIccTerms("IccBiasSPRAMunused",
                       {{IccModel::BiasDFBUnused, "SP RAM", "EBR", "DCforBLOCK_unused",
                         "BRAM_unused", "BRAM_unused"}},
                       supply, names, values);
}
