// Tests the calls while the process ends: they do nothing, and they wait for nothing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "c_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Ending, CleanUpCallsGive0AndDoNothing) {
    const OpenQueue queue;
    plenx_observer observer{};
    observer.size = sizeof(observer);
    plenx_subscription* subscription = nullptr;
    ASSERT_EQ(plenx_observe(&observer, &subscription), 0);
    Connect("a");
    const plenx_event* event = nullptr;
    ASSERT_EQ(plenx_queue_next(queue.Get(), 0, &event), 0);
    RecordedLog::Get().Clear();
    {
        const EndingProcess ending;
        EXPECT_EQ(plenx_destroy(), 0);
        EXPECT_EQ(plenx_unobserve(subscription), 0);
        EXPECT_EQ(plenx_unobserve(nullptr), 0);
        EXPECT_EQ(plenx_queue_cancel(queue.Get()), 0);
        EXPECT_EQ(plenx_queue_close(queue.Get()), 0);
        plenx_event_free(event);
    }
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
    // Nothing has changed.
    EXPECT_STREQ(event->text, "a");
    plenx_event_free(event);
    Connect("b");
    EXPECT_THAT(queue.Drain(), ElementsAre(ShowConnect("b")));
    EXPECT_EQ(plenx_unobserve(subscription), 0);
}

TEST(Ending, InformationalCallsAnswerAsAlways) {
    const EndingProcess ending;
    EXPECT_EQ(plenx_abi(), PLENX_ABI);
    EXPECT_STREQ(plenx_result_text(PLENX_E_ENDING), "The process is ending.");
}

TEST(Ending, AllOtherCallsGiveEndingAndLeaveTheirOutputsAsTheyWere) {
    const OpenQueue queue;
    RecordedLog::Get().Clear();
    LayerProcess::givesEvents = true;
    {
        const EndingProcess ending;
        std::int64_t value = 55;
        std::int32_t code = 66;
        char text[] = "xxxxxxx";
        std::size_t length = 77;
        auto* const someQueue = reinterpret_cast<plenx_queue*>(std::uintptr_t{88});
        auto* const someSubscription = reinterpret_cast<plenx_subscription*>(std::uintptr_t{99});
        const plenx_event someEvent{};
        plenx_queue* opened = someQueue;
        plenx_subscription* subscription = someSubscription;
        const plenx_event* event = &someEvent;
        plenx_observer observer{};
        observer.size = sizeof(observer);
        const plenx_result results[] = {
            plenx_open(PLENX_ABI),
            plenx_last_error(text, sizeof(text), &length),
            plenx_init(PLENX_TEXT("C:\\App"), PLENX_TEXT("C:\\Data"), PLENX_TEXT(""), 0),
            plenx_get_int64(1, 5, &value),
            plenx_get_string(1, 1, text, sizeof(text), &length),
            plenx_set_int64(1, 0, 1),
            plenx_set_string(1, 1, PLENX_TEXT("x")),
            plenx_start(1, PLENX_TEXT("g"), PLENX_TEXT("a")),
            plenx_stop(1, PLENX_TEXT("g")),
            plenx_local_device_online(1, PLENX_TEXT("g"), PLENX_TEXT("d"), nullptr, 0),
            plenx_remote_device_online(1, PLENX_TEXT("g"), PLENX_TEXT("d")),
            plenx_local_device_offline(1, PLENX_TEXT("g"), PLENX_TEXT("d"), 0),
            plenx_remote_device_offline(1, PLENX_TEXT("g"), PLENX_TEXT("d"), 0),
            plenx_device_name_changed(PLENX_TEXT("n")),
            plenx_recv_remote_message(1, 2, PLENX_TEXT("m")),
            plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT("r"), text,
                                 sizeof(text), &length, &code),
            plenx_queue_open(1, &opened),
            plenx_queue_next(queue.Get(), UINT32_MAX, &event),
            plenx_queue_set_link_status(queue.Get(), 1, PLENX_TEXT("g"), 2, 3),
            plenx_observe(&observer, &subscription),
        };
        EXPECT_THAT(results, testing::Each(PLENX_E_ENDING));
        EXPECT_EQ(plenx_queue_wait_handle(queue.Get()), nullptr);
        EXPECT_EQ(value, 55);
        EXPECT_EQ(code, 66);
        EXPECT_STREQ(text, "xxxxxxx");
        EXPECT_EQ(length, 77U);
        EXPECT_EQ(opened, someQueue);
        EXPECT_EQ(subscription, someSubscription);
        EXPECT_EQ(event, &someEvent);
    }
    LayerProcess::givesEvents = false;
    EXPECT_EQ(LayerProcess::liveEvents, 0);
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

}  // namespace
