// Construction, device binding and the loading of the device data files.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

void CopyDeviceString(char* dst, const char* src) {
    std::snprintf(dst, 256, "%s", src ? src : "");
}

bool Holds(const char* text, const char* part) {
    return std::strstr(text, part) != nullptr;
}

// Stems whose files are shared with a sibling architecture.
struct SiblingFiles {
    const char* stem;
    const char* sibling;
    std::initializer_list<const char*> extensions;
};
const SiblingFiles kSiblingFiles[] = {
    {"hq7g00e", "hq7g00", {".pef", ".pqn", ".ptd", ".pwr", ".pwd"}},
    {"lancet", "gy7s00", {".pef", ".pqn", ".pwi", ".pwr"}},
    {"zn2c00a", "zn2c00", {".pef", ".pqn", ".ptd", ".pwr", ".pwd", ".pwi"}},
    {"zn2c00ahp", "zn2c00hp", {".pwr"}},
    {"zn2c00ap", "zn2c00p", {".pef", ".pqn", ".ptd", ".pwr", ".pwd", ".pwi"}},
};

void ReplaceSiblingName(char* name) {
    std::string n = name;
    for (const SiblingFiles& s : kSiblingFiles) {
        for (const char* ext : s.extensions) {
            if (n == std::string(s.stem) + ext) {
                std::snprintf(name, 2056, "%s%s", s.sibling, ext);
                return;
            }
        }
    }
}

bool RemoveSectionIfPresent(PD_DATA* data, const char* name) {
    int index = data->GetSectionIndex(name);
    if (index < 0) return false;
    data->RemoveSection(index);
    return true;
}

// Removes the rows of "Bank Voltage" whose first cell is in `banks`,
// restarting the walk from row 0 after each removal.
void RemoveBankRows(PD_DATA* data, std::initializer_list<const char*> banks) {
    PD_TBLSECT* table = dynamic_cast<PD_TBLSECT*>(data->GetSection("Bank Voltage"));
    if (!table) return;
    for (int row = 0; row < table->GetNumOfRows();) {
        bool drop = false;
        for (const char* bank : banks)
            drop = drop || std::strcmp(table->GetValueAt(row, 0), bank) == 0;
        if (drop) {
            table->RemoveRow(row);
            row = 0;
        } else {
            ++row;
        }
    }
}

}  // namespace

PC_ENG::PC_ENG(char** device, PD_DATA* proj, std::string mode, bool bank, std::string pfrA,
               std::string pfrB, std::string pfrPath, std::string inputType, std::string outputType,
               std::string bidiType, std::vector<std::string>* inputList,
               std::vector<std::string>* outputList, std::vector<std::string>* bidiList,
               std::string oldFamily, bool estimation, std::string constraintFile,
               std::string debugLog) {
    if (PD_UTIL::IsCalcLogOpen())
        PD_UTIL::FCprintln(std::string("PC_ENG ") + (device && device[0] ? device[0] : ""));

    if (mode == "Estimation" && runningMode == "Calculation") ResetHidenDataAll();
    runningMode = mode;

    SetFamilySwitching(device, proj, mode, oldFamily, inputType, outputType, bidiType, inputList,
                       outputList, bidiList, estimation);

    project = proj;
    // Families are known by the device strings, which the project completion
    // reads before they are copied: take the family from the host's array.
    CopyDeviceString(devStr[1], device ? device[1] : "");
    CompleteProject();

    bankFlag = bank;
    pwrData = new PD_DATA;
    pwdData = new PD_DATA;
    pwiData = new PD_DATA;
    pgtData = new PD_DATA;
    pqnData = new PD_DATA;
    ptdData = new PD_DATA;
    pcfData = new PD_DATA;
    pefData = new PD_DATA;
    SetTypicalType();

    debugLogText = debugLog;
    PD_UTIL::DebugMode(3, debugLog);
    PD_UTIL::Fprintln("Power Calculation Tool Debug Information Dumping ...\n");
    PD_UTIL::DebugMode(0, "0");

    for (int i = 0; i < 7; ++i) CopyDeviceString(devStr[i], device ? device[i] : "");
    CopyDeviceString(devStr[4], CutSpeed(devStr[4]).c_str());

    SetPowerControlDefault();
    SetupPowerData(pfrA, pfrB, pfrPath);

    SetDefaultParameter();
    SetBankInformation();
    SetupPanels();
    SetupSupplyCategory();
    SetupSummary();
    SetupPanels2();
    CreateStatisticTable();
    if (!constraintFile.empty()) GetUserConstraints(constraintFile);
    BankDo();
    IOtermDo();
    PD_UTIL::DebugMode(3, debugLog);
    Calculate();
}

PC_ENG::~PC_ENG() {
    if (PD_UTIL::IsCalcLogOpen())
        PD_UTIL::FCprintln(std::string("~PC_ENG ") + ArchName() +
                           " panels: " + std::to_string(panels.size()));
    for (PC_PANEL* panel : panels) delete panel;
    delete powerMatrix;
    delete currentMatrix;
    delete pwrData;
    delete pwdData;
    delete pwiData;
    delete pgtData;
    delete pqnData;
    delete ptdData;
    delete pcfData;
    delete pefData;
    delete NewDeviceData;
    delete NewDevicePgt;
    if (ownsProject) delete project;
}

bool PC_ENG::SetFamilySwitching(char** device, PD_DATA*, const std::string&,
                                const std::string& oldFamily, const std::string& inputType,
                                const std::string& outputType, const std::string& bidiType,
                                std::vector<std::string>* inputList,
                                std::vector<std::string>* outputList,
                                std::vector<std::string>* bidiList, bool estimation) {
    familySwitching = false;
    estimationFlag = estimation;
    const char* family = device && device[1] ? device[1] : "";
    if (oldFamily.empty() || oldFamily == family) return false;
    familySwitching = true;
    fallbackInput = inputType;
    fallbackOutput = outputType;
    fallbackBidi = bidiType;
    if (inputList) oldInputTypes = *inputList;
    if (outputList) oldOutputTypes = *outputList;
    if (bidiList) oldBidiTypes = *bidiList;
    return true;
}

// Older projects lack some always-on tables; add them empty (or with their
// one default row) so that the tabs can be built.
void PC_ENG::CompleteProject() {
    if (!project) return;
    const std::string family = devStr[1];
    auto addTable = [this](const char* name, const char* header, const char* row) {
        if (project->GetSection(name)) return;
        PD_TBLSECT* table = new PD_TBLSECT(name);
        table->SetTableHeader(header);
        if (row) table->AddTableData(row);
        project->AddSection(table);
    };
    if (HasBandgapPorTables(family)) {
        addTable("BANDGAP", "STANDBY", "No");
        addTable("POR", "STANDBY", "No");
    }
    if (HasMclkTable(family)) {
        addTable("MCLK",
                 HasMclkWithoutStandby(family) ? "Clk, F, AF, MCLK, MCLKF, SEDF"
                                               : "STANDBY, Clk, F, AF, MCLK, MCLKF, SEDF",
                 nullptr);
    }
    if (IsJorvikFamily(family)) addTable("LF OSC", "Clk, F, AF", nullptr);
}

bool PC_ENG::SetupPowerData(const std::string& a, const std::string& b, const std::string& c) {
    char name[2056];
    std::snprintf(name, sizeof name, "%s", ArchName());
    const std::string arch = ArchName();
    const bool hpArch = HasHighPerformancePowerFile(arch);
    if (hpArch && (Holds(DeviceName(), "HE") || Holds(DeviceName(), "HC")))
        std::strncat(name, "hp", sizeof name - std::strlen(name) - 1);
    std::strncat(name, ".pwr", sizeof name - std::strlen(name) - 1);
    if (!HelperSetupPowerData(pwrData, name)) return false;

    // The firmware-resilience part: `c` is the project's path, beside which
    // the port files named by stem `b` lie, `a` an override port file. The
    // block's power data merge here without a project, after the ports with one.
    if (IsPfrArch(arch)) {
        if (c.empty() && !MergePFRPwr(name, "harrier.pwr")) return false;
        std::string block;
        if (!c.empty()) {
            const std::string pwrPath = name;
            const size_t slash = pwrPath.find_last_of("/\\");
            block =
                (slash == std::string::npos ? "" : pwrPath.substr(0, slash + 1)) + "harrier.pwr";
        }
        if (!ReadPFRFile(c.empty() ? std::string(name) : c, a, b, "", block)) return false;
    }

    struct {
        const char* ext;
        PD_DATA* target;
    } const files[] = {{".pgt", pgtData}, {".pqn", pqnData}, {".pwi", pwiData}, {".pwd", pwdData},
                       {".ptd", ptdData}, {".pcf", pcfData}, {".pef", pefData}};
    for (const auto& file : files) {
        std::snprintf(name, sizeof name, "%s%s", ArchName(), file.ext);
        if (!HelperSetupPowerData(file.target, name)) return false;
    }
    SetupKey2ColumnMap();
    return true;
}

bool PC_ENG::HelperSetupPowerData(PD_DATA* target, char* name) {
    ReplaceSiblingName(name);
    const std::string bare = name;
    const bool decisionA = bare == "zn2c00.pgt" || bare == "zn2c00a.pgt";
    const bool decisionB = bare == "zn2c00.pgt" || bare == "zn2c00.pcf";
    const bool decisionC = bare == "zn2c00a.pcf" || bare == "zn2c00p.pcf";
    const bool decisionD = bare == "rv7d00.pcf";

    PD_UTIL::GetFilenameRTF(name);
    if (!target->LoadFile(name)) {
        std::cerr << name << " cannot be processed!" << std::endl;
        return false;
    }

    const char* device = DeviceName();
    if (decisionA && !Holds(device, "HC")) RemoveSectionIfPresent(target, "ASC");
    if (decisionB && Holds(device, "KZQ2-256")) {
        for (const char* s : {"SP RAM", "DP RAM", "DP RAM True", "FIFO DC", "Tab Block RAM"})
            RemoveSectionIfPresent(target, s);
    }
    if (decisionC) {
        bool noU = Holds(device, "KZQ2-1200") && !Holds(device, "U");
        if (noU || Holds(device, "KZQ2-640U") || Holds(device, "KRM20") || Holds(device, "KRM21"))
            RemoveBankRows(target, {"4", "5"});
    }
    if (decisionD) {
        bool small = false;
        for (const char* d : {"GVD4-30", "GVD4-50", "GVD4-95", "GVD4-130"})
            small |= Holds(device, d);
        if (small) RemoveBankRows(target, {"0", "3"});
    }
    return true;
}

void PC_ENG::SetupKey2ColumnMap() {
    key2Column.clear();
    for (PD_SECTION* section : pgtData->sections) {
        const std::string& sname = section->name;
        if (sname == "Info" || sname == "Settings") continue;
        PD_TBLSECT* table = dynamic_cast<PD_TBLSECT*>(section);
        if (!table) continue;
        int keyRow = table->GetRowNumber(std::string("_KEY"));
        if (keyRow < 0) continue;
        for (int col = 1; col < table->GetNumOfColumns(); ++col) {
            std::string column = table->GetColumnName(col);
            size_t p = column.find("# ");
            if (p != std::string::npos) column = column.substr(p + 2);
            p = column.find('#');
            if (p != std::string::npos) column = column.substr(p + 1);
            key2Column[table->GetValueAt(keyRow, col)][sname] = column;
        }
    }
}

std::string PC_ENG::GetColumnNamefromKey(const std::string& key, const std::string& section) const {
    auto k = key2Column.find(key);
    if (k == key2Column.end()) return "";
    auto s = k->second.find(section);
    return s == k->second.end() ? "" : s->second;
}

std::string PC_ENG::DevicePackageKey() const {
    return std::string(DeviceName()) + "_" + PackageName();
}

std::string PC_ENG::DeviceProcessKey() const {
    return DevicePackageKey() + "_" + SpeedGrade() + "_" +
           std::string(OperatingName()).substr(0, 1);
}

namespace {

// The value of the first key of `section` matching `key` (the keys are the
// patterns); null when none does.
const char* FirstMatchingValue(const PD_KEYSECT* section, const std::string& key) {
    for (const auto& kv : section->keys)
        if (PD_UTIL::SpecialCompare(kv.first, key) == 0) return kv.second.c_str();
    return nullptr;
}

void ReadStatus(const PD_DATA& data, const std::string& key, std::string& status,
                std::string* dataValues) {
    if (const PD_KEYSECT* info = dynamic_cast<const PD_KEYSECT*>(data.GetSection("Info"))) {
        status = info->GetValue("_STATUS");
        if (dataValues) *dataValues = info->GetValue("_DATA_VALUES");
    }
    if (const PD_KEYSECT* st = dynamic_cast<const PD_KEYSECT*>(data.GetSection("DEVICE STATUS")))
        if (const char* v = FirstMatchingValue(st, key)) status = v;
}

}  // namespace

bool PC_ENG::getPwrStatus(const std::string& family, const std::string& key, std::string& status,
                          std::string& dataValues) {
    char name[2056];
    std::snprintf(name, sizeof name, "%s.pwr", ArchNameOfFamily(family).c_str());
    PD_UTIL::GetFilenameRTF(name);
    PD_DATA data;
    if (!data.LoadFile(name)) {
        status.clear();
        dataValues.clear();
        return false;
    }
    status.clear();
    dataValues.clear();
    ReadStatus(data, key, status, &dataValues);
    return true;
}

std::string PC_ENG::GetPwrStatus() {
    std::string status;
    ReadStatus(*pwrData, DevicePackageKey(), status, nullptr);
    return status;
}

std::string PC_ENG::GetRevision() {
    const char* worstName = "Worst Case Process Leakage Multiplier";
    PD_SECTION* worst = pwrData->GetSection(worstName);
    if (worst) {
        PD_KEYSECT* keys = dynamic_cast<PD_KEYSECT*>(worst);
        if (!keys) {
            std::cerr << "PWR Worst Case Process Leakage Multiplier must have _KEYSECT format"
                      << std::endl;
            return "Advanced";
        }
        if (const char* v = FirstMatchingValue(keys, DeviceProcessKey())) {
            int n = 0;
            char** t = PD_UTIL::GetArrayOfTokens(v, ", \n", &n);
            std::string revision = n == 2 ? t[1] : "";
            PD_UTIL::DeleteArray(t, n);
            if (n == 2) return revision;
        }
    }
    PD_SECTION* info = pwrData->GetSection("Info");
    if (info) {
        PD_KEYSECT* keys = dynamic_cast<PD_KEYSECT*>(info);
        if (!keys) {
            std::cerr << "PWR Info must have _KEYSECT format" << std::endl;
            return "Advanced";
        }
        const char* status = keys->GetValue("_STATUS");
        if (*status) return status;
    }
    return "Advanced";
}

namespace {

// Tokens of the multiplier of the process section's key for the device;
// -1 when the section is missing or of another kind.
int ProcessMultiplierTokens(PD_DATA* pwr, const std::string& section, const std::string& key,
                            double* first) {
    PD_SECTION* s = pwr->GetSection(section.c_str());
    if (!s) return -1;
    PD_KEYSECT* keys = dynamic_cast<PD_KEYSECT*>(s);
    if (!keys) {
        std::cerr << section << " must have _KEYSECT format" << std::endl;
        return -1;
    }
    const char* v = FirstMatchingValue(keys, key);
    if (!v) return 0;
    int n = 0;
    char** t = PD_UTIL::GetArrayOfTokens(v, ", ", &n);
    if (first) *first = n > 0 ? std::strtod(t[0], nullptr) : 0.0;
    PD_UTIL::DeleteArray(t, n);
    return n;
}

}  // namespace

bool PC_ENG::IsProcessTypeAvailable(const std::string& process) {
    return ProcessMultiplierTokens(pwrData, process + " Case Process Leakage Multiplier",
                                   DeviceProcessKey(), nullptr) > 0;
}

bool PC_ENG::IsWorstTypeAvailable() {
    double first = 0.0;
    return ProcessMultiplierTokens(pwrData, "Worst Case Process Leakage Multiplier",
                                   DeviceProcessKey(), &first) > 0 &&
           first > 1.0;
}

std::vector<std::string> PC_ENG::GetAvailableProcessType() {
    std::vector<std::string> types{"Typical"};
    const std::string tail = " Case Process Leakage Multiplier";
    for (PD_SECTION* s : pwrData->sections) {
        const std::string& n = s->name;
        if (n.size() <= tail.size() || n.compare(n.size() - tail.size(), tail.size(), tail) != 0)
            continue;
        std::string process = n.substr(0, n.size() - tail.size());
        if (process == "Typical" || !IsProcessTypeAvailable(process)) continue;
        if (process == "Worst" && !IsWorstTypeAvailable()) continue;
        types.push_back(process);
    }
    return types;
}

// The buffer is 16 bytes and the name is not checked beyond fitting in it.
void PC_ENG::SetProcessType(const char* name) {
    std::snprintf(processType, sizeof processType, "%s", name ? name : "");
    // The scale factors are worked out again for the new process.
    ResetConstants();
}
void PC_ENG::SetWorstType() {
    SetProcessType("Worst");
}
void PC_ENG::SetTypicalType() {
    SetProcessType("Typical");
}
