#include "system/endpoint_holder.h"

#include <windows.h>

#include <rpc.h>

#include <string_view>

#include "support/system_habits.h"

namespace PlenxTest {
namespace {

constexpr wchar_t kServing[] = L"plenx-system-test-endpoint-is-held";
constexpr DWORD kLongest = 60 * 1000;

bool Serve() {
    wchar_t protocol[] = L"ncalrpc";
    wchar_t endpoint[] = L"Manager";
    return RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), 10,
                                  reinterpret_cast<RPC_WSTR>(endpoint), nullptr) == RPC_S_OK &&
           RpcServerListen(1, 10, TRUE) == RPC_S_OK;
}

// Where an endpoint is a pipe, this is one that already has the one end that it may have.
bool KeepOut() {
    if (!IsUsual(Habits::kEndpointIsAPipe, "there")) {
        return Serve();
    }
    return CreateNamedPipeW(L"\\\\.\\pipe\\lrpc\\Manager", PIPE_ACCESS_DUPLEX,
                            PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE, 1, 4096, 4096, 0,
                            nullptr) != INVALID_HANDLE_VALUE;
}

}  // namespace

EndpointHolder::EndpointHolder(By how)
    : serving_(PlenxSupport::MakeEvent(kServing)),
      process_(ChildProcess::Self(how == By::kServing ? L"--hold-endpoint" : L"--keep-out")) {}

bool EndpointHolder::Holds() const {
    return WaitForSingleObject(serving_.Get(), 10000) == WAIT_OBJECT_0;
}

bool RunAsEndpointHolder(int argc, char** argv) {
    const std::string_view mode = argc == 2 ? argv[1] : "";
    if (mode != "--hold-endpoint" && mode != "--keep-out") {
        return false;
    }
    if (mode == "--hold-endpoint" ? Serve() : KeepOut()) {
        SetEvent(PlenxSupport::MakeEvent(kServing).Get());
        WaitForSingleObject(GetCurrentProcess(), kLongest);  // until it is killed
    }
    return true;
}

}  // namespace PlenxTest
