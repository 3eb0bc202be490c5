// An observer that turns every call into a line of text:
//
//     NotifyConnect(1, group)           NotifyStatus(1, group, 0, 1)
//     SendLocalMessage(7, 3, abc)       QueryLinkStatus(1, group, 0)
//
// Calls come from any thread. The function that takes the line must be ready for that.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_TEXT_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_TEXT_OBSERVER_H

#include <cstdint>
#include <string>

#include "plenxsdk/plenx_manager.h"

namespace PlenxTest {

class TextObserver : public DistributedFs::PLENXServiceObserver {
public:
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
    /// Returns the observer's result. It may throw.
    virtual int Take(const std::string& call) = 0;
    virtual std::int32_t AnswerLink(unsigned int linkType) = 0;
    /// Returns the form in which a string of the call stands in the line.
    virtual std::string Show(const std::string& text) const { return text; }
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_TEXT_OBSERVER_H
