// Constraint files: the bank voltages and the configuration clock a design's
// constraints fix.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "baspcpanel/pc_text.h"
#include "pd_util.h"
#include "pr_prefcntl.h"

int PC_ENG::GetUserConstraints(const std::string& path) {
    // Kinds by substring, in this order: "design.prf.lpf" is a ".prf".
    if (path.find(".prf") != std::string::npos) {
        bankVoltageConstraints.clear();
        bankConstraintsInForce = true;
        return 1;
    }
    if (path.find(".lpf") != std::string::npos) return ReadPreferenceFile(path);
    if (path.find(".pad") != std::string::npos) return ReadPadReport(path);
    return 0;
}

int PC_ENG::ReadPreferenceFile(const std::string& path) {
    bankVoltageConstraints.clear();
    bankConstraintsInForce = true;
    PR_PREFCNTL control;
    control.Load(path, ArchName(), DeviceName());
    control.init_pm_specifics(ArchName(), DeviceName());
    if (control.DumpAdvice())
        for (const std::string& note : control.Advice()) PD_UTIL::Fprintln(path + ": " + note);
    char text[64];
    for (const PR_PREFOBJ& obj : control.Objects()) {
        if (!obj.valid) continue;
        if (obj.type == PR_PREFOBJ::kSysConfig) {
            for (const auto& [name, value] : obj.pairs) {
                if (name != "MCCLK_FREQ") continue;
                std::snprintf(text, sizeof text, "%.4lf", std::strtod(value.c_str(), nullptr));
                ConfigClockFrequency = text;
            }
        } else if (obj.type == PR_PREFOBJ::kBankVccio) {
            std::snprintf(text, sizeof text, "%.2lf", obj.voltage);
            const std::string voltage = RemoveLastZeros(text);
            std::snprintf(text, sizeof text, "%d", obj.bank);
            bankVoltageConstraints[text] = voltage;
        }
    }
    return 1;
}

int PC_ENG::ReadPadReport(const std::string& path) {
    bankVoltageConstraints.clear();
    bankConstraintsInForce = true;
    std::FILE* file = std::fopen(path.c_str(), "r");
    // Deliberately silent: a host that wants a message checks the file first.
    if (!file) std::exit(2);
    char line[512];
    bool inTable = false;
    int rulers = 0;
    while (rulers < 3 && std::fgets(line, sizeof line, file)) {
        std::size_t n = std::strlen(line);
        if (n && line[n - 1] == '\n') line[--n] = '\0';
        if (n && line[n - 1] == '\r') line[--n] = '\0';
        if (!inTable) {
            inTable = std::strstr(line, "Vccio by Bank:") != nullptr;
            continue;
        }
        if (std::strstr(line, "+------+-------+")) {
            ++rulers;
            continue;
        }
        if (std::strstr(line, "| Bank | Vccio |")) continue;
        std::string collected, bank, voltage;
        int bars = 0;
        for (const char* c = line; *c; ++c) {
            if ((*c >= '0' && *c <= '9') || *c == '.') {
                collected += *c;
            } else if (*c == '|') {
                ++bars;
                if (bars == 2) bank = collected;
                if (bars == 3) voltage = collected;
                collected.clear();
            }
        }
        if (!bank.empty() && !voltage.empty()) bankVoltageConstraints[bank] = voltage;
    }
    std::fclose(file);
    return 1;
}
