// Sequences of calls of the plain C interface, beside a model that knows which handles are open and
// what each queue holds. No call may do or answer otherwise than the model says.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "companion/recorded_log.h"
#include "fuzz/input.h"
#include "fuzz/require.h"
#include "plenxsdk/plenx.h"
#include "unit/rpc/manager_calls.h"

namespace {

constexpr std::size_t kHandles = 6;

struct Expected {
    std::int32_t value;
    std::uint64_t lost;
};

struct Queue {
    plenx_queue* handle = nullptr;
    bool open = false;
    bool cancelled = false;
    std::uint32_t capacity = 0;
    std::deque<Expected> events;
    std::map<std::uint32_t, std::int32_t> answers;
    std::uint64_t lost = 0;

    void Take(std::int32_t value) {
        if (!open || cancelled) {
            return;
        }
        if (events.size() == capacity) {
            const std::uint64_t carried = events.front().lost + 1;
            events.pop_front();
            (events.empty() ? lost : events.front().lost) += carried;
        }
        events.push_back({value, std::exchange(lost, 0)});
    }
};

struct Subscription {
    plenx_subscription* handle = nullptr;
    bool open = false;
    int calls = 0;
    int expectedCalls = 0;
};

// `order` holds the open queues in the order in which they were opened. The library asks them in
// the same order.
struct Machine {
    std::array<Queue, kHandles> queues;
    std::array<Subscription, kHandles> subscriptions;
    std::vector<Queue*> order;
    std::vector<const plenx_event*> taken;

    ~Machine() {
        for (Queue& queue : queues) {
            plenx_queue_close(queue.handle);
        }
        for (Subscription& subscription : subscriptions) {
            plenx_unobserve(subscription.handle);
        }
        for (const plenx_event* const event : taken) {
            plenx_event_free(event);
        }
    }
};

std::int32_t CountError(void* user, std::int32_t) {
    ++static_cast<Subscription*>(user)->calls;
    // A subscription that is closed in its own call would wait for itself.
    REQUIRE(plenx_unobserve(static_cast<Subscription*>(user)->handle) == PLENX_E_DEADLOCK);
    return 0;
}

plenx_result ResultOf(const Queue& queue) {
    if (!queue.open) {
        return PLENX_E_HANDLE;
    }
    return queue.cancelled ? PLENX_E_CANCELLED : PLENX_OK;
}

void OpenQueue(Machine& machine, Queue& queue, std::uint32_t capacity) {
    if (queue.open) {
        return;
    }
    plenx_queue* const before = queue.handle;
    const plenx_result result = plenx_queue_open(capacity, &queue.handle);
    REQUIRE(result == (capacity == 0 ? PLENX_E_ARGUMENT : PLENX_OK));
    REQUIRE((queue.handle == nullptr) == (result != PLENX_OK));
    REQUIRE(queue.handle == nullptr || queue.handle != before);
    plenx_queue* const handle = queue.handle;
    queue = Queue();
    queue.handle = handle;
    queue.open = result == PLENX_OK;
    queue.capacity = capacity;
    if (queue.open) {
        machine.order.push_back(&queue);
    }
}

void CloseQueue(Machine& machine, Queue& queue) {
    REQUIRE(plenx_queue_close(queue.handle) == (queue.open ? PLENX_OK : PLENX_E_HANDLE));
    queue.open = false;
    for (auto place = machine.order.begin(); place != machine.order.end(); ++place) {
        if (*place == &queue) {
            machine.order.erase(place);
            break;
        }
    }
}

void Next(Machine& machine, Queue& queue) {
    const plenx_event* event = nullptr;
    const plenx_result result = plenx_queue_next(queue.handle, 0, &event);
    REQUIRE(result == ResultOf(queue));
    if (result != PLENX_OK || queue.events.empty()) {
        REQUIRE(event == nullptr);
        return;
    }
    REQUIRE(event != nullptr && event->size == sizeof(plenx_event));
    REQUIRE(event->value == queue.events.front().value);
    REQUIRE(event->lost == queue.events.front().lost);
    REQUIRE(event->text[event->text_length] == '\0');
    queue.events.pop_front();
    machine.taken.push_back(event);
}

void Notify(Machine& machine, std::int32_t code) {
    CallManager(15, MessageOf({Int32Arg(code)}));
    for (Queue* const queue : machine.order) {
        queue->Take(code);
    }
    for (Subscription& subscription : machine.subscriptions) {
        subscription.expectedCalls += subscription.open ? 1 : 0;
        REQUIRE(subscription.calls == subscription.expectedCalls);
    }
}

void AskForLink(Machine& machine, std::uint32_t link) {
    const ManagerReply reply =
        CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(static_cast<std::int32_t>(link))}));
    std::int32_t answer = 0;
    for (Queue* const queue : machine.order) {
        const auto own = queue->answers.find(link);
        answer = own != queue->answers.end() ? own->second : answer;
        queue->Take(answer);
    }
    REQUIRE(reply.bytes == Int32Message(answer));
}

void SetLinkStatus(Queue& queue, std::uint32_t link, std::int32_t status) {
    const plenx_result result =
        plenx_queue_set_link_status(queue.handle, 1, PLENX_TEXT("g"), link, status);
    REQUIRE(result == (queue.open ? PLENX_OK : PLENX_E_HANDLE));
    if (queue.open) {
        queue.answers[link] = status;
    }
}

void Observe(Subscription& subscription, std::uint32_t size) {
    if (subscription.open) {
        return;
    }
    std::array<unsigned char, 4200> block{};
    auto* const observer = reinterpret_cast<plenx_observer*>(block.data());
    observer->size = size;
    observer->user = &subscription;
    observer->notify_error = CountError;
    const plenx_result result = plenx_observe(observer, &subscription.handle);
    const bool fits = size >= sizeof(plenx_observer) && size <= 4096;
    REQUIRE(result == (fits ? PLENX_OK : PLENX_E_ARGUMENT));
    subscription.open = fits;
}

void Unobserve(Subscription& subscription) {
    REQUIRE(plenx_unobserve(subscription.handle) ==
            (subscription.open ? PLENX_OK : PLENX_E_HANDLE));
    subscription.open = false;
}

// The number may be anything but the address of one of our queues.
void UseMadeUp(const Machine& machine, std::uint64_t number) {
    for (const Queue& queue : machine.queues) {
        if (reinterpret_cast<std::uint64_t>(queue.handle) == number) {
            return;
        }
    }
    auto* const queue = reinterpret_cast<plenx_queue*>(number);
    const plenx_event* event = nullptr;
    REQUIRE(plenx_queue_next(queue, UINT32_MAX, &event) == PLENX_E_HANDLE);
    REQUIRE(plenx_queue_wait_handle(queue) == nullptr);
    REQUIRE(plenx_queue_cancel(queue) == PLENX_E_HANDLE);
    REQUIRE(plenx_queue_close(queue) == PLENX_E_HANDLE);
}

void Operate(FuzzInput& input) {
    const std::string group = input.Text(input.Byte() % 8);
    const std::string argument = input.Text(input.Byte() % 8);
    const bool withNull = input.Byte() % 4 == 0;
    const plenx_result result = plenx_start(input.Byte() % 9, withNull ? nullptr : group.data(),
                                            group.size(), argument.data(), argument.size());
    if (withNull && !group.empty()) {
        REQUIRE(result == PLENX_E_ARGUMENT);
    } else {
        REQUIRE(result == (group.empty() || argument.empty() ? PLENX_INVALID_PARAMETER : PLENX_OK));
    }
}

void Step(Machine& machine, FuzzInput& input) {
    const std::uint8_t what = input.Byte() % 13;
    Queue& queue = machine.queues[input.Byte() % kHandles];
    Subscription& subscription = machine.subscriptions[input.Byte() % kHandles];
    switch (what) {
    case 0:
        return OpenQueue(machine, queue, input.Byte() % 5);
    case 1:
        return CloseQueue(machine, queue);
    case 2:
    case 3:
        return Next(machine, queue);
    case 4:
        REQUIRE(plenx_queue_cancel(queue.handle) == (queue.open ? PLENX_OK : PLENX_E_HANDLE));
        queue.cancelled = true;
        return;
    case 5:
    case 6:
        return Notify(machine, input.Number<std::int32_t>());
    case 7:
        return AskForLink(machine, input.Byte() % 4U);
    case 8:
        return SetLinkStatus(queue, input.Byte() % 4U, input.Number<std::int32_t>());
    case 9:
        return Observe(subscription, input.Number<std::uint16_t>() % 4200U);
    case 10:
        return Unobserve(subscription);
    case 11:
        return UseMadeUp(machine, input.Number<std::uint64_t>());
    default:
        return Operate(input);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Machine machine;
    while (!input.IsEmpty()) {
        Step(machine, input);
        RecordedLog::Get().Clear();
    }
    return 0;
}
