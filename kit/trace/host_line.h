// The lines that plenxkit host prints with --json, as events.

#ifndef PLENXKIT_TRACE_HOST_LINE_H
#define PLENXKIT_TRACE_HOST_LINE_H

#include <cstdint>

#include "trace/event.h"
#include "trace/line_reader.h"

namespace PlenxTrace {

/// Gives a line of a host its event. A command stands at the time when it began. A line without
/// a time gets the time before.
Event ClassifyHostLine(Line line, std::int64_t timeBefore);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_HOST_LINE_H
