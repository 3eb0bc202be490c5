#include "judge/inbox.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "wire/catalog.h"

namespace PlenxJudge {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kBetweenLooks(20);
constexpr milliseconds kSlowAnswer(50);
constexpr milliseconds kLongestHold(10000);
constexpr std::uint32_t kFault = 1726;  // as when an observer throws
constexpr std::int32_t kRefusal = 20;   // a message that cannot be read
constexpr std::int32_t kReplySize = 24;
constexpr std::int32_t kLinkStatus = 7;

ManagerAnswer Honest(std::int32_t id) {
    ManagerAnswer answer;
    answer.reply = PlenxWire::Encode({id == PlenxWire::kLinkTypeQuery ? kLinkStatus : 0});
    answer.size = static_cast<std::int32_t>(answer.reply.size());
    return answer;
}

ManagerAnswer AnswerIn(Manner manner, std::int32_t id) {
    ManagerAnswer answer;
    switch (manner) {
    case Manner::kRefusing:
        answer.result = kRefusal;
        return answer;
    case Manner::kRaising:
        answer.fault = kFault;
        return answer;
    case Manner::kHollow:
        answer.size = kReplySize;
        return answer;
    case Manner::kHonest:
    case Manner::kSlow:
    case Manner::kHeld:
        break;
    }
    return Honest(id);
}

}  // namespace

ManagerAnswer Inbox::Take(std::int32_t id, PlenxWire::Bytes message) {
    std::unique_lock<std::mutex> lock(mutex_);
    received_.push_back({id, std::move(message), underWay_ > 0});
    ++underWay_;
    changed_.notify_all();
    const Manner manner = manner_;
    if (manner == Manner::kSlow || manner == Manner::kHeld) {
        changed_.wait_for(lock, manner == Manner::kSlow ? kSlowAnswer : kLongestHold,
                          [&] { return manner_ != manner; });
    }
    --underWay_;
    return AnswerIn(manner, id);
}

void Inbox::Behave(Manner manner) {
    const std::lock_guard<std::mutex> lock(mutex_);
    manner_ = manner;
    changed_.notify_all();
}

std::size_t Inbox::Count() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return received_.size();
}

std::vector<Notification> Inbox::Since(std::size_t count) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto first = static_cast<std::ptrdiff_t>(std::min(count, received_.size()));
    return {received_.begin() + first, received_.end()};
}

bool Inbox::WaitForMoreThan(std::size_t count, milliseconds longest) const {
    const auto end = steady_clock::now() + longest;
    std::unique_lock<std::mutex> lock(mutex_);
    while (received_.size() <= count && steady_clock::now() < end && !interruption_.IsRaised()) {
        changed_.wait_until(lock, std::min(end, steady_clock::now() + kBetweenLooks));
    }
    return received_.size() > count;
}

void Inbox::WaitForQuiet(milliseconds quiet, milliseconds longest) const {
    const auto end = steady_clock::now() + longest;
    std::size_t count = Count();
    while (steady_clock::now() < end && WaitForMoreThan(count, quiet) &&
           !interruption_.IsRaised()) {
        count = Count();
    }
}

}  // namespace PlenxJudge
