// Clock tree members: a clock's current is that of the tree resources its
// cells name, at the clock's frequency.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "baspcengin.h"
#include "baspcformula/clock_tree.h"
#include "baspcformula/formula_util.h"
#include "baspcpanel/pc_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwcformula;

namespace pwc {

const std::vector<ClockResource>& ClockResources() {
    using L = ClockLookup;
    using W = ClockWhen;
    static const std::vector<ClockResource> resources = {
        {"PCLK", 't', "Ptrunk@", L::Item, W::Always, true, "PCLKtrunk", "Ptrunk", false},
        {"PCLK", 'c', "Pbranch", L::SupplyMember, W::Always, false, "Pbranch", "Pbranch", false},
        {"PCLK", 'f', "Pfeed@", L::Item, W::Always, false, "PCLKfeed", "Pfeed", false},
        {"PCLK", 's', "Pspine@", L::Item, W::Always, false, "PCLKspine", "Pspine", false},
        {"PCLK", 'p', "Ptap@", L::Item, W::Always, false, "PCLKtap", "Ptap", false},
        {"SCLK", 't', "Strunk@", L::Item, W::Always, true, "SCLKtrunk", "Strunk", true},
        {"SCLK", 'c', "Sspine", L::SupplyMember, W::Always, false, "SCLKspine", "Sspine", true},
        {"SCLK", 'r', "Stap", L::SupplyMember, W::Always, false, "SCLKtap", "Stap", true},
        {"SCLK", 'b', "Sbranch", L::DeviceTail, W::Always, false, "SCLKbranch", "Sbranch", false},
        {"ECLK", 't', "Etb@", L::Item, W::TopBottomEdge, false, "ECLKTB", "Etb", true},
        {"ECLK", 'l', "Elr@", L::Item, W::LeftRightEdge, false, "ECLKLR", "Elr", true},
        {"ECLK", 'e', "Eclk@", L::Item, W::Always, false, "ECLK", "Eclk", true},
        {"ECLK", 'g', "FRC_BRIDGE", L::Item, W::TagWithoutE, false, "FRC_BRIDGE", "FRC_BRIDGE",
         true},
    };
    return resources;
}

const std::vector<ClockKind>& ClockKinds() {
    static const std::vector<ClockKind> kinds = {
        {"PCLK", "PCLKTrow1", "PCLKTrow2", "PCLK trunk: "},
        {"SCLK", "SCLKTrow1", "SCLKTrow2", "SCLK trunk: "},
        {"ECLK", nullptr, nullptr, nullptr},
    };
    return kinds;
}

}  // namespace pwc

namespace {

constexpr double kPico = 1e-12;
constexpr double kMicro = 1e-6;
constexpr double kMilli = 0.001;

const pwc::ClockKind* KindOf(const std::string& kind) {
    for (const pwc::ClockKind& k : pwc::ClockKinds())
        if (kind == k.kind) return &k;
    return nullptr;
}

bool Applies(const pwc::ClockResource& r, const std::string& arch, const std::string& tag) {
    switch (r.when) {
        case pwc::ClockWhen::Always:
            return true;
        case pwc::ClockWhen::TopBottomEdge:
            return pwc::HasEdgeClockTopBottom(arch);
        case pwc::ClockWhen::LeftRightEdge:
            return pwc::HasEdgeClockLeftRight(arch);
        case pwc::ClockWhen::TagWithoutE:
            return tag.find('e') == std::string::npos;
    }
    return false;
}

int RowInteger(const char* column, const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return static_cast<int>(std::strtol(RowValue(column, names, values).c_str(), nullptr, 10));
}

// The six leakage letters of a member of "Clocks" on a supply.
struct LeakLetters {
    double a, b, e, f, g, h;
};

LeakLetters ReadLeakLetters(PC_ENG& eng, const std::string& supply, const std::string& item,
                            double aScale) {
    auto letter = [&](const char* l) {
        return ToNumber(eng.FindABCDusedvalueFromPwrSupply(supply, "Clocks", item, "", l));
    };
    return {letter("A") * aScale, letter("B"), letter("E"), letter("F"), letter("G"), letter("H")};
}

}  // namespace

std::string PC_ENG::FindSupplyMemberForClocks(const std::string& item, const Row& names,
                                              const Row& values) {
    PD_PWRSECT* pwr = PwrSection("Clocks");
    if (!pwr) return item;
    const std::string own = item + "@" + RowValue("Device", names, values);
    const std::string withPackage = own + "_" + PackageName();
    for (const PD_MEMBER& m : pwr->members)
        if (PD_UTIL::SpecialCompare(m.name, own) == 0 ||
            PD_UTIL::SpecialCompare(m.name, withPackage) == 0)
            return own;
    return item;
}

std::vector<PC_ENG::ClockUse> PC_ENG::GetClockCellResources(const std::string& kind,
                                                            const Row& names, const Row& values,
                                                            bool logIgnored) {
    std::vector<ClockUse> uses;
    const pwc::ClockKind* k = KindOf(kind);
    if (!k) return uses;
    const std::string arch = ArchName();
    const std::string& device = RowValue("Device", names, values);
    int n = 0;
    char** tokens = PD_UTIL::GetArrayOfTokens(RowValue(kind, names, values).c_str(), "_", &n);
    for (int i = 0; i + 1 < n; i += 2) {
        const std::string tag = tokens[i];
        const pwc::ClockResource* found = nullptr;
        for (const pwc::ClockResource& r : pwc::ClockResources()) {
            if (kind != r.kind || tag.find(r.letter) == std::string::npos) continue;
            if (!Applies(r, arch, tag)) continue;
            found = &r;
            break;
        }
        if (!found) continue;
        if (found->trunk && k->trunkRow1) {
            const int trunk = GetStringFirstNumber(tag);
            const int row1 = RowInteger(k->trunkRow1, names, values);
            const int row2 = RowInteger(k->trunkRow2, names, values);
            if (trunk != row1 && trunk != row2 && row1 != 0 && row2 != 0) {
                if (logIgnored && PD_UTIL::IsCalcLogOpen())
                    PD_UTIL::FCprintln(std::string(k->trunkLog) + tag +
                                       " is ignored coz doesn't match with either " +
                                       std::to_string(row1) + " or " + std::to_string(row2));
                continue;
            }
        }
        ClockUse use;
        switch (found->lookup) {
            case pwc::ClockLookup::Item:
                use.item = found->item;
                if (!use.item.empty() && use.item.back() == '@') use.item += device;
                break;
            case pwc::ClockLookup::DeviceTail:
                use.item = std::string(found->item) + "@" + device;
                break;
            case pwc::ClockLookup::SupplyMember:
                use.item = FindSupplyMemberForClocks(found->item, names, values);
                break;
        }
        use.debugName = found->debugName;
        use.key = found->key;
        use.count = ToNumber(tokens[i + 1], std::strlen(tokens[i + 1]));
        uses.push_back(std::move(use));
    }
    PD_UTIL::DeleteArray(tokens, n);
    return uses;
}

// ---- Dynamic --------------------------------------------------------------------------

double PC_ENG::ProcessClocksDyn(const std::string&, const Row& names, const Row& values,
                                const std::string& supply) {
    std::string freqName = "Freq. (MHz)";
    bool hasFreq = false;
    for (const std::string& n : names) hasFreq = hasFreq || n == freqName;
    if (!hasFreq)
        for (const std::string& n : names)
            if (n.find("Freq.") != std::string::npos) {
                freqName = n;
                break;
            }
    const std::string afText = pwc::ClocksUseEnableDuty(ArchName())
                                   ? RowValue("CLKEN Duty Cycle (%)", names, values)
                                   : std::string("100");
    const double af = ToNumber(afText) / 100.0;
    const double freq = 1e6 * ToNumber(RowValue(freqName, names, values));
    const double pclk = HlpProcessClocksDyn(freq, af, "PCLK", names, values, supply);
    const double sclk = HlpProcessClocksDyn(freq, af, "SCLK", names, values, supply);
    const double eclk = HlpProcessClocksDyn(freq, af, "ECLK", names, values, supply);
    const double sum = pclk + sclk + eclk;
    if (PD_UTIL::IsCalcLogOpen()) {
        char line[512];
        std::snprintf(line, sizeof line, "%s = %g + %g + %g = %g\n", "IccDynClocks", pclk, sclk,
                      eclk, sum);
        PD_UTIL::FCprintln(line);
    }
    return sum;
}

double PC_ENG::HlpProcessClocksDyn(double freq, double af, const std::string& kind,
                                   const Row& names, const Row& values, const std::string& supply) {
    const std::string& clock = RowValue("Clock Name", names, values);
    const double voltage = FindCorrectSupply(supply, names, values);
    double sum = 0.0;
    for (const ClockUse& u : GetClockCellResources(kind, names, values, true)) {
        const double c =
            ToNumber(FindABCDusedvalueFromPwrSupply(supply, "Clocks", u.item, "", "C")) * kPico;
        sum += ProcessIccDyn("Clocks", freq, af, u.count, c, voltage, clock, u.debugName, names,
                             values, "DynamicIcc");
    }
    return sum;
}

// ---- Leakage and bias ---------------------------------------------------------------------

namespace {

const char* LeakTable(const std::string& mode) {
    return mode == "used" ? "UsedLeakIcc" : "UnusedLeakIcc";
}
const char* BiasTable(const std::string& mode) {
    return mode == "used" ? "UsedBiasIcc" : "UnusedBiasIcc";
}
std::string RowName(const std::string& mode, const PC_ENG::Row& names, const PC_ENG::Row& values) {
    return mode == "used" ? RowValue("Clock Name", names, values) : std::string("Unused");
}

}  // namespace

double PC_ENG::HlpProcessClocksLeakUsed(const std::string& mode, const std::string& kind,
                                        const Row& names, const Row& values,
                                        const std::string& supply) {
    // The zn2c00 data give the clock items' A on the scale of C.
    const double aScale = pwc::IsZn2c00Arch(ArchName()) ? kPico : kMicro;
    const double t = ToNumber(RowValue("TJ", names, values));
    const std::string rowName = RowName(mode, names, values);
    double sum = 0.0;
    for (const ClockUse& u : GetClockCellResources(kind, names, values, false)) {
        const LeakLetters l = ReadLeakLetters(*this, supply, u.item, aScale);
        sum += ProcessIccLeak(mode, l.a, l.b, l.e, l.f, l.g, l.h, t, u.count, rowName, u.debugName,
                              names, values, LeakTable(mode));
    }
    return sum;
}

double PC_ENG::HlpProcessClocksBiasUsed(const std::string& mode, const std::string& kind,
                                        const Row& names, const Row& values,
                                        const std::string& supply) {
    const std::string rowName = RowName(mode, names, values);
    double sum = 0.0;
    for (const ClockUse& u : GetClockCellResources(kind, names, values, false)) {
        const double d =
            ToNumber(FindABCDusedvalueFromPwrSupply(supply, "Clocks", u.item, "", "D")) * kMilli;
        sum += ProcessIccDcBias(mode, d, u.count, rowName, u.debugName, BiasTable(mode));
    }
    return sum;
}

namespace {

// What a DC block record is taken over: the resources a clock occupies, or
// the free clock nets of the kind (and on the "bf7p00" codes, the free
// resources that have a block row of their own).
struct BlockCount {
    std::string column;
    double count;
};

std::vector<BlockCount> BlockCounts(PC_ENG& eng, const std::string& mode, const std::string& kind,
                                    const PC_ENG::Row& names, const PC_ENG::Row& values) {
    std::vector<BlockCount> counts;
    if (mode == "used") {
        for (const PC_ENG::ClockUse& u : eng.GetClockCellResources(kind, names, values, false))
            counts.push_back({u.debugName, u.count});
        return counts;
    }
    counts.push_back({kind, ToNumber(RowValue(kind + "_unused", names, values))});
    if (!pwc::IsBf7p00Arch(eng.ArchName())) return counts;
    for (const pwc::ClockResource& r : pwc::ClockResources())
        if (kind == r.kind && r.bf7p00Block)
            counts.push_back(
                {r.debugName, ToNumber(RowValue(std::string(r.key) + "_unused", names, values))});
    return counts;
}

}  // namespace

double PC_ENG::HlpProcessClocksLeakDFB(const std::string& mode, const std::string& kind,
                                       const std::string& item, const Row& names, const Row& values,
                                       const std::string& supply) {
    const LeakLetters l = ReadLeakLetters(*this, supply, item, kMicro);
    const double t = ToNumber(RowValue("TJ", names, values));
    const std::string rowName = RowName(mode, names, values);
    double sum = 0.0;
    for (const BlockCount& b : BlockCounts(*this, mode, kind, names, values))
        sum += ProcessClockIccLeakDFB(mode, l.a, l.b, l.e, l.f, l.g, l.h, t, b.count, rowName,
                                      b.column, names, values, LeakTable(mode));
    return sum;
}

double PC_ENG::HlpProcessClocksBiasDFB(const std::string& mode, const std::string& kind,
                                       const std::string& item, const Row& names, const Row& values,
                                       const std::string& supply) {
    double sum = 0.0;
    for (const BlockCount& b : BlockCounts(*this, mode, kind, names, values))
        sum += GetIccBiasDFB("Clocks", "Clocks", item, b.count, b.column, supply, names, values);
    return sum;
}

namespace {

using KindHelper = double (PC_ENG::*)(const std::string& mode, const std::string& kind,
                                      const std::string& item, const PC_ENG::Row& names,
                                      const PC_ENG::Row& values, const std::string& supply);
using ElementHelper = double (PC_ENG::*)(const std::string& mode, const std::string& kind,
                                         const PC_ENG::Row& names, const PC_ENG::Row& values,
                                         const std::string& supply);

// The kinds' block terms, after the kinds' element terms when given; one
// summary line under logName, its terms named kind + clock kind.
double SumOverKinds(PC_ENG& eng, const std::string& kind, const std::string& logName,
                    const std::string& mode, ElementHelper elements, KindHelper blocks,
                    const char* item, const PC_ENG::Row& names, const PC_ENG::Row& values,
                    const std::string& supply) {
    std::vector<double> numbers;
    if (elements)
        for (const pwc::ClockKind& k : pwc::ClockKinds())
            numbers.push_back((eng.*elements)(mode, k.kind, names, values, supply));
    for (const pwc::ClockKind& k : pwc::ClockKinds())
        numbers.push_back((eng.*blocks)(mode, k.kind, item, names, values, supply));
    const double sum = Sum(numbers);
    if (PD_UTIL::IsCalcLogOpen()) {
        std::vector<std::string> terms;
        if (elements)
            for (const pwc::ClockKind& k : pwc::ClockKinds()) terms.push_back(kind + k.kind);
        for (const pwc::ClockKind& k : pwc::ClockKinds()) terms.push_back(kind + k.kind + "dfb");
        LogTermSum(logName, terms, numbers, sum);
    }
    return sum;
}

}  // namespace

double PC_ENG::ProcessClocksLeakUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return SumOverKinds(*this, "IccLeak", "IccLeakClocksUsed", "used", nullptr,
                        &PC_ENG::HlpProcessClocksLeakDFB, "DCforBLOCK_used", names, values, supply);
}

double PC_ENG::ProcessClocksBiasUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string& supply) {
    return SumOverKinds(*this, "IccBias", "IccBiasClocksUsed", "used", nullptr,
                        &PC_ENG::HlpProcessClocksBiasDFB, "DCforBLOCK_used", names, values, supply);
}

double PC_ENG::ProcessClocksLeakUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return SumOverKinds(*this, "IccLeak", "IccLeakClocksUnused", "unused",
                        &PC_ENG::HlpProcessClocksLeakUsed, &PC_ENG::HlpProcessClocksLeakDFB,
                        "DCforBLOCK_unused", names, values, supply);
}

double PC_ENG::ProcessClocksBiasUnused(const std::string&, const Row& names, const Row& values,
                                       const std::string& supply) {
    return SumOverKinds(*this, "IccBias", "IccBiasClocksUnused", "unused",
                        &PC_ENG::HlpProcessClocksBiasUsed, &PC_ENG::HlpProcessClocksBiasDFB,
                        "DCforBLOCK_unused", names, values, supply);
}
