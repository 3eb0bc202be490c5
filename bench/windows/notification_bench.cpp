// Row 11: how many notifications the library serves in a second, to callers that do nothing but
// call. Each caller is a thread with a connection that it keeps, which leaves most of the time to
// the server.

#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

#include "peers/widl_call.h"
#include "support/clock.h"
#include "support/samples.h"
#include "support/server_process.h"
#include "wire/message.h"

namespace PlenxBench {
namespace {

constexpr long kConnectNotify = 10;

// A failure ends the caller's thread, not the program. The program looks at failures when all
// threads have ended.
double Throughput(RPC_BINDING_HANDLE binding, std::size_t callers, double nanoseconds) {
    const std::vector<unsigned char> message = PlenxWire::Encode({std::string("group_1")});
    std::atomic<std::int64_t> calls{0};
    std::atomic<bool> failed{false};
    std::vector<std::thread> threads;
    widlManagerBinding = binding;
    const std::int64_t start = Now();
    for (std::size_t i = 0; i != callers; ++i) {
        threads.emplace_back([&] {
            try {
                while (Nanoseconds(Now() - start) < nanoseconds) {
                    CallWidl(&WidlCall_HandleServiceMessage, kConnectNotify, message);
                    ++calls;
                }
            } catch (const std::exception&) {
                failed = true;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (failed) {
        throw std::runtime_error("a notification failed");
    }
    return static_cast<double>(calls) * 1e9 / Nanoseconds(Now() - start);
}

int Run(const Options& options) {
    const ServerProcess host(L"notification_host.exe");
    const ServerProcess peer(L"widl_manager.exe");
    RPC_BINDING_HANDLE ours = nullptr;
    RPC_BINDING_HANDLE widl = nullptr;
    BindWidl(L"Manager", ours);
    BindWidl(L"WidlManager", widl);

    const double time = options.quick ? 6e7 : 2e8;  // nanoseconds
    const std::size_t values = 2;
    std::vector<Series> all;
    for (const std::size_t callers : {1, 4, 10}) {
        const std::vector<Series> some =
            Measure("11 notifications, " + std::to_string(callers) +
                        (callers == 1 ? " caller" : " callers"),
                    "1/s",
                    {{"ours", [&] { return Throughput(ours, callers, time); }},
                     {"bare widl server", [&] { return Throughput(widl, callers, time); }}},
                    options.repetitions, values);
        all.insert(all.end(), some.begin(), some.end());
    }
    RpcBindingFree(&widl);
    RpcBindingFree(&ours);
    return Finish(options, all);
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    return PlenxBench::Run(PlenxBench::ReadOptions(argc, argv, "Notifications in a second"));
} catch (const std::exception& error) {
    std::fprintf(stderr, "notification_bench: %s\n", error.what());
    return 1;
}
