#include "system/endpoint_holder.h"

#include <windows.h>

#include <rpc.h>

#include <string_view>

namespace PlenxTest {
namespace {

constexpr wchar_t kServing[] = L"plenx-system-test-endpoint-is-held";
constexpr DWORD kLongest = 60 * 1000;

}  // namespace

EndpointHolder::EndpointHolder()
    : serving_(CreateEventW(nullptr, TRUE, FALSE, kServing)),
      process_(ChildProcess::Self(L"--hold-endpoint")) {}

EndpointHolder::~EndpointHolder() {
    process_.Kill();
    CloseHandle(serving_);
}

bool EndpointHolder::Holds() const {
    return WaitForSingleObject(serving_, 10000) == WAIT_OBJECT_0;
}

bool RunAsEndpointHolder(int argc, char** argv) {
    if (argc != 2 || std::string_view(argv[1]) != "--hold-endpoint") {
        return false;
    }
    wchar_t protocol[] = L"ncalrpc";
    wchar_t endpoint[] = L"Manager";
    if (RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), 10,
                               reinterpret_cast<RPC_WSTR>(endpoint), nullptr) == RPC_S_OK &&
        RpcServerListen(1, 10, TRUE) == RPC_S_OK) {
        SetEvent(OpenEventW(EVENT_MODIFY_STATE, FALSE, kServing));
        Sleep(kLongest);
    }
    return true;
}

}  // namespace PlenxTest
