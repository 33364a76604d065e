// The debug panels (a shadow of each tab holding, per block and supply, the
// equations behind its currents), their linked web pages, and the web page of
// the power matrices.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

namespace {

// The tables of a debug panel, in order.
const char* const kDebugTables[] = {"UnusedLeakIcc", "UnusedBiasIcc", "UsedLeakIcc",
                                    "UsedBiasIcc",   "DynamicIcc",    "SupplyICC",
                                    "TotalICC",      "TotalPowCal",   "TotalPow"};
// The tables that hold the models' own equations.
const char* const kEquationTables[] = {"UnusedLeakIcc", "UnusedBiasIcc", "UsedLeakIcc",
                                       "UsedBiasIcc", "DynamicIcc"};

const char* const kDebugToolName = "Power Calculation Equation Debug";
const char* const kMatrixToolName = "Power Calculator";
const char* const kDebugFolder = "HtmlDebugDir";
const char* const kDebugStem = "debug_power_detaile";
// A developer's aid: the path is fixed and nothing makes its folder.
const char* const kDebugCsvPath = "D:/powertest/FivthpolyEqu/debug_power_detaile.csv";

std::string Printed(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    for (size_t start = 0;;) {
        const size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end == std::string::npos ? end : end - start));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return parts;
}

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string WithoutBlanks(const std::string& text) {
    std::string out;
    for (char ch : text)
        if (!std::isspace(static_cast<unsigned char>(ch))) out += ch;
    return out;
}

// A panel name as part of a file name ("I/O Term" is "IOTerm").
std::string SafeName(const std::string& name) {
    std::string out;
    for (char ch : name)
        if (std::isalnum(static_cast<unsigned char>(ch))) out += ch;
    return out;
}

std::string Anchor(const std::string& block, const std::string& supply) {
    std::string out;
    for (char ch : block + "_" + supply)
        out += std::isalnum(static_cast<unsigned char>(ch)) ? ch : '_';
    return out;
}

// The host's date line, or the present time in its form.
std::string PageDateLine(const std::string& given) {
    if (!given.empty()) return given;
    const std::time_t now = std::time(nullptr);
    char text[64] = "";
    if (const std::tm* local = std::localtime(&now))
        std::strftime(text, sizeof text, "Date: %a %b %d %H:%M:%S %Y", local);
    return text;
}

std::string Link(const std::string& file, const std::string& text) {
    return "\n<a target=\"main\" href=\"" + file + "\">" + text + "</a> <br>";
}

// The page of one table of one debug panel, by its file's leaf name.
std::string TablePage(const std::string& stemLeaf, const std::string& panel,
                      const std::string& table) {
    return stemLeaf + "_power_" + SafeName(panel) + "_" + table + ".html";
}

PD_TABLE* DebugTable(PC_PANEL* panel, const char* name) {
    return panel ? panel->GetTable(panel->GetTableIndex(name)) : nullptr;
}

int RowOf(const PD_TABLE* table, const std::string& block) {
    for (int r = 0; r < table->GetNumOfRows(); ++r)
        if (block == table->GetValueAt(r, 0)) return r;
    return -1;
}

}  // namespace

// ---- The panels --------------------------------------------------------------

void PC_ENG::CreateDebugPanels() {
    for (PC_PANEL* p : debugPanelStore.list) delete p;
    debugPanelStore.list.clear();
    debugPanels = nullptr;
    if (!debugHtml) return;
    for (PC_PANEL* panel : panels) {
        if (std::string(panel->GetName()) == "Summary") continue;
        auto* debug = new PC_PANEL(panel->GetName());
        for (const char* name : kDebugTables) {
            auto* table = new PD_TABLE(name);
            table->SetColumns({"Block"});
            debug->AddTable(table);
        }
        debugPanelStore.list.push_back(debug);
    }
    debugPanels = &debugPanelStore.list;
}

void PC_ENG::SaveToDebugPanel(const std::string& panelName, const std::string& line,
                              const std::string& expandedText, double result,
                              const std::string& item, const std::string& supply,
                              const std::string& tableName) {
    if (!debugHtml || !debugPanels) return;
    const int index = GetPanelIndex(panelName, *debugPanels);
    if (index < 0) return;
    PC_PANEL* panel = (*debugPanels)[index];
    PD_TABLE* first = panel->GetTable(0);
    int column = first->GetColumnIndex(supply.c_str());
    if (column < 0) {
        column = first->GetNumOfColumns();
        for (PD_TABLE* t : panel->tables) {
            t->AddColumn(supply.c_str(), column);
            for (int r = 0; r < t->GetNumOfRows(); ++r) t->SetValueAt("0", r, column);
        }
    }
    int row = RowOf(first, item);
    if (row < 0) {
        std::vector<std::string> cells(first->GetNumOfColumns(), "0");
        cells[0] = item;
        for (PD_TABLE* t : panel->tables) t->AddRow(cells);
        row = first->GetNumOfRows() - 1;
    }
    PD_TABLE* target = panel->GetTable(panel->GetTableIndex(tableName.c_str()));
    if (!target) return;
    // The log line ends in " = ", the numbers in "=" and the result.
    const std::string entry = line + expandedText + "\n";
    const std::string old = target->GetValueAt(row, column);
    target->SetValueAt((old == "0" ? entry : old + "#" + entry).c_str(), row, column);

    PD_TABLE* total = DebugTable(panel, "TotalICC");
    total->SetValueAt(Printed("%.6lf", Num(total->GetValueAt(row, column)) + result).c_str(), row,
                      column);
    // The supply's sum names each term once; the terms link to their pages.
    PD_TABLE* sum = DebugTable(panel, "SupplyICC");
    const std::string term = Trimmed(line.substr(0, line.find('=')));
    sum->SetValueAt(Addmore2equation(sum->GetValueAt(row, column), term, "", "", result).c_str(),
                    row, column);
}

void PC_ENG::GetPower2DebugPanels(std::vector<PC_PANEL*>* list) {
    if (!debugHtml || !list) return;
    for (PC_PANEL* panel : *list) {
        PD_TABLE* icc = DebugTable(panel, "TotalICC");
        PD_TABLE* calculation = DebugTable(panel, "TotalPowCal");
        PD_TABLE* power = DebugTable(panel, "TotalPow");
        for (int c = 1; c < icc->GetNumOfColumns(); ++c) {
            const std::string supply = icc->columns[c];
            std::string voltageText = GetVDPM(supply == "VCCIO" ? "Vccio 2.5" : supply, "Voltage");
            if (voltageText.empty()) {
                std::string pcfName;
                TranslateSupplyPWRtoPCF(supply, pcfName);
                voltageText = GetVDPM(pcfName, "Voltage");
            }
            const double voltage = Num(voltageText);
            for (int r = 0; r < icc->GetNumOfRows(); ++r) {
                const std::string cell = icc->GetValueAt(r, c);
                if (cell == "0") continue;
                const double current = Num(cell);
                const double product = current * voltage;
                char text[1024];
                std::snprintf(text, sizeof text, "%s%s%s%s%s%g%s%g%s%g\n", "Power_", supply.c_str(),
                              "_", icc->GetValueAt(r, 0), "= ICC * VOLTAGE =", current, " * ",
                              voltage, " = ", product);
                calculation->SetValueAt(text, r, c);
                power->SetValueAt(Printed("%.6lf", product).c_str(), r, c);
            }
        }
    }
}

// ---- Links between the pages ----------------------------------------------------

std::string PC_ENG::setuplinkfile(const std::string& panel, const std::string& table,
                                  const std::string& entry, const std::string& block,
                                  const std::string& stem) {
    const int index = debugPanels ? GetPanelIndex(panel, *debugPanels) : -1;
    if (index < 0) return "NoLink";
    PC_PANEL* debug = (*debugPanels)[index];
    if (table == "SupplyICC") {
        const std::string name = WithoutBlanks(entry.substr(0, entry.find('%')));
        if (name.empty()) return "NoLink";
        for (const char* equations : kEquationTables) {
            PD_TABLE* t = DebugTable(debug, equations);
            const int row = RowOf(t, block);
            if (row < 0) continue;
            for (int c = 1; c < t->GetNumOfColumns(); ++c) {
                // An entry of the cell whose name is the term's.
                const std::string cell = "#" + WithoutBlanks(t->GetValueAt(row, c));
                if (cell.find("#" + name + "=") == std::string::npos) continue;
                return TablePage(stem, panel, equations) + "#" + Anchor(block, t->columns[c]);
            }
        }
        return "NoLink";
    }
    if (table == "TotalPowCal") {
        const std::vector<std::string> parts = Split(entry, '=');
        if (parts.size() < 2 || Num(Trimmed(parts.back())) <= 0.0) return "NoLink";
        // "Power_" + supply + "_" + block.
        const std::vector<std::string> name = Split(Trimmed(parts[0]), '_');
        if (name.size() < 3 || name[0] != "Power") return "NoLink";
        PD_TABLE* sum = DebugTable(debug, "SupplyICC");
        const int row = RowOf(sum, block);
        const int column = sum->GetColumnIndex(name[1].c_str());
        if (row < 0 || column < 0 || std::string(sum->GetValueAt(row, column)) == "0")
            return "NoLink";
        return TablePage(stem, panel, "SupplyICC") + "#" + Anchor(block, name[1]);
    }
    return "NoLink";
}

std::string PC_ENG::AddHtmlLineBreak(const std::string& panel, const std::string& table,
                                     const std::string& block, const std::string& cell,
                                     const std::string& stem, std::string& html) {
    double sum = 0.0;
    for (const std::string& raw : Split(cell, '#')) {
        const std::string entry = Trimmed(raw);
        if (entry.empty()) continue;
        const std::vector<std::string> parts = Split(entry, '=');
        html += PrintBeginRow();
        if (table == "SupplyICC") {
            std::string terms;
            for (const std::string& term : Split(parts[0], '+')) {
                const std::string shown = Trimmed(term.substr(0, term.find('%')));
                if (shown.empty()) continue;
                const std::string file = setuplinkfile(panel, table, term, block, stem);
                if (!terms.empty()) terms += " + ";
                terms += file == "NoLink" ? pwc::HtmlEscaped(shown)
                                          : "\n<a target=\"main\" href=\"" + file + "\">" +
                                                pwc::HtmlEscaped(shown) + "</a>";
            }
            html += PrintColumn(terms, 600);
            std::string rest;
            for (size_t i = 1; i < parts.size(); ++i)
                rest += " = " + pwc::HtmlEscaped(Trimmed(parts[i]));
            html += PrintColumn(rest + PrintBR() + PrintBR(), 190);
        } else {
            for (size_t i = 0; i < parts.size(); ++i) {
                std::string text = pwc::HtmlEscaped(parts[i]);
                if (table == "TotalPowCal" && i == 1 && parts[i] == " ICC * VOLTAGE ") {
                    const std::string file = setuplinkfile(panel, table, entry, block, stem);
                    if (file != "NoLink")
                        text = "\n<a target=\"main\" href=\"" + file + "\">" +
                               pwc::HtmlEscaped(Trimmed(parts[0])) + " ICC</a> " + " * VOLTAGE ";
                }
                if (i + 1 == parts.size()) text += PrintBR() + PrintBR();
                html += PrintColumn(text, i == 0 ? 250 : 190);
            }
        }
        html += PrintEndRow();
        // The entry's result closes it.
        sum += std::strtod(Trimmed(parts.back()).c_str(), nullptr);
    }
    return Printed("%.6lf", sum);
}

// ---- The pages -------------------------------------------------------------------

void PC_ENG::GenerateDebugPanelHTML(const std::string& debugLog) {
    if (!debugHtml || !debugPanels) return;
    namespace fs = std::filesystem;
    // The folder is made by the library, never by a command line, so that no
    // path can run anything; names keep their historical stems.
    const fs::path folder = fs::path(debugLog).parent_path() / kDebugFolder;
    // A folder that can't be made isn't looked at: every page then fails on
    // its own and is recorded for the host.
    std::error_code ec;
    fs::create_directories(folder, ec);
    const std::string stem = (folder / kDebugStem).string();
    const std::string leaf = kDebugStem;

    std::string contents = ReportContentsHead(kDebugToolName);
    contents += "\n<p align=\"center\"><b>";
    contents += "\n<font class=\"pc2\">" + std::string(kDebugToolName) + " - Report</font></b></p>";
    contents += "\n<p align=\"center\"><b>";
    contents += "\n<font class=\"pc2\">Table of Contents</font></b></p>";
    contents += "\n<p>";
    contents += Link(leaf + "_power_top.html", "Panels");
    std::string top =
        ReportPageHead(kDebugToolName, PageDateLine(ReportDateLine)) + ReportPageHeader("Panels");

    for (PC_PANEL* debug : *debugPanels) {
        const std::string panel = debug->GetName();
        contents += "\n<br><font class=\"pc2\"><b>" + pwc::HtmlEscaped(panel) + "</b></font><br>";
        top += "\n<font class=\"subheader\">" + pwc::HtmlEscaped(panel) + "</font><br>";
        for (PD_TABLE* table : debug->tables) {
            const std::string page = TablePage(leaf, panel, table->name);
            contents += Link(page, table->name);
            top += Link(page, table->name);

            std::string html = ReportPageHead(kDebugToolName, PageDateLine(ReportDateLine)) +
                               ReportPageHeader(pwc::HtmlEscaped(panel) + " : " + table->name);
            for (int r = 0; r < table->GetNumOfRows(); ++r) {
                const std::string block = table->GetValueAt(r, 0);
                for (int c = 1; c < table->GetNumOfColumns(); ++c) {
                    const std::string cell = table->GetValueAt(r, c);
                    if (cell == "0") continue;
                    html += "\n<a name=\"" + Anchor(block, table->columns[c]) + "\"></a>";
                    html += "\n<font class=\"subheader\">" + pwc::HtmlEscaped(block) + " / " +
                            table->columns[c] + "</font><br>";
                    html += PrintBeginTable(1);
                    const std::string sum =
                        AddHtmlLineBreak(panel, table->name, block, cell, leaf, html);
                    html += PrintBeginRow() + PrintColumn("Sum", 250) + PrintColumn(sum, 190) +
                            PrintEndRow();
                    html += PrintEndTable() + PrintBR();
                }
            }
            WriteReportFile(stem + "_power_" + SafeName(panel) + "_" + table->name + ".html",
                            html + ReportPageTail());
        }
    }
    contents += ReportPageTail();
    WriteReportFile(stem + ".html",
                    ReportFrameSet(std::string(kDebugToolName) + " Report : " + ProjectName,
                                   leaf + "_power_toc.html", leaf + "_power_top.html"));
    WriteReportFile(stem + "_power_toc.html", contents);
    WriteReportFile(stem + "_power_top.html", top + ReportPageTail());
}

bool PC_ENG::GenerateDebugPanelCSV(std::string) {
    if (!debugPanels) return false;
    std::string text;
    for (PC_PANEL* debug : *debugPanels) {
        text += "Pan:" + std::string(debug->GetName()) + "\n";
        if (std::string(debug->GetName()) != "Logic Block") continue;
        PD_TABLE* table = DebugTable(debug, "UsedLeakIcc");
        text += "Tab:" + table->name + "\n";
        for (int r = 0; r < table->GetNumOfRows(); ++r) {
            text += table->GetValueAt(r, 0);
            for (int c = 1; c < table->GetNumOfColumns(); ++c)
                text += (c == 1 ? "=" : ",") + std::string(table->GetValueAt(r, c));
            text += "\n";
        }
    }
    return WriteReportFile(kDebugCsvPath, text);
}

void PC_ENG::GeneratePowerMatrixTableHTML(std::string path) {
    const std::string tool = std::string(kMatrixToolName) + " debug matrix";
    const std::string leaf = std::filesystem::path(path).filename().string();
    std::string page = ReportPageHead(tool, PageDateLine(ReportDateLine));
    for (PD_TABLE* matrix : {currentMatrix, powerMatrix}) {
        if (!matrix) continue;
        page += ReportPageHeader(matrix->name) + PrintBeginTable(1);
        page += PrintBeginRow();
        for (const std::string& column : matrix->columns) page += PrintColumnCenter(column, 190);
        page += PrintEndRow();
        for (int r = 0; r < matrix->GetNumOfRows(); ++r) {
            page += PrintBeginRow();
            for (int c = 0; c < matrix->GetNumOfColumns(); ++c)
                page += PrintColumnCenter(matrix->GetValueAt(r, c), 190);
            page += PrintEndRow();
        }
        page += PrintEndTable();
    }
    WriteReportFile(path + ".html", ReportFrameSet(tool + " Report : " + ProjectName, "",
                                                   leaf + "_power_detail.html"));
    WriteReportFile(path + "_power_detail.html", page + ReportPageTail());
}
