// Turns lines into events. Lines of a library must come in the order of its log, because the
// meaning of a line can depend on the lines before it (who runs on a thread, which job the worker
// does, which calls are queued).

#ifndef PLENXKIT_TRACE_CLASSIFIER_H
#define PLENXKIT_TRACE_CLASSIFIER_H

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "trace/event.h"
#include "trace/line_reader.h"
#include "trace/log_line.h"
#include "trace/patterns.h"

namespace PlenxTrace {

/// Gives the short name of a service, which is empty for kNoService.
std::string ServiceName(int service);

/// Gives a line of a service's log its event. A line without a time gets the time before.
Event ClassifyServiceLine(Line line, std::int64_t timeBefore);

class Classifier {
public:
    /// Gives a line of the library's log its event.
    Event Classify(Line line, std::int64_t timeBefore);

private:
    struct Queued {
        std::string_view operation;
        int service;
        std::int64_t time;
    };
    /// The state of one job of the worker.
    struct Work {
        std::string_view operation;
        int service = kNoService;
        std::int64_t since = 0;  // the time of the job's first line, or of the outcome before
        std::int64_t code = 0;   // the code of the last error
        bool pings = false;      // it pings, and has asked nothing else yet
    };

    void Understand(const LibraryLine& parsed, Event& event);
    Lane LaneOfWork(const LibraryLine& parsed, const Event& event) const;
    void FollowWork(Event& event);
    void FollowRequest(const LibraryLine& parsed, Event& event);
    void BeginJob(Event& event);
    void TakeOutcome(std::int64_t status, bool value, Event& event);
    bool IsOnWorker(const Event& event) const { return event.thread == workerThread_; }

    std::deque<Queued> queue_;
    std::optional<std::uint64_t> workerThread_;
    Work work_;
};

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_CLASSIFIER_H
