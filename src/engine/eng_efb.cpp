// The "EFB" tab.
#include "baspcengin.h"

// Placeholder until the embedded function block calculates.
void PC_ENG::EFBCalculation() {}
