// The observers, and the fan-out of each notification to all of them.

#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

#include "common/log.h"
#include "common/process_life.h"
#include "plenxsdk/plenx_manager.h"

namespace DistributedFs {
namespace {

struct FanOutTexts {
    std::string_view function;
    std::string_view begin;
    std::string_view error;
    std::string_view end;
};

constexpr FanOutTexts kSendLocalMessage{
    "DistributedFs::PLENXManager::SendLocalMessage",
    "[PLENXSDK] plenx manager send local message begin",
    "[PLENXSDK] plenx manager send local message error ",
    "[PLENXSDK] plenx manager send local message end",
};
constexpr FanOutTexts kNotifyConnect{
    "DistributedFs::PLENXManager::NotifyConnect",
    "[PLENXSDK] plenx manager notify connect begin",
    "[PLENXSDK] plenx manager notify connect error ",
    "[PLENXSDK] plenx manager notify connect end",
};
constexpr FanOutTexts kNotifyDisconnect{
    "DistributedFs::PLENXManager::NotifyDisconnect",
    "[PLENXSDK] plenx manager notify disconnect begin",
    "[PLENXSDK] plenx manager notify disconnect error ",
    "[PLENXSDK] plenx manager notify disconnect end",
};
constexpr FanOutTexts kNotifyReconnect{
    "DistributedFs::PLENXManager::NotifyReconnect",
    "[PLENXSDK] plenx manager notify reconnect begin",
    "[PLENXSDK] plenx manager notify reconnect error ",
    "[PLENXSDK] plenx manager notify reconnect end",
};
constexpr FanOutTexts kQueryLinkStatus{
    "DistributedFs::PLENXManager::QueryLinkStatus",
    "[PLENXSDK] plenx manager  query link status begin",
    "[PLENXSDK] plenx manager  query link status error ",
    "[PLENXSDK] plenx manager  query link status end",
};
constexpr FanOutTexts kNotifyStatus{
    "DistributedFs::PLENXManager::NotifyStatus",
    "[PLENXSDK] plenx manager notify status begin",
    "[PLENXSDK] plenx manager notify status error ",
    "[PLENXSDK] plenx manager notify status end",
};
constexpr FanOutTexts kNotifyError{
    "DistributedFs::PLENXManager::NotifyError",
    "[PLENXSDK] plenx manager notify error begin",
    "[PLENXSDK] plenx manager notify error code error ",
    "[PLENXSDK] plenx manager notify error end",
};
constexpr FanOutTexts kNotifyDiskName{
    "DistributedFs::PLENXManager::NotifyDiskName",
    "[PLENXSDK] plenx manager notify diskName begin",
    "[PLENXSDK] plenx manager notify disk name error ",
    "[PLENXSDK] plenx manager notify diskName end",
};

// The lock is held while observers run: that is what makes it safe to delete one once it is
// unregistered. An observer's exception passes through and skips what follows.
template <class Slot>
void FanOut(std::mutex& observerMutex, const std::vector<PLENXServiceObserver*>& observers,
            const FanOutTexts& texts, Slot slot) {
    const std::lock_guard<std::mutex> lock(observerMutex);
    LogInfo(texts.function, texts.begin);
    for (PLENXServiceObserver* const observer : observers) {
        if (observer == nullptr) {
            continue;  // registering it is allowed
        }
        const int code = slot(*observer);
        if (code != 0) {
            LogError(texts.function, texts.error, code);
        }
    }
    LogInfo(texts.function, texts.end);
}

}  // namespace

void PLENXManager::RegisterPLENXServiceObserver(PLENXServiceObserver* observer) {
    constexpr std::string_view kFunction =
        "DistributedFs::PLENXManager::RegisterPLENXServiceObserver";
    if (ProcessIsEnding()) {
        return;
    }
    LogInfo(kFunction, "[PLENXSDK] plenx manager register observer invoked");
    const std::lock_guard<std::mutex> lock(observerMutex);
    LogInfo(kFunction, "[PLENXSDK] plenx manager register observer begin");
    const auto place =
        std::lower_bound(observers.begin(), observers.end(), observer, std::less<>());
    if (place == observers.end() || *place != observer) {
        observers.insert(place, observer);
    }
    LogInfo(kFunction, "[PLENXSDK] plenx manager register observer end");
}

void PLENXManager::UnregisterPLENXServiceObserver(PLENXServiceObserver* observer) {
    constexpr std::string_view kFunction =
        "DistributedFs::PLENXManager::UnregisterPLENXServiceObserver";
    if (ProcessIsEnding()) {
        return;
    }
    LogInfo(kFunction, "[PLENXSDK] plenx manager unregister observer invoked");
    const std::lock_guard<std::mutex> lock(observerMutex);
    LogInfo(kFunction, "[PLENXSDK] plenx manager unregister observer begin");
    observers.erase(std::remove(observers.begin(), observers.end(), observer), observers.end());
    if (observers.empty()) {
        observers.shrink_to_fit();
    }
    LogInfo(kFunction, "[PLENXSDK] plenx manager unregister observer end");
}

void PLENXManager::SendLocalMessage(PLENXMessageType msgType, unsigned int msgLen,
                                    const std::string& message) {
    LogInfo(kSendLocalMessage.function, "[PLENXSDK] plenx manager send local message invoked");
    FanOut(observerMutex, observers, kSendLocalMessage, [&](PLENXServiceObserver& observer) {
        return observer.SendLocalMessage(msgType, msgLen, message);
    });
}

void PLENXManager::NotifyConnect(ServiceType svcType, const std::string& first) {
    LogInfo(kNotifyConnect.function,
            "[PLENXSDK] plenx manager notify connect invoked svcType:", svcType);
    FanOut(observerMutex, observers, kNotifyConnect,
           [&](PLENXServiceObserver& observer) { return observer.NotifyConnect(svcType, first); });
}

void PLENXManager::NotifyDisconnect(ServiceType svcType, const std::string& first) {
    LogInfo(kNotifyDisconnect.function,
            "[PLENXSDK] plenx manager notify disconnect invoked svcType:", svcType);
    FanOut(observerMutex, observers, kNotifyDisconnect, [&](PLENXServiceObserver& observer) {
        return observer.NotifyDisconnect(svcType, first);
    });
}

void PLENXManager::NotifyReconnect(ServiceType svcType, const std::string& first) {
    LogInfo(kNotifyReconnect.function,
            "[PLENXSDK] plenx manager notify reconnect invoked svcType:", svcType);
    FanOut(observerMutex, observers, kNotifyReconnect, [&](PLENXServiceObserver& observer) {
        return observer.NotifyReconnect(svcType, first);
    });
}

void PLENXManager::QueryLinkStatus(ServiceType svcType, const std::string& first,
                                   unsigned int linkType, std::int32_t& linkStatus) {
    LogInfo(kQueryLinkStatus.function,
            "[PLENXSDK] plenx manager query link status invoked svcType:", svcType,
            " linkType:", linkType);
    FanOut(observerMutex, observers, kQueryLinkStatus, [&](PLENXServiceObserver& observer) {
        return observer.QueryLinkStatus(svcType, first, linkType, linkStatus);
    });
}

int PLENXManager::NotifyStatus(ServiceType svcType, const std::string& first, unsigned int sttsType,
                               bool value) {
    LogInfo(kNotifyStatus.function,
            "[PLENXSDK] plenx manager notify status invoked svcType:", svcType,
            " sttsType:", sttsType, " value:", value);
    FanOut(observerMutex, observers, kNotifyStatus, [&](PLENXServiceObserver& observer) {
        return observer.NotifyStatus(svcType, first, sttsType, value);
    });
    return 0;
}

void PLENXManager::NotifyError(int errCode) {
    LogInfo(kNotifyError.function,
            "[PLENXSDK] plenx manager notify error invoked errCode:", errCode);
    FanOut(observerMutex, observers, kNotifyError,
           [&](PLENXServiceObserver& observer) { return observer.NotifyError(errCode); });
}

void PLENXManager::NotifyDiskName(const std::string& diskName) {
    LogInfo(kNotifyDiskName.function,
            "[PLENXSDK] plenx manager notify diskName invoked diskName:", diskName);
    FanOut(observerMutex, observers, kNotifyDiskName,
           [&](PLENXServiceObserver& observer) { return observer.NotifyDiskName(diskName); });
}

}  // namespace DistributedFs
