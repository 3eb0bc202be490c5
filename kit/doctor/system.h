// The questions that the doctor asks the system. Every operation only looks. It opens things for a
// moment, with the access that the library would ask for, and changes nothing. Paths are UTF-8.

#ifndef PLENXKIT_DOCTOR_SYSTEM_H
#define PLENXKIT_DOCTOR_SYSTEM_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace PlenxHost {

enum class PathKind { kAbsent, kFile, kFolder };

/// The system's numbers, as the documentation of Windows names them.
enum SystemError : std::uint32_t {
    kNoError = 0,
    kErrorAccessDenied = 5,
    kErrorSharingViolation = 32,
    kErrorNoSuchService = 1060,
};

enum class ServiceState : std::uint32_t {
    kStopped = 1,
    kStartPending = 2,
    kStopPending = 3,
    kRunning = 4,
    kContinuePending = 5,
    kPausePending = 6,
    kPaused = 7,
};

enum class StartType : std::uint32_t { kBoot, kSystem, kAutomatic, kOnDemand, kDisabled };

struct ServiceFacts {
    std::uint32_t error = kNoError;  ///< The reason why nothing below is known.
    std::string program;             ///< The registered path, with its quotes if it has any.
    StartType startType = StartType::kOnDemand;
    ServiceState state = ServiceState::kStopped;
    std::uint32_t processId = 0;   ///< 0 when it has no process.
    bool processIsThere = true;    ///< Whether a process with that id is running.
    bool markedForDelete = false;  ///< The system waits for the last handle to go.
};

struct PingAnswer {
    enum class Kind { kAnswered, kFailed, kTimedOut } kind = Kind::kFailed;
    std::int32_t code = 0;  ///< The code of the answer, or of the failure.
    std::int64_t milliseconds = 0;
};

class System {
public:
    virtual ~System() = default;

    virtual PathKind Look(const std::string& path) = 0;
    /// The version in the file's VERSIONINFO; empty when the file has none.
    virtual std::optional<std::string> VersionOf(const std::string& file) = 0;
    /// The DLLs that Windows loads before the program or DLL runs; empty when it cannot be read.
    virtual std::vector<std::string> ImportsOf(const std::string& file) = 0;
    /// Whether Windows finds the DLL in a folder of its own.
    virtual bool HasSystemDll(const std::string& name) = 0;
    /// The reason why files may not be made in the folder and removed from it, or kNoError.
    virtual std::uint32_t WriteError(const std::string& folder) = 0;
    /// The groups that everybody is in and that may write to the folder.
    virtual std::vector<std::string> CommonWriters(const std::string& folder) = 0;
    /// The first path in the folder, itself included, that another program holds open in such a
    /// way that it cannot be removed.
    virtual std::optional<std::string> FirstHeld(const std::string& folder) = 0;

    virtual bool IsElevated() = 0;
    /// The reason why the service manager may not be opened with all access, or kNoError.
    virtual std::uint32_t ServiceManagerError() = 0;
    virtual ServiceFacts Service(const std::string& name) = 0;

    virtual bool IsServed(const std::string& endpoint) = 0;
    /// Sends the service's ping, which changes nothing there. The endpoint must be served.
    virtual PingAnswer Ping(const std::string& endpoint) = 0;
};

/// The system that this program runs on.
std::unique_ptr<System> MakeSystem();

/// The folder of this program.
std::string ProgramFolder();

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_SYSTEM_H
