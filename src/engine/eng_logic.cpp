// The "Logic Block" tab.
#include "baspcengin.h"

// The logic calculator arrives with the current models.
void PC_ENG::LogicBlockCalculation() {}
