// Building the tabs from the `.pgt` templates and the project, the summary
// tab, the result columns, and the names and values by which formulas see a
// row.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

const char* kSummaryPanel = "Summary";

std::vector<std::string> TemplateColumns(const PD_TABLE* tmpl) {
    return std::vector<std::string>(tmpl->columns.begin() + (tmpl->columns.empty() ? 0 : 1),
                                    tmpl->columns.end());
}

bool HoldsPwr(const std::string& column) {
    return column.find("Pwr (W)") != std::string::npos;
}

// Names a table's formulas may read that its template need not carry: the
// clock table's trunk rows ("0" when absent: no trunk rule).
struct ExtraName {
    const char* table;
    const char* name;
};
const ExtraName kExtraNames[] = {{"Clocks", "PCLKTrow1"},
                                 {"Clocks", "PCLKTrow2"},
                                 {"Clocks", "SCLKTrow1"},
                                 {"Clocks", "SCLKTrow2"}};

template <class F>
void ForMissingExtraNames(PD_TABLE* table, F f) {
    for (const ExtraName& e : kExtraNames)
        if (table->name == e.table && table->GetColumnIndex(e.name) < 0) f(e.name);
}

}  // namespace

void PC_ENG::SetupPanels() {
    std::vector<PD_TABLE*> work;
    const std::string family = FamilyName();
    for (PD_SECTION* section : pgtData->sections) {
        const std::string& name = section->name;
        if (name == "Info" || name == "Settings" || name.find("Tab ") != std::string::npos)
            continue;
        PD_TBLSECT* tmpl = dynamic_cast<PD_TBLSECT*>(section);
        if (!tmpl) {
            std::cerr << "PGT table must have _TBLSECT format" << std::endl;
            continue;
        }
        const int defaultRow = tmpl->GetRowNumber(std::string("_DEFAULT"));
        PD_TABLE* table = new PD_TABLE(name.c_str());
        table->SetColumns(TemplateColumns(tmpl));

        PD_SECTION* projSection = project ? project->GetSection(name.c_str()) : nullptr;
        if (name == "ASC") {
            if (projSection && project->GetSection("ASC CURRENT")) {
                ascCalculator = true;
            } else {
                delete table;
                continue;
            }
        }
        if (projSection && name != "Bank Voltage") {
            PD_TBLSECT* projTable = dynamic_cast<PD_TBLSECT*>(projSection);
            if (!projTable) {
                std::cerr << "PCF table must have _TBLSECT format" << std::endl;
            } else {
                // Project column of each template column, by the names of row 0.
                std::vector<int> source(table->GetNumOfColumns(), -1);
                for (int c = 0; c < table->GetNumOfColumns(); ++c)
                    source[c] = projTable->GetColumnIndex(tmpl->GetValueAt(0, c + 1));
                std::vector<std::string> cells(table->GetNumOfColumns());
                for (int r = 0; r < projTable->GetNumOfRows(); ++r) {
                    for (int c = 0; c < table->GetNumOfColumns(); ++c)
                        cells[c] = source[c] >= 0 ? projTable->GetValueAt(r, source[c])
                                                  : tmpl->GetValueAt(defaultRow, c + 1);
                    table->AddRow(cells);
                }
            }
        }
        bool oneDefaultRow = (GetsDefaultMclkRow(family) && name == "MCLK") ||
                             (IsJorvikFamily(family) && name == "LF OSC");
        if (oneDefaultRow && table->GetNumOfRows() == 0) {
            std::vector<std::string> cells;
            for (int c = 0; c < table->GetNumOfColumns(); ++c)
                cells.push_back(tmpl->GetValueAt(defaultRow, c + 1));
            table->AddRow(cells);
        }
        work.push_back(table);
    }

    for (PD_SECTION* section : pgtData->sections) {
        const std::string& name = section->name;
        if (name.find("Tab ") == std::string::npos) continue;
        if (name == "Tab ASC" && !ascCalculator) continue;
        PD_KEYSECT* tab = dynamic_cast<PD_KEYSECT*>(section);
        if (!tab) {
            std::cerr << "PGT panel Tab must have _KEYSECT format" << std::endl;
            continue;
        }
        if (tab->GetKeyIndex("_TABLE") < 0) continue;
        PC_PANEL* panel = new PC_PANEL(name.substr(4).c_str());
        int n = 0;
        char** entries = PD_UTIL::GetArrayOfTokens(tab->GetValue("_TABLE"), ",", &n);
        for (int i = 0; i < n; ++i) {
            PD_UTIL::CleanEntry(entries[i]);
            for (auto it = work.begin(); it != work.end(); ++it) {
                if ((*it)->name == entries[i]) {
                    panel->AddTable(*it);
                    work.erase(it);
                    break;
                }
            }
        }
        PD_UTIL::DeleteArray(entries, n);
        panels.push_back(panel);
    }
    // Tables that no tab lists.
    for (PD_TABLE* table : work) delete table;

    if (runningMode != "Calculation") EstimationModeCheck();
}

void PC_ENG::FillSupplyRow(PD_TABLE* vdpm, const std::string& pcfName, const char* defaultText) {
    std::string voltage, dpm = "1.00";
    auto* projVdpm = project ? dynamic_cast<PD_TBLSECT*>(project->GetSection("VDPM")) : nullptr;
    if (projVdpm && projVdpm->GetRowNumber(pcfName) >= 0) {
        voltage = projVdpm->GetValueAt(pcfName.c_str(), "Voltage");
        const char* d = projVdpm->GetValueAt(pcfName.c_str(), "DPM");
        if (*d) dpm = d;
    }
    if (voltage.empty()) {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%.3lf", std::strtod(defaultText, nullptr));
        voltage = buf;
    }
    vdpm->AddRow({pcfName, voltage, dpm});
}

void PC_ENG::SetupSummary() {
    const std::string family = FamilyName();
    PC_PANEL* summary = new PC_PANEL(kSummaryPanel);
    PD_TABLE* vdpm = new PD_TABLE("VDPM");
    PD_TABLE* pgvdpm = new PD_TABLE("PGVDPM");
    vdpm->SetTableHeader("Supply,Voltage,DPM");
    pgvdpm->SetTableHeader("Supply,Voltage,DPM");

    PD_SECTION* projVdpm = project ? project->GetSection("VDPM") : nullptr;
    if (projVdpm && !dynamic_cast<PD_TBLSECT*>(projVdpm))
        std::cerr << "PCF VDPM table must have _TBLSECT format" << std::endl;

    const char* supplySection = UsesPowerCategory(family) ? "POWER CATEGORY" : "SUPPLIES";
    PD_SECTION* s = pwrData->GetSection(supplySection);
    PD_TBLSECT* sup = dynamic_cast<PD_TBLSECT*>(s);
    if (s && !sup) std::cerr << "PWR SUPPLIES table must have _TBLSECT format" << std::endl;
    if (sup) {
        const int nameCol = sup->GetColumnIndex("SupplyName");
        const int defCol = sup->GetColumnIndex("Default");
        std::vector<std::string> seen;
        for (int r = 0; r < sup->GetNumOfRows(); ++r) {
            std::string pwrName = sup->GetValueAt(r, nameCol);
            size_t at = pwrName.find('@');
            if (at != std::string::npos) {
                if (PD_UTIL::SpecialCompare(pwrName.substr(at + 1), DeviceName()) != 0) continue;
                pwrName = pwrName.substr(0, at);
            }
            std::string pcfName;
            TranslateSupplyPWRtoPCF(pwrName, pcfName);
            if (pcfName.empty()) continue;
            std::vector<std::string> names;
            bool dphy = pcfName == "Vcc_dphy" || pcfName == "Vcca_dphy" || pcfName == "Vccpll_dphy";
            if (dphy) {
                if (!HasDphy(family)) continue;
                for (const std::string& copy : DphyCopySuffixes(PackageName()))
                    names.push_back(pcfName + copy);
            } else {
                names.push_back(pcfName);
            }
            for (const std::string& n : names) {
                if (std::find(seen.begin(), seen.end(), n) != seen.end()) continue;
                seen.push_back(n);
                FillSupplyRow(n == "Vccpg" ? pgvdpm : vdpm, n, sup->GetValueAt(r, defCol));
            }
        }
    }

    PD_TABLE* current = new PD_TABLE("Current");
    PD_TABLE* power = new PD_TABLE("Power");
    current->SetTableHeader("Static (A), Dynamic (A), Total (A)");
    power->SetTableHeader("Static (W), Dynamic (W), Total (W)");
    for (int r = 0; r <= vdpm->GetNumOfRows(); ++r) {
        current->AddTableData("0.0000, 0.0000, 0.0000");
        power->AddTableData("0.0000, 0.0000, 0.0000");
    }
    PD_TABLE* block = new PD_TABLE("Block");
    block->SetTableHeader("Block, Total (W)");
    for (PC_PANEL* panel : panels) {
        std::string name = panel->GetName();
        if (name == "I/O Term" || name == "Misc") continue;
        block->AddRow({name, "0.0000"});
    }
    block->AddRow({"Other", "0.0000"});
    block->AddRow({"Total", "0.0000"});

    PD_TABLE* peak = new PD_TABLE("Peak Startup");
    peak->SetTableHeader("Supply, Peak Startup (A)");
    summary->AddTable(peak);
    if (pgvdpm->GetNumOfRows() > 0)
        summary->AddTable(pgvdpm);
    else
        delete pgvdpm;
    summary->AddTable(vdpm);
    summary->AddTable(current);
    summary->AddTable(power);
    summary->AddTable(block);
    panels.insert(panels.begin(), summary);

    UpdatePeakStartupTable();
    if (ascCalculator) setupASCsupply();
}

void PC_ENG::AddPowerColumns(PD_TABLE* table, const std::string& supply) {
    for (const char* kind : {"Dyn. ", "Leakage ", "DCbias "}) {
        std::string column = std::string(kind) + supply + " Pwr (W)";
        if (table->GetColumnIndex(column.c_str()) < 0)
            table->AddColumn(column.c_str(), table->GetNumOfColumns());
    }
}

void PC_ENG::SetupPanels2() {
    const std::string family = FamilyName();
    const std::string arch = ArchName();
    for (PC_PANEL* panel : panels) {
        const std::string pname = panel->GetName();
        if (pname == kSummaryPanel) continue;
        if (pname == "ASC") {
            if (!ascCalculator) continue;
            for (PD_TABLE* t : panel->tables) t->AddColumn("VCC Pwr (W)", t->GetNumOfColumns());
            PD_TABLE* total = new PD_TABLE("Total ASC");
            total->SetColumns({"Total Pwr (W)"});
            total->AddRow({"0"});
            panel->AddTable(total);
            continue;
        }
        for (PD_TABLE* table : panel->tables) {
            const std::string tname = table->name;
            PD_SECTION* section = pqnData->GetSection(tname.c_str());
            if (!section) continue;
            PD_KEYSECT* keys = dynamic_cast<PD_KEYSECT*>(section);
            if (!keys) {
                std::cerr << "Section " << tname << " must be in _KEYSECT format." << std::endl;
                continue;
            }
            if (keys->GetKeyIndex("_SECTION") < 0) {
                std::cerr << "Section " << tname << " has no _SECTION." << std::endl;
                continue;
            }
            if (tname == "Termination")
                table->AddColumn("Termination Pwr (W)", table->GetNumOfColumns());
            bool seenCore = false;
            for (const std::string& pwrName :
                 GetArrayOfTokensWithTrim(keys->GetValue("_SECTION"), ",", false)) {
                if (pwrName.empty()) continue;
                PD_SECTION* ps = pwrData->GetSection(pwrName.c_str());
                if (!ps) continue;
                PD_PWRSECT* pwr = dynamic_cast<PD_PWRSECT*>(ps);
                if (!pwr) {
                    std::cerr << "Section " << pwrName << " must be in _PWRSECT format."
                              << std::endl;
                    continue;
                }
                for (const std::string& supplyName : pwr->supplies) {
                    std::string supply = supplyName;
                    if (IsPfrArch(arch) && supply.compare(0, 4, "PFR_") == 0)
                        supply = supply.substr(4);
                    if (supply == "VCC" || supply == "VCCPG") {
                        if (seenCore) supply = "VCC";
                        seenCore = true;
                    }
                    if (supply == "VCC_DPHY" || supply == "VCCA_DPHY" || supply == "VCCPLL_DPHY") {
                        if (!HasDphy(family)) continue;
                        for (const std::string& copy : DphyCopySuffixes(PackageName()))
                            AddPowerColumns(table, supply + copy);
                        continue;
                    }
                    AddPowerColumns(table, supply);
                }
            }
            if (tname == "Termination")
                table->AddColumn("DCbias VTT Pwr (W)", table->GetNumOfColumns());
            if (tname == "Bank Voltage") {
                table->AddColumn("Unused Leakage VCCIO Pwr (W)", table->GetNumOfColumns());
                table->AddColumn("Unused DCbias VCCIO Pwr (W)", table->GetNumOfColumns());
            }
        }
        AddTotalTable(panel);
    }
}

void PC_ENG::AddTotalTable(PC_PANEL* panel) {
    const std::string pname = panel->GetName();
    std::string header = pname.find("Term") != std::string::npos ? "Total Termination Pwr (W),"
                                                                 : "Total Dyn. Pwr (W),";
    header += "Total Pwr (W)";
    std::vector<std::string> unused;
    for (PD_TABLE* table : panel->tables) {
        for (const std::string& column : table->columns) {
            if (column.compare(0, 8, "Leakage ") == 0 || column.compare(0, 7, "DCbias ") == 0)
                AddToVector(unused, column);
        }
    }
    for (const std::string& column : unused) header += ",Unused " + column;
    if (pname == "Misc") {
        header +=
            ",Total VCC Pwr (W),Total Dyn. VCC Pwr (W),Total Leakage VCC Pwr (W),Total DCbias VCC "
            "Pwr (W)";
        struct {
            const char* supply;
            const char* tag;
            bool always;
        } const extra[] = {{"Vcc1.2", "VCC12", false},        {"Vccaux", "VCCAUX", false},
                           {"Vccp", "VCCP", false},           {"Vccio", "VCCIO", true},
                           {"Vccpm", "VCCPM", false},         {"Vccjp", "VCCJP", false},
                           {"Vccprog", "VCCPROG", false},     {"Vccinp 3.3", "VCCINP33", false},
                           {"Vccinp 5.0", "VCCINP50", false}, {"Vpp2v5", "VPP2V5", false}};
        for (const auto& e : extra) {
            if (!e.always && !HasSupply(e.supply)) continue;
            header += std::string(",Total Leakage ") + e.tag + " Pwr (W),Total DCbias " + e.tag +
                      " Pwr (W)";
        }
    }
    if (pname == "EFB") header += ",Total Leakage VCC Pwr (W),Total DCbias VCC Pwr (W)";

    PD_TABLE* total = new PD_TABLE(("Total " + pname).c_str());
    total->SetTableHeader(header.c_str());
    total->AddRow(std::vector<std::string>(total->GetNumOfColumns(), "0"));
    panel->AddTable(total);
}

int PC_ENG::getColumnCountMinusPwrColumn(PD_TABLE* table) const {
    if (!table) return 0;
    int n = table->GetNumOfColumns();
    for (int c = 0; c < n; ++c)
        if (HoldsPwr(table->columns[c])) return c;
    return n;
}

std::string PC_ENG::CurrentTJ() const {
    if (!JunctionTemperature.empty() && JunctionDone == 0) return JunctionTemperature;
    return AmbientTemperature;
}

std::vector<std::string> PC_ENG::GetArrayOfColumnNames(PD_TABLE* table, int* count) {
    std::vector<std::string> names;
    const int data = getColumnCountMinusPwrColumn(table);
    names.reserve(data + 16);
    for (int c = 0; c < data; ++c) {
        std::string shortName;
        NameConvert(table->columns[c], shortName);
        names.push_back(shortName);
    }
    ForMissingExtraNames(table, [&names](const char* name) { names.push_back(name); });
    // The I/O rows see their bank's supplies.
    for (const std::string& n : IoRowSupplyNames(table)) names.push_back(n);
    AppendRowContextNames(names);
    if (count) *count = static_cast<int>(names.size());
    return names;
}

void PC_ENG::AppendRowContextNames(std::vector<std::string>& names) const {
    for (PD_TABLE* t : {GetSupplyTable(), GetPGSupplyTable()}) {
        if (!t) continue;
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            std::string pwrName;
            TranslateSupplyPCFtoPWR(t->GetValueAt(r, 0), pwrName);
            names.push_back(pwrName);
        }
    }
    for (const char* extra :
         {"DPM", "TJ", "Device", "Package", "Speed", "Operating", "Process", "archName"})
        names.push_back(extra);
}

void PC_ENG::ForRowContextValues(const std::function<void(const char*)>& put) const {
    for (PD_TABLE* t : {GetSupplyTable(), GetPGSupplyTable()}) {
        if (!t) continue;
        for (int r = 0; r < t->GetNumOfRows(); ++r) put(t->GetValueAt(r, 1));
    }
    put(GetVDPM("Vcc", "DPM").c_str());
    put(CurrentTJ().c_str());
    put(DeviceName());
    put(PackageName());
    put(SpeedGrade());
    put(OperatingName());
    put(GetProcessType());
    put(ArchName());
}

std::vector<std::string> PC_ENG::GetArrayOfColumnValues(PD_TABLE* table, int row, int* count) {
    std::vector<std::string> values;
    FillArrayOfColumnValues(table, row, values);
    if (count) *count = static_cast<int>(values.size());
    return values;
}

void PC_ENG::FillArrayOfColumnValues(PD_TABLE* table, int row, std::vector<std::string>& values) {
    const int data = getColumnCountMinusPwrColumn(table);
    size_t n = 0;
    auto put = [&values, &n](const char* text) {
        if (n < values.size())
            values[n].assign(text);
        else
            values.emplace_back(text);
        ++n;
    };
    values.reserve(data + 16);
    // The Tx driver's emphasis current is worked out from the row's settings.
    const int lpre = table->GetColumnIndex("LPRE_TOTAL");
    for (int c = 0; c < data; ++c) {
        if (c == lpre)
            put(GetSerdesLpretotal(table, row, c).c_str());
        else
            put(table->GetValueAt(row, c));
    }
    ForMissingExtraNames(table, [&put](const char*) { put("0"); });
    if (const int io = IoRowSupplyCount(table)) {
        std::string vccio, vtt;
        IoRowSupplyValues(table, row, vccio, vtt);
        put(vccio.c_str());
        if (io > 1) put(vtt.c_str());
    }
    ForRowContextValues(put);
    values.resize(n);
}
