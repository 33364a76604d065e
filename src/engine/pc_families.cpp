#include "pc_families.h"

#include <cstring>
#include <initializer_list>

namespace pwc {
namespace {

using List = std::initializer_list<const char*>;

bool InList(const std::string& text, List list) {
    for (const char* name : list)
        if (text == name) return true;
    return false;
}

bool HoldsAny(const std::string& text, List list) {
    for (const char* part : list)
        if (text.find(part) != std::string::npos) return true;
    return false;
}

// The low-power families: six-digit rounding and device-wide standby controls
// go together for exactly these.
const List kLowPowerFamilies = {"Quenra2", "Quenra3L", "Quenra3LF", "Orvan4",   "Rail Keeper 2",
                                "Orvan4U", "Orvan4UM", "Orvan5U",   "Orvan5UM", "Orvan5UM5G",
                                "Jorvik",  "JorvikF",  "Quenra3D",  "Dunmar"};
const List kBandgapPorFamilies = {"Quenra2",       "Quenra3L", "Quenra3LF",
                                  "Rail Keeper 2", "Quenra3D", "Dunmar"};
const List kDefaultMclkRowFamilies = {"Quenra2", "Quenra3L", "Quenra3LF",  "Quenra3D",
                                      "Dunmar",  "Orvan4",   "Orvan4U",    "Orvan4UM",
                                      "Orvan5U", "Orvan5UM", "Orvan5UM5G", "Rail Keeper 2"};
const List kTwoPllKeyFamilies = {"Quenra2", "Quenra3L",      "Quenra3LF", "Quenra3D",
                                 "Dunmar",  "Rail Keeper 2", "Jorvik",    "JorvikF"};
const List kSerdesStandbyFamilies = {"Orvan4",  "Orvan4U",  "Orvan4UM",
                                     "Orvan5U", "Orvan5UM", "Orvan5UM5G"};
const List kDualPcsFamilies = {"Orvan4UM", "Orvan5UM", "Orvan5UM5G"};
const List kDphyFamilies = {"Jorvik", "JorvikF"};
const List kSingleDphyPackages = {"CTFBGA80", "CSFBGA81", "CKFBGA80", "UCFBGA64"};
const List kAscCurrentFamilies = {"Rail Keeper 2", "Quenra3D", "Quenra3LF"};
const List kCoreSupplyTailFamilies = {"Tavik", "Quenra"};
const List kReportsWithoutUfmFamilies = {"Quenra3L", "Quenra3LF"};

struct FamilyArch {
    const char* family;
    const char* arch;
};
const FamilyArch kFamilyArch[] = {
    {"Orvan2", "rv7a00"},    {"Orvan2S", "rv7a00s"}, {"Orvan3", "rv7c00"},    {"OrvanA", "rv7g00"},
    {"OrvanB", "rv7g00p"},   {"Orvan2M", "rv7m00"},  {"Orvan2MS", "rv7m00s"}, {"Tavik2", "kt7a00"},
    {"Quenra3H", "zn3c00h"}, {"Tavik", "kt7g00"},    {"Quenra", "hq7g00"},    {"BelmirM", "gy7s00"},
    {"Belmir", "gy7s00"},
};

const List kBf7p00Archs = {"bf7p00", "bf7p00m", "bf7p00g"};
const List kArchAndOverrideArchs = {"kt7g00",  "hq7g00p", "hq7g00", "hq7g00e", "zn2c00p",
                                    "zn3c00a", "zn3c00f", "wd7c00", "wd7r00"};
const List kShortSwitchBoxArchs = {"rv7c00", "kt7c00", "zn3c00a", "zn3c00f", "rv7d00",
                                   "pl7w00", "cu7s00", "wd7c00",  "wd7r00"};
const List kHighPerformancePowerArchs = {"zn2c00", "wd7c00", "wd7r00"};
const List kEdgeClockTopBottomArchs = {"rv7c00", "kt7c00", "rv7d00", "zn3c00a", "zn3c00f",
                                       "pl7w00", "cu7s00", "wd7c00", "wd7r00"};
const List kEdgeClockLeftRightArchs = {"rv7c00", "kt7c00", "rv7d00", "pl7w00", "cu7s00"};
const List kSdcDllFamilies = {"Belmir", "BelmirM"};
const List kNoDqsVccArchs = {"gy7s00", "gy7scm00"};
const List kDqsAuxArchs = {"gy7s00", "lancet"};
// With all "zn2c00" codes (by substring) and, for the buffers, "bf7p00" codes.
const List kAlwaysOnGroupArchs = {"zn3c00a", "zn3c00f", "wd7c00", "wd7r00"};

struct DeviceItem {
    const char* pattern;  // "?" matches any one character
    const char* item;
};
const DeviceItem kSecondFlash[] = {{"KZQ3D-9400??", "Flash_10000@"}, {"DMR50", "Flash_640@"}};

}  // namespace

bool IsSixDigitFamily(const std::string& f) {
    return InList(f, kLowPowerFamilies);
}
bool IsSixDigitMatrixFamily(const std::string& f) {
    return IsSixDigitFamily(f) && f != "Orvan4U" && f != "Orvan4UM";
}
bool HasStandbyControls(const std::string& f) {
    return InList(f, kLowPowerFamilies);
}
bool HasBandgapPorTables(const std::string& f) {
    return InList(f, kBandgapPorFamilies);
}

bool HasMclkTable(const std::string& f) {
    if (IsJorvikFamily(f)) return false;
    return InList(f, kBandgapPorFamilies) || f == "Orvan4" || IsOrvan4UOr5UFamily(f);
}

bool HasMclkWithoutStandby(const std::string& f) {
    return IsOrvan4UOr5UFamily(f);
}
bool GetsDefaultMclkRow(const std::string& f) {
    return InList(f, kDefaultMclkRowFamilies);
}
bool HasTwoPllStandbyKeys(const std::string& f) {
    return InList(f, kTwoPllKeyFamilies);
}
bool HasSerdesStandbyControls(const std::string& f) {
    return InList(f, kSerdesStandbyFamilies);
}
bool HasQuadPcsStandby(const std::string& f) {
    return f == "Orvan4";
}
bool HasDualPcsStandby(const std::string& f) {
    return InList(f, kDualPcsFamilies);
}
bool HasDphy(const std::string& f) {
    return InList(f, kDphyFamilies);
}
bool LeavesUfmOutOfReports(const std::string& f) {
    return InList(f, kReportsWithoutUfmFamilies);
}
bool IsJorvikFamily(const std::string& f) {
    return f.find("Jorvik") != std::string::npos;
}
bool IsOrvan4UOr5UFamily(const std::string& f) {
    return HoldsAny(f, {"Orvan4U", "Orvan5U"});
}
bool UsesPowerCategory(const std::string& f) {
    return f == "Dunmar";
}
bool HasCoreSupplyDeviceTail(const std::string& f) {
    return InList(f, kCoreSupplyTailFamilies);
}

bool SavesAscCurrent(const std::string& family, const std::string& device) {
    if (InList(family, kAscCurrentFamilies)) return true;
    return family == "Quenra2" && device.find("HC") != std::string::npos;
}

bool SharesPlainPartThermalData(const std::string& f) {
    return InList(f, {"Orvan2S", "Orvan2MS"});
}

bool IsSingleDphyPackage(const std::string& p) {
    return InList(p, kSingleDphyPackages);
}

const std::vector<std::string>& DphyCopySuffixes(const std::string& p) {
    static const std::vector<std::string> one = {""};
    static const std::vector<std::string> two = {"0", "1"};
    return IsSingleDphyPackage(p) ? one : two;
}

std::string ArchNameOfFamily(const std::string& family) {
    for (const FamilyArch& fa : kFamilyArch)
        if (family == fa.family) return fa.arch;
    return family;
}

bool IsBf7p00Arch(const std::string& arch) {
    return InList(arch, kBf7p00Archs);
}

const char* VoltageListOfArch(const std::string& arch) {
    return IsBf7p00Arch(arch) ? "1.2_1.35_1.5_1.8_2.5_3.3" : "1.2_1.5_1.8_2.5_3.3";
}

bool PassesArchAndOverride(const std::string& arch) {
    return HoldsAny(arch, {"zn2c00"}) || InList(arch, kArchAndOverrideArchs);
}

bool HasShortSwitchBoxList(const std::string& arch) {
    return HoldsAny(arch, {"zn2c00", "bf7p00"}) || InList(arch, kShortSwitchBoxArchs);
}

bool IsPfrArch(const std::string& arch) {
    return arch == "wd7r00";
}

bool HasHighPerformancePowerFile(const std::string& arch) {
    return HoldsAny(arch, kHighPerformancePowerArchs);
}

bool IsZn2c00Arch(const std::string& arch) {
    return HoldsAny(arch, {"zn2c00"});
}

// The same generation of fabric as the short switch-box list.
bool ClocksUseEnableDuty(const std::string& arch) {
    return HasShortSwitchBoxList(arch);
}

bool HasEdgeClockTopBottom(const std::string& arch) {
    return IsZn2c00Arch(arch) || InList(arch, kEdgeClockTopBottomArchs);
}

bool HasEdgeClockLeftRight(const std::string& arch) {
    return IsBf7p00Arch(arch) || InList(arch, kEdgeClockLeftRightArchs);
}

bool HasUnboundedRoutingEstimate(const std::string& arch) {
    return arch == "rv7c00";
}

bool EstimatesIsbOnLuts(const std::string& arch) {
    return IsZn2c00Arch(arch) ||
           InList(arch, {"rv7c00", "kt7c00", "zn3c00a", "zn3c00f", "rv7d00", "wd7c00", "wd7r00"});
}

bool UsesSdcDllType(const std::string& family) {
    return InList(family, kSdcDllFamilies);
}

bool HasNoDqsVccCurrent(const std::string& arch) {
    return InList(arch, kNoDqsVccArchs);
}

bool HasDqsAuxDynamic(const std::string& arch) {
    return InList(arch, kDqsAuxArchs);
}

bool LeavesGlobalBuffersToVccpg(const std::string& arch) {
    return HasStandbyReferences(arch) || IsBf7p00Arch(arch);
}

bool HasStandbyReferences(const std::string& arch) {
    return IsZn2c00Arch(arch) || InList(arch, kAlwaysOnGroupArchs);
}

const char* SecondFlashItem(const std::string& device) {
    for (const DeviceItem& d : kSecondFlash) {
        const std::string pattern = d.pattern;
        bool match = pattern.size() <= device.size();
        for (size_t i = 0; match && i < pattern.size(); ++i)
            match = pattern[i] == '?' || pattern[i] == device[i];
        if (match) return d.item;
    }
    return "";
}

bool HasBandgapController(const std::string& family, const std::string& device) {
    return family == "Quenra2" && device.find("HC") == std::string::npos;
}

// ---- I/O architectures ------------------------------------------------------

namespace {

const List kPioTypeArchs = {"gy7s00", "lancet",  "rv7c00",  "kt7c00", "rv7d00",
                            "bf7p00", "bf7p00m", "bf7p00g", "pl7w00", "cu7s00",
                            "zn2c00", "zn3c00a", "zn3c00f", "wd7c00", "wd7r00"};
const List kStandardIoArchs = {"gy7s00", "lancet", "rv7c00", "kt7c00"};
const List kTrueDifferentialArchs = {"gy7s00",  "lancet",  "rv7c00", "kt7c00", "rv7d00",
                                     "zn3c00a", "zn3c00f", "wd7c00", "wd7r00"};
const List kConvertBackArchs = {"gy7s00", "gy7scm00", "lancet", "corvina"};
const List kPlainSleepArchs = {"pl7w00", "cu7s00"};
const List kTerminationOnVccioArchs = {"gy7s00",  "lancet",  "rv7c00", "kt7c00", "zn2c00",
                                       "zn3c00a", "zn3c00f", "rv7d00", "bf7p00", "pl7w00",
                                       "cu7s00",  "wd7c00",  "wd7r00"};
const List kBankDiffInputStandbyArchs = {"zn2c00", "bf7p00", "pl7w00", "cu7s00"};
const List kBidiDiffBankArchs = {"hq7g00", "hq7g00p", "zn3c00a", "zn3c00f",
                                 "rv7d00", "wd7c00",  "wd7r00"};
const List kPowerGuardFamilies = {"Quenra2",       "Quenra3L", "Quenra3LF", "Orvan4",
                                  "Rail Keeper 2", "Quenra3D", "Dunmar"};

// The zn2c00 family and the bf7p00 codes, by substring.
bool IsZn2c00OrBf7p00(const std::string& arch) {
    return HoldsAny(arch, {"zn2c00", "bf7p00"});
}

}  // namespace

bool HasPioTypeNames(const std::string& arch) {
    return InList(arch, kPioTypeArchs);
}
bool ClassifiesIoByStandard(const std::string& arch) {
    return InList(arch, kStandardIoArchs);
}
bool HasTrueDifferentialList(const std::string& arch) {
    return IsZn2c00OrBf7p00(arch) || InList(arch, kTrueDifferentialArchs);
}
bool HalvesTrueDifferentialInputs(const std::string& arch) {
    return HoldsAny(arch, {"bf7p00"});
}
bool ConvertsIoTypesBack(const std::string& arch) {
    return InList(arch, kConvertBackArchs);
}
bool MergesPureInputTypes(const std::string& arch) {
    return HoldsAny(arch, {"bf7p00"}) || InList(arch, kPlainSleepArchs);
}
bool KeepsIoTypeNamesInSleep(const std::string& arch) {
    return HoldsAny(arch, {"bf7p00"}) || InList(arch, kPlainSleepArchs);
}
bool HasIologicDynTerm(const std::string& arch) {
    return InList(arch, {"gy7s00", "lancet"});
}
bool HasAilDynTerm(const std::string& arch) {
    return arch == "gy7scm00";
}
bool HasAilStaticTerm(const std::string& arch) {
    return InList(arch, {"gy7s00", "lancet", "gy7scm00"});
}
bool CountsBidiInputCapacitance(const std::string& arch) {
    return InList(arch, {"rv7c00", "kt7c00"});
}
bool ReadsTerminationOnVccio(const std::string& arch) {
    return InList(arch, kTerminationOnVccioArchs);
}
bool ListsUnreachableBanks(const std::string& arch, const std::string& package) {
    return InList(arch, {"zn2c00a", "zn2c00ap"}) || package.find("WLCSP") != std::string::npos;
}
bool HasBankDiffInputStandby(const std::string& arch) {
    return InList(arch, kBankDiffInputStandbyArchs);
}
bool HasBidiDiffBankTerm(const std::string& arch) {
    return InList(arch, kBidiDiffBankArchs);
}
bool HasPowerGuardColumn(const std::string& family) {
    return InList(family, kPowerGuardFamilies);
}

// ---- SERDES, PCS and DSP ------------------------------------------------------

bool UsesOrvan4SerdesForms(const std::string& f) {
    return InList(f, {"Orvan4", "Orvan4UM", "Orvan5UM", "Orvan5UM5G"});
}
bool BuildsPcsModeFromSettings(const std::string& arch) {
    return InList(arch, {"gy7s00", "lancet"});
}
bool CountsPcsBlocks(const std::string& arch) {
    return InList(arch, {"gy7s00", "lancet", "rv7d00"});
}
bool HasTxDisabledEntry(const std::string& arch) {
    return arch == "rv7c00";
}
bool HasPcsHalvesUnused(const std::string& arch) {
    return InList(arch, {"bf7p00m", "bf7p00g"});
}
bool HasDspMiscTerm(const std::string& arch) {
    return InList(arch, {"rv7c00", "kt7c00"});
}

}  // namespace pwc
