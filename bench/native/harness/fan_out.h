// Gives access to PLENXManager's fan-out, which only the library's own parts may call. An explicit
// instantiation may name private members. So the benchmark calls the very function that the RPC
// server calls, and the product needs no extra access for it.

#ifndef PLENXSDK_BENCH_HARNESS_FAN_OUT_H
#define PLENXSDK_BENCH_HARNESS_FAN_OUT_H

#include <string>

#include "plenxsdk/plenx_manager.h"

namespace bench {

using NotifyConnectMember = void (DistributedFs::PLENXManager::*)(DistributedFs::ServiceType,
                                                                  const std::string&);
NotifyConnectMember FindNotifyConnect();

template <NotifyConnectMember member>
struct Opened {
    friend NotifyConnectMember FindNotifyConnect() { return member; }
};
template struct Opened<&DistributedFs::PLENXManager::NotifyConnect>;

inline void NotifyConnect(DistributedFs::ServiceType svcType, const std::string& first) {
    (DistributedFs::PLENXManager::GetInstance().*FindNotifyConnect())(svcType, first);
}

}  // namespace bench

#endif  // PLENXSDK_BENCH_HARNESS_FAN_OUT_H
