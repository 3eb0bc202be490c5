#include "soak/heap_bytes.h"

#include <windows.h>

#include <malloc.h>

#include <atomic>

#include "support/imports.h"

namespace PlenxSoak {
namespace {

#ifdef _MSC_VER
constexpr wchar_t kRunTime[] = L"ucrtbase.dll";
#else
constexpr wchar_t kRunTime[] = L"msvcrt.dll";
#endif

std::atomic<std::uint64_t> bytes{0};

HANDLE RunTimesHeap() {
    return reinterpret_cast<HANDLE>(_get_heap_handle());
}

// Only the run time's heap counts; the run time may use other heaps as well.
std::uint64_t SizeOf(HANDLE heap, const void* block) {
    return block != nullptr && heap == RunTimesHeap()
               ? static_cast<std::uint64_t>(HeapSize(heap, 0, block))
               : 0;
}

void* WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T size) {
    void* const block = HeapAlloc(heap, flags, size);
    bytes += SizeOf(heap, block);
    return block;
}

void* WINAPI Reallocate(HANDLE heap, DWORD flags, void* block, SIZE_T size) {
    const std::uint64_t before = SizeOf(heap, block);
    void* const moved = HeapReAlloc(heap, flags, block, size);
    if (moved != nullptr) {
        bytes += SizeOf(heap, moved) - before;
    }
    return moved;
}

BOOL WINAPI Free(HANDLE heap, DWORD flags, void* block) {
    bytes -= SizeOf(heap, block);
    return HeapFree(heap, flags, block);
}

std::uint64_t BytesOfAllBlocks(HANDLE heap) {
    std::uint64_t sum = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) {
            sum += entry.cbData;
        }
    }
    HeapUnlock(heap);
    return sum;
}

}  // namespace

void CountHeapBytes() {
    bytes = BytesOfAllBlocks(RunTimesHeap());
    const HMODULE runTime = GetModuleHandleW(kRunTime);
    PlenxTest::RedirectImport(runTime, "HeapAlloc", reinterpret_cast<void*>(Allocate));
    PlenxTest::RedirectImport(runTime, "HeapReAlloc", reinterpret_cast<void*>(Reallocate));
    PlenxTest::RedirectImport(runTime, "HeapFree", reinterpret_cast<void*>(Free));
}

std::uint64_t HeapBytes() {
    return bytes;
}

}  // namespace PlenxSoak
