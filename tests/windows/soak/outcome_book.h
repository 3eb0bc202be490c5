// Keeps the outcomes that one host thread was promised and has not heard of yet.
//
// The library carries out the calls of a thread in their order, so their outcomes come in that
// order too. Some are certain; others come only when a service refuses something. The thread writes
// and waits; the observer takes.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_OUTCOME_BOOK_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_OUTCOME_BOOK_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>

namespace PlenxSoak {

struct Outcome {
    std::uint32_t service;
    std::string group;
    unsigned kind;
};

class OutcomeBook {
public:
    enum Promise { kCertain, kPossible };

    /// Call this before the call that leads to the outcome.
    void Expect(Outcome outcome, Promise promise);
    /// @return false when the outcome was not promised, or when a certain one before it did not
    /// come.
    bool Take(const Outcome& outcome);
    /// Waits until every certain outcome has come. @return false when the time is over.
    bool WaitForAll(std::chrono::milliseconds limit);
    /// Returns the missing outcomes, for a failure's text.
    std::string Missing() const;

private:
    struct Entry {
        Outcome outcome;
        Promise promise;
    };

    mutable std::mutex mutex_;
    std::condition_variable taken_;
    std::deque<Entry> entries_;
    std::size_t certain_ = 0;
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_OUTCOME_BOOK_H
