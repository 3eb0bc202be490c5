// Calls the library's endpoint "Manager", one notification after the other, on a thread of its
// own: while the library waits for the answer to a request it may not be called from there.
//
// The library does not wait for its own listener, so an absent endpoint is tried again for
// some seconds. Enqueue may be called from any thread; Stop from one.

#ifndef PLENXSERVICE_NOTIFICATION_SENDER_H
#define PLENXSERVICE_NOTIFICATION_SENDER_H

#include <windows.h>

#include <map>
#include <mutex>

#include "handle.h"
#include "notification.h"
#include "service_log.h"

namespace PlenxService {

class NotificationSender {
public:
    explicit NotificationSender(ServiceLog& log);
    ~NotificationSender();
    NotificationSender(const NotificationSender&) = delete;
    NotificationSender& operator=(const NotificationSender&) = delete;

    /// In their order, so many milliseconds from now.
    void Enqueue(const Notifications& notifications, DWORD delay = 0);

    /// Sends what is due, each once, and ends the thread.
    /// @return false when a call did not come back in time; the thread is then still in it,
    ///         and nothing but the end of the process gets it out.
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
    std::multimap<ULONGLONG, Notification> queue_;  // by the tick at which they are due
    const Handle queued_;                           // auto-reset: something has been queued
    const Handle stop_;
    Handle thread_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_NOTIFICATION_SENDER_H
