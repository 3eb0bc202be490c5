// plenxkit trace: makes a page for the browser, or text, from logs.

#ifndef PLENXKIT_TRACE_COMMAND_H
#define PLENXKIT_TRACE_COMMAND_H

#include "streams.h"
#include "trace/trace.h"

namespace PlenxTrace {

constexpr int kFine = 0;
constexpr int kFileFailed = 1;

CLI::App& Declare(CLI::App& program, Request& request);
int Run(Request request, const PlenxKit::Streams& streams);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_COMMAND_H
