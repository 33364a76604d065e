// An open project: its device, its engine, and saving it.
#include "host.h"

namespace pwchost {

namespace {

std::string Key(const PD_KEYSECT& section, const char* key) {
    return section.GetValue(key);
}

}  // namespace

DeviceInfo ReadDeviceInfo(const PD_DATA& project) {
    const auto* section = dynamic_cast<const PD_KEYSECT*>(project.GetSection("Project"));
    if (!section) throw UsageError("the project has no \"Project\" key section");
    DeviceInfo info;
    info.family = Key(*section, "Family");
    info.device = Key(*section, "Device");
    info.package = Key(*section, "Package");
    info.speed = Key(*section, "Speed");
    if (info.speed.empty()) {
        info.speed = Key(*section, "Performance");
        if (!info.speed.empty() && info.speed[0] == '-') info.speed.erase(0, 1);
    }
    info.operating = Key(*section, "Operating");
    info.partName = Key(*section, "PartName");
    info.designName = Key(*section, "DesignName");
    for (const auto& [key, value] :
         {std::pair<const char*, const std::string*>{"Family", &info.family},
          {"Device", &info.device},
          {"Package", &info.package}})
        if (value->empty()) throw UsageError(std::string("the project names no ") + key);
    return info;
}

Session::Session(const std::string& projectPath, const std::string& calcLog,
                 const std::string& constraints)
    : path_(projectPath) {
    std::unique_ptr<PD_DATA> project = LoadDataFile(projectPath, "project");
    try {
        device_ = ReadDeviceInfo(*project);
    } catch (const UsageError& e) {
        throw UsageError("project '" + projectPath + "': " + e.what());
    }
    const Catalog catalog = Catalog::Load();
    device_.arch = catalog.ArchOf(device_.family);
    if (catalog.present)
        catalog.Check(device_.family, device_.device, device_.package, device_.speed,
                      device_.operating);
    char probe[PD_UTIL::kFilenameSize] = {};
    std::snprintf(probe, sizeof probe, "%s.pgt", device_.arch.c_str());
    PD_UTIL::GetFilenameRTF(probe);
    if (!PD_UTIL::FileExists(probe))
        throw UsageError("no data for family '" + device_.family + "' (architecture '" +
                         device_.arch + "') in " + DataDirectory());

    std::string strings[7] = {device_.arch,  device_.family,    device_.device,  device_.package,
                              device_.speed, device_.operating, device_.partName};
    char* array[7];
    for (int i = 0; i < 7; ++i) array[i] = &strings[i][0];
    // The port files of a firmware-resilience design lie beside the project,
    // named after its file: "<stem>_icc.pio", "<stem>_icc1.pio".
    std::string stem = projectPath.substr(projectPath.find_last_of("/\\") + 1);
    stem = stem.substr(0, stem.rfind('.'));
    engine_ = std::make_unique<PC_ENG>(array, project.get(), "Calculation", false, "", stem,
                                       projectPath, "", "", "", nullptr, nullptr, nullptr, "",
                                       false, constraints, calcLog);
    project_ = project.release();
}

Session::~Session() {
    engine_.reset();
    if (projectOwned_) delete project_;
}

void Session::SaveAs(const std::string& path) {
    RunLogCapture capture;
    PD_DATA* saved = engine_->SaveAs(path.c_str(), WantsBinary(path) ? 0 : 1);
    // The engine has dropped the project it was given and holds the new one.
    projectOwned_ = false;
    project_ = saved;
    const std::string reason = capture.FirstLine();
    if (!saved || !reason.empty() || !PD_UTIL::FileExists(path.c_str()))
        throw UsageError("cannot write '" + path + "'" +
                         (reason.empty() ? std::string() : " (" + reason + ")"));
}

}  // namespace pwchost
