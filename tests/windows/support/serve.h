// Serves an RPC interface as the library serves its own.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_SERVE_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_SERVE_H

#include <windows.h>

#include <rpc.h>

#include <string>

namespace PlenxTest {

/// Returns at once; the runtime's threads serve. @return the status of the RPC runtime.
inline RPC_STATUS Serve(RPC_IF_HANDLE which, std::wstring endpoint) {
    constexpr unsigned kMaximumCalls = 10;
    std::wstring protocol = L"ncalrpc";
    RPC_STATUS status =
        RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol.data()), kMaximumCalls,
                               reinterpret_cast<RPC_WSTR>(endpoint.data()), nullptr);
    if (status == RPC_S_OK) {
        status = RpcServerRegisterIf(which, nullptr, nullptr);
    }
    if (status == RPC_S_OK) {
        status = RpcServerListen(1, kMaximumCalls, TRUE);
    }
    return status;
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_SERVE_H
