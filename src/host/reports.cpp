// `pwc report`: the engine's report files for a project, written into a
// folder of their own.
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <system_error>

#include "host.h"

extern char** environ;

namespace pwchost {

namespace fs = std::filesystem;

namespace {

const char* const kToolName = "Power Calculator";

// What every format is given: where its files go and the head lines.
struct ReportTarget {
    fs::path dir;
    std::string stem;
    std::string program, tool, dateLine;
    std::string Base() const { return (dir / stem).string(); }
};

struct ReportFormat {
    const char* name;
    bool byDefault;
    std::function<void(PC_ENG&, const ReportTarget&)> write;
    bool duringCalculation = false;  // its files come from the calculation itself
};

// One entry per format; each writes through the engine, which records every
// file it tried.
const std::vector<ReportFormat>& ReportFormats() {
    static const std::vector<ReportFormat> formats = {
        {"text", true,
         [](PC_ENG& engine, const ReportTarget& t) {
             engine.WriteReportFile(t.Base() + ".txt",
                                    engine.GenerateTxtReport(t.program, t.tool, t.dateLine));
         }},
        {"html", true,
         [](PC_ENG& engine, const ReportTarget& t) {
             engine.GenerateHtmlReport(t.Base(), t.stem, t.tool, t.dateLine);
         }},
        {"csv", true,
         [](PC_ENG& engine, const ReportTarget& t) { engine.DetailedResourcestatistic(t.Base()); }},
        {"matrix", false,
         [](PC_ENG& engine, const ReportTarget& t) {
             engine.GeneratePowerMatrixTableCSV(t.Base() + "_PowerMatrix.csv");
             engine.GeneratePowerMatrixTableHTML(t.Base() + "_PowerMatrix");
         }},
        // The equation pages are written by the calculation into "HtmlDebugDir"
        // beside its log, when the engine was made with them switched on.
        {"debug", false, [](PC_ENG&, const ReportTarget&) {}, true},
    };
    return formats;
}

// The formats asked for, in table order; every name must be known.
std::vector<const ReportFormat*> ChosenFormats(const std::vector<std::string>& asked) {
    std::vector<std::string> names;
    for (const std::string& list : asked)
        for (std::string name : GetArrayOfTokensWithTrim(list, ",", false))
            if (!name.empty()) names.push_back(name);
    if (!asked.empty() && names.empty()) throw UsageError("no report format given");
    std::vector<const ReportFormat*> chosen;
    for (const ReportFormat& f : ReportFormats()) {
        const bool wanted = names.empty()
                                ? f.byDefault
                                : std::find(names.begin(), names.end(), f.name) != names.end();
        if (wanted) chosen.push_back(&f);
    }
    for (const std::string& name : names) {
        const bool known = std::any_of(ReportFormats().begin(), ReportFormats().end(),
                                       [&](const ReportFormat& f) { return name == f.name; });
        if (!known)
            throw UsageError("unknown report format '" + name +
                             "' (formats: " + JoinChoices(ReportFormatNames()) + ")");
    }
    return chosen;
}

// The file found on PATH, or empty.
std::string FindOnPath(const std::string& program) {
    const char* path = std::getenv("PATH");
    if (!path) return "";
    for (const std::string& dir : GetArrayOfTokensWithTrim(path, ":", true)) {
        if (dir.empty()) continue;
        const std::string candidate = dir + "/" + program;
        if (access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    return "";
}

// Starts the desktop's opener on the URL; it isn't waited for.
bool OpenInBrowser(const std::string& url) {
    const std::string opener = FindOnPath("xdg-open");
    if (opener.empty()) return false;
    std::string arg0 = "xdg-open", arg1 = url;
    char* argv[] = {arg0.data(), arg1.data(), nullptr};
    pid_t pid = 0;
    return posix_spawn(&pid, opener.c_str(), nullptr, nullptr, argv, environ) == 0;
}

}  // namespace

std::vector<std::string> ReportFormatNames() {
    std::vector<std::string> names;
    for (const ReportFormat& f : ReportFormats()) names.push_back(f.name);
    return names;
}

std::string ReportDateLine() {
    std::time_t when = std::time(nullptr);
    std::tm parts{};
    const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
    if (epoch && *epoch) {
        char* end = nullptr;
        errno = 0;
        const long long seconds = std::strtoll(epoch, &end, 10);
        if (*end != '\0' || errno != 0 || seconds < 0)
            throw UsageError(std::string("SOURCE_DATE_EPOCH is not a count of seconds: '") + epoch +
                             "'");
        when = static_cast<std::time_t>(seconds);
        gmtime_r(&when, &parts);
    } else {
        localtime_r(&when, &parts);
    }
    char text[64];
    std::strftime(text, sizeof text, "Date: %a %b %e %H:%M:%S %Y", &parts);
    return text;
}

std::string ReportProgramLine() {
    return std::string("pwc ") + PWC_VERSION;
}

int WriteReports(const ReportOptions& o, std::ostream& out, std::ostream& err) {
    const std::vector<const ReportFormat*> formats = ChosenFormats(o.formats);
    const bool html = std::any_of(formats.begin(), formats.end(), [](const ReportFormat* f) {
        return std::string(f->name) == "html";
    });
    if (o.open && !html) throw UsageError("--open needs the html format");

    ReportTarget target;
    const fs::path project(o.project);
    target.stem = project.stem().string();
    target.dir =
        o.dir.empty() ? project.parent_path() / (target.stem + "_report") : fs::path(o.dir);
    target.program = ReportProgramLine();
    target.tool = kToolName;
    target.dateLine = ReportDateLine();

    std::error_code ec;
    fs::create_directories(target.dir, ec);
    if (ec || !fs::is_directory(target.dir))
        throw UsageError("cannot make the report folder '" + target.dir.string() + "'" +
                         (ec ? " (" + ec.message() + ")" : std::string()));

    const bool debug = std::any_of(formats.begin(), formats.end(),
                                   [](const ReportFormat* f) { return f->duringCalculation; });
    // The engine reads the switch when it is made; the calculation log then
    // goes beside the pages.
    if (debug) setenv("VRL_PWC_HTML_DEBUG", "1", 1);
    const std::string calcLog = debug ? target.Base() + "_calc.log" : "";
    Session session(o.project, calcLog);
    PC_ENG& engine = session.Engine();
    engine.ProjectName = project.filename().string();
    engine.ReportProgramName = target.program;
    engine.ReportDateLine = target.dateLine;
    engine.DrcMessage.clear();
    engine.DrcErrorCount = 0;
    engine.ClearReportFiles();
    engine.Calculate();
    for (const ReportFormat* f : formats) f->write(engine, target);
    bool allWritten = true;
    for (const ReportFileResult& file : engine.ReportFiles()) {
        if (file.written) {
            out << file.path << '\n';
        } else {
            err << "pwc: cannot write '" << file.path << "'\n";
            allWritten = false;
        }
    }
    if (debug && fs::is_regular_file(calcLog)) out << calcLog << '\n';
    if (o.open && allWritten) {
        const std::string url = "file://" + fs::absolute(target.Base() + ".html").string();
        out << url << '\n';
        if (!OpenInBrowser(url)) err << "pwc: no xdg-open to start a browser; open " << url << '\n';
    }
    return allWritten ? kExitOk : kExitNotWritten;
}

}  // namespace pwchost
