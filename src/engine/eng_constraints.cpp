// Constraint and link files.
#include "baspcengin.h"

// No constraint file kind is read yet: every path is unknown.
int PC_ENG::GetUserConstraints(const std::string&) {
    return 0;
}
