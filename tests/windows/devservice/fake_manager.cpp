#include "devservice/fake_manager.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "rpc/interface/manager_interface.h"
#include "rpc/interface/rpc_memory.h"
#include "wire/render.h"

namespace PlenxTest {
namespace {

std::mutex mutex;
std::condition_variable changed;
std::vector<std::string> received;
std::int32_t code = 0;
std::chrono::milliseconds blockFor{0};
bool listening = false;
bool registered = false;

void Listen() {
    wchar_t protocol[] = L"ncalrpc";
    wchar_t endpoint[] = L"Manager";
    RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), 10,
                           reinterpret_cast<RPC_WSTR>(endpoint), nullptr);
    RpcServerListen(1, 10, TRUE);
    listening = true;
}

}  // namespace

bool FakeManager::WasEverShown() {
    return listening;
}

void FakeManager::Show() {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        code = 0;
        blockFor = {};
        received.clear();
    }
    changed.notify_all();
    if (!registered) {
        RpcServerRegisterIf(plenxManagerInterface, nullptr, nullptr);
        registered = true;
    }
    if (!listening) {
        Listen();
    }
}

void FakeManager::Hide() {
    if (registered) {
        RpcServerUnregisterIf(plenxManagerInterface, nullptr, FALSE);
        registered = false;
    }
}

void FakeManager::Answer(std::int32_t answer) {
    const std::lock_guard<std::mutex> lock(mutex);
    code = answer;
}

void FakeManager::Block(unsigned milliseconds) {
    const std::lock_guard<std::mutex> lock(mutex);
    blockFor = std::chrono::milliseconds(milliseconds);
}

std::vector<std::string> FakeManager::Received() {
    const std::lock_guard<std::mutex> lock(mutex);
    return received;
}

std::vector<std::string> FakeManager::Await(std::size_t count) {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait_for(lock, std::chrono::seconds(5), [&] { return received.size() >= count; });
    return received;
}

}  // namespace PlenxTest

long PlenxHandleManagerMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) noexcept {
    using namespace PlenxTest;
    std::unique_lock<std::mutex> lock(mutex);
    received.push_back(PlenxWire::RenderMessage(msgType, msg, static_cast<std::size_t>(msgSize)));
    changed.notify_all();
    changed.wait_for(lock, blockFor, [] { return blockFor == std::chrono::milliseconds(0); });
    const PlenxWire::Bytes reply = PlenxWire::Encode({code});
    lock.unlock();
    *respSize = static_cast<long>(reply.size());
    *resp = static_cast<unsigned char*>(MIDL_user_allocate(reply.size()));
    std::copy(reply.begin(), reply.end(), *resp);
    return 0;
}
