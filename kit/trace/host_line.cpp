#include "trace/host_line.h"

#include <iterator>
#include <utility>

#include "trace/classifier.h"
#include "trace/json_text.h"

namespace PlenxTrace {
namespace {

constexpr const char* kToldStatusNames[] = {"start", "stop", "online", "offline"};

std::int64_t TimeIn(const Json& record, const char* name) {
    const auto time = ParseTime(record.at(name).get<std::string>());
    if (!time) {
        throw Json::other_error::create(501, "no time", &record);
    }
    return *time;
}

std::string StatusName(const Json& value) {
    const auto status = value.get<std::int64_t>();
    const bool known =
        status >= 0 && status < static_cast<std::int64_t>(std::size(kToldStatusNames));
    return known ? kToldStatusNames[status] : std::to_string(status);
}

std::string ArgumentText(const std::string& name, const Json& value) {
    const std::string text = name == "svcType"    ? ServiceName(value.get<int>())
                             : name == "sttsType" ? StatusName(value)
                             : value.is_string()  ? value.get<std::string>()
                                                  : value.dump();
    return name == "answer" ? "-> " + text : text;
}

std::string NotificationText(const Json& record) {
    std::string text = record.at("name").get<std::string>();
    for (const auto& [name, value] : record.at("arguments").items()) {
        if (name != "linkStatus") {  // linkStatus is as it came; answer is as the observer left it
            text += " " + ArgumentText(name, value);
        }
    }
    if (record.value("throws", false)) {
        return text + " throws";
    }
    const auto result = record.value("returns", std::int64_t{0});
    return result == 0 ? text : text + " -> " + std::to_string(result);
}

void UnderstandExpectation(const Json& record, Event& event) {
    const std::string remark = record.value("remark", "");
    event.time = TimeIn(record, "time");
    event.failure = !record.at("held").get<bool>();
    event.kind = event.failure ? Kind::kHostError : Kind::kDetail;
    event.label = record.at("text").get<std::string>() + (remark.empty() ? "" : ": " + remark);
}

void UnderstandCommand(const Json& record, Event& event) {
    event.kind = Kind::kHostCommand;
    event.time = TimeIn(record, "began");
    event.label = record.at("text").get<std::string>();
    if (record.contains("result")) {
        event.label += " = " + record["result"].dump();
    }
    if (record.contains("resultText")) {
        event.label += " = \"" + record["resultText"].get<std::string>() + "\"";
    }
}

void UnderstandEnd(const Json& record, Event& event) {
    event.failure = record.at("exitCode").get<int>() != 0;
    event.kind = event.failure ? Kind::kHostError : Kind::kHostText;
    event.label = "end: " + record.at("expectations").dump() + " expectations, " +
                  std::to_string(record.at("failures").size()) + " failed";
}

void Understand(const Json& record, Event& event) {
    const std::string type = record.at("type").get<std::string>();
    event.time = TimeIn(record, "time");
    event.from = event.to = Lane::kHost;
    if (type == "notification") {
        event.kind = Kind::kHostTold;
        event.label = NotificationText(record);
    } else if (type == "command") {
        record.contains("held") ? UnderstandExpectation(record, event)
                                : UnderstandCommand(record, event);
    } else if (type == "end") {
        UnderstandEnd(record, event);
    } else {
        event.failure = type == "error";
        event.kind = event.failure ? Kind::kHostError : Kind::kHostText;
        event.label = record.at("text").get<std::string>();
    }
}

}  // namespace

Event ClassifyHostLine(Line line, std::int64_t timeBefore) {
    Event event;
    event.number = line.number;
    event.line = std::move(line.text);
    try {
        Understand(Json::parse(event.line), event);
    } catch (const Json::exception&) {
        event.kind = Kind::kForeign;
        event.failure = false;
        event.time = timeBefore;
        event.label = event.line;
    }
    return event;
}

}  // namespace PlenxTrace
