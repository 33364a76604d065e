// The pwc command: what the command-line front shares with its tests. The
// engine library knows nothing of this layer.
#ifndef PWC_HOST_HOST_H
#define PWC_HOST_HOST_H

#include <cstdio>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "pwc.h"

namespace pwchost {

// Exit codes.
constexpr int kExitOk = 0;
constexpr int kExitInternal = 1;
constexpr int kExitUsage = 2;
// The report is complete, but the design breaks a design rule of the device
// (a bank whose I/O types share no VCCIO, ...): see its messages.
constexpr int kExitDesignRule = 3;
// `pwc report`: a report file could not be written (the others were tried).
constexpr int kExitNotWritten = 4;

// A failure the user can fix (bad arguments, unknown device, unreadable
// file); the message is one line, without the program name.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Runs one command line; everything goes to `out` and `err`, nothing escapes.
int RunPwc(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

// ---- Files (files.cpp) ------------------------------------------------------

// Loads a data or project file in either form; a UsageError naming `what` and
// the store's own reason when it can't be read.
std::unique_ptr<PD_DATA> LoadDataFile(const std::string& path, const std::string& what);
// True when the name asks for the binary form: ".bin", or one of the data
// and project extensions with a "b" behind it (".pcfb", ".pwrb", ...).
bool WantsBinary(const std::string& path);
// Same file on disk (after following links), or the same path text.
bool SameFile(const std::string& a, const std::string& b);
// Directory the engine reads its data files from.
std::string DataDirectory();
// "a, b, c", for the choices in messages.
std::string JoinChoices(const std::vector<std::string>& items);

// While alive, the store's run log goes to a temporary file, so that its
// complaints can become one line of ours. Restores the previous target.
class RunLogCapture {
  public:
    RunLogCapture();
    ~RunLogCapture();
    RunLogCapture(const RunLogCapture&) = delete;
    RunLogCapture& operator=(const RunLogCapture&) = delete;
    // The first line written so far; empty when none.
    std::string FirstLine() const;

  private:
    std::FILE* file_;
};
// Where the run log goes outside a capture (null: stderr); the engine's own
// progress lines land there.
std::FILE* RunLogTarget();
void SetRunLogTarget(std::FILE* f);

// ---- The device catalog (catalog.cpp) ---------------------------------------

struct CatalogDevice {
    std::string family, device;
    std::vector<std::string> packages, speeds, operating;
};

class Catalog {
  public:
    // Reads `<data directory>/catalog`; an absent file gives an empty catalog.
    static Catalog Load();
    bool Empty() const { return devices.empty() && families.empty(); }
    // The architecture of a family; the family text itself when unlisted.
    std::string ArchOf(const std::string& family) const;
    // Throws a UsageError naming the first of family, device, package, speed
    // and operating condition that the catalog does not hold, with the
    // choices. Empty speed or operating texts are not checked.
    const CatalogDevice& Check(const std::string& family, const std::string& device,
                               const std::string& package, const std::string& speed,
                               const std::string& operating) const;

    std::vector<std::pair<std::string, std::string>> families;  // family, arch
    std::vector<CatalogDevice> devices;
    bool present = false;
};

// ---- An open project (session.cpp) -----------------------------------------

// The "Project" keys a device is bound by.
struct DeviceInfo {
    std::string arch, family, device, package, speed, operating, partName, designName;
};

class Session {
  public:
    // Loads the project, checks its device against the catalog and builds
    // the engine (which runs its first calculation).
    // A calculation log path makes the engine log there (and put its
    // equation pages, when switched on, beside it).
    // A constraints file (".lpf", ".pad", ".prf") fixes bank voltages; it is
    // checked by CheckConstraintsFile before the engine is built.
    explicit Session(const std::string& projectPath, const std::string& calcLog = "",
                     const std::string& constraints = "");
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    PC_ENG& Engine() { return *engine_; }
    const DeviceInfo& Device() const { return device_; }
    const std::string& Path() const { return path_; }
    // Writes the project through the engine; text unless WantsBinary.
    void SaveAs(const std::string& path);

  private:
    std::string path_;
    DeviceInfo device_;
    PD_DATA* project_ = nullptr;  // ours until the engine replaces it on a save
    bool projectOwned_ = true;
    std::unique_ptr<PC_ENG> engine_;
};

// Reads the device keys of a project's "Project" section; "Speed", or else
// "Performance" with its leading "-" dropped.
DeviceInfo ReadDeviceInfo(const PD_DATA& project);

// ---- Editing cells (setcell.cpp) --------------------------------------------

// One --set "TAB/TABLE/ROW/COLUMN=VALUE". Names may themselves hold "/"
// ("I/O"): they are matched against the engine's names, longest first.
struct CellEdit {
    std::string text;
    std::string path;  // left of the first "="
    std::string value;
};

CellEdit ParseCellEdit(const std::string& text);
// Resolves and applies one edit; throws a UsageError naming what is missing
// and the choices.
void ApplyCellEdit(PC_ENG& engine, const CellEdit& edit);
// "Typical", "Worst" or another process name the device data lists.
void ApplyProcess(PC_ENG& engine, const std::string& process);
// Throws a UsageError unless the whole text is a finite number.
double ParseNumber(const std::string& text, const std::string& what);

// ---- Results (report.cpp) ---------------------------------------------------

struct SupplyResult {
    std::string name, voltage;
    // Static, dynamic, total: watts, then amperes.
    std::string w[3], a[3];
};

// One table of a tab as `--tab` shows it: the row names (the table's first
// column, by which --set finds a row) and the power and current columns.
struct TabTable {
    std::string name;
    std::vector<std::string> head;
    bool labelled = false;  // head[0] is the row-name column
    std::vector<std::vector<std::string>> rows;
};

struct TabResult {
    std::string name;
    std::vector<TabTable> tables;
};

// One I/O bank: its number, the VCCIO row chosen for it ("Vccio 3.3"), the
// I/O the design places in it and the I/O bonded out in the package.
struct BankResult {
    std::string bank, vccio;
    int used = 0, bonded = 0;
};

struct Report {
    DeviceInfo device;
    std::string process, ambient;
    std::vector<BankResult> banks;
    std::vector<SupplyResult> supplies;
    SupplyResult supplyTotal;
    std::vector<std::pair<std::string, std::string>> blocks;  // name, watts
    std::string totalPower, junction, maxSafeAmbient, thetaJA;
    std::vector<std::string> messages;
    std::vector<TabResult> tabs;
};

Report CollectReport(PC_ENG& engine, const DeviceInfo& device);
// The tab of that name; a UsageError naming the tabs when there is none.
TabResult CollectTab(PC_ENG& engine, const std::string& name);
void PrintReport(const Report& report, std::ostream& out);
std::string ReportJson(const Report& report);

// ---- Report files (reports.cpp) --------------------------------------------

struct ReportOptions {
    std::string project;
    std::string dir;                   // empty: "<stem>_report" beside the project
    std::vector<std::string> formats;  // names, each maybe a comma list; empty: the default set
    bool open = false;
};

// The formats `pwc report` writes, in the order they are written.
std::vector<std::string> ReportFormatNames();
// "Date: Sun Nov 22 10:00:00 2026": now in local time, or SOURCE_DATE_EPOCH
// (seconds) in UTC when set, so that reports can be reproduced.
std::string ReportDateLine();
// The program line of the reports: "pwc <version>".
std::string ReportProgramLine();
int WriteReports(const ReportOptions& options, std::ostream& out, std::ostream& err);

// ---- Estimation and device fit (estimate.cpp, fit.cpp) ------------------------

// Turns estimation on at a level ("low", "Medium", "High"); a UsageError for
// any other text.
void EnableEstimation(Session& session, const std::string& level);
// What the estimate fills in: routing per class against the device, and the
// clock-tree elements of the clock rows.
struct EstimateResult {
    std::string level;
    struct Routing {
        std::string name;
        double used = 0.0, device = 0.0;
    };
    std::vector<Routing> routing;
    std::vector<std::pair<std::string, int>> clockTree;  // resource, elements
};
EstimateResult CollectEstimate(PC_ENG& engine);
void PrintEstimate(const EstimateResult& result, std::ostream& out);
// The report's JSON with the estimate added under "estimation".
std::string WithEstimateJson(const std::string& reportJson, const EstimateResult& result);

// One candidate of `pwc fit`.
struct FitResult {
    std::string device, package;
    bool fits = false;
    std::vector<std::string> messages;
};
// Checks each (device, package) against what the project's tabs use; with
// none given, every device and package of the project's family.
std::vector<FitResult> FitDevices(Session& session,
                                  std::vector<std::pair<std::string, std::string>> candidates);
void PrintFit(const std::vector<FitResult>& results, std::ostream& out);
std::string FitJson(const std::vector<FitResult>& results);
// The command: devices and packages pair up by position. Exit 0 when a
// candidate fits, kExitDesignRule when none does.
int RunFit(const std::string& project, const std::vector<std::string>& devices,
           const std::vector<std::string>& packages, bool json, std::ostream& out);

// ---- Constraints files and graph sweeps (sweep.cpp) --------------------------

// A UsageError unless the file is of a known kind and can be read: the
// engine itself ends the process on an unreadable pad report.
void CheckConstraintsFile(const std::string& path);
// The messages of the engine's set-up that the constraints file caused.
std::vector<std::string> ConstraintMessages(const std::string& drcMessage);

enum class SweepKind { Supply, Ambient, Frequency };

struct SweepOptions {
    std::string project;
    SweepKind kind = SweepKind::Supply;
    std::string rail, clock, plotted;  // empty: the project's settings
    std::string from, to, step;        // empty: the project's settings
    std::string svg, csv;              // files; "-" as --csv: standard output
    bool json = false;
    bool progress = false;  // a progress line on standard error
};

struct SweepCorner {
    std::string name;  // "Typical", "Worst"
    std::vector<std::pair<double, double>> points;
};

struct SweepResult {
    SweepKind kind = SweepKind::Supply;
    std::string xName, xUnit;  // "Vcc", "V"
    std::string plotted;       // "Total Power" or a tab
    std::vector<SweepCorner> corners;
};

// Runs the engine's sweep of one kind (the two others are given empty
// ranges) and collects the points of both corners.
SweepResult RunSweep(Session& session, const SweepOptions& options);
std::string SweepCsv(const SweepResult& result);
std::string SweepJson(const SweepResult& result);
std::string SweepSvg(const SweepResult& result);
int Sweep(const SweepOptions& options, std::ostream& out);

}  // namespace pwchost

#endif
