// The settling test of the junction temperature iteration.
#ifndef PWC_PC_SETTLING_H
#define PWC_PC_SETTLING_H

namespace pwc {

// The percentage change between passes must shrink while it is positive and
// rise towards zero while it is negative; growth of the step in the same
// direction is divergence.
struct JunctionSettling {
    static constexpr double kSentinel = -999.0;
    explicit JunctionSettling(double start) : previous(start) {}

    // True when the pass approaches, false when it diverges.
    bool Apply(double next) {
        double base;
        if (previous == 0.0) {
            base = 0.01;
            previous = next == 0.0 ? 0.01 : next;
        } else {
            base = previous;
            previous = next;
        }
        change = (previous - base) / base * 100.0;  // percent
        if (lastChange == kSentinel || (lastChange >= change && lastChange >= 0.0) ||
            (change >= lastChange && 0.0 >= lastChange)) {
            lastChange = change;
            return true;
        }
        return false;
    }
    bool Within(double low, double high) const { return low <= change && change <= high; }

    double previous;
    double lastChange = kSentinel;
    double change = 0.0;
};

}  // namespace pwc

#endif
