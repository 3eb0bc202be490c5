// The results of a run, as plain values. The reports are written from them, and earlier runs are
// read back into them.

#ifndef PLENXKIT_JUDGE_RUN_RECORD_H
#define PLENXKIT_JUDGE_RUN_RECORD_H

#include <string>
#include <vector>

#include "judge/check.h"

namespace PlenxJudge {

struct Record {
    std::string number;
    Level level = Level::kMust;
    std::string section;
    std::string sentence;
    Outcome outcome;
    bool known = false;  // it is in the list of known failures
    double seconds = 0;

    std::string Area() const { return number.substr(0, number.find('/')); }
    bool Passed() const { return outcome.kind == Outcome::Kind::kPassed; }
    bool Failed() const { return outcome.kind == Outcome::Kind::kFailed; }
    bool WasJudged() const { return outcome.kind != Outcome::Kind::kNotJudged; }
    /// A failure that is in the list, but has gone.
    bool HasGone() const { return known && Passed(); }
};

struct RunRecord {
    std::string program;  // for people: how the program was reached
    std::string version;  // of plenxkit
    bool strict = false;
    std::vector<Record> records = {};
    std::string leftBehind = {};
    bool interrupted = false;

    /// Whether this result makes the run fail.
    bool Fails(const Record& record) const {
        if (record.known) {
            return record.Passed();
        }
        return record.Failed() &&
               (record.level == Level::kMust || (record.level == Level::kShould && strict));
    }
};

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_RUN_RECORD_H
