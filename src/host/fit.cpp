// `pwc fit`: which devices can hold what a project's tabs use.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "host.h"

namespace pwchost {

std::vector<FitResult> FitDevices(Session& session,
                                  std::vector<std::pair<std::string, std::string>> candidates) {
    const DeviceInfo& d = session.Device();
    const Catalog catalog = Catalog::Load();
    if (candidates.empty()) {
        for (const CatalogDevice& c : catalog.devices)
            if (c.family == d.family)
                for (const std::string& package : c.packages)
                    candidates.emplace_back(c.device, package);
        if (candidates.empty())
            throw UsageError("the catalog of " + DataDirectory() + " lists no device of family " +
                             d.family);
    } else if (catalog.present) {
        for (const auto& [device, package] : candidates)
            catalog.Check(d.family, device, package, "", "");
    }

    std::vector<FitResult> results;
    PC_ENG& engine = session.Engine();
    for (const auto& [device, package] : candidates) {
        std::string strings[7] = {d.arch,  d.family,    device,    package,
                                  d.speed, d.operating, d.partName};
        char* array[7];
        for (int i = 0; i < 7; ++i) array[i] = &strings[i][0];
        FitResult r;
        r.device = device;
        r.package = package;
        {
            // The candidate's files may be missing; the engine says so itself.
            RunLogCapture capture;
            r.fits = engine.ResourcesDrcCheck(array) != 0;
        }
        const std::string& text = engine.DrcMessage;
        for (size_t pos = 0; pos < text.size();) {
            size_t end = text.find('\n', pos);
            if (end == std::string::npos) end = text.size();
            std::string line = text.substr(pos, end - pos);
            while (!line.empty() && line.back() == ' ') line.pop_back();
            if (!line.empty()) r.messages.push_back(line);
            pos = end + 1;
        }
        results.push_back(r);
    }
    return results;
}

void PrintFit(const std::vector<FitResult>& results, std::ostream& out) {
    std::vector<std::vector<std::string>> rows{{"Device", "Package", "Fits", "Messages"}};
    for (const FitResult& r : results) {
        std::string messages;
        for (const std::string& m : r.messages) messages += (messages.empty() ? "" : " ") + m;
        rows.push_back({r.device, r.package, r.fits ? "yes" : "no", messages});
    }
    std::vector<size_t> width(rows[0].size(), 0);
    for (const auto& row : rows)
        for (size_t c = 0; c < row.size(); ++c) width[c] = std::max(width[c], row[c].size());
    for (const auto& row : rows) {
        std::string line;
        for (size_t c = 0; c < row.size(); ++c)
            line += row[c] + (c + 1 < row.size() ? std::string(width[c] - row[c].size() + 2, ' ')
                                                 : std::string());
        while (!line.empty() && line.back() == ' ') line.pop_back();
        out << line << '\n';
    }
}

std::string FitJson(const std::vector<FitResult>& results) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const FitResult& r : results)
        list.push_back({{"device", r.device},
                        {"package", r.package},
                        {"fits", r.fits},
                        {"messages", r.messages}});
    return list.dump(2);
}

int RunFit(const std::string& project, const std::vector<std::string>& devices,
           const std::vector<std::string>& packages, bool json, std::ostream& out) {
    if (devices.size() != packages.size()) throw UsageError("give one --package for each --device");
    std::vector<std::pair<std::string, std::string>> candidates;
    for (size_t i = 0; i < devices.size(); ++i) candidates.emplace_back(devices[i], packages[i]);
    Session session(project);
    const std::vector<FitResult> results = FitDevices(session, candidates);
    if (json)
        out << FitJson(results) << '\n';
    else
        PrintFit(results, out);
    const bool any =
        std::any_of(results.begin(), results.end(), [](const FitResult& r) { return r.fits; });
    return any ? kExitOk : kExitDesignRule;
}

}  // namespace pwchost
