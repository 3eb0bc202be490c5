#include <cmath>
#include <sstream>

#include "report_page.h"
#include "trace/json_text.h"
#include "verify/report.h"

namespace PlenxVerify {
namespace {

using PlenxKit::Marked;
using PlenxTrace::HtmlText;

constexpr char kStyle[] = R"(body { max-width: 70rem; }
h2 { font-size: 1.1rem; margin-top: 2rem; }
th, td { overflow-wrap: anywhere; }
td:first-child { white-space: nowrap; }
td:last-child, th:last-child { text-align: right; white-space: nowrap; }
.facts td:first-child, .facts td:last-child { text-align: left; white-space: normal; }
.facts td:first-child { min-width: 16rem; }
.skipped { color: #888; } .verdict { font-size: 1.2rem; }
pre { white-space: pre-wrap; }
)";

// Converts each line by itself, because HtmlText does not keep line breaks.
std::string LinesHtml(const std::string& text) {
    std::istringstream stream(text);
    std::string html;
    for (std::string line; std::getline(stream, line);) {
        html += HtmlText(line) + "\n";
    }
    return html;
}

std::string Row(const std::vector<std::string>& cells) {
    std::string html = "<tr>";
    for (const std::string& cell : cells) {
        html += "<td>" + cell + "</td>";
    }
    return html + "</tr>\n";
}

std::string Seconds(double seconds) {
    const long tenths = std::lround(seconds * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
}

std::string PairsHtml(const std::vector<std::pair<std::string, std::string>>& pairs) {
    std::string html = "<table class=\"facts\">\n";
    for (const auto& [name, value] : pairs) {
        html += Row({HtmlText(name), HtmlText(value)});
    }
    return html + "</table>\n";
}

const char* StyleOf(const StageRecord& stage) {
    if (!stage.WasRun()) {
        return "skipped";
    }
    return stage.Failed() ? "failed" : "passed";
}

std::string StageRow(const StageRecord& stage) {
    const std::string counts = stage.WasRun() ? TextOf(CountsOf(stage)) : stage.whyNotRun;
    return Row({"<a href=\"#" + stage.name + "\">" + stage.name + "</a>", HtmlText(stage.sentence),
                Marked(StyleOf(stage), counts), Seconds(stage.Seconds())});
}

std::string FailuresHtml(const PartRecord& part) {
    std::string html;
    if (!part.problem.empty()) {
        html += "<p>" + Marked("failed", part.name) + ": " + HtmlText(part.problem) + "</p>\n";
    }
    for (const Case& one : part.cases) {
        if (one.Failed()) {
            html += "<details open><summary>" + Marked("failed", one.name) + "</summary><pre>" +
                    LinesHtml(one.text) + "</pre></details>\n";
        }
    }
    return html;
}

std::string RecordedHtml(const PartRecord& part) {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const Case& one : part.cases) {
        for (const auto& [name, value] : one.recorded) {
            rows.emplace_back(one.name + ": " + name, value);
        }
    }
    return rows.empty() ? "" : "<p>Recorded:</p>\n" + PairsHtml(rows);
}

std::string VerdictHtml(const Case& one) {
    switch (one.verdict) {
    case Case::Verdict::kFailed:
        return Marked("failed", "failed");
    case Case::Verdict::kSkipped:
        return Marked("skipped", one.text.empty() ? "skipped" : "skipped: " + one.text);
    case Case::Verdict::kPassed:
        break;
    }
    return Marked("passed", "passed");
}

std::string AllCasesHtml(const PartRecord& part) {
    std::string html = "<details><summary>" + HtmlText(part.name) + ": all " +
                       std::to_string(part.cases.size()) + " tests</summary>\n<table>\n";
    for (const Case& one : part.cases) {
        html += Row({HtmlText(one.name), VerdictHtml(one), Seconds(one.seconds)});
    }
    return html + "</table></details>\n";
}

std::string RemovedHtml(const StageRecord& stage) {
    if (stage.removed.empty()) {
        return {};
    }
    std::string html = "<p>Removed after it:</p>\n<ul>\n";
    for (const std::string& text : stage.removed) {
        html += "<li>" + HtmlText(text) + "</li>\n";
    }
    return html + "</ul>\n";
}

std::string StageHtml(const StageRecord& stage) {
    std::string html = "<h2 id=\"" + stage.name + "\">" + stage.name + "</h2>\n<p>" +
                       HtmlText(stage.sentence) + "</p>\n";
    if (!stage.WasRun()) {
        return html + "<p>" + Marked("skipped", "not run: " + stage.whyNotRun) + "</p>\n";
    }
    for (const PartRecord& part : stage.parts) {
        html += FailuresHtml(part);
    }
    for (const PartRecord& part : stage.parts) {
        html += RecordedHtml(part) + AllCasesHtml(part);
    }
    return html + RemovedHtml(stage);
}

std::string LeftBehindHtml(const RunRecord& run) {
    std::string html;
    for (const std::string& text : run.leftBehind) {
        html += "<p>" + Marked("failed", "left behind: " + text) + "</p>\n";
    }
    return html;
}

}  // namespace

std::string HtmlOf(const RunRecord& run) {
    const bool good = !run.Failed() && run.leftBehind.empty();
    std::string html = PlenxKit::PageHead("plenxkit verify", kStyle) + "<h1>plenxkit verify " +
                       HtmlText(run.version) + "</h1>\n<p class=\"verdict\">" +
                       Marked(good ? "passed" : "failed", VerdictOf(run)) + "</p>\n<p>" +
                       HtmlText(TextOf(CountsOf(run))) + "; begun " + HtmlText(run.begun) +
                       "</p>\n" + LeftBehindHtml(run) + PairsHtml(run.system) +
                       "<h2>Stages</h2>\n<table>\n";
    for (const StageRecord& stage : run.stages) {
        html += StageRow(stage);
    }
    html += "</table>\n";
    for (const StageRecord& stage : run.stages) {
        html += StageHtml(stage);
    }
    return html + PlenxKit::kPageEnd;
}

}  // namespace PlenxVerify
