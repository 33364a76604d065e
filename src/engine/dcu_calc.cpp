#include "dcu_calc.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace {

constexpr int kTapSteps = 20;  // emphasis settings are in 1/20 of the main current

// The whole text as a non-negative integer; -1 when it is anything else.
int WholeNumber(const std::string& text) {
    if (text.empty()) return -1;
    char* end = nullptr;
    const long n = std::strtol(text.c_str(), &end, 10);
    if (*end != '\0' || n < 0 || n > 100000) return -1;
    return static_cast<int>(n);
}

// Amplitude in millivolts peak-to-peak differential: codes 0 to 9 are the
// presets 400 .. 1300 mV, larger numbers are millivolts themselves.
int AmplitudeMillivolts(int value) {
    if (value < 0) return -1;
    return value <= 9 ? 400 + 100 * value : value;
}

std::string Bits(int code, int width) {
    std::string text = "0b";
    for (int bit = width - 1; bit >= 0; --bit) text += (code >> bit) & 1 ? '1' : '0';
    return text;
}

}  // namespace

int DCU_CALC::calc_tdrv_slice_vals(std::map<std::string, std::string>& map) {
    for (int s = 0; s < 6; ++s) map["TDRV_SLICE" + std::to_string(s) + "_CUR"].clear();
    const int mv = AmplitudeMillivolts(WholeNumber(map["TXAMPLITUDE"]));
    const int ohms = WholeNumber(map["TXDIFFTERM"]);
    const int pre = WholeNumber(map["TXDEPRE"]);
    const int post = WholeNumber(map["TXDEPOST"]);
    if (mv < 100 || mv > 1300) return 1;
    if (ohms < 50 || ohms > 200) return 2;
    if (pre < 0 || post < 0 || pre + post > kTapSteps) return 3;

    // The main current develops the swing across the differential
    // termination: I = V / R (mV / ohm = mA, times 1000 for uA).
    const double mainUa = 1000.0 * mv / ohms;
    const double totalUa = mainUa * (1.0 + static_cast<double>(pre + post) / kTapSteps);
    // To the nearest fine step; outside what six slices can make, no driver.
    const long wanted = std::lround(totalUa / kFineStep) * kFineStep;
    if (wanted < kMinTotal || wanted > kMaxTotal) return 4;

    // Coarse units first (each slice 1 .. 4 units of 800 uA), leaving the two
    // fine slices 200 .. 1000 uA; past 16 units the fine slices take the rest.
    int coarse = static_cast<int>((wanted - 2 * kFineStep) / kCoarseStep);
    if (coarse > 16) coarse = 16;
    int fine = static_cast<int>((wanted - static_cast<long>(coarse) * kCoarseStep) / kFineStep);
    for (int s = 0; s < 4; ++s) {
        // Spread evenly: the first slices take the odd units.
        const int units = coarse / 4 + (s < coarse % 4 ? 1 : 0);
        map["TDRV_SLICE" + std::to_string(s + 2) + "_CUR"] = Bits(units - 1, 2);
    }
    const int first = (fine + 1) / 2;
    map["TDRV_SLICE0_CUR"] = Bits(first - 1, 3);
    map["TDRV_SLICE1_CUR"] = Bits(fine - first - 1, 3);
    return 0;
}
