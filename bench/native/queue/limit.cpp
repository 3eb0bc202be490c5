#include "queue/limit_queue.h"
#include "queue/queue_work.h"

namespace bench {
namespace {

class Limit : public LimitQueue {
public:
    void Enqueue(Target& target, const std::string& first, const std::string& second) {
        // Named captures make copies that are not const; a move would copy a const one.
        Post([&target, first = first, second = second] { target.Run(first, second); });
    }
};

[[maybe_unused]] const int kRegistered = RegisterQueue<Limit>("limit");

}  // namespace
}  // namespace bench
