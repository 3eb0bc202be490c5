// plenxkit host: a host application for the command line, to drive the library by hand, by a
// script, or by another program, and to see its notifications.

#ifndef PLENXKIT_HOST_COMMAND_H
#define PLENXKIT_HOST_COMMAND_H

#include <string>

#include "host/look.h"
#include "host/session.h"
#include "streams.h"

namespace PlenxHost {

struct HostOptions {
    InitArguments init;
    std::string script;
    double timeout = 0;
    Look look;
};

CLI::App& DeclareHost(CLI::App& program, HostOptions& options);
/// Adds the options of every command that has such a look.
void DeclareLook(CLI::App& command, Look& look);
int RunHost(const HostOptions& options, const PlenxKit::Streams& streams);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_COMMAND_H
