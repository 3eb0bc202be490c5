// Tests queues: which events they hold, which they lose, and how a thread waits for them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "c_fixture.h"
#include "common/asleep.h"
#include "common/wait_until.h"
#include "event_queue.h"
#include "result.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t k64MiB = std::size_t{64} << 20;

plenx_result Next(const OpenQueue& queue, std::uint32_t milliseconds, const plenx_event*& event) {
    return plenx_queue_next(queue.Get(), milliseconds, &event);
}

TEST(Queue, HoldsEveryKindOfNotificationInItsOrder) {
    const OpenQueue queue;
    CallManager(9, MessageOf({Int32Arg(-4), Int32Arg(-1), StringArg(std::string("h\0i", 3))}));
    CallManager(10, MessageOf({StringArg("g_1")}));
    CallManager(11, MessageOf({StringArg("g_2")}));
    CallManager(12, MessageOf({StringArg("g_77")}));
    CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(-1)}));
    CallManager(14, MessageOf({StringArg("g_1"), Int32Arg(-1), Int32Arg(2)}));
    CallManager(14, MessageOf({StringArg("g_1"), Int32Arg(3), Int32Arg(0)}));
    CallManager(15, MessageOf({Int32Arg(-9)}));
    CallManager(16, MessageOf({StringArg("disk \xC3\xBC")}));
    EXPECT_THAT(queue.Drain(),
                ElementsAre("9 service 0 type -4 msg_len 4294967295 value 0 lost 0: " +
                                std::string("h\0i", 3),
                            "10 service 1 type 0 msg_len 0 value 0 lost 0: g",
                            "11 service 2 type 0 msg_len 0 value 0 lost 0: g",
                            "12 service 77 type 0 msg_len 0 value 0 lost 0: g",
                            "13 service 1 type -1 msg_len 0 value 0 lost 0: g",
                            "14 service 1 type -1 msg_len 0 value 1 lost 0: g",
                            "14 service 1 type 3 msg_len 0 value 0 lost 0: g",
                            "15 service 0 type 0 msg_len 0 value -9 lost 0: ",
                            "16 service 0 type 0 msg_len 0 value 0 lost 0: disk \xC3\xBC"));
}

TEST(Queue, EventStatesItsSizeAndEndsItsTextWithANul) {
    const OpenQueue queue;
    Connect("group");
    const plenx_event* event = nullptr;
    ASSERT_EQ(Next(queue, 0, event), 0);
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(event->size, sizeof(plenx_event));
    EXPECT_STREQ(event->text, "group");
    plenx_event_free(event);
}

TEST(Queue, TimeoutIsSuccessWithoutAnEvent) {
    const OpenQueue queue;
    const plenx_event untouched{};
    const plenx_event* event = &untouched;
    EXPECT_EQ(Next(queue, 0, event), 0);
    EXPECT_EQ(event, nullptr);
    event = &untouched;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Next(queue, 60, event), 0);
    EXPECT_EQ(event, nullptr);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(60));
}

TEST(Queue, FreeingNoEventDoesNothing) {
    plenx_event_free(nullptr);
}

TEST(Queue, EveryQueueGetsEveryNotification) {
    const OpenQueue first;
    const OpenQueue second;
    Connect("g");
    EXPECT_THAT(first.Drain(), ElementsAre(ShowConnect("g")));
    EXPECT_THAT(second.Drain(), ElementsAre(ShowConnect("g")));
}

TEST(Queue, HearsNothingFromBeforeItWasOpened) {
    const OpenQueue first;
    Connect("early");
    const OpenQueue second;
    EXPECT_THAT(second.Drain(), IsEmpty());
}

TEST(Queue, OpeningRegistersOneObserverForAllAndStaysLoaded) {
    const OpenQueue first;
    const std::string function = "RegisterPLENXServiceObserver";
    EXPECT_THAT(RecordedLog::Get().Texts(), ElementsAre(Info("register observer invoked", function),
                                                        Info("register observer begin", function),
                                                        Info("register observer end", function)));
    EXPECT_GE(LayerProcess::pins, 1);
    RecordedLog::Get().Clear();
    {
        const OpenQueue second;
    }
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

TEST(Queue, FullOneDropsTheOldestAndCountsItInTheNext) {
    const OpenQueue queue(2);
    for (const char* group : {"a", "b", "c", "d"}) {
        Connect(group);
    }
    EXPECT_THAT(queue.Drain(), ElementsAre(ShowConnect("c", 2), ShowConnect("d")));
    Connect("e");
    EXPECT_THAT(queue.Drain(), ElementsAre(ShowConnect("e")));
}

TEST(Queue, OfOneEventHoldsTheNewest) {
    const OpenQueue queue(1);
    for (const char* group : {"a", "b", "c"}) {
        Connect(group);
    }
    EXPECT_THAT(queue.Drain(), ElementsAre(ShowConnect("c", 2)));
}

TEST(Queue, LossIsToldByTheEventThatFollowsIt) {
    const OpenQueue queue(2);
    Connect("a");
    Connect("b");
    const plenx_event* event = nullptr;
    ASSERT_EQ(Next(queue, 0, event), 0);
    plenx_event_free(event);
    Connect("c");
    Connect("d");  // drops b
    Connect("e");  // drops c
    EXPECT_THAT(queue.Drain(), ElementsAre(ShowConnect("d", 2), ShowConnect("e")));
}

// Gives a queue its texts without a service that sends them.
class TextLimit : public testing::Test {
protected:
    void Take(std::size_t length, std::int32_t number) {
        text_.assign(length, 't');
        plenx_event event{};
        event.size = sizeof(event);
        event.kind = PLENX_EVENT_ERROR;
        event.value = number;
        event.text = text_.c_str();
        event.text_length = length;
        queue_.Take(event);
    }
    // Returns a text such as "1 lost 0, 2 lost 0".
    std::string Drain() {
        std::string all;
        while (const plenx_event* const event = queue_.Next(0)) {
            all += (all.empty() ? "" : ", ") + std::to_string(event->value) + " lost " +
                   std::to_string(event->lost);
            plenx_event_free(event);
        }
        return all;
    }

    PlenxC::EventQueue queue_{100};
    std::string text_;
};

TEST_F(TextLimit, SixtyFourMebibytesFitExactly) {
    Take(k64MiB - 1, 1);
    Take(1, 2);
    Take(0, 3);
    EXPECT_EQ(Drain(), "1 lost 0, 2 lost 0, 3 lost 0");
}

TEST_F(TextLimit, OneByteMoreDropsTheOldest) {
    Take(k64MiB - 1, 1);
    Take(1, 2);
    Take(1, 3);
    EXPECT_EQ(Drain(), "2 lost 1, 3 lost 0");
}

TEST_F(TextLimit, RoomComesBackWithWhatIsTaken) {
    Take(k64MiB, 1);
    EXPECT_EQ(Drain(), "1 lost 0");
    Take(k64MiB, 2);
    Take(0, 3);
    EXPECT_EQ(Drain(), "2 lost 0, 3 lost 0");
}

TEST_F(TextLimit, OneLargerEventIsHeldBesideTheOthers) {
    Take(10, 1);
    Take(k64MiB + 1, 2);
    Take(k64MiB - 10, 3);
    EXPECT_EQ(Drain(), "1 lost 0, 2 lost 0, 3 lost 0");
}

TEST_F(TextLimit, SecondLargerEventDropsTheFirstAndAllBefore) {
    Take(10, 1);
    Take(k64MiB + 1, 2);
    Take(10, 3);
    Take(k64MiB + 1, 4);
    EXPECT_EQ(Drain(), "3 lost 2, 4 lost 0");
}

TEST(QueueWait, IsEndedByANotification) {
    const OpenQueue queue;
    auto reader = std::async(std::launch::async, [&] {
        const plenx_event* event = nullptr;
        EXPECT_EQ(Next(queue, UINT32_MAX, event), 0);
        const std::string text = event != nullptr ? Show(*event) : "none";
        plenx_event_free(event);
        return text;
    });
    EXPECT_TRUE(WaitUntil(AllOthersAreAsleep));
    EXPECT_EQ(reader.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    Connect("g");
    EXPECT_EQ(reader.get(), ShowConnect("g"));
}

// This runs with a thread that already waits, and with one that comes later.
void ExpectEnds(void (*end)(plenx_queue*), plenx_result expected, const std::string& error) {
    const OpenQueue queue;
    plenx_queue* const handle = queue.Get();
    std::vector<std::future<plenx_result>> readers;
    readers.reserve(10);
    for (int i = 0; i != 10; ++i) {
        readers.push_back(std::async(std::launch::async, [&] {
            const plenx_event* event = nullptr;
            const plenx_result result = plenx_queue_next(handle, UINT32_MAX, &event);
            EXPECT_EQ(event, nullptr);
            EXPECT_EQ(LastError(), error);
            return result;
        }));
    }
    EXPECT_TRUE(WaitUntil(AllOthersAreAsleep));
    EXPECT_EQ(readers.front().wait_for(std::chrono::milliseconds(100)),
              std::future_status::timeout);
    end(handle);
    for (std::future<plenx_result>& reader : readers) {
        EXPECT_EQ(reader.get(), expected);
    }
    const plenx_event* event = nullptr;
    EXPECT_EQ(plenx_queue_next(handle, UINT32_MAX, &event), expected);
}

TEST(QueueWait, IsEndedByCancellingForAllThreads) {
    ExpectEnds([](plenx_queue* queue) { EXPECT_EQ(plenx_queue_cancel(queue), 0); },
               PLENX_E_CANCELLED, "plenx_queue_next: queue was cancelled");
}

TEST(QueueWait, IsEndedByClosingForAllThreads) {
    ExpectEnds([](plenx_queue* queue) { EXPECT_EQ(plenx_queue_close(queue), 0); }, PLENX_E_HANDLE,
               "plenx_queue_next: queue was closed");
}

TEST(QueueCancel, IsForGoodAndDropsWhatIsThere) {
    const OpenQueue queue;
    Connect("a");
    EXPECT_EQ(plenx_queue_cancel(queue.Get()), 0);
    EXPECT_EQ(plenx_queue_cancel(queue.Get()), 0);
    Connect("b");
    const plenx_event* event = nullptr;
    EXPECT_EQ(Next(queue, 0, event), PLENX_E_CANCELLED);
    EXPECT_EQ(event, nullptr);
    EXPECT_EQ(LastError(), "plenx_queue_next: queue was cancelled");
}

// A thread that cancels may have found the queue before another one closed it.
TEST(QueueCancel, LeavesAClosedQueueClosed) {
    PlenxC::EventQueue queue(1);
    queue.Close();
    queue.Cancel();
    try {
        queue.Next(0);
        FAIL() << "nothing was refused";
    } catch (const PlenxC::Refusal& refusal) {
        EXPECT_EQ(refusal.result, PLENX_E_HANDLE);
    }
}

TEST(QueueClose, EventsThatWereTakenOutliveTheirQueue) {
    const plenx_event* event = nullptr;
    {
        const OpenQueue queue;
        Connect("kept");
        Connect("dropped");
        ASSERT_EQ(Next(queue, 0, event), 0);
    }
    EXPECT_STREQ(event->text, "kept");
    plenx_event_free(event);
}

TEST(QueueClose, DoesNotWaitForAFunctionOfAnObserver) {
    const OpenQueue queue;
    std::promise<void> inside;
    std::promise<void> letGo;
    struct Gate {
        std::promise<void>& inside;
        std::future<void> open;
    } gate{inside, letGo.get_future()};
    plenx_observer observer{};
    observer.size = sizeof(observer);
    observer.user = &gate;
    observer.notify_connect = [](void* user, std::uint32_t, const char*, std::size_t) {
        auto& waiting = *static_cast<Gate*>(user);
        waiting.inside.set_value();
        waiting.open.wait();
        return 0;
    };
    plenx_subscription* subscription = nullptr;
    ASSERT_EQ(plenx_observe(&observer, &subscription), 0);
    std::thread service([] { Connect("g"); });
    inside.get_future().wait();
    EXPECT_EQ(plenx_queue_close(queue.Get()), 0);
    {
        const OpenQueue another;
    }  // opening a queue does not wait either
    letGo.set_value();
    service.join();
    EXPECT_EQ(plenx_unobserve(subscription), 0);
}

TEST(QueueLink, WithoutAnAnswerLeavesTheStatusAlone) {
    const OpenQueue queue;
    EXPECT_EQ(CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(2)})).bytes, Int32Message(0));
    EXPECT_THAT(queue.Drain(), ElementsAre("13 service 1 type 2 msg_len 0 value 0 lost 0: g"));
}

TEST(QueueLink, AnswersTheServiceGroupAndLinkThatItWasSetFor) {
    const OpenQueue queue;
    EXPECT_EQ(plenx_queue_set_link_status(queue.Get(), 1, PLENX_TEXT("g"), 2, -7), 0);
    const auto ask = [](const char* group, std::int32_t link) {
        return CallManager(13, MessageOf({StringArg(group), Int32Arg(link)})).bytes;
    };
    EXPECT_EQ(ask("g_1", 2), Int32Message(-7));
    EXPECT_EQ(ask("g_2", 2), Int32Message(0));
    EXPECT_EQ(ask("h_1", 2), Int32Message(0));
    EXPECT_EQ(ask("g_1", 3), Int32Message(0));
    EXPECT_EQ(plenx_queue_set_link_status(queue.Get(), 1, PLENX_TEXT("g"), 2, 8), 0);
    EXPECT_EQ(ask("g_1", 2), Int32Message(8));
}

TEST(QueueLink, LastToBeOpenedWinsAndEachEventTellsTheStatusSoFar) {
    const OpenQueue first;
    const OpenQueue silent;
    const OpenQueue last;
    EXPECT_EQ(plenx_queue_set_link_status(last.Get(), 1, PLENX_TEXT("g"), 2, 9), 0);
    EXPECT_EQ(plenx_queue_set_link_status(first.Get(), 1, PLENX_TEXT("g"), 2, 5), 0);
    EXPECT_EQ(CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(2)})).bytes, Int32Message(9));
    EXPECT_THAT(first.Drain(), ElementsAre("13 service 1 type 2 msg_len 0 value 5 lost 0: g"));
    EXPECT_THAT(silent.Drain(), ElementsAre("13 service 1 type 2 msg_len 0 value 5 lost 0: g"));
    EXPECT_THAT(last.Drain(), ElementsAre("13 service 1 type 2 msg_len 0 value 9 lost 0: g"));
}

class WaitHandle : public testing::Test {
protected:
    WaitHandle() { LayerProcess::givesEvents = true; }
    ~WaitHandle() override {
        LayerProcess::givesEvents = false;
        EXPECT_EQ(LayerProcess::liveEvents, 0);
    }
};

TEST_F(WaitHandle, IsSetWhileThereIsAnEvent) {
    const OpenQueue queue;
    void* const handle = plenx_queue_wait_handle(queue.Get());
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(plenx_queue_wait_handle(queue.Get()), handle);
    EXPECT_FALSE(LayerProcess::IsSet(handle));
    Connect("a");
    Connect("b");
    EXPECT_TRUE(LayerProcess::IsSet(handle));
    const plenx_event* event = nullptr;
    Next(queue, 0, event);
    plenx_event_free(event);
    EXPECT_TRUE(LayerProcess::IsSet(handle));
    Next(queue, 0, event);
    plenx_event_free(event);
    EXPECT_FALSE(LayerProcess::IsSet(handle));
}

TEST_F(WaitHandle, StaysSetWhenAFullQueueDropsItsOnlyEvent) {
    const OpenQueue queue(1);
    void* const handle = plenx_queue_wait_handle(queue.Get());
    Connect("a");
    Connect("b");
    EXPECT_TRUE(LayerProcess::IsSet(handle));
}

TEST_F(WaitHandle, IsSetAtOnceWhenAskedForLate) {
    const OpenQueue queue;
    Connect("a");
    EXPECT_TRUE(LayerProcess::IsSet(plenx_queue_wait_handle(queue.Get())));
}

TEST_F(WaitHandle, IsSetByCancellingForGood) {
    const OpenQueue asked;
    const OpenQueue askedLate;
    void* const handle = plenx_queue_wait_handle(asked.Get());
    plenx_queue_cancel(asked.Get());
    plenx_queue_cancel(askedLate.Get());
    Connect("a");
    EXPECT_TRUE(LayerProcess::IsSet(handle));
    EXPECT_TRUE(LayerProcess::IsSet(plenx_queue_wait_handle(askedLate.Get())));
}

TEST(WaitHandleWithoutWindows, IsNull) {
    const OpenQueue queue;
    EXPECT_EQ(plenx_queue_wait_handle(queue.Get()), nullptr);
}

}  // namespace
