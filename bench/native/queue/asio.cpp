#include "queue/asio_queue.h"
#include "queue/queue_work.h"

namespace bench {
namespace {

class Asio : public AsioQueue {
public:
    void Enqueue(Target& target, const std::string& first, const std::string& second) {
        // Named anew, so that the copies are no constants, which a move would copy.
        PostTask([&target, first = first, second = second] { target.Run(first, second); });
    }
};

[[maybe_unused]] const int registered = RegisterQueue<Asio>("Boost.Asio");

}  // namespace
}  // namespace bench
