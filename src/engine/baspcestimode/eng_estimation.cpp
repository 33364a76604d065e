// Estimation mode: completing a rough design from rates.
#include "baspcengin.h"

// Estimation is not built yet: a design is calculated as the user entered it.
void PC_ENG::ResetHidenDataAll() {}
void PC_ENG::EstimationModeCheck() {}
void PC_ENG::ProcessEstimationMode() {}
