// Any accepted text must survive writing and reading again, in both forms.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "pd_data.h"
#include "pd_util.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::FILE* quiet = [] {
        std::FILE* f = std::fopen("/dev/null", "w");
        PD_UTIL::SetRunLog(f);
        return f;
    }();
    (void)quiet;
    PD_DATA first;
    if (!first.ParseText(std::string(reinterpret_cast<const char*>(data), size), "fuzz")) {
        if (first.GetNumOfSections() != 0) __builtin_trap();
        return 0;
    }
    const std::string text = first.ToText();
    const std::string bytes = first.ToBinary();
    PD_DATA again;
    if (!again.ParseText(text, "again") || again.ToText() != text || again.ToBinary() != bytes)
        __builtin_trap();
    PD_DATA binary;
    if (!binary.ParseBinary(bytes, "binary") || binary.ToText() != text) __builtin_trap();
    return 0;
}
