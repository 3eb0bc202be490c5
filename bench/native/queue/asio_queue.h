// Uses Boost.Asio: each job is a packaged task that is posted to a context of one thread.

#ifndef PLENXSDK_BENCH_QUEUE_ASIO_QUEUE_H
#define PLENXSDK_BENCH_QUEUE_ASIO_QUEUE_H

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <future>
#include <thread>
#include <utility>

namespace bench {

class AsioQueue {
public:
    ~AsioQueue() {
        context_.stop();
        worker_.join();
    }
    template <class Function>
    std::future<void> PostTask(Function function) {
        std::packaged_task<void()> task(std::move(function));
        std::future<void> future = task.get_future();
        boost::asio::post(context_, std::move(task));
        return future;
    }
    template <class Function>
    void Post(Function function) {
        PostTask(std::move(function));
    }

private:
    // Asio's own documents give this hint for one thread. Other threads can still post safely.
    boost::asio::io_context context_{1};
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> keep_{
        context_.get_executor()};
    std::thread worker_{[this] { context_.run(); }};
};

}  // namespace bench

#endif  // PLENXSDK_BENCH_QUEUE_ASIO_QUEUE_H
