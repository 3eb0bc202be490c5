// This is the only file of the host that uses more of the library than its public header. For the
// ping, it uses the interface of the services.

#include "doctor/ping.h"

#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_call.h"
#include "wire/catalog.h"
#include "wire/local_binding.h"

namespace PlenxHost {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::chrono::seconds kLongest(5);  // a Start waits as long

PlenxWire::LocalBinding BindTo(const std::string& endpoint) {
    return PlenxWire::LocalBinding({endpoint.begin(), endpoint.end()});
}

PingAnswer Failed(unsigned long code) {
    PingAnswer answer;
    answer.code = static_cast<std::int32_t>(code);
    return answer;
}

PingAnswer Call(const std::string& endpoint) {
    const PlenxWire::LocalBinding binding = BindTo(endpoint);
    if (binding.Status() != RPC_S_OK) {
        return Failed(static_cast<unsigned long>(binding.Status()));
    }
    const PlenxWire::Bytes message = PlenxWire::Encode({std::int64_t{0}});
    PlenxServiceReply reply{};
    plenxServiceBinding = binding.Get();
    PlenxCallService(PlenxWire::kPingService, static_cast<long>(message.size()), message.data(),
                     &reply);
    const std::unique_ptr<unsigned char, decltype(&MIDL_user_free)> block(reply.block,
                                                                          &MIDL_user_free);
    if (reply.raised != 0) {
        return Failed(reply.exceptionCode);
    }
    PingAnswer answer;
    answer.kind = PingAnswer::Kind::kAnswered;
    answer.code = static_cast<std::int32_t>(reply.result);
    if (answer.code == 0 && block != nullptr && reply.size > 0) {
        // An answer that cannot be read counts as a 0, as it does in the library.
        const auto decoded =
            PlenxWire::DecodeReply(block.get(), static_cast<std::size_t>(reply.size));
        answer.code = decoded.Ok() ? std::get<std::int32_t>(decoded.arguments[0]) : 0;
    }
    return answer;
}

}  // namespace

bool IsServed(const std::string& endpoint) {
    const PlenxWire::LocalBinding binding = BindTo(endpoint);
    return binding.Status() == RPC_S_OK && RpcMgmtIsServerListening(binding.Get()) == RPC_S_OK;
}

PingAnswer Ping(const std::string& endpoint) {
    const auto began = steady_clock::now();
    std::promise<PingAnswer> promise;
    std::future<PingAnswer> future = promise.get_future();
    auto caller = std::make_unique<std::thread>(
        [endpoint, promise = std::move(promise)]() mutable { promise.set_value(Call(endpoint)); });
    PingAnswer answer;
    if (future.wait_for(kLongest) == std::future_status::ready) {
        answer = future.get();
        caller->join();
    } else {
        answer.kind = PingAnswer::Kind::kTimedOut;
        // The thread may hang for ever, so nobody waits for it, and its data stays alive.
        static_cast<void>(caller.release());
    }
    answer.milliseconds =
        std::chrono::duration_cast<milliseconds>(steady_clock::now() - began).count();
    return answer;
}

}  // namespace PlenxHost
