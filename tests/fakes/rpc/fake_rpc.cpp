#include "rpc/fake_rpc.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/call_text.h"
#include "platform/fake_platform.h"

namespace {

std::string Text(const wchar_t* text) {
    return text == nullptr ? "null" : Narrow(text);
}

// The real runtime would not survive this, so it is a defect of the product.
[[noreturn]] void Misused(const char* what) {
    std::fprintf(stderr, "FakeRpc: %s\n", what);
    std::abort();
}

std::string EndpointOf(const wchar_t* stringBinding) {
    const std::string text = Narrow(stringBinding);
    const auto open = text.find('[');
    return text.substr(open + 1, text.size() - open - 2);
}

}  // namespace

FakeRpc& FakeRpc::Get() {
    static FakeRpc* const rpc = new FakeRpc;
    return *rpc;
}

void FakeRpc::Reset() {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (void* const string : strings_) {
        delete[] static_cast<wchar_t*>(string);
    }
    for (const auto& [binding, endpoint] : bindings_) {
        delete static_cast<char*>(binding);
    }
    strings_.clear();
    bindings_.clear();
    service_ = nullptr;
    failures_.clear();
    allocationFails_ = false;
    allocations_ = 0;
    calls_.clear();
    serviceCalls_.clear();
}

void FakeRpc::SetService(Service service) {
    const std::lock_guard<std::mutex> lock(mutex_);
    service_ = std::make_shared<Service>(std::move(service));
}

void FakeRpc::Fail(const std::string& function, RPC_STATUS status) {
    const std::lock_guard<std::mutex> lock(mutex_);
    failures_[function] = status;
}

void FakeRpc::SetListenReturns(RPC_STATUS status) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        listenReturns_ = status;
    }
    changed_.notify_all();
}

void FakeRpc::SetAllocationFails(bool fails) {
    const std::lock_guard<std::mutex> lock(mutex_);
    allocationFails_ = fails;
}

std::vector<std::string> FakeRpc::Calls() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return calls_;
}

std::vector<ServiceCall> FakeRpc::ServiceCalls() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return serviceCalls_;
}

void FakeRpc::ClearRecord() {
    const std::lock_guard<std::mutex> lock(mutex_);
    calls_.clear();
    serviceCalls_.clear();
}

bool FakeRpc::WaitUntilListening(std::chrono::milliseconds timeout) const {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return listening_; });
}

bool FakeRpc::WaitForMessage(const Bytes& msg, std::chrono::milliseconds timeout) const {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] {
        return bindings_.empty() &&
               std::any_of(serviceCalls_.begin(), serviceCalls_.end(),
                           [&](const ServiceCall& call) { return call.msg == msg; });
    });
}

std::size_t FakeRpc::LiveStrings() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return strings_.size();
}

std::size_t FakeRpc::LiveBindings() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return bindings_.size();
}

std::size_t FakeRpc::LiveBlocks() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return blocks_.size();
}

std::size_t FakeRpc::Allocations() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return allocations_;
}

std::size_t FakeRpc::MostCallsAtOnce() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return mostCallsAtOnce_;
}

RPC_STATUS FakeRpc::RecordLocked(const std::string& function, const std::string& arguments) {
    calls_.push_back(function + "(" + arguments + ")");
    const auto fault = static_cast<RPC_STATUS>(FakePlatform::Get().Faults().Take(function));
    const auto failure = failures_.find(function);
    return failure == failures_.end() ? fault : failure->second;
}

RPC_STATUS FakeRpc::Record(const std::string& function, const std::string& arguments) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return RecordLocked(function, arguments);
}

RPC_STATUS FakeRpc::Compose(const wchar_t* objectUuid, const wchar_t* protocol,
                            const wchar_t* networkAddress, const wchar_t* endpoint,
                            const wchar_t* options, RPC_WSTR* stringBinding) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const RPC_STATUS status =
        RecordLocked("RpcStringBindingComposeW", Text(objectUuid) + ", " + Text(protocol) + ", " +
                                                     Text(networkAddress) + ", " + Text(endpoint) +
                                                     ", " + Text(options));
    if (status != RPC_S_OK) {
        return status;
    }
    const std::wstring text =
        std::wstring(protocol) + L":[" + (endpoint == nullptr ? L"" : endpoint) + L"]";
    auto* const block = new wchar_t[text.size() + 1];
    std::copy_n(text.c_str(), text.size() + 1, block);
    strings_.insert(block);
    *stringBinding = reinterpret_cast<RPC_WSTR>(block);
    return RPC_S_OK;
}

RPC_STATUS FakeRpc::Bind(RPC_WSTR stringBinding, RPC_BINDING_HANDLE* binding) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (strings_.count(stringBinding) == 0) {
        Misused("binding from a string that is not composed or freed already");
    }
    const auto* const text = reinterpret_cast<const wchar_t*>(stringBinding);
    if (*binding != nullptr) {
        Misused("binding into a handle that still holds a former binding");
    }
    const RPC_STATUS status = RecordLocked("RpcBindingFromStringBindingW", Text(text));
    if (status != RPC_S_OK) {
        return status;
    }
    auto* const handle = new char;
    bindings_[handle] = EndpointOf(text);
    *binding = handle;
    return RPC_S_OK;
}

RPC_STATUS FakeRpc::FreeString(RPC_WSTR* string) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (strings_.count(*string) == 0) {
        Misused("freeing a string that is not composed or freed already");
    }
    const RPC_STATUS status =
        RecordLocked("RpcStringFreeW", Text(reinterpret_cast<const wchar_t*>(*string)));
    if (status != RPC_S_OK) {
        return status;
    }
    strings_.erase(*string);
    delete[] reinterpret_cast<wchar_t*>(*string);
    *string = nullptr;
    return RPC_S_OK;
}

RPC_STATUS FakeRpc::FreeBinding(RPC_BINDING_HANDLE* binding) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = bindings_.find(*binding);
    if (found == bindings_.end()) {
        Misused("freeing a binding that does not exist");
    }
    const RPC_STATUS status = RecordLocked("RpcBindingFree", found->second);
    if (status != RPC_S_OK) {
        return status;
    }
    bindings_.erase(found);
    delete static_cast<char*>(*binding);
    *binding = nullptr;
    changed_.notify_all();
    return RPC_S_OK;
}

RPC_STATUS FakeRpc::Listen(const std::string& arguments) {
    std::unique_lock<std::mutex> lock(mutex_);
    const RPC_STATUS status = RecordLocked("RpcServerListen", arguments);
    if (status != RPC_S_OK) {
        return status;
    }
    listening_ = true;
    changed_.notify_all();
    changed_.wait(lock, [&] { return listenReturns_.has_value(); });
    return *listenReturns_;
}

ServiceAnswer FakeRpc::CallService(RPC_BINDING_HANDLE binding, ServiceCall call) {
    std::shared_ptr<Service> service;
    ServiceAnswer answer;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = bindings_.find(binding);
        if (found == bindings_.end()) {
            Misused("calling through a binding that does not exist");
        }
        call.endpoint = found->second;
        const std::string line = "ServiceMessage(" + call.endpoint + ", " +
                                 std::to_string(call.msgType) + ", " +
                                 std::to_string(call.msgSize) + ")";
        calls_.push_back(line);
        FakePlatform::Get().Record(line);  // this list shows the order of calls and sleeps
        if (const DWORD fault = FakePlatform::Get().Faults().Take("ServiceMessage"); fault != 0) {
            answer.exception = fault;
            return answer;
        }
        serviceCalls_.push_back(call);
        mostCallsAtOnce_ = std::max(mostCallsAtOnce_, ++callsNow_);
        service = service_;
    }
    if (service && *service) {
        answer = (*service)(call);
    } else {
        answer.reply = Int32Message(0);
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    --callsNow_;
    return answer;
}

void* FakeRpc::Allocate(std::size_t size) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const bool fault = FakePlatform::Get().Faults().Take("MIDL_user_allocate") != 0;
    if (allocationFails_ || fault) {
        return nullptr;
    }
    void* const block = std::malloc(size);
    blocks_.insert(block);
    ++allocations_;
    return block;
}

void FakeRpc::Free(void* block) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (block != nullptr && blocks_.erase(block) == 0) {
        Misused("releasing a block that the interface's allocator did not give");
    }
    std::free(block);
}
