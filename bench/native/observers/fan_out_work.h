// Rows 5, 6 and 12: one notification goes to many observers. All contenders call the same
// observers, hold a lock while they do, and look at the code that each of them returns.

#ifndef PLENXSDK_BENCH_OBSERVERS_FAN_OUT_WORK_H
#define PLENXSDK_BENCH_OBSERVERS_FAN_OUT_WORK_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "harness/measure.h"
#include "plenxsdk/plenx_manager.h"

namespace bench {

/// Counts its notifications.
class CountingObserver : public DistributedFs::PLENXServiceObserver {
public:
    std::uint64_t count = 0;

    int NotifyConnect(DistributedFs::ServiceType, const std::string&) override;
    int SendLocalMessage(DistributedFs::PLENXMessageType, unsigned int,
                         const std::string&) override;
    int NotifyDisconnect(DistributedFs::ServiceType, const std::string&) override;
    int NotifyReconnect(DistributedFs::ServiceType, const std::string&) override;
    int QueryLinkStatus(DistributedFs::ServiceType, const std::string&, unsigned int,
                        std::int32_t&) override;
    int NotifyStatus(DistributedFs::ServiceType, const std::string&, unsigned int, bool) override;
    int NotifyError(int) override;
    int NotifyDiskName(const std::string&) override;
};

using Observers = std::vector<CountingObserver>;

/// A contender does this with a code that is not 0. No observer returns one.
void ReportCode(int code);

inline const std::string& GroupName() {
    static const std::string name = "group";
    return name;
}

inline bool WereAllCalled(const Observers& observers, std::uint64_t times) {
    for (const CountingObserver& observer : observers) {
        if (observer.count != times) {
            return false;
        }
    }
    return true;
}

/// A contender connects itself with the observers when it is made; Notify() calls them.
template <class Contender>
void FanOut(benchmark::State& state, std::size_t count) {
    Observers observers(count);
    Contender contender(observers);
    contender.Notify();
    if (!WereAllCalled(observers, 1)) {
        state.SkipWithError("an observer was not called");
        return;
    }
    Measure(state, [&] { contender.Notify(); });
}

template <class Contender>
int RegisterFanOut(const std::string& contender) {
    const auto add = [&](const std::string& row, std::size_t count) {
        benchmark::RegisterBenchmark(
            (row + "/" + contender).c_str(),
            [count](benchmark::State& state) { FanOut<Contender>(state, count); });
    };
    add("5 1 observer", 1);
    add("5 10 observers", 10);
    add("5 1,000 observers", 1000);
    return 0;
}

}  // namespace bench

#endif  // PLENXSDK_BENCH_OBSERVERS_FAN_OUT_WORK_H
