// The "Clocks" tab.
#include "baspcengin.h"

// Placeholder until the clock tree calculates: its cells keep their values.
void PC_ENG::ClockCalculation() {}
