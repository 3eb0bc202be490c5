// Reads what the programs of a run have written about themselves. All functions are pure.

#ifndef PLENXKIT_VERIFY_RESULTS_H
#define PLENXKIT_VERIFY_RESULTS_H

#include <string>
#include <vector>

#include "verify/record.h"

namespace PlenxVerify {

/// GoogleTest's own JSON. @throws std::exception when the text is something else.
std::vector<Case> CasesOfTests(const std::string& json);

/// What plenxkit scenario run --json has written. @throws std::exception, as above.
std::vector<Case> CasesOfScenarios(const std::string& json);

/// The test that had begun and not ended when GoogleTest's output broke off; empty when there is
/// none.
std::string LastBegun(const std::string& output);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_RESULTS_H
