// Block and supply members of the embedded function block: its parts'
// switching current on VCC, the flash arrays' leakage, and the block's
// static current as a whole.
#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "pd_util.h"

using namespace pwcformula;

namespace {

// "name@" takes the row's device as its tail.
std::string WithDevice(const std::string& item, const PC_ENG::Row& names,
                       const PC_ENG::Row& values) {
    return item.back() == '@' ? item + RowValue("Device", names, values) : item;
}

// The flash item of a "UFM" row: its "UFM Id." when given.
std::string UfmItem(const PC_ENG::Row& names, const PC_ENG::Row& values) {
    const std::string& id = RowValue("UFM Id.", names, values);
    return id.empty() ? "UFM_Bits@" : id + "_Bits@";
}

}  // namespace

// One part: block "EFB", the table's name as equation section, item and
// count column.
#define PWC_EFB_DYN_MEMBER(T)                                                   \
    double PC_ENG::Process##T##efbdynVcc(const Row& names, const Row& values) { \
        return GetIccDyn(#T, "EFB", #T, #T, #T, "VCC", names, values);          \
    }
PWC_EFB_DYN_MEMBER(I2C1)
PWC_EFB_DYN_MEMBER(I2C2)
PWC_EFB_DYN_MEMBER(SPI)
PWC_EFB_DYN_MEMBER(TC)
PWC_EFB_DYN_MEMBER(WISHBONE)
#undef PWC_EFB_DYN_MEMBER

double PC_ENG::ProcessUFMefbdynVcc(const Row& names, const Row& values) {
    return GetIccDyn("UFM", "EFB", WithDevice(UfmItem(names, values), names, values), "UFM", "UFM",
                     "VCC", names, values);
}

double PC_ENG::ProcessUFMefbLeakVcc(const Row& names, const Row& values) {
    return GetIccLeakAt("UFM", "EFB", UfmItem(names, values), "UFM", "UFM", "VCC", names, values);
}

double PC_ENG::ProcessCFGefbdynVcc(const Row& names, const Row& values) {
    return GetIccDyn("CFG", "EFB", WithDevice("CFG1_Bits@", names, values), "CFG", "CFG", "VCC",
                     names, values);
}

double PC_ENG::ProcessCFGefbLeakVcc(const Row& names, const Row& values) {
    return GetIccLeakAt("CFG", "EFB", "CFG1_Bits@", "CFG", "CFG", "VCC", names, values);
}

namespace {

const char* const kEfbParts[] = {"I2C1", "I2C2", "SPI", "TC", "WISHBONE"};
// Always-on parts of the block, one each.
const char* const kEfbFixed[] = {"ASR_EFB@", "DSR_EFB@", "PCNTR", "CONFIG"};
// The log's names of the used terms, in their order.
const std::vector<std::string> kEfbLeakTerms = {
    "IccLeakI2c1",     "IccLeakI2c2",    "IccLeakSpi",        "IccLeakTc",
    "IccLeakWishbone", "IccLeakUfmbits", "IccLeakDFBEFBUsed", "IccLeakAsrefb",
    "IccLeakDsrefb",   "IccLeakPcntr",   "IccLeakConfig"};
const std::vector<std::string> kEfbBiasTerms = {
    "IccBiasI2c1",     "IccBiasI2c2",    "IccBiasSpi",        "IccBiasTc",
    "IccBiasWishbone", "IccBiasUfmbits", "IccBiasDFBEFBUsed", "IccBiasAsrefb",
    "IccBiasDsrefb",   "IccBiasPcntr",   "IccBiasConfig"};

}  // namespace

// The parts in use, the user flash's array, the block term, and the
// always-on configuration parts, in this order.
double PC_ENG::ProcessEFBleakVccUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string&) {
    std::vector<double> terms;
    for (const char* part : kEfbParts)
        terms.push_back(GetIccLeak("EFB", "EFB", part, std::string(part) + "_used", part, "VCC",
                                   names, values));
    terms.push_back(
        GetIccLeakAt("EFB", "EFB", "UFM_Bits@", 1.0, "UFM_Bits@", "VCC", names, values));
    terms.push_back(GetIccLeakDFB("EFB", "EFB", "DCforBLOCK_used", "EFB_used", "EFB used", "VCC",
                                  names, values));
    for (const char* item : kEfbFixed)
        terms.push_back(GetIccLeakAt("EFB", "EFB", item, 1.0, item, "VCC", names, values));
    double sum = 0.0;
    for (double t : terms) sum += t;
    LogTermSum("IccLeakUsedEFB", kEfbLeakTerms, terms, sum);
    return sum;
}

double PC_ENG::ProcessEFBbiasVccUsed(const std::string&, const Row& names, const Row& values,
                                     const std::string&) {
    std::vector<double> terms;
    for (const char* part : kEfbParts)
        terms.push_back(GetIccBias("EFB", "EFB", part, std::string(part) + "_used", part, "VCC",
                                   names, values));
    terms.push_back(GetDbiasAt("EFB", "EFB", "UFM_Bits@", "VCC", names, values));
    // The block's bias has no built-in form but its one-element coefficient.
    terms.push_back(GetDbiasDFB("EFB", "EFB", "DCforBLOCK_used", "VCC", names, values) *
                    ToNumber(RowValue("EFB_used", names, values)));
    for (const char* item : kEfbFixed)
        terms.push_back(GetDbiasAt("EFB", "EFB", item, "VCC", names, values));
    double sum = 0.0;
    for (double t : terms) sum += t;
    LogTermSum("IccBiasUsedEFB", kEfbBiasTerms, terms, sum);
    return sum;
}

double PC_ENG::ProcessEFBleakUnused(const std::string&, const Row& names, const Row& values,
                                    const std::string&) {
    return GetIccLeakDFBUnused("EFB", "EFB", "DCforBLOCK_unused", "EFB_unused", "EFB unused", "VCC",
                               names, values);
}

double PC_ENG::ProcessEFBbiasUnused(const std::string&, const Row& names, const Row& values,
                                    const std::string&) {
    return GetDbiasDFB("EFB", "EFB", "DCforBLOCK_unused", "VCC", names, values) *
           ToNumber(RowValue("EFB_unused", names, values));
}
