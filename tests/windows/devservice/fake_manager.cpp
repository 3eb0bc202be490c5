#include "devservice/fake_manager.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <mutex>

#include "rpc/interface/manager_interface.h"
#include "rpc/interface/rpc_memory.h"
#include "wire/render.h"

namespace PlenxTest {
namespace {

std::mutex mutex;
std::vector<std::string> received;
std::atomic<std::int32_t> code{0};
std::atomic<unsigned> blockFor{0};
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
    code = 0;
    blockFor = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        received.clear();
    }
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
    code = answer;
}

void FakeManager::Block(unsigned milliseconds) {
    blockFor = milliseconds;
}

std::vector<std::string> FakeManager::Received() {
    const std::lock_guard<std::mutex> lock(mutex);
    return received;
}

std::vector<std::string> FakeManager::Await(std::size_t count) {
    for (int i = 0; i < 500 && Received().size() < count; ++i) {
        Sleep(10);
    }
    return Received();
}

}  // namespace PlenxTest

long PlenxHandleManagerMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) noexcept {
    using namespace PlenxTest;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        received.push_back(
            PlenxWire::RenderMessage(msgType, msg, static_cast<std::size_t>(msgSize)));
    }
    for (unsigned waited = 0; waited < blockFor; waited += 10) {
        Sleep(10);
    }
    const PlenxWire::Bytes reply = PlenxWire::Encode({code.load()});
    *respSize = static_cast<long>(reply.size());
    *resp = static_cast<unsigned char*>(MIDL_user_allocate(reply.size()));
    std::copy(reply.begin(), reply.end(), *resp);
    return 0;
}
