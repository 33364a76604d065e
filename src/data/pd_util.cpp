#include "pd_util.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

bool PD_UTIL::calcLogOpen_ = false;

namespace {

std::FILE* runLog = nullptr;  // null: stderr

// The calculation log: its target, the open stream, and the last target that
// was truncated (reopening that one appends).
std::string calcTarget;
std::string calcTruncated;
std::FILE* calcFile = nullptr;

std::string dataDir;

std::FILE* RunLog() {
    return runLog ? runLog : stderr;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

void CloseCalcLog() {
    if (calcFile) std::fclose(calcFile);
    calcFile = nullptr;
}

}  // namespace

void PD_UTIL::Fprint(const char* text) {
    if (text) std::fputs(text, RunLog());
}

void PD_UTIL::Fprintln(const char* text) {
    std::FILE* f = RunLog();
    if (text) std::fputs(text, f);
    std::fputc('\n', f);
}

void PD_UTIL::Fprint(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), RunLog());
}

void PD_UTIL::Fprintln(const std::string& text) {
    std::FILE* f = RunLog();
    std::fwrite(text.data(), 1, text.size(), f);
    std::fputc('\n', f);
}

void PD_UTIL::FCprintln(const char* text) {
    if (!calcLogOpen_) return;
    if (text) std::fputs(text, calcFile);
    std::fputc('\n', calcFile);
}

void PD_UTIL::FCprintln(const std::string& text) {
    if (!calcLogOpen_) return;
    std::fwrite(text.data(), 1, text.size(), calcFile);
    std::fputc('\n', calcFile);
}

void PD_UTIL::DebugMode(int mode, const std::string& text) {
    if (mode == 0) {
        CloseCalcLog();
        calcLogOpen_ = false;
        return;
    }
    if (mode != 3) return;
    if (text != "0") {
        if (text != calcTarget) CloseCalcLog();
        calcTarget = text;
    }
    if (calcTarget.empty()) {
        CloseCalcLog();
        calcLogOpen_ = false;
        return;
    }
    if (!calcFile) {
        const bool fresh = calcTarget != calcTruncated;
        calcFile = std::fopen(calcTarget.c_str(), fresh ? "w" : "a");
        if (calcFile && fresh) calcTruncated = calcTarget;
    }
    calcLogOpen_ = calcFile != nullptr;
}

void PD_UTIL::SetRunLog(std::FILE* f) {
    runLog = f;
}

bool PD_UTIL::FileExists(const char* path) {
    if (!path || !*path) return false;
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec);
}

bool PD_UTIL::IsBinaryFile(const char* path) {
    if (!path) return false;
    std::FILE* f = std::fopen(path, "rb");
    if (!f) return false;
    char magic[4];
    const bool binary = std::fread(magic, 1, 4, f) == 4 && std::memcmp(magic, "PWCB", 4) == 0;
    std::fclose(f);
    return binary;
}

void PD_UTIL::SetDataDir(const std::string& dir) {
    dataDir = dir;
}

std::string PD_UTIL::GetDataDir() {
    const char* env = std::getenv("PWC_DATA_DIR");
    if (env && *env) return env;
    if (!dataDir.empty()) return dataDir;
    std::error_code ec;
    if (std::filesystem::is_directory(PWC_SOURCE_DATA_DIR, ec)) return PWC_SOURCE_DATA_DIR;
    return PWC_INSTALL_DATA_DIR;
}

void PD_UTIL::GetFilenameRTF(char* name) {
    if (!name || std::strchr(name, '/')) return;
    std::string path = GetDataDir();
    path += '/';
    path += name;
    if (path.size() + 1 > kFilenameSize) return;
    std::memcpy(name, path.c_str(), path.size() + 1);
}

char** PD_UTIL::GetArrayOfTokens(const char* text, const char* delimiters, int* count) {
    if (!text) text = "";
    if (!delimiters) delimiters = "";
    int n = 0;
    for (const char* p = text; *p;) {
        const std::size_t len = std::strcspn(p, delimiters);
        if (len > 0) ++n;
        p += len;
        if (*p) ++p;
    }
    char** tokens = new char*[n > 0 ? n : 1];
    int i = 0;
    for (const char* p = text; *p;) {
        const std::size_t len = std::strcspn(p, delimiters);
        if (len > 0) {
            tokens[i] = new char[len + 1];
            std::memcpy(tokens[i], p, len);
            tokens[i][len] = '\0';
            ++i;
        }
        p += len;
        if (*p) ++p;
    }
    if (count) *count = n;
    return tokens;
}

void PD_UTIL::DeleteArray(char** array, int count) {
    if (!array) return;
    for (int i = 0; i < count; ++i) delete[] array[i];
    delete[] array;
}

void PD_UTIL::CleanEntry(char* text) {
    if (!text) return;
    std::size_t len = std::strlen(text);
    while (len > 0 && IsBlank(text[len - 1])) --len;
    std::size_t start = 0;
    while (start < len && IsBlank(text[start])) ++start;
    std::memmove(text, text + start, len - start);
    text[len - start] = '\0';
}

void PD_UTIL::FilterBlank(std::string& text) {
    std::size_t out = 0;
    for (char c : text)
        if (!IsBlank(c)) text[out++] = c;
    text.resize(out);
}

int PD_UTIL::SpecialCompare(const std::string& pattern, const std::string& text) {
    if (pattern.size() != text.size()) return 1;
    for (std::size_t i = 0; i < pattern.size(); ++i)
        if (pattern[i] != text[i] && pattern[i] != '?') return 1;
    return 0;
}

int PD_UTIL::SpecialCompare(const char* pattern, const char* text) {
    return SpecialCompare(std::string(pattern ? pattern : ""), std::string(text ? text : ""));
}
