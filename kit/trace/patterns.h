// The table of what the lines of the logs mean: which text goes into which lane, as what.

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
    std::string_view function;  // of a line of the library; empty for a service's
    std::string_view text;      // as Matches takes it
    Kind kind;
    Lane from;
    Lane to;
    std::string_view label;           // its places are filled from the text
    std::string_view operation = "";  // of calls, refusals and jobs
    Mark mark = Mark::kNone;
};

/// Of the library's lines, in their order.
std::vector<const Pattern*> LibraryPatterns();

/// The first row that fits, or null. The library's rows are found by their function.
const Pattern* FindLibraryPattern(std::string_view function, std::string_view text,
                                  Captures& captures);
const Pattern* FindServicePattern(std::string_view text, Captures& captures);

/// For a line of the library that no row fits: the lane of the class that wrote it.
Lane LaneOfClass(std::string_view function);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_PATTERNS_H
