// Row 9: the time from the call of Enqueue to the first instruction of the job, while the worker
// sleeps.

#include <atomic>
#include <cstdint>

#include "common/thread_pool.h"
#include "support/clock.h"
#include "support/samples.h"

namespace PlenxBench {
namespace {

constexpr double kUntilAsleep = 100000;  // nanoseconds

double WakeUp(DistributedFs::ThreadPool& pool) {
    for (const std::int64_t start = Now(); Nanoseconds(Now() - start) < kUntilAsleep;) {
    }
    std::atomic<std::int64_t> ran{0};
    const std::int64_t queued = Now();
    pool.Enqueue([&ran] { ran = Now(); }).wait();
    return Nanoseconds(ran - queued);
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) {
    using namespace PlenxBench;
    const Options options = ReadOptions(argc, argv, "From enqueue to run, worker idle");
    DistributedFs::ThreadPool ours(1);
    const std::size_t values = options.quick ? 100 : 400;
    return Finish(options,
                  Measure("9 enqueue to run", "ns", {{"ours", [&] { return WakeUp(ours); }}},
                          options.repetitions, values));
}
