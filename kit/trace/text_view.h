// The events as text for a terminal, in three lanes: the host, the library, the services.

#ifndef PLENXKIT_TRACE_TEXT_VIEW_H
#define PLENXKIT_TRACE_TEXT_VIEW_H

#include <cstddef>
#include <ostream>
#include <vector>

#include "trace/merge.h"

namespace PlenxTrace {

constexpr std::size_t kLeastTextWidth = 80;
constexpr std::size_t kTextWidth = 100;
constexpr std::size_t kMostTextWidth = 400;

/// Leaves out the events that tell nothing new beside those of the other logs.
/// @throws FileError
void WriteTextView(const std::vector<LogFile>& logs, std::size_t width, std::ostream& out);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_TEXT_VIEW_H
