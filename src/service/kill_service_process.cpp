#include "service/kill_service_process.h"

#include <windows.h>

#include "common/log.h"
#include "service/handles.h"

namespace DistributedFs {

static_assert(PROCESS_ALL_ACCESS == 0x1FFFFF, "the access mask varies with the target version");

void KillServiceProcess(std::uint32_t processId) {
    constexpr std::string_view kFunction = "DistributedFs::KillServiceProcess";
    LogError(kFunction, "[PLENXSDK] kill service process ", processId);
    if (processId == 0) {
        return;
    }
    const ProcessHandle process(OpenProcess(PROCESS_ALL_ACCESS, FALSE, processId));
    if (!process) {
        const DWORD error = GetLastError();
        LogError(kFunction, "[PLENXSDK] open service process ", processId, " error ", error);
        return;
    }
    if (!TerminateProcess(process.Get(), 0)) {
        const DWORD error = GetLastError();
        LogError(kFunction, "[PLENXSDK] kill service process ", processId, " error ", error);
    }
}

}  // namespace DistributedFs
