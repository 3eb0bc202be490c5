// Row 16: one event goes through a queue. A thread waits for it. The benchmark pushes the event;
// the thread wakes, takes it, frees it and says so.

#ifndef PLENXSDK_BENCH_C_INTERFACE_EVENT_WORK_H
#define PLENXSDK_BENCH_C_INTERFACE_EVENT_WORK_H

#include <sched.h>

#include <atomic>
#include <string>
#include <thread>

#include "harness/measure.h"

namespace bench {

constexpr benchmark::IterationCount kEvents = 20000;

template <class Contender>
void PassEvents(benchmark::State& state) {
    const std::string group(40, 'g');
    Contender queue;
    std::atomic<std::int64_t> done{0};
    std::thread reader([&] {
        while (queue.TakeOne()) {
            done.fetch_add(1, std::memory_order_release);
        }
    });
    std::int64_t pushed = 0;
    Measure(state, [&] {
        queue.Push(group);
        ++pushed;
        while (done.load(std::memory_order_acquire) != pushed) {
            sched_yield();
        }
    });
    queue.Stop();
    reader.join();
}

template <class Contender>
int RegisterEvents(const std::string& contender) {
    benchmark::RegisterBenchmark(("16 queue event/" + contender).c_str(), PassEvents<Contender>)
        ->Iterations(kEvents)
        ->UseRealTime();
    return 0;
}

}  // namespace bench

#endif  // PLENXSDK_BENCH_C_INTERFACE_EVENT_WORK_H
