// From logs to the page: the logs are read twice, once to count and once to show.

#ifndef PLENXKIT_TRACE_TRACE_H
#define PLENXKIT_TRACE_TRACE_H

#include <cstdint>
#include <string>
#include <vector>

#include "trace/merge.h"
#include "trace/selection.h"

namespace PlenxTrace {

struct Request {
    std::vector<std::string> libraryLogs;  // parts of one log
    std::vector<std::string> serviceLogs;
    std::string output;
    std::string title;
    std::uint64_t mostEvents = kDefaultMostEvents;
};

struct Report {
    std::uint64_t lines = 0;
    std::uint64_t shown = 0;
    std::uint64_t understood = 0;  // lines that are lines of a log
    bool serviceLineInLibraryLog = false;
    std::uint64_t pageBytes = 0;
};

/// @throws FileError; a page that was there before is then still there.
Report MakePage(const Request& request);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_TRACE_H
