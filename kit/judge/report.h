// Reports on runs: for people, for programs, for build servers, and for the browser.

#ifndef PLENXKIT_JUDGE_REPORT_H
#define PLENXKIT_JUDGE_REPORT_H

#include <string>
#include <vector>

#include "judge/run_record.h"

namespace PlenxJudge {

/// The part of the list about some checks of one area: a line that counts them, and their failures.
std::string AreaText(const RunRecord& run, const std::vector<Record>& records);
/// "74 checks: 70 passed, 1 failed, 3 not judged" and what follows from that.
std::string SummaryText(const RunRecord& run);

std::string JsonOf(const RunRecord& run);
/// @throws UsageError when the text is not what JsonOf writes.
RunRecord RunFromJson(const std::string& text, const std::string& file);

std::string JunitOf(const RunRecord& run);

/// One page without anything from the network, with a column for each run.
std::string HtmlOf(const std::vector<RunRecord>& runs);

/// "failed", "passed", "not judged", "failed, as is known" or "passed, though known to fail".
std::string VerdictOf(const Record& record);
/// The place on the page of the protocol: "wire-protocol.html#the-reply".
std::string PlaceOf(const Record& record);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_REPORT_H
