// plenxkit judge: checks a service program that somebody else wrote against the page on the wire
// protocol.

#ifndef PLENXKIT_JUDGE_COMMAND_H
#define PLENXKIT_JUDGE_COMMAND_H

#include <string>
#include <vector>

#include "streams.h"

namespace PlenxJudge {

struct Options {
    std::string endpoint;
    std::string service;
    std::string console;
    std::string role = "pc";
    std::string work;
    std::vector<std::string> only;
    std::vector<std::string> with;
    std::string known;
    std::string json;
    std::string junit;
    std::string html;
    bool list = false;
    bool dryRun = false;
    bool strict = false;
    double patience = 5;
    unsigned soak = 0;
};

CLI::App& Declare(CLI::App& program, Options& options);
int Run(const Options& options, const PlenxKit::Streams& streams);

/// The judge's own child process, which makes the calls; not for people.
struct CallerOptions {
    std::string endpoint;
};

CLI::App& DeclareCaller(CLI::App& program, CallerOptions& options);
int RunCaller(const CallerOptions& options, const PlenxKit::Streams& streams);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_COMMAND_H
