// Runs the tests, or is a process that one of them needs.

#include <gtest/gtest.h>

#include <windows.h>

#include <rpc.h>

#include <cstring>

#include "support/handle.h"
#include "system/endpoint_holder.h"

namespace {

constexpr ULONGLONG kLongest = ULONGLONG{60} * 1000;

// Looks at an endpoint as the doctor does, without a pause. The event says that it has begun.
void Look(const char* event) {
    const PlenxSupport::Handle hasLooked(OpenEventA(EVENT_MODIFY_STATE, FALSE, event));
    wchar_t text[] = L"ncalrpc:[Manager]";
    const ULONGLONG end = GetTickCount64() + kLongest;
    while (GetTickCount64() < end) {
        RPC_BINDING_HANDLE binding = nullptr;
        RpcBindingFromStringBindingW(reinterpret_cast<RPC_WSTR>(text), &binding);
        RpcMgmtIsServerListening(binding);
        RpcBindingFree(&binding);
        SetEvent(hasLooked.Get());
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::strcmp(argv[1], "--look") == 0) {
        Look(argv[2]);
        return 0;
    }
    if (PlenxTest::RunAsEndpointHolder(argc, argv)) {
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
