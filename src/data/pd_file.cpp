// Loading and saving files, and the PD_DATA entry points of the two forms.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "pd_format.h"
#include "pd_util.h"

namespace {

void Report(const std::string& origin, const std::string& what) {
    PD_UTIL::Fprintln(origin + ": " + what);
}

bool ReadFile(const char* path, std::string* out) {
    if (!path || !*path) {
        Report("(no file name)", "cannot be opened");
        return false;
    }
    std::FILE* f = std::fopen(path, "rb");
    if (!f) {
        Report(path, std::string("cannot be opened: ") + std::strerror(errno));
        return false;
    }
    out->clear();
    char buffer[1 << 16];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) out->append(buffer, n);
    const bool failed = std::ferror(f) != 0;
    std::fclose(f);
    if (failed) Report(path, "read error");
    return !failed;
}

// Writes next to the target and renames, so that a failure leaves the old file.
bool WriteFile(const char* path, const std::string& bytes) {
    if (!path || !*path) {
        Report("(no file name)", "cannot be written");
        return false;
    }
    const std::string tmp = std::string(path) + ".tmp." + std::to_string(getpid());
    std::FILE* f = std::fopen(tmp.c_str(), "wb");
    if (!f) {
        Report(path, std::string("cannot be written: ") + std::strerror(errno));
        return false;
    }
    bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    ok = std::fclose(f) == 0 && ok;
    if (ok && std::rename(tmp.c_str(), path) == 0) return true;
    Report(path, std::string("cannot be written: ") + std::strerror(errno));
    std::remove(tmp.c_str());
    return false;
}

}  // namespace

bool PD_DATA::ParseText(const std::string& text, const std::string& origin) {
    std::string error;
    if (PD_FORMAT::ParseText(*this, text, &error)) return true;
    PD_UTIL::Fprintln(origin + ":" + error);
    return false;
}

bool PD_DATA::ParseBinary(const std::string& bytes, const std::string& origin) {
    std::string error;
    if (PD_FORMAT::ParseBinary(*this, bytes, &error)) return true;
    Report(origin, error);
    return false;
}

std::string PD_DATA::ToText() const {
    return PD_FORMAT::ToText(*this);
}

std::string PD_DATA::ToBinary() const {
    return PD_FORMAT::ToBinary(*this);
}

bool PD_DATA::LoadTxtFile(const char* path) {
    Clear();
    std::string text;
    if (!ReadFile(path, &text)) return false;
    return ParseText(text, path);
}

bool PD_DATA::LoadBinFile(const char* path) {
    Clear();
    std::string bytes;
    if (!ReadFile(path, &bytes)) return false;
    return ParseBinary(bytes, path);
}

bool PD_DATA::LoadFile(const char* path) {
    return PD_UTIL::IsBinaryFile(path) ? LoadBinFile(path) : LoadTxtFile(path);
}

bool PD_DATA::SaveTxtFile(const char* path) const {
    return WriteFile(path, ToText());
}

bool PD_DATA::SaveBinFile(const char* path) const {
    return WriteFile(path, ToBinary());
}
