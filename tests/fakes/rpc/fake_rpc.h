// FakeRpc is the RPC runtime and the services behind it, in memory.
//
// It records every function of the runtime that the product calls, in order and with its
// arguments, and can make each one fail. A function that the test gives answers the calls of a
// service; by default every service answers with one int32 of value 0.
//
// It is thread-safe. It lives until the process ends, because the listen thread never ends either.

#ifndef FAKES_RPC_FAKE_RPC_H
#define FAKES_RPC_FAKE_RPC_H

#include <rpc.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "rpc/message_bytes.h"

/// One call of a service, as the service sees it.
struct ServiceCall {
    std::string endpoint;
    std::int32_t msgType;
    std::int32_t msgSize;
    Bytes msg;
};

/// The answer of a service.
struct ServiceAnswer {
    long result = 0;
    Bytes reply;
    std::optional<long> statedSize;  // stated instead of the reply's own size
    bool nullBlock = false;
    std::optional<unsigned long> exception;  // raised instead of an answer
};

class FakeRpc {
public:
    /// It may have a state. Calls of several threads run it at the same time.
    using Service = std::function<ServiceAnswer(const ServiceCall&)>;

    static FakeRpc& Get();

    /// Forgets the script and the record, and releases the strings and bindings that are left. Must
    /// not run during a request.
    void Reset();

    // The script.
    void SetService(Service service);
    /// The next calls of the function, which goes by a name such as "RpcStringFreeW", return the
    /// status. The faults of FakePlatform reach these functions too; "ServiceMessage" then raises
    /// the error and reaches no service.
    void Fail(const std::string& function, RPC_STATUS status);
    /// RpcServerListen returns the status; by default it blocks until the process ends.
    void SetListenReturns(RPC_STATUS status);
    /// MIDL_user_allocate returns null.
    void SetAllocationFails(bool fails);

    // The record.
    /// A call looks like "RpcStringBindingComposeW(null, ncalrpc, null, PLENXPCService, null)".
    std::vector<std::string> Calls() const;
    std::vector<ServiceCall> ServiceCalls() const;
    void ClearRecord();
    bool WaitUntilListening(std::chrono::milliseconds timeout = std::chrono::seconds(20)) const;
    /// Waits until a service has got exactly this message and no request is running.
    bool WaitForMessage(const Bytes& msg,
                        std::chrono::milliseconds timeout = std::chrono::seconds(20)) const;
    std::size_t LiveStrings() const;
    std::size_t LiveBindings() const;
    std::size_t LiveBlocks() const;   // from MIDL_user_allocate
    std::size_t Allocations() const;  // counts all since Reset
    std::size_t MostCallsAtOnce() const;

    // For the fake functions.
    RPC_STATUS Compose(const wchar_t* objectUuid, const wchar_t* protocol,
                       const wchar_t* networkAddress, const wchar_t* endpoint,
                       const wchar_t* options, RPC_WSTR* stringBinding);
    RPC_STATUS Bind(RPC_WSTR stringBinding, RPC_BINDING_HANDLE* binding);
    RPC_STATUS FreeString(RPC_WSTR* string);
    RPC_STATUS FreeBinding(RPC_BINDING_HANDLE* binding);
    RPC_STATUS Record(const std::string& function, const std::string& arguments);
    RPC_STATUS Listen(const std::string& arguments);
    ServiceAnswer CallService(RPC_BINDING_HANDLE binding, ServiceCall call);
    void* Allocate(std::size_t size);
    void Free(void* block);

private:
    FakeRpc() = default;

    RPC_STATUS RecordLocked(const std::string& function, const std::string& arguments);

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::shared_ptr<Service> service_;
    std::map<std::string, RPC_STATUS> failures_;
    std::optional<RPC_STATUS> listenReturns_;
    bool allocationFails_ = false;
    bool listening_ = false;

    std::vector<std::string> calls_;
    std::vector<ServiceCall> serviceCalls_;
    std::set<void*> strings_;
    std::map<void*, std::string> bindings_;  // the value is the endpoint
    std::set<void*> blocks_;
    std::size_t allocations_ = 0;
    std::size_t callsNow_ = 0;
    std::size_t mostCallsAtOnce_ = 0;
};

#endif  // FAKES_RPC_FAKE_RPC_H
