// Every report file goes through here: written beside its target under a
// temporary name and renamed into place, so that a failed write never leaves
// half a report behind. The outcome of each is kept for the host.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "baspcengin.h"

bool PC_ENG::WriteReportFile(const std::string& path, const std::string& content) {
    namespace fs = std::filesystem;
    const std::string temporary = path + ".pwc-partial";
    bool written = false;
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (out) {
            out.write(content.data(), static_cast<std::streamsize>(content.size()));
            out.close();
            written = !out.fail();
        }
    }
    std::error_code ec;
    if (written) {
        fs::rename(temporary, path, ec);
        written = !ec;
    }
    if (!written) fs::remove(temporary, ec);
    reportFiles.push_back({path, written});
    return written;
}

const std::vector<ReportFileResult>& PC_ENG::ReportFiles() const {
    return reportFiles;
}

void PC_ENG::ClearReportFiles() {
    reportFiles.clear();
}
