#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

#include "host/line_format.h"
#include "host/text.h"
#include "support/utf8.h"

namespace PlenxHost {
namespace {

using Json = nlohmann::ordered_json;

// The local time with milliseconds, as in the log files.
std::string LocalTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const auto sinceEpoch =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    char date[32] = "";
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", std::localtime(&seconds));
    char text[48];
    std::snprintf(text, sizeof text, "%s.%03d", date, static_cast<int>(sinceEpoch.count() % 1000));
    return text;
}

void Put(Json& object, const std::string& key, const std::string& text) {
    object[key] = text;
    if (!PlenxSupport::IsUtf8(text)) {
        object[key + "Hex"] = ToHex(text);
    }
}

void Put(Json& object, const Field& field) {
    if (const auto* text = std::get_if<std::string>(&field.value)) {
        Put(object, field.name, *text);
    } else if (const auto* flag = std::get_if<bool>(&field.value)) {
        object[field.name] = *flag;
    } else {
        object[field.name] = std::get<std::int64_t>(field.value);
    }
}

Json Begin(const char* type, const Stamp& stamp) {
    Json object;
    object["type"] = type;
    object["time"] = LocalTime(stamp.time);
    object["seconds"] = static_cast<double>(stamp.sinceStart.count()) / 1000;
    object["thread"] = stamp.thread;
    return object;
}

std::string ToLine(const Json& object) {
    return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

class JsonFormat : public LineFormat {
public:
    std::string Format(const Stamp& stamp, const NotificationReport& report) const override {
        Json object = Begin("notification", stamp);
        object["name"] = report.notification.name;
        object["observer"] = report.notification.observer;
        Json& arguments = object["arguments"] = Json::object();
        for (const Field& field : report.notification.fields) {
            Put(arguments, field);
        }
        if (report.throws) {
            object["throws"] = true;
        } else {
            object["returns"] = report.answer;
        }
        return ToLine(object);
    }

    std::string Format(const Stamp& stamp, const CommandReport& report) const override {
        Json object = Begin("command", stamp);
        object["began"] = LocalTime(report.began);
        object["milliseconds"] = report.took.count();
        object["place"] = report.place;
        object["name"] = report.name;
        Put(object, "text", report.text);
        if (report.outcome.number) {
            object["result"] = *report.outcome.number;
        }
        if (report.outcome.text) {
            Put(object, "resultText", *report.outcome.text);
        }
        if (report.outcome.held) {
            object["held"] = *report.outcome.held;
        }
        if (!report.outcome.remark.empty()) {
            Put(object, "remark", report.outcome.remark);
        }
        return ToLine(object);
    }

    std::string Format(const Stamp& stamp, const Note& note) const override {
        Json object = Begin(note.kind == NoteKind::kError ? "error" : "text", stamp);
        Put(object, "text", note.text);
        return ToLine(object);
    }

    std::string Format(const Stamp& stamp, const EndReport& report) const override {
        Json object = Begin("end", stamp);
        object["exitCode"] = report.exitCode;
        object["expectations"] = report.expectations;
        object["failures"] = report.failures;
        object["leftovers"] = report.leftovers;
        return ToLine(object);
    }

    std::string Format(const Stamp& stamp, const CheckReport& report) const override {
        std::string lines;
        for (const Finding& finding : report.findings) {
            Json object = Begin("finding", stamp);
            object["check"] = report.check.name;
            object["level"] = NameOf(finding.level);
            Put(object, "text", finding.text);
            if (!finding.advice.empty()) {
                Put(object, "advice", finding.advice);
            }
            lines += (lines.empty() ? "" : "\n") + ToLine(object);
        }
        return lines;
    }

    std::string Format(const Stamp& stamp, const DiagnosisReport& report) const override {
        Json object = Begin("diagnosis", stamp);
        object["exitCode"] = report.exitCode;
        object["problems"] = report.diagnosis.problems;
        object["notes"] = report.diagnosis.notes;
        object["notLookedAt"] = NotLookedAt();
        return ToLine(object);
    }
};

}  // namespace

std::unique_ptr<LineFormat> MakeJsonFormat() {
    return std::make_unique<JsonFormat>();
}

}  // namespace PlenxHost
