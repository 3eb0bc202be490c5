// Processes that call the library's endpoint "Manager", ten at once. They are this program itself,
// started again. Each compares every answer with the expected one, and ends with 0 when all were
// right.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_CALLER_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_CALLER_H

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostile/message_maker.h"
#include "hostile/tally_observer.h"
#include "support/child_process.h"
#include "support/handle.h"

namespace PlenxTest {

constexpr unsigned kCallers = 10;

struct Storm {
    std::uint32_t seed;
    unsigned hostile;  // how many messages each caller sends
    unsigned honest;   // how many each sends, spread among the others
};

/// The calls that an observer must hear during the storm.
Tally TallyOf(const Storm& storm);

/// A notification that comes from nowhere else. The ten ids take turns.
Notification HonestOne(unsigned caller, unsigned number);

class CallerCrowd {
public:
    /// Returns when all callers are ready. They begin together.
    explicit CallerCrowd(const Storm& storm);

    bool IsReady() const { return ready_; }
    void Go();
    bool IsOver();
    /// Returns what the callers have found; empty when everything was right.
    std::string Complaints();

private:
    PlenxSupport::Handle readyCount_;
    PlenxSupport::Handle go_;
    bool ready_ = false;
    std::vector<std::unique_ptr<ChildProcess>> callers_;
};

/// Runs this process as a caller. @return the exit code, or nothing when this process is no caller.
std::optional<int> RunAsCaller(int argc, char** argv);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_CALLER_H
