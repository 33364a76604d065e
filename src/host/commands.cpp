// The commands of `pwc` and their dispatch.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "host.h"

namespace pwchost {

namespace {

struct CalcOptions {
    std::string project;
    std::vector<std::string> sets, tabs;
    std::string ambient, process, save, estimate, constraints;
    bool force = false, json = false;
};

struct FitOptions {
    std::string project;
    std::vector<std::string> devices, packages;
    bool json = false;
};

struct NewOptions {
    std::string family, device, package, speed, operating, output, design;
    bool force = false;
};

struct ConvertOptions {
    std::string input, output;
    bool binary = false, text = false, force = false;
};

// The run log goes to --log, or nowhere: the engine's progress lines are not
// for the terminal.
class RunLogScope {
  public:
    explicit RunLogScope(const std::string& path)
        : file_(std::fopen(path.empty() ? "/dev/null" : path.c_str(), "w")) {
        if (!file_ && !path.empty()) throw UsageError("cannot write the log '" + path + "'");
        SetRunLogTarget(file_);
    }
    ~RunLogScope() {
        SetRunLogTarget(nullptr);
        if (file_) std::fclose(file_);
    }
    RunLogScope(const RunLogScope&) = delete;
    RunLogScope& operator=(const RunLogScope&) = delete;

  private:
    std::FILE* file_;
};

void RefuseExisting(const std::string& path, bool force) {
    if (!force && std::filesystem::exists(path))
        throw UsageError("'" + path + "' exists; use --force to overwrite it");
}

void SaveData(const PD_DATA& data, const std::string& path, bool binary) {
    RunLogCapture capture;
    const bool ok = binary ? data.SaveBinFile(path.c_str()) : data.SaveTxtFile(path.c_str());
    if (!ok) {
        const std::string reason = capture.FirstLine();
        throw UsageError("cannot write '" + path + "'" +
                         (reason.empty() ? std::string() : " (" + reason + ")"));
    }
}

int Calc(const CalcOptions& o, std::ostream& out) {
    if (!o.save.empty() && !o.force && SameFile(o.save, o.project))
        throw UsageError("refusing to overwrite the input project '" + o.project +
                         "' (use --force)");
    std::vector<CellEdit> edits;
    for (const std::string& text : o.sets) edits.push_back(ParseCellEdit(text));
    if (!o.ambient.empty()) ParseNumber(o.ambient, "--ambient");
    if (!o.constraints.empty()) CheckConstraintsFile(o.constraints);

    Session session(o.project, "", o.constraints);
    if (!o.estimate.empty()) EnableEstimation(session, o.estimate);
    PC_ENG& engine = session.Engine();
    const std::vector<std::string> constraintNotes = ConstraintMessages(engine.DrcMessage);
    for (const CellEdit& edit : edits) ApplyCellEdit(engine, edit);
    // A firmware-resilience design's bank 0 follows its ports' mode.
    if (!edits.empty()) engine.PFRTabUpdated();
    if (!o.ambient.empty()) engine.SetAmbientTemperature(o.ambient);
    if (!o.process.empty()) ApplyProcess(engine, o.process);
    // The messages are those of the calculation reported: the engine keeps
    // appending its findings (the voltage trials of its set-up among them)
    // until they are cleared.
    engine.DrcMessage.clear();
    engine.DrcErrorCount = 0;
    // What the constraints file asked and the device can't do was found at
    // set-up only.
    for (const std::string& note : constraintNotes) {
        engine.DrcMessage += note + "\n";
        ++engine.DrcErrorCount;
    }
    const bool rulesHold = engine.Calculate() != 0 && constraintNotes.empty();

    Report report = CollectReport(engine, session.Device());
    for (const std::string& tab : o.tabs) report.tabs.push_back(CollectTab(engine, tab));
    if (!o.save.empty()) session.SaveAs(o.save);
    const bool estimated = !o.estimate.empty();
    if (o.json && estimated)
        out << WithEstimateJson(ReportJson(report), CollectEstimate(engine)) << '\n';
    else if (o.json)
        out << ReportJson(report) << '\n';
    else
        PrintReport(report, out);
    if (!o.json && estimated) PrintEstimate(CollectEstimate(engine), out);
    return rulesHold ? kExitOk : kExitDesignRule;
}

Catalog RequireCatalog() {
    Catalog catalog = Catalog::Load();
    if (!catalog.present)
        throw UsageError("the data directory " + DataDirectory() + " has no catalog");
    return catalog;
}

int Devices(bool json, std::ostream& out) {
    const Catalog catalog = RequireCatalog();
    auto words = [](const std::vector<std::string>& list) {
        std::string text;
        for (const std::string& w : list) text += (text.empty() ? "" : " ") + w;
        return text;
    };
    if (json) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const CatalogDevice& d : catalog.devices)
            list.push_back({{"family", d.family},
                            {"arch", catalog.ArchOf(d.family)},
                            {"device", d.device},
                            {"packages", d.packages},
                            {"speeds", d.speeds},
                            {"operating", d.operating}});
        out << list.dump(2) << '\n';
        return kExitOk;
    }
    std::vector<std::vector<std::string>> rows{
        {"Family", "Architecture", "Device", "Packages", "Speeds", "Operating"}};
    for (const CatalogDevice& d : catalog.devices)
        rows.push_back({d.family, catalog.ArchOf(d.family), d.device, words(d.packages),
                        words(d.speeds), words(d.operating)});
    std::vector<size_t> width(rows[0].size(), 0);
    for (const auto& row : rows)
        for (size_t c = 0; c < row.size(); ++c) width[c] = std::max(width[c], row[c].size());
    for (const auto& row : rows) {
        std::string line;
        for (size_t c = 0; c < row.size(); ++c)
            line += row[c] + (c + 1 < row.size() ? std::string(width[c] - row[c].size() + 2, ' ')
                                                 : std::string());
        out << line << '\n';
    }
    return kExitOk;
}

int New(NewOptions o, std::ostream& out) {
    const Catalog catalog = RequireCatalog();
    const CatalogDevice& d = catalog.Check(o.family, o.device, o.package, o.speed, o.operating);
    if (o.speed.empty() && !d.speeds.empty()) o.speed = d.speeds.front();
    if (o.operating.empty() && !d.operating.empty()) o.operating = d.operating.front();
    if (o.design.empty()) o.design = std::filesystem::path(o.output).stem().string();
    RefuseExisting(o.output, o.force);

    const std::string arch = catalog.ArchOf(o.family);
    char name[PD_UTIL::kFilenameSize] = {};
    std::snprintf(name, sizeof name, "%s.pcf", arch.c_str());
    PD_UTIL::GetFilenameRTF(name);
    std::unique_ptr<PD_DATA> project = LoadDataFile(name, "default project");
    auto* section = dynamic_cast<PD_KEYSECT*>(project->GetSection("Project"));
    if (!section) {
        if (project->GetSection("Project"))
            throw UsageError(std::string("the default project '") + name +
                             "' has a \"Project\" section that is not a key section");
        section = new PD_KEYSECT("Project");
        project->AddSection(section);
    }
    section->RemoveKey("Performance");
    for (const auto& [key, value] :
         std::vector<std::pair<const char*, std::string>>{{"Family", o.family},
                                                          {"Device", o.device},
                                                          {"Package", o.package},
                                                          {"Speed", o.speed},
                                                          {"Operating", o.operating},
                                                          {"PartName", o.device},
                                                          {"DesignName", o.design}})
        section->AddKeyVal(key, value.c_str());
    SaveData(*project, o.output, WantsBinary(o.output));
    out << "wrote " << o.output << ": " << o.family << " " << o.device << " " << o.package
        << ", speed " << o.speed << ", " << o.operating << '\n';
    return kExitOk;
}

int Convert(const ConvertOptions& o, std::ostream& out) {
    std::unique_ptr<PD_DATA> data = LoadDataFile(o.input, "input");
    RefuseExisting(o.output, o.force);
    const bool binary = o.binary || (!o.text && WantsBinary(o.output));
    SaveData(*data, o.output, binary);
    out << "wrote " << o.output << " (" << (binary ? "binary" : "text") << ")\n";
    return kExitOk;
}

}  // namespace

int RunPwc(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    CLI::App app{"pwc: power and thermal estimates of FPGA designs", "pwc"};
    app.require_subcommand(1);
    std::string dataDir, logPath;
    app.add_option("--data-dir", dataDir,
                   "Device data directory (PWC_DATA_DIR, when set, takes precedence)")
        ->type_name("DIR");
    app.add_option("--log", logPath, "Write the engine's run log to this file")->type_name("FILE");

    CalcOptions calc;
    CLI::App* calcCmd = app.add_subcommand("calc", "Calculate a project and report the result");
    calcCmd->add_option("project", calc.project, "Project file (.pcf, text or binary)")
        ->type_name("PROJECT")
        ->required();
    calcCmd->add_option("--set", calc.sets, "Set a cell (repeatable)")
        ->type_name("TAB/TABLE/ROW/COLUMN=VALUE")
        ->allow_extra_args(false);
    calcCmd->add_option("--ambient", calc.ambient, "Ambient temperature in degrees C")
        ->type_name("C");
    calcCmd->add_option("--process", calc.process, "Process corner: Typical or Worst")
        ->type_name("NAME");
    calcCmd->add_option("--save", calc.save, "Save the project (binary when named .pcfb)")
        ->type_name("FILE");
    calcCmd->add_flag("--force", calc.force, "Allow --save to overwrite the input project");
    calcCmd->add_flag("--json", calc.json, "Print the result as one JSON object");
    calcCmd->add_option("--tab", calc.tabs, "Also show a tab's rows and their power (repeatable)")
        ->type_name("NAME")
        ->allow_extra_args(false);
    calcCmd
        ->add_option("--estimate", calc.estimate,
                     "Estimate routing and clock tree: low, Medium or High")
        ->type_name("LEVEL");
    calcCmd
        ->add_option("--constraints", calc.constraints,
                     "Constraints file fixing bank voltages (.lpf, .pad or .prf)")
        ->type_name("FILE");

    SweepOptions sweep;
    bool sweepSupply = false, sweepAmbient = false, sweepFrequency = false;
    CLI::App* sweepCmd = app.add_subcommand(
        "sweep", "Power against a supply, the ambient or a clock, for both process corners");
    sweepCmd->add_option("project", sweep.project, "Project file (.pcf, text or binary)")
        ->type_name("PROJECT")
        ->required();
    CLI::Option* bySupply = sweepCmd->add_flag("--supply", sweepSupply, "Sweep a supply's voltage");
    CLI::Option* byAmbient =
        sweepCmd->add_flag("--ambient", sweepAmbient, "Sweep the ambient temperature")
            ->excludes(bySupply);
    sweepCmd->add_flag("--frequency", sweepFrequency, "Sweep a clock's frequency")
        ->excludes(bySupply)
        ->excludes(byAmbient);
    sweepCmd->add_option("--rail", sweep.rail, "Supply of --supply (default: the project's, Vcc)")
        ->type_name("NAME");
    sweepCmd->add_option("--clock", sweep.clock, "Clock of --frequency (default: the first)")
        ->type_name("NAME");
    sweepCmd->add_option("--panel", sweep.plotted, "Tab whose power is plotted (default: total)")
        ->type_name("NAME");
    sweepCmd->add_option("--from", sweep.from, "Lower limit (V, C or MHz)")->type_name("X");
    sweepCmd->add_option("--to", sweep.to, "Upper limit")->type_name("Y");
    sweepCmd->add_option("--step", sweep.step, "Step")->type_name("S");
    sweepCmd->add_option("-o,--output", sweep.svg, "SVG line chart to write")
        ->type_name("FILE.svg");
    sweepCmd->add_option("--csv", sweep.csv, "CSV of the points to write (- : standard output)")
        ->type_name("FILE");
    sweepCmd->add_flag("--json", sweep.json, "Print the points as JSON");

    FitOptions fit;
    CLI::App* fitCmd =
        app.add_subcommand("fit", "Check which devices can hold what a project uses");
    fitCmd->add_option("project", fit.project, "Project file (.pcf, text or binary)")
        ->type_name("PROJECT")
        ->required();
    fitCmd->add_option("--device", fit.devices, "Candidate device (repeatable, with --package)")
        ->allow_extra_args(false);
    fitCmd->add_option("--package", fit.packages, "Its package")->allow_extra_args(false);
    fitCmd->add_flag("--json", fit.json, "Print the result as JSON");

    ReportOptions reports;
    CLI::App* reportCmd =
        app.add_subcommand("report", "Calculate a project and write its report files");
    reportCmd->add_option("project", reports.project, "Project file (.pcf, text or binary)")
        ->type_name("PROJECT")
        ->required();
    reportCmd
        ->add_option("-o,--output-dir", reports.dir,
                     "Folder of the reports (default: <project stem>_report beside the project)")
        ->type_name("DIR");
    reportCmd
        ->add_option(
            "--format", reports.formats,
            "Formats, comma-separated: " + JoinChoices(ReportFormatNames()) + " (default: all)")
        ->type_name("LIST")
        ->allow_extra_args(false);
    reportCmd->add_flag("--open", reports.open,
                        "Print the HTML report's file:// URL and open it with xdg-open");

    bool devicesJson = false;
    CLI::App* devicesCmd = app.add_subcommand("devices", "List the devices of the data directory");
    devicesCmd->add_flag("--json", devicesJson, "Print the list as JSON");

    NewOptions made;
    CLI::App* newCmd = app.add_subcommand("new", "Make a project from a family's default project");
    newCmd->add_option("--family", made.family, "Family, e.g. Quenra2")->required();
    newCmd->add_option("--device", made.device, "Device")->required();
    newCmd->add_option("--package", made.package, "Package")->required();
    newCmd->add_option("--speed", made.speed, "Speed grade (default: the first listed)");
    newCmd->add_option("--operating", made.operating,
                       "Operating condition (default: the first listed)");
    newCmd->add_option("--design", made.design, "Design name (default: the file's stem)");
    newCmd->add_option("-o,--output", made.output, "Project file to write")->required();
    newCmd->add_flag("--force", made.force, "Overwrite an existing file");

    ConvertOptions conv;
    CLI::App* convertCmd =
        app.add_subcommand("convert", "Convert a data or project file between text and binary");
    convertCmd->add_option("input", conv.input, "File to read")->required();
    convertCmd->add_option("output", conv.output, "File to write")->required();
    CLI::Option* binary = convertCmd->add_flag("--binary", conv.binary, "Write the binary form");
    convertCmd->add_flag("--text", conv.text, "Write the text form")->excludes(binary);
    convertCmd->add_flag("--force", conv.force, "Overwrite an existing file");

    // The first word that is neither an option nor a global option's value
    // names the command.
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--data-dir" || arg == "--log") {
            ++i;
        } else if (arg.empty() || arg[0] != '-') {
            std::vector<std::string> names;
            for (const CLI::App* sub : app.get_subcommands({})) names.push_back(sub->get_name());
            if (std::find(names.begin(), names.end(), arg) != names.end()) break;
            err << "pwc: unknown command '" << arg << "' (commands: " << JoinChoices(names)
                << ")\n";
            return kExitUsage;
        }
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == 0) return app.exit(e, out, err);
        err << "pwc: " << e.what() << " (see pwc --help)\n";
        return kExitUsage;
    }

    try {
        const char* env = std::getenv("PWC_DATA_DIR");
        if (!dataDir.empty()) {
            if (env && *env && dataDir != env)
                err << "pwc: PWC_DATA_DIR (" << env << ") takes precedence over --data-dir\n";
            PD_UTIL::SetDataDir(dataDir);
        }
        RunLogScope log(logPath);
        if (calcCmd->parsed()) return Calc(calc, out);
        if (sweepCmd->parsed()) {
            if (sweepSupply + sweepAmbient + sweepFrequency != 1)
                throw UsageError("sweep needs one of --supply, --ambient, --frequency");
            sweep.kind = sweepSupply    ? SweepKind::Supply
                         : sweepAmbient ? SweepKind::Ambient
                                        : SweepKind::Frequency;
            sweep.progress = &err == &std::cerr && isatty(STDERR_FILENO);
            return Sweep(sweep, out);
        }
        if (reportCmd->parsed()) return WriteReports(reports, out, err);
        if (devicesCmd->parsed()) return Devices(devicesJson, out);
        if (newCmd->parsed()) return New(made, out);
        if (fitCmd->parsed()) return RunFit(fit.project, fit.devices, fit.packages, fit.json, out);
        return Convert(conv, out);
    } catch (const UsageError& e) {
        err << "pwc: " << e.what() << '\n';
        return kExitUsage;
    } catch (const std::exception& e) {
        err << "pwc: internal error: " << e.what() << '\n';
        return kExitInternal;
    } catch (...) {
        err << "pwc: internal error\n";
        return kExitInternal;
    }
}

}  // namespace pwchost
