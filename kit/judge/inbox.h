// The judge's end of the endpoint "Manager": it keeps every notification that comes in, and answers
// as the library does or, on demand, worse. Any thread may call it.

#ifndef PLENXKIT_JUDGE_INBOX_H
#define PLENXKIT_JUDGE_INBOX_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

#include "support/interruption.h"
#include "wire/message.h"

namespace PlenxJudge {

struct Notification {
    std::int32_t id = 0;
    PlenxWire::Bytes message = {};
    bool overlapped = false;  // another call was under way
};

/// How "Manager" answers.
enum class Manner {
    kHonest,    // as the library does
    kSlow,      // after a moment, as with an observer that takes its time
    kHeld,      // not before the manner changes
    kRefusing,  // with result 20 and no reply
    kRaising,   // with an exception
    kHollow,    // promises a reply and sends none
};

struct ManagerAnswer {
    std::uint32_t fault = 0;  // raised instead of an answer
    std::int32_t result = 0;
    std::int32_t size = 0;
    PlenxWire::Bytes reply = {};  // a null pointer when empty
};

class Inbox {
public:
    /// An interruption ends all waits.
    explicit Inbox(const PlenxSupport::Interruption& interruption) : interruption_(interruption) {}

    /// One call of the program. It may take as long as the manner says.
    ManagerAnswer Take(std::int32_t id, PlenxWire::Bytes message);

    void Behave(Manner manner);

    std::size_t Count() const;
    /// All notifications that came in after the first `count`.
    std::vector<Notification> Since(std::size_t count) const;
    /// Waits until more than count have come in. @return false when the time is over.
    bool WaitForMoreThan(std::size_t count, std::chrono::milliseconds longest) const;
    /// Waits until nothing has come in for the time `quiet`, but at most for the time `longest`.
    void WaitForQuiet(std::chrono::milliseconds quiet, std::chrono::milliseconds longest) const;

private:
    const PlenxSupport::Interruption& interruption_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Manner manner_ = Manner::kHonest;
    std::vector<Notification> received_;
    unsigned underWay_ = 0;
};

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_INBOX_H
