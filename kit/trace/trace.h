// Turns logs into the page or into text. For the page it reads the logs twice, once to count the
// lines and once to show them.

#ifndef PLENXKIT_TRACE_TRACE_H
#define PLENXKIT_TRACE_TRACE_H

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "trace/merge.h"
#include "trace/selection.h"
#include "trace/text_view.h"

namespace PlenxTrace {

struct Request {
    std::vector<std::string> libraryLogs;  // parts of one log
    std::vector<std::string> serviceLogs;
    std::vector<std::string> hostLogs;  // only the text uses them
    bool asText = false;
    std::size_t textWidth = kTextWidth;
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

/// @throws FileError, and then leaves an older page as it is.
Report MakePage(const Request& request);

/// @throws FileError
void PrintText(const Request& request, std::ostream& out);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_TRACE_H
