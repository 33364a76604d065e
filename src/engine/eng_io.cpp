// The "I/O" and "I/O Term" tabs.
#include "baspcengin.h"

// Placeholders until the I/O tabs calculate: their cells keep their values.
void PC_ENG::IoCalculation() {}
void PC_ENG::IoTermCalculation() {}
void PC_ENG::IOtermDo() {}
