// The Tx driver's current slices: the driver of a SERDES channel is a
// current-mode output built from six switchable slices, and this works out
// their codes from the channel's amplitude, termination and emphasis taps.
// The rule is described in docs/serdes-driver.md.
#ifndef PWC_DCU_CALC_H
#define PWC_DCU_CALC_H

#include <map>
#include <string>

class DCU_CALC {
  public:
    // Reads "TXAMPLITUDE" (a code 0 to 9 or millivolts peak-to-peak),
    // "TXDIFFTERM" (ohms), "TXDEPRE" and "TXDEPOST" (steps of 1/20 of the
    // main current); "CH_MODE" is carried and not read. On success writes
    // "TDRV_SLICE0_CUR" .. "TDRV_SLICE5_CUR" as "0b" and the code's bits and
    // returns 0; a combination the driver can't make returns non-zero and
    // leaves the slice keys empty.
    static int calc_tdrv_slice_vals(std::map<std::string, std::string>& map);

    // The slices' currents in microamperes by code: slices 0 and 1 are
    // three-bit fine slices, 2 to 5 two-bit coarse ones.
    static constexpr int kFineStep = 100;    // uA per code step, 100 .. 800
    static constexpr int kCoarseStep = 800;  // uA per code step, 800 .. 3200
    static constexpr int kMinTotal = 2 * kFineStep + 4 * kCoarseStep;          // 3400 uA
    static constexpr int kMaxTotal = 2 * 8 * kFineStep + 4 * 4 * kCoarseStep;  // 14400 uA
};

#endif
