// What one line of a log tells, for the diagram and for the summary. Values only.

#ifndef PLENXKIT_TRACE_EVENT_H
#define PLENXKIT_TRACE_EVENT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace PlenxTrace {

/// The columns of the diagram, from left to right. kNoLane: a line that nobody understands.
enum class Lane { kHost, kFacade, kWorker, kEngine, kServices, kObservers, kNoLane };

enum class Kind {
    kCall,          // the host asks
    kRefusal,       // the facade says no at once
    kQueued,        // a call whose own line stands before this one
    kJob,           // the worker takes what was asked
    kStep,          // the engine is at work
    kRequest,       // to a service
    kOutcome,       // what the observers are told of a call
    kNotification,  // from a service
    kFanOut,        // to the observers
    kReturn,        // from the observers
    kService,       // a service is at work
    kAnswer,        // a service answers, or is answered
    kDetail,        // frames another line
    kUnknown,       // a line of the library that the table does not have
    kForeign,       // no line of a log at all
    // Lines of a host, which the page does not have.
    kHostCommand,
    kHostTold,   // an observer is told something
    kHostText,   // of a script, and the end of a run that went well
    kHostError,  // and what was expected and did not come
};

enum class Level { kNone, kInfo, kError, kOther };

constexpr int kNoService = -1;
constexpr std::int64_t kNoTime = 0;

struct Event {
    // Milliseconds since 1970 of the clock that wrote the line; a line without a time has that of
    // the line before.
    std::int64_t time = kNoTime;
    Level level = Level::kNone;
    Kind kind = Kind::kForeign;
    Lane from = Lane::kNoLane;
    Lane to = Lane::kNoLane;     // as from: nothing moves
    int service = kNoService;    // as ServiceType; what is above 3 stays as it is
    bool failure = false;        // to stand out: an error, or an outcome that is none
    bool usual = false;          // logged as an error, but in every healthy run as well
    std::string_view operation;  // of a call, a refusal or a job: the public name
    std::string label;           // short, for the diagram
    std::optional<std::int64_t> code;
    std::optional<std::int64_t> waited;  // of a job: milliseconds in the queue
    std::optional<std::int64_t> took;    // of an outcome: milliseconds since its work began

    std::string line;  // without its end; cut if it is very long
    std::uint64_t cutBytes = 0;
    std::uint64_t number = 0;  // of the line, from 1
    std::size_t source = 0;    // which of the logs
    std::uint64_t thread = 0;  // 0 in the log of a service
    bool torn = false;         // the log ends inside it
};

/// To stand out on the page.
inline bool IsAlarming(const Event& event) {
    return event.failure && !event.usual;
}

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_EVENT_H
