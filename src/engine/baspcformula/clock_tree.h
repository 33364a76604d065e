// The clock tree's resources: which tag letter of a clock cell selects which
// `.pwr` member of "Clocks", and under which names the device counts them.
#ifndef PWC_CLOCK_TREE_H
#define PWC_CLOCK_TREE_H

#include <vector>

namespace pwc {

// How the `.pwr` member of a resource is named.
enum class ClockLookup {
    Item,          // as written; a name ending in "@" takes the row's device
    DeviceTail,    // "@" and the row's device added
    SupplyMember,  // the device's own member when the data have one
};

// When a letter applies.
enum class ClockWhen { Always, TopBottomEdge, LeftRightEdge, TagWithoutE };

struct ClockResource {
    const char* kind;  // "PCLK", "SCLK", "ECLK": the row's cell
    char letter;       // searched in the tag
    const char* item;
    ClockLookup lookup;
    ClockWhen when;
    bool trunk;             // the tag's number must match the row's trunk rows
    const char* debugName;  // column name of the logs and debug tables
    const char* key;        // device total ("Format") and free count "<key>_unused"
    bool bf7p00Block;       // a DC block row of its own on the "bf7p00" codes
};

struct ClockKind {
    const char* kind;
    const char* trunkRow1;  // row columns of the trunk rule; null: none
    const char* trunkRow2;
    const char* trunkLog;
};

// In the order the letters are tried, kind by kind.
const std::vector<ClockResource>& ClockResources();
const std::vector<ClockKind>& ClockKinds();

}  // namespace pwc

#endif
