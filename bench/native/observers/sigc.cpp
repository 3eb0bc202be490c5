// Measures libsigc++. It takes no lock, so there is one around it. An accumulator looks at the
// codes.

#include <sigc++/sigc++.h>

#include <mutex>

#include "observers/fan_out_work.h"

namespace bench {
namespace {

struct ReportCodes {
    using result_type = void;

    template <class Iterator>
    void operator()(Iterator first, Iterator last) const {
        for (; first != last; ++first) {
            const int code = *first;
            if (code != 0) {
                ReportCode(code);
            }
        }
    }
};

class Sigc {
public:
    explicit Sigc(Observers& observers) {
        for (CountingObserver& observer : observers) {
            signal_.connect(sigc::mem_fun(&observer, &CountingObserver::NotifyConnect));
        }
    }

    void Notify() {
        const std::lock_guard<std::mutex> lock(mutex_);
        signal_.emit(DistributedFs::kPcService, GroupName());
    }

private:
    std::mutex mutex_;
    sigc::signal<int, DistributedFs::ServiceType, const std::string&>::accumulated<ReportCodes>
        signal_;
};

[[maybe_unused]] const int kRegistered = RegisterFanOut<Sigc>("sigc++");

}  // namespace
}  // namespace bench
