#include <algorithm>
#include <sstream>

#include "judge/report.h"
#include "message/columns.h"

namespace PlenxJudge {
namespace {

constexpr std::size_t kAreaWidth = 24;
constexpr std::size_t kLabelWidth = 10;

std::string Indented(const std::string& text, const std::string& indent) {
    std::istringstream stream(text);
    std::string result;
    for (std::string line; std::getline(stream, line);) {
        result += line.empty() ? "\n" : indent + line + "\n";
    }
    return result;
}

// A line that was cut may end with a blank.
std::string WithoutBlanksAtEnds(const std::string& text) {
    std::istringstream stream(text);
    std::string result;
    for (std::string line; std::getline(stream, line);) {
        result += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return result;
}

std::string Labelled(const std::string& label, const std::string& text) {
    return WithoutBlanksAtEnds(
        PlenxMessage::Hanging("    " + PlenxMessage::PadRight(label, kLabelWidth), text));
}

std::string MarkOf(const RunRecord& run, const Record& record) {
    if (record.HasGone()) {
        return "GONE";
    }
    if (record.known) {
        return "known";
    }
    return run.Fails(record) ? "FAIL" : "note";
}

// Says what came in the next fault that differs from the first one.
std::string OtherThan(const Fault& first, const std::vector<Fault>& faults) {
    const auto other = std::find_if(faults.begin(), faults.end(),
                                    [&](const Fault& fault) { return fault.came != first.came; });
    return other == faults.end() ? "" : ", such as: " + other->came;
}

std::string FaultsText(const std::vector<Fault>& faults) {
    const Fault& first = faults.front();
    std::string text = Labelled("expected", first.expected) + Labelled("came", first.came);
    if (!first.message.empty()) {
        text += "\n" + Indented(first.message, "        ") + "\n";
    }
    if (faults.size() > 1) {
        text += Labelled(
            "", "and " + std::to_string(faults.size() - 1) + " more" + OtherThan(first, faults));
    }
    return text;
}

std::string RecordText(const RunRecord& run, const Record& record) {
    const std::string head = "    " + MarkOf(run, record) + " " + record.number + " (" +
                             NameOf(record.level) + "): " + record.sentence + "\n";
    if (record.HasGone()) {
        return head + Labelled("came", "it passes, though the list of known failures names it");
    }
    return head + FaultsText(record.outcome.faults) + Labelled("page", PlaceOf(record));
}

void AddCount(std::string& text, std::size_t count, const char* what) {
    if (count != 0) {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
    }
}

std::string CountsText(const RunRecord& run, const std::vector<Record>& records) {
    std::size_t passed = 0;
    std::size_t failed = 0;
    std::size_t noted = 0;
    std::size_t known = 0;
    std::size_t gone = 0;
    std::size_t notJudged = 0;
    for (const Record& record : records) {
        if (!record.WasJudged()) {
            ++notJudged;
        } else if (record.HasGone()) {
            ++gone;
        } else if (record.Passed()) {
            ++passed;
        } else if (record.known) {
            ++known;
        } else {
            ++(run.Fails(record) ? failed : noted);
        }
    }
    std::string text;
    AddCount(text, passed, "passed");
    AddCount(text, failed, "failed");
    AddCount(text, noted, "noted");
    AddCount(text, known, "failed as is known");
    AddCount(text, gone, "known to fail, but passed");
    AddCount(text, notJudged, "not judged");
    return text;
}

// If all checks that were not judged share one reason, it stands behind the counts.
std::string SharedReason(const std::vector<Record>& records) {
    std::string reason;
    for (const Record& record : records) {
        if (!record.WasJudged()) {
            if (!reason.empty() && reason != record.outcome.why) {
                return {};
            }
            reason = record.outcome.why;
        }
    }
    return reason.empty() ? "" : " (" + reason + ")";
}

}  // namespace

std::string VerdictOf(const Record& record) {
    if (!record.WasJudged()) {
        return "not judged";
    }
    if (record.Passed()) {
        return record.known ? "passed, though known to fail" : "passed";
    }
    return record.known ? "failed, as is known" : "failed";
}

std::string PlaceOf(const Record& record) {
    return "wire-protocol.html#" + record.section;
}

std::string AreaText(const RunRecord& run, const std::vector<Record>& records) {
    std::string text = "  " + PlenxMessage::PadRight(records.front().Area(), kAreaWidth) + " " +
                       CountsText(run, records) + SharedReason(records) + "\n";
    for (const Record& record : records) {
        if (record.Failed() || record.HasGone()) {
            text += RecordText(run, record);
        }
    }
    return text;
}

std::string SummaryText(const RunRecord& run) {
    std::string text =
        std::to_string(run.records.size()) + " checks: " + CountsText(run, run.records) + "\n";
    if (run.interrupted) {
        text += "interrupted; the other checks were not judged\n";
    }
    if (!run.leftBehind.empty()) {
        text += "left behind: " + run.leftBehind + "\n";
    }
    return text;
}

}  // namespace PlenxJudge
