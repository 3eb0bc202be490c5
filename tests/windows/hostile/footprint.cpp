#include "hostile/footprint.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <psapi.h>
#include <winternl.h>

#include <iostream>
#include <vector>

#include "system/wait.h"

namespace PlenxTest {
namespace {

constexpr DWORD kRestMilliseconds = 20000;
constexpr std::size_t kMoreHandles = 8;
constexpr std::size_t kMoreBytes = 4 * 1024 * 1024;

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

Footprint MeasureFootprint() {
    return {PrivateBytes(), Handles()};
}

void ExpectNothingMore(const Footprint& before) {
    const std::size_t mostHandles = before.handles + kMoreHandles;
    const std::size_t mostBytes = before.privateBytes + kMoreBytes;
    WaitFor([&] { return Handles() <= mostHandles && PrivateBytes() <= mostBytes; },
            kRestMilliseconds);
    const Footprint after = MeasureFootprint();
    std::cout << "before: " << before.privateBytes << " bytes, " << before.handles
              << " handles; after: " << after.privateBytes << " bytes, " << after.handles
              << " handles\n";
    EXPECT_NE(after.handles, 0u) << "the system does not tell";
    EXPECT_NE(after.privateBytes, 0u) << "the system does not tell";
    EXPECT_LE(after.handles, mostHandles);
    EXPECT_LE(after.privateBytes, mostBytes);
}

}  // namespace PlenxTest
