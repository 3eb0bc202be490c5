#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>

#include "harness/measure.h"

namespace bench {

bool IsQuick() {
    return std::getenv("PLENX_BENCH_QUICK") != nullptr;
}

}  // namespace bench

int main(int argc, char** argv) {
    // The heap keeps what it once was given: else a contender would pay for fresh pages of the
    // system or not depending on what ran before it.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TOP_PAD, 16 << 20);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
