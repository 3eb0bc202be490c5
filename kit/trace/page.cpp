#include "trace/page.h"

#include <filesystem>
#include <string_view>

#include "trace/code_meaning.h"
#include "trace/json_text.h"
#include "trace/page_parts.h"

namespace PlenxTrace {
namespace {

// The more lines, the less of the long ones: the page is to stay small.
constexpr std::uint64_t kFewLines = 5000;
constexpr std::size_t kMostBytesOfFew = 8000;
constexpr std::size_t kMostBytesOfMany = 600;
constexpr std::size_t kMostLabelBytes = 120;

enum Flags { kFailure = 1, kUsualError = 2, kTorn = 4 };

// JSON, written as it comes.
class Json {
public:
    explicit Json(std::string& out) : out_(out) {}

    Json& Open(char bracket) {
        Separate();
        out_.push_back(bracket);
        comma_ = false;
        return *this;
    }
    Json& Close(char bracket) {
        out_.push_back(bracket);
        comma_ = true;
        return *this;
    }
    Json& Key(std::string_view name) {
        Separate();
        AppendJsonString(out_, name);
        out_.push_back(':');
        comma_ = false;
        return *this;
    }
    Json& Text(std::string_view text, std::size_t mostBytes = kWholeText) {
        Separate();
        AppendJsonString(out_, text, mostBytes);
        return *this;
    }
    template <class Number>
    Json& Value(Number number) {
        Separate();
        out_ += std::to_string(number);
        return *this;
    }
    Json& Value(const std::optional<std::int64_t>& number) {
        if (number) {
            return Value(*number);
        }
        Separate();
        out_ += "null";
        return *this;
    }
    template <class Number>
    Json& Field(std::string_view name, Number number) {
        return Key(name).Value(number);
    }

private:
    void Separate() {
        if (comma_) {
            out_.push_back(',');
        }
        comma_ = true;
    }

    std::string& out_;
    bool comma_ = false;
};

void WriteLogs(const std::vector<LogFile>& logs, Json& json) {
    json.Key("logs").Open('[');
    for (const LogFile& log : logs) {
        json.Open('{').Key("name");
        json.Text(std::filesystem::u8path(log.path).filename().u8string());
        json.Field("service", log.writer == Writer::kService ? 1 : 0)
            .Field("bytes", log.bytes)
            .Close('}');
    }
    json.Close(']');
}

void WriteCalls(const Summary& summary, Json& json) {
    json.Key("calls").Open('[');
    for (const auto& [operation, counts] : summary.calls) {
        json.Open('{').Key("name").Text(operation);
        json.Field("calls", counts.calls).Field("refused", counts.refused);
        json.Field("failed", counts.failed).Field("waits", counts.waits);
        json.Field("waitSum", counts.waitSum).Field("waitMost", counts.waitMost).Close('}');
    }
    json.Close(']');
}

void WriteGroups(std::string_view name, const std::map<std::string, Group>& groups, Json& json) {
    json.Key(name).Open('[');
    for (const auto& [key, group] : groups) {
        json.Open('{').Key("text").Text(group.example, kMostBytesOfMany);
        json.Field("count", group.count).Field("first", group.first);
        json.Field("usual", group.usual ? 1 : 0).Field("code", group.code);
        json.Key("meaning").Text(group.code ? CodeMeaning(*group.code) : "").Close('}');
    }
    json.Close(']');
}

void WriteSlow(std::string_view name, const std::vector<Slow>& slowest, Json& json) {
    json.Key(name).Open('[');
    for (const Slow& slow : slowest) {
        json.Open('{').Field("ms", slow.milliseconds).Field("event", slow.sequence);
        json.Field("time", slow.time).Field("failed", slow.failure ? 1 : 0);
        json.Key("text").Text(slow.label, kMostLabelBytes).Close('}');
    }
    json.Close(']');
}

void WriteHistogram(const Histogram& histogram, Json& json) {
    json.Key("histogram").Open('{').Field("begin", histogram.begin);
    json.Field("span", histogram.span).Key("lines").Open('[');
    for (const Histogram::Span& span : histogram.spans) {
        json.Value(span.lines);
    }
    json.Close(']').Key("failures").Open('[');
    for (const Histogram::Span& span : histogram.spans) {
        json.Value(span.failures);
    }
    json.Close(']').Close('}');
}

void WriteSummary(const Summary& summary, Json& json) {
    json.Key("summary").Open('{');
    json.Field("lines", summary.lines).Field("failures", summary.failures);
    json.Field("usual", summary.usual).Field("requests", summary.requests);
    json.Field("notifications", summary.notifications).Field("foreign", summary.foreign);
    json.Field("unknown", summary.unknown).Field("torn", summary.torn).Field("cut", summary.cut);
    json.Field("firstTime", summary.firstTime).Field("lastTime", summary.lastTime);
    WriteCalls(summary, json);
    WriteGroups("failedCalls", summary.failedCalls, json);
    WriteGroups("errorLines", summary.errorLines, json);
    WriteSlow("slowestStarts", summary.slowestStarts, json);
    WriteSlow("longestWaits", summary.longestWaits, json);
    WriteHistogram(summary.histogram, json);
    json.Close('}');
}

void WritePlan(const Totals& totals, const Plan& plan, Json& json) {
    json.Key("plan").Open('{').Field("whole", plan.whole ? 1 : 0);
    json.Field("lines", totals.lines).Field("edge", plan.edge);
    json.Field("failures", plan.failures).Field("allFailures", totals.failures);
    json.Field("context", plan.context);
    json.Field("calls", plan.calls).Field("allCalls", totals.calls);
    json.Field("others", plan.others).Close('}');
}

std::string DataHead(const PageHead& head) {
    std::string text;
    Json json(text);
    json.Open('{').Key("title").Text(head.title);
    json.Key("version").Text(PLENXKIT_VERSION);
    WriteLogs(head.logs, json);
    WriteSummary(head.summary, json);
    WritePlan(head.totals, head.plan, json);
    json.Key("events").Open('[');
    return text;
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

// The order of the numbers is the one that page/model.js reads.
void WriteEvent(const Shown& shown, std::size_t mostLineBytes, Json& json) {
    const Event& event = shown.event;
    json.Open('[').Value(shown.sequence).Value(event.time);
    json.Value(static_cast<int>(event.level)).Value(static_cast<int>(event.kind));
    json.Value(static_cast<int>(event.from)).Value(static_cast<int>(event.to));
    json.Value(event.service).Value(FlagsOf(event));
    json.Value(event.waited).Value(event.took);
    json.Value(event.source).Value(event.number).Value(event.thread);
    json.Text(event.label, kMostLabelBytes).Text(LineOf(event), mostLineBytes).Close(']');
}

void WriteGap(const Shown& shown, Json& json) {
    json.Open('[').Value(shown.sequence).Value(shown.event.time);
    json.Value(shown.leftOut).Value(shown.until).Close(']');
}

// Puts value in the one place of that name.
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
    text_.assign(first_ ? "\n" : ",\n");
    first_ = false;
    Json json(text_);
    if (shown.leftOut != 0) {
        WriteGap(shown, json);
    } else {
        WriteEvent(shown, mostLineBytes_, json);
    }
    out_ << text_;
}

void PageWriter::Finish() {
    out_ << "]}" << rest_;
}

}  // namespace PlenxTrace
