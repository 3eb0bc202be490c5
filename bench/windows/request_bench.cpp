// Row 10: one whole request to a service that replies at once. The message and the server are the
// same for all. The pipe shows what the system itself needs for a connection and an exchange.

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "peers/widl_call.h"
#include "rpc/rpc_manager.h"
#include "support/clock.h"
#include "support/pipe_name.h"
#include "support/reply.h"
#include "support/samples.h"
#include "support/server_process.h"

namespace PlenxBench {
namespace {

using DistributedFs::RpcManager;

constexpr wchar_t kEndpoint[] = L"PLENXPCService";
constexpr std::size_t kPing = 28;  // header 8, descriptor 12, an int64
constexpr std::size_t kMessage = 4096;
constexpr std::size_t kMessageRest = 8 + 3 * 12 + 4 + 4 + 1;  // all but the text's bytes

template <class Operation>
double Time(Operation operation) {
    const std::int64_t start = Now();
    operation();
    return Nanoseconds(Now() - start);
}

void Expect(bool good) {
    if (!good) {
        throw std::runtime_error("a request failed");
    }
}

void BareCall(std::vector<unsigned char>& message) {
    BindWidl(kEndpoint, widlServiceBinding);
    CallWidl(&WidlCall_ServiceMessage, 0, message);
    RpcBindingFree(&widlServiceBinding);
}

void CallPipe(std::vector<unsigned char>& message) {
    unsigned char reply[sizeof(kReply)];
    DWORD size = 0;
    Expect(CallNamedPipeW(kPipeName, message.data(), static_cast<DWORD>(message.size()), reply,
                          sizeof(reply), &size, NMPWAIT_USE_DEFAULT_WAIT));
}

template <class Request>
std::vector<Series> MeasureRequest(const std::string& row, const Options& options, std::size_t size,
                                   Request ours) {
    std::vector<unsigned char> message(size);
    const std::size_t values = options.quick ? 20 : 200;
    return Measure(row, "ns",
                   {{"ours", [&] { return Time([&] { Expect(ours() == 0); }); }},
                    {"bare widl call", [&] { return Time([&] { BareCall(message); }); }},
                    {"(named pipe)", [&] { return Time([&] { CallPipe(message); }); }}},
                   options.repetitions, values);
}

int Run(const Options& options) {
    const ServerProcess server(L"request_server.exe");
    RpcManager& manager = RpcManager::GetInstance();
    const std::string text(kMessage - kMessageRest, 'x');
    const auto size = static_cast<std::int32_t>(text.size());

    std::vector<Series> all = MeasureRequest("10 request 28 B", options, kPing, [&] {
        return manager.PingService(DistributedFs::kPcService, 1);
    });
    const std::vector<Series> large = MeasureRequest("10 request 4 KiB", options, kMessage, [&] {
        return manager.RecvRemoteMessage(DistributedFs::kPcService, 1, size, text);
    });
    all.insert(all.end(), large.begin(), large.end());
    return Finish(options, all);
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    return PlenxBench::Run(PlenxBench::ReadOptions(argc, argv, "One whole RPC request"));
} catch (const std::exception& error) {
    std::fprintf(stderr, "request_bench: %s\n", error.what());
    return 1;
}
