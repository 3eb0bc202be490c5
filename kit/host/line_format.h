// Reports as lines: for people, or one JSON object per line for programs.
//
// JSON keys that all objects have: type (notification, command, text, error, end, finding,
// diagnosis), time (local, like the times in the log files), seconds (since the start) and
// thread. A text that is not UTF-8 is shown with U+FFFD in it and is given in full by a second
// key, its name followed by Hex. docs/kit-host-json.md describes them for their readers.

#ifndef PLENXKIT_HOST_LINE_FORMAT_H
#define PLENXKIT_HOST_LINE_FORMAT_H

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "host/colours.h"
#include "host/report.h"

namespace PlenxHost {

struct Stamp {
    std::chrono::system_clock::time_point time;
    std::chrono::milliseconds sinceStart;
    std::uint32_t thread;
};

/// A notification in the form NotifyError(errCode=5).
std::string ToText(const Notification& notification);

/// Each operation makes one line or several, with no line end behind the last. Two threads must
/// not use it at once.
class LineFormat {
public:
    virtual ~LineFormat() = default;
    virtual std::string Format(const Stamp& stamp, const NotificationReport& report) const = 0;
    virtual std::string Format(const Stamp& stamp, const CommandReport& report) const = 0;
    virtual std::string Format(const Stamp& stamp, const Note& note) const = 0;
    virtual std::string Format(const Stamp& stamp, const EndReport& report) const = 0;
    virtual std::string Format(const Stamp& stamp, const CheckReport& report) const = 0;
    virtual std::string Format(const Stamp& stamp, const DiagnosisReport& report) const = 0;
};

std::unique_ptr<LineFormat> MakeTextFormat(Colours colours = Colours::kNone);
std::unique_ptr<LineFormat> MakeJsonFormat();

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_LINE_FORMAT_H
