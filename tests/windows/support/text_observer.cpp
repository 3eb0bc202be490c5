#include "support/text_observer.h"

namespace PlenxTest {

using DistributedFs::PLENXMessageType;
using DistributedFs::ServiceType;

namespace {

std::string Text(const std::string& text) {
    return text;
}

template <class Number>
std::string Text(Number number) {
    return std::to_string(number);
}

template <class... Rest>
std::string CallText(const char* name, const Rest&... arguments) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + Text(arguments)), ...);
    return name + ("(" + list + ")");
}

}  // namespace

int TextObserver::SendLocalMessage(PLENXMessageType type, unsigned int length,
                                   const std::string& message) {
    return Take(CallText("SendLocalMessage", type, length, Show(message)));
}

int TextObserver::NotifyConnect(ServiceType service, const std::string& group) {
    return Take(CallText("NotifyConnect", service, Show(group)));
}

int TextObserver::NotifyDisconnect(ServiceType service, const std::string& group) {
    return Take(CallText("NotifyDisconnect", service, Show(group)));
}

int TextObserver::NotifyReconnect(ServiceType service, const std::string& group) {
    return Take(CallText("NotifyReconnect", service, Show(group)));
}

int TextObserver::QueryLinkStatus(ServiceType service, const std::string& group,
                                  unsigned int linkType, std::int32_t& status) {
    status = AnswerLink(linkType);
    return Take(CallText("QueryLinkStatus", service, Show(group), linkType));
}

int TextObserver::NotifyStatus(ServiceType service, const std::string& group, unsigned int kind,
                               bool value) {
    return Take(CallText("NotifyStatus", service, Show(group), kind, value));
}

int TextObserver::NotifyError(int code) {
    return Take(CallText("NotifyError", code));
}

int TextObserver::NotifyDiskName(const std::string& name) {
    return Take(CallText("NotifyDiskName", Show(name)));
}

}  // namespace PlenxTest
