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
    /// name: "services/library". index: of this part, among all of them.
    std::function<void(const std::string& name, std::size_t index, std::size_t all)> begins;
    std::function<void(const StageRecord& record)> ends;
    std::function<void(const LogFile& file)> logs;
};

/// Begins when all is prepared, and ends with everything removed.
void RunStages(const std::vector<const Stage*>& stages, System& system, RunRecord& run,
               const Listener& listener);

/// Takes the turn of this run. @throws Refusal when it cannot.
void CheckRights(System& system);
/// @throws Refusal when a program of the stages is missing.
void CheckPrograms(const std::vector<const Stage*>& stages, System& system);

/// A line for each of them.
std::string TextOf(const std::vector<Trace>& traces);

/// Whether all that stands in the way comes from an earlier run, so that it may be removed.
bool OnlyTracesOfVerify(const std::vector<Trace>& traces);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_RUNNER_H
