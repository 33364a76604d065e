// The "Misc" tab and the always-on device blocks.
#include "baspcengin.h"

// Placeholders until the always-on blocks calculate.
void PC_ENG::MiscCalculation() {}
void PC_ENG::setBandgapControllert() {}
