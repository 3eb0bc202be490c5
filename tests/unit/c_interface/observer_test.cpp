// Tests observers: which function receives which notification, and what it may call.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "c_fixture.h"
#include "common/asleep.h"
#include "common/wait_until.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// Records what its functions receive.
struct Notebook {
    std::vector<std::string> calls;
    std::int32_t code = 0;
    std::int32_t answer = 0;  // the answer to a link query, unless it is 0
    std::function<void()> inside;

    std::int32_t Take(const std::string& call) {
        calls.push_back(call);
        if (inside) {
            inside();
        }
        return code;
    }
};

template <class... Numbers>
std::int32_t Note(void* user, const char* name, const char* text, std::size_t length,
                  Numbers... numbers) {
    EXPECT_EQ(text[length], '\0');
    std::string call = std::string(name) + "(" + std::string(text, length);
    ((call += ", " + std::to_string(numbers)), ...);
    return static_cast<Notebook*>(user)->Take(call + ")");
}

plenx_observer ObserverOf(Notebook& notebook) {
    plenx_observer observer{};
    observer.size = sizeof(observer);
    observer.user = &notebook;
    observer.send_local_message = [](void* user, std::int32_t type, std::uint32_t msgLen,
                                     const char* text, std::size_t length) {
        return Note(user, "message", text, length, type, msgLen);
    };
    observer.notify_connect = [](void* user, std::uint32_t service, const char* text,
                                 std::size_t length) {
        return Note(user, "connect", text, length, service);
    };
    observer.notify_disconnect = [](void* user, std::uint32_t service, const char* text,
                                    std::size_t length) {
        return Note(user, "disconnect", text, length, service);
    };
    observer.notify_reconnect = [](void* user, std::uint32_t service, const char* text,
                                   std::size_t length) {
        return Note(user, "reconnect", text, length, service);
    };
    observer.query_link_status = [](void* user, std::uint32_t service, const char* text,
                                    std::size_t length, std::uint32_t link, std::int32_t* status) {
        const std::int32_t before = *status;
        const std::int32_t answer = static_cast<Notebook*>(user)->answer;
        *status = answer != 0 ? answer : before;
        return Note(user, "link", text, length, service, link, before);
    };
    observer.notify_status = [](void* user, std::uint32_t service, const char* text,
                                std::size_t length, std::uint32_t kind, std::int32_t value) {
        return Note(user, "status", text, length, service, kind, value);
    };
    observer.notify_error = [](void* user, std::int32_t code) {
        return Note(user, "error", "", 0, code);
    };
    observer.notify_disk_name = [](void* user, const char* text, std::size_t length) {
        return Note(user, "disk", text, length);
    };
    return observer;
}

class Observing {
public:
    explicit Observing(Notebook& notebook) : Observing(ObserverOf(notebook)) {}
    explicit Observing(const plenx_observer& observer) {
        EXPECT_EQ(plenx_observe(&observer, &subscription_), 0);
    }
    ~Observing() { plenx_unobserve(subscription_); }
    Observing(const Observing&) = delete;
    Observing& operator=(const Observing&) = delete;

    plenx_subscription* Get() const { return subscription_; }

private:
    plenx_subscription* subscription_ = nullptr;
};

void NotifyAll() {
    CallManager(9, MessageOf({Int32Arg(-4), Int32Arg(-1), StringArg(std::string("h\0i", 3))}));
    CallManager(10, MessageOf({StringArg("g_1")}));
    CallManager(11, MessageOf({StringArg("g_2")}));
    CallManager(12, MessageOf({StringArg("g_77")}));
    CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(-1)}));
    CallManager(14, MessageOf({StringArg("g_1"), Int32Arg(-1), Int32Arg(2)}));
    CallManager(15, MessageOf({Int32Arg(-9)}));
    CallManager(16, MessageOf({StringArg("disk")}));
}

TEST(CObserver, EachFunctionGetsItsNotification) {
    Notebook notebook;
    const Observing observing(notebook);
    NotifyAll();
    EXPECT_THAT(
        notebook.calls,
        ElementsAre("message(" + std::string("h\0i", 3) + ", -4, 4294967295)", "connect(g, 1)",
                    "disconnect(g, 2)", "reconnect(g, 77)", "link(g, 1, 4294967295, 0)",
                    "status(g, 1, 4294967295, 1)", "error(, -9)", "disk(disk)"));
}

TEST(CObserver, FunctionsThatAreNullAreNotWanted) {
    plenx_observer nothing{};
    nothing.size = sizeof(nothing);
    const Observing observing(nothing);
    RecordedLog::Get().Clear();
    NotifyAll();
    EXPECT_THAT(RecordedLog::Get().Texts(), Each(testing::StartsWith("L3")));
}

TEST(CObserver, FirstCodeOfAllIsLoggedAndEveryOneIsAsked) {
    Notebook well;
    Notebook failing;
    failing.code = 41;
    Notebook failingToo;
    failingToo.code = 42;
    const Observing first(well);
    const Observing second(failing);
    const Observing third(failingToo);
    RecordedLog::Get().Clear();
    Connect("g");
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(Info("notify connect invoked svcType:1", "NotifyConnect"),
                            Info("notify connect begin", "NotifyConnect"),
                            Error("notify connect error 41", "NotifyConnect"),
                            Info("notify connect end", "NotifyConnect")));
    EXPECT_THAT(failingToo.calls, ElementsAre("connect(g, 1)"));
}

TEST(CObserver, LinkStatusGoesThroughAllInTheOrderOfOpening) {
    Notebook first;
    first.answer = 5;
    const Observing firstObserving(first);
    const OpenQueue queue;
    plenx_queue_set_link_status(queue.Get(), 1, PLENX_TEXT("g"), 2, 6);
    Notebook last;
    last.answer = 7;
    const Observing lastObserving(last);
    EXPECT_EQ(CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(2)})).bytes, Int32Message(7));
    EXPECT_THAT(first.calls, ElementsAre("link(g, 1, 2, 0)"));
    EXPECT_THAT(queue.Drain(), ElementsAre("13 service 1 type 2 msg_len 0 value 6 lost 0: g"));
    EXPECT_THAT(last.calls, ElementsAre("link(g, 1, 2, 6)"));
}

TEST(CObserver, ClosedSlotsDoNotChangeTheOrderOfOpening) {
    std::vector<std::string> order;
    const auto named = [&](Notebook& notebook, const char* name) {
        notebook.inside = [&order, name] { order.emplace_back(name); };
    };
    Notebook a;
    Notebook b;
    Notebook c;
    named(a, "a");
    named(b, "b");
    named(c, "c");
    auto first = std::make_unique<Observing>(a);
    const Observing second(b);
    first.reset();
    const Observing third(c);  // it takes the slot of the first
    Connect("g");
    EXPECT_THAT(order, ElementsAre("b", "c"));
}

TEST(CObserver, IsCopiedWhenItIsRegistered) {
    Notebook notebook;
    plenx_observer observer = ObserverOf(notebook);
    const Observing observing(observer);
    std::memset(&observer, 0, sizeof(observer));
    Connect("g");
    EXPECT_THAT(notebook.calls, ElementsAre("connect(g, 1)"));
}

TEST(CObserver, IsNotCalledOnceItIsUnregistered) {
    Notebook notebook;
    {
        const Observing observing(notebook);
    }
    Connect("g");
    EXPECT_THAT(notebook.calls, IsEmpty());
}

// A host with a later header passes this struct.
struct NewerObserver {
    plenx_observer known;
    void* newFunction;
};

TEST(CObserver, OfANewerHeaderIsTakenWhenItWantsNothingNew) {
    Notebook notebook;
    NewerObserver newer{ObserverOf(notebook), nullptr};
    newer.known.size = sizeof(newer);
    plenx_subscription* subscription = nullptr;
    EXPECT_EQ(plenx_observe(&newer.known, &subscription), 0);
    Connect("g");
    EXPECT_THAT(notebook.calls, ElementsAre("connect(g, 1)"));
    EXPECT_EQ(plenx_unobserve(subscription), 0);
}

TEST(CObserver, OfANewerHeaderIsRefusedWhenItWantsWhatTheDllDoesNotKnow) {
    Notebook notebook;
    NewerObserver newer{ObserverOf(notebook), &notebook};
    newer.known.size = sizeof(newer);
    plenx_subscription* subscription = nullptr;
    EXPECT_EQ(plenx_observe(&newer.known, &subscription), PLENX_E_ABI);
    EXPECT_EQ(subscription, nullptr);
    EXPECT_EQ(LastError(),
              "plenx_observe: observer has a function that this DLL does not know yet");
}

// The DLL takes no struct that is larger than this one.
struct LargestObserver {
    plenx_observer known;
    unsigned char rest[4096 - sizeof(plenx_observer)];
};

TEST(CObserver, OfTheLargestSizeIsReadToItsLastByte) {
    Notebook notebook;
    LargestObserver largest{ObserverOf(notebook), {}};
    largest.known.size = sizeof(largest);
    {
        const Observing observing(largest.known);
        Connect("g");
        EXPECT_THAT(notebook.calls, ElementsAre("connect(g, 1)"));
    }
    largest.rest[sizeof(largest.rest) - 1] = 1;
    plenx_subscription* subscription = nullptr;
    EXPECT_EQ(plenx_observe(&largest.known, &subscription), PLENX_E_ABI);
}

TEST(CUnobserve, WaitsForTheFunctionThatRuns) {
    std::promise<void> inside;
    std::promise<void> letGo;
    std::shared_future<void> gate = letGo.get_future().share();
    Notebook notebook;
    notebook.inside = [&] {
        inside.set_value();
        gate.wait();
    };
    const Observing observing(notebook);
    std::thread service([] { Connect("g"); });
    inside.get_future().wait();
    auto ended = std::async(std::launch::async, [&] { return plenx_unobserve(observing.Get()); });
    EXPECT_TRUE(WaitUntil(AllOthersAreAsleep));
    EXPECT_EQ(ended.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    // The handle is invalid from the moment of the call.
    EXPECT_EQ(plenx_unobserve(observing.Get()), PLENX_E_HANDLE);
    letGo.set_value();
    EXPECT_EQ(ended.get(), 0);
    service.join();
}

// The observer is unregistered while another one holds up a notification, which then never reaches
// it.
TEST(CUnobserve, DoesNotWaitForTheFunctionOfAnotherObserver) {
    std::promise<void> inside;
    std::promise<void> letGo;
    std::shared_future<void> gate = letGo.get_future().share();
    Notebook slow;
    slow.inside = [&] {
        inside.set_value();
        gate.wait();
    };
    Notebook next;
    const Observing observingSlowly(slow);
    const Observing observingNext(next);
    std::thread service([] { Connect("g"); });
    inside.get_future().wait();
    EXPECT_EQ(plenx_unobserve(observingNext.Get()), 0);
    letGo.set_value();
    service.join();
    EXPECT_THAT(next.calls, IsEmpty());
}

class InsideAnObserver : public ReadyFacade {
protected:
    // Runs the action inside a function, on the thread that notifies.
    void Inside(const std::function<void()>& action) {
        Notebook notebook;
        notebook.inside = action;
        plenx_observer observer{};
        observer.size = sizeof(observer);
        observer.user = &notebook;
        observer.notify_connect = ObserverOf(notebook).notify_connect;
        const Observing observing(observer);
        Connect("g");
        ASSERT_THAT(notebook.calls, ElementsAre("connect(g, 1)"));
    }

    static void ExpectDeadlock(const char* function, plenx_result result) {
        EXPECT_EQ(result, PLENX_E_DEADLOCK) << function;
        EXPECT_EQ(LastError(), std::string(function) +
                                   ": the call was made inside a function of an observer, where "
                                   "it would wait for ever");
    }
};

TEST_F(InsideAnObserver, CallsThatWouldWaitForEverAreRefused) {
    const OpenQueue queue;
    Notebook notebook;
    const Observing other(notebook);
    Inside([&] {
        ExpectDeadlock("plenx_init", plenx_init(PLENX_TEXT("C:\\App"), PLENX_TEXT("C:\\Data"),
                                                PLENX_TEXT(""), 0));
        ExpectDeadlock("plenx_destroy", plenx_destroy());
        char text[32];
        std::int32_t code = 0;
        ExpectDeadlock("plenx_get_office_dir",
                       plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT("r"), text,
                                            sizeof(text), nullptr, &code));
        plenx_queue* opened = nullptr;
        ExpectDeadlock("plenx_queue_open", plenx_queue_open(1, &opened));
        EXPECT_EQ(opened, nullptr);
        ExpectDeadlock("plenx_queue_close", plenx_queue_close(queue.Get()));
        const plenx_observer observer = ObserverOf(notebook);
        plenx_subscription* subscription = nullptr;
        ExpectDeadlock("plenx_observe", plenx_observe(&observer, &subscription));
        EXPECT_EQ(subscription, nullptr);
        ExpectDeadlock("plenx_unobserve", plenx_unobserve(other.Get()));
    });
    EXPECT_EQ(plenx_destroy(), 0);  // the effect ends with the function
}

TEST_F(InsideAnObserver, NextNeverWaits) {
    const OpenQueue queue;
    Inside([&] {
        EXPECT_THAT(queue.Drain(), ElementsAre(ShowConnect("g")));
        const plenx_event* event = nullptr;
        EXPECT_EQ(plenx_queue_next(queue.Get(), UINT32_MAX, &event), 0);
        EXPECT_EQ(event, nullptr);
    });
}

TEST_F(InsideAnObserver, EveryOtherCallIsAllowed) {
    const OpenQueue queue;
    Inside([&] {
        EXPECT_EQ(plenx_start(0, PLENX_TEXT("g"), PLENX_TEXT("a")), 0);
        EXPECT_EQ(plenx_stop(0, PLENX_TEXT("g")), 0);
        EXPECT_EQ(plenx_set_int64(3, 0, 1), 0);
        EXPECT_EQ(plenx_set_string(3, 1, PLENX_TEXT("x")), 0);
        std::int64_t value = 0;
        EXPECT_EQ(plenx_get_int64(1, 5, &value), 0);
        char text[8];
        EXPECT_EQ(plenx_get_string(1, 1, text, sizeof(text), nullptr), 0);
        EXPECT_EQ(plenx_local_device_online(0, PLENX_TEXT("g"), PLENX_TEXT("d"), nullptr, 0), 0);
        EXPECT_EQ(plenx_remote_device_online(0, PLENX_TEXT("g"), PLENX_TEXT("d")), 0);
        EXPECT_EQ(plenx_local_device_offline(0, PLENX_TEXT("g"), PLENX_TEXT("d"), 0), 0);
        EXPECT_EQ(plenx_remote_device_offline(0, PLENX_TEXT("g"), PLENX_TEXT("d"), 0), 0);
        EXPECT_EQ(plenx_device_name_changed(PLENX_TEXT("n")), 0);
        EXPECT_EQ(plenx_recv_remote_message(1, 2, PLENX_TEXT("m")), 0);
        EXPECT_EQ(plenx_queue_set_link_status(queue.Get(), 1, PLENX_TEXT("g"), 2, 3), 0);
        EXPECT_EQ(plenx_queue_wait_handle(queue.Get()), nullptr);
        EXPECT_EQ(plenx_queue_cancel(queue.Get()), 0);
    });
    WaitForJobs();
}

TEST_F(InsideAnObserver, AnotherThreadIsNotKnownToBeInside) {
    Inside([] {
        EXPECT_EQ(std::async(std::launch::async,
                             [] {
                                 plenx_queue* queue = nullptr;
                                 const plenx_result result = plenx_queue_open(1, &queue);
                                 plenx_queue_close(queue);
                                 return result;
                             })
                      .get(),
                  0);
    });
}

}  // namespace
