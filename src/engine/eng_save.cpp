// Writing the project back out: a fresh PD_DATA built section by section.
#include <cstdio>
#include <cstring>
#include <map>

#include "baspcengin.h"
#include "pc_families.h"

using namespace pwc;

namespace {

PD_KEYSECT* CopyKeySection(PD_DATA* from, const char* name) {
    auto* source = from ? dynamic_cast<PD_KEYSECT*>(from->GetSection(name)) : nullptr;
    if (!source) return nullptr;
    auto* copy = new PD_KEYSECT(source->name.c_str());
    for (const auto& kv : source->keys) copy->AddKeyVal(kv.first.c_str(), kv.second.c_str());
    return copy;
}

// The template's keys as an ordered map (emitted in ascending byte order).
std::map<std::string, std::string> TemplateKeys(const PD_KEYSECT* section) {
    std::map<std::string, std::string> keys;
    for (const auto& kv : section->keys) keys[kv.first] = kv.second;
    return keys;
}

void Emit(PD_KEYSECT* section, const std::map<std::string, std::string>& keys) {
    for (const auto& kv : keys) section->AddKeyVal(kv.first.c_str(), kv.second.c_str());
}

std::string Number4(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.4lf", v);
    return buf;
}

// "first=second,third,..."
std::string EqualsList(const std::vector<std::string>& cells, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        if (i == 1) text += "=";
        if (i > 1) text += ",";
        if (i < cells.size()) text += cells[i];
    }
    return text;
}

std::string CommaList(const std::vector<std::string>& cells) {
    std::string text;
    for (size_t i = 0; i < cells.size(); ++i) text += (i ? "," : "") + cells[i];
    return text;
}

std::vector<std::string> RowCells(const PD_TABLE* t, int row) {
    std::vector<std::string> cells;
    for (int c = 0; c < t->GetNumOfColumns(); ++c) cells.push_back(t->GetValueAt(row, c));
    return cells;
}

}  // namespace

PD_DATA* PC_ENG::BuildProjectData(bool temporary) {
    const std::string family = FamilyName();
    PD_DATA* data = new PD_DATA;

    for (const char* name : {"Info", "Project"})
        if (PD_KEYSECT* s = CopyKeySection(project, name)) data->AddSection(s);
    if (auto* proj = dynamic_cast<PD_KEYSECT*>(data->GetSection("Project"))) {
        proj->RemoveKey("Speed");
        std::string grade = SpeedGrade();
        if (grade.empty() || grade[0] != '-') grade = "-" + grade;
        proj->AddKeyVal("Performance", grade.c_str());
        proj->AddKeyVal("PartName", DeviceString(6));
    }

    if (auto* tmpl = dynamic_cast<PD_KEYSECT*>(pcfData->GetSection("Settings"))) {
        auto* settings = new PD_KEYSECT(tmpl->name.c_str());
        std::map<std::string, std::string> keys = TemplateKeys(tmpl);
        keys["EstimationMode"] = estimationLevel;
        keys["ProcessType"] = GetProcessType();
        keys["SoftwareMode"] = SoftwareMode;
        Emit(settings, keys);
        auto text = [settings](const char* key, const std::string& v) {
            if (!v.empty()) settings->AddKeyVal(key, v.c_str());
        };
        auto number = [settings](const char* key, double v) {
            settings->AddKeyVal(key, Number4(v).c_str());
        };
        text("SectionY", SectionY);
        text("SectionX", SectionX);
        number("SectionLowerLimit", SectionLowerLimit);
        number("SectionUpperLimit", SectionUpperLimit);
        number("SectionResolution", SectionResolution);
        text("TempAmbY", TempAmbY);
        // A temporary project writes the X name under the Y key and the
        // frequency upper limit under another key; both stay so.
        text(temporary ? "TempAmbY" : "TempAmbX", TempAmbX);
        number("TempAmbLowerLimit", TempAmbLowerLimit);
        number("TempAmbUpperLimit", TempAmbUpperLimit);
        number("TempAmbResolution", TempAmbResolution);
        text("FreqY", FreqY);
        text("FreqX", FreqX);
        number("FreqLowerLimit", FreqLowerLimit);
        number(temporary ? "FreqLowerUpper" : "FreqUpperLimit", FreqUpperLimit);
        number("FreqAmbResolution", FreqAmbResolution);
        text("PowerMode", GetPowerModeType());
        WriteStandbyControls(settings);
        data->AddSection(settings);
    }

    if (auto* tmpl = dynamic_cast<PD_KEYSECT*>(pcfData->GetSection("Thermal"))) {
        auto* thermal = new PD_KEYSECT(tmpl->name.c_str());
        std::map<std::string, std::string> keys = TemplateKeys(tmpl);
        const bool custom =
            HeatSinkSelection == "Custom Profile Heat Sink" && !ThetaSACustom.empty();
        keys["AmbientTemperature"] = AmbientTemperature;
        keys["JunctionTemperature"] = JunctionTemperature;
        keys["MaxSafeAmbient"] = MaxSafeAmbient;
        keys["thetaOption"] = ThetaOption;
        keys["thetaBoard"] = BoardSelection;
        keys["thetaHeatSink"] = HeatSinkSelection;
        keys["UserThetaSA"] = custom ? "Yes" : "No";
        keys["CustomThetaSA"] = custom ? ThetaSACustom : "-1";
        keys["ThetaEffective"] = ThetaJA;
        keys["Airflow"] = AirFlowSelection;
        Emit(thermal, keys);
        data->AddSection(thermal);
    }

    // Panel tables: the summary's results and the "Total " tables stay out.
    size_t columns = 0;
    for (PC_PANEL* panel : panels) {
        for (PD_TABLE* table : panel->tables) {
            const std::string& name = table->name;
            if (std::string(",Peak Startup,Current,Power,Block,PGVDPM").find("," + name) !=
                    std::string::npos ||
                name.compare(0, 6, "Total ") == 0)
                continue;
            std::string header;
            if (name == "VDPM") {
                columns = table->columns.size();
                header = EqualsList(table->columns, columns);
            } else if (auto* tmpl = dynamic_cast<PD_TBLSECT*>(pgtData->GetSection(name.c_str()))) {
                for (int r = 0; r < tmpl->GetNumOfRows(); ++r) {
                    if (std::strcmp(tmpl->GetValueAt(r, 0), "_KEY") != 0) continue;
                    std::vector<std::string> keys = RowCells(tmpl, r);
                    keys.erase(keys.begin());
                    columns = keys.size();
                    header = EqualsList(keys, columns);
                    break;
                }
            }
            auto* section = new PD_TBLSECT(name.c_str());
            section->SetTableHeader(header.c_str());
            for (int r = 0; r < table->GetNumOfRows(); ++r)
                section->AddTableData(EqualsList(RowCells(table, r), columns).c_str());
            data->AddSection(section);
        }
    }

    for (const char* name : {"PLL Clock", "Connections", "Hierarchical Connections"}) {
        auto* source = project ? dynamic_cast<PD_TBLSECT*>(project->GetSection(name)) : nullptr;
        if (!source) continue;
        auto* copy = new PD_TBLSECT(name);
        copy->SetTableHeader(CommaList(source->columns).c_str());
        for (int r = 0; r < source->GetNumOfRows(); ++r)
            copy->AddTableData(CommaList(RowCells(source, r)).c_str());
        data->AddSection(copy);
    }
    PD_SECTION* asc = project ? project->GetSection("ASC CURRENT") : nullptr;
    if (asc && SavesAscCurrent(family, DeviceName())) data->AddSection(asc->Clone());
    return data;
}

void PC_ENG::WriteStandbyControls(PD_KEYSECT* settings) {
    const std::string family = FamilyName();
    const bool listA = HasStandbyControls(family);
    const bool listB = HasSerdesStandbyControls(family);
    if (listA) {
        settings->AddKeyVal("DisableBandgap", DisableBandgap ? "true" : "false");
        settings->AddKeyVal("DisablePor", DisablePor ? "true" : "false");
        settings->AddKeyVal("DisableDll", DisableDll ? "true" : "false");
        settings->AddKeyVal("DisableOsc", DisableOsc ? "true" : "false");
    }
    if (listB)
        for (StandbyMap* m : {&mapPCS, &mapPCSPLL, &mapFABA, &mapPUSL, &mapDDRDLL})
            SetStandbyControlToPcf(settings, *m);
    if (listA)
        for (StandbyMap* m : {&mapPLL, &mapInRd, &mapPg, &mapLVDS, &mapSlewrate})
            SetStandbyControlToPcf(settings, *m);
    if (HasDphy(family)) SetStandbyControlToPcf(settings, mapMIPI);
}

PD_DATA* PC_ENG::SaveAs(const char* path, int format) {
    PD_DATA* data = BuildProjectData(false);
    if (format == 0)
        data->SaveBinFile(path);
    else
        data->SaveTxtFile(path);
    // The engine owns the project from now on; the previous one is gone.
    delete project;
    project = data;
    ownsProject = true;
    return data;
}

PD_DATA* PC_ENG::SaveAsTempPCF() {
    return BuildProjectData(true);
}
