// Reports on a run: for people, for programs, for build servers, and for the browser.

#ifndef PLENXKIT_VERIFY_REPORT_H
#define PLENXKIT_VERIFY_REPORT_H

#include <string>
#include <vector>

#include "verify/record.h"
#include "verify/stage.h"

namespace PlenxVerify {

/// "  services                 69 passed, 1 failed                                 41 s", and what
/// failed in it.
std::string StageText(const StageRecord& record);
/// "412 tests: 405 passed, 7 failed", what was left behind, and what follows from it all.
std::string SummaryText(const RunRecord& run);
/// "All is as expected.", or a sentence that says what is wrong.
std::string VerdictOf(const RunRecord& run);

std::string JsonOf(const RunRecord& run);
std::string JunitOf(const RunRecord& run);
/// One page without anything from the network.
std::string HtmlOf(const RunRecord& run);

/// What will happen and what will be removed again, on one screen.
std::string ScreenText(const std::vector<const Stage*>& stages, const std::string& root,
                       const std::string& out);

struct Counts {
    std::size_t passed = 0;
    std::size_t failed = 0;
    std::size_t skipped = 0;
    std::size_t recorded = 0;

    std::size_t Tests() const { return passed + failed + skipped; }
};

/// The problem of a part counts as a failure.
Counts CountsOf(const StageRecord& record);
Counts CountsOf(const RunRecord& run);
/// "69 passed, 1 failed"
std::string TextOf(const Counts& counts);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_REPORT_H
