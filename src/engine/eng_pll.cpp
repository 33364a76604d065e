// The "PLL" tab and the DLL family's tabs.
#include "baspcengin.h"

// Placeholders until these tabs calculate: their cells keep their values.
void PC_ENG::PLLCalculation() {}
void PC_ENG::DLLCalculation() {}
void PC_ENG::DQSDLLCalculation() {}
void PC_ENG::DDRDLLCalculation() {}
void PC_ENG::DQSCalculation() {}
void PC_ENG::DLLDELCalculation() {}
void PC_ENG::ESBCalculation() {}
