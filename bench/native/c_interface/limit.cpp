// A mutex, a condition variable and a deque of events that hold their text.

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

#include "c_interface/event_work.h"

namespace bench {
namespace {

struct Event {
    std::uint32_t kind;
    std::uint32_t service;
    std::int32_t type;
    std::uint32_t length;
    std::int32_t value;
    std::string text;
};

class Limit {
public:
    void Push(const std::string& group) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            events_.push_back({10, 1, 0, 0, 0, group});
        }
        changed_.notify_one();
    }
    bool TakeOne() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [&] { return stopped_ || !events_.empty(); });
        if (stopped_) {
            return false;
        }
        const Event event = std::move(events_.front());
        events_.pop_front();
        lock.unlock();
        Escape(&event);
        return true;
    }
    void Stop() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            stopped_ = true;
        }
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Event> events_;
    bool stopped_ = false;
};

[[maybe_unused]] const int kRegistered = RegisterEvents<Limit>("limit");

}  // namespace
}  // namespace bench
