// bench_rss ROWS DESIGN: builds one generated design on the demo project,
// runs Calculate and prints the peak resident memory of the process. The peak
// is process-wide, so each size is measured in a process of its own.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "designs.h"

int main(int argc, char** argv) {
    const pwcbench::DesignKind* kind = argc == 3 ? pwcbench::FindDesign(argv[2]) : nullptr;
    char* end = nullptr;
    const long rows = argc == 3 ? std::strtol(argv[1], &end, 10) : 0;
    if (!kind || !end || *end || rows < 0) {
        std::fprintf(stderr, "usage: bench_rss ROWS DESIGN (DESIGN: logic, io, mixed)\n");
        return 2;
    }
    const double before = pwcbench::PeakRssMB();
    pwcbench::Engine e =
        pwcbench::Engine::OnDemo([&](PD_DATA& p) { kind->fill(p, static_cast<int>(rows)); });
    e.eng->Calculate();
    std::printf("%s %ld rows: peak RSS %.1f MB (%.1f MB before the design), %d passes\n",
                kind->name, rows, pwcbench::PeakRssMB(), before, e.eng->GetIterationCount());
    return 0;
}
