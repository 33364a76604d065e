// The catalog of the data directory: which families, devices, packages,
// speed grades and operating conditions the device data cover.
#include <algorithm>

#include "host.h"

namespace pwchost {

namespace {

std::vector<std::string> Words(const char* text) {
    int count = 0;
    char** tokens = PD_UTIL::GetArrayOfTokens(text, " \t", &count);
    std::vector<std::string> words(tokens, tokens + count);
    PD_UTIL::DeleteArray(tokens, count);
    return words;
}

bool Holds(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

void CheckIn(const std::vector<std::string>& choices, const std::string& item,
             const std::string& what, const std::string& owner) {
    if (!Holds(choices, item))
        throw UsageError("unknown " + what + " '" + item + "' for " + owner +
                         " (choices: " + JoinChoices(choices) + ")");
}

}  // namespace

Catalog Catalog::Load() {
    Catalog catalog;
    const std::string path = DataDirectory() + "/catalog";
    if (!PD_UTIL::FileExists(path.c_str())) return catalog;
    std::unique_ptr<PD_DATA> data = LoadDataFile(path, "catalog");
    catalog.present = true;
    if (auto* fams = dynamic_cast<PD_KEYSECT*>(data->GetSection("Families")))
        for (const auto& kv : fams->keys) catalog.families.push_back(kv);
    if (auto* devs = dynamic_cast<PD_TBLSECT*>(data->GetSection("Devices"))) {
        const int cFamily = devs->GetColumnIndex("Family");
        const int cDevice = devs->GetColumnIndex("Device");
        const int cPackages = devs->GetColumnIndex("Packages");
        const int cSpeeds = devs->GetColumnIndex("Speeds");
        const int cOperating = devs->GetColumnIndex("Operating");
        for (int r = 0; r < devs->GetNumOfRows(); ++r) {
            CatalogDevice d;
            d.family = devs->GetValueAt(r, cFamily);
            d.device = devs->GetValueAt(r, cDevice);
            d.packages = Words(devs->GetValueAt(r, cPackages));
            d.speeds = Words(devs->GetValueAt(r, cSpeeds));
            d.operating = Words(devs->GetValueAt(r, cOperating));
            catalog.devices.push_back(d);
        }
    }
    return catalog;
}

std::string Catalog::ArchOf(const std::string& family) const {
    for (const auto& [name, arch] : families)
        if (name == family && !arch.empty()) return arch;
    return family;
}

const CatalogDevice& Catalog::Check(const std::string& family, const std::string& device,
                                    const std::string& package, const std::string& speed,
                                    const std::string& operating) const {
    std::vector<std::string> familyNames;
    for (const CatalogDevice& d : devices)
        if (!Holds(familyNames, d.family)) familyNames.push_back(d.family);
    CheckIn(familyNames, family, "family", "the data directory " + DataDirectory());

    std::vector<std::string> deviceNames;
    const CatalogDevice* found = nullptr;
    for (const CatalogDevice& d : devices) {
        if (d.family != family) continue;
        deviceNames.push_back(d.device);
        if (d.device == device) found = &d;
    }
    CheckIn(deviceNames, device, "device", "family " + family);
    CheckIn(found->packages, package, "package", device);
    // The engine keeps what follows the first "-" of a speed grade.
    const std::string grade =
        speed.substr(speed.find('-') == std::string::npos ? 0 : speed.find('-') + 1);
    if (!speed.empty()) CheckIn(found->speeds, grade, "speed grade", device);
    if (!operating.empty()) CheckIn(found->operating, operating, "operating condition", device);
    return *found;
}

}  // namespace pwchost
