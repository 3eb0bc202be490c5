// Poco's event, with its own lock. A delegate returns nothing, so the code is looked at in it.

#include <Poco/BasicEvent.h>
#include <Poco/Delegate.h>

#include "observers/fan_out_work.h"

namespace bench {
namespace {

struct Connected {
    DistributedFs::ServiceType svcType;
    const std::string& first;
};

class Target {
public:
    explicit Target(CountingObserver& observer) : observer_(observer) {}

    void OnConnect(const void*, Connected& event) {
        const int code = observer_.NotifyConnect(event.svcType, event.first);
        if (code != 0) {
            ReportCode(code);
        }
    }

private:
    CountingObserver& observer_;
};

class PocoEvent {
public:
    explicit PocoEvent(Observers& observers) {
        targets_.reserve(observers.size());
        for (CountingObserver& observer : observers) {
            targets_.emplace_back(observer);
            event_ += Poco::delegate(&targets_.back(), &Target::OnConnect);
        }
    }

    void Notify() {
        Connected connected{DistributedFs::kPcService, GroupName()};
        event_.notify(this, connected);
    }

private:
    std::vector<Target> targets_;
    Poco::BasicEvent<Connected> event_;
};

[[maybe_unused]] const int registered = RegisterFanOut<PocoEvent>("Poco");

}  // namespace
}  // namespace bench
