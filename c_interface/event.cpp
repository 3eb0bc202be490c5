#include "event.h"

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

namespace PlenxC {

static_assert(std::is_trivially_destructible_v<Event> && std::is_standard_layout_v<Event>);

Event* Event::CopyOf(const plenx_event& notification) noexcept {
    const std::size_t length = notification.text_length;
    void* const block = ::operator new(sizeof(Event) + length + 1, std::nothrow);
    if (block == nullptr) {
        return nullptr;
    }
    Event* const event = new (block) Event;
    char* const text = static_cast<char*>(block) + sizeof(Event);
    std::memcpy(text, notification.text, length);
    text[length] = '\0';
    event->shown = notification;
    event->shown.text = text;
    return event;
}

void Event::Free(Event* event) noexcept {
    ::operator delete(event);
}

Event* Event::Behind(const plenx_event* shown) noexcept {
    const char* const address = reinterpret_cast<const char*>(shown) - offsetof(Event, shown);
    return reinterpret_cast<Event*>(const_cast<char*>(address));
}

}  // namespace PlenxC
