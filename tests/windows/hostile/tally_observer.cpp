#include "hostile/tally_observer.h"

#include <set>
#include <utility>

#include "hostile/expectation.h"

namespace PlenxTest {

namespace {

int CountIn(const Tally& tally, const std::string& call) {
    const auto found = tally.find(call);
    return found == tally.end() ? 0 : found->second;
}

}  // namespace

std::string Difference(const Tally& expected, const Tally& heard) {
    constexpr int kMost = 10;
    std::set<std::string> calls;
    for (const Tally* tally : {&expected, &heard}) {
        for (const auto& entry : *tally) {
            calls.insert(entry.first);
        }
    }
    std::string text;
    int lines = 0;
    for (const std::string& call : calls) {
        const int wanted = CountIn(expected, call);
        const int came = CountIn(heard, call);
        if (wanted != came && ++lines <= kMost) {
            text += call + ": sent " + std::to_string(wanted) + " times, heard " +
                    std::to_string(came) + " times\n";
        }
    }
    return lines > kMost ? text + "and " + std::to_string(lines - kMost) + " more\n" : text;
}

Tally TallyObserver::Heard() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return heard_;
}

int TallyObserver::Times(const std::string& call) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return CountIn(heard_, call);
}

Tally TallyObserver::TakeHeard() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(heard_, Tally());
}

int TallyObserver::Take(const std::string& call) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++heard_[call];
    return 0;
}

std::int32_t TallyObserver::AnswerLink(unsigned int linkType) {
    return LinkStatusFor(linkType);
}

std::string TallyObserver::Show(const std::string& text) const {
    return Shown(text);
}

}  // namespace PlenxTest
