// Tests things that only a real Windows process has: the wait handle, the times of waiting, and
// loading by path.

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "c_interface/loaded_interface.h"
#include "support/wait.h"

namespace PlenxTest {
namespace {

// This must not load the DLL before main, because the hosts of other tests must find it not loaded.
const plenx::Functions& Sdk() {
    return LoadInterface().functions();
}

bool IsSet(void* handle) {
    return WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
}

TEST(WaitHandle, OfAnEmptyQueue_IsNotSetAndAlwaysTheSame) {
    plenx::Queue queue = LoadInterface().open_queue(10).or_throw();
    void* const handle = queue.wait_handle();
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(queue.wait_handle(), handle);
    EXPECT_FALSE(IsSet(handle));
}

TEST(WaitHandle, OfACancelledQueue_IsSetForGood) {
    plenx::Queue queue = LoadInterface().open_queue(10).or_throw();
    void* const handle = queue.wait_handle();
    queue.cancel().or_throw();
    EXPECT_TRUE(IsSet(handle));
    EXPECT_EQ(queue.next(0).result().code(), PLENX_E_CANCELLED);
    EXPECT_TRUE(IsSet(handle));
}

TEST(WaitHandle, OfAClosedQueue_IsClosedWithIt) {
    void* handle = nullptr;
    DWORD flags = 0;
    {
        plenx::Queue queue = LoadInterface().open_queue(10).or_throw();
        handle = queue.wait_handle();
        ASSERT_TRUE(GetHandleInformation(handle, &flags));
    }
    EXPECT_FALSE(GetHandleInformation(handle, &flags));
}

// A thread that comes too late finds the handle closed, and returns as well.
TEST(WaitHandle, OfAQueueThatIsClosed_LetsAllWhoWaitGo) {
    constexpr int kWaiting = 4;
    struct Counts {
        std::atomic<int> begun{0};
        std::atomic<int> returned{0};
    };
    const auto counts = std::make_shared<Counts>();  // outlives threads that do not return
    {
        plenx::Queue queue = LoadInterface().open_queue(10).or_throw();
        void* const handle = queue.wait_handle();
        for (int i = 0; i != kWaiting; ++i) {
            std::thread([handle, counts] {
                ++counts->begun;
                WaitForSingleObject(handle, INFINITE);
                ++counts->returned;
            }).detach();
        }
        EXPECT_TRUE(WaitFor([&] { return counts->begun == kWaiting; }));
        Sleep(50);  // until they wait
        EXPECT_EQ(counts->returned, 0);
    }
    EXPECT_TRUE(WaitFor([&] { return counts->returned == kWaiting; }, 1000));
}

TEST(QueueWait, TakesItsTimeAndNotMuchMore) {
    plenx::Queue queue = LoadInterface().open_queue(10).or_throw();
    const ULONGLONG start = GetTickCount64();
    EXPECT_FALSE(queue.next(200).or_throw());
    const ULONGLONG passed = GetTickCount64() - start;
    EXPECT_GE(passed, 180U);  // the clock advances in steps
    EXPECT_LE(passed, 5000U);
}

TEST(QueueWait, OfTenThreads_EndsWithTheQueue) {
    auto* const queue = new plenx::Queue(LoadInterface().open_queue(10).or_throw());
    plenx_queue* const handle = queue->handle();
    std::atomic<int> begun{0};
    std::vector<std::thread> readers;
    for (int i = 0; i != 10; ++i) {
        readers.emplace_back([handle, &begun] {
            const plenx_event* event = nullptr;
            ++begun;
            EXPECT_EQ(Sdk().queue_next(handle, UINT32_MAX, &event), PLENX_E_HANDLE);
        });
    }
    EXPECT_TRUE(WaitFor([&] { return begun == 10; }));
    Sleep(50);  // nothing shows that a thread waits; one that does not yet finds the queue closed
    delete queue;
    for (std::thread& reader : readers) {
        reader.join();
    }
}

// A thread that existed before the DLL was loaded also remembers its own last error.
TEST(LastError, IsOfTheCallingThread) {
    EXPECT_EQ(Sdk().get_int64(1, 5, nullptr), PLENX_E_ARGUMENT);
    std::thread([] {
        char text[100] = "x";
        EXPECT_EQ(Sdk().last_error(text, sizeof(text), nullptr), 0);
        EXPECT_STREQ(text, "");
    }).join();
    char text[100] = "x";
    EXPECT_EQ(Sdk().last_error(text, sizeof(text), nullptr), 0);
    EXPECT_STREQ(text, "plenx_get_int64: value is null");
}

TEST(Load, OfADllThatIsNotThere_SaysSo) {
    const auto library = plenx::Library::load(L"C:\\nowhere\\plenxsdk_c.dll");
    EXPECT_EQ(library.result().code(), PLENX_E_FAILED);
    EXPECT_EQ(library.result().words(), "plenxsdk_c.dll cannot be loaded: Windows error 126");
}

TEST(Load, OfADllWithoutTheFunctions_SaysThatItIsTooOld) {
    const auto library = plenx::Library::load((ProgramFolder() + L"\\LogHelper.dll").c_str());
    EXPECT_EQ(library.result().code(), PLENX_E_ABI);
    EXPECT_EQ(library.result().words(), "plenxsdk_c.dll is older than this host's plenx.hpp");
}

}  // namespace
}  // namespace PlenxTest
