#include "support/process_size.h"

#include <psapi.h>
#include <winternl.h>

#include <cstring>
#include <vector>

namespace PlenxSupport {
namespace {

const auto kExtendedHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(64);
constexpr auto kLengthMismatch = static_cast<NTSTATUS>(0xC0000004);

// The system gives the list of all handles of all processes in this form.
struct HandleListHead {
    ULONG_PTR count;
    ULONG_PTR reserved;
};
struct HandleListEntry {
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG access;
    USHORT traceIndex;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};

}  // namespace

// Reads the commit charge. PrivateUsage says the same, but Wine leaves it at 0.
std::uint64_t PrivateBytesOf(HANDLE process) {
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(process, &counters, sizeof(counters));
    return counters.PagefileUsage;
}

std::uint64_t PrivateBytes() {
    return PrivateBytesOf(GetCurrentProcess());
}

// GetProcessHandleCount would be simpler, but under Wine it gives 0.
std::uint64_t HandlesOf(DWORD processId) {
    std::vector<unsigned char> buffer(std::size_t{1024} * 1024);
    ULONG length = 0;
    NTSTATUS status = 0;
    while ((status = NtQuerySystemInformation(kExtendedHandleInformation, buffer.data(),
                                              static_cast<ULONG>(buffer.size()), &length)) ==
           kLengthMismatch) {
        buffer.resize(2 * buffer.size());
    }
    HandleListHead head{};
    std::memcpy(&head, buffer.data(), sizeof(head));
    std::uint64_t handles = 0;
    for (ULONG_PTR i = 0; status == 0 && i != head.count; ++i) {
        HandleListEntry entry{};
        std::memcpy(&entry, buffer.data() + sizeof(head) + i * sizeof(entry), sizeof(entry));
        handles += entry.processId == processId ? 1 : 0;
    }
    return handles;
}

}  // namespace PlenxSupport
