// The results of a run, as plain values. All reports are written from them.

#ifndef PLENXKIT_VERIFY_RECORD_H
#define PLENXKIT_VERIFY_RECORD_H

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace PlenxVerify {

struct Case {
    enum class Verdict { kPassed, kFailed, kSkipped };

    std::string name;
    Verdict verdict = Verdict::kPassed;
    double seconds = 0;
    std::string text = {};  // of a failure or a skip, in any number of lines
    /// What a test has recorded, such as how this system differs from others.
    std::vector<std::pair<std::string, std::string>> recorded = {};

    bool Failed() const { return verdict == Verdict::kFailed; }
};

struct PartRecord {
    std::string name;
    std::vector<Case> cases = {};
    std::string problem = {};  // of the process as a whole; empty when it ended well
    double seconds = 0;

    bool Failed() const {
        return !problem.empty() || std::any_of(cases.begin(), cases.end(),
                                               [](const Case& one) { return one.Failed(); });
    }
};

struct StageRecord {
    std::string name;
    std::string sentence;
    std::vector<PartRecord> parts = {};
    std::string whyNotRun = {};  // empty when it was run
    /// What it had not removed itself, so that it had to be removed afterwards.
    std::vector<std::string> removed = {};

    bool WasRun() const { return whyNotRun.empty(); }
    bool Failed() const {
        return std::any_of(parts.begin(), parts.end(),
                           [](const PartRecord& part) { return part.Failed(); });
    }
    double Seconds() const {
        double seconds = 0;
        for (const PartRecord& part : parts) {
            seconds += part.seconds;
        }
        return seconds;
    }
};

/// Describes the machine without the names of people: pairs of a label and a value, for a table.
using Facts = std::vector<std::pair<std::string, std::string>>;

struct RunRecord {
    std::string version;  // of plenxkit
    std::string begun;    // local time
    Facts system = {};
    std::vector<StageRecord> stages = {};
    std::vector<std::string> leftBehind = {};
    bool interrupted = false;

    bool Failed() const {
        return interrupted || std::any_of(stages.begin(), stages.end(),
                                          [](const StageRecord& stage) { return stage.Failed(); });
    }
};

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_RECORD_H
