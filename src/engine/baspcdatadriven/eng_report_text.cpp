// The text report: the state of the tabs after a calculation as one plain
// text. Every line but the title's first begins with its own "\n".
#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

std::string PC_ENG::GenerateTxtReport(std::string programName, std::string toolName,
                                      std::string dateLine) {
    const ReportSummary s = GetReportSummary();
    const std::string provided = " - User/Default/NCD Provided";

    std::string title = toolName + " - Report\n" + programName + " - " + toolName + "\n" + dateLine;

    std::string model = "\n\nPower Model Information";
    model += "\nFormat Revision : " + s.formatRevision + " - Software";
    model += "\nValues Revision : " + s.valuesRevision + " - Software";
    model += "\nPower Model Status : " + s.status + "    Version " + s.pwrValues;
    model += "\n\nDesign and Device Details";
    for (const ReportLine& d : s.details) model += "\n" + d.label + " : " + d.value + provided;
    if (GetSupplyTable()) {
        model += "\n\nPower Supplies";
        for (const ReportLine& v : s.supplies)
            model += "\n" + v.label + " : " + v.value + " V" + provided;
    }

    std::string summary;
    if (s.hasPower) {
        summary += "\n\nPower Summary";
        for (size_t i = 0; i < s.power.size(); ++i) {
            if (i + 1 == s.power.size() && EnvIs("PWC_QA_DETAILED_REPORT", "1")) {
                summary += "\nTotal Static Power Est. Design: " + s.totalStatic + " W";
                summary += "\nTotal Dynamic Power Est. Design: " + s.totalDynamic + " W";
            }
            summary += "\n" + s.power[i].label + " : " + s.power[i].value + " W";
        }
    }
    if (s.hasCurrent) {
        summary += "\n\nIcc Summary";
        for (const ReportLine& c : s.current) summary += "\n" + c.label + " : " + c.value + " A";
    }
    if (s.hasBanks) {
        summary += "\n\nIO Bank Summary";
        summary += "\nIO Bank Used : " + std::to_string(s.banksUsed);
    }
    if (s.hasPeak) {
        summary += "\n\nPeak Startup";
        const char* const after[] = {" : ", " A ", " m sec"};
        for (const std::vector<std::string>& row : s.peak) {
            summary += "\n";
            for (size_t c = 0; c < row.size(); ++c) summary += row[c] + (c < 3 ? after[c] : "");
        }
    }

    std::string thermal = "\n\nThermal Summary";
    for (const ReportLine& t : s.selections) thermal += "\n" + t.label + " : " + t.value;
    thermal += "\nAmbient Temperature : " + s.ambient + " C";
    thermal += "\nEffective Theta-JA : " + s.theta;
    thermal += "\nJunction Temperature : " + s.junction + " C";
    thermal += "\nMaximum Safe Ambient : " + s.maxSafeAmbient + " C";

    std::string utilization = "\n\nUtilization Details";
    for (const ReportBlock& block : GetReportBlocks()) {
        if (!block.heading.empty()) utilization += "\n\n" + block.heading;
        for (const ReportCount& c : block.counts)
            utilization += "\n" + c.label + " : " + std::to_string(c.value);
        const ReportPower& p = block.power;
        if (!p.present) continue;
        if (!p.totalOnly) {
            utilization += "\nDynamic Power (W) : " + p.dynamic;
            utilization += "\nStatic Power (W) : " + p.statics;
        }
        utilization += "\nTotal Power (W) : " + p.total;
    }

    return title + model + summary + thermal + utilization;
}
