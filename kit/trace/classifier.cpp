#include "trace/classifier.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace PlenxTrace {
namespace {

constexpr std::int64_t kRefused = 26;
constexpr std::int64_t kNobodyServes = 1722;
constexpr std::string_view kPing = "RpcManager::PingService";
constexpr std::string_view kMessageClass =
    "RpcMessage";  // the class of messages that are read and written
// A log without lines of a worker must neither fill the memory nor take for ever.
constexpr std::size_t kMostQueued = 100000;
constexpr std::ptrdiff_t kMostPassedOver = 100;

constexpr std::string_view kServiceNames[] = {"office", "pc", "phone", "all"};
constexpr std::string_view kWindowsNames[] = {"PlenxOfficeSvc", "PlenxPcSvc", "PlenxPhoneSvc"};
constexpr std::string_view kStatusNames[] = {"Start", "Stop", "DeviceOnline", "DeviceOffline"};
constexpr std::int64_t kStatusStop = 1;
constexpr int kPc = 1;
constexpr int kPhone = 2;
constexpr int kAllServices = 3;

int ServiceIn(const Captures& captures) {
    if (const auto number = captures.Number("svc")) {
        return *number >= 0 && *number <= 9999 ? static_cast<int>(*number) : kNoService;
    }
    const auto name = captures.Text("name");
    for (std::size_t i = 0; name && i != std::size(kWindowsNames); ++i) {
        if (*name == kWindowsNames[i]) {
            return static_cast<int>(i);
        }
    }
    return kNoService;
}

// Fills the places of a label. The number of a service becomes its name.
std::string Filled(std::string_view label, const Captures& captures, int service) {
    std::string text;
    while (!label.empty()) {
        const std::size_t open = label.find('{');
        text.append(label.substr(0, open));
        if (open == std::string_view::npos) {
            break;
        }
        const std::size_t close = label.find('}', open);
        const std::string_view name = label.substr(open + 1, close - open - 1);
        if (name == "svc") {
            text += ServiceName(service);
        } else {
            text.append(captures.Text(name).value_or(""));
        }
        label.remove_prefix(close + 1);
    }
    return text;
}

Event Framed(Line line, std::int64_t time) {
    Event event;
    event.time = time;
    event.line = std::move(line.text);
    event.cutBytes = line.cutBytes;
    event.number = line.number;
    event.torn = line.torn;
    return event;
}

void TakeRow(const Pattern& pattern, const Captures& captures, Event& event) {
    event.kind = pattern.kind;
    event.from = pattern.from;
    event.to = pattern.to;
    event.operation = pattern.operation;
    event.code = captures.Number("code");
    event.usual = pattern.mark == Mark::kUsual;
    event.failure = event.failure || pattern.mark == Mark::kError;
}

bool EndsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool IsPushed(const LibraryLine& parsed) {
    return EndsWith(parsed.text, "is pushed into thread pool");
}

}  // namespace

std::string ServiceName(int service) {
    const auto index = static_cast<std::size_t>(service);
    return service >= 0 && index < std::size(kServiceNames) ? std::string(kServiceNames[index])
           : service == kNoService                          ? ""
                                                            : "service " + std::to_string(service);
}

Event ClassifyServiceLine(Line line, std::int64_t timeBefore) {
    Event event = Framed(std::move(line), timeBefore);
    const auto parsed = ParseServiceLine(event.line);
    if (!parsed) {
        event.label = event.line;
        return event;
    }
    event.time = parsed->time;
    event.service = parsed->service;
    Captures captures;
    const Pattern& pattern = *FindServicePattern(parsed->text, captures);
    TakeRow(pattern, captures, event);
    event.level = event.failure ? Level::kError : Level::kInfo;
    event.label = ServiceName(event.service) + ": " + Filled(pattern.label, captures, kNoService);
    return event;
}

Event Classifier::Classify(Line line, std::int64_t timeBefore) {
    Event event = Framed(std::move(line), timeBefore);
    const auto parsed = ParseLibraryLine(event.line);
    if (!parsed) {
        event.label = event.line;
        return event;
    }
    event.time = parsed->time;
    event.level = parsed->level;
    event.thread = parsed->thread;
    event.failure = parsed->level == Level::kError;
    Understand(*parsed, event);
    return event;
}

void Classifier::Understand(const LibraryLine& parsed, Event& event) {
    Captures captures;
    const Pattern* const pattern = FindLibraryPattern(parsed.function, parsed.text, captures);
    if (pattern == nullptr) {
        event.kind = Kind::kUnknown;
        event.label = parsed.text;
    } else {
        TakeRow(*pattern, captures, event);
        event.service = ServiceIn(captures);
    }
    if (event.from == Lane::kNoLane) {
        event.from = event.to = LaneOfWork(parsed, event);
    }
    if (event.kind == Kind::kRefusal && EndsWith(parsed.text, "invalid parameter")) {
        event.code = kRefused;
    }
    FollowRequest(parsed, event);
    FollowWork(event);
    if (IsPushed(parsed)) {
        if (queue_.size() == kMostQueued) {
            queue_.pop_front();
        }
        queue_.push_back({event.operation, event.service, event.time});
    }
    if (pattern != nullptr) {
        event.label = Filled(pattern->label, captures, event.service);
    }
    if (const auto status = captures.Number("status"); status && IsOnWorker(event)) {
        TakeOutcome(*status, captures.Number("value") != 0, event);
    }
}

// The thread tells two kinds of work apart: the worker reads answers, and other threads read
// notifications.
Lane Classifier::LaneOfWork(const LibraryLine& parsed, const Event& event) const {
    const Lane lane = LaneOfClass(parsed.function);
    if (lane == Lane::kFacade && IsOnWorker(event)) {
        return Lane::kWorker;
    }
    const bool isMessage = parsed.function.substr(0, kMessageClass.size()) == kMessageClass;
    return isMessage && workerThread_ && !IsOnWorker(event) ? Lane::kFacade : lane;
}

// A service that has just been started may not serve its endpoint yet. Pings find that out.
void Classifier::FollowRequest(const LibraryLine& parsed, Event& event) {
    if (event.kind == Kind::kRequest) {
        work_.pings = parsed.function == kPing;
    }
    event.usual |= work_.pings && event.code == kNobodyServes;
}

// Follows the worker from the first line of its job to the first line of the next one.
void Classifier::FollowWork(Event& event) {
    if (event.kind == Kind::kJob || event.from == Lane::kWorker) {
        workerThread_ = event.thread;
    }
    if (event.kind == Kind::kJob) {
        BeginJob(event);
    }
    if (!IsOnWorker(event)) {
        return;
    }
    if (event.service == kNoService) {
        event.service = work_.service;
    } else if (event.service != kAllServices) {
        work_.service = event.service;
    }
    if (IsAlarming(event) && event.code) {
        work_.code = *event.code;
    }
}

// Jobs run in the order in which they were queued. Jobs that leave no line of their own (a second
// Init, for example) are passed over.
void Classifier::BeginJob(Event& event) {
    work_ = {event.operation, event.service, event.time, 0, false};
    const auto end =
        queue_.begin() + std::min(static_cast<std::ptrdiff_t>(queue_.size()), kMostPassedOver);
    const auto asked = std::find_if(queue_.begin(), end, [&](const Queued& queued) {
        return queued.operation == event.operation && queued.service == event.service;
    });
    if (asked == end) {
        return;
    }
    if (asked->time <= event.time) {
        event.waited = event.time - asked->time;
    }
    queue_.erase(queue_.begin(), asked + 1);
}

void Classifier::TakeOutcome(std::int64_t status, bool value, Event& event) {
    if (status < 0 || static_cast<std::size_t>(status) >= std::size(kStatusNames)) {
        return;
    }
    const bool byEngine = event.service == kPc || event.service == kPhone;
    // A stop of the PC or the phone service always reports false. The lines before it show whether
    // it went well.
    const bool stopOfEngine = byEngine && status == kStatusStop;
    event.kind = Kind::kOutcome;
    event.from = byEngine ? Lane::kEngine : Lane::kWorker;
    event.operation = work_.operation.empty() ? kStatusNames[status] : work_.operation;
    event.failure = stopOfEngine ? work_.code != 0 : !value;
    event.label = std::string(event.operation) + " " + ServiceName(event.service) +
                  (event.failure ? stopOfEngine ? ": ended, with errors" : ": failed" : ": done");
    if (event.failure && work_.code != 0) {
        event.code = work_.code;
    }
    if (event.service != kAllServices && work_.since <= event.time) {
        event.took = event.time - work_.since;
    }
    work_.since = event.time;
    work_.code = 0;
}

}  // namespace PlenxTrace
