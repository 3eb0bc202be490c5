#include "queue/asio_queue.h"
#include "queue/queue_work.h"

namespace bench {
namespace {

class Asio : public AsioQueue {
public:
    void Enqueue(Target& target, const std::string& first, const std::string& second) {
        // Named captures make copies that are not const; a move would copy a const one.
        PostTask([&target, first = first, second = second] { target.Run(first, second); });
    }
};

[[maybe_unused]] const int kRegistered = RegisterQueue<Asio>("Boost.Asio");

}  // namespace
}  // namespace bench
