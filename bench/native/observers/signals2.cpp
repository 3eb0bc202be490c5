// Measures Boost.Signals2, which brings its own locks. A combiner looks at the codes.

#include <boost/signals2.hpp>

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

class Signals2 {
public:
    explicit Signals2(Observers& observers) {
        for (CountingObserver& observer : observers) {
            signal_.connect(
                [&observer](DistributedFs::ServiceType svcType, const std::string& first) {
                    return observer.NotifyConnect(svcType, first);
                });
        }
    }

    void Notify() { signal_(DistributedFs::kPcService, GroupName()); }

private:
    boost::signals2::signal<int(DistributedFs::ServiceType, const std::string&), ReportCodes>
        signal_;
};

[[maybe_unused]] const int kRegistered = RegisterFanOut<Signals2>("Boost.Signals2");

}  // namespace
}  // namespace bench
