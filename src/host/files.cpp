// Files: loading either form with a readable complaint, names, the data
// directory, and the store's run log.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host.h"

namespace pwchost {

namespace {

std::FILE* runLogTarget = nullptr;

// Data and project extensions; with a "b" behind them a name asks for the
// binary form.
const char* const kDataExtensions[] = {".pcf", ".pwr", ".pqn", ".pgt",
                                       ".pwd", ".ptd", ".pwi", ".pef"};

}  // namespace

std::FILE* RunLogTarget() {
    return runLogTarget;
}

void SetRunLogTarget(std::FILE* f) {
    runLogTarget = f;
    PD_UTIL::SetRunLog(f);
}

RunLogCapture::RunLogCapture() : file_(std::tmpfile()) {
    if (file_) PD_UTIL::SetRunLog(file_);
}

RunLogCapture::~RunLogCapture() {
    PD_UTIL::SetRunLog(runLogTarget);
    if (file_) std::fclose(file_);
}

std::string RunLogCapture::FirstLine() const {
    if (!file_) return "";
    std::fflush(file_);
    const long end = std::ftell(file_);
    std::rewind(file_);
    std::string line;
    for (int c; (c = std::fgetc(file_)) != EOF && c != '\n';) line += static_cast<char>(c);
    std::fseek(file_, end, SEEK_SET);
    return line;
}

std::unique_ptr<PD_DATA> LoadDataFile(const std::string& path, const std::string& what) {
    std::error_code ec;
    if (!std::filesystem::exists(path, ec))
        throw UsageError(what + " '" + path + "' does not exist");
    if (std::filesystem::is_directory(path, ec))
        throw UsageError(what + " '" + path + "' is a directory");
    if (!std::ifstream(path, std::ios::binary))
        throw UsageError(what + " '" + path + "' cannot be read");
    auto data = std::make_unique<PD_DATA>();
    RunLogCapture capture;
    const bool ok = data->LoadFile(path.c_str());
    if (!ok) {
        std::string reason = capture.FirstLine();
        throw UsageError(what + " '" + path + "' is not a valid data file" +
                         (reason.empty() ? std::string() : " (" + reason + ")"));
    }
    return data;
}

bool WantsBinary(const std::string& path) {
    const std::string ext = std::filesystem::path(path).extension().string();
    if (ext == ".bin") return true;
    for (const char* e : kDataExtensions)
        if (ext == std::string(e) + "b") return true;
    return false;
}

bool SameFile(const std::string& a, const std::string& b) {
    std::error_code ec;
    if (std::filesystem::equivalent(a, b, ec)) return true;
    const auto wa = std::filesystem::weakly_canonical(a, ec);
    if (ec) return a == b;
    const auto wb = std::filesystem::weakly_canonical(b, ec);
    return ec ? a == b : wa == wb;
}

std::string DataDirectory() {
    return PD_UTIL::GetDataDir();
}

std::string JoinChoices(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) {
        if (!text.empty()) text += ", ";
        text += item.empty() ? "\"\"" : item;
    }
    return text.empty() ? "none" : text;
}

}  // namespace pwchost
