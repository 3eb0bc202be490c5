#include <algorithm>

#include "judge/report.h"
#include "report_page.h"
#include "trace/json_text.h"

namespace PlenxJudge {
namespace {

using PlenxTrace::HtmlText;

constexpr char kStyle[] = R"(body { max-width: 100rem; }
table { table-layout: fixed; }
th { position: sticky; top: 0; background: Canvas; }
td:first-child { white-space: nowrap; font-family: ui-monospace, monospace; }
th:nth-child(1) { width: 13rem; } th:nth-child(2) { width: 4rem; } th:nth-child(3) { width: 18rem; }
td, th { overflow-wrap: break-word; }
.area td { font-weight: 600; padding-top: 1.2rem; }
.noted { color: #9a6700; } .notjudged { color: #888; }
@media (prefers-color-scheme: dark) { .noted { color: #d29922; } }
dt { font-weight: 600; } dd { margin: 0 0 .4rem 1rem; }
)";

struct Mark {
    const char* style;
    std::string text;
};

Mark MarkOf(const RunRecord& run, const Record& record) {
    if (!record.WasJudged()) {
        return {"notjudged", "not judged"};
    }
    if (run.Fails(record)) {
        return {"failed", VerdictOf(record)};
    }
    return {record.Passed() ? "passed" : "noted", VerdictOf(record)};
}

std::string FaultHtml(const Fault& fault) {
    std::string html = "<dl><dt>expected</dt><dd>" + HtmlText(fault.expected) +
                       "</dd><dt>came</dt><dd>" + HtmlText(fault.came) + "</dd></dl>";
    if (!fault.message.empty()) {
        html += "<pre>" + HtmlText(fault.message) + "</pre>";
    }
    return html;
}

// Where the page has only one run, its failures are open.
std::string CellOf(const RunRecord& run, const Record& record, bool open) {
    const Mark mark = MarkOf(run, record);
    const std::string head = PlenxKit::Marked(mark.style, mark.text);
    if (!record.Failed()) {
        return head + (record.outcome.why.empty() ? "" : "<br>" + HtmlText(record.outcome.why));
    }
    std::string html =
        std::string("<details") + (open ? " open" : "") + "><summary>" + head + "</summary>";
    for (const Fault& fault : record.outcome.faults) {
        html += FaultHtml(fault);
    }
    return html + "</details>";
}

const Record* RecordOf(const RunRecord& run, const std::string& number) {
    const auto found = std::find_if(run.records.begin(), run.records.end(),
                                    [&](const Record& record) { return record.number == number; });
    return found == run.records.end() ? nullptr : &*found;
}

// All checks that some run has, in the order of the first run that has them.
std::vector<Record> AllChecks(const std::vector<RunRecord>& runs) {
    std::vector<Record> all;
    for (const RunRecord& run : runs) {
        for (const Record& record : run.records) {
            if (std::none_of(all.begin(), all.end(),
                             [&](const Record& other) { return other.number == record.number; })) {
                all.push_back(record);
            }
        }
    }
    return all;
}

std::string RowOf(const std::vector<RunRecord>& runs, const Record& check) {
    std::string html = "<tr><td>" + HtmlText(check.number) + "</td><td>" + NameOf(check.level) +
                       "</td><td>" + HtmlText(check.sentence) + "<br><small>" +
                       HtmlText(PlaceOf(check)) + "</small></td>";
    for (const RunRecord& run : runs) {
        const Record* const record = RecordOf(run, check.number);
        html +=
            "<td>" + (record ? CellOf(run, *record, runs.size() == 1) : std::string("–")) + "</td>";
    }
    return html + "</tr>\n";
}

std::string Counted(const RunRecord& run) {
    const auto failures = std::count_if(run.records.begin(), run.records.end(),
                                        [&](const Record& record) { return run.Fails(record); });
    const auto passed = std::count_if(run.records.begin(), run.records.end(),
                                      [](const Record& record) { return record.Passed(); });
    return std::to_string(passed) + " passed, " + std::to_string(failures) + " failed";
}

std::string HeadRow(const std::vector<RunRecord>& runs) {
    std::string html = "<tr><th>Check</th><th>Level</th><th>Rule</th>";
    for (const RunRecord& run : runs) {
        html += "<th>" + HtmlText(run.program) + "<br><small>" + Counted(run) + "</small></th>";
    }
    return html + "</tr>\n";
}

}  // namespace

std::string HtmlOf(const std::vector<RunRecord>& runs) {
    std::string html = PlenxKit::PageHead("plenxkit judge", kStyle) +
                       "<h1>plenxkit judge</h1>\n<table>\n" + HeadRow(runs);
    std::string area;
    for (const Record& check : AllChecks(runs)) {
        if (check.Area() != area) {
            area = check.Area();
            html += "<tr class=\"area\"><td colspan=\"" + std::to_string(3 + runs.size()) + "\">" +
                    HtmlText(area) + "</td></tr>\n";
        }
        html += RowOf(runs, check);
    }
    return html + "</table>\n" + PlenxKit::kPageEnd;
}

}  // namespace PlenxJudge
