// The command line: its options, its help, and what they mean together.

#ifndef PLENXHOST_OPTIONS_H
#define PLENXHOST_OPTIONS_H

#include <string>
#include <vector>

#include "colours.h"
#include "session.h"

namespace PlenxHost {

struct Options {
    InitArguments init;
    std::string script;
    bool json = false;
    double timeout = 0;
    ColourWish colour = ColourWish::kAuto;
    bool doctor = false;
    std::string program;  ///< For the doctor.
};

struct ParsedOptions {
    Options options;
    bool over = false;  ///< Nothing is to be run: help or version was asked for, or a usage error.
    int exitCode = 0;
    std::string output;  ///< What to print then,
    std::string error;   ///< and where.
};

ParsedOptions ParseOptions(const std::vector<std::string>& arguments);

}  // namespace PlenxHost

#endif  // PLENXHOST_OPTIONS_H
