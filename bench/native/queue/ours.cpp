// Measures ThreadPool.

#include <thread>

#include "common/thread_pool.h"
#include "queue/queue_work.h"

namespace bench {
namespace {

class Ours {
public:
    void Enqueue(Target& target, const std::string& first, const std::string& second) {
        pool_.Enqueue(&Target::Run, &target, first, second);
    }
    template <class Function>
    void Post(Function function) {
        pool_.Enqueue(function);
    }
    bool IsIdle() const { return pool_.IsIdle(); }

private:
    DistributedFs::ThreadPool pool_{1};
};

// Queues the jobs behind a busy worker and then has the worker run them.
void QueueAndRun(Ours& ours, std::int64_t jobs) {
    static const JobStrings strings;
    Target target;
    Gate gate;
    Occupy(ours, gate);
    for (std::int64_t i = 0; i != jobs; ++i) {
        ours.Enqueue(target, strings.first, strings.second);
    }
    gate.Open();
    WaitForAll(ours);
}

// Row 12 measures the cost of one job, and the memory that is left while the pool goes on.
void RegisterGrowth(const std::string& size, std::int64_t jobs) {
    const std::string name = "12 queued jobs/" + size;
    benchmark::RegisterBenchmark(name.c_str(),
                                 [jobs](benchmark::State& state) {
                                     Ours ours;
                                     while (state.KeepRunningBatch(jobs)) {
                                         QueueAndRun(ours, jobs);
                                     }
                                 })
        ->Repetitions(LongRepetitions())
        ->MeasureProcessCPUTime();
}

void MemoryAfterJobs(benchmark::State& state) {
    Ours ours;
    QueueAndRun(ours, 1);
    const std::size_t before = BytesInUse();
    for (auto _ : state) {
        QueueAndRun(ours, 1000000);
        while (!ours.IsIdle()) {  // the worker frees the queue's memory when all is done
            std::this_thread::yield();
        }
    }
    state.counters["bytes_left"] = static_cast<double>(BytesInUse()) - static_cast<double>(before);
}

[[maybe_unused]] const int kRegistered = [] {
    RegisterQueue<Ours>("ours");
    RegisterGrowth("1,000", 1000);
    RegisterGrowth("32,000", 32000);
    RegisterGrowth("1,000,000", 1000000);
    benchmark::RegisterBenchmark("12 memory after jobs/ours", MemoryAfterJobs)
        ->Iterations(1)
        ->Repetitions(1);
    return 0;
}();

}  // namespace
}  // namespace bench
