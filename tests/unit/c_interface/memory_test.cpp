// Tests calls for which there is no memory, and checks that all memory is given back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "c_fixture.h"
#include "counted_allocations.h"
#include "event_queue.h"

namespace {

using testing::AnyOf;

const std::string kLong(300, 'l');  // long enough to need an allocation of its own

struct Call {
    const char* name;
    std::function<plenx_result()> make;
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

class EveryAllocation : public testing::TestWithParam<Call> {
protected:
    EveryAllocation() { EXPECT_EQ(plenx_queue_open(5, &sharedQueue), 0); }
    ~EveryAllocation() override { plenx_queue_close(sharedQueue); }
};

TEST_P(EveryAllocation, ThatFailsGivesAResultAndLeaksNothing) {
    const auto& make = GetParam().make;
    make();  // makes everything that is made only once
    RecordedLog::Get().Clear();
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
        RecordedLog::Get().Clear();
        // The log itself deals with what fails while it writes a line.
        EXPECT_THAT(result, AnyOf(0, PLENX_E_MEMORY)) << "allocation " << n;
        failed += result == PLENX_E_MEMORY ? 1U : 0U;
    }
    EXPECT_GE(failed, 1U);
    RecordedLog::Get().Clear();
    make();
    RecordedLog::Get().Clear();
    EXPECT_EQ(LiveAllocations(), before);
    EXPECT_EQ(make(), 0);  // everything works as before
}

INSTANTIATE_TEST_SUITE_P(, EveryAllocation, testing::ValuesIn(kCalls),
                         [](const testing::TestParamInfo<Call>& call) {
                             return std::string(call.param.name);
                         });

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

TEST(EventMemory, TakesOneAllocationPerEvent) {
    PlenxC::EventQueue queue(10);
    plenx_event event{};
    event.kind = PLENX_EVENT_CONNECT;
    event.text = kLong.data();
    event.text_length = kLong.size();
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

TEST(EventMemory, ClosedAndCancelledQueuesFreeWhatTheyHold) {
    plenx_event event{};
    event.kind = PLENX_EVENT_CONNECT;
    event.text = kLong.data();
    event.text_length = kLong.size();
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
