// A process that serves the PC service's endpoint and answers as no honest service does. It is this
// program itself, started again. A seed decides its first answers; after those it is honest.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_HOSTILE_SERVICE_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_HOSTILE_SERVICE_H

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "hostile/random.h"
#include "hostile/raw_link.h"
#include "support/child_process.h"
#include "support/handle.h"

namespace PlenxTest {

struct ServiceReply {
    RawReply raw;
    /// The outcome in the library: an exception's code, or else the procedure's result, or else the
    /// number in the reply, which may be missing.
    unsigned long exception = 0;
    std::int32_t result = 0;
    std::optional<std::int32_t> number;

    /// Returns the request's result.
    std::int32_t Outcome() const;
};

/// Makes the replies. Every process gets the same ones.
class ReplyMaker {
public:
    explicit ReplyMaker(std::uint32_t seed) : random_(seed, 1000) {}

    ServiceReply Next();

private:
    Bytes Block();
    ServiceReply WithBlock(std::int32_t result);
    ServiceReply WithoutBlock();
    ServiceReply Understated();
    ServiceReply Broken();
    ServiceReply Fault();

    Random random_;
    unsigned made_ = 0;
};

class HostileService {
public:
    /// Returns when the service is ready to serve.
    HostileService(std::uint32_t seed, unsigned replies);

    bool Serves() const { return serves_; }

private:
    PlenxSupport::Handle serving_;
    ChildProcess process_;
    bool serves_;
};

/// Runs this process as the service. @return the exit code, or nothing when this process is no such
/// service.
std::optional<int> RunAsHostileService(int argc, char** argv);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_HOSTILE_SERVICE_H
