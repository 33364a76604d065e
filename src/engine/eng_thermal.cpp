// Junction temperature: the fixed point of leakage and temperature, and the
// maximum safe ambient. Temperatures live on the engine as text.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "baspcengin.h"
#include "eng_text.h"
#include "pc_settling.h"

using namespace pwc;

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
    JunctionTemperature = PrintFixed(tj, 2);
    pwc::JunctionSettling test(ambient);
    bool approaching = test.Apply(tj);
    while (!test.Within(-1.0, 1.0) && approaching) {
        tj = CalculatePassPower() * theta + ambient;
        JunctionTemperature = PrintFixed(tj, 2);
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
    JunctionTemperature = PrintFixed(maxJ, 2);
    const double p0 = CalculatePassPower();
    const double safe0 = maxJ - theta * p0;
    MaxSafeAmbient = PrintFixed(safe0, 2);
    JunctionTemperature = PrintFixed(maxJ + 0.5, 2);
    if (SingleSafeAmbientPass) return;

    const double p1 = CalculatePassPower();
    const double slope = (maxJ + 0.5 - maxJ) / (p1 - p0);
    if (slope >= theta) {
        MaxSafeAmbient = PrintFixed(safe0, 2);
    } else {
        // The design may run away: the search costs passes, but the one-step
        // estimate above stays what is reported.
        JunctionTemperature = PrintFixed(ambient, 2);
        const bool diverged = CalculateJunctionTillDiverge(theta, ambient)[0] == 1.0;
        const double step = 63.0;
        double answer = 0.0;
        double t = diverged ? ambient - step : ambient + step;
        int k = 0;
        bool found = false;
        for (;;) {
            JunctionTemperature = PrintFixed(t, 2);
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
                JunctionTemperature = PrintFixed(mid, 2);
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
        JunctionTemperature = PrintFixed(answer, 2);
    }

    JunctionTemperature = PrintFixed(ambient, 2);
    double tj = CalculatePassPower() * theta + ambient;
    JunctionTemperature = PrintFixed(tj, 2);
    bool runaway = Num(MaxSafeAmbient) < 0.0;
    pwc::JunctionSettling test(ambient);
    for (;;) {
        if (!test.Apply(tj)) runaway = true;
        // Asymmetric band: only a tenth of a percent upward.
        if (test.Within(-1.0, 0.1) || runaway) break;
        tj = CalculatePassPower() * theta + ambient;
        JunctionTemperature = PrintFixed(tj, 2);
    }
    CalculatePassPower();

    if (EnvIs("VRL_PWC_HIGHTEMP", "1"))
        JunctionTemperature = PrintFixed(tj, 2);
    else if (runaway)
        JunctionTemperature = "125++";
    else if (tj > 125.0)
        JunctionTemperature = "125+";
    else
        JunctionTemperature = PrintFixed(tj, 2);
    JunctionDone = 1;
}

double PC_ENG::CalculateJunctionByGivenAmbProcSupply(const std::string& process, double ambient,
                                                     const std::string& supply, double voltage) {
    JunctionDone = 0;
    const double theta = Num(ThetaJA);
    JunctionTemperature = PrintFixed(ambient, 4);
    SetProcessType(process.c_str());
    const std::string remembered = GetVDPM(supply, "Voltage");
    updataVDPM(voltage, supply);
    ResetConstants();

    double tj = CalculatePassPower() * theta + ambient;
    JunctionTemperature = PrintFixed(tj, 4);
    pwc::JunctionSettling test(ambient);
    while (test.Apply(tj) && !test.Within(-1.0, 1.0)) {
        tj = CalculatePassPower() * theta + ambient;
        JunctionTemperature = PrintFixed(tj, 4);
    }
    CalculatePassPower();
    JunctionDone = 1;
    updataVDPM(Num(remembered), supply);
    return tj;
}
