// An observer that counts what it hears, each call as a line of text:
//
//     NotifyConnect(1, group)        QueryLinkStatus(1, group, 0)
//
// A long text is shown by its size and a hash.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H

#include <map>
#include <mutex>
#include <string>

#include "plenxsdk/plenx_manager.h"

namespace PlenxTest {

/// How often each call came.
using Tally = std::map<std::string, int>;

/// What is in one and not, or not as often, in the other: a line each, the first few of them.
/// Empty: nothing.
std::string Difference(const Tally& expected, const Tally& heard);

class TallyObserver : public DistributedFs::PLENXServiceObserver {
public:
    /// What has come so far.
    Tally Heard() const;
    int Times(const std::string& call) const;
    /// The same, and forgets it.
    Tally TakeHeard();

    int SendLocalMessage(DistributedFs::PLENXMessageType type, unsigned int length,
                         const std::string& message) override;
    int NotifyConnect(DistributedFs::ServiceType service, const std::string& group) override;
    int NotifyDisconnect(DistributedFs::ServiceType service, const std::string& group) override;
    int NotifyReconnect(DistributedFs::ServiceType service, const std::string& group) override;
    int QueryLinkStatus(DistributedFs::ServiceType service, const std::string& group,
                        unsigned int linkType, std::int32_t& status) override;
    int NotifyStatus(DistributedFs::ServiceType service, const std::string& group,
                     unsigned int kind, bool value) override;
    int NotifyError(int code) override;
    int NotifyDiskName(const std::string& name) override;

private:
    int Count(const std::string& call);

    mutable std::mutex mutex_;
    Tally heard_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H
