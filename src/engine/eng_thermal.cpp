// Junction temperature: the fixed point of leakage and temperature, and the
// maximum safe ambient. Temperatures live on the engine as text.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "pc_settling.h"

namespace {

std::string Format(const char* format, double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, format, v);
    return buf;
}

double Num(const std::string& s) {
    return std::strtod(s.c_str(), nullptr);
}

bool EnvIs(const char* name, const char* value) {
    const char* v = std::getenv(name);
    return v && std::strcmp(v, value) == 0;
}

}  // namespace

std::string PC_ENG::GetMaxjuction(const std::string& key) const {
    auto* limits = dynamic_cast<PD_KEYSECT*>(pwrData->GetSection("MAX JUNCTION TEMP LIMITS"));
    return limits ? limits->GetValue(key.c_str()) : "";
}

double PC_ENG::CalculatePassPower() {
    Calculator();
    CalculateTotalPower();
    return Num(GetTotalPower());
}

std::vector<double> PC_ENG::CalculateJunctionTillDiverge(double theta, double ambient) {
    double tj = CalculatePassPower() * theta + ambient;
    JunctionTemperature = Format("%.2lf", tj);
    pwc::JunctionSettling test(ambient);
    bool approaching = test.Apply(tj);
    while (!test.Within(-1.0, 1.0) && approaching) {
        tj = CalculatePassPower() * theta + ambient;
        JunctionTemperature = Format("%.2lf", tj);
        approaching = test.Apply(tj);
    }
    if (!approaching) return {1.0, ambient, ambient};
    return {0.0, ambient, tj};
}

void PC_ENG::CalculateJunctionTemp() {
    const std::string maxJText = GetMaxjuction(OperatingCondition);
    JunctionDone = 0;
    ProcessTheta();

    const double ambient = Num(AmbientTemperature);
    const double theta = Num(ThetaJA);
    const double maxJ = Num(maxJText);
    JunctionTemperature = Format("%.2lf", maxJ);
    const double p0 = CalculatePassPower();
    const double safe0 = maxJ - theta * p0;
    MaxSafeAmbient = Format("%.2lf", safe0);
    JunctionTemperature = Format("%.2lf", maxJ + 0.5);
    if (SingleSafeAmbientPass) return;

    const double p1 = CalculatePassPower();
    const double slope = (maxJ + 0.5 - maxJ) / (p1 - p0);
    if (slope >= theta) {
        MaxSafeAmbient = Format("%.2lf", safe0);
    } else {
        // The design may run away: the search costs passes, but the one-step
        // estimate above stays what is reported.
        JunctionTemperature = Format("%.2lf", ambient);
        const bool diverged = CalculateJunctionTillDiverge(theta, ambient)[0] == 1.0;
        const double step = 63.0;
        double answer = 0.0;
        double t = diverged ? ambient - step : ambient + step;
        int k = 0;
        bool found = false;
        for (;;) {
            JunctionTemperature = Format("%.2lf", t);
            const bool trialDiverged = CalculateJunctionTillDiverge(theta, t)[0] == 1.0;
            if (trialDiverged != diverged) {
                found = true;
                break;
            }
            if (k == 6) break;
            ++k;
            // Down the step is taken twice on purpose.
            t += diverged ? -2.0 * step : step;
        }
        if (found && k <= 4) {
            double high = ambient > t ? t + step : t;
            double low = ambient > t ? t : t - step;
            while (high > low) {
                const double mid = 0.5 * (low + high);
                JunctionTemperature = Format("%.2lf", mid);
                std::vector<double> r = CalculateJunctionTillDiverge(theta, mid);
                answer = r[1];
                if (r[0] == 1.0) {
                    if (0.5 > mid - low) break;
                    high = mid;
                } else {
                    if (0.5 >= high - low) break;
                    low = mid + 0.5;
                }
            }
        }
        JunctionTemperature = Format("%.2lf", answer);
    }

    JunctionTemperature = Format("%.2lf", ambient);
    double tj = CalculatePassPower() * theta + ambient;
    JunctionTemperature = Format("%.2lf", tj);
    bool runaway = Num(MaxSafeAmbient) < 0.0;
    pwc::JunctionSettling test(ambient);
    for (;;) {
        if (!test.Apply(tj)) runaway = true;
        // Asymmetric band: only a tenth of a percent upward.
        if (test.Within(-1.0, 0.1) || runaway) break;
        tj = CalculatePassPower() * theta + ambient;
        JunctionTemperature = Format("%.2lf", tj);
    }
    CalculatePassPower();

    if (EnvIs("VRL_PWC_HIGHTEMP", "1"))
        JunctionTemperature = Format("%.2lf", tj);
    else if (runaway)
        JunctionTemperature = "125++";
    else if (tj > 125.0)
        JunctionTemperature = "125+";
    else
        JunctionTemperature = Format("%.2lf", tj);
    JunctionDone = 1;
}

double PC_ENG::CalculateJunctionByGivenAmbProcSupply(const std::string& process, double ambient,
                                                     const std::string& supply, double voltage) {
    JunctionDone = 0;
    const double theta = Num(ThetaJA);
    JunctionTemperature = Format("%.4f", ambient);
    SetProcessType(process.c_str());
    const std::string remembered = GetVDPM(supply, "Voltage");
    updataVDPM(voltage, supply);
    ResetConstants();

    double tj = CalculatePassPower() * theta + ambient;
    JunctionTemperature = Format("%.4f", tj);
    pwc::JunctionSettling test(ambient);
    while (test.Apply(tj) && !test.Within(-1.0, 1.0)) {
        tj = CalculatePassPower() * theta + ambient;
        JunctionTemperature = Format("%.4f", tj);
    }
    CalculatePassPower();
    JunctionDone = 1;
    updataVDPM(Num(remembered), supply);
    return tj;
}
