// An observer that counts its calls, each as a line of text. It shows a long text by its size and a
// hash.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_TALLY_OBSERVER_H

#include <map>
#include <mutex>
#include <string>

#include "support/text_observer.h"

namespace PlenxTest {

/// Says how often each call came.
using Tally = std::map<std::string, int>;

/// Returns the first few lines that one tally has and the other does not, or not as often; empty
/// when they are equal.
std::string Difference(const Tally& expected, const Tally& heard);

class TallyObserver : public TextObserver {
public:
    /// Returns the calls so far.
    Tally Heard() const;
    int Times(const std::string& call) const;
    /// Does the same, and forgets them.
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
