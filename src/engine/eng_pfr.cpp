// Port files and the ASC rails.
#include "baspcengin.h"

// Port files belong to one architecture that the bundled data do not hold;
// reading them is not supported yet, so its set-up stops there.
int PC_ENG::ReadPFRFile(const std::string&, const std::string&, const std::string&,
                        const std::string&, const std::string&) {
    return 0;
}
