#include "soak/measure.h"

#include <windows.h>

#include <tlhelp32.h>

#include <cstring>
#include <iterator>

#include "soak/heap_bytes.h"
#include "soak/service_handles.h"
#include "support/handle.h"
#include "support/process_size.h"

namespace PlenxSoak {
namespace {

// When two threads use the service manager at once, Wine sometimes fails to close a service handle.
// Its RPC client then keeps a record of that handle, with a binding and three strings.
std::uint64_t WineRecords() {
    constexpr char kMark[] = {'N', 'D', 'R', 'C'};
    constexpr std::size_t kMarkAt = 16;
    HANDLE heaps[64] = {};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(std::size(heaps)), heaps);
    std::uint64_t records = 0;
    for (DWORD i = 0; i < count && i < std::size(heaps); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry)) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 &&
                entry.cbData >= kMarkAt + sizeof(kMark)) {
                const auto* const mark = static_cast<const char*>(entry.lpData) + kMarkAt;
                records += std::memcmp(mark, kMark, sizeof(kMark)) == 0 ? 1 : 0;
            }
        }
        HeapUnlock(heaps[i]);
    }
    return records;
}

std::uint64_t Threads() {
    const PlenxSupport::Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    std::uint64_t count = 0;
    for (BOOL more = Thread32First(snapshot.Get(), &entry); more;
         more = Thread32Next(snapshot.Get(), &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    return count;
}

}  // namespace

Sample Measure() {
    const std::uint64_t records = WineRecords();
    const std::uint64_t measured = PlenxSupport::PrivateBytes();
    return {measured - records * kBytesOfAWineRecord,
            HeapBytes(),
            PlenxSupport::HandlesOf(GetCurrentProcessId()),
            Threads(),
            ServiceHandles(),
            records,
            measured};
}

Sample MeasureAtRest(std::uint64_t threads) {
    constexpr int kMostTries = 40;
    for (int i = 0; i != kMostTries && Threads() > threads; ++i) {
        Sleep(200);
    }
    return Measure();
}

}  // namespace PlenxSoak
