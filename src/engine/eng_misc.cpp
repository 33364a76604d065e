// The always-on device blocks of the "Misc" tab.
#include "baspcengin.h"

// The bandgap controller follows the "Misc" tab, which has no calculator yet.
void PC_ENG::setBandgapControllert() {}
