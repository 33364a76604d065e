// The preference reader behind ".lpf" constraint files: statements ending in
// ";", of which two kinds matter to the engine (see docs/constraints.md).
#ifndef PWC_PR_PREFCNTL_H
#define PWC_PR_PREFCNTL_H

#include <string>
#include <utility>
#include <vector>

// One statement of a preference file.
struct PR_PREFOBJ {
    static constexpr int kOther = 0;
    static constexpr int kSysConfig = 95;   // name=value pairs
    static constexpr int kBankVccio = 100;  // a bank and its voltage
    int type = kOther;
    bool valid = false;
    std::vector<std::pair<std::string, std::string>> pairs;
    int bank = -1;
    double voltage = 0.0;  // V
    int line = 0;          // where the statement begins
    std::string text;
};

class PR_PREFCNTL {
  public:
    // Advice dumps follow the environment at the time the reader is made.
    PR_PREFCNTL();
    // False when the file can't be read; the statements read so far stay.
    bool Load(const std::string& path, const std::string& arch, const std::string& device);
    // Settles what depends on the device: a file that names another device
    // with "DEVICE" has no valid preference.
    void init_pm_specifics(const std::string& arch, const std::string& device);
    // Parses text as the content of a file; for Load and tests.
    void Parse(const std::string& text);
    const std::vector<PR_PREFOBJ>& Objects() const { return objects_; }
    // Notes on statements that were skipped, and why.
    const std::vector<std::string>& Advice() const { return advice_; }
    bool DumpAdvice() const { return dumpAdvice_; }

  private:
    void AddStatement(const std::string& text, int line);
    std::vector<PR_PREFOBJ> objects_;
    std::vector<std::string> advice_;
    std::string fileDevice_;
    bool dumpAdvice_ = false;
};

#endif
