#include "soak/listener.h"

#include <windows.h>

#include <rpc.h>
#include <winternl.h>

#include <cstdint>
#include <string>

#ifdef _MSC_VER  // The Windows SDK's header does not have it.
extern "C" NTSYSAPI NTSTATUS NTAPI NtQueryInformationFile(HANDLE file, IO_STATUS_BLOCK* status,
                                                          void* data, ULONG size,
                                                          FILE_INFORMATION_CLASS which);
#endif

namespace PlenxSoak {
namespace {

// The header of the Windows SDK does not have these values of the enumeration, so for its compiler
// they are not constants.
const auto kFileName = static_cast<FILE_INFORMATION_CLASS>(9);
const auto kPipeState = static_cast<FILE_INFORMATION_CLASS>(24);

struct FileName {
    ULONG bytes;
    wchar_t text[256];
};
struct PipeState {
    ULONG type, configuration, mostInstances, instances;
    ULONG inQuota, readable, outQuota, writable;
    ULONG state, end;
};

// Wine keeps the endpoints of local RPC here.
std::wstring PipeName(const wchar_t* endpoint) {
    return std::wstring(L"\\lrpc\\") + endpoint;
}

bool IsServersEndOf(HANDLE pipe, const std::wstring& name) {
    IO_STATUS_BLOCK status{};
    FileName own{};
    return NtQueryInformationFile(pipe, &status, &own, sizeof(own), kFileName) == 0 &&
           name == std::wstring(own.text, own.bytes / sizeof(wchar_t));
}

bool ClientIsGone(HANDLE pipe) {
    constexpr ULONG kClosing = 4;
    constexpr ULONG kServersEnd = 1;
    IO_STATUS_BLOCK status{};
    PipeState pipeState{};
    return NtQueryInformationFile(pipe, &status, &pipeState, sizeof(pipeState), kPipeState) == 0 &&
           pipeState.state == kClosing && pipeState.end == kServersEnd;
}

}  // namespace

bool TakesConnections(const wchar_t* endpoint) {
    constexpr DWORD kPatience = 10000;
    constexpr DWORD kBetweenTries = 100;
    const std::wstring pipe = L"\\\\.\\pipe" + PipeName(endpoint);
    for (DWORD waited = 0; waited < kPatience; waited += kBetweenTries) {
        if (WaitNamedPipeW(pipe.c_str(), kPatience)) {
            return true;
        }
        if (GetLastError() != ERROR_FILE_NOT_FOUND) {
            return false;
        }
        Sleep(kBetweenTries);
    }
    return false;
}

std::size_t ReviveListener(const wchar_t* endpoint) {
    constexpr std::uintptr_t kLastHandle = 0x10000;
    const std::wstring name = PipeName(endpoint);
    std::size_t revived = 0;
    for (std::uintptr_t value = 4; value <= kLastHandle; value += 4) {
        const auto handle = reinterpret_cast<HANDLE>(value);
        if (ClientIsGone(handle) && IsServersEndOf(handle, name)) {
            revived += DisconnectNamedPipe(handle) ? 1 : 0;
        }
    }
    // The endpoint is already served, so this adds nothing; but the server's thread looks at its
    // pipes again.
    wchar_t protocol[] = L"ncalrpc";
    std::wstring served = endpoint;
    RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), RPC_C_PROTSEQ_MAX_REQS_DEFAULT,
                           reinterpret_cast<RPC_WSTR>(served.data()), nullptr);
    return revived;
}

}  // namespace PlenxSoak
