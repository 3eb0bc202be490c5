// Row 8: a whole call like PLENXManager::Start while the worker is busy. It looks at the arguments,
// writes the line, queues the job with its copies and returns.

#ifndef PLENXSDK_BENCH_QUEUE_START_WORK_H
#define PLENXSDK_BENCH_QUEUE_START_WORK_H

#include "queue/queue_work.h"

namespace bench {

/// A type of service that no service has, so that the jobs which are left in the end do nothing
/// but write a line. The call itself treats all types alike.
/// It is read anew for each call, so that the compiler knows nothing about it. (Debian's
/// DoNotOptimize would leave another number in a small variable.)
inline volatile std::uint32_t noService = 9;

template <class Contender>
void StartWhileBusy(benchmark::State& state) {
    const JobStrings strings;
    Contender contender;
    contender.Occupy();
    TidyHeap();
    Measure(state, [&] {
        benchmark::DoNotOptimize(contender.Start(noService, strings.first, strings.second));
    });
    contender.Release();
}

template <class Contender>
int RegisterStart(const std::string& contender) {
    benchmark::RegisterBenchmark(("8 Start/" + contender).c_str(), StartWhileBusy<Contender>)
        ->Iterations(kEnqueued);
    return 0;
}

}  // namespace bench

#endif  // PLENXSDK_BENCH_QUEUE_START_WORK_H
