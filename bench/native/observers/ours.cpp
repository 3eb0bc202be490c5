// Measures PLENXManager's own fan-out, whose three lines are part of it. The lines are also
// measured by themselves, so that the table can subtract them.

#include "common/log.h"
#include "harness/fan_out.h"
#include "observers/fan_out_work.h"

namespace bench {
namespace {

using DistributedFs::kPcService;
using DistributedFs::LogInfo;
using DistributedFs::PLENXManager;

class Ours {
public:
    explicit Ours(Observers& observers) : observers_(observers) {
        for (CountingObserver& observer : observers_) {
            PLENXManager::GetInstance().RegisterPLENXServiceObserver(&observer);
        }
    }
    ~Ours() {
        for (CountingObserver& observer : observers_) {
            PLENXManager::GetInstance().UnregisterPLENXServiceObserver(&observer);
        }
    }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void Notify() { NotifyConnect(kPcService, GroupName()); }

private:
    Observers& observers_;
};

// Writes the lines of NotifyConnect.
void WriteThreeLines() {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::NotifyConnect";
    LogInfo(kFunction, "[PLENXSDK] plenx manager notify connect invoked svcType:", kPcService);
    LogInfo(kFunction, "[PLENXSDK] plenx manager notify connect begin");
    LogInfo(kFunction, "[PLENXSDK] plenx manager notify connect end");
}

void ThreeLines(benchmark::State& state) {
    Measure(state, WriteThreeLines);
}

// Writes the line of row 3.
void OneLine(benchmark::State& state) {
    Measure(state, [] {
        std::uint32_t numbers[] = {48, 4096, 4168, 4097};
        benchmark::DoNotOptimize(numbers);
        LogInfo("DistributedFs::RpcMessageReader::ReadInt8Array",
                "[PLENXSDK] Invalid Args offset:", numbers[0], " rpcReqArgSize:", numbers[1],
                " rpcMsgSize_:", numbers[2], " argLen:", numbers[3]);
    });
}

void Notification(benchmark::State& state) {
    FanOut<Ours>(state, 1);
}

// Row 12 measures the cost of one observer, and the memory that is left.
void RegisterGrowth(const std::string& size, std::int64_t count) {
    const std::string name = "12 observers/" + size;
    benchmark::RegisterBenchmark(name.c_str(), [count](benchmark::State& state) {
        Observers observers(static_cast<std::size_t>(count));
        Ours ours(observers);
        ours.Notify();
        while (state.KeepRunningBatch(count)) {
            ours.Notify();
        }
    });
}

void NotifyTenThousand() {
    Observers observers(10000);
    Ours ours(observers);
    ours.Notify();
}

void MemoryAfterObservers(benchmark::State& state) {
    const std::size_t before = BytesInUse();
    for (auto _ : state) {
        NotifyTenThousand();
    }
    state.counters["bytes_left"] = static_cast<double>(BytesInUse()) - static_cast<double>(before);
}

[[maybe_unused]] const int kRegistered = [] {
    RegisterFanOut<Ours>("(ours with its lines)");
    benchmark::RegisterBenchmark("5 three lines/ours", ThreeLines);
    benchmark::RegisterBenchmark("6 notification/ours", Notification);
    benchmark::RegisterBenchmark("6 notification/(one log line)", OneLine);
    RegisterGrowth("1", 1);
    RegisterGrowth("100", 100);
    RegisterGrowth("10,000", 10000);
    benchmark::RegisterBenchmark("12 memory after observers/ours", MemoryAfterObservers)
        ->Iterations(1)
        ->Repetitions(1);
    return 0;
}();

}  // namespace
}  // namespace bench
