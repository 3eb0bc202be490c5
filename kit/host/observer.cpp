#include "host/observer.h"

#include <stdexcept>
#include <utility>

namespace PlenxHost {

using DistributedFs::PLENXMessageType;
using DistributedFs::ServiceType;

int HostObserver::SendLocalMessage(PLENXMessageType msgType, unsigned int msgLen,
                                   const std::string& message) {
    return Take("SendLocalMessage", {{"msgType", std::int64_t{msgType}},
                                     {"msgLen", std::int64_t{msgLen}},
                                     {"message", message}});
}

int HostObserver::NotifyConnect(ServiceType svcType, const std::string& first) {
    return Take("NotifyConnect", {{"svcType", std::int64_t{svcType}}, {"first", first}});
}

int HostObserver::NotifyDisconnect(ServiceType svcType, const std::string& first) {
    return Take("NotifyDisconnect", {{"svcType", std::int64_t{svcType}}, {"first", first}});
}

int HostObserver::NotifyReconnect(ServiceType svcType, const std::string& first) {
    return Take("NotifyReconnect", {{"svcType", std::int64_t{svcType}}, {"first", first}});
}

int HostObserver::QueryLinkStatus(ServiceType svcType, const std::string& first,
                                  unsigned int linkType, std::int32_t& linkStatus) {
    const Reaction reaction = behaviour_.Next();
    const std::int32_t before = linkStatus;
    linkStatus = reaction.linkStatus.value_or(before);
    return React(reaction, "QueryLinkStatus",
                 {{"svcType", std::int64_t{svcType}},
                  {"first", first},
                  {"linkType", std::int64_t{linkType}},
                  {"linkStatus", std::int64_t{before}},
                  {"answer", std::int64_t{linkStatus}}});
}

int HostObserver::NotifyStatus(ServiceType svcType, const std::string& first, unsigned int sttsType,
                               bool value) {
    return Take("NotifyStatus", {{"svcType", std::int64_t{svcType}},
                                 {"first", first},
                                 {"sttsType", std::int64_t{sttsType}},
                                 {"value", value}});
}

int HostObserver::NotifyError(int errCode) {
    return Take("NotifyError", {{"errCode", std::int64_t{errCode}}});
}

int HostObserver::NotifyDiskName(const std::string& diskName) {
    return Take("NotifyDiskName", {{"diskName", diskName}});
}

int HostObserver::Take(const char* name, std::vector<Field> fields) {
    return React(behaviour_.Next(), name, std::move(fields));
}

int HostObserver::React(const Reaction& reaction, const char* name, std::vector<Field> fields) {
    Notification notification{name, std::move(fields), name_};
    output_.Write(NotificationReport{notification, reaction.answer, reaction.throws});
    inbox_.Put(std::move(notification));
    behaviour_.Wait(reaction.delay);
    if (reaction.throws) {
        throw std::runtime_error("thrown by plenxkit because the script asked for it");
    }
    return reaction.answer;
}

}  // namespace PlenxHost
