#include "trace/text_view.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>

#include "support/utf8.h"

namespace PlenxTrace {
namespace {

constexpr std::size_t kTimeWidth = 8;
constexpr std::string_view kBar = " | ";
constexpr std::string_view kCutMark = "...";
constexpr std::string_view kPlainMark = "  ";

// Each text may run on over the lanes to its right, because a row has one event only. So the lanes
// of the host and of the library are narrow and leave room for the services.
constexpr std::size_t kHostPercent = 24;
constexpr std::size_t kLibraryPercent = 28;

bool BeginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

std::size_t Length(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), BeginsCharacter));
}

std::size_t BytesOf(std::string_view text, std::size_t characters) {
    std::size_t bytes = 0;
    for (; bytes < text.size(); ++bytes) {
        if (BeginsCharacter(text[bytes]) && characters-- == 0) {
            break;
        }
    }
    return bytes;
}

// Cuts between two words if there is a blank in the last third.
std::string Fitted(std::string text, std::size_t width) {
    if (Length(text) <= width) {
        return text;
    }
    const std::size_t most = BytesOf(text, width - kCutMark.size());
    const std::size_t blank = text.rfind(' ', most);
    const bool betweenWords = blank != std::string::npos && blank >= most * 2 / 3;
    text.resize(betweenWords ? blank : most);
    return text.append(kCutMark);
}

// The content of a log must not move the cursor.
std::string Printable(std::string_view label) {
    std::string text = PlenxSupport::WellFormed(label);
    std::replace_if(
        text.begin(), text.end(),
        [](char letter) { return (letter >= 0 && letter < ' ') || letter == '\x7f'; }, '.');
    return text;
}

std::string_view MarkOf(const Event& event) {
    if (IsAlarming(event)) {
        return "! ";
    }
    switch (event.kind) {
    case Kind::kHostCommand:
    case Kind::kRequest:
        return "> ";
    case Kind::kHostTold:
        return "< ";
    default:
        return kPlainMark;
    }
}

/// Chooses the events that tell a reader something new.
class Choice {
public:
    explicit Choice(const std::vector<LogFile>& logs) {
        for (const LogFile& log : logs) {
            hostIsThere_ |= log.writer == Writer::kHost;
        }
    }

    bool Takes(const Event& event) {
        if (!IsAlarming(event) && (TellsNothingNew(event) || RepeatsItsJob(event))) {
            return false;
        }
        behindJob_ = event.kind == Kind::kJob;
        jobService_ = event.service;
        return true;
    }

private:
    bool TellsNothingNew(const Event& event) const {
        switch (event.kind) {
        case Kind::kDetail:  // the line frames another one
        case Kind::kQueued:  // the view has shown the call
        case Kind::kFanOut:  // the view has shown the notification
        case Kind::kReturn:
        case Kind::kAnswer:  // the next lines show that the side that asked goes on
            return true;
        case Kind::kCall:  // the host's lines show these two with their arguments
        case Kind::kNotification:
            return hostIsThere_;
        default:
            return false;
        }
    }

    // The engine's first line repeats the line that the worker has just written.
    bool RepeatsItsJob(const Event& event) const {
        return behindJob_ && event.service == jobService_ && event.from == Lane::kWorker &&
               event.to == Lane::kEngine;
    }

    bool hostIsThere_ = false;
    bool behindJob_ = false;       // whether the row before is a job
    int jobService_ = kNoService;  // the service of that job
};

class Rows {
public:
    Rows(std::size_t width, std::ostream& out) : out_(out), width_(width) {
        const std::size_t usable = width - kTimeWidth - 3 * kBar.size();
        const std::size_t host = usable * kHostPercent / 100;
        const std::size_t library = usable * kLibraryPercent / 100;
        lanes_[0] = kTimeWidth + kBar.size();
        lanes_[1] = lanes_[0] + host + kBar.size();
        lanes_[2] = lanes_[1] + library + kBar.size();
    }

    void WriteHead() {
        std::string names = " seconds";
        std::string rule(width_, '-');
        constexpr std::string_view kNames[] = {"host", "library", "service"};
        for (std::size_t lane = 0; lane != std::size(lanes_); ++lane) {
            names.resize(lanes_[lane] - kBar.size(), ' ');
            names.append(kBar).append(kPlainMark).append(kNames[lane]);
            rule[lanes_[lane] - 2] = '+';
        }
        out_ << names << "\n" << rule << "\n";
    }

    void Write(const Event& event, std::size_t lane) {
        std::string row = TimeOf(event);
        for (std::size_t before = 0; before != lane; ++before) {
            row.append(kBar);
            row.resize(lanes_[before + 1] - kBar.size(), ' ');
        }
        row.append(kBar);
        const std::string mark(event.kind == Kind::kHostText ? "" : MarkOf(event));
        row += Fitted(mark + Printable(event.label), width_ - lanes_[lane]);
        if (event.kind != Kind::kHostText) {
            AddBarsBehind(row, lane);
        }
        out_ << row << "\n";
    }

private:
    // The seconds since the first event, if they differ from those of the row before.
    std::string TimeOf(const Event& event) {
        if (event.time == kNoTime) {
            return std::string(kTimeWidth, ' ');
        }
        if (first_ == kNoTime) {
            first_ = event.time;
        }
        char text[32];
        std::snprintf(text, sizeof text, "%*.3f", static_cast<int>(kTimeWidth),
                      static_cast<double>(event.time - first_) / 1000);
        const bool again = shown_ == text;
        shown_ = text;
        return again ? std::string(kTimeWidth, ' ') : shown_;
    }

    void AddBarsBehind(std::string& row, std::size_t lane) const {
        for (std::size_t next = lane + 1; next < std::size(lanes_); ++next) {
            const std::size_t bar = lanes_[next] - 2;
            const std::size_t length = Length(row);
            if (length < bar) {
                row.append(bar - length, ' ').push_back('|');
            }
        }
    }

    std::ostream& out_;
    std::size_t width_;
    std::size_t lanes_[3] = {};  // the column where the text begins
    std::int64_t first_ = kNoTime;
    std::string shown_;
};

}  // namespace

void WriteTextView(const std::vector<LogFile>& logs, std::size_t width, std::ostream& out) {
    EventStream stream(logs);
    Choice choice(logs);
    Rows rows(width, out);
    rows.WriteHead();
    for (Event event; stream.Next(event);) {
        if (choice.Takes(event)) {
            rows.Write(event, static_cast<std::size_t>(logs[event.source].writer));
        }
    }
}

}  // namespace PlenxTrace
