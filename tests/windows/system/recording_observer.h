// An observer that writes down every call as a line of text:
//
//     NotifyConnect(1, group)           NotifyStatus(1, group, 0, 1)
//     SendLocalMessage(7, 3, abc)       QueryLinkStatus(1, group, 0)
//
// and then behaves as it was told. Calls come from any thread.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_RECORDING_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_RECORDING_OBSERVER_H

#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "plenxsdk/plenx_manager.h"

namespace PlenxTest {

class RecordingObserver : public DistributedFs::PLENXServiceObserver {
public:
    /// Runs after the call was written down; its result is the observer's. May throw.
    using Behaviour = std::function<int(const std::string& call)>;
    void Behave(Behaviour behaviour);

    std::atomic<std::int32_t> linkStatus{0};

    /// All calls so far; those of one thread; those of all others.
    std::vector<std::string> Calls() const;
    std::vector<std::string> CallsOn(DWORD thread) const;
    std::vector<std::string> CallsNotOn(DWORD thread) const;

    /// Waits until the call has come at least so often. @return false when it has not.
    bool WaitFor(const std::string& call, int times = 1, DWORD milliseconds = 15000) const;

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
    struct Call {
        std::string text;
        DWORD thread;
    };

    int Take(const std::string& call);
    template <class Condition>
    std::vector<std::string> Texts(Condition condition) const;

    mutable std::mutex mutex_;
    std::vector<Call> calls_;
    Behaviour behaviour_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_RECORDING_OBSERVER_H
