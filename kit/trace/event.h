// The content of one line of a log, for the diagram and for the summary. It holds values only.

#ifndef PLENXKIT_TRACE_EVENT_H
#define PLENXKIT_TRACE_EVENT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace PlenxTrace {

/// The columns of the diagram, from left to right. kNoLane is for a line that
/// nobody understands.
enum class Lane { kHost, kFacade, kWorker, kEngine, kServices, kObservers, kNoLane };

enum class Kind {
    kCall,          // the host asks
    kRefusal,       // the facade says no at once
    kQueued,        // a call whose own line stands before this one
    kJob,           // the worker begins a call that was queued
    kStep,          // the engine is at work
    kRequest,       // the library asks a service
    kOutcome,       // the library tells the observers the outcome of a call
    kNotification,  // a service notifies the library
    kFanOut,        // the library calls the observers
    kReturn,        // the observers return
    kService,       // a service is at work
    kAnswer,        // a service answers, or is answered
    kDetail,        // the line frames another one
    kUnknown,       // a line of the library that the table does not have
    kForeign,       // the text is not a line of a log
    // The next kinds are lines of a host. The page does not have them.
    kHostCommand,
    kHostTold,   // an observer is told something
    kHostText,   // a text of a script, or the end of a run that went well
    kHostError,  // an error, or an expectation that did not hold
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
    Lane to = Lane::kNoLane;     // the same as from if nothing moves
    int service = kNoService;    // as ServiceType; a number above 3 stays as it is
    bool failure = false;        // the line stands out: an error, or an outcome without success
    bool usual = false;          // logged as an error, but in every healthy run as well
    std::string_view operation;  // the public name of a call, a refusal or a job
    std::string label;           // short, for the diagram
    std::optional<std::int64_t> code;
    std::optional<std::int64_t> waited;  // milliseconds of a job in the queue
    std::optional<std::int64_t> took;    // milliseconds from the start of the work to its outcome

    std::string line;  // without its end; cut if it is very long
    std::uint64_t cutBytes = 0;
    std::uint64_t number = 0;  // the number of the line, from 1
    std::size_t source = 0;    // the index of the log
    std::uint64_t thread = 0;  // 0 in the log of a service
    bool torn = false;         // the log ends inside it
};

/// Whether the line stands out on the page.
inline bool IsAlarming(const Event& event) {
    return event.failure && !event.usual;
}

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_EVENT_H
