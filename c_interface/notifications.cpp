// The exports of queues and observers.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "arguments.h"
#include "event.h"
#include "event_queue.h"
#include "layer.h"
#include "own_process.h"
#include "plenxsdk/plenx.h"
#include "result.h"
#include "subscription.h"

using namespace PlenxC;

namespace {

constexpr std::uint32_t kLargestStruct = 4096;  // a larger size cannot be a real one

// A newer header has more functions. The host may set only those that this DLL knows.
plenx_observer CopyOf(const plenx_observer* given) {
    RequirePointer("observer", given);
    if (given->size < sizeof(plenx_observer) || given->size > kLargestStruct) {
        throw Refusal{PLENX_E_ARGUMENT, "observer", "has a size that no version of the struct has"};
    }
    const auto* const bytes = reinterpret_cast<const unsigned char*>(given);
    if (std::any_of(bytes + sizeof(plenx_observer), bytes + given->size,
                    [](unsigned char byte) { return byte != 0; })) {
        throw Refusal{PLENX_E_ABI, "observer", "has a function that this DLL does not know yet"};
    }
    return *given;
}

}  // namespace

plenx_result PLENX_CALL plenx_queue_open(uint32_t capacity, plenx_queue** queue) {
    return Guarded(__func__, [&] {
        RequirePointer("queue", queue);
        *queue = nullptr;
        RefuseInsideObserver();
        if (capacity == 0) {
            throw Refusal{PLENX_E_ARGUMENT, "capacity", "is 0"};
        }
        *queue =
            static_cast<plenx_queue*>(Layer::Get().Open(std::make_shared<EventQueue>(capacity)));
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_queue_next(plenx_queue* queue, uint32_t milliseconds,
                                         const plenx_event** event) {
    return Guarded(__func__, [&] {
        RequirePointer("event", event);
        *event = nullptr;
        const std::uint32_t wait = IsInsideObserver() ? 0 : milliseconds;
        *event = Layer::Get().Find<EventQueue>(queue)->Next(wait);
        return PLENX_OK;
    });
}

void PLENX_CALL plenx_event_free(const plenx_event* event) {
    if (event != nullptr && !ProcessIsEnding()) {
        Event::Free(Event::Behind(event));
    }
}

void* PLENX_CALL plenx_queue_wait_handle(plenx_queue* queue) {
    void* handle = nullptr;
    Guarded(__func__, [&] {
        handle = Layer::Get().Find<EventQueue>(queue)->WaitHandle();
        return PLENX_OK;
    });
    return handle;
}

plenx_result PLENX_CALL plenx_queue_set_link_status(plenx_queue* queue, uint32_t service,
                                                    const char* group, size_t group_len,
                                                    uint32_t link, int32_t status) {
    return Guarded(__func__, [&] {
        Layer::Get().Find<EventQueue>(queue)->SetLinkStatus(
            service, CopyIn("group", group, group_len), link, status);
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_queue_cancel(plenx_queue* queue) {
    return Guarded(
        __func__,
        [&] {
            Layer::Get().Find<EventQueue>(queue)->Cancel();
            return PLENX_OK;
        },
        PLENX_OK);
}

plenx_result PLENX_CALL plenx_queue_close(plenx_queue* queue) {
    return Guarded(
        __func__,
        [&] {
            RefuseInsideObserver();
            Layer::Get().Close<EventQueue>(queue)->Close();
            return PLENX_OK;
        },
        PLENX_OK);
}

plenx_result PLENX_CALL plenx_observe(const plenx_observer* observer,
                                      plenx_subscription** subscription) {
    return Guarded(__func__, [&] {
        RequirePointer("subscription", subscription);
        *subscription = nullptr;
        RefuseInsideObserver();
        *subscription = static_cast<plenx_subscription*>(
            Layer::Get().Open(std::make_shared<Subscription>(CopyOf(observer))));
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_unobserve(plenx_subscription* subscription) {
    return Guarded(
        __func__,
        [&] {
            RefuseInsideObserver();
            Layer::Get().Close<Subscription>(subscription)->Close();
            return PLENX_OK;
        },
        PLENX_OK);
}
