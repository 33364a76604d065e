// Small helpers shared by the data store and the engine: the run and calc
// logs, file names, tokens and pattern comparison.
#ifndef PWC_PD_UTIL_H
#define PWC_PD_UTIL_H

#include <cstdio>
#include <string>

class PD_UTIL {
  public:
    // Run log: always written.
    static void Fprint(const char* text);
    static void Fprintln(const char* text);
    static void Fprint(const std::string& text);
    static void Fprintln(const std::string& text);
    // Calc log: written only while open.
    static void FCprintln(const char* text);
    static void FCprintln(const std::string& text);
    // Cheap enough to guard the building of log text.
    static bool IsCalcLogOpen() { return calcLogOpen_; }
    // Mode 3 sets the calc-log target ("0" keeps it, empty means none) and
    // opens the log when there is a target; mode 0 closes it.
    static void DebugMode(int mode, const std::string& text);
    // Null restores stderr.
    static void SetRunLog(std::FILE* f);
    static bool FileExists(const char* path);
    // True when the file starts with the binary data-file magic.
    static bool IsBinaryFile(const char* path);
    // Prefixes the data directory, in place; the buffer holds 2056 bytes.
    static void GetFilenameRTF(char* name);
    static void SetDataDir(const std::string& dir);
    static std::string GetDataDir();
    // Split at any delimiter character, empty tokens dropped; free with
    // DeleteArray.
    static char** GetArrayOfTokens(const char* text, const char* delimiters, int* count);
    static void DeleteArray(char** array, int count);
    // Blanks here are space, tab, CR and LF: CleanEntry strips them at both
    // ends in place, FilterBlank removes them all.
    static void CleanEntry(char* text);
    static void FilterBlank(std::string& text);
    // 0 when equal in length and every position matches or the pattern
    // has "?".
    static int SpecialCompare(const std::string& pattern, const std::string& text);
    static int SpecialCompare(const char* pattern, const char* text);

    static constexpr std::size_t kFilenameSize = 2056;

  private:
    static bool calcLogOpen_;
};

#endif
