// Runs the stages, one after the other.

#ifndef PLENXKIT_VERIFY_RUNNER_H
#define PLENXKIT_VERIFY_RUNNER_H

#include <functional>
#include <string>
#include <vector>

#include "verify/record.h"
#include "verify/stage.h"
#include "verify/system.h"

namespace PlenxVerify {

/// Who hears of a run while it goes on.
struct Listener {
    /// name: "services/library". index: the position of this part. all: the number of parts.
    std::function<void(const std::string& name, std::size_t index, std::size_t all)> begins;
    std::function<void(const StageRecord& record)> ends;
    std::function<void(const LogFile& file)> logs;
};

/// Begins when all is prepared, and ends with everything removed.
void RunStages(const std::vector<const Stage*>& stages, System& system, RunRecord& run,
               const Listener& listener);

/// Makes sure that the run has the rights it needs and is the only one. @throws Refusal otherwise.
void CheckRights(System& system);
/// @throws Refusal when a program of the stages is missing.
void CheckPrograms(const std::vector<const Stage*>& stages, System& system);

/// One line for each trace.
std::string TextOf(const std::vector<Trace>& traces);

/// Whether all that stands in the way comes from an earlier run, so that it may be removed.
bool OnlyTracesOfVerify(const std::vector<Trace>& traces);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_RUNNER_H
