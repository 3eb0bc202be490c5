// plenxkit doctor: looks for the causes that keep a host's services from starting.

#ifndef PLENXKIT_DOCTOR_COMMAND_H
#define PLENXKIT_DOCTOR_COMMAND_H

#include <string>

#include "host/look.h"
#include "streams.h"

namespace PlenxHost {

struct DoctorOptions {
    std::string install;
    std::string data;
    std::string program;
    Look look;
};

CLI::App& DeclareDoctor(CLI::App& program, DoctorOptions& options);
int RunDoctor(const DoctorOptions& options, const PlenxKit::Streams& streams);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_COMMAND_H
