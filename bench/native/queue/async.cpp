// For scale: std::async makes a thread for each job, and its future cannot be dropped without
// waiting for the job.

#include <future>

#include "queue/queue_work.h"

namespace bench {
namespace {

constexpr std::int64_t kJobs = 1000;

void ThroughAsync(benchmark::State& state) {
    const OneCore oneCore;
    const JobStrings strings;
    Target target;
    for (auto _ : state) {
        std::async(std::launch::async, &Target::Run, &target, strings.first, strings.second).get();
    }
}

[[maybe_unused]] const auto* const registered =
    benchmark::RegisterBenchmark("7 a million jobs/(std::async)", ThroughAsync)
        ->Iterations(kJobs)
        ->MeasureProcessCPUTime();

}  // namespace
}  // namespace bench
