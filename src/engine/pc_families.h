// Family and architecture lists. Each list the engine tests by name lives here
// once, as data, behind a named question; code never repeats a name chain.
#ifndef PWC_PC_FAMILIES_H
#define PWC_PC_FAMILIES_H

#include <string>
#include <vector>

namespace pwc {

// Family display names ---------------------------------------------------

// Cells of these families are rounded to "%.6lf", all others to "%.4lf".
bool IsSixDigitFamily(const std::string& family);
// Families whose power matrices start and total at "%.6lf" (the six-digit
// families less "Orvan4U" and "Orvan4UM").
bool IsSixDigitMatrixFamily(const std::string& family);
// Families that write the device-wide standby controls of a project.
bool HasStandbyControls(const std::string& family);
// Families whose projects gain "BANDGAP" and "POR" tables when they lack them.
bool HasBandgapPorTables(const std::string& family);
// Families whose projects gain an "MCLK" table (with or without "STANDBY").
bool HasMclkTable(const std::string& family);
// "MCLK" without its "STANDBY" column.
bool HasMclkWithoutStandby(const std::string& family);
// Families whose empty "MCLK" table gets one row of defaults at set-up.
bool GetsDefaultMclkRow(const std::string& family);
// Families with the two-key PLL standby map ("DisablePLL0", "DisablePLL1").
bool HasTwoPllStandbyKeys(const std::string& family);
// Families with the quad/dual SERDES channel and hard-IP standby controls.
bool HasSerdesStandbyControls(const std::string& family);
bool HasQuadPcsStandby(const std::string& family);  // quad channels: "Orvan4"
bool HasDualPcsStandby(const std::string& family);  // dual channels
// Families with MIPI D-PHY supplies and standby keys.
bool HasDphy(const std::string& family);
// Families whose reports leave the EFB's "UFM" table out of its counts.
bool LeavesUfmOutOfReports(const std::string& family);
// Substring families: "Jorvik" also covers "JorvikF".
bool IsJorvikFamily(const std::string& family);
bool IsOrvan4UOr5UFamily(const std::string& family);
// The family that reads its supplies from "POWER CATEGORY".
bool UsesPowerCategory(const std::string& family);
// Families whose "Vcc" and "Vccpll" names carry the " c"/" e" device tail.
bool HasCoreSupplyDeviceTail(const std::string& family);
// Families that save "ASC CURRENT" (Quenra2 only with an "HC" device).
bool SavesAscCurrent(const std::string& family, const std::string& device);

// Families whose "S" parts share the thermal data of the plain part.
bool SharesPlainPartThermalData(const std::string& family);

// Packages with one D-PHY instead of two.
bool IsSingleDphyPackage(const std::string& package);
// The digits behind the D-PHY supply names of a package: "0" and "1" for two
// copies, the bare name ("") for one.
const std::vector<std::string>& DphyCopySuffixes(const std::string& package);

// Family to archName for the families found without an open device; any
// other family text is its own archName.
std::string ArchNameOfFamily(const std::string& family);

// Architectures ----------------------------------------------------------

// The "bf7p00" architectures: a wider I/O voltage list and a PLL whose VCO
// averages three frequencies.
bool IsBf7p00Arch(const std::string& arch);
// I/O voltage list of the architecture.
const char* VoltageListOfArch(const std::string& arch);
// Architectures whose formulas also see "archName" and the regulated core
// voltage ("zn2c00" and its variants by substring).
bool PassesArchAndOverride(const std::string& arch);
// Architectures whose switch boxes are counted as "ISB" and "ISBCLK" only.
bool HasShortSwitchBoxList(const std::string& arch);
// The architecture with supply categories and port files: its totals go by
// category and its "PFR_" supplies lose the prefix in column names.
bool IsPfrArch(const std::string& arch);
// Architectures whose "HE"/"HC" parts load the "hp" power file.
bool HasHighPerformancePowerFile(const std::string& arch);
// The "zn2c00" architectures (by substring): their clock items' leakage A is
// scaled as a capacitance (1e-12) rather than in microamperes.
bool IsZn2c00Arch(const std::string& arch);
// Architectures whose clock activity is the row's clock-enable duty cycle
// rather than 100 %.
bool ClocksUseEnableDuty(const std::string& arch);
// Architectures with top and bottom edge-clock buffers ("Etb").
bool HasEdgeClockTopBottom(const std::string& arch);
// Architectures with left and right edge-clock buffers ("Elr").
bool HasEdgeClockLeftRight(const std::string& arch);
// The architecture whose routing estimate is never bounded by the device.
bool HasUnboundedRoutingEstimate(const std::string& arch);
// Architectures whose estimated logic rows put the whole switch-box use on
// "# ISBLUT" as well.
bool EstimatesIsbOnLuts(const std::string& arch);

// The clock-management and always-on blocks ------------------------------

// Families whose "DLL" rows are of type "SDCDLLA".
bool UsesSdcDllType(const std::string& family);
// Architectures that carry the DQS in another way: its VCC members give 0.
bool HasNoDqsVccCurrent(const std::string& arch);
// Architectures whose DQS also switches on VCCAUX.
bool HasDqsAuxDynamic(const std::string& arch);
// Architectures that leave the global buffers to "Vccpg" and count the
// power-on reset with the always-on parts.
bool LeavesGlobalBuffersToVccpg(const std::string& arch);
// Architectures whose references have standby entries.
bool HasStandbyReferences(const std::string& arch);
// The second flash size of a device ("Flash_10000@", "Flash_640@"), or "".
const char* SecondFlashItem(const std::string& device);
// The bandgap controller: family "Quenra2" on a device without "HC".
bool HasBandgapController(const std::string& family, const std::string& device);

// I/O architectures --------------------------------------------------------

// Architectures whose I/O types map to the PIO types "SingleEndIn_<code>",
// "SingleEndOut", "Diffin", "Diffout" of their power data.
bool HasPioTypeNames(const std::string& arch);
// Architectures that classify an I/O type by its standard alone (the first
// token) and look up the output voltage of the standard with its drive.
bool ClassifiesIoByStandard(const std::string& arch);
// Architectures with the long list of true differential standards.
bool HasTrueDifferentialList(const std::string& arch);
// Architectures that count a true differential input pair as one input.
bool HalvesTrueDifferentialInputs(const std::string& arch);
// Architectures whose I/O types are converted back to the device's own
// spelling of attributes.
bool ConvertsIoTypesBack(const std::string& arch);
// Architectures whose pure input types merge with the family's defaults.
bool MergesPureInputTypes(const std::string& arch);
// Architectures whose I/O types keep their names in sleep (no "-sleep").
bool KeepsIoTypeNamesInSleep(const std::string& arch);
// Architectures whose I/O rows add the register term of "IOLOGIC".
bool HasIologicDynTerm(const std::string& arch);
// Architectures with the "AIL" item of "IOLOGIC": in the dynamic current,
// and in the static currents.
bool HasAilDynTerm(const std::string& arch);
bool HasAilStaticTerm(const std::string& arch);
// Architectures whose bidirectional rows also switch the input capacitance.
bool CountsBidiInputCapacitance(const std::string& arch);
// Architectures that read the termination coefficients on "VCCIO".
bool ReadsTerminationOnVccio(const std::string& arch);
// Banks the user cannot reach are listed and counted on these architectures
// and packages.
bool ListsUnreachableBanks(const std::string& arch, const std::string& package);
// Architectures whose differential input bank term has a standby form.
bool HasBankDiffInputStandby(const std::string& arch);
// Architectures with the bank term of bidirectional differential pairs.
bool HasBidiDiffBankTerm(const std::string& arch);
// Families whose "Bank Voltage" rows show the power guard ("PG").
bool HasPowerGuardColumn(const std::string& family);

// SERDES, PCS and DSP ------------------------------------------------------

// Families whose channels run by "Mode" ("Tx Only", "Rx Only") at their own
// Tx and Rx data rates: the Orvan4 forms of the PCS and SERDES members.
bool UsesOrvan4SerdesForms(const std::string& family);
// Architectures whose PCS mode is built from the emphasis and gearing cells.
bool BuildsPcsModeFromSettings(const std::string& arch);
// Architectures whose PCS dynamic current counts the "PCS" column rather
// than "Channels".
bool CountsPcsBlocks(const std::string& arch);
// Architectures whose transmitter has a "TX_DISABLED" entry for a channel
// without pre-emphasis.
bool HasTxDisabledEntry(const std::string& arch);
// Architectures whose free PCS also counts its Tx and Rx halves on VCC.
bool HasPcsHalvesUnused(const std::string& arch);
// Architectures whose DSP slices also switch their shared "MISC" part.
bool HasDspMiscTerm(const std::string& arch);

}  // namespace pwc

#endif
