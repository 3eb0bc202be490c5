// The table of the meanings of log lines. It gives each text its lanes and its kind.

#ifndef PLENXKIT_TRACE_PATTERNS_H
#define PLENXKIT_TRACE_PATTERNS_H

#include <string_view>
#include <vector>

#include "trace/event.h"
#include "trace/template_text.h"

namespace PlenxTrace {

enum class Mark {
    kNone,
    kUsual,  // logged as an error, though nothing is wrong
    kError,  // a failure, though its level does not say so; a service's log has no levels
};

struct Pattern {
    std::string_view function;  // the function that wrote the line; empty for a service's line
    std::string_view text;      // in the form that Matches takes
    Kind kind;
    Lane from;
    Lane to;
    std::string_view label;           // its places are filled from the text
    std::string_view operation = {};  // only calls, refusals and jobs have it
    Mark mark = Mark::kNone;
};

/// The rows for the library's lines, in their order.
std::vector<const Pattern*> LibraryPatterns();

/// The first row that fits, or null. The library's rows are found by their function.
const Pattern* FindLibraryPattern(std::string_view function, std::string_view text,
                                  Captures& captures);
const Pattern* FindServicePattern(std::string_view text, Captures& captures);

/// The lane of the class that wrote a line, for a line of the library that no row fits.
Lane LaneOfClass(std::string_view function);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_PATTERNS_H
