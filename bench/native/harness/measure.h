// Measures an operation in the same way for every contender.
//
// A run either takes times or counts allocations, which the library count_allocations does when
// it is loaded before the others.

#ifndef PLENXSDK_BENCH_HARNESS_MEASURE_H
#define PLENXSDK_BENCH_HARNESS_MEASURE_H

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" __attribute__((weak)) std::uint64_t BenchAllocations();

namespace bench {

/// A counting run looks at this many operations.
constexpr std::int64_t kCounted = 100;

inline bool CountsAllocations() {
    return BenchAllocations != nullptr;
}

/// The body of a benchmark.
template <class Operation>
void Measure(benchmark::State& state, Operation operation) {
    operation();  // makes everything that is made only once
    if (!CountsAllocations()) {
        for (auto _ : state) {
            operation();
        }
        return;
    }
    const std::uint64_t before = BenchAllocations();
    for (std::int64_t i = 0; i != kCounted; ++i) {
        operation();
    }
    state.counters["allocations"] =
        static_cast<double>(BenchAllocations() - before) / static_cast<double>(kCounted);
    for (auto _ : state) {
        operation();
    }
}

/// The memory behind the pointer may be read and written by anybody from here on.
inline void Escape(const void* memory) {
    benchmark::DoNotOptimize(memory);
    benchmark::ClobberMemory();
}

inline std::size_t BytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Joins the small pieces that were freed before. A contender that queues many jobs must find the
/// heap in the same state, whoever has used it before.
inline void TidyHeap() {
    void* large = std::malloc(std::size_t{1} << 20);
    benchmark::DoNotOptimize(large);
    std::free(large);
}

/// A program's quick form does the same work less often.
bool IsQuick();

}  // namespace bench

#endif  // PLENXSDK_BENCH_HARNESS_MEASURE_H
