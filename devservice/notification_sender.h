// Calls the library's endpoint "Manager", one notification after the other, on a thread of its own.
// The thread of a request must not call, because the library waits for its answer.
//
// The library does not wait for its own listener, so this tries an absent endpoint again for some
// seconds. Any thread may call Enqueue, but only one thread may call Stop.

#ifndef PLENXSERVICE_NOTIFICATION_SENDER_H
#define PLENXSERVICE_NOTIFICATION_SENDER_H

#include <windows.h>

#include <map>
#include <mutex>

#include "notification.h"
#include "service_log.h"
#include "support/handle.h"

namespace PlenxService {

class NotificationSender {
public:
    explicit NotificationSender(ServiceLog& log);
    ~NotificationSender();
    NotificationSender(const NotificationSender&) = delete;
    NotificationSender& operator=(const NotificationSender&) = delete;

    /// Sends them in their order, after the delay in milliseconds.
    void Enqueue(const Notifications& notifications, DWORD delay = 0);

    /// Sends each notification that is due once, and ends the thread.
    /// @return false when a call did not come back in time. The thread is then still inside it, and
    ///         only the end of the process ends it.
    bool Stop(DWORD milliseconds);

private:
    struct Queued {
        ULONGLONG dueAt;
        Notification notification;
    };

    static DWORD WINAPI ThreadEntry(void* sender);
    void Work();
    bool Take(Queued& next);
    DWORD UntilNext();
    void Deliver(const Queued& queued);
    bool IsWorthAnotherTry(unsigned long status, const Queued& queued);

    ServiceLog& log_;
    std::mutex mutex_;
    std::multimap<ULONGLONG, Notification> queue_;  // the key is the tick at which they are due
    const PlenxSupport::Handle queued_;             // auto-reset; set when something was queued
    const PlenxSupport::Handle stop_;
    PlenxSupport::Handle thread_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_NOTIFICATION_SENDER_H
