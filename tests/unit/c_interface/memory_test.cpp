// Tests calls for which there is no memory, and checks that all memory is given back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "c_fixture.h"
#include "common/asleep.h"
#include "common/wait_until.h"
#include "counted_allocations.h"
#include "event_queue.h"

namespace {

using testing::AnyOf;

const std::string kLong(300, 'l');  // long enough to need an allocation of its own

struct Call {
    const char* name;
    std::function<plenx_result()> make;
    bool allocates = true;
};

void PrintTo(const Call& call, std::ostream* out) {
    *out << call.name;
}

plenx_queue* sharedQueue = nullptr;

plenx_result OpenAndClose() {
    plenx_queue* queue = nullptr;
    const plenx_result result = plenx_queue_open(5, &queue);
    if (result == 0) {
        return plenx_queue_close(queue);
    }
    EXPECT_EQ(queue, nullptr);
    return result;
}

plenx_result ObserveAndUnobserve() {
    plenx_observer observer{};
    observer.size = sizeof(observer);
    plenx_subscription* subscription = nullptr;
    const plenx_result result = plenx_observe(&observer, &subscription);
    if (result == 0) {
        return plenx_unobserve(subscription);
    }
    EXPECT_EQ(subscription, nullptr);
    return result;
}

const Call kCalls[] = {
    {"init",
     [] {
         return plenx_init(kLong.data(), kLong.size(), kLong.data(), kLong.size(), kLong.data(),
                           kLong.size(), 1);
     }},
    {"destroy", [] { return plenx_destroy(); }},
    {"get_int64",
     [] {
         std::int64_t value = 0;
         return plenx_get_int64(1, PLENX_KEY_NOT_RUNNING, &value);
     },
     false},
    {"get_string",
     [] {
         char text[8];
         return plenx_get_string(1, 1, text, sizeof(text), nullptr);
     },
     false},
    {"set_int64", [] { return plenx_set_int64(1, 0, 5); }},
    {"queue", OpenAndClose},
    {"observer", ObserveAndUnobserve},
    {"link_status",
     [] { return plenx_queue_set_link_status(sharedQueue, 1, kLong.data(), kLong.size(), 2, 3); }},
    {"set_string", [] { return plenx_set_string(1, 1, kLong.data(), kLong.size()); }},
    {"start",
     [] { return plenx_start(1, kLong.data(), kLong.size(), kLong.data(), kLong.size()); }},
    {"stop", [] { return plenx_stop(1, kLong.data(), kLong.size()); }},
    {"local_device_online",
     [] {
         return plenx_local_device_online(1, kLong.data(), kLong.size(), kLong.data(), kLong.size(),
                                          kLong.data(), kLong.size());
     }},
    {"remote_device_online",
     [] {
         return plenx_remote_device_online(1, kLong.data(), kLong.size(), kLong.data(),
                                           kLong.size());
     }},
    {"local_device_offline",
     [] {
         return plenx_local_device_offline(1, kLong.data(), kLong.size(), kLong.data(),
                                           kLong.size(), 0);
     }},
    {"remote_device_offline",
     [] {
         return plenx_remote_device_offline(1, kLong.data(), kLong.size(), kLong.data(),
                                            kLong.size(), 0);
     }},
    {"device_name_changed", [] { return plenx_device_name_changed(kLong.data(), kLong.size()); }},
    {"recv_remote_message",
     [] { return plenx_recv_remote_message(1, 2, kLong.data(), kLong.size()); }},
    {"get_office_dir",
     [] {
         char text[1000];
         std::int32_t code = 0;
         return plenx_get_office_dir(kLong.data(), kLong.size(), kLong.data(), kLong.size(),
                                     kLong.data(), kLong.size(), text, sizeof(text), nullptr,
                                     &code);
     }},
};

// A library that is ready, so that calls queue their jobs.
class EveryAllocation : public testing::TestWithParam<Call> {
protected:
    EveryAllocation() {
        EXPECT_EQ(plenx_queue_open(5, &sharedQueue), 0);
        EXPECT_EQ(plenx_init(PLENX_TEXT("C:\\App"), PLENX_TEXT("C:\\Data"), PLENX_TEXT(""), 0), 0);
        EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
        FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
    }
    ~EveryAllocation() override { plenx_queue_close(sharedQueue); }

    // Waits until the worker has given back what its jobs needed, and forgets what they have left
    // in the records.
    static void Settle() {
        WaitForJobs();
        EXPECT_TRUE(WaitUntil(AllOthersAreAsleep));
        const plenx_event* event = nullptr;
        while (plenx_queue_next(sharedQueue, 0, &event) == 0 && event != nullptr) {
            plenx_event_free(event);
        }
        RecordedLog::Get().Clear();
        FakeRpc::Get().ClearRecord();
        FakeFileManager::Get().ClearRecord();
        FakePlatform::Get().ForgetCalls();
        FakePlatform::Get().Faults().ForgetCalls();
    }

private:
    FakeMachine machine_;
};

TEST_P(EveryAllocation, ThatFailsGivesAResultAndLeaksNothing) {
    const auto& make = GetParam().make;
    make();  // makes everything that is made only once
    Settle();
    const std::int64_t before = LiveAllocations();
    unsigned failed = 0;
    for (unsigned n = 1;; ++n) {
        plenx_result result = 0;
        bool hit = false;
        {
            const FailingAllocation failing(n);
            result = make();
            hit = failing.End();
        }
        if (!hit) {
            EXPECT_EQ(result, 0);
            break;
        }
        // The log itself deals with what fails while it writes a line.
        EXPECT_THAT(result, AnyOf(0, PLENX_E_MEMORY)) << "allocation " << n;
        failed += result == PLENX_E_MEMORY ? 1U : 0U;
    }
    EXPECT_EQ(failed != 0, GetParam().allocates);
    Settle();
    EXPECT_EQ(LiveAllocations(), before);
    EXPECT_EQ(make(), 0);  // everything works as before
}

INSTANTIATE_TEST_SUITE_P(, EveryAllocation, testing::ValuesIn(kCalls),
                         [](const testing::TestParamInfo<Call>& call) {
                             return std::string(call.param.name);
                         });

// The first one of all registers the layer with the library, so each of these tests needs a process
// of its own.
class FirstOpen : public testing::TestWithParam<unsigned> {
public:
    static constexpr unsigned kMost = 8;  // more than an opening makes

    FirstOpen() { FakePlatform::Get(); }  // the system is there before the layer
};

TEST_P(FirstOpen, WithoutMemoryLeavesNothingBehindAndTheNextOneHearsEachEventOnce) {
    plenx_queue* queue = nullptr;
    plenx_result result = 0;
    bool hit = false;
    {
        const FailingAllocation failing(GetParam());
        result = plenx_queue_open(5, &queue);
        hit = failing.End();
    }
    EXPECT_TRUE(hit || GetParam() != 1);
    EXPECT_FALSE(hit && GetParam() == kMost) << "there are allocations that no test lets fail";
    EXPECT_EQ(result, hit ? PLENX_E_MEMORY : 0);
    EXPECT_EQ(queue == nullptr, hit);
    const OpenQueue good;
    Connect("g");
    EXPECT_THAT(good.Drain(), testing::ElementsAre(ShowConnect("g")));
    EXPECT_EQ(plenx_queue_close(queue), result == 0 ? 0 : PLENX_E_HANDLE);
}

INSTANTIATE_TEST_SUITE_P(, FirstOpen, testing::Range(1U, FirstOpen::kMost + 1));

TEST(EventMemory, NotificationWithoutMemoryIsCountedInTheNext) {
    const OpenQueue queue;
    plenx_event event{};
    event.kind = PLENX_EVENT_ERROR;
    event.text = "";
    PlenxC::EventQueue direct(10);
    direct.Take(event);
    {
        const FailingAllocation failing(1);
        EXPECT_EQ(direct.Take(event), 0);
        EXPECT_TRUE(failing.End());
    }
    direct.Take(event);
    std::vector<std::uint64_t> lost;
    while (const plenx_event* const next = direct.Next(0)) {
        lost.push_back(next->lost);
        plenx_event_free(next);
    }
    EXPECT_THAT(lost, testing::ElementsAre(0U, 1U));
}

plenx_event LongEvent() {
    plenx_event event{};
    event.kind = PLENX_EVENT_CONNECT;
    event.text = kLong.data();
    event.text_length = kLong.size();
    return event;
}

TEST(EventMemory, TakesOneAllocationPerEvent) {
    PlenxC::EventQueue queue(10);
    plenx_event event = LongEvent();
    const std::int64_t before = LiveAllocations();
    queue.Take(event);
    EXPECT_EQ(LiveAllocations(), before + 1);
    const FailingAllocation failing(2);
    queue.Take(event);
    plenx_event_free(queue.Next(0));
    plenx_event_free(queue.Next(0));
    EXPECT_FALSE(failing.End());
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(EventMemory, AMillionEventsLeaveNothing) {
#ifdef __SANITIZE_THREAD__
    constexpr int kEvents = 100000;
#else
    constexpr int kEvents = 1000000;
#endif
    const OpenQueue queue(100);
    plenx_event event{};
    event.kind = PLENX_EVENT_CONNECT;
    event.text = "group";
    event.text_length = 5;
    PlenxC::EventQueue direct(64);
    const std::int64_t before = LiveAllocations();
    for (int i = 0; i != kEvents; ++i) {
        direct.Take(event);
        if (i % 3 != 0) {  // some events are dropped
            plenx_event_free(direct.Next(0));
        }
    }
    while (const plenx_event* const next = direct.Next(0)) {
        plenx_event_free(next);
    }
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(EventMemory, ClosedAndCancelledQueuesDoNotEvenCopy) {
    plenx_event event = LongEvent();
    PlenxC::EventQueue closed(10);
    PlenxC::EventQueue cancelled(10);
    closed.Close();
    cancelled.Cancel();
    const FailingAllocation failing(1);
    EXPECT_EQ(closed.Take(event), 0);
    EXPECT_EQ(cancelled.Take(event), 0);
    EXPECT_FALSE(failing.End());
}

TEST(EventMemory, ClosedAndCancelledQueuesFreeWhatTheyHold) {
    plenx_event event = LongEvent();
    PlenxC::EventQueue closed(10);
    PlenxC::EventQueue cancelled(10);
    const std::int64_t before = LiveAllocations();
    closed.Take(event);
    cancelled.Take(event);
    EXPECT_EQ(LiveAllocations(), before + 2);
    cancelled.Cancel();
    EXPECT_EQ(LiveAllocations(), before + 1);
    closed.Close();
    EXPECT_EQ(LiveAllocations(), before);
    cancelled.Take(event);  // it takes nothing any more
    closed.Take(event);
    EXPECT_EQ(LiveAllocations(), before);
    {
        PlenxC::EventQueue destroyed(10);
        destroyed.Take(event);
    }
    EXPECT_EQ(LiveAllocations(), before);
}

}  // namespace
