// The "Block RAM" tab.
#include "baspcengin.h"

// Placeholder until the memories calculate: their cells keep their values.
void PC_ENG::BlockRamCalculation() {}
