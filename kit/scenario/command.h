// plenxkit scenario: plays scenarios of the development service to a host, and judges how the host
// copes with them.

#ifndef PLENXKIT_SCENARIO_COMMAND_H
#define PLENXKIT_SCENARIO_COMMAND_H

#include <string>
#include <vector>

#include "streams.h"

namespace PlenxScenario {

struct Options {
    std::string command;  // list, show or run
    std::vector<std::string> names;
    std::string show;
    bool all = false;
    bool observed = false;
    bool strict = false;
    std::string scenarios;
    std::string host;
    std::string work;
    std::string install;
    std::string data;
    std::string json;
    std::string junit;
    double seconds = 60;
};

CLI::App& Declare(CLI::App& program, Options& options);
int Run(const Options& options, const PlenxKit::Streams& streams);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_COMMAND_H
