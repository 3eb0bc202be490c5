// The handlers of the notifications that make Windows Explorer refresh.

#include <windows.h>

#include <shlobj.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

#include "rpc/notification_reading.h"
#include "rpc/rpc_manager.h"

namespace DistributedFs {
namespace {

// Returns the bytes with zeros after them, because a sender that forgot the path's NUL must not
// make the shell read past the block.
std::vector<wchar_t> TerminatedPath(const std::uint8_t* bytes, std::int32_t length) {
    const std::size_t padded = static_cast<std::size_t>(length) + 3;
    std::vector<wchar_t> path(padded / sizeof(wchar_t) + 1);
    std::memcpy(path.data(), bytes, static_cast<std::size_t>(length));
    return path;
}

using ChangeNotify = decltype(&SHChangeNotify);

ChangeNotify LoadChangeNotify() noexcept {
    const HMODULE shell = LoadLibraryExW(L"shell32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (shell == nullptr) {
        return nullptr;
    }
    const FARPROC function = GetProcAddress(shell, "SHChangeNotify");
    if (function == nullptr) {
        FreeLibrary(shell);
    }
    return reinterpret_cast<ChangeNotify>(reinterpret_cast<void*>(function));
}

// The shell library takes several times as long to load as all the other libraries together, and
// few processes ever need it. So the first request loads it, and it stays loaded. Without it a
// request does nothing, and the next one tries again. First requests that come at the same time may
// each load it. Then one that fails must not take the function from the others.
void NotifyShell(LONG event, const wchar_t* path) noexcept {
    static std::atomic<ChangeNotify> loaded{nullptr};
    ChangeNotify changeNotify = loaded;
    if (changeNotify == nullptr) {
        changeNotify = LoadChangeNotify();
        if (changeNotify == nullptr) {
            return;
        }
        loaded = changeNotify;
    }
    changeNotify(event, SHCNF_PATHW, path, nullptr);
}

}  // namespace

std::int32_t RpcManager::UpdateWindowsExplore(RpcMessage& message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::UpdateWindowsExplore";
    RpcMessageReader reader = MakeReader(message);
    std::int32_t length = 0;
    if (reader.ReadInt32(0, &length) != kSuccess || length <= 0) {
        LogError(kFunction, "[PLENXSDK] read msgLen error");
        return kReadFailed;
    }
    std::uint8_t* bytes = nullptr;
    if (!WasRead(reader.ReadInt8Array(1, &bytes, length), kFunction,
                 "[PLENXSDK] read update path error")) {
        return kReadFailed;
    }
    const std::unique_ptr<std::uint8_t[]> owner(bytes);
    const std::vector<wchar_t> path = TerminatedPath(bytes, length);
    NotifyShell(SHCNE_UPDATEDIR, path.data());
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::ExploreFlushNotify(RpcMessage& message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::ExploreFlushNotify";
    RpcMessageReader reader = MakeReader(message);
    std::string disk;
    std::int32_t expFlushType = 0;
    if (!WasRead(reader.ReadString(0, &disk), kFunction, "[PLENXSDK] read disk error") ||
        !WasRead(reader.ReadInt32(1, &expFlushType), kFunction,
                 "[PLENXSDK] read expFlushType error")) {
        return kReadFailed;
    }
    if (!disk.empty() && disk[0] >= 'A' && disk[0] <= 'Z') {
        FlushExplorer(disk[0], expFlushType);
    }
    return RpcDefaultResponse(message);
}

void RpcManager::FlushExplorer(char cLetter, std::int32_t expFlushType) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::FlushExplorer";
    constexpr wchar_t kComputerFolder[] = L"shell:::{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
    LogInfo(kFunction, "[PLENXSDK] update device status invoked cLetter:", cLetter,
            " expFlushType:", expFlushType);
    // Compares with ASCII, because the locale must not decide what a drive letter is.
    const bool lower = cLetter >= 'a' && cLetter <= 'z';
    const bool upper = cLetter >= 'A' && cLetter <= 'Z';
    if (!lower && !upper) {
        return;
    }
    const wchar_t letter = static_cast<wchar_t>(lower ? cLetter - 'a' + 'A' : cLetter);
    const wchar_t root[] = {letter, L':', L'\\', L'\0'};
    LogInfo(kFunction, "[PLENXSDK] sh change notify begin");
    switch (expFlushType) {
    case 0:
    case 1:
        NotifyShell(SHCNE_DRIVEADD, root);
        NotifyShell(SHCNE_UPDATEDIR, kComputerFolder);
        break;
    case 2:
        NotifyShell(SHCNE_UPDATEDIR, root);
        break;
    default:
        break;
    }
    LogInfo(kFunction, "[PLENXSDK] sh change notify end");
}

}  // namespace DistributedFs
