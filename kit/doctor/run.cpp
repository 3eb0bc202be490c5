#include <cstdio>

#include "doctor/command.h"
#include "doctor/doctor.h"
#include "host/exit_code.h"
#include "host/output.h"

namespace PlenxHost {

int RunDoctor(const DoctorOptions& options, const PlenxKit::Streams& streams) {
    Output output(stdout, FormatOf(options.look, streams.process.OutputIsTerminal()));
    const Patient patient{options.install, options.data,
                          options.program.empty() ? ProgramFolder() : options.program};
    const std::unique_ptr<System> system = MakeSystem();
    const Diagnosis diagnosis =
        Examine(patient, *system, [&](const Check& check, const std::vector<Finding>& findings) {
            output.Write(CheckReport{check, findings});
        });
    const int exitCode = diagnosis.problems == 0 ? kAllHeld : kNotAllHeld;
    output.Write(DiagnosisReport{diagnosis, exitCode});
    return exitCode;
}

}  // namespace PlenxHost
