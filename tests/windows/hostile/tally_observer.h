// An observer that counts what it hears, each call as a line of text. A long text is shown by its
// size and a hash.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H

#include <map>
#include <mutex>
#include <string>

#include "support/text_observer.h"

namespace PlenxTest {

/// How often each call came.
using Tally = std::map<std::string, int>;

/// What is in one and not, or not as often, in the other: a line each, the first few of them.
/// Empty: nothing.
std::string Difference(const Tally& expected, const Tally& heard);

class TallyObserver : public TextObserver {
public:
    /// What has come so far.
    Tally Heard() const;
    int Times(const std::string& call) const;
    /// The same, and forgets it.
    Tally TakeHeard();

private:
    int Take(const std::string& call) override;
    std::int32_t AnswerLink(unsigned int linkType) override;
    std::string Show(const std::string& text) const override;

    mutable std::mutex mutex_;
    Tally heard_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H
