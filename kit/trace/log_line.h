// Splits a log line into its head and its text.

#ifndef PLENXKIT_TRACE_LOG_LINE_H
#define PLENXKIT_TRACE_LOG_LINE_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "trace/event.h"

namespace PlenxTrace {

/// 2026-01-31 12:34:56.789 [info] [1234] [PLENXSDK] text(DistributedFs::Class::Function)
struct LibraryLine {
    std::int64_t time = 0;
    Level level = Level::kNone;
    std::uint64_t thread = 0;
    std::string_view text;      // between the tag and the function
    std::string_view function;  // without "DistributedFs::"; may be empty
};

/// 2026-01-31 12:34:56.789 pc text
struct ServiceLine {
    std::int64_t time = 0;
    int service = kNoService;
    std::string_view text;
};

/// Both results refer to the line. They are empty when the text is not such a line.
std::optional<LibraryLine> ParseLibraryLine(std::string_view line);
std::optional<ServiceLine> ParseServiceLine(std::string_view line);

/// Milliseconds since 1970 for 2026-01-31 12:34:56.789, in the time zone of the clock that wrote
/// it.
std::optional<std::int64_t> ParseTime(std::string_view text);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_LOG_LINE_H
