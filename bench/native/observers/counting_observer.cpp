// This is in a file of its own, so that no contender sees what an observer does.

#include "observers/fan_out_work.h"

namespace bench {

using DistributedFs::PLENXMessageType;
using DistributedFs::ServiceType;

int CountingObserver::NotifyConnect(ServiceType, const std::string&) {
    ++count;
    return 0;
}
int CountingObserver::SendLocalMessage(PLENXMessageType, unsigned int, const std::string&) {
    return 0;
}
int CountingObserver::NotifyDisconnect(ServiceType, const std::string&) {
    return 0;
}
int CountingObserver::NotifyReconnect(ServiceType, const std::string&) {
    return 0;
}
int CountingObserver::QueryLinkStatus(ServiceType, const std::string&, unsigned int,
                                      std::int32_t&) {
    return 0;
}
int CountingObserver::NotifyStatus(ServiceType, const std::string&, unsigned int, bool) {
    return 0;
}
int CountingObserver::NotifyError(int) {
    return 0;
}
int CountingObserver::NotifyDiskName(const std::string&) {
    return 0;
}

void ReportCode(int code) {
    benchmark::DoNotOptimize(code);
}

}  // namespace bench
