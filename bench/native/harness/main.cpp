#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdlib>

#include "harness/measure.h"

namespace bench {

bool IsQuick() {
    return std::getenv("PLENX_BENCH_QUICK") != nullptr;
}

}  // namespace bench

namespace {

// glibc copies blocks of some kilobytes with "rep movsb". On some AMD processors that takes five
// times as long when the two blocks happen to have similar offsets in their pages (glibc's bug
// 30994). No contender must win or lose by the place of its blocks. The C library looks at this
// variable once, when the process starts.
void CopyWithoutRepMovsb(char** argv) {
    constexpr const char* kTunables = "GLIBC_TUNABLES";
    if (std::getenv(kTunables) == nullptr) {
        setenv(kTunables, "glibc.cpu.x86_rep_movsb_threshold=0x40000000", 1);
        execv("/proc/self/exe", argv);
    }
}

// The heap keeps the memory that it once received. Otherwise a contender would pay for fresh pages
// of the system or not, depending on what ran before it.
void KeepHeap() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_TOP_PAD, 16 << 20);
}

}  // namespace

int main(int argc, char** argv) {
    CopyWithoutRepMovsb(argv);
    KeepHeap();

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
