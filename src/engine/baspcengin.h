// PC_ENG: the calculation engine bound to one device and one open project.
//
// One class, many files: each group of members below names the file that
// defines it, so a member is found from its name.
#ifndef PWC_BASPCENGIN_H
#define PWC_BASPCENGIN_H

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "baspcpanel/pc_panel.h"
#include "pd_data.h"

// One entry of a supply category: a bank or group number and a supply name.
struct _SUPPLY {
    std::string number;
    std::string supply;
};

// One I/O bank of the device, from its "Bank" and "Bank PIO Cells" cells of
// the device's "Format" row.
struct BANKIO {
    bool user = false;  // open to the user
    int id = -1;
    std::string name;  // the number as text
    int ioCount = 0;   // bonded I/O
    int pioCount = -1;
    std::set<std::string> vccioTypes;
    std::set<std::string> vccios;  // "Vccio x" rows the bank can take
};
bool bankidsort(const BANKIO& a, const BANKIO& b);

// One I/O row in use while a bank's voltage is decided.
struct bankdata {
    std::string type;
    bool hasInput = false;
    bool hasOutput = false;
    bool hasBidi = false;
};

// One I/O group of the termination tab.
struct iodata {
    std::string name;
    int inputs = 0;
    int outputs = 0;
    int bidi = 0;
    int bank = 0;
    double frequency = 0.0;  // MHz
};

// One port of the firmware-resilience block, from its port files.
struct _ICCPORT {
    std::string name;
    std::string iotype;     // "LVCMOS18-8mA-SLEW:FAST" and the like
    std::string direction;  // "Input", "Output" or "Bidi"
};

// One point of a graph sweep.
struct grpdata {
    double x = 0.0;
    double y = 0.0;
};

using StandbyMap = std::map<std::string, bool*>;

// One report file the engine tried to write, and whether it now stands whole.
struct ReportFileResult {
    std::string path;
    bool written = false;
};

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
    // What every row sees behind its own columns: the supplies by their
    // `.pwr` names, "DPM", "TJ" and the device settings; names and values.
    void AppendRowContextNames(std::vector<std::string>& names) const;
    void ForRowContextValues(const std::function<void(const char*)>& put) const;
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
    // Writes the project (format 0 binary, else text) and makes the new data
    // the engine's project: the previous project object, the host's included,
    // is deleted, and the engine owns and deletes the new one.
    PD_DATA* SaveAs(const char* path, int format);
    // The same data, not written; the caller owns it.
    PD_DATA* SaveAsTempPCF();

    // ---- Totals (eng_totals.cpp) ---------------------------------------
    void CalculateTotalPower();
    void CalculateTotalPowerCategory();
    void DataValuePrecisionAdjustment();
    int UpdatePeakStartupTable();
    int MergePFRPwr(const std::string& path, const std::string& name);
    bool HasVccbAndVccxp() const;
    // Columns whose names hold "Pwr (W)".
    std::vector<int> GetPowerColumnIndexVector(PD_TABLE* table) const;
    double GetTotalPowerEachPanel(const std::string& name) const;
    double GetTotalSumRowDData(PD_TABLE* table, int column, int rows) const;
    int GetTotalSumRowData(PD_TABLE* table, int column, int rows) const;
    double GetTotalRowButLastCol(PD_TABLE* table, int row) const;
    double GetTotalRealRowButFirstCol(PD_TABLE* table, int row) const;
    double GetTotalRealRowButFirstSecondCol(PD_TABLE* table, int row) const;
    // The supply-by-block matrices, in watts and in amperes.
    void CreatePowerMatrices();
    void SaveStaTable(const std::string& supply, double value, const std::string& block,
                      PD_TABLE* table);
    void SaveStaTable(const std::string& supply, const std::string& value, const std::string& block,
                      PD_TABLE* table);
    double GetStaTable(const std::string& supply, const std::string& block, PD_TABLE* table) const;
    void GetTotalStaTableCount(PD_TABLE* table);
    PD_TABLE* GetPowerMatrix() const { return powerMatrix; }
    // The I/O supplies (eng_totals_io.cpp): the "Vccio" and "Vtt" rows.
    void SetIOstaVccioVttVccauxXX();
    void SetIOdynVccioVttVccauxXX();
    double HelperIOaddingSta(const std::string& kind, const std::string& code);
    double HelperIOaddingDyn(const std::string& kind, const std::string& code);
    double GetTotalColumnIfIOtype(PD_TABLE* table, const std::string& column,
                                  const std::string& kind, const std::string& code);
    // The forms of the part with supply categories: a row counts only where
    // its bank's voltage supply maps to `category` (empty: any).
    void SetIOstaVccioVttVccauxXXCategory(const std::string& category);
    void SetIOdynVccioVttVccauxXXCategory(const std::string& category);
    double HelperIOaddingStaCategory(const std::string& kind, const std::string& code,
                                     const std::string& category);
    double HelperIOaddingDynCategory(const std::string& kind, const std::string& code,
                                     const std::string& category);
    double GetTotalColumnIfIOtypeCategory(PD_TABLE* table, const std::string& column,
                                          const std::string& kind, const std::string& code,
                                          const std::string& category);
    void setStaTableForIoVttVccio(const std::map<std::string, double>& sta,
                                  const std::map<std::string, double>& dyn, PD_TABLE* table);
    int GetTotalUsedIO() const;
    PD_TABLE* GetCurrentMatrix() const { return currentMatrix; }

    // ---- Junction temperature (eng_thermal.cpp) ---------------------------
    void CalculateJunctionTemp();
    // {1 when diverged else 0, ambient, settled junction or the ambient}.
    std::vector<double> CalculateJunctionTillDiverge(double theta, double ambient);
    double CalculateJunctionByGivenAmbProcSupply(const std::string& process, double ambient,
                                                 const std::string& supply, double voltage);
    std::string GetMaxjuction(const std::string& key) const;
    // One pass over the tabs and the summary; the total power in watts.
    double CalculatePassPower();

    // ---- Theta model (eng_theta.cpp) -------------------------------------
    void ProcessTheta();
    // Column of the `.ptd` "Format" row whose "Device_Package" matches the key
    // ("?" in the table matches any character); "0" when none.
    std::string GetTheta(const std::string& key, const std::string& column) const;
    std::string ThetaDeviceKey() const;
    std::string GetThetaSelectionString() const;
    int GetNewFormatThetaJA();
    void ProcessThetaJA();
    void ProcessThetaJB();
    void ProcessThetaJC();
    void ProcessThetaBA();
    void ProcessThetaSA();
    int ThetaDRC() const;
    int SetBoardSelection(const std::string& board, std::string& theta);
    int SetHeatSinkSelection(const std::string& sink, const std::string& custom,
                             std::vector<std::string>& flows, std::string& flow,
                             std::string& theta);
    int SetAirFlowSelection(const std::string& flow, std::string& theta);
    void SetBHAGetTheta(const std::string& board, const std::string& sink, const std::string& flow,
                        const std::string& custom, std::string& theta);
    std::vector<std::string> GetBoardTypeVector() const;
    std::vector<std::string> GetHeatSinkTypeVector() const;
    std::vector<std::string> GetAirFlowTypeVector() const;

    // ---- Current models (baspcformula/*.cpp) -----------------------------
    // Each file of baspcformula defines the members of its kind: equations
    // (look-up, forms, constants), dynamic, leakage, bias, and the per-block
    // process members. Every model returns amperes for one row and supply.
    using Row = std::vector<std::string>;

    // Equations (eng_equations.cpp).
    std::string GetformulafromPqn(const std::string& section, const std::string& kind,
                                  const Row& names, const Row& values);
    std::string GetCalculationformula(const std::string& section, const std::string& kind,
                                      Row& nameList, const Row& names, const Row& values);
    bool hardCodeFormula(const std::string& section);
    bool polynomial_equation_type(const std::string& section);
    void Detect5thpolyEquation();
    bool IsPolynomialMode() const { return polynomialFlag; }
    void InitConstants(const std::vector<std::string>& names,
                       const std::vector<std::string>& values);
    static std::string Addmore2equation(const std::string& equation, const std::string& termName,
                                        const std::string& termFormula, const std::string& prefix,
                                        double value);
    const std::string& CurrentPanelName() const { return currentPanelName; }

    // Dynamic current (eng_dynamic.cpp).
    double GetIccDyn(const std::string& equationSection, const std::string& block,
                     const std::string& item, double count, std::string label,
                     const std::string& supply, double freq, double af, const Row& names,
                     const Row& values, bool fPer2);
    double GetIccDyn(const std::string& equationSection, const std::string& block,
                     const std::string& item, const std::string& column, const std::string& label,
                     const std::string& supply, double freq, double af, const Row& names,
                     const Row& values);
    double GetIccDyn(const std::string& equationSection, const std::string& block,
                     const std::string& item, double count, const std::string& label,
                     const std::string& supply, const Row& names, const Row& values);
    double GetIccDyn(const std::string& equationSection, const std::string& block,
                     const std::string& item, const std::string& column, const std::string& label,
                     const std::string& supply, const Row& names, const Row& values);
    // Coefficient given, already in farads.
    double GetIccDyn(const std::string& equationSection, const std::string& item, double count,
                     std::string label, const std::string& supply, double freq, double af, double c,
                     const Row& names, const Row& values);
    double GetIccDynFper2(const std::string& equationSection, const std::string& block,
                          const std::string& item, double count, const std::string& label,
                          const std::string& supply, const Row& names, const Row& values);
    double GetIccDynFper2(const std::string& equationSection, const std::string& block,
                          const std::string& item, const std::string& column,
                          const std::string& label, const std::string& supply, const Row& names,
                          const Row& values);
    double GetIccDynAF100(const std::string& equationSection, const std::string& block,
                          const std::string& item, double count, const std::string& label,
                          const std::string& supply, double freq, const Row& names,
                          const Row& values);
    double GetIccDynAF100(const std::string& equationSection, const std::string& block,
                          const std::string& item, double count, const std::string& label,
                          const std::string& supply, const Row& names, const Row& values);
    double GetIccDynAF100(const std::string& equationSection, const std::string& block,
                          const std::string& item, const std::string& column,
                          const std::string& label, const std::string& supply, const Row& names,
                          const Row& values);
    double GetIccDynAF100_1SS(const std::string& block, const std::string& item, double count,
                              const std::string& label, const std::string& supply, double freq,
                              const Row& names, const Row& values);
    double ProcessIccDyn(const std::string& equationSection, double freq, double af, double count,
                         double c, double voltage, const std::string& rowName,
                         const std::string& columnName, const Row& names, const Row& values,
                         const std::string& tableName);
    std::string FindFreqName(const std::string& block, const std::string& label, const Row& names,
                             const Row& values);
    std::string FindAFname(const std::string& block, const std::string& label, const Row& names,
                           const Row& values);
    std::string FindCorrectClockName(const std::string& equationSection, const std::string& block,
                                     const Row& names, const Row& values);
    double getFreqfromClockOscStatue(const std::string& clock, double freq) const;
    double getAFfromClockDCCMap(const std::string& clock, double af) const;
    double GetFreqForPLL(double freq, const Row& names, const Row& values);
    std::string FindABCDusedvalueFromPwrSupply(const std::string& supply, const std::string& block,
                                               const std::string& item, const std::string& sub,
                                               const std::string& letter);
    bool PwrDataAvailable(const std::string& block, const std::string& item);

    // Leakage current (eng_leakage.cpp).
    double GetIccLeak(const std::string& equationSection, const std::string& block,
                      const std::string& item, double count, std::string label,
                      const std::string& supply, const Row& names, const Row& values);
    double GetIccLeak(const std::string& equationSection, const std::string& block,
                      const std::string& item, const std::string& column, const std::string& label,
                      const std::string& supply, const Row& names, const Row& values);
    double GetIccLeakUnused(const std::string& equationSection, const std::string& block,
                            const std::string& item, double count, std::string label,
                            const std::string& supply, const Row& names, const Row& values);
    double GetIccLeakUnused(const std::string& equationSection, const std::string& block,
                            const std::string& item, const std::string& column,
                            const std::string& label, const std::string& supply, const Row& names,
                            const Row& values);
    double GetIccLeakDFB(const std::string& equationSection, const std::string& block,
                         const std::string& item, double count, const std::string& label,
                         const std::string& supply, const Row& names, const Row& values);
    double GetIccLeakDFB(const std::string& equationSection, const std::string& block,
                         const std::string& item, const std::string& column,
                         const std::string& label, const std::string& supply, const Row& names,
                         const Row& values);
    double GetIccLeakDFBUnused(const std::string& equationSection, const std::string& block,
                               const std::string& item, double count, const std::string& label,
                               const std::string& supply, const Row& names, const Row& values);
    double GetIccLeakDFBUnused(const std::string& equationSection, const std::string& block,
                               const std::string& item, const std::string& column,
                               const std::string& label, const std::string& supply,
                               const Row& names, const Row& values);
    double GetIccLeakAt(const std::string& equationSection, const std::string& block,
                        const std::string& item, double count, const std::string& label,
                        const std::string& supply, const Row& names, const Row& values);
    double GetIccLeakAt(const std::string& equationSection, const std::string& block,
                        const std::string& item, const std::string& column,
                        const std::string& label, const std::string& supply, const Row& names,
                        const Row& values);
    double ProcessIccLeak(const std::string& mode, double a, double b, double e, double f, double g,
                          double h, double t, double count, const std::string& rowName,
                          const std::string& columnName, const Row& names, const Row& values,
                          const std::string& tableName);
    double ProcessClockIccLeakDFB(const std::string& mode, double a, double b, double e, double f,
                                  double g, double h, double t, double count,
                                  const std::string& rowName, const std::string& columnName,
                                  const Row& names, const Row& values,
                                  const std::string& tableName);
    std::string Get_dK(const std::string& key, const Row& names, const Row& values, int count,
                       const std::string& voltageText);
    std::string GetProcessX(const Row& names, const Row& values);

    // DC bias current (eng_bias.cpp).
    double GetIccBias(const std::string& equationSection, const std::string& block,
                      const std::string& item, double count, std::string label,
                      const std::string& supply, const Row& names, const Row& values);
    double GetIccBias(const std::string& equationSection, const std::string& block,
                      const std::string& item, const std::string& column, const std::string& label,
                      const std::string& supply, const Row& names, const Row& values);
    double GetIccBiasUnused(const std::string& equationSection, const std::string& block,
                            const std::string& item, double count, std::string label,
                            const std::string& supply, const Row& names, const Row& values);
    double GetIccBiasUnused(const std::string& equationSection, const std::string& block,
                            const std::string& item, const std::string& column,
                            const std::string& label, const std::string& supply, const Row& names,
                            const Row& values);
    double GetIccBiasDFB(const std::string& equationSection, const std::string& block,
                         const std::string& item, double count, std::string label,
                         const std::string& supply, const Row& names, const Row& values);
    double GetIccBiasDFB(const std::string& equationSection, const std::string& block,
                         const std::string& item, const std::string& column,
                         const std::string& label, const std::string& supply, const Row& names,
                         const Row& values);
    double GetIccBiasDFBUnused(const std::string& equationSection, const std::string& block,
                               const std::string& item, double count, std::string label,
                               const std::string& supply, const Row& names, const Row& values);
    double GetIccBiasDFBUnused(const std::string& equationSection, const std::string& block,
                               const std::string& item, const std::string& column,
                               const std::string& label, const std::string& supply,
                               const Row& names, const Row& values);
    double GetDbiasAt(const std::string& equationSection, const std::string& block,
                      std::string item, const std::string& supply, const Row& names,
                      const Row& values);
    double GetDbiasDFB(const std::string& equationSection, const std::string& block,
                       const std::string& item, const std::string& supply, const Row& names,
                       const Row& values);
    double ProcessIccDcBias(const std::string& mode, double d, double count,
                            const std::string& rowName, const std::string& columnName,
                            const std::string& tableName);

    // Block and supply members (eng_process_logic.cpp). One term of a
    // block's sum: which model, and its arguments in the usual order.
    enum class IccModel {
        Dyn,
        DynAF100,
        DynFper2,
        Leak,
        LeakUnused,
        LeakDFB,
        LeakDFBUnused,
        Bias,
        BiasUnused,
        BiasDFB,
        BiasDFBUnused
    };
    struct IccTerm {
        IccModel model;
        std::string equationSection, block, item, count, label;
    };
    // Sum of the terms on one supply; a term's count is a column of the row.
    // The calculation log gets one summary line under logName.
    double SumIccTerms(const std::string& logName, const std::vector<IccTerm>& terms,
                       const std::string& supply, const Row& names, const Row& values);
    // The common pattern of a block X on supply S.
    double ProcessBlockDyn(const std::string& x, const std::string& supply, bool af100,
                           const Row& names, const Row& values);
    double ProcessBlockLeakUsed(const std::string& x, const std::string& supply, bool perElement,
                                const Row& names, const Row& values);
    double ProcessBlockBiasUsed(const std::string& x, const std::string& supply, bool perElement,
                                const Row& names, const Row& values);
    double ProcessBlockLeakUnused(const std::string& x, const std::string& supply, const Row& names,
                                  const Row& values);
    double ProcessBlockBiasUnused(const std::string& x, const std::string& supply, const Row& names,
                                  const Row& values);

    double ProcessLogicDynVcc(const std::string& panel, const std::vector<std::string>& names,
                              const std::vector<std::string>& values, const std::string& supply);
    double ProcessLogicLeakUsedVcc(const std::string& panel, const std::vector<std::string>& names,
                                   const std::vector<std::string>& values,
                                   const std::string& supply);
    double ProcessLogicBiasUsedVcc(const std::string& panel, const std::vector<std::string>& names,
                                   const std::vector<std::string>& values,
                                   const std::string& supply);
    double ProcessLogicLeakUnused(const std::string& panel, const std::vector<std::string>& names,
                                  const std::vector<std::string>& values,
                                  const std::string& supply);
    double ProcessLogicBiasUnused(const std::string& panel, const std::vector<std::string>& names,
                                  const std::vector<std::string>& values,
                                  const std::string& supply);
    // Process members chosen by panel name; 0 for a panel without one.
    double ProcessFormulaDynVcc(const std::string& panel, const Row& names, const Row& values);
    double ProcessFormulaDynVccaux(const std::string& panel, const Row& names, const Row& values);
    double ProcessFormulaLeakUnusedVcc(const std::string& panel, const Row& names,
                                       const Row& values);
    double ProcessFormulaBiasUnusedVcc(const std::string& panel, const Row& names,
                                       const Row& values);
    double ProcessFormulaBiasUsedVcc(const std::string& panel, const Row& names, const Row& values);
    // Routing wires and switch boxes of a logic row; the supply is the one of
    // the caller's loop ("VCC" when not given).
    double GetRoutingISBdyn(const std::string& panel, const Row& names, const Row& values,
                            const std::string& supply = "VCC");
    double GetRoutingISBleakUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply = "VCC");
    double GetRoutingISBbiasUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply = "VCC");
    double GetRoutingISBleakUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double GetRoutingISBbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply = "VCC");

  private:
    // The formula and its variable list, from a cache keyed by the formula
    // text (so edits and renamed sections cannot leave it stale).
    const std::string& FormulaFor(const std::string& section, const std::string& kind,
                                  const Row*& variables);
    const Row& VariablesOf(const std::string& formula);
    PD_PWRSECT* PwrSection(const std::string& block);
    enum class LeakKind { Used, Unused, DFBUsed, DFBUnused };
    double LeakEquation(LeakKind kind, const std::string& equationSection, const std::string& block,
                        const std::string& item, double count, const std::string& label,
                        const std::string& supply, const Row& names, const Row& values);
    double LeakHardCoded(LeakKind kind, const std::string& block, const std::string& item,
                         double count, const std::string& label, const std::string& supply,
                         const Row& names, const Row& values);
    enum class BiasKind { Used, Unused, DFBUsed, DFBUnused };
    double BiasEquation(BiasKind kind, const std::string& equationSection, const std::string& block,
                        const std::string& item, double count, const std::string& label,
                        const std::string& supply, const Row& names, const Row& values);
    double RoutingTerms(IccModel model, const std::string& supply, const Row& names,
                        const Row& values);
    // One model call with a count already read from the row.
    double CallIccModel(IccModel model, const std::string& equationSection,
                        const std::string& block, const std::string& item, double count,
                        const std::string& label, const std::string& supply, const Row& names,
                        const Row& values);
    // The slice items, their block term and the routing of a logic row for
    // one static model (used or unused leakage or bias).
    double LogicStaticTerms(IccModel perElement, const std::string& panel, const Row& names,
                            const Row& values, const std::string& supply);
    // Evaluates the bound values and writes the log and debug lines.
    // display: the equation as shown, when it differs from formula.
    double EvaluateAndLog(const std::string& formula, const Row* variables,
                          const std::string* display, const char* format, const std::string& first,
                          const std::string& second, const std::string& third,
                          const std::string& item, const std::string& supply,
                          const char* tableName);

    bool polynomialFlag = false;
    std::string defaultClockName;
    bool clockOscFlag = false, clockDCCFlag = false;
    std::set<std::string> clockOscList;
    std::map<std::string, std::string> clockDCCMap;
    // Reused per call: the bound values and the evaluator's trace.
    Row boundValues;
    std::string traceText, formulaKey;
    std::unordered_map<std::string, Row> variableCache;

    // A coefficient as FindABCDusedvalueFromPwrSupply finds it, with the
    // "Note:" line that the look-up writes on each call.
    enum class CoefficientNote { None, NoSection, NoSupply };
    struct Coefficient {
        std::string text;
        double number = 0.0;  // strtod of text
        CoefficientNote note = CoefficientNote::None;
    };
    const Coefficient& FindCoefficient(const std::string& supply, const std::string& block,
                                       const std::string& item, const std::string& sub,
                                       const std::string& letter);
    Coefficient LookUpCoefficient(const std::string& supply, const std::string& block,
                                  const std::string& item, const std::string& sub,
                                  const std::string& letter);
    std::string LookUpCoefficientText(const std::string& supply, const std::string& block,
                                      const std::string& item, const std::string& sub,
                                      const std::string& letter, CoefficientNote& note);
    // What the models read from the .pwr and .pqn data, kept while one tab is
    // calculated (a ModelCacheScope turns them on and empties them at both ends):
    // nothing edits the data files during a tab, while edits between calls
    // outside a tab must count. Temperature and cell values are never kept.
    struct ModelCaches {
        bool on = false;
        std::string key;  // reused key buffer
        // By a hash of the five texts of the look-up, which each entry keeps
        // to tell apart texts that share a hash.
        struct KeyedCoefficient {
            std::string block, item, sub, supply, letter;
            Coefficient value;
        };
        std::unordered_multimap<std::uint64_t, KeyedCoefficient> coefficients;
        std::unordered_map<std::string, std::string> processX;
        // Equation per section and kind; null: the section has none.
        std::unordered_map<std::string, const std::pair<const std::string, Row>*> formulas;
        std::unordered_map<std::string, bool> hardCoded, polynomial;
        // Before the maps, the latest answers: the calls of a row repeat a few
        // keys over and over, and comparing them is cheaper than hashing.
        struct LastProcessX {
            std::string parts[5];
            const std::string* value = nullptr;  // into processX
        } lastProcessX;
        struct RecentFormula {
            std::string section, kind;
            const std::pair<const std::string, Row>* entry;
        };
        std::vector<RecentFormula> recentFormulas;
        void Clear();
    };
    ModelCaches caches;
    // Turns the caches on for the length of one tab and empties them at both
    // ends; a tab's calculator holds one.
    struct ModelCacheScope {
        ModelCaches& caches;
        explicit ModelCacheScope(ModelCaches& c) : caches(c) {
            caches.Clear();
            caches.on = true;
        }
        ~ModelCacheScope() {
            caches.on = false;
            caches.Clear();
        }
        ModelCacheScope(const ModelCacheScope&) = delete;
        ModelCacheScope& operator=(const ModelCacheScope&) = delete;
    };
    Coefficient coefficientScratch;
    // GetProcessX and GetKsupply without the copy.
    const std::string& ProcessXText(const Row& names, const Row& values);
    const std::string& KsupplyText(const std::string& supply) const;
    mutable size_t lastKsupply = static_cast<size_t>(-1);  // KConstants() index of the last
    std::string LookUpProcessX(const std::string& process, const std::string& device,
                               const std::string& package, std::string speed,
                               const std::string& operating);
    std::string processXScratch;
    // Positions in the names of the rows a frame is working out, each found
    // once per table. Those names are one object, unchanged, for as long as
    // the frame's RowNamesScope lives, so its address identifies them.
    struct RowNamePositions {
        static constexpr int kUnknown = -2;  // not looked for yet; -1: absent
        const Row* names = nullptr;
        int freqHolder = kUnknown, afHolder = kUnknown, archName = kUnknown, device = kUnknown;
        // "Process", "Device", "Package", "Speed", "Operating", as ProcessXText reads them.
        bool processCellsKnown = false;
        int processCells[5] = {-1, -1, -1, -1, -1};
    };
    RowNamePositions rowNames;
    struct RowNamesScope {
        RowNamePositions& positions;
        RowNamesScope(RowNamePositions& p, const Row& names) : positions(p) {
            positions = RowNamePositions();
            positions.names = &names;
        }
        ~RowNamesScope() { positions = RowNamePositions(); }
        RowNamesScope(const RowNamesScope&) = delete;
        RowNamesScope& operator=(const RowNamesScope&) = delete;
    };
    // The position that `find` gives, kept in `slot` while names are the frame's.
    template <typename Find>
    int RowNamePosition(int& slot, const Row& names, Find&& find) const {
        if (&names != rowNames.names) return find();
        if (slot == RowNamePositions::kUnknown) slot = find();
        return slot;
    }
    // Whether the core supply is regulated, as PC_LATOR::IsRegulatorBeingUsed
    // tells it from the row.
    bool RowRegulated(const Row& names, const Row& values);
    // Recent "%.<n>lf" texts by the number's bits: the same coefficients,
    // frequencies and temperatures recur on every row, and printing them is
    // the dear part of binding. A pure function of its arguments.
    struct PrintedNumber {
        unsigned long long bits = 0;
        int precision = -1;
        std::string text;
    };
    PrintedNumber printedNumbers[512];
    const std::string& PrintFixed(double value, int precision);

  public:
    // ---- end of current models -------------------------------------------

    // ---- The calculator frame (eng_frame.cpp) ----------------------------
    // A process member: the current of a row on a supply, in amperes.
    using ProcessMember = double (PC_ENG::*)(const std::string& panel,
                                             const std::vector<std::string>& names,
                                             const std::vector<std::string>& values,
                                             const std::string& supply);
    using UnusedBuilder = void (PC_ENG::*)(PD_TABLE* total, std::vector<std::string>& out);
    using RowVoltage = std::string (PC_ENG::*)(const std::vector<std::string>& names,
                                               const std::vector<std::string>& values);
    using RowPricer = void (PC_ENG::*)(PD_TABLE* table, int row,
                                       const std::vector<std::string>& names,
                                       const std::vector<std::string>& values);
    using RowFilter = bool (PC_ENG::*)(const char* arg, const std::vector<std::string>& names,
                                       const std::vector<std::string>& values);
    struct RowLog {
        const char* head;
        const char* middle;  // null: the line names no row
    };
    // When a supply pass runs: always, when the summary has its voltage
    // supply, or when its `.pwr` section lists its member supply.
    enum class PassIf { Always, HasSupply, SectionHasSupply };
    // One supply of a tab's rows: which members give its currents, at which
    // voltage they become watts, and the columns they go to. A pass with no
    // fixed supply loops over "VCC" and "VCCPG" of its section (a VCCPG
    // current counts nothing in sleep), writing the running sums each time.
    struct SupplyPass {
        const char* supply;   // member supply; null: the section's VCC/VCCPG list
        const char* section;  // `.pwr` section of that list and of SectionHasSupply
        const char* voltage;  // summary supply whose "Voltage" multiplies
        PassIf runIf;
        bool updateDpm;                 // refresh the supply's DPM before the pass
        ProcessMember dyn, leak, bias;  // rows; null: no such current
        const char* dynColumn;
        const char* leakColumn;
        const char* biasColumn;
        RowLog dynLog, leakLog, biasLog;
        // The voltage of each row when it differs by row (a bank's VCCIO):
        // its text, also shown in the log; null: the pass's voltage.
        RowVoltage rowVoltage = nullptr;
        // Prices each row itself, writing the pass's columns, in place of
        // the members; null: the members.
        RowPricer rowPricer = nullptr;
        // Whether the pass prices the row, given rowIfArg; a row it passes
        // over gets "0.000000" in the pass's columns. null: every row.
        RowFilter rowIf = nullptr;
        const char* rowIfArg = nullptr;
    };
    // The device-wide row of what the design leaves free, on one supply.
    struct UnusedPass {
        const char* supply;
        const char* section;
        const char* voltage;
        PassIf runIf;
        ProcessMember leak, bias;
        const char* leakColumn;  // of the panel's last table, row 0
        const char* biasColumn;
        const char* leakLog;
        const char* biasLog;
    };
    struct TableFrame {
        const char* table;        // by name; null: the panel's table 0
        const char* memberPanel;  // the name the members are given; null: the panel's
        std::vector<SupplyPass> passes;
    };
    // "Dyn. Pwr (W)" of a row: not written, a copy of the first pass's
    // column, or the sum of the passes' columns.
    enum class PlainDyn { None, CopyFirst, SumPasses };
    // What sets one tab's calculator apart from another: its panel and
    // tables, their supply passes, the unused row and its passes.
    struct PanelFrame {
        const char* panel;
        std::vector<TableFrame> tables;
        UnusedBuilder unusedNames, unusedValues;  // null: no unused row
        std::vector<UnusedPass> unused;
        PlainDyn plainDyn;
    };
    // "<head><row><middle><current> * <volts> = <power>" to the calculation
    // log when it is open; a voltage read per row is shown as its text.
    static void LogRowPower(const RowLog& log, int row, double current, double volts,
                            const std::string* voltsText = nullptr);
    // Rows, unused row and totals of a tab.
    void RunPanelFrame(const PanelFrame& frame);
    // The pieces, for the tabs that add their own steps between them.
    void RunFrameRows(const char* panel, PD_TABLE* items, const std::vector<SupplyPass>& passes,
                      PlainDyn plainDyn);
    // The builders are given `source` when set (a tab with several row
    // tables, each with its own made-up row), else `total`; with `accumulate`
    // the passes add to the cells instead of replacing them.
    void RunFrameUnused(const char* panel, PD_TABLE* total, UnusedBuilder names,
                        UnusedBuilder values, const std::vector<UnusedPass>& passes,
                        PD_TABLE* source = nullptr, bool accumulate = false);
    // "Total Dyn. Pwr (W)" and "Total Pwr (W)" of the total table: the sums
    // of the passes' columns over the item tables, plus the total table's
    // own columns from the third on. Returns the dynamic sum.
    double FrameTotals(
        const std::vector<std::pair<PD_TABLE*, const std::vector<SupplyPass>*>>& items,
        PD_TABLE* total);
    // The engine's present settings at the end of a made-up unused row:
    // "Device", "Package", "Operating", "Speed", "TJ", "Process", "archName".
    static void AppendSettingNames(std::vector<std::string>& names);
    void AppendSettingValues(std::vector<std::string>& values) const;
    // "VCC" and "VCCPG" among the supplies of a `.pwr` section, in file order.
    std::vector<std::string> PwrSectionHasVccVccpg(const std::string& section) const;
    bool PwrSectionHasSupply(const std::string& section, const std::string& supply) const;

    // ---- Logic tab (eng_logic.cpp) -----------------------------------------
    static const PanelFrame& LogicFrame();
    void LogicBlockCalculation();
    void GetArrayOfColumnUnusedNamesLogic(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesLogic(PD_TABLE* total, std::vector<std::string>& values);

    // ---- Banks (eng_banks.cpp) ---------------------------------------------
    void SetBankInformation();
    // Parses the device's "Format" cell of "Bank" or "Bank PIO Cells":
    // "count(id-value_id-value...)".
    void SetBankPIOInformation(const std::string& column);
    void SetBanksAvailableVccio();
    void SetBankAvailableVccio(int bank);
    void BankDo();
    int BankExistingCheck(int id) const;
    int BankIsUserAvailable(const std::string& text) const;
    // "Vccio x" rows the bank can take: its record's (empty for no record).
    std::set<std::string> GetBankAllVccios(int bank) const;
    std::string GetBankDefaultVccio(int row, int bank) const;
    // Voltage texts of the supply rows of a code ("33", "3.3", "1.35" ...);
    // empty for an unknown code.
    std::string GetVccio(const std::string& code) const;
    // The voltage of a "Bank Voltage" row; "1.2" when its text names no VCCIO.
    std::string GetVccioFromBank(int row) const;
    std::string GetVtt(const std::string& code) const;
    std::string GetVttFromVccio(const std::string& code) const;
    // The row name ("Vccaux 3.3"); "Vccaux 1.2" falls back on "Vcc".
    std::string GetVccaux(const std::string& code) const;
    std::string GetVccauxFromVccio(const std::string& code) const;
    void SetBankPowerGuard(const std::string& table, const std::string& value, int row, int column);
    bool hasPowerGuardOn(const std::string& table, const std::string& bank) const;
    // What the standby logic allows in an "Allow Standby" kind of cell.
    std::string GetStandbyControl(const std::string& table, int row,
                                  const std::string& column) const;
    std::vector<std::string> GetStandbyOption(const std::string& table,
                                              const std::string& column) const;
    // The bank columns of a "Bank Voltage" row as the standby logic answers
    // them: "Yes"/"No", "ON"/"OFF" for the power guard.
    std::string GetBankSlewrate(int row) const;
    std::string GetBankPusl(int row) const;
    std::string GetBankInrd(int row) const;
    std::string GetBankLvdso(int row) const;
    std::string GetBankPG(int row) const;
    const std::vector<BANKIO>& GetBanks() const { return banks; }
    int GetNumberOfBanks() const { return numberOfBanks; }
    PD_TABLE* GetIoTable(const char* name) const;  // a table of the "I/O" tab
    int BankRowOf(const std::string& bank) const;  // its row of "Bank Voltage"
    // The VCCIO code of a bank ("33", "25", "18", "15", "12", "135").
    std::string BankVccioCode(const std::string& bank) const;
    // Voltage texts a formula sees for the row's bank: VCCIO, and the VTT of
    // its code ("0" without one, "-1" when the device lacks that row).
    int IoRowSupplyCount(PD_TABLE* table) const;
    std::vector<std::string> IoRowSupplyNames(PD_TABLE* table) const;
    void IoRowSupplyValues(PD_TABLE* table, int row, std::string& vccio, std::string& vtt) const;
    std::string VttVoltageOfCode(const std::string& code) const;
    // The supply rows of a VCCIO code; empty for a code without one.
    static std::string VttCategoryOfCode(const std::string& code);
    static std::string VccauxCategoryOfCode(const std::string& code);
    // Bank voltages fixed by the constraints file, and whether it is in force.
    std::map<std::string, std::string> bankVoltageConstraints;
    bool bankConstraintsInForce = false;

  private:
    bool BankTakesVoltage(const std::string& bank, const std::string& voltage,
                          const std::map<std::string, std::set<std::string>>& allowed) const;
    int GetAvailableBankid(PD_TABLE* table) const;
    void FillBankTable(PD_TABLE* table);
    std::string CodeOfBankRow(int row) const;
    const BANKIO* BankRecord(const std::string& name) const;
    std::string GetRememberType(const std::vector<bankdata>& rows, std::string& kind) const;
    // The bank's cell says "Yes": what the calculation goes by.
    bool BankAllows(int row, const char* column) const;
    // What the host may offer: the cell, or the bank's standby key is set.
    bool BankOffersShutOff(int row, const char* column, const char* key) const;
    // The voltage the port's interface logic fixes for the bank; empty
    // without one.
    std::set<std::string> PfrBankVccios(int bank) const;
    std::vector<BANKIO> banks;
    int numberOfBanks = 0;

  public:
    // ---- I/O standards (eng_io_types.cpp) ----------------------------------
    void GetIotypeDetailMapList(const std::string& kind);
    const std::map<std::string, std::vector<std::pair<std::string, std::string>>>&
    GetIotypeDetails() const {
        return iotypeDetails;
    }
    // 1 when the type is on the device's list of that kind: "Input",
    // "Output" or "Bidir".
    int IsOnTheListCompare(const std::string& kind, const std::string& type) const;
    // The "Bank" text of the type in the device's list of that kind.
    std::string GetOutBidInpVec(const std::string& type, const std::string& kind) const;
    static std::set<std::string> GetSetintersection(const std::set<std::string>& a,
                                                    const std::set<std::string>& b);
    // The voltage at the pad of a terminated output row.
    double FindSupplyVccioOutput(PD_TABLE* table, int row, double vccio);
    // The output voltage of a standard with its drive ("LVCMOS33_8") from the
    // fixed table; found false leaves the VCCIO.
    static double IoTypeOutputVoltage(const std::string& standard, double vccio, bool* found);
    static bool isLVDStype(const std::string& type);
    bool IsDifferentialTrueDividedBy2(const std::string& type) const;
    bool IsDifferentialTrue(const std::string& type) const;
    bool IsSingleEnd(const std::string& type) const;
    bool IsStandbyIoType(const std::string& type) const;
    static bool HasOnChipTermination(const std::string& type);
    // An output PIO type (or, where types keep their names, an output type)
    // of a single-ended standard, which drives the row's load capacitance.
    static bool IsSingleEndedOutputType(const std::string& outType);
    std::string DetermindPIOType(const std::string& kind, const std::string& text) const;
    std::string DetermineInputPIOtype(const std::string& type) const;
    std::string DetermineOutputPIOtype(const std::string& type) const;
    std::string DeterminePureInputPIOtype(const std::string& type) const;
    std::string HlpConvertIOtypeBackForSC(const std::string& type, const std::string& kind) const;
    // 1 when every bank's rows can share its voltage; complaints to DrcMessage.
    int IotypeDesignRulecheck();
    // Per bank in use, the "Vccio x" rows all its rows allow.
    std::map<std::string, std::set<std::string>> BankAllowedVccios() const;

  private:
    std::map<std::string, std::vector<std::pair<std::string, std::string>>> iotypeDetails;

  public:
    // ---- I/O and termination tabs (eng_io.cpp) -----------------------------
    void IoCalculation();
    void IoTermCalculation();
    void IOtermDo();
    const std::vector<iodata>& GetIoTermData() const { return ioTermList; }
    // Power on the VTT (tag holds "vtt") or VCCAUX supply of a code, written
    // to the cell when the table has the column; the power in watts.
    double HelperVttVccauxCalc(PD_TABLE* table, const std::string& code, int row,
                               const std::string& column, const std::string& tag, const Row& names,
                               const Row& values);
    // The voltage texts of a row's bank for the supply passes.
    std::string IoRowVccio(const Row& names, const Row& values);
    std::string IoRowVtt(const Row& names, const Row& values);

  private:
    static const std::vector<SupplyPass>& IoRowPasses();
    static const std::vector<SupplyPass>& BankRowPasses();
    static const std::vector<SupplyPass>& TermRowPasses();
    // The VTT columns of an I/O row: dynamic, leakage and bias at its code.
    void PriceIoRowVtt(PD_TABLE* table, int row, const Row& names, const Row& values);
    // The configuration bank's share of the always-on test block and JTAG.
    void AddDeviceBlocksToBank(PD_TABLE* bankTable);
    std::vector<iodata> ioTermList;

  public:
    // ---- Unused I/O (eng_io_unused.cpp) ------------------------------------
    // Sum of a count column ("# I/P", "# O/P", "# Bidi", or "all") over the
    // bank's rows of "Input Output" and "Bidi".
    int GetBankUsedIO(const std::string& bank, const std::string& kind) const;
    // Bonded less used; not clamped.
    int GetBankUnusedIO(const std::string& bank) const;
    void CalculaUnusedIOByBank();
    // The made-up row of a bank's unused pins; bank -1: the whole device.
    void GetArrayOfColumnUnusedNamesIO(int bank, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesIO(int bank, std::vector<std::string>& values);
    // The type in which unused pins count.
    const std::string& UnusedIoType() const { return baseIOType; }

  private:
    // What one pass of the unused pins covers: a bank, or the device.
    struct UnusedIoBank {
        std::string name;  // the bank's number; "-1" for the device
        int bankRow = -1;  // its row of "Bank Voltage"
        int total = 0, unused = 0;
        std::string vccio, code;  // voltage text and VCCIO code
    };
    UnusedIoBank UnusedIoBankOf(int bank);

  public:
    // ---- I/O process members (baspcformula/eng_process_io.cpp) -------------
    double ProcessPIOdyn(const std::string& panel, const std::string& supply, const Row& names,
                         const Row& values);
    double ProcessPIOleakUsed(const std::string& panel, const std::string& supply, const Row& names,
                              const Row& values);
    double ProcessPIObiasUsed(const std::string& panel, const std::string& supply, const Row& names,
                              const Row& values);
    double ProcessIOLOGICdyn(const std::string& panel, const std::string& supply, const Row& names,
                             const Row& values);
    double ProcessIOLOGICleakUsed(const std::string& panel, const std::string& supply,
                                  const Row& names, const Row& values);
    double ProcessIOLOGICbiasUsed(const std::string& panel, const std::string& supply,
                                  const Row& names, const Row& values);
    // The current of one output into its external termination ("I/O Term").
    double ProcessExtOutTerm(const std::string& panel, const Row& names, const Row& values,
                             const std::string& supply = "VCCIO");
    // The termination network of a row: pull-up and pull-down of the driver
    // against the load.
    struct Termination {
        bool active = false;
        double vthPullup = 0, rthPullup = 0, vthPulldown = 0, rthPulldown = 0;
        double rthLoad = 0, vthLoad = 0, supply = 0;
        double ioh = 0, voh = 0, iol = 0, vol = 0, current = 0;
    };
    Termination TerminationOf(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply, bool log);

    double ProcessIOdynVcc(const std::string& panel, const Row& names, const Row& values,
                           const std::string& supply);
    double ProcessIOdynVccio(const std::string& panel, const Row& names, const Row& values,
                             const std::string& supply);
    double ProcessIOdynVccaux(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessIOdynVtt(const std::string& panel, const Row& names, const Row& values,
                           const std::string& supply);
    double ProcessIOleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessIOleakVccioUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessIOleakVccauxUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessIOleakVttUsed(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessIObiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessIObiasVccioUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessIObiasVccauxUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessIObiasVttUsed(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    // The rows' VCC dynamic, VCCAUX dynamic and VCC bias members, through
    // the selectors by the row's table name.
    double SelectIOdynVcc(const std::string& panel, const Row& names, const Row& values,
                          const std::string& supply);
    double SelectIOdynVccaux(const std::string& panel, const Row& names, const Row& values,
                             const std::string& supply);
    double SelectIObiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                               const std::string& supply);
    double ProcessIOleakVccUnused(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessIOleakVccioUnused(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessIOleakVccauxUnused(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);
    double ProcessIOleakVttUnused(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessIObiasVccUnused(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessIObiasVccioUnused(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessIObiasVccauxUnused(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);
    double ProcessIObiasVttUnused(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    // A bank's own terms ("IO BANK REFS"), from its row of "Bank Voltage".
    double ProcessBankLeak(const std::string& table, const Row& names, const Row& values,
                           const std::string& supply);
    double ProcessBankBias(const std::string& table, const Row& names, const Row& values,
                           const std::string& supply);
    double ProcessBankLeakVcc(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessBankLeakVccio(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessBankLeakVccaux(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessBankBiasVcc(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessBankBiasVccio(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessBankBiasVccaux(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    // The JTAG port on a supply: its block once and its pins (leakage), or
    // each pin's coefficient D (bias); VCCIO here, VCCJ in the Misc tab.
    double ProcessJtagPins(bool leak, const std::string& supply, const std::string& logName,
                           const Row& names, const Row& values);
    double ProcessJtagLeakVccioUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessJtagBiasVccioUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);

  private:
    double PioStaticTerms(bool leak, const std::string& panel, const std::string& supply,
                          const Row& names, const Row& values);
    double ProcessIOunused(bool leak, const std::string& panel, const Row& names, const Row& values,
                           const std::string& supply);
    double BankTerms(bool leak, const std::string& table, const Row& names, const Row& values,
                     const std::string& supply);
    // The rows in use of each bank, kept for the length of one I/O tab.
    struct BankUse {
        std::vector<bankdata> rows;
    };
    const BankUse& BankUseOf(const std::string& bank);
    void BuildBankUse();
    std::map<std::string, BankUse> bankUseCache;
    bool bankUseCached = false;

  public:
    // ---- Device limits (eng_limits.cpp) ----------------------------------
    int DeviceHas(const std::string& key, std::string& value);
    double DeviceHas(const std::string& key);  // the count, 0 when absent
    int NewDeviceHas(const std::string& key, std::string& value);
    int LimitationDrcCheck(const std::string& panel, const std::string& quantity, double value);
    int GetLimitationDrc(const std::string& panel, const std::string& quantity, double* limit);
    int DoesCellBecomeUneditable(const std::string& tableName, PD_TABLE* table, int row,
                                 int column);
    // The candidate of a device change (its `.pwd`, `.pgt` and strings).
    PD_DATA* NewDeviceData = nullptr;
    PD_DATA* NewDevicePgt = nullptr;
    std::string NewDeviceInfo[7];

    // ---- Clocks tab (eng_clocks.cpp) ---------------------------------------
    static const PanelFrame& ClockFrame();
    void ClockCalculation();
    // The made-up row of what the clock rows leave free of the device's tree:
    // per resource "<resource>_unused", per kind "<kind>_unused" (clock nets),
    // and "PCLK", "SCLK", "ECLK" cells of the free resources.
    void GetArrayOfColumnUnusedNamesClock(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesClock(PD_TABLE* total, std::vector<std::string>& values);
    // Clock tree members (baspcformula/eng_process_clocks.cpp). A clock row's
    // cell of a kind ("PCLK", "SCLK", "ECLK") lists tag and count pairs; each
    // tag selects one resource of the tree.
    struct ClockUse {
        std::string item;       // `.pwr` member of "Clocks"
        std::string debugName;  // "PCLKtrunk", ...
        std::string key;        // resource key of the device totals, "Ptrunk", ...
        double count = 0.0;
    };
    // The resources a row's cell of the kind occupies; trunks that match
    // neither of the row's trunk rows are left out (and logged when asked).
    std::vector<ClockUse> GetClockCellResources(const std::string& kind, const Row& names,
                                                const Row& values, bool logIgnored);
    // The device's own member of a clock item when the data have one, else
    // the item.
    std::string FindSupplyMemberForClocks(const std::string& item, const Row& names,
                                          const Row& values);
    double ProcessClocksDyn(const std::string& panel, const Row& names, const Row& values,
                            const std::string& supply);
    // The helpers price the resources on `supply` ("VCC", or "VCCIO" where
    // the data give the tree a share of it).
    double HlpProcessClocksDyn(double freq, double af, const std::string& kind, const Row& names,
                               const Row& values, const std::string& supply);
    // Per element of the resources in the kind's cell ("used" or "unused").
    double HlpProcessClocksLeakUsed(const std::string& mode, const std::string& kind,
                                    const Row& names, const Row& values, const std::string& supply);
    double HlpProcessClocksBiasUsed(const std::string& mode, const std::string& kind,
                                    const Row& names, const Row& values, const std::string& supply);
    // The DC block records: over the cell's resources when used, over the
    // free clock nets "<kind>_unused" when unused.
    double HlpProcessClocksLeakDFB(const std::string& mode, const std::string& kind,
                                   const std::string& item, const Row& names, const Row& values,
                                   const std::string& supply);
    double HlpProcessClocksBiasDFB(const std::string& mode, const std::string& kind,
                                   const std::string& item, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessClocksLeakUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessClocksBiasUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessClocksLeakUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessClocksBiasUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);

    // ---- Block RAM tab (eng_blockram.cpp) ----------------------------------
    static const PanelFrame& BlockRamFrame();
    void BlockRamCalculation();
    void GetArrayOfColumnUnusedNamesBLOCK(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesBLOCK(PD_TABLE* total, std::vector<std::string>& values);
    // Memory members (baspcformula/eng_process_memory.cpp); the supply is
    // "VCC" (or "VCCPG") or "VCCM". An empty type gives 0 and a log line.
    double ProcessSPRAMdynVcc(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessSPRAMLeakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessSPRAMbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessDPRAMdynVcc(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessDPRAMleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessDPRAMBiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessDPRAMTrueDynVcc(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessDPRAMTrueLeakVccUsed(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply);
    double ProcessDPRAMTrueBiasVccUsed(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply);
    double ProcessFIFODynVcc(const std::string& panel, const Row& names, const Row& values,
                             const std::string& supply);
    double ProcessFIFOLeakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessFIFOBiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessBlockRAMleakUnused(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);
    double ProcessBlockRAMbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);

    // ---- PLL and DLL family tabs (eng_pll.cpp) -----------------------------
    void PLLCalculation();
    void DLLCalculation();
    void DQSDLLCalculation();
    void DDRDLLCalculation();
    void DQSCalculation();
    void DLLDELCalculation();
    void ESBCalculation();
    // The frame of each tab of the family, by panel name; null for another.
    static const PanelFrame* ClockBlockFrame(const std::string& panel);
    // The device-wide row of a family tab; its panel is the total table's
    // name less "Total ".
    void GetArrayOfColumnUnusedNamesPLLDLLDQS(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesPLLDLLDQS(PD_TABLE* total, std::vector<std::string>& values);

    // Their process members (baspcformula/eng_process_pll.cpp). The PLL's
    // members name their supply; "Allow Standby" "Enable" and the power mode
    // "Sleep" choose the standby and sleep entries.
    double ProcessPLLdynVcc(const std::string& panel, const Row& names, const Row& values,
                            const std::string& supply);
    double ProcessPLLdynVccpll(const std::string& panel, const Row& names, const Row& values,
                               const std::string& supply);
    double ProcessPLLdynVcc12(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessPLLleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessPLLbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessPLLleakVccpllUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessPLLbiasVccpllUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessPLLleakVcc12Used(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessPLLbiasVcc12Used(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessPLLleakVccUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessPLLbiasVccUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessPLLleakVccpllUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply);
    double ProcessPLLbiasVccpllUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply);
    double ProcessPLLleakVcc12Unused(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);
    double ProcessPLLbiasVcc12Unused(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);
    // The DLL family: one rule per block, five members each. The supply is
    // the caller's ("VCC" for the blocks that name it).
    enum class ClockBlockKind { Dyn, LeakUsed, BiasUsed, LeakUnused, BiasUnused };
    double ClockBlockCurrent(const char* block, ClockBlockKind kind, const std::string& supply,
                             const Row& names, const Row& values);
#define PWC_CLOCK_BLOCK_MEMBERS(B)                                                                \
    double Process##B##dynVcc(const std::string& panel, const Row& names, const Row& values,      \
                              const std::string& supply);                                         \
    double Process##B##leakVccUsed(const std::string& panel, const Row& names, const Row& values, \
                                   const std::string& supply);                                    \
    double Process##B##biasVccUsed(const std::string& panel, const Row& names, const Row& values, \
                                   const std::string& supply);                                    \
    double Process##B##leakUnused(const std::string& panel, const Row& names, const Row& values,  \
                                  const std::string& supply);                                     \
    double Process##B##biasUnused(const std::string& panel, const Row& names, const Row& values,  \
                                  const std::string& supply);
    PWC_CLOCK_BLOCK_MEMBERS(DLL)
    PWC_CLOCK_BLOCK_MEMBERS(DDRDLL)
    PWC_CLOCK_BLOCK_MEMBERS(DQSDLL)
    PWC_CLOCK_BLOCK_MEMBERS(DQS)
    PWC_CLOCK_BLOCK_MEMBERS(DLLDEL)
    PWC_CLOCK_BLOCK_MEMBERS(ESB)
    PWC_CLOCK_BLOCK_MEMBERS(DQSCNTL)
#undef PWC_CLOCK_BLOCK_MEMBERS
    double ProcessDQSdynVccaux(const std::string& panel, const Row& names, const Row& values,
                               const std::string& supply);

    // ---- Misc tab and the always-on blocks (eng_misc.cpp) --------------------
    void MiscCalculation();
    // Sets the bandgap controller flag from the family, device and setting.
    void setBandgapControllert();
    bool GetBandgapController() const {
        return bandgapController;
    }
    bool bandgapController = false;
    // The made-up row of a row table (its name with "_total", "_unused").
    void GetArrayOfColumnUnusedNamesMisc(PD_TABLE* table, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesMisc(PD_TABLE* table, std::vector<std::string>& values);
    // The device-wide row of the always-on parts.
    void GetArrayOfColumnUnusedNamesMiscTotal(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesMiscTotal(PD_TABLE* total, std::vector<std::string>& values);

    // Their process members (baspcformula/eng_process_misc.cpp). The
    // always-on sums: on VCC the full list in its order; on any other supply
    // the parts whose `.pwr` section lists that supply.
    double ProcessMiscLeakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessMiscBiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    // The power-gated parts, on "VCCPG" (zero in sleep).
    double ProcessMiscLeakVccpgUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    // ProcessMiscLeakVccUsed plus, where the summary has "Vccpg", the gated parts.
    double ProcessMiscLeakTotalAllUsed(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply);
    double ProcessMiscDynVcc(const std::string& panel, const Row& names, const Row& values,
                             const std::string& supply);
    double ProcessMiscPOWERSWITCHDynVcc(const std::string& panel, const Row& names,
                                        const Row& values, const std::string& supply);
    // ProcessMiscDynVcc plus ProcessMiscPOWERSWITCHDynVcc.
    double ProcessMiscDynTotalVcc(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    // The always-on sums on the other supplies; the supply is the caller's.
    double ProcessMiscLeakOtherUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessMiscBiasOtherUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    // The power manager's block term on its own supplies (VCCPM, VCCJP,
    // VCCPROG, VCCINP_33, VCCINP_50).
    double ProcessMiscLeakPowerManagerUsed(const std::string& panel, const Row& names,
                                           const Row& values, const std::string& supply);
    double ProcessMiscBiasPowerManagerUsed(const std::string& panel, const Row& names,
                                           const Row& values, const std::string& supply);
    // The member pairs of the always-on sum, each on the given supply.
    enum class AlwaysOnPart {
        Regulator,
        Flash,
        Config,
        Shiftregs,
        Gbuf,
        Refs,
        Iref,
        Misc,
        PwrSwitch
    };
    double MiscPartCurrent(AlwaysOnPart part, bool leak, const std::string& supply,
                           const Row& names, const Row& values);
    double ProcessMiscRegulatorLeakUsed(const Row& names, const Row& values,
                                        const std::string& supply = "VCC");
    double ProcessMiscRegulatorBiasUsed(const Row& names, const Row& values,
                                        const std::string& supply = "VCC");
    double ProcessMiscFlashLeakUsed(const Row& names, const Row& values,
                                    const std::string& supply = "VCC");
    double ProcessMiscFlashBiasUsed(const Row& names, const Row& values,
                                    const std::string& supply = "VCC");
    double ProcessMiscConfigLeakUsed(const Row& names, const Row& values,
                                     const std::string& supply = "VCC");
    double ProcessMiscConfigBiasUsed(const Row& names, const Row& values,
                                     const std::string& supply = "VCC");
    double ProcessMiscShiftregsUsed(const Row& names, const Row& values,
                                    const std::string& supply = "VCC");
    double ProcessMiscShiftregsBiasUsed(const Row& names, const Row& values,
                                        const std::string& supply = "VCC");
    double ProcessMiscGbufLeakUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscGbufBiasUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscRefsLeakUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscRefsBiasUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscIrefLeakUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscIrefBiasUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscMiscLeakUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscMiscBiasUsed(const Row& names, const Row& values,
                                   const std::string& supply = "VCC");
    double ProcessMiscPwrSwitchLeakUsed(const Row& names, const Row& values,
                                        const std::string& supply = "VCC");
    double ProcessMiscPwrSwitchBiasUsed(const Row& names, const Row& values,
                                        const std::string& supply = "VCC");
    // The JTAG pins on VCCJ, per row of the table "JTAG".
    double ProcessMiscDynVccj(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessMiscLeakVccjUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessMiscBiasVccjUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    // The row tables' members.
    double ProcessCLKDIVdynVcc(const std::string& panel, const Row& names, const Row& values,
                               const std::string& supply);
    double ProcessCLKDIVleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessCLKDIVbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessCLKDIVleakUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessCLKDIVbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessMCLKdynVcc(const std::string& panel, const Row& names, const Row& values,
                             const std::string& supply);
    double ProcessMCLKleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessMCLKbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessMCLKleakUnused(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessMCLKbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessLFOSCdynVcc(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessLFOSCleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessLFOSCbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessLFOSCleakUnused(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessLFOSCbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    // CIBTEST, DTR, I2C and UFM: a block term and the per-element term of
    // their count, unused only the block term.
    double SmallMiscBlockCurrent(const char* block, const char* equationSection, bool leak,
                                 bool unused, const std::string& supply, const Row& names,
                                 const Row& values);
    double ProcessCIBTESTdynVcc(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessCIBTESTleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);
    double ProcessCIBTESTbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                     const std::string& supply);
    double ProcessCIBTESTleakUnused(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessCIBTESTbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessDTRdynVcc(const std::string& panel, const Row& names, const Row& values,
                            const std::string& supply);
    double ProcessDTRdynVccaux(const std::string& panel, const Row& names, const Row& values,
                               const std::string& supply);
    double ProcessDTRleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessDTRbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessDTRleakVccauxUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessDTRbiasVccauxUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessDTRleakUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessDTRbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessI2CdynVcc(const std::string& panel, const Row& names, const Row& values,
                            const std::string& supply);
    double ProcessI2CleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessI2CbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessI2CleakUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessI2CbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessUFMdynVcc(const std::string& panel, const Row& names, const Row& values,
                            const std::string& supply);
    double ProcessUFMleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessUFMbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessUFMleakUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessUFMbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);

    // ---- DSP tab (eng_dsp.cpp) -------------------------------------------------
    // Two tables: the frame itself; more: one table per kind of slice, named
    // by the kind, and the total.
    void DSPCalculation();
    static const PanelFrame& DspTwoTableFrame();
    void GetArrayOfColumnUnusedNamesDSP(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesDSP(PD_TABLE* total, std::vector<std::string>& values);
    // Each kind's "<kind>_used" and "<kind>_unused", then the supply and settings.
    void GetArrayOfColumnUnusedNamesDSP3(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesDSP3(PD_TABLE* total, std::vector<std::string>& values);
    // What the device has less what the design uses, for the free-block rows
    // of the DSP, FABA and SERDES tabs: never below none, so an over-full
    // design or a device without the resource leaks nothing negative.
    static int FreeCount(int has, int used) {
        return has > used ? has - used : 0;
    }

    // Its process members (baspcformula/eng_process_dsp.cpp). The Orvan3
    // members take the kind's table name as their equation section and count.
    double ProcessDSPdynVcc(const std::string& panel, const Row& names, const Row& values,
                            const std::string& supply);
    double ProcessDSPLeakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessDSPbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessDSPleakUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessDSPbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessDSPOrvan3dynVcc(const std::string& table, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessDSPOrvan3LeakVccUsed(const std::string& table, const Row& names,
                                       const Row& values, const std::string& supply);
    double ProcessDSPOrvan3biasVccUsed(const std::string& table, const Row& names,
                                       const Row& values, const std::string& supply);
    double ProcessDSPOrvan3leakUnused(const std::string& kind, const Row& names, const Row& values,
                                      const std::string& supply);
    double ProcessDSPOrvan3biasUnused(const std::string& kind, const Row& names, const Row& values,
                                      const std::string& supply);

    // ---- FABA tab (eng_faba.cpp) -----------------------------------------------
    // Two tables: the frame itself; more: "PCIE", "SRIO", "MAC2", "MAC3" and
    // the total.
    void FabaCalculation();
    static const PanelFrame& FabaTwoTableFrame();
    void GetArrayOfColumnUnusedNamesFABA(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesFABA(PD_TABLE* total, std::vector<std::string>& values);
    void GetArrayOfColumnUnusedNamesFABA4(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesFABA4(PD_TABLE* total, std::vector<std::string>& values);
    // A "Core" cell's core: its first word, as the coefficients name it
    // ("EMAC0", "PCIE" of "PCIE x4"). Priced and counted by this one reading.
    static std::string FabaCoreName(const std::string& cell);
    // Whether a core so named is one of `core`: the name itself or the name
    // and an instance number ("EMAC0" .. "EMAC3" are EMACs).
    static bool IsFabaCore(const std::string& name, const std::string& core);
    // Rows of the table whose `column` cell names one of `core`.
    int GetTotalOrvan4FabaCore(PD_TABLE* table, const std::string& column,
                               const std::string& core) const;

    // Its process members (baspcformula/eng_process_faba.cpp).
    double ProcessFABAdynVcc(const std::string& panel, const Row& names, const Row& values,
                             const std::string& supply);
    double ProcessFABALeakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessFABAbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                  const std::string& supply);
    double ProcessFABAleakUnused(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessFABAbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessFABAOrvan4dynVcc(const std::string& table, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessFABAOrvan4LeakVccUsed(const std::string& table, const Row& names,
                                        const Row& values, const std::string& supply);
    double ProcessFABAOrvan4biasVccUsed(const std::string& table, const Row& names,
                                        const Row& values, const std::string& supply);
    double ProcessFABAOrvan4leakUnused(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply);
    double ProcessFABAOrvan4biasUnused(const std::string& panel, const Row& names,
                                       const Row& values, const std::string& supply);

    // ---- SERDES tab (eng_serdes.cpp) -------------------------------------------
    // The tables "PCS" (one row per group of channels) and "SERDES AUX" (the
    // transmit PLLs), over the SERDES supplies that the summary has.
    void SerdesCalculation();
    static const PanelFrame& SerdesFrame();
    void GetArrayOfColumnUnusedNamesPCS(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesPCS(PD_TABLE* total, std::vector<std::string>& values);
    // The Tx driver's emphasis current of the row, in amperes, as "%.6lf";
    // written to the cell and returned; "" when a column it reads is absent.
    std::string GetSerdesLpretotal(PD_TABLE* table, int row, int column);

    // Its process members (baspcformula/eng_process_serdes.cpp). `supply` is
    // the `.pwr` name; the PCSSERDES members choose the Orvan4 forms by
    // family and add the routing on VCC.
    // The terms summed, each under its name in the log's summary line.
    double SumNamedIccTerms(const std::string& logName,
                            const std::vector<std::pair<const char*, IccTerm>>& terms,
                            const std::string& supply, const Row& names, const Row& values);
    std::string GetPCSmode(const Row& names, const Row& values);
    double ProcessPCSdyn(const std::string& supply, const Row& names, const Row& values);
    double ProcessSERDESdyn(const std::string& supply, const Row& names, const Row& values);
    double ProcessPCSleakUsed(const std::string& supply, const Row& names, const Row& values);
    double ProcessPCSbiasUsed(const std::string& supply, const Row& names, const Row& values);
    double ProcessSERDESleakUsed(const std::string& supply, const Row& names, const Row& values);
    double ProcessSERDESbiasUsed(const std::string& supply, const Row& names, const Row& values);
    double ProcessSERDESleakUnused(const std::string& supply, const Row& names, const Row& values);
    double ProcessSERDESbiasUnused(const std::string& supply, const Row& names, const Row& values);
    double ProcessPCSSERDESleakVccUnused(const Row& names, const Row& values);
    double ProcessPCSSERDESbiasVccUnused(const Row& names, const Row& values);
    double ProcessOrvan4PCSdyn(const std::string& supply, const Row& names, const Row& values);
    double ProcessOrvan4SERDESdyn(const std::string& supply, const Row& names, const Row& values);
    double ProcessOrvan4PCSleakUsed(const std::string& supply, const Row& names, const Row& values);
    double ProcessOrvan4PCSbiasUsed(const std::string& supply, const Row& names, const Row& values);
    double ProcessOrvan4SERDESleakUsed(const std::string& supply, const Row& names,
                                       const Row& values);
    double ProcessOrvan4SERDESbiasUsed(const std::string& supply, const Row& names,
                                       const Row& values);
    double ProcessPCSSERDESdyn(const std::string& panel, const Row& names, const Row& values,
                               const std::string& supply);
    double ProcessPCSSERDESleakUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessPCSSERDESbiasUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessPCSSERDESleakUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply);
    double ProcessPCSSERDESbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                      const std::string& supply);
    double ProcessSERDESAUXdyn(const std::string& panel, const Row& names, const Row& values,
                               const std::string& supply);
    double ProcessSERDESAUXleakUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);
    double ProcessSERDESAUXbiasUsed(const std::string& panel, const Row& names, const Row& values,
                                    const std::string& supply);

    // ---- EFB tab (eng_efb.cpp) ---------------------------------------------
    void EFBCalculation();
    // Whether the Wishbone bridge is in use: any I2C, SPI or UFM counted, or
    // the timer's "WB Used" "Yes".
    bool detectWBused();
    // The device-wide row: each part's "_used" and "_unused" count, then the
    // supply and device settings.
    void GetArrayOfColumnUnusedNamesEFB(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesEFB(PD_TABLE* total, std::vector<std::string>& values);

    // Its process members (baspcformula/eng_process_efb.cpp); the supply is VCC.
    double ProcessI2C1efbdynVcc(const Row& names, const Row& values);
    double ProcessI2C2efbdynVcc(const Row& names, const Row& values);
    double ProcessSPIefbdynVcc(const Row& names, const Row& values);
    double ProcessTCefbdynVcc(const Row& names, const Row& values);
    double ProcessUFMefbdynVcc(const Row& names, const Row& values);
    double ProcessUFMefbLeakVcc(const Row& names, const Row& values);
    double ProcessCFGefbdynVcc(const Row& names, const Row& values);
    double ProcessCFGefbLeakVcc(const Row& names, const Row& values);
    double ProcessWISHBONEefbdynVcc(const Row& names, const Row& values);
    double ProcessEFBleakVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessEFBbiasVccUsed(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessEFBleakUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);
    double ProcessEFBbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                const std::string& supply);

    // ---- MIPI D-PHY tab (eng_mipi.cpp) -------------------------------------
    // One copy of the supplies (bare names), or two ("0" and "1") by package; a row's
    // "MIPIDPHY Id." chooses its copy by its last digit.
    void MIPIDPHYCalculation();
    bool MipiRowOnCopy(const char* copy, const Row& names, const Row& values);
    // The free blocks of copy "0" (or of the device with one copy) and of
    // copy "1": "MIPIDPHY_unused", "MIPIDPHY_standby", the copy's supplies.
    void GetArrayOfColumnUnusedNamesMIPI(PD_TABLE* total, std::vector<std::string>& names);
    void GetArrayOfColumnUnusedValuesMIPI(PD_TABLE* total, std::vector<std::string>& values);
    void GetArrayOfColumnUnusedValuesMIPI1(PD_TABLE* total, std::vector<std::string>& values);
    void MipiUnusedValues(char copy, std::vector<std::string>& values);

    // Its process members (baspcformula/eng_process_mipi.cpp): the
    // high-speed and low-power (10 MHz) items mixed by the row's share of
    // time in high speed. `supply` is the `.pwr` name.
    double ProcessMIPIdyn(const std::string& supply, const Row& names, const Row& values);
    double MipiStaticMix(bool leak, const std::string& supply, const Row& names, const Row& values);
    double ProcessMIPIDPHYdyn(const std::string& panel, const Row& names, const Row& values,
                              const std::string& supply);
    double ProcessMIPIDPHYleakused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessMIPIDPHYbiasused(const std::string& panel, const Row& names, const Row& values,
                                   const std::string& supply);
    double ProcessMIPIleakUnused(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);
    double ProcessMIPIbiasUnused(const std::string& panel, const Row& names, const Row& values,
                                 const std::string& supply);

    // ---- ASC tab (eng_asc.cpp) -------------------------------------------
    void ASCCalculation();
    // The tab when the ASC calculator is on and set up; null otherwise.
    PC_PANEL* AscPanel() const;
    // A row's own columns, as the "ASC CURRENT" equation sees them.
    std::vector<std::string> GetArrayOfColumnNamesASC(PD_TABLE* table) const;
    std::vector<std::string> GetArrayOfColumnValuesASC(PD_TABLE* table, int row) const;
    std::string GetASCCurrentformula() const;
    // The row's current in amperes; a name the row lacks counts 0.
    double ProcessAscVcc(const Row& names, const Row& values);
    // At set-up: a summary supply "ASCVCC <volts>" for each external rail,
    // added once in the engine's life.
    void setupASCsupply();
    // Watts of the external rails by summary row into `rails`; returns the
    // watts of the rails on the core supply.
    double GetASCcurrentAndPower(std::map<std::string, double>& rails);

    // ---- Estimation (baspcestimode/eng_estimation.cpp) -------------------
    void ProcessEstimationMode();
    // A rate of the `.pef` table for a row key and level; 0 when absent.
    double GetEstimation(const std::string& table, const std::string& row,
                         const std::string& column);
    // Saves and zeroes the row's hidden columns; puts them back.
    void ResetHidenDataOnRow(PD_TABLE* table, int row);
    void RestoreHiddendata(PD_TABLE* table, int row);
    void ResetHidenData(PC_PANEL* panel);
    void ResetHidenDataAll();
    void ResetHidenDataClocktable();
    // Brings the I/O tables of an imported design into line with the device.
    void EstimationModeCheck();
    void EstimationModeIOCheck();
    void EstimationIOTablecheck(PD_TABLE* table);
    // A type of another family mapped onto one that this device offers.
    std::string HlpConvertIOtype(const std::string& type);
    std::string HlpTransformationIOtype(std::string type);

    // ---- Routing estimation (baspcestimode/eng_routing.cpp) ---------------
    void ProcessEstimationModeOnRow(PD_TABLE* table, int row);
    // Whether the device still has the wires of one more row's estimate.
    bool IsOkToAddMoreRoutingEstimation(double x0, double x1, double x1d, double x1f, double x2,
                                        double x6, double isb);
    std::string ClocksTimesAndAssignedTrunkNumber(int count, std::string resource,
                                                  std::string prefix);
    int GetClockComponentUsagefromRow(PD_TABLE* table, int row, std::string column);
    std::set<int> GetClockTableRowNumber(int row, PD_TABLE* table);
    void AddRoutingItems();
    // Routing in use per class ("X0", "X1", "X1d", "X1f", "X2", "X6", "ISB"),
    // summed over every table that holds routing, as the bound counts it.
    std::vector<long> SumRoutingInUse();
    // During an estimation pass the bound keeps these sums up to date cell by
    // cell instead of summing all tables per row; off, it sums anew each time.
    bool estimationRunningSums = true;

    // ---- Device-change checks (baspcestimode/eng_drc.cpp) ----------------
    // Whether the device of `device` (seven strings) can hold what the tabs
    // use; complaints in DrcMessage. Nothing of the project changes.
    int ResourcesDrcCheck(char** device);
    int LogicPanDrcCheck();
    int ClockPanDrcCheck();
    int IoPanDrcCheck();
    int BlockRamPanDrcCheck();
    int PLLPanDrcCheck();
    int DLLPanDrcCheck();
    int DQSDLLPanDrcCheck();
    int SerdesPanDrcCheck();
    int MiscPanDrcCheck();
    int FabaPanDrcCheck();
    int DSPPanDrcCheck();
    // The quad channels and hard-block identifiers the candidate offers.
    std::set<std::string> GetQuadChannelSet();
    std::set<std::string> GetFabaIDset();

    // ---- Statistics and debug panels (baspcdatadriven/eng_statistics.cpp,
    // eng_statistics_csv.cpp, eng_debug_pages.cpp)
    // eng_statistics.cpp: the matrices and debug panels made at set-up, the
    // clock maps, and the usage records the CSV files print.
    void CreateStatisticTable();
    void setClockDCCMap();
    void setClockOscList();
    // One resource group (a panel's total table name less "Total "): per
    // resource {used, used fraction, device total}; short when the device
    // lacks the resource. I/O types with their pin counts for "PIO Pins Max".
    struct ResourceGroup {
        std::string name;
        std::map<std::string, std::vector<double>> resources;
        std::map<std::string, double> ioTypes;
    };
    void DetailedResourcestatistic(std::string stem);
    void GetResourcesUsage();
    void GetClockUsage();
    void GetClockTreeUsage();
    // Count columns of a table, name to index.
    void GetCompNameMap(PC_PANEL* panel, PD_TABLE* table, std::map<std::string, int>& columns);
    // Adds one row's counts into the group.
    void GetCompUsedNumber(PC_PANEL* panel, std::map<std::string, int>& columns, PD_TABLE* table,
                           int row, ResourceGroup& group);
    // The clock name and frequency column pairs the table has.
    std::vector<std::pair<int, int>> SetupClockUsageTable(PD_TABLE* table);
    void setTableResName2PwdResNameMap();
    const std::vector<ResourceGroup>& GetResourceGroups() const {
        return resourceGroups;
    }
    const PD_TABLE& GetClockUsageTable() const {
        return clockUsageTable;
    }
    const PD_TABLE& GetClockTreeTable() const {
        return clockTreeTable;
    }

    // eng_statistics_csv.cpp: the statistics and matrix files.
    void GenerateResourecUsageCSV(std::string path);
    void GenerateClockUsageCSV(std::string path);
    void GenerateClockTreeUsageCSV(std::string path);
    int GeneratePowerMatrixTableCSV(std::string path);
    void GenPowerMatrixTableCSV(FILE* file, PD_TABLE* table);
    // What GenPowerMatrixTableCSV writes, as text.
    static std::string PowerMatrixTableCSVText(const PD_TABLE* table);

    // eng_debug_pages.cpp: the debug panels, their pages and the matrix page.
    void CreateDebugPanels();
    // Keeps an equation of the models in the debug panel: the log line and
    // its numbers under the row of `item` and the column of `supply`.
    void SaveToDebugPanel(const std::string& panelName, const std::string& line,
                          const std::string& expandedText, double result, const std::string& item,
                          const std::string& supply, const std::string& tableName);
    void GetPower2DebugPanels(std::vector<PC_PANEL*>* list);
    void GenerateDebugPanelHTML(const std::string& debugLog);
    bool GenerateDebugPanelCSV(std::string path);
    void GeneratePowerMatrixTableHTML(std::string path);
    // Turns a cell of "#"-separated entries into rows of a table and returns
    // the sum of the entries' results ("%.6lf"); the rows go to `html`.
    std::string AddHtmlLineBreak(const std::string& panel, const std::string& table,
                                 const std::string& block, const std::string& cell,
                                 const std::string& stem, std::string& html);
    // The page and anchor an entry links to; "NoLink" when there is none.
    std::string setuplinkfile(const std::string& panel, const std::string& table,
                              const std::string& entry, const std::string& block,
                              const std::string& stem);
    const std::vector<PC_PANEL*>* GetDebugPanels() const {
        return debugPanels;
    }

    // ---- Reports: text and HTML (baspcdatadriven/eng_report_*.cpp) --------
    // One count line of a utilization block; the HTML report names some
    // counts otherwise than the text report.
    struct ReportCount {
        std::string label, htmlLabel;
        int value = 0;
    };
    // The power lines of a block, from row 0 of its total table.
    struct ReportPower {
        bool present = false;    // the total table exists
        bool totalOnly = false;  // only "Total Power (W)" is shown
        std::string dynamic, statics, total;
    };
    // One panel's block of the utilization details, computed once and
    // printed by both reports (eng_report_blocks.cpp).
    struct ReportBlock {
        std::string panel, anchor, subheader;
        std::string heading;  // the text report's heading; empty: none
        std::vector<ReportCount> counts;
        ReportPower power, htmlPower;
    };
    std::vector<ReportBlock> GetReportBlocks();
    // Everything above the utilization details, as both reports show it.
    struct ReportLine {
        std::string label, value;
    };
    struct ReportSummary {
        std::string formatRevision, valuesRevision, status, pwrValues;
        std::vector<ReportLine> details;   // "Power Project Name", ...
        std::vector<ReportLine> supplies;  // supply, voltage
        bool hasPower = false, hasCurrent = false;
        std::vector<ReportLine> power;  // "Power Est. Design <supply>", "Total ..."
        std::string totalStatic, totalDynamic;
        std::vector<ReportLine> current;
        bool hasBanks = false;
        int banksUsed = 0;
        bool hasPeak = false;
        std::vector<std::vector<std::string>> peak;
        std::vector<ReportLine> selections;  // board, heat sink, air flow
        std::string ambient, theta, junction, maxSafeAmbient;
    };
    ReportSummary GetReportSummary();
    // Counts of a clock-tree cell: pairs of a tag and a count joined by "_"
    // ("t4_12"), or a plain number.
    static int GetClockCount(const std::string& cell);
    // Static power of the reports: T minus D in the family's number format.
    std::string ReportStaticPower(const std::string& dynamic, const std::string& total) const;

    // The text report (eng_report_text.cpp).
    std::string GenerateTxtReport(std::string programName, std::string toolName,
                                  std::string dateLine);

    // The HTML report set (eng_report_html.cpp): basePath + ".html" (frames),
    // "_power_toc.html", "_power_top.html", "_power_summary.html",
    // "_power_thermal.html", "_power_detail.html" and "_power_charts.html".
    void GenerateHtmlReport(std::string basePath, std::string baseName, std::string toolName,
                            std::string dateLine);
    // One page through WriteReportFile; a page that can't be written is
    // passed over.
    void GenerateHtmlReport(std::string path, std::string content);
    static std::string PrintBeginTable(int border);
    static std::string PrintEndTable();
    static std::string PrintBeginRow();
    static std::string PrintEndRow();
    static std::string PrintBR();
    static std::string PrintColumn(std::string text, int width, std::string style = "");
    static std::string PrintColumnCenter(std::string text, int width, std::string style = "");
    // The pieces every page of the HTML sets shares, the debug pages too.
    std::string ReportPageHead(const std::string& toolName, const std::string& dateLine) const;
    static std::string ReportPageTail();
    static std::string ReportContentsHead(const std::string& toolName);
    static std::string ReportPageHeader(const std::string& title);
    static std::string ReportFrameSet(const std::string& title, const std::string& contents,
                                      const std::string& main);

    // The chart page of the HTML set (eng_report_charts.cpp): power per
    // block and per supply as SVG bars.
    std::string GeneratePowerChartsPage(const std::string& toolName, const std::string& dateLine);

    // Shown as the project in the reports, and the program line of the HTML
    // pages' head; both set by the host.
    std::string ProjectName;
    std::string ReportProgramName;
    // The date line of pages written while calculating (the debug pages);
    // the present time when the host leaves it empty.
    std::string ReportDateLine;

    // ---- Report files (baspcdatadriven/eng_report_files.cpp) -------------
    // Writes through a temporary file renamed into place; false (and nothing
    // left behind) when the file can't be written. Every call is recorded.
    bool WriteReportFile(const std::string& path, const std::string& content);
    const std::vector<ReportFileResult>& ReportFiles() const;
    void ClearReportFiles();

    // ---- Exchange files (eng_constraints.cpp, eng_pfr.cpp) ---------------
    int GetUserConstraints(const std::string& path);

    // ---- Firmware-resilience block (eng_pfr.cpp, eng_pfr_calc.cpp) --------
    // Reads "<dir of path><stem>_icc.pio" and "_icc1.pio", then the two
    // override files when given (full paths), then merges powerFile when
    // given. False for an empty path or a failed merge.
    bool ReadPFRFile(const std::string& path, const std::string& overrideA, const std::string& stem,
                     const std::string& overrideB, const std::string& powerFile);
    // Reads one port file into `ports` (appending); false when unreadable.
    static bool ReadPortFile(const std::string& file, bool icc1, std::vector<_ICCPORT>& ports);
    // Overwrites type and direction of the ICC ports named in the file.
    static void ApplyPortOverrides(const std::string& file, std::vector<_ICCPORT>& ports);
    const std::vector<_ICCPORT>& GetIccPorts() const {
        return iccPorts;
    }
    const std::vector<_ICCPORT>& GetIcc1Ports() const {
        return icc1Ports;
    }
    void PFRTabUpdated();
    void PFRCalculation();
    // The block's own terms (eng_pfr_calc.cpp); amperes.
    double ProcessPFRLeakVccUsed(const Row& names, const Row& values);
    double ProcessPFRBiasVccUsed(const Row& names, const Row& values);
    double ProcessPFRLeakVccauxUsed(const Row& names, const Row& values);
    double ProcessPFRBiasVccauxUsed(const Row& names, const Row& values);
    double ProcessPFRLeakVccUnused(const Row& names, const Row& values);
    double ProcessPFRLeakVccauxUnused(const Row& names, const Row& values);
    // A bank's interface to the block, per bank with ports (or without).
    double ProcessPFRBankLeakVccioUsed(const Row& names, const Row& values);
    double ProcessPFRBankBiasVccioUsed(const Row& names, const Row& values);
    double ProcessPFRBankLeakVccauxUsed(const Row& names, const Row& values);
    double ProcessPFRBankBiasVccauxUsed(const Row& names, const Row& values);
    double ProcessPFRBankLeakVccioUnused(const Row& names, const Row& values);
    double ProcessPFRBankBiasVccioUnused(const Row& names, const Row& values);
    double ProcessPFRBankLeakVccauxUnused(const Row& names, const Row& values);
    double ProcessPFRBankBiasVccauxUnused(const Row& names, const Row& values);
    // The category totals' share of the block (eng_totals_category.cpp):
    // static and dynamic watts per summary supply row.
    struct CategoryTerm {
        std::string supply;
        double sta = 0.0;
        double dyn = 0.0;
    };
    std::vector<CategoryTerm> PfrSupplyTerms();
    // The I/O tab's VCCIO on banks whose rail the category map sends to
    // another supply (e.g. "Vccaux"), per that supply.
    std::vector<CategoryTerm> IoCategorySpill();

    // ---- Constraints files (eng_constraints.cpp) -------------------------
    // The pad report's "Vccio by Bank:" table into the bank map; 1, or the
    // process ends (code 2) when the file can't be opened.
    int ReadPadReport(const std::string& path);
    // The preference file's bank voltages and configuration clock; 1.
    int ReadPreferenceFile(const std::string& path);
    // MHz, "%.4lf"; empty until a preference file sets it.
    std::string ConfigClockFrequency;

    // ---- Graph sweeps (baspcgraph/eng_graph.cpp) --------------------------
    // Power against the swept supply's voltage, the ambient and one clock's
    // frequency, per process corner; kept until the next sweep.
    void CollectDataForGraph();
    static void addGraphdata(std::vector<grpdata>& points, double x, double y);
    // The defaults of the sweep settings left empty or at 0.0.
    void SetGraphDefaults();
    // Points from `upper` down to `lower` by `step`; 0 when reversed.
    static int GraphPointCount(double lower, double upper, double step);
    std::vector<grpdata> SectionTypical, SectionWorst;
    std::vector<grpdata> TempAmbTypical, TempAmbWorst;
    std::vector<grpdata> FreqTypical, FreqWorst;
    // Called after each point of a sweep with the points done and due.
    std::function<void(int done, int total)> graphProgress;

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
    // The device's I/O type texts by kind.
    std::vector<std::string> inputTypes, outputTypes, bidiTypes;

  private:
    void CompleteProject();
    void AddPowerColumns(PD_TABLE* table, const std::string& supply);
    void AddTotalTable(PC_PANEL* panel);
    void FillSupplyRow(PD_TABLE* vdpm, const std::string& pcfName, const char* defaultText);
    void ReadThetaColumn(std::string& member, const std::string& userSet,
                         const std::string& column);
    PD_DATA* BuildProjectData(bool temporary);
    void WriteStandbyControls(PD_KEYSECT* settings);
    PD_TABLE* SummaryTable(const char* name) const;
    // GetArrayOfColumnValues into a vector that a row loop reuses.
    void FillArrayOfColumnValues(PD_TABLE* table, int row, std::vector<std::string>& values);

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
    PD_DATA* project = nullptr;  // the host's, until a SaveAs
    bool ownsProject = false;

    // Panels.
    std::vector<PC_PANEL*> panels;
    std::string currentPanelName;
    std::vector<PC_PANEL*>* debugPanels = nullptr;  // points into debugPanelStore
    // Owner of the debug panels, made only when the debug pages are on.
    struct OwnedPanels {
        std::vector<PC_PANEL*> list;
        OwnedPanels() = default;
        OwnedPanels(const OwnedPanels&) = delete;
        OwnedPanels& operator=(const OwnedPanels&) = delete;
        ~OwnedPanels() {
            for (PC_PANEL* p : list) delete p;
        }
    };
    OwnedPanels debugPanelStore;
    // Usage statistics (eng_statistics.cpp).
    std::vector<ResourceGroup> resourceGroups;
    std::map<std::string, std::string> tableResName2PwdResName;
    PD_TABLE clockUsageTable{"ClockUsage"};
    PD_TABLE clockTreeTable{"DetaileClkTreeUsage"};
    std::vector<ReportFileResult> reportFiles;  // this session's, in order

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
    std::set<std::string> ascRails;  // summary rows added for external ASC rails
    bool debugHtml = false;
    int unusedIODevice = 1;
    int iterationCounter = 0;
    double defaultFreq = 0.0;
    double defaultAF = 10.0;
    std::string debugLogText;

    // Supplies.
    std::map<std::string, std::vector<_SUPPLY>> supplyCategory;
    std::set<std::string> supplyCategoryNames;
    std::vector<std::string> kValues;  // parallel to KConstants()
    std::string regulatedVcc, regulatedVccpll;

    // Formula key to column, per `.pgt` table.
    std::map<std::string, std::map<std::string, std::string>> key2Column;

    PD_TABLE* powerMatrix = nullptr;
    PD_TABLE* currentMatrix = nullptr;

    // Estimation: the hidden cells of the row in work, by column index, and
    // the routing sums of a pass (see estimationRunningSums).
    std::map<int, std::string> estimateSave;
    struct RoutingSums {
        bool active = false;
        std::vector<long> use;                   // per class
        std::map<const PD_TABLE*, bool> tables;  // counted tables; true: logic
    };
    RoutingSums routingSums;
    void SetHiddenCell(PD_TABLE* table, int row, int column, const std::string& text);
    std::vector<long> RoutingCapacity();
    void StartRoutingSums();
    // I/O power and current per supply row, rebuilt at each total.
    std::map<std::string, double> ioStaticPower, ioDynamicPower, ioStaticCurrent, ioDynamicCurrent;
    void SetIOVccioVttRows(bool dynamic, const std::string* category);
    PD_TABLE* IoTable(const char* panel, int index) const;

    // Storage behind the standby maps (stable addresses).
    std::map<std::string, bool> standbyFlags;

    // The firmware-resilience block's ports.
    std::vector<_ICCPORT> iccPorts, icc1Ports;
    // One fold of the tabs into the summary; `category` maps each supply
    // through the category map and adds the firmware-resilience block.
    void FoldTotals(bool category);
};

#endif
