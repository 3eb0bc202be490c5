// Decides which checks run and which failures are known.

#ifndef PLENXKIT_JUDGE_SELECTION_H
#define PLENXKIT_JUDGE_SELECTION_H

#include <set>
#include <string>
#include <vector>

#include "ending.h"
#include "judge/check.h"

namespace PlenxJudge {

using PlenxKit::UsageError;

/// words: numbers ("reply/1") or areas ("reply"); one word may hold several, divided by commas.
/// Without words, all checks are selected.
/// @throws UsageError for a word that fits nothing.
std::vector<const Check*> Selected(const std::vector<std::string>& words);

/// The numbers in a list of known failures: one to a line, with a remark behind "#".
/// @throws UsageError for a number that no check has.
std::set<std::string> KnownFailures(const std::string& text);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_SELECTION_H
