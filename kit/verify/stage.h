// The stages of a verification. There is one table of them: everything else asks it.

#ifndef PLENXKIT_VERIFY_STAGE_H
#define PLENXKIT_VERIFY_STAGE_H

#include <string>
#include <vector>

#include "ending.h"

namespace PlenxVerify {

/// A part of a stage is a process with a limit.
struct Part {
    enum class Kind {
        kTests,      // a test program of GoogleTest, which writes its results as JSON
        kScenarios,  // plenxkit scenario run --all, which does so in a form of its own
    };

    Kind kind;
    const char* name;     // "library"; the names of its files hold it, too
    const char* program;  // beside plenxkit.exe
    const char* filter;   // which of its tests; empty for all of them
    unsigned seconds;     // the limit
};

struct Stage {
    const char* name;      // "services"
    const char* sentence;  // what is tried
    std::vector<Part> parts;
};

/// In the order in which they run. The last stage looks for what is left behind. It has no part,
/// and it always runs.
const std::vector<Stage>& Stages();

constexpr const char* kLeftBehindStage = "left-behind";

using PlenxKit::UsageError;

/// words: names; one word may hold several, divided by commas. Without words, all are selected.
/// @throws UsageError for a name that no stage has.
std::vector<const Stage*> Selected(const std::vector<std::string>& words);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_STAGE_H
