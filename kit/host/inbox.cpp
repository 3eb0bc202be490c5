#include "host/inbox.h"

#include <algorithm>
#include <utility>

namespace PlenxHost {

void Inbox::Put(Notification notification) {
    const std::lock_guard<std::mutex> lock(mutex_);
    notifications_.push_back(std::move(notification));
    if (notifications_.size() > kMostKept) {
        notifications_.pop_front();
    }
    changed_.notify_all();
}

std::optional<Notification> Inbox::Take(const Pattern& pattern, std::chrono::milliseconds limit) {
    return TakeUnless([] { return false; }, pattern, limit);
}

std::optional<Notification> Inbox::TakeUnlessOpposite(const Pattern& pattern,
                                                      std::chrono::milliseconds limit) {
    return TakeUnless([&] { return FirstOpposite(pattern).has_value(); }, pattern, limit);
}

template <class Condition>
std::optional<Notification> Inbox::TakeUnless(Condition givenUp, const Pattern& pattern,
                                              std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock<std::mutex> lock(mutex_);
    std::optional<Notification> found;
    changed_.wait_until(lock, deadline, [&] {
        found = TakeFirst(pattern);
        return found.has_value() || interrupted_ || givenUp();
    });
    return found;
}

void Inbox::Pause(std::chrono::milliseconds span) {
    const auto deadline = std::chrono::steady_clock::now() + span;
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait_until(lock, deadline, [&] { return interrupted_; });
}

void Inbox::Clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    notifications_.clear();
}

std::deque<Notification> Inbox::Left() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return notifications_;
}

std::optional<Notification> Inbox::OppositeOf(const Pattern& pattern) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return FirstOpposite(pattern);
}

void Inbox::Interrupt() {
    const std::lock_guard<std::mutex> lock(mutex_);
    interrupted_ = true;
    changed_.notify_all();
}

bool Inbox::Interrupted() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return interrupted_;
}

std::optional<Notification> Inbox::TakeFirst(const Pattern& pattern) {
    const auto first = std::find_if(
        notifications_.begin(), notifications_.end(),
        [&](const Notification& notification) { return pattern.Matches(notification); });
    if (first == notifications_.end()) {
        return std::nullopt;
    }
    Notification taken = std::move(*first);
    notifications_.erase(first);
    return taken;
}

std::optional<Notification> Inbox::FirstOpposite(const Pattern& pattern) const {
    const auto first = std::find_if(
        notifications_.begin(), notifications_.end(),
        [&](const Notification& notification) { return pattern.IsOpposite(notification); });
    return first == notifications_.end() ? std::nullopt : std::optional<Notification>(*first);
}

}  // namespace PlenxHost
