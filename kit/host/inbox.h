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
    /// The inbox keeps only that many, the latest ones, so that a long session does not grow for
    /// ever.
    static constexpr std::size_t kMostKept = 10000;

    void Put(Notification notification);
    /// Takes the first that matches, waiting for it up to the given time.
    std::optional<Notification> Take(const Pattern& pattern, std::chrono::milliseconds limit);
    /// The same, but the wait also ends when its opposite has come.
    std::optional<Notification> TakeUnlessOpposite(const Pattern& pattern,
                                                   std::chrono::milliseconds limit);
    /// Waits that long.
    void Pause(std::chrono::milliseconds span);
    void Clear();
    std::deque<Notification> Left() const;
    /// The first opposite that has come.
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
