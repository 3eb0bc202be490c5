// Merges all logs into one stream of events, in the order of time. It reads each log once, line by
// line. It sorts the lines of a host first, because a host prints a command only when it is done.

#ifndef PLENXKIT_TRACE_MERGE_H
#define PLENXKIT_TRACE_MERGE_H

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "trace/classifier.h"
#include "trace/event.h"
#include "trace/file_error.h"
#include "trace/line_reader.h"

namespace PlenxTrace {

enum class Writer { kHost, kLibrary, kService };

struct LogFile {
    std::string path;  // UTF-8
    Writer writer = Writer::kLibrary;
    std::uint64_t bytes = 0;
};

class EventStream {
public:
    /// @throws FileError
    explicit EventStream(const std::vector<LogFile>& logs);

    /// Returns false at the end of all logs.
    bool Next(Event& event);

private:
    struct Source {
        Source(const LogFile& log, std::size_t place);
        void Advance();
        void ReadHost();
        void TakeHost();

        std::string path;
        std::ifstream file;
        LineReader reader;
        std::size_t index;
        Writer writer;
        std::vector<Event> told;  // the events of a host, with the next one last
        Line head;
        std::int64_t headTime = kNoTime;
        int headRank = 0;
        std::int64_t time = kNoTime;  // never falls, so that no line waits for one behind it
        bool done = false;
    };

    int RankOf(const Source& source) const;
    Event Classified(Source& source);
    void Count(const Event& event);

    Classifier classifier_;
    std::uint64_t begun_ = 0;  // the number of notifications that the library has begun to pass on
    std::uint64_t told_ = 0;   // the number of notifications that the host has got
    std::vector<std::unique_ptr<Source>> sources_;
};

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_MERGE_H
