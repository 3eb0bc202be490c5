#include "hostile/footprint.h"

#include <windows.h>

#include <psapi.h>
#include <winternl.h>

#include <vector>

#include "system/wait.h"

namespace PlenxTest {
namespace {

constexpr DWORD kRestMilliseconds = 20000;

// What Wine reports as the private usage is 0; the page file's is the same number on Windows.
std::size_t PrivateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters))
               ? counters.PagefileUsage
               : 0;
}

struct HandleEntry {
    ULONG processId;
    UCHAR type;
    UCHAR flags;
    USHORT value;
    void* object;
    ULONG access;
};

struct HandleList {
    ULONG count;
    HandleEntry entries[1];
};

// Wine has no answer to GetProcessHandleCount, but lists the handles of all processes.
std::size_t Handles() {
    constexpr auto kSystemHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    constexpr NTSTATUS kLengthMismatch = static_cast<NTSTATUS>(0xC0000004);
    std::vector<HandleEntry> buffer(4096);
    NTSTATUS status = kLengthMismatch;
    while (status == kLengthMismatch && buffer.size() < 16 * 1024 * 1024) {
        buffer.resize(buffer.size() * 2);
        ULONG needed = 0;
        status = NtQuerySystemInformation(kSystemHandleInformation, buffer.data(),
                                          static_cast<ULONG>(buffer.size() * sizeof(HandleEntry)),
                                          &needed);
    }
    if (status != 0) {
        return 0;
    }
    const auto* const list = reinterpret_cast<const HandleList*>(buffer.data());
    std::size_t mine = 0;
    for (ULONG i = 0; i != list->count; ++i) {
        mine += list->entries[i].processId == GetCurrentProcessId() ? 1 : 0;
    }
    return mine;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Footprint& footprint) {
    return out << footprint.privateBytes << " bytes, " << footprint.handles << " handles";
}

Footprint MeasureFootprint() {
    return {PrivateBytes(), Handles()};
}

Footprint MeasureFootprintAtRest(std::size_t handles) {
    WaitFor([&] { return Handles() <= handles; }, kRestMilliseconds);
    return MeasureFootprint();
}

}  // namespace PlenxTest
