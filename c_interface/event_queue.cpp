#include "event_queue.h"

#include <algorithm>
#include <utility>

#include "result.h"

namespace PlenxC {
namespace {

constexpr std::size_t kMostText = std::size_t{64} << 20;  // any local process can send it

bool IsLarge(std::size_t length) {
    return length > kMostText;
}

}  // namespace

EventQueue::~EventQueue() {
    DropAll();
}

std::int32_t EventQueue::Take(plenx_event& notification) {
    if (notification.kind == PLENX_EVENT_LINK_QUERY) {
        AnswerLinkQuery(notification);
    }
    if (state_ != State::kOpen) {
        return 0;  // without a copy, which a large text would make dear
    }
    // This copies before it takes the lock, because a large text takes time and readers can go on
    // meanwhile. So the queue may end during the copy.
    Event* const event = Event::CopyOf(notification);
    std::unique_lock<Mutex> lock(mutex_);
    if (event == nullptr) {
        ++lost_;
        return 0;
    }
    if (state_ != State::kOpen) {
        lock.unlock();
        Event::Free(event);
        return 0;
    }
    while (!Fits(notification.text_length)) {
        DropOldest();
    }
    Append(event);
    lock.unlock();
    changed_.WakeOne();
    return 0;
}

const plenx_event* EventQueue::Next(std::uint32_t milliseconds) {
    std::unique_lock<Mutex> lock(mutex_);
    changed_.Wait(lock, milliseconds, [&] { return oldest_ != nullptr || state_ != State::kOpen; });
    if (state_ == State::kClosed) {
        throw Refusal{PLENX_E_HANDLE, "queue", "was closed"};
    }
    if (state_ == State::kCancelled) {
        throw Refusal{PLENX_E_CANCELLED, "queue", "was cancelled"};
    }
    return oldest_ != nullptr ? &RemoveOldest()->shown : nullptr;
}

void EventQueue::SetLinkStatus(std::uint32_t service, std::string group, std::uint32_t link,
                               std::int32_t status) {
    const std::lock_guard<Mutex> lock(mutex_);
    linkStatus_[Link(service, link, std::move(group))] = status;
}

void* EventQueue::WaitHandle() noexcept {
    const std::lock_guard<Mutex> lock(mutex_);
    return waitEvent_.Handle(oldest_ != nullptr || state_ != State::kOpen);
}

void EventQueue::Cancel() noexcept {
    End(State::kCancelled);
}

// Setting the wait event also wakes the threads that wait for it, before its owner closes it.
void EventQueue::Close() noexcept {
    End(State::kClosed);
}

void EventQueue::AnswerLinkQuery(plenx_event& notification) {
    const std::lock_guard<Mutex> lock(mutex_);
    const auto answer = linkStatus_.find(
        LinkView(notification.service, static_cast<std::uint32_t>(notification.type),
                 std::string_view(notification.text, notification.text_length)));
    if (answer != linkStatus_.end()) {
        notification.value = answer->second;
    }
}

bool EventQueue::Fits(std::size_t length) const noexcept {
    if (count_ >= capacity_) {
        return false;
    }
    return IsLarge(length) ? !holdsLarge_ : length <= kMostText - textSize_;
}

void EventQueue::Append(Event* event) noexcept {
    event->shown.lost = std::exchange(lost_, 0);
    (newest_ != nullptr ? newest_->next : oldest_) = event;
    newest_ = event;
    ++count_;
    if (IsLarge(event->shown.text_length)) {
        holdsLarge_ = true;
    } else {
        textSize_ += event->shown.text_length;
    }
    if (count_ == 1) {
        waitEvent_.Set();
    }
}

Event* EventQueue::RemoveOldest() noexcept {
    Event* const event = oldest_;
    oldest_ = event->next;
    --count_;
    if (IsLarge(event->shown.text_length)) {
        holdsLarge_ = false;
    } else {
        textSize_ -= event->shown.text_length;
    }
    if (oldest_ == nullptr) {
        newest_ = nullptr;
        waitEvent_.Reset();
    }
    return event;
}

// The event that follows counts the dropped one, whether it is here already or not.
void EventQueue::DropOldest() noexcept {
    Event* const event = RemoveOldest();
    (oldest_ != nullptr ? oldest_->shown.lost : lost_) += event->shown.lost + 1;
    Event::Free(event);
}

void EventQueue::DropAll() noexcept {
    while (oldest_ != nullptr) {
        Event::Free(RemoveOldest());
    }
}

void EventQueue::End(State state) noexcept {
    {
        const std::lock_guard<Mutex> lock(mutex_);
        state_ = std::max(state_.load(), state);  // a closed queue stays closed
        DropAll();
        waitEvent_.Set();
    }
    changed_.WakeAll();
}

}  // namespace PlenxC
