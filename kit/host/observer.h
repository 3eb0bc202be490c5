// The host's observer: prints each notification as it comes, keeps it for the script's
// expectations, and reacts as the commands have set it.
//
// The library calls it on threads of its own, one call at a time. It does not call the
// library. It must stay alive until it has been unregistered.

#ifndef PLENXKIT_HOST_OBSERVER_H
#define PLENXKIT_HOST_OBSERVER_H

#include <string>
#include <vector>

#include "host/behaviour.h"
#include "host/inbox.h"
#include "host/output.h"
#include "plenxsdk/plenx_manager.h"

namespace PlenxHost {

class HostObserver : public DistributedFs::PLENXServiceObserver {
public:
    HostObserver(std::string name, Behaviour& behaviour, Inbox& inbox, Output& output)
        : name_(std::move(name)), behaviour_(behaviour), inbox_(inbox), output_(output) {}

    int SendLocalMessage(DistributedFs::PLENXMessageType msgType, unsigned int msgLen,
                         const std::string& message) override;
    int NotifyConnect(DistributedFs::ServiceType svcType, const std::string& first) override;
    int NotifyDisconnect(DistributedFs::ServiceType svcType, const std::string& first) override;
    int NotifyReconnect(DistributedFs::ServiceType svcType, const std::string& first) override;
    int QueryLinkStatus(DistributedFs::ServiceType svcType, const std::string& first,
                        unsigned int linkType, std::int32_t& linkStatus) override;
    int NotifyStatus(DistributedFs::ServiceType svcType, const std::string& first,
                     unsigned int sttsType, bool value) override;
    int NotifyError(int errCode) override;
    int NotifyDiskName(const std::string& diskName) override;

private:
    int Take(const char* name, std::vector<Field> fields);
    int React(const Reaction& reaction, const char* name, std::vector<Field> fields);

    const std::string name_;
    Behaviour& behaviour_;
    Inbox& inbox_;
    Output& output_;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_OBSERVER_H
