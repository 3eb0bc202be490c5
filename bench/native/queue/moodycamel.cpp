// Measures moodycamel's blocking queue with packaged tasks.

#include <blockingconcurrentqueue.h>

#include <future>
#include <thread>

#include "queue/queue_work.h"

namespace bench {
namespace {

class Moodycamel {
public:
    ~Moodycamel() {
        stop_ = true;
        Post([] {});
        worker_.join();
    }
    void Enqueue(Target& target, const std::string& first, const std::string& second) {
        // Named captures make copies that are not const; a move would copy a const one.
        Post([&target, first = first, second = second] { target.Run(first, second); });
    }
    template <class Function>
    void Post(Function function) {
        std::packaged_task<void()> task(std::move(function));
        static_cast<void>(task.get_future());
        tasks_.enqueue(std::move(task));
    }

private:
    void Work() {
        while (!stop_) {
            std::packaged_task<void()> task;
            tasks_.wait_dequeue(task);
            task();
        }
    }

    moodycamel::BlockingConcurrentQueue<std::packaged_task<void()>> tasks_;
    std::atomic<bool> stop_{false};
    std::thread worker_{[this] { Work(); }};
};

[[maybe_unused]] const int kRegistered = RegisterQueue<Moodycamel>("moodycamel");

}  // namespace
}  // namespace bench
