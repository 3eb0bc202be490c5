// The notifications that have come and that no expectation has used yet, in the order in which
// they came. Any thread may put; the thread that runs the commands takes and waits.

#ifndef PLENXKIT_HOST_INBOX_H
#define PLENXKIT_HOST_INBOX_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "host/notification.h"
#include "host/pattern.h"

namespace PlenxHost {

class Inbox {
public:
    /// The inbox keeps only this many of the latest notifications, so that its memory does not grow
    /// for ever in a long session.
    static constexpr std::size_t kMostKept = 10000;

    void Put(Notification notification);
    /// Takes the first notification that matches, and waits for it up to the given time.
    std::optional<Notification> Take(const Pattern& pattern, std::chrono::milliseconds limit);
    /// Does the same, but the wait also ends when the opposite notification has come.
    std::optional<Notification> TakeUnlessOpposite(const Pattern& pattern,
                                                   std::chrono::milliseconds limit);
    /// Waits for that time.
    void Pause(std::chrono::milliseconds span);
    void Clear();
    std::deque<Notification> Left() const;
    /// The first notification that is the opposite of the expected one.
    std::optional<Notification> OppositeOf(const Pattern& pattern) const;

    /// Ends every wait, now and from now on.
    void Interrupt();
    bool Interrupted() const;

private:
    template <class Condition>
    std::optional<Notification> TakeUnless(Condition givenUp, const Pattern& pattern,
                                           std::chrono::milliseconds limit);
    std::optional<Notification> TakeFirst(const Pattern& pattern);
    std::optional<Notification> FirstOpposite(const Pattern& pattern) const;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Notification> notifications_;
    bool interrupted_ = false;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_INBOX_H
