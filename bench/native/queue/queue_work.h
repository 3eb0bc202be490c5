// Rows 7 and 12: jobs for one worker. A job is a call of a member function with copies of two
// strings that are too long to lie inside a std::string; its future is made and dropped.
//
// A contender starts one worker when it is made. When it is destroyed, it ends the worker and
// leaves the remaining jobs unrun. Enqueue(target, first, second) queues a job, and Post(function)
// any other function.

#ifndef PLENXSDK_BENCH_QUEUE_QUEUE_WORK_H
#define PLENXSDK_BENCH_QUEUE_QUEUE_WORK_H

#include <pthread.h>
#include <sched.h>

#include <cstdint>
#include <string>

#include "harness/gate.h"
#include "harness/measure.h"

namespace bench {

struct JobStrings {
    std::string first = std::string(40, 'f');
    std::string second = std::string(64, 's');
};

class Target {
public:
    /// It is not in a header, so that no contender knows what it does.
    void Run(const std::string& first, const std::string& second);
    std::uint64_t Runs() const { return runs_; }

private:
    std::uint64_t runs_ = 0;
};

/// Keeps this thread, and those that it starts, on the core where it is.
class OneCore {
public:
    OneCore() {
        pthread_getaffinity_np(pthread_self(), sizeof(before_), &before_);
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(static_cast<unsigned>(sched_getcpu()), &one);
        pthread_setaffinity_np(pthread_self(), sizeof(one), &one);
    }
    ~OneCore() { pthread_setaffinity_np(pthread_self(), sizeof(before_), &before_); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;

private:
    cpu_set_t before_;
};

template <class Queue>
void Occupy(Queue& queue, Gate& gate) {
    queue.Post([&gate] { gate.Pass(); });
    gate.WaitUntilEntered();
}

/// Returns when everything that was queued before has run.
template <class Queue>
void WaitForAll(Queue& queue) {
    Gate gate;
    Occupy(queue, gate);
    gate.Open();
}

template <class Queue>
void EnqueueWhileBusy(benchmark::State& state) {
    const JobStrings strings;
    Target target;
    Gate gate;
    Queue queue;
    Occupy(queue, gate);
    TidyHeap();
    Measure(state, [&] { queue.Enqueue(target, strings.first, strings.second); });
    gate.Open();
}

template <class Queue>
void ThroughOneCore(benchmark::State& state, std::int64_t jobs) {
    const OneCore oneCore;
    const JobStrings strings;
    Target target;
    Queue queue;
    TidyHeap();
    while (state.KeepRunningBatch(jobs)) {
        for (std::int64_t i = 0; i != jobs; ++i) {
            queue.Enqueue(target, strings.first, strings.second);
        }
        WaitForAll(queue);
    }
    if (target.Runs() != static_cast<std::uint64_t>(jobs)) {
        state.SkipWithError("not every job has been run");
    }
}

/// The number of jobs is fixed, because the queue grows with each.
constexpr std::int64_t kEnqueued = 25000;

/// How often to run work that takes a second each time.
inline int LongRepetitions() {
    return IsQuick() ? 9 : 21;
}

/// A quick run does less, and the table says so.
inline std::int64_t JobsThrough() {
    return IsQuick() ? 100000 : 1000000;
}

template <class Queue>
int RegisterQueue(const std::string& contender) {
    benchmark::RegisterBenchmark(("7 enqueue/" + contender).c_str(), EnqueueWhileBusy<Queue>)
        ->Iterations(kEnqueued);
    const std::int64_t jobs = JobsThrough();
    benchmark::RegisterBenchmark(
        ("7 a million jobs/" + contender).c_str(),
        [jobs](benchmark::State& state) { ThroughOneCore<Queue>(state, jobs); })
        ->Iterations(jobs)
        ->Repetitions(LongRepetitions())
        ->MeasureProcessCPUTime();
    return 0;
}

}  // namespace bench

#endif  // PLENXSDK_BENCH_QUEUE_QUEUE_WORK_H
