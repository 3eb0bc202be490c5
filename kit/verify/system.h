// The machine that is verified, as the portable parts see it. The tests have one of their own.

#ifndef PLENXKIT_VERIFY_SYSTEM_H
#define PLENXKIT_VERIFY_SYSTEM_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ending.h"
#include "verify/record.h"
#include "verify/redaction.h"

namespace PlenxSupport {
class Interruption;
}

namespace PlenxVerify {

using PlenxKit::Refusal;

/// Something of ours that is on the machine: a service, an endpoint, a process or a folder.
struct Trace {
    std::string text;         // "the service PlenxPcSvc, C:\app\plenxservice.exe"
    bool fromVerify = false;  // an earlier run has left it; false when a host may need it
};

struct Launch {
    std::string program;                 // its name, in the folder of the programs
    std::vector<std::string> arguments;  // none of them has a quotation mark
    std::string output;                  // the name of the file for what it prints
    unsigned seconds = 0;                // the limit
};

struct Ended {
    enum class How { kByItself, kTimeWasOver, kNotStarted, kInterrupted };

    How how = How::kByItself;
    std::uint32_t code = 0;  // the exit code, or the error of the start
    double seconds = 0;
};

struct LogFile {
    std::string name;
    std::string text;
};

class System {
public:
    virtual ~System() = default;

    virtual bool HasRights() = 0;
    /// Makes this the run that other runs have to wait for. @return false when another one runs.
    virtual bool TakeTurn() = 0;
    virtual std::vector<Trace> Traces() = 0;
    /// Whether the program is beside plenxkit.exe.
    virtual bool HasProgram(const std::string& name) = 0;
    virtual Facts Describe() = 0;
    /// The texts that must not be in anything that is sent.
    virtual std::vector<Secret> Secrets() = 0;
    /// The folder in which all of a run happens.
    virtual std::string Root() = 0;

    /// Puts the programs into a folder of the run. @return why it cannot be done, or nothing.
    virtual std::string Prepare() = 0;
    /// Runs a program. It and all that it starts end at the limit, at an interruption, or with this
    /// process.
    virtual Ended Run(const Launch& launch) = 0;
    virtual bool IsInterrupted() = 0;
    /// The path of the file into which a program of the run writes its results.
    virtual std::string PathOf(const std::string& file) = 0;
    /// What is in the file of that name; empty when there is none.
    virtual std::string Read(const std::string& file) = 0;
    /// Where programs of the run may make folders and files.
    virtual std::string WorkFolder() = 0;
    /// What the programs of a stage have logged besides, since the last Clean.
    virtual std::vector<LogFile> Logs() = 0;
    /// Removes what a stage has left: processes, services and files. @return their names.
    virtual std::vector<std::string> Clean() = 0;
    /// Removes everything of the run. What cannot be removed is among the Traces.
    virtual void CleanAll() = 0;
};

/// The machine that this program runs on. While a run goes on, Ctrl-C and the like raise
/// the interruption, which ends its programs.
/// @throws Refusal where there is none that can be verified.
std::unique_ptr<System> MakeSystem(PlenxSupport::Interruption& interruption);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_SYSTEM_H
