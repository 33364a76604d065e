// An accepted binary file is canonical: written again it gives the same bytes,
// directly and through the text form.
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
    const std::string input(reinterpret_cast<const char*>(data), size);
    PD_DATA first;
    if (!first.ParseBinary(input, "fuzz")) {
        if (first.GetNumOfSections() != 0) __builtin_trap();
        return 0;
    }
    if (first.ToBinary() != input) __builtin_trap();
    const std::string text = first.ToText();
    PD_DATA viaText;
    if (!viaText.ParseText(text, "text") || viaText.ToBinary() != input) __builtin_trap();
    return 0;
}
