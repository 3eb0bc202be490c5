#include "trace/page.h"

#include <filesystem>
#include <string_view>
#include <utility>

#include "trace/code_meaning.h"
#include "trace/json_text.h"
#include "trace/page_parts.h"

namespace PlenxTrace {
namespace {

// The more lines there are, the shorter the long ones are cut, so that the page stays small.
constexpr std::uint64_t kFewLines = 5000;
constexpr std::size_t kMostBytesOfFew = 8000;
constexpr std::size_t kMostBytesOfMany = 600;
constexpr std::size_t kMostLabelBytes = 120;

enum Flags { kFailure = 1, kUsualError = 2, kTorn = 4 };

Json OrNull(const std::optional<std::int64_t>& number) {
    return number ? Json(*number) : Json();
}

Json LogsOf(const std::vector<LogFile>& logs) {
    Json list = Json::array();
    for (const LogFile& log : logs) {
        list.push_back({{"name", std::filesystem::u8path(log.path).filename().u8string()},
                        {"service", log.writer == Writer::kService ? 1 : 0},
                        {"bytes", log.bytes}});
    }
    return list;
}

Json CallsOf(const Summary& summary) {
    Json list = Json::array();
    for (const auto& [operation, counts] : summary.calls) {
        list.push_back({{"name", operation},
                        {"calls", counts.calls},
                        {"refused", counts.refused},
                        {"failed", counts.failed},
                        {"waits", counts.waits},
                        {"waitSum", counts.waitSum},
                        {"waitMost", counts.waitMost}});
    }
    return list;
}

Json GroupsOf(const std::map<std::string, Group>& groups) {
    Json list = Json::array();
    for (const auto& [key, group] : groups) {
        list.push_back({{"text", Shortened(group.example, kMostBytesOfMany)},
                        {"count", group.count},
                        {"first", group.first},
                        {"usual", group.usual ? 1 : 0},
                        {"code", OrNull(group.code)},
                        {"meaning", group.code ? CodeMeaning(*group.code) : ""}});
    }
    return list;
}

Json SlowestOf(const std::vector<Slow>& slowest) {
    Json list = Json::array();
    for (const Slow& slow : slowest) {
        list.push_back({{"ms", slow.milliseconds},
                        {"event", slow.sequence},
                        {"time", slow.time},
                        {"failed", slow.failure ? 1 : 0},
                        {"text", Shortened(slow.label, kMostLabelBytes)}});
    }
    return list;
}

Json HistogramOf(const Histogram& histogram) {
    Json lines = Json::array();
    Json failures = Json::array();
    for (const Histogram::Span& span : histogram.spans) {
        lines.push_back(span.lines);
        failures.push_back(span.failures);
    }
    return {{"begin", histogram.begin},
            {"span", histogram.span},
            {"lines", std::move(lines)},
            {"failures", std::move(failures)}};
}

Json SummaryOf(const Summary& summary) {
    return {{"lines", summary.lines},
            {"failures", summary.failures},
            {"usual", summary.usual},
            {"requests", summary.requests},
            {"notifications", summary.notifications},
            {"foreign", summary.foreign},
            {"unknown", summary.unknown},
            {"torn", summary.torn},
            {"cut", summary.cut},
            {"firstTime", summary.firstTime},
            {"lastTime", summary.lastTime},
            {"calls", CallsOf(summary)},
            {"failedCalls", GroupsOf(summary.failedCalls)},
            {"errorLines", GroupsOf(summary.errorLines)},
            {"slowestStarts", SlowestOf(summary.slowestStarts)},
            {"longestWaits", SlowestOf(summary.longestWaits)},
            {"histogram", HistogramOf(summary.histogram)}};
}

Json PlanOf(const Totals& totals, const Plan& plan) {
    return {
        {"whole", plan.whole ? 1 : 0}, {"lines", totals.lines},          {"edge", plan.edge},
        {"failures", plan.failures},   {"allFailures", totals.failures}, {"context", plan.context},
        {"calls", plan.calls},         {"allCalls", totals.calls},       {"others", plan.others}};
}

// The data's head: an object that stays open, with the list of the events open inside it.
std::string DataHead(const PageHead& head) {
    std::string text = ScriptJson({{"title", head.title},
                                   {"version", PLENXKIT_VERSION},
                                   {"logs", LogsOf(head.logs)},
                                   {"summary", SummaryOf(head.summary)},
                                   {"plan", PlanOf(head.totals, head.plan)}});
    text.pop_back();
    return text + ",\"events\":[";
}

int FlagsOf(const Event& event) {
    return (event.failure ? kFailure : 0) | (event.usual ? kUsualError : 0) |
           (event.torn ? kTorn : 0);
}

std::string LineOf(const Event& event) {
    if (event.cutBytes == 0) {
        return event.line;
    }
    return event.line + "\xE2\x80\xA6 (" + std::to_string(event.cutBytes) + " more bytes)";
}

// page/model.js reads the values in this order.
Json EventOf(const Shown& shown, std::size_t mostLineBytes) {
    const Event& event = shown.event;
    return Json::array({shown.sequence, event.time, event.level, event.kind, event.from, event.to,
                        event.service, FlagsOf(event), OrNull(event.waited), OrNull(event.took),
                        event.source, event.number, event.thread,
                        Shortened(event.label, kMostLabelBytes),
                        Shortened(LineOf(event), mostLineBytes)});
}

Json GapOf(const Shown& shown) {
    return Json::array({shown.sequence, shown.event.time, shown.leftOut, shown.until});
}

// Puts the value into the one place of that name.
std::string Placed(std::string_view page, std::string_view name, std::string_view value) {
    const std::string place = "{{" + std::string(name) + "}}";
    const std::size_t at = page.find(place);
    return std::string(page.substr(0, at)).append(value).append(page.substr(at + place.size()));
}

}  // namespace

// The data goes in last, so that nothing in a log can be taken for a place.
PageWriter::PageWriter(std::ostream& out, const PageHead& head)
    : out_(out),
      mostLineBytes_(head.totals.lines <= kFewLines ? kMostBytesOfFew : kMostBytesOfMany) {
    constexpr std::string_view kData = "{{data}}";
    std::string page = Placed(kPageHtml, "style", kStyleCss);
    page = Placed(page, "script", kScriptJs);
    const std::size_t data = page.find(kData);
    rest_ = page.substr(data + kData.size());
    out_ << Placed(page.substr(0, data), "title", HtmlText(head.title)) << DataHead(head);
}

void PageWriter::Write(const Shown& shown) {
    out_ << (first_ ? "\n" : ",\n")
         << ScriptJson(shown.leftOut != 0 ? GapOf(shown) : EventOf(shown, mostLineBytes_));
    first_ = false;
}

void PageWriter::Finish() {
    out_ << "]}" << rest_;
}

}  // namespace PlenxTrace
