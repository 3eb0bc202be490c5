// Does the least work: it takes a lock and makes a virtual call of each pointer in an array.

#include <mutex>

#include "observers/fan_out_work.h"

namespace bench {
namespace {

using DistributedFs::PLENXServiceObserver;

class Limit {
public:
    explicit Limit(Observers& observers) {
        for (CountingObserver& observer : observers) {
            observers_.push_back(&observer);
        }
    }

    void Notify() {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (PLENXServiceObserver* const observer : observers_) {
            const int code = observer->NotifyConnect(DistributedFs::kPcService, GroupName());
            if (code != 0) {
                ReportCode(code);
            }
        }
    }

private:
    std::mutex mutex_;
    std::vector<PLENXServiceObserver*> observers_;
};

[[maybe_unused]] const int kRegistered = RegisterFanOut<Limit>("limit");

}  // namespace
}  // namespace bench
