// The observers of a soak run: one that stays and keeps the books, and guests that come, behave
// badly and go.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_OBSERVERS_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_OBSERVERS_H

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "soak/complaints.h"
#include "soak/dice.h"
#include "soak/outcome_book.h"
#include "soak/tally.h"
#include "support/text_observer.h"

namespace PlenxSoak {

/// The group names of host thread N begin with this and N.
constexpr char kGroupPrefix[] = "soak";

/// Gives each outcome to the book of the thread that it belongs to, and counts everything.
class BookKeeper : public PlenxTest::TextObserver {
public:
    BookKeeper(std::vector<OutcomeBook>& books, Tally& tally, Complaints& complaints)
        : books_(books), tally_(tally), complaints_(complaints) {}

    int NotifyStatus(DistributedFs::ServiceType service, const std::string& group,
                     unsigned int kind, bool value) override;

private:
    int Take(const std::string& call) override;
    std::int32_t AnswerLink(unsigned int) override { return 1; }
    int Count(const std::string& notification);

    std::vector<OutcomeBook>& books_;
    Tally& tally_;
    Complaints& complaints_;
    std::atomic<int> inside_{0};
};

/// A guest is slow, fails, throws where nobody waits for an outcome, and calls the library back. It
/// complains when it is called after it was told that it has left.
class Guest : public PlenxTest::TextObserver {
public:
    Guest(std::uint64_t seed, std::uint64_t number, Complaints& complaints)
        : dice_(seed, number), complaints_(complaints) {}

    void HasLeft() { hasLeft_ = true; }

    int NotifyStatus(DistributedFs::ServiceType service, const std::string& group,
                     unsigned int kind, bool value) override;

private:
    int Misbehave();
    int Take(const std::string& call) override;
    std::int32_t AnswerLink(unsigned int linkType) override;

    Dice dice_;  // notifications never overlap
    Complaints& complaints_;
    std::atomic<bool> hasLeft_{false};
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_OBSERVERS_H
