// Equation look-up and the forms of the equations.
#include "baspcengin.h"

// The polynomial sections take effect with the current models.
void PC_ENG::Detect5thpolyEquation() {}
