// Engine options from the project: defaults, graph settings, thermal
// selections and the standby controls.
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

PD_KEYSECT* KeySection(PD_DATA* data, const char* name) {
    return data ? dynamic_cast<PD_KEYSECT*>(data->GetSection(name)) : nullptr;
}

std::string Numbered(const char* stem, int i, const char* tail = "") {
    return std::string(stem) + std::to_string(i) + tail;
}

}  // namespace

void PC_ENG::SetDefaultParameter() {
    if (PD_KEYSECT* proj = KeySection(project, "Project")) {
        OperatingCondition = proj->GetValue("Operating");
        ProjPackage = proj->GetValue("Package");
        DesignName = proj->GetValue("DesignName");
        ProjFamily = proj->GetValue("Family");
        ProjDevice = proj->GetValue("Device");
        ProjPartName = proj->GetValue("PartName");
    }
    ProjSpeed = SpeedGrade();

    AmbientTemperature = "25";
    ThetaOption = "ThermalModels";
    ThetaUserDefined = CustomHeatSink = "No";
    ThetaJAUserSet = ThetaJBUserSet = ThetaBAUserSet = ThetaJCUserSet = ThetaSAUserSet = "No";
    ThetaJA = ThetaJAModel = ThetaJB = ThetaBA = ThetaJC = ThetaSA = "0.0";
    ThetaSACustom = "No";
    BoardSelection = "Medium Board";
    HeatSinkSelection = "No Heat Sink";
    AirFlowSelection = "200 LFM";
    estimationLevel = "Medium";

    if (PD_KEYSECT* settings = KeySection(project, "Settings")) {
        if (*settings->GetValue("ProcessType")) SetProcessType(settings->GetValue("ProcessType"));
        if (*settings->GetValue("EstimationMode"))
            estimationLevel = settings->GetValue("EstimationMode");
        SoftwareMode = settings->GetValue("SoftwareMode");
        graphDirty = std::strcmp(settings->GetValue("graphDirty"), "true") == 0;
        graphProcessing = std::strcmp(settings->GetValue("graphProcessing"), "true") == 0;
        auto text = [settings](const char* key, const char* def) {
            const char* v = settings->GetValue(key);
            return std::string(*v ? v : def);
        };
        auto number = [settings](const char* key, double def) {
            const char* v = settings->GetValue(key);
            return *v ? std::strtod(v, nullptr) : def;
        };
        SectionY = text("SectionY", "Total Power");
        SectionX = text("SectionX", "Vcc");
        SectionLowerLimit = number("SectionLowerLimit", 0.0);
        SectionUpperLimit = number("SectionUpperLimit", 0.0);
        SectionResolution = number("SectionResolution", 0.0);
        TempAmbY = text("TempAmbY", "Total Power");
        // An empty X name puts its default into the Y slot and stays empty.
        TempAmbX = settings->GetValue("TempAmbX");
        if (TempAmbX.empty()) TempAmbY = "Ambient Temperature";
        TempAmbLowerLimit = number("TempAmbLowerLimit", -30.0);
        TempAmbUpperLimit = number("TempAmbUpperLimit", 115.0);
        TempAmbResolution = number("TempAmbResolution", 29.0);
        FreqY = text("FreqY", "Total Power");
        FreqX = text("FreqX", "No Clocks Found!");
        FreqLowerLimit = number("FreqLowerLimit", 10.0);
        FreqUpperLimit = number("FreqUpperLimit", 100.0);
        FreqAmbResolution = number("FreqAmbResolution", 20.0);
    }

    if (PD_KEYSECT* thermal = KeySection(project, "Thermal")) {
        auto take = [thermal](const char* key, std::string& member) {
            const char* v = thermal->GetValue(key);
            if (*v) member = v;
        };
        take("thetaOption", ThetaOption);
        take("thetaBoard", BoardSelection);
        const char* sink = thermal->GetValue("thetaHeatSink");
        if (*sink && GetTheta(DevicePackageKey(), "HS Low Profile 200") != "999")
            HeatSinkSelection = sink;
        take("Airflow", AirFlowSelection);
        if (HeatSinkSelection.find("Custom") != std::string::npos)
            take("CustomThetaSA", ThetaSACustom);
        take("ThetaEffective", ThetaJA);
        take("AmbientTemperature", AmbientTemperature);
    }

    defaultFreq = 0.0;
    defaultAF = 10.0;
    reportFormat = "html";
    baseIOType = "LVCMOS12_6";
    kValues.assign(KConstants().size(), "");
    if (PD_KEYSECT* reg = KeySection(pwrData, "REGULATOR_MISC"))
        regulatedVcc = reg->GetValue("VCC_CORE_DYN_OVERRIDE");
    if (PD_KEYSECT* reg = KeySection(pwrData, "REGULATOR PLL"))
        regulatedVccpll = reg->GetValue("VCCPLL_CORE_DYN_OVERRIDE");
    SetInOutBidiVector();

    iterationCounter = 0;
    const char* unusedDevice = std::getenv("PWC_UNUSED_IO_DEVICE");
    unusedIODevice = unusedDevice && std::strcmp(unusedDevice, "1") != 0 ? 0 : 1;
    PD_PWRSECT* io = dynamic_cast<PD_PWRSECT*>(pwrData->GetSection("IO"));
    if (!io) {
        PD_UTIL::Fprint("Note: Could'nt find data section :");
        PD_UTIL::Fprintln("IO");
    } else {
        for (const PD_MEMBER& m : io->members) {
            size_t p = m.name.find("-standby");
            if (p != std::string::npos && p > 0)
                ioTypesWithStandby.insert(m.name.substr(0, m.name.find('-')));
        }
    }

    const char* single = std::getenv("SINGLE_MAX_SAFE_AMBIENT_ITERATION");
    SingleSafeAmbientPass = single && std::strcmp(single, "Yes") == 0;

    SetThetaBoardSelectionMap();
    voltageList = VoltageListOfArch(ArchName());

    const char* html = std::getenv("VRL_PWC_HTML_DEBUG");
    debugHtml = html && std::strcmp(html, "1") == 0;
    ascCalculator = false;
    std::string mode = GetPowerModeType();
    powerMode = mode == "Sleep" ? 1 : 0;
}

void PC_ENG::SetThetaBoardSelectionMap() {
    thetaShortForm = {{"JEDEC Board (2S2P)", "JEDEC"},
                      {"Small Board", "Small PCB"},
                      {"Medium Board", "Med PCB"},
                      {"Large Board", "Large PCB"},
                      {"No Heat Sink", "noHS"},
                      {"Low Profile Heat Sink", "lowHS"},
                      {"Medium Profile Heat Sink", "medHS"},
                      {"High Profile Heat Sink", "highHS"},
                      {"Custom Profile Heat Sink", "customHS"},
                      {"0 LFM", "0fpm"},
                      {"200 LFM", "200fpm"},
                      {"500 LFM", "500fpm"}};
}

void PC_ENG::Map_Initialize(StandbyMap& map, bool value) {
    for (auto& kv : map) *kv.second = value;
}

void PC_ENG::SetStandbyControlFromPcf(PD_KEYSECT* section, StandbyMap* map) {
    if (!section || !map) return;
    for (auto& kv : *map) {
        const char* v = section->GetValue(kv.first.c_str());
        if (!*v) continue;
        *kv.second = std::strcmp(v, "true") == 0;
    }
}

void PC_ENG::SetStandbyControlToPcf(PD_KEYSECT* section, StandbyMap map) {
    if (!section) return;
    for (const auto& kv : map) section->AddKeyVal(kv.first.c_str(), *kv.second ? "true" : "false");
}

bool PC_ENG::GetStandbyFlag(const std::string& key) const {
    auto it = standbyFlags.find(key);
    return it != standbyFlags.end() && it->second;
}

void PC_ENG::SetPowerControlDefault() {
    const std::string family = devStr[1];
    standbyFlags.clear();
    StandbyMap* all[] = {&mapInRd, &mapSlewrate, &mapPg,     &mapLVDS,   &mapPLL, &mapPUSL,
                         &mapFABA, &mapPCS,      &mapPCSPLL, &mapDDRDLL, &mapMIPI};
    for (StandbyMap* m : all) m->clear();
    auto add = [this](StandbyMap& map, const std::string& key) { map[key] = &standbyFlags[key]; };

    for (int i = 0; i < 8; ++i) add(mapInRd, Numbered("DisableInRd", i));
    for (int i = 0; i < 6; ++i) add(mapSlewrate, Numbered("DisableSlewrate", i));
    for (int i = 0; i < 8; ++i) add(mapPg, Numbered("EnablePg", i));
    add(mapLVDS, "DisableLVDS");
    for (int i = 1; i < 8; ++i) add(mapLVDS, Numbered("DisableLVDS", i));
    // Two PLL keys for the small families, the eight corner keys instead for
    // the others.
    if (HasTwoPllStandbyKeys(family)) {
        add(mapPLL, "DisablePLL0");
        add(mapPLL, "DisablePLL1");
    } else {
        for (const char* corner : {"BL", "BR", "TL", "TR"})
            for (int i = 0; i < 2; ++i)
                add(mapPLL, Numbered((std::string("DisablePLL") + corner).c_str(), i));
    }
    for (int i = 0; i < 8; ++i) add(mapPUSL, Numbered("DisablePUSL", i));
    add(mapFABA, "DisableFABAPCIEPCIE");
    add(mapFABA, "DisableFABASRIOSRIO");
    for (int i = 0; i < 4; ++i) add(mapFABA, Numbered("DisableFABASRIOEMAC", i));
    for (const char* mac : {"MAC2", "MAC3"}) {
        add(mapFABA, std::string("DisableFABA") + mac + "XMAC");
        for (const char* side : {"EMACA", "EMACB"})
            for (int i = 0; i < 4; ++i)
                add(mapFABA, Numbered((std::string("DisableFABA") + mac + side).c_str(), i));
    }
    if (HasQuadPcsStandby(family)) {
        for (int q = 0; q < 4; ++q)
            for (int c = 0; c < 4; ++c)
                for (const char* dir : {"Rx", "Tx", "LOS"})
                    add(mapPCS, "DisablePCSQ" + std::to_string(q) + "CH" + std::to_string(c) + dir);
        for (int q = 0; q < 4; ++q) {
            add(mapPCSPLL, Numbered("DisableQ", q, "HSPLL"));
            add(mapPCSPLL, Numbered("DisableQ", q, "LSPLL"));
        }
        add(mapPCSPLL, "DisableCornerPLL");
    }
    if (HasDualPcsStandby(family)) {
        for (int d = 0; d < 4; ++d)
            for (int c = 0; c < 2; ++c)
                for (const char* dir : {"Rx", "Tx", "LOS", "CDRPLL"})
                    add(mapPCS, "DisablePCSD" + std::to_string(d) + "CH" + std::to_string(c) + dir);
        for (int d = 0; d < 4; ++d) add(mapPCSPLL, Numbered("DisableD", d, "TXPLL"));
    }
    for (const char* corner : {"BL", "BR", "TL", "TR"})
        for (int i = 0; i < 2; ++i)
            add(mapDDRDLL, Numbered((std::string("DisableDDRDLL") + corner).c_str(), i));
    if (HasDphy(family)) {
        add(mapMIPI, "DisableMIPIDPHY0");
        add(mapMIPI, "DisableMIPIDPHY1");
    }

    DisableBandgap = DisablePor = DisableDll = DisableOsc = false;
    for (StandbyMap* m : all) Map_Initialize(*m, false);
    if (familySwitching) return;

    PD_KEYSECT* settings = KeySection(project, "Settings");
    if (!settings) return;
    DisableBandgap = std::strcmp(settings->GetValue("DisableBandgap"), "true") == 0;
    DisablePor = std::strcmp(settings->GetValue("DisablePor"), "true") == 0;
    DisableDll = std::strcmp(settings->GetValue("DisableDll"), "true") == 0;
    DisableOsc = std::strcmp(settings->GetValue("DisableOsc"), "true") == 0;
    // Reading order: input read, slew rate, power gate, LVDS, PLL, channels,
    // channel PLLs, pull-up, hard block, DDR DLL, MIPI.
    StandbyMap* order[] = {&mapInRd,   &mapSlewrate, &mapPg,   &mapLVDS,   &mapPLL, &mapPCS,
                           &mapPCSPLL, &mapPUSL,     &mapFABA, &mapDDRDLL, &mapMIPI};
    for (StandbyMap* m : order) SetStandbyControlFromPcf(settings, m);
}
