// PC_ENG: the calculation engine bound to one device and one open project.
//
// One class, many files: each group of members below names the file that
// defines it, so a member is found from its name.
#ifndef PWC_BASPCENGIN_H
#define PWC_BASPCENGIN_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include "baspcpanel/pc_panel.h"
#include "pd_data.h"

// One entry of a supply category: a bank or group number and a supply name.
struct _SUPPLY {
    std::string number;
    std::string supply;
};

using StandbyMap = std::map<std::string, bool*>;

class PC_ENG {
  public:
    // ---- Life and device binding (eng_setup.cpp) ------------------------
    PC_ENG(char** device, PD_DATA* project, std::string runningMode, bool bankFlag,
           std::string pfrA, std::string pfrB, std::string pfrPath, std::string inputType,
           std::string outputType, std::string bidiType, std::vector<std::string>* inputList,
           std::vector<std::string>* outputList, std::vector<std::string>* bidiList,
           std::string oldFamily, bool estimation, std::string constraintFile,
           std::string debugLog);
    ~PC_ENG();
    PC_ENG(const PC_ENG&) = delete;
    PC_ENG& operator=(const PC_ENG&) = delete;

    bool SetFamilySwitching(char** device, PD_DATA* project, const std::string& mode,
                            const std::string& oldFamily, const std::string& inputType,
                            const std::string& outputType, const std::string& bidiType,
                            std::vector<std::string>* inputList,
                            std::vector<std::string>* outputList,
                            std::vector<std::string>* bidiList, bool estimation);
    bool SetupPowerData(const std::string& a, const std::string& b, const std::string& c);
    bool HelperSetupPowerData(PD_DATA* target, char* name);
    void SetupKey2ColumnMap();
    std::string GetColumnNamefromKey(const std::string& key, const std::string& section) const;

    static bool getPwrStatus(const std::string& family, const std::string& key, std::string& status,
                             std::string& dataValues);
    std::string GetPwrStatus();
    std::string GetRevision();
    bool IsProcessTypeAvailable(const std::string& process);
    bool IsWorstTypeAvailable();
    std::vector<std::string> GetAvailableProcessType();
    void SetProcessType(const char* name);
    void SetWorstType();
    void SetTypicalType();
    const char* GetProcessType() const { return processType; }

    // Device strings: 0 archName, 1 family, 2 device, 3 package, 4 speed,
    // 5 operating condition, 6 part name.
    const char* DeviceString(int i) const { return devStr[i]; }
    const char* ArchName() const { return devStr[0]; }
    const char* FamilyName() const { return devStr[1]; }
    const char* DeviceName() const { return devStr[2]; }
    const char* PackageName() const { return devStr[3]; }
    const char* SpeedGrade() const { return devStr[4]; }
    const char* OperatingName() const { return devStr[5]; }
    // Device key of the process tables: device_package_speed_operating letter.
    std::string DeviceProcessKey() const;
    std::string DevicePackageKey() const;

    PD_DATA* GetPwrData() const { return pwrData; }
    PD_DATA* GetPqnData() const { return pqnData; }
    PD_DATA* GetPgtData() const { return pgtData; }
    PD_DATA* GetPwdData() const { return pwdData; }
    PD_DATA* GetPtdData() const { return ptdData; }
    PD_DATA* GetPwiData() const { return pwiData; }
    PD_DATA* GetPcfData() const { return pcfData; }
    PD_DATA* GetPefData() const { return pefData; }
    PD_DATA* GetProject() const { return project; }

    // ---- Panel set-up (eng_panels.cpp) ----------------------------------
    void SetupPanels();
    void SetupSummary();
    void SetupPanels2();
    // The names and values by which a formula sees a row (data columns, then
    // the supplies, "DPM", "TJ" and the device settings).
    std::vector<std::string> GetArrayOfColumnNames(PD_TABLE* table, int* count);
    std::vector<std::string> GetArrayOfColumnValues(PD_TABLE* table, int row, int* count);
    int getColumnCountMinusPwrColumn(PD_TABLE* table) const;
    // The temperature the models use now: the trial junction during an
    // iteration, the ambient otherwise.
    std::string CurrentTJ() const;

    // ---- Defaults and standby controls (eng_defaults.cpp) ---------------
    void SetDefaultParameter();
    void SetPowerControlDefault();
    static void Map_Initialize(StandbyMap& map, bool value);
    static void SetStandbyControlFromPcf(PD_KEYSECT* section, StandbyMap* map);
    static void SetStandbyControlToPcf(PD_KEYSECT* section, StandbyMap map);
    void SetThetaBoardSelectionMap();
    void SetInOutBidiVector();

    // ---- Calculation driver and host operations (eng_driver.cpp) --------
    int Calculate();
    void Calculator();
    int ChangeDevice(char** device);
    void ClearPanels(std::vector<PC_PANEL*>* panels);
    PC_PANEL* GetPanel(int index) const;
    const char* GetPanelName(int index) const;
    int GetPanelIndex(const std::string& name) const;
    static int GetPanelIndex(const std::string& name, const std::vector<PC_PANEL*>& panels);
    int GetNumOfPanels() const { return static_cast<int>(panels.size()); }
    PC_PANEL* GetSummaryPanel() const;
    PD_TABLE* GetSupplyTable() const;
    PD_TABLE* GetPGSupplyTable() const;
    PD_TABLE* GetCurrentTable() const;
    PD_TABLE* GetPowerTable() const;
    PD_TABLE* GetBlockTable() const;
    PD_TABLE* GetPeakStartupTable() const;
    std::string GetTotalPower() const;
    void DumpPanels() const;
    std::string GetPowerModeType() const;
    void SetPowerModeType(const std::string& mode);
    int GetPowerModeFlag() const { return powerMode; }
    bool SetEstimationMode(const std::string& level);
    const std::string& GetEstimationMode() const { return estimationLevel; }
    bool SetThetaOption(const std::string& option, const std::string& value);
    void SetAmbientTemperature(const std::string& text) { AmbientTemperature = text; }
    void SetASCcalculator(const std::string& text);
    bool GetASCcalculator() const { return ascCalculator; }
    void SetDefaultFreq(double value);
    void SetDefaultAF(double value);
    double GetDefaultFreq() const { return defaultFreq; }
    double GetDefaultAF() const { return defaultAF; }
    int UpdateAllFrequencies(const std::string& clock, const std::string& freq);
    void SetFrequency(PC_PANEL* panel, const std::string& clock, const std::string& freq);
    void UnitTest() {}
    int GetIterationCount() const { return iterationCounter; }

    // ---- Supplies, multipliers and categories (eng_supplies.cpp) --------
    bool HasSupply(const std::string& name) const;
    double GetSupply(const char* name) const;
    double GetMult(const char* name) const;
    void SetSupply(const char* name, const char* value);
    void SetMult(const char* name, const char* value);
    std::string GetVDPM(const std::string& supply, const std::string& column) const;
    std::string GetVDPMCategory(const std::string& supply, const std::string& column,
                                const std::string& number) const;
    std::string FindSupplyCategory(const std::string& name, const std::string& number) const;
    void SetupSupplyCategory();
    void UpdateVDPMVoltage(const std::string& supply, const std::string& number);
    void updataVDPM(double value, const std::string& supply);
    void UpdateDPM(const std::string& table, const std::vector<std::string>& banks,
                   std::vector<std::string>& voltages, std::string* dpm);
    char* ListOfSupplies() const;
    bool IsSupplyValid(const char* name, const char* value) const;
    bool IsMultValid(const char* name) const;
    std::string GetSuupliesValueFromPwr(const std::string& supply, const std::string& column) const;
    std::string GetPwrSupplyValue(const std::string& supply, const std::string& column) const;
    void TranslateSupplyPCFtoPWR(const std::string& name, std::string& out) const;
    void TranslateSupplyPWRtoPCF(const std::string& name, std::string& out) const;
    // Name of the constant member for a `.pwr` supply name; "" when unknown.
    std::string GetKsupply(const std::string& supply) const;
    double FindCorrectSupply(const std::string& supply, const std::vector<std::string>& names,
                             const std::vector<std::string>& values) const;
    bool HasVccpg() const;
    const std::map<std::string, std::vector<_SUPPLY>>& GetSupplyCategories() const {
        return supplyCategory;
    }

    // ---- Calculator constants (eng_supplies.cpp) ------------------------
    // One text per supply factor ("Kvcc", ...), "0" until computed.
    struct KConstant {
        const char* kName;   // formula variable
        const char* supply;  // `.pwr` supply it scales
    };
    static const std::vector<KConstant>& KConstants();
    // The text of a constant by its variable name; null for an unknown name.
    std::string* KValue(const std::string& kName);
    void ResetConstants();

    // ---- Saving (eng_save.cpp) --------------------------------------------
    PD_DATA* SaveAs(const char* path, int format);
    PD_DATA* SaveAsTempPCF();

    // ---- Totals (eng_totals.cpp) ---------------------------------------
    int UpdatePeakStartupTable();
    int MergePFRPwr(const std::string& path, const std::string& name);

    // ---- Thermal (eng_thermal.cpp) ---------------------------------------
    void CalculateJunctionTemp();
    // Column of the `.ptd` "Format" row whose "Device_Package" matches the key
    // ("?" in the table matches any character); "0" when none.
    std::string GetTheta(const std::string& key, const std::string& column) const;

    // ---- Current models (baspcformula/*.cpp) -----------------------------
    // Each file of baspcformula defines the members of its kind: equations
    // (look-up, forms, constants), dynamic, leakage, bias, and the per-block
    // process members.
    void Detect5thpolyEquation();
    void InitConstants(const std::vector<std::string>& names,
                       const std::vector<std::string>& values);
    double ProcessLogicDynVcc(const std::string& panel, const std::vector<std::string>& names,
                              const std::vector<std::string>& values, const std::string& supply);
    double ProcessLogicLeakUsedVcc(const std::string& panel,
                                   const std::vector<std::string>& names,
                                   const std::vector<std::string>& values,
                                   const std::string& supply);
    double ProcessLogicBiasUsedVcc(const std::string& panel,
                                   const std::vector<std::string>& names,
                                   const std::vector<std::string>& values,
                                   const std::string& supply);
    double ProcessLogicLeakUnused(const std::string& panel, const std::vector<std::string>& names,
                                  const std::vector<std::string>& values,
                                  const std::string& supply);
    double ProcessLogicBiasUnused(const std::string& panel, const std::vector<std::string>& names,
                                  const std::vector<std::string>& values,
                                  const std::string& supply);
    // ---- end of current models -------------------------------------------

    // ---- Tab calculators (eng_logic.cpp, ...) ----------------------------
    void LogicBlockCalculation();

    // ---- Banks and I/O (eng_banks.cpp, eng_io.cpp) -----------------------
    void SetBankInformation();
    void BankDo();
    void IOtermDo();
    int IotypeDesignRulecheck();

    // ---- Always-on blocks (eng_misc.cpp) ---------------------------------
    void setBandgapControllert();

    // ---- Estimation (baspcestimode/eng_estimation.cpp) -------------------
    void ResetHidenDataAll();
    void EstimationModeCheck();
    void ProcessEstimationMode();

    // ---- Statistics and debug panels (baspcdatadriven/eng_statistics.cpp)
    void CreateStatisticTable();
    void setClockDCCMap();
    void setClockOscList();
    void GenerateDebugPanelHTML(const std::string& debugLog);
    void GetPower2DebugPanels(std::vector<PC_PANEL*>* list);

    // ---- Exchange files (eng_constraints.cpp, eng_pfr.cpp) ---------------
    int GetUserConstraints(const std::string& path);
    int ReadPFRFile(const std::string& pwrName, const std::string& a, const std::string& b,
                    const std::string& c, const std::string& arch);
    void setupASCsupply();

    // ---- Thermal settings (eng_defaults.cpp, eng_thermal.cpp) ------------
    std::string AmbientTemperature;
    std::string JunctionTemperature;
    std::string MaxSafeAmbient;
    std::string ThetaJA;
    std::string OperatingCondition;
    unsigned char JunctionDone = 0;
    unsigned char SingleSafeAmbientPass = 0;
    std::string ThetaOption, ThetaUserDefined, BoardSelection, HeatSinkSelection;
    std::string AirFlowSelection, CustomHeatSink, ThetaSACustom;
    std::string ThetaJAModel, ThetaJB, ThetaBA, ThetaJC, ThetaSA;
    std::string ThetaJAUserSet, ThetaJBUserSet, ThetaBAUserSet, ThetaJCUserSet, ThetaSAUserSet;
    std::map<std::string, std::string> thetaShortForm;

    // Graph settings (read from "Settings").
    std::string SectionX, SectionY, TempAmbX, TempAmbY, FreqX, FreqY;
    double SectionLowerLimit = 0, SectionUpperLimit = 0, SectionResolution = 0;
    double TempAmbLowerLimit = 0, TempAmbUpperLimit = 0, TempAmbResolution = 0;
    double FreqLowerLimit = 0, FreqUpperLimit = 0, FreqAmbResolution = 0;
    bool graphDirty = false, graphProcessing = false;

    // Project texts.
    std::string DesignName, ProjFamily, ProjDevice, ProjPackage, ProjSpeed, ProjPartName;
    std::string SoftwareMode, reportFormat, baseIOType, voltageList;
    std::string DrcMessage;
    int DrcErrorCount = 0;

    // Standby controls: four flags and the maps by block kind.
    bool DisableBandgap = false, DisablePor = false, DisableDll = false, DisableOsc = false;
    StandbyMap mapInRd, mapSlewrate, mapPg, mapLVDS, mapPLL, mapPUSL, mapFABA, mapPCS, mapPCSPLL,
        mapDDRDLL, mapMIPI;
    bool GetStandbyFlag(const std::string& key) const;

    std::set<std::string> ioTypesWithStandby;

  private:
    void CompleteProject();
    void AddPowerColumns(PD_TABLE* table, const std::string& supply);
    void AddTotalTable(PC_PANEL* panel);
    void FillSupplyRow(PD_TABLE* vdpm, const std::string& pcfName, const char* defaultText);
    PD_TABLE* SummaryTable(const char* name) const;

    // Device.
    char devStr[7][256] = {};
    char processType[16] = {};

    // Data files.
    PD_DATA* pwrData = nullptr;
    PD_DATA* pwdData = nullptr;
    PD_DATA* pwiData = nullptr;
    PD_DATA* pgtData = nullptr;
    PD_DATA* pqnData = nullptr;
    PD_DATA* ptdData = nullptr;
    PD_DATA* pcfData = nullptr;
    PD_DATA* pefData = nullptr;
    PD_DATA* project = nullptr;  // the host's

    // Panels.
    std::vector<PC_PANEL*> panels;
    std::string currentPanelName;
    std::vector<PC_PANEL*>* debugPanels = nullptr;

    // Modes.
    std::string runningMode;
    bool bankFlag = false;
    int powerMode = 0;
    bool estimationFlag = false;
    std::string estimationLevel;
    bool familySwitching = false;
    std::string fallbackInput, fallbackOutput, fallbackBidi;
    std::vector<std::string> oldInputTypes, oldOutputTypes, oldBidiTypes;
    bool ascCalculator = false;
    bool debugHtml = false;
    int unusedIODevice = 1;
    int iterationCounter = 0;
    double defaultFreq = 0.0;
    double defaultAF = 10.0;
    std::string debugLogText;

    // Supplies.
    std::vector<_SUPPLY> supplies;
    std::map<std::string, std::vector<_SUPPLY>> supplyCategory;
    std::set<std::string> supplyCategoryNames;
    std::vector<std::string> kValues;  // parallel to KConstants()
    std::string regulatedVcc, regulatedVccpll;

    // Formula key to column, per `.pgt` table.
    std::map<std::string, std::map<std::string, std::string>> key2Column;

    // Storage behind the standby maps (stable addresses).
    std::map<std::string, bool> standbyFlags;
};

#endif
