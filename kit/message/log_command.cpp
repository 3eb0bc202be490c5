#include <sstream>

#include "message/columns.h"
#include "message/commands.h"
#include "message/input.h"
#include "message/json_form.h"
#include "message/log_lines.h"
#include "message/table.h"
#include "message/usage.h"
#include "wire/render.h"

namespace PlenxMessage {
namespace {

using Kind = PlenxWire::ParsedLine::Kind;

class LogReport {
public:
    LogReport(const LogOptions& options, std::ostream& out) : options_(options), out_(out) {}

    void Read(const LoggedMessage& logged, std::size_t lineNumber) {
        const Message message = {SubjectOf(logged.message.id), logged.message.bytes};
        if (logged.message.kind == Kind::kWhole) {
            ShowWhole(logged, message, lineNumber);
        } else {
            ShowWithoutBytes(logged, message, lineNumber);
        }
    }

    int Conclude() {
        if (!options_.json) {
            out_ << "Messages: " << good_ + broken_ + cut_ << ", good: " << good_
                 << ", broken: " << broken_ << ", cut by the log: " << cut_ << "\n";
        }
        return broken_ == 0 ? kFine : kBrokenMessage;
    }

private:
    void ShowWhole(const LoggedMessage& logged, const Message& message, std::size_t lineNumber) {
        const PlenxWire::Layout layout = Inspected(message);
        const bool good = layout.problems.empty();
        ++(good ? good_ : broken_);
        if (good && options_.brokenOnly) {
            return;
        }
        if (options_.json) {
            Print(logged, lineNumber, ToJson(message, layout));
        } else {
            out_ << Heading(logged, lineNumber) << ToTable(message, layout) << "\n";
        }
    }

    void ShowWithoutBytes(const LoggedMessage& logged, const Message& message,
                          std::size_t lineNumber) {
        const bool broken = logged.message.kind == Kind::kTold;
        ++(broken ? broken_ : cut_);
        if (!broken && options_.brokenOnly) {
            return;
        }
        const std::string& why = logged.message.error;
        if (options_.json) {
            Json json = {{"message", NameOf(message.subject)}, {"id", logged.message.id}};
            json["sort"] = SortOf(message.subject);
            json["good"] = broken ? Json(false) : Json(nullptr);
            json["error"] = why;
            Print(logged, lineNumber, json);
        } else {
            out_ << Heading(logged, lineNumber) << PlenxWire::RenderId(logged.message.id) + "\n\n"
                 << Hanging(broken ? "BROKEN according to the log:  " : "cut by the log:  ", why)
                 << "\n";
        }
    }

    void Print(const LoggedMessage& logged, std::size_t lineNumber, const Json& message) {
        Json json = {{"line", lineNumber}, {"context", logged.before}};
        json.update(message);
        out_ << json.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
    }

    static std::string Heading(const LoggedMessage& logged, std::size_t lineNumber) {
        return "line " + std::to_string(lineNumber) + ": " + logged.before + "\n";
    }

    const LogOptions& options_;
    std::ostream& out_;
    std::size_t good_ = 0;
    std::size_t broken_ = 0;
    std::size_t cut_ = 0;
};

}  // namespace

int RunLog(const LogOptions& options, std::istream& in, std::ostream& out, std::ostream& err) {
    std::istringstream lines(ContentOf(options.file, in));
    LogReport report(options, out);
    bool recognised = false;
    std::string line;
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        recognised = recognised || IsLineOfAService(line);
        if (const auto logged = LoggedMessageIn(line)) {
            report.Read(*logged, number);
        }
    }
    if (!recognised) {
        err << "plenxkit message: the input has no line of a service's log, such as:\n"
               "2026-01-31 12:34:56.789 pc received PingService(19) number:7\n";
    }
    return report.Conclude();
}

}  // namespace PlenxMessage
