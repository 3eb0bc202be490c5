// The program under judgement, as the judge's checks see it.

#ifndef PLENXKIT_JUDGE_PROGRAM_H
#define PLENXKIT_JUDGE_PROGRAM_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "judge/inbox.h"
#include "wire/message.h"

namespace PlenxJudge {

struct Request {
    std::int32_t id = 0;
    PlenxWire::Bytes bytes = {};
};

/// What came back from one call.
struct Answer {
    enum class Way {
        kReturned,  // the procedure returned
        kRaised,    // the call raised an exception
        kHung,      // nothing came back in time, and the caller was ended
        kNotSent,   // the program is gone and cannot be started again
    };

    Way way = Way::kNotSent;
    std::uint32_t exception = 0;
    std::int32_t result = 0;
    std::int32_t statedSize = 0;  // respSize
    bool hasReply = false;        // resp is not null
    PlenxWire::Bytes reply = {};
    std::chrono::milliseconds took{0};
};

/// What the program's process holds.
struct Footprint {
    std::uint64_t bytes = 0;  // private memory
    std::uint64_t handles = 0;
};

enum class ServiceState { kStopped, kStartPending, kStopPending, kRunning, kOther };

struct StatusReport {
    ServiceState state = ServiceState::kOther;
    std::uint32_t checkPoint = 0;
    std::uint32_t waitHint = 0;  // milliseconds
    std::uint32_t exitCode = 0;  // of a stopped service: its own, or that of Windows
    bool acceptsStop = false;
    std::chrono::milliseconds since{0};  // when it was first seen, after the call
};

/// A start or a stop, watched with the patience of the library.
struct Watched {
    std::uint32_t error = 0;  // of the call itself; 0 when it got through
    std::vector<StatusReport> reports = {};
    std::chrono::milliseconds took{0};
    bool gaveUp = false;         // no larger checkpoint came in time
    std::uint32_t patience = 0;  // the pause in milliseconds after which the library gives up

    const StatusReport& Last() const { return reports.back(); }
};

/// The three start arguments behind the service's name.
struct StartArguments {
    bool given = true;  // false for a start by hand
    int role = 1;
};

/// The program as a Windows service.
class Service {
public:
    virtual ~Service() = default;

    /// Starts it and waits for as long as the library would. First ends a process that is left.
    virtual Watched Start(const StartArguments& arguments) = 0;
    virtual Watched Stop() = 0;
    /// Ends the process, if there is one, and waits until the service counts as stopped.
    virtual void End() = 0;
    /// How long the process lives on; empty when it is still there at the end of the time.
    virtual std::optional<std::chrono::milliseconds> UntilProcessEnds(
        std::chrono::milliseconds longest) = 0;
    /// Whether somebody serves the endpoint of that role.
    virtual bool Serves(int role) const = 0;
    virtual bool HasDataFolder() const = 0;
    /// Keeps trying for up to that time. @return why the data folder cannot be removed; empty when
    /// it is gone.
    virtual std::string RemoveDataFolder(std::chrono::milliseconds longest) = 0;
};

class Program {
public:
    virtual ~Program() = default;

    virtual Answer Call(const Request& request) = 0;
    /// Sends all of them at once, from callers that do not wait for each other.
    virtual std::vector<Answer> CallAtOnce(const std::vector<Request>& requests) = 0;
    /// A caller sends the request, and its process ends before the answer is there.
    virtual void VanishDuring(const Request& request) = 0;

    /// Whether it goes on after a call that did not come back as it should.
    virtual bool IsUp() = 0;
    /// Ends it and brings it up again. @return false when that is impossible.
    virtual bool Restart() = 0;
    /// Brings it up if it does not run. @return false when that is impossible.
    bool Revive() { return IsUp() || Restart(); }
    /// Null unless the judge has started it as a service.
    virtual Service* AsService() = 0;
    /// Empty when the system does not tell.
    virtual std::optional<Footprint> Measure() = 0;

    /// The endpoint "Manager" and what has come in there.
    virtual Inbox& Manager() = 0;
    /// Makes calls to "Manager" fail from now on, as they do before the library listens, or makes
    /// them succeed again.
    virtual void HideManager(bool hidden) = 0;

    /// 0 office, 1 PC, 2 phone.
    virtual int Role() const = 0;

    /// Removes everything that the judge has brought. @return what is left, or nothing.
    virtual std::string CleanUp() = 0;
};

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_PROGRAM_H
