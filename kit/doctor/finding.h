// A finding of the doctor: one sentence, how bad it is, and how to cure it.

#ifndef PLENXKIT_DOCTOR_FINDING_H
#define PLENXKIT_DOCTOR_FINDING_H

#include <string>
#include <vector>

namespace PlenxHost {

enum class Level { kOk, kNote, kProblem };

/// "ok", "note" or "problem".
const char* NameOf(Level level);

struct Finding {
    Level level;
    std::string text;
    std::string advice;  ///< How to cure it; empty when there is nothing to do.
};

class Findings {
public:
    void Ok(std::string text) { Add(Level::kOk, std::move(text), ""); }
    void Note(std::string text, std::string advice) {
        Add(Level::kNote, std::move(text), std::move(advice));
    }
    void Problem(std::string text, std::string advice) {
        Add(Level::kProblem, std::move(text), std::move(advice));
    }

    const std::vector<Finding>& All() const { return all_; }

private:
    void Add(Level level, std::string text, std::string advice) {
        all_.push_back({level, std::move(text), std::move(advice)});
    }

    std::vector<Finding> all_;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_FINDING_H
