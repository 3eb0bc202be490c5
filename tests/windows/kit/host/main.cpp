// Runs the tests, or is a process that one of them needs.

#include <gtest/gtest.h>

#include <windows.h>

#include <rpc.h>

#include <cstring>

#include "system/endpoint_holder.h"

namespace {

constexpr ULONGLONG kLongest = ULONGLONG{60} * 1000;

// Looks at an endpoint as the doctor does, without a pause.
void Look() {
    wchar_t text[] = L"ncalrpc:[Manager]";
    const ULONGLONG end = GetTickCount64() + kLongest;
    while (GetTickCount64() < end) {
        RPC_BINDING_HANDLE binding = nullptr;
        RpcBindingFromStringBindingW(reinterpret_cast<RPC_WSTR>(text), &binding);
        RpcMgmtIsServerListening(binding);
        RpcBindingFree(&binding);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--look") == 0) {
        Look();
        return 0;
    }
    if (PlenxTest::RunAsEndpointHolder(argc, argv)) {
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
