// plenxkit verify: checks the whole of plenxsdk on the Windows that it runs on, and removes
// everything again.

#ifndef PLENXKIT_VERIFY_COMMAND_H
#define PLENXKIT_VERIFY_COMMAND_H

#include <string>
#include <vector>

#include "streams.h"

namespace PlenxVerify {

struct Options {
    std::vector<std::string> only;
    std::string out;
    std::string json;
    std::string junit;
    std::string html;
    bool list = false;
    bool dryRun = false;
    bool yes = false;
    bool clean = false;
};

CLI::App& Declare(CLI::App& program, Options& options);
int Run(const Options& options, const PlenxKit::Streams& streams);

/// The process that removes everything when a run cannot do so itself; not for people.
struct WatcherOptions {
    long run = 0;   // handles that it inherits: the process of the run,
    long done = 0;  // an event
    long turn = 0;  // and the mutex
};

CLI::App& DeclareWatcher(CLI::App& program, WatcherOptions& options);
int RunWatcher(const WatcherOptions& options, const PlenxKit::Streams& streams);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_COMMAND_H
