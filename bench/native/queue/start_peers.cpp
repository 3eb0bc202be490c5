// Makes the same call of Boost.Asio with a packaged task and a line of spdlog that is discarded,
// and of the least queue with a line of snprintf.

#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

#include <cstdio>
#include <memory>

#include "queue/asio_queue.h"
#include "queue/limit_queue.h"
#include "queue/start_work.h"

namespace bench {
namespace {

constexpr int kRefused = 26;
constexpr char kFunction[] = "DistributedFs::PLENXManager::Start";

// The job calls this member function with the arguments of the call.
class Engine {
public:
    void Start(std::uint32_t svcType, const std::string& first, const std::string& second) {
        if (svcType == noService) {
            target_.Run(first, second);
        }
    }

private:
    Target target_;
};

template <class Queue, class Log>
class Peer {
public:
    void Occupy() { bench::Occupy(queue_, gate_); }
    void Release() { gate_.Open(); }
    __attribute__((noinline)) int Start(std::uint32_t svcType, const std::string& first,
                                        const std::string& second) {
        if (first.empty() || second.empty()) {
            return kRefused;
        }
        log_.Write(svcType);
        queue_.Post([this, svcType, first = first, second = second] {
            engine_.Start(svcType, first, second);
        });
        return 0;
    }

private:
    Engine engine_;
    Gate gate_;
    Log log_;
    Queue queue_;
};

class SpdlogLine {
public:
    void Write(std::uint32_t svcType) {
        logger_.info("[PLENXSDK] plenx manager start service ({}) is pushed into thread pool({})",
                     svcType, kFunction);
    }

private:
    spdlog::logger logger_{"bench", std::make_shared<spdlog::sinks::null_sink_st>()};
};

class PrintedLine {
public:
    void Write(std::uint32_t svcType) {
        char line[256];
        std::snprintf(line, sizeof(line),
                      "[PLENXSDK] plenx manager start service (%u) is pushed into thread pool(%s)",
                      svcType, kFunction);
        Escape(line);
    }
};

[[maybe_unused]] const int kRegistered =
    RegisterStart<Peer<AsioQueue, SpdlogLine>>("asio, spdlog") +
    RegisterStart<Peer<LimitQueue, PrintedLine>>("limit");

}  // namespace
}  // namespace bench
