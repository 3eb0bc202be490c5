#include "soak/outcome_book.h"

#include <utility>

namespace PlenxSoak {
namespace {

bool IsSame(const Outcome& left, const Outcome& right) {
    return left.service == right.service && left.kind == right.kind && left.group == right.group;
}

std::string Text(const Outcome& outcome) {
    return "NotifyStatus(" + std::to_string(outcome.service) + ", " + outcome.group.substr(0, 40) +
           ", " + std::to_string(outcome.kind) + ")";
}

}  // namespace

void OutcomeBook::Expect(Outcome outcome, Promise promise) {
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_.push_back({std::move(outcome), promise});
    certain_ += promise == kCertain ? 1 : 0;
}

bool OutcomeBook::Take(const Outcome& outcome) {
    const std::lock_guard<std::mutex> lock(mutex_);
    while (!entries_.empty()) {
        const bool found = IsSame(entries_.front().outcome, outcome);
        const bool certain = entries_.front().promise == kCertain;
        if (certain && !found) {
            return false;
        }
        entries_.pop_front();
        if (certain && --certain_ == 0) {
            taken_.notify_all();
        }
        if (found) {
            return true;
        }
    }
    return false;
}

bool OutcomeBook::WaitForAll(std::chrono::milliseconds limit) {
    std::unique_lock<std::mutex> lock(mutex_);
    return taken_.wait_for(lock, limit, [this] { return certain_ == 0; });
}

std::string OutcomeBook::Missing() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string text;
    for (const Entry& entry : entries_) {
        text += (entry.promise == kCertain ? "  missing  " : "  possible ") + Text(entry.outcome) +
                "\n";
    }
    return text;
}

}  // namespace PlenxSoak
