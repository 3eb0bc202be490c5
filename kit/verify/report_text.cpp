#include <cmath>
#include <sstream>

#include "message/columns.h"
#include "verify/report.h"

namespace PlenxVerify {
namespace {

using PlenxMessage::Hanging;
using PlenxMessage::PadLeft;
using PlenxMessage::PadRight;

constexpr std::size_t kNameWidth = 14;
constexpr std::size_t kCountsWidth = 44;
constexpr std::size_t kMostLines = 6;  // of a failure; the report has all of them

std::string FirstLines(const std::string& text) {
    std::istringstream stream(text);
    std::string result;
    std::size_t count = 0;
    for (std::string line; std::getline(stream, line); ++count) {
        if (count == kMostLines) {
            return result + "      ...\n";
        }
        result += line.empty() ? "\n" : "      " + line + "\n";
    }
    return result;
}

std::string FailuresText(const PartRecord& part) {
    std::string text;
    if (!part.problem.empty()) {
        text += "    FAIL " + part.name + ": " + part.problem + "\n";
    }
    for (const Case& one : part.cases) {
        if (one.Failed()) {
            text += "    FAIL " + one.name + "\n" + FirstLines(one.text);
        }
    }
    return text;
}

std::string Seconds(double seconds) {
    return std::to_string(std::lround(seconds)) + " s";
}

void AddCount(std::string& text, std::size_t count, const char* what) {
    if (count != 0) {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
    }
}

}  // namespace

Counts CountsOf(const StageRecord& record) {
    Counts counts;
    for (const PartRecord& part : record.parts) {
        counts.failed += part.problem.empty() ? 0 : 1;
        for (const Case& one : part.cases) {
            switch (one.verdict) {
            case Case::Verdict::kPassed:
                ++counts.passed;
                break;
            case Case::Verdict::kFailed:
                ++counts.failed;
                break;
            case Case::Verdict::kSkipped:
                ++counts.skipped;
                break;
            }
            counts.recorded += one.recorded.size();
        }
    }
    return counts;
}

Counts CountsOf(const RunRecord& run) {
    Counts sum;
    for (const StageRecord& stage : run.stages) {
        const Counts counts = CountsOf(stage);
        sum.passed += counts.passed;
        sum.failed += counts.failed;
        sum.skipped += counts.skipped;
        sum.recorded += counts.recorded;
    }
    return sum;
}

std::string TextOf(const Counts& counts) {
    std::string text;
    AddCount(text, counts.passed, "passed");
    AddCount(text, counts.failed, "failed");
    AddCount(text, counts.skipped, "skipped");
    AddCount(text, counts.recorded, "recorded");
    return text;
}

std::string StageText(const StageRecord& record) {
    const std::string name = "  " + PadRight(record.name, kNameWidth);
    if (!record.WasRun()) {
        return name + "not run: " + record.whyNotRun + "\n";
    }
    std::string text = name + PadRight(TextOf(CountsOf(record)), kCountsWidth) +
                       PadLeft(Seconds(record.Seconds()), 6) + "\n";
    for (const PartRecord& part : record.parts) {
        text += FailuresText(part);
    }
    return text;
}

std::string VerdictOf(const RunRecord& run) {
    if (!run.leftBehind.empty()) {
        return "Something was left behind.";
    }
    if (run.interrupted) {
        return "The run was interrupted. Everything was removed.";
    }
    return run.Failed() ? "Something failed." : "All is as expected.";
}

std::string SummaryText(const RunRecord& run) {
    const Counts counts = CountsOf(run);
    std::string text = std::to_string(counts.Tests()) + " tests: " + TextOf(counts) + "\n";
    for (const std::string& trace : run.leftBehind) {
        text += "left behind: " + trace + "\n";
    }
    return text + VerdictOf(run) + "\n";
}

std::string ScreenText(const std::vector<const Stage*>& stages, const std::string& root,
                       const std::string& out) {
    std::string text = "plenxkit verify " PLENXKIT_VERSION
                       " checks plenxsdk on this Windows, in about five minutes.\n\n"
                       "What will happen, stage by stage:\n";
    for (const Stage* const stage : stages) {
        text += Hanging(PadRight(stage->name, kNameWidth), stage->sentence);
    }
    text +=
        "\nThe programs are copied to " + root +
        " and run there. Services (PlenxPcSvc, PlenxPhoneSvc,\n"
        "PlenxDevServiceTest) and drivers (Dokan1, PlenxDriverTest) are registered and started. "
        "The\n"
        "drivers are not signed, so Windows should refuse them. Nothing goes over a network.\n\n"
        "What is removed again: the services, the drivers, the processes, and " +
        root + ".\nWhat stays: the results, in " + out + "\n";
    return text;
}

}  // namespace PlenxVerify
