// A check of the judge: one rule of the page on the wire protocol, and how it is tried.

#ifndef PLENXKIT_JUDGE_CHECK_H
#define PLENXKIT_JUDGE_CHECK_H

#include <string>
#include <utility>
#include <vector>

namespace PlenxJudge {

class Trial;

/// must: the library or the host depends on it. should: the page asks for it. may: it is usual.
enum class Level { kMust, kShould, kMay };

/// What a check needs besides an endpoint that somebody serves.
enum class Needs {
    kEndpoint,
    kService,  // the program runs under the Service Control Manager
    kSoak,     // the user has given time for repetition
};

/// What was expected and what came instead, each in one line, and the message in question, as
/// plenxkit message shows it.
struct Fault {
    std::string expected;
    std::string came;
    std::string message = {};
};

struct Outcome {
    enum class Kind { kPassed, kFailed, kNotJudged };

    Kind kind = Kind::kPassed;
    std::vector<Fault> faults = {};  // of a failure, at least one
    std::string why = {};            // why nothing could be judged

    static Outcome Of(std::vector<Fault> faults) {
        return {faults.empty() ? Kind::kPassed : Kind::kFailed, std::move(faults), {}};
    }
    static Outcome NotJudged(std::string why) { return {Kind::kNotJudged, {}, std::move(why)}; }
};

struct Check {
    const char* number;  // "reply/1"
    Level level;
    const char* section;   // the anchor on the page
    const char* sentence;  // the rule
    Needs needs;
    Outcome (*run)(Trial& trial);
};

/// All checks in the order in which they run: the life of a program from its start to its end.
const std::vector<Check>& Checks();

/// "must", "should" or "may".
const char* NameOf(Level level);

/// "reply" for "reply/1".
std::string AreaOf(const Check& check);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_CHECK_H
