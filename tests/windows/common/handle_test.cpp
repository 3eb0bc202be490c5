#include "support/handle.h"

#include <gtest/gtest.h>

#include "support/imports.h"

namespace PlenxSupport {
namespace {

bool IsOpen(HANDLE handle) {
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags);
}

TEST(Handle, IsClosedWithItsOwner) {
    HANDLE raw = nullptr;
    {
        const Handle owner = MakeEvent();
        raw = owner.Get();
        ASSERT_TRUE(owner);
        ASSERT_TRUE(IsOpen(raw));
    }
    EXPECT_FALSE(IsOpen(raw));
}

TEST(Handle, MovesToANewOwner) {
    Handle first = MakeEvent();
    const HANDLE raw = first.Get();
    Handle second(std::move(first));
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): that it is empty now is the point
    EXPECT_EQ(second.Get(), raw);
    Handle third;
    third = std::move(second);
    EXPECT_EQ(third.Get(), raw);
    EXPECT_TRUE(IsOpen(raw));
    third.Reset();
    EXPECT_FALSE(third);
    EXPECT_FALSE(IsOpen(raw));
}

TEST(Handle, IsClosedWhenAnotherMovesOntoIt) {
    Handle first = MakeEvent();
    Handle second = MakeEvent();
    const HANDLE old = first.Get();
    const HANDLE kept = second.Get();
    first = std::move(second);
    EXPECT_FALSE(IsOpen(old));
    EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move): as above
    EXPECT_EQ(first.Get(), kept);
    EXPECT_TRUE(IsOpen(kept));
}

TEST(Handle, MovedOntoItselfStaysOpen) {
    Handle event = MakeEvent();
    const HANDLE raw = event.Get();
    Handle& same = event;
    event = std::move(same);
    EXPECT_EQ(event.Get(), raw);
    EXPECT_TRUE(IsOpen(raw));
}

TEST(Handle, TreatsNullAndInvalidHandleValueAsNoHandle) {
    EXPECT_FALSE(Handle());
    EXPECT_FALSE(Handle(nullptr));
    EXPECT_FALSE(Handle(INVALID_HANDLE_VALUE));
}

TEST(Handle, OfAnEventTellsWhetherItIsSet) {
    const Handle event = MakeEvent();
    EXPECT_FALSE(IsSet(event));
    SetEvent(event.Get());
    EXPECT_TRUE(IsSet(event));
    EXPECT_TRUE(IsSet(event));
}

SC_HANDLE closed = nullptr;

BOOL WINAPI NoteClosed(SC_HANDLE handle) {
    closed = handle;
    return TRUE;
}

// Closing the handle a second time would touch memory that the system has freed.
TEST(ServiceHandle, IsClosedWithItsOwner) {
    ServiceHandle owner(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    const SC_HANDLE raw = owner.Get();
    ASSERT_TRUE(owner);
    constexpr char kClose[] = "CloseServiceHandle";
    const HMODULE program = GetModuleHandleW(nullptr);
    void* const close =
        PlenxTest::RedirectImport(program, kClose, reinterpret_cast<void*>(NoteClosed));
    ASSERT_NE(close, nullptr);
    owner.Reset();
    PlenxTest::RedirectImport(program, kClose, close);
    EXPECT_EQ(closed, raw);
    EXPECT_TRUE(CloseServiceHandle(raw));
}

}  // namespace
}  // namespace PlenxSupport
