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

constexpr benchmark::IterationCount kEvents = 2000;

/// Keeps the calling thread on the first or the last of its cores while it lives. Where both
/// threads were put on one core, an event took far longer.
class OnOneCore {
public:
    enum class Which { kFirst, kLast };

    explicit OnOneCore(Which which) {
        sched_getaffinity(0, sizeof(before_), &before_);
        int chosen = -1;
        for (int core = 0; core != CPU_SETSIZE; ++core) {
            if (CPU_ISSET(core, &before_) && (chosen < 0 || which == Which::kLast)) {
                chosen = core;
            }
        }
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(chosen, &one);
        sched_setaffinity(0, sizeof(one), &one);
    }
    ~OnOneCore() { sched_setaffinity(0, sizeof(before_), &before_); }
    OnOneCore(const OnOneCore&) = delete;
    OnOneCore& operator=(const OnOneCore&) = delete;

private:
    cpu_set_t before_{};
};

template <class Contender>
void PassEvents(benchmark::State& state) {
    const std::string group(40, 'g');
    Contender queue;
    std::atomic<std::int64_t> done{0};
    std::thread reader([&] {
        const OnOneCore there(OnOneCore::Which::kLast);
        while (queue.TakeOne()) {
            done.fetch_add(1, std::memory_order_release);
        }
    });
    const OnOneCore here(OnOneCore::Which::kFirst);  // the reader would inherit it
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
